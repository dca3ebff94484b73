// Hashes of real files, with every call of the system refused in turn.
#include "update/file_hash_win32.h"

#include <windows.h>
// <windows.h> comes first.
#include <gmock/gmock.h>

#include <cstddef>
#include <filesystem>
#include <string>
#include <utility>

#include "base/handles_win32.h"
#include "support/fake_bcrypt_win32.h"
#include "support/file_bytes_win32.h"
#include "support/file_operations_win32.h"
#include "support/test_folder_win32.h"

namespace kestrane {
namespace {

using test::Calls;
using test::CountCalls;
using test::fileOperations;
using test::PatternBytes;
using testing::ElementsAre;

constexpr const char* AbcHash = "ba7816bf8f01cfea414140de5dae2223b00361a396177a9cb410ff61f20015ad";

class FileHashTest : public testing::Test {
  protected:
    FileHashTest() {
        fileOperations = {};
        fileOperations.folder = folder_.Path().wstring() + L"\\";
        fakeBCrypt = {};
        Calls().clear();
    }
    ~FileHashTest() override {
        EXPECT_TRUE(fileOperations.open.empty());
        fileOperations = {};
        EXPECT_TRUE(fakeBCrypt.openOnes.empty());
    }

    /// The hash of these bytes, or "failed".
    std::string HashOf(const std::string& bytes) const {
        test::WriteBytes(path_, bytes);
        std::string digest = "before";
        if (HashFileSha256(path_, digest)) return digest;
        EXPECT_EQ(digest, "before");
        return "failed";
    }

    const TestFolder folder_;
    const std::wstring path_ = (folder_.Path() / L"file").wstring();
};

TEST_F(FileHashTest, IsThatOfAllBytesAtEveryLengthAroundABlock) {
    EXPECT_EQ(HashOf("abc"), AbcHash);
    const std::pair<std::size_t, const char*> rows[] = {
        {0, "e3b0c44298fc1c149afbf4c8996fb92427ae41e4649b934ca495991b7852b855"},
        {1, "6e340b9cffb37a989ca544e6bb780a2c78901d3fb33738768511a30617afa01d"},
        {65535, "dda402a2c028f0cbbdbc5c6ebae965eed9c75f71236e7022b0386d3455d5ae2f"},
        {65536, "4b640d85ab3ba30fd02c9fc9db4a8928f416322ad27022ea58a65aaee68a4df2"},
        {65537, "237356e18b503616912abb8ffaed3a72591e397d4ac294c4637917d48a3f529d"},
        {131072, "feb1e4409d009e0ec502eaabe321f86b5197a881e9b765252ec8a75d6957596d"},
        {200000, "e24bc62381f1224fbbb74688663f8f9743b9680b193edd666835e97b06e730eb"},
    };
    for (const auto& [size, hash] : rows)
        EXPECT_EQ(HashOf(PatternBytes(size)), hash) << size;
}

TEST_F(FileHashTest, ReadsBlockByBlockAndReleasesEverything) {
    EXPECT_EQ(HashOf(PatternBytes(65537)).size(), 64U);
    EXPECT_THAT(Calls(), ElementsAre("CreateFileW file access 80000000 share 1 disposition 3 flags 8000000",
                                     "ReadFile file", "ReadFile file", "ReadFile file", "CloseHandle file"));
    EXPECT_THAT(fakeBCrypt.names,
                ElementsAre("BCryptOpenAlgorithmProvider", "BCryptCreateHash", "BCryptHashData", "BCryptHashData",
                            "BCryptFinishHash", "BCryptDestroyHash", "BCryptCloseAlgorithmProvider"));
    EXPECT_THAT(fakeBCrypt.algorithms, ElementsAre(L"SHA256"));
}

TEST_F(FileHashTest, FailsWithoutAFile) {
    std::string digest = "before";
    EXPECT_FALSE(HashFileSha256(path_, digest));
    EXPECT_FALSE(HashFileSha256(folder_.Path().wstring(), digest));
    EXPECT_FALSE(HashFileSha256(L"", digest));
    EXPECT_EQ(digest, "before");
}

TEST_F(FileHashTest, FailsIfAnyFileOperationDoes) {
    const std::string bytes = PatternBytes(70000);
    for (const DWORD error : {DWORD{ERROR_ACCESS_DENIED}, DWORD{ERROR_SHARING_VIOLATION}, DWORD{ERROR_CRC}}) {
        for (const int operation : {1, 2, 3, 4}) {  // opening, and three reads
            fileOperations.done = 0;
            fileOperations.refuseAt = operation;
            fileOperations.refuseWith = error;
            EXPECT_EQ(HashOf(bytes), "failed") << operation;
            EXPECT_TRUE(fileOperations.open.empty()) << operation;
        }
    }
}

TEST_F(FileHashTest, FailsIfAnyCallOfTheHashingDoesAndReleasesTheRest) {
    for (const char* bytes : {"abc", ""}) {
        fakeBCrypt = {};
        EXPECT_EQ(HashOf(bytes).size(), 64U);
        const int calls = fakeBCrypt.calls;
        EXPECT_EQ(calls, *bytes != 0 ? 4 : 3);
        for (int call = 1; call <= calls; ++call) {
            RefuseCall(call);
            Calls().clear();
            EXPECT_EQ(HashOf(bytes), "failed") << call;
            EXPECT_TRUE(fakeBCrypt.openOnes.empty()) << call;
            EXPECT_EQ(CountCalls("CloseHandle file"), 1) << call;
        }
    }
}

TEST_F(FileHashTest, FailsWhileAnotherMayWriteTheFileButNotWhileOneReadsIt) {
    test::WriteBytes(path_, "abc");
    std::string digest;
    {
        const UniqueFile writer(CreateFileW(path_.c_str(), GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr,
                                            OPEN_EXISTING, 0, nullptr));
        ASSERT_TRUE(writer);
        EXPECT_FALSE(HashFileSha256(path_, digest));
    }
    const UniqueFile reader(
        CreateFileW(path_.c_str(), GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING, 0, nullptr));
    ASSERT_TRUE(reader);
    EXPECT_TRUE(HashFileSha256(path_, digest));
    EXPECT_EQ(digest, AbcHash);
}

}  // namespace
}  // namespace kestrane
