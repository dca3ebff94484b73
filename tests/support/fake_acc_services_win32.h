#pragma once
// The service for what screen readers are told. A test's own service overrides the operations that the code may use.
#include <windows.h>
// <windows.h> comes first.
#include <ole2.h>

#include <oleacc.h>

#include <functional>
#include <string>
#include <vector>

namespace kestrane {

inline std::wstring TextOfGuid(const GUID& guid) {
    std::wstring text(64, L'\0');
    text.resize(static_cast<std::size_t>(StringFromGUID2(guid, text.data(), 64)) - 1);
    return text;
}

// COM's interfaces have no virtual destructor, so nobody may delete one.
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wnon-virtual-dtor"
struct FakeAccPropServices : IAccPropServices {
    std::vector<std::string> breaches;
    int references = 0;

    HRESULT WINAPI QueryInterface(REFIID, void**) override { return E_NOINTERFACE; }
    ULONG WINAPI AddRef() override { return static_cast<ULONG>(++references); }
    ULONG WINAPI Release() override { return static_cast<ULONG>(--references); }

    HRESULT WINAPI SetPropValue(const BYTE*, DWORD, MSAAPROPID, VARIANT) override { return Unexpected(); }
    HRESULT WINAPI SetPropServer(const BYTE*, DWORD, const MSAAPROPID*, int, IAccPropServer*, AnnoScope) override {
        return Unexpected();
    }
    HRESULT WINAPI ClearProps(const BYTE*, DWORD, const MSAAPROPID*, int) override { return Unexpected(); }
    HRESULT WINAPI SetHwndProp(HWND, DWORD, DWORD, MSAAPROPID, VARIANT) override { return Unexpected(); }
    HRESULT WINAPI SetHwndPropStr(HWND, DWORD, DWORD, MSAAPROPID, LPCWSTR) override { return Unexpected(); }
    HRESULT WINAPI SetHwndPropServer(HWND, DWORD, DWORD, const MSAAPROPID*, int, IAccPropServer*, AnnoScope) override {
        return Unexpected();
    }
    HRESULT WINAPI ClearHwndProps(HWND, DWORD, DWORD, const MSAAPROPID*, int) override { return Unexpected(); }
    HRESULT WINAPI ComposeHwndIdentityString(HWND, DWORD, DWORD, BYTE**, DWORD*) override { return Unexpected(); }
    HRESULT WINAPI DecomposeHwndIdentityString(const BYTE*, DWORD, HWND*, DWORD*, DWORD*) override {
        return Unexpected();
    }
    HRESULT WINAPI SetHmenuProp(HMENU, DWORD, MSAAPROPID, VARIANT) override { return Unexpected(); }
    HRESULT WINAPI SetHmenuPropStr(HMENU, DWORD, MSAAPROPID, LPCWSTR) override { return Unexpected(); }
    HRESULT WINAPI SetHmenuPropServer(HMENU, DWORD, const MSAAPROPID*, int, IAccPropServer*, AnnoScope) override {
        return Unexpected();
    }
    HRESULT WINAPI ClearHmenuProps(HMENU, DWORD, const MSAAPROPID*, int) override { return Unexpected(); }
    HRESULT WINAPI ComposeHmenuIdentityString(HMENU, DWORD, BYTE**, DWORD*) override { return Unexpected(); }
    HRESULT WINAPI DecomposeHmenuIdentityString(const BYTE*, DWORD, HMENU*, DWORD*) override { return Unexpected(); }

  protected:
    ~FakeAccPropServices() = default;

  private:
    HRESULT Unexpected() {
        breaches.emplace_back("another operation");
        return E_NOTIMPL;
    }
};
#pragma GCC diagnostic pop

}  // namespace kestrane
