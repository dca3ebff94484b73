#pragma once
// Which page the system's Task Manager is to open on. It keeps that in a JSON file of its own, where two numbers are
// replaced in the raw bytes; everything else of the file, whatever it is, stays as it was.
#include <cstdint>
#include <string>
#include <string_view>

#include "settings/app_settings.h"

namespace kestrane {

/// The number of a page among Task Manager's performance pages, which stand in the order CPU, memory, each disk,
/// network. `diskName` is an instance name such as "2 D:", whose leading number, 99 at the most, is the disk's; without
/// a number it is the first disk. `diskCount` is that of the machine's disks; the network's page comes behind them all.
std::int64_t StartPage(MetricKind metric, std::wstring_view diskName, std::int64_t diskCount);

/// `text` with `value` behind the first "key": that is found, at whatever depth it stands. Blanks behind the colon
/// stay; the run of digits and minus signs there is what is replaced, and if there is none, the value goes in front of
/// what is there. Without the key, it becomes the first member of the first object. A text without any object stays as
/// it is.
std::string SetJsonNumber(std::string text, std::string_view key, std::int64_t value);

/// Task Manager's settings so that it opens on this performance page. A text without any object, such as that of a
/// missing file, is replaced by an object with these two settings alone.
std::string PatchTaskManagerSettings(std::string text, std::int64_t page);

}  // namespace kestrane
