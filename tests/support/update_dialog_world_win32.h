#pragma once
// The update dialog in a test program: what it downloads, the executable's folder and the browser are the test's. The
// windows and the download thread are real. Include in one file of a test program only.
#include <windows.h>
// <windows.h> comes first.
#include <gtest/gtest.h>
#include <objbase.h>
#include <shellapi.h>

#include <atomic>
#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "base/geometry_win32.h"
#include "base/module_path_win32.h"
#include "base/version.h"
#include "support/fake_module_path_win32.h"
#include "support/geometry_print.h"
#include "support/real_call_win32.h"
#include "support/recorded_log.h"
#include "text/translation.h"
#include "update/download_win32.h"
#include "update/self_replacer_win32.h"
#include "update/update_dialog_download_win32.h"
#include "update/update_dialog_win32.h"

namespace kestrane {

struct OpenedPage {
    HWND owner;
    std::wstring verb, address;
    int show;
};

/// What a download is told, and tells.
struct DownloadCall {
    const UpdateInfo& info;
    const std::wstring& executable;
    const std::atomic<bool>& cancel;
    const DownloadProgress& progress;
    DownloadFailure& failure;

    void Report(std::uint64_t done, std::uint64_t total) const { progress.report(progress.context, done, total); }
    bool Fail(DownloadStep step, std::uint32_t code = 0) const {
        failure = {step, code};
        return false;
    }
};

/// What the faked functions say and record.
struct UpdateDialogWorld {
    std::wstring reason;                                // why the executable may not be replaced
    std::function<bool(const DownloadCall&)> download;  // on the download thread
    std::vector<std::wstring> guarded;                  // the executables that were asked about
    std::vector<std::wstring> deleted;                  // those whose downloaded file was deleted
    std::vector<OpenedPage> pages;
    std::function<void()> onPage;  // while the shell opens a page
    std::atomic<int> downloads = 0;
    std::atomic<int> progressPosts = 0;
    std::atomic<int> donePosts = 0;
    std::atomic<WPARAM> lastPost = 0;
};
inline UpdateDialogWorld* world = nullptr;

inline HINSTANCE WINAPI RecordShellExecute(HWND owner, LPCWSTR verb, LPCWSTR file, LPCWSTR parameters, LPCWSTR folder,
                                           INT show) {
    EXPECT_EQ(parameters, nullptr);
    EXPECT_EQ(folder, nullptr);
    APTTYPE kind{};
    APTTYPEQUALIFIER qualifier{};
    EXPECT_EQ(CoGetApartmentType(&kind, &qualifier), S_OK) << "the shell's extensions need an apartment";
    world->pages.push_back({owner, verb, file, show});
    if (world->onPage) world->onPage();
    constexpr std::uintptr_t Success = 42;
    return reinterpret_cast<HINSTANCE>(Success);
}

inline BOOL WINAPI CountPostMessage(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    static const auto real = REAL(L"user32", PostMessageW);
    if (message == WM_UPDATE_PROGRESS) ++world->progressPosts;
    if (message == WM_UPDATE_DONE) ++world->donePosts;
    if (message == WM_UPDATE_PROGRESS || message == WM_UPDATE_DONE) world->lastPost = wParam;
    return real(window, message, wParam, lParam);
}

// The program's own functions, in place of the library's.

bool DownloadUpdate(const UpdateInfo& info, const std::wstring& executable, const std::atomic<bool>& cancel,
                    const DownloadProgress& progress, DownloadFailure& failure) {
    ++world->downloads;
    return world->download({info, executable, cancel, progress, failure});
}

std::wstring CheckSelfUpdatePossible(const std::wstring& executable) {
    world->guarded.push_back(executable);
    return world->reason;
}

void DeleteNewFile(const std::wstring& executable) {
    world->deleted.push_back(executable);
}

/// The open dialog of this process, or null: the window with its button.
inline HWND OpenUpdateDialog() {
    constexpr int UpdateButton = 3008;
    HWND found = nullptr;
    EnumWindows(
        [](HWND window, LPARAM result) -> BOOL {
            DWORD process = 0;
            GetWindowThreadProcessId(window, &process);
            if (process != GetCurrentProcessId() || GetDlgItem(window, UpdateButton) == nullptr) return TRUE;
            *reinterpret_cast<HWND*>(result) = window;
            return FALSE;
        },
        reinterpret_cast<LPARAM>(&found));
    return found;
}

class UpdateDialogTest : public testing::Test {
  protected:
    // The controls.
    static constexpr int Headline = 3001, Running = 3002, Offered = 3003, Changes = 3004, Note = 3005, Bar = 3006,
                         Web = 3007, Update = 3008;

    UpdateDialogTest() {
        world = &world_;
        world_.download = [](const DownloadCall&) { return true; };
        toldPath = L"C:\\Programs\\kestrane.exe";
        debugLines.clear();
        SetLanguage(ActiveSpanish);
        info.version = "9.8.7";
        info.url = "https://kestrane.example/kestrane.exe";
    }

    /// Opens the dialog and runs `body` in its message loop as soon as it is shown; then closes it, unless `body` has.
    /// Returns what the dialog answers.
    bool WithDialog(const std::function<void()>& body) {
        current_ = this;
        body_ = body;
        const UINT_PTR timer = SetTimer(nullptr, 0, USER_TIMER_MINIMUM, &RunBody);
        const bool answer = ShowUpdateDialog(GetModuleHandleW(nullptr), owner, info);
        KillTimer(nullptr, timer);
        EXPECT_FALSE(body_) << "the dialog has not been shown";
        EXPECT_EQ(OpenUpdateDialog(), nullptr);
        return answer;
    }

    // Within a body.

    static HWND Dialog() { return OpenUpdateDialog(); }
    /// False as soon as it has been closed; its window lives until the dialog's loop has ended.
    static bool IsOpen() { return Dialog() != nullptr && IsWindowVisible(Dialog()); }
    static HWND Control(int id) { return GetDlgItem(Dialog(), id); }
    static bool IsEnabled(int id) { return IsWindowEnabled(Control(id)) != FALSE; }
    static bool IsShown(int id) { return IsWindowVisible(Control(id)) != FALSE; }
    static std::wstring TextOf(HWND window) {
        std::wstring text(1024, L'\0');
        text.resize(static_cast<std::size_t>(GetWindowTextW(window, text.data(), 1024)));
        return text;
    }
    static std::wstring TextOf(int id) { return TextOf(Control(id)); }
    static void Click(int id) { SendMessageW(Control(id), BM_CLICK, 0, 0); }
    /// What a control tells the dialog.
    static void Notify(int id, UINT code) {
        SendMessageW(Dialog(), WM_COMMAND, MAKEWPARAM(id, code), reinterpret_cast<LPARAM>(Control(id)));
    }

    /// Handles what has been posted.
    static void Pump() {
        MSG message{};
        while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) {
            if (Dialog() != nullptr && IsDialogMessageW(Dialog(), &message)) continue;
            TranslateMessage(&message);
            DispatchMessageW(&message);
        }
    }
    /// The same until something has happened.
    template <typename Condition>
    static void PumpUntil(const Condition& happened) {
        constexpr ULONGLONG LongestMs = 10000;
        const ULONGLONG start = GetTickCount64();
        while (!happened()) {
            ASSERT_LT(GetTickCount64() - start, LongestMs) << "it has not happened";
            Pump();
            Sleep(1);
        }
    }

    UpdateInfo info;
    HWND owner = nullptr;

  private:
    static void CALLBACK RunBody(HWND, UINT, UINT_PTR timer, DWORD) {
        if (!current_->body_ || !IsOpen()) return;
        KillTimer(nullptr, timer);
        std::exchange(current_->body_, nullptr)();
        if (IsOpen()) SendMessageW(Dialog(), WM_CLOSE, 0, 0);
    }

    static inline UpdateDialogTest* current_ = nullptr;
    UpdateDialogWorld world_;
    std::function<void()> body_;
};

/// A download that waits for the test: as one that waits for the next bytes.
class HeldDownload {
  public:
    HeldDownload() : event_(CreateEventW(nullptr, TRUE, FALSE, nullptr)) {}
    HeldDownload(const HeldDownload&) = delete;
    HeldDownload& operator=(const HeldDownload&) = delete;
    ~HeldDownload() {
        Release();
        CloseHandle(event_);
    }
    void Wait() {
        waiting_ = true;
        WaitForSingleObject(event_, INFINITE);
        waiting_ = false;
    }
    void Release() { SetEvent(event_); }
    bool IsWaiting() const { return waiting_; }

  private:
    HANDLE event_;
    std::atomic<bool> waiting_ = false;
};

}  // namespace kestrane

extern "C" {
decltype(&ShellExecuteW) __imp_ShellExecuteW = &kestrane::RecordShellExecute;
decltype(&PostMessageW) __imp_PostMessageW = &kestrane::CountPostMessage;
}
