#include "update/update_texts.h"

#include "text/number_text.h"
#include "text/text_util.h"
#include "text/translation.h"

namespace kestrane {

std::wstring DownloadFailureText(const DownloadFailure& failure) {
    switch (failure.step) {
        case DownloadStep::None:
            break;
        case DownloadStep::Address:
            return Tr(L"No se pudo descargar la versión nueva: dirección no válida.");
        case DownloadStep::Answer:
            return Tr(L"No se pudo descargar la versión nueva: sin respuesta del servidor.");
        case DownloadStep::Save:
            return FormatText(L"No se pudo guardar la versión nueva junto a kestrane (código {0}).",
                              {FormatUnsigned(failure.code)});
        case DownloadStep::Cancelled:
            return Tr(L"Descarga cancelada.");
        case DownloadStep::Connection:
            return Tr(L"No se pudo descargar la versión nueva: la conexión se ha cortado.");
        case DownloadStep::Content:
            return Tr(
                L"El fichero descargado no coincide con el publicado (tamaño o huella). No se ha cambiado nada; "
                L"prueba más tarde.");
    }
    return {};
}

std::wstring DevelopmentCopyText() {
    return Tr(
        L"kestrane se está ejecutando desde una compilación, no desde el exe publicado: no se cambia nada. "
        L"Descarga la versión nueva desde la web.");
}

std::wstring FolderNotWritableText() {
    return Tr(
        L"No hay permiso para escribir en la carpeta de kestrane, así que no puede actualizarse sola. Descarga "
        L"la versión nueva desde la web y sustitúyela a mano.");
}

std::wstring ReplaceFailureText(std::uint32_t code) {
    return FormatText(
        L"No se pudo poner la versión nueva en lugar de la actual (código {0}).\n\nkestrane sigue con la "
        L"versión que tenías.",
        {FormatUnsigned(code)});
}

std::wstring OfferText(std::string_view version, const wchar_t* runningVersion) {
    return FormatText(L"Versión {0} disponible (tienes la {1}). Haz clic para ver los cambios y actualizar.",
                      {WidenBytes(version), runningVersion});
}

}  // namespace kestrane
