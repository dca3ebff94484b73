#pragma once
// What the user is told about updates, in the active language. UI thread only, like all translated text.
#include <cstdint>
#include <string>
#include <string_view>

#include "update/download_failure.h"

namespace kestrane {

/// Why a download has failed; empty if it has not.
std::wstring DownloadFailureText(const DownloadFailure& failure);

/// Why the executable may not replace itself.
std::wstring DevelopmentCopyText();
std::wstring FolderNotWritableText();

/// The new file could not take the executable's place, with the system's error.
std::wstring ReplaceFailureText(std::uint32_t code);

/// The balloon about a newer version.
std::wstring OfferText(std::string_view version, const wchar_t* runningVersion);

}  // namespace kestrane
