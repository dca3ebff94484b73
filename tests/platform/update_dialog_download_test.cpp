// The download of the update dialog: its states, its thread, and every way in which the two can part.
#include <gmock/gmock.h>
#include <process.h>
#include <stdlib.h>

#include <vector>

#include "support/update_dialog_world_win32.h"

namespace kestrane {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

unsigned long threadError = 0;  // not 0: the system gives no thread, for this reason
int begunThreads = 0;
std::vector<std::pair<HWND, BOOL>> invalidated;
HCURSOR shape = nullptr;

std::uintptr_t __cdecl BeginOrRefuse(void* security, unsigned stack, _beginthreadex_proc_type body, void* context,
                                     unsigned flags, unsigned* id) {
    static const auto real = REAL(kestrane::test::CRuntime, _beginthreadex);
    if (threadError == 0) {
        ++begunThreads;
        return real(security, stack, body, context, flags, id);
    }
    _doserrno = threadError;
    return 0;
}

BOOL WINAPI RecordInvalidateRect(HWND window, const RECT* rect, BOOL erase) {
    static const auto real = REAL(L"user32", InvalidateRect);
    EXPECT_EQ(rect, nullptr);
    invalidated.emplace_back(window, erase);
    return real(window, rect, erase);
}

HCURSOR WINAPI RecordCursor(HCURSOR cursor) {
    shape = cursor;
    return cursor;
}

class UpdateDialogDownload : public UpdateDialogTest {
  protected:
    UpdateDialogDownload() {
        threadError = 0;
        begunThreads = 0;
        invalidated.clear();
        shape = nullptr;
    }

    static void ExpectDownloading() {
        EXPECT_EQ(TextOf(Note), L"Descargando la versión nueva...");
        EXPECT_TRUE(IsShown(Bar));
        EXPECT_FALSE(IsShown(Web));
        EXPECT_FALSE(IsEnabled(Update));
        EXPECT_TRUE(IsEnabled(IDCANCEL));
    }
    static void ExpectFailed(const std::wstring& text) {
        EXPECT_EQ(TextOf(Note), text);
        EXPECT_FALSE(IsShown(Bar));
        EXPECT_FALSE(IsShown(Web));
        EXPECT_TRUE(IsEnabled(Update));
        EXPECT_TRUE(IsEnabled(IDCANCEL));
        EXPECT_TRUE(IsOpen());
    }
    static void PumpUntilFailed() {
        PumpUntil([] { return IsEnabled(Update); });
    }

    /// A download that goes on until the user cancels it, and then for a while, as one that waits for bytes does.
    void AwaitCancel(bool succeeds) {
        world->download = [this, succeeds](const DownloadCall& call) {
            running_ = true;
            while (!call.cancel)
                Sleep(1);
            Sleep(200);
            running_ = false;
            return succeeds || call.Fail(DownloadStep::Cancelled);
        };
    }
    void StartAndWait() {
        Click(Update);
        PumpUntil([this] { return IsRunning(); });
    }
    bool IsRunning() const { return running_; }

  private:
    std::atomic<bool> running_ = false;
};

constexpr const wchar_t* NoAnswer = L"No se pudo descargar la versión nueva: sin respuesta del servidor.";

TEST_F(UpdateDialogDownload, ShowsThatItRuns) {
    HeldDownload held;
    world->download = [&](const DownloadCall&) {
        held.Wait();
        return true;
    };
    EXPECT_TRUE(WithDialog([&] {
        Click(Update);
        PumpUntil([&] { return held.IsWaiting(); });
        ExpectDownloading();
        held.Release();
        PumpUntil([] { return !IsOpen(); });
    }));
}

TEST_F(UpdateDialogDownload, RunsOnAThreadOfItsOwnWithWhatTheDialogWasGiven) {
    DWORD thread = 0;
    const UpdateInfo* downloaded = nullptr;
    std::wstring executable;
    world->download = [&](const DownloadCall& call) {
        thread = GetCurrentThreadId();
        downloaded = &call.info;
        executable = call.executable;
        return !call.cancel;
    };
    EXPECT_TRUE(WithDialog([] {
        Click(Update);
        PumpUntil([] { return !IsOpen(); });
    }));
    EXPECT_NE(thread, 0U);
    EXPECT_NE(thread, GetCurrentThreadId());
    EXPECT_EQ(downloaded, &info);
    EXPECT_EQ(executable, L"C:\\Programs\\kestrane.exe");
}

TEST_F(UpdateDialogDownload, TakesTheKeyboardFromTheButtonThatItDisables) {
    AwaitCancel(false);
    WithDialog([this] {
        StartAndWait();
        EXPECT_EQ(GetFocus(), Control(IDCANCEL));
    });
}

TEST_F(UpdateDialogDownload, SuccessEndsTheDialogAtOnce) {
    EXPECT_TRUE(WithDialog([] {
        Click(Update);
        PumpUntil([] { return !IsOpen(); });
        EXPECT_EQ(TextOf(Note), L"Descargando la versión nueva...");
    }));
    EXPECT_EQ(world->donePosts, 1);
    EXPECT_EQ(world->lastPost, 1U);
    EXPECT_THAT(world->deleted, IsEmpty());
}

TEST_F(UpdateDialogDownload, AClickWhileItRunsIsIgnored) {
    AwaitCancel(false);
    WithDialog([this] {
        StartAndWait();
        Notify(Update, BN_CLICKED);
        Click(Update);
        ExpectDownloading();
    });
    EXPECT_EQ(world->downloads, 1);
    EXPECT_EQ(begunThreads, 1);
}

TEST_F(UpdateDialogDownload, SaysWhyItHasFailed) {
    struct Row {
        DownloadFailure failure;
        const wchar_t* spanish;
        const wchar_t* english;
    };
    const std::vector<Row> rows = {
        {{DownloadStep::Address, 0},
         L"No se pudo descargar la versión nueva: dirección no válida.",
         L"The new version could not be downloaded: invalid address."},
        {{DownloadStep::Answer, 0}, NoAnswer, L"The new version could not be downloaded: no answer from the server."},
        {{DownloadStep::Save, 4294967295},
         L"No se pudo guardar la versión nueva junto a kestrane (código 4294967295).",
         L"The new version could not be saved next to kestrane (code 4294967295)."},
        {{DownloadStep::Connection, 0},
         L"No se pudo descargar la versión nueva: la conexión se ha cortado.",
         L"The new version could not be downloaded: the connection dropped."},
        {{DownloadStep::Content, 0},
         L"El fichero descargado no coincide con el publicado (tamaño o huella). No se ha cambiado nada; prueba más "
         L"tarde.",
         L"The downloaded file does not match the published one (size or fingerprint). Nothing was changed; try again "
         L"later."},
    };
    for (const std::uint32_t language : {ActiveSpanish, ActiveEnglish}) {
        SetLanguage(language);
        for (const Row& row : rows) {
            world->download = [&](const DownloadCall& call) { return call.Fail(row.failure.step, row.failure.code); };
            EXPECT_FALSE(WithDialog([&] {
                Click(Update);
                PumpUntilFailed();
                ExpectFailed(language == ActiveSpanish ? row.spanish : row.english);
            }));
        }
    }
    EXPECT_EQ(world->lastPost, 0U);
    EXPECT_THAT(world->deleted, IsEmpty()) << "whoever downloads cleans up after a failure";
}

TEST_F(UpdateDialogDownload, CanBeTriedAgain) {
    HeldDownload held;
    world->download = [&](const DownloadCall& call) {
        if (world->downloads == 1) {
            call.Report(700, 1000);
            return call.Fail(DownloadStep::Answer);
        }
        held.Wait();
        return true;
    };
    EXPECT_TRUE(WithDialog([&] {
        Click(Update);
        PumpUntilFailed();
        ExpectFailed(NoAnswer);
        Click(Update);
        PumpUntil([&] { return held.IsWaiting(); });
        ExpectDownloading();
        held.Release();
        PumpUntil([] { return !IsOpen(); });
    }));
    EXPECT_EQ(world->downloads, 2);
}

TEST_F(UpdateDialogDownload, TheSecondTryBeginsAtZero) {
    world->download = [&](const DownloadCall& call) {
        call.Report(700, 1000);
        return call.Fail(DownloadStep::Answer);
    };
    WithDialog([] {
        for (int tries = 1; tries <= 2; ++tries) {
            Click(Update);
            PumpUntilFailed();
            EXPECT_EQ(world->progressPosts, tries) << "700 is news again";
        }
    });
}

TEST_F(UpdateDialogDownload, TellsEachPermilleOnceAtMost) {
    world->download = [](const DownloadCall& call) {
        constexpr std::uint64_t Size = 1'000'000;
        for (std::uint64_t done = 0; done <= Size; done += 100)
            call.Report(done, Size);
        return call.Fail(DownloadStep::Content);
    };
    WithDialog([] {
        Click(Update);
        PumpUntilFailed();
    });
    EXPECT_EQ(world->progressPosts, 1000) << "0 is no news";
    EXPECT_EQ(world->donePosts, 1);
}

TEST_F(UpdateDialogDownload, ProgressRepaintsTheBarWithoutErasing) {
    WithDialog([] {
        invalidated.clear();
        SendMessageW(Dialog(), WM_UPDATE_PROGRESS, 500, 0);
        EXPECT_THAT(invalidated, ElementsAre(std::pair(Control(Bar), FALSE)));
    });
}

TEST_F(UpdateDialogDownload, ClosingWaitsUntilItHasStopped) {
    AwaitCancel(false);
    EXPECT_FALSE(WithDialog([this] {
        StartAndWait();
        Click(IDCANCEL);
        EXPECT_FALSE(IsRunning());
        EXPECT_FALSE(IsOpen());
        EXPECT_EQ(shape, LoadCursorW(nullptr, IDC_WAIT));
    }));
    EXPECT_THAT(world->deleted, IsEmpty());
}

TEST_F(UpdateDialogDownload, ClosingWithoutOneDoesNotWait) {
    WithDialog([] {
        Click(IDCANCEL);
        EXPECT_NE(shape, LoadCursorW(nullptr, IDC_WAIT));
    });
}

TEST_F(UpdateDialogDownload, EscAndTheCloseBoxStopItToo) {
    for (const bool byKey : {true, false}) {
        AwaitCancel(false);
        EXPECT_FALSE(WithDialog([&] {
            StartAndWait();
            if (byKey) {
                PostMessageW(GetFocus(), WM_KEYDOWN, VK_ESCAPE, 0);
            } else {
                PostMessageW(Dialog(), WM_SYSCOMMAND, SC_CLOSE, 0);
            }
            PumpUntil([] { return !IsOpen(); });
            EXPECT_FALSE(IsRunning());
        }));
    }
}

TEST_F(UpdateDialogDownload, AFileThatArrivesAfterTheCloseIsDeleted) {
    AwaitCancel(true);
    EXPECT_FALSE(WithDialog([this] {
        StartAndWait();
        Click(IDCANCEL);
    }));
    EXPECT_THAT(world->deleted, ElementsAre(L"C:\\Programs\\kestrane.exe"));
}

TEST_F(UpdateDialogDownload, ItsLateNewsDoesNotUndoTheClose) {
    AwaitCancel(true);
    EXPECT_FALSE(WithDialog([this] {
        StartAndWait();
        Click(IDCANCEL);
        Pump();
        EXPECT_EQ(world->donePosts, 1);
    }));
    EXPECT_THAT(world->deleted, ElementsAre(L"C:\\Programs\\kestrane.exe"));
}

/// As in a loop within the shell's call for a link.
TEST_F(UpdateDialogDownload, AFileOfADialogThatIsClosedAfterItsEndIsDeleted) {
    EXPECT_FALSE(WithDialog([] {
        Click(Update);
        PumpUntil([] { return !IsOpen(); });
        Click(IDCANCEL);
    }));
    EXPECT_THAT(world->deleted, ElementsAre(L"C:\\Programs\\kestrane.exe"));
}

TEST_F(UpdateDialogDownload, StopsWhenTheProgramEnds) {
    for (const bool succeeds : {false, true}) {
        world->deleted.clear();
        AwaitCancel(succeeds);
        owner = CreateWindowW(L"STATIC", L"", WS_POPUP, 0, 0, 0, 0, nullptr, nullptr, nullptr, nullptr);
        EXPECT_FALSE(WithDialog([this] {
            StartAndWait();
            DestroyWindow(owner);
            EXPECT_FALSE(IsRunning());
            EXPECT_EQ(Dialog(), nullptr);
        }));
        EXPECT_EQ(world->deleted.size(), succeeds ? 1U : 0U);
    }
}

TEST_F(UpdateDialogDownload, StopsWhenTheLoopIsToEnd) {
    AwaitCancel(false);
    EXPECT_FALSE(WithDialog([this] {
        StartAndWait();
        DestroyWindow(Dialog());
        PostQuitMessage(0);
    }));
    EXPECT_FALSE(IsRunning());
    MSG message{};
    EXPECT_TRUE(PeekMessageW(&message, nullptr, WM_QUIT, WM_QUIT, PM_REMOVE));
}

/// Any program can post the messages of a download.
TEST_F(UpdateDialogDownload, OnlyItsOwnEndCounts) {
    std::atomic<bool> goesOn = true;
    world->download = [&](const DownloadCall& call) {
        constexpr int LongestMs = 2000;
        for (int ms = 0; goesOn && ms < LongestMs; ++ms)
            Sleep(1);
        return call.Fail(DownloadStep::Answer);
    };
    EXPECT_FALSE(WithDialog([&] {
        SendMessageW(Dialog(), WM_UPDATE_DONE, 1, 0);
        EXPECT_TRUE(IsOpen()) << "nothing has been downloaded";
        EXPECT_TRUE(IsEnabled(Update));
        Click(Update);
        SendMessageW(Dialog(), WM_UPDATE_DONE, 1, 0);
        ExpectDownloading();
        goesOn = false;
        PumpUntilFailed();
        ExpectFailed(NoAnswer);
        goesOn = true;
        Click(Update);
        SendMessageW(Dialog(), WM_UPDATE_DONE, 0, 0);  // late news of the first
        ExpectDownloading();
        goesOn = false;
        PumpUntilFailed();
    }));
}

TEST_F(UpdateDialogDownload, FailsWithoutAThreadAndCanBeTriedAgain) {
    threadError = ERROR_NOT_ENOUGH_MEMORY;
    EXPECT_TRUE(WithDialog([] {
        Click(Update);
        ExpectFailed(L"No se pudo guardar la versión nueva junto a kestrane (código 8).");
        EXPECT_EQ(world->downloads, 0);
        threadError = 0;
        Click(Update);
        PumpUntil([] { return !IsOpen(); });
    }));
    EXPECT_EQ(begunThreads, 1);
}

TEST_F(UpdateDialogDownload, ClosesWithoutAThread) {
    threadError = ERROR_NOT_ENOUGH_MEMORY;
    EXPECT_FALSE(WithDialog([] {
        Click(Update);
        Click(IDCANCEL);
    }));
    EXPECT_THAT(world->deleted, IsEmpty());
}

TEST_F(UpdateDialogDownload, ALinkOpensWhileItRuns) {
    AwaitCancel(false);
    WithDialog([this] {
        StartAndWait();
        Notify(Changes, STN_CLICKED);
        EXPECT_EQ(world->pages.size(), 1U);
        ExpectDownloading();
    });
}

}  // namespace
}  // namespace kestrane

extern "C" {
decltype(&_beginthreadex) __imp__beginthreadex = &kestrane::BeginOrRefuse;
decltype(&InvalidateRect) __imp_InvalidateRect = &kestrane::RecordInvalidateRect;
decltype(&SetCursor) __imp_SetCursor = &kestrane::RecordCursor;
}
