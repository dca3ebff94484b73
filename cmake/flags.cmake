# The one place for compiler flags: everything compiled here links `kestrane_flags`.
add_library(kestrane_flags INTERFACE)
target_compile_features(kestrane_flags INTERFACE cxx_std_20)
target_compile_options(kestrane_flags INTERFACE
    -Wall -Wextra -Wpedantic $<$<BOOL:${KESTRANE_WARNINGS_ARE_ERRORS}>:-Werror>
    -Wshadow -Wconversion -Wsign-conversion -Wdouble-promotion
    -Wold-style-cast -Wcast-qual -Wcast-align -Wextra-semi
    -Wnon-virtual-dtor -Woverloaded-virtual -Wundef -Wformat=2 -Wmissing-declarations
    # GCC 12 falsely reports overlapping copies in std::string's operator+ (GCC bug 105651).
    $<$<CXX_COMPILER_ID:GNU>:-Wno-restrict>
    $<$<CXX_COMPILER_ID:GNU>:-Wduplicated-cond -Wduplicated-branches -Wlogical-op -Wnull-dereference>)

if(KESTRANE_SANITIZE)
    target_compile_options(kestrane_flags INTERFACE
        -fsanitize=address,undefined -fno-sanitize-recover=all -fno-omit-frame-pointer)
    target_link_options(kestrane_flags INTERFACE -fsanitize=address,undefined)
endif()

if(WIN32)
    target_compile_definitions(kestrane_flags INTERFACE
        UNICODE _UNICODE _WIN32_WINNT=0x0A00 WINVER=0x0A00 NTDDI_VERSION=0x0A000000
        WIN32_LEAN_AND_MEAN NOMINMAX STRICT
        # Declares the functions of winhttp.dll without dllimport, as those of the other DLLs in base/system_dlls are.
        # Headers before mingw-w64 12 have never declared it.
        _WINHTTP_INTERNAL_)
    # One section per function and object, so that the linker can drop unused ones. The unwind table references every
    # function with an entry there, so this works only for the rest: 42 KB of the program.
    target_compile_options(kestrane_flags INTERFACE -ffunction-sections -fdata-sections)
    target_link_options(kestrane_flags INTERFACE -static -Wl,--no-insert-timestamp -Wl,--gc-sections)
endif()
