#pragma once
// The calls of a test's fake imports, in order, as short texts that read well when a comparison fails.
#include <string>
#include <utility>
#include <vector>

namespace kestrane::test {

inline std::vector<std::string>& Calls() {
    static std::vector<std::string> calls;
    return calls;
}

inline void NoteCall(std::string call) {
    Calls().push_back(std::move(call));
}

/// How many times this exact call was recorded.
inline int CountCalls(const std::string& call) {
    int count = 0;
    for (const std::string& noted : Calls())
        count += noted == call ? 1 : 0;
    return count;
}

}  // namespace kestrane::test
