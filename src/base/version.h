#pragma once

namespace kestrane {

/// The program's version, such as "1.2.3", defined only in CMakeLists.txt.
extern const wchar_t* const ProgramVersion;

}  // namespace kestrane
