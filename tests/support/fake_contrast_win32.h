#pragma once
// A system with or without a contrast theme. Include in one file of a test program only.
#include <windows.h>

#include <gtest/gtest.h>

namespace kestrane {

enum class Contrast { Off, On, Unknown };
inline Contrast contrast = Contrast::Off;

/// A system that cannot tell leaves nonsense behind.
inline BOOL WINAPI TellContrast(UINT action, UINT size, PVOID told, UINT) {
    EXPECT_EQ(action, static_cast<UINT>(SPI_GETHIGHCONTRAST));
    EXPECT_EQ(size, sizeof(HIGHCONTRASTW));
    auto& theme = *static_cast<HIGHCONTRASTW*>(told);
    EXPECT_EQ(theme.cbSize, sizeof theme);
    theme.dwFlags = HCF_AVAILABLE | (contrast == Contrast::Off ? 0 : HCF_HIGHCONTRASTON);
    return contrast == Contrast::Unknown ? FALSE : TRUE;
}

}  // namespace kestrane

extern "C" {
decltype(&SystemParametersInfoW) __imp_SystemParametersInfoW = &kestrane::TellContrast;
}
