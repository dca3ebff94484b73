#pragma once
// Tells screen readers the names of the colour wells.
#include <windows.h>

#include <array>
#include <cstdint>
#include <string>

#include "base/accessible_win32.h"
#include "settings/app_settings.h"

namespace kestrane {

/// The names live as long as this, within the life of the dialog's windows and of a COM apartment. Where the system
/// does not offer them, the wells stay without.
class WellNames {
  public:
    explicit WellNames(HWND dialog);
    WellNames(const WellNames&) = delete;
    WellNames& operator=(const WellNames&) = delete;
    ~WellNames();

    /// Names the wells as the texts and numbers beside them are now.
    void Update(const std::array<std::int32_t, 3>& thresholds);

  private:
    HWND Well(std::size_t key) const;

    UniqueAccPropServices services_;
    HWND dialog_;
    std::array<std::wstring, ColorCount> names_;  // by ColorKey; empty for none
};

}  // namespace kestrane
