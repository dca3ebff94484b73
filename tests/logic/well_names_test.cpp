#include "dialog/well_names.h"

#include <gtest/gtest.h>

#include <set>
#include <string>
#include <vector>

#include "text/translation.h"

namespace kestrane {
namespace {

constexpr std::array<std::int32_t, 3> Thresholds{60, 80, 95};

class WellNames : public testing::Test {
  protected:
    ~WellNames() override { SetLanguage(ActiveSpanish); }
};

TEST_F(WellNames, AreTheWordsBesideAndAbove) {
    struct Row {
        ColorKey key;
        std::wstring spanish;
        std::wstring english;
    };
    const std::vector<Row> rows = {
        {CpuBg, L"CPU, Fondo", L"CPU, Back"},
        {CpuFg, L"CPU, Gráfica", L"CPU, Graph"},
        {CpuGraphBg, L"Gráfica de CPU, Fondo", L"CPU graph, Back"},
        {CpuBorder, L"CPU, Borde", L"CPU, Border"},
        {CpuGraphFg, L"Gráfica de CPU, Gráfica", L"CPU graph, Graph"},
        {CpuGraphPerf, L"Gráfica de CPU, Rendim.", L"CPU graph, Perf."},
        {CpuGraphEff, L"Gráfica de CPU, Eficien.", L"CPU graph, Effic."},
        {DiskBg, L"Disco, Fondo", L"Disk, Back"},
        {DiskRead, L"Disco, Lectura", L"Disk, Read"},
        {DiskWrite, L"Disco, Escritura", L"Disk, Write"},
        {DiskGraphBg, L"Gráfica de disco, Fondo", L"Disk graph, Back"},
        {DiskBorder, L"Disco, Borde", L"Disk, Border"},
        {DiskGraphRead, L"Gráfica de disco, Lectura", L"Disk graph, Read"},
        {DiskGraphWrite, L"Gráfica de disco, Escritura", L"Disk graph, Write"},
        {MemBg, L"Normal, Fondo", L"Normal, Back"},
        {MemText, L"Normal, Texto", L"Normal, Text"},
        {Mem1Bg, L"Desde 60 %, Fondo", L"From 60 %, Back"},
        {Mem1Text, L"Desde 60 %, Texto", L"From 60 %, Text"},
        {Mem2Bg, L"Desde 80 %, Fondo", L"From 80 %, Back"},
        {Mem2Text, L"Desde 80 %, Texto", L"From 80 %, Text"},
        {Mem3Bg, L"Desde 95 %, Fondo", L"From 95 %, Back"},
        {Mem3Text, L"Desde 95 %, Texto", L"From 95 %, Text"},
        {MemBorder, L"Normal, Borde", L"Normal, Border"},
        {Mem1Border, L"Desde 60 %, Borde", L"From 60 %, Border"},
        {Mem2Border, L"Desde 80 %, Borde", L"From 80 %, Border"},
        {Mem3Border, L"Desde 95 %, Borde", L"From 95 %, Border"},
        {NetBg, L"Icono, Fondo", L"Icon, Back"},
        {NetDown, L"Icono, Bajada", L"Icon, Down"},
        {NetUp, L"Icono, Subida", L"Icon, Up"},
        {NetBoth, L"Icono, Ambas", L"Icon, Both"},
        {NetGraphBg, L"Gráfica de red, Fondo", L"Network graph, Back"},
        {NetBorder, L"Icono, Borde", L"Icon, Border"},
        {NetGraphDown, L"Gráfica de red, Bajada", L"Network graph, Down"},
        {NetGraphUp, L"Gráfica de red, Subida", L"Network graph, Up"},
        {NetGraphBoth, L"Gráfica de red, Ambas", L"Network graph, Both"},
    };
    EXPECT_EQ(rows.size(), ColorCount);
    for (const Row& row : rows) {
        SetLanguage(ActiveSpanish);
        EXPECT_EQ(WellName(row.key, Thresholds), row.spanish);
        SetLanguage(ActiveEnglish);
        EXPECT_EQ(WellName(row.key, Thresholds), row.english);
    }
}

TEST_F(WellNames, NoTwoAreTheSame) {
    for (const std::uint32_t language : {ActiveSpanish, ActiveEnglish}) {
        SetLanguage(language);
        std::set<std::wstring> names;
        for (std::size_t i = 0; i < ColorCount; ++i)
            names.insert(WellName(static_cast<ColorKey>(i), Thresholds));
        EXPECT_EQ(names.size(), ColorCount);
    }
}

}  // namespace
}  // namespace kestrane
