#pragma once
// The latest network reading, as the tooltip, the icon and the graph use it.
#include <cstdint>
#include <string>

namespace kestrane {

struct NetSample {
    bool hasRates = false;   // the two rates below are real
    bool connected = false;  // a chosen interface exists and is up
    std::uint64_t downBitsPerSec = 0;
    std::uint64_t upBitsPerSec = 0;
    std::wstring label;  // what the tooltip calls the connection; may be empty
};

}  // namespace kestrane
