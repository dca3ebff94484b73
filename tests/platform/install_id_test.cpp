// The identity of an installation, from the system's random source or one that fails.
#include "update/install_id_win32.h"

#include <windows.h>

#include <bcrypt.h>

#include <gtest/gtest.h>

#include <set>
#include <string>

#include "support/real_call_win32.h"

namespace {

NTSTATUS refusal = 0;  // none

}  // namespace

extern "C" NTSTATUS WINAPI BCryptGenRandom(BCRYPT_ALG_HANDLE algorithm, PUCHAR bytes, ULONG size, ULONG flags) {
    static const auto real = REAL(L"bcrypt", BCryptGenRandom);
    EXPECT_EQ(algorithm, nullptr);
    EXPECT_EQ(size, 16U);
    EXPECT_EQ(flags, 2U);  // the system's preferred generator
    const NTSTATUS status = real(algorithm, bytes, size, flags);
    return refusal != 0 ? refusal : status;
}

namespace kestrane {
namespace {

bool IsRandomUuid(const std::string& text) {
    if (text.size() != 36) return false;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const bool isJoint = i == 8 || i == 13 || i == 18 || i == 23;
        const std::string allowed = isJoint ? "-" : i == 14 ? "4" : i == 19 ? "89ab" : "0123456789abcdef";
        if (allowed.find(text[i]) == std::string::npos) return false;
    }
    return true;
}

TEST(InstallId, IsARandomUuidAndEachTimeAnother) {
    refusal = 0;
    std::set<std::string> drawn;
    for (int i = 0; i < 1000; ++i) {
        const std::string id = GenerateInstallId();
        EXPECT_TRUE(IsRandomUuid(id)) << id;
        drawn.insert(id);
    }
    EXPECT_EQ(drawn.size(), 1000U);
}

TEST(InstallId, IsNoneIfTheRandomSourceFailsEvenWithBytes) {
    for (const DWORD status : {STATUS_NO_MEMORY, STATUS_DLL_NOT_FOUND, STATUS_INVALID_PARAMETER}) {
        refusal = static_cast<NTSTATUS>(status);
        EXPECT_EQ(GenerateInstallId(), "") << status;
    }
    refusal = 0;
    EXPECT_TRUE(IsRandomUuid(GenerateInstallId()));
}

}  // namespace
}  // namespace kestrane
