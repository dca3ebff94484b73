#include "update/update_checker_win32.h"

#include <cstdint>
#include <stdexcept>
#include <utility>

#include "update/https_win32.h"
#include "update/manifest.h"
#include "update/manifest_signature_win32.h"
#include "update/update_hosts.h"
#include "update/usage_event_win32.h"

namespace kestrane {
namespace {

constexpr DWORD RetryMs = 10;

void TellOfferChanged(const UpdateChecker& checker) {
    if (checker.notifyWindow != nullptr) PostMessageW(checker.notifyWindow, WM_UPDATE_STATE, 0, 0);
}

/// Fetches the manifest. False on any failure.
bool FetchManifest(const UpdateChecker& checker, UpdateInfo& info) {
    std::string body;
    return HttpGetSmall(UpdateHost, ManifestPath(GetTickCount64()), UserAgent(checker.currentVersion), body,
                        LargestManifest, checker.stopEvent.Get()) &&
           ParseManifest(body, info, *ManifestKey != '\0' ? &IsSignedManifest : nullptr);
}

std::uint32_t WaitAfterCheckMs(const UpdateChecker& checker) {
    const LockGuard guard(checker.lock);
    return NextWaitMs(checker.offer.nextCheckMinutes);
}

/// The worker. An allocation that fails ends the program on this thread too.
unsigned __stdcall RunWorker(void* context) noexcept {
    auto& checker = *static_cast<UpdateChecker*>(context);
    std::uint32_t waitMs = FirstCheckMs;
    while (WaitForSingleObject(checker.stopEvent.Get(), waitMs) == WAIT_TIMEOUT) {
        RunUpdateCheck(checker);
        waitMs = WaitAfterCheckMs(checker);
    }
    return 0;
}

}  // namespace

void UpdateChecker::Start(HWND window, std::string version, std::string id) {
    if (IsRunning()) return;
    notifyWindow = window;
    currentVersion = std::move(version);
    installId = std::move(id);
    stopEvent.Reset(CreateEventW(nullptr, TRUE, FALSE, nullptr));
    if (!stopEvent) return;
    if (!worker.Start(&RunWorker, this)) {
        stopEvent.Reset();
        throw std::runtime_error("no thread for the update check");
    }
}

void UpdateChecker::Stop() {
    if (IsRunning()) {
        // Not told, the worker would sleep for hours, and so would this.
        while (!SetEvent(stopEvent.Get()))
            Sleep(RetryMs);
        worker.Join();
    }
    stopEvent.Reset();
    bool withdrawn = false;
    {
        const LockGuard guard(lock);
        withdrawn = std::exchange(offer.available, false);
    }
    if (withdrawn) TellOfferChanged(*this);
}

bool UpdateChecker::GetAvailable(UpdateInfo& info) const {
    const LockGuard guard(lock);
    if (offer.available) info = offer.info;
    return offer.available;
}

void RunUpdateCheck(UpdateChecker& checker) {
    UpdateInfo info;
    if (FetchManifest(checker, info)) {
        bool changed = false;
        {
            const LockGuard guard(checker.lock);
            changed = ApplyManifest(checker.offer, info, checker.currentVersion);
        }
        if (changed) TellOfferChanged(checker);
    }
    SendUsageEvent(checker);
}

}  // namespace kestrane
