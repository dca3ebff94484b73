#include "update/usage_event_win32.h"

#include "text/text_util.h"
#include "update/https_win32.h"
#include "update/update_hosts.h"
#include "update/usage_event.h"

namespace kestrane {

void SendUsageEvent(const UpdateChecker& checker) {
    if (*WebsiteId == '\0' || checker.installId.empty()) return;
    const std::string body = BuildUsageEvent(WebsiteId, checker.currentVersion, checker.installId);
    const UniqueHttpHandle session = OpenHttpSession(UsageUserAgent(checker.currentVersion));
    if (!session) return;
    UniqueHttpHandle connection;
    // The answer is closed unread; what happened to the event changes nothing.
    SendHttpsRequest(session.Get(),
                     {.host = WidenBytes(StatsHost),
                      .path = L"/api/send",
                      .verb = L"POST",
                      .body = body,
                      .headers = L"Content-Type: application/json\r\n"},
                     connection);
}

}  // namespace kestrane
