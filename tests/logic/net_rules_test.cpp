#include "metrics/net_rules.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <limits>
#include <string>
#include <utility>
#include <vector>

#include "text/translation.h"

namespace kestrane {
namespace {

using testing::ElementsAre;

constexpr std::uint64_t Largest = std::numeric_limits<std::uint64_t>::max();

NetRow Adapter(std::uint64_t key, const wchar_t* alias, std::uint64_t inOctets, std::uint64_t outOctets) {
    NetRow row;
    row.key = key;
    row.alias = alias;
    row.operUp = true;
    row.hardware = true;
    row.inOctets = inOctets;
    row.outOctets = outOctets;
    return row;
}

NetRow With(NetRow row, bool NetRow::*flag, bool value) {
    row.*flag = value;
    return row;
}

/// A filter driver on an adapter. Windows gives it the flags and octets of that adapter.
NetRow FilterOver(const NetRow& adapter, int number) {
    NetRow row = With(adapter, &NetRow::filter, true);
    row.key = adapter.key + static_cast<std::uint64_t>(number) * 0x1000;
    row.alias += L"-WFP Native MAC Layer LightWeight Filter-000" + std::to_wstring(number);
    return row;
}

/// The table of a typical laptop: an adapter that is up, one that is down, a loopback, a tunnel, the system's
/// miniports, and seven filters on each adapter and miniport.
std::vector<NetRow> LaptopTable(std::uint64_t inOctets, std::uint64_t outOctets) {
    const NetRow ethernet = With(Adapter(2, L"Ethernet", 0, 0), &NetRow::operUp, false);
    const NetRow wifi = Adapter(3, L"Wi-Fi", inOctets, outOctets);
    const NetRow miniport = With(Adapter(4, L"Conexi\u00f3n de \u00e1rea local* 1", 7, 7), &NetRow::hardware, false);
    std::vector<NetRow> rows{
        With(With(Adapter(1, L"Loopback", 900, 900), &NetRow::loopback, true), &NetRow::hardware, false),
        With(With(Adapter(5, L"Teredo", 800, 800), &NetRow::tunnel, true), &NetRow::hardware, false)};
    for (const NetRow& adapter : {ethernet, wifi, miniport}) {
        for (int number = 0; number < 7; ++number)
            rows.push_back(FilterOver(adapter, number));
    }
    rows.insert(rows.end(), {ethernet, wifi, miniport});
    return rows;
}

std::vector<std::uint64_t> Keys(const NetView& view) {
    std::vector<std::uint64_t> keys;
    for (const NetCounters& counters : view.counters)
        keys.push_back(counters.key);
    return keys;
}

TEST(SelectInterfaces, AllConnectionsCountEachAdapterOnce) {
    const std::vector<NetRow> rows = LaptopTable(5000, 600);
    ASSERT_EQ(rows.size(), 26u);
    const NetView view = SelectInterfaces(rows, {}, {});
    EXPECT_TRUE(view.found);
    EXPECT_TRUE(view.connected);
    EXPECT_EQ(view.label, L"Todas las conexiones");
    EXPECT_EQ(view.inOctets, 5000u);
    EXPECT_EQ(view.outOctets, 600u);
    EXPECT_THAT(Keys(view), ElementsAre(3));
    SetLanguage(ActiveEnglish);
    EXPECT_EQ(SelectInterfaces(rows, {}, {}).label, L"All connections");
    SetLanguage(ActiveSpanish);
}

TEST(SelectInterfaces, AllConnectionsTakeHardwareThatIsUp) {
    struct Row {
        const char* what;
        bool NetRow::*flag;
        bool value;
        bool counted;
    };
    for (const Row& row : std::vector<Row>{
             {"down", &NetRow::operUp, false, false},
             {"no hardware", &NetRow::hardware, false, false},
             {"filter", &NetRow::filter, true, false},
             {"loopback", &NetRow::loopback, true, false},
             {"hardware tunnel", &NetRow::tunnel, true, true},
         }) {
        const NetView view = SelectInterfaces({With(Adapter(9, L"x", 10, 20), row.flag, row.value)}, {}, {});
        EXPECT_EQ(!view.counters.empty(), row.counted) << row.what;
        EXPECT_EQ(view.inOctets, row.counted ? 10u : 0u) << row.what;
        EXPECT_TRUE(view.connected) << row.what;  // in every case
    }
    EXPECT_TRUE(SelectInterfaces({}, {}, {L"ignored"}).found);
}

TEST(SelectInterfaces, ChosenOnesAreFoundByKeyOrByName) {
    const std::vector<NetRow> rows{With(Adapter(10, L"Wi-Fi", 1, 1), &NetRow::filter, true),
                                   Adapter(11, L"Wi-Fi", 20, 30),
                                   With(Adapter(12, L"Ethernet", 400, 500), &NetRow::operUp, false),
                                   Adapter(13, L"Wi-Fi", 6000, 7000), Adapter(11, L"Second of this key", 9, 9)};
    struct Row {
        const char* what;
        std::vector<std::uint64_t> interfaces;
        std::vector<std::wstring> aliases;
        bool found;
        bool connected;
        const wchar_t* label;
        std::vector<std::uint64_t> keys;
    };
    for (const Row& row : std::vector<Row>{
             {"by key", {11}, {L"Old name"}, true, true, L"Wi-Fi", {11}},
             {"by key, without names", {11}, {}, true, true, L"Wi-Fi", {11}},
             {"a filter by key", {10}, {L""}, true, true, L"Wi-Fi", {10}},
             {"by name, the first that is no filter", {99}, {L"Wi-Fi"}, true, true, L"Wi-Fi", {11}},
             {"by name in another case", {99}, {L"wI-fI"}, true, true, L"Wi-Fi", {11}},
             {"not by a part of the name", {99}, {L"Wi-F"}, false, false, L"Wi-F", {}},
             {"not by a longer name", {99}, {L"Wi-Fi "}, false, false, L"Wi-Fi ", {}},
             {"vanished", {99}, {L"Docking station"}, false, false, L"Docking station", {}},
             {"vanished without a name", {99}, {}, false, false, L"", {}},
             {"down", {12}, {L""}, true, false, L"Ethernet", {}},
             {"one up and one down", {12, 11}, {L"a", L"b"}, true, true, L"Ethernet, Wi-Fi", {11}},
             {"one vanished and one up", {99, 13}, {L"Gone", L"b"}, true, true, L"Gone, Wi-Fi", {13}},
             {"fewer names than interfaces", {98, 99}, {L"Gone"}, false, false, L"Gone, ", {}},
             {"an empty name first", {99, 11}, {}, true, true, L"Wi-Fi", {11}},
             {"twice", {11, 11}, {}, true, true, L"Wi-Fi, Wi-Fi", {11, 11}},
             {"in the order chosen", {13, 11}, {}, true, true, L"Wi-Fi, Wi-Fi", {13, 11}},
         }) {
        SCOPED_TRACE(row.what);
        const NetView view = SelectInterfaces(rows, row.interfaces, row.aliases);
        EXPECT_EQ(view.found, row.found);
        EXPECT_EQ(view.connected, row.connected);
        EXPECT_EQ(view.label, row.label);
        EXPECT_EQ(Keys(view), row.keys);
    }
    EXPECT_EQ(SelectInterfaces(rows, {11, 11}, {}).inOctets, 40u);
    EXPECT_EQ(SelectInterfaces(rows, {11, 13}, {}).outOctets, 7030u);
    EXPECT_FALSE(SelectInterfaces({}, {11}, {L"Wi-Fi"}).found);
}

TEST(SelectInterfaces, TheSumHoldsThoseThatAreUp) {
    const NetRow down = With(Adapter(12, L"Ethernet", 400, 500), &NetRow::operUp, false);
    const NetRow up = Adapter(11, L"Wi-Fi", 20, 30);
    for (const std::vector<std::uint64_t>& chosen : {std::vector<std::uint64_t>{11, 12}, {12, 11}}) {
        const NetView view = SelectInterfaces({down, up}, chosen, {});
        EXPECT_EQ(view.inOctets, 20u);
        EXPECT_EQ(view.outOctets, 30u);
        EXPECT_TRUE(view.connected);
    }
    const NetView none = SelectInterfaces({down}, {12}, {});
    EXPECT_EQ(none.inOctets, 0u);
    EXPECT_EQ(none.outOctets, 0u);
}

TEST(SelectInterfaces, AnEmptyNameMatchesNoUnnamedRow) {
    EXPECT_FALSE(SelectInterfaces({Adapter(5, L"", 1, 1)}, {99}, {L""}).found);
}

TEST(SumCounterDeltas, AddsGrowthByKey) {
    struct Row {
        const char* what;
        std::vector<NetCounters> previous;
        std::vector<NetCounters> current;
        std::uint64_t in;
        std::uint64_t out;
    };
    for (const Row& row : std::vector<Row>{
             {"grown", {{1, 100, 10}}, {{1, 150, 17}}, 50, 7},
             {"still", {{1, 100, 10}}, {{1, 100, 10}}, 0, 0},
             {"one direction was reset", {{1, 5000, 10}}, {{1, 100, 17}}, 0, 7},
             {"no wrap is assumed", {{1, Largest, 0}}, {{1, 5, 0}}, 0, 0},
             {"new", {}, {{1, 5000, 6000}}, 0, 0},
             {"vanished", {{1, 100, 10}, {2, 7, 7}}, {{2, 8, 9}}, 1, 2},
             {"two in another order", {{1, 100, 10}, {2, 7, 7}}, {{2, 10, 10}, {1, 101, 12}}, 4, 5},
             {"the first of two", {{1, 100, 0}, {1, 0, 0}}, {{1, 101, 0}}, 1, 0},
             {"chosen twice", {{1, 100, 0}, {1, 100, 0}}, {{1, 101, 0}, {1, 101, 0}}, 2, 0},
             {"all of it", {{1, 0, 0}}, {{1, Largest, 1}}, Largest, 1},
             {"nothing", {}, {}, 0, 0},
         }) {
        const OctetSums sums = SumCounterDeltas(row.previous, row.current);
        EXPECT_EQ(sums.in, row.in) << row.what;
        EXPECT_EQ(sums.out, row.out) << row.what;
    }
}

TEST(BitsPerSecond, RoundsAndNeverOverflows) {
    struct Row {
        std::uint64_t octets;
        std::uint64_t elapsedMs;
        std::uint64_t rate;
    };
    for (const Row& row : std::vector<Row>{
             {0, 1000, 0},
             {1000, 1000, 8000},
             {1, 3, 2667},   // 2666.67
             {1, 16000, 1},  // exactly a half
             {1, 16001, 0},
             {5, 0, 0},
             {Largest, 0, 0},
             {0, 0, 0},
             {125000000, 1000, 1000000000},
             {1, 1, 8000},
             {1, Largest, 0},
             {Largest, 1, Largest},  // 8000 times too large for the type
             {Largest, 7999, Largest},
             {Largest, 8000, Largest},  // rounds up to 2^64, just too large
             {Largest, 16000, std::uint64_t{1} << 63},
         }) {
        EXPECT_EQ(BitsPerSecond(row.octets, row.elapsedMs), row.rate) << row.octets << " in " << row.elapsedMs;
    }
}

/// Drives a sampler tick by tick.
struct Driver {
    NetSample Tick(std::vector<NetCounters> counters, const std::vector<std::uint64_t>& interfaces = {},
                   std::uint64_t elapsedMs = 1000) {
        now += elapsedMs;
        NetView view;
        view.found = true;
        view.connected = true;
        view.counters = std::move(counters);
        return AdvanceNetSampler(sampler, view, interfaces, now);
    }

    NetSampler sampler;
    std::uint64_t now = 123456;
};

TEST(AdvanceNetSampler, RatesComeWithTheThirdTick) {
    Driver driver;
    EXPECT_FALSE(driver.Tick({{1, 1000, 0}}).hasRates);
    const NetSample second = driver.Tick({{1, 2000, 0}});
    EXPECT_FALSE(second.hasRates);
    EXPECT_EQ(second.downBitsPerSec, 0u);
    const NetSample third = driver.Tick({{1, 3000, 500}});
    EXPECT_TRUE(third.hasRates);
    EXPECT_EQ(third.downBitsPerSec, 8000u);
    EXPECT_EQ(third.upBitsPerSec, 4000u);
}

TEST(AdvanceNetSampler, AChangeOfTheInterfacesSettlesAnew) {
    struct Row {
        const char* what;
        std::vector<std::uint64_t> before;
        std::vector<std::uint64_t> after;
    };
    for (const Row& row : std::vector<Row>{{"another", {1}, {2}},
                                           {"one more", {1}, {1, 2}},
                                           {"one less", {1, 2}, {1}},
                                           {"reordered", {1, 2}, {2, 1}},
                                           {"to all", {1}, {}},
                                           {"from all", {}, {1}}}) {
        SCOPED_TRACE(row.what);
        Driver driver;
        for (int tick = 1; tick < 10; ++tick)
            EXPECT_EQ(driver.Tick({}, row.before).hasRates, tick > 2) << tick;
        for (int tick = 10; tick < 15; ++tick)
            EXPECT_EQ(driver.Tick({}, row.after).hasRates, tick > 11) << tick;
    }
}

TEST(AdvanceNetSampler, AChangeWhileSettlingStartsItAnew) {
    Driver driver;
    EXPECT_FALSE(driver.Tick({}, {1}).hasRates);
    EXPECT_FALSE(driver.Tick({}, {2}).hasRates);
    EXPECT_FALSE(driver.Tick({}, {2}).hasRates);
    EXPECT_TRUE(driver.Tick({}, {2}).hasRates);
}

TEST(AdvanceNetSampler, MeasuresTheTimeThatPassed) {
    Driver driver;
    for (int tick = 0; tick < 3; ++tick)
        driver.Tick({{1, 0, 0}});
    EXPECT_EQ(driver.Tick({{1, 1000, 0}}, {}, 500).downBitsPerSec, 16000u);
    EXPECT_EQ(driver.Tick({{1, 2000, 0}}, {}, 2000).downBitsPerSec, 4000u);
    EXPECT_EQ(driver.Tick({{1, 3000, 0}}, {}, 8 * 3600 * 1000).downBitsPerSec, 0u);  // a night asleep: no spike
    const NetSample twice = driver.Tick({{1, 4000, 0}}, {}, 0);
    EXPECT_TRUE(twice.hasRates);
    EXPECT_EQ(twice.downBitsPerSec, 0u);
}

TEST(AdvanceNetSampler, AResetCountsNothingAndCountingGoesOnFromThere) {
    Driver driver;
    for (int tick = 0; tick < 3; ++tick)
        driver.Tick({{1, 5000, 5000}});
    const NetSample reset = driver.Tick({{1, 100, 6000}});
    EXPECT_EQ(reset.downBitsPerSec, 0u);
    EXPECT_EQ(reset.upBitsPerSec, 8000u);
    EXPECT_EQ(driver.Tick({{1, 600, 6000}}).downBitsPerSec, 4000u);
}

TEST(AdvanceNetSampler, AnAdapterInstalledAnewCountsFromItsSecondTick) {
    Driver driver;
    const std::vector<std::uint64_t> chosen{11};
    const auto tick = [&](std::uint64_t key, std::uint64_t octets) {
        driver.now += 1000;
        const NetView view = SelectInterfaces({Adapter(key, L"WI-FI", octets, 0)}, chosen, {L"wi-fi"});
        return AdvanceNetSampler(driver.sampler, view, chosen, driver.now);
    };
    for (int i = 0; i < 3; ++i)
        tick(11, 5000);
    const NetSample first = tick(77, 9000);
    EXPECT_TRUE(first.hasRates);  // the selection is the same, so it does not settle again
    EXPECT_EQ(first.downBitsPerSec, 0u);
    EXPECT_EQ(tick(77, 10000).downBitsPerSec, 8000u);
}

TEST(AdvanceNetSampler, ATableThatFailsOnceGivesTwoTicksOfZero) {
    Driver driver;
    for (const std::uint64_t octets : {1000u, 2000u, 3000u})
        driver.Tick({{1, octets, 0}});
    const NetSample failed = driver.Tick({});
    EXPECT_TRUE(failed.hasRates);
    EXPECT_EQ(failed.downBitsPerSec, 0u);
    EXPECT_EQ(driver.Tick({{1, 5000, 0}}).downBitsPerSec, 0u);
    EXPECT_EQ(driver.Tick({{1, 6000, 0}}).downBitsPerSec, 8000u);
}

TEST(AdvanceNetSampler, ConnectedNeedsAnInterfaceThatExists) {
    for (const bool found : {false, true}) {
        for (const bool connected : {false, true}) {
            NetSampler sampler;
            NetView view;
            view.found = found;
            view.connected = connected;
            view.label = L"label";
            const NetSample sample = AdvanceNetSampler(sampler, view, {}, 1);
            EXPECT_EQ(sample.connected, found && connected);
            EXPECT_EQ(sample.label, L"label");
        }
    }
}

TEST(AdvanceNetSampler, EverythingDownIsConnectedAtZero) {
    NetSampler sampler;
    NetSample sample;
    for (std::uint64_t tick = 1; tick <= 3; ++tick) {
        std::vector<NetRow> rows = LaptopTable(tick * 1000, 0);
        for (NetRow& row : rows)
            row.operUp = false;
        sample = AdvanceNetSampler(sampler, SelectInterfaces(rows, {}, {}), {}, tick * 1000);
    }
    EXPECT_TRUE(sample.connected);
    EXPECT_TRUE(sample.hasRates);
    EXPECT_EQ(sample.downBitsPerSec, 0u);
}

TEST(AdvanceNetSampler, FiltersDoNotMultiplyTheRate) {
    NetSampler sampler;
    NetSample sample;
    for (std::uint64_t tick = 1; tick <= 3; ++tick) {
        const NetView view = SelectInterfaces(LaptopTable(tick * 1000, tick * 500), {}, {});
        sample = AdvanceNetSampler(sampler, view, {}, tick * 1000);
    }
    EXPECT_EQ(sample.downBitsPerSec, 8000u);
    EXPECT_EQ(sample.upBitsPerSec, 4000u);
}

TEST(AreAddressesDue, AtFirstAndOnceAMinute) {
    NetSampler sampler;
    EXPECT_TRUE(AreAddressesDue(sampler, 0));
    EXPECT_TRUE(AreAddressesDue(sampler, 5));
    sampler.addressesTick = 1000;
    EXPECT_FALSE(AreAddressesDue(sampler, 1000));
    EXPECT_FALSE(AreAddressesDue(sampler, 60999));
    EXPECT_TRUE(AreAddressesDue(sampler, 61000));
}

TEST(FillAddresses, TheFirstOfAKeyHolds) {
    std::vector<NetRow> rows{Adapter(1, L"a", 0, 0), Adapter(2, L"b", 0, 0), Adapter(3, L"c", 0, 0)};
    rows[1].ip = L"10.0.0.2";
    FillAddresses(rows, {{3, L"10.0.0.3"}, {1, L"10.0.0.1"}, {1, L"10.0.0.9"}, {4, L"10.0.0.4"}});
    EXPECT_EQ(rows[0].ip, L"10.0.0.1");
    EXPECT_EQ(rows[1].ip, L"10.0.0.2");
    EXPECT_EQ(rows[2].ip, L"10.0.0.3");
}

TEST(IsListableInterface, WantsAnAddressAndARealInterface) {
    NetRow row = Adapter(1, L"a", 0, 0);
    EXPECT_FALSE(IsListableInterface(row));
    row.ip = L"10.0.0.1";
    EXPECT_TRUE(IsListableInterface(row));
    for (bool NetRow::*flag : {&NetRow::filter, &NetRow::loopback, &NetRow::tunnel}) {
        EXPECT_FALSE(IsListableInterface(With(row, flag, true)));
    }
    EXPECT_TRUE(IsListableInterface(With(With(row, &NetRow::operUp, false), &NetRow::hardware, false)));
}

TEST(FormatIpv4, WritesTheFourBytes) {
    EXPECT_EQ(FormatIpv4({192, 168, 0, 1}), L"192.168.0.1");
    EXPECT_EQ(FormatIpv4({0, 0, 0, 0}), L"0.0.0.0");
    EXPECT_EQ(FormatIpv4({255, 255, 255, 255}), L"255.255.255.255");
}

}  // namespace
}  // namespace kestrane
