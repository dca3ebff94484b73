// The download with a scripted server and real files, each call of either refused in turn.
#include "update/download_win32.h"

#include <windows.h>
// <windows.h> comes first.
#include <gmock/gmock.h>

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "base/handles_win32.h"
#include "base/thread_win32.h"
#include "support/fake_bcrypt_win32.h"
#include "support/fake_winhttp_win32.h"
#include "support/file_bytes_win32.h"
#include "support/file_operations_win32.h"
#include "support/test_folder_win32.h"
#include "update/file_hash_win32.h"
#include "update/own_version.h"

namespace kestrane {

inline void PrintTo(const DownloadFailure& failure, std::ostream* out) {
    constexpr const char* Names[] = {"none", "address", "answer", "save", "cancelled", "connection", "content"};
    *out << Names[static_cast<std::size_t>(failure.step)] << " " << failure.code;
}

namespace {

using test::Calls;
using test::fakeHttp;
using test::fileOperations;
using test::OpenHttpHandles;
using test::PatternBytes;
using test::ReadBytes;
using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::StartsWith;

constexpr const char* Host = "updates.example";
constexpr const char* Url = "https://updates.example/files/kestrane.exe";
constexpr std::size_t Piece = 8192;  // arrives at a time
constexpr DownloadFailure NoFailure{};
constexpr DownloadFailure NoAddress{.step = DownloadStep::Address};
constexpr DownloadFailure NoAnswer{.step = DownloadStep::Answer};
constexpr DownloadFailure Cancelled{.step = DownloadStep::Cancelled};
constexpr DownloadFailure ConnectionLost{.step = DownloadStep::Connection};
constexpr DownloadFailure WrongContent{.step = DownloadStep::Content};
constexpr DownloadFailure NotSaved(DWORD code) {
    return {.step = DownloadStep::Save, .code = code};
}

class DownloadTest : public testing::Test {
  protected:
    DownloadTest() {
        test::WriteBytes(executable_, "the running program");
        StartAnew();
    }
    ~DownloadTest() override {
        EXPECT_THAT(fakeHttp.mistakes, IsEmpty());
        EXPECT_EQ(OpenHttpHandles(), 0U);
        EXPECT_TRUE(fileOperations.open.empty());
        EXPECT_EQ(ReadBytes(executable_), "the running program");
        fakeHttp = {};
        fileOperations = {};
        EXPECT_TRUE(fakeBCrypt.openOnes.empty());
    }

    /// All calls work, nothing is noted, and the server has the published file, of a little more than three pieces.
    void StartAnew() {
        fileOperations = {};
        fileOperations.folder = folder_.Path().wstring() + L"\\";
        fakeHttp = {};
        fakeHttp.onCall = [](const std::string& function) { test::NoteCall("http " + function); };
        Publish(PatternBytes(3 * Piece + 100));
        fakeBCrypt = {};
        Calls().clear();
        cancel_ = false;
        cancelAt_.reset();
        reported_.clear();
    }

    void Publish(const std::string& bytes) {
        info_ = {.version = "9.0.0", .url = Url, .sha256 = HashOf(bytes), .size = bytes.size(), .published = {}};
        Serve(bytes);
    }
    static void Serve(const std::string& bytes) {
        fakeHttp.answers[Host] = {};
        fakeHttp.answers[Host].body = bytes;
    }
    std::string HashOf(const std::string& bytes) const {
        const std::wstring path = (elsewhere_.Path() / L"hashed").wstring();
        test::WriteBytes(path, bytes);
        std::string digest;
        EXPECT_TRUE(HashFileSha256(path, digest));
        return digest;
    }

    /// What the download says; the file stands afterwards if that is nothing, and not otherwise.
    DownloadFailure Download() {
        DownloadFailure failure{.step = DownloadStep::Save, .code = 4711};  // of an earlier attempt
        const bool done = DownloadUpdate(info_, executable_, cancel_, {.report = &Report, .context = this}, failure);
        EXPECT_EQ(done, failure == NoFailure);
        return failure;
    }
    static unsigned __stdcall DownloadOnThread(void* context) noexcept {
        auto& self = *static_cast<DownloadTest*>(context);
        self.saidOnThread_ = self.Download();
        return 0;
    }
    bool NewFileStands() const { return ReadBytes(newFile_).has_value(); }
    /// How often a function of WinHTTP was called.
    static int HttpCount(const std::string& function) { return fakeHttp.counts[function]; }

    static void Report(void* context, std::uint64_t done, std::uint64_t total) {
        auto& self = *static_cast<DownloadTest*>(context);
        self.reported_.emplace_back(done, total);
        if (self.cancelAt_ == done) self.cancel_ = true;
    }

    const TestFolder folder_;
    const TestFolder elsewhere_;
    const std::wstring executable_ = (folder_.Path() / L"kestrane.exe").wstring();
    const std::wstring newFile_ = executable_ + L".new";
    UpdateInfo info_;
    std::atomic<bool> cancel_ = false;
    std::optional<std::uint64_t> cancelAt_;  // when so many bytes are reported
    std::vector<std::pair<std::uint64_t, std::uint64_t>> reported_;
    DownloadFailure saidOnThread_;
};

// --- a good download

TEST_F(DownloadTest, LeavesTheVerifiedFileBesideTheExecutable) {
    EXPECT_EQ(Download(), NoFailure);
    EXPECT_EQ(ReadBytes(newFile_), PatternBytes(3 * Piece + 100));
}

TEST_F(DownloadTest, AsksForTheFileOnPort443AsItself) {
    info_.url = "https://updates.example:8443/files/kestrane.exe";
    EXPECT_EQ(Download(), NoFailure);
    EXPECT_THAT(fakeHttp.calls, Contains(StartsWith("open kestrane/" + OwnVersion() + " access 4 ")));
    EXPECT_THAT(fakeHttp.calls, Contains("connect 1: updates.example 443"));
    EXPECT_THAT(fakeHttp.calls, Contains(StartsWith("request 2: GET /files/kestrane.exe ")));
    EXPECT_THAT(fakeHttp.calls, Contains("send 3: headers (none) length 0 body (none) length 0 of 0"));
}

TEST_F(DownloadTest, TouchesTheDiskOnlyAfterAGoodAnswerAndReleasesEverythingBeforeItVerifies) {
    Publish("abc");
    Calls().clear();
    EXPECT_EQ(Download(), NoFailure);
    EXPECT_THAT(
        Calls(),
        ElementsAre("http crack", "http open", "http timeouts", "http option", "http connect", "http request",
                    "http send", "http receive", "http status",
                    "CreateFileW kestrane.exe.new access 40000000 share 0 disposition 2 flags 80", "http available",
                    "http read", "WriteFile kestrane.exe.new 3", "http available", "FlushFileBuffers kestrane.exe.new",
                    "CloseHandle kestrane.exe.new", "http close", "http close", "http close",
                    "CreateFileW kestrane.exe.new access 80000000 share 1 disposition 3 flags 8000000",
                    "ReadFile kestrane.exe.new", "ReadFile kestrane.exe.new", "CloseHandle kestrane.exe.new"));
    std::vector<std::string> closed;
    for (const std::string& call : fakeHttp.calls) {
        if (call.starts_with("close")) closed.push_back(call);
    }
    EXPECT_THAT(closed, ElementsAre("close 3", "close 2", "close 1"));  // request, connection, session
}

TEST_F(DownloadTest, ReportsWhatHasArrivedAfterEachPiece) {
    EXPECT_EQ(Download(), NoFailure);
    const std::uint64_t total = 3 * Piece + 100;
    EXPECT_THAT(reported_,
                ElementsAre(std::pair(std::uint64_t{Piece}, total), std::pair(std::uint64_t{2 * Piece}, total),
                            std::pair(std::uint64_t{3 * Piece}, total), std::pair(total, total)));
}

TEST_F(DownloadTest, NeedsNobodyToReportTo) {
    DownloadFailure failure;
    EXPECT_TRUE(DownloadUpdate(info_, executable_, cancel_, {}, failure));
    EXPECT_EQ(failure, NoFailure);
}

TEST_F(DownloadTest, TakesTheBytesAsTheyDrip) {
    Publish("a little program");
    fakeHttp.answers[Host].piece = 1;
    EXPECT_EQ(Download(), NoFailure);
    EXPECT_EQ(ReadBytes(newFile_), "a little program");
    EXPECT_EQ(reported_.size(), 16U);
}

TEST_F(DownloadTest, TruncatesAFileOfAnEarlierAttempt) {
    test::WriteBytes(newFile_, PatternBytes(10 * Piece));
    EXPECT_EQ(Download(), NoFailure);
    EXPECT_EQ(ReadBytes(newFile_), PatternBytes(3 * Piece + 100));
}

// --- the address

TEST_F(DownloadTest, AnAddressThatIsNoneTouchesNeitherDiskNorNetwork) {
    test::WriteBytes(newFile_, "of an earlier attempt");
    const std::string host(256, 'h');
    const std::string path(2047, 'p');
    for (const std::string& url :
         {std::string(), std::string("kestrane.exe"), std::string("https"), std::string("http://updates.example/a"),
          std::string("ftp://updates.example/a"), "https://" + host + "/a", "https://updates.example/" + path}) {
        info_.url = url;
        EXPECT_EQ(Download(), NoAddress) << url;
        EXPECT_EQ(HttpCount("open"), 0) << url;
    }
    StartAnew();
    test::WriteBytes(newFile_, "of an earlier attempt");
    fakeHttp.refusedAlways = {"crack"};
    EXPECT_EQ(Download(), NoAddress);
    EXPECT_EQ(fileOperations.done, 0);
    EXPECT_EQ(ReadBytes(newFile_), "of an earlier attempt");
}

TEST_F(DownloadTest, TheLongestAddressThatFitsIsTaken) {
    const std::string path(2046, 'p');
    info_.url = "https://updates.example/" + path;
    EXPECT_EQ(Download(), NoFailure);
    EXPECT_THAT(fakeHttp.calls, Contains(HasSubstr("GET /" + path + " ")));
}

// --- the answer

TEST_F(DownloadTest, WithoutAnAnswerNoFileIsMadeAndAnEarlierOneGoes) {
    for (const char* function : {"open", "timeouts", "option", "connect", "request", "send", "receive", "status"}) {
        StartAnew();
        test::WriteBytes(newFile_, "of an earlier attempt");
        fakeHttp.refusedAlways = {function};
        EXPECT_EQ(Download(), NoAnswer) << function;
        EXPECT_FALSE(NewFileStands()) << function;
        EXPECT_EQ(OpenHttpHandles(), 0U) << function;
        EXPECT_THAT(Calls(), Not(Contains(StartsWith("CreateFileW")))) << function;
    }
}

TEST_F(DownloadTest, AnAnswerThatIsNoFileMakesNone) {
    for (const DWORD status : {0U, 100U, 199U, 201U, 204U, 206U, 301U, 302U, 304U, 401U, 404U, 500U, 503U}) {
        StartAnew();
        fakeHttp.answers[Host].status = status;
        EXPECT_EQ(Download(), NoAnswer) << status;
        EXPECT_THAT(Calls(), Not(Contains(StartsWith("CreateFileW")))) << status;
        EXPECT_EQ(HttpCount("available"), 0) << status;
    }
}

// --- the disk

TEST_F(DownloadTest, AFileThatCannotBeMadeOrWrittenTellsTheSystemsError) {
    for (const char* operation : {"CreateFileW", "WriteFile", "WriteFile kestrane.exe.new 100", "FlushFileBuffers"}) {
        for (const DWORD code : {3U, 5U, 19U, 32U, 112U, 1117U}) {
            StartAnew();
            fileOperations.refuseOnce = {{operation, code}};
            EXPECT_EQ(Download(), NotSaved(code)) << operation;
            EXPECT_THAT(fileOperations.refuseOnce, IsEmpty()) << operation;
            EXPECT_FALSE(NewFileStands()) << operation << code;
            EXPECT_EQ(OpenHttpHandles(), 0U) << operation;
        }
    }
}

TEST_F(DownloadTest, AShortWriteIsAFailureAndCountsAsAFullDisk) {
    fileOperations.shortWrites = true;
    fakeHttp.onCall = [](const std::string&) { SetLastError(ERROR_FILE_NOT_FOUND); };
    EXPECT_EQ(Download(), NotSaved(ERROR_DISK_FULL));
    EXPECT_FALSE(NewFileStands());
    EXPECT_EQ(HttpCount("read"), 1);
}

TEST_F(DownloadTest, AFileThatAnotherHoldsStaysAsItIs) {
    test::WriteBytes(newFile_, "held");
    {
        const UniqueFile held(
            CreateFileW(newFile_.c_str(), GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING, 0, nullptr));
        ASSERT_TRUE(held);
        EXPECT_EQ(Download(), NotSaved(ERROR_SHARING_VIOLATION));
        EXPECT_EQ(ReadBytes(newFile_), "held");
    }
    EXPECT_EQ(Download(), NoFailure);
}

TEST_F(DownloadTest, AFolderOfThatNameStays) {
    ASSERT_TRUE(CreateDirectoryW(newFile_.c_str(), nullptr));
    EXPECT_EQ(Download(), NotSaved(ERROR_ACCESS_DENIED));
    EXPECT_TRUE(std::filesystem::is_directory(newFile_));
}

TEST_F(DownloadTest, APathWithoutRoomForTheEndingTellsTheSystemsError) {
    const std::wstring below = folder_.Path().wstring() + L"\\";
    for (const std::size_t length : {255U, 256U, 259U}) {
        StartAnew();
        fileOperations.longestPath = test::OrdinaryLongestPath;
        const std::wstring executable = below + std::wstring(length - below.size(), L'x');
        DownloadFailure failure;
        const bool fits = length + 4 <= test::OrdinaryLongestPath;
        EXPECT_EQ(DownloadUpdate(info_, executable, cancel_, {}, failure), fits) << length;
        EXPECT_EQ(failure, fits ? NoFailure : NotSaved(ERROR_PATH_NOT_FOUND)) << length;
    }
}

// --- the connection

TEST_F(DownloadTest, AConnectionThatIsLostLeavesNoFile) {
    for (const char* function : {"available", "read"}) {
        for (const int call : {1, 2, 4}) {
            StartAnew();
            fakeHttp.refused[function] = {call};
            EXPECT_EQ(Download(), ConnectionLost) << function << call;
            EXPECT_FALSE(NewFileStands()) << function << call;
            EXPECT_EQ(OpenHttpHandles(), 0U) << function << call;
        }
    }
    for (const std::size_t bytes : {std::size_t{0}, std::size_t{1}, Piece, 3 * Piece + 99, 3 * Piece + 100}) {
        StartAnew();
        fakeHttp.answers[Host].breaksAt = bytes;
        EXPECT_EQ(Download(), ConnectionLost) << bytes;
        EXPECT_FALSE(NewFileStands()) << bytes;
    }
}

// --- the content

TEST_F(DownloadTest, ABodyThatIsNotThePublishedOneLeavesNoFile) {
    const std::string published = PatternBytes(3 * Piece + 100);
    std::vector<std::string> wrong = {
        "",
        "a",
        published.substr(0, Piece),
        published.substr(0, published.size() - 1),
        published + "a",
        published + published,
    };
    for (const std::size_t changed : {std::size_t{0}, Piece, published.size() - 1}) {
        wrong.push_back(published);
        wrong.back()[changed] ^= 1;
    }
    for (const std::string& body : wrong) {
        StartAnew();
        Serve(body);
        EXPECT_EQ(Download(), WrongContent) << body.size();
        EXPECT_FALSE(NewFileStands()) << body.size();
    }
}

TEST_F(DownloadTest, ALargerBodyIsReadUpToThePieceThatIsTooMuch) {
    Publish(PatternBytes(100));
    Serve(PatternBytes(100) + "a");
    fakeHttp.answers[Host].piece = 100;
    EXPECT_EQ(Download(), WrongContent);
    EXPECT_EQ(HttpCount("read"), 2);
    EXPECT_EQ(reported_.size(), 1U);  // never more than all of it

    StartAnew();
    Serve(PatternBytes(100 * Piece));
    EXPECT_EQ(Download(), WrongContent);
    EXPECT_EQ(HttpCount("read"), 4);
    EXPECT_FALSE(NewFileStands());
}

TEST_F(DownloadTest, AnotherSizeOrHashThanPublishedLeavesNoFile) {
    const std::uint64_t size = info_.size;
    for (const std::uint64_t published :
         {std::uint64_t{0}, std::uint64_t{1}, size - 1, size + 1, std::uint64_t{1} << 63, ~std::uint64_t{0}}) {
        StartAnew();
        info_.size = published;
        EXPECT_EQ(Download(), WrongContent) << published;
        EXPECT_FALSE(NewFileStands()) << published;
    }
    const std::string hash = info_.sha256;
    for (const std::string& published : {std::string(), hash.substr(1), hash + "0", std::string(64, '0')}) {
        StartAnew();
        info_.sha256 = published;
        EXPECT_EQ(Download(), WrongContent) << published;
        EXPECT_FALSE(NewFileStands()) << published;
    }
}

TEST_F(DownloadTest, AFileThatCannotBeVerifiedGoes) {
    for (const int call : {1, 2, 3, 4}) {  // open, create, hash, finish
        StartAnew();
        RefuseCall(call);
        EXPECT_EQ(Download(), WrongContent) << call;
        EXPECT_FALSE(NewFileStands()) << call;
    }
    for (const char* operation : {"CreateFileW kestrane.exe.new access 8", "ReadFile"}) {
        StartAnew();
        fileOperations.refuseOnce = {{operation, ERROR_SHARING_VIOLATION}};
        EXPECT_EQ(Download(), WrongContent) << operation;
        EXPECT_FALSE(NewFileStands()) << operation;
    }
}

// --- cancelling

TEST_F(DownloadTest, ACancelBeforeTheFirstByteReadsNone) {
    cancel_ = true;
    EXPECT_EQ(Download(), Cancelled);
    EXPECT_EQ(HttpCount("available"), 0);
    EXPECT_FALSE(NewFileStands());
}

TEST_F(DownloadTest, ACancelInTheMiddleOrBehindTheLastByteReadsNoMore) {
    for (const std::uint64_t bytes : {std::uint64_t{Piece}, std::uint64_t{2 * Piece}, info_.size}) {
        StartAnew();
        cancelAt_ = bytes;
        EXPECT_EQ(Download(), Cancelled) << bytes;
        EXPECT_EQ(reported_.back().first, bytes);
        EXPECT_FALSE(NewFileStands()) << bytes;
    }
    EXPECT_EQ(HttpCount("available"), 4);  // not asked for the end any more
}

TEST_F(DownloadTest, ACancelWhileItWaitsTakesEffectWithTheNextBytes) {
    test::HttpGate gate("available");
    Thread thread;
    ASSERT_TRUE(thread.Start(&DownloadOnThread, this));
    EXPECT_TRUE(gate.AwaitCall());
    cancel_ = true;
    gate.Open();
    thread.Join();
    EXPECT_EQ(saidOnThread_, Cancelled);
    EXPECT_EQ(HttpCount("available"), 1);
    EXPECT_FALSE(NewFileStands());
}

// --- whatever fails

TEST_F(DownloadTest, WhicheverFileOperationFailsNoFileIsLeft) {
    EXPECT_EQ(Download(), NoFailure);
    const std::vector<std::string> calls = Calls();
    int operation = 0;
    for (const std::string& call : calls) {
        if (call.starts_with("http")) continue;
        ++operation;
        if (call.starts_with("CloseHandle")) continue;  // it cannot fail with a handle that is open
        for (const DWORD code : {5U, 32U, 112U}) {
            StartAnew();
            fileOperations.refuseAt = operation;
            fileOperations.refuseWith = code;
            EXPECT_NE(Download(), NoFailure) << call;
            EXPECT_FALSE(NewFileStands()) << call;
        }
    }
    EXPECT_EQ(operation, 11);
}

TEST_F(DownloadTest, AFileThatCannotBeDeletedIsLeftWithoutAWord) {
    Serve("something else");
    fileOperations.refuseOnce = {{"DeleteFileW", ERROR_SHARING_VIOLATION}};
    EXPECT_EQ(Download(), WrongContent);
    EXPECT_TRUE(NewFileStands());
    StartAnew();
    EXPECT_EQ(Download(), NoFailure);
}

}  // namespace
}  // namespace kestrane
