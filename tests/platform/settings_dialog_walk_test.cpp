// Random walks through the settings dialog against a model of what it must do.
#include "support/settings_dialog_world_win32.h"

namespace kestrane {
namespace {

TEST_F(SettingsDialogTest, OpensAndClosesWithoutAnEdit) {
    WithDialog([] {});
    EXPECT_EQ(settings, MakeDefaultSettings());
}

}  // namespace
}  // namespace kestrane
