#include "graph/core_grid.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <optional>

#include "base/geometry.h"
#include "text/number_text.h"

namespace kestrane {
namespace {

constexpr double WantedRatio = 1.8;  // width to height
constexpr double MinCellWidth = 12;
constexpr double MinCellHeight = 8;
constexpr double ScoreTolerance = 1e-9;

/// A row count and the shape of its cells; a score of 1 is the wanted ratio, higher is worse.
struct RowChoice {
    std::int32_t rows;
    double score;
    double area;
};

std::optional<RowChoice> RateRows(std::int32_t rows, std::int32_t count, double width, double height, double gap) {
    const double cols = std::ceil(static_cast<double>(count) / rows);
    const double cellWidth = (width - (cols - 1) * gap) / cols;
    const double cellHeight = (height - (rows - 1) * gap) / rows;
    if (cellWidth < MinCellWidth || cellHeight < MinCellHeight) return std::nullopt;
    const double ratio = cellWidth / cellHeight / WantedRatio;
    return RowChoice{rows, ratio >= 1 ? ratio : 1 / ratio, cellWidth * cellHeight};
}

bool IsBetter(const RowChoice& choice, const RowChoice& best) {
    if (choice.score < best.score - ScoreTolerance) return true;
    return std::abs(choice.score - best.score) <= ScoreTolerance && choice.area > best.area;
}

/// One part of a sequence of edges: from its own position to a gap before the next part, the last one to `length`.
struct Span {
    std::int32_t start;
    std::int32_t length;
};

Span SpanAt(const std::vector<std::int32_t>& edges, std::size_t index, std::int32_t length, std::int32_t gap) {
    const std::int32_t start = edges[index];
    const bool isLast = index + 2 == edges.size();
    const std::int32_t end = isLast ? length : SubtractSaturated(edges[index + 1], gap);
    return {start, std::max(SubtractSaturated(end, start), 1)};
}

}  // namespace

std::vector<GridCell> ComputeCoreGrid(std::int32_t count, std::int32_t width, std::int32_t height, std::int32_t gap) {
    gap = std::max(gap, 0);
    std::vector<GridCell> cells;
    const std::vector<std::int32_t> lengths = SplitIntoRows(count, ChooseGridRows(count, width, height, gap));
    const std::vector<std::int32_t> rowEdges = EdgePositions(height, static_cast<std::int32_t>(lengths.size()), gap);
    for (std::size_t row = 0; row < lengths.size(); ++row) {
        const Span vertical = SpanAt(rowEdges, row, height, gap);
        const std::vector<std::int32_t> colEdges = EdgePositions(width, lengths[row], gap);
        for (std::size_t col = 0; col + 1 < colEdges.size(); ++col) {
            const Span horizontal = SpanAt(colEdges, col, width, gap);
            cells.push_back({horizontal.start, vertical.start, horizontal.length, vertical.length});
        }
    }
    return cells;
}

std::int32_t ChooseGridRows(std::int32_t count, std::int32_t width, std::int32_t height, std::int32_t gap) {
    if (count < 2) return 1;
    std::optional<RowChoice> best;
    for (std::int32_t rows = 1; rows <= count; ++rows) {
        const auto choice = RateRows(rows, count, width, height, gap);
        if (choice && (!best || IsBetter(*choice, *best))) best = choice;
    }
    return best ? best->rows : 1;
}

std::vector<std::int32_t> SplitIntoRows(std::int32_t count, std::int32_t rows) {
    if (count < 1) return {};
    rows = std::clamp(rows, 1, count);
    std::vector<std::int32_t> lengths(static_cast<std::size_t>(rows), count / rows);
    std::for_each_n(lengths.begin(), count % rows, [](std::int32_t& length) { ++length; });
    return lengths;
}

std::vector<std::int32_t> EdgePositions(std::int32_t length, std::int32_t parts, std::int32_t gap) {
    if (parts < 0) return {};
    std::vector<std::int32_t> edges = {0};
    const std::int64_t gaps = (std::int64_t{parts} - 1) * gap;
    for (std::int32_t i = 1; i <= parts; ++i) {
        const double size = static_cast<double>(std::max<std::int64_t>(length - gaps, 0)) / parts;
        edges.push_back(AddSaturated(std::int64_t{i} * gap, static_cast<std::int64_t>(RoundHalfAway(i * size))));
    }
    return edges;
}

std::int32_t CellAtPoint(const std::vector<GridCell>& cells, std::int32_t x, std::int32_t y) {
    const auto holds = [](std::int64_t position, std::int64_t start, std::int64_t length) {
        return position >= start && position < start + length;
    };
    for (std::size_t i = 0; i < cells.size(); ++i) {
        const GridCell& cell = cells[i];
        if (holds(x, cell.x, cell.width) && holds(y, cell.y, cell.height)) return static_cast<std::int32_t>(i);
    }
    return -1;
}

}  // namespace kestrane
