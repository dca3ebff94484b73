// The settings file through the real profile API, in a folder of the test's own that stands in for the roaming
// application data. Debug lines are recorded; single writes can be refused.
#include "settings/ini_file_win32.h"

#include <windows.h>
// <windows.h> comes first.
#include <gmock/gmock.h>
#include <objbase.h>
#include <shlobj.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <optional>
#include <random>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "base/handles_win32.h"
#include "support/random_settings.h"
#include "support/real_call_win32.h"
#include "support/test_folder_win32.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

struct World {
    std::wstring roaming;  // empty: the system has no such folder
    bool tempFolderKnown = true;
    std::vector<std::wstring> debugLines;
    std::vector<std::wstring> writes;   // "section.key", in order
    std::vector<std::wstring> refused;  // fail without reaching the file
    int known = 0;                      // calls to SHGetKnownFolderPath
    int refusals = 0;                   // of these, from now on
    bool textWithFailure = false;       // it returns a text although it fails
    std::vector<void*> freed;           // by CoTaskMemFree, null left out
    std::vector<void*> texts;           // of SHGetKnownFolderPath
};
World world;

void WINAPI FakeOutputDebugStringW(LPCWSTR text) {
    world.debugLines.emplace_back(text);
}

BOOL WINAPI FakeWritePrivateProfileStringW(LPCWSTR section, LPCWSTR key, LPCWSTR value, LPCWSTR path) {
    static const auto real = REAL(L"kernel32", WritePrivateProfileStringW);
    const std::wstring name = std::wstring(section) + L"." + key;
    world.writes.push_back(name);
    if (std::ranges::count(world.refused, name) > 0) return FALSE;
    return real(section, key, value, path);
}

DWORD WINAPI FakeGetTempPathW(DWORD length, LPWSTR buffer) {
    static const auto real = REAL(L"kernel32", GetTempPathW);
    if (world.tempFolderKnown) return real(length, buffer);
    SetLastError(ERROR_PATH_NOT_FOUND);
    return 0;
}

void WINAPI FakeCoTaskMemFree(void* memory) {
    if (memory == nullptr) return;
    world.freed.push_back(memory);
    std::free(memory);
}

/// The result of SHGetKnownFolderPath; only CoTaskMemFree may free it.
PWSTR CopyForCaller(const std::wstring& text) {
    const std::size_t bytes = (text.size() + 1) * sizeof(wchar_t);
    world.texts.push_back(std::malloc(bytes));
    std::memcpy(world.texts.back(), text.c_str(), bytes);
    return static_cast<PWSTR>(world.texts.back());
}

}  // namespace

extern "C" {
decltype(&CoTaskMemFree) __imp_CoTaskMemFree = &FakeCoTaskMemFree;
decltype(&OutputDebugStringW) __imp_OutputDebugStringW = &FakeOutputDebugStringW;
decltype(&WritePrivateProfileStringW) __imp_WritePrivateProfileStringW = &FakeWritePrivateProfileStringW;
decltype(&GetTempPathW) __imp_GetTempPathW = &FakeGetTempPathW;

HRESULT WINAPI SHGetKnownFolderPath(REFKNOWNFOLDERID folder, DWORD flags, HANDLE token, PWSTR* path) {
    EXPECT_TRUE(IsEqualGUID(folder, FOLDERID_RoamingAppData));
    EXPECT_EQ(flags, 0U);
    EXPECT_EQ(token, nullptr);
    ++world.known;
    *path = nullptr;
    if (world.roaming.empty() || world.refusals > 0) {
        --world.refusals;
        if (world.textWithFailure) *path = CopyForCaller(L"C:\\Nada");
        return E_FAIL;
    }
    *path = CopyForCaller(world.roaming);
    return S_OK;
}
}

namespace kestrane {
namespace {

constexpr std::array<SettingsTab, 4> Tabs{SettingsTab::Cpu, SettingsTab::Disk, SettingsTab::Memory,
                                          SettingsTab::Network};
constexpr const wchar_t* NoFolder = L"kestrane: no se pudo crear la carpeta de ajustes\n";
constexpr const wchar_t* TabFailed = L"kestrane: error al escribir una seccion del INI de ajustes\n";
constexpr const wchar_t* GraphsFailed = L"kestrane: error al guardar el estado de las graficas\n";
constexpr const wchar_t* DialogFailed = L"kestrane: error al guardar la posicion del dialogo de ajustes\n";

std::string Utf16WithMark(const std::wstring& text) {
    const std::wstring marked = L"\xFEFF" + text;
    std::string bytes(marked.size() * sizeof(wchar_t), '\0');
    std::memcpy(bytes.data(), marked.data(), bytes.size());
    return bytes;
}

class IniFileTest : public testing::Test {
  protected:
    IniFileTest() { StartAnew(); }

    void StartAnew() {
        world = {};
        folder_.emplace();
        world.roaming = folder_->Path().wstring();
    }

    std::filesystem::path Folder() const { return folder_->Path() / L"kestrane"; }
    std::wstring Ini() const { return (Folder() / L"kestrane.ini").wstring(); }

    void WriteBytes(const std::string& bytes) const {
        std::filesystem::create_directories(Folder());
        const UniqueFile file(CreateFileW(Ini().c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, 0, nullptr));
        DWORD written = 0;
        ASSERT_TRUE(WriteFile(file.Get(), bytes.data(), static_cast<DWORD>(bytes.size()), &written, nullptr));
        ASSERT_EQ(written, bytes.size());
    }

    std::string ReadBytes() const {
        const UniqueFile file(
            CreateFileW(Ini().c_str(), GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING, 0, nullptr));
        std::string bytes(GetFileSize(file.Get(), nullptr), '\0');
        DWORD read = 0;
        EXPECT_TRUE(ReadFile(file.Get(), bytes.data(), static_cast<DWORD>(bytes.size()), &read, nullptr));
        return bytes;
    }

    /// The lines of an 8-bit file. Empty lines are up to the system.
    std::vector<std::string> ReadLines() const {
        std::vector<std::string> lines(1);
        for (const char c : ReadBytes()) {
            if (c == '\n') {
                if (!lines.back().empty()) lines.emplace_back();
            } else if (c != '\r') {
                lines.back() += c;
            }
        }
        if (lines.back().empty()) lines.pop_back();
        return lines;
    }

    /// Loads, and checks that the file does not change.
    AppSettings LoadUnchanged() const {
        const std::string before = ReadBytes();
        const AppSettings loaded = LoadSettings();
        LoadDialogState();
        EXPECT_EQ(ReadBytes(), before);
        EXPECT_THAT(world.writes, IsEmpty());
        return loaded;
    }

  private:
    std::optional<TestFolder> folder_;
};

AppSettings WithCpuForeground(ColorValue color) {
    AppSettings settings = MakeDefaultSettings();
    settings.colors[CpuFg] = settings.colors[CpuGraphFg] = settings.colors[CpuGraphPerf] = color;
    return settings;
}

// --- where the file is

TEST_F(IniFileTest, TheFileIsInTheRoamingApplicationData) {
    EXPECT_EQ(IniPath(), world.roaming + L"\\kestrane\\kestrane.ini");
    EXPECT_EQ(world.known, 1);
    world.roaming = L"C:\\Otro";  // the earlier path is not cached
    EXPECT_EQ(IniPath(), L"C:\\Otro\\kestrane\\kestrane.ini");
}

TEST_F(IniFileTest, ASystemThatOnceDoesNotTellTheFolderIsAskedAgain) {
    world.refusals = 1;
    EXPECT_EQ(IniPath(), world.roaming + L"\\kestrane\\kestrane.ini");
    world.refusals = 2;
    EXPECT_EQ(IniPath(), (std::filesystem::temp_directory_path() / L"kestrane" / L"kestrane.ini").wstring());
}

TEST_F(IniFileTest, WithoutThatFolderItIsInTheTemporaryOne) {
    world.roaming.clear();
    EXPECT_EQ(IniPath(), (std::filesystem::temp_directory_path() / L"kestrane" / L"kestrane.ini").wstring());
}

TEST_F(IniFileTest, TheSystemsTextIsGivenBackWhateverTheAnswer) {
    IniPath();
    EXPECT_EQ(world.freed, world.texts);
    EXPECT_EQ(world.texts.size(), 1U);
    world.roaming.clear();
    world.textWithFailure = true;
    EXPECT_EQ(IniPath(), (std::filesystem::temp_directory_path() / L"kestrane" / L"kestrane.ini").wstring());
    EXPECT_EQ(world.freed, world.texts);
    EXPECT_EQ(world.texts.size(), 3U);
}

TEST_F(IniFileTest, WithoutAnyFolderTheErrorPropagates) {
    world.roaming.clear();
    world.tempFolderKnown = false;
    EXPECT_THROW(IniPath(), std::runtime_error);
    world.tempFolderKnown = true;
}

TEST_F(IniFileTest, TheFolderIsMadeWithAllItsParents) {
    world.roaming += L"\\a\\b";
    EXPECT_TRUE(EnsureIniFolder(IniPath()));
    EXPECT_TRUE(std::filesystem::is_directory(world.roaming + L"\\kestrane"));
    EXPECT_TRUE(EnsureIniFolder(IniPath()));  // it is there already
    EXPECT_THAT(world.debugLines, IsEmpty());
}

// --- loading

TEST_F(IniFileTest, WithoutAFileTheDefaultsLoadAndNothingIsMade) {
    EXPECT_EQ(LoadSettings(), MakeDefaultSettings());
    EXPECT_EQ(LoadDialogState(), DialogState());
    EXPECT_FALSE(std::filesystem::exists(Folder()));
    EXPECT_THAT(world.debugLines, IsEmpty());
}

TEST_F(IniFileTest, FilesOfEveryTextFormLoad) {
    const std::string crlf = "; Ajustes\r\n[colors]\r\ncpu_fg=FF0000\r\n";
    const struct {
        const char* name;
        std::string bytes;
    } cases[] = {
        {"CRLF", crlf},
        {"LF", "; Ajustes\n[colors]\ncpu_fg=FF0000\n"},
        {"no line end at the end", "[colors]\r\ncpu_fg=FF0000"},
        {"blanks round everything", "\r\n  [colors]  \r\n\t cpu_fg \t=  FF0000  \r\n"},
        {"another case", "[COLORS]\r\nCPU_FG=FF0000\r\n"},
        {"the first of two counts", "[colors]\r\ncpu_fg=FF0000\r\ncpu_fg=00FF00\r\n"},
        {"UTF-16 with its mark", Utf16WithMark(L"[colors]\r\ncpu_fg=FF0000\r\n")},
        // A UTF-8 byte order mark spoils only the first line.
        {"UTF-8 with its mark", "\xEF\xBB\xBF" + crlf},
        {"quotes round the value", "[colors]\r\ncpu_fg=\"FF0000\"\r\n"},
    };
    for (const auto& [name, bytes] : cases) {
        WriteBytes(bytes);
        EXPECT_EQ(LoadUnchanged(), WithCpuForeground(0xFF0000)) << name;
        StartAnew();
    }
}

TEST_F(IniFileTest, OneHundredThousandKeysLoad) {
    std::string text = "[general]\r\nlanguage=2\r\n[filler]\r\n";
    for (int i = 0; i < 100000; ++i)
        text += "key" + std::to_string(i) + "=value\r\n";
    text += "[colors]\r\ncpu_fg=FF0000\r\n";
    WriteBytes(text);
    AppSettings expected = WithCpuForeground(0xFF0000);
    expected.language = 2;
    EXPECT_EQ(LoadUnchanged(), expected);
}

TEST_F(IniFileTest, ALongValueIsCutAt259Characters) {
    AppSettings settings = MakeDefaultSettings();
    for (std::uint64_t i = 1; i <= 16; ++i)
        settings.interfaces.push_back(0x1122334455667700 + i);
    settings.interface_aliases.resize(16);
    EXPECT_TRUE(SaveSettingsTab(settings, SettingsTab::Network));
    const std::vector<std::uint64_t> loaded = LoadSettings().interfaces;
    ASSERT_EQ(loaded.size(), 16U);
    EXPECT_EQ(loaded[14], settings.interfaces[14]);
    EXPECT_EQ(loaded[15], 0x1122U);
}

TEST_F(IniFileTest, AnAliasOf259CharactersIsWholeAndALongerOneIsCut) {
    for (const std::size_t length : {258U, 259U, 260U, 261U, 5000U}) {
        AppSettings settings = MakeDefaultSettings();
        settings.interfaces = {1};
        settings.interface_aliases = {std::wstring(length - 1, L'a') + L"z"};
        EXPECT_TRUE(SaveSettingsTab(settings, SettingsTab::Network));
        const std::wstring alias = LoadSettings().interface_aliases.at(0);
        EXPECT_EQ(alias, settings.interface_aliases[0].substr(0, 259)) << length;
    }
}

TEST_F(IniFileTest, RandomBytesLoadAsDefaults) {
    std::mt19937 random(2024);
    for (int round = 0; round < 20; ++round) {
        std::string bytes;
        for (auto length = random() % 20000; length > 0; --length)
            bytes += static_cast<char>(random() & 0xFF);
        WriteBytes(bytes);
        EXPECT_EQ(LoadUnchanged(), MakeDefaultSettings()) << round;
        StartAnew();
    }
}

TEST_F(IniFileTest, OddFilesLoadAsDefaults) {
    const std::string odd[] = {
        "",
        std::string(1, '\0'),
        std::string(100000, '\0'),
        std::string(100000, '['),
        "[colors\r\ncpu_fg=FF0000\r\n",
        "cpu_fg=FF0000\r\n",
        "[colors]\r\ncpu_fg\r\n",
        "[colors]\r\n=FF0000\r\n",
        "[colors]\r\ncpu_fg=" + std::string(1000000, 'F') + "\r\n",
        "\xFF\xFE",
        "\xFE\xFF",
        "\xEF\xBB\xBF",
    };
    for (const std::string& bytes : odd) {
        WriteBytes(bytes);
        EXPECT_EQ(LoadUnchanged(), MakeDefaultSettings()) << bytes.substr(0, 20);
        StartAnew();
    }
}

TEST_F(IniFileTest, ATornFileCostsOnlyWhatIsTorn) {
    ASSERT_TRUE(SaveSettingsTab(WithCpuForeground(0xFF0000), SettingsTab::Cpu));
    const std::string whole = ReadBytes();
    for (std::size_t length = 0; length < whole.size(); length += 7) {
        StartAnew();
        WriteBytes(whole.substr(0, length));
        const AppSettings loaded = LoadUnchanged();
        EXPECT_TRUE(loaded.colors[CpuFg] == 0xFF0000 || loaded.colors[CpuFg] == 0x007BB7) << length;
        EXPECT_EQ(loaded.disk, MakeDefaultSettings().disk);
    }
}

// --- saving

TEST_F(IniFileTest, AFreshFileHoldsTheKeysInTheOrderOfWriting) {
    AppSettings settings = MakeDefaultSettings();
    settings.disks = {2, 0};
    EXPECT_TRUE(SaveLanguage(settings));
    EXPECT_TRUE(SaveSettingsTab(settings, SettingsTab::Disk));
    EXPECT_TRUE(SaveCheckUpdates(settings));
    EXPECT_TRUE(SaveDialogState({true, -3, 4, 2}));
    EXPECT_THAT(
        ReadLines(),
        ElementsAre("[general]", "language=0", "check_updates=1", "[colors]", "disk_bg=FFF5E1", "disk_read=CE8B00",
                    "disk_write=167B04", "disk_graph_bg=000000", "disk_border=NONE", "disk_graph_read=CE8B00",
                    "disk_graph_write=167B04", "[icons]", "show_disk=1", "[disk]", "refresh_ms=1500", "opacity=90",
                    "margin=3", "font_name=Segoe UI", "font_size=12", "font_bold=0", "style=lines", "smoothing=2",
                    "fill=25", "topmost=1", "activity=0", "disks=2,0", "[dialog]", "x=-3", "y=4", "tab=2"));
    EXPECT_THAT(world.debugLines, IsEmpty());
}

TEST_F(IniFileTest, ASaveTouchesNoOtherKey) {
    WriteBytes(
        "; de la persona\r\n[disk]\r\nmine=1\r\nactivity=0\r\ndisks=5\r\n[other]\r\na=b\r\n[colors]\r\ncpu_fg=zz\r\n");
    AppSettings settings = MakeDefaultSettings();
    settings.activity = true;
    EXPECT_TRUE(SaveDiskActivity(settings));
    EXPECT_THAT(ReadLines(), ElementsAre("; de la persona", "[disk]", "mine=1", "activity=1", "disks=5", "[other]",
                                         "a=b", "[colors]", "cpu_fg=zz"));
    EXPECT_THAT(world.writes, ElementsAre(L"disk.activity"));
}

TEST_F(IniFileTest, EachSmallSaveWritesItsOneKey) {
    AppSettings settings = MakeDefaultSettings();
    settings.install_id = "0f8fad5b-d9cb-469f-a165-70867728950e";
    EXPECT_TRUE(SaveCheckUpdates(settings));
    EXPECT_TRUE(SaveLanguage(settings));
    EXPECT_TRUE(SaveInstallId(settings));
    EXPECT_TRUE(SaveDiskActivity(settings));
    EXPECT_THAT(ReadLines(), ElementsAre("[general]", "check_updates=1", "language=0",
                                         "install_id=0f8fad5b-d9cb-469f-a165-70867728950e", "[disk]", "activity=0"));
}

TEST_F(IniFileTest, AFileInUtf16KeepsEveryAlphabet) {
    WriteBytes(Utf16WithMark(L"[network]\r\nx=5\r\n"));
    AppSettings settings = MakeDefaultSettings();
    settings.interfaces = {1, 2};
    settings.interface_aliases = {L"Conexión de área local", L"Локальная сеть"};
    EXPECT_TRUE(SaveSettingsTab(settings, SettingsTab::Network));
    EXPECT_EQ(LoadSettings().interface_aliases, settings.interface_aliases);
}

void SaveEverything(const AppSettings& settings) {
    for (const SettingsTab tab : Tabs)
        EXPECT_TRUE(SaveSettingsTab(settings, tab));
    EXPECT_TRUE(SaveGraphWindows(settings));
    EXPECT_TRUE(SaveCheckUpdates(settings));
    EXPECT_TRUE(SaveLanguage(settings));
    EXPECT_TRUE(SaveInstallId(settings));
}

TEST_F(IniFileTest, WhatIsSavedLoads) {
    SaveEverything(MakeDefaultSettings());
    EXPECT_EQ(LoadSettings(), MakeDefaultSettings());
    RandomSettings random(77, L"abcXYZ=;#[]09,*");
    for (int round = 0; round < 8; ++round) {
        const AppSettings settings = random.Next();
        SaveEverything(settings);
        ASSERT_EQ(LoadSettings(), settings) << round;
    }
    const DialogState state{true, -99999, 99999, 4};
    EXPECT_TRUE(SaveDialogState(state));
    EXPECT_EQ(LoadDialogState(), state);
}

// --- saves that fail

/// Every save at once, all expected to fail.
void ExpectAllSavesFail() {
    const AppSettings settings = WithCpuForeground(0xFF0000);
    for (const SettingsTab tab : Tabs)
        EXPECT_FALSE(SaveSettingsTab(settings, tab));
    EXPECT_FALSE(SaveCheckUpdates(settings));
    EXPECT_FALSE(SaveLanguage(settings));
    EXPECT_FALSE(SaveInstallId(settings));
    EXPECT_FALSE(SaveDiskActivity(settings));
    EXPECT_FALSE(SaveGraphWindows(settings));
    EXPECT_FALSE(SaveDialogState({true, 1, 2, 3}));
    EXPECT_EQ(settings, WithCpuForeground(0xFF0000));
}

TEST_F(IniFileTest, AFolderThatCannotBeMadeFailsEverySave) {
    const UniqueFile inTheWay(
        CreateFileW(Folder().c_str(), GENERIC_WRITE, FILE_SHARE_READ, nullptr, CREATE_NEW, 0, nullptr));
    ASSERT_TRUE(inTheWay);
    ExpectAllSavesFail();
    EXPECT_THAT(world.writes, IsEmpty());
    EXPECT_EQ(std::ranges::count(world.debugLines, NoFolder), 10);
    EXPECT_EQ(std::ranges::count(world.debugLines, TabFailed), 0);  // logged only if the folder exists
    EXPECT_EQ(std::ranges::count(world.debugLines, DialogFailed), 1);
    EXPECT_EQ(LoadSettings(), MakeDefaultSettings());
}

TEST_F(IniFileTest, AFileHeldByAnotherFailsEverySave) {
    const std::string text = "[colors]\r\ncpu_fg=112233\r\n";
    WriteBytes(text);
    {
        const UniqueFile held(CreateFileW(Ini().c_str(), GENERIC_READ, 0, nullptr, OPEN_EXISTING, 0, nullptr));
        ASSERT_TRUE(held);
        ExpectAllSavesFail();
        EXPECT_EQ(LoadSettings(), MakeDefaultSettings());
        EXPECT_THAT(world.debugLines,
                    ElementsAre(TabFailed, TabFailed, TabFailed, TabFailed, GraphsFailed, DialogFailed));
    }
    EXPECT_EQ(ReadBytes(), text);
}

// By another process's lock rather than the read-only attribute, which Wine ignores for root.
TEST_F(IniFileTest, AFileThatMayOnlyBeReadLoadsAndFailsEverySave) {
    const std::string text = "[colors]\r\ncpu_fg=112233\r\n";
    WriteBytes(text);
    const UniqueFile held(
        CreateFileW(Ini().c_str(), GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING, 0, nullptr));
    ASSERT_TRUE(held);
    EXPECT_EQ(LoadSettings(), WithCpuForeground(0x112233));
    ExpectAllSavesFail();
    EXPECT_THAT(world.debugLines, ElementsAre(TabFailed, TabFailed, TabFailed, TabFailed, GraphsFailed, DialogFailed));
    EXPECT_EQ(ReadBytes(), text);
}

TEST_F(IniFileTest, ATabAttemptsEveryKey) {
    const AppSettings settings = MakeDefaultSettings();
    ASSERT_TRUE(SaveSettingsTab(settings, SettingsTab::Memory));
    const std::vector<std::wstring> whole = world.writes;
    ASSERT_EQ(whole.size(), 21U);
    world.writes.clear();
    world.refused = {whole.front(), L"memory.font_name"};
    EXPECT_FALSE(SaveSettingsTab(settings, SettingsTab::Memory));
    EXPECT_EQ(world.writes, whole);
    EXPECT_THAT(world.debugLines, ElementsAre(TabFailed));
}

TEST_F(IniFileTest, TheGraphsStopAtTheFirstFailure) {
    const AppSettings settings = MakeDefaultSettings();
    world.refused = {L"cpu.pinned"};
    EXPECT_FALSE(SaveGraphWindows(settings));
    EXPECT_THAT(world.writes, ElementsAre(L"network.graph", L"network.pinned", L"network.x", L"network.y",
                                          L"network.width", L"network.height", L"cpu.graph", L"cpu.pinned", L"cpu.x",
                                          L"cpu.y", L"cpu.width", L"cpu.height"));
    EXPECT_THAT(world.debugLines, ElementsAre(GraphsFailed));
}

TEST_F(IniFileTest, TheDialogStateReportsAFailedKey) {
    world.refused = {L"dialog.x"};
    EXPECT_FALSE(SaveDialogState({true, 1, 2, 3}));
    EXPECT_THAT(world.writes, ElementsAre(L"dialog.x", L"dialog.y", L"dialog.tab"));
    EXPECT_THAT(world.debugLines, ElementsAre(DialogFailed));
}

TEST_F(IniFileTest, SmallSavesFailInSilence) {
    const AppSettings settings = MakeDefaultSettings();
    world.refused = {L"general.check_updates", L"general.language", L"general.install_id", L"disk.activity"};
    EXPECT_FALSE(SaveCheckUpdates(settings));
    EXPECT_FALSE(SaveLanguage(settings));
    EXPECT_FALSE(SaveInstallId(settings));
    EXPECT_FALSE(SaveDiskActivity(settings));
    EXPECT_THAT(world.debugLines, IsEmpty());
}

}  // namespace
}  // namespace kestrane
