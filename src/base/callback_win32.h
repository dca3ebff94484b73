#pragma once
// What the functions that the system calls return.

namespace kestrane {

/// Passes through what the last call in such a function returned. These functions are noexcept, so that no exception
/// leaves them. But to Windows a return address right before a function's end lies in its epilogue, where it asks no
/// handler any more (unwind procedure of x64), and GCC does not always put an instruction in between: here it is.
template <class Result>
Result Answer(Result result) {
    asm volatile("nop" : "+r"(result));
    return result;
}

}  // namespace kestrane
