#pragma once
// Chooses the page that Task Manager opens on. It keeps that in its own JSON file, where two numbers are replaced in
// the raw bytes; everything else in the file, whatever it is, stays unchanged.
#include <cstdint>
#include <string>
#include <string_view>

#include "settings/app_settings.h"

namespace kestrane {

/// The index of a metric's page among Task Manager's performance pages, which are CPU, memory, each disk, network.
/// `diskName` is an instance name such as "2 D:", whose leading number, capped at 99, is the disk's; without a number
/// it means the first disk. `diskCount` is the number of disks in the machine; the network page comes after them all.
std::int64_t StartPage(MetricKind metric, std::wstring_view diskName, std::int64_t diskCount);

/// `text` with `value` set at the first "key": found, at any depth. Spaces after the colon stay; the run of digits and
/// minus signs there is replaced, or, if there is none, the value is inserted before what is there. A missing key is
/// added as the first member of the first object. Text without any object is returned unchanged.
std::string SetJsonNumber(std::string text, std::string_view key, std::int64_t value);

/// Task Manager's settings changed so that it opens on this performance page. Text without any object, such as that of
/// a missing file, is replaced by an object with just these two settings.
std::string PatchTaskManagerSettings(std::string text, std::int64_t page);

}  // namespace kestrane
