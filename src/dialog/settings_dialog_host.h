#pragma once
// What the settings dialog asks of the program, and all it knows about it.
#include <cstdint>
#include <vector>

#include "hardware/disk_facts.h"
#include "metrics/net_rules.h"

namespace kestrane {

class SettingsDialogHost {
  public:
    virtual ~SettingsDialogHost() = default;

    /// The settings have been edited in place: apply them everywhere. Called after every edit, after a change of
    /// language and when the dialog closes.
    virtual void OnSettingsChanged() = 0;
    /// The interfaces as they are now, with fresh addresses.
    virtual std::vector<NetRow> ListInterfaces() = 0;
    /// The machine's fixed disks, in the order of their numbers.
    virtual const std::vector<DiskFacts>& FixedDisks() = 0;
    /// By logical processor: 1 for a performance one.
    virtual const std::vector<std::uint8_t>& ProcessorClasses() = 0;

  protected:
    SettingsDialogHost() = default;
    SettingsDialogHost(const SettingsDialogHost&) = default;
    SettingsDialogHost& operator=(const SettingsDialogHost&) = default;
};

}  // namespace kestrane
