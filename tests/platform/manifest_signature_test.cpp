// The manifest's signature, checked by the system's BCrypt: signatures that scripts/sign.sh has made, everything that
// must not pass for one, and each call refused in turn.
#include "update/manifest_signature_win32.h"

#include <gmock/gmock.h>

#include <string>
#include <vector>

#include "support/fake_bcrypt_win32.h"
#include "text/text_util.h"
#include "update/manifest.h"
#include "update/update_hosts.h"

namespace kestrane {
namespace {

// The public halves of two keys made for this test; nobody has kept the private ones.
constexpr const char* Key =
    "194d4461085b41998d673b5137c93dd6ed4d57d0c62fe4d6f0f1cf3d9165c532"
    "bbfbf6473061bc1afdf624af3220b088a29a42b4a2b147d4c01da8a68169386a";
constexpr const char* OtherKey =
    "b123a0620c6f2ee189aa42e88a9aeb8ae1a2f5d9cd31618ae20ab4250225116a"
    "b1a0cd4867c8fdc546415f4c9fe452f4e591e3cf78364d3e95bd44f2138eca9d";

const std::string signature =
    "75585133e8713f207b7c787f62cf86bc96b70b6b59c3f4790106a4c9a8ad8d9e"
    "a10e49dee2e3477036293b8c52e8d9d3bf049ad63ec5d832eb32fc966cd4b45a";
const std::string signatureOf030 =
    "d1e496af772d72359b465dd76691855522ccf45d159c1b5709a3dad1136311ca"
    "accf1b6e70ed4e5f5e8a781587f91df8ee866a95f3575e578d2d9d46ac6ef45f";
const std::string signatureByOtherKey =
    "954d318ba5b981c26bd4de037a2471f8351c745e1d9bef7655746e8c4770ee3f"
    "b942b0bafafece1733a0c83bd46a5e0917292c8a69450cf7ac679f27f4cc6e2a";
// Numbers below 2^248, whose first byte is 0.
const std::string signatureWithShortR =
    "00364c7241a9ca52eeecf9adcbdcdc47b193152efce8b5470c9c3cd220bdd2ce"
    "c93acd7b5b0107560e9f9268a41adcdbb84718fd8ff3ecfa6b67a3ac50d3756c";
const std::string signatureWithShortS =
    "2c3ec2bc97c6d03ae6a3033d262600a9019c79864bd8471b68f81219901c3d80"
    "00010ceda92804e6f5195091ae00a663a734af707e5873dc91671a5ff752210d";

UpdateInfo MakeInfo(const std::string& version = "0.2.0") {
    return {version,
            "https://kestrane.example/kestrane.exe",
            "0123456789abcdef0123456789abcdef0123456789abcdef0123456789abcdef",
            400'000,
            "",
            0};
}

class ManifestSignature : public testing::Test {
  protected:
    ManifestSignature() { fakeBCrypt = {}; }
    ~ManifestSignature() override { EXPECT_THAT(fakeBCrypt.openOnes, testing::IsEmpty()); }
};

std::string Capitals(std::string digits) {
    for (char& c : digits) {
        if (c >= 'a') c = static_cast<char>(c - 'a' + 'A');
    }
    return digits;
}

/// Each text that differs from `text` in one bit of one byte.
std::vector<std::string> OneBitAway(const std::string& text) {
    std::vector<std::string> texts;
    for (std::size_t i = 0; i < text.size(); ++i) {
        texts.push_back(text);
        texts.back()[i] = static_cast<char>(text[i] ^ (1 << (i % 7)));
    }
    return texts;
}

/// Each text of digits that differs from `digits` in one of them.
std::vector<std::string> OneDigitAway(const std::string& digits) {
    std::vector<std::string> texts;
    for (std::size_t i = 0; i < digits.size(); ++i) {
        texts.push_back(digits);
        texts.back()[i] = digits[i] == '7' ? '8' : '7';
    }
    return texts;
}

/// Texts that are no two numbers of 64 digits each.
std::vector<std::string> MalformedDigits(const std::string& digits) {
    std::vector<std::string> texts = {"",
                                      "0",
                                      "0x" + digits,
                                      "0x" + digits.substr(2),
                                      digits + " ",
                                      "00" + digits,
                                      digits + "00",
                                      digits + "\n",
                                      digits + std::string(1, '\0')};
    for (std::size_t length = 0; length < digits.size(); ++length)
        texts.push_back(digits.substr(0, length));
    for (const char c : {'g', 'G', ' ', '/', ':', '@', '`', '-', '\0', '\xC3'}) {
        for (const std::size_t place : {std::size_t{0}, std::size_t{1}, digits.size() / 2, digits.size() - 1}) {
            texts.push_back(digits);
            texts.back()[place] = c;
        }
    }
    return texts;
}

TEST_F(ManifestSignature, IsValidForTheManifestThatWasSigned) {
    EXPECT_TRUE(VerifySignature(MakeInfo(), signature, Key));
    EXPECT_TRUE(VerifySignature(MakeInfo("0.3.0"), signatureOf030, Key));
    EXPECT_TRUE(VerifySignature(MakeInfo(), signatureByOtherKey, OtherKey));
    EXPECT_TRUE(VerifySignature(MakeInfo(), signatureWithShortR, Key));
    EXPECT_TRUE(VerifySignature(MakeInfo(), signatureWithShortS, Key));
    EXPECT_TRUE(VerifySignature(MakeInfo(), Capitals(signature), Capitals(Key)));
}

TEST_F(ManifestSignature, SaysNothingAboutWhatDecidesNothing) {
    UpdateInfo info = MakeInfo();
    info.published = "today";
    info.checkMinutes = 15;
    EXPECT_TRUE(VerifySignature(info, signature, Key));
}

TEST_F(ManifestSignature, IsInvalidWithAnotherKey) {
    EXPECT_FALSE(VerifySignature(MakeInfo(), signature, OtherKey));
    EXPECT_FALSE(VerifySignature(MakeInfo(), signatureByOtherKey, Key));
}

TEST_F(ManifestSignature, IsInvalidForAnotherVersion) {
    EXPECT_FALSE(VerifySignature(MakeInfo("0.3.0"), signature, Key));
    EXPECT_FALSE(VerifySignature(MakeInfo("0.2.0"), signatureOf030, Key));
}

TEST_F(ManifestSignature, IsInvalidOnceAnyByteOfASignedFieldHasChanged) {
    for (std::string UpdateInfo::*const field : {&UpdateInfo::version, &UpdateInfo::url, &UpdateInfo::sha256}) {
        UpdateInfo info = MakeInfo();
        std::vector<std::string> texts = OneBitAway(info.*field);
        texts.insert(texts.end(), {"", info.*field + "0", "0" + info.*field, info.*field + "\n"});
        for (const std::string& text : texts) {
            info.*field = text;
            EXPECT_FALSE(VerifySignature(info, signature, Key)) << text;
        }
    }
    for (const std::uint64_t size : {std::uint64_t{0}, std::uint64_t{399'999}, std::uint64_t{400'001},
                                     std::uint64_t{4'000'000}, std::uint64_t{400'000} + (std::uint64_t{1} << 32)}) {
        UpdateInfo info = MakeInfo();
        info.size = size;
        EXPECT_FALSE(VerifySignature(info, signature, Key)) << size;
    }
}

TEST_F(ManifestSignature, IsInvalidOnceAnyDigitHasChanged) {
    for (const std::string& digits : OneDigitAway(signature))
        EXPECT_FALSE(VerifySignature(MakeInfo(), digits, Key)) << digits;
    for (const std::string& digits : OneDigitAway(Key))
        EXPECT_FALSE(VerifySignature(MakeInfo(), signature, digits)) << digits;
}

TEST_F(ManifestSignature, IsInvalidUnlessItsNumbersAreInTheirRange) {
    const std::string zero(64, '0');
    const std::string one = std::string(63, '0') + "1";
    const std::string order = "ffffffff00000000ffffffffffffffffbce6faada7179e84f3b9cac2fc632551";
    const std::string largest(64, 'f');
    const std::string numbers[] = {zero, one, order, largest, signature.substr(0, 64), signature.substr(64)};
    for (const std::string& r : numbers) {
        for (const std::string& s : numbers) {
            EXPECT_EQ(VerifySignature(MakeInfo(), r + s, Key), r + s == signature) << r + s;
            EXPECT_FALSE(VerifySignature(MakeInfo(), signature, r + s)) << "as a key: " << r + s;
        }
    }
}

TEST_F(ManifestSignature, IsNotEvenLookedAtIfItIsMalformed) {
    for (const std::string& digits : MalformedDigits(signature))
        EXPECT_FALSE(VerifySignature(MakeInfo(), digits, Key)) << digits;
    for (const std::string& digits : MalformedDigits(Key))
        EXPECT_FALSE(VerifySignature(MakeInfo(), signature, digits)) << digits;
    EXPECT_EQ(fakeBCrypt.calls, 0);
}

TEST_F(ManifestSignature, IsInvalidIfAnyCallFails) {
    constexpr int Calls = 7;
    for (int refused = 1; refused <= Calls; ++refused) {
        RefuseCall(refused);
        EXPECT_FALSE(VerifySignature(MakeInfo(), signature, Key)) << refused;
        EXPECT_THAT(fakeBCrypt.openOnes, testing::IsEmpty()) << refused;
        EXPECT_EQ(fakeBCrypt.calls, refused) << "nothing more is tried";
    }
    RefuseCall(Calls + 1);
    EXPECT_TRUE(VerifySignature(MakeInfo(), signature, Key));
    EXPECT_THAT(fakeBCrypt.algorithms, testing::ElementsAre(L"SHA256", L"ECDSA_P256"));
    EXPECT_EQ(fakeBCrypt.calls, Calls);
}

std::string ManifestText(const std::string& signatureField) {
    return R"({"version":"0.2","url":"https://kestrane.example/kestrane.exe",)"
           R"("sha256":"0123456789ABCDEF0123456789abcdef0123456789abcdef0123456789abcdef","size":400000)" +
           signatureField + "}";
}

TEST_F(ManifestSignature, IsCheckedWithTheKeyOfTheBuild) {
    EXPECT_TRUE(IsSignedManifest(MakeInfo(), signature));
    EXPECT_FALSE(IsSignedManifest(MakeInfo(), signatureByOtherKey));
    UpdateInfo info;
    EXPECT_TRUE(ParseManifest(ManifestText(R"(,"signature":")" + signature + "\""), info, &IsSignedManifest));
    EXPECT_EQ(info, MakeInfo());
}

TEST_F(ManifestSignature, IsRequiredOfAManifestInSuchABuild) {
    UpdateInfo info;
    EXPECT_FALSE(ParseManifest(ManifestText(""), info, &IsSignedManifest));
    EXPECT_FALSE(ParseManifest(ManifestText(R"(,"signature":"")"), info, &IsSignedManifest));
    EXPECT_FALSE(ParseManifest(ManifestText(R"(,"signature":")" + signatureOf030 + "\""), info, &IsSignedManifest));
    EXPECT_FALSE(
        ParseManifest(ManifestText(R"(,"signature":")" + signatureByOtherKey + "\""), info, &IsSignedManifest));
    EXPECT_EQ(info, UpdateInfo());
}

}  // namespace

// This test is a build with a key.
const char* const UpdateHost = "kestrane.example";
const char* const StatsHost = "";
const char* const WebsiteId = "";
const char* const ManifestKey = Key;

}  // namespace kestrane
