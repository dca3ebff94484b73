#include "dialog/control_table.h"

namespace kestrane {
namespace {

// The style bits of Windows, under Windows' names.
constexpr std::uint32_t WsChild = 0x40000000;
constexpr std::uint32_t WsVisible = 0x10000000;
constexpr std::uint32_t WsBorder = 0x00800000;
constexpr std::uint32_t WsVScroll = 0x00200000;
constexpr std::uint32_t WsTabStop = 0x00010000;
constexpr std::uint32_t SsCenter = 0x0001;
constexpr std::uint32_t SsIcon = 0x0003;
constexpr std::uint32_t SsOwnerDraw = 0x000D;
constexpr std::uint32_t SsNoPrefix = 0x0080;
constexpr std::uint32_t SsCenterImage = 0x0200;
constexpr std::uint32_t BsAutoCheckBox = 0x0003;
constexpr std::uint32_t BsOwnerDraw = 0x000B;
constexpr std::uint32_t CbsDropDownList = 0x0003;
constexpr std::uint32_t EsRight = 0x0002;
constexpr std::uint32_t EsAutoHScroll = 0x0080;
constexpr std::uint32_t EsNumber = 0x2000;
constexpr std::uint32_t LbsNotify = 0x0001;
constexpr std::uint32_t LbsOwnerDrawFixed = 0x0010;
constexpr std::uint32_t LbsHasStrings = 0x0040;
constexpr std::uint32_t LbsNoIntegralHeight = 0x0100;

using enum ControlType;

}  // namespace

constexpr std::array<ControlClass, ControlTypeCount> ControlClasses{{
    {L"STATIC", WsChild | SsNoPrefix | SsCenter, true},                                     // TabTitle
    {L"STATIC", WsChild | SsNoPrefix | SsCenter, true},                                     // BoxTitle
    {L"STATIC", WsChild | SsNoPrefix, false},                                               // Label
    {L"STATIC", WsChild | SsNoPrefix | SsCenter, false},                                    // ColumnHead
    {L"STATIC", WsChild | SsNoPrefix, false},                                               // Note
    {L"STATIC", WsChild | SsCenterImage | SsIcon, false},                                   // TabIcon
    {L"BUTTON", WsChild | WsTabStop | BsOwnerDraw, false},                                  // ShowSwitch
    {L"BUTTON", WsChild | WsTabStop | BsOwnerDraw, false},                                  // ColorWell
    {L"STATIC", WsChild | SsOwnerDraw, false},                                              // Sample
    {L"COMBOBOX", WsChild | WsVScroll | WsTabStop | CbsDropDownList, false},                // Combo
    {L"COMBOBOX", WsChild | WsVScroll | WsTabStop | CbsDropDownList, false},                // FontCombo
    {L"BUTTON", WsChild | WsTabStop | BsAutoCheckBox, false},                               // CheckBox
    {L"BUTTON", WsChild | WsTabStop, false},                                                // PushButton
    {L"EDIT", WsChild | WsBorder | WsTabStop | EsNumber | EsAutoHScroll | EsRight, false},  // NumberField
    {L"LISTBOX",                                                                            // InterfaceList
     WsChild | WsBorder | WsVScroll | WsTabStop | LbsNoIntegralHeight | LbsHasStrings | LbsOwnerDrawFixed | LbsNotify,
     false},
    {L"BUTTON", WsChild | BsOwnerDraw, false},  // SectionTitle
    {L"STATIC", WsChild | SsOwnerDraw, false},  // HardwareText
}};

constexpr ControlClass TabButtonClass{L"BUTTON", WsChild | WsVisible | WsTabStop | BsOwnerDraw, false};
constexpr ControlClass PageNoteClass{L"STATIC", WsChild | WsVisible | SsNoPrefix, false};

// Id, type, text, group, x, y, w, h.
// clang-format off
constexpr std::array<DialogRow, DialogRowCount> DialogRows{{
    // CPU.
    {IdCpuTitle,          TabTitle,     L"       CPU",                                     0,   0,  2, 248,  20},
    {IdCpuTabIcon,        TabIcon,      L"",                                               0,   5,  0,  10,  10},
    {IdCpuShow,           ShowSwitch,   L"Mostrar",                                        0, 190, -1,  52,  10},

    {IdCpuHardwareTitle,  SectionTitle, L"Equipo detectado",                               1,   4,  1, 240,  12},
    {IdCpuHardware,       HardwareText, L"",                                               2,   4,  0, 240,  10},

    {NoId,                ColumnHead,   L"Fondo",                                          3,  30,  3,  30,  10},
    {NoId,                ColumnHead,   L"Gráfica",                                        3,  66,  3,  40,  10},
    {NoId,                ColumnHead,   L"Borde",                                          3, 106,  3,  40,  10},
    {NoId,                Label,        L"CPU",                                            3,   6, 16,  28,  10},
    {IdCpuBg,             ColorWell,    L"",                                               3,  39, 14,  12,  12},
    {IdCpuFg,             ColorWell,    L"",                                               3,  80, 14,  12,  12},
    {IdCpuBorder,         ColorWell,    L"",                                               3, 120, 14,  12,  12},
    {IdCpuIconSample,     Sample,       L"",                                               3, 222, 12,  16,  16},
    {NoId,                Label,        L"Refresco",                                       3,   6, 32,  34,  10},
    {IdCpuRefresh,        Combo,        L"",                                               3,  40, 30,  90,  80},

    {IdCpuGraphTitle,     SectionTitle, L"Gráfica de CPU (clic en el icono de CPU)",       4,   4,  1, 240,  12},
    {NoId,                Label,        L"Fondo",                                          5,   6,  2,  28,  10},
    {IdCpuGraphBg,        ColorWell,    L"",                                               5,  36,  0,  12,  12},
    {NoId,                Label,        L"Transparencia",                                  5,  56,  2,  48,  10},
    {IdCpuOpacity,        Combo,        L"",                                               5, 104,  0,  62, 100},
    {NoId,                Label,        L"Margen",                                         5, 172,  2,  28,  10},
    {IdCpuMargin,         Combo,        L"",                                               5, 200,  0,  42, 120},
    {NoId,                Label,        L"Estilo",                                         5,   6, 17,  28,  10},
    {IdCpuLines,          CheckBox,     L"Líneas",                                         5,  36, 16,  40,  10},
    {IdCpuPerCore,        CheckBox,     L"Por núcleo",                                     5,  86, 16,  60,  10},
    {NoId,                Label,        L"Suavizado",                                      6,   6,  2,  34,  10},
    {IdCpuSmoothing,      Combo,        L"",                                               6,  42,  0,  64,  80},
    {NoId,                Label,        L"Relleno",                                        6, 116,  2,  30,  10},
    {IdCpuFill,           Combo,        L"",                                               6, 148,  0,  60,  80},
    {NoId,                Label,        L"Fuente",                                         7,   6,  2,  28,  10},
    {IdCpuFont,           FontCombo,    L"",                                               7,  36,  0, 124, 120},
    {IdCpuFontSize,       Combo,        L"",                                               7, 164,  0,  30, 100},
    {IdCpuFontBold,       CheckBox,     L"Negrita",                                        7, 200,  1,  42,  10},
    {NoId,                Label,        L"Ventana",                                        7,   6, 25,  28,  10},
    {IdCpuTopmost,        CheckBox,     L"Siempre encima",                                 7,  36, 24,  70,  10},
    {NoId,                Label,        L"Muestra",                                        7,   6, 41,  30,  10},
    {IdCpuGraphSample,    Sample,       L"",                                               7,  36, 39, 206,  46},
    {NoId,                ColumnHead,   L"Gráfica",                                        7, 140, 15,  34,  10},
    {IdCpuGraphFg,        ColorWell,    L"",                                               7, 151, 25,  12,  12},
    {NoId,                ColumnHead,   L"Rendim.",                                        7, 174, 15,  34,  10},
    {IdCpuGraphPerf,      ColorWell,    L"",                                               7, 185, 25,  12,  12},
    {NoId,                ColumnHead,   L"Eficien.",                                       7, 208, 15,  34,  10},
    {IdCpuGraphEff,       ColorWell,    L"",                                               7, 219, 25,  12,  12},

    {IdCpuRestore,        PushButton,   L"Restaurar por defecto",                          8, 112,  2,  84,  13},
    {IdCpuSave,           PushButton,   L"Guardar",                                        8, 200,  2,  42,  13},

    // Disk.
    {IdDiskTitle,         TabTitle,     L"       Disco",                                   9,   0,  2, 248,  20},
    {IdDiskTabIcon,       TabIcon,      L"",                                               9,   5,  0,  10,  10},
    {IdDiskShow,          ShowSwitch,   L"Mostrar",                                        9, 190, -1,  52,  10},

    {IdDiskHardwareTitle, SectionTitle, L"Equipo detectado",                              10,   4,  1, 240,  12},
    {IdDiskHardware,      HardwareText, L"",                                              11,   4,  0, 240,  10},

    {NoId,                ColumnHead,   L"Fondo",                                         12,  30,  3,  30,  10},
    {NoId,                ColumnHead,   L"Lectura",                                       12,  66,  3,  40,  10},
    {NoId,                ColumnHead,   L"Escritura",                                     12, 106,  3,  40,  10},
    {NoId,                ColumnHead,   L"Borde",                                         12, 146,  3,  40,  10},
    {NoId,                Label,        L"Disco",                                         12,   6, 16,  28,  10},
    {IdDiskBg,            ColorWell,    L"",                                              12,  39, 14,  12,  12},
    {IdDiskRead,          ColorWell,    L"",                                              12,  80, 14,  12,  12},
    {IdDiskWrite,         ColorWell,    L"",                                              12, 120, 14,  12,  12},
    {IdDiskBorder,        ColorWell,    L"",                                              12, 160, 14,  12,  12},
    {IdDiskIconSample,    Sample,       L"",                                              12, 222, 12,  16,  16},
    {NoId,                Label,        L"Refresco",                                      12,   6, 32,  34,  10},
    {IdDiskRefresh,       Combo,        L"",                                              12,  40, 30,  90,  80},

    {IdDiskGraphTitle,    SectionTitle, L"Gráfica de disco (clic en el icono de disco)",  13,   4,  1, 240,  12},
    {NoId,                Label,        L"Fondo",                                         14,   6,  2,  28,  10},
    {IdDiskGraphBg,       ColorWell,    L"",                                              14,  36,  0,  12,  12},
    {NoId,                Label,        L"Transparencia",                                 14,  56,  2,  48,  10},
    {IdDiskOpacity,       Combo,        L"",                                              14, 104,  0,  62, 100},
    {NoId,                Label,        L"Margen",                                        14, 172,  2,  28,  10},
    {IdDiskMargin,        Combo,        L"",                                              14, 200,  0,  42, 120},
    {NoId,                Label,        L"Medida",                                        14,   6, 17,  28,  10},
    {IdDiskActivity,      CheckBox,     L"Actividad (%) en vez de velocidad",             14,  36, 16, 140,  10},
    {NoId,                Label,        L"Discos",                                        15,   6,  2,  28,  10},
    {NoId,                Label,        L"Estilo",                                        16,   6,  2,  28,  10},
    {IdDiskLines,         CheckBox,     L"Líneas",                                        16,  36,  1,  40,  10},
    {NoId,                Label,        L"Suavizado",                                     17,   6,  2,  34,  10},
    {IdDiskSmoothing,     Combo,        L"",                                              17,  42,  0,  64,  80},
    {NoId,                Label,        L"Relleno",                                       17, 116,  2,  30,  10},
    {IdDiskFill,          Combo,        L"",                                              17, 148,  0,  60,  80},
    {NoId,                Label,        L"Fuente",                                        18,   6,  2,  28,  10},
    {IdDiskFont,          FontCombo,    L"",                                              18,  36,  0, 124, 120},
    {IdDiskFontSize,      Combo,        L"",                                              18, 164,  0,  30, 100},
    {IdDiskFontBold,      CheckBox,     L"Negrita",                                       18, 200,  1,  42,  10},
    {NoId,                Label,        L"Ventana",                                       18,   6, 25,  28,  10},
    {IdDiskTopmost,       CheckBox,     L"Siempre encima",                                18,  36, 24,  70,  10},
    {NoId,                Label,        L"Muestra",                                       18,   6, 41,  30,  10},
    {IdDiskGraphSample,   Sample,       L"",                                              18,  36, 39, 206,  46},
    {NoId,                ColumnHead,   L"Lectura",                                       18, 174, 15,  34,  10},
    {IdDiskGraphRead,     ColorWell,    L"",                                              18, 185, 25,  12,  12},
    {NoId,                ColumnHead,   L"Escritura",                                     18, 208, 15,  34,  10},
    {IdDiskGraphWrite,    ColorWell,    L"",                                              18, 219, 25,  12,  12},

    {IdDiskRestore,       PushButton,   L"Restaurar por defecto",                         19, 112,  2,  84,  13},
    {IdDiskSave,          PushButton,   L"Guardar",                                       19, 200,  2,  42,  13},

    // Memory.
    {IdMemTitle,          TabTitle,     L"       Memoria",                                20,   0,  2, 248,  20},
    {IdMemTabIcon,        TabIcon,      L"",                                              20,   5,  0,  10,  10},
    {IdMemShow,           ShowSwitch,   L"Mostrar",                                       20, 190, -1,  52,  10},

    {IdMemHardwareTitle,  SectionTitle, L"Equipo detectado",                              21,   4,  1, 240,  12},
    {IdMemHardware,       HardwareText, L"",                                              22,   4,  0, 240,  10},

    {NoId,                ColumnHead,   L"Fondo",                                         23,  52,  3,  30,  10},
    {NoId,                ColumnHead,   L"Texto",                                         23,  97,  3,  30,  10},
    {NoId,                ColumnHead,   L"Borde",                                         23, 142,  3,  30,  10},
    {IdMemBar,            CheckBox,     L"Barra de nivel",                                23, 176,  0,  66,  10},
    {NoId,                Label,        L"Normal",                                        23,   6, 16,  34,  10},
    {IdMemBg,             ColorWell,    L"",                                              23,  61, 14,  12,  12},
    {IdMemText,           ColorWell,    L"",                                              23, 106, 14,  12,  12},
    {IdMemBorder,         ColorWell,    L"",                                              23, 151, 14,  12,  12},
    {IdMemSample,         Sample,       L"",                                              23, 222, 12,  16,  16},
    {NoId,                Label,        L"Desde",                                         23,   6, 30,  22,  10},
    {IdThreshold1,        NumberField,  L"",                                              23,  29, 28,  16,  12},
    {NoId,                Label,        L"%",                                             23,  48, 30,   8,  10},
    {IdMem1Bg,            ColorWell,    L"",                                              23,  61, 28,  12,  12},
    {IdMem1Text,          ColorWell,    L"",                                              23, 106, 28,  12,  12},
    {IdMem1Border,        ColorWell,    L"",                                              23, 151, 28,  12,  12},
    {IdMem1Sample,        Sample,       L"",                                              23, 222, 26,  16,  16},
    {NoId,                Label,        L"Desde",                                         23,   6, 44,  22,  10},
    {IdThreshold2,        NumberField,  L"",                                              23,  29, 42,  16,  12},
    {NoId,                Label,        L"%",                                             23,  48, 44,   8,  10},
    {IdMem2Bg,            ColorWell,    L"",                                              23,  61, 42,  12,  12},
    {IdMem2Text,          ColorWell,    L"",                                              23, 106, 42,  12,  12},
    {IdMem2Border,        ColorWell,    L"",                                              23, 151, 42,  12,  12},
    {IdMem2Sample,        Sample,       L"",                                              23, 222, 40,  16,  16},
    {NoId,                Label,        L"Desde",                                         23,   6, 58,  22,  10},
    {IdThreshold3,        NumberField,  L"",                                              23,  29, 56,  16,  12},
    {NoId,                Label,        L"%",                                             23,  48, 58,   8,  10},
    {IdMem3Bg,            ColorWell,    L"",                                              23,  61, 56,  12,  12},
    {IdMem3Text,          ColorWell,    L"",                                              23, 106, 56,  12,  12},
    {IdMem3Border,        ColorWell,    L"",                                              23, 151, 56,  12,  12},
    {IdMem3Sample,        Sample,       L"",                                              23, 222, 54,  16,  16},
    {NoId,                Label,        L"Fuente",                                        23,   6, 74,  34,  10},
    {IdMemFont,           FontCombo,    L"",                                              23,  40, 72, 124, 120},
    {IdMemFontSize,       Combo,        L"",                                              23, 168, 72,  30, 100},
    {IdMemFontBold,       CheckBox,     L"Negrita",                                       23, 204, 73,  40,  10},
    {NoId,                Label,        L"Refresco",                                      23,   6, 89,  34,  10},
    {IdMemRefresh,        Combo,        L"",                                              23,  40, 87,  90,  80},

    {IdMemRestore,        PushButton,   L"Restaurar por defecto",                         24, 112,  2,  84,  13},
    {IdMemSave,           PushButton,   L"Guardar",                                       24, 200,  2,  42,  13},

    // Network.
    {IdNetTitle,          TabTitle,     L"       Red",                                    25,   0,  2, 248,  20},
    {IdNetTabIcon,        TabIcon,      L"",                                              25,   5,  0,  10,  10},
    {IdNetShow,           ShowSwitch,   L"Mostrar",                                       25, 190, -1,  52,  10},

    {NoId,                ColumnHead,   L"Fondo",                                         26,  30,  3,  30,  10},
    {NoId,                ColumnHead,   L"Bajada",                                        26,  70,  3,  30,  10},
    {NoId,                ColumnHead,   L"Subida",                                        26, 110,  3,  30,  10},
    {NoId,                ColumnHead,   L"Ambas",                                         26, 150,  3,  30,  10},
    {NoId,                ColumnHead,   L"Borde",                                         26, 190,  3,  30,  10},
    {NoId,                Label,        L"Icono",                                         26,   6, 16,  28,  10},
    {IdNetBg,             ColorWell,    L"",                                              26,  39, 14,  12,  12},
    {IdNetDown,           ColorWell,    L"",                                              26,  79, 14,  12,  12},
    {IdNetUp,             ColorWell,    L"",                                              26, 119, 14,  12,  12},
    {IdNetBoth,           ColorWell,    L"",                                              26, 159, 14,  12,  12},
    {IdNetBorder,         ColorWell,    L"",                                              26, 199, 14,  12,  12},
    {IdNetIconSample,     Sample,       L"",                                              26, 222, 12,  16,  16},
    {NoId,                Label,        L"Refresco",                                      26,   6, 32,  34,  10},
    {IdNetRefresh,        Combo,        L"",                                              26,  40, 30,  90,  80},
    {IdNetRefreshNote,    Note,         L"icono y gráfica",                               26, 136, 32,  60,  10},
    {NoId,                Label,        L"Interfaces (con IP ahora mismo)",               26,   6, 48, 160,  10},
    {NoId,                Label,        L"Nº",                                            26,   9, 59,  20,   9},
    {IdInterfaceNames,    Label,        L"Nombre",                                        26,  37, 59,  80,   9},
    {IdInterfaceAddresses,Label,        L"IP",                                            26, 169, 59,  60,   9},
    {IdInterfaces,        InterfaceList,L"",                                              26,   6, 68, 236,  56},
    {IdInterfacesNote,    Note,
     L"Con «Todas las conexiones» marcada no se muestra el resto. Desmárcala para elegir una o varias (se suma su "
     L"tráfico).", 26, 6, 126, 236, 18},

    {IdNetGraphTitle,     SectionTitle, L"Gráfica de red (clic en el icono de red)",      27,   4,  1, 240,  12},
    {NoId,                Label,        L"Fondo",                                         28,   6,  2,  28,  10},
    {IdNetGraphBg,        ColorWell,    L"",                                              28,  36,  0,  12,  12},
    {NoId,                Label,        L"Transparencia",                                 28,  56,  2,  48,  10},
    {IdNetOpacity,        Combo,        L"",                                              28, 104,  0,  62, 100},
    {NoId,                Label,        L"Margen",                                        28, 172,  2,  28,  10},
    {IdNetMargin,         Combo,        L"",                                              28, 200,  0,  42, 120},
    {NoId,                Label,        L"Estilo",                                        28,   6, 17,  28,  10},
    {IdNetLines,          CheckBox,     L"Líneas",                                        28,  36, 16,  40,  10},
    {NoId,                Label,        L"Suavizado",                                     29,   6,  2,  34,  10},
    {IdNetSmoothing,      Combo,        L"",                                              29,  42,  0,  64,  80},
    {NoId,                Label,        L"Relleno",                                       29, 116,  2,  30,  10},
    {IdNetFill,           Combo,        L"",                                              29, 148,  0,  60,  80},
    {NoId,                Label,        L"Fuente",                                        30,   6,  2,  28,  10},
    {IdNetFont,           FontCombo,    L"",                                              30,  36,  0, 124, 120},
    {IdNetFontSize,       Combo,        L"",                                              30, 164,  0,  30, 100},
    {IdNetFontBold,       CheckBox,     L"Negrita",                                       30, 200,  1,  42,  10},
    {NoId,                Label,        L"Ventana",                                       30,   6, 25,  28,  10},
    {IdNetTopmost,        CheckBox,     L"Siempre encima",                                30,  36, 24,  70,  10},
    {NoId,                Label,        L"Muestra",                                       30,   6, 41,  30,  10},
    {IdNetGraphSample,    Sample,       L"",                                              30,  36, 39, 206,  46},
    {NoId,                ColumnHead,   L"Bajada",                                        30, 140, 15,  34,  10},
    {IdNetGraphDown,      ColorWell,    L"",                                              30, 151, 25,  12,  12},
    {NoId,                ColumnHead,   L"Subida",                                        30, 174, 15,  34,  10},
    {IdNetGraphUp,        ColorWell,    L"",                                              30, 185, 25,  12,  12},
    {NoId,                ColumnHead,   L"Ambas",                                         30, 208, 15,  34,  10},
    {IdNetGraphBoth,      ColorWell,    L"",                                              30, 219, 25,  12,  12},

    {IdNetRestore,        PushButton,   L"Restaurar por defecto",                         31, 112,  2,  84,  13},
    {IdNetSave,           PushButton,   L"Guardar",                                       31, 200,  2,  42,  13},

    // General.
    {IdGeneralTitle,      TabTitle,     L"       General",                                32,   0,  2, 248,  20},
    {IdGeneralTabIcon,    TabIcon,      L"",                                              32,   5,  0,  10,  10},

    {NoId,                BoxTitle,     L"Windows",                                       33,   3,  0, 242,  34},
    {IdAutostart,         CheckBox,     L"Iniciar con Windows",                           33,  10, 16, 100,  10},
    {IdAutostartAllUsers, CheckBox,     L"Para todos los usuarios",                       33, 146, 16,  94,  10},

    {IdCheckUpdates,      CheckBox,     L"Comprobar actualizaciones",                     34,   6,  1, 100,  10},
    {NoId,                Note,         L"(avisa; no se instala sola)",                   34, 108,  2, 136,  10},
    {NoId,                Label,        L"Idioma",                                        34,   6, 17,  34,  10},
    {IdLanguage,          Combo,        L"",                                              34,  42, 15,  72,  60},

    {IdGeneralRestore,    PushButton,   L"Restaurar por defecto",                         35, 112,  2,  84,  13},
    {IdGeneralSave,       PushButton,   L"Guardar",                                       35, 200,  2,  42,  13},
}};

// Tab, kind, height. The comments count the groups.
constexpr std::array<DialogGroup, DialogGroupCount> DialogGroups{{
    {SettingsTab::Cpu,     GroupKind::Fixed,         14},  //  0: tab head
    {SettingsTab::Cpu,     GroupKind::Fixed,         15},  //  1: title of the hardware
    {SettingsTab::Cpu,     GroupKind::HardwareText,   0},  //  2: hardware
    {SettingsTab::Cpu,     GroupKind::Fixed,         52},  //  3: icon, refresh
    {SettingsTab::Cpu,     GroupKind::Fixed,         15},  //  4: title of the graph
    {SettingsTab::Cpu,     GroupKind::GraphPanel,    30},  //  5: background, opacity, margin, style
    {SettingsTab::Cpu,     GroupKind::LinesOnly,     15},  //  6: smoothing, fill
    {SettingsTab::Cpu,     GroupKind::GraphPanel,    89},  //  7: font, window, sample
    {SettingsTab::Cpu,     GroupKind::Fixed,         19},  //  8: buttons

    {SettingsTab::Disk,    GroupKind::Fixed,         14},  //  9: tab head
    {SettingsTab::Disk,    GroupKind::Fixed,         15},  // 10: title of the hardware
    {SettingsTab::Disk,    GroupKind::HardwareText,   0},  // 11: hardware
    {SettingsTab::Disk,    GroupKind::Fixed,         52},  // 12: icon, refresh
    {SettingsTab::Disk,    GroupKind::Fixed,         15},  // 13: title of the graph
    {SettingsTab::Disk,    GroupKind::GraphPanel,    30},  // 14: background, opacity, margin, measure
    {SettingsTab::Disk,    GroupKind::DiskList,       0},  // 15: disks
    {SettingsTab::Disk,    GroupKind::GraphPanel,    15},  // 16: style
    {SettingsTab::Disk,    GroupKind::LinesOnly,     15},  // 17: smoothing, fill
    {SettingsTab::Disk,    GroupKind::GraphPanel,    89},  // 18: font, window, sample
    {SettingsTab::Disk,    GroupKind::Fixed,         19},  // 19: buttons

    {SettingsTab::Memory,  GroupKind::Fixed,         14},  // 20: tab head
    {SettingsTab::Memory,  GroupKind::Fixed,         15},  // 21: title of the hardware
    {SettingsTab::Memory,  GroupKind::HardwareText,   0},  // 22: hardware
    {SettingsTab::Memory,  GroupKind::Fixed,        102},  // 23: levels, font, refresh
    {SettingsTab::Memory,  GroupKind::Fixed,         19},  // 24: buttons

    {SettingsTab::Network, GroupKind::Fixed,         14},  // 25: tab head
    {SettingsTab::Network, GroupKind::Fixed,        152},  // 26: icon, refresh, interfaces
    {SettingsTab::Network, GroupKind::Fixed,         15},  // 27: title of the graph
    {SettingsTab::Network, GroupKind::GraphPanel,    30},  // 28: background, opacity, margin, style
    {SettingsTab::Network, GroupKind::LinesOnly,     15},  // 29: smoothing, fill
    {SettingsTab::Network, GroupKind::GraphPanel,    89},  // 30: font, window, sample
    {SettingsTab::Network, GroupKind::Fixed,         19},  // 31: buttons

    {SettingsTab::General, GroupKind::Fixed,          8},  // 32: tab head
    {SettingsTab::General, GroupKind::Fixed,         38},  // 33: the box "Windows"
    {SettingsTab::General, GroupKind::Fixed,         29},  // 34: updates, language
    {SettingsTab::General, GroupKind::Fixed,         19},  // 35: buttons
}};
// clang-format on

std::array<std::int32_t, DialogRowCount> ControlIds() {
    std::array<std::int32_t, DialogRowCount> ids{};
    std::int32_t next = FirstAutomaticId;
    for (std::size_t i = 0; i < ids.size(); ++i)
        ids[i] = DialogRows[i].id == NoId ? next++ : DialogRows[i].id;
    return ids;
}

const wchar_t* TextOf(const DialogRow& row) {
    const wchar_t* text = row.text;
    while (row.type == TabTitle && *text == L' ')
        ++text;
    return text;
}

}  // namespace kestrane
