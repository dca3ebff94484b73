// The settings dialog without a mouse: where the Tab key leads, what Space does, and that the focus is never lost.
#include <gmock/gmock.h>

#include "base/dib_win32.h"
#include "dialog/control_table.h"
#include "support/settings_dialog_world_win32.h"

namespace kestrane {
namespace {

using testing::ElementsAre;
using testing::ElementsAreArray;
using Ids = std::vector<std::int32_t>;

class SettingsDialogKeyboard : public SettingsDialogTest {
  protected:
    static std::int32_t Focus() { return GetDlgCtrlID(GetFocus()); }
    static void FocusOn(std::int32_t id) {
        SendMessageW(Dialog(), WM_NEXTDLGCTL, reinterpret_cast<WPARAM>(Control(id)), TRUE);
        ASSERT_EQ(Focus(), id);
    }
    static void Press(WPARAM key) {
        PostMessageW(GetFocus(), WM_KEYDOWN, key, 1);
        PostMessageW(GetFocus(), WM_KEYUP, key, static_cast<LPARAM>(0xC0000001));
        Pump();
    }
    static void ExpectFocusToBeOfUse(const char* reason) {
        const HWND focus = GetFocus();
        EXPECT_TRUE(IsChild(Dialog(), focus)) << reason;
        EXPECT_TRUE(IsWindowVisible(focus)) << reason << ": " << Focus();
        EXPECT_TRUE(IsWindowEnabled(focus)) << reason << ": " << Focus();
    }
    /// Where the Tab key leads from the start of a page, round and back to it.
    static Ids TabOrder() {
        Ids ids;
        const HWND first = GetNextDlgTabItem(Dialog(), nullptr, FALSE);
        for (HWND control = first; control != nullptr && (ids.empty() || control != first) && ids.size() < 300;
             control = GetNextDlgTabItem(Dialog(), control, FALSE))
            ids.push_back(GetDlgCtrlID(control));
        return ids;
    }
    static RECT PlaceOf(std::int32_t id) {
        RECT rect{};
        GetWindowRect(Control(id), &rect);
        return rect;
    }
    void HaveDisks() {
        for (const std::uint32_t number : {0U, 1U}) {
            DiskFacts disk;
            disk.number = number;
            disk.model = L"Disk";
            host.disks.push_back(disk);
        }
    }
};

TEST_F(SettingsDialogKeyboard, TabReachesAllThatCanBeUsedInTheOrderOfReading) {
    struct Row {
        ControlId tab;
        Ids ids;
    };
    const std::vector<Row> rows = {
        {IdCpuTab,
         {IdCpuShow,     IdCpuBg,      IdCpuFg,      IdCpuBorder,    IdCpuRefresh,  IdCpuGraphBg, IdCpuOpacity,
          IdCpuMargin,   IdCpuLines,   IdCpuPerCore, IdCpuSmoothing, IdCpuFill,     IdCpuFont,    IdCpuFontSize,
          IdCpuFontBold, IdCpuTopmost, IdCpuGraphFg, IdCpuGraphPerf, IdCpuGraphEff, IdCpuRestore, IdCpuSave}},
        {IdDiskTab, {IdDiskShow,      IdDiskBg,         IdDiskRead,   IdDiskWrite,    IdDiskBorder,   IdDiskRefresh,
                     IdDiskGraphBg,   IdDiskOpacity,    IdDiskMargin, IdDiskActivity, IdAllDisks,     IdFirstDisk,
                     IdFirstDisk + 1, IdDiskLines,      IdDiskFont,   IdDiskFontSize, IdDiskFontBold, IdDiskTopmost,
                     IdDiskGraphRead, IdDiskGraphWrite, IdDiskRestore}},
        {IdMemTab, {IdMemShow,  IdMemBar,     IdMemBg,      IdMemText, IdMemBorder,   IdThreshold1,  IdMem1Bg,
                    IdMem1Text, IdMem1Border, IdThreshold2, IdMem2Bg,  IdMem2Text,    IdMem2Border,  IdThreshold3,
                    IdMem3Bg,   IdMem3Text,   IdMem3Border, IdMemFont, IdMemFontSize, IdMemFontBold, IdMemRefresh}},
        {IdNetTab,
         {IdNetShow, IdNetBg, IdNetDown, IdNetUp, IdNetBoth, IdNetBorder, IdNetRefresh, IdInterfaces, IdNetGraphBg,
          IdNetOpacity, IdNetMargin, IdNetLines, IdNetFont, IdNetFontSize, IdNetFontBold, IdNetTopmost, IdNetGraphDown,
          IdNetGraphUp, IdNetGraphBoth}},
        {IdGeneralTab, {IdAutostart, IdCheckUpdates, IdLanguage}},
    };
    HaveDisks();
    for (const GraphKind kind : GraphKinds)
        GraphSettingsOf(settings, kind).style = 0;
    WithDialog([&] {
        Click(IdCpuLines);
        for (Row row : rows) {
            Click(row.tab);
            for (const DialogTab& tab : DialogTabs)
                row.ids.push_back(tab.button);
            const Ids order = TabOrder();
            EXPECT_THAT(order, ElementsAreArray(row.ids));
            for (std::size_t i = 1; i < order.size() - TabCount; ++i) {
                const RECT before = PlaceOf(order[i - 1]);
                const RECT after = PlaceOf(order[i]);
                const bool isBelow = after.top + after.bottom > before.top + before.bottom;
                EXPECT_TRUE(isBelow || after.left >= before.right) << order[i - 1] << " comes before " << order[i];
            }
        }
    });
}

TEST_F(SettingsDialogKeyboard, StartsAtTheBeginningOfThePage) {
    opensAllPages = false;
    WithDialog([] {
        EXPECT_EQ(Focus(), IdCpuShow);
        EXPECT_EQ(GetActiveWindow(), Dialog());
        Press(VK_TAB);
        EXPECT_EQ(Focus(), IdCpuBg);
    });
}

TEST_F(SettingsDialogKeyboard, SpacePressesWhatHasTheFocus) {
    host.interfaces.resize(1);
    WithDialog([this] {
        FocusOn(IdCpuShow);
        Press(VK_SPACE);
        EXPECT_FALSE(settings.show[0]);
        Press(VK_SPACE);
        EXPECT_TRUE(settings.show[0]);
        FocusOn(IdCpuPerCore);
        Press(VK_SPACE);
        EXPECT_TRUE(settings.per_core);
        FocusOn(IdCpuBg);
        Press(VK_SPACE);
        EXPECT_EQ(dialogWorld.colorDialogs.size(), 1U);
        FocusOn(IdNetTab);
        Press(VK_SPACE);
        EXPECT_TRUE(IsShown(IdNetShow));
        ExpectFocusToBeOfUse("on the tab");
        FocusOn(IdInterfaces);
        const int changes = host.changes;
        Press(VK_SPACE);
        EXPECT_EQ(host.changes, changes + 1) << "its first item";
    });
}

TEST_F(SettingsDialogKeyboard, GoesOnFromAButtonThatHasDoneItsWork) {
    WithDialog([this] {
        Click(IdCpuPerCore);
        FocusOn(IdCpuSave);
        Press(VK_SPACE);
        EXPECT_FALSE(IsEnabled(IdCpuSave));
        ExpectFocusToBeOfUse("saved");
        FocusOn(IdCpuRestore);
        Press(VK_RETURN);
        EXPECT_EQ(settings, MakeDefaultSettings()) << "Enter presses a button that has the focus";
        EXPECT_FALSE(IsEnabled(IdCpuRestore));
        ExpectFocusToBeOfUse("restored");
        Press(VK_RETURN);
        EXPECT_TRUE(IsWindowVisible(Dialog()));
    });
}

TEST_F(SettingsDialogKeyboard, StaysOnTheSwitchThatDisablesThePage) {
    WithDialog([] {
        FocusOn(IdCpuShow);
        Press(VK_SPACE);
        EXPECT_FALSE(IsEnabled(IdCpuBg));
        EXPECT_EQ(Focus(), IdCpuShow);
        EXPECT_THAT(TabOrder(), ElementsAre(IdCpuShow, IdCpuRestore, IdCpuSave, IdCpuTab, IdDiskTab, IdMemTab, IdNetTab,
                                            IdGeneralTab));
    });
}

TEST_F(SettingsDialogKeyboard, EscClosesAnOpenListBeforeTheDialog) {
    WithDialog([] {
        FocusOn(IdCpuRefresh);
        SendMessageW(Control(IdCpuRefresh), CB_SHOWDROPDOWN, TRUE, 0);
        Press(VK_ESCAPE);
        EXPECT_FALSE(SendMessageW(Control(IdCpuRefresh), CB_GETDROPPEDSTATE, 0, 0));
        EXPECT_TRUE(IsOpen());
        Press(VK_ESCAPE);
        EXPECT_FALSE(IsOpen());
    });
}

TEST_F(SettingsDialogKeyboard, ClosingWhileAListIsOpenDoesNoHarm) {
    WithDialog([this] {
        FocusOn(IdCpuRefresh);
        SendMessageW(Control(IdCpuRefresh), CB_SHOWDROPDOWN, TRUE, 0);
        PostMessageW(Control(IdCpuRefresh), WM_KEYDOWN, VK_DOWN, 1);
        Pump();
        EXPECT_NE(settings, MakeDefaultSettings());
        SendMessageW(Dialog(), WM_SYSCOMMAND, SC_CLOSE, 0);
        EXPECT_FALSE(IsOpen());
    });
    EXPECT_EQ(settings, MakeDefaultSettings());
}

/// Aids for the disabled press buttons without giving them the focus.
TEST_F(SettingsDialogKeyboard, IsNotLostWithAControlThatIsHiddenOrDisabled) {
    GraphSettingsOf(settings, GraphKind::Cpu).style = 1;
    WithDialog([] {
        const auto press = [](std::int32_t id) {
            SendMessageW(Dialog(), WM_COMMAND, MAKEWPARAM(id, BN_CLICKED), reinterpret_cast<LPARAM>(Control(id)));
        };
        FocusOn(IdCpuSmoothing);
        CheckDlgButton(Dialog(), IdCpuLines, BST_UNCHECKED);
        press(IdCpuLines);
        ExpectFocusToBeOfUse("the row of the lines has gone");
        FocusOn(IdCpuRefresh);
        press(IdDiskTab);
        EXPECT_TRUE(IsShown(IdDiskShow));
        ExpectFocusToBeOfUse("another tab");
        FocusOn(IdDiskRefresh);
        press(IdDiskShow);
        EXPECT_FALSE(IsEnabled(IdDiskRefresh));
        ExpectFocusToBeOfUse("a hidden icon");
    });
}

TEST_F(SettingsDialogKeyboard, OwnerDrawnControlsShowTheFocusOnceTheKeyboardIsUsed) {
    host.interfaces.resize(2);
    WithDialog([] {
        const auto pictureOf = [](std::int32_t id, UINT kind, UINT state) {
            RECT size{};
            GetClientRect(Control(id), &size);
            if (kind == ODT_LISTBOX) SendMessageW(Control(id), LB_GETITEMRECT, 0, reinterpret_cast<LPARAM>(&size));
            const UniqueMemoryDc dc(CreateCompatibleDC(nullptr));
            const Dib dib = MakeDib(dc.Get(), size.right, size.bottom, DibFormat::Rgb);
            const SelectedObject selected(dc.Get(), dib.bitmap.Get());
            const DRAWITEMSTRUCT item{
                kind, static_cast<UINT>(id), 0, ODA_DRAWENTIRE, state, Control(id), dc.Get(), size, 0};
            SendMessageW(Dialog(), WM_DRAWITEM, static_cast<WPARAM>(id), reinterpret_cast<LPARAM>(&item));
            GdiFlush();
            return std::vector<std::uint32_t>(dib.pixels, dib.pixels + size.right * size.bottom);
        };
        for (const auto& [id, kind] : std::vector<std::pair<std::int32_t, UINT>>{
                 {IdCpuTab, ODT_BUTTON}, {IdCpuShow, ODT_BUTTON}, {IdCpuBg, ODT_BUTTON}, {IdInterfaces, ODT_LISTBOX}}) {
            const auto plain = pictureOf(id, kind, 0);
            EXPECT_NE(pictureOf(id, kind, ODS_FOCUS), plain) << id;
            EXPECT_EQ(pictureOf(id, kind, ODS_FOCUS | ODS_NOFOCUSRECT), plain) << id;
        }
    });
}

}  // namespace
}  // namespace kestrane
