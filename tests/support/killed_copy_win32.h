#pragma once
// A test program that starts itself again, as a copy that is killed at a moment of the test's choice.
#include <windows.h>
// <windows.h> comes first.
#include <gtest/gtest.h>
#include <shellapi.h>

#include <string>
#include <vector>

#include "base/handles_win32.h"
#include "support/call_log.h"
#include "support/file_bytes_win32.h"

namespace kestrane::test {

inline constexpr int KilledExitCode = 77;

/// The words of this program's command line, its name first.
inline std::vector<std::wstring> Arguments() {
    int count = 0;
    wchar_t** arguments = CommandLineToArgvW(GetCommandLineW(), &count);
    std::vector<std::wstring> texts(arguments, arguments + count);
    LocalFree(arguments);
    return texts;
}

/// A job whose programs end with it, or with this program.
inline UniqueKernelHandle MakeJob() {
    UniqueKernelHandle job(CreateJobObjectW(nullptr, nullptr));
    JOBOBJECT_EXTENDED_LIMIT_INFORMATION limits{};
    limits.BasicLimitInformation.LimitFlags = JOB_OBJECT_LIMIT_KILL_ON_JOB_CLOSE;
    EXPECT_TRUE(SetInformationJobObject(job.Get(), JobObjectExtendedLimitInformation, &limits, sizeof limits));
    return job;
}

/// Runs a program with all that it starts to their end. -1 if it cannot be started.
inline int RunToItsEnd(const std::wstring& program, const std::wstring& arguments) {
    const UniqueKernelHandle job = MakeJob();
    std::wstring commandLine = L"\"" + program + L"\" " + arguments;
    STARTUPINFOW startup{};
    startup.cb = sizeof startup;
    PROCESS_INFORMATION started{};
    if (!CreateProcessW(program.c_str(), commandLine.data(), nullptr, nullptr, FALSE, CREATE_SUSPENDED, nullptr,
                        nullptr, &startup, &started)) {
        return -1;
    }
    const UniqueKernelHandle process(started.hProcess);
    const UniqueKernelHandle thread(started.hThread);
    EXPECT_TRUE(AssignProcessToJobObject(job.Get(), process.Get()));
    ResumeThread(thread.Get());
    EXPECT_EQ(WaitForSingleObject(process.Get(), 60000), WAIT_OBJECT_0);
    JOBOBJECT_BASIC_ACCOUNTING_INFORMATION accounting{};
    for (int round = 0; round < 6000; ++round) {
        EXPECT_TRUE(QueryInformationJobObject(job.Get(), JobObjectBasicAccountingInformation, &accounting,
                                              sizeof accounting, nullptr));
        if (accounting.ActiveProcesses == 0) break;
        Sleep(10);
    }
    EXPECT_EQ(accounting.ActiveProcesses, 0U);
    DWORD exitCode = 0;
    GetExitCodeProcess(process.Get(), &exitCode);
    return static_cast<int>(exitCode);
}

/// For the copy that comes to its end: leaves its operations in a file.
inline void WriteOperations(const std::wstring& log) {
    std::string notes;
    for (const std::string& call : Calls())
        notes += call + "\n";
    WriteBytes(log, notes);
}

/// The operations that such a copy has left, in order.
inline std::vector<std::string> ReadOperations(const std::wstring& log) {
    std::vector<std::string> operations;
    std::string line;
    for (const char c : ReadBytes(log).value_or("")) {
        if (c != '\n') {
            line += c;
            continue;
        }
        operations.push_back(line);
        line.clear();
    }
    return operations;
}

}  // namespace kestrane::test
