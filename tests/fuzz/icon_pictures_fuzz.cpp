// Icons of any size, colours and history: every pixel is on the canvas, which the sanitizer checks, and is either
// opaque or fully transparent.
#include <algorithm>

#include "fuzz/fuzz_target.h"
#include "tray/digits.h"
#include "tray/icon_painting.h"

namespace kestrane {
namespace {

using fuzz::ByteSource;
using fuzz::Require;

struct Rings {
    MetricRing<std::int32_t> percent;
    MetricRing<std::int32_t> other;
    MetricRing<std::uint64_t> down;
    MetricRing<std::uint64_t> up;
};

AppSettings MakeSettings(ByteSource& source) {
    AppSettings settings = MakeDefaultSettings();
    for (int changes = source.Byte() % 8; changes > 0; --changes) {
        ColorValue& color = settings.colors[source.Byte() % ColorCount];
        color = source.Flag() ? ColorNone : static_cast<ColorValue>(source.Bits(3));
    }
    settings.bar = source.Flag();
    settings.font_size = source.Number(6, 32);
    return settings;
}

/// Rings sized for another icon size, as after the taskbar has moved to another monitor.
Rings MakeRings(ByteSource& source) {
    const std::uint64_t capacity = source.Byte();
    Rings rings{MetricRing<std::int32_t>(capacity), MetricRing<std::int32_t>(capacity),
                MetricRing<std::uint64_t>(capacity), MetricRing<std::uint64_t>(capacity)};
    while (!source.Empty()) {
        PushSample(rings.percent, source.Number(0, 100));
        PushSample(rings.other, source.Number(0, 100));
        PushSample(rings.down, source.Bits(8));
        PushSample(rings.up, source.Bits(8));
    }
    return rings;
}

void CheckCanvas(const Canvas& canvas, std::uint32_t size) {
    Require(canvas.size == static_cast<std::int32_t>(size) && canvas.pixels.size() == std::size_t{size} * size);
    Require(std::ranges::all_of(canvas.pixels, [](std::uint32_t pixel) { return pixel == 0 || pixel >> 24 == 0xFF; }));
}

void CheckMemoryIcon(const AppSettings& settings, std::int32_t percent, std::uint32_t size) {
    MemoryIconPainting painting = PaintMemoryIcon(settings, percent, size);
    CheckCanvas(painting.canvas, size);
    Require(painting.text == std::to_wstring(percent));
    DrawBitmapNumber(painting.canvas, percent, painting.textColor);
    CheckCanvas(painting.canvas, size);
}

}  // namespace
}  // namespace kestrane

FUZZ_TARGET(icon_pictures) {
    using namespace kestrane;
    fuzz::ByteSource source(input);
    const auto size = static_cast<std::uint32_t>(source.Number(1, 128));
    const std::int32_t percent = source.Number(0, 100);
    const bool valid = source.Flag();
    const AppSettings settings = MakeSettings(source);
    const Rings rings = MakeRings(source);

    CheckCanvas(PaintCpuIcon(settings, rings.percent, size), size);
    CheckCanvas(PaintDiskIcon(settings, rings.percent, rings.other, valid, size), size);
    CheckCanvas(PaintNetworkIcon(settings, rings.down, rings.up, size), size);
    CheckMemoryIcon(settings, percent, size);
}
