#pragma once
// What to do when the shell has refused to add an icon.

namespace kestrane {

enum class AddRetry {
    None,         // the refusal stands
    DeleteFirst,  // the shell still holds an old entry of ours: delete it, add again
    DropGuid,     // the shell refuses the GUID: add again with the id alone, and so for good
};

/// `guidAdded`: an add with this GUID has worked once in this process. `useGuid`: the refused add had the GUID.
constexpr AddRetry ChooseAddRetry(bool guidAdded, bool useGuid) {
    if (guidAdded) return AddRetry::DeleteFirst;
    return useGuid ? AddRetry::DropGuid : AddRetry::None;
}

}  // namespace kestrane
