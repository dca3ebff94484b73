#include "update/own_version.h"

#include <string_view>

#include "base/version.h"
#include "update/version_rules.h"

namespace kestrane {

std::string OwnVersion() {
    std::string bytes;
    for (const wchar_t c : std::wstring_view(ProgramVersion)) {
        bytes += static_cast<char>(c);  // ASCII
    }
    return NormalizeVersion(bytes);
}

}  // namespace kestrane
