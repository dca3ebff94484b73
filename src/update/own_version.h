#pragma once
#include <string>

namespace kestrane {

/// The running program's version, canonical, as bytes.
std::string OwnVersion();

}  // namespace kestrane
