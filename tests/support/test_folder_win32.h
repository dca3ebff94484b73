#pragma once
#include <windows.h>

#include <filesystem>
#include <string>
#include <system_error>

namespace kestrane {

/// A folder of a test's own, there as long as this is. No two have the same name, because the system may remember a
/// file by its name.
class TestFolder {
  public:
    TestFolder() = default;
    TestFolder(const TestFolder&) = delete;
    TestFolder& operator=(const TestFolder&) = delete;
    ~TestFolder() {
        std::error_code none;
        std::filesystem::remove_all(L"\\\\?\\" + path_.wstring(),
                                    none);  // written so that paths below may be of any length
    }

    const std::filesystem::path& Path() const { return path_; }

  private:
    static std::wstring NewName() {
        static int number = 0;
        return L"kestrane-test-" + std::to_wstring(GetCurrentProcessId()) + L"-" + std::to_wstring(++number);
    }

    /// Skips the folders that an earlier process with the same id could not remove.
    static std::filesystem::path NewFolder() {
        std::filesystem::path path;
        do {
            path = std::filesystem::temp_directory_path() / NewName();
        } while (!std::filesystem::create_directory(path));
        return path;
    }

    const std::filesystem::path path_ = NewFolder();
};

}  // namespace kestrane
