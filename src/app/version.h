#pragma once

namespace kestrane {

/// The one version text of the program.
inline constexpr const wchar_t* ProgramVersion = L"0.1.0";

}  // namespace kestrane
