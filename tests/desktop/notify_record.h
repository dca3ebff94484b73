#pragma once
// The record with which Wine's Shell_NotifyIconW passes a call to the taskbar's window. Its fields have fixed sizes;
// the icon handle is replaced by the dimensions of its bitmaps, whose bits follow. The layout has changed once:
//
//     Wine 8     head | texts | icon                     bits of the icon
//     Wine 10    head | icon | texts | balloon's icon    bits of the icon, bits of the balloon's icon
//
// No field tells the two apart, but the length does: it is that of the record plus all the bits that it declares.
#include <windows.h>

#include <array>
#include <cstdint>
#include <cstring>
#include <optional>
#include <span>

struct NotifyHead {
    LONG window;
    UINT id;
    UINT flags;
    UINT callbackMessage;
};

struct NotifyTexts {
    WCHAR tip[128];
    DWORD state;
    DWORD stateMask;
    WCHAR info[256];
    UINT version;
    WCHAR infoTitle[64];
    DWORD infoFlags;
    GUID guid;
};

struct IconMeasures {
    UINT width;
    UINT height;
    UINT planes;
    UINT bitsPerPixel;
};

struct NotifyRecord : NotifyHead, NotifyTexts, IconMeasures {
    std::span<const BYTE> bits;  // mask, then colours; points into the received record
};

/// The size of an icon's mask. Wine counts the pixels as if rows were not padded.
inline std::uint64_t MaskBytes(const IconMeasures& icon) {
    return (std::uint64_t{icon.width} * icon.height + 15) / 16 * 2;
}

/// The size of its mask and colours.
inline std::uint64_t IconBytes(const IconMeasures& icon) {
    const std::uint64_t colorBits = std::uint64_t{icon.width} * icon.height * icon.planes * icon.bitsPerPixel;
    return MaskBytes(icon) + (colorBits + 15) / 16 * 2;
}

template <typename Part>
Part PartAt(std::span<const BYTE> bytes, std::size_t offset) {
    Part part;
    std::memcpy(&part, bytes.data() + offset, sizeof part);
    return part;
}

/// The call in these bytes, or none if they have neither layout.
inline std::optional<NotifyRecord> ReadNotifyRecord(std::span<const BYTE> bytes) {
    constexpr std::size_t Head = sizeof(NotifyHead);
    constexpr std::size_t Icon = sizeof(IconMeasures);
    constexpr std::size_t Texts = sizeof(NotifyTexts);
    struct Layout {
        std::size_t icon;
        std::size_t texts;
        std::optional<std::size_t> balloonIcon;
        std::size_t size;
    };
    constexpr std::array Layouts = {
        Layout{.icon = Head + Texts, .texts = Head, .balloonIcon = std::nullopt, .size = Head + Texts + Icon},
        Layout{
            .icon = Head, .texts = Head + Icon, .balloonIcon = Head + Icon + Texts, .size = Head + Icon + Texts + Icon},
    };
    for (const Layout& layout : Layouts) {
        if (bytes.size() < layout.size) continue;
        const auto icon = PartAt<IconMeasures>(bytes, layout.icon);
        const auto balloonIcon = layout.balloonIcon ? PartAt<IconMeasures>(bytes, *layout.balloonIcon) : IconMeasures{};
        if (bytes.size() != layout.size + IconBytes(icon) + IconBytes(balloonIcon)) continue;
        return NotifyRecord{PartAt<NotifyHead>(bytes, 0), PartAt<NotifyTexts>(bytes, layout.texts), icon,
                            bytes.subspan(layout.size, IconBytes(icon))};
    }
    return std::nullopt;
}
