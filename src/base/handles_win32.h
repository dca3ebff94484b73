#pragma once
// Owners of the system's objects, one alias a kind, and the guards that put something back.
#include <windows.h>

#include "base/owned.h"

namespace kestrane {

/// Kernel objects whose "none" is the null handle: mutexes, processes, threads, events.
struct KernelHandleTraits {
    using Handle = HANDLE;
    static constexpr Handle None() { return nullptr; }
    static void Close(Handle handle) { CloseHandle(handle); }
};
using UniqueKernelHandle = Owned<KernelHandleTraits>;

/// Files and devices of CreateFileW, which says "none" with INVALID_HANDLE_VALUE.
struct FileTraits {
    using Handle = HANDLE;
    static Handle None() { return INVALID_HANDLE_VALUE; }
    static void Close(Handle handle) { CloseHandle(handle); }
};
using UniqueFile = Owned<FileTraits>;
/// A snapshot of CreateToolhelp32Snapshot, which says it in the same way.
using UniqueSnapshot = Owned<FileTraits>;

struct RegistryKeyTraits {
    using Handle = HKEY;
    static constexpr Handle None() { return nullptr; }
    static void Close(Handle handle) { RegCloseKey(handle); }
};
using UniqueRegistryKey = Owned<RegistryKeyTraits>;

struct IconTraits {
    using Handle = HICON;
    static constexpr Handle None() { return nullptr; }
    static void Close(Handle handle) { DestroyIcon(handle); }
};
using UniqueIcon = Owned<IconTraits>;

struct MenuTraits {
    using Handle = HMENU;
    static constexpr Handle None() { return nullptr; }
    static void Close(Handle handle) { DestroyMenu(handle); }
};
using UniqueMenu = Owned<MenuTraits>;

template <typename GdiHandle>
struct GdiObjectTraits {
    using Handle = GdiHandle;
    static constexpr Handle None() { return nullptr; }
    static void Close(Handle handle) { DeleteObject(handle); }
};
using UniqueBitmap = Owned<GdiObjectTraits<HBITMAP>>;
using UniqueFont = Owned<GdiObjectTraits<HFONT>>;
using UniqueBrush = Owned<GdiObjectTraits<HBRUSH>>;
using UniquePen = Owned<GdiObjectTraits<HPEN>>;

/// A memory device context of CreateCompatibleDC.
struct MemoryDcTraits {
    using Handle = HDC;
    static constexpr Handle None() { return nullptr; }
    static void Close(Handle handle) { DeleteDC(handle); }
};
using UniqueMemoryDc = Owned<MemoryDcTraits>;

/// The device context of the whole screen, given back when the guard goes.
class ScreenDc {
  public:
    ScreenDc() : dc_(GetDC(nullptr)) {}
    ScreenDc(const ScreenDc&) = delete;
    ScreenDc& operator=(const ScreenDc&) = delete;
    ~ScreenDc() {
        if (dc_ != nullptr) ReleaseDC(nullptr, dc_);
    }
    HDC Get() const { return dc_; }

  private:
    HDC dc_;
};

/// The painting of a window, from BeginPaint to EndPaint: one guard for each WM_PAINT.
class WindowPaint {
  public:
    explicit WindowPaint(HWND window) : window_(window), dc_(BeginPaint(window, &paint_)) {}
    WindowPaint(const WindowPaint&) = delete;
    WindowPaint& operator=(const WindowPaint&) = delete;
    ~WindowPaint() { EndPaint(window_, &paint_); }
    /// Null if the system gives none.
    HDC Dc() const { return dc_; }

  private:
    HWND window_;
    PAINTSTRUCT paint_{};
    HDC dc_;
};

/// Selects an object into a device context and selects the former one back. An object must not be deleted while it is
/// selected, so declare its owner before this guard.
class SelectedObject {
  public:
    SelectedObject(HDC dc, HGDIOBJ object) : dc_(dc), previous_(SelectObject(dc, object)) {}
    SelectedObject(const SelectedObject&) = delete;
    SelectedObject& operator=(const SelectedObject&) = delete;
    ~SelectedObject() {
        if (previous_ != nullptr) SelectObject(dc_, previous_);
    }
    /// False when the selection was refused.
    explicit operator bool() const { return previous_ != nullptr; }

  private:
    HDC dc_;
    HGDIOBJ previous_;
};

}  // namespace kestrane
