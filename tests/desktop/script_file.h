#pragma once
// The text files that script a DLL's answers. Fields are separated by bars; texts are UTF-8.
#include <windows.h>

#include <cstdio>
#include <cstdlib>
#include <memory>
#include <sstream>
#include <string>
#include <vector>

using Line = std::vector<std::string>;
using Script = std::vector<Line>;

inline std::wstring Widen(const std::string& text) {
    const int length = MultiByteToWideChar(CP_UTF8, 0, text.data(), static_cast<int>(text.size()), nullptr, 0);
    std::wstring wide(static_cast<std::size_t>(length), L'\0');
    MultiByteToWideChar(CP_UTF8, 0, text.data(), static_cast<int>(text.size()), wide.data(), length);
    return wide;
}

inline DWORD ParseStatus(const std::string& text) {
    return static_cast<DWORD>(std::strtoul(text.c_str(), nullptr, 16));
}

inline Line SplitFields(const std::string& text) {
    Line fields;
    std::istringstream stream(text);
    for (std::string field; std::getline(stream, field, '|');)
        fields.push_back(field);
    return fields;
}

/// The current content of the file named by an environment variable; no lines if there is none.
inline Script ReadScript(const wchar_t* variable) {
    Script script;
    const wchar_t* path = _wgetenv(variable);
    if (path == nullptr) return script;
    std::unique_ptr<FILE, int (*)(FILE*)> file(_wfopen(path, L"rb"), std::fclose);
    if (!file) return script;
    std::string text;
    char block[4096];
    for (std::size_t size = 0; (size = std::fread(block, 1, sizeof block, file.get())) > 0;)
        text.append(block, size);
    std::istringstream lines(text);
    for (std::string line; std::getline(lines, line);)
        script.push_back(SplitFields(line));
    return script;
}
