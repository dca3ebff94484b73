#pragma once
// What to do after a failed NIM_ADD.

namespace kestrane {

enum class AddRetry {
    None,         // give up
    DeleteFirst,  // the shell may still hold an old entry of ours: delete it, add again
    DropGuid,     // the shell refuses the GUID: add again by id, and stay with that
};

struct RefusedAdd {
    bool answered;    // by a shell that was there, and in time
    bool mayBeThere;  // an entry of this icon may be in its way: an earlier add has succeeded, or had no answer in time
    bool mayDropGuid;  // the add used the GUID, and none has succeeded in this process
};

/// Without an answer the failure says nothing about the icon or its GUID, so a later add must try again unchanged.
constexpr AddRetry ChooseAddRetry(const RefusedAdd& refused) {
    if (!refused.answered) return AddRetry::None;
    if (refused.mayBeThere) return AddRetry::DeleteFirst;
    return refused.mayDropGuid ? AddRetry::DropGuid : AddRetry::None;
}

}  // namespace kestrane
