// The windows of the dialog's controls: their creation, also of those that cannot be created, and their moves.
#include <gmock/gmock.h>

#include <algorithm>
#include <map>
#include <set>

#include "base/geometry_win32.h"
#include "dialog/control_table.h"
#include "dialog/dialog_messages_win32.h"
#include "dialog/dialog_units_win32.h"
#include "dialog/hardware_layout.h"
#include "dialog/hardware_painter_win32.h"
#include "hardware/hardware_facts_win32.h"
#include "metrics/value_text_win32.h"
#include "support/geometry_print.h"
#include "support/settings_dialog_world_win32.h"

namespace kestrane {
namespace {

using testing::Each;
using testing::ElementsAre;
using testing::IsEmpty;

struct CreatedControl {
    std::wstring kind;
    DWORD style;
    std::int32_t id;
    std::wstring text;
    bool operator==(const CreatedControl&) const = default;
};

/// What the faked calls do and have seen.
struct System {
    std::vector<CreatedControl> created;
    std::set<std::int32_t> refused;  // ids of controls that cannot be created
    bool refusesAll = false;
    int batches = 0;
    int moves = 0;  // in the last batch
    int movesBeforeFailure = -1;
    bool batchFailsToBegin = false;
    bool batchFailsToEnd = false;
    std::vector<WPARAM> redraws;  // WM_SETREDRAW to the dialog
};
System sys;

HWND WINAPI CreateOrRefuse(DWORD exStyle, LPCWSTR kind, LPCWSTR text, DWORD style, int x, int y, int width, int height,
                           HWND parent, HMENU menu, HINSTANCE instance, LPVOID parameter) {
    static const auto real = REAL(L"user32", CreateWindowExW);
    const auto id = static_cast<std::int32_t>(reinterpret_cast<INT_PTR>(menu));
    sys.created.push_back({kind, style, id, text});
    if (sys.refusesAll || sys.refused.contains(id)) return nullptr;
    return real(exStyle, kind, text, style, x, y, width, height, parent, menu, instance, parameter);
}

HDWP WINAPI BeginBatch(int count) {
    static const auto real = REAL(L"user32", BeginDeferWindowPos);
    ++sys.batches;
    sys.moves = 0;
    return sys.batchFailsToBegin ? nullptr : real(count);
}

HDWP WINAPI MoveInBatch(HDWP batch, HWND window, HWND after, int x, int y, int width, int height, UINT flags) {
    static const auto real = REAL(L"user32", DeferWindowPos);
    if (sys.moves == sys.movesBeforeFailure) return nullptr;
    ++sys.moves;
    return real(batch, window, after, x, y, width, height, flags);
}

BOOL WINAPI EndBatch(HDWP batch) {
    static const auto real = REAL(L"user32", EndDeferWindowPos);
    return sys.batchFailsToEnd ? FALSE : real(batch);
}

LRESULT WINAPI Send(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    static const auto real = REAL(L"user32", SendMessageW);
    if (message == WM_SETREDRAW && window == OpenSettingsDialog()) sys.redraws.push_back(wParam);
    return real(window, message, wParam, lParam);
}

using Ids = std::vector<std::int32_t>;
const std::wstring ControlFailed = L"kestrane: no se pudo crear un control del dialogo de ajustes\n";

class SettingsDialogControls : public SettingsDialogTest {
  protected:
    SettingsDialogControls() {
        sys = {};
        opensAllPages = false;
    }

    static Rect PlaceOf(HWND control) {
        RECT rect{};
        GetWindowRect(control, &rect);
        MapWindowPoints(nullptr, Dialog(), reinterpret_cast<POINT*>(&rect), 2);
        return FromPlatform(rect);
    }
    static int WeightOfFont(HWND control) {
        LOGFONTW font{};
        GetObjectW(reinterpret_cast<HFONT>(SendMessageW(control, WM_GETFONT, 0, 0)), sizeof font, &font);
        return font.lfWeight;
    }
    struct Placed {
        Rect rect;
        bool shown;
        bool operator==(const Placed&) const = default;
    };
    /// Of every control, by id.
    static std::map<std::int32_t, Placed> Places() {
        std::map<std::int32_t, Placed> places;
        for (HWND control = GetWindow(Dialog(), GW_CHILD); control != nullptr;
             control = GetWindow(control, GW_HWNDNEXT))
            places[GetDlgCtrlID(control)] = {PlaceOf(control), IsWindowVisible(control) != FALSE};
        return places;
    }
    static DiskFacts Disk(std::uint32_t number, const wchar_t* model) {
        DiskFacts disk;
        disk.number = number;
        disk.model = model;
        return disk;
    }
};

TEST_F(SettingsDialogControls, AreThoseOfTheTableThenDisksTabsAndNotes) {
    host.disks = {Disk(0, L"First"), Disk(2, L"Second")};
    std::vector<CreatedControl> expected;
    const auto ids = ControlIds();
    for (std::size_t i = 0; i < DialogRows.size(); ++i) {
        const ControlClass& kind = ControlClasses[static_cast<std::size_t>(DialogRows[i].type)];
        expected.push_back({kind.name, kind.style, ids[i], TextOf(DialogRows[i])});
    }
    expected.push_back({L"BUTTON", 0x40010003, IdAllDisks, L"Todos (suma)"});
    expected.push_back({L"BUTTON", 0x40010003, IdFirstDisk, L"0  First"});
    expected.push_back({L"BUTTON", 0x40010003, IdFirstDisk + 1, L"2  Second"});
    for (const DialogTab& tab : DialogTabs)
        expected.push_back({L"BUTTON", 0x5001000B, tab.button, tab.text});
    for (const PageNote& note : PageNotes)
        expected.push_back({L"STATIC", 0x50000080, note.id, note.text});
    WithDialog([&] {
        EXPECT_EQ(sys.created.size(), expected.size());
        for (std::size_t i = 0; i < std::min(sys.created.size(), expected.size()); ++i) {
            EXPECT_EQ(sys.created[i].kind, expected[i].kind) << "control " << i;
            EXPECT_EQ(sys.created[i].style, expected[i].style) << "control " << i;
            EXPECT_EQ(sys.created[i].id, expected[i].id) << "control " << i;
            EXPECT_EQ(sys.created[i].text, expected[i].text) << "control " << i;
        }
    });
    EXPECT_THAT(debugLines, IsEmpty());
}

TEST_F(SettingsDialogControls, TitlesAreBoldInTheDialogsFont) {
    WithDialog([] {
        const auto ids = ControlIds();
        for (std::size_t i = 0; i < DialogRows.size(); ++i) {
            if (DialogRows[i].type == ControlType::TabIcon) continue;  // has no text
            const bool isTitle =
                DialogRows[i].type == ControlType::TabTitle || DialogRows[i].type == ControlType::BoxTitle;
            EXPECT_EQ(WeightOfFont(Control(ids[i])), isTitle ? FW_BOLD : FW_NORMAL) << ids[i];
        }
        EXPECT_EQ(WeightOfFont(Control(IdAllDisks)), FW_NORMAL);
        EXPECT_EQ(WeightOfFont(Control(IdCpuTab)), FW_NORMAL);
        EXPECT_EQ(WeightOfFont(Control(IdColorNote)), FW_NORMAL);
    });
}

TEST_F(SettingsDialogControls, TheDialogGoesOnWithoutAControl) {
    struct Row {
        std::int32_t id;
        bool isOfTheTable;
    };
    const std::vector<Row> rows = {{IdInterfaces, true},   {IdInterfaceNames, true}, {IdCpuRefresh, true},
                                   {IdCpuFont, true},      {IdLanguage, true},       {IdThreshold1, true},
                                   {IdCpuHardware, true},  {IdCpuBg, true},          {IdCpuIconSample, true},
                                   {IdDiskActivity, true}, {IdAllDisks, true},       {IdFirstDisk, true},
                                   {IdCpuShow, true},      {IdNetTab, false},        {IdGeneralTab, false},
                                   {IdColorNote, false},   {IdCpuSave, true},        {FirstAutomaticId, true}};
    for (const auto& [id, isOfTheTable] : rows) {
        sys = {};
        sys.refused = {id};
        debugLines.clear();
        host.disks = {Disk(0, L"First"), Disk(1, L"Second")};
        WithDialog([id = id] {
            EXPECT_EQ(Control(id), nullptr);
            EXPECT_EQ(Places().size(), sys.created.size() - 1) << "all others are there, without " << id;
            VisitEveryPage();
            EXPECT_TRUE(IsShown(IdCpuSmoothing)) << id;
        });
        if (isOfTheTable) {
            EXPECT_THAT(debugLines, ElementsAre(ControlFailed)) << id;
        } else {
            EXPECT_THAT(debugLines, IsEmpty()) << id;
        }
    }
}

TEST_F(SettingsDialogControls, TheOtherDisksStayInTheirPlaceInTheTabOrder) {
    sys.refused = {IdDiskActivity, IdAllDisks, IdFirstDisk + 1};
    host.disks = {Disk(0, L"First"), Disk(1, L"Second"), Disk(2, L"Third")};
    WithDialog([] {
        Click(IdDiskTab);
        const auto next = [](std::int32_t id) { return GetDlgCtrlID(GetNextDlgTabItem(Dialog(), Control(id), FALSE)); };
        EXPECT_EQ(next(IdDiskMargin), IdFirstDisk);
        EXPECT_EQ(next(IdFirstDisk), IdFirstDisk + 2);
        EXPECT_EQ(next(IdFirstDisk + 2), IdDiskLines);
    });
}

TEST_F(SettingsDialogControls, TheDisksHaveRoomInEveryLanguage) {
    const Ids disks{IdAllDisks, IdFirstDisk, IdFirstDisk + 1};
    host.disks = {Disk(0, L"First"), Disk(1, L"Second")};
    std::map<std::int32_t, Placed> places;
    WithDialog([&] {
        Click(IdDiskTab);
        places = Places();
    });
    SetLanguage(ActiveEnglish);
    WithDialog([&] {
        EXPECT_NE(Places()[IdFirstDisk], places[IdFirstDisk]);
        SetLanguage(ActiveSpanish);
        SendMessageW(Dialog(), WM_RETRANSLATE, 0, 0);
        for (const std::int32_t id : disks)
            EXPECT_EQ(Places()[id], places[id]) << id;
    });
}

TEST_F(SettingsDialogControls, WithoutAnyTheDialogStillOpensAndCloses) {
    sys.refusesAll = true;
    WithDialog([] {
        EXPECT_THAT(Places(), IsEmpty());
        SendMessageW(Dialog(), WM_RETRANSLATE, 0, 0);
        SendMessageW(Dialog(), WM_COMMAND, IdCpuPerCore, 0);
    });
    EXPECT_EQ(debugLines.size(), DialogRowCount + 1);
    EXPECT_THAT(debugLines, Each(ControlFailed));
}

TEST_F(SettingsDialogControls, EndAtTheirPlacesEvenIfABatchFails) {
    std::map<std::int32_t, Placed> places;
    WithDialog([&] {
        Click(IdNetTab);
        places = Places();
    });
    struct Row {
        const char* reason;
        bool begin;
        int moves;
        bool end;
    };
    const std::vector<Row> rows = {{"at its begin", true, -1, false},
                                   {"at the first move", false, 0, false},
                                   {"at a later move", false, 7, false},
                                   {"at its end", false, -1, true}};
    for (const Row& row : rows) {
        sys = {};
        sys.batchFailsToBegin = row.begin;
        sys.movesBeforeFailure = row.moves;
        sys.batchFailsToEnd = row.end;
        std::filesystem::remove(IniFile());
        WithDialog([&] {
            Click(IdNetTab);
            EXPECT_TRUE(Places() == places) << row.reason;
        });
    }
}

TEST_F(SettingsDialogControls, AreMovedInOneBatchAndOnlyIfTheyChange) {
    WithDialog([] {
        const int always = static_cast<int>(TabCount + PageNotes.size());
        // What stands on a page, but for the titles and icons that are never shown, and for what belongs to lines.
        const auto shownOn = [](SettingsTab tab) {
            return std::ranges::count_if(DialogRows, [tab](const DialogRow& row) {
                const DialogGroup& group = DialogGroups[static_cast<std::size_t>(row.group)];
                return group.tab == tab && group.kind != GroupKind::LinesOnly && row.type != ControlType::TabTitle &&
                       row.type != ControlType::TabIcon;
            });
        };
        EXPECT_EQ(sys.batches, 1);
        EXPECT_EQ(sys.moves, always + shownOn(SettingsTab::Cpu)) << "a page that is not open can wait";
        SendMessageW(Dialog(), WM_RETRANSLATE, 0, 0);
        EXPECT_EQ(sys.batches, 2);
        EXPECT_EQ(sys.moves, always) << "nothing has changed";
        Click(IdCpuTab);
        EXPECT_EQ(sys.batches, 2) << "the tab that is open already";
        Click(IdGeneralTab);
        EXPECT_EQ(sys.moves, always + shownOn(SettingsTab::Cpu) + shownOn(SettingsTab::General));
    });
}

TEST_F(SettingsDialogControls, NothingIsPaintedWhileTheyMove) {
    WithDialog([] {
        EXPECT_THAT(sys.redraws, IsEmpty()) << "there is nothing to see before the dialog is shown";
        Click(IdDiskTab);
        EXPECT_THAT(sys.redraws, ElementsAre(FALSE, TRUE));
        EXPECT_TRUE(IsWindowVisible(Dialog()));
        EXPECT_TRUE(GetUpdateRect(Dialog(), nullptr, FALSE)) << "all of it is painted afterwards";
        SendMessageW(Dialog(), WM_RETRANSLATE, 0, 0);
        EXPECT_THAT(sys.redraws, ElementsAre(FALSE, TRUE, FALSE, TRUE));
    });
}

TEST_F(SettingsDialogControls, TheHardwareTextIsAsHighAsItsRows) {
    WithDialog([] {
        const HWND control = Control(IdCpuHardware);
        const DialogFonts fonts{reinterpret_cast<HFONT>(SendMessageW(Dialog(), WM_GETFONT, 0, 0)),
                                reinterpret_cast<HFONT>(SendMessageW(Control(IdCpuTitle), WM_GETFONT, 0, 0))};
        const std::uint32_t dpi = GetDpiForWindow(Dialog());
        const Rect place = PlaceOf(control);
        const ScreenDc screen;
        const Rect item{0, 0, RectWidth(place), RectHeight(place)};
        const std::int32_t height =
            PaintHardwareRows(screen.Get(), HardwareTextArea(item, dpi),
                              BuildCpuSummary(ReadCpuFacts(), DecimalSeparatorChar()), fonts, dpi, false);
        const std::int32_t unit = DialogUnitsToPixels(Dialog(), {0, 0, 0, 8}).bottom;
        const Rect expected = DialogUnitsToPixels(Dialog(), {0, 50, 0, 50 + HardwareHeight(height, unit, dpi) - 6});
        EXPECT_EQ(place.top, expected.top);
        EXPECT_EQ(place.bottom, expected.bottom);
        EXPECT_GE(RectHeight(place), height);
    });
}

}  // namespace
}  // namespace kestrane

extern "C" {
decltype(&CreateWindowExW) __imp_CreateWindowExW = &kestrane::CreateOrRefuse;
decltype(&BeginDeferWindowPos) __imp_BeginDeferWindowPos = &kestrane::BeginBatch;
decltype(&DeferWindowPos) __imp_DeferWindowPos = &kestrane::MoveInBatch;
decltype(&EndDeferWindowPos) __imp_EndDeferWindowPos = &kestrane::EndBatch;
decltype(&SendMessageW) __imp_SendMessageW = &kestrane::Send;
}
