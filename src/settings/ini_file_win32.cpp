#include "settings/ini_file_win32.h"

#include <windows.h>

#include <knownfolders.h>

#include <array>

#include "base/debug_log_win32.h"
#include "base/folders_win32.h"
#include "base/paths.h"

namespace kestrane {
namespace {

/// The roaming application data folder, or the temporary folder if the system has none. It is asked twice: after a call
/// that fails once the settings would be read from a file that is not the user's, and saved over the user's own later.
std::wstring SettingsRoot() {
    std::wstring folder = KnownFolder(FOLDERID_RoamingAppData);
    if (folder.empty()) folder = KnownFolder(FOLDERID_RoamingAppData);
    return folder.empty() ? TemporaryFolder() : folder;
}

ReadValue IniReader() {
    return [path = IniPath()](const wchar_t* section, const wchar_t* key) {
        std::array<wchar_t, 260> buffer{};
        const DWORD length =
            GetPrivateProfileStringW(section, key, L"", buffer.data(), static_cast<DWORD>(buffer.size()), path.c_str());
        return std::wstring(buffer.data(), length);
    };
}

WriteValue IniWriter(const std::wstring& path) {
    return [path](const wchar_t* section, const wchar_t* key, const std::wstring& value) {
        return WritePrivateProfileStringW(section, key, value.c_str(), path.c_str()) != FALSE;
    };
}

bool SaveSetting(const SettingRow& row, const AppSettings& settings) {
    const std::wstring path = IniPath();
    return EnsureIniFolder(path) && WriteSetting(row, settings, IniWriter(path));
}

}  // namespace

std::wstring IniPath() {
    return JoinPath(SettingsRoot(), {L"kestrane", L"kestrane.ini"});
}

bool EnsureIniFolder(const std::wstring& path) {
    const bool there = CreateFolders(ParentPath(path));
    if (!there) LogDebug(L"kestrane: no se pudo crear la carpeta de ajustes\n");
    return there;
}

AppSettings LoadSettings() {
    return ReadSettings(IniReader());
}

DialogState LoadDialogState() {
    return ReadDialogState(IniReader());
}

bool SaveSettingsTab(const AppSettings& settings, SettingsTab tab) {
    const std::wstring path = IniPath();
    if (!EnsureIniFolder(path)) return false;
    const bool saved = WriteSettingsTab(settings, tab, IniReader(), IniWriter(path));
    if (!saved) LogDebug(L"kestrane: error al escribir una seccion del INI de ajustes\n");
    return saved;
}

bool SaveCheckUpdates(const AppSettings& settings) {
    return SaveSetting(CheckUpdatesRow, settings);
}

bool SaveLanguage(const AppSettings& settings) {
    return SaveSetting(LanguageRow, settings);
}

bool SaveInstallId(const AppSettings& settings) {
    return SaveSetting(InstallIdRow, settings);
}

bool SaveDiskActivity(const AppSettings& settings) {
    return SaveSetting(ActivityRow, settings);
}

bool SaveGraphWindows(const AppSettings& settings) {
    const std::wstring path = IniPath();
    if (!EnsureIniFolder(path)) return false;
    const bool saved = WriteGraphWindows(settings, IniWriter(path));
    if (!saved) LogDebug(L"kestrane: error al guardar el estado de las graficas\n");
    return saved;
}

bool SaveDialogState(const DialogState& state) {
    const std::wstring path = IniPath();
    const bool saved = EnsureIniFolder(path) && WriteDialogState(state, IniWriter(path));
    if (!saved) LogDebug(L"kestrane: error al guardar la posicion del dialogo de ajustes\n");
    return saved;
}

}  // namespace kestrane
