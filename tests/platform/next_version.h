#pragma once

inline constexpr int NextVersionExitCode = 20;
