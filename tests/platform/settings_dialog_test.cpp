// The frame of the settings dialog: opening, tabs, size, placing and closing, with real windows on monitors of the
// test's own.
#include <gmock/gmock.h>

#include <algorithm>
#include <cstdlib>
#include <new>

#include "base/geometry_win32.h"
#include "dialog/dialog_units_win32.h"
#include "support/fake_window_record_win32.h"
#include "support/geometry_print.h"
#include "support/program_end_win32.h"
#include "support/settings_dialog_world_win32.h"

namespace kestrane {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

/// The work areas of the monitors. Their handles count from 1.
std::vector<Rect> monitors;
bool dialogBoxFails = false;

HMONITOR NearestMonitor(const Point& point) {
    const auto distance = [&](const Rect& area) {
        const int x = std::clamp(point.x, area.left, area.right - 1) - point.x;
        const int y = std::clamp(point.y, area.top, area.bottom - 1) - point.y;
        return std::abs(x) + std::abs(y);
    };
    const auto nearest = std::ranges::min_element(monitors, {}, distance);
    return reinterpret_cast<HMONITOR>(nearest - monitors.begin() + 1);
}

HMONITOR WINAPI FindMonitorOfPoint(POINT point, DWORD) {
    return NearestMonitor(FromPlatform(point));
}

HMONITOR WINAPI FindMonitorOfWindow(HWND window, DWORD) {
    RECT rect{};
    GetWindowRect(window, &rect);
    return NearestMonitor({(rect.left + rect.right) / 2, (rect.top + rect.bottom) / 2});
}

BOOL WINAPI TellMonitor(HMONITOR monitor, LPMONITORINFO info) {
    info->rcWork = ToPlatform(monitors.at(reinterpret_cast<std::size_t>(monitor) - 1));
    return TRUE;
}

INT_PTR WINAPI OpenOrFail(HINSTANCE instance, LPCWSTR name, HWND owner, DLGPROC procedure, LPARAM lParam) {
    static const auto real = REAL(L"user32", DialogBoxParamW);
    return dialogBoxFails ? -1 : real(instance, name, owner, procedure, lParam);
}

constexpr Rect Large{0, 0, 4000, 3000};

class SettingsDialogFrame : public SettingsDialogTest {
  protected:
    SettingsDialogFrame() {
        monitors = {Large};
        dialogBoxFails = keepsNoRecord = false;
    }

    void ExpectNoDialog() {
        ShowSettingsDialog(GetModuleHandleW(nullptr), nullptr, anchor, settings, host);
        EXPECT_THAT(debugLines, ElementsAre(L"kestrane: no se pudo crear el dialogo de ajustes\n"));
        EXPECT_EQ(OpenSettingsDialog(), nullptr);
        EXPECT_EQ(host.changes, 0);
    }

    static Rect Window() {
        RECT rect{};
        GetWindowRect(Dialog(), &rect);
        return FromPlatform(rect);
    }
    static Rect ClientRect() {
        RECT rect{};
        GetClientRect(Dialog(), &rect);
        return FromPlatform(rect);
    }
    /// In the client area.
    static Rect PlaceOf(std::int32_t id) {
        RECT rect{};
        GetWindowRect(Control(id), &rect);
        MapWindowPoints(nullptr, Dialog(), reinterpret_cast<POINT*>(&rect), 2);
        return FromPlatform(rect);
    }
    static int HeightOfUnits(int units) { return DialogUnitsToPixels(Dialog(), {0, 0, 0, units}).bottom; }
    /// A unit is at least a pixel high, so no two heights in units have the same number of pixels.
    static int UnitsOfHeight(int pixels) {
        int units = 0;
        while (HeightOfUnits(units) < pixels)
            ++units;
        return units;
    }
    static void Press(std::int32_t id, WPARAM key) {
        SetFocus(Control(id));
        PostMessageW(Control(id), WM_KEYDOWN, key, 0);
        Pump();
    }
    void WriteFile(const std::string& text) const {
        std::filesystem::create_directories(IniFile().parent_path());
        std::ofstream(IniFile(), std::ios::binary) << text;
    }
    /// Enough disks to make their page the tallest.
    void HaveManyDisks() {
        for (std::uint32_t number = 0; number < 8; ++number) {
            DiskFacts disk;
            disk.number = number;
            disk.model = L"A disk with a name that fills a line of the page by itself";
            host.disks.push_back(disk);
        }
    }
};

TEST_F(SettingsDialogFrame, OpensOnTheCpuPage) {
    WithDialog([] {
        EXPECT_EQ(TextOfWindow(Dialog()), L"Ajustes de kestrane");
        EXPECT_TRUE(IsShown(IdCpuShow));
        EXPECT_FALSE(IsShown(IdDiskShow));
    });
}

TEST_F(SettingsDialogFrame, SpeaksTheLanguageOfNow) {
    SetLanguage(ActiveEnglish);
    WithDialog([] {
        EXPECT_EQ(TextOfWindow(Dialog()), L"kestrane settings");
        EXPECT_EQ(TextOfWindow(Control(IdMemTab)), L"Memory");
        SetLanguage(ActiveSpanish);
        SendMessageW(Dialog(), 0x800B, 0, 0);
        EXPECT_EQ(TextOfWindow(Dialog()), L"Ajustes de kestrane");
        EXPECT_EQ(TextOfWindow(Control(IdMemTab)), L"Memoria");
        EXPECT_EQ(TextOfWindow(Control(IdMemTitle)), L"Memoria");
        EXPECT_EQ(TextOfWindow(Control(IdAllDisks)), L"Todos (suma)");
    });
}

TEST_F(SettingsDialogFrame, OpensOnTheTabInTheFile) {
    WriteFile("[dialog]\r\ntab=2\r\n");
    WithDialog([] {
        EXPECT_TRUE(IsShown(IdMemShow));
        EXPECT_FALSE(IsShown(IdCpuShow));
    });
}

TEST_F(SettingsDialogFrame, ATabThatThereIsNotMeansCpu) {
    WriteFile("[dialog]\r\ntab=7\r\n");
    WithDialog([] { EXPECT_TRUE(IsShown(IdCpuShow)); });
    EXPECT_THAT(File(), HasSubstr("tab=0"));
}

TEST_F(SettingsDialogFrame, IsThereFromItsOpeningToItsEnd) {
    EXPECT_EQ(OpenSettingsDialog(), nullptr);
    WithDialog([] { EXPECT_TRUE(IsWindow(OpenSettingsDialog())); });
    EXPECT_EQ(OpenSettingsDialog(), nullptr);
    EXPECT_THAT(debugLines, IsEmpty());
}

TEST_F(SettingsDialogFrame, SaysSoIfItCannotBeCreated) {
    dialogBoxFails = true;
    ExpectNoDialog();
}

TEST_F(SettingsDialogFrame, EndsAtOnceIfItsWindowCannotFindIt) {
    keepsNoRecord = true;
    ExpectNoDialog();
}

TEST_F(SettingsDialogFrame, TheFirstTimeItsLowerRightCornerIsAtTheClick) {
    anchor = {2000, 1900};
    WithDialog([] {
        EXPECT_EQ(Window().right, 2000);
        EXPECT_EQ(Window().bottom, 1900);
    });
}

TEST_F(SettingsDialogFrame, AtTheEdgeItMovesIntoTheWorkArea) {
    struct Row {
        const char* reason;
        Point anchor;
        bool atLeft, atTop;
    };
    const std::vector<Row> rows = {
        {"top left", {10, 10}, true, true},
        {"bottom right, on the taskbar", {3990, 3040}, false, false},
        {"top right", {4100, 5}, false, true},
    };
    for (const Row& row : rows) {
        std::filesystem::remove(IniFile());
        anchor = row.anchor;
        WithDialog([&] {
            const Rect window = Window();
            EXPECT_EQ(window.left, row.atLeft ? 0 : std::min(row.anchor.x, 4000) - RectWidth(window)) << row.reason;
            EXPECT_EQ(window.top, row.atTop ? 0 : 3000 - RectHeight(window)) << row.reason;
        });
    }
}

TEST_F(SettingsDialogFrame, OpensOnTheMonitorOfTheClick) {
    monitors = {Large, {4000, -500, 6000, 1500}, {-3000, 200, 0, 2200}};
    anchor = {4020, 1495};
    WithDialog([] { EXPECT_EQ(Window().left, 4000) << "the second"; });
    std::filesystem::remove(IniFile());
    anchor = {-20, 2205};
    WithDialog([] {
        EXPECT_EQ(Window().right, -20) << "the third";
        EXPECT_EQ(Window().bottom, 2200);
    });
}

TEST_F(SettingsDialogFrame, OpensWhereItWasLeft) {
    WriteFile("[dialog]\r\nx=321\r\ny=123\r\ntab=4\r\n");
    WithDialog([] {
        EXPECT_EQ((Point{Window().left, Window().top}), (Point{321, 123}));
        SetWindowPos(Dialog(), nullptr, 400, 200, 0, 0, SWP_NOSIZE | SWP_NOZORDER);
        Click(IdDiskTab);
    });
    EXPECT_THAT(File(), HasSubstr("x=400"));
    EXPECT_THAT(File(), HasSubstr("y=200"));
    EXPECT_THAT(File(), HasSubstr("tab=1"));
}

TEST_F(SettingsDialogFrame, APositionBeyondAllMonitorsComesToTheNearest) {
    monitors = {Large, {4000, 0, 7000, 2000}};
    WriteFile("[dialog]\r\nx=90000\r\ny=-90000\r\n");
    WithDialog([] {
        EXPECT_EQ(Window().right, 7000);
        EXPECT_EQ(Window().top, 0);
    });
}

TEST_F(SettingsDialogFrame, IsTallEnoughForTheNotes) {
    WithDialog([] {
        const Rect client = ClientRect();
        EXPECT_EQ(RectWidth(client), DialogUnitsToPixels(Dialog(), {0, 0, 270, 0}).right);
        const Rect first = PlaceOf(IdColorNote);
        const Rect second = PlaceOf(IdSavingNote);
        EXPECT_LE(first.bottom, second.top);
        EXPECT_EQ(UnitsOfHeight(client.bottom) - UnitsOfHeight(second.bottom), 4);
        EXPECT_LT(PlaceOf(IdNetSave).bottom, first.top) << "on the tallest page or a lower one";
    });
}

TEST_F(SettingsDialogFrame, StaysAsItIsFromTabToTab) {
    WithDialog([] {
        const Rect before = Window();
        for (const DialogTab& tab : DialogTabs) {
            Click(tab.button);
            EXPECT_EQ(Window(), before);
            for (const DialogTab& other : DialogTabs)
                EXPECT_EQ(IsShown(other.save), other.save == tab.save);
        }
    });
}

TEST_F(SettingsDialogFrame, GrowsByALineIfTheTallestPageDoes) {
    HaveManyDisks();
    GraphSettingsOf(settings, GraphKind::Disk).style = 0;
    WithDialog([] {
        Click(IdDiskTab);
        const Rect before = Window();
        const Rect client = ClientRect();
        const int units = UnitsOfHeight(client.bottom);
        ASSERT_EQ(HeightOfUnits(units), client.bottom);
        Click(IdDiskLines);
        EXPECT_TRUE(IsShown(IdDiskSmoothing));
        EXPECT_EQ(ClientRect().bottom, HeightOfUnits(units + 15));
        EXPECT_EQ(RectHeight(Window()) - RectHeight(before), ClientRect().bottom - client.bottom);
        EXPECT_EQ(Window().left, before.left);
        EXPECT_EQ(RectWidth(Window()), RectWidth(before));
        Click(IdDiskLines);
        EXPECT_FALSE(IsShown(IdDiskSmoothing));
        EXPECT_EQ(RectHeight(Window()), RectHeight(before));
    });
}

TEST_F(SettingsDialogFrame, KeepsItsSizeIfALowerPageGrows) {
    HaveManyDisks();
    WithDialog([] {
        const Rect before = Window();
        Click(IdCpuLines);
        EXPECT_EQ(Window(), before);
    });
}

TEST_F(SettingsDialogFrame, MovesUpIfItGrowsBeyondTheWorkArea) {
    HaveManyDisks();
    GraphSettingsOf(settings, GraphKind::Disk).style = 0;
    anchor = {2000, 3000};
    WithDialog([] {
        Click(IdDiskTab);
        const Rect before = Window();
        ASSERT_EQ(before.bottom, 3000);
        Click(IdDiskLines);
        EXPECT_EQ(Window().bottom, 3000);
        EXPECT_LT(Window().top, before.top);
    });
}

TEST_F(SettingsDialogFrame, NeverMovesAboveTheWorkArea) {
    HaveManyDisks();
    GraphSettingsOf(settings, GraphKind::Disk).style = 0;
    monitors = {{0, 30, 4000, 300}};
    WithDialog([] {
        EXPECT_EQ(Window().top, 30);
        Click(IdDiskTab);
        Click(IdDiskLines);
        EXPECT_EQ(Window().top, 30);
        EXPECT_GT(Window().bottom, 300);
    });
}

TEST_F(SettingsDialogFrame, EnterDoesNothing) {
    WithDialog([this] {
        for (const std::int32_t id : {IdCpuShow, IdCpuBg, IdCpuRefresh, IdCpuPerCore, IdCpuTab, IdDiskTab})
            Press(id, VK_RETURN);
        EXPECT_TRUE(IsWindowVisible(Dialog()));
        EXPECT_TRUE(IsShown(IdCpuShow));
        EXPECT_EQ(host.changes, 0);
    });
    EXPECT_EQ(settings, MakeDefaultSettings());
}

TEST_F(SettingsDialogFrame, EscClosesAndPutsBackWhatWasNotSaved) {
    WithDialog([this] {
        Click(IdCpuPerCore);
        ASSERT_NE(settings, MakeDefaultSettings());
        Press(IdCpuPerCore, VK_ESCAPE);
        EXPECT_FALSE(IsWindowVisible(Dialog()));
        EXPECT_EQ(settings, MakeDefaultSettings());
    });
}

TEST_F(SettingsDialogFrame, MinimisedItSavesNeitherPositionNorTab) {
    WriteFile("[dialog]\r\nx=321\r\ny=123\r\ntab=1\r\n");
    const std::string before = File();
    WithDialog([] {
        Click(IdNetTab);
        ShowWindow(Dialog(), SW_MINIMIZE);
        EXPECT_TRUE(IsIconic(Dialog()));
    });
    EXPECT_EQ(File(), before);
}

TEST_F(SettingsDialogFrame, TheProgramMayEndItWithoutClosing) {
    WithDialog([] { DestroyWindow(Dialog()); });
    EXPECT_THAT(File(), HasSubstr("tab=0")) << "the position is saved all the same";
    EXPECT_EQ(OpenSettingsDialog(), nullptr);
}

// The system would swallow it, or let it go where nobody expects it. The last test, because its thread leaves an open
// dialog behind.
TEST_F(SettingsDialogFrame, AnExceptionInAMessageEndsTheProgram) {
    host.onChange = [] { throw std::bad_alloc(); };
    EXPECT_TRUE(test::EndsTheProgram([this] { WithDialog([] { Click(IdCpuShow); }); }));
}

}  // namespace
}  // namespace kestrane

extern "C" {
decltype(&MonitorFromPoint) __imp_MonitorFromPoint = &kestrane::FindMonitorOfPoint;
decltype(&MonitorFromWindow) __imp_MonitorFromWindow = &kestrane::FindMonitorOfWindow;
decltype(&GetMonitorInfoW) __imp_GetMonitorInfoW = &kestrane::TellMonitor;
decltype(&DialogBoxParamW) __imp_DialogBoxParamW = &kestrane::OpenOrFail;
}
