#include "tray/promotion.h"

#include <cstddef>

#include "text/number_text.h"
#include "text/text_util.h"

namespace kestrane {
namespace {

// REG_SZ and REG_EXPAND_SZ, which is not expanded here.
constexpr std::uint32_t PlainText = 1;
constexpr std::uint32_t ExpandableText = 2;
constexpr std::uint32_t BytesPerCharacter = 2;

// The prefix of a path in a known folder; each x is a hexadecimal digit.
constexpr std::wstring_view FolderShape = L"{xxxxxxxx-xxxx-xxxx-xxxx-xxxxxxxxxxxx}\\";

}  // namespace

bool HoldsPath(std::uint32_t type, std::uint32_t sizeBytes) {
    return (type == PlainText || type == ExpandableText) && sizeBytes >= BytesPerCharacter;
}

std::wstring TextBeforeZero(std::wstring_view characters) {
    return std::wstring(characters.substr(0, characters.find(L'\0')));
}

std::optional<FolderPath> ParseFolderPath(std::wstring_view path) {
    if (path.size() < FolderShape.size()) return std::nullopt;
    FolderPath parsed{{}, path.substr(FolderShape.size())};
    std::size_t digits = 0;
    for (std::size_t i = 0; i < FolderShape.size(); ++i) {
        if (FolderShape[i] != L'x') {
            if (path[i] != FolderShape[i]) return std::nullopt;
            continue;
        }
        const std::int32_t digit = HexDigitValue(path[i]);
        if (digit < 0) return std::nullopt;
        std::uint8_t& byte = parsed.folder[digits++ / 2];
        byte = static_cast<std::uint8_t>(byte << 4 | digit);
    }
    return parsed;
}

bool IsOwnEntry(std::wstring_view entryPath, std::wstring_view ownPath) {
    return !entryPath.empty() && EqualIgnoringCase(entryPath, ownPath);
}

std::wstring PromotionReport(std::int32_t count) {
    return L"kestrane: iconos promocionados a la barra: " + FormatInteger(count) + L"\n";
}

}  // namespace kestrane
