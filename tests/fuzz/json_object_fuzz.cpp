// Any bytes as a JSON document: a second reader, which works backwards from the ends of strings instead of byte by
// byte, hands over the same fields, and the parts of the reader never pass the end.
#include <algorithm>
#include <charconv>
#include <tuple>

#include "fuzz/fuzz_target.h"
#include "update/json.h"

namespace kestrane {
namespace {

using fuzz::Require;
using Fields = std::vector<std::tuple<std::string, JsonFieldKind, std::string>>;

bool Take(std::string_view& rest, std::string_view text) {
    rest.remove_prefix(std::min(rest.find_first_not_of(" \t\r\n"), rest.size()));
    if (!rest.starts_with(text)) return false;
    rest.remove_prefix(text.size());
    return true;
}

/// The text of four digits at the front of `rest`, as UTF-8.
bool TakeUnit(std::string_view& rest, std::string& text) {
    const std::string_view digits = rest.substr(0, 4);
    std::uint32_t unit = 0;
    const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), unit, 16);
    if (digits.size() < 4 || error != std::errc() || end != digits.data() + 4) return false;
    rest.remove_prefix(4);
    std::string bytes(1, static_cast<char>(unit < 0x80 ? unit : 0x80 + unit % 0x40));
    if (unit >= 0x80 && unit < 0x800) bytes.insert(0, 1, static_cast<char>(0xC0 + unit / 0x40));
    if (unit >= 0x800)
        bytes = {static_cast<char>(0xE0 + unit / 0x1000), static_cast<char>(0x80 + unit / 0x40 % 0x40), bytes[0]};
    text += bytes;
    return true;
}

bool Unescape(std::string_view rest, std::string& text) {
    text.clear();
    while (!rest.empty()) {
        const std::size_t plain = std::min(rest.find('\\'), rest.size());
        text += rest.substr(0, plain);
        rest.remove_prefix(plain);
        if (rest.empty()) break;
        const char letter = rest[1];
        rest.remove_prefix(2);
        switch (letter) {
            case '"':
            case '\\':
            case '/':
                text += letter;
                break;
            case 'b':
                text += '\x08';
                break;
            case 'f':
                text += '\x0C';
                break;
            case 'n':
                text += '\x0A';
                break;
            case 'r':
                text += '\x0D';
                break;
            case 't':
                text += '\x09';
                break;
            case 'u':
                if (!TakeUnit(rest, text)) return false;
                break;
            default:
                return false;
        }
    }
    return true;
}

bool TakeString(std::string_view& rest, std::string& text) {
    if (!Take(rest, "\"")) return false;
    std::size_t end = 0;
    while (end < rest.size() && rest[end] != '"')
        end += rest[end] == '\\' ? 2U : 1U;
    if (end >= rest.size() || !Unescape(rest.substr(0, end), text)) return false;
    rest.remove_prefix(end + 1);
    return true;
}

bool TakeContainer(std::string_view& rest) {
    std::string text;
    std::size_t depth = 0;
    do {
        const std::size_t next = rest.find_first_of("[]{}\"");
        if (next == std::string_view::npos) return false;
        rest.remove_prefix(next);
        if (rest[0] == '"') {
            if (!TakeString(rest, text)) return false;
            continue;
        }
        depth = rest[0] == '[' || rest[0] == '{' ? depth + 1 : depth - 1;
        rest.remove_prefix(1);
    } while (depth > 0);
    return true;
}

bool TakeValue(std::string_view& rest, JsonFieldKind& kind, std::string& value) {
    value.clear();
    Take(rest, "");
    kind = JsonFieldKind::Other;
    if (rest.starts_with('[') || rest.starts_with('{')) return TakeContainer(rest);
    if (Take(rest, "true") || Take(rest, "false") || Take(rest, "null")) return true;
    kind = JsonFieldKind::String;
    if (rest.starts_with('"')) return TakeString(rest, value);
    kind = JsonFieldKind::Number;
    value = rest.substr(0, rest.find_first_not_of("+-.0123456789Ee"));
    rest.remove_prefix(value.size());
    return !value.empty();
}

bool ReadAgain(std::string_view rest, Fields& fields) {
    if (!Take(rest, "{")) return false;
    if (Take(rest, "}")) return true;
    while (true) {
        std::string key;
        std::string value;
        JsonFieldKind kind{};
        if (!TakeString(rest, key) || !Take(rest, ":") || !TakeValue(rest, kind, value)) return false;
        fields.emplace_back(key, kind, value);
        if (Take(rest, ",")) continue;
        return Take(rest, "}") && (Take(rest, ""), rest.empty());
    }
}

void CheckObject(std::string_view text) {
    Fields fields;
    const bool complete =
        ReadFlatJsonObject(text, [&fields](std::string_view key, JsonFieldKind kind, std::string_view value) {
            fields.emplace_back(key, kind, value);
        });
    Fields again;
    Require(ReadAgain(text, again) == complete);
    Require(again == fields);
}

/// Runs a part of the reader from several places of the text.
template <typename Part>
void CheckPart(fuzz::Bytes input, Part part) {
    for (std::size_t start = 0; start <= std::min(input.size(), std::size_t{16}); ++start) {
        JsonScanner scanner{input.data(), input.size(), start};
        std::string output = "old";
        const bool found = part(scanner, output);
        Require(scanner.position >= start && scanner.position <= input.size());
        Require(!found || scanner.position > start);
        Require(output == "old" || output.size() <= scanner.position - start);
    }
}

void CheckEscaping(std::string_view text) {
    const std::string quoted = "\"" + EscapeJsonString(text) + "\"";
    JsonScanner scanner{reinterpret_cast<const std::uint8_t*>(quoted.data()), quoted.size()};
    std::string output;
    Require(ReadJsonString(scanner, output) && output == text && scanner.position == quoted.size());
}

}  // namespace
}  // namespace kestrane

FUZZ_TARGET(json_object) {
    using namespace kestrane;
    const std::string_view text(reinterpret_cast<const char*>(input.data()), input.size());
    CheckObject(text);
    CheckEscaping(text);
    CheckPart(input, &ReadJsonString);
    CheckPart(input, &ReadJsonNumberToken);
    CheckPart(input, [](JsonScanner& scanner, std::string&) { return MatchJsonLiteral(scanner, "null"); });
    CheckPart(input, [](JsonScanner& scanner, std::string&) { return SkipJsonContainer(scanner); });
}
