#include "app/tray_menu.h"

#include <gtest/gtest.h>

#include "text/translation.h"

namespace kestrane {
namespace {

constexpr std::array<bool, GraphCount> NoneShown{};
constexpr std::array<bool, GraphCount> AllShown{true, true, true};

class TrayMenuTest : public testing::Test {
  protected:
    ~TrayMenuTest() override { SetLanguage(0); }
    AppSettings settings = MakeDefaultSettings();
};

const TrayMenuEntry Separator{};

TEST_F(TrayMenuTest, WithoutGraphs) {
    const std::vector<TrayMenuEntry> expected{
        {103, L"Rendimiento", 201},
        Separator,
        {100, L"Ajustes...", 202},
        Separator,
        {101, L"Acerca de kestrane...", 203},
        {102, L"Salir", 204},
    };
    EXPECT_EQ(BuildTrayMenu(settings, NoneShown), expected);
}

TEST_F(TrayMenuTest, PinEntriesStandInTheOrderCpuDiskNetwork) {
    settings.disk.pinned = true;
    const std::vector<TrayMenuEntry> expected{
        {103, L"Rendimiento", 201},
        Separator,
        {105, L"Fijar gráfica de CPU", 0},
        {106, L"Fijar gráfica de disco", 0, true},
        {104, L"Fijar gráfica de red", 0},
        Separator,
        {100, L"Ajustes...", 202},
        Separator,
        {101, L"Acerca de kestrane...", 203},
        {102, L"Salir", 204},
    };
    EXPECT_EQ(BuildTrayMenu(settings, AllShown), expected);
}

TEST_F(TrayMenuTest, AGraphThatIsNotShownCannotBePinned) {
    settings.cpu.pinned = true;
    const std::vector<TrayMenuEntry> menu = BuildTrayMenu(settings, {true, false, false});
    EXPECT_EQ(menu[2].id, 104U);
    EXPECT_EQ(menu[3], Separator);
    for (const TrayMenuEntry& entry : menu)
        EXPECT_NE(entry.id, 105U);
}

TEST_F(TrayMenuTest, InEnglish) {
    SetLanguage(1);
    std::vector<std::wstring> texts;
    for (const TrayMenuEntry& entry : BuildTrayMenu(settings, AllShown)) {
        if (entry.id != 0) texts.push_back(entry.text);
    }
    const std::vector<std::wstring> expected{
        L"Performance",       L"Pin CPU graph", L"Pin disk graph", L"Pin network graph", L"Settings...",
        L"About kestrane...", L"Exit"};
    EXPECT_EQ(texts, expected);
}

TEST(StartsAProgram, IsSoForTheTaskManagerAlone) {
    for (std::uint32_t command = 0; command < 200; ++command)
        EXPECT_EQ(StartsAProgram(command), command == 103) << command;
}

}  // namespace
}  // namespace kestrane
