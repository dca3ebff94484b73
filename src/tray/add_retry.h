#pragma once
// What to do after a failed NIM_ADD.

namespace kestrane {

enum class AddRetry {
    None,         // give up
    DeleteFirst,  // the shell still holds an old entry of ours: delete it, add again
    DropGuid,     // the shell refuses the GUID: add again by id, and stay with that
};

struct RefusedAdd {
    bool hadTaskbar;  // a shell was there to refuse
    bool everAdded;   // an add of this icon has succeeded in this process, with the GUID or without
    bool useGuid;     // the refused add used the GUID
};

/// Without a shell the failure says nothing about the icon or its GUID, so a later add must try again unchanged.
constexpr AddRetry ChooseAddRetry(const RefusedAdd& refused) {
    if (!refused.hadTaskbar) return AddRetry::None;
    if (refused.everAdded) return AddRetry::DeleteFirst;
    return refused.useGuid ? AddRetry::DropGuid : AddRetry::None;
}

}  // namespace kestrane
