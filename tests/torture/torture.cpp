// torture.dll, which one build of the program imports: every function that the program imports, or loads by
// GetProcAddress, is led through a stub of this DLL before any code of the program runs. The stub counts the call and
// jumps on to the function itself, with all that it was called with; but one call fails, the one that the environment
// names, as failures.txt tells:
//
//     KESTRANE_TORTURE         FUNCTION CALL [PLACE]: this call, counted from 1; with a place, counted of those that
//                              return to it, a hexadecimal offset from the start of the program's image
//     KESTRANE_TORTURE_COUNTS  a file that takes the counts, see Counts below; it survives the end of the program
//
// What the system's own DLLs call does not count. Also, the first check for updates comes at once and not after
// seconds.
#include <windows.h>

#include <cerrno>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <iterator>

#include "update/update_rules.h"

namespace {

enum class Kind { Fails, Never, Data };

struct Failure {
    const char* name;
    Kind kind;
    std::uint64_t result;
    int error;  // 0: none is set
    bool isErrno;
};

constexpr Failure Failures[] = {
#include "failures.inc"
};

constexpr std::size_t StubCount = 512;  // as many as the assembler makes below
static_assert(std::size(Failures) <= StubCount);
constexpr std::size_t StubBytes = 16;

constexpr std::size_t LongestName = 48;
constexpr std::size_t MostPlaces = 4096;
constexpr std::uint64_t NoPlace = 0;
constexpr DWORD HalfASecond = 500;
constexpr UINT CannotTorture = 97;

struct Count {
    char name[LongestName];
    volatile LONG64 calls;
};

struct Place {
    volatile LONG64 key;  // the function's number plus 1, and the offset to which the call returns; 0 while unused
    volatile LONG64 calls;
    volatile LONG64 first;  // which call of the function was the first from here
};

/// The file of counts. tests/desktop/torture_counts.py reads it.
struct Counts {
    volatile LONG64 reached;    // 1 when the planned failure has happened
    volatile LONG64 reachedAt;  // the offset to which it returned
    Count functions[StubCount];
    Place places[MostPlaces];
};

Counts* counts = nullptr;
const char* image = nullptr;
void* functions[StubCount];

std::size_t planned = StubCount;
LONG64 plannedCall = 0;
LONG64 plannedPlace = NoPlace;

/// The number of this call among those from the same place.
LONG64 CountPlace(std::uint32_t number, LONG64 offset, LONG64 call) {
    const LONG64 key = (LONG64{number} + 1) << 32 | offset;
    auto slot = static_cast<std::size_t>(static_cast<std::uint64_t>(key) * 0x9E3779B97F4A7C15U >> 40) % MostPlaces;
    for (std::size_t tried = 0; tried < MostPlaces; ++tried, slot = (slot + 1) % MostPlaces) {
        Place& place = counts->places[slot];
        const LONG64 found = InterlockedCompareExchange64(&place.key, key, 0);
        if (found == 0) place.first = call;
        if (found == 0 || found == key) return InterlockedIncrement64(&place.calls);
    }
    return 0;
}

FARPROC WINAPI TorturedGetProcAddress(HMODULE module, const char* name);
DWORD WINAPI HastyWait(HANDLE handle, DWORD milliseconds);

/// What is called instead of the system's function, which is `function`.
void* Replacement(const char* name, void* function) {
    if (std::strcmp(name, "GetProcAddress") == 0) return reinterpret_cast<void*>(&TorturedGetProcAddress);
    if (std::strcmp(name, "WaitForSingleObject") == 0) return reinterpret_cast<void*>(&HastyWait);
    return function;
}

std::size_t Find(const char* name) {
    std::size_t number = 0;
    while (number < std::size(Failures) && std::strcmp(Failures[number].name, name) != 0)
        ++number;
    return number;
}

[[noreturn]] void GiveUp(const char* why, const char* name) {
    OutputDebugStringA(why);
    OutputDebugStringA(name);
    TerminateProcess(GetCurrentProcess(), CannotTorture);
    std::abort();
}

}  // namespace

extern "C" {

extern const char TortureStubs[];

void* TortureDecide(std::uint32_t number, const char* returnsTo, std::uint64_t* result);

/// What the program imports from this DLL, so that it is loaded.
__declspec(dllexport) void KestraneTorture();

BOOL WINAPI DllMain(HINSTANCE module, DWORD reason, LPVOID reserved);

/// The address to go on to; or null, if the call is to fail with `result`. Calls nothing that could change what the
/// program sees, unless the call fails.
void* TortureDecide(std::uint32_t number, const char* returnsTo, std::uint64_t* result) {
    const LONG64 call = InterlockedIncrement64(&counts->functions[number].calls);
    const LONG64 offset = static_cast<std::uint32_t>(returnsTo - image);
    const LONG64 callFromHere = CountPlace(number, offset, call);
    if (number != planned) return functions[number];
    const bool fails =
        plannedPlace == NoPlace ? call == plannedCall : offset == plannedPlace && callFromHere == plannedCall;
    if (!fails) return functions[number];

    counts->reachedAt = offset;
    counts->reached = 1;
    const Failure& failure = Failures[number];
    *result = failure.result;
    if (failure.error == 0) return nullptr;
    if (failure.isErrno)
        errno = failure.error;
    else
        SetLastError(static_cast<DWORD>(failure.error));
    return nullptr;
}

}  // extern "C"

// Each stub notes its number and goes on to the one below. That one keeps what the arguments are passed in, asks
// TortureDecide, and either returns to the program or jumps to the function, with the stack as the program left it.
asm(R"(
    .text
    .balign 16
    .globl TortureStubs
TortureStubs:
    .set number, 0
    .rept 512
    .balign 16
    movl $number, %eax
    jmp TortureCall
    .set number, number + 1
    .endr

    .balign 16
    .seh_proc TortureCall
TortureCall:
    subq $0xa8, %rsp
    .seh_stackalloc 0xa8
    .seh_endprologue
    movq %rcx, 0x20(%rsp)
    movq %rdx, 0x28(%rsp)
    movq %r8, 0x30(%rsp)
    movq %r9, 0x38(%rsp)
    movdqu %xmm0, 0x40(%rsp)
    movdqu %xmm1, 0x50(%rsp)
    movdqu %xmm2, 0x60(%rsp)
    movdqu %xmm3, 0x70(%rsp)
    movl %eax, %ecx
    movq 0xa8(%rsp), %rdx
    leaq 0x80(%rsp), %r8
    call TortureDecide
    movq 0x20(%rsp), %rcx
    movq 0x28(%rsp), %rdx
    movq 0x30(%rsp), %r8
    movq 0x38(%rsp), %r9
    movdqu 0x40(%rsp), %xmm0
    movdqu 0x50(%rsp), %xmm1
    movdqu 0x60(%rsp), %xmm2
    movdqu 0x70(%rsp), %xmm3
    testq %rax, %rax
    je 1f
    addq $0xa8, %rsp
    jmp *%rax
1:
    movq 0x80(%rsp), %rax
    addq $0xa8, %rsp
    ret
    .seh_endproc
)");

namespace {

const void* StubOf(std::size_t number) {
    return TortureStubs + number * StubBytes;
}

/// The stub in place of a function, or the function itself if it cannot fail.
void* Torture(std::size_t number, void* function) {
    if (Failures[number].kind != Kind::Fails) return function;
    functions[number] = Replacement(Failures[number].name, function);
    return const_cast<void*>(StubOf(number));
}

FARPROC WINAPI TorturedGetProcAddress(HMODULE module, const char* name) {
    const FARPROC found = GetProcAddress(module, name);
    if (found == nullptr) return nullptr;
    const std::size_t number = Find(name);
    if (number == std::size(Failures)) return found;  // what the C runtime looks for in itself
    return reinterpret_cast<FARPROC>(Torture(number, reinterpret_cast<void*>(found)));
}

DWORD WINAPI HastyWait(HANDLE handle, DWORD milliseconds) {
    return WaitForSingleObject(handle, milliseconds == kestrane::FirstCheckMs ? HalfASecond : milliseconds);
}

void ReplaceImport(const char* name, void** slot) {
    const std::size_t number = Find(name);
    if (number == std::size(Failures)) GiveUp("torture: not in the table: ", name);
    if (Failures[number].kind == Kind::Data) return;
    DWORD before = 0;
    if (!VirtualProtect(slot, sizeof *slot, PAGE_READWRITE, &before)) GiveUp("torture: not writable: ", name);
    *slot = Torture(number, *slot);
    VirtualProtect(slot, sizeof *slot, before, &before);
}

void ReplaceImports(char* base) {
    const auto* dos = reinterpret_cast<const IMAGE_DOS_HEADER*>(base);
    const auto* headers = reinterpret_cast<const IMAGE_NT_HEADERS64*>(base + dos->e_lfanew);
    const auto& directory = headers->OptionalHeader.DataDirectory[IMAGE_DIRECTORY_ENTRY_IMPORT];
    const auto* dll = reinterpret_cast<const IMAGE_IMPORT_DESCRIPTOR*>(base + directory.VirtualAddress);
    for (; dll->Name != 0; ++dll) {
        if (std::strcmp(base + dll->Name, "torture.dll") == 0) continue;
        const auto* names = reinterpret_cast<const std::uint64_t*>(base + dll->OriginalFirstThunk);
        auto* slots = reinterpret_cast<void**>(base + dll->FirstThunk);
        for (; *names != 0; ++names, ++slots)
            ReplaceImport(reinterpret_cast<const IMAGE_IMPORT_BY_NAME*>(base + *names)->Name, slots);
    }
}

/// Shared memory, so that the counts are there however the program ends.
void OpenCounts() {
    char path[MAX_PATH] = {};
    const DWORD length = GetEnvironmentVariableA("KESTRANE_TORTURE_COUNTS", path, MAX_PATH);
    if (length == 0 || length >= MAX_PATH) GiveUp("torture: nowhere to count", "");
    const HANDLE file = CreateFileA(path, GENERIC_READ | GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr,
                                    OPEN_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr);
    const HANDLE mapping = CreateFileMappingA(file, nullptr, PAGE_READWRITE, 0, sizeof(Counts), nullptr);
    counts = mapping != nullptr ? static_cast<Counts*>(MapViewOfFile(mapping, FILE_MAP_WRITE, 0, 0, sizeof(Counts)))
                                : nullptr;
    if (counts == nullptr) GiveUp("torture: cannot count in ", path);
    for (std::size_t number = 0; number < std::size(Failures); ++number)
        std::strncpy(counts->functions[number].name, Failures[number].name, LongestName - 1);
}

void ReadPlan() {
    char plan[2 * LongestName] = {};
    GetEnvironmentVariableA("KESTRANE_TORTURE", plan, sizeof plan);
    const char* name = std::strtok(plan, " ");
    if (name == nullptr) return;
    const char* call = std::strtok(nullptr, " ");
    const char* place = std::strtok(nullptr, " ");
    planned = Find(name);
    if (planned == std::size(Failures) || call == nullptr) GiveUp("torture: no such plan: ", name);
    plannedCall = std::strtol(call, nullptr, 10);
    if (place != nullptr) plannedPlace = std::strtol(place, nullptr, 16);
}

}  // namespace

void KestraneTorture() {}

BOOL WINAPI DllMain(HINSTANCE /*module*/, DWORD reason, LPVOID /*reserved*/) {
    if (reason != DLL_PROCESS_ATTACH) return TRUE;
    auto* const base = reinterpret_cast<char*>(GetModuleHandleW(nullptr));
    image = base;
    OpenCounts();
    ReadPlan();
    ReplaceImports(base);
    return TRUE;
}
