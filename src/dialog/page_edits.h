#pragma once
// What the controls of the settings dialog's pages do to the settings.
#include <array>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "settings/app_settings.h"

namespace kestrane {

/// The thresholds in the three number fields, if each is a threshold and together they are valid.
std::optional<std::array<std::int32_t, 3>> ParseThresholds(const std::array<std::wstring, 3>& texts);

/// A disk's check box.
struct DiskBox {
    std::int32_t number = 0;
    bool ticked = false;
};

/// The ticked disks in the order of the boxes; without those that the settings cannot hold, and none twice.
std::vector<std::int32_t> DisksOfBoxes(std::span<const DiskBox> boxes);

/// True if the disk is chosen by its number. False for each one while all are.
bool IsDiskTicked(const AppSettings& settings, std::int32_t number);

/// A font's name, size and weight as their three controls show them.
struct FontEdit {
    std::wstring name;            // kept if empty or too long
    std::int32_t sizeIndex = -1;  // in FontSizeChoices; kept if negative
    bool bold = false;
};

/// Writes what the controls show into the font's three settings.
void ApplyFont(const FontEdit& edit, std::wstring& font_name, std::int32_t& font_size, bool& font_bold);

/// Index in FontSizeChoices of the nearest size.
std::int32_t FontSizeChoiceIndex(std::int32_t size);

// Each takes an index in the setting's choices. False, without a change, for one that is out of range.
bool ApplyPeriod(AppSettings& settings, MetricKind metric, std::int32_t index);
bool ApplyOpacity(GraphSettings& graph, std::int32_t index);
bool ApplyFill(GraphSettings& graph, std::int32_t index);

}  // namespace kestrane
