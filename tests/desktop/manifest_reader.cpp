// Reads manifests as a program built with a key does: manifest_reader KEY FILE ... prints for each file the version
// that it offers, or "refused".
#include <windows.h>

#include <shellapi.h>

#include <array>
#include <cstdio>
#include <string>

#include "base/handles_win32.h"
#include "update/manifest.h"
#include "update/manifest_signature_win32.h"
#include "update/update_hosts.h"

namespace kestrane {
namespace {

std::array<char, 256> key{};

std::string ContentOf(const wchar_t* path) {
    const UniqueFile file(CreateFileW(path, GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING, 0, nullptr));
    std::string content(LargestManifest, '\0');
    DWORD bytes = 0;
    if (!ReadFile(file.Get(), content.data(), static_cast<DWORD>(content.size()), &bytes, nullptr)) return {};
    content.resize(bytes);
    return content;
}

void PrintOffer(const wchar_t* path) {
    UpdateInfo info;
    const bool accepted = ParseManifest(ContentOf(path), info, &IsSignedManifest);
    std::puts(accepted ? info.version.c_str() : "refused");
}

}  // namespace

const char* const UpdateHost = "kestrane.example";
const char* const StatsHost = "";
const char* const WebsiteId = "";
const char* const ManifestKey = key.data();

}  // namespace kestrane

int main() {
    int count = 0;
    wchar_t** const arguments = CommandLineToArgvW(GetCommandLineW(), &count);
    if (arguments == nullptr || count < 3) return 2;
    std::size_t length = 0;
    for (const wchar_t* c = arguments[1]; *c != L'\0' && length + 1 < kestrane::key.size(); ++c)
        kestrane::key[length++] = static_cast<char>(*c);
    for (int i = 2; i < count; ++i)
        kestrane::PrintOffer(arguments[i]);
    LocalFree(arguments);
    return 0;
}
