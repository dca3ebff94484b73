#include "update/json.h"

#include <cstddef>

#include "text/text_util.h"

namespace kestrane {
namespace {

constexpr std::string_view WhiteSpace = "\t\n\r ";
constexpr std::string_view NumberBytes = "0123456789+-.eE";

bool IsOneOf(std::uint8_t byte, std::string_view set) {
    return set.find(static_cast<char>(byte)) != std::string_view::npos;
}

/// Skips white space; true if a byte follows.
bool SkipWhiteSpace(JsonScanner& scanner) {
    while (scanner.position < scanner.length && IsOneOf(scanner.bytes[scanner.position], WhiteSpace))
        ++scanner.position;
    return scanner.position < scanner.length;
}

/// Skips white space and then exactly this byte, if it is there.
bool TakeByte(JsonScanner& scanner, std::uint8_t byte) {
    if (!SkipWhiteSpace(scanner) || scanner.bytes[scanner.position] != byte) return false;
    ++scanner.position;
    return true;
}

/// The four digits of a \u escape.
bool ReadCodeUnit(JsonScanner& scanner, std::string& output) {
    constexpr std::uint64_t Digits = 4;
    if (scanner.length - scanner.position < Digits) return false;
    std::uint32_t unit = 0;
    for (std::uint64_t i = 0; i < Digits; ++i) {
        const std::int32_t digit = HexDigitValue(scanner.bytes[scanner.position++]);
        if (digit < 0) return false;
        unit = unit * 16 + static_cast<std::uint32_t>(digit);
    }
    AppendUtf8CodeUnit(output, unit);
    return true;
}

/// What follows a backslash.
bool ReadEscape(JsonScanner& scanner, std::string& output) {
    constexpr std::string_view Letters = "\"/\\bfnrt";
    constexpr std::string_view Meanings = "\"/\\\b\f\n\r\t";
    if (scanner.position == scanner.length) return false;
    const std::uint8_t letter = scanner.bytes[scanner.position++];
    if (letter == 'u') return ReadCodeUnit(scanner, output);
    const std::size_t index = Letters.find(static_cast<char>(letter));
    if (index == std::string_view::npos) return false;
    output += Meanings[index];
    return true;
}

bool MatchAnyLiteral(JsonScanner& scanner) {
    return MatchJsonLiteral(scanner, "true") || MatchJsonLiteral(scanner, "false") || MatchJsonLiteral(scanner, "null");
}

/// A value of any kind, told by its first byte.
bool ReadValue(JsonScanner& scanner, JsonFieldKind& kind, std::string& value) {
    value.clear();
    kind = JsonFieldKind::Other;
    if (!SkipWhiteSpace(scanner)) return false;
    switch (scanner.bytes[scanner.position]) {
        case '"':
            kind = JsonFieldKind::String;
            return ReadJsonString(scanner, value);
        case '[':
        case '{':
            return SkipJsonContainer(scanner);
        case 't':
        case 'f':
        case 'n':
            return MatchAnyLiteral(scanner);
        default:
            kind = JsonFieldKind::Number;
            return ReadJsonNumberToken(scanner, value);
    }
}

}  // namespace

bool ReadFlatJsonObject(std::string_view bytes, const JsonSink& sink) {
    JsonScanner scanner{reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size()};
    if (!TakeByte(scanner, '{')) return false;
    if (TakeByte(scanner, '}')) return true;
    std::string key;
    std::string value;
    do {
        JsonFieldKind kind{};
        if (!ReadJsonString(scanner, key) || !TakeByte(scanner, ':') || !ReadValue(scanner, kind, value)) return false;
        sink(key, kind, value);
    } while (TakeByte(scanner, ','));
    return TakeByte(scanner, '}') && !SkipWhiteSpace(scanner);
}

bool ReadJsonString(JsonScanner& scanner, std::string& output) {
    output.clear();
    if (!TakeByte(scanner, '"')) return false;
    while (scanner.position < scanner.length) {
        const std::uint8_t byte = scanner.bytes[scanner.position++];
        if (byte == '"') return true;
        if (byte != '\\') {
            output += static_cast<char>(byte);
        } else if (!ReadEscape(scanner, output)) {
            return false;
        }
    }
    return false;
}

bool ReadJsonNumberToken(JsonScanner& scanner, std::string& output) {
    output.clear();
    SkipWhiteSpace(scanner);
    while (scanner.position < scanner.length && IsOneOf(scanner.bytes[scanner.position], NumberBytes))
        output += static_cast<char>(scanner.bytes[scanner.position++]);
    return !output.empty();
}

bool MatchJsonLiteral(JsonScanner& scanner, std::string_view word) {
    SkipWhiteSpace(scanner);
    const std::string_view all(reinterpret_cast<const char*>(scanner.bytes), scanner.length);
    if (!all.substr(scanner.position).starts_with(word)) return false;
    scanner.position += word.size();
    return true;
}

bool SkipJsonContainer(JsonScanner& scanner) {
    std::string text;
    std::int64_t depth = 0;
    SkipWhiteSpace(scanner);
    while (scanner.position < scanner.length) {
        const std::uint8_t byte = scanner.bytes[scanner.position];
        if (byte == '"') {  // brackets inside a string do not count
            if (!ReadJsonString(scanner, text)) return false;
            continue;
        }
        ++scanner.position;
        if (IsOneOf(byte, "[{")) ++depth;
        if (IsOneOf(byte, "]}") && depth-- == 1) return true;
    }
    return false;
}

void AppendUtf8CodeUnit(std::string& output, std::uint32_t unit) {
    const auto append = [&output](std::uint32_t byte) { output += static_cast<char>(byte); };
    const std::uint32_t last = 0x80 | (unit & 0x3F);
    if (unit < 0x80) {
        append(unit);
    } else if (unit < 0x800) {
        append(0xC0 | (unit >> 6));
        append(last);
    } else {
        append(0xE0 | (unit >> 12));
        append(0x80 | (unit >> 6 & 0x3F));
        append(last);
    }
}

bool ParseDecimal(std::string_view text, std::uint64_t& value) {
    constexpr std::size_t MostDigits = 19;
    if (text.empty() || text.size() > MostDigits) return false;
    std::uint64_t parsed = 0;
    for (const char c : text) {
        if (c < '0' || c > '9') return false;
        parsed = parsed * 10 + static_cast<std::uint64_t>(c - '0');
    }
    value = parsed;
    return true;
}

std::string EscapeJsonString(std::string_view text) {
    std::string escaped;
    for (const char c : text) {
        const auto byte = static_cast<std::uint8_t>(c);
        if (c == '\t') {
            escaped += "\\t";
        } else if (c == '\n') {
            escaped += "\\n";
        } else if (c == '\r') {
            escaped += "\\r";
        } else if (c == '"' || c == '\\') {
            escaped += '\\';
            escaped += c;
        } else if (byte < 0x20) {
            escaped += "\\u00" + HexText({&byte, 1});
        } else {
            escaped += c;
        }
    }
    return escaped;
}

}  // namespace kestrane
