#include "settings/kinds.h"

#include <gtest/gtest.h>

namespace kestrane {
namespace {

TEST(Kinds, TheThreeNumberingsBelongTogether) {
    struct Row {
        MetricKind metric;
        std::size_t position;
        std::uint32_t iconId;
        std::optional<GraphKind> graph;
    };
    const Row rows[] = {
        {MetricKind::Cpu, 0, 1, GraphKind::Cpu},
        {MetricKind::Disk, 1, 2, GraphKind::Disk},
        {MetricKind::Memory, 2, 3, std::nullopt},
        {MetricKind::Network, 3, 4, GraphKind::Network},
    };
    for (const Row& row : rows) {
        EXPECT_EQ(IndexOf(row.metric), row.position);
        EXPECT_EQ(IconIdOf(row.metric), row.iconId);
        EXPECT_EQ(MetricOfIcon(row.iconId), row.metric);
        EXPECT_EQ(GraphOf(row.metric), row.graph);
        EXPECT_EQ(GraphOfIcon(row.iconId), row.graph);
        if (!row.graph) continue;
        EXPECT_EQ(MetricOf(*row.graph), row.metric);
        EXPECT_EQ(IconPosition(*row.graph), row.position);
    }
}

TEST(Kinds, AnIdThatIsNoIconHasNoMetric) {
    for (const std::uint32_t id : {0U, 5U, 0xFFFFU, 0xFFFFFFFFU}) {
        EXPECT_EQ(MetricOfIcon(id), std::nullopt) << id;
        EXPECT_EQ(GraphOfIcon(id), std::nullopt) << id;
    }
}

}  // namespace
}  // namespace kestrane
