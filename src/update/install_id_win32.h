#pragma once
#include <string>

namespace kestrane {

/// A new random identity of this installation; empty if the system's random source fails. UI thread.
std::string GenerateInstallId();

}  // namespace kestrane
