// The frame of the settings dialog: opening, tabs, layout, placing and closing, with real windows.
#include "support/settings_dialog_world_win32.h"

namespace kestrane {
namespace {

TEST_F(SettingsDialogTest, OpensOnTheCpuPage) {
    WithDialog([] {
        EXPECT_EQ(TextOfWindow(Dialog()), L"Ajustes de kestrane");
        EXPECT_TRUE(IsShown(IdCpuShow));
        EXPECT_FALSE(IsShown(IdDiskShow));
    });
}

}  // namespace
}  // namespace kestrane
