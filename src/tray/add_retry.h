#pragma once
// What to do when the shell has refused to add an icon.

namespace kestrane {

enum class AddRetry {
    None,         // the refusal stands
    DeleteFirst,  // the shell still holds an old entry of ours: delete it, add again
    DropGuid,     // the shell refuses the GUID: add again with the id alone, and so for good
};

/// `everAdded`: an add of this icon has worked once in this process, with the GUID or without. `useGuid`: the refused
/// add had the GUID.
constexpr AddRetry ChooseAddRetry(bool everAdded, bool useGuid) {
    if (everAdded) return AddRetry::DeleteFirst;
    return useGuid ? AddRetry::DropGuid : AddRetry::None;
}

}  // namespace kestrane
