// A whole settings file with any content: the result is a valid state, and writing and rereading it changes nothing.
#include <algorithm>
#include <map>
#include <utility>

#include "fuzz/fuzz_target.h"
#include "settings/ini_settings.h"

namespace kestrane {
namespace {

using fuzz::Require;
using File = std::map<std::pair<std::wstring, std::wstring>, std::wstring>;

/// "[section]" and "key=value" lines.
File MakeFile(fuzz::Bytes input) {
    File file;
    std::wstring section;
    for (const std::wstring& line : fuzz::WideLines(input)) {
        const std::size_t equals = line.find(L'=');
        if (line.size() > 1 && line.front() == L'[') {
            section = line.substr(1, line.size() - 2);
        } else if (equals != std::wstring::npos) {
            file[{section, line.substr(0, equals)}] = line.substr(equals + 1);
        }
    }
    return file;
}

ReadValue Reader(const File& file) {
    return [&file](const wchar_t* section, const wchar_t* key) {
        const auto found = file.find({section, key});
        return found == file.end() ? std::wstring() : found->second;
    };
}

WriteValue Writer(File& file) {
    return [&file](const wchar_t* section, const wchar_t* key, const std::wstring& value) {
        file[{section, key}] = value;
        return true;
    };
}

void RequirePermitted(const AppSettings& settings) {
    Require(std::ranges::count(settings.show, true) > 0);
    Require(ValidThresholds(settings.thresholds));
    Require(settings.interface_aliases.size() == settings.interfaces.size());
    for (const std::uint32_t period : settings.refresh_ms)
        Require(RefreshChoices[RefreshIndex(period)].ms == period);
    for (const ColorValue color : settings.colors)
        Require(color <= ColorNone);
}

void WriteAll(const AppSettings& settings, File& file) {
    for (const SettingsTab tab :
         {SettingsTab::Cpu, SettingsTab::Disk, SettingsTab::Memory, SettingsTab::Network, SettingsTab::General})
        Require(WriteSettingsTab(settings, tab, Reader(file), Writer(file)));
    for (const SettingRow& row : {CheckUpdatesRow, LanguageRow, InstallIdRow})
        Require(WriteSetting(row, settings, Writer(file)));
}

void CheckSettings(const File& file) {
    const AppSettings settings = ReadSettings(Reader(file));
    RequirePermitted(settings);
    File written = file;
    WriteAll(settings, written);
    Require(ReadSettings(Reader(written)) == settings);
}

void CheckDialogState(const File& file) {
    const DialogState state = ReadDialogState(Reader(file));
    Require(state.tab <= 4);
    File written;
    Require(WriteDialogState(state, Writer(written)));
    DialogState expected = state;
    expected.has_position = true;
    Require(ReadDialogState(Reader(written)) == expected);
}

}  // namespace
}  // namespace kestrane

FUZZ_TARGET(ini_file) {
    const kestrane::File file = kestrane::MakeFile(input);
    kestrane::CheckSettings(file);
    kestrane::CheckDialogState(file);
}
