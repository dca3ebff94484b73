#pragma once
// Tells screen readers what the painted controls of the update dialog are: two links and a progress bar.
#include <windows.h>

#include <array>
#include <cstdint>

#include "base/accessible_win32.h"

namespace kestrane {

/// The roles live as long as this, within the life of the dialog's windows and of a COM apartment. Where the system
/// does not offer them, the controls stay what they look like to it: plain texts.
class UpdateDialogRoles {
  public:
    UpdateDialogRoles(const std::array<HWND, 2>& links, HWND bar, const wchar_t* nameOfBar);
    UpdateDialogRoles(const UpdateDialogRoles&) = delete;
    UpdateDialogRoles& operator=(const UpdateDialogRoles&) = delete;
    ~UpdateDialogRoles();

    /// Makes the bar tell its progress, in whole per cent.
    void ShowProgress(std::int32_t permille);

  private:
    void SetText(const GUID& property, const wchar_t* text);

    UniqueAccPropServices services_;
    std::array<HWND, 2> links_;
    HWND bar_;
    std::int32_t percent_ = -1;  // what the bar has told last
};

}  // namespace kestrane
