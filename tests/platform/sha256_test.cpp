// SHA-256 of the system's BCrypt: the published vectors, in any pieces, and each call refused in turn.
#include "update/sha256_win32.h"

#include <gmock/gmock.h>

#include <string>

#include "support/fake_bcrypt_win32.h"
#include "text/text_util.h"

namespace kestrane {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr const char* Failed = "(failed)";

std::string HashOf(std::initializer_list<std::string_view> pieces) {
    Sha256 hash;
    bool added = true;
    for (const std::string_view piece : pieces)
        added = hash.Add(piece.data(), piece.size()) && added;
    Sha256Digest digest{};
    const bool finished = hash.Finish(digest);
    EXPECT_TRUE(added || !finished);
    if (!finished) {
        EXPECT_EQ(digest, Sha256Digest{});
    }
    return finished ? HexText(digest) : Failed;
}

class Sha256Test : public testing::Test {
  protected:
    Sha256Test() { fakeBCrypt = {}; }
    ~Sha256Test() override { EXPECT_THAT(fakeBCrypt.openOnes, IsEmpty()); }
};

TEST_F(Sha256Test, GivesThePublishedDigests) {
    EXPECT_EQ(HashOf({}), "e3b0c44298fc1c149afbf4c8996fb92427ae41e4649b934ca495991b7852b855");
    EXPECT_EQ(HashOf({"abc"}), "ba7816bf8f01cfea414140de5dae2223b00361a396177a9cb410ff61f20015ad");
    EXPECT_EQ(HashOf({"abcdbcdecdefdefgefghfghighijhijkijkljklmklmnlmnomnopnopq"}),
              "248d6a61d20638b8e5c026930c3e6039a33ce45964ff2167f6ecedd419db06c1");
    EXPECT_EQ(HashOf({std::string(1'000'000, 'a')}),
              "cdc76e5c9914fb9281a1c7e284d73e67f1809a48a497200e046d39ccc7112cd0");
}

TEST_F(Sha256Test, DoesNotDependOnThePieces) {
    const std::string text = "abcdbcdecdefdefgefghfghighijhijkijkljklmklmnlmnomnopnopq";
    for (std::size_t cut = 0; cut <= text.size(); ++cut) {
        const std::string_view whole = text;
        EXPECT_EQ(HashOf({whole.substr(0, cut), whole.substr(cut)}), HashOf({whole})) << cut;
    }
    EXPECT_EQ(HashOf({"", "a", "", "b", "c", ""}), HashOf({"abc"}));
}

TEST_F(Sha256Test, OpensTheSystemsOwnProviderOnce) {
    HashOf({"a", "b"});
    EXPECT_THAT(fakeBCrypt.algorithms, ElementsAre(L"SHA256"));
    EXPECT_THAT(fakeBCrypt.names,
                ElementsAre("BCryptOpenAlgorithmProvider", "BCryptCreateHash", "BCryptHashData", "BCryptHashData",
                            "BCryptFinishHash", "BCryptDestroyHash", "BCryptCloseAlgorithmProvider"));
}

TEST_F(Sha256Test, FailsIfAnyCallDoes) {
    constexpr int Calls = 5;  // open, create, two pieces, finish
    const std::string digest = HashOf({"abc"});
    for (int refused = 1; refused <= Calls; ++refused) {
        RefuseCall(refused);
        EXPECT_EQ(HashOf({"a", "bc"}), Failed) << refused;
        EXPECT_THAT(fakeBCrypt.openOnes, IsEmpty()) << refused;
        EXPECT_EQ(fakeBCrypt.calls, refused) << "nothing more is tried";
    }
    RefuseCall(Calls + 1);
    EXPECT_EQ(HashOf({"a", "bc"}), digest);
}

TEST_F(Sha256Test, EndsWithItsDigest) {
    Sha256 hash;
    Sha256Digest digest{};
    EXPECT_TRUE(hash.Finish(digest));
    EXPECT_FALSE(hash.Add("a", 1));
    digest = {};
    EXPECT_FALSE(hash.Finish(digest));
    EXPECT_EQ(digest, Sha256Digest{});
}

TEST_F(Sha256Test, RefusesAPieceWhoseSizeTheSystemCannotTake) {
    Sha256 hash;
    EXPECT_FALSE(hash.Add("a", std::size_t{1} << 32));
    Sha256Digest digest{};
    EXPECT_FALSE(hash.Finish(digest));
}

}  // namespace
}  // namespace kestrane
