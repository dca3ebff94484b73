#pragma once
#include <windows.h>

namespace kestrane {

/// Whether the user has chosen a contrast theme: then only the system's colours are sure to be readable on each other.
inline bool IsHighContrast() {
    HIGHCONTRASTW contrast{};
    contrast.cbSize = sizeof contrast;
    return SystemParametersInfoW(SPI_GETHIGHCONTRAST, sizeof contrast, &contrast, 0) != FALSE &&
           (contrast.dwFlags & HCF_HIGHCONTRASTON) != 0;
}

}  // namespace kestrane
