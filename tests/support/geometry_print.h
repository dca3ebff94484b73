#pragma once
// Prints geometry records in GoogleTest failures.
#include <ostream>

#include "base/geometry.h"

namespace kestrane {

inline void PrintTo(const Rect& rect, std::ostream* out) {
    *out << "(" << rect.left << ", " << rect.top << ", " << rect.right << ", " << rect.bottom << ")";
}

inline void PrintTo(const Point& point, std::ostream* out) {
    *out << "(" << point.x << ", " << point.y << ")";
}

}  // namespace kestrane
