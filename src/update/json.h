#pragma once
// Just enough JSON (RFC 8259) for the two documents of the update path: the manifest, a flat object that is read, and
// the body of the usage event, of which only the strings are escaped here. There is no document tree: the reader hands
// each field to the caller in file order and skips what is nested. Everything is bytes; UTF-8 passes through unchecked.
#include <cstdint>
#include <functional>
#include <string>
#include <string_view>

namespace kestrane {

/// A position in bytes that the caller keeps alive; it only grows.
struct JsonScanner {
    const std::uint8_t* bytes = nullptr;
    std::uint64_t length = 0;
    std::uint64_t position = 0;
};

enum class JsonFieldKind : std::uint8_t {
    String = 1,
    Number = 2,
    Other = 3,  // true, false, null, and skipped objects and arrays
};

/// Receives each field: its key, kind and value. The value is a string's decoded text, a number's raw token, or empty.
using JsonSink = std::function<void(std::string_view key, JsonFieldKind kind, std::string_view value)>;

/// True if `bytes` are one well-formed object, with white space around it at most; only behind an empty object anything
/// may follow. The sink may have received fields even if the reading fails later. A repeated key is received each time.
bool ReadFlatJsonObject(std::string_view bytes, const JsonSink& sink);

// The parts of the reader. Each skips white space (tab, line feed, carriage return, space) and then moves the position
// behind what it has read; false if that is not there. The output is emptied first.

/// A string in quotes, decoded. A \u escape becomes one code unit of UTF-8, so surrogates are not paired.
bool ReadJsonString(JsonScanner& scanner, std::string& output);
/// The longest run of digits, signs, points and exponent letters; its form is not checked. False if there is none.
bool ReadJsonNumberToken(JsonScanner& scanner, std::string& output);
/// Exactly this word, whatever follows.
bool MatchJsonLiteral(JsonScanner& scanner, std::string_view word);
/// An object or array that begins there, nested to any depth. The two kinds of brackets close each other.
bool SkipJsonContainer(JsonScanner& scanner);

/// Appends a UTF-16 code unit as 1 to 3 bytes, surrogates too.
void AppendUtf8CodeUnit(std::string& output, std::uint32_t unit);

/// 1 to 19 digits and nothing else, so the value always fits. On failure false, and `value` is unchanged.
bool ParseDecimal(std::string_view text, std::uint64_t& value);

/// `text` as it stands between the quotes of a JSON string: quotes, backslashes and control characters escaped.
std::string EscapeJsonString(std::string_view text);

}  // namespace kestrane
