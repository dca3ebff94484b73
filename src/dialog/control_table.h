#pragma once
// Every control of the settings dialog's pages, one row each, and the groups in which they stand. A group is a
// horizontal band of a page; the groups of a page stack from top to bottom. Positions are in dialog units, which grow
// with the dialog's font.
#include <array>
#include <cstddef>
#include <cstdint>

#include "dialog/control_ids.h"
#include "settings/app_settings.h"

namespace kestrane {

enum class ControlType : std::int32_t {
    TabTitle = 0,  // always hidden, kept for its text
    BoxTitle = 1,  // the dialog paints the frame below it
    Label = 2,
    ColumnHead = 3,
    Note = 4,        // grey
    TabIcon = 5,     // always hidden
    ShowSwitch = 6,  // owner-drawn
    ColorWell = 7,   // owner-drawn
    Sample = 8,      // an icon or a graph, owner-drawn
    Combo = 9,
    FontCombo = 10,
    CheckBox = 11,
    PushButton = 12,
    NumberField = 13,
    InterfaceList = 14,  // owner-drawn
    SectionTitle = 15,   // owner-drawn, without an action
    HardwareText = 16,   // owner-drawn
};
inline constexpr std::size_t ControlTypeCount = 17;

/// How a control is created.
struct ControlClass {
    const wchar_t* name;
    std::uint32_t style;
    bool bold;  // takes the bold font instead of the dialog's

    bool operator==(const ControlClass&) const = default;
};
/// By ControlType. None is created visible: the layout shows it.
extern const std::array<ControlClass, ControlTypeCount> ControlClasses;
/// The tab buttons and the notes below the pages have no row and are always visible.
extern const ControlClass TabButtonClass;
extern const ControlClass PageNoteClass;

struct DialogRow {
    std::int32_t id;  // NoId: numbered automatically
    ControlType type;
    const wchar_t* text;  // Spanish, may be empty
    std::int32_t group;   // index in DialogGroups
    std::int16_t x;
    std::int16_t y;  // from the top of the group, may be negative
    std::int16_t w;
    std::int16_t h;  // of a combo box: dropped down
};

/// In the order of creation, which is that of the Tab key.
inline constexpr std::size_t DialogRowCount = 199;
extern const std::array<DialogRow, DialogRowCount> DialogRows;

/// The id of each row; automatic ids count up from FirstAutomaticId, in the order of the rows.
std::array<std::int32_t, DialogRowCount> ControlIds();

/// The row's text as the translation table has it: without the blanks at the start of a tab's title.
const wchar_t* TextOf(const DialogRow& row);

enum class GroupKind : std::int32_t {
    Fixed = 0,
    HardwareText = 1,  // its height is measured
    GraphPanel = 2,
    LinesOnly = 3,  // exists while the graph is drawn as lines
    DiskList = 4,   // its height follows the number of disks
};

struct DialogGroup {
    SettingsTab tab;
    GroupKind kind;
    std::int32_t height;  // 0: measured
};

inline constexpr std::size_t DialogGroupCount = 36;
extern const std::array<DialogGroup, DialogGroupCount> DialogGroups;

/// The group of the check boxes that are made at run time, one per disk.
inline constexpr std::int32_t DiskListGroup = 15;

}  // namespace kestrane
