"""What the keys of the settings file mean, in English and in Spanish: the words of docs/settings.md and docs/ajustes.md.

Only words stand here. Which keys there are, their defaults and their ranges come from the program itself; in a text,
{smoothing} and {language} become the program's own lists.
"""

# In the order of the documents: section, what it holds.
SECTIONS = {
    "icons": ("Which icons are shown.", "Qué iconos se muestran."),
    "colors": (
        "The colours of icons and graphs. In an icon `NONE` leaves that layer out, so that the taskbar shows through; a "
        "graph's background without a colour counts as black.",
        "Los colores de los iconos y de las gráficas. En un icono, `NONE` quita esa capa y se ve la barra de tareas; el fondo "
        "de una gráfica sin color cuenta como negro.",
    ),
    "cpu": ("The processor: icon and graph.", "El procesador: icono y gráfica."),
    "disk": ("The disks: icon and graph.", "Los discos: icono y gráfica."),
    "memory": ("The memory: its icon.", "La memoria: su icono."),
    "network": ("The network: icon and graph.", "La red: icono y gráfica."),
    "general": ("The program as a whole.", "El programa entero."),
    "dialog": ("The window of the settings.", "La ventana de los ajustes."),
}

# Key: meanings. (section, key) wins over a key of the three graphs.
MEANINGS = {
    ("icons", "show_cpu"): ("The icon of the processor.", "El icono del procesador."),
    ("icons", "show_disk"): ("The icon of the disks.", "El icono de los discos."),
    ("icons", "show_mem"): ("The icon of the memory.", "El icono de la memoria."),
    ("icons", "show_net"): ("The icon of the network.", "El icono de la red."),
    ("colors", "cpu_bg"): ("CPU icon: background.", "Icono de CPU: fondo."),
    ("colors", "cpu_fg"): ("CPU icon: columns.", "Icono de CPU: columnas."),
    ("colors", "cpu_border"): ("CPU icon: border.", "Icono de CPU: borde."),
    ("colors", "cpu_graph_bg"): ("CPU graph: background.", "Gráfica de CPU: fondo."),
    ("colors", "cpu_graph_fg"): ("CPU graph: bars or line of the whole.", "Gráfica de CPU: barras o línea del total."),
    ("colors", "cpu_graph_perf"): (
        "CPU graph per core: performance cores, and all cores of a processor with a single kind.",
        "Gráfica por núcleo: núcleos de rendimiento, y todos los de un procesador que solo tiene una clase.",
    ),
    ("colors", "cpu_graph_eff"): ("CPU graph per core: efficiency cores.", "Gráfica por núcleo: núcleos de eficiencia."),
    ("colors", "disk_bg"): ("Disk icon: background.", "Icono de disco: fondo."),
    ("colors", "disk_read"): ("Disk icon: reading.", "Icono de disco: lectura."),
    ("colors", "disk_write"): ("Disk icon: writing.", "Icono de disco: escritura."),
    ("colors", "disk_border"): ("Disk icon: border.", "Icono de disco: borde."),
    ("colors", "disk_graph_bg"): ("Disk graph: background.", "Gráfica de disco: fondo."),
    ("colors", "disk_graph_read"): ("Disk graph: reading.", "Gráfica de disco: lectura."),
    ("colors", "disk_graph_write"): ("Disk graph: writing.", "Gráfica de disco: escritura."),
    ("colors", "mem_bg"): ("Memory icon below the first threshold: background.", "Icono de memoria bajo el primer umbral: fondo."),
    ("colors", "mem_text"): ("The same: digits and bar.", "Lo mismo: cifras y barra."),
    ("colors", "mem_border"): ("The same: border.", "Lo mismo: borde."),
    ("colors", "mem1_bg"): ("Memory icon from `threshold1`: background.", "Icono de memoria desde `threshold1`: fondo."),
    ("colors", "mem1_text"): ("The same: digits and bar.", "Lo mismo: cifras y barra."),
    ("colors", "mem1_border"): ("The same: border.", "Lo mismo: borde."),
    ("colors", "mem2_bg"): ("Memory icon from `threshold2`: background.", "Icono de memoria desde `threshold2`: fondo."),
    ("colors", "mem2_text"): ("The same: digits and bar.", "Lo mismo: cifras y barra."),
    ("colors", "mem2_border"): ("The same: border.", "Lo mismo: borde."),
    ("colors", "mem3_bg"): ("Memory icon from `threshold3`: background.", "Icono de memoria desde `threshold3`: fondo."),
    ("colors", "mem3_text"): ("The same: digits and bar.", "Lo mismo: cifras y barra."),
    ("colors", "mem3_border"): ("The same: border.", "Lo mismo: borde."),
    ("colors", "net_bg"): ("Network icon: background.", "Icono de red: fondo."),
    ("colors", "net_down"): ("Network icon: received.", "Icono de red: bajada."),
    ("colors", "net_up"): ("Network icon: sent.", "Icono de red: subida."),
    ("colors", "net_both"): ("Network icon: where both overlap.", "Icono de red: donde coinciden las dos."),
    ("colors", "net_border"): ("Network icon: border.", "Icono de red: borde."),
    ("colors", "net_graph_bg"): ("Network graph: background.", "Gráfica de red: fondo."),
    ("colors", "net_graph_down"): ("Network graph: received.", "Gráfica de red: bajada."),
    ("colors", "net_graph_up"): ("Network graph: sent.", "Gráfica de red: subida."),
    ("colors", "net_graph_both"): ("Network graph: where both overlap.", "Gráfica de red: donde coinciden las dos."),
    ("cpu", "per_core"): (
        "The graph shows one small plot for each logical processor.",
        "La gráfica se divide en una pequeña por cada procesador lógico.",
    ),
    ("disk", "activity"): (
        "The graph shows 0: speed, or 1: the share of time that the disk is busy. A click on the graph changes and saves it.",
        "La gráfica muestra 0: velocidad, o 1: la parte del tiempo que el disco está ocupado. Un clic en la gráfica lo cambia "
        "y lo guarda.",
    ),
    ("disk", "disks"): (
        "The disks that are added up, by the numbers that Windows gives them; `*` is all of them.",
        "Los discos que se suman, por el número que les da Windows; `*` son todos.",
    ),
    ("memory", "threshold1"): (
        "The percentage of memory in use from which the icon takes its second set of colours.",
        "El porcentaje de memoria en uso desde el que el icono toma sus segundos colores.",
    ),
    ("memory", "threshold2"): ("The same for the third set.", "Lo mismo para los terceros."),
    ("memory", "threshold3"): ("The same for the fourth set.", "Lo mismo para los cuartos."),
    ("memory", "font_name"): ("The font of the digits in the icon.", "La fuente de las cifras del icono."),
    ("memory", "font_size"): (
        "Its size, in pixels of an icon of 16 by 16; larger icons have larger digits.",
        "Su tamaño, en píxeles de un icono de 16 por 16; en los iconos más grandes, las cifras también lo son.",
    ),
    ("memory", "font_bold"): ("The digits are bold.", "Las cifras van en negrita."),
    ("memory", "bar"): ("The icon has a level bar above the digits.", "El icono lleva una barra de nivel sobre las cifras."),
    ("memory", "refresh_ms"): ("Milliseconds between two readings.", "Milisegundos entre dos lecturas."),
    ("network", "interfaces"): (
        "The connections that are added up, at most 15, by Windows' number for each (its LUID, in hexadecimal); `*` is all of "
        "them. Best chosen in the settings window.",
        "Las conexiones que se suman, 15 como mucho, por el número que Windows da a cada una (su LUID, en hexadecimal); `*` son "
        "todas. Lo mejor es elegirlas en la ventana de ajustes.",
    ),
    ("network", "interface_aliases"): (
        "Their names, in the same order and separated by `|`; shown while a chosen connection is away.",
        "Sus nombres, en el mismo orden y separados por `|`; se muestran mientras falta una conexión elegida.",
    ),
    ("general", "check_updates"): (
        "Look for newer versions; 0 means that the program sends nothing at all.",
        "Buscar versiones nuevas; con 0 el programa no envía nada en absoluto.",
    ),
    ("general", "language"): ("The language: {language}.", "El idioma: {language}."),
    ("general", "install_id"): (
        "A random number of this installation, made when the program first looks for updates. It is sent only by builds with "
        "statistics; delete the line to get another one.",
        "Un número aleatorio de esta instalación, creado la primera vez que se buscan actualizaciones. Solo lo envían las "
        "compilaciones con estadísticas; borra la línea para tener otro.",
    ),
    ("dialog", "x"): ("Left edge of the window, in pixels of the screen.", "Borde izquierdo de la ventana, en píxeles de pantalla."),
    ("dialog", "y"): ("Top edge. Without both, the window opens in its usual place.", "Borde superior. Sin los dos, la ventana se abre en su sitio de siempre."),
    ("dialog", "tab"): (
        "The page that was open: 0 CPU, 1 disk, 2 memory, 3 network, 4 general.",
        "La pestaña que estaba abierta: 0 CPU, 1 disco, 2 memoria, 3 red, 4 general.",
    ),
}

GRAPHS = ("cpu", "disk", "network")
GRAPH_MEANINGS = {
    "refresh_ms": ("Milliseconds between two readings.", "Milisegundos entre dos lecturas."),
    "opacity": ("How opaque the graph is, in percent.", "Lo opaca que es la gráfica, en tanto por ciento."),
    "margin": (
        "Pixels around the plot; more on screens of a higher resolution (DPI).",
        "Píxeles alrededor del dibujo; más en pantallas de mayor resolución (PPP).",
    ),
    "font_name": ("The font of the graph.", "La fuente de la gráfica."),
    "font_size": (
        "Its size, in pixels; larger on screens of a higher resolution (DPI).",
        "Su tamaño, en píxeles; mayor en pantallas de mayor resolución (PPP).",
    ),
    "font_bold": ("The font is bold.", "La fuente va en negrita."),
    "style": ("Bars, or lines.", "Barras (`bars`) o líneas (`lines`)."),
    "smoothing": ("How smooth the lines are: {smoothing}.", "Lo suaves que son las líneas: {smoothing}."),
    "fill": (
        "How strongly the area under a line is filled, in percent. 1 counts as 50, which is what it means in older files.",
        "Con cuánta fuerza se rellena lo que queda bajo una línea, en tanto por ciento. El 1 cuenta como 50, que es lo que "
        "significa en los ficheros antiguos.",
    ),
    "topmost": ("The graph stays above other windows.", "La gráfica se queda por encima de las demás ventanas."),
    "graph": ("The graph is open, and opens again at the next start.", "La gráfica está abierta, y se abre otra vez al arrancar."),
    "pinned": (
        "The graph is pinned: always on top, and the mouse goes through it.",
        "La gráfica está fijada: siempre encima, y el ratón la atraviesa.",
    ),
    "x": ("Left edge of the graph, in pixels of the screen.", "Borde izquierdo de la gráfica, en píxeles de pantalla."),
    "y": ("Top edge.", "Borde superior."),
    "width": ("Width in pixels.", "Ancho en píxeles."),
    "height": ("Height in pixels.", "Alto en píxeles."),
}

# Keys that are read and never written: values, meaning.
OLDER = {
    ("general", "refresh_ms"): (
        "One period for CPU, disk and memory, where a section lacks `refresh_ms` of its own. If `[cpu]` lacks `per_core`, "
        "its period is also that of a disk without one of its own, until “Save” on the page CPU writes `per_core`; from the next "
        "start on, such a disk has the period of this row, or the default.",
        "Un solo ritmo para CPU, disco y memoria, donde una sección no tenga su propio `refresh_ms`. Si en `[cpu]` falta "
        "`per_core`, su ritmo es también el de un disco que no tenga uno propio, hasta que «Guardar» en la pestaña CPU escriba "
        "`per_core`; desde el siguiente arranque, un disco así tiene el ritmo de esta fila, o el valor por defecto.",
    ),
    ("network", "icon_border"): (
        "`0`: the network icon has no border, if `net_border` is missing.",
        "`0`: el icono de red no tiene borde, si falta `net_border`.",
    ),
}

# Who writes a key: the page of the window with its "Save", or something else.
OWNERS = {
    "Cpu": ("“Save” on the page CPU", "«Guardar» en la pestaña CPU"),
    "Disk": ("“Save” on the page Disk", "«Guardar» en la pestaña Disco"),
    "Memory": ("“Save” on the page Memory", "«Guardar» en la pestaña Memoria"),
    "Network": ("“Save” on the page Network", "«Guardar» en la pestaña Red"),
    "Window": ("opening, closing, pinning and moving the graph", "abrir, cerrar, fijar y mover la gráfica"),
    "General": (
        "each on its own, when it changes; `check_updates` with “Save” on the page General",
        "cada una por su cuenta, cuando cambia; `check_updates`, «Guardar» en la pestaña General",
    ),
    "Dialog": ("closing the window", "cerrar la ventana"),
}

# Keys that count only together.
GROUPS = {
    "ShownIcons": (
        "If all four are 0, all four icons are shown: without any, the program could not be reached.",
        "Si los cuatro son 0 se muestran los cuatro iconos: sin ninguno no se podría llegar al programa.",
    ),
    "Thresholds": (
        "The three thresholds must rise from one to the next; if one is bad, all three take their defaults.",
        "Los tres umbrales deben ir de menor a mayor; si uno está mal, los tres toman su valor por defecto.",
    ),
    "Placement": (
        "`x`, `y`, `width` and `height` count only together; if one is missing or bad, the program places the graph.",
        "`x`, `y`, `width` y `height` solo cuentan juntos; si falta o está mal alguno, el programa coloca la gráfica.",
    ),
    "Aliases": (
        "`interface_aliases` counts only while `interfaces` names some.",
        "`interface_aliases` solo cuenta mientras `interfaces` nombre alguna.",
    ),
}

TITLE = ("The settings file", "El fichero de ajustes")

INTRODUCTION = (
    """\
kestrane keeps its settings in one text file:

    %APPDATA%\\kestrane\\kestrane.ini

Paste that into the address bar of File Explorer to find it. Nobody has to edit it: everything in it is set in the program's
“Settings...” window or maintained by the program itself. This page explains what is in it, for those who want to look, to
copy it to another machine, or to prepare one for many users. En español: [ajustes.md](ajustes.md).

- **When it is read:** once, when the program starts. To edit it, end the program first (“Exit” in its menu, or
  `kestrane.exe --exit`). What you change while it runs has no effect until the next start, and the program may write over it.
- **When it is written:** only by what you do, and only the keys concerned; other lines, comments (`;`) and keys that the
  program does not know stay. Each section says what writes it. On its own, the program only creates `install_id`, moves graphs
  whose monitor is gone, and takes over the settings from its former name if it finds none of its own.
- **What if a value is wrong or missing:** that key alone takes its default, unless its row says otherwise. Reading never
  changes the file. Deleting the file brings back all defaults.
- **Form:** sections in brackets, one `key=value` per line. If a key occurs twice, the first counts. Upper and lower case
  matter in words such as `bars`, not in keys. Only the first 259 characters of a value are read.
- **Encoding:** plain text. The only values that can have letters outside ASCII are the names of fonts and connections; to write
  such letters yourself, save the file as UTF-16 LE (in Notepad's “Save as”), which Windows reads on every machine. Avoid
  UTF-8 “with BOM”: Windows may not recognise the first section.
- **If there is no such folder:** the file is created at the first save. On a machine without an application data folder it is
  in the temporary folder instead.
""",
    """\
kestrane guarda sus ajustes en un solo fichero de texto:

    %APPDATA%\\kestrane\\kestrane.ini

Pega eso en la barra de direcciones del Explorador para llegar a él. Nadie necesita editarlo: todo lo que contiene se cambia en
la ventana «Ajustes...» del programa, o lo mantiene el propio programa. Esta página explica lo que hay dentro, para quien quiera
mirarlo, copiarlo a otro equipo o preparar uno para muchos usuarios. In English: [settings.md](settings.md).

- **Cuándo se lee:** una vez, al arrancar el programa. Para editarlo, ciérralo antes («Salir» en su menú, o
  `kestrane.exe --exit`). Lo que cambies mientras está en marcha no tiene efecto hasta el próximo arranque, y el programa puede
  escribir encima.
- **Cuándo se escribe:** solo por algo que hagas, y solo las claves que toca; las demás líneas, los comentarios (`;`) y las
  claves que el programa no conoce se quedan. Cada sección dice qué la escribe. Por sí mismo, el programa solo crea
  `install_id`, mueve las gráficas cuyo monitor ya no está y toma los ajustes de su nombre anterior si no encuentra propios.
- **Si un valor falta o no es válido:** solo esa clave toma su valor por defecto, salvo que su fila diga otra cosa. Leer nunca
  cambia el fichero. Si lo borras, vuelven todos los valores por defecto.
- **Forma:** secciones entre corchetes, una línea `clave=valor` por clave. Si una clave aparece dos veces, cuenta la primera.
  Las mayúsculas importan en palabras como `bars`, pero no en las claves. De un valor solo se leen los primeros 259
  caracteres.
- **Codificación:** texto sin formato. Los únicos valores que pueden llevar letras de fuera de ASCII son los nombres de fuentes y
  de conexiones; para escribirlas tú, guarda el fichero como UTF-16 LE (en «Guardar como» del Bloc de notas), que Windows lee en
  cualquier equipo. Evita UTF-8 «con BOM»: puede que Windows no reconozca la primera sección.
- **Si no existe la carpeta:** el fichero se crea al guardar por primera vez. En un equipo sin carpeta de datos de programa está
  en la carpeta temporal.
""",
)

HEAD = ("| Key | Values | Default | Meaning |", "| Clave | Valores | Por defecto | Significado |")
WRITTEN = ("Written by: {0}.", "Estas claves las escribe: {0}.")
WRITTEN_BY_PAGES = ("“Save” on the page of the same icon", "«Guardar» en la pestaña del mismo icono")
NO_DEFAULT = ("none", "ninguno")
LIKE = ("that of `{0}`", "el de `{0}`")
OLDER_TITLE = ("Keys of older files", "Claves de ficheros antiguos")
OLDER_TEXT = (
    "Still read, because older versions wrote them; never written.",
    "Se siguen leyendo porque las escribían versiones antiguas; nunca se escriben.",
)
OLDER_HEAD = ("| Section | Key | Meaning |", "| Sección | Clave | Significado |")

# The kinds of value.
FLAG = ("`0` no, `1` yes", "`0` no, `1` sí")
COLOR = ("`RRGGBB` in hexadecimal, or `NONE`", "`RRGGBB` en hexadecimal, o `NONE`")
WORDS = ("{0}", "{0}")
RANGE = ("{0} to {1}", "de {0} a {1}")
ONE_OF = ("one of {0}", "uno de {0}")
ANY_NUMBER = ("a whole number", "un número entero")
NEAREST = ("; others count as the nearest", "; otros cuentan como el más cercano")
COUNTS_AS = ("; others count as {0}", "; otros cuentan como {0}")
LENIENT = ("; what follows the number is ignored", "; lo que siga al número no cuenta")
TEXT_LENGTH = ("text of {0} to {1} characters", "texto de {0} a {1} caracteres")
TEXT_LIST = ("texts separated by `|`", "textos separados por `|`")
ID = ("{0} of `0`–`9`, `a`–`f` and `-`", "{0} de `0`–`9`, `a`–`f` y `-`")
NUMBER_LIST = ("`*`, or numbers from {0} to {1} without repetition, separated by commas", "`*`, o números de {0} a {1} sin repetir, separados por comas")
HEX_LIST = ("`*`, or hexadecimal numbers separated by commas", "`*`, o números hexadecimales separados por comas")
