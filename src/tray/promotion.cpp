#include "tray/promotion.h"

#include "text/number_text.h"
#include "text/text_util.h"

namespace kestrane {
namespace {

// The registry's own numbers for text and for text with variables in it, which are not expanded here.
constexpr std::uint32_t PlainText = 1;
constexpr std::uint32_t ExpandableText = 2;
constexpr std::uint32_t BytesPerCharacter = 2;

}  // namespace

bool HoldsPath(std::uint32_t type, std::uint32_t sizeBytes) {
    return (type == PlainText || type == ExpandableText) && sizeBytes >= BytesPerCharacter;
}

std::wstring TextBeforeZero(std::wstring_view characters) {
    return std::wstring(characters.substr(0, characters.find(L'\0')));
}

bool IsOwnEntry(std::wstring_view entryPath, std::wstring_view ownPath) {
    return !entryPath.empty() && EqualIgnoringCase(entryPath, ownPath);
}

std::wstring PromotionReport(std::int32_t count) {
    return L"kestrane: iconos promocionados a la barra: " + FormatInteger(count) + L"\n";
}

}  // namespace kestrane
