#include "update/https_win32.h"

#include <algorithm>
#include <array>

#include "text/text_util.h"

namespace kestrane {
namespace {

constexpr int ResolveMs = 5000;
constexpr int ConnectMs = 5000;
constexpr int SendMs = 15000;
constexpr int ReceiveMs = 15000;

constexpr std::size_t ChunkBytes = 4096;

/// Sends the whole request and waits for the answer's headers.
bool Exchange(HINTERNET handle, const HttpsRequest& request) {
    const DWORD headersLength = request.headers != nullptr ? static_cast<DWORD>(-1) : 0;
    void* const body = request.body.empty() ? WINHTTP_NO_REQUEST_DATA : const_cast<char*>(request.body.data());
    const auto bodyLength = static_cast<DWORD>(request.body.size());
    return WinHttpSendRequest(handle, request.headers, headersLength, body, bodyLength, bodyLength, 0) != FALSE &&
           WinHttpReceiveResponse(handle, nullptr) != FALSE;
}

/// The status of an answer, or 0.
DWORD ReadStatus(HINTERNET request) {
    DWORD status = 0;
    DWORD bytes = sizeof status;
    return WinHttpQueryHeaders(request, WINHTTP_QUERY_STATUS_CODE | WINHTTP_QUERY_FLAG_NUMBER,
                               WINHTTP_HEADER_NAME_BY_INDEX, &status, &bytes, WINHTTP_NO_HEADER_INDEX) != FALSE
               ? status
               : 0;
}

/// The first four bound a single call of the network. The last one bounds the whole wait for an answer's headers, which
/// a server could otherwise send byte by byte; without it Wine waits for ever for the first one, and in the handshake.
bool SetTimeLimits(HINTERNET session) {
    DWORD responseMs = ReceiveMs;
    return WinHttpSetTimeouts(session, ResolveMs, ConnectMs, SendMs, ReceiveMs) != FALSE &&
           WinHttpSetOption(session, WINHTTP_OPTION_RECEIVE_RESPONSE_TIMEOUT, &responseMs, sizeof responseMs) != FALSE;
}

bool IsSignalled(HANDLE event) {
    return WaitForSingleObject(event, 0) == WAIT_OBJECT_0;
}

}  // namespace

UniqueHttpHandle OpenHttpSession(const std::wstring& userAgent) {
    const auto open = [&](DWORD access) {
        return UniqueHttpHandle(
            WinHttpOpen(userAgent.c_str(), access, WINHTTP_NO_PROXY_NAME, WINHTTP_NO_PROXY_BYPASS, 0));
    };
    UniqueHttpHandle session = open(WINHTTP_ACCESS_TYPE_AUTOMATIC_PROXY);
    if (!session) session = open(WINHTTP_ACCESS_TYPE_DEFAULT_PROXY);
    // With the system's own time-outs a name could be resolved for ever.
    if (session && !SetTimeLimits(session.Get())) session.Reset();
    return session;
}

UniqueHttpHandle SendHttpsRequest(HINTERNET session, const HttpsRequest& request, UniqueHttpHandle& connection) {
    connection.Reset(WinHttpConnect(session, request.host.c_str(), INTERNET_DEFAULT_HTTPS_PORT, 0));
    if (!connection) return UniqueHttpHandle();
    UniqueHttpHandle handle(WinHttpOpenRequest(connection.Get(), request.verb, request.path.c_str(), nullptr,
                                               WINHTTP_NO_REFERER, WINHTTP_DEFAULT_ACCEPT_TYPES,
                                               WINHTTP_FLAG_SECURE | WINHTTP_FLAG_REFRESH));
    if (!handle || !Exchange(handle.Get(), request) || ReadStatus(handle.Get()) != HTTP_STATUS_OK) handle.Reset();
    return handle;
}

bool ReadHttpBody(HINTERNET request, void* buffer, std::size_t capacity, std::size_t& read) {
    // WinHttpReadData may wait until all that was asked for is there, and the time-out begins anew with each byte: a
    // server that drips would hold it for hours. So only what has arrived is asked for.
    DWORD available = 0;
    if (WinHttpQueryDataAvailable(request, &available) == FALSE) return false;
    DWORD got = 0;
    const auto wanted = static_cast<DWORD>(std::min<std::size_t>(available, capacity));
    if (wanted != 0 && WinHttpReadData(request, buffer, wanted, &got) == FALSE) return false;
    read = got;
    return true;
}

bool HttpGetSmall(std::string_view host, const std::wstring& path, const std::wstring& userAgent, std::string& body,
                  std::size_t limit, HANDLE stop) {
    const UniqueHttpHandle session = OpenHttpSession(userAgent);
    if (!session) return false;
    UniqueHttpHandle connection;
    const UniqueHttpHandle request = SendHttpsRequest(
        session.Get(), {.host = WidenBytes(host), .path = path, .headers = L"Cache-Control: no-cache\r\n"}, connection);
    if (!request) return false;
    body.clear();
    std::array<char, ChunkBytes> chunk;
    // Bytes that drip never time out, so the event is looked at between them.
    while (!IsSignalled(stop)) {
        std::size_t read = 0;
        if (!ReadHttpBody(request.Get(), chunk.data(), chunk.size(), read)) return false;
        if (read == 0) return true;
        body.append(chunk.data(), read);
        if (body.size() > limit) return false;
    }
    return false;
}

}  // namespace kestrane
