#include "graph/hover.h"

#include <gtest/gtest.h>

#include <limits>
#include <ostream>
#include <string>
#include <vector>

#include "support/geometry_print.h"
#include "support/graph_series_fixture.h"
#include "text/translation.h"

namespace kestrane {
namespace {

constexpr std::int32_t Lowest = std::numeric_limits<std::int32_t>::min();
constexpr std::int32_t Highest = std::numeric_limits<std::int32_t>::max();
constexpr ColorValue Detail = 0xCFCFCF;
constexpr ColorValue Time = 0x9A9A9A;
using Lines = std::vector<TextLine>;

TEST(HoverColumnIndex, CountsFromTheOldestPoint) {
    struct Row {
        const char* reason;
        std::int32_t x, firstX, lastX;
        std::uint64_t count;
        std::int32_t index;
    };
    const std::vector<Row> rows = {
        {"the newest", 100, 50, 100, 51, 50},
        {"the oldest", 50, 50, 100, 51, 0},
        {"left of the columns", 49, 50, 100, 51, -1},
        {"right of the columns", 101, 50, 100, 51, -1},
        {"no points", 100, 50, 100, 0, -1},
        {"a young graph: a point", 91, 50, 100, 10, 0},
        {"a young graph: before the first point", 90, 50, 100, 10, -1},
        {"more points than columns", 50, 50, 100, 4096, 4045},
        {"no columns", 100, 101, 100, 5, -1},
        {"the ends of the range", Lowest, Lowest, Highest, 5, -1},
    };
    for (const Row& row : rows) {
        EXPECT_EQ(HoverColumnIndex(row.x, row.firstX, row.lastX, row.count), row.index) << row.reason;
    }
}

TEST(SecondsAgo, RoundsToWholeSeconds) {
    struct Row {
        std::uint64_t length;
        std::int64_t index;
        std::uint32_t periodMs;
        std::uint64_t seconds;
    };
    const std::vector<Row> rows = {
        {100, 99, 1500, 0},                                            // 500 / 1000
        {100, 98, 1500, 2},                                            // 2000 / 1000
        {100, 97, 1500, 3},                                            // 3500 / 1000
        {100, 100, 1500, 0},                                           // index out of range
        {100, -1, 1500, 0},                                            //
        {0, 0, 1500, 0},                                               //
        {4096, 0, 10000, 40950}, {4096, 0, 4294967295U, 17587891073},  // beyond 32 bits
        {100, 0, 0, 0},
    };
    for (const Row& row : rows) {
        EXPECT_EQ(SecondsAgo(row.length, row.index, row.periodMs), row.seconds) << row.index << " of " << row.length;
    }
}

TEST(TimeAgoText, SpeaksBothLanguages) {
    EXPECT_EQ(TimeAgoText(100, 97, 1500), L"hace 3 s");
    SetLanguage(ActiveEnglish);
    EXPECT_EQ(TimeAgoText(100, 97, 1500), L"3 s ago");
    SetLanguage(ActiveSpanish);
}

TEST(PlaceHoverBox, StandsAboveAndToTheRightUnlessItWouldNotFit) {
    struct Row {
        const char* reason;
        Point point;
        Rect box;
    };
    // A window of 400 by 150; 2 lines of 15, the widest 100, inset 5: the box is 110 by 40.
    const std::vector<Row> rows = {
        {"above and to the right", {100, 100}, {110, 55, 220, 95}},
        {"the last place at the right", {277, 100}, {287, 55, 397, 95}},
        {"one further: to the left", {278, 100}, {158, 55, 268, 95}},
        {"at the right edge", {399, 100}, {279, 55, 389, 95}},
        {"near the top: held at row 3, over the point", {100, 20}, {110, 3, 220, 43}},
        {"at the last row", {100, 149}, {110, 104, 220, 144}},
        {"below the window: held inside", {100, 400}, {110, 107, 220, 147}},
        {"left of the window: held at column 3", {-50, 100}, {3, 55, 113, 95}},
    };
    const HoverBoxText text = {.lineCount = 2, .lineHeight = 15, .maxWidth = 100, .inset = 5};
    for (const Row& row : rows)
        EXPECT_EQ(PlaceHoverBox(400, 150, row.point, text), row.box) << row.reason;
    EXPECT_EQ(PlaceHoverBox(60, 20, {50, 10}, text), (Rect{3, 3, 113, 43})) << "larger than the window";
}

class PlotReadout : public testing::Test {
  protected:
    GraphView View(GraphKind kind) { return MakeGraphView(kind, settings_, series_); }

    AppSettings settings_ = MakeDefaultSettings();
    MetricRing<std::uint64_t> down_ = RingOf<std::uint64_t>({1000, 2000, 3000});
    MetricRing<std::uint64_t> up_ = RingOf<std::uint64_t>({4000000, 5000000, 6000000});
    MetricRing<double> read_ = RingOf<double>({1024, 2048, 4096});
    MetricRing<double> write_ = RingOf<double>({512, 0, 1048576});
    MetricRing<double> readPercent_ = RingOf<double>({10, 20});
    MetricRing<double> writePercent_ = RingOf<double>({30, 40});
    std::vector<DiskHistory> disks_;
    GraphSeries series_;
};

TEST_F(PlotReadout, NetworkHasTwoSeriesAndATime) {
    series_.primary = RefTo(down_);
    series_.secondary = RefTo(up_);
    series_.periodMs = 1500;
    const Lines expected = {{L"Bajada: 2,0 kbps", ReadableColor(0xFF0000, 0x202020)},
                            {L"Subida: 5,0 Mbps", ReadableColor(0x009D00, 0x202020)},
                            {L"hace 2 s", Time}};
    EXPECT_EQ(PlotReadoutLines(View(GraphKind::Network), series_, 1, L','), expected);
}

TEST_F(PlotReadout, CpuHasOneSeries) {
    series_.primary = RefTo(readPercent_);
    const Lines expected = {{L"CPU: 10 %", ReadableColor(0x007BB7, 0x202020)}, {L"hace 1 s", Time}};
    EXPECT_EQ(PlotReadoutLines(View(GraphKind::Cpu), series_, 1, L','), expected);
}

TEST_F(PlotReadout, TheTimeCountsTheLongerSeries) {
    series_.primary = RefTo(readPercent_);
    series_.secondary = RefTo(write_);
    series_.periodMs = 1500;
    EXPECT_EQ(PlotReadoutLines(View(GraphKind::Disk), series_, 2, L',').back().text, L"hace 3 s");
}

TEST_F(PlotReadout, DiskAddsActivityWhereItHasAny) {
    series_.primary = RefTo(read_);
    series_.secondary = RefTo(write_);
    series_.activityRead = RefTo(readPercent_);
    series_.activityWrite = RefTo(writePercent_);
    const ColorValue read = ReadableColor(0xCE8B00, 0x202020);
    const ColorValue write = ReadableColor(0x167B04, 0x202020);
    const Lines newest = {{L"Lectura: 4 KB/s", read},
                          {L"Escritura: 1 MB/s", write},
                          {L"Actividad: L 20 % · E 40 %", Detail},
                          {L"hace 0 s", Time}};
    EXPECT_EQ(PlotReadoutLines(View(GraphKind::Disk), series_, 0, L','), newest);
    // The activity reaches back only two points.
    const Lines oldest = {{L"Lectura: 1 KB/s", read}, {L"Escritura: 0,5 KB/s", write}, {L"hace 2 s", Time}};
    EXPECT_EQ(PlotReadoutLines(View(GraphKind::Disk), series_, 2, L','), oldest);
    // In activity mode it would repeat the first two lines.
    settings_.activity = true;
    const Lines percent = {{L"Lectura: 20 %", read}, {L"Escritura: 40 %", write}, {L"hace 0 s", Time}};
    EXPECT_EQ(PlotReadoutLines(View(GraphKind::Disk), series_, 0, L','), percent);
}

TEST_F(PlotReadout, SeveralDisksHaveALineEachInBothModes) {
    series_.primary = RefTo(read_);
    series_.secondary = RefTo(write_);
    series_.activityRead = RefTo(readPercent_);
    series_.activityWrite = RefTo(writePercent_);
    series_.disks = &disks_;
    // The first disk's write history has only one point.
    disks_ = {{0, L"0 C:", RingOf<double>({1, 10240}), RingOf<double>({512}, 1)}};
    EXPECT_EQ(PlotReadoutLines(View(GraphKind::Disk), series_, 0, L',').size(), 4U) << "a single disk has none";
    disks_.push_back({1, L"1 D:", RingOf<double>({2048}), RingOf<double>({512})});
    const auto disksOf = [](const Lines& lines) {
        Lines disks;
        for (const TextLine& line : lines) {
            if (line.text.find(L":: ") != std::wstring::npos) disks.push_back(line);
        }
        return disks;
    };
    const Lines newest = {{L"0 C:: L 10 KB/s · E 0,5 KB/s", Detail}, {L"1 D:: L 2 KB/s · E 0,5 KB/s", Detail}};
    EXPECT_EQ(disksOf(PlotReadoutLines(View(GraphKind::Disk), series_, 0, L',')), newest);
    // The second disk has only one point.
    const Lines older = {{L"0 C:: L 0 KB/s · E 0 KB/s", Detail}};
    EXPECT_EQ(disksOf(PlotReadoutLines(View(GraphKind::Disk), series_, 1, L',')), older);
    settings_.activity = true;
    EXPECT_EQ(disksOf(PlotReadoutLines(View(GraphKind::Disk), series_, 0, L',')), newest);
    EXPECT_TRUE(disksOf(PlotReadoutLines(View(GraphKind::Network), series_, 0, L',')).empty());
}

TEST_F(PlotReadout, ASingleDiskHasNoLineOfItsOwnInEitherMode) {
    series_.primary = RefTo(read_);
    series_.secondary = RefTo(write_);
    series_.activityRead = RefTo(readPercent_);
    series_.activityWrite = RefTo(writePercent_);
    series_.disks = &disks_;
    disks_ = {{0, L"0 C:", RingOf<double>({1, 10240}), RingOf<double>({1, 512})}};
    const auto texts = [this] {
        std::vector<std::wstring> shown;
        for (const TextLine& line : PlotReadoutLines(View(GraphKind::Disk), series_, 0, L','))
            shown.push_back(line.text);
        return shown;
    };
    EXPECT_EQ(texts(), (std::vector<std::wstring>{L"Lectura: 4 KB/s", L"Escritura: 1 MB/s",
                                                  L"Actividad: L 20 % · E 40 %", L"hace 0 s"}));
    settings_.activity = true;
    EXPECT_EQ(texts(), (std::vector<std::wstring>{L"Lectura: 20 %", L"Escritura: 40 %", L"hace 0 s"}));
}

TEST_F(PlotReadout, SpeaksEnglish) {
    series_.primary = RefTo(read_);
    series_.secondary = RefTo(write_);
    series_.activityRead = RefTo(readPercent_);
    series_.activityWrite = RefTo(writePercent_);
    disks_ = {{0, L"C:", RingOf<double>({1}), RingOf<double>({})}, {1, L"D:", RingOf<double>({}), RingOf<double>({})}};
    series_.disks = &disks_;
    SetLanguage(ActiveEnglish);
    std::vector<std::wstring> texts;
    for (const TextLine& line : PlotReadoutLines(View(GraphKind::Disk), series_, 0, L'.'))
        texts.push_back(line.text);
    SetLanguage(ActiveSpanish);
    EXPECT_EQ(texts, (std::vector<std::wstring>{L"Read: 4 KB/s", L"Write: 1 MB/s", L"Activity: R 20 % · W 40 %",
                                                L"C:: R 0 KB/s · W 0 KB/s", L"0 s ago"}));
}

TEST(CoreReadoutLines, NameTheThreadAndItsClass) {
    const auto ring = RingOf<double>({10, 20.5, 30});
    const Lines performance = {{L"Hilo 5 (rendimiento): 21 %", ReadableColor(0x007BB7, 0x202020)}, {L"hace 2 s", Time}};
    EXPECT_EQ(CoreReadoutLines(ring, 5, true, 0x007BB7, 1, 1500), performance);
    const Lines efficiency = {{L"Hilo 0 (eficiencia): 30 %", ReadableColor(0x2EBD72, 0x202020)}, {L"hace 0 s", Time}};
    EXPECT_EQ(CoreReadoutLines(ring, 0, false, 0x2EBD72, 0, 1500), efficiency);
    SetLanguage(ActiveEnglish);
    EXPECT_EQ(CoreReadoutLines(ring, 5, true, 0, 0, 1)[0].text, L"Thread 5 (performance): 30 %");
    EXPECT_EQ(CoreReadoutLines(ring, 5, false, 0, 0, 1)[0].text, L"Thread 5 (efficiency): 30 %");
    SetLanguage(ActiveSpanish);
}

}  // namespace
}  // namespace kestrane
