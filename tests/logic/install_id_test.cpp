#include "update/install_id.h"

#include <gtest/gtest.h>

#include <cstddef>

#include "settings/ini_values.h"

namespace kestrane {
namespace {

using Random = std::array<std::uint8_t, 16>;

TEST(MakeInstallId, WritesTheBytesInOrder) {
    EXPECT_EQ(MakeInstallId(Random{0x01, 0x23, 0x45, 0x67, 0x89, 0xAB, 0x4D, 0xEF, 0x8E, 0xDC, 0xBA, 0x98, 0x76, 0x54,
                                   0x32, 0x10}),
              "01234567-89ab-4def-8edc-ba9876543210");
}

TEST(MakeInstallId, SetsVersionAndVariant) {
    Random ones{};
    ones.fill(0xFF);
    EXPECT_EQ(MakeInstallId(Random{}), "00000000-0000-4000-8000-000000000000");
    EXPECT_EQ(MakeInstallId(ones), "ffffffff-ffff-4fff-bfff-ffffffffffff");
}

TEST(MakeInstallId, AlwaysHasTheFormThatTheSettingsKeep) {
    for (std::uint32_t value = 0; value < 256; ++value) {
        for (std::size_t place = 0; place < Random().size(); ++place) {
            Random random{};
            random[place] = static_cast<std::uint8_t>(value);
            const std::string id = MakeInstallId(random);
            ASSERT_EQ(id.size(), 36U);
            for (std::size_t i = 0; i < id.size(); ++i) {
                const bool isHyphen = i == 8 || i == 13 || i == 18 || i == 23;
                EXPECT_NE(std::string_view(isHyphen ? "-" : "0123456789abcdef").find(id[i]), std::string_view::npos)
                    << id;
            }
            EXPECT_EQ(ParseInstallId(std::wstring(id.begin(), id.end())), id);
            EXPECT_EQ(id[14], '4') << id;
            EXPECT_NE(std::string_view("89ab").find(id[19]), std::string_view::npos) << id;
        }
    }
}

}  // namespace
}  // namespace kestrane
