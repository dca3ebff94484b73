#pragma once
#include <windows.h>

#include <string>

#include "support/real_call_win32.h"

namespace kestrane {

/// While this lives, one of the registry's roots (HKEY_LOCAL_MACHINE) is an empty key of the test's own, for this
/// process: what it reads, writes and deletes there is neither the user's nor the machine's.
class OwnRegistry {
  public:
    explicit OwnRegistry(HKEY root) : root_(root) {
        const auto create = REAL(L"advapi32", RegCreateKeyExW);
        create(HKEY_CURRENT_USER, name_.c_str(), 0, nullptr, 0, KEY_ALL_ACCESS, nullptr, &key_, nullptr);
        isIt_ = key_ != nullptr && RegOverridePredefKey(root_, key_) == ERROR_SUCCESS;
    }
    OwnRegistry(const OwnRegistry&) = delete;
    OwnRegistry& operator=(const OwnRegistry&) = delete;
    ~OwnRegistry() {
        RegOverridePredefKey(root_, nullptr);
        REAL(L"advapi32", RegCloseKey)(key_);
        RegDeleteTreeW(HKEY_CURRENT_USER, name_.c_str());
    }

    /// False if the system refuses; then a test must not go on.
    explicit operator bool() const { return isIt_; }

  private:
    const HKEY root_;
    const std::wstring name_ = L"Software\\kestrane-test-" + std::to_wstring(GetCurrentProcessId()) +
                               (root_ == HKEY_LOCAL_MACHINE ? L"-machine" : L"-user");
    HKEY key_ = nullptr;
    bool isIt_ = false;
};

}  // namespace kestrane
