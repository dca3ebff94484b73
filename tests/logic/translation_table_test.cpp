// The whole translation table, row by row and in order, as it must read in both languages.
#include <gtest/gtest.h>

#include <array>
#include <cstddef>
#include <string>

#include "text/translation.h"

namespace kestrane {
namespace {

constexpr std::array<TranslationRow, 136> Expected = {{
    {L"Rendimiento", L"Performance"},
    {L"Fijar gráfica de CPU", L"Pin CPU graph"},
    {L"Fijar gráfica de disco", L"Pin disk graph"},
    {L"Fijar gráfica de red", L"Pin network graph"},
    {L"Ajustes...", L"Settings..."},
    {L"Acerca de kestrane...", L"About kestrane..."},
    {L"Acerca de kestrane", L"About kestrane"},
    {L"Salir", L"Exit"},
    {L"Nueva versión {0} disponible...", L"New version {0} available..."},
    {L"kestrane {0}\n\nMonitor de CPU, disco, memoria y red en la bandeja.\nClic derecho sobre un icono para abrir los "
     L"ajustes.\nClic en el icono de CPU, disco o red: su gráfica.\nCtrl+Shift+B: gráfica de red.\n\nAjustes: "
     L"{1}\n\nIconos: Fugue Icons de Marlo Tesshin (CC BY 3.0).",
     L"kestrane {0}\n\nCPU, disk, memory and network monitor for the tray.\nRight-click an icon to open the "
     L"settings.\nClick the CPU, disk or network icon: its graph.\nCtrl+Shift+B: network graph.\n\nSettings: "
     L"{1}\n\nIcons: Fugue Icons by Marlo Tesshin (CC BY 3.0)."},
    {L"Red", L"Network"},
    {L"Disco", L"Disk"},
    {L"Memoria", L"Memory"},
    {L"Disco {0}", L"Disk {0}"},
    {L"Disco: sin datos (PDH)", L"Disk: no data (PDH)"},
    {L"Disco  L: {0} % · {1}  E: {2} % · {3}", L"Disk  R: {0} % · {1}  W: {2} % · {3}"},
    {L"Memoria: {0} % ({1} / {2} GB)", L"Memory: {0} % ({1} / {2} GB)"},
    {L"{0}: desconectada", L"{0}: disconnected"},
    {L"{0}\nBajada: {1}  Subida: {2}", L"{0}\nDown: {1}  Up: {2}"},
    {L"Todas las conexiones", L"All connections"},
    {L"hace {0} s", L"{0} s ago"},
    {L"Lectura", L"Read"},
    {L"Escritura", L"Write"},
    {L"Bajada", L"Down"},
    {L"Subida", L"Up"},
    {L"Hilo {0} (rendimiento): {1}", L"Thread {0} (performance): {1}"},
    {L"Hilo {0} (eficiencia): {1}", L"Thread {0} (efficiency): {1}"},
    {L"(Máx núcleo: {0})", L"(Max core: {0})"},
    {L"(Máx: {0})", L"(Max: {0})"},
    {L"Actividad: L {0} · E {1}", L"Activity: R {0} · W {1}"},
    {L"{0}: L {1} · E {2}", L"{0}: R {1} · W {2}"},
    {L"kestrane - disco", L"kestrane - disk"},
    {L"kestrane - red", L"kestrane - network"},
    {L"Procesador", L"Processor"},
    {L"Desconocido", L"Unknown"},
    {L"{0} núcleo", L"{0} core"},
    {L"{0} núcleos", L"{0} cores"},
    {L"{0} de rendimiento + {1} de eficiencia", L"{0} performance + {1} efficiency"},
    {L"{0} hilo", L"{0} thread"},
    {L"{0} hilos", L"{0} threads"},
    {L"· memoria soldada", L"· soldered memory"},
    {L"· {0} de {1} ranura ocupada", L"· {0} of {1} slot in use"},
    {L"· {0} de {1} ranuras ocupadas", L"· {0} of {1} slots in use"},
    {L" · máximo {0} GB", L" · up to {0} GB"},
    {L"Ranura {0}", L"Slot {0}"},
    {L"vacía", L"empty"},
    {L"soldada", L"soldered"},
    {L"Discos fijos", L"Fixed disks"},
    {L"no se han podido leer", L"could not be read"},
    {L"{0} libres de {1}", L"{0} free of {1}"},
    {L"Ultra rápido - 0,5 s", L"Ultra fast - 0.5 s"},
    {L"Rápido - 1 s", L"Fast - 1 s"},
    {L"Normal - 1,5 s", L"Normal - 1.5 s"},
    {L"Medio - 3 s", L"Medium - 3 s"},
    {L"Lento - 5 s", L"Slow - 5 s"},
    {L"Muy lento - 10 s", L"Very slow - 10 s"},
    {L"Ninguno", L"None"},
    {L"Bajo", L"Low"},
    {L"Medio", L"Medium"},
    {L"Alto", L"High"},
    {L"Sin relleno", L"No fill"},
    {L"{0} % visible", L"{0} % visible"},
    {L", negrita", L", bold"},
    {L"Automático", L"Automatic"},
    {L"Ajustes de kestrane", L"kestrane settings"},
    {L"Fondo", L"Back"},
    {L"Transparencia", L"Opacity"},
    {L"Margen", L"Margin"},
    {L"Suavizado", L"Smoothing"},
    {L"Relleno", L"Fill"},
    {L"Ventana", L"Window"},
    {L"Siempre encima", L"Always on top"},
    {L"Rendim.", L"Perf."},
    {L"Eficien.", L"Effic."},
    {L"Fuente", L"Font"},
    {L"Negrita", L"Bold"},
    {L"Muestra", L"Preview"},
    {L"Restaurar por defecto", L"Restore defaults"},
    {L"Guardar", L"Save"},
    {L"Mostrar", L"Show"},
    {L"Idioma", L"Language"},
    {L"Equipo detectado", L"Detected hardware"},
    {L"Gráfica", L"Graph"},
    {L"Borde", L"Border"},
    {L"Refresco", L"Refresh"},
    {L"Gráfica de CPU (clic en el icono de CPU)", L"CPU graph (click the CPU icon)"},
    {L"Estilo", L"Style"},
    {L"Líneas", L"Lines"},
    {L"Por núcleo", L"Per core"},
    {L"Gráfica de disco (clic en el icono de disco)", L"Disk graph (click the disk icon)"},
    {L"Medida", L"Measure"},
    {L"Actividad (%) en vez de velocidad", L"Activity (%) instead of speed"},
    {L"Discos", L"Disks"},
    {L"Todos (suma)", L"All (sum)"},
    {L"Texto", L"Text"},
    {L"Barra de nivel", L"Level bar"},
    {L"Desde", L"From"},
    {L"Ambas", L"Both"},
    {L"Icono", L"Icon"},
    {L"icono y gráfica", L"icon and graph"},
    {L"Interfaces (con IP ahora mismo)", L"Interfaces (with an IP right now)"},
    {L"Nº", L"No."},
    {L"Nombre", L"Name"},
    {L"Con «Todas las conexiones» marcada no se muestra el resto. Desmárcala para elegir una o varias (se suma su "
     L"tráfico).",
     L"With “All connections” ticked the rest are hidden. Untick it to choose one or several (their traffic is added "
     L"up)."},
    {L"Gráfica de red (clic en el icono de red)", L"Network graph (click the network icon)"},
    {L"Iniciar con Windows", L"Start with Windows"},
    {L"Para todos los usuarios", L"For all users"},
    {L"Comprobar actualizaciones", L"Check for updates"},
    {L"(avisa; no se instala sola)", L"(it tells you; never installs by itself)"},
    {L"Clic izquierdo en un cuadro: elegir color. Clic derecho: transparente.",
     L"Left-click a box: choose a colour. Right-click: transparent."},
    {L"Cada pestaña se guarda por separado. Cerrar la ventana descarta lo que no se haya guardado. Se vuelve a abrir "
     L"donde y como se dejó.",
     L"Each tab is saved on its own. Closing the window discards what was not saved. It reopens where and how you left "
     L"it."},
    {L"Al menos un icono debe quedar visible.", L"At least one icon must stay visible."},
    {L"Los umbrales de memoria deben ser números entre 1 y 100, de menor a mayor.",
     L"Memory thresholds must be numbers from 1 to 100, in ascending order."},
    {L"No se pudo guardar el fichero de ajustes.", L"The settings file could not be saved."},
    {L"No se pudo cambiar el autoarranque. Para \"Todos los usuarios\" hace falta aceptar la elevación de permisos.",
     L"Start with Windows could not be changed. \"For all users\" needs you to accept the elevation prompt."},
    {L"Nueva versión de kestrane", L"New version of kestrane"},
    {L"Versión {0} disponible (tienes la {1}). Haz clic para ver los cambios y actualizar.",
     L"Version {0} available (you have {1}). Click to see the changes and update."},
    {L"Hay una versión nueva de kestrane.", L"There is a new version of kestrane."},
    {L"Versión actual:", L"Current version:"},
    {L"Versión disponible:", L"Available version:"},
    {L"Ver los cambios de cada versión", L"See what changed in each version"},
    {L"Al actualizar se descarga la versión nueva, se comprueba, se cierra kestrane y se vuelve a abrir ya "
     L"actualizado.",
     L"Updating downloads and checks the new version, closes kestrane and opens it again already updated."},
    {L"Ir a la web", L"Go to the website"},
    {L"Cerrar", L"Close"},
    {L"Actualizar y reiniciar", L"Update and restart"},
    {L"Actualizar kestrane", L"Update kestrane"},
    {L"Descargando la versión nueva...", L"Downloading the new version..."},
    {L"Descarga cancelada.", L"Download cancelled."},
    {L"kestrane se está ejecutando desde una compilación, no desde el exe publicado: no se cambia nada. Descarga la "
     L"versión nueva desde la web.",
     L"kestrane is running from a build, not from the published exe: nothing is changed. Download the new version from "
     L"the website."},
    {L"No hay permiso para escribir en la carpeta de kestrane, así que no puede actualizarse sola. Descarga la versión "
     L"nueva desde la web y sustitúyela a mano.",
     L"There is no permission to write to kestrane's folder, so it cannot update itself. Download the new version from "
     L"the website and replace it by hand."},
    {L"No se pudo poner la versión nueva en lugar de la actual (código {0}).\n\nkestrane sigue con la versión que "
     L"tenías.",
     L"The new version could not replace the current one (code {0}).\n\nkestrane stays on the version you had."},
    {L"No se pudo descargar la versión nueva: dirección no válida.",
     L"The new version could not be downloaded: invalid address."},
    {L"No se pudo descargar la versión nueva: sin respuesta del servidor.",
     L"The new version could not be downloaded: no answer from the server."},
    {L"No se pudo descargar la versión nueva: la conexión se ha cortado.",
     L"The new version could not be downloaded: the connection dropped."},
    {L"No se pudo guardar la versión nueva junto a kestrane (código {0}).",
     L"The new version could not be saved next to kestrane (code {0})."},
    {L"El fichero descargado no coincide con el publicado (tamaño o huella). No se ha cambiado nada; prueba más tarde.",
     L"The downloaded file does not match the published one (size or fingerprint). Nothing was changed; try again "
     L"later."},
}};

TEST(TranslationTableRows, ReadAsBothLanguagesWantThem) {
    ASSERT_EQ(TranslationTable.size(), Expected.size());
    for (std::size_t row = 0; row < Expected.size(); ++row) {
        EXPECT_EQ(std::wstring(TranslationTable.at(row).spanish), Expected.at(row).spanish) << row;
        EXPECT_EQ(std::wstring(TranslationTable.at(row).english), Expected.at(row).english) << row;
    }
}

}  // namespace
}  // namespace kestrane
