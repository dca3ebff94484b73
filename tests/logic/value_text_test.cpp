#include "metrics/value_text.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <limits>
#include <string>

#include "text/translation.h"

namespace kestrane {
namespace {

constexpr double Infinity = std::numeric_limits<double>::infinity();
constexpr double NotANumber = std::numeric_limits<double>::quiet_NaN();
constexpr std::uint64_t Greatest = std::numeric_limits<std::uint64_t>::max();

class ValueTextTest : public testing::Test {
  protected:
    ~ValueTextTest() override { SetLanguage(ActiveSpanish); }
};

TEST_F(ValueTextTest, BitRateStepsInThousands) {
    struct {
        std::uint64_t bitsPerSec;
        const wchar_t* expected;
    } const cases[] = {
        {0, L"0,0 kbps"},
        {1, L"0,0 kbps"},
        {49, L"0,0 kbps"},
        {50, L"0,1 kbps"},  // 0.05 as a double is above the tie
        {999, L"1,0 kbps"},
        {1000, L"1,0 kbps"},
        {1250, L"1,2 kbps"},  // an exact tie goes to the even digit
        {1350, L"1,4 kbps"},
        {123456, L"123,5 kbps"},
        {999949, L"999,9 kbps"},
        {999950, L"1,0 Mbps"},
        {1000000, L"1,0 Mbps"},
        {54321000, L"54,3 Mbps"},
        {999949999, L"999,9 Mbps"},
        {999950000, L"1,00 Gbps"},
        {1000000000, L"1,00 Gbps"},
        {2500000000, L"2,50 Gbps"},
        {1000000000000, L"1000,00 Gbps"},  // there is no greater unit
        {Greatest, L"18446744073,71 Gbps"},
    };
    for (const auto& row : cases) {
        EXPECT_EQ(FormatBitRate(row.bitsPerSec, L','), row.expected) << row.bitsPerSec;
    }
}

TEST_F(ValueTextTest, BitRateTakesAnyDecimalMark) {
    EXPECT_EQ(FormatBitRate(1500, L'.'), L"1.5 kbps");
    EXPECT_EQ(FormatBitRate(1500, L'\u066B'), L"1\u066B5 kbps");
}

TEST_F(ValueTextTest, ByteRateStepsIn1024) {
    struct {
        double bytesPerSec;
        const wchar_t* expected;
    } const cases[] = {
        {0, L"0 KB/s"},
        {-0.0, L"0 KB/s"},
        {-5, L"0 KB/s"},
        {5e-324, L"0 KB/s"},
        {51, L"0 KB/s"},    // below half a tenth
        {52, L"0,1 KB/s"},  // above it
        {512, L"0,5 KB/s"},
        {1024, L"1 KB/s"},
        {1280, L"1,3 KB/s"},  // 1.25: a half goes away from zero
        {10138, L"9,9 KB/s"},
        {10188, L"9,9 KB/s"},
        {10189, L"10 KB/s"},
        {10752, L"11 KB/s"},  // 10.5: and here too
        {102400, L"100 KB/s"},
        {1023900, L"1000 KB/s"},  // intended: the next unit starts at 999.95
        {1023948, L"1000 KB/s"},
        {999.95 * 1024, L"1 MB/s"},  // exactly
        {1023949, L"1 MB/s"},
        {1048576, L"1 MB/s"},
        {1572864, L"1,5 MB/s"},
        {1048523571, L"1000 MB/s"},
        {999.95 * 1024 * 1024, L"1 GB/s"},  // exactly
        {1048523572, L"1 GB/s"},
        {1073741824, L"1 GB/s"},
        {1099511627776, L"1024 GB/s"},  // there is no greater unit
    };
    for (const auto& row : cases) {
        EXPECT_EQ(FormatByteRate(row.bytesPerSec, L','), row.expected) << row.bytesPerSec;
    }
}

TEST_F(ValueTextTest, ByteRateSurvivesWhatIsNoRate) {
    EXPECT_EQ(FormatByteRate(NotANumber, L','), L"0 KB/s");
    EXPECT_EQ(FormatByteRate(-Infinity, L','), L"0 KB/s");
    EXPECT_EQ(FormatByteRate(-1e300, L','), L"0 KB/s");
    EXPECT_EQ(FormatByteRate(Infinity, L','), L"inf GB/s");
    const std::wstring huge = FormatByteRate(1e300, L',');
    EXPECT_EQ(huge.substr(0, 15), L"931322574615478");
    EXPECT_EQ(huge.size(), 291U + 5U);  // 9.3e290 GB/s
}

TEST_F(ValueTextTest, ByteRateTakesAnyDecimalMark) {
    EXPECT_EQ(FormatByteRate(512, L'.'), L"0.5 KB/s");
    EXPECT_EQ(FormatByteRate(1024, L'.'), L"1 KB/s");
}

// Below ten units there is at most one decimal, and never a zero.
TEST_F(ValueTextTest, ByteRateWritesEveryTenthBelowTen) {
    for (int tenths = 1; tenths < 100; ++tenths) {
        std::wstring expected(1, static_cast<wchar_t>(L'0' + tenths / 10));
        if (tenths % 10 != 0) {
            expected += L',';
            expected += static_cast<wchar_t>(L'0' + tenths % 10);
        }
        EXPECT_EQ(FormatByteRate(tenths * 102.4, L','), expected + L" KB/s");
    }
}

TEST_F(ValueTextTest, PercentIsWholeAndClamped) {
    struct {
        double value;
        const wchar_t* expected;
    } const cases[] = {
        {0, L"0 %"},          {-0.0, L"0 %"},
        {0.49, L"0 %"},       {0.49999999999999994, L"0 %"},  // adding a half to this one would give 1
        {0.5, L"1 %"},        {1, L"1 %"},
        {2.5, L"3 %"},  // a half goes away from zero
        {49.5, L"50 %"},      {99, L"99 %"},
        {99.49, L"99 %"},     {99.5, L"100 %"},
        {100, L"100 %"},      {101, L"100 %"},
        {140, L"100 %"},      {1e300, L"100 %"},
        {-1, L"0 %"},         {-1e300, L"0 %"},
        {Infinity, L"100 %"}, {-Infinity, L"0 %"},
        {NotANumber, L"0 %"},
    };
    for (const auto& row : cases) {
        EXPECT_EQ(FormatPercentText(row.value), row.expected) << row.value;
    }
}

TEST_F(ValueTextTest, GigabytesHaveOneDecimal) {
    struct {
        std::uint64_t bytes;
        const wchar_t* separator;
        const wchar_t* expected;
    } const cases[] = {
        {0, L",", L"0,0"},
        {1610612736, L",", L"1,5"},
        {1610612736, L".", L"1.5"},
        {1610612736, L"::", L"1::5"},               // a separator may be longer than one character
        {1610612736, L"..", L"1..5"},               //
        {1342177280, L",", L"1,2"},                 // 1.25: an exact tie goes to the even digit
        {53687091, L",", L"0,0"},                   // just below 0.05
        {53687092, L",", L"0,1"},                   // just above it
        {17179869184, L",", L"16,0"},               //
        {17095983104, L",", L"15,9"},               //
        {1099511627776, L",", L"1024,0"},           // there is no greater unit
        {Greatest, L",", L"17179869184,0"},         //
        {Greatest / 2 + 1, L",", L"8589934592,0"},  //
    };
    for (const auto& row : cases) {
        EXPECT_EQ(FormatGigabytesWith(row.bytes, row.separator), row.expected) << row.bytes;
    }
}

TEST_F(ValueTextTest, CpuTooltipIsTheSameInBothLanguages) {
    MetricSample sample;
    EXPECT_EQ(CpuTooltipText(sample), L"CPU: 0 %");
    sample.cpuPercent = 100;
    EXPECT_EQ(CpuTooltipText(sample), L"CPU: 100 %");
    SetLanguage(ActiveEnglish);
    EXPECT_EQ(CpuTooltipText(sample), L"CPU: 100 %");
}

MetricSample BusyDiskSample() {
    MetricSample sample;
    sample.diskValid = true;
    sample.diskReadPercent = 12;
    sample.diskWritePercent = 7;
    return sample;
}

// The percentages come from the sample and the speeds from the totals.
TEST_F(ValueTextTest, DiskTooltipJoinsBusiestDiskAndChosenDisks) {
    const MetricSample sample = BusyDiskSample();
    const DiskTotals totals{.readBytes = 1572864, .writeBytes = 512, .readPercent = 99, .writePercent = 98};
    EXPECT_EQ(DiskTooltipText(sample, totals, L','), L"Disco  L: 12 % \u00B7 1,5 MB/s  E: 7 % \u00B7 0,5 KB/s");
    SetLanguage(ActiveEnglish);
    EXPECT_EQ(DiskTooltipText(sample, totals, L'.'), L"Disk  R: 12 % \u00B7 1.5 MB/s  W: 7 % \u00B7 0.5 KB/s");
}

// The decimal mark is the caller's, whatever the language.
TEST_F(ValueTextTest, DiskTooltipTakesTheDecimalMarkAsGiven) {
    SetLanguage(ActiveEnglish);
    const DiskTotals totals{.readBytes = 512};
    EXPECT_EQ(DiskTooltipText(BusyDiskSample(), totals, L','), L"Disk  R: 12 % \u00B7 0,5 KB/s  W: 7 % \u00B7 0 KB/s");
}

TEST_F(ValueTextTest, DiskTooltipSaysWhenThereIsNoData) {
    MetricSample sample = BusyDiskSample();
    sample.diskValid = false;
    EXPECT_EQ(DiskTooltipText(sample, {}, L','), L"Disco: sin datos (PDH)");
    SetLanguage(ActiveEnglish);
    EXPECT_EQ(DiskTooltipText(sample, {}, L','), L"Disk: no data (PDH)");
}

TEST_F(ValueTextTest, DiskTooltipSurvivesWhatIsNoRate) {
    const DiskTotals totals{.readBytes = NotANumber, .writeBytes = -1};
    EXPECT_EQ(DiskTooltipText(BusyDiskSample(), totals, L','), L"Disco  L: 12 % \u00B7 0 KB/s  E: 7 % \u00B7 0 KB/s");
}

MetricSample MemoryOf(std::uint32_t percent, std::uint64_t total, std::uint64_t available) {
    MetricSample sample;
    sample.memoryPercent = percent;
    sample.memoryTotalBytes = total;
    sample.memoryAvailableBytes = available;
    return sample;
}

TEST_F(ValueTextTest, MemoryTooltipShowsWhatIsInUse) {
    constexpr std::uint64_t Gigabyte = std::uint64_t{1} << 30;
    const MetricSample sample = MemoryOf(62, 16 * Gigabyte, 6 * Gigabyte + Gigabyte / 2);
    EXPECT_EQ(MemoryTooltipTextWith(sample, L","), L"Memoria: 62 % (9,5 / 16,0 GB)");
    EXPECT_EQ(MemoryTooltipTextWith(sample, L"."), L"Memoria: 62 % (9.5 / 16.0 GB)");
    SetLanguage(ActiveEnglish);
    EXPECT_EQ(MemoryTooltipTextWith(sample, L","), L"Memory: 62 % (9,5 / 16,0 GB)");
}

TEST_F(ValueTextTest, MemoryTooltipNeverGoesBelowZero) {
    EXPECT_EQ(MemoryTooltipTextWith(MemoryOf(0, 0, 0), L","), L"Memoria: 0 % (0,0 / 0,0 GB)");
    EXPECT_EQ(MemoryTooltipTextWith(MemoryOf(3, 1 << 30, 1 << 30), L","), L"Memoria: 3 % (0,0 / 1,0 GB)");
    EXPECT_EQ(MemoryTooltipTextWith(MemoryOf(3, 1 << 30, Greatest), L","), L"Memoria: 3 % (0,0 / 1,0 GB)");
}

TEST_F(ValueTextTest, NetTooltipHasThreeForms) {
    EXPECT_EQ(NetTooltipText(L"Wi-Fi", true, true, 1500, 999950, L','), L"Wi-Fi\nBajada: 1,5 kbps  Subida: 1,0 Mbps");
    EXPECT_EQ(NetTooltipText(L"Wi-Fi", false, true, 1500, 999950, L','), L"Wi-Fi");
    EXPECT_EQ(NetTooltipText(L"Wi-Fi", true, false, 1500, 999950, L','), L"Wi-Fi: desconectada");
    EXPECT_EQ(NetTooltipText(L"Wi-Fi", false, false, 1500, 999950, L','), L"Wi-Fi: desconectada");
    SetLanguage(ActiveEnglish);
    EXPECT_EQ(NetTooltipText(L"Wi-Fi", true, true, 1500, 999950, L'.'), L"Wi-Fi\nDown: 1.5 kbps  Up: 1.0 Mbps");
    EXPECT_EQ(NetTooltipText(L"Wi-Fi", false, true, 1500, 999950, L'.'), L"Wi-Fi");
    EXPECT_EQ(NetTooltipText(L"Wi-Fi", false, false, 1500, 999950, L'.'), L"Wi-Fi: disconnected");
}

// What a caller passes instead of an empty label.
TEST_F(ValueTextTest, NetTooltipOfANamelessConnection) {
    EXPECT_EQ(NetTooltipText(Tr(L"Red"), false, false, 0, 0, L','), L"Red: desconectada");
    SetLanguage(ActiveEnglish);
    EXPECT_EQ(NetTooltipText(Tr(L"Red"), false, false, 0, 0, L','), L"Network: disconnected");
}

// A label comes from the system or the user, and "Red" alone is also a text of the table.
TEST_F(ValueTextTest, NetTooltipLeavesTheLabelAsItIs) {
    SetLanguage(ActiveEnglish);
    EXPECT_EQ(NetTooltipText(L"Red", false, true, 0, 0, L','), L"Red");
    EXPECT_EQ(NetTooltipText(L"{0}", false, false, 0, 0, L','), L"{0}: disconnected");
    const std::wstring label(300, L'x');
    EXPECT_EQ(NetTooltipText(label, true, true, 0, 0, L','), label + L"\nDown: 0,0 kbps  Up: 0,0 kbps");
}

}  // namespace
}  // namespace kestrane
