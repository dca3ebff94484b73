#pragma once
#include <windows.h>

#include <objbase.h>

namespace kestrane {

/// COM on this thread while this lives, as a single-threaded apartment, which is what the shell's extensions expect. A
/// thread that already has another kind of apartment keeps it.
class ComApartment {
  public:
    ComApartment() : result_(CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED | COINIT_DISABLE_OLE1DDE)) {}
    ComApartment(const ComApartment&) = delete;
    ComApartment& operator=(const ComApartment&) = delete;
    ~ComApartment() {
        // S_FALSE, an apartment that was there before, counts too.
        if (SUCCEEDED(result_)) CoUninitialize();
    }

  private:
    const HRESULT result_;
};

}  // namespace kestrane
