#pragma once
// Finds out in the background whether a newer version has been published. One worker thread sleeps on an event, fetches
// the manifest now and then, and tells the hidden window when the answer has changed. It never downloads a program:
// that is the user's decision.
#include <windows.h>

#include <string>

#include "base/handles_win32.h"
#include "base/lock_win32.h"
#include "base/thread_win32.h"
#include "update/update_rules.h"

namespace kestrane {

/// Posted to the hidden window, without parameters, when the offer has changed: ask GetAvailable.
inline constexpr UINT WM_UPDATE_STATE = 0x8014;

struct UpdateChecker {
    UpdateChecker() = default;
    UpdateChecker(const UpdateChecker&) = delete;
    UpdateChecker& operator=(const UpdateChecker&) = delete;
    ~UpdateChecker() { Stop(); }

    /// Starts the worker, whose first check comes after FirstCheckMs. Does nothing while it is running, or without an
    /// event to stop it by. Throws std::runtime_error if the system gives no thread.
    void Start(HWND notifyWindow, std::string currentVersion, std::string installId);
    /// Ends the worker, and with it the offer. Waits for a check that is under way, at most for the time-outs of
    /// its two requests.
    void Stop();
    bool IsRunning() const { return worker.IsJoinable(); }
    /// True if a newer version is known; it is copied to `info`, which is unchanged otherwise. Any thread.
    bool GetAvailable(UpdateInfo& info) const;

    // Set by Start before the worker runs, then only read.
    HWND notifyWindow = nullptr;  // null: nobody is told
    std::string currentVersion;   // canonical
    std::string installId;
    Thread worker;
    UniqueKernelHandle stopEvent;  // manual reset
    mutable Lock lock;             // guards the offer, held only for copying
    UpdateOffer offer;
};

/// One check, on the worker: fetches the manifest, takes it over, tells the window, and sends the usage event.
void RunUpdateCheck(UpdateChecker& checker);

}  // namespace kestrane
