// Prints, as JSON, what the program itself knows of its settings file: every key that it reads or writes, with its
// default and with what becomes of many values, found by trying them. settings_documents.py makes the documents of it.
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <iostream>
#include <limits>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "settings/app_settings.h"
#include "settings/ini_settings.h"
#include "settings/ini_values.h"
#include "settings/setting_rows.h"
#include "text/number_text.h"
#include "text/translation.h"

namespace kestrane {
namespace {

using Key = std::pair<std::wstring, std::wstring>;  // section and key

/// What a value counts as, written as the program would write it; none if it is refused.
using Outcome = std::function<std::optional<std::wstring>(const std::wstring& text)>;

/// What is known of a key besides its outcomes.
struct Facts {
    std::wstring owner;
    std::wstring group;
    std::wstring defaultText;
    std::wstring source;  // of a linked colour
    Outcome outcome;      // none for keys of older files
};

// ---- JSON

std::string Json(std::wstring_view text) {
    constexpr std::string_view Digits = "0123456789ABCDEF";
    std::string json = "\"";
    for (const wchar_t c : text) {
        if (c >= L' ' && c <= L'~' && c != L'"' && c != L'\\') {
            json += static_cast<char>(c);
            continue;
        }
        json += "\\u";
        for (int shift = 12; shift >= 0; shift -= 4)
            json += Digits[static_cast<std::size_t>(c >> shift & 0xF)];
    }
    return json + '"';
}

std::string JsonOrNull(const std::optional<std::wstring>& text) {
    return text ? Json(*text) : "null";
}

template <typename Items, typename Format>
std::string Join(const Items& items, Format format) {
    std::string text;
    for (const auto& item : items)
        text.append(text.empty() ? "" : ",").append(format(item));
    return text;
}

// ---- trying values

/// Whole numbers without a gap where limits are to be expected, and those around the far ones.
std::vector<std::int64_t> NumbersToTry() {
    constexpr std::int64_t Farthest = std::numeric_limits<std::int32_t>::max();
    std::vector<std::int64_t> numbers{-Farthest, -100'000, -99'999};
    for (std::int64_t number = -300; number <= 10'300; ++number)
        numbers.push_back(number);
    numbers.insert(numbers.end(), {99'999, 100'000, Farthest});
    return numbers;
}

/// Numbers in a row with the same outcome: "same" (they stay as they are), refused, or one value for all of them.
struct Run {
    std::int64_t first;
    std::int64_t last;
    std::optional<std::wstring> outcome;
};

/// Empty if nearly every number has an outcome of its own.
std::vector<Run> RunsOf(const Outcome& outcome) {
    std::vector<Run> runs;
    for (const std::int64_t number : NumbersToTry()) {
        const std::wstring text = FormatSigned(number);
        std::optional<std::wstring> result = outcome(text);
        if (result == text) result = L"same";
        if (!runs.empty() && runs.back().outcome == result) {
            runs.back().last = number;
        } else {
            runs.push_back({number, number, std::move(result)});
        }
        if (runs.size() > 100) return {};
    }
    return runs;
}

const std::vector<std::wstring> WordsToTry{L"",
                                           L"*",
                                           L"NONE",
                                           L"none",
                                           L"bars",
                                           L"lines",
                                           L"true",
                                           L"abc",
                                           L"12x",
                                           L"A1B2C3",
                                           L"a1b2c3",
                                           L"0,1",
                                           L"1,1",
                                           L"AB,CD",
                                           std::wstring(16, L'F'),
                                           std::wstring(17, L'F'),
                                           L"a|b"};

/// The lengths from 1 to 300 at which a text of this one character is accepted, as first and last; -1 for none.
std::pair<int, int> LengthsOf(const Outcome& outcome, wchar_t character) {
    std::pair<int, int> lengths{-1, -1};
    for (int length = 1; length <= 300; ++length) {
        const std::wstring text(static_cast<std::size_t>(length), character);
        if (outcome(text) != text) continue;
        if (lengths.first < 0) lengths.first = length;
        lengths.second = length;
    }
    return lengths;
}

std::string Tried(const Outcome& outcome) {
    const auto run = [](const Run& r) {
        return "[" + std::to_string(r.first) + "," + std::to_string(r.last) + "," + JsonOrNull(r.outcome) + "]";
    };
    const auto word = [&outcome](const std::wstring& text) { return Json(text) + ":" + JsonOrNull(outcome(text)); };
    const auto lengths = [&outcome](wchar_t character) {
        const auto [first, last] = LengthsOf(outcome, character);
        return "[" + std::to_string(first) + "," + std::to_string(last) + "]";
    };
    return ",\"numbers\":[" + Join(RunsOf(outcome), run) + "],\"words\":{" + Join(WordsToTry, word) +
           "},\"letters\":" + lengths(L'x') + ",\"digits\":" + lengths(L'a');
}

// ---- the keys

const wchar_t* NameOf(SettingOwner owner) {
    switch (owner) {
        case SettingOwner::Cpu:
            return L"Cpu";
        case SettingOwner::Disk:
            return L"Disk";
        case SettingOwner::Memory:
            return L"Memory";
        case SettingOwner::Network:
            return L"Network";
        case SettingOwner::NetworkWindow:
        case SettingOwner::CpuWindow:
        case SettingOwner::DiskWindow:
            return L"Window";
        case SettingOwner::General:
            return L"General";
    }
    return L"";
}

const wchar_t* NameOf(LoadGroup group) {
    switch (group) {
        case LoadGroup::None:
            return L"";
        case LoadGroup::Thresholds:
            return L"Thresholds";
        case LoadGroup::ShownIcons:
            return L"ShownIcons";
        case LoadGroup::Placement:
            return L"Placement";
        case LoadGroup::Aliases:
            return L"Aliases";
    }
    return L"";
}

Outcome OutcomeOf(const SettingRow& row) {
    return [&row, settings = MakeDefaultSettings()](const std::wstring& text) mutable -> std::optional<std::wstring> {
        if (!row.read(settings, text)) return std::nullopt;
        return row.write(settings);
    };
}

std::optional<std::wstring> ColorOutcome(const std::wstring& text) {
    const std::optional<ColorValue> color = ParseColor(text);
    if (!color) return std::nullopt;
    return FormatColor(*color);
}

/// A coordinate counts only beside another. What is refused reads as 0.
Outcome DialogOutcome(const std::wstring& key) {
    return [key](const std::wstring& text) -> std::optional<std::wstring> {
        const DialogState state = ReadDialogState(
            [&](const wchar_t*, const wchar_t* read) { return key == read ? text : std::wstring(L"0"); });
        if (key == L"tab") return FormatInteger(state.tab) == text ? std::optional(text) : std::nullopt;
        if (!state.has_position) return std::nullopt;
        return FormatInteger(key == L"x" ? state.x : state.y);
    };
}

const wchar_t* SourceOf(std::size_t color) {
    const auto* const link = std::ranges::find(ColorLinks, color, &ColorLink::target);
    return link == ColorLinks.end() ? L"" : IconColors[link->source].key;
}

/// By section and key, what the tables say.
std::map<Key, Facts> KnownFacts() {
    const AppSettings defaults = MakeDefaultSettings();
    std::map<Key, Facts> facts;
    for (const SettingRow& row : AllRows()) {
        const std::wstring text = *row.defaultText == L'\0' ? L"" : row.write(defaults);
        facts[{row.section, row.key}] = {NameOf(row.owner), NameOf(row.group), text, L"", OutcomeOf(row)};
    }
    for (std::size_t i = 0; i < ColorCount; ++i) {
        const auto owner = static_cast<SettingOwner>(IconColors[i].tab);
        facts[{L"colors", IconColors[i].key}] = {NameOf(owner), L"", FormatColor(defaults.colors[i]), SourceOf(i),
                                                 ColorOutcome};
    }
    for (const wchar_t* key : {L"x", L"y", L"tab"})
        facts[{L"dialog", key}] = {L"Dialog", L"", L"", L"", DialogOutcome(key)};
    facts[{L"dialog", L"tab"}].defaultText = FormatInteger(DialogState().tab);
    return facts;
}

/// Every key in the order in which the program first touches it, and those that it writes.
struct Touched {
    std::vector<Key> order;
    std::set<Key> written;
};

Touched TouchAll() {
    Touched touched;
    const auto note = [&touched](const wchar_t* section, const wchar_t* key) {
        const Key name(section, key);
        if (std::ranges::find(touched.order, name) == touched.order.end()) touched.order.push_back(name);
    };
    const auto write = [&](const wchar_t* section, const wchar_t* key, const std::wstring&) {
        note(section, key);
        touched.written.emplace(section, key);
        return true;
    };
    const auto readNothing = [](const wchar_t*, const wchar_t*) { return std::wstring(); };
    const AppSettings defaults = MakeDefaultSettings();
    for (const SettingsTab tab : {SettingsTab::Cpu, SettingsTab::Disk, SettingsTab::Memory, SettingsTab::Network})
        WriteSettingsTab(defaults, tab, readNothing, write);
    WriteGraphWindows(defaults, write);
    for (const SettingRow& row : AllRows())
        WriteSetting(row, defaults, write);
    WriteDialogState({}, write);
    // What is read only. Some keys are looked for only if others are missing, some only beside a certain value of
    // another; so each has each value alone too.
    const auto readAll = [&](const auto& valueOf) {
        const auto read = [&](const wchar_t* section, const wchar_t* key) {
            note(section, key);
            return std::wstring(valueOf(Key(section, key)));
        };
        ReadSettings(read);
        ReadDialogState(read);
    };
    for (const wchar_t* const value : {L"", L"0", L"1", L"500"}) {
        readAll([&](const Key&) { return value; });
        const std::vector<Key> found = touched.order;
        for (const Key& only : found)
            readAll([&](const Key& key) { return key == only ? value : L""; });
    }
    return touched;
}

/// A list of choices in both languages.
template <typename Choices, typename TextOf>
std::string Names(const Choices& choices, TextOf text) {
    std::string json;
    for (const auto& [language, name] : {std::pair{ActiveSpanish, "\"es\":["}, {ActiveEnglish, "\"en\":["}}) {
        SetLanguage(language);
        json.append(json.empty() ? "" : ",").append(name);
        json += Join(choices, [&text](const auto& choice) { return Json(Tr(text(choice))); }) + "]";
    }
    return "{" + json + "}";
}

void Print() {
    const Touched touched = TouchAll();
    const std::map<Key, Facts> known = KnownFacts();
    std::cout << "{\"keys\":[\n";
    const char* separator = "";
    for (const Key& key : touched.order) {
        std::cout << separator << "{\"section\":" << Json(key.first) << ",\"key\":" << Json(key.second)
                  << ",\"written\":" << (touched.written.contains(key) ? "true" : "false");
        separator = ",\n";
        const auto facts = known.find(key);
        if (facts != known.end()) {
            std::cout << ",\"owner\":" << Json(facts->second.owner) << ",\"group\":" << Json(facts->second.group)
                      << ",\"default\":" << Json(facts->second.defaultText)
                      << ",\"source\":" << Json(facts->second.source) << Tried(facts->second.outcome);
        }
        std::cout << "}";
    }
    const auto itself = [](const wchar_t* text) { return text; };
    std::cout << "],\n\"names\":{\"smoothing\":" << Names(SmoothingChoices, itself)
              << ",\"language\":" << Names(LanguageChoices, itself) << "}}\n";
}

}  // namespace
}  // namespace kestrane

int main() {
    kestrane::Print();
    return 0;
}
