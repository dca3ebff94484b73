#include "update/usage_event.h"

#include "update/json.h"
#include "update/update_rules.h"

namespace kestrane {

std::string BuildUsageEvent(std::string_view websiteId, std::string_view version, std::string_view installId) {
    const std::string install = EscapeJsonString(installId);
    std::string body = R"({"type":"event","payload":{"website":")";
    body += EscapeJsonString(websiteId);
    body += R"(","hostname":"app","url":"/app","title":"kestrane","name":"check","id":")";
    body += install;
    body += R"(","data":{"version":")";
    body += EscapeJsonString(version);
    body += R"(","install":")";
    body += install;
    body += R"("}}})";
    return body;
}

std::wstring UsageUserAgent(std::string_view version) {
    return L"Mozilla/5.0 (Windows NT 10.0; Win64; x64) " + UserAgent(version);
}

}  // namespace kestrane
