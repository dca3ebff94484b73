#include "dialog/dialog_controls_win32.h"

#include <algorithm>
#include <iterator>

#include "base/debug_log_win32.h"
#include "base/font_win32.h"
#include "dialog/dialog_units_win32.h"
#include "text/number_text.h"
#include "text/translation.h"

namespace kestrane {
namespace {

constexpr const wchar_t* AllDisksText = L"Todos (suma)";

HMENU IdAsMenu(std::int32_t id) {
    return reinterpret_cast<HMENU>(static_cast<INT_PTR>(id));
}

/// Whether the text of a row is shown, by the control or by whoever paints it.
bool HasText(const DialogRow& row) {
    return row.text[0] != L'\0';
}

std::wstring DiskText(const DiskFacts& disk) {
    return FormatInteger(disk.number) + L"  " + disk.model;
}

/// As a button's caption, in which a single "&" would underline the next letter and make it the button's key.
std::wstring CaptionOf(const std::wstring& text) {
    std::wstring caption;
    for (const wchar_t character : text)
        caption.append(character == L'&' ? 2 : 1, character);
    return caption;
}

}  // namespace

void DialogControls::Create(HWND dialog, const DialogFonts& fonts, const std::vector<DiskFacts>& disks) {
    dialog_ = dialog;
    fonts_ = fonts;
    const auto ids = ControlIds();
    for (std::size_t i = 0; i < DialogRows.size(); ++i) {
        DialogRow row = DialogRows[i];
        row.id = ids[i];
        AddRow(row, Tr(TextOf(row)));
    }
    AddDiskBoxes(disks);
    for (const DialogTab& tab : DialogTabs)
        CreateControl(TabButtonClass, tab.button, Tr(tab.text));
    for (const PageNote& note : PageNotes)
        CreateControl(PageNoteClass, note.id, Tr(note.text));
}

HWND DialogControls::CreateControl(const ControlClass& kind, std::int32_t id, const wchar_t* text) {
    const HWND control =
        CreateWindowExW(0, kind.name, text, kind.style, 0, 0, 0, 0, dialog_, IdAsMenu(id),
                        reinterpret_cast<HINSTANCE>(GetWindowLongPtrW(dialog_, GWLP_HINSTANCE)), nullptr);
    if (control == nullptr) return nullptr;
    SendMessageW(control, WM_SETFONT, reinterpret_cast<WPARAM>(kind.bold ? fonts_.bold : fonts_.regular), FALSE);
    return control;
}

HWND DialogControls::AddRow(const DialogRow& row, const wchar_t* text) {
    const HWND control = CreateControl(ControlClasses[static_cast<std::size_t>(row.type)], row.id, text);
    if (control == nullptr) {
        LogDebug(L"kestrane: no se pudo crear un control del dialogo de ajustes\n");
        return nullptr;
    }
    rows_.push_back({row, control});
    return control;
}

void DialogControls::AddDiskBoxes(const std::vector<DiskFacts>& disks) {
    disk_texts_ = {L""};
    std::ranges::transform(disks, std::back_inserter(disk_texts_), DiskText);
    const DiskBoxes boxes = FlowDisks();
    HWND previous = LastOfGroup(DiskListGroup);
    for (std::size_t i = 0; i < boxes.rows.size(); ++i) {
        const HWND box = AddRow(boxes.rows[i], CaptionOf(disk_texts_[i]).c_str());
        if (box == nullptr) continue;
        // The Tab key follows the order of the windows, which is that of their creation until it is changed.
        SetWindowPos(box, previous, 0, 0, 0, 0, SWP_NOMOVE | SWP_NOSIZE | SWP_NOACTIVATE);
        previous = box;
    }
}

/// The first text is in the active language, so the boxes flow anew when it changes, and when the font does.
DiskBoxes DialogControls::FlowDisks() {
    disk_texts_.front() = Tr(AllDisksText);
    const std::int32_t unit = RectWidth(ToPixels({0, 0, 4, 8}));
    std::vector<std::int32_t> widths;
    std::ranges::transform(disk_texts_, std::back_inserter(widths), [&](const std::wstring& text) {
        return WidthInUnits(TextWidth(fonts_.regular, text), unit);
    });
    DiskBoxes boxes = FlowDiskBoxes(widths);
    disks_height_ = boxes.disks_height;
    boxes.rows.front().text = AllDisksText;
    return boxes;
}

/// The last control of the table down to the end of a group; null if there is none.
HWND DialogControls::LastOfGroup(std::int32_t group) const {
    HWND last = nullptr;
    for (const ControlRow& control : rows_) {
        if (control.row.group <= group) last = control.window;
    }
    return last;
}

const ControlRow* DialogControls::Find(std::int32_t id) const {
    const auto found = std::ranges::find_if(rows_, [id](const ControlRow& control) { return control.row.id == id; });
    return found != rows_.end() ? &*found : nullptr;
}

void DialogControls::ReflowDisks() {
    const DiskBoxes boxes = FlowDisks();
    for (const DialogRow& box : boxes.rows) {
        const auto control = std::ranges::find(rows_, box.id, [](const ControlRow& row) { return row.row.id; });
        if (control != rows_.end()) control->row = box;
    }
}

void DialogControls::Dress(const DialogFonts& fonts) {
    fonts_ = fonts;
    for (ControlRow& control : rows_) {
        if (ControlClasses[static_cast<std::size_t>(control.row.type)].bold)
            SendMessageW(control.window, WM_SETFONT, reinterpret_cast<WPARAM>(fonts.bold), FALSE);
        control.rect = {};
    }
    ReflowDisks();
}

void DialogControls::Retranslate() {
    ReflowDisks();
    for (const ControlRow& control : rows_) {
        if (HasText(control.row)) SetWindowTextW(control.window, Tr(TextOf(control.row)));
    }
    for (const DialogTab& tab : DialogTabs)
        SetDlgItemTextW(dialog_, tab.button, Tr(tab.text));
    for (const PageNote& note : PageNotes)
        SetDlgItemTextW(dialog_, note.id, Tr(note.text));
}

void DialogControls::Place(const GroupLayout& layout, const MeasuredHeights& heights) {
    std::vector<Move> moves;
    PlaceTabButtons(moves);
    for (ControlRow& control : rows_)
        PlaceRow(control, layout, heights, moves);
    PlaceNotes(layout.content_height, moves);
    Carry(moves);
}

void DialogControls::PlaceTabButtons(std::vector<Move>& moves) const {
    std::array<std::int32_t, TabCount> widths{};
    std::ranges::transform(DialogTabs, widths.begin(),
                           [this](const DialogTab& tab) { return TextWidth(fonts_.bold, Tr(tab.text)); });
    const auto rects = TabButtonRects(ToPixels(TabBand), widths, GetDpiForWindow(dialog_));
    for (std::size_t i = 0; i < TabCount; ++i)
        moves.push_back({GetDlgItem(dialog_, DialogTabs[i].button), rects[i], 0});
}

void DialogControls::PlaceRow(ControlRow& control, const GroupLayout& layout, const MeasuredHeights& heights,
                              std::vector<Move>& moves) {
    const std::uint32_t dpi = GetDpiForWindow(dialog_);
    const ControlPlace place = PlaceControl(control.row, layout, heights);
    // A control that stays hidden is placed when it is shown: most are on other pages than the first.
    if (!place.shown && !control.last_visible) return;
    Rect rect = ToPixels(place.rect);
    control.frame = place.frame == Rect{} ? Rect{} : ToPixels(place.frame);
    if (control.row.type == ControlType::BoxTitle)
        rect = BoxTitleRect(rect, TextWidth(fonts_.bold, Tr(TextOf(control.row))), dpi);
    if (control.row.type == ControlType::TabIcon) rect = TabIconRect(rect, dpi);

    if (control.rect == rect && control.last_visible == place.shown) return;
    control.rect = rect;
    control.last_visible = place.shown;
    moves.push_back({control.window, rect, static_cast<UINT>(place.shown ? SWP_SHOWWINDOW : SWP_HIDEWINDOW)});
}

void DialogControls::PlaceNotes(std::int32_t contentHeight, std::vector<Move>& moves) const {
    const auto rects = NoteRects(contentHeight);
    for (std::size_t i = 0; i < PageNotes.size(); ++i)
        moves.push_back({GetDlgItem(dialog_, PageNotes[i].id), ToPixels(rects[i]), 0});
}

/// A batch that fails on the way has moved nothing, so then each control is moved by itself.
void DialogControls::Carry(const std::vector<Move>& moves) {
    constexpr UINT Flags = SWP_NOZORDER | SWP_NOACTIVATE;
    HDWP batch = BeginDeferWindowPos(static_cast<int>(moves.size()));
    for (const auto& [window, rect, flags] : moves) {
        if (batch == nullptr || window == nullptr) continue;
        batch = DeferWindowPos(batch, window, nullptr, rect.left, rect.top, RectWidth(rect), RectHeight(rect),
                               Flags | flags);
    }
    if (batch != nullptr && EndDeferWindowPos(batch)) return;
    for (const auto& [window, rect, flags] : moves)
        SetWindowPos(window, nullptr, rect.left, rect.top, RectWidth(rect), RectHeight(rect), Flags | flags);
}

Rect DialogControls::ToPixels(const Rect& units) const {
    return DialogUnitsToPixels(dialog_, units);
}

std::wstring WindowText(HWND window, int longest) {
    std::wstring text(static_cast<std::size_t>(longest) + 1, L'\0');
    text.resize(static_cast<std::size_t>(GetWindowTextW(window, text.data(), longest + 1)));
    return text;
}

}  // namespace kestrane
