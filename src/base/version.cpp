#include "base/version.h"

namespace kestrane {

const wchar_t* const ProgramVersion = KESTRANE_VERSION;

}  // namespace kestrane
