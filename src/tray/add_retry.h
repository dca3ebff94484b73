#pragma once
// What to do when the shell has refused to add an icon.

namespace kestrane {

enum class AddRetry {
    None,         // the refusal stands
    DeleteFirst,  // the shell still holds an old entry of ours: delete it, add again
    DropGuid,     // the shell refuses the GUID: add again with the id alone, and so for good
};

struct RefusedAdd {
    bool hadTaskbar;  // there was a shell that could refuse
    bool everAdded;   // an add of this icon has worked once in this process, with the GUID or without
    bool useGuid;     // the refused add had the GUID
};

/// Without a shell nothing has been said of the icon or of its GUID, so a later add is to find both as they are.
constexpr AddRetry ChooseAddRetry(const RefusedAdd& refused) {
    if (!refused.hadTaskbar) return AddRetry::None;
    if (refused.everAdded) return AddRetry::DeleteFirst;
    return refused.useGuid ? AddRetry::DropGuid : AddRetry::None;
}

}  // namespace kestrane
