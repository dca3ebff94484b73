#include "dialog/combo_boxes_win32.h"

#include "base/handles_win32.h"
#include "dialog/font_list.h"

namespace kestrane {
namespace {

/// Of storage that a list of fonts allocates beforehand.
constexpr std::size_t BytesPerFontName = 48;

/// The hourglass, until the list is there.
class WaitCursor {
  public:
    WaitCursor() : previous_(SetCursor(LoadCursorW(nullptr, IDC_WAIT))) {}
    WaitCursor(const WaitCursor&) = delete;
    WaitCursor& operator=(const WaitCursor&) = delete;
    ~WaitCursor() { SetCursor(previous_); }

  private:
    HCURSOR previous_;
};

/// Many items are added without painting each of them.
class RedrawOff {
  public:
    explicit RedrawOff(HWND window) : window_(window) { SendMessageW(window_, WM_SETREDRAW, FALSE, 0); }
    RedrawOff(const RedrawOff&) = delete;
    RedrawOff& operator=(const RedrawOff&) = delete;
    ~RedrawOff() {
        SendMessageW(window_, WM_SETREDRAW, TRUE, 0);
        InvalidateRect(window_, nullptr, TRUE);
    }

  private:
    HWND window_;
};

LRESULT AddText(HWND box, const std::wstring& text) {
    return SendMessageW(box, CB_ADDSTRING, 0, reinterpret_cast<LPARAM>(text.c_str()));
}

/// CB_ERR, which is negative, if no text of the list is the same but for its case.
LRESULT FindText(HWND box, const std::wstring& text) {
    constexpr auto WholeList = static_cast<WPARAM>(-1);
    return SendMessageW(box, CB_FINDSTRINGEXACT, WholeList, reinterpret_cast<LPARAM>(text.c_str()));
}

void Select(HWND box, LRESULT index) {
    SendMessageW(box, CB_SETCURSEL, static_cast<WPARAM>(index), 0);
}

int CALLBACK CollectFont(const LOGFONTW* font, const TEXTMETRICW* /*metrics*/, DWORD /*type*/, LPARAM names) noexcept {
    AddFontName(*reinterpret_cast<std::vector<std::wstring>*>(names), font->lfFaceName);
    return 1;
}

std::vector<std::wstring> InstalledFonts() {
    std::vector<std::wstring> names;
    LOGFONTW anyFont{};
    anyFont.lfCharSet = DEFAULT_CHARSET;
    const ScreenDc screen;
    EnumFontFamiliesExW(screen.Get(), &anyFont, CollectFont, reinterpret_cast<LPARAM>(&names), 0);
    SortFontNames(names);
    return names;
}

}  // namespace

void ComboBoxes::Choose(std::int32_t id, std::int32_t index) {
    const auto content = ContentOfCombo(id);
    if (!content) return;
    const std::size_t choice = ClampChoice(*content, index);
    lazy_.Choose(id, static_cast<std::int32_t>(choice));
    if (lazy_.IsFilled(id)) {
        Select(Box(id), static_cast<LRESULT>(choice));
        return;
    }
    SendMessageW(Box(id), CB_RESETCONTENT, 0, 0);
    AddText(Box(id), ChoiceText(*content, choice));
    Select(Box(id), 0);
}

std::int32_t ComboBoxes::Chosen(std::int32_t id) const {
    if (!lazy_.IsFilled(id)) return lazy_.Chosen(id);
    return static_cast<std::int32_t>(SendMessageW(Box(id), CB_GETCURSEL, 0, 0));
}

void ComboBoxes::ChooseFontName(std::int32_t id, const std::wstring& name) {
    const LRESULT found = FindText(Box(id), name);
    Select(Box(id), found >= 0 ? found : AddText(Box(id), name));
}

std::wstring ComboBoxes::ChosenFontName(std::int32_t id) const {
    const HWND box = Box(id);
    const LRESULT index = SendMessageW(box, CB_GETCURSEL, 0, 0);
    const LRESULT length = index < 0 ? CB_ERR : SendMessageW(box, CB_GETLBTEXTLEN, static_cast<WPARAM>(index), 0);
    if (length <= 0) return {};
    std::wstring name(static_cast<std::size_t>(length), L'\0');
    SendMessageW(box, CB_GETLBTEXT, static_cast<WPARAM>(index), reinterpret_cast<LPARAM>(name.data()));
    return IsStorableFontName(name) ? name : std::wstring();
}

void ComboBoxes::OnDropDown(std::int32_t id) {
    if (lazy_.IsFilled(id)) return;
    if (IsFontCombo(id)) {
        FillFonts(id);
    } else if (const auto content = ContentOfCombo(id)) {
        FillChoices(id, *content);
    }
}

void ComboBoxes::FillChoices(std::int32_t id, ComboContent content) {
    const HWND box = Box(id);
    const std::int32_t choice = Chosen(id);
    lazy_.MarkFilled(id);
    const RedrawOff still(box);
    SendMessageW(box, CB_RESETCONTENT, 0, 0);
    for (std::size_t i = 0; i < ChoiceCount(content); ++i)
        AddText(box, ChoiceText(content, i));
    Select(box, choice);
}

void ComboBoxes::FillFonts(std::int32_t id) {
    const WaitCursor wait;
    if (font_names_.empty()) font_names_ = InstalledFonts();
    const HWND box = Box(id);
    const std::wstring shown = ChosenFontName(id);
    lazy_.MarkFilled(id);
    const RedrawOff still(box);
    SendMessageW(box, CB_RESETCONTENT, 0, 0);
    SendMessageW(box, CB_INITSTORAGE, font_names_.size(), static_cast<LPARAM>(font_names_.size() * BytesPerFontName));
    for (const std::wstring& name : font_names_)
        AddText(box, name);
    if (shown.empty()) return;
    if (FindText(box, shown) < 0) SendMessageW(box, CB_INSERTSTRING, 0, reinterpret_cast<LPARAM>(shown.c_str()));
    Select(box, FindText(box, shown));
}

void ComboBoxes::Retranslate() {
    for (const std::int32_t id : lazy_.Ids()) {
        const std::int32_t choice = Chosen(id);
        lazy_.MarkEmpty(id);
        Choose(id, choice);
        // The list of languages, when the arrow keys have changed the language in it.
        const bool isDroppedDown = SendMessageW(Box(id), CB_GETDROPPEDSTATE, 0, 0) != FALSE;
        if (isDroppedDown) OnDropDown(id);
    }
}

}  // namespace kestrane
