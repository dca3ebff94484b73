#pragma once
// A scripted WinHTTP: replaces the system's at link time, records each call, and answers as the test has set up for a
// host. Any call can be refused, or held until the test releases it; calls may come from any thread. Include in one
// file of a test program only.
#include <windows.h>

#include <winhttp.h>

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <functional>
#include <map>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "base/handles_win32.h"
#include "base/lock_win32.h"
#include "support/real_call_win32.h"

namespace kestrane::test {

inline constexpr std::size_t Never = static_cast<std::size_t>(-1);

/// What a host answers to every request.
struct FakeAnswer {
    DWORD status = 200;
    std::string body;
    std::size_t piece = Never;        // this many bytes arrive at a time
    std::size_t mostPerRead = Never;  // a read takes no more of them
    std::size_t breaksAt = Never;     // the connection is lost behind this many bytes
    bool isEndless = false;           // the body begins anew at its end
};

struct FakeHttpHandle {
    std::string kind;  // "session", "connection" or "request"
    std::size_t parent = 0;
    std::wstring host;
    bool isOpen = true;
    std::size_t position = 0;   // in the answer's body
    std::size_t available = 0;  // announced and not read
};

/// The functions are called "open", "timeouts", "option", "connect", "request", "send", "receive", "status",
/// "available", "read", "close" and "crack" here. A handle is the number of its opening, from 1.
struct FakeWinHttp {
    std::map<std::string, FakeAnswer> answers;     // by host; another host cannot be connected to
    std::map<std::string, std::set<int>> refused;  // by function, which of its calls, from 1
    std::set<std::string> refusedAlways;           // functions
    /// If set, called at the start of each call, with its name, on the thread that makes it.
    std::function<void(const std::string& function)> onCall;

    std::vector<std::string> calls;
    std::vector<std::string> mistakes;  // what WinHTTP does not allow, or would wait for
    std::vector<FakeHttpHandle> handles;
    std::map<std::string, int> counts;  // calls by function
};

inline FakeWinHttp fakeHttp;
inline Lock fakeHttpLock;  // guards all of it while another thread may call

inline std::string AsciiOf(const wchar_t* text) {
    if (text == nullptr) return "(none)";
    std::string ascii;
    for (; *text != 0; ++text)
        ascii += static_cast<char>(*text);
    return ascii;
}

inline std::string HexOf(DWORD value) {
    constexpr const char* Digits = "0123456789abcdef";
    std::string text;
    do {
        text.insert(text.begin(), Digits[value % 16]);
        value /= 16;
    } while (value != 0);
    return "0x" + text;
}

inline std::vector<std::string> HttpCalls() {
    const LockGuard guard(fakeHttpLock);
    return fakeHttp.calls;
}

inline int HttpCallCount(const std::string& function) {
    const LockGuard guard(fakeHttpLock);
    return fakeHttp.counts[function];
}

inline std::size_t OpenHttpHandles() {
    const LockGuard guard(fakeHttpLock);
    return static_cast<std::size_t>(std::count_if(fakeHttp.handles.begin(), fakeHttp.handles.end(),
                                                  [](const auto& handle) { return handle.isOpen; }));
}

/// Holds the calls of one function, from the given one on, until it is opened.
class HttpGate {
  public:
    explicit HttpGate(const std::string& function, int firstCall = 1) {
        fakeHttp.onCall = [=, this](const std::string& called) {
            if (called != function || HttpCallCount(function) + 1 < firstCall) return;
            SetEvent(reached_.Get());
            WaitForSingleObject(open_.Get(), INFINITE);
        };
    }
    HttpGate(const HttpGate&) = delete;
    HttpGate& operator=(const HttpGate&) = delete;
    /// Nothing may be held any more.
    ~HttpGate() { fakeHttp.onCall = nullptr; }
    /// True once a call is held; false if none comes within ten seconds.
    bool AwaitCall() { return WaitForSingleObject(reached_.Get(), 10000) == WAIT_OBJECT_0; }
    void Open() { SetEvent(open_.Get()); }

  private:
    UniqueKernelHandle reached_{CreateEventW(nullptr, TRUE, FALSE, nullptr)};
    UniqueKernelHandle open_{CreateEventW(nullptr, TRUE, FALSE, nullptr)};
};

/// One call of a function: takes the lock, and tells whether it is refused.
class HttpCall {
  public:
    HttpCall(const std::string& function, const std::string& text) : guard_(Announced(function)) {
        const int number = ++fakeHttp.counts[function];
        const auto numbers = fakeHttp.refused.find(function);
        isRefused_ = fakeHttp.refusedAlways.contains(function) ||
                     (numbers != fakeHttp.refused.end() && numbers->second.contains(number));
        fakeHttp.calls.push_back(function + text + (isRefused_ ? " refused" : ""));
    }
    bool IsRefused(DWORD error = ERROR_WINHTTP_CANNOT_CONNECT) const {
        if (isRefused_) SetLastError(error);
        return isRefused_;
    }
    static void Mistake(const std::string& text) { fakeHttp.mistakes.push_back(fakeHttp.calls.back() + ": " + text); }

    /// The open handle of this kind; notes a mistake and returns another one if it is none.
    FakeHttpHandle& Handle(HINTERNET handle, const std::string& kind) {
        const auto number = reinterpret_cast<std::uintptr_t>(handle);
        if (number == 0 || number > fakeHttp.handles.size()) {
            Mistake("no handle");
            return none_;
        }
        FakeHttpHandle& found = fakeHttp.handles[number - 1];
        if (!found.isOpen) Mistake("closed already");
        if (found.kind != kind) Mistake("not a " + kind);
        return found;
    }
    static HINTERNET NewHandle(FakeHttpHandle handle) {
        fakeHttp.handles.push_back(std::move(handle));
        return reinterpret_cast<HINTERNET>(fakeHttp.handles.size());
    }

  private:
    static Lock& Announced(const std::string& function) {
        if (fakeHttp.onCall) fakeHttp.onCall(function);
        return fakeHttpLock;
    }

    LockGuard guard_;
    bool isRefused_ = false;
    FakeHttpHandle none_;
};

inline std::string HandleText(HINTERNET handle) {
    return " " + std::to_string(reinterpret_cast<std::uintptr_t>(handle));
}

inline const FakeAnswer& AnswerOf(const FakeHttpHandle& request) {
    return fakeHttp.answers[AsciiOf(request.host.c_str())];
}

/// The bytes of the body that are still to come.
inline std::size_t BytesLeft(const FakeHttpHandle& request) {
    const FakeAnswer& answer = AnswerOf(request);
    return answer.isEndless ? Never : answer.body.size() - request.position;
}

}  // namespace kestrane::test

extern "C" {

HINTERNET WINAPI WinHttpOpen(LPCWSTR agent, DWORD access, LPCWSTR proxy, LPCWSTR bypass, DWORD flags) {
    using namespace kestrane::test;
    const HttpCall call("open", " " + AsciiOf(agent) + " access " + std::to_string(access) + " proxy " +
                                    AsciiOf(proxy) + " " + AsciiOf(bypass) + " flags " + std::to_string(flags));
    if (call.IsRefused()) return nullptr;
    return HttpCall::NewHandle({.kind = "session", .host = {}});
}

BOOL WINAPI WinHttpSetTimeouts(HINTERNET session, int resolve, int connect, int send, int receive) {
    using namespace kestrane::test;
    HttpCall call("timeouts", HandleText(session) + ": " + std::to_string(resolve) + " " + std::to_string(connect) +
                                  " " + std::to_string(send) + " " + std::to_string(receive));
    call.Handle(session, "session");
    return call.IsRefused() ? FALSE : TRUE;
}

BOOL WINAPI WinHttpSetOption(HINTERNET session, DWORD option, LPVOID value, DWORD bytes) {
    using namespace kestrane::test;
    const std::string number = bytes == sizeof(DWORD) ? std::to_string(*static_cast<const DWORD*>(value)) : "no number";
    HttpCall call("option", HandleText(session) + ": " + std::to_string(option) + " is " + number);
    call.Handle(session, "session");
    return call.IsRefused() ? FALSE : TRUE;
}

HINTERNET WINAPI WinHttpConnect(HINTERNET session, LPCWSTR host, INTERNET_PORT port, DWORD reserved) {
    using namespace kestrane::test;
    HttpCall call("connect", HandleText(session) + ": " + AsciiOf(host) + " " + std::to_string(port) +
                                 (reserved != 0 ? " with a reserved value" : ""));
    call.Handle(session, "session");
    if (call.IsRefused()) return nullptr;
    if (!fakeHttp.answers.contains(AsciiOf(host))) HttpCall::Mistake("a host that the test has not set up");
    return HttpCall::NewHandle(
        {.kind = "connection", .parent = reinterpret_cast<std::uintptr_t>(session), .host = host});
}

HINTERNET WINAPI WinHttpOpenRequest(HINTERNET connection, LPCWSTR verb, LPCWSTR path, LPCWSTR version, LPCWSTR referrer,
                                    LPCWSTR* types, DWORD flags) {
    using namespace kestrane::test;
    HttpCall call("request", HandleText(connection) + ": " + AsciiOf(verb) + " " + AsciiOf(path) + " version " +
                                 AsciiOf(version) + " referrer " + AsciiOf(referrer) + " types " +
                                 AsciiOf(types != nullptr ? *types : nullptr) + " flags " + HexOf(flags));
    const FakeHttpHandle& parent = call.Handle(connection, "connection");
    if (call.IsRefused()) return nullptr;
    return HttpCall::NewHandle(
        {.kind = "request", .parent = reinterpret_cast<std::uintptr_t>(connection), .host = parent.host});
}

BOOL WINAPI WinHttpSendRequest(HINTERNET request, LPCWSTR headers, DWORD headersLength, LPVOID body, DWORD bodyLength,
                               DWORD totalLength, DWORD_PTR context) {
    using namespace kestrane::test;
    const std::string sent = body == nullptr ? "(none)" : std::string(static_cast<const char*>(body), bodyLength);
    HttpCall call("send", HandleText(request) + ": headers " + AsciiOf(headers) + " length " +
                              std::to_string(static_cast<int>(headersLength)) + " body " + sent + " length " +
                              std::to_string(bodyLength) + " of " + std::to_string(totalLength) +
                              (context != 0 ? " with a context" : ""));
    call.Handle(request, "request");
    return call.IsRefused() ? FALSE : TRUE;
}

BOOL WINAPI WinHttpReceiveResponse(HINTERNET request, LPVOID reserved) {
    using namespace kestrane::test;
    HttpCall call("receive", HandleText(request) + (reserved != nullptr ? " with a reserved value" : ""));
    call.Handle(request, "request");
    return call.IsRefused(ERROR_WINHTTP_TIMEOUT) ? FALSE : TRUE;
}

BOOL WINAPI WinHttpQueryHeaders(HINTERNET request, DWORD level, LPCWSTR name, LPVOID buffer, LPDWORD bytes,
                                LPDWORD index) {
    using namespace kestrane::test;
    HttpCall call("status", HandleText(request) + ": level " + HexOf(level) + " name " + AsciiOf(name) + " bytes " +
                                std::to_string(*bytes) + (index != nullptr ? " with an index" : ""));
    const DWORD status = AnswerOf(call.Handle(request, "request")).status;
    const DWORD written = call.IsRefused() ? 200 : status;  // on failure nobody may look at it
    std::memcpy(buffer, &written, sizeof written);
    return call.IsRefused() ? FALSE : TRUE;
}

BOOL WINAPI WinHttpQueryDataAvailable(HINTERNET request, LPDWORD bytes) {
    using namespace kestrane::test;
    HttpCall call("available", HandleText(request));
    FakeHttpHandle& handle = call.Handle(request, "request");
    const FakeAnswer& answer = AnswerOf(handle);
    *bytes = 77;  // on failure nobody may look at it
    if (call.IsRefused(ERROR_WINHTTP_TIMEOUT)) return FALSE;
    if (handle.position >= answer.breaksAt) return SetLastError(ERROR_WINHTTP_CONNECTION_ERROR), FALSE;
    handle.available =
        std::min({BytesLeft(handle), answer.piece, answer.breaksAt - handle.position, std::size_t{8192}});
    *bytes = static_cast<DWORD>(handle.available);
    return TRUE;
}

BOOL WINAPI WinHttpReadData(HINTERNET request, LPVOID buffer, DWORD bytes, LPDWORD read) {
    using namespace kestrane::test;
    HttpCall call("read", HandleText(request) + ": " + std::to_string(bytes));
    FakeHttpHandle& handle = call.Handle(request, "request");
    const FakeAnswer& answer = AnswerOf(handle);
    *read = 99;  // on failure nobody may look at it
    if (call.IsRefused(ERROR_WINHTTP_TIMEOUT)) return FALSE;
    if (bytes > handle.available) HttpCall::Mistake("waits for more than has arrived");
    const std::size_t count = std::min({std::size_t{bytes}, handle.available, answer.mostPerRead});
    for (std::size_t i = 0; i < count; ++i) {
        static_cast<char*>(buffer)[i] = answer.body[(handle.position + i) % answer.body.size()];
    }
    handle.position += count;
    handle.available -= count;
    *read = static_cast<DWORD>(count);
    return TRUE;
}

BOOL WINAPI WinHttpCloseHandle(HINTERNET handle) {
    using namespace kestrane::test;
    HttpCall call("close", HandleText(handle));
    const auto number = reinterpret_cast<std::uintptr_t>(handle);
    const bool isKnown = number != 0 && number <= fakeHttp.handles.size();
    FakeHttpHandle& closed = call.Handle(handle, isKnown ? fakeHttp.handles[number - 1].kind : "handle");
    closed.isOpen = false;
    for (const FakeHttpHandle& other : fakeHttp.handles) {
        if (other.isOpen && other.parent == number) HttpCall::Mistake("a " + other.kind + " of it is open");
    }
    return TRUE;
}

/// The system's own, as it needs no network.
BOOL WINAPI WinHttpCrackUrl(LPCWSTR url, DWORD length, DWORD flags, LPURL_COMPONENTS parts) {
    using namespace kestrane::test;
    static const auto real = REAL(L"winhttp", WinHttpCrackUrl);
    const HttpCall call("crack", " " + AsciiOf(url));
    return call.IsRefused() ? FALSE : real(url, length, flags, parts);
}

}  // extern "C"
