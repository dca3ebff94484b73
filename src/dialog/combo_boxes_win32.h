#pragma once
// The dialog's combo boxes. Each holds only the text of its choice until it is first dropped down; the fonts of the
// machine are not even enumerated before that.
#include <windows.h>

#include <cstdint>
#include <string>
#include <vector>

#include "dialog/combo_choices.h"

namespace kestrane {

class ComboBoxes {
  public:
    explicit ComboBoxes(HWND dialog) : dialog_(dialog) {}

    /// Shows a choice of a box's list, the nearest one to `index`.
    void Choose(std::int32_t id, std::int32_t index);
    /// The index of the choice; -1 if there is none.
    std::int32_t Chosen(std::int32_t id) const;

    /// Shows a font, whether or not it is installed.
    void ChooseFontName(std::int32_t id, const std::wstring& name);
    /// The font that a box shows; empty without one, and for a name that the settings cannot hold.
    std::wstring ChosenFontName(std::int32_t id) const;

    /// Fills a box before it drops down. Its choice stays.
    void OnDropDown(std::int32_t id);

    /// The language has changed: every list is emptied again but for its choice, unless it is dropped down.
    void Retranslate();

  private:
    HWND Box(std::int32_t id) const { return GetDlgItem(dialog_, id); }
    void FillChoices(std::int32_t id, ComboContent content);
    void FillFonts(std::int32_t id);

    HWND dialog_;
    LazyCombos lazy_;
    std::vector<std::wstring> font_names_;  // filled at the first need
};

}  // namespace kestrane
