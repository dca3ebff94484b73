#pragma once
// One tick of a sampling timer: read the counters, keep the points, show them. A reading that its sampler refuses ends
// the tick, and the last icon and tooltip stay.

namespace kestrane {

struct App;

/// Follows the size of a small icon at the taskbar's DPI: an icon has one point per pixel column.
void EnsureIconRingSize(App& app);

void OnCpuTick(App& app);
void OnDiskTick(App& app);
/// A network reading is never refused; without rates it gives no point.
void OnNetworkTick(App& app);

}  // namespace kestrane
