// Edits on the pages of the settings dialog, and what reaches the file and when.
#include "settings/settings_tab.h"
#include "support/settings_dialog_world_win32.h"

namespace kestrane {
namespace {

TEST_F(SettingsDialogTest, AnEditShowsAtOnceAndClosingPutsItBack) {
    WithDialog([this] {
        Click(IdCpuPerCore);
        EXPECT_TRUE(settings.per_core);
        EXPECT_GT(host.changes, 0);
        EXPECT_TRUE(IsEnabled(IdCpuSave));
        ChooseItem(IdCpuRefresh, 0);
        EXPECT_EQ(settings.refresh_ms[0], 500U);
    });
    EXPECT_EQ(settings, MakeDefaultSettings());
}

}  // namespace
}  // namespace kestrane
