// A DLL that, when loaded, leaves a file with its name in the folder given by LOADED_FOLDER. It stands in for a DLL
// planted beside a program under the name of a system DLL.
#include <windows.h>

#include <cwchar>
#include <string>

extern "C" BOOL WINAPI DllMain(HINSTANCE module, DWORD reason, LPVOID reserved);

BOOL WINAPI DllMain(HINSTANCE module, DWORD reason, LPVOID /*reserved*/) {
    wchar_t path[MAX_PATH];
    wchar_t folder[MAX_PATH];
    if (reason != DLL_PROCESS_ATTACH) return TRUE;
    GetModuleFileNameW(module, path, MAX_PATH);
    if (GetEnvironmentVariableW(L"LOADED_FOLDER", folder, MAX_PATH) == 0) return TRUE;
    const std::wstring file = folder + std::wstring(std::wcsrchr(path, L'\\'));
    CloseHandle(CreateFileW(file.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr));
    return TRUE;
}
