// The steps from a canvas to an icon. Calls that create and release GDI objects are counted and failed on demand; text
// metrics and ink are made up, so that this machine's fonts do not matter.
#include <windows.h>

#include "tray/icon_render_win32.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "support/fake_gdi_win32.h"
#include "support/icon_pixels_win32.h"
#include "support/pixel_picture.h"
#include "support/recorded_log.h"
#include "tray/digits.h"
#include "tray/icon_painting.h"

namespace kestrane {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr wchar_t DibMessage[] = L"kestrane: CreateDIBSection ha fallado\n";
constexpr ColorValue Magenta = 0xFF00FF;
constexpr wchar_t IconMessage[] = L"kestrane: CreateIconIndirect ha fallado\n";

class IconRenderTest : public testing::Test {
  protected:
    IconRenderTest() {
        world = {};
        debugLines.clear();
    }
    ~IconRenderTest() override {
        EXPECT_THAT(world.live, IsEmpty()) << "every object is released";
        EXPECT_EQ(world.strayCloses, 0);
    }
};

/// Reads through the real calls, which are not counted.
IconPixels Pixels(const UniqueIcon& icon) {
    const World kept = world;
    IconPixels read = ReadIconPixels(icon.Get());
    world = kept;
    return read;
}

/// The visible pixels, as 0xRRGGBB, of an icon drawn over a background of one colour.
std::vector<std::uint32_t> PixelsOver(ColorValue ground, const UniqueIcon& icon, std::int32_t size) {
    Canvas canvas(size);
    Clear(canvas, ground);
    const Dib screen = CanvasToBitmap(canvas);
    {
        const UniqueMemoryDc dc(CreateCompatibleDC(nullptr));
        const SelectedObject selected(dc.Get(), screen.bitmap.Get());
        EXPECT_TRUE(DrawIconEx(dc.Get(), 0, 0, icon.Get(), size, size, 0, nullptr, DI_NORMAL));
    }
    GdiFlush();
    std::vector<std::uint32_t> seen(screen.pixels, screen.pixels + canvas.pixels.size());
    for (std::uint32_t& pixel : seen)
        pixel &= 0xFFFFFF;
    return seen;
}

/// A canvas in which every pixel differs, including transparent and half transparent ones.
Canvas Motley(std::int32_t size) {
    Canvas canvas(size);
    for (std::size_t i = 0; i < canvas.pixels.size(); ++i) {
        const auto n = static_cast<std::uint32_t>(i);
        canvas.pixels[i] = n % 5 == 0 ? 0 : (0xFF - n % 7 * 20) << 24U | (n * 0x010305 & 0xFFFFFF);
    }
    return canvas;
}

MetricRing<std::int32_t> Percentages() {
    MetricRing<std::int32_t> ring(16);
    for (std::int32_t value = 0; value <= 100; value += 7)
        PushSample(ring, value);
    return ring;
}

MetricRing<std::uint64_t> Rates() {
    MetricRing<std::uint64_t> ring(64);
    for (std::uint64_t value = 0; value <= 30; ++value)
        PushSample(ring, value * value * 100);
    return ring;
}

TEST_F(IconRenderTest, TheSizeIsTheTaskbarsOrElseTheWindows) {
    const auto window = reinterpret_cast<HWND>(0x1234);
    const auto taskbar = reinterpret_cast<HWND>(0x5678);
    struct Row {
        std::optional<HWND> taskbar;
        int smallIcon;
        HWND dpiOf;
        std::uint32_t size;
    };
    const std::vector<Row> rows = {
        {taskbar, 24, taskbar, 24}, {std::nullopt, 24, window, 24}, {taskbar, 1, taskbar, 1},
        {taskbar, 0, taskbar, 16},  {taskbar, -3, taskbar, 16},     {std::nullopt, 0, window, 16},
    };
    for (const Row& row : rows) {
        world.taskbar = row.taskbar;
        world.smallIcon = row.smallIcon;
        EXPECT_EQ(IconPixelSize(window), row.size);
        EXPECT_EQ(world.dpiOf, row.dpiOf);
        EXPECT_EQ(world.metricDpi, 144U);
    }
}

TEST_F(IconRenderTest, TheBitmapHoldsThePixelsAsTheyAre) {
    for (const std::int32_t size : {1, 2, 16, 20, 24, 32, 48}) {
        const Canvas canvas = Motley(size);
        const Dib made = CanvasToBitmap(canvas);
        ASSERT_TRUE(made.bitmap);
        EXPECT_EQ(std::vector<std::uint32_t>(made.pixels, made.pixels + canvas.pixels.size()), canvas.pixels) << size;
        const BITMAPV5HEADER& header = world.lastHeader;
        EXPECT_EQ(header.bV5Size, 124U);
        EXPECT_EQ(header.bV5Width, size);
        EXPECT_EQ(header.bV5Height, -size);
        EXPECT_EQ(header.bV5Planes, 1);
        EXPECT_EQ(header.bV5BitCount, 32);
        EXPECT_EQ(header.bV5Compression, 3U);
        EXPECT_EQ(header.bV5RedMask, 0x00FF0000U);
        EXPECT_EQ(header.bV5GreenMask, 0x0000FF00U);
        EXPECT_EQ(header.bV5BlueMask, 0x000000FFU);
        EXPECT_EQ(header.bV5AlphaMask, 0xFF000000U);
    }
}

TEST_F(IconRenderTest, AnIconShowsTheCanvasAlphaIncluded) {
    for (const std::int32_t size : {1, 2, 16, 20, 24, 32, 48}) {
        const Canvas canvas = Motley(size);
        const UniqueIcon icon = CanvasToIcon(canvas);
        ASSERT_TRUE(icon);
        EXPECT_EQ(world.live, std::multiset<std::string>{"icon"});
        const IconPixels read = Pixels(icon);
        EXPECT_EQ(read.width, size);
        EXPECT_EQ(read.height, size);
        EXPECT_EQ(read.pixels, canvas.pixels) << size;
    }
    EXPECT_THAT(debugLines, IsEmpty());
}

TEST_F(IconRenderTest, WhatIsTransparentShowsTheGroundEvenWhereAllOfItIs) {
    for (const std::int32_t size : {1, 2, 15, 16, 17, 20, 24, 32, 33, 48, 64}) {
        Canvas canvas(size);
        Clear(canvas, ColorNone);
        std::vector<std::uint32_t> expected(canvas.pixels.size(), Magenta);
        EXPECT_EQ(PixelsOver(Magenta, CanvasToIcon(canvas), size), expected) << size;
        for (std::size_t i = 0; i < expected.size(); i += 2) {
            expected[i] = 0x123456;
            canvas.pixels[i] = 0xFF123456;
        }
        EXPECT_EQ(PixelsOver(Magenta, CanvasToIcon(canvas), size), expected) << size;
    }
}

TEST_F(IconRenderTest, AnIdleDiskOnNothingIsNothing) {
    AppSettings settings = MakeDefaultSettings();
    settings.colors[DiskBg] = ColorNone;
    const UniqueIcon icon =
        RenderDiskIcon(settings, MetricRing<std::int32_t>(16), MetricRing<std::int32_t>(16), true, 16);
    EXPECT_EQ(PixelsOver(Magenta, icon, 16), std::vector<std::uint32_t>(256, Magenta));
}

TEST_F(IconRenderTest, TheThreeIconsWithoutTextShowTheirPaintings) {
    const AppSettings settings = MakeDefaultSettings();
    for (const std::uint32_t size : {16U, 20U, 24U, 32U, 48U}) {
        EXPECT_EQ(Pixels(RenderCpuIcon(settings, Percentages(), size)).pixels,
                  PaintCpuIcon(settings, Percentages(), size).pixels);
        for (const bool valid : {false, true}) {
            EXPECT_EQ(Pixels(RenderDiskIcon(settings, Percentages(), Percentages(), valid, size)).pixels,
                      PaintDiskIcon(settings, Percentages(), Percentages(), valid, size).pixels);
        }
        EXPECT_EQ(Pixels(RenderNetworkIcon(settings, Rates(), Rates(), size)).pixels,
                  PaintNetworkIcon(settings, Rates(), Rates(), size).pixels);
    }
}

TEST_F(IconRenderTest, ARefusedBitmapOrIconIsReportedAndGivesNone) {
    const AppSettings settings = MakeDefaultSettings();
    const std::vector<std::function<UniqueIcon()>> renders = {
        [&] { return RenderCpuIcon(settings, Percentages(), 16); },
        [&] { return RenderDiskIcon(settings, Percentages(), Percentages(), true, 16); },
        [&] { return RenderNetworkIcon(settings, Rates(), Rates(), 16); },
    };
    for (const auto& render : renders) {
        world = {};
        debugLines.clear();
        world.refusedDibs = {1};
        EXPECT_FALSE(render());
        EXPECT_THAT(debugLines, ElementsAre(DibMessage));
        EXPECT_EQ(world.icons, 0);

        world = {};
        debugLines.clear();
        world.refusedIcons = {1};
        EXPECT_FALSE(render());
        EXPECT_THAT(debugLines, ElementsAre(IconMessage));
        EXPECT_THAT(world.live, IsEmpty());
    }
}

TEST_F(IconRenderTest, AnIconWithoutAMaskIsReportedAndGivesNone) {
    world.refuseMaskBitmap = true;
    EXPECT_FALSE(CanvasToIcon(Motley(16)));
    EXPECT_THAT(debugLines, ElementsAre(IconMessage));
}

TEST_F(IconRenderTest, WithoutTheScreensContextNothingIsReleased) {
    world.refuseScreenDc = true;
    EXPECT_TRUE(CanvasToIcon(Motley(16)));
}

/// Metrics of two digits: ink as high as the font, each digit three fifths of that wide.
TextExtent MadeUpMetrics(std::int32_t height) {
    return {height * 3 / 5 * 2, height + 4, height + 1, 1};
}

UniqueIcon TextIcon(const Canvas& canvas, std::int32_t height, std::int32_t top, std::int32_t bottom,
                    bool alignBottom = true, ColorValue color = 0xFF8000) {
    return DrawIconText(canvas, L"42", {L"Any Font", height, false}, color, top, bottom, alignBottom);
}

std::vector<std::int32_t> FontHeights() {
    std::vector<std::int32_t> heights;
    for (const FontCall& font : world.fonts)
        heights.push_back(font.height);
    return heights;
}

TEST_F(IconRenderTest, AFontIsAskedForByItsCharacterHeight) {
    world.metrics = MadeUpMetrics;
    for (const bool bold : {false, true}) {
        EXPECT_TRUE(DrawIconText(Canvas(16), L"42", {L"Some Font", 12, bold}, 0xFFFFFF, 0, 16, false));
        const FontCall& font = world.fonts.back();
        EXPECT_EQ(font.height, -12);
        EXPECT_EQ(font.width, 0);
        EXPECT_EQ(font.escapement, 0);
        EXPECT_EQ(font.orientation, 0);
        EXPECT_EQ(font.weight, bold ? 700 : 400);
        EXPECT_EQ(font.italic, 0U);
        EXPECT_EQ(font.underline, 0U);
        EXPECT_EQ(font.strikeOut, 0U);
        EXPECT_EQ(font.charSet, 1U);
        EXPECT_EQ(font.outPrecision, 0U);
        EXPECT_EQ(font.clipPrecision, 0U);
        EXPECT_EQ(font.quality, 4U);
        EXPECT_EQ(font.pitch, 0U);
        EXPECT_EQ(font.name, L"Some Font");
    }
    EXPECT_EQ(world.fonts.size(), 2U);
}

TEST_F(IconRenderTest, TheFontShrinksPixelByPixelUntilItFits) {
    struct Row {
        const char* why;
        std::function<TextExtent(std::int32_t)> metrics;
        std::int32_t height, top, bottom;
        std::vector<std::int32_t> asked;
    };
    const auto never = [](std::int32_t height) { return TextExtent{99, height, height, 0}; };
    const auto fitsAt = [](std::int32_t limit) {
        return [limit](std::int32_t height) { return TextExtent{height <= limit ? 16 : 17, 1, 1, 0}; };
    };
    const auto inkOnly = [](std::int32_t height) { return TextExtent{1, height + 9, height + 9, 9}; };
    const std::vector<Row> rows = {
        {"fits at once", fitsAt(12), 12, 0, 16, {-12}},
        {"a pixel too wide", fitsAt(11), 12, 0, 16, {-12, -11}},
        {"at last", fitsAt(6), 9, 0, 16, {-9, -8, -7, -6}},
        {"fits at the least height", fitsAt(5), 7, 0, 16, {-7, -6, -5}},
        {"fits nowhere and stops at 5", never, 8, 0, 16, {-8, -7, -6, -5}},
        {"stops at 5 too when it starts there", never, 5, 0, 16, {-5}},
        {"stops at once below 5", never, 3, 0, 16, {-3}},
        {"a height of nothing is 1", never, 0, 0, 16, {-1}},
        {"a negative height is 1", never, -9, 0, 16, {-1}},
        {"too high for its rows", inkOnly, 9, 9, 16, {-9, -8, -7}},
        {"no rows at all", inkOnly, 7, 16, 4, {-7, -6, -5}},
        {"rows beyond the canvas do not count", inkOnly, 18, -5, 99, {-18, -17, -16}},
    };
    for (const Row& row : rows) {
        world = {};
        world.metrics = row.metrics;
        EXPECT_TRUE(TextIcon(Canvas(16), row.height, row.top, row.bottom)) << row.why;
        EXPECT_EQ(FontHeights(), row.asked) << row.why;
        EXPECT_EQ(world.texts.size(), 1U) << row.why;
        EXPECT_THAT(world.live, IsEmpty()) << row.why;
    }
}

TEST_F(IconRenderTest, TheTextIsDrawnWhiteAcrossTheWholeWidth) {
    struct Row {
        std::int32_t top, bottom;
        bool alignBottom;
        LONG lineTop, lineBottom;
    };
    // Ink 10 in a line of 14 that starts 1 above the ink.
    const std::vector<Row> rows = {{4, 16, true, 5, 19},
                                   {4, 16, false, 4, 18},
                                   {0, 16, false, 2, 16},
                                   {0, 15, false, 1, 15},
                                   {-4, 40, true, 5, 19}};
    for (const Row& row : rows) {
        world = {};
        world.metrics = MadeUpMetrics;
        EXPECT_TRUE(TextIcon(Canvas(16), 10, row.top, row.bottom, row.alignBottom));
        ASSERT_EQ(world.texts.size(), 1U);
        const TextCall& call = world.texts[0];
        EXPECT_EQ(call.text, L"42");
        EXPECT_EQ(call.format, 0x921U);
        EXPECT_EQ(call.color, 0xFFFFFFU);
        EXPECT_EQ(call.backgroundMode, TRANSPARENT);
        EXPECT_EQ(call.where.left, 0);
        EXPECT_EQ(call.where.right, 16);
        EXPECT_EQ(call.where.top, row.lineTop) << row.top << " " << row.bottom << " " << row.alignBottom;
        EXPECT_EQ(call.where.bottom, row.lineBottom);
        EXPECT_EQ(world.flushes, 1);
    }
}

/// White in the middle two columns, half covered beside them.
void MadeUpInk(HDC dc) {
    for (int y = 1; y < 3; ++y) {
        SetPixel(dc, 0, y, RGB(128, 128, 128));
        SetPixel(dc, 1, y, RGB(255, 255, 255));
        SetPixel(dc, 2, y, RGB(255, 255, 255));
        SetPixel(dc, 3, y, RGB(0, 0, 128));  // in a COLORREF red is the low byte, blue the high one
    }
}

const PixelLegend InkLegend = {{0, ' '},
                               {0xFF204060, '.'},
                               {0xFFFF8000, '#'},
                               {0x80FF8000, '+'},   // half covered on nothing: the text's colour, half there
                               {0xFF906030, 'h'}};  // half covered on the background: halfway

TEST_F(IconRenderTest, TheMasksBlueByteIsTheCoverage) {
    world.metrics = MadeUpMetrics;
    world.ink = MadeUpInk;
    Canvas canvas(4);
    Clear(canvas, 0x204060);
    EXPECT_EQ(PixelPicture(Pixels(TextIcon(canvas, 5, 0, 4)).pixels, 4, InkLegend), R"(
....
h##h
h##h
....
)");
    Clear(canvas, ColorNone);
    EXPECT_EQ(PixelPicture(Pixels(TextIcon(canvas, 5, 0, 4)).pixels, 4, InkLegend), "\n    \n+##+\n+##+\n    \n");
}

TEST_F(IconRenderTest, TheMachinesOwnTextLandsOnTheCanvas) {
    Canvas canvas(32);
    Clear(canvas, ColorNone);
    const IconPixels read = Pixels(DrawIconText(canvas, L"88", {L"Segoe UI", 24, true}, 0xFF8000, 8, 32, true));
    std::size_t inked = 0;
    for (std::size_t i = 0; i < read.pixels.size(); ++i) {
        if (read.pixels[i] == 0) continue;
        ++inked;
        EXPECT_EQ(read.pixels[i] & 0xFFFFFF, 0xFF8000U) << "on a transparent pixel the text has its own colour";
    }
    EXPECT_GT(inked, 40U);
    EXPECT_LT(inked, 24U * 32U);
    EXPECT_GE(world.fonts.back().height, -24);
}

// Four equal digits have an even width, so their centre is the same column on both canvases.
TEST_F(IconRenderTest, TextThatFitsNowhereIsCutAtBothEdges) {
    constexpr std::int32_t narrow = 8;
    constexpr std::int32_t wide = 32;
    constexpr std::int32_t beside = (wide - narrow) / 2;
    const auto draw = [](std::int32_t size) {
        Canvas canvas(size);
        Clear(canvas, ColorNone);
        return Pixels(DrawIconText(canvas, L"8888", {L"Segoe UI", 5, true}, 0xFF8000, 0, narrow, true));
    };
    const IconPixels cut = draw(narrow);
    const IconPixels whole = draw(wide);
    std::size_t inked = 0;
    std::size_t inkedLeft = 0;
    std::size_t inkedRight = 0;
    for (std::int32_t y = 0; y < narrow; ++y) {
        for (std::int32_t x = 0; x < wide; ++x) {
            const std::uint32_t pixel = whole.pixels[static_cast<std::size_t>(y * wide + x)];
            if (x < beside) inkedLeft += pixel != 0 ? 1 : 0;
            if (x >= beside + narrow) inkedRight += pixel != 0 ? 1 : 0;
            if (x < beside || x >= beside + narrow) continue;
            inked += pixel != 0 ? 1 : 0;
            EXPECT_EQ(cut.pixels[static_cast<std::size_t>(y * narrow + x - beside)], pixel) << x << ", " << y;
        }
    }
    EXPECT_GT(inked, 0U);
    EXPECT_GT(inkedLeft, 0U) << "it fits, so nothing is clipped";
    EXPECT_GT(inkedRight, 0U) << "it fits, so nothing is clipped";
}

TEST_F(IconRenderTest, WithoutColourOrTextTheCanvasGoesAsItIs) {
    const Canvas canvas = Motley(16);
    EXPECT_EQ(Pixels(TextIcon(canvas, 12, 0, 16, true, ColorNone)).pixels, canvas.pixels);
    EXPECT_EQ(Pixels(DrawIconText(canvas, L"", {L"Any Font", 12, false}, 0xFFFFFF, 0, 16, true)).pixels, canvas.pixels);
    EXPECT_THAT(world.fonts, IsEmpty());
    EXPECT_EQ(world.dibs, 2) << "no mask is made";
}

TEST_F(IconRenderTest, WithoutAFontThereIsAnIconWithoutText) {
    world.refuseFont = true;
    const Canvas canvas = Motley(16);
    EXPECT_EQ(Pixels(TextIcon(canvas, 12, 0, 16)).pixels, canvas.pixels);
    EXPECT_EQ(FontHeights(), std::vector<std::int32_t>{-12});
    EXPECT_THAT(debugLines, IsEmpty());

    const AppSettings settings = MakeDefaultSettings();
    EXPECT_EQ(Pixels(RenderMemoryIcon(settings, 42, 16)).pixels, PaintMemoryIcon(settings, 42, 16).canvas.pixels)
        << "without substitute digits";
}

TEST_F(IconRenderTest, TextWithoutBitmapMaskOrContextGivesNone) {
    struct Row {
        const char* what;
        std::set<int> refusedDibs;
        bool refuseDc;
        std::set<int> refusedIcons;
        std::vector<std::wstring> lines;
    };
    const std::vector<Row> rows = {
        {"base", {1}, false, {}, {DibMessage}},
        {"mask", {2}, false, {}, {DibMessage}},
        {"context", {}, true, {}, {}},
        {"icon", {}, false, {1}, {IconMessage}},
    };
    for (const Row& row : rows) {
        world = {};
        debugLines.clear();
        world.refusedDibs = row.refusedDibs;
        world.refuseDc = row.refuseDc;
        world.refusedIcons = row.refusedIcons;
        EXPECT_FALSE(TextIcon(Canvas(16), 12, 0, 16)) << row.what;
        EXPECT_EQ(debugLines, row.lines) << row.what;
        EXPECT_THAT(world.live, IsEmpty()) << row.what;
    }
}

TEST_F(IconRenderTest, TextWithoutASelectedMaskGivesNone) {
    world.refuseSelectedBitmap = true;
    EXPECT_FALSE(TextIcon(Canvas(16), 12, 0, 16));
    EXPECT_THAT(world.fonts, IsEmpty());
}

TEST_F(IconRenderTest, TheMemoryIconsTextGoesWhereItsPaintingSays) {
    AppSettings settings = MakeDefaultSettings();
    settings.font_name = L"Memory Font";
    settings.font_size = 13;
    settings.font_bold = true;
    world.metrics = [](std::int32_t) { return TextExtent{10, 12, 9, 1}; };  // ink 8
    EXPECT_TRUE(RenderMemoryIcon(settings, 95, 20));
    EXPECT_EQ(world.fonts.at(0).name, L"Memory Font");
    EXPECT_EQ(world.fonts.at(0).height, -16);
    EXPECT_EQ(world.fonts.at(0).weight, 700);
    EXPECT_EQ(world.texts.at(0).text, L"95");
    EXPECT_EQ(world.texts.at(0).where.top, 20 - 8 - 1);
    settings.bar = false;
    EXPECT_TRUE(RenderMemoryIcon(settings, 100, 20));
    EXPECT_EQ(world.texts.at(1).text, L"100");
    EXPECT_EQ(world.texts.at(1).where.top, (20 - 8) / 2 - 1);
}

TEST_F(IconRenderTest, PlainDigitsStandInWhenTheMemoryIconsTextFails) {
    struct Row {
        const char* what;
        std::set<int> refusedDibs;
        bool refuseDc;
        std::set<int> refusedIcons;
    };
    const std::vector<Row> rows = {
        {"base", {1}, false, {}}, {"mask", {2}, false, {}}, {"context", {}, true, {}}, {"icon", {}, false, {1}}};
    const AppSettings settings = MakeDefaultSettings();
    MemoryIconPainting expected = PaintMemoryIcon(settings, 95, 24);
    DrawBitmapNumber(expected.canvas, 95, 0xFF5555);
    for (const Row& row : rows) {
        world = {};
        world.refusedDibs = row.refusedDibs;
        world.refuseDc = row.refuseDc;
        world.refusedIcons = row.refusedIcons;
        EXPECT_EQ(Pixels(RenderMemoryIcon(settings, 95, 24)).pixels, expected.canvas.pixels) << row.what;
    }
}

TEST_F(IconRenderTest, AMemoryIconThatFailsTwiceIsNone) {
    world.refusedDibs = {1, 2};
    EXPECT_FALSE(RenderMemoryIcon(MakeDefaultSettings(), 95, 16));
    EXPECT_THAT(debugLines, ElementsAre(DibMessage, DibMessage));
    world = {};
    world.refusedIcons = {1, 2};
    EXPECT_FALSE(RenderMemoryIcon(MakeDefaultSettings(), 95, 16));
}

TEST_F(IconRenderTest, ThousandsOfIconsLeaveNothingBehind) {
    const AppSettings settings = MakeDefaultSettings();
    const auto percentages = Percentages();
    const auto rates = Rates();
    for (int round = 0; round < 1500; ++round) {
        world.dibs = world.icons = 0;
        world.fonts.clear();
        world.texts.clear();
        world.refusedDibs = round % 7 == 0 ? std::set<int>{1 + round % 3} : std::set<int>{};
        world.refusedIcons = round % 5 == 0 ? std::set<int>{1 + round % 2} : std::set<int>{};
        world.refuseDc = round % 11 == 0;
        world.refuseFont = round % 13 == 0;
        RenderMemoryIcon(settings, round % 101, 16);
        RenderCpuIcon(settings, percentages, 16);
        RenderDiskIcon(settings, percentages, percentages, true, 16);
        RenderNetworkIcon(settings, rates, rates, 16);
        ASSERT_THAT(world.live, IsEmpty()) << "after round " << round;
    }
}

}  // namespace
}  // namespace kestrane
