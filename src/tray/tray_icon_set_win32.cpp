#include "tray/tray_icon_set_win32.h"

#include <windows.h>

#include <algorithm>
#include <cstddef>
#include <utility>

#include "base/debug_log_win32.h"
#include "base/resource_ids.h"
#include "text/translation.h"
#include "tray/add_retry.h"
#include "tray/taskbar_win32.h"

namespace kestrane {
namespace {

// A smaller structure belongs to an older shell, which truncates the tip to 63 characters.
static_assert(sizeof(NOTIFYICONDATAW) == 976, "the shell tells versions of this record by its size");

/// The icons' identities to the shell, which must never change; they differ only in the last byte, the id.
constexpr GUID IconGuid(std::uint32_t id) {
    return {0x8F41C7A2, 0x52D6, 0x4B19, {0xA7, 0x3E, 0x64, 0x1D, 0xC8, 0x95, 0x20, static_cast<unsigned char>(id)}};
}

/// The tip of an icon before its first refresh.
const wchar_t* IconName(std::uint32_t id) {
    switch (id) {
        case 1:
            return L"CPU";
        case 2:
            return Tr(L"Disco");
        case 3:
            return Tr(L"Memoria");
        default:
            return Tr(L"Red");
    }
}

/// Copies as much of `text` as fits with its terminator; the rest of the field is zeroed.
template <std::size_t Capacity>
void CopyCut(wchar_t (&field)[Capacity], const std::wstring& text) {
    const std::size_t length = std::min(text.size(), Capacity - 1);
    std::fill(std::copy_n(text.data(), length, field), field + Capacity, L'\0');
}

void PrepareSlot(TrayIconSlot& slot, HWND window, std::uint32_t id) {
    slot.data.cbSize = sizeof slot.data;
    slot.data.hWnd = window;
    slot.data.uID = id;
    slot.data.uFlags = NIF_MESSAGE | NIF_TIP | NIF_GUID | NIF_SHOWTIP;
    slot.data.uCallbackMessage = WM_TRAY_NOTIFY;
    slot.data.uVersion = NOTIFYICON_VERSION_4;
    slot.data.guidItem = IconGuid(id);
    CopyCut(slot.data.szTip, IconName(id));
}

/// A copy for one call; without NIF_GUID the shell goes by the id.
NOTIFYICONDATAW CallData(const TrayIconSlot& slot) {
    NOTIFYICONDATAW data = slot.data;
    if (!slot.useGuid) data.uFlags &= ~UINT{NIF_GUID};
    return data;
}

bool Notify(DWORD message, NOTIFYICONDATAW& data) {
    return Shell_NotifyIconW(message, &data) != FALSE;
}

NOTIFYICONDATAW AddData(const TrayIconSlot& slot) {
    NOTIFYICONDATAW data = CallData(slot);
    if (!slot.icon) return data;
    data.uFlags |= NIF_ICON;
    data.hIcon = slot.icon.Get();
    return data;
}

bool Add(TrayIconSlot& slot, NOTIFYICONDATAW& data) {
    SetLastError(ERROR_SUCCESS);
    const bool added = Notify(NIM_ADD, data);
    slot.overdue = !added && GetLastError() == ERROR_TIMEOUT;
    return added;
}

/// NIM_ADD, retried as ChooseAddRetry says.
bool TryAdd(TrayIconSlot& slot, NOTIFYICONDATAW& data) {
    // Checked first: a taskbar that appears after the failure is not the one that refused.
    const bool hadTaskbar = FindTaskbar() != nullptr;
    bool mayBeThere = slot.everAdded || slot.overdue;
    while (!Add(slot, data)) {
        const bool answered = hadTaskbar && !slot.addAgain && !slot.overdue;
        switch (ChooseAddRetry({answered, mayBeThere, slot.useGuid && !slot.everAdded})) {
            case AddRetry::None:
                return false;
            case AddRetry::DeleteFirst:
                Notify(NIM_DELETE, data);
                mayBeThere = false;
                break;
            case AddRetry::DropGuid:
                LogDebug(L"kestrane: NIM_ADD con GUID ha fallado; reintento sin GUID\n");
                slot.useGuid = false;
                data.uFlags &= ~UINT{NIF_GUID};
                break;
        }
    }
    return true;
}

/// True if the icon is on the taskbar afterwards. "TaskbarCreated" is sent, so it can arrive while an add waits for its
/// result. A nested add would find an icon whose state is not known yet; so the outer one repeats itself for the new
/// taskbar.
bool AddSlot(TrayIconSlot& slot) {
    if (slot.added) return true;
    if (!slot.wanted) return false;
    if (slot.adding) {
        slot.addAgain = true;
        return false;
    }
    NOTIFYICONDATAW data{};
    slot.adding = true;
    do {
        slot.addAgain = false;
        data = AddData(slot);
        slot.added = TryAdd(slot, data);
    } while (!slot.added && slot.addAgain);
    slot.adding = false;
    if (!slot.added) {
        LogDebug(L"kestrane: NIM_ADD ha fallado\n");
        return false;
    }
    slot.everAdded = true;
    Notify(NIM_SETVERSION, data);
    return true;
}

void DeleteSlot(TrayIconSlot& slot) {
    if (!slot.added && !slot.overdue) return;
    NOTIFYICONDATAW data = CallData(slot);
    Notify(NIM_DELETE, data);
    slot.added = slot.overdue = false;
}

/// Shows the slot's image and text on an existing icon; false if the shell no longer knows it.
bool ModifySlot(TrayIconSlot& slot) {
    NOTIFYICONDATAW data = CallData(slot);
    data.uFlags |= NIF_ICON;
    data.hIcon = slot.icon.Get();
    return Notify(NIM_MODIFY, data);
}

NOTIFYICONDATAW BalloonData(const TrayIconSlot& slot, const std::wstring& title, const std::wstring& text) {
    NOTIFYICONDATAW data = slot.data;
    data.uFlags = NIF_INFO;
    if (slot.useGuid) data.uFlags |= NIF_GUID;
    data.dwInfoFlags = NIIF_USER | NIIF_LARGE_ICON;
    data.hBalloonIcon = LoadIconW(GetModuleHandleW(nullptr), MAKEINTRESOURCEW(ResourceProgram));
    CopyCut(data.szInfoTitle, title);
    CopyCut(data.szInfo, text);
    return data;
}

}  // namespace

TrayIconSet::TrayIconSet(HWND owner) : window(owner) {
    std::uint32_t id = 0;
    for (TrayIconSlot& slot : slots)
        PrepareSlot(slot, window, ++id);
}

TrayIconSet::~TrayIconSet() {
    RemoveAll();
}

void TrayIconSet::SetVisible(std::uint32_t id, bool visible) {
    TrayIconSlot& slot = slots[id - 1];
    if (slot.wanted == visible) return;
    slot.wanted = visible;
    if (visible) {
        AddSlot(slot);
    } else {
        DeleteSlot(slot);
    }
}

std::uint32_t TrayIconSet::AddAll() {
    std::uint32_t shown = 0;
    // In this order, which is the order on the taskbar.
    for (TrayIconSlot& slot : slots)
        shown += AddSlot(slot) ? 1U : 0U;
    return shown;
}

void TrayIconSet::ReAddAll() {
    for (TrayIconSlot& slot : slots)
        slot.added = false;
    AddAll();
}

void TrayIconSet::Update(std::uint32_t id, UniqueIcon icon, const std::wstring& text) {
    TrayIconSlot& slot = slots[id - 1];
    // Destroy the old image only once the shell shows the new one.
    const UniqueIcon old = std::exchange(slot.icon, std::move(icon));
    CopyCut(slot.data.szTip, text);
    if (slot.added) {
        if (ModifySlot(slot)) return;
        slot.added = false;
    }
    AddSlot(slot);
}

bool TrayIconSet::ShowBalloon(const std::wstring& title, const std::wstring& text) {
    for (const TrayIconSlot& slot : slots) {
        if (!slot.added || !slot.wanted) continue;
        NOTIFYICONDATAW data = BalloonData(slot, title, text);
        if (Notify(NIM_MODIFY, data)) return true;
    }
    return false;
}

void TrayIconSet::GiveFocus(std::uint32_t id) {
    if (id < 1 || id > slots.size() || !slots[id - 1].added) return;
    NOTIFYICONDATAW data = CallData(slots[id - 1]);
    Notify(NIM_SETFOCUS, data);
}

void TrayIconSet::RemoveAll() {
    for (TrayIconSlot& slot : slots) {
        DeleteSlot(slot);
        slot.icon.Reset();
    }
}

}  // namespace kestrane
