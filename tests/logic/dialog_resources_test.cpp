#include "dialog/dialog_resources.h"

#include <gtest/gtest.h>

#include "settings/app_settings.h"

namespace kestrane {
namespace {

TEST(TabIcons, AreInTheOrderOfTheTabs) {
    const auto iconOf = [](SettingsTab tab) { return TabIcons[static_cast<std::size_t>(tab)]; };
    EXPECT_EQ(iconOf(SettingsTab::Cpu), 210U);
    EXPECT_EQ(iconOf(SettingsTab::Disk), 213U);
    EXPECT_EQ(iconOf(SettingsTab::Memory), 211U);
    EXPECT_EQ(iconOf(SettingsTab::Network), 212U);
    EXPECT_EQ(iconOf(SettingsTab::General), 202U);
}

}  // namespace
}  // namespace kestrane
