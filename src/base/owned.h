#pragma once
// The one owner of things that must be given back. A `Traits` type says what the thing is, which value means "none",
// and how it is closed:
//
//     struct IconTraits {
//         using Handle = HICON;
//         static constexpr Handle None() { return nullptr; }
//         static void Close(Handle icon) { DestroyIcon(icon); }
//     };
//     using UniqueIcon = Owned<IconTraits>;
//
// An owner moves and is never copied; nothing converts to the bare handle by itself.
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

    /// Gives the handle away: the caller closes it from now on.
    [[nodiscard]] Handle Release() { return std::exchange(handle_, Traits::None()); }

    /// Closes what is held, if anything, and takes over `handle`. The new handle is in place before the old one closes.
    void Reset(Handle handle = Traits::None()) {
        const Handle old = std::exchange(handle_, handle);
        if (old != Traits::None()) Traits::Close(old);
    }

  private:
    Handle handle_ = Traits::None();
};

}  // namespace kestrane
