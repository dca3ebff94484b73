// Whole graphs, painted into a memory context. Fonts have made-up metrics (every character is 6 pixels wide, a line is
// as high as its font) and text is recorded instead of drawn, so every pixel is known.
#include "graph/graph_painter_win32.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <limits>
#include <map>
#include <set>
#include <string>
#include <vector>

#include "graph/graph_bitmap_win32.h"
#include "support/geometry_print.h"
#include "support/graph_picture.h"
#include "support/graph_series_fixture.h"
#include "support/real_call_win32.h"
#include "text/translation.h"

namespace kestrane {
namespace {

struct FontCall {
    int height, weight;
    DWORD italic, underline, strikeOut, charSet, quality;
    std::wstring name;
};

struct TextCall {
    std::wstring text;
    Point at;
    ColorValue color;
    UINT align;
    int backgroundMode;

    bool operator==(const TextCall&) const = default;
};

void PrintTo(const TextCall& call, std::ostream* out) {
    *out << testing::PrintToString(call.text) << " at (" << call.at.x << ", " << call.at.y << ") color " << std::hex
         << call.color << std::dec << " align " << call.align << " mode " << call.backgroundMode;
}

/// One polyline: how many points it has, where it ends, and its pen.
struct LineCall {
    std::size_t points;
    Point last;
    ColorValue color;
    std::int32_t width;

    bool operator==(const LineCall&) const = default;
};

/// What the fake calls recorded, and how they respond.
struct World {
    std::map<void*, const char*> live;  // live objects and their kind
    int strayCloses = 0;                // closed without being live
    std::map<std::string, int> made;    // objects ever created, by kind
    std::string refused;                // the kind whose creation fails
    bool refuseBits = false;            // the bitmap comes without pixels
    bool refuseBitmapSelection = false;
    bool writeText = false;          // draw text with the real metrics and glyphs
    std::vector<std::string> order;  // of flushes, lines, texts and the final copy
    std::vector<FontCall> fonts;
    std::vector<TextCall> texts;
    std::vector<LineCall> lines;
};
World world;

template <typename Handle>
Handle Born(const char* kind, Handle handle) {
    world.live[handle] = kind;
    ++world.made[kind];
    return handle;
}

void Closed(void* handle) {
    if (world.live.erase(handle) == 0) ++world.strayCloses;
}

HDC WINAPI FakeCreateCompatibleDC(HDC dc) {
    static const auto real = REAL(L"gdi32", CreateCompatibleDC);
    return world.refused == "dc" ? nullptr : Born("dc", real(dc));
}

BOOL WINAPI FakeDeleteDC(HDC dc) {
    Closed(dc);
    static const auto real = REAL(L"gdi32", DeleteDC);
    return real(dc);
}

HBITMAP WINAPI FakeCreateDIBSection(HDC dc, const BITMAPINFO* info, UINT usage, void** bits, HANDLE section,
                                    DWORD offset) {
    EXPECT_EQ(info->bmiHeader.biSize, 40U);
    EXPECT_LT(info->bmiHeader.biHeight, 0) << "top row first";
    EXPECT_EQ(info->bmiHeader.biPlanes, 1);
    EXPECT_EQ(info->bmiHeader.biBitCount, 32);
    EXPECT_EQ(info->bmiHeader.biCompression, static_cast<DWORD>(BI_RGB));
    static const auto real = REAL(L"gdi32", CreateDIBSection);
    if (world.refused == "bitmap") return nullptr;
    const HBITMAP bitmap = Born("bitmap", real(dc, info, usage, bits, section, offset));
    if (world.refuseBits) *bits = nullptr;
    return bitmap;
}

HFONT WINAPI FakeCreateFontW(int height, int width, int escapement, int orientation, int weight, DWORD italic,
                             DWORD underline, DWORD strikeOut, DWORD charSet, DWORD outPrecision, DWORD clipPrecision,
                             DWORD quality, DWORD pitch, LPCWSTR name) {
    world.fonts.push_back({height, weight, italic, underline, strikeOut, charSet, quality, name});
    EXPECT_EQ(width, 0);
    EXPECT_EQ(escapement, 0);
    EXPECT_EQ(orientation, 0);
    static const auto real = REAL(L"gdi32", CreateFontW);
    if (world.refused == "font") return nullptr;
    return Born("font", real(height, width, escapement, orientation, weight, italic, underline, strikeOut, charSet,
                             outPrecision, clipPrecision, quality, pitch, name));
}

HPEN WINAPI FakeCreatePen(int style, int width, COLORREF color) {
    EXPECT_EQ(style, PS_SOLID);
    static const auto real = REAL(L"gdi32", CreatePen);
    return world.refused == "pen" ? nullptr : Born("pen", real(style, width, color));
}

HBRUSH WINAPI FakeCreateSolidBrush(COLORREF color) {
    static const auto real = REAL(L"gdi32", CreateSolidBrush);
    return world.refused == "brush" ? nullptr : Born("brush", real(color));
}

BOOL WINAPI FakeDeleteObject(HGDIOBJ object) {
    Closed(object);
    static const auto real = REAL(L"gdi32", DeleteObject);
    const BOOL deleted = real(object);
    EXPECT_TRUE(deleted) << "an object must not be deleted while selected";
    return deleted;
}

HGDIOBJ WINAPI FakeSelectObject(HDC dc, HGDIOBJ object) {
    static const auto real = REAL(L"gdi32", SelectObject);
    const auto found = world.live.find(object);
    const bool isBitmap = found != world.live.end() && std::string(found->second) == "bitmap";
    return isBitmap && world.refuseBitmapSelection ? nullptr : real(dc, object);
}

BOOL WINAPI FakeGetTextMetricsW(HDC dc, LPTEXTMETRICW metrics) {
    static const auto real = REAL(L"gdi32", GetTextMetricsW);
    if (world.writeText) return real(dc, metrics);
    metrics->tmHeight = -world.fonts.back().height;
    return TRUE;
}

BOOL WINAPI FakeGetTextExtentPoint32W(HDC dc, LPCWSTR text, int length, LPSIZE size) {
    static const auto real = REAL(L"gdi32", GetTextExtentPoint32W);
    if (world.writeText) return real(dc, text, length, size);
    *size = {6 * length, -world.fonts.back().height};
    return TRUE;
}

BOOL WINAPI FakeTextOutW(HDC dc, int x, int y, LPCWSTR text, int length) {
    world.order.push_back("text");
    world.texts.push_back({std::wstring(text, static_cast<std::size_t>(length)),
                           {x, y},
                           SwapRedBlue(GetTextColor(dc)),
                           GetTextAlign(dc),
                           GetBkMode(dc)});
    static const auto real = REAL(L"gdi32", TextOutW);
    return world.writeText ? real(dc, x, y, text, length) : TRUE;
}

BOOL WINAPI FakePolyline(HDC dc, const POINT* points, int count) {
    EXPECT_GE(count, 2);
    LOGPEN pen = {};
    GetObjectW(GetCurrentObject(dc, OBJ_PEN), sizeof pen, &pen);
    const POINT last = points[count - 1];
    world.lines.push_back(
        {static_cast<std::size_t>(count), {last.x, last.y}, SwapRedBlue(pen.lopnColor), pen.lopnWidth.x});
    world.order.push_back("line");
    static const auto real = REAL(L"gdi32", Polyline);
    return real(dc, points, count);
}

BOOL WINAPI FakeGdiFlush() {
    world.order.push_back("flush");
    static const auto real = REAL(L"gdi32", GdiFlush);
    return real();
}

BOOL WINAPI FakeBitBlt(HDC target, int x, int y, int width, int height, HDC source, int sourceX, int sourceY,
                       DWORD operation) {
    world.order.push_back("copy");
    EXPECT_EQ(operation, static_cast<DWORD>(SRCCOPY));
    static const auto real = REAL(L"gdi32", BitBlt);
    return real(target, x, y, width, height, source, sourceX, sourceY, operation);
}

int WINAPI FakeGetLocaleInfoEx(LPCWSTR, LCTYPE, LPWSTR text, int length) {
    if (length < 2) return 0;
    text[0] = L',';
    text[1] = 0;
    return 2;
}

}  // namespace
}  // namespace kestrane

extern "C" {
decltype(&CreateCompatibleDC) __imp_CreateCompatibleDC = &kestrane::FakeCreateCompatibleDC;
decltype(&DeleteDC) __imp_DeleteDC = &kestrane::FakeDeleteDC;
decltype(&CreateDIBSection) __imp_CreateDIBSection = &kestrane::FakeCreateDIBSection;
decltype(&CreateFontW) __imp_CreateFontW = &kestrane::FakeCreateFontW;
decltype(&CreatePen) __imp_CreatePen = &kestrane::FakeCreatePen;
decltype(&CreateSolidBrush) __imp_CreateSolidBrush = &kestrane::FakeCreateSolidBrush;
decltype(&DeleteObject) __imp_DeleteObject = &kestrane::FakeDeleteObject;
decltype(&SelectObject) __imp_SelectObject = &kestrane::FakeSelectObject;
decltype(&GetTextMetricsW) __imp_GetTextMetricsW = &kestrane::FakeGetTextMetricsW;
decltype(&GetTextExtentPoint32W) __imp_GetTextExtentPoint32W = &kestrane::FakeGetTextExtentPoint32W;
decltype(&TextOutW) __imp_TextOutW = &kestrane::FakeTextOutW;
decltype(&Polyline) __imp_Polyline = &kestrane::FakePolyline;
decltype(&GdiFlush) __imp_GdiFlush = &kestrane::FakeGdiFlush;
decltype(&BitBlt) __imp_BitBlt = &kestrane::FakeBitBlt;
decltype(&GetLocaleInfoEx) __imp_GetLocaleInfoEx = &kestrane::FakeGetLocaleInfoEx;
}

namespace kestrane {
namespace {

constexpr ColorValue Untouched = 0x123456;
constexpr ColorValue Contrast = 0xE0E0E0;
constexpr std::uint32_t NormalDpi = 96;

/// A target in memory, filled with one colour before the paint.
class Target {
  public:
    Target(std::int32_t width, std::int32_t height) : bitmap_(nullptr, width, height) {
        FillPixels(bitmap_.Pixels(), {0, 0, width, height}, Untouched);
    }
    HDC Dc() const { return bitmap_.Pixels().dc; }
    /// The pixels, once all drawing is done.
    const PixelBuffer& Pixels() const {
        GdiFlush();
        return bitmap_.Pixels();
    }
    std::uint32_t At(std::int32_t x, std::int32_t y) const {
        return Pixels().bits[static_cast<std::ptrdiff_t>(y) * Pixels().width + x];
    }

  private:
    GraphBitmap bitmap_;
};

class GraphPainter : public testing::Test {
  protected:
    GraphPainter() {
        world = World{};
        for (GraphSettings* graph : {&settings_.network, &settings_.cpu, &settings_.disk}) {
            graph->margin = 0;
            graph->style = 0;
            graph->smoothing = 0;
        }
        series_.primary = RefTo(first_);
        series_.secondary = RefTo(second_);
    }

    void SetSeries(const std::vector<double>& first, const std::vector<double>& second = {}) {
        first_ = RingOf(first);
        second_ = RingOf(second);
    }

    void Paint(const Target& target, GraphKind kind, std::uint32_t dpi = NormalDpi, const HoverState& hover = {}) {
        const PixelBuffer& pixels = target.Pixels();
        world.order.clear();
        PaintGraph(target.Dc(), pixels.width, pixels.height, kind, settings_, series_, dpi, hover);
    }

    AppSettings settings_ = MakeDefaultSettings();
    MetricRing<double> first_;
    MetricRing<double> second_;
    std::vector<MetricRing<double>> cores_;
    GraphSeries series_;
};

// The font is 6 high, so its labels ("100 %-") are 36 wide: the axis is at column 38, the plot from 39 to 46, its rows
// from 4 down to the baseline in row 16.
TEST_F(GraphPainter, BarsStandOverGridAxesAndFrame) {
    settings_.cpu.font_size = 6;
    SetSeries({0, 50, 100, 25});
    const Target target(48, 24);
    Paint(target, GraphKind::Cpu);
    const Letters letters = {{0, '.'}, {Contrast, '|'}, {FrameColor, '+'}, {0x656565, '-'}, {0x007BB7, 'c'}};
    // clang-format off
    const Strings expected = {
        "++++++++++++++++++++++++++++++++++++++++++++++++",
        "+.....................................|........+",
        "+.....................................|........+",
        "+.....................................|........+",
        "+.....................................|-.-.-.c.+",
        "+.....................................|......c.+",
        "+.....................................|......c.+",
        "+.....................................|......c.+",
        "+.....................................|......c.+",
        "+.....................................|......c.+",
        "+.....................................|.....cc.+",
        "+.....................................|.....cc.+",
        "+.....................................|.....cc.+",
        "+.....................................|.....ccc+",
        "+.....................................|.....ccc+",
        "+.....................................|.....ccc+",
        "++++++++++++++++++++++++++++++++++++++++++++++++",
        "+..............................................+",
        "+..............................................+",
        "+..............................................+",
        "+..............................................+",
        "+..............................................+",
        "+..............................................+",
        "++++++++++++++++++++++++++++++++++++++++++++++++",
    };
    // clang-format on
    EXPECT_EQ(RowsOf(target.Pixels(), letters), expected);
}

TEST_F(GraphPainter, TextStandsWhereTheLayoutSays) {
    settings_.cpu.font_size = 6;
    SetSeries({0, 50, 100, 25});
    const Target target(148, 24);
    Paint(target, GraphKind::Cpu);
    const std::vector<TextCall> expected = {
        {L"100 %-", {38, 1}, Contrast, TA_RIGHT, TRANSPARENT},
        // 12 and 9 characters with a gap of 6: centred between 1 and 147.
        {L"(Máx: 100 %)", {8, 17}, Contrast, TA_LEFT, TRANSPARENT},
        {L"CPU: 25 %", {86, 17}, ReadableColor(0x007BB7, 0), TA_LEFT, TRANSPARENT},
    };
    EXPECT_EQ(world.texts, expected);
}

TEST_F(GraphPainter, RatesHaveThreeLegendEntriesAndOwnTicks) {
    settings_.network.font_size = 6;
    SetSeries({1000, 3000}, {2000, 8000});
    const Target target(300, 36);
    Paint(target, GraphKind::Network);
    ASSERT_EQ(world.texts.size(), 5U);
    EXPECT_EQ(world.texts[0].text, L"5,0 kbps-");
    EXPECT_EQ(world.texts[1].text, L"10,0 kbps-");
    EXPECT_EQ(world.texts[2].text, L"(Máx: 8,0 kbps)");
    EXPECT_EQ(world.texts[3].text, L"Bajada: 3,0 kbps");
    EXPECT_EQ(world.texts[3].color, ReadableColor(0xFF0000, 0));
    EXPECT_EQ(world.texts[4].text, L"Subida: 8,0 kbps");
    EXPECT_EQ(world.texts[4].color, ReadableColor(0x009D00, 0));
}

TEST_F(GraphPainter, TheFontIsThatOfTheSettingsAtTheWindowsDpi) {
    settings_.disk.font_name = L"Courier New";
    settings_.disk.font_size = 10;
    settings_.disk.font_bold = true;
    const Target target(200, 80);
    Paint(target, GraphKind::Disk, 144);
    settings_.disk.font_bold = false;
    Paint(target, GraphKind::Disk, NormalDpi);
    ASSERT_EQ(world.fonts.size(), 2U);
    EXPECT_EQ(world.fonts[0].height, -15);
    EXPECT_EQ(world.fonts[0].weight, 700);
    EXPECT_EQ(world.fonts[0].italic, 0U);
    EXPECT_EQ(world.fonts[0].underline, 0U);
    EXPECT_EQ(world.fonts[0].strikeOut, 0U);
    EXPECT_EQ(world.fonts[0].charSet, 1U);
    EXPECT_EQ(world.fonts[0].quality, 5U);
    EXPECT_EQ(world.fonts[0].name, L"Courier New");
    EXPECT_EQ(world.fonts[1].height, -10);
    EXPECT_EQ(world.fonts[1].weight, 400);
}

// The second series first, so that the first is on top; flushes separate GDI from directly written pixels.
TEST_F(GraphPainter, LinesAreDrawnBetweenTwoFlushes) {
    settings_.disk.style = 1;
    settings_.disk.font_size = 6;
    SetSeries({0, 0, 0}, {1048576, 1048576, 1048576});
    const Target target(200, 80);
    Paint(target, GraphKind::Disk, 192);
    // A line of text is 12 high: full scale is row 7, the baseline row 66, and a zero runs one pixel above that.
    const std::vector<LineCall> expected = {{3, {198, 7}, 0x167B04, 2}, {3, {198, 65}, 0xCE8B00, 2}};
    EXPECT_EQ(world.lines, expected);
    // Three labels of the axis, three entries of the legend.
    const std::vector<std::string> order = {"flush", "line", "line", "flush", "text", "text",
                                            "text",  "text", "text", "text",  "copy"};
    EXPECT_EQ(world.order, order);
}

TEST_F(GraphPainter, ALineOfOnePointDoesNotShow) {
    settings_.disk.style = 1;
    SetSeries({5}, {5});
    const Target target(200, 80);
    Paint(target, GraphKind::Disk);
    EXPECT_TRUE(world.lines.empty());
}

TEST_F(GraphPainter, TheFillIsMixedIntoTheBackground) {
    settings_.cpu.style = 1;
    settings_.cpu.fill = 50;
    settings_.cpu.font_size = 6;
    SetSeries({100, 100});
    const Target target(100, 60);
    Paint(target, GraphKind::Cpu);
    EXPECT_EQ(target.At(98, 42), BlendColor(0, 0x007BB7, 0.5));
    EXPECT_EQ(target.At(97, 42), BlendColor(0, 0x007BB7, 0.5));
    EXPECT_EQ(target.At(96, 42), 0U);
}

TEST_F(GraphPainter, HoverDrawsCrosshairAndBox) {
    settings_.cpu.font_size = 9;
    SetSeries({10, 100, 100, 100, 100});
    const Target target(300, 100);
    Paint(target, GraphKind::Cpu, NormalDpi, {true, 294, 50});
    // Plot rows 5 to 89; 10 % is 8 pixels high, so the marker's middle is row 81: a square of 5 in an outline.
    EXPECT_EQ(target.At(294, 81), ReadableColor(0x007BB7, 0));
    EXPECT_EQ(target.At(292, 79), ReadableColor(0x007BB7, 0));
    EXPECT_EQ(target.At(291, 78), 0U);
    EXPECT_EQ(target.At(294, 5), BlendColor(0, Contrast, 0.6));
    EXPECT_EQ(target.At(294, 6), 0U);
    // The box is 2 lines of 9 with an inset of 4, the widest line 9 characters: 62 by 26, to the left of the mouse.
    EXPECT_EQ(target.At(224, 51), HoverBoxFrameColor);
    EXPECT_EQ(target.At(285, 76), HoverBoxFrameColor);
    EXPECT_EQ(target.At(225, 52), HoverBoxColor);
    EXPECT_EQ(target.At(284, 75), HoverBoxColor);
    ASSERT_GE(world.texts.size(), 2U);
    const TextCall value = {L"CPU: 10 %", {228, 55}, ReadableColor(0x007BB7, HoverBoxColor), TA_LEFT, TRANSPARENT};
    const TextCall time = {L"hace 4 s", {228, 64}, 0x9A9A9A, TA_LEFT, TRANSPARENT};
    EXPECT_EQ(world.texts[world.texts.size() - 2], value);
    EXPECT_EQ(world.texts.back(), time);
}

TEST_F(GraphPainter, EverythingGrowsWithTheDpi) {
    constexpr ColorValue background = 0x202020;
    settings_.colors[CpuGraphBg] = background;
    settings_.cpu.font_size = 9;
    settings_.cpu.margin = 4;
    SetSeries({10, 100, 100, 100, 100});
    const Target target(600, 200);
    Paint(target, GraphKind::Cpu, 192, {true, 586, 50});
    // A margin of 8, a line of text 18 high: plot rows 18 to 163 over the baseline in row 164.
    EXPECT_EQ(target.At(595, 100), background);
    EXPECT_EQ(target.At(8, 164), background);
    EXPECT_EQ(target.At(9, 164), FrameColor);
    // 10 % is 15 pixels high: a marker of 9 around row 149.
    EXPECT_EQ(target.At(582, 145), ReadableColor(0x007BB7, background));
    EXPECT_EQ(target.At(581, 144), 0U);
    EXPECT_EQ(target.At(580, 144), background);
    // Two lines of 18, the wider one of 54, with an inset of 6: a box of 66 by 48.
    EXPECT_EQ(target.At(508, 95), HoverBoxFrameColor);
    EXPECT_EQ(target.At(573, 142), HoverBoxFrameColor);
    EXPECT_EQ(target.At(574, 143), background);
}

TEST_F(GraphPainter, TheMarginIsHeldWithinItsChoices) {
    settings_.cpu.font_size = 9;
    for (const auto& [margin, held] : {std::pair{1000, MarginChoices.back()}, {-1000, MarginChoices.front()}}) {
        settings_.cpu.margin = margin;
        const Target target(300, 100);
        Paint(target, GraphKind::Cpu);
        const std::int32_t baseline = 100 - 2 * held - 9 - 2;
        EXPECT_EQ(target.At(held + 1, baseline), FrameColor) << margin;
        EXPECT_EQ(target.At(298 - held, baseline), FrameColor) << margin;
        EXPECT_EQ(target.At(held + 1, baseline + 1), 0U) << margin;
    }
}

// A window being destroyed has a DPI of 0.
TEST_F(GraphPainter, HoldsWithoutADpi) {
    settings_.disk.style = 1;
    SetSeries({1, 2, 3}, {1, 2, 3});
    const Target target(200, 80);
    Paint(target, GraphKind::Disk, 0, {true, 198, 40});
    ASSERT_EQ(world.lines.size(), 2U);
    EXPECT_EQ(world.lines[0].width, 1);
    ASSERT_GT(world.texts.size(), 8U);
    EXPECT_EQ(world.texts[8].at.y, 78) << "the legend, after eight ticks: a line of text is 1 pixel high at least";
    EXPECT_EQ(target.At(196, 74), ReadableColor(0x167B04, 0)) << "the marker keeps its minimum size";
    EXPECT_EQ(target.At(195, 73), 0U);
}

TEST_F(GraphPainter, HoverOverNothingDrawsNothing) {
    settings_.cpu.font_size = 9;
    SetSeries({10, 100, 100, 100, 100});
    for (const HoverState& hover : {HoverState{true, 200, 50}, {true, 2, 50}, {true, 299, 50}, {false, 298, 50}}) {
        world.made.clear();
        Paint(Target(300, 100), GraphKind::Cpu, NormalDpi, hover);
        EXPECT_EQ(world.made["brush"], 0) << hover.x;
    }
}

TEST_F(GraphPainter, OneCellAProcessor) {
    cores_ = {RingOf<double>({100, 100}), RingOf<double>({100, 100})};
    const std::vector<std::uint8_t> classes = {1, 0};
    series_.cores = &cores_;
    series_.coreClasses = &classes;
    settings_.per_core = true;
    settings_.cpu.font_size = 6;
    settings_.cpu.style = 1;
    settings_.cpu.fill = 50;
    SetSeries({42});
    const Target target(103, 40);
    Paint(target, GraphKind::Cpu, NormalDpi, {true, 97, 15});
    // Two cells of 49 side by side with a gap of 3, from (1, 1) to row 29; the baseline in row 32.
    const ColorValue border = BlendColor(0, Contrast, 0.3);
    EXPECT_EQ(target.At(1, 1), border);
    EXPECT_EQ(target.At(49, 10), border);
    EXPECT_EQ(target.At(50, 10), 0U);
    EXPECT_EQ(target.At(53, 10), Contrast) << "the cell under the mouse";
    EXPECT_EQ(target.At(48, 20), BlendColor(0, 0x007BB7, 0.5));
    EXPECT_EQ(target.At(5, 32), FrameColor);
    ASSERT_EQ(world.lines.size(), 2U);
    EXPECT_EQ(world.lines[0].color, 0x007BB7U);
    EXPECT_EQ(world.lines[1].color, 0x2EBD72U);
    EXPECT_EQ(world.lines[0].last, (Point{48, 2}));
    std::vector<std::wstring> texts;
    for (const TextCall& text : world.texts) {
        texts.push_back(text.text);
        EXPECT_EQ(text.backgroundMode, TRANSPARENT) << testing::PrintToString(text.text);
    }
    EXPECT_EQ(texts, (std::vector<std::wstring>{L"(Máx núcleo: 100 %)", L"CPU: 42 %"}))
        << "no labels, and no readout without history";

    world.texts.clear();
    Paint(target, GraphKind::Cpu, NormalDpi, {true, 99, 15});
    ASSERT_EQ(world.texts.size(), 4U);
    EXPECT_EQ(world.texts[2].text, L"Hilo 1 (eficiencia): 100 %");
    EXPECT_EQ(world.texts[3].text, L"hace 1 s");
}

// The top border runs across every cell and stops at the gaps.
TEST_F(GraphPainter, TheGapBetweenProcessorsGrowsWithTheDpi) {
    settings_.per_core = true;
    series_.cores = &cores_;
    cores_ = {RingOf<double>({}), RingOf<double>({})};
    for (const auto& [dpi, gap] : {std::pair{NormalDpi, 3}, {144U, 5}, {192U, 6}, {384U, 12}, {0U, 2}}) {
        const Target target(400, 200);
        Paint(target, GraphKind::Cpu, dpi);
        const ColorValue border = BlendColor(0, Contrast, 0.3);
        std::int32_t first = 1;
        while (first < 399 && target.At(first, 1) == border)
            ++first;
        std::int32_t second = first;
        while (second < 399 && target.At(second, 1) == 0)
            ++second;
        EXPECT_EQ(second - first, gap) << dpi;
        EXPECT_EQ(target.At(second, 1), border) << dpi;
        EXPECT_EQ(target.At(398, 1), border) << dpi;
        // The same gap above the baseline as between cells.
        std::int32_t baseline = 198;
        while (target.At(5, baseline) != FrameColor)
            --baseline;
        EXPECT_EQ(target.At(5, baseline - 1), 0U) << dpi;
        EXPECT_EQ(target.At(5, baseline - gap), 0U) << dpi;
        EXPECT_EQ(target.At(5, baseline - gap - 1), border) << dpi;
    }
}

// Back to front: bars and borders, curves, crosshair, legend, box. At 480 DPI a curve is 5 wide and a marker 21 with
// its black outline, so that they overlap.
TEST_F(GraphPainter, TheGridIsDrawnFromTheBackToTheFront) {
    constexpr ColorValue performance = 0x007BB7;
    settings_.per_core = true;
    settings_.cpu.font_size = 6;
    settings_.cpu.style = 1;
    settings_.cpu.fill = 0;
    series_.cores = &cores_;
    cores_ = {RingOf(std::vector<double>(200, 0)), RingOf(std::vector<double>(200, 0))};
    for (const bool boxReachesTheCurve : {false, true}) {
        const auto [width, height] = boxReachesTheCurve ? std::pair{103, 60} : std::pair{403, 200};
        world.lines.clear();
        const Target plain(width, height);
        Paint(plain, GraphKind::Cpu, 480);
        EXPECT_EQ(world.order, (Strings{"flush", "line", "line", "flush", "text", "text", "copy"}));
        ASSERT_EQ(world.lines.size(), 2U);
        ASSERT_EQ(world.lines[0].width, 5);
        const Point end = world.lines[0].last;
        const HoverState hover = {true, end.x - 9, end.y - 2};
        const Point outline = {hover.x - 11, end.y};
        EXPECT_EQ(plain.At(outline.x, outline.y), performance);
        EXPECT_EQ(plain.At(outline.x, outline.y + 1), performance)
            << "the curve of zeros is drawn over the lower border";

        world.texts.clear();
        const Target hovered(width, height);
        Paint(hovered, GraphKind::Cpu, 480, hover);
        EXPECT_EQ(world.order, (Strings{"flush", "line", "line", "flush", "text", "text", "text", "text", "copy"}));
        EXPECT_EQ(hovered.At(outline.x, outline.y), boxReachesTheCurve ? HoverBoxColor : 0U);
        ASSERT_EQ(world.texts.size(), 4U);
        EXPECT_EQ(world.texts[0].text, L"(Máx núcleo: 0 %)");
        EXPECT_EQ(world.texts[2].text, L"Hilo 0 (rendimiento): 0 %");
    }
}

TEST_F(GraphPainter, WithoutProcessorsTheOrdinaryViewStandsIn) {
    series_.cores = &cores_;
    settings_.per_core = true;
    SetSeries({42});
    Paint(Target(103, 40), GraphKind::Cpu);
    EXPECT_NE(std::find_if(world.texts.begin(), world.texts.end(),
                           [](const TextCall& call) { return call.text == L"(Máx: 42 %)"; }),
              world.texts.end());
}

TEST_F(GraphPainter, RefusedPicturesLeaveTheTargetAsItIs) {
    SetSeries({100, 100});
    const Target target(100, 60);
    const auto expectUntouched = [&](const char* reason) {
        world.fonts.clear();
        const std::size_t before = world.live.size();
        Paint(target, GraphKind::Cpu);
        EXPECT_EQ(target.At(0, 0), Untouched) << reason;
        EXPECT_EQ(target.At(99, 59), Untouched) << reason;
        EXPECT_EQ(world.live.size(), before) << reason;
        EXPECT_EQ(world.strayCloses, 0) << reason;
        EXPECT_TRUE(world.fonts.empty()) << reason;
    };
    world.refused = "dc";
    expectUntouched("no memory context");
    world.refused = "bitmap";
    expectUntouched("no bitmap");
    world.refused = "";
    world.refuseBits = true;
    expectUntouched("a bitmap without pixels");
    world.refuseBits = false;
    world.refuseBitmapSelection = true;
    expectUntouched("a bitmap that cannot be selected");
    world.refuseBitmapSelection = false;
    Paint(target, GraphKind::Cpu);
    EXPECT_EQ(target.At(0, 0), FrameColor) << "and works again";
}

TEST_F(GraphPainter, OtherRefusalsCostOnlyTheirPart) {
    SetSeries({100, 100, 100});
    settings_.cpu.style = 1;
    for (const char* kind : {"font", "pen", "brush"}) {
        const Target target(100, 60);
        const std::size_t before = world.live.size();
        world.refused = kind;
        Paint(target, GraphKind::Cpu, NormalDpi, {true, 98, 20});
        world.refused = "";
        EXPECT_EQ(target.At(0, 0), FrameColor) << kind;
        EXPECT_EQ(world.live.size(), before) << kind;
        EXPECT_EQ(world.strayCloses, 0) << kind;
    }
}

TEST_F(GraphPainter, NothingToPaintInNoSpace) {
    const Target target(4, 4);
    for (const auto& [width, height] : {std::pair{0, 0}, {0, 4}, {4, 0}, {-4, 4}, {4, -4}}) {
        PaintGraph(target.Dc(), width, height, GraphKind::Cpu, settings_, series_, NormalDpi, {});
        EXPECT_EQ(target.At(0, 0), Untouched) << width << " by " << height;
    }
}

// Every graph in every style, in windows smaller than their margins, without data and with NaN and infinity, with real
// fonts and with one that does not exist.
TEST_F(GraphPainter, HoldsWhateverItIsGiven) {
    world.writeText = true;
    constexpr double nan = std::numeric_limits<double>::quiet_NaN();
    constexpr double infinity = std::numeric_limits<double>::infinity();
    const std::vector<std::vector<double>> contents = {{}, {5}, {nan, infinity, -infinity, 1e300, -1e300, 0}};
    settings_.cpu.font_name = L"No such font on any machine";
    for (const GraphKind kind : GraphKinds) {
        GraphSettings& graph = GraphSettingsOf(settings_, kind);
        for (const auto& content : contents) {
            SetSeries(content, content);
            cores_ = {RingOf(content), RingOf(content), RingOf<double>({})};
            series_.cores = &cores_;
            for (const std::int32_t size : {1, 2, 3, 10, 45, 200}) {
                for (const std::int32_t variant : {0, 1, 2, 3}) {
                    graph.margin = 20 * (variant % 2);
                    graph.style = variant / 2;
                    settings_.per_core = size % 2 == 0;
                    const Target target(size, size);
                    Paint(target, kind, 192, {true, size - 2 - graph.margin * 2, size / 3});
                    EXPECT_EQ(target.At(0, 0), FrameColor);
                }
            }
        }
    }
    EXPECT_TRUE(world.live.empty());
    EXPECT_EQ(world.strayCloses, 0);
}

TEST_F(GraphPainter, NullSeriesShowAnEmptyGraph) {
    series_ = {};
    const Target target(300, 100);
    Paint(target, GraphKind::Disk);
    EXPECT_EQ(target.At(0, 0), FrameColor);
    const auto isShown = [](const wchar_t* text) {
        return std::any_of(world.texts.begin(), world.texts.end(),
                           [&](const TextCall& call) { return call.text == text; });
    };
    EXPECT_TRUE(isShown(L"(Máx: 0 KB/s)"));
    EXPECT_TRUE(isShown(L"Lectura: 0 KB/s"));
    EXPECT_TRUE(isShown(L"1 MB/s-"));
}

// A process is limited to 10,000 GDI objects, so a leak would kill the program.
TEST_F(GraphPainter, AThousandPaintsLoseNothing) {
    settings_.disk.style = 1;
    SetSeries({1e6, 5e6, 2e6}, {2e6, 1e6, 5e6});
    const Target target(200, 80);
    const std::size_t before = world.live.size();
    for (int i = 0; i < 2000; ++i)
        Paint(target, GraphKind::Disk, NormalDpi, {true, 198, 40});
    EXPECT_EQ(world.live.size(), before);
    EXPECT_EQ(world.strayCloses, 0);
    EXPECT_EQ(world.made["font"], 2000);
    EXPECT_EQ(world.made["brush"], 4000);
    EXPECT_EQ(world.made["pen"], 4000);
}

}  // namespace
}  // namespace kestrane
