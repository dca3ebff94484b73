// What the settings dialog paints at the request of its controls, into memory: the samples, from the settings that are
// being edited, and the other owner-drawn controls, each with its own text, icon and state.
#include <gmock/gmock.h>

#include <string>

#include "dialog/dialog_panels.h"
#include "dialog/sample_data.h"
#include "graph/graph_painter_win32.h"
#include "support/painted_surface_win32.h"
#include "support/settings_dialog_world_win32.h"
#include "tray/icon_render_win32.h"

namespace kestrane {
namespace {

using testing::ElementsAre;

constexpr ColorValue Dark = 0x1C1C1C;
constexpr ColorValue Light = 0xEEEEEE;

bool refuseIcons = false;

HICON WINAPI CreateIconOrNone(PICONINFO info) {
    static const auto real = REAL(L"user32", CreateIconIndirect);
    return refuseIcons ? nullptr : real(info);
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
        host.processors.assign(9, 1);
        // The dialog's own, as long as its timer has not come.
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
        const auto isToBePainted = [](std::int32_t id) { return GetUpdateRect(Control(id), nullptr, FALSE) != FALSE; };
        RedrawWindow(Dialog(), nullptr, nullptr, RDW_UPDATENOW | RDW_ALLCHILDREN);
        ASSERT_FALSE(isToBePainted(IdCpuIconSample));
        SendMessageW(Dialog(), WM_TIMER, 1, 0);
        EXPECT_TRUE(isToBePainted(IdCpuIconSample));
        EXPECT_TRUE(isToBePainted(IdCpuGraphSample));
        EXPECT_FALSE(isToBePainted(IdNetIconSample));
        EXPECT_FALSE(isToBePainted(IdCpuTab));
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
            return surface.At(201, 24);
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

TEST_F(DialogPainting, SwitchesAndWellsShowTheSettings) {
    settings.show = {true, false, true, true};
    settings.colors[ColorOfWell(IdCpuFg).value()] = 0xE14B20;
    WithDialog([] {
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
        }
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
decltype(&CreateIconIndirect) __imp_CreateIconIndirect = &kestrane::CreateIconOrNone;
}
