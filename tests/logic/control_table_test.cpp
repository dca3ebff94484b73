// The whole control table, row by row and in order, and what the other code says about its rows.
#include "dialog/control_table.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <set>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "dialog/dialog_panels.h"
#include "text/translation.h"

namespace kestrane {
namespace {

// Id, type: x,y wxh and text; a dash is an automatic id.
constexpr const wchar_t* ExpectedRows =
    LR"rows(
group 0
1201 0: 0,2 248x20 "       CPU"
1091 5: 5,0 10x10
1051 6: 190,-1 52x10 "Mostrar"
group 1
1210 15: 4,1 240x12 "Equipo detectado"
group 2
1213 16: 4,0 240x10
group 3
- 3: 30,3 30x10 "Fondo"
- 3: 66,3 40x10 "Gráfica"
- 3: 106,3 40x10 "Borde"
- 2: 6,16 28x10 "CPU"
1001 7: 39,14 12x12
1002 7: 80,14 12x12
1241 7: 120,14 12x12
1070 8: 222,12 16x16
- 2: 6,32 34x10 "Refresco"
1008 9: 40,30 90x80
group 4
1221 15: 4,1 240x12 "Gráfica de CPU (clic en el icono de CPU)"
group 5
- 2: 6,2 28x10 "Fondo"
1230 7: 36,0 12x12
- 2: 56,2 48x10 "Transparencia"
1231 9: 104,0 62x100
- 2: 172,2 28x10 "Margen"
1232 9: 200,0 42x120
- 2: 6,17 28x10 "Estilo"
1233 11: 36,16 40x10 "Líneas"
1234 11: 86,16 60x10 "Por núcleo"
group 6
- 2: 6,2 34x10 "Suavizado"
1235 9: 42,0 64x80
- 2: 116,2 30x10 "Relleno"
1236 9: 148,0 60x80
group 7
- 2: 6,2 28x10 "Fuente"
1237 10: 36,0 124x120
1238 9: 164,0 30x100
1239 11: 200,1 42x10 "Negrita"
- 2: 6,25 28x10 "Ventana"
1242 11: 36,24 70x10 "Siempre encima"
- 2: 6,41 30x10 "Muestra"
1240 8: 36,39 206x46
- 3: 140,15 34x10 "Gráfica"
1310 7: 151,25 12x12
- 3: 174,15 34x10 "Rendim."
1311 7: 185,25 12x12
- 3: 208,15 34x10 "Eficien."
1312 7: 219,25 12x12
group 8
1009 12: 112,2 84x13 "Restaurar por defecto"
1014 12: 200,2 42x13 "Guardar"
group 9
1202 0: 0,2 248x20 "       Disco"
1095 5: 5,0 10x10
1052 6: 190,-1 52x10 "Mostrar"
group 10
1211 15: 4,1 240x12 "Equipo detectado"
group 11
1214 16: 4,0 240x10
group 12
- 3: 30,3 30x10 "Fondo"
- 3: 66,3 40x10 "Lectura"
- 3: 106,3 40x10 "Escritura"
- 3: 146,3 40x10 "Borde"
- 2: 6,16 28x10 "Disco"
1003 7: 39,14 12x12
1004 7: 80,14 12x12
1005 7: 120,14 12x12
1265 7: 160,14 12x12
1071 8: 222,12 16x16
- 2: 6,32 34x10 "Refresco"
1250 9: 40,30 90x80
group 13
1222 15: 4,1 240x12 "Gráfica de disco (clic en el icono de disco)"
group 14
- 2: 6,2 28x10 "Fondo"
1253 7: 36,0 12x12
- 2: 56,2 48x10 "Transparencia"
1254 9: 104,0 62x100
- 2: 172,2 28x10 "Margen"
1255 9: 200,0 42x120
- 2: 6,17 28x10 "Medida"
1256 11: 36,16 140x10 "Actividad (%) en vez de velocidad"
group 15
- 2: 6,2 28x10 "Discos"
group 16
- 2: 6,2 28x10 "Estilo"
1257 11: 36,1 40x10 "Líneas"
group 17
- 2: 6,2 34x10 "Suavizado"
1258 9: 42,0 64x80
- 2: 116,2 30x10 "Relleno"
1259 9: 148,0 60x80
group 18
- 2: 6,2 28x10 "Fuente"
1260 10: 36,0 124x120
1261 9: 164,0 30x100
1262 11: 200,1 42x10 "Negrita"
- 2: 6,25 28x10 "Ventana"
1266 11: 36,24 70x10 "Siempre encima"
- 2: 6,41 30x10 "Muestra"
1263 8: 36,39 206x46
- 3: 174,15 34x10 "Lectura"
1313 7: 185,25 12x12
- 3: 208,15 34x10 "Escritura"
1314 7: 219,25 12x12
group 19
1251 12: 112,2 84x13 "Restaurar por defecto"
1252 12: 200,2 42x13 "Guardar"
group 20
1203 0: 0,2 248x20 "       Memoria"
1092 5: 5,0 10x10
1053 6: 190,-1 52x10 "Mostrar"
group 21
1212 15: 4,1 240x12 "Equipo detectado"
group 22
1215 16: 4,0 240x10
group 23
- 3: 52,3 30x10 "Fondo"
- 3: 97,3 30x10 "Texto"
- 3: 142,3 30x10 "Borde"
1068 11: 176,0 66x10 "Barra de nivel"
- 2: 6,16 34x10 "Normal"
1010 7: 61,14 12x12
1020 7: 106,14 12x12
1024 7: 151,14 12x12
1030 8: 222,12 16x16
- 2: 6,30 22x10 "Desde"
1041 13: 29,28 16x12
- 2: 48,30 8x10 "%"
1011 7: 61,28 12x12
1021 7: 106,28 12x12
1025 7: 151,28 12x12
1031 8: 222,26 16x16
- 2: 6,44 22x10 "Desde"
1042 13: 29,42 16x12
- 2: 48,44 8x10 "%"
1012 7: 61,42 12x12
1022 7: 106,42 12x12
1026 7: 151,42 12x12
1032 8: 222,40 16x16
- 2: 6,58 22x10 "Desde"
1043 13: 29,56 16x12
- 2: 48,58 8x10 "%"
1013 7: 61,56 12x12
1023 7: 106,56 12x12
1027 7: 151,56 12x12
1033 8: 222,54 16x16
- 2: 6,74 34x10 "Fuente"
1065 10: 40,72 124x120
1066 9: 168,72 30x100
1067 11: 204,73 40x10 "Negrita"
- 2: 6,89 34x10 "Refresco"
1015 9: 40,87 90x80
group 24
1016 12: 112,2 84x13 "Restaurar por defecto"
1017 12: 200,2 42x13 "Guardar"
group 25
1204 0: 0,2 248x20 "       Red"
1094 5: 5,0 10x10
1054 6: 190,-1 52x10 "Mostrar"
group 26
- 3: 30,3 30x10 "Fondo"
- 3: 70,3 30x10 "Bajada"
- 3: 110,3 30x10 "Subida"
- 3: 150,3 30x10 "Ambas"
- 3: 190,3 30x10 "Borde"
- 2: 6,16 28x10 "Icono"
1101 7: 39,14 12x12
1102 7: 79,14 12x12
1103 7: 119,14 12x12
1104 7: 159,14 12x12
1115 7: 199,14 12x12
1072 8: 222,12 16x16
- 2: 6,32 34x10 "Refresco"
1106 9: 40,30 90x80
1083 4: 136,32 60x10 "icono y gráfica"
- 2: 6,48 160x10 "Interfaces (con IP ahora mismo)"
- 2: 9,59 20x9 "Nº"
1125 2: 37,59 80x9 "Nombre"
1126 2: 169,59 60x9 "IP"
1107 14: 6,68 236x56
1082 4: 6,126 236x18 "Con «Todas las conexiones» marcada no se muestra el resto. Desmárcala para elegir una o varias (se suma su tráfico)."
group 27
1220 15: 4,1 240x12 "Gráfica de red (clic en el icono de red)"
group 28
- 2: 6,2 28x10 "Fondo"
1105 7: 36,0 12x12
- 2: 56,2 48x10 "Transparencia"
1108 9: 104,0 62x100
- 2: 172,2 28x10 "Margen"
1109 9: 200,0 42x120
- 2: 6,17 28x10 "Estilo"
1116 11: 36,16 40x10 "Líneas"
group 29
- 2: 6,2 34x10 "Suavizado"
1117 9: 42,0 64x80
- 2: 116,2 30x10 "Relleno"
1118 9: 148,0 60x80
group 30
- 2: 6,2 28x10 "Fuente"
1110 10: 36,0 124x120
1111 9: 164,0 30x100
1112 11: 200,1 42x10 "Negrita"
- 2: 6,25 28x10 "Ventana"
1119 11: 36,24 70x10 "Siempre encima"
- 2: 6,41 30x10 "Muestra"
1073 8: 36,39 206x46
- 3: 140,15 34x10 "Bajada"
1315 7: 151,25 12x12
- 3: 174,15 34x10 "Subida"
1316 7: 185,25 12x12
- 3: 208,15 34x10 "Ambas"
1317 7: 219,25 12x12
group 31
1113 12: 112,2 84x13 "Restaurar por defecto"
1114 12: 200,2 42x13 "Guardar"
group 32
1205 0: 0,2 248x20 "       General"
1093 5: 5,0 10x10
group 33
- 1: 3,0 242x34 "Windows"
1060 11: 10,16 100x10 "Iniciar con Windows"
1063 11: 146,16 94x10 "Para todos los usuarios"
group 34
1062 11: 6,1 100x10 "Comprobar actualizaciones"
- 4: 108,2 136x10 "(avisa; no se instala sola)"
- 2: 6,17 34x10 "Idioma"
1061 9: 42,15 72x60
group 35
1064 12: 112,2 84x13 "Restaurar por defecto"
1069 12: 200,2 42x13 "Guardar"
)rows";

std::vector<std::wstring> LinesOf(const std::wstring& text) {
    std::vector<std::wstring> lines;
    for (std::size_t start = text.find_first_not_of(L'\n'); start < text.size();) {
        const std::size_t end = std::min(text.find(L'\n', start), text.size());
        lines.push_back(text.substr(start, end - start));
        start = end + 1;
    }
    return lines;
}

std::wstring LineOf(const DialogRow& row) {
    std::wstring line = row.id == NoId ? L"-" : std::to_wstring(row.id);
    line += L" " + std::to_wstring(static_cast<std::int32_t>(row.type)) + L": ";
    line += std::to_wstring(row.x) + L"," + std::to_wstring(row.y) + L" ";
    line += std::to_wstring(row.w) + L"x" + std::to_wstring(row.h);
    if (*row.text != L'\0') line += L" \"" + std::wstring(row.text) + L"\"";
    return line;
}

const DialogRow* FindRow(std::int32_t id) {
    const auto* const row = std::ranges::find(DialogRows, id, &DialogRow::id);
    return row == DialogRows.end() ? nullptr : row;
}

SettingsTab TabOf(const DialogRow& row) {
    return DialogGroups.at(static_cast<std::size_t>(row.group)).tab;
}

TEST(DialogRows, AreTheseInThisOrder) {
    std::vector<std::wstring> lines;
    std::int32_t group = -1;
    for (const DialogRow& row : DialogRows) {
        if (row.group != group) lines.push_back(L"group " + std::to_wstring(row.group));
        group = row.group;
        lines.push_back(LineOf(row));
    }
    const std::vector<std::wstring> expected = LinesOf(ExpectedRows);
    ASSERT_EQ(lines.size(), expected.size());
    for (std::size_t i = 0; i < lines.size(); ++i)
        EXPECT_EQ(lines[i], expected[i]) << "line " << i + 1;
}

TEST(DialogGroups, AreTheseInThisOrder) {
    const std::wstring expected =
        LR"(
0 CPU 0 14
1 CPU 0 15
2 CPU 1 0
3 CPU 0 52
4 CPU 0 15
5 CPU 2 30
6 CPU 3 15
7 CPU 2 89
8 CPU 0 19
9 Disco 0 14
10 Disco 0 15
11 Disco 1 0
12 Disco 0 52
13 Disco 0 15
14 Disco 2 30
15 Disco 4 0
16 Disco 2 15
17 Disco 3 15
18 Disco 2 89
19 Disco 0 19
20 Memoria 0 14
21 Memoria 0 15
22 Memoria 1 0
23 Memoria 0 102
24 Memoria 0 19
25 Red 0 14
26 Red 0 152
27 Red 0 15
28 Red 2 30
29 Red 3 15
30 Red 2 89
31 Red 0 19
32 General 0 8
33 General 0 38
34 General 0 29
35 General 0 19
)";
    std::vector<std::wstring> lines;
    for (const DialogGroup& group : DialogGroups) {
        lines.push_back(std::to_wstring(lines.size()) + L" " + DialogTabs.at(IndexOf(group.tab)).text + L" " +
                        std::to_wstring(static_cast<std::int32_t>(group.kind)) + L" " + std::to_wstring(group.height));
    }
    EXPECT_EQ(lines, LinesOf(expected));
}

TEST(ControlClasses, AreTheseByType) {
    const std::vector<ControlClass> expected = {
        {L"STATIC", 0x40000081, true},     // tab title
        {L"STATIC", 0x40000081, true},     // box title
        {L"STATIC", 0x40000080, false},    // label
        {L"STATIC", 0x40000081, false},    // column head
        {L"STATIC", 0x40000080, false},    // note
        {L"STATIC", 0x40000203, false},    // tab icon
        {L"BUTTON", 0x4001000B, false},    // switch
        {L"BUTTON", 0x4001000B, false},    // colour well
        {L"STATIC", 0x4000000D, false},    // sample
        {L"COMBOBOX", 0x40210003, false},  // list
        {L"COMBOBOX", 0x40210003, false},  // list of fonts
        {L"BUTTON", 0x40010003, false},    // check box
        {L"BUTTON", 0x40010000, false},    // push button
        {L"EDIT", 0x40812082, false},      // number
        {L"LISTBOX", 0x40A10151, false},   // interfaces
        {L"BUTTON", 0x4000000B, false},    // section title
        {L"STATIC", 0x4000000D, false},    // hardware
    };
    ASSERT_EQ(ControlClasses.size(), expected.size());
    for (std::size_t type = 0; type < expected.size(); ++type) {
        const ControlClass& actual = ControlClasses.at(type);
        EXPECT_STREQ(actual.name, expected[type].name) << "type " << type;
        EXPECT_EQ(actual.style, expected[type].style) << "type " << type;
        EXPECT_EQ(actual.bold, expected[type].bold) << "type " << type;
    }
    EXPECT_STREQ(TabButtonClass.name, L"BUTTON");
    EXPECT_EQ(TabButtonClass.style, 0x5001000BU);
    EXPECT_STREQ(PageNoteClass.name, L"STATIC");
    EXPECT_EQ(PageNoteClass.style, 0x50000080U);
}

TEST(ControlIds, AutomaticOnesCountUpFrom3000) {
    const auto ids = ControlIds();
    std::int32_t automatic = 3000;
    for (std::size_t i = 0; i < ids.size(); ++i) {
        const std::int32_t expected = DialogRows.at(i).id == 0 ? automatic++ : DialogRows.at(i).id;
        EXPECT_EQ(ids.at(i), expected) << "row " << i;
    }
    EXPECT_EQ(automatic, 3000 + 72);
}

TEST(ControlIds, NoneStandsTwice) {
    const auto ids = ControlIds();
    std::vector<std::int32_t> all(ids.begin(), ids.end());
    for (const DialogTab& tab : DialogTabs)
        all.push_back(tab.button);
    for (const PageNote& note : PageNotes)
        all.push_back(note.id);
    all.push_back(IdAllDisks);
    for (std::int32_t id = IdFirstDisk; id <= IdLastDisk; ++id)
        all.push_back(id);
    std::ranges::sort(all);
    const auto twice = std::ranges::adjacent_find(all);
    EXPECT_EQ(twice, all.end()) << *twice;
    EXPECT_EQ(std::ranges::count(all, IdFirstDisk + 29), 1) << "30 disks have a box";
}

TEST(TextOf, IsTranslatedOrTheSameInBothLanguages) {
    const std::set<std::wstring> sameInBoth = {L"CPU", L"General", L"Normal", L"IP", L"Windows", L"%"};
    std::set<std::wstring> untranslated;
    for (const DialogRow& row : DialogRows) {
        const std::wstring text = TextOf(row);
        if (!text.empty() && FindTranslation(text) == nullptr) untranslated.insert(text);
    }
    EXPECT_EQ(untranslated, sameInBoth);
    for (const PageNote& note : PageNotes)
        EXPECT_NE(FindTranslation(note.text), nullptr);
}

TEST(TextOf, ATabTitleIsTheTabsText) {
    std::vector<std::wstring> titles;
    std::vector<std::wstring> tabs;
    for (const DialogRow& row : DialogRows) {
        if (row.type == ControlType::TabTitle) titles.emplace_back(TextOf(row));
    }
    for (const DialogTab& tab : DialogTabs)
        tabs.emplace_back(tab.text);
    EXPECT_EQ(titles, tabs);
    EXPECT_STREQ(TextOf({NoId, ControlType::TabTitle, L"   ", 0, 0, 0, 0, 0}), L"");
    EXPECT_STREQ(TextOf({NoId, ControlType::Label, L" a", 0, 0, 0, 0, 0}), L" a") << "only titles have blanks";
}

// A control that shows a setting has no text of its own.
TEST(DialogRows, HaveATextUnlessTheyShowASetting) {
    using enum ControlType;
    const std::set<ControlType> silent = {TabIcon,   ColorWell,   Sample,        Combo,
                                          FontCombo, NumberField, InterfaceList, HardwareText};
    for (const DialogRow& row : DialogRows)
        EXPECT_EQ(*row.text == L'\0', silent.contains(row.type)) << row.id;
}

TEST(DialogTabs, AreTheseInThisOrder) {
    struct Row {
        std::int32_t button;
        const wchar_t* text;
        ColorValue accent;
        std::int32_t icon, show, restore, save;
    };
    const std::vector<Row> rows = {
        {1300, L"CPU", 0x1B75BC, 1091, 1051, 1009, 1014},     {1301, L"Disco", 0x4CAF50, 1095, 1052, 1251, 1252},
        {1302, L"Memoria", 0xE0A820, 1092, 1053, 1016, 1017}, {1303, L"Red", 0xE14B4B, 1094, 1054, 1113, 1114},
        {1304, L"General", 0x808080, 1093, 0, 1064, 1069},
    };
    ASSERT_EQ(DialogTabs.size(), rows.size());
    for (std::size_t i = 0; i < rows.size(); ++i) {
        const DialogTab& tab = DialogTabs.at(i);
        EXPECT_EQ(tab.button, rows[i].button);
        EXPECT_STREQ(tab.text, rows[i].text);
        EXPECT_EQ(tab.accent, rows[i].accent) << i;
        EXPECT_EQ(tab.icon, rows[i].icon);
        EXPECT_EQ(tab.show, rows[i].show);
        EXPECT_EQ(tab.restore, rows[i].restore);
        EXPECT_EQ(tab.save, rows[i].save);
        for (const std::int32_t id : {rows[i].icon, rows[i].show, rows[i].restore, rows[i].save}) {
            if (id == 0) continue;
            EXPECT_EQ(IndexOf(TabOf(*FindRow(id))), i) << id;
        }
    }
}

TEST(TabOfNumber, IsCpuBeyondTheLastTab) {
    EXPECT_EQ(TabOfNumber(0), SettingsTab::Cpu);
    EXPECT_EQ(TabOfNumber(4), SettingsTab::General);
    EXPECT_EQ(TabOfNumber(5), SettingsTab::Cpu);
    EXPECT_EQ(TabOfNumber(7), SettingsTab::Cpu);
    EXPECT_EQ(TabOfNumber(0xFFFFFFFF), SettingsTab::Cpu);
}

TEST(HardwarePanels, SpanFromTheirTitleToTheirText) {
    const std::vector<std::vector<std::int32_t>> rows = {
        {1210, 1213, 1, 2}, {1211, 1214, 10, 11}, {1212, 1215, 21, 22}};
    for (std::size_t i = 0; i < HardwareCount; ++i) {
        const HardwarePanel& panel = HardwarePanels.at(i);
        EXPECT_EQ((std::vector<std::int32_t>{panel.title, panel.text, static_cast<std::int32_t>(panel.first_group),
                                             static_cast<std::int32_t>(panel.last_group)}),
                  rows[i]);
        EXPECT_EQ(FindRow(panel.title)->group, rows[i][2]);
        EXPECT_EQ(FindRow(panel.text)->group, rows[i][3]);
        EXPECT_EQ(IndexOf(DialogGroups.at(panel.first_group).tab), i);
        EXPECT_EQ(DialogGroups.at(panel.last_group).kind, GroupKind::HardwareText);
    }
}

TEST(GraphPanels, NameTheirControls) {
    struct Row {
        const char* control;
        std::int32_t (*idOf)(const GraphPanel&);
        ControlType type;
        std::vector<std::int32_t> ids;  // network, CPU, disk
    };
    const std::vector<Row> rows = {
        {"title",
         [](const GraphPanel& p) -> std::int32_t { return p.title; },
         ControlType::SectionTitle,
         {1220, 1221, 1222}},
        {"background",
         [](const GraphPanel& p) -> std::int32_t { return p.background; },
         ControlType::ColorWell,
         {1105, 1230, 1253}},
        {"opacity",
         [](const GraphPanel& p) -> std::int32_t { return p.opacity; },
         ControlType::Combo,
         {1108, 1231, 1254}},
        {"margin",
         [](const GraphPanel& p) -> std::int32_t { return p.margin; },
         ControlType::Combo,
         {1109, 1232, 1255}},
        {"lines",
         [](const GraphPanel& p) -> std::int32_t { return p.lines; },
         ControlType::CheckBox,
         {1116, 1233, 1257}},
        {"smoothing",
         [](const GraphPanel& p) -> std::int32_t { return p.smoothing; },
         ControlType::Combo,
         {1117, 1235, 1258}},
        {"fill", [](const GraphPanel& p) -> std::int32_t { return p.fill; }, ControlType::Combo, {1118, 1236, 1259}},
        {"topmost",
         [](const GraphPanel& p) -> std::int32_t { return p.topmost; },
         ControlType::CheckBox,
         {1119, 1242, 1266}},
        {"font",
         [](const GraphPanel& p) -> std::int32_t { return p.font; },
         ControlType::FontCombo,
         {1110, 1237, 1260}},
        {"size", [](const GraphPanel& p) -> std::int32_t { return p.size; }, ControlType::Combo, {1111, 1238, 1261}},
        {"bold", [](const GraphPanel& p) -> std::int32_t { return p.bold; }, ControlType::CheckBox, {1112, 1239, 1262}},
        {"sample",
         [](const GraphPanel& p) -> std::int32_t { return p.sample; },
         ControlType::Sample,
         {1073, 1240, 1263}},
        {"first group",
         [](const GraphPanel& p) { return static_cast<std::int32_t>(p.first_group); },
         ControlType::TabTitle,
         {27, 4, 13}},
        {"last group",
         [](const GraphPanel& p) { return static_cast<std::int32_t>(p.last_group); },
         ControlType::TabTitle,
         {30, 7, 18}},
        {"tab", [](const GraphPanel& p) { return static_cast<std::int32_t>(p.tab); }, ControlType::TabTitle, {3, 0, 1}},
    };
    for (const Row& row : rows) {
        for (const GraphKind kind : GraphKinds) {
            const GraphPanel& panel = GraphPanels.at(IndexOf(kind));
            const std::int32_t id = row.idOf(panel);
            EXPECT_EQ(id, row.ids[IndexOf(kind)]) << row.control;
            if (id < 1000) continue;
            const DialogRow* control = FindRow(id);
            ASSERT_NE(control, nullptr) << id;
            EXPECT_EQ(control->type, row.type) << id;
            EXPECT_GE(control->group, static_cast<std::int32_t>(panel.first_group)) << id;
            EXPECT_LE(control->group, static_cast<std::int32_t>(panel.last_group)) << id;
        }
    }
}

TEST(ColorWells, EveryColourHasItsOwnOnItsTab) {
    const std::vector<std::pair<const char*, std::int32_t>> keys = {
        {"cpu_bg", 1001},          {"cpu_fg", 1002},           {"cpu_graph_bg", 1230},  {"cpu_border", 1241},
        {"cpu_graph_fg", 1310},    {"cpu_graph_perf", 1311},   {"cpu_graph_eff", 1312}, {"disk_bg", 1003},
        {"disk_read", 1004},       {"disk_write", 1005},       {"disk_graph_bg", 1253}, {"disk_border", 1265},
        {"disk_graph_read", 1313}, {"disk_graph_write", 1314}, {"mem_bg", 1010},        {"mem_text", 1020},
        {"mem1_bg", 1011},         {"mem1_text", 1021},        {"mem2_bg", 1012},       {"mem2_text", 1022},
        {"mem3_bg", 1013},         {"mem3_text", 1023},        {"mem_border", 1024},    {"mem1_border", 1025},
        {"mem2_border", 1026},     {"mem3_border", 1027},      {"net_bg", 1101},        {"net_down", 1102},
        {"net_up", 1103},          {"net_both", 1104},         {"net_graph_bg", 1105},  {"net_border", 1115},
        {"net_graph_down", 1315},  {"net_graph_up", 1316},     {"net_graph_both", 1317}};
    ASSERT_EQ(ColorWells.size(), keys.size());
    for (std::size_t key = 0; key < keys.size(); ++key) {
        const std::string_view name = keys[key].first;
        EXPECT_EQ(std::wstring(IconColors.at(key).key), std::wstring(name.begin(), name.end()));
        EXPECT_EQ(ColorWells.at(key), keys[key].second) << name;
        const DialogRow* well = FindRow(ColorWells.at(key));
        ASSERT_NE(well, nullptr) << name;
        EXPECT_EQ(well->type, ControlType::ColorWell) << name;
        EXPECT_EQ(TabOf(*well), IconColors.at(key).tab) << name;
    }
    EXPECT_EQ(std::ranges::count(DialogRows, ControlType::ColorWell, &DialogRow::type), std::ssize(keys));
}

}  // namespace
}  // namespace kestrane
