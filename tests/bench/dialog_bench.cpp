// Opens the settings dialog, or a bare one with the same number of plain controls, for bench_dialog.py, which measures
// the cost from outside. It says "done" when it is ready. Then a line on the standard input opens one of them:
//
//     open kestrane | open bare
//
// answered by "done" when all of it has been painted once. Each further line is answered by "done" too:
//
//     page N       shows this page, painted
//     tick COUNT   the samples made anew COUNT times, and painted each time
//     close        ends the dialog
//
// The bare dialog has the template of the other and copies of its controls: of the same classes, with the same texts,
// fonts and places, but drawn by the system, and without contents. So the other must have been opened before.
#include <windows.h>

#include <cstdio>
#include <cstdlib>
#include <iterator>
#include <string>
#include <vector>

#include "dialog/dialog_panels.h"
#include "dialog/dialog_resources.h"
#include "dialog/settings_dialog_win32.h"
#include "hardware/hardware_facts_win32.h"
#include "metrics/samplers_win32.h"

namespace kestrane {
namespace {

constexpr UINT_PTR SampleTimer = 1;
constexpr Point Anchor{1200, 780};

struct PlainControl {
    std::wstring className;
    std::wstring text;
    DWORD style;
    DWORD extended;
    RECT rect;  // in the dialog
};

struct PlainDialog {
    RECT window{};
    std::vector<PlainControl> controls;
};

HWND openedDialog = nullptr;
PlainDialog plainDialog;

/// The real program's answers, without its icons.
class Host final : public SettingsDialogHost {
  public:
    void OnSettingsChanged() override {}
    std::vector<NetRow> ListInterfaces() override { return kestrane::ListInterfaces(sampler_); }
    const std::vector<DiskFacts>& FixedDisks() override { return disks_; }
    const std::vector<std::uint8_t>& ProcessorClasses() override { return classes_; }

  private:
    NetSampler sampler_;
    std::vector<DiskFacts> disks_ = ReadDiskFacts();
    std::vector<std::uint8_t> classes_ = ReadCpuFacts().isPerformanceThread;
};

/// The style of a control of this class without what makes its owner draw it.
DWORD PlainStyle(const std::wstring& className, DWORD style) {
    constexpr DWORD ListStyles = LBS_OWNERDRAWFIXED | LBS_OWNERDRAWVARIABLE;
    if (className == L"Button" && (style & BS_TYPEMASK) == BS_OWNERDRAW) return style & ~DWORD{BS_TYPEMASK};
    if (className == L"Static" && (style & SS_TYPEMASK) == SS_OWNERDRAW) return style & ~DWORD{SS_TYPEMASK};
    if (className == L"ListBox") return style & ~ListStyles;
    return style;
}

PlainControl CopyControl(HWND dialog, HWND control) {
    wchar_t name[64] = {};
    wchar_t text[512] = {};
    GetClassNameW(control, name, std::size(name));
    GetWindowTextW(control, text, std::size(text));
    PlainControl copy{name,
                      text,
                      static_cast<DWORD>(GetWindowLongW(control, GWL_STYLE)),
                      static_cast<DWORD>(GetWindowLongW(control, GWL_EXSTYLE)),
                      {}};
    copy.style = PlainStyle(copy.className, copy.style);
    GetWindowRect(control, &copy.rect);
    MapWindowPoints(nullptr, dialog, reinterpret_cast<POINT*>(&copy.rect), 2);
    return copy;
}

void CopyDialog(HWND dialog) {
    plainDialog = {};
    GetWindowRect(dialog, &plainDialog.window);
    for (HWND control = GetWindow(dialog, GW_CHILD); control != nullptr; control = GetWindow(control, GW_HWNDNEXT))
        plainDialog.controls.push_back(CopyControl(dialog, control));
}

INT_PTR CALLBACK PlainProc(HWND window, UINT message, WPARAM /*wParam*/, LPARAM /*lParam*/) {
    if (message == WM_CLOSE) EndDialog(window, 0);
    if (message != WM_INITDIALOG) return FALSE;
    openedDialog = window;
    const HINSTANCE instance = GetModuleHandleW(nullptr);
    const WPARAM font = static_cast<WPARAM>(SendMessageW(window, WM_GETFONT, 0, 0));
    INT_PTR id = 1000;
    for (const PlainControl& control : plainDialog.controls) {
        const HWND made = CreateWindowExW(
            control.extended, control.className.c_str(), control.text.c_str(), control.style, control.rect.left,
            control.rect.top, control.rect.right - control.rect.left, control.rect.bottom - control.rect.top, window,
            reinterpret_cast<HMENU>(id++), instance, nullptr);
        SendMessageW(made, WM_SETFONT, font, FALSE);
    }
    const RECT& place = plainDialog.window;
    SetWindowPos(window, nullptr, place.left, place.top, place.right - place.left, place.bottom - place.top,
                 SWP_NOZORDER | SWP_NOACTIVATE);
    return TRUE;
}

void PaintAll() {
    RedrawWindow(openedDialog, nullptr, nullptr, RDW_UPDATENOW | RDW_ALLCHILDREN);
    GdiFlush();
}

void Answer() {
    std::puts("done");
    std::fflush(stdout);
}

/// False at the line that ends the dialog.
bool Obey(const std::string& command, int number) {
    if (command == "close") {
        CopyDialog(openedDialog);
        PostMessageW(openedDialog, WM_CLOSE, 0, 0);
        return false;
    }
    if (command == "page") {
        SendMessageW(openedDialog, WM_COMMAND, DialogTabs[static_cast<std::size_t>(number)].button, 0);
        PaintAll();
    }
    for (int i = 0; command == "tick" && i < number; ++i) {
        SendMessageW(openedDialog, WM_TIMER, SampleTimer, 0);
        PaintAll();
    }
    Answer();
    return true;
}

/// Runs within the loop of the dialog. The system delivers a timer only when nothing is left to paint.
void CALLBACK OnIdle(HWND /*window*/, UINT /*message*/, UINT_PTR timer, DWORD /*time*/) {
    if (OpenSettingsDialog() != nullptr) openedDialog = OpenSettingsDialog();
    if (openedDialog == nullptr || !IsWindowVisible(openedDialog)) return;
    KillTimer(nullptr, timer);
    PaintAll();
    Answer();
    char line[64];
    char command[16] = {};
    int number = 0;
    do {
        if (std::fgets(line, sizeof line, stdin) == nullptr) std::exit(1);
        std::sscanf(line, "%15s %d", command, &number);
    } while (Obey(command, number));
}

void Open(const std::string& side, Host& host) {
    openedDialog = nullptr;
    SetTimer(nullptr, 0, USER_TIMER_MINIMUM, OnIdle);
    if (side == "kestrane") {
        AppSettings settings = MakeDefaultSettings();
        ShowSettingsDialog(GetModuleHandleW(nullptr), nullptr, Anchor, settings, host);
    } else {
        DialogBoxParamW(GetModuleHandleW(nullptr), MAKEINTRESOURCEW(ResourceSettingsDialog), nullptr, PlainProc, 0);
    }
    Answer();
}

}  // namespace
}  // namespace kestrane

int main() {
    kestrane::Host host;
    kestrane::Answer();
    char line[64];
    char side[16] = {};
    while (std::fgets(line, sizeof line, stdin) != nullptr) {
        if (std::sscanf(line, "open %15s", side) == 1) kestrane::Open(side, host);
    }
    return 0;
}
