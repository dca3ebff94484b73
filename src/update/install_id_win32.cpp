#include "update/install_id_win32.h"

#include <windows.h>

#include <bcrypt.h>

#include <array>
#include <cstdint>

#include "update/install_id.h"

namespace kestrane {

std::string GenerateInstallId() {
    std::array<std::uint8_t, 16> random{};
    const NTSTATUS status =
        BCryptGenRandom(nullptr, random.data(), static_cast<ULONG>(random.size()), BCRYPT_USE_SYSTEM_PREFERRED_RNG);
    return BCRYPT_SUCCESS(status) ? MakeInstallId(random) : std::string();
}

}  // namespace kestrane
