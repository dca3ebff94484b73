// The settings, as the user edits the controls of the settings dialog. Message boxes and the colour dialog run nested
// loops, in which the program can end; nothing that follows them depends on the window still being there.
#include "dialog/settings_dialog_win32.h"

#include <commdlg.h>
#include <windows.h>

#include <algorithm>

#include "dialog/combo_choices.h"
#include "dialog/dialog_messages_win32.h"
#include "dialog/page_edits.h"
#include "settings/ini_file_win32.h"
#include "text/language_win32.h"
#include "text/translation.h"

namespace kestrane {
namespace {

bool IsDiskBox(std::int32_t id) {
    return id == IdAllDisks || (id >= IdFirstDisk && id <= IdLastDisk);
}

bool IsFontControl(std::int32_t id, UINT code) {
    return (id == IdMemFont || id == IdMemFontSize || id == IdMemFontBold) &&
           (code == BN_CLICKED || code == CBN_SELCHANGE);
}

bool IsRefreshCombo(std::int32_t id) {
    return std::ranges::find(RefreshCombos, id) != RefreshCombos.end();
}

bool IsThresholdField(std::int32_t id) {
    return std::ranges::find(ThresholdFields, id) != ThresholdFields.end();
}

}  // namespace

void SettingsDialog::OnCommand(std::int32_t id, UINT code) {
    if (const auto key = ColorOfWell(id)) {
        if (code == BN_CLICKED) ChooseWellColor(*key);
        return;
    }
    if (OnPageButton(id, code)) return;
    if (code == CBN_DROPDOWN) combos_->OnDropDown(id);
    if (loading_) return;
    if (OnGraphControl(id, code) || OnDiskBox(id)) return;
    OnOtherControl(id, code);
}

/// The switches, the buttons at the end of each page, and the tabs.
bool SettingsDialog::OnPageButton(std::int32_t id, UINT code) {
    for (std::size_t i = 0; i < TabCount; ++i) {
        const auto tab = static_cast<SettingsTab>(i);
        const DialogTab& row = DialogTabs[i];
        if (id == row.show && id != NoId) {
            // The second click of a double click arrives as one.
            if (code == BN_CLICKED || code == BN_DOUBLECLICKED) OnSwitch(tab);
        } else if (id == row.save) {
            SavePage(tab);
        } else if (id == row.restore) {
            RestorePage(tab);
        } else if (id == row.button) {
            SelectTab(tab);
        } else {
            continue;
        }
        return true;
    }
    return false;
}

bool SettingsDialog::OnGraphControl(std::int32_t id, UINT code) {
    return std::ranges::any_of(GraphKinds, [&](GraphKind kind) { return OnGraphControl(kind, id, code); });
}

bool SettingsDialog::OnGraphControl(GraphKind kind, std::int32_t id, UINT code) {
    const GraphPanel& panel = GraphPanels[IndexOf(kind)];
    GraphSettings& graph = GraphSettingsOf(settings_, kind);
    const bool clicked = code == BN_CLICKED;
    const bool chosen = code == CBN_SELCHANGE;
    if (chosen && id == panel.opacity) {
        if (!ApplyOpacity(graph, combos_->Chosen(id))) return true;
    } else if (chosen && id == panel.margin) {
        graph.margin = ClampMargin(combos_->Chosen(id));
    } else if (chosen && id == panel.smoothing) {
        graph.smoothing = ClampSmoothing(combos_->Chosen(id));
    } else if (clicked && id == panel.lines) {
        graph.style = IsTicked(id) ? 1 : 0;
        LayoutDialog();
    } else if (clicked && id == panel.topmost) {
        graph.topmost = IsTicked(id);
    } else if (chosen && id == panel.fill) {
        if (!ApplyFill(graph, combos_->Chosen(id))) return true;
    } else if ((chosen && (id == panel.font || id == panel.size)) || (clicked && id == panel.bold)) {
        ApplyFont(ShownFont(panel.font, panel.size, panel.bold), graph.font_name, graph.font_size, graph.font_bold);
    } else {
        return false;
    }
    AfterEdit();
    return true;
}

/// "All" stays ticked while no disk is.
bool SettingsDialog::OnDiskBox(std::int32_t id) {
    if (!IsDiskBox(id)) return false;
    settings_.disks = id == IdAllDisks ? std::vector<std::int32_t>() : DisksOfBoxes(ShownDisks());
    FillDisks();
    AfterEdit();
    return true;
}

void SettingsDialog::OnOtherControl(std::int32_t id, UINT code) {
    if (id == IDCANCEL) return Cancel();
    if (id == IdAutostart || id == IdAutostartAllUsers) return UpdateButtons();
    if (id == IdLanguage) {
        if (code == CBN_SELCHANGE) ChangeLanguage();
        return;
    }
    if (id == IdCpuPerCore) {
        settings_.per_core = IsTicked(id);
    } else if (id == IdDiskActivity) {
        settings_.activity = IsTicked(id);
    } else if (id == IdMemBar) {
        settings_.bar = IsTicked(id);
    } else if (id == IdCheckUpdates) {
        settings_.check_updates = IsTicked(id);
    } else if (IsFontControl(id, code)) {
        ApplyFont(ShownFont(IdMemFont, IdMemFontSize, IdMemFontBold), settings_.font_name, settings_.font_size,
                  settings_.font_bold);
    } else if (IsRefreshCombo(id) && code == CBN_SELCHANGE) {
        for (const MetricKind metric : MetricKinds)
            ApplyPeriod(settings_, metric, combos_->Chosen(RefreshCombos[IndexOf(metric)]));
    } else if (IsThresholdField(id) && code == EN_CHANGE) {
        if (!StoreThresholds()) return;
        GenerateSamples(samples_, settings_.thresholds);
    } else {
        return;
    }
    AfterEdit();
}

void SettingsDialog::OnSwitch(SettingsTab tab) {
    if (ToggleShown(settings_, tab)) {
        AfterEdit();
    } else {
        Tell(L"Al menos un icono debe quedar visible.", MB_ICONINFORMATION);
    }
}

void SettingsDialog::OnToggleInterface(std::size_t item) {
    if (!IsWindowEnabled(Control(IdInterfaces)) || !ToggleItem(interfaces_, item)) return;
    StoreInterfaceChoice(interfaces_, settings_);
    FillInterfaceList();
    // From here the arrow keys go on. They follow the selection, although it is not shown.
    SendMessageW(Control(IdInterfaces), LB_SETCURSEL, item, 0);
    AfterEdit();
}

/// Takes effect and is saved at once; closing does not undo it.
void SettingsDialog::ChangeLanguage() {
    settings_.language = static_cast<Lang>(std::max(combos_->Chosen(IdLanguage), 0));
    SaveLanguage(settings_);
    SetLanguage(ResolveLanguage(settings_.language));
    host_.OnSettingsChanged();
    PostMessageW(window_, WM_RETRANSLATE, 0, 0);
}

/// False, without a change, while the three fields are not valid together.
bool SettingsDialog::StoreThresholds() {
    constexpr int LongestText = 7;
    std::array<std::wstring, ThresholdFields.size()> texts;
    std::ranges::transform(ThresholdFields, texts.begin(),
                           [this](ControlId field) { return WindowText(Control(field), LongestText); });
    const auto thresholds = ParseThresholds(texts);
    if (thresholds) settings_.thresholds = *thresholds;
    return thresholds.has_value();
}

FontEdit SettingsDialog::ShownFont(ControlId font, ControlId size, ControlId bold) const {
    return {combos_->ChosenFontName(font), combos_->Chosen(size), IsTicked(bold)};
}

/// A left click on a colour well. A transparent colour starts from its default.
void SettingsDialog::ChooseWellColor(ColorKey key) {
    const ColorValue& color = settings_.colors[key];
    ColorValue start = color != ColorNone ? color : defaults_.colors[key];
    if (start == ColorNone) start = 0;
    CHOOSECOLORW choose{};
    choose.lStructSize = sizeof choose;
    choose.hwndOwner = window_;
    choose.rgbResult = SwapRedBlue(start);
    choose.lpCustColors = custom_colors_.data();
    choose.Flags = CC_RGBINIT | CC_FULLOPEN | CC_ANYCOLOR;
    if (ChooseColorW(&choose) == FALSE || closed_) return;
    SetWellColor(key, SwapRedBlue(choose.rgbResult));
}

/// A right click, or the context-menu key: to transparent, and from there back to the colour that was saved.
bool SettingsDialog::OnContextMenu(HWND control) {
    const auto key = ColorOfWell(GetDlgCtrlID(control));
    if (!key || !IsWindowEnabled(control)) return false;
    const ColorValue solid = saved_.colors[*key] != ColorNone ? saved_.colors[*key] : defaults_.colors[*key];
    SetWellColor(*key, settings_.colors[*key] != ColorNone ? ColorNone : solid);
    return true;
}

void SettingsDialog::SetWellColor(ColorKey key, ColorValue color) {
    settings_.colors[key] = color;
    InvalidateControl(ColorWells[key]);
    AfterEdit();
}

void SettingsDialog::AfterEdit() {
    host_.OnSettingsChanged();
    RebuildTabBrushes();
    InvalidateSamples();
    UpdateButtons();
    NameWells();
    TellStates();
}

}  // namespace kestrane
