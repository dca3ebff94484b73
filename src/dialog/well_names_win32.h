#pragma once
// Tells screen readers the names of the colour wells.
#include <windows.h>
// <windows.h> comes first.
#include <ole2.h>

#include <oleacc.h>

#include <array>
#include <cstdint>
#include <string>

#include "base/owned.h"
#include "settings/app_settings.h"

namespace kestrane {

struct AccPropServicesTraits {
    using Handle = IAccPropServices*;
    static constexpr Handle None() { return nullptr; }
    static void Close(Handle services) { services->Release(); }
};

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

    HWND dialog_;
    Owned<AccPropServicesTraits> services_;
    std::array<std::wstring, ColorCount> names_;  // by ColorKey; empty for none
};

}  // namespace kestrane
