#pragma once
// The windows of the dialog's controls: creates them from the table, gives them their texts, and moves them in one
// batch.
#include <windows.h>

#include <array>
#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "base/geometry.h"
#include "dialog/control_table.h"
#include "dialog/dialog_layout.h"
#include "dialog/dialog_panels.h"
#include "dialog/owner_drawn_win32.h"
#include "hardware/disk_facts.h"

namespace kestrane {

/// One control of a page.
struct ControlRow {
    DialogRow row;  // its id is never NoId
    HWND window;
    Rect rect{};  // where it was placed last, in pixels
    bool last_visible = false;
    Rect frame{};  // pixels; of a box title that is shown
};

class DialogControls {
  public:
    /// Creates the controls of the table, a check box for each disk, the tab buttons and the notes. One that cannot be
    /// created is left out, with a debug line.
    void Create(HWND dialog, const DialogFonts& fonts, const std::vector<DiskFacts>& disks);

    std::span<ControlRow> Rows() { return rows_; }
    std::span<const ControlRow> Rows() const { return rows_; }
    /// Null for an id without a row, such as that of a tab button.
    const ControlRow* Find(std::int32_t id) const;
    /// The height of the list of disks, in dialog units.
    std::int32_t DisksHeight() const { return disks_height_; }

    /// Sets every text again, in the active language.
    void Retranslate();
    /// Takes the fonts of another DPI, for which the system has moved the controls and given them all the regular one.
    void Dress(const DialogFonts& fonts);

    /// Shows, hides and moves the controls. Those that stay as they are are not touched, which keeps the flicker down.
    void Place(const GroupLayout& layout, const MeasuredHeights& heights);

  private:
    HWND CreateControl(const ControlClass& kind, std::int32_t id, const wchar_t* text);
    HWND AddRow(const DialogRow& row, const wchar_t* text);
    void AddDiskBoxes(const std::vector<DiskFacts>& disks);
    DiskBoxes FlowDisks();
    void ReflowDisks();
    HWND LastOfGroup(std::int32_t group) const;

    struct Move {
        HWND window;
        Rect rect;
        UINT flags;
    };
    void PlaceRow(ControlRow& control, const GroupLayout& layout, const MeasuredHeights& heights,
                  std::vector<Move>& moves);
    void PlaceTabButtons(std::vector<Move>& moves) const;
    void PlaceNotes(std::int32_t contentHeight, std::vector<Move>& moves) const;
    static void Carry(const std::vector<Move>& moves);

    Rect ToPixels(const Rect& units) const;

    HWND dialog_ = nullptr;
    DialogFonts fonts_{};
    std::vector<ControlRow> rows_;
    std::vector<std::wstring> disk_texts_;  // that of "all" first
    std::int32_t disks_height_ = 0;
};

/// The text of a window, at most `longest` characters.
std::wstring WindowText(HWND window, int longest);

}  // namespace kestrane
