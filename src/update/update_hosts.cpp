#include "update/update_hosts.h"

namespace kestrane {

const char* const UpdateHost = KESTRANE_UPDATE_HOST;
const char* const StatsHost = KESTRANE_STATS_HOST;
const char* const WebsiteId = KESTRANE_WEBSITE_ID;
const char* const ManifestKey = KESTRANE_MANIFEST_KEY;

}  // namespace kestrane
