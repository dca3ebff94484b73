// What the settings dialog paints at the request of its controls, into memory: the samples, from the settings that are
// being edited, and the other owner-drawn controls, each with its own text, icon and state.
#include <gmock/gmock.h>

#include <string>

#include "dialog/control_table.h"
#include "dialog/dialog_panels.h"
#include "dialog/dialog_resources.h"
#include "dialog/sample_data.h"
#include "graph/graph_painter_win32.h"
#include "support/fake_contrast_win32.h"
#include "support/painted_surface_win32.h"
#include "support/settings_dialog_world_win32.h"
#include "tray/icon_render_win32.h"

namespace kestrane {
namespace {

using testing::UnorderedElementsAre;

constexpr ColorValue Dark = 0x1C1C1C;
constexpr ColorValue Light = 0xEEEEEE;
constexpr ColorValue Frame = 0xA8A8A8;

bool refuseIcons = false;
HDC paintedInstead = nullptr;  // of the window that is to be painted

std::vector<std::int32_t> invalidated;  // controls that were to be painted again

BOOL WINAPI RecordInvalidateRect(HWND window, const RECT* rect, BOOL erase) {
    static const auto real = REAL(L"user32", InvalidateRect);
    EXPECT_EQ(rect, nullptr);
    EXPECT_FALSE(erase) << "it would flicker";
    invalidated.push_back(GetDlgCtrlID(window));
    return real(window, rect, erase);
}

/// The dialog's own timer does not run, so its samples stay those of the opening, however slow the machine is.
UINT_PTR WINAPI SetTimerOfTheTestOnly(HWND window, UINT_PTR id, UINT period, TIMERPROC procedure) {
    static const auto real = REAL(L"user32", SetTimer);
    return window != nullptr ? id : real(window, id, period, procedure);
}

HDC WINAPI BeginPaintOrInstead(HWND window, LPPAINTSTRUCT paint) {
    static const auto real = REAL(L"user32", BeginPaint);
    const HDC dc = real(window, paint);
    return paintedInstead != nullptr ? paintedInstead : dc;
}

HICON WINAPI CreateIconOrNone(PICONINFO info) {
    static const auto real = REAL(L"user32", CreateIconIndirect);
    return refuseIcons ? nullptr : real(info);
}

/// What the dialog paints behind its controls.
void DrawBackground(const Surface& surface) {
    paintedInstead = surface.Dc();
    SendMessageW(OpenSettingsDialog(), WM_PAINT, 0, 0);
    paintedInstead = nullptr;
    GdiFlush();
}

/// The place of a control in the dialog.
Rect PlaceOf(std::int32_t id) {
    RECT rect{};
    GetWindowRect(GetDlgItem(OpenSettingsDialog(), id), &rect);
    MapWindowPoints(nullptr, OpenSettingsDialog(), reinterpret_cast<POINT*>(&rect), 2);
    return FromPlatform(rect);
}

/// Whether the program's icon `resource` is at `place` on a plain background.
bool HasIcon(const Surface& surface, std::uint32_t resource, const Rect& place, ColorValue background) {
    const std::int32_t size = RectWidth(place);
    const UniqueIcon icon(static_cast<HICON>(
        LoadImageW(GetModuleHandleW(nullptr), MAKEINTRESOURCEW(resource), IMAGE_ICON, size, size, LR_DEFAULTCOLOR)));
    const Surface expected(surface.Width(), surface.Height());
    FillPixels(expected.Pixels(), place, background);
    DrawIconEx(expected.Dc(), place.left, place.top, icon.Get(), size, size, 0, nullptr, DI_NORMAL);
    GdiFlush();
    bool isThere = icon.Get() != nullptr;
    for (std::int32_t y = place.top; y < place.bottom; ++y) {
        for (std::int32_t x = place.left; x < place.right; ++x)
            isThere = isThere && surface.At(x, y) == expected.At(x, y);
    }
    return isThere;
}

/// Asks the dialog for `id` as the system does.
void Draw(const Surface& surface, std::int32_t id, const Rect& item, UINT state = 0, UINT index = 0) {
    DRAWITEMSTRUCT draw{};
    draw.CtlID = static_cast<UINT>(id);
    draw.itemID = index;
    draw.itemState = state;
    draw.hwndItem = GetDlgItem(OpenSettingsDialog(), id);
    draw.hDC = surface.Dc();
    draw.rcItem = ToPlatform(item);
    SendMessageW(OpenSettingsDialog(), WM_DRAWITEM, draw.CtlID, reinterpret_cast<LPARAM>(&draw));
    GdiFlush();
}

std::int32_t IconSize() {
    return static_cast<std::int32_t>(IconPixelSize(OpenSettingsDialog()));
}

/// The square of this size around the middle of (0, 0, 60, 50).
Rect Middle(std::int32_t size) {
    return RectOf((60 - size) / 2, (50 - size) / 2, size, size);
}

void SetLightTaskbar(DWORD type, DWORD value) {
    RegSetKeyValueW(HKEY_CURRENT_USER, L"Software\\Microsoft\\Windows\\CurrentVersion\\Themes\\Personalize",
                    L"SystemUsesLightTheme", type, &value, sizeof value);
}

class DialogPainting : public SettingsDialogTest {
  protected:
    DialogPainting() {
        world = {};
        refuseIcons = false;
        invalidated.clear();
        host.processors.assign(9, 1);
        // As the dialog's own.
        ResizeIconSamples(samples_, IconPixelSize(nullptr));
        BindSampleSeries(samples_, host.processors);
        GenerateSamples(samples_, settings.thresholds);
    }

    UniqueIcon ExpectedIcon(std::int32_t id) const {
        const auto size = static_cast<std::uint32_t>(IconSize());
        switch (id) {
            case IdCpuIconSample:
                return RenderCpuIcon(settings, samples_.sampleCpuIcon, size);
            case IdDiskIconSample:
                return RenderDiskIcon(settings, samples_.sampleDiskReadIcon, samples_.sampleDiskWriteIcon, true, size);
            case IdNetIconSample:
                return RenderNetworkIcon(settings, samples_.sampleNetDownIcon, samples_.sampleNetUpIcon, size);
            default: {
                const std::array levels{IdMemSample, IdMem1Sample, IdMem2Sample, IdMem3Sample};
                const auto level = static_cast<std::size_t>(std::ranges::find(levels, id) - levels.begin());
                return RenderMemoryIcon(settings, samples_.sampleMemory.at(level), size);
            }
        }
    }

    SampleData samples_;
};

TEST_F(DialogPainting, EachIconSampleIsTheTraysIconOnABackdrop) {
    WithDialog([&] {
        const std::int32_t size = IconSize();
        for (const std::int32_t id : {IdCpuIconSample, IdDiskIconSample, IdNetIconSample, IdMemSample, IdMem1Sample,
                                      IdMem2Sample, IdMem3Sample}) {
            const Surface painted(62, 52);
            Draw(painted, id, {0, 0, 60, 50});
            const Surface expected(62, 52);
            FillPixels(expected.Pixels(), {0, 0, 60, 50}, Sys(COLOR_BTNFACE));
            FillPixels(expected.Pixels(), Middle(size + 6), Dark);
            const UniqueIcon icon = ExpectedIcon(id);
            const Rect place = Middle(size);
            DrawIconEx(expected.Dc(), place.left, place.top, icon.Get(), size, size, 0, nullptr, DI_NORMAL);
            GdiFlush();
            EXPECT_EQ(DifferenceOf(painted, expected).count, 0) << id;
            EXPECT_NE(painted.CountOf(Dark), (size + 6) * (size + 6)) << "there is an icon on " << id;
        }
    });
}

TEST_F(DialogPainting, TheBackdropIsLightOnlyIfTheTaskbarSaysSo) {
    WithDialog([] {
        refuseIcons = true;
        const auto paintedIn = [](ColorValue color) {
            const std::int32_t size = IconSize() + 6;
            const Surface surface(62, 52);
            Draw(surface, IdCpuIconSample, {0, 0, 60, 50});
            EXPECT_EQ(surface.CountOf(Sys(COLOR_BTNFACE)), 60 * 50 - size * size);
            return surface.CountOf(color) == size * size;
        };
        EXPECT_TRUE(paintedIn(Dark)) << "without the value";
        SetLightTaskbar(REG_DWORD, 1);
        EXPECT_TRUE(paintedIn(Light));
        SetLightTaskbar(REG_DWORD, 0x100);
        EXPECT_TRUE(paintedIn(Light)) << "anything but zero";
        SetLightTaskbar(REG_DWORD, 0);
        EXPECT_TRUE(paintedIn(Dark));
        SetLightTaskbar(REG_BINARY, 1);
        EXPECT_TRUE(paintedIn(Dark)) << "of another type";
    });
}

TEST_F(DialogPainting, EachGraphSampleIsTheGraphItself) {
    settings.per_core = true;
    WithDialog([&] {
        constexpr std::array ids{IdNetGraphSample, IdCpuGraphSample, IdDiskGraphSample};  // by GraphKind
        for (const GraphKind kind : GraphKinds) {
            const Surface painted(260, 120);
            Draw(painted, ids.at(IndexOf(kind)), {0, 0, 250, 110});
            const Surface expected(260, 120);
            PaintGraph(expected.Dc(), 250, 110, kind, settings, samples_.sampleSeries.at(IndexOf(kind)),
                       GetDpiForWindow(Dialog()), HoverState{});
            GdiFlush();
            EXPECT_EQ(DifferenceOf(painted, expected).count, 0) << IndexOf(kind);
            EXPECT_EQ(painted.CountOf(Untouched), 260 * 120 - 250 * 110) << IndexOf(kind);
        }
    });
}

TEST_F(DialogPainting, AnEmptyItemIsNoMatter) {
    WithDialog([] {
        for (const DialogRow& row : DialogRows) {
            for (const Rect& item : {Rect{}, Rect{10, 10, 10, 10}, Rect{20, 20, 10, 10}, Rect{900, 900, 950, 950}}) {
                const Surface surface(30, 30);
                if (row.id != NoId) Draw(surface, row.id, item, ODS_FOCUS);
            }
        }
    });
}

TEST_F(DialogPainting, ASampleIsPaintedAgainOnlyWhereItIsSeen) {
    WithDialog([] {
        invalidated.clear();
        SendMessageW(Dialog(), WM_TIMER, 1, 0);
        EXPECT_THAT(invalidated, UnorderedElementsAre(IdCpuIconSample, IdCpuGraphSample));
        Click(IdMemTab);
        invalidated.clear();
        SendMessageW(Dialog(), WM_TIMER, 1, 0);
        EXPECT_THAT(invalidated, UnorderedElementsAre(IdMemSample, IdMem1Sample, IdMem2Sample, IdMem3Sample));
        Click(IdDiskTab);
        invalidated.clear();
        SendMessageW(Dialog(), WM_TIMER, 1, 0);
        EXPECT_THAT(invalidated, UnorderedElementsAre(IdDiskIconSample, IdDiskGraphSample));
        Click(IdNetTab);
        invalidated.clear();
        SendMessageW(Dialog(), WM_TIMER, 1, 0);
        EXPECT_THAT(invalidated, UnorderedElementsAre(IdNetIconSample, IdNetGraphSample));
        const Surface before(60, 50);
        Draw(before, IdNetGraphSample, {0, 0, 60, 50});
        SendMessageW(Dialog(), WM_TIMER, 2, 0);
        const Surface same(60, 50);
        Draw(same, IdNetGraphSample, {0, 0, 60, 50});
        EXPECT_EQ(DifferenceOf(before, same).count, 0) << "another timer";
    });
}

TEST_F(DialogPainting, TitlesOfHardwareAreOnWhiteAndThoseOfGraphsOnThePage) {
    WithDialog([] {
        const auto backgroundOf = [](std::int32_t id, UINT state) {
            const Surface surface(204, 26);
            Draw(surface, id, {2, 1, 202, 25}, state);
            const ColorValue background = surface.At(201, 24);
            const std::uint32_t icon = background == 0xFFFFFF ? HardwareSectionIcon : GraphSectionIcon;
            EXPECT_TRUE(HasIcon(surface, icon, {6, 5, 22, 21}, background)) << id;
            return background;
        };
        world.texts.clear();
        for (const std::int32_t id : {IdCpuHardwareTitle, IdDiskHardwareTitle, IdMemHardwareTitle})
            EXPECT_EQ(backgroundOf(id, 0), 0xFFFFFFU) << id;
        for (const std::int32_t id : {IdCpuGraphTitle, IdDiskGraphTitle, IdNetGraphTitle})
            EXPECT_EQ(backgroundOf(id, ODS_DISABLED), Sys(COLOR_BTNFACE)) << id;
        ASSERT_EQ(world.texts.size(), 6U);
        EXPECT_EQ(world.texts.front().text, TextOfWindow(Control(IdCpuHardwareTitle)));
        EXPECT_EQ(world.texts.front().color, 0x444444U);
        EXPECT_EQ(world.texts.back().color, Sys(COLOR_GRAYTEXT));
        EXPECT_TRUE(world.texts.back().bold);
    });
}

TEST_F(DialogPainting, OnlyTheTitlesOnThePageFollowAContrastTheme) {
    WithDialog([] {
        const Surface surface(204, 26);
        world.texts.clear();
        contrast = Contrast::On;
        Draw(surface, IdCpuHardwareTitle, {2, 1, 202, 25}, 0);
        Draw(surface, IdCpuGraphTitle, {2, 1, 202, 25}, 0);
        contrast = Contrast::Off;
        ASSERT_EQ(world.texts.size(), 2U);
        EXPECT_EQ(world.texts[0].color, 0x444444U) << "on white";
        EXPECT_EQ(world.texts[1].color, Sys(COLOR_BTNTEXT));
    });
}

TEST_F(DialogPainting, SwitchesAndWellsShowTheSettings) {
    WithDialog([&] {
        settings.show = {true, false, true, true};
        settings.colors[ColorOfWell(IdCpuFg).value()] = 0xE14B20;  // not saved yet
        for (const auto& [id, color] : {std::pair{IdCpuShow, 0x0A6FD6U}, std::pair{IdDiskShow, 0xC7C7CCU}}) {
            const Surface surface(110, 24);
            Draw(surface, id, {5, 2, 105, 22});
            EXPECT_GT(surface.CountOf(color), 100) << id;
        }
        const Surface plain(14, 12);
        Draw(plain, IdCpuFg, {0, 0, 14, 12}, ODS_FOCUS | ODS_NOFOCUSRECT);
        EXPECT_EQ(plain.CountOf(0xE14B20), 12 * 10);
        const Surface focused(14, 12);
        Draw(focused, IdCpuFg, {0, 0, 14, 12}, ODS_FOCUS);
        ExpectFocusRect(focused, plain, {2, 2, 12, 10});
        const Surface disabled(14, 12);
        Draw(disabled, IdCpuFg, {0, 0, 14, 12}, ODS_DISABLED);
        EXPECT_EQ(disabled.CountOf(Sys(COLOR_GRAYTEXT)), 2 * (14 + 10));
    });
}

TEST_F(DialogPainting, TheCurrentTabHasItsAccentColourAndTheOthersNone) {
    WithDialog([] {
        Click(IdMemTab);
        for (const DialogTab& tab : DialogTabs) {
            world.texts.clear();
            const Surface surface(104, 34);
            Draw(surface, tab.button, {2, 1, 102, 31});
            EXPECT_EQ(surface.CountOf(tab.accent) > 0, tab.button == IdMemTab) << tab.button;
            ASSERT_EQ(world.texts.size(), 1U);
            EXPECT_EQ(world.texts[0].text, tab.text);
            EXPECT_EQ(world.texts[0].bold, tab.button == IdMemTab);
            const bool selected = tab.button == IdMemTab;
            const std::int32_t left = world.texts[0].where.left - 21;
            const ColorValue background = selected ? Sys(COLOR_WINDOW) : BlendColor(Sys(COLOR_BTNFACE), 0, 0.09);
            EXPECT_TRUE(HasIcon(surface, TabIcons.at(static_cast<std::size_t>(&tab - DialogTabs.data())),
                                {left, 9, left + 16, 25}, background))
                << tab.button;
        }
    });
}

TEST_F(DialogPainting, EachPageListsItsOwnHardware) {
    WithDialog([] {
        const auto labelOf = [](std::int32_t id) {
            world.texts.clear();
            const Surface surface(400, 100);
            Draw(surface, id, {0, 0, 390, 90});
            EXPECT_EQ(surface.At(389, 89), 0xFFFFFFU);
            return world.texts.at(0).text;
        };
        EXPECT_EQ(labelOf(IdCpuHardware), L"Procesador");
        EXPECT_EQ(labelOf(IdDiskHardware), L"Discos fijos");
        EXPECT_EQ(labelOf(IdMemHardware), L"Memoria");
    });
}

TEST_F(DialogPainting, BehindTheControlsAreTheAccentLineAndTheBoxesOfThePage) {
    WithDialog([] {
        RECT client{};
        GetClientRect(Dialog(), &client);
        for (const DialogTab& tab : DialogTabs) {
            Click(tab.button);
            const Surface surface(client.right, client.bottom);
            DrawBackground(surface);
            const Rect first = PlaceOf(IdCpuTab);
            const Rect current = PlaceOf(tab.button);
            const Rect last = PlaceOf(IdGeneralTab);
            EXPECT_EQ(surface.CountOf(tab.accent), 2 * (last.right - first.left - RectWidth(current))) << tab.button;
            EXPECT_EQ(surface.At(current.left, current.bottom), Untouched) << tab.button;
            for (std::size_t i = 0; i < HardwareCount; ++i) {
                const Rect text = PlaceOf(HardwarePanels[i].text);
                const bool isHere = tab.button == DialogTabs[i].button;
                EXPECT_EQ(isHere && surface.At(text.left, text.top) == 0xFFFFFF, isHere) << tab.button;
            }
            EXPECT_EQ(surface.CountOf(0xFFFFFF) > 0, tab.button != IdNetTab && tab.button != IdGeneralTab);
            for (const GraphPanel& panel : GraphPanels) {
                if (tab.button != DialogTabs[IndexOf(panel.tab)].button) continue;
                const Rect title = PlaceOf(panel.title);
                std::int32_t left = title.left;
                while (left > 0 && surface.At(left, title.bottom) != Frame)
                    --left;
                EXPECT_GT(left, 0) << "the box has a left edge";
            }
            EXPECT_GT(surface.CountOf(Frame), 100) << tab.button;
        }
    });
}

TEST_F(DialogPainting, ATitledFrameIsOpenUnderItsTitle) {
    const auto isBoxTitle = [](const DialogRow& row) {
        return row.type == ControlType::BoxTitle &&
               DialogGroups[static_cast<std::size_t>(row.group)].tab == SettingsTab::General;
    };
    const auto row = std::ranges::find_if(DialogRows, isBoxTitle);
    ASSERT_NE(row, DialogRows.end());
    const std::int32_t id = ControlIds()[static_cast<std::size_t>(row - DialogRows.begin())];
    WithDialog([id] {
        Click(IdGeneralTab);
        RECT client{};
        GetClientRect(Dialog(), &client);
        const Surface surface(client.right, client.bottom);
        DrawBackground(surface);
        const Rect title = PlaceOf(id);
        std::int32_t top = title.top;
        while (top < title.bottom && surface.At(title.left - 1, top) != Frame)
            ++top;
        ASSERT_LT(top, title.bottom) << "the line left of the title";
        EXPECT_EQ(surface.At(title.left, top), Untouched);
        EXPECT_EQ(surface.At(title.right - 1, top), Untouched);
        EXPECT_EQ(surface.At(title.right, top), Frame);
    });
}

TEST_F(DialogPainting, InterfacesStandUnderTheHeadsOfTheirColumns) {
    NetRow row;
    row.key = 7;
    row.alias = L"Wi-Fi";
    row.ip = L"10.0.0.1";
    host.interfaces = {row};
    settings.interfaces = {7};
    settings.interface_aliases = {L"Wi-Fi"};
    WithDialog([] {
        Click(IdNetTab);
        world = {};
        const auto leftOf = [](std::int32_t head) {
            POINT corner{};
            MapWindowPoints(Control(head), Control(IdInterfaces), &corner, 1);
            return static_cast<std::int32_t>(corner.x);
        };
        const Surface plain(400, 30);
        Draw(plain, IdInterfaces, {0, 0, 390, 20}, 0, 1);
        ASSERT_EQ(world.texts.size(), 3U);
        EXPECT_EQ(world.texts[0].text, L"2");
        EXPECT_EQ(world.texts[1].text, L"Wi-Fi");
        EXPECT_EQ(world.texts[1].where.left, leftOf(IdInterfaceNames));
        EXPECT_EQ(world.texts[2].text, L"10.0.0.1");
        EXPECT_EQ(world.texts[2].where.left, leftOf(IdInterfaceAddresses));
        EXPECT_EQ(world.controls.at(0).state & DFCS_CHECKED, UINT{DFCS_CHECKED});
        const Surface focused(400, 30);
        Draw(focused, IdInterfaces, {0, 0, 390, 20}, ODS_FOCUS, 1);
        ExpectFocusRect(focused, plain, {0, 0, 390, 20});
        for (const UINT none : {2U, 0xFFFFFFFFU}) {
            const Surface surface(400, 30);
            Draw(surface, IdInterfaces, {0, 0, 390, 20}, ODS_FOCUS, none);
            EXPECT_TRUE(surface.IsUntouched()) << none;
        }
    });
}

TEST_F(DialogPainting, TheListsItemsAre20PixelsHighAndNoOtherIsMeasured) {
    WithDialog([] {
        MEASUREITEMSTRUCT item{};
        item.CtlID = IdInterfaces;
        SendMessageW(Dialog(), WM_MEASUREITEM, IdInterfaces, reinterpret_cast<LPARAM>(&item));
        EXPECT_EQ(item.itemHeight, 20U);
        item = {};
        item.CtlID = IdCpuFont;
        SendMessageW(Dialog(), WM_MEASUREITEM, IdCpuFont, reinterpret_cast<LPARAM>(&item));
        EXPECT_EQ(item.itemHeight, 0U);
    });
}

}  // namespace
}  // namespace kestrane

extern "C" {
decltype(&BeginPaint) __imp_BeginPaint = &kestrane::BeginPaintOrInstead;
decltype(&SetTimer) __imp_SetTimer = &kestrane::SetTimerOfTheTestOnly;
decltype(&InvalidateRect) __imp_InvalidateRect = &kestrane::RecordInvalidateRect;
decltype(&CreateIconIndirect) __imp_CreateIconIndirect = &kestrane::CreateIconOrNone;
}
