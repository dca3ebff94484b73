#pragma once
// The usage event: the whole of what the program ever tells about itself, and only in a build with a WebsiteId.
#include <string>
#include <string_view>

namespace kestrane {

/// The JSON body. Nothing about the machine, the user or the settings is in it.
std::string BuildUsageEvent(std::string_view websiteId, std::string_view version, std::string_view installId);

/// The user agent of its request.
std::wstring UsageUserAgent(std::string_view version);

}  // namespace kestrane
