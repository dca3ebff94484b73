#pragma once
// The lists of the settings dialog's combo boxes. A box holds only the text of its choice until it is first dropped
// down, so that opening the dialog fills no list.
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace kestrane {

enum class ComboContent { Refresh, Opacity, Margin, Smoothing, Fill, FontSize, Language };

/// None for font lists, and for anything that is no combo box.
std::optional<ComboContent> ContentOfCombo(std::int32_t id);
bool IsFontCombo(std::int32_t id);

std::size_t ChoiceCount(ComboContent content);

/// A choice as shown, in the active language. `index` must be below ChoiceCount.
std::wstring ChoiceText(ComboContent content, std::size_t index);

/// The nearest choice.
std::size_t ClampChoice(ComboContent content, std::int32_t index);

/// Which combo boxes hold their whole list, and the choice of those that hold only its text.
class LazyCombos {
  public:
    bool IsFilled(std::int32_t id) const;
    void MarkFilled(std::int32_t id);
    void MarkEmpty(std::int32_t id);

    /// Remembers the choice of a combo box.
    void Choose(std::int32_t id, std::int32_t index);
    /// The remembered choice; -1 if there is none. A filled box's own selection may be newer.
    std::int32_t Chosen(std::int32_t id) const;
    /// Every combo box with a remembered choice, in the order of their first.
    std::vector<std::int32_t> Ids() const;

  private:
    struct Choice {
        std::int32_t id;
        std::int32_t index;
    };

    std::vector<std::int32_t> filled_combos_;
    std::vector<Choice> combo_choices_;
};

}  // namespace kestrane
