#pragma once
// HTTPS on port 443 by WinHTTP, synchronous: a call can take as long as the time-outs allow. Certificates and redirects
// are checked as WinHTTP does by default.
#include <windows.h>

#include <winhttp.h>

#include <cstddef>
#include <string>
#include <string_view>

#include "base/owned.h"

namespace kestrane {

struct HttpHandleTraits {
    using Handle = HINTERNET;
    static constexpr Handle None() { return nullptr; }
    static void Close(Handle handle) { WinHttpCloseHandle(handle); }
};
/// A session, connection or request. A request must be closed before its connection, and that before its session.
using UniqueHttpHandle = Owned<HttpHandleTraits>;

/// A session with the user's proxy and the program's time-outs; empty on failure.
UniqueHttpHandle OpenHttpSession(const std::wstring& userAgent);

/// A whole request up to its answer's headers.
struct HttpsRequest {
    std::wstring host;
    std::wstring path;
    const wchar_t* verb = L"GET";
    std::string_view body = {};        // sent as it is
    const wchar_t* headers = nullptr;  // each ended by "\r\n"
};

/// Sends the request and reads the answer's headers. A request handle if the status is exactly 200, else empty.
/// `connection` is set in either case, if there is one.
UniqueHttpHandle SendHttpsRequest(HINTERNET session, const HttpsRequest& request, UniqueHttpHandle& connection);

/// Reads as much of an answer's body as has arrived, at most `capacity` bytes, waiting for the first. `read` is 0 at
/// the end. False if the connection fails.
bool ReadHttpBody(HINTERNET request, void* buffer, std::size_t capacity, std::size_t& read);

/// Fetches a document of at most `limit` bytes. False on any failure, or for a longer one, or as soon as `stop` is
/// seen; `body` is meaningless then.
bool HttpGetSmall(std::string_view host, const std::wstring& path, const std::wstring& userAgent, std::string& body,
                  std::size_t limit, HANDLE stop);

}  // namespace kestrane
