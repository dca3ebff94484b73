// The list of network interfaces and the check boxes of the disks: machines of every size, and choices that the machine
// does not have now.
#include <algorithm>
#include <cstdint>
#include <string>
#include <vector>

#include "dialog/dialog_messages_win32.h"
#include "settings/ini_file_win32.h"
#include "support/settings_dialog_world_win32.h"

namespace kestrane {
namespace {

using Texts = std::vector<std::wstring>;
using Luids = std::vector<std::uint64_t>;
using Numbers = std::vector<std::int32_t>;

NetRow Interface(std::uint64_t key, const std::wstring& alias) {
    return {.key = key, .alias = alias, .ip = L"10.0.0." + std::to_wstring(key), .operUp = true, .hardware = true};
}

DiskFacts Disk(std::uint32_t number, const std::wstring& model) {
    DiskFacts disk;
    disk.number = number;
    disk.model = model;
    return disk;
}

class SettingsDialogLists : public SettingsDialogTest {
  protected:
    void Choose(const Luids& luids, const Texts& aliases) {
        settings.interfaces = luids;
        settings.interface_aliases = aliases;
    }
    void ExpectChosen(const Luids& luids, const Texts& aliases) const {
        EXPECT_EQ(settings.interfaces, luids);
        EXPECT_EQ(settings.interface_aliases, aliases);
    }

    /// As the list asks, when an item is clicked.
    static void Toggle(WPARAM item) {
        PostMessageW(Dialog(), WM_TOGGLE_INTERFACE, item, 0);
        Pump();
    }
    static Texts Items() {
        Texts items;
        const HWND list = Control(IdInterfaces);
        for (LRESULT i = 0; i < SendMessageW(list, LB_GETCOUNT, 0, 0); ++i) {
            std::wstring text(static_cast<std::size_t>(SendMessageW(list, LB_GETTEXTLEN, static_cast<WPARAM>(i), 0)),
                              L'\0');
            SendMessageW(list, LB_GETTEXT, static_cast<WPARAM>(i), reinterpret_cast<LPARAM>(text.data()));
            items.push_back(text);
        }
        return items;
    }

    void SetDisks(std::uint32_t count) {
        host.disks.clear();
        for (std::uint32_t i = 0; i < count; ++i)
            host.disks.push_back(Disk(i, L"Disk"));
    }
    static ControlId DiskBox(int index) { return static_cast<ControlId>(IdFirstDisk + index); }
};

constexpr const wchar_t* All = L"Todas las conexiones";

TEST_F(SettingsDialogLists, AllConnectionsStandAloneWhileTheyAreTicked) {
    host.interfaces = {Interface(1, L"Ethernet"), Interface(2, L"Wi-Fi")};
    WithDialog([this] {
        EXPECT_EQ(Items(), Texts{All});
        Toggle(0);
        EXPECT_EQ(Items(), (Texts{All, L"Ethernet", L"Wi-Fi"}));
        ExpectChosen({}, {});
        EXPECT_EQ(host.changes, 1);
        EXPECT_FALSE(IsEnabled(IdNetSave)) << "nothing is chosen yet";
        Toggle(2);
        ExpectChosen({2}, {L"Wi-Fi"});
        EXPECT_EQ(host.changes, 2);
        EXPECT_TRUE(IsEnabled(IdNetSave));
        Toggle(1);
        ExpectChosen({1, 2}, {L"Ethernet", L"Wi-Fi"});
        Toggle(0);
        ExpectChosen({}, {});
        EXPECT_EQ(Items(), Texts{All});
        EXPECT_FALSE(IsEnabled(IdNetSave));
        Toggle(0);
        ExpectChosen({1, 2}, {L"Ethernet", L"Wi-Fi"});
        EXPECT_FALSE(HasFile());
    });
    ExpectChosen({}, {});
}

TEST_F(SettingsDialogLists, OnlyInterfacesThatAUserWouldRecogniseAreListed) {
    NetRow filter = Interface(3, L"filter");
    filter.filter = true;
    NetRow loopback = Interface(4, L"loopback");
    loopback.loopback = true;
    NetRow tunnel = Interface(5, L"tunnel");
    tunnel.tunnel = true;
    NetRow withoutAddress = Interface(6, L"no address");
    withoutAddress.ip.clear();
    NetRow down = Interface(7, L"down, with an address");
    down.operUp = down.hardware = false;
    host.interfaces = {filter, loopback, tunnel, withoutAddress, down};
    WithDialog([] {
        Toggle(0);
        EXPECT_EQ(Items(), (Texts{All, L"down, with an address"}));
    });
}

TEST_F(SettingsDialogLists, AMachineWithoutInterfacesHasAnEmptyChoice) {
    WithDialog([this] {
        Toggle(0);
        EXPECT_EQ(Items(), Texts{All});
        Toggle(1);
        Toggle(static_cast<WPARAM>(-1));
        ExpectChosen({}, {});
        EXPECT_EQ(host.changes, 1) << "items that are not there are ignored";
    });
}

TEST_F(SettingsDialogLists, HundredsOfInterfacesCanBeChosen) {
    for (std::uint64_t i = 1; i <= 300; ++i)
        host.interfaces.push_back(Interface(i, L"Interface " + std::to_wstring(i)));
    WithDialog([this] {
        Toggle(0);
        EXPECT_EQ(Items().size(), 301U);
        Toggle(300);
        Toggle(1);
        Toggle(301);
        ExpectChosen({1, 300}, {L"Interface 1", L"Interface 300"});
        SendMessageW(Control(IdInterfaces), LB_SETCARETINDEX, 250, FALSE);
        Toggle(250);
        EXPECT_EQ(SendMessageW(Control(IdInterfaces), LB_GETCARETINDEX, 0, 0), 250) << "the keyboard's place stays";
    });
}

/// So that a second click in the same place meets the same interface.
TEST_F(SettingsDialogLists, AScrolledListStaysWhereItIs) {
    for (std::uint64_t i = 1; i <= 30; ++i)
        host.interfaces.push_back(Interface(i, L"Interface " + std::to_wstring(i)));
    WithDialog([] {
        Click(IdNetTab);
        Toggle(0);
        const HWND list = Control(IdInterfaces);
        SendMessageW(list, LB_SETTOPINDEX, 10, 0);
        RECT item{};
        SendMessageW(list, LB_GETITEMRECT, 11, reinterpret_cast<LPARAM>(&item));
        SendMessageW(list, WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(item.left + 1, item.top + 1));
        Pump();
        EXPECT_EQ(SendMessageW(list, LB_GETTOPINDEX, 0, 0), 10);
        EXPECT_EQ(SendMessageW(list, LB_GETCARETINDEX, 0, 0), 11);
    });
}

TEST_F(SettingsDialogLists, AMissingInterfaceIsNotForgottenAndStandsBehindTheOthers) {
    host.interfaces = {Interface(1, L"Ethernet"), Interface(2, L"Wi-Fi")};
    Choose({99, 2}, {L"Dock", L"Wi-Fi"});
    const AppSettings opened = settings;
    WithDialog([&] {
        EXPECT_EQ(Items(), (Texts{All, L"Ethernet", L"Wi-Fi"}));
        EXPECT_EQ(settings, opened) << "opening changes nothing";
        Toggle(1);
        ExpectChosen({1, 2, 99}, {L"Ethernet", L"Wi-Fi", L"Dock"});
        Toggle(1);
        ExpectChosen({2, 99}, {L"Wi-Fi", L"Dock"});
        EXPECT_TRUE(IsEnabled(IdNetSave)) << "another order is a change";
        Toggle(2);
        ExpectChosen({99}, {L"Dock"});
        Toggle(0);
        ExpectChosen({}, {});
        Toggle(0);
        ExpectChosen({}, {});
    });
    EXPECT_EQ(settings, opened);
}

TEST_F(SettingsDialogLists, AnInterfaceIsFoundAgainByItsName) {
    host.interfaces = {Interface(1, L"Ethernet"), Interface(2, L"Wi-Fi")};
    Choose({77, 78}, {L"ETHERNET", L""});
    WithDialog([this] {
        Toggle(2);
        ExpectChosen({1, 2, 78}, {L"Ethernet", L"Wi-Fi", L""});
    });
}

TEST_F(SettingsDialogLists, InterfacesThatComeAndGoAreSeenWhenThePageIsRestored) {
    host.interfaces = {Interface(1, L"Ethernet")};
    Choose({1}, {L"Ethernet"});
    WithDialog([this] {
        host.interfaces = {Interface(2, L"Wi-Fi"), Interface(3, L"Dock")};
        EXPECT_EQ(Items(), (Texts{All, L"Ethernet"}));
        Click(IdNetRestore);
        EXPECT_EQ(Items(), Texts{All});
        Toggle(0);
        EXPECT_EQ(Items(), (Texts{All, L"Wi-Fi", L"Dock"}));
        Toggle(1);
        ExpectChosen({2}, {L"Wi-Fi"});
        host.interfaces.clear();
        Click(IdCpuPerCore);
        Click(IdCpuRestore);
        EXPECT_EQ(Items(), Texts{All}) << "the list is filled again with every page";
        ExpectChosen({2}, {L"Wi-Fi"});
    });
    ExpectChosen({1}, {L"Ethernet"});
}

TEST_F(SettingsDialogLists, TheListOfAHiddenIconIsDisabled) {
    host.interfaces = {Interface(1, L"Ethernet")};
    Choose({1}, {L"Ethernet"});
    WithDialog([this] {
        Click(IdNetShow);
        EXPECT_FALSE(IsEnabled(IdInterfaces));
        const AppSettings before = settings;
        Toggle(0);
        Toggle(1);
        EXPECT_EQ(settings, before);
        EXPECT_EQ(Items().size(), 2U);
        Click(IdNetShow);
        Toggle(1);
        ExpectChosen({}, {});
        EXPECT_EQ(Items().size(), 2U) << "with nothing chosen the list stays open until it is filled anew";
    });
}

TEST_F(SettingsDialogLists, ASavedChoiceOfInterfacesStays) {
    host.interfaces = {Interface(1, L"Ethernet"), Interface(2, L"Wi-Fi")};
    WithDialog([] {
        Toggle(0);
        Toggle(2);
        Click(IdNetSave);
    });
    ExpectChosen({2}, {L"Wi-Fi"});
    EXPECT_EQ(LoadSettings(), settings);
    WithDialog([this] {
        EXPECT_EQ(Items().size(), 3U);
        Toggle(0);
        Click(IdNetSave);
        EXPECT_EQ(LoadSettings().interfaces, Luids{});
    });
    ExpectChosen({}, {});
}

TEST_F(SettingsDialogLists, TheFirstItemIsNamedInTheLanguageOfNow) {
    WithDialog([] {
        ChooseItem(IdLanguage, 2);
        Pump();
        EXPECT_EQ(Items(), Texts{L"All connections"});
    });
}

TEST_F(SettingsDialogLists, EachDiskHasABoxUpToThirty) {
    for (const std::uint32_t count : {0U, 1U, 29U, 30U, 31U, 64U}) {
        SetDisks(count);
        WithDialog([&] {
            EXPECT_TRUE(IsTicked(IdAllDisks));
            for (int i = 0; i < 30; ++i) {
                const bool there = i < static_cast<int>(std::min(count, 30U));
                EXPECT_EQ(Control(DiskBox(i)) != nullptr, there) << i << " of " << count;
            }
            EXPECT_EQ(TextOfWindow(Control(IdCpuTab)), L"CPU") << "the ids beyond the boxes are of others";
        });
    }
}

TEST_F(SettingsDialogLists, ADiskIsNamedWithItsNumberHoweverLongItsName) {
    host.disks = {Disk(0, L""), Disk(3, std::wstring(700, L'W')), Disk(63, L"A && B")};
    WithDialog([] {
        EXPECT_EQ(TextOfWindow(Control(DiskBox(0))), L"0  ");
        EXPECT_EQ(TextOfWindow(Control(DiskBox(1))), L"3  " + std::wstring(700, L'W'));
        Click(IdDiskTab);
        RECT dialog{};
        RECT box{};
        GetWindowRect(Dialog(), &dialog);
        GetWindowRect(Control(DiskBox(1)), &box);
        EXPECT_LT(box.right, dialog.right);
    });
}

/// A single one would underline the next letter, which would then tick the box.
TEST_F(SettingsDialogLists, AnAmpersandInTheNameOfADiskIsShown) {
    host.disks = {Disk(0, L"A&B & C")};
    WithDialog([] { EXPECT_EQ(TextOfWindow(Control(DiskBox(0))), L"0  A&&B && C"); });
}

TEST_F(SettingsDialogLists, TheBoxesOfTheDisksAreOneChoice) {
    host.disks = {Disk(0, L"a"), Disk(5, L"b"), Disk(7, L"c")};
    WithDialog([this] {
        const auto expect = [this](const Numbers& disks, bool all, bool first, bool second, bool third) {
            EXPECT_EQ(settings.disks, disks);
            EXPECT_EQ(IsTicked(IdAllDisks), all);
            EXPECT_EQ(IsTicked(DiskBox(0)), first);
            EXPECT_EQ(IsTicked(DiskBox(1)), second);
            EXPECT_EQ(IsTicked(DiskBox(2)), third);
        };
        expect({}, true, false, false, false);
        Click(DiskBox(2));
        expect({7}, false, false, false, true);
        EXPECT_EQ(host.changes, 1);
        EXPECT_TRUE(IsEnabled(IdDiskSave));
        Click(DiskBox(0));
        expect({0, 7}, false, true, false, true);
        Click(IdAllDisks);
        expect({}, true, false, false, false);
        EXPECT_FALSE(IsEnabled(IdDiskSave));
        Click(IdAllDisks);
        expect({}, true, false, false, false);
        Click(DiskBox(1));
        Click(DiskBox(1));
        expect({}, true, false, false, false);
        EXPECT_FALSE(HasFile());
    });
}

TEST_F(SettingsDialogLists, ADiskWithoutABoxStaysChosenUntilABoxIsClicked) {
    SetDisks(2);
    settings.disks = {40, 1};
    WithDialog([this] {
        EXPECT_FALSE(IsTicked(IdAllDisks));
        EXPECT_TRUE(IsTicked(DiskBox(1)));
        Click(IdDiskActivity);
        Click(IdDiskSave);
        EXPECT_EQ(LoadSettings().disks, (Numbers{40, 1}));
        Click(DiskBox(0));
        EXPECT_EQ(settings.disks, (Numbers{0, 1}));
    });
    EXPECT_EQ(settings.disks, (Numbers{40, 1}));
}

TEST_F(SettingsDialogLists, ADiskThatTheSettingsCannotHoldCannotBeChosen) {
    host.disks = {Disk(63, L"a"), Disk(64, L"b"), Disk(0x80000000, L"c")};
    WithDialog([this] {
        for (const int i : {1, 2}) {
            Click(DiskBox(i));
            EXPECT_EQ(settings.disks, Numbers{});
            EXPECT_FALSE(IsTicked(DiskBox(i)));
            EXPECT_TRUE(IsTicked(IdAllDisks));
        }
        Click(DiskBox(0));
        EXPECT_EQ(settings.disks, Numbers{63});
    });
}

TEST_F(SettingsDialogLists, RestoringTicksAllDisks) {
    SetDisks(3);
    settings.disks = {2};
    WithDialog([this] {
        Click(IdDiskRestore);
        EXPECT_TRUE(IsTicked(IdAllDisks));
        EXPECT_FALSE(IsTicked(DiskBox(2)));
        EXPECT_TRUE(settings.disks.empty());
    });
    EXPECT_EQ(settings.disks, Numbers{2});
}

}  // namespace
}  // namespace kestrane
