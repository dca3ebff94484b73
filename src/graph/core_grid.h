#pragma once
// The grid of the per-core view: one cell per logical processor, in the number of rows that brings the cells closest to
// the shape of a small graph. Rows with fewer cells come last, and their cells are wider:
//
//     [0][1][2][3]
//     [4 ][5 ][6 ]
#include <cstdint>
#include <vector>

namespace kestrane {

/// Relative to the grid's origin.
struct GridCell {
    std::int32_t x = 0;
    std::int32_t y = 0;
    std::int32_t width = 0;
    std::int32_t height = 0;

    bool operator==(const GridCell&) const = default;
};

/// One cell per processor, row by row; empty if `count` is below 1. A cell is at least 1 by 1, however small the grid.
std::vector<GridCell> ComputeCoreGrid(std::int32_t count, std::int32_t width, std::int32_t height, std::int32_t gap);

/// The number of rows whose cells are closest to 1.8 times as wide as high; 1 if all cells would be too small.
std::int32_t ChooseGridRows(std::int32_t count, std::int32_t width, std::int32_t height, std::int32_t gap);

/// The number of cells in each row. `rows` is clamped to 1..`count`; empty if `count` is below 1.
std::vector<std::int32_t> SplitIntoRows(std::int32_t count, std::int32_t rows);

/// The start of each of `parts` parts of `length` with `gap` between them, plus the end of the sequence, one gap after
/// the last part. Empty if `parts` is negative.
std::vector<std::int32_t> EdgePositions(std::int32_t length, std::int32_t parts, std::int32_t gap);

/// The index of the first cell that contains the point, left and top inclusive, right and bottom exclusive; -1 for
/// none.
std::int32_t CellAtPoint(const std::vector<GridCell>& cells, std::int32_t x, std::int32_t y);

}  // namespace kestrane
