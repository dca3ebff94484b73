#include "history/series.h"

namespace kestrane {

double ValueAtAge(const SeriesRef& ref, std::uint64_t age) {
    if (ref.counterRing != nullptr) {
        return static_cast<double>(SampleAtAgeOr<std::uint64_t>(*ref.counterRing, age, 0));
    }
    if (ref.valueRing != nullptr) return SampleAtAgeOr(*ref.valueRing, age, 0.0);
    return 0.0;
}

std::uint64_t SeriesCount(const SeriesRef& ref) {
    if (ref.counterRing != nullptr) return ref.counterRing->count;
    if (ref.valueRing != nullptr) return ref.valueRing->count;
    return 0;
}

}  // namespace kestrane
