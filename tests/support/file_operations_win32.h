#pragma once
// The file operations of the code under test, done on the real disk. Each is noted in Calls() and numbered; it can be
// refused, or be the moment at which the process is killed. Include in one file of a test program only.
#include <windows.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <cstddef>
#include <map>
#include <string>
#include <string_view>
#include <utility>

#include "support/call_log.h"
#include "support/real_call_win32.h"

namespace kestrane::test {

enum class KillMoment { None, Before, During, After };  // During: half of what is written is on the disk

/// Windows gives programs that have not asked for more this many characters of a path, unless it begins with "\\\\?\\".
inline constexpr std::size_t OrdinaryLongestPath = 259;

struct FileOperations {
    std::wstring folder;  // ends in a backslash; operations elsewhere pass unnoticed. Empty: nothing is watched
    std::map<std::string, DWORD> refuseOnce;  // by the beginning of the operation's note: the error
    int refuseAt = 0;                         // by the operation's number, from 1
    DWORD refuseWith = 0;
    std::size_t longestPath = 32767;
    bool shortWrites = false;  // writes succeed with half of the bytes
    int killAt = 0;            // an operation's number, from 1
    KillMoment killMoment = KillMoment::None;
    UINT killExitCode = 0;

    int done = 0;
    std::map<HANDLE, std::string> open;  // the names of files below the folder, and what a process of one gave
};
inline FileOperations fileOperations;

namespace file_operations {

inline bool IsWatched(std::wstring_view path) {
    return !fileOperations.folder.empty() && path.starts_with(fileOperations.folder);
}

/// The name below the folder, as ASCII.
inline std::string NameOf(std::wstring_view path) {
    std::string name;
    for (const wchar_t c : path.substr(IsWatched(path) ? fileOperations.folder.size() : 0))
        name += c < 0x80 ? static_cast<char>(c) : '?';
    return name;
}

inline bool IsTooLong(std::wstring_view path) {
    return path.size() > fileOperations.longestPath && !path.starts_with(L"\\\\?\\");
}

inline std::string Hex(DWORD value) {
    std::array<char, 8> digits{};
    return {digits.data(), std::to_chars(digits.begin(), digits.end(), value, 16).ptr};
}

inline bool IsWatched(HANDLE handle) {
    return fileOperations.open.contains(handle);
}

/// Whether this is the moment at which the process is killed.
inline bool IsTimeToDie(KillMoment moment) {
    return fileOperations.killAt == fileOperations.done && fileOperations.killMoment == moment;
}

/// Without any cleaning up.
inline void DieAt(KillMoment moment) {
    if (IsTimeToDie(moment)) TerminateProcess(GetCurrentProcess(), fileOperations.killExitCode);
}

/// The error with which this operation fails, or 0.
inline DWORD TakeRefusal(std::string_view note) {
    FileOperations& files = fileOperations;
    if (files.refuseAt == files.done) return files.refuseWith;
    const auto refusal = std::ranges::find_if(
        files.refuseOnce, [note](const auto& candidate) { return note.starts_with(candidate.first); });
    if (refusal == files.refuseOnce.end()) return 0;
    const DWORD error = refusal->second;
    files.refuseOnce.erase(refusal);
    return error;
}

/// Notes an operation and performs it. `failure` is the result of a refused one.
template <typename Result, typename Call>
Result Operate(const std::string& note, Result failure, Call call) {
    NoteCall(note);
    ++fileOperations.done;
    DieAt(KillMoment::Before);
    if (const DWORD error = TakeRefusal(note)) {
        DieAt(KillMoment::After);
        SetLastError(error);
        return failure;
    }
    const Result result = call();
    DieAt(KillMoment::After);
    return result;
}

inline HANDLE WINAPI WatchedCreateFileW(LPCWSTR path, DWORD access, DWORD share, LPSECURITY_ATTRIBUTES security,
                                        DWORD disposition, DWORD flags, HANDLE pattern) {
    static const auto real = REAL(L"kernel32", CreateFileW);
    const auto call = [&] { return real(path, access, share, security, disposition, flags, pattern); };
    if (!IsWatched(path)) return call();
    const std::string name = NameOf(path);
    const std::string note = "CreateFileW " + name + " access " + Hex(access) + " share " + Hex(share) +
                             " disposition " + std::to_string(disposition) + " flags " + Hex(flags);
    const HANDLE handle = Operate(note, INVALID_HANDLE_VALUE, [&] {
        return IsTooLong(path) ? SetLastError(ERROR_PATH_NOT_FOUND), INVALID_HANDLE_VALUE : call();
    });
    const DWORD error = GetLastError();
    if (handle != INVALID_HANDLE_VALUE) fileOperations.open[handle] = name;
    SetLastError(error);
    return handle;
}

inline BOOL WINAPI WatchedReadFile(HANDLE file, LPVOID buffer, DWORD bytes, LPDWORD read, LPOVERLAPPED overlapped) {
    static const auto real = REAL(L"kernel32", ReadFile);
    const auto call = [&] { return real(file, buffer, bytes, read, overlapped); };
    return IsWatched(file) ? Operate("ReadFile " + fileOperations.open[file], FALSE, call) : call();
}

inline BOOL WINAPI WatchedWriteFile(HANDLE file, LPCVOID buffer, DWORD bytes, LPDWORD written,
                                    LPOVERLAPPED overlapped) {
    static const auto real = REAL(L"kernel32", WriteFile);
    if (!IsWatched(file)) return real(file, buffer, bytes, written, overlapped);
    const std::string note = "WriteFile " + fileOperations.open[file] + " " + std::to_string(bytes);
    return Operate(note, FALSE, [&] {
        const bool half = fileOperations.shortWrites || IsTimeToDie(KillMoment::During);
        const BOOL result = real(file, buffer, half ? bytes / 2 : bytes, written, overlapped);
        DieAt(KillMoment::During);
        return result;
    });
}

inline BOOL WINAPI WatchedFlushFileBuffers(HANDLE file) {
    static const auto real = REAL(L"kernel32", FlushFileBuffers);
    if (!IsWatched(file)) return real(file);
    return Operate("FlushFileBuffers " + fileOperations.open[file], FALSE, [&] { return real(file); });
}

inline BOOL WINAPI WatchedCloseHandle(HANDLE handle) {
    static const auto real = REAL(L"kernel32", CloseHandle);
    const auto file = fileOperations.open.extract(handle);
    if (!file) return real(handle);
    return Operate("CloseHandle " + file.mapped(), FALSE, [&] { return real(handle); });
}

inline BOOL WINAPI WatchedDeleteFileW(LPCWSTR path) {
    static const auto real = REAL(L"kernel32", DeleteFileW);
    if (!IsWatched(path)) return real(path);
    return Operate("DeleteFileW " + NameOf(path), FALSE,
                   [&] { return IsTooLong(path) ? SetLastError(ERROR_PATH_NOT_FOUND), FALSE : real(path); });
}

inline BOOL WINAPI WatchedMoveFileExW(LPCWSTR from, LPCWSTR to, DWORD flags) {
    static const auto real = REAL(L"kernel32", MoveFileExW);
    if (!IsWatched(from)) return real(from, to, flags);
    const std::string note = "MoveFileExW " + NameOf(from) + " " + NameOf(to) + " " + std::to_string(flags);
    return Operate(note, FALSE, [&] {
        const bool fails = IsTooLong(from) || IsTooLong(to);
        return fails ? SetLastError(ERROR_PATH_NOT_FOUND), FALSE : real(from, to, flags);
    });
}

inline BOOL WINAPI WatchedCreateProcessW(LPCWSTR program, LPWSTR commandLine, LPSECURITY_ATTRIBUTES process,
                                         LPSECURITY_ATTRIBUTES thread, BOOL inherit, DWORD flags, LPVOID environment,
                                         LPCWSTR folder, LPSTARTUPINFOW startup, LPPROCESS_INFORMATION information) {
    static const auto real = REAL(L"kernel32", CreateProcessW);
    const auto call = [&] {
        return real(program, commandLine, process, thread, inherit, flags, environment, folder, startup, information);
    };
    if (program == nullptr || !IsWatched(program)) return call();
    const std::string note = "CreateProcessW " + NameOf(program) + " inherit " + std::to_string(inherit) + " flags " +
                             Hex(flags) + (environment != nullptr || folder != nullptr ? " elsewhere" : "");
    const BOOL result = Operate(note, FALSE, call);
    if (result == FALSE) return FALSE;
    fileOperations.open[information->hThread] = "thread";
    fileOperations.open[information->hProcess] = "process";
    return TRUE;
}

}  // namespace file_operations
}  // namespace kestrane::test

extern "C" {
decltype(&CreateFileW) __imp_CreateFileW = &kestrane::test::file_operations::WatchedCreateFileW;
decltype(&ReadFile) __imp_ReadFile = &kestrane::test::file_operations::WatchedReadFile;
decltype(&WriteFile) __imp_WriteFile = &kestrane::test::file_operations::WatchedWriteFile;
decltype(&FlushFileBuffers) __imp_FlushFileBuffers = &kestrane::test::file_operations::WatchedFlushFileBuffers;
decltype(&CloseHandle) __imp_CloseHandle = &kestrane::test::file_operations::WatchedCloseHandle;
decltype(&DeleteFileW) __imp_DeleteFileW = &kestrane::test::file_operations::WatchedDeleteFileW;
decltype(&MoveFileExW) __imp_MoveFileExW = &kestrane::test::file_operations::WatchedMoveFileExW;
decltype(&CreateProcessW) __imp_CreateProcessW = &kestrane::test::file_operations::WatchedCreateProcessW;
}
