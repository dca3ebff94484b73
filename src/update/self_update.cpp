#include "update/self_update.h"

#include <algorithm>
#include <cstddef>
#include <cwctype>

#include "base/paths.h"
#include "text/number_text.h"

namespace kestrane {

std::wstring NewFilePath(std::wstring_view executable) {
    return std::wstring(executable) + L".new";
}

std::wstring OldFilePath(std::wstring_view executable) {
    return std::wstring(executable) + L".old";
}

bool IsDevelopmentCopy(std::wstring_view executable) {
    std::wstring path(executable);
    std::ranges::transform(path, path.begin(),
                           [](wchar_t c) { return static_cast<wchar_t>(std::towlower(static_cast<std::wint_t>(c))); });
    return path.find(L"\\build\\") != std::wstring::npos;
}

std::wstring FolderOfExecutable(std::wstring_view executable) {
    const std::size_t slash = executable.find_last_of(L"\\/");
    return slash == std::wstring_view::npos ? L"." : std::wstring(executable.substr(0, slash));
}

std::wstring WriteProbePath(std::wstring_view folder, std::uint32_t processId, std::uint64_t tickCount) {
    const std::wstring name = L"kestrane-" + FormatUnsigned(processId) + L"-" + FormatUnsigned(tickCount) + L".tmp";
    return JoinPath(std::wstring(folder), {name});
}

std::wstring RestartCommandLine(std::wstring_view executable) {
    return (L"\"" + std::wstring(executable)).append(L"\" --updated");
}

}  // namespace kestrane
