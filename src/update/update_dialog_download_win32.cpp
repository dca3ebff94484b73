#include "update/update_dialog_download_win32.h"

#include "update/download_win32.h"
#include "update/update_rules.h"

namespace kestrane {
namespace {

/// Tells only what the bar can show, so a dialog gets at most 1000 of these, whatever the size of the file.
void ReportProgress(void* context, std::uint64_t done, std::uint64_t total) {
    auto& state = *static_cast<UpdateDialogState*>(context);
    const std::int32_t permille = Permille(done, total);
    if (state.permille.exchange(permille) == permille) return;
    PostMessageW(state.dialog, WM_UPDATE_PROGRESS, static_cast<WPARAM>(permille), 0);
}

}  // namespace

unsigned __stdcall RunUpdateDownload(void* context) noexcept {
    auto& state = *static_cast<UpdateDialogState*>(context);
    const DownloadProgress progress{&ReportProgress, &state};
    state.downloaded = DownloadUpdate(*state.info, state.exePath, state.cancel, progress, state.failure);
    state.ended = true;
    PostMessageW(state.dialog, WM_UPDATE_DONE, state.downloaded ? 1 : 0, 0);
    return 0;
}

}  // namespace kestrane
