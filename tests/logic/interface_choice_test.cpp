#include "dialog/interface_choice.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <random>
#include <set>
#include <string>
#include <vector>

#include "text/number_text.h"
#include "text/translation.h"

namespace kestrane {
namespace {

NetRow Present(std::uint64_t key, const std::wstring& alias, const std::wstring& ip = L"10.0.0.1") {
    return {.key = key, .alias = alias, .ip = ip};
}

AppSettings Chosen(const std::vector<std::uint64_t>& interfaces, const std::vector<std::wstring>& aliases) {
    AppSettings settings = MakeDefaultSettings();
    settings.interfaces = interfaces;
    settings.interface_aliases = aliases;
    return settings;
}

/// "all | 1 Ethernet, 2* Wi-Fi | 9 VPN": all connections or some, the rows with the chosen ones starred, the missing.
std::wstring Summary(const InterfaceChoice& choice) {
    std::wstring text = choice.all_connections ? L"all |" : L"some |";
    for (const InterfaceRow& row : choice.interface_rows)
        text += L" " + FormatInteger(row.id) + (row.chosen ? L"* " : L" ") + row.name;
    text += L" |";
    for (const MissingInterface& missing : choice.missing_interfaces)
        text += L" " + FormatInteger(missing.id) + L" " + missing.alias;
    return text;
}

/// The stored choice: "2=Wi-Fi 9=VPN".
std::wstring Stored(const InterfaceChoice& choice) {
    AppSettings settings = Chosen({1, 2, 3}, {L"from before"});
    StoreInterfaceChoice(choice, settings);
    EXPECT_EQ(settings.interfaces.size(), settings.interface_aliases.size());
    std::wstring text;
    for (std::size_t i = 0; i < settings.interfaces.size(); ++i) {
        if (i > 0) text += L" ";
        text += FormatInteger(settings.interfaces[i]) + L"=" + settings.interface_aliases.at(i);
    }
    return text;
}

const std::vector<NetRow> Two{Present(1, L"Ethernet"), Present(2, L"Wi-Fi")};

TEST(BuildInterfaceChoice, FindsTheChosenInterfacesAmongThePresentOnes) {
    struct Row {
        const char* reason;
        std::vector<std::uint64_t> interfaces;
        std::vector<std::wstring> aliases;
        std::wstring summary;
    };
    const std::vector<Row> rows = {
        {"none", {}, {}, L"all | 1 Ethernet 2 Wi-Fi |"},
        {"by its id", {2}, {L"Wi-Fi"}, L"some | 1 Ethernet 2* Wi-Fi |"},
        {"by its id, without a name", {2}, {}, L"some | 1 Ethernet 2* Wi-Fi |"},
        {"by its id, under another name", {2}, {L"WLAN"}, L"some | 1 Ethernet 2* Wi-Fi |"},
        {"by its name", {8}, {L"Wi-Fi"}, L"some | 1 Ethernet 2* Wi-Fi |"},
        {"by its name in other letters", {8}, {L"wi-fI"}, L"some | 1 Ethernet 2* Wi-Fi |"},
        {"by neither", {8}, {L"Wi-Fi 2"}, L"some | 1 Ethernet 2 Wi-Fi | 8 Wi-Fi 2"},
        {"two, one without a name", {8, 1}, {L"VPN"}, L"some | 1* Ethernet 2 Wi-Fi | 8 VPN"},
        {"two with a row in common", {1, 8}, {L"Ethernet", L"ETHERNET"}, L"some | 1* Ethernet 2 Wi-Fi |"},
        {"the first row with its id or its name", {2}, {L"Ethernet"}, L"some | 1* Ethernet 2 Wi-Fi |"},
        {"missing ones keep their order", {9, 8}, {L"b", L"a"}, L"some | 1 Ethernet 2 Wi-Fi | 9 b 8 a"},
    };
    for (const Row& row : rows)
        EXPECT_EQ(Summary(BuildInterfaceChoice(Chosen(row.interfaces, row.aliases), Two)), row.summary) << row.reason;
}

TEST(BuildInterfaceChoice, OffersOnlyInterfacesThatUsersRecognise) {
    std::vector<NetRow> present{Present(1, L"without address", L""), Present(2, L"filter"), Present(3, L"loopback"),
                                Present(4, L"tunnel"), Present(5, L"Ethernet")};
    present[1].filter = true;
    present[2].loopback = true;
    present[3].tunnel = true;
    EXPECT_EQ(Summary(BuildInterfaceChoice(Chosen({1, 3}, {L"without address", L"loopback"}), present)),
              L"some | 5 Ethernet | 1 without address 3 loopback");
}

TEST(BuildInterfaceChoice, AnEmptyNameFindsNoInterfaceWithoutAName) {
    EXPECT_EQ(Summary(BuildInterfaceChoice(Chosen({8}, {L""}), {Present(1, L"")})), L"some | 1  | 8 ");
    EXPECT_EQ(Summary(BuildInterfaceChoice(Chosen({8}, {}), {Present(1, L"")})), L"some | 1  | 8 ");
}

TEST(BuildInterfaceChoice, WithoutAnyInterfaceOfTheMachine) {
    EXPECT_EQ(Summary(BuildInterfaceChoice(Chosen({}, {}), {})), L"all | |");
    EXPECT_EQ(Summary(BuildInterfaceChoice(Chosen({4}, {L"VPN"}), {})), L"some | | 4 VPN");
}

TEST(ToggleItem, FlipsWhatIsListed) {
    struct Row {
        const char* reason;
        AppSettings settings;
        std::vector<std::size_t> items;
        bool lastChanges;
        std::wstring summary;
        std::wstring stored;
    };
    const AppSettings all = Chosen({}, {});
    const AppSettings vpn = Chosen({9}, {L"VPN"});
    const std::vector<Row> rows = {
        {"all off", all, {0}, true, L"some | 1 Ethernet 2 Wi-Fi |", L""},
        {"all off and on", all, {0, 0}, true, L"all | 1 Ethernet 2 Wi-Fi |", L""},
        {"one", all, {0, 2}, true, L"some | 1 Ethernet 2* Wi-Fi |", L"2=Wi-Fi"},
        {"both, in the order of the rows",
         all,
         {0, 2, 1},
         true,
         L"some | 1* Ethernet 2* Wi-Fi |",
         L"1=Ethernet 2=Wi-Fi"},
        {"one and off again", all, {0, 2, 2}, true, L"some | 1 Ethernet 2 Wi-Fi |", L""},
        {"the rows keep their ticks behind all connections", all, {0, 2, 0}, true, L"all | 1 Ethernet 2* Wi-Fi |", L""},
        {"and show them again", all, {0, 2, 0, 0}, true, L"some | 1 Ethernet 2* Wi-Fi |", L"2=Wi-Fi"},
        {"beyond the rows", all, {0, 3}, false, L"some | 1 Ethernet 2 Wi-Fi |", L""},
        {"far beyond the rows", all, {0, SIZE_MAX}, false, L"some | 1 Ethernet 2 Wi-Fi |", L""},
        {"a row that is not listed", all, {1}, false, L"all | 1 Ethernet 2 Wi-Fi |", L""},
        {"a missing one stays, behind the chosen rows",
         vpn,
         {1},
         true,
         L"some | 1* Ethernet 2 Wi-Fi | 9 VPN",
         L"1=Ethernet 9=VPN"},
        {"and stays when no row is chosen", vpn, {1, 1}, true, L"some | 1 Ethernet 2 Wi-Fi | 9 VPN", L"9=VPN"},
        {"all connections forget it", vpn, {0}, true, L"all | 1 Ethernet 2 Wi-Fi |", L""},
        {"for good", vpn, {0, 0}, true, L"some | 1 Ethernet 2 Wi-Fi |", L""},
    };
    for (const Row& row : rows) {
        InterfaceChoice choice = BuildInterfaceChoice(row.settings, Two);
        bool changed = false;
        for (const std::size_t item : row.items)
            changed = ToggleItem(choice, item);
        EXPECT_EQ(changed, row.lastChanges) << row.reason;
        EXPECT_EQ(Summary(choice), row.summary) << row.reason;
        EXPECT_EQ(Stored(choice), row.stored) << row.reason;
    }
}

TEST(StoreInterfaceChoice, ChangesNothingElse) {
    AppSettings settings = Chosen({2}, {L"WLAN"});
    const AppSettings expected = Chosen({2}, {L"Wi-Fi"});
    StoreInterfaceChoice(BuildInterfaceChoice(settings, Two), settings);
    EXPECT_EQ(settings, expected) << "the name is brought up to date";
}

TEST(ListedItems, OnlyOneWhileItStandsForAll) {
    EXPECT_EQ(ListedItems(BuildInterfaceChoice(Chosen({}, {}), Two)), 1U);
    EXPECT_EQ(ListedItems(BuildInterfaceChoice(Chosen({2}, {}), Two)), 3U);
    EXPECT_EQ(ListedItems(BuildInterfaceChoice(Chosen({9}, {}), Two)), 3U) << "missing ones are not listed";
    EXPECT_EQ(ListedItems(BuildInterfaceChoice(Chosen({9}, {}), {})), 1U);
}

TEST(InterfaceItemAt, ShowsNumberNameAndAddress) {
    const std::vector<NetRow> present{Present(5, L"Ethernet", L"10.0.0.5"), Present(6, L"Wi-Fi", L"10.0.0.6")};
    const InterfaceChoice choice = BuildInterfaceChoice(Chosen({6}, {}), present);
    EXPECT_EQ(InterfaceItemAt(choice, 0), (InterfaceItem{false, L"1", L"Todas las conexiones", L""}));
    EXPECT_EQ(InterfaceItemAt(choice, 1), (InterfaceItem{false, L"2", L"Ethernet", L"10.0.0.5"}));
    EXPECT_EQ(InterfaceItemAt(choice, 2), (InterfaceItem{true, L"3", L"Wi-Fi", L"10.0.0.6"}));
    SetLanguage(ActiveEnglish);
    EXPECT_EQ(InterfaceItemAt({}, 0), (InterfaceItem{true, L"1", L"All connections", L""}));
    SetLanguage(ActiveSpanish);
}

/// Interfaces come and go while the user ticks and unticks. The model is a set: what the user wants.
TEST(InterfaceChoice, KeepsWhatTheUserWantsWhateverIsPresent) {
    std::mt19937 random(1);
    AppSettings settings = MakeDefaultSettings();
    InterfaceChoice choice;
    std::set<std::uint64_t> wanted;
    for (int step = 0; step < 20000; ++step) {
        if (random() % 8 == 0) {
            std::vector<NetRow> present;
            for (std::uint64_t key = 1; key <= 6; ++key) {
                if (random() % 2 == 0) present.push_back(Present(key, L"Net " + FormatInteger(key)));
            }
            choice = BuildInterfaceChoice(settings, present);
            wanted = {settings.interfaces.begin(), settings.interfaces.end()};
        }
        const std::size_t item = random() % ListedItems(choice);
        ASSERT_TRUE(ToggleItem(choice, item));
        std::set<std::uint64_t> present;
        for (const InterfaceRow& row : choice.interface_rows)
            present.insert(row.id);
        if (item > 0) {
            const std::uint64_t id = choice.interface_rows.at(item - 1).id;
            if (wanted.erase(id) == 0) wanted.insert(id);
        } else if (choice.all_connections) {
            std::erase_if(wanted, [&present](std::uint64_t id) { return !present.contains(id); });
        }

        StoreInterfaceChoice(choice, settings);
        const std::set<std::uint64_t> stored(settings.interfaces.begin(), settings.interfaces.end());
        ASSERT_EQ(stored, choice.all_connections ? std::set<std::uint64_t>{} : wanted) << "step " << step;
        ASSERT_EQ(stored.size(), settings.interfaces.size()) << "one twice, at step " << step;
        for (std::size_t i = 0; i < settings.interfaces.size(); ++i)
            ASSERT_EQ(settings.interface_aliases.at(i), L"Net " + FormatInteger(settings.interfaces[i]));
        for (std::size_t i = 1; i < ListedItems(choice); ++i)
            ASSERT_EQ(InterfaceItemAt(choice, i).checked, stored.contains(choice.interface_rows.at(i - 1).id));
    }
}

}  // namespace
}  // namespace kestrane
