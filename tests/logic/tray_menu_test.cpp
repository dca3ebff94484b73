#include "app/tray_menu.h"

#include <gtest/gtest.h>

#include "text/translation.h"

namespace kestrane {
namespace {

constexpr std::array<bool, GraphCount> NoneShown{};
constexpr std::array<bool, GraphCount> AllShown{true, true, true};
const std::optional<std::wstring> NoOffer;

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
    EXPECT_EQ(BuildTrayMenu(settings, NoneShown, NoOffer), expected);
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
    EXPECT_EQ(BuildTrayMenu(settings, AllShown, NoOffer), expected);
}

TEST_F(TrayMenuTest, AGraphThatIsNotShownCannotBePinned) {
    settings.cpu.pinned = true;
    const std::vector<TrayMenuEntry> menu = BuildTrayMenu(settings, {true, false, false}, NoOffer);
    EXPECT_EQ(menu[2].id, 104U);
    EXPECT_EQ(menu[3], Separator);
    for (const TrayMenuEntry& entry : menu)
        EXPECT_NE(entry.id, 105U);
}

TEST_F(TrayMenuTest, InEnglish) {
    SetLanguage(1);
    std::vector<std::wstring> texts;
    for (const TrayMenuEntry& entry : BuildTrayMenu(settings, AllShown, NoOffer)) {
        if (entry.id != 0) texts.push_back(entry.text);
    }
    const std::vector<std::wstring> expected{
        L"Performance",       L"Pin CPU graph", L"Pin disk graph", L"Pin network graph", L"Settings...",
        L"About kestrane...", L"Exit"};
    EXPECT_EQ(texts, expected);
}

TEST_F(TrayMenuTest, ANewerVersionStandsAtTheTop) {
    std::vector<TrayMenuEntry> expected{{110, L"Nueva versión 0.2.0 disponible...", 215}, Separator};
    for (const auto& shown : {NoneShown, AllShown}) {
        const std::vector<TrayMenuEntry> rest = BuildTrayMenu(settings, shown, NoOffer);
        expected.resize(2);
        expected.insert(expected.end(), rest.begin(), rest.end());
        EXPECT_EQ(BuildTrayMenu(settings, shown, L"0.2.0"), expected);
    }
}

TEST_F(TrayMenuTest, ANewerVersionInEnglish) {
    SetLanguage(1);
    const std::vector<TrayMenuEntry> menu = BuildTrayMenu(settings, NoneShown, L"1.2.3.4");
    EXPECT_EQ(menu[0], (TrayMenuEntry{110, L"New version 1.2.3.4 available...", 215}));
    EXPECT_EQ(menu[1], Separator);
}

TEST(StartsAProgram, IsSoForTheTaskManagerAlone) {
    for (std::uint32_t command = 0; command < 200; ++command)
        EXPECT_EQ(StartsAProgram(command), command == 103) << command;
}

}  // namespace
}  // namespace kestrane
