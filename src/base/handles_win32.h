#pragma once
// Owners of system objects, one alias per kind, and the guards that restore or release something.
#include <windows.h>

#include "base/owned.h"

namespace kestrane {

/// Kernel objects for which null means "none": mutexes, processes, threads, events.
struct KernelHandleTraits {
    using Handle = HANDLE;
    static constexpr Handle None() { return nullptr; }
    static void Close(Handle handle) { CloseHandle(handle); }
};
using UniqueKernelHandle = Owned<KernelHandleTraits>;

/// Files and devices from CreateFileW, for which INVALID_HANDLE_VALUE means "none".
struct FileTraits {
    using Handle = HANDLE;
    static Handle None() { return INVALID_HANDLE_VALUE; }
    static void Close(Handle handle) { CloseHandle(handle); }
};
using UniqueFile = Owned<FileTraits>;
/// A snapshot from CreateToolhelp32Snapshot, which fails with the same value.
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

/// A memory device context from CreateCompatibleDC.
struct MemoryDcTraits {
    using Handle = HDC;
    static constexpr Handle None() { return nullptr; }
    static void Close(Handle handle) { DeleteDC(handle); }
};
using UniqueMemoryDc = Owned<MemoryDcTraits>;

/// The device context of the whole screen, released with the guard.
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

/// BeginPaint to EndPaint: one guard per WM_PAINT.
class WindowPaint {
  public:
    explicit WindowPaint(HWND window) : window_(window), dc_(BeginPaint(window, &paint_)) {}
    WindowPaint(const WindowPaint&) = delete;
    WindowPaint& operator=(const WindowPaint&) = delete;
    ~WindowPaint() { EndPaint(window_, &paint_); }
    /// Null if BeginPaint failed.
    HDC Dc() const { return dc_; }

  private:
    HWND window_;
    PAINTSTRUCT paint_{};
    HDC dc_;
};

/// Restores everything that is set or selected in a device context during the guard's life. Objects that are selected
/// must outlive it.
class SavedDc {
  public:
    explicit SavedDc(HDC dc) : dc_(dc), state_(SaveDC(dc)) {}
    SavedDc(const SavedDc&) = delete;
    SavedDc& operator=(const SavedDc&) = delete;
    ~SavedDc() {
        if (state_ != 0) RestoreDC(dc_, state_);
    }

  private:
    HDC dc_;
    int state_;
};

/// Selects an object into a device context and restores the previous one. An object must not be deleted while selected,
/// so declare its owner before this guard.
class SelectedObject {
  public:
    SelectedObject(HDC dc, HGDIOBJ object) : dc_(dc), previous_(SelectObject(dc, object)) {}
    SelectedObject(const SelectedObject&) = delete;
    SelectedObject& operator=(const SelectedObject&) = delete;
    ~SelectedObject() {
        if (previous_ != nullptr) SelectObject(dc_, previous_);
    }
    /// False if the selection failed.
    explicit operator bool() const { return previous_ != nullptr; }

  private:
    HDC dc_;
    HGDIOBJ previous_;
};

}  // namespace kestrane
