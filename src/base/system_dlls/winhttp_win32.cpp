// The functions of winhttp.dll that the program calls; see base/system_function_win32.h. What the loader has left as
// the last error says why a call has failed.
#include "base/system_function_win32.h"

#include <windows.h>

#include <winhttp.h>

namespace {

constexpr const wchar_t* Dll = L"winhttp.dll";

}  // namespace

extern "C" {

HINTERNET WINAPI WinHttpOpen(LPCWSTR agent, DWORD access, LPCWSTR proxy, LPCWSTR bypass, DWORD flags) {
    const auto call = kestrane::SystemFunction<&WinHttpOpen>(Dll, __func__);
    return call != nullptr ? call(agent, access, proxy, bypass, flags) : nullptr;
}

BOOL WINAPI WinHttpSetTimeouts(HINTERNET handle, int resolve, int connect, int send, int receive) {
    const auto call = kestrane::SystemFunction<&WinHttpSetTimeouts>(Dll, __func__);
    return call != nullptr ? call(handle, resolve, connect, send, receive) : FALSE;
}

BOOL WINAPI WinHttpSetOption(HINTERNET handle, DWORD option, LPVOID value, DWORD bytes) {
    const auto call = kestrane::SystemFunction<&WinHttpSetOption>(Dll, __func__);
    return call != nullptr ? call(handle, option, value, bytes) : FALSE;
}

HINTERNET WINAPI WinHttpConnect(HINTERNET session, LPCWSTR host, INTERNET_PORT port, DWORD reserved) {
    const auto call = kestrane::SystemFunction<&WinHttpConnect>(Dll, __func__);
    return call != nullptr ? call(session, host, port, reserved) : nullptr;
}

HINTERNET WINAPI WinHttpOpenRequest(HINTERNET connection, LPCWSTR verb, LPCWSTR path, LPCWSTR version, LPCWSTR referrer,
                                    LPCWSTR* types, DWORD flags) {
    const auto call = kestrane::SystemFunction<&WinHttpOpenRequest>(Dll, __func__);
    return call != nullptr ? call(connection, verb, path, version, referrer, types, flags) : nullptr;
}

BOOL WINAPI WinHttpSendRequest(HINTERNET request, LPCWSTR headers, DWORD headersLength, LPVOID body, DWORD bodyLength,
                               DWORD totalLength, DWORD_PTR context) {
    const auto call = kestrane::SystemFunction<&WinHttpSendRequest>(Dll, __func__);
    return call != nullptr ? call(request, headers, headersLength, body, bodyLength, totalLength, context) : FALSE;
}

BOOL WINAPI WinHttpReceiveResponse(HINTERNET request, LPVOID reserved) {
    const auto call = kestrane::SystemFunction<&WinHttpReceiveResponse>(Dll, __func__);
    return call != nullptr ? call(request, reserved) : FALSE;
}

BOOL WINAPI WinHttpQueryHeaders(HINTERNET request, DWORD level, LPCWSTR name, LPVOID buffer, LPDWORD bytes,
                                LPDWORD index) {
    const auto call = kestrane::SystemFunction<&WinHttpQueryHeaders>(Dll, __func__);
    return call != nullptr ? call(request, level, name, buffer, bytes, index) : FALSE;
}

BOOL WINAPI WinHttpQueryDataAvailable(HINTERNET request, LPDWORD bytes) {
    const auto call = kestrane::SystemFunction<&WinHttpQueryDataAvailable>(Dll, __func__);
    return call != nullptr ? call(request, bytes) : FALSE;
}

BOOL WINAPI WinHttpReadData(HINTERNET request, LPVOID buffer, DWORD bytes, LPDWORD read) {
    const auto call = kestrane::SystemFunction<&WinHttpReadData>(Dll, __func__);
    return call != nullptr ? call(request, buffer, bytes, read) : FALSE;
}

BOOL WINAPI WinHttpCloseHandle(HINTERNET handle) {
    const auto call = kestrane::SystemFunction<&WinHttpCloseHandle>(Dll, __func__);
    return call != nullptr ? call(handle) : FALSE;
}

BOOL WINAPI WinHttpCrackUrl(LPCWSTR url, DWORD length, DWORD flags, LPURL_COMPONENTS parts) {
    const auto call = kestrane::SystemFunction<&WinHttpCrackUrl>(Dll, __func__);
    return call != nullptr ? call(url, length, flags, parts) : FALSE;
}

}  // extern "C"
