#include "update/download_win32.h"

#include <windows.h>

#include <winhttp.h>

#include <array>
#include <cstddef>
#include <vector>

#include "base/handles_win32.h"
#include "text/text_util.h"
#include "update/file_hash_win32.h"
#include "update/https_win32.h"
#include "update/own_version.h"
#include "update/self_update.h"
#include "update/update_rules.h"

namespace kestrane {
namespace {

constexpr std::size_t BufferBytes = 81920;
constexpr std::size_t HostCapacity = 256;
constexpr std::size_t PathCapacity = 2048;

struct Address {
    std::wstring host;
    std::wstring path;
};

/// False if it is no address, or not one of HTTPS. The port does not matter.
bool SplitAddress(const std::string& url, Address& address) {
    const std::wstring text = WidenBytes(url);
    std::array<wchar_t, HostCapacity> host{};
    std::array<wchar_t, PathCapacity> path{};
    URL_COMPONENTS parts{};
    parts.dwStructSize = sizeof(parts);
    parts.lpszHostName = host.data();
    parts.dwHostNameLength = static_cast<DWORD>(host.size());
    parts.lpszUrlPath = path.data();
    parts.dwUrlPathLength = static_cast<DWORD>(path.size());
    if (!WinHttpCrackUrl(text.c_str(), static_cast<DWORD>(text.size()), 0, &parts)) return false;
    if (parts.nScheme != INTERNET_SCHEME_HTTPS) return false;
    address.host.assign(host.data(), parts.dwHostNameLength);
    address.path.assign(path.data(), parts.dwUrlPathLength);
    return true;
}

/// With the error of the last call.
DownloadFailure SaveFailure() {
    return {.step = DownloadStep::Save, .code = GetLastError()};
}

bool WriteAll(const UniqueFile& file, const std::vector<char>& buffer, std::size_t bytes) {
    DWORD written = 0;
    SetLastError(ERROR_DISK_FULL);  // a short write need not set it, and that is what it means
    return WriteFile(file.Get(), buffer.data(), static_cast<DWORD>(bytes), &written, nullptr) && written == bytes;
}

/// Reads the answer's body into the file, up to the part that makes it larger than published. `total` is what arrived.
DownloadFailure SaveBody(const UniqueHttpHandle& request, const UniqueFile& file, std::uint64_t size,
                         const std::atomic<bool>& cancel, const DownloadProgress& progress, std::uint64_t& total) {
    std::vector<char> buffer(BufferBytes);
    for (;;) {
        if (cancel) return {.step = DownloadStep::Cancelled};
        std::size_t read = 0;
        if (!ReadHttpBody(request.Get(), buffer.data(), buffer.size(), read)) return {.step = DownloadStep::Connection};
        if (read == 0) break;
        if (!WriteAll(file, buffer, read)) return SaveFailure();
        total += read;
        if (total > size) return {};
        if (progress.report != nullptr) progress.report(progress.context, total, size);
    }
    // Without this, a power cut soon after the swap could leave an executable with no content.
    return FlushFileBuffers(file.Get()) ? DownloadFailure() : SaveFailure();
}

/// Downloads into the file, which is closed afterwards. `total` is its size.
DownloadFailure Fetch(const UpdateInfo& info, const Address& address, const std::wstring& newFile,
                      const std::atomic<bool>& cancel, const DownloadProgress& progress, std::uint64_t& total) {
    // Closed in the opposite order.
    const UniqueHttpHandle session = OpenHttpSession(UserAgent(OwnVersion()));
    if (!session) return {.step = DownloadStep::Answer};
    UniqueHttpHandle connection;
    const UniqueHttpHandle request =
        SendHttpsRequest(session.Get(), {.host = address.host, .path = address.path}, connection);
    if (!request) return {.step = DownloadStep::Answer};
    const UniqueFile file(
        CreateFileW(newFile.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr));
    if (!file) return SaveFailure();
    return SaveBody(request, file, info.size, cancel, progress, total);
}

bool HasHash(const std::wstring& path, const std::string& expected) {
    std::string digest;
    return HashFileSha256(path, digest) && digest == expected;
}

}  // namespace

bool DownloadUpdate(const UpdateInfo& info, const std::wstring& executable, const std::atomic<bool>& cancel,
                    const DownloadProgress& progress, DownloadFailure& failure) {
    Address address;
    if (!SplitAddress(info.url, address)) {
        failure = {.step = DownloadStep::Address};
        return false;
    }
    const std::wstring newFile = NewFilePath(executable);
    std::uint64_t total = 0;
    failure = Fetch(info, address, newFile, cancel, progress, total);
    const bool complete = failure.step == DownloadStep::None;
    if (complete && (total != info.size || !HasHash(newFile, info.sha256))) failure = {.step = DownloadStep::Content};
    if (failure.step == DownloadStep::None) return true;
    DeleteFileW(newFile.c_str());
    return false;
}

}  // namespace kestrane
