#include "dialog/page_edits.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <limits>
#include <string>
#include <vector>

namespace kestrane {
namespace {

constexpr std::int32_t Lowest = std::numeric_limits<std::int32_t>::min();
constexpr std::int32_t Highest = std::numeric_limits<std::int32_t>::max();

using Thresholds = std::array<std::int32_t, 3>;

TEST(ParseThresholds, TakesThreeAscendingPercentages) {
    struct Row {
        const char* reason;
        std::array<std::wstring, 3> texts;
        std::optional<Thresholds> thresholds;
    };
    const std::vector<Row> rows = {
        {"the defaults", {L"50", L"75", L"90"}, Thresholds{50, 75, 90}},
        {"the lowest", {L"1", L"2", L"3"}, Thresholds{1, 2, 3}},
        {"the highest", {L"98", L"99", L"100"}, Thresholds{98, 99, 100}},
        {"leading zeros", {L"001", L"02", L"100"}, Thresholds{1, 2, 100}},
        {"out of order, while the user types", {L"50", L"7", L"90"}, {}},
        {"two equal", {L"50", L"50", L"90"}, {}},
        {"the last two equal", {L"50", L"90", L"90"}, {}},
        {"an empty field", {L"50", L"", L"90"}, {}},
        {"zero", {L"0", L"10", L"20"}, {}},
        {"above 100", {L"10", L"20", L"101"}, {}},
        {"four digits", {L"10", L"20", L"0030"}, {}},
        {"a sign", {L"+10", L"20", L"30"}, {}},
        {"a blank", {L"10", L"20 ", L"30"}, {}},
        {"a letter", {L"10", L"20", L"3o"}, {}},
        {"digits of another script", {L"10", L"20", L"\u0663\u0660"}, {}},
    };
    for (const Row& row : rows)
        EXPECT_EQ(ParseThresholds(row.texts), row.thresholds) << row.reason;
}

TEST(DisksOfBoxes, TakesTheTickedOnesInTheOrderOfTheBoxes) {
    struct Row {
        const char* reason;
        std::vector<DiskBox> boxes;
        std::vector<std::int32_t> disks;
    };
    const std::vector<Row> rows = {
        {"no disk", {}, {}},
        {"none ticked, which stands for all", {{0, false}, {1, false}}, {}},
        {"one", {{0, false}, {1, true}}, {1}},
        {"not sorted by number", {{5, true}, {2, true}, {3, false}, {0, true}}, {5, 2, 0}},
        {"the highest that can be stored", {{63, true}}, {63}},
        {"beyond it", {{64, true}, {1, true}, {Highest, true}}, {1}},
        {"below zero", {{-1, true}, {1, true}, {Lowest, true}}, {1}},
        {"one twice", {{1, true}, {2, true}, {1, true}}, {1, 2}},
    };
    for (const Row& row : rows)
        EXPECT_EQ(DisksOfBoxes(row.boxes), row.disks) << row.reason;
}

TEST(IsDiskTicked, IfItIsChosenByItsNumber) {
    AppSettings settings = MakeDefaultSettings();
    EXPECT_FALSE(IsDiskTicked(settings, 0)) << "all are chosen, and none by its number";
    settings.disks = {3, 0};
    EXPECT_TRUE(IsDiskTicked(settings, 0));
    EXPECT_FALSE(IsDiskTicked(settings, 1));
    EXPECT_TRUE(IsDiskTicked(settings, 3));
}

TEST(DisksOfBoxes, ForgetsADiskWithoutABoxAtTheFirstChange) {
    AppSettings settings = MakeDefaultSettings();
    settings.disks = {7, 1};  // disk 7 has been removed from the machine
    std::vector<DiskBox> boxes;
    for (const std::int32_t number : {0, 1, 2})
        boxes.push_back({number, IsDiskTicked(settings, number)});
    boxes[2].ticked = true;
    EXPECT_EQ(DisksOfBoxes(boxes), (std::vector<std::int32_t>{1, 2}));
}

TEST(ApplyFont, WritesAllThreeAndKeepsWhatNoControlShows) {
    struct Font {
        std::wstring name;
        std::int32_t size;
        bool bold;
        bool operator==(const Font&) const = default;
    };
    struct Row {
        const char* reason;
        FontEdit edit;
        Font font;
    };
    const std::wstring longest(31, L'A');
    const std::vector<Row> rows = {
        {"all three", {L"Arial", 0, false}, {L"Arial", 6, false}},
        {"the largest size", {L"Arial", 26, true}, {L"Arial", 32, true}},
        {"a size beyond the choices", {L"Arial", 27, true}, {L"Arial", 32, true}},
        {"a size far beyond", {L"Arial", Highest, true}, {L"Arial", 32, true}},
        {"no size", {L"Arial", -1, true}, {L"Arial", 13, true}},
        {"a size far below", {L"Arial", Lowest, true}, {L"Arial", 13, true}},
        {"no name", {L"", 4, true}, {L"Tahoma", 10, true}},
        {"the longest name", {longest, 4, true}, {longest, 10, true}},
        {"a name that is too long", {longest + L"A", 4, false}, {L"Tahoma", 10, false}},
    };
    for (const Row& row : rows) {
        Font font{L"Tahoma", 13, true};
        ApplyFont(row.edit, font.name, font.size, font.bold);
        EXPECT_EQ(font, row.font) << row.reason << ": " << font.size;
    }
}

TEST(FontSizeChoiceIndex, IsThatOfTheNearestSize) {
    const std::vector<std::pair<std::int32_t, std::int32_t>> rows = {{Lowest, 0}, {5, 0},   {6, 0},   {7, 1},
                                                                     {31, 25},    {32, 26}, {33, 26}, {Highest, 26}};
    for (const auto& [size, index] : rows)
        EXPECT_EQ(FontSizeChoiceIndex(size), index) << size;
}

TEST(ApplyPeriod, ChangesTheMetricOrKeepsItsPeriod) {
    for (const MetricKind metric : MetricKinds) {
        AppSettings settings = MakeDefaultSettings();
        AppSettings expected = settings;
        expected.refresh_ms.at(IndexOf(metric)) = 10000;
        EXPECT_TRUE(ApplyPeriod(settings, metric, 5));
        EXPECT_EQ(settings, expected);
        for (const std::int32_t index : {-1, 6, Lowest, Highest}) {
            EXPECT_FALSE(ApplyPeriod(settings, metric, index));
            EXPECT_EQ(settings, expected) << index;
        }
        EXPECT_TRUE(ApplyPeriod(settings, metric, 0));
        EXPECT_EQ(settings.refresh_ms.at(IndexOf(metric)), 500U);
    }
}

TEST(ApplyOpacityAndFill, IgnoreAnIndexOutOfRange) {
    struct Row {
        bool (*apply)(GraphSettings&, std::int32_t);
        std::int32_t GraphSettings::*field;
        std::vector<std::int32_t> choices;
    };
    const std::vector<Row> rows = {
        {ApplyOpacity, &GraphSettings::opacity, {100, 90, 80, 70, 60, 50, 40, 30}},
        {ApplyFill, &GraphSettings::fill, {0, 25, 50, 75, 100}},
    };
    for (const Row& row : rows) {
        GraphSettings graph;
        GraphSettings expected;
        for (std::size_t i = 0; i < row.choices.size(); ++i) {
            EXPECT_TRUE(row.apply(graph, static_cast<std::int32_t>(i)));
            expected.*row.field = row.choices[i];
            EXPECT_EQ(graph, expected);
        }
        const auto count = static_cast<std::int32_t>(row.choices.size());
        for (const std::int32_t index : {-1, count, Lowest, Highest}) {
            EXPECT_FALSE(row.apply(graph, index)) << index;
            EXPECT_EQ(graph, expected) << index;
        }
    }
}

}  // namespace
}  // namespace kestrane
