#pragma once

namespace kestrane {

/// The program's version, as "1.2.3". It stands once, in the build's description of the project.
extern const wchar_t* const ProgramVersion;

}  // namespace kestrane
