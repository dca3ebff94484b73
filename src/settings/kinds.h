#pragma once
// The metrics and their three numberings: by icon position, by graph, and by the icon id that the shell knows.
//
//     metric     position   icon id   graph
//     CPU        0          1         1
//     disk       1          2         2
//     memory     2          3         none
//     network    3          4         0
#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>

namespace kestrane {

/// A metric; its number is the position of its icon and its index in every per-metric array.
enum class MetricKind : std::uint32_t { Cpu = 0, Disk = 1, Memory = 2, Network = 3 };
inline constexpr std::array MetricKinds{MetricKind::Cpu, MetricKind::Disk, MetricKind::Memory, MetricKind::Network};
inline constexpr std::size_t MetricCount = MetricKinds.size();

/// A graph's number. Loops over the graphs run in this order.
enum class GraphKind : std::uint32_t { Network = 0, Cpu = 1, Disk = 2 };
inline constexpr std::array GraphKinds{GraphKind::Network, GraphKind::Cpu, GraphKind::Disk};
inline constexpr std::size_t GraphCount = GraphKinds.size();

constexpr std::size_t IndexOf(MetricKind kind) {
    return static_cast<std::size_t>(kind);
}
constexpr std::size_t IndexOf(GraphKind kind) {
    return static_cast<std::size_t>(kind);
}

/// The notification icon id of a metric, 1 to 4.
constexpr std::uint32_t IconIdOf(MetricKind metric) {
    return static_cast<std::uint32_t>(metric) + 1;
}

/// The metric of an icon id; none for an id outside 1 to 4.
constexpr std::optional<MetricKind> MetricOfIcon(std::uint32_t iconId) {
    if (iconId < 1 || iconId > MetricCount) return std::nullopt;
    return MetricKinds[iconId - 1];
}

/// The metric shown by a graph.
constexpr MetricKind MetricOf(GraphKind graph) {
    constexpr std::array<MetricKind, GraphCount> Metrics{MetricKind::Network, MetricKind::Cpu, MetricKind::Disk};
    return Metrics[IndexOf(graph)];
}

/// The graph of a metric; memory has none.
constexpr std::optional<GraphKind> GraphOf(MetricKind metric) {
    for (const GraphKind graph : GraphKinds) {
        if (MetricOf(graph) == metric) return graph;
    }
    return std::nullopt;
}

/// The graph of an icon id; none for memory's and for unknown ids.
constexpr std::optional<GraphKind> GraphOfIcon(std::uint32_t iconId) {
    const std::optional<MetricKind> metric = MetricOfIcon(iconId);
    return metric ? GraphOf(*metric) : std::nullopt;
}

/// The icon position of a graph, for indexing `show`, `refresh_ms` and the like.
constexpr std::size_t IconPosition(GraphKind graph) {
    return IndexOf(MetricOf(graph));
}

// Arrays are indexed by these numbers, and icon ids are derived from them.
static_assert(IndexOf(MetricKind::Cpu) == 0 && IndexOf(MetricKind::Disk) == 1 && IndexOf(MetricKind::Memory) == 2 &&
              IndexOf(MetricKind::Network) == 3);
static_assert(IndexOf(GraphKind::Network) == 0 && IndexOf(GraphKind::Cpu) == 1 && IndexOf(GraphKind::Disk) == 2);
static_assert(MetricOfIcon(IconIdOf(MetricKind::Cpu)) == MetricKind::Cpu &&
              MetricOfIcon(IconIdOf(MetricKind::Network)) == MetricKind::Network);

}  // namespace kestrane
