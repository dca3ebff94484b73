#pragma once
// The settings dialog: five pages that edit the program's own settings in place, so that every change shows at once in
// the tray. Nothing reaches the file before a page's "Guardar", and closing puts back what was not saved.
//
// The template has no controls: they are created from the table in control_table.h, and a tab is a matter of showing
// and hiding groups of them. UI thread only; the dialog runs its own message loop, in which the program can end.
#include <windows.h>

#include <array>
#include <cstdint>
#include <optional>
#include <utility>
#include <vector>

#include "base/geometry.h"
#include "base/handles_win32.h"
#include "dialog/button_states.h"
#include "dialog/combo_boxes_win32.h"
#include "dialog/control_roles_win32.h"
#include "dialog/dialog_controls_win32.h"
#include "dialog/dialog_layout.h"
#include "dialog/dialog_panels.h"
#include "dialog/interface_choice.h"
#include "dialog/page_edits.h"
#include "dialog/sample_data.h"
#include "dialog/settings_dialog_host.h"
#include "dialog/well_names_win32.h"
#include "hardware/summary_rows.h"
#include "settings/app_settings.h"
#include "settings/ini_settings.h"

namespace kestrane {

/// Shows the dialog until it is closed. `anchor` is where the user asked for it, in screen coordinates; `settings` are
/// edited in place. When it returns, the program may have ended.
void ShowSettingsDialog(HINSTANCE instance, HWND owner, const Point& anchor, AppSettings& settings,
                        SettingsDialogHost& host);

/// The open dialog's window, or null.
HWND OpenSettingsDialog();

class SettingsDialog {
  public:
    SettingsDialog(HINSTANCE instance, const Point& anchor, AppSettings& settings, SettingsDialogHost& host);
    SettingsDialog(const SettingsDialog&) = delete;
    SettingsDialog& operator=(const SettingsDialog&) = delete;

    /// Runs the dialog until it ends. False if it could not be created.
    bool Run(HWND owner);

  private:
    /// The controls are being filled for as long as one exists.
    class Filling;

    static SettingsDialog* Of(HWND window);
    static INT_PTR CALLBACK DialogProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam) noexcept;
    INT_PTR OnMessage(UINT message, WPARAM wParam, LPARAM lParam);

    // Opening and closing (settings_dialog_win32.cpp).
    void OnInitDialog(HWND window);
    void LoadIcons();
    void ShowGeneral();
    void PlaceWindow(const DialogState& state);
    void MoveToPlace(const DialogState& state);
    void Dress();
    void NameWells();
    void TellStates();
    void OnDestroy();

    // Layout (settings_dialog_layout_win32.cpp).
    void LayoutDialog();
    void LeaveHiddenControl();
    void PlaceBoxes(const GroupLayout& layout);
    void ResizeWindow(std::int32_t contentHeight);
    void SelectTab(SettingsTab tab);
    void LoadHardwareRows(SettingsTab tab);
    void MeasureHeights();
    void MeasureHardware(SettingsTab tab);
    void Retranslate();

    // The controls, as the settings say (settings_dialog_filling_win32.cpp).
    void FillControls();
    void FillGraphPanel(GraphKind kind);
    void FillDisks();
    void FillInterfaceList();
    std::vector<DiskBox> ShownDisks() const;

    // The settings, as the user edits the controls (settings_dialog_edits_win32.cpp).
    void OnCommand(std::int32_t id, UINT code);
    bool OnPageButton(std::int32_t id, UINT code);
    bool OnGraphControl(std::int32_t id, UINT code);
    bool OnGraphControl(GraphKind kind, std::int32_t id, UINT code);
    bool OnDiskBox(std::int32_t id);
    void OnOtherControl(std::int32_t id, UINT code);
    void OnSwitch(SettingsTab tab);
    void OnToggleInterface(std::size_t item);
    bool OnContextMenu(HWND control);
    void ChooseWellColor(ColorKey key);
    void SetWellColor(ColorKey key, ColorValue color);
    void ChangeLanguage();
    bool StoreThresholds();
    FontEdit ShownFont(ControlId font, ControlId size, ControlId bold) const;
    void AfterEdit();

    // Saving, restoring, closing (settings_dialog_saving_win32.cpp).
    void UpdateButtons();
    void SavePage(SettingsTab tab);
    void SaveGeneral();
    void RestorePage(SettingsTab tab);
    void RestoreGeneral();
    void Cancel();
    GeneralPage ShownGeneral() const;
    void Enable(HWND control, bool enabled);
    void Tell(const wchar_t* text, UINT icon);

    // Painting (settings_dialog_painting_win32.cpp).
    void OnPaint();
    bool OnDrawItem(const DRAWITEMSTRUCT& item);
    bool OnMeasureItem(MEASUREITEMSTRUCT& item) const;
    void DrawTabButton(const DRAWITEMSTRUCT& item, SettingsTab tab);
    void DrawSectionTitle(const DRAWITEMSTRUCT& item);
    void DrawInterface(const DRAWITEMSTRUCT& item);
    void DrawSample(const DRAWITEMSTRUCT& item);
    void DrawIconSample(const DRAWITEMSTRUCT& item);
    UniqueIcon RenderIconSample(std::int32_t id, std::uint32_t size) const;
    HBRUSH OnControlColor(HDC dc, HWND control);
    void RebuildTabBrushes();
    void InvalidateSamples();
    void InvalidateControl(std::int32_t id);

    HWND Control(std::int32_t id) const { return GetDlgItem(window_, id); }
    bool IsTicked(std::int32_t id) const { return IsDlgButtonChecked(window_, id) == BST_CHECKED; }
    void Tick(std::int32_t id, bool ticked) { CheckDlgButton(window_, id, ticked ? BST_CHECKED : BST_UNCHECKED); }
    DialogFonts Fonts() const;
    HBRUSH TabBrush() const { return tab_brushes_[IndexOf(tab_)].Get(); }
    std::uint32_t Dpi() const { return GetDpiForWindow(window_); }

    HINSTANCE instance_;
    Point anchor_;
    AppSettings& settings_;
    AppSettings saved_;     // what the file holds
    AppSettings defaults_;  // to compare with
    SettingsDialogHost& host_;

    HWND window_ = nullptr;
    bool loading_ = false;  // the controls are being filled: their notifications are no edits
    bool closed_ = false;   // what was not saved has been put back, though a nested loop may keep the window
    SettingsTab tab_ = SettingsTab::Cpu;
    SavedGeneral saved_general_;

    UniqueFont bold_font_;
    std::array<COLORREF, TabCount> tab_colors_{};
    std::array<UniqueBrush, TabCount> tab_brushes_;
    std::vector<UniqueIcon> owned_icons_;  // of the push buttons, which share them
    UniqueIcon hardware_icon_;
    UniqueIcon graph_icon_;
    std::array<UniqueIcon, TabCount> tab_icons_;
    std::array<COLORREF, 16> custom_colors_{};  // of the colour dialog, for as long as this one is open

    DialogControls controls_;
    std::optional<ComboBoxes> combos_;     // once there is a window
    std::optional<WellNames> well_names_;  // while there is one
    std::optional<ControlRoles> roles_;    // the same
    MeasuredHeights heights_;
    std::array<Rect, HardwareCount> hardware_boxes_;
    std::array<Rect, GraphCount> graph_boxes_;
    std::array<std::vector<HardwareRow>, HardwareCount> hardware_rows_;
    InterfaceChoice interfaces_;
    SampleData samples_;
};

class SettingsDialog::Filling {
  public:
    explicit Filling(SettingsDialog& dialog) : dialog_(dialog), before_(std::exchange(dialog.loading_, true)) {}
    Filling(const Filling&) = delete;
    Filling& operator=(const Filling&) = delete;
    ~Filling() { dialog_.loading_ = before_; }

  private:
    SettingsDialog& dialog_;
    bool before_;
};

}  // namespace kestrane
