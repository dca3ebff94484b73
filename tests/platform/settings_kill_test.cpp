// A save that is killed between any two of its writes. Copies of this program save the settings as the program does,
// each kind of save in a folder of its own, and are killed before the first write, after each, or in the middle of a
// copy. Afterwards each setting reads as it was or as it was to be, and all that the user has written stands.
#include <windows.h>
// <windows.h> comes first.
#include <gmock/gmock.h>

#include <algorithm>
#include <cstddef>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "base/module_path_win32.h"
#include "settings/ini_file_win32.h"
#include "settings/migration_win32.h"
#include "support/file_bytes_win32.h"
#include "support/killed_copy_win32.h"
#include "support/old_or_new.h"
#include "support/random_settings.h"
#include "support/roaming_folder_win32.h"
#include "support/settings_file_operations_win32.h"
#include "support/test_folder_win32.h"

namespace kestrane {
namespace {

using test::fileOperations;
using test::KilledExitCode;
using test::KillMoment;
using test::ReadBytes;
using testing::Contains;
using testing::IsEmpty;
using testing::StartsWith;
namespace fs = std::filesystem;

constexpr const wchar_t* SaveSwitch = L"--save";
constexpr int SavedExitCode = 30;

enum class Save { Cpu, Disk, Memory, Network, Graphs, CheckUpdates, Language, InstallId, Activity, Dialog, Migration };

/// Each differs from the other in every kind of setting that depends on another.
AppSettings Earlier() {
    AppSettings settings = RandomSettings(11, L"abc").Next();
    settings.thresholds = {10, 20, 30};
    settings.refresh_ms.fill(1000);
    settings.language = 1;
    settings.install_id = "0f8fad5b-d9cb-469f-a165-70867728950e";
    settings.check_updates = settings.activity = false;
    return settings;
}
AppSettings Later() {
    AppSettings settings = RandomSettings(12, L"xyz").Next();
    settings.thresholds = {50, 60, 70};
    settings.refresh_ms.fill(5000);
    settings.language = 2;
    settings.install_id = "11111111-d9cb-469f-a165-70867728950e";
    settings.check_updates = settings.activity = true;
    return settings;
}
constexpr DialogState EarlierDialog{true, 10, 20, 1};
constexpr DialogState LaterDialog{true, -30, 40, 3};

bool Perform(Save save, const AppSettings& settings, const DialogState& dialog) {
    switch (save) {
        case Save::Cpu:
        case Save::Disk:
        case Save::Memory:
        case Save::Network:
            return SaveSettingsTab(settings, static_cast<SettingsTab>(save));
        case Save::Graphs:
            return SaveGraphWindows(settings);
        case Save::CheckUpdates:
            return SaveCheckUpdates(settings);
        case Save::Language:
            return SaveLanguage(settings);
        case Save::InstallId:
            return SaveInstallId(settings);
        case Save::Activity:
            return SaveDiskActivity(settings);
        case Save::Dialog:
            return SaveDialogState(dialog);
        case Save::Migration:
            return CopyFormerSettings(roamingFolder + L"\\orvalite\\orvalite.ini", IniPath());
    }
    return false;
}

/// Of a copy that saves; none if this is not one.
std::optional<int> ActAsCopy(const std::vector<std::wstring>& arguments) {
    if (arguments.size() != 7 || arguments[1] != SaveSwitch) return std::nullopt;
    roamingFolder = arguments[5];
    fileOperations.killAt = std::stoi(arguments[3]);
    fileOperations.killMoment = static_cast<KillMoment>(std::stoi(arguments[4]));
    fileOperations.killExitCode = KilledExitCode;
    fileOperations.folder = roamingFolder + L"\\";
    const bool saved = Perform(static_cast<Save>(std::stoi(arguments[2])), Later(), LaterDialog);
    fileOperations.folder.clear();
    test::WriteOperations(arguments[6]);
    return saved ? SavedExitCode : 0;
}

std::vector<std::string> LinesOf(const std::string& bytes) {
    std::vector<std::string> lines(1);
    for (const char c : bytes) {
        if (c == '\n') {
            lines.emplace_back();
        } else {
            lines.back() += c;
        }
    }
    return lines;
}

/// Of the new lines those with a value that no old line has.
std::ptrdiff_t CountChangedKeys(const std::vector<std::string>& oldLines, const std::vector<std::string>& newLines) {
    return std::ranges::count_if(newLines, [&oldLines](const std::string& line) {
        return line.find('=') != std::string::npos && std::ranges::find(oldLines, line) == oldLines.end();
    });
}

bool IsWrite(const std::string& operation) {
    return operation.starts_with("WritePrivateProfileStringW ");
}

constexpr char Notes[] = "; de la persona\r\n[mine]\r\na=1\r\n; otra nota\r\n[cpu]\r\nmine=2\r\n";

class SettingsKillTest : public testing::Test {
  protected:
    ~SettingsKillTest() override {
        if (folder_) MakeWritable();
    }

    std::wstring Roaming() const { return folder_->Path().wstring(); }
    std::wstring Ini() const { return (folder_->Path() / L"kestrane" / L"kestrane.ini").wstring(); }
    std::wstring Former() const { return (folder_->Path() / L"orvalite" / L"orvalite.ini").wstring(); }
    void MakeWritable() const {
        for (const std::wstring& path : {Former(), Ini(), Ini() + L".new"})
            SetFileAttributesW(path.c_str(), FILE_ATTRIBUTE_NORMAL);
    }

    /// A new folder, with a whole settings file and what the user has written there, or without any file.
    void StartAnew(bool withFile) {
        if (folder_) MakeWritable();
        folder_.emplace();
        roamingFolder = Roaming();
        if (!withFile) return;
        fs::create_directories(fs::path(Ini()).parent_path());
        test::WriteBytes(Ini(), whole_);
    }

    /// The exit code of a copy that saves and is killed.
    int Kill(Save save, int at, KillMoment moment) const {
        DeleteFileW(log_.c_str());
        const std::wstring numbers = std::to_wstring(static_cast<int>(save)) + L" " + std::to_wstring(at) + L" " +
                                     std::to_wstring(static_cast<int>(moment));
        return test::RunToItsEnd(
            ModulePath(), std::wstring(SaveSwitch) + L" " + numbers + L" \"" + Roaming() + L"\" \"" + log_ + L"\"");
    }

    /// The bytes of a whole file of the earlier settings.
    void MakeWholeFile() {
        StartAnew(false);
        fs::create_directories(fs::path(Ini()).parent_path());
        test::WriteBytes(Ini(), Notes);
        for (int save = 0; save < static_cast<int>(Save::Migration); ++save)
            ASSERT_TRUE(Perform(static_cast<Save>(save), Earlier(), EarlierDialog));
        whole_ = ReadBytes(Ini()).value();
        ASSERT_THAT(whole_, StartsWith("; de la persona\r\n[mine]\r\na=1\r\n; otra nota\r\n[cpu]\r\nmine=2\r\n"));
    }

    void KillBetweenWrites(Save save, bool withFile) {
        const std::string name = std::to_string(static_cast<int>(save)) + (withFile ? "" : " without a file");
        StartAnew(withFile);
        const AppSettings before = LoadSettings();
        const DialogState dialogBefore = LoadDialogState();
        ASSERT_EQ(Kill(save, 0, KillMoment::None), SavedExitCode) << name;
        const AppSettings after = LoadSettings();
        const DialogState dialogAfter = LoadDialogState();
        ASSERT_TRUE(after != before || dialogAfter != dialogBefore) << name;
        const std::vector<std::string> oldLines = LinesOf(withFile ? whole_ : "");
        const std::vector<std::string> newLines = LinesOf(ReadBytes(Ini()).value());
        const std::vector<std::string> operations = test::ReadOperations(log_);
        const auto writes = static_cast<int>(operations.size());
        const auto changed = CountChangedKeys(oldLines, newLines);
        ASSERT_GT(changed, 0) << name;
        ASSERT_GE(std::ranges::count_if(operations, IsWrite), changed) << name << ": not every write was seen";
        for (int at = 0; at < writes; ++at) {
            const std::string when = name + " after write " + std::to_string(at) + " of " + std::to_string(writes);
            StartAnew(withFile);
            ASSERT_EQ(Kill(save, at == 0 ? 1 : at, at == 0 ? KillMoment::Before : KillMoment::After), KilledExitCode)
                << when;
            EXPECT_THAT(NeitherOldNorNew(LoadSettings(), before, after), IsEmpty()) << when;
            const DialogState dialog = LoadDialogState();
            EXPECT_TRUE(dialog.x == dialogBefore.x || dialog.x == dialogAfter.x) << when;
            EXPECT_TRUE(dialog.y == dialogBefore.y || dialog.y == dialogAfter.y) << when;
            EXPECT_TRUE(dialog.tab == dialogBefore.tab || dialog.tab == dialogAfter.tab) << when;
            if (withFile) ExpectLinesOfEither(oldLines, newLines, when);
        }
    }

    /// No line is lost, added or moved, and each is as before or as after.
    void ExpectLinesOfEither(const std::vector<std::string>& oldLines, const std::vector<std::string>& newLines,
                             const std::string& when) const {
        const std::vector<std::string> lines = LinesOf(ReadBytes(Ini()).value());
        ASSERT_EQ(lines.size(), oldLines.size()) << when;
        ASSERT_EQ(lines.size(), newLines.size()) << when;
        for (std::size_t i = 0; i < lines.size(); ++i)
            EXPECT_TRUE(lines[i] == oldLines[i] || lines[i] == newLines[i]) << when << ": " << lines[i];
    }

    const TestFolder elsewhere_;
    const std::wstring log_ = (elsewhere_.Path() / L"operations").wstring();
    std::optional<TestFolder> folder_;
    std::string whole_;
};

TEST_F(SettingsKillTest, ASaveThatIsKilledLeavesEachSettingOldOrNewAndTheUsersLinesAlone) {
    MakeWholeFile();
    for (int save = 0; save < static_cast<int>(Save::Migration); ++save)
        KillBetweenWrites(static_cast<Save>(save), true);
}

TEST_F(SettingsKillTest, SoDoesTheFirstSaveOfAll) {
    for (const Save save : {Save::Cpu, Save::Dialog})
        KillBetweenWrites(save, false);
}

TEST_F(SettingsKillTest, AMigrationThatIsKilledIsDoneWholeByTheNextStart) {
    MakeWholeFile();
    const auto prepare = [this] {
        StartAnew(false);
        fs::create_directories(fs::path(Former()).parent_path());
        test::WriteBytes(Former(), whole_);
        SetFileAttributesW(Former().c_str(), FILE_ATTRIBUTE_READONLY | FILE_ATTRIBUTE_HIDDEN);
    };
    prepare();
    ASSERT_EQ(Kill(Save::Migration, 0, KillMoment::None), SavedExitCode);
    const std::vector<std::string> operations = test::ReadOperations(log_);
    ASSERT_THAT(operations, Contains(StartsWith("CopyFileW ")));
    ASSERT_THAT(operations, Contains(StartsWith("MoveFileExW ")));
    for (int at = 1; at <= static_cast<int>(operations.size()); ++at) {
        const std::string& operation = operations[static_cast<std::size_t>(at) - 1];
        for (const KillMoment moment : {KillMoment::Before, KillMoment::During, KillMoment::After}) {
            if (moment == KillMoment::During && !operation.starts_with("CopyFileW")) continue;
            const std::string when = std::to_string(static_cast<int>(moment)) + " " + operation;
            prepare();
            ASSERT_EQ(Kill(Save::Migration, at, moment), KilledExitCode) << when;
            EXPECT_TRUE(!fs::exists(Ini()) || ReadBytes(Ini()) == whole_) << when;
            CopyFormerSettings(Former(), Ini());
            EXPECT_EQ(ReadBytes(Ini()), whole_) << when;
            EXPECT_TRUE(SaveLanguage(Later())) << when;
            EXPECT_FALSE(fs::exists(Ini() + L".new")) << when;
            EXPECT_EQ(ReadBytes(Former()), whole_) << when;
        }
    }
}

}  // namespace
}  // namespace kestrane

int main(int argc, char** argv) {
    if (const auto exitCode = kestrane::ActAsCopy(kestrane::test::Arguments())) return *exitCode;
    testing::InitGoogleMock(&argc, argv);
    return RUN_ALL_TESTS();
}
