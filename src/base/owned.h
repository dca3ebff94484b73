#pragma once
// The one owner of handles that must be released. A `Traits` type gives the handle type, the value that means "none",
// and how to close it:
//
//     struct IconTraits {
//         using Handle = HICON;
//         static constexpr Handle None() { return nullptr; }
//         static void Close(Handle icon) { DestroyIcon(icon); }
//     };
//     using UniqueIcon = Owned<IconTraits>;
//
// An owner can be moved but not copied, and never converts implicitly to the bare handle.
#include <utility>

namespace kestrane {

template <typename Traits>
class Owned {
  public:
    using Handle = typename Traits::Handle;

    Owned() = default;
    explicit Owned(Handle handle) : handle_(handle) {}
    Owned(const Owned&) = delete;
    Owned& operator=(const Owned&) = delete;
    Owned(Owned&& other) noexcept : handle_(other.Release()) {}
    Owned& operator=(Owned&& other) noexcept {
        if (this != &other) Reset(other.Release());
        return *this;
    }
    ~Owned() { Reset(); }

    Handle Get() const { return handle_; }
    explicit operator bool() const { return handle_ != Traits::None(); }

    /// Gives up the handle; the caller must close it.
    [[nodiscard]] Handle Release() { return std::exchange(handle_, Traits::None()); }

    /// Takes ownership of `handle` and then closes the old handle, if any.
    void Reset(Handle handle = Traits::None()) {
        const Handle old = std::exchange(handle_, handle);
        if (old != Traits::None()) Traits::Close(old);
    }

  private:
    Handle handle_ = Traits::None();
};

}  // namespace kestrane
