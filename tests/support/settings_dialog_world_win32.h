#pragma once
// The settings dialog in a test program: its host, the message boxes and the colour dialog are the test's, the settings
// file is in a folder of the test's own, and both roots of the registry are empty keys of the test's own. The windows
// are real. Include in one file of a test program only.
#include <windows.h>
// <windows.h> comes first.
#include <commdlg.h>
#include <gtest/gtest.h>
#include <objbase.h>
#include <shlobj.h>

#include <algorithm>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iterator>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "dialog/dialog_messages_win32.h"
#include "dialog/dialog_panels.h"
#include "dialog/settings_dialog_host.h"
#include "dialog/settings_dialog_win32.h"
#include "settings/ini_file_win32.h"
#include "support/own_registry_win32.h"
#include "support/real_call_win32.h"
#include "support/recorded_log.h"
#include "support/test_folder_win32.h"
#include "text/translation.h"

namespace kestrane {

/// A program that has the dialog: a machine as the test describes it, and a count of the changes it was told of.
struct DialogHostWorld final : SettingsDialogHost {
    void OnSettingsChanged() override {
        ++changes;
        if (onChange) onChange();
    }
    std::vector<NetRow> ListInterfaces() override { return interfaces; }
    const std::vector<DiskFacts>& FixedDisks() override { return disks; }
    const std::vector<std::uint8_t>& ProcessorClasses() override { return processors; }

    std::vector<NetRow> interfaces;
    std::vector<DiskFacts> disks;
    std::vector<std::uint8_t> processors = std::vector<std::uint8_t>(4, 1);
    int changes = 0;
    std::function<void()> onChange;
};

struct ToldBox {
    std::wstring text;
    std::wstring title;
    UINT type;

    bool operator==(const ToldBox&) const = default;
};

/// What the faked calls say and record.
struct DialogWorld {
    std::wstring roaming;
    std::vector<ToldBox> boxes;
    std::function<void()> onBox;          // what happens while a message box is open
    std::optional<COLORREF> chosenColor;  // none: the user cancels the colour dialog
    std::vector<CHOOSECOLORW> colorDialogs;
    std::function<void()> onColorDialog;  // what happens while the colour dialog is open
};
inline DialogWorld dialogWorld;

inline int WINAPI RecordMessageBox(HWND, LPCWSTR text, LPCWSTR title, UINT type) {
    dialogWorld.boxes.push_back({text, title, type});
    if (dialogWorld.onBox) dialogWorld.onBox();
    return IDOK;
}

inline BOOL WINAPI AnswerColorDialog(LPCHOOSECOLORW choose) {
    dialogWorld.colorDialogs.push_back(*choose);
    if (dialogWorld.onColorDialog) dialogWorld.onColorDialog();
    if (!dialogWorld.chosenColor) return FALSE;
    choose->rgbResult = *dialogWorld.chosenColor;
    return TRUE;
}

class SettingsDialogTest : public testing::Test {
  protected:
    SettingsDialogTest() {
        dialogWorld = {};
        dialogWorld.roaming = folder_.Path().wstring();
        debugLines.clear();
        SetLanguage(ActiveSpanish);
    }

    void SetUp() override { ASSERT_TRUE(user_ && machine_); }

    /// Opens the dialog and runs `body` in its message loop as soon as it is shown; then closes it, unless `body` has.
    void WithDialog(const std::function<void()>& body) { WithDialogOf(settings, host, body); }
    /// The same for the settings of another program.
    void WithDialogOf(AppSettings& edited, SettingsDialogHost& program, const std::function<void()>& body) {
        current_ = this;
        body_ = body;
        const UINT_PTR timer = SetTimer(nullptr, 0, USER_TIMER_MINIMUM, &RunBody);
        ShowSettingsDialog(GetModuleHandleW(nullptr), owner, anchor, edited, program);
        KillTimer(nullptr, timer);
        EXPECT_FALSE(body_) << "the dialog has not been shown";
    }

    // Within a body.

    static HWND Dialog() { return OpenSettingsDialog(); }
    /// False as soon as it has been closed; its window lives until the dialog's loop has ended.
    static bool IsOpen() { return Dialog() != nullptr && IsWindowVisible(Dialog()); }
    static HWND Control(std::int32_t id) { return GetDlgItem(Dialog(), id); }
    static bool IsTicked(std::int32_t id) { return IsDlgButtonChecked(Dialog(), id) == BST_CHECKED; }
    static bool IsEnabled(std::int32_t id) { return IsWindowEnabled(Control(id)) != FALSE; }
    static bool IsShown(std::int32_t id) { return IsWindowVisible(Control(id)) != FALSE; }

    /// Handles what has been posted.
    static void Pump() {
        MSG message{};
        while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) {
            if (Dialog() != nullptr && IsDialogMessageW(Dialog(), &message)) continue;
            TranslateMessage(&message);
            DispatchMessageW(&message);
        }
    }

    /// What a control tells the dialog.
    static void Notify(std::int32_t id, UINT code) {
        SendMessageW(Dialog(), WM_COMMAND, MAKEWPARAM(id, code), reinterpret_cast<LPARAM>(Control(id)));
    }
    static void Click(std::int32_t id) { SendMessageW(Control(id), BM_CLICK, 0, 0); }
    /// Chooses an item of a combo box as a user does: drops it down, selects, and closes it.
    static void ChooseItem(std::int32_t id, int index) {
        const HWND box = Control(id);
        SendMessageW(box, CB_SHOWDROPDOWN, TRUE, 0);
        SendMessageW(box, CB_SETCURSEL, static_cast<WPARAM>(index), 0);
        SendMessageW(Dialog(), WM_COMMAND, MAKEWPARAM(id, CBN_SELCHANGE), reinterpret_cast<LPARAM>(box));
        SendMessageW(box, CB_SHOWDROPDOWN, FALSE, 0);
    }
    static void Type(std::int32_t id, const wchar_t* text) { SetDlgItemTextW(Dialog(), id, text); }
    static void RightClick(std::int32_t id) {
        SendMessageW(Dialog(), WM_CONTEXTMENU, reinterpret_cast<WPARAM>(Control(id)), 0);
    }
    static std::wstring TextOfWindow(HWND window) {
        std::wstring text(1024, L'\0');
        text.resize(static_cast<std::size_t>(GetWindowTextW(window, text.data(), 1024)));
        return text;
    }

    /// Shows and paints all of the dialog at least once.
    static void VisitEveryPage() {
        for (const DialogTab& tab : DialogTabs)
            Click(tab.button);
        SendMessageW(Dialog(), WM_RETRANSLATE, 0, 0);
        Click(IdCpuTab);
        Click(IdCpuLines);
        RedrawWindow(Dialog(), nullptr, nullptr, RDW_INVALIDATE | RDW_ERASE | RDW_ALLCHILDREN | RDW_UPDATENOW);
    }

    std::filesystem::path IniFile() const { return folder_.Path() / L"kestrane" / L"kestrane.ini"; }
    bool HasFile() const { return std::filesystem::exists(IniFile()); }
    /// The bytes of the settings file; empty without one.
    std::string File() const {
        std::ifstream file(IniFile(), std::ios::binary);
        return {std::istreambuf_iterator<char>(file), {}};
    }

    AppSettings settings = MakeDefaultSettings();
    DialogHostWorld host;
    /// Before the body, so that it can use the controls of any page: they are placed when their page is first shown.
    bool opensAllPages = true;
    Point anchor{1000, 700};
    HWND owner = nullptr;

  private:
    static void OpenAllPages() {
        const auto open = [](const DialogTab& tab) {
            SendMessageW(Dialog(), WM_COMMAND, MAKEWPARAM(tab.button, BN_CLICKED), 0);
        };
        std::ranges::for_each(DialogTabs, open);
        open(DialogTabs[IndexOf(TabOfNumber(LoadDialogState().tab))]);
    }

    static void CALLBACK RunBody(HWND, UINT, UINT_PTR timer, DWORD) {
        if (!current_->body_ || Dialog() == nullptr || !IsWindowVisible(Dialog())) return;
        KillTimer(nullptr, timer);
        if (current_->opensAllPages) OpenAllPages();
        std::exchange(current_->body_, nullptr)();
        if (IsOpen()) SendMessageW(Dialog(), WM_CLOSE, 0, 0);
    }

    static inline SettingsDialogTest* current_ = nullptr;
    TestFolder folder_;
    OwnRegistry user_{HKEY_CURRENT_USER};
    OwnRegistry machine_{HKEY_LOCAL_MACHINE};
    std::function<void()> body_;
};

}  // namespace kestrane

extern "C" {
// The result is freed by CoTaskMemFree.
HRESULT WINAPI SHGetKnownFolderPath(REFKNOWNFOLDERID /*folder*/, DWORD /*flags*/, HANDLE /*token*/, PWSTR* path) {
    const std::wstring& roaming = kestrane::dialogWorld.roaming;
    const std::size_t bytes = (roaming.size() + 1) * sizeof(wchar_t);
    *path = static_cast<PWSTR>(CoTaskMemAlloc(bytes));
    std::memcpy(*path, roaming.c_str(), bytes);
    return S_OK;
}
decltype(&MessageBoxW) __imp_MessageBoxW = &kestrane::RecordMessageBox;
decltype(&ChooseColorW) __imp_ChooseColorW = &kestrane::AnswerColorDialog;
}
