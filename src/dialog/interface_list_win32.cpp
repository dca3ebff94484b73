#include "dialog/interface_list_win32.h"

#include <windowsx.h>

#include <optional>

#include "dialog/dialog_messages_win32.h"

namespace kestrane {
namespace {

/// The window property with the list box's own procedure.
constexpr wchar_t OldProcedureName[] = L"kestrane.listproc";

WNDPROC OldProcedureOf(HWND list) {
    return reinterpret_cast<WNDPROC>(GetPropW(list, OldProcedureName));
}

void PostToggle(HWND list, LRESULT item) {
    PostMessageW(GetParent(list), WM_TOGGLE_INTERFACE, static_cast<WPARAM>(item), 0);
}

/// None below the last item, for which the list may answer with the nearest one: it only promises to say whether the
/// point is in its client area.
std::optional<WORD> ItemAt(HWND list, LPARAM position) {
    const LRESULT found = SendMessageW(list, LB_ITEMFROMPOINT, 0, position);
    const bool outside = HIWORD(found) != 0;
    RECT rect{};
    if (outside || SendMessageW(list, LB_GETITEMRECT, LOWORD(found), reinterpret_cast<LPARAM>(&rect)) == LB_ERR)
        return {};
    const bool isOnItem = PtInRect(&rect, {GET_X_LPARAM(position), GET_Y_LPARAM(position)}) != FALSE;
    return isOnItem ? std::optional(LOWORD(found)) : std::nullopt;
}

void OnClick(HWND list, LPARAM position) {
    SetFocus(list);
    const auto item = ItemAt(list, position);
    if (!item) return;
    // The arrow keys select, and the caret of a list for one selection moves only while nothing is selected.
    SendMessageW(list, LB_SETCURSEL, static_cast<WPARAM>(-1), 0);
    SendMessageW(list, LB_SETCARETINDEX, *item, FALSE);
    PostToggle(list, *item);
}

void Unsubclass(HWND list, WNDPROC old) {
    SetWindowLongPtrW(list, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(old));
    RemovePropW(list, OldProcedureName);
}

LRESULT CALLBACK ListProcedure(HWND list, UINT message, WPARAM wParam, LPARAM lParam) noexcept {
    const WNDPROC old = OldProcedureOf(list);
    switch (message) {
        case WM_KEYDOWN:
            if (wParam != VK_SPACE) break;
            PostToggle(list, SendMessageW(list, LB_GETCARETINDEX, 0, 0));
            return 0;
        case WM_LBUTTONDOWN:
        case WM_LBUTTONDBLCLK:
            OnClick(list, lParam);
            return 0;
        case WM_NCDESTROY:
            Unsubclass(list, old);
            break;
        default:
            break;
    }
    return CallWindowProcW(old, list, message, wParam, lParam);
}

}  // namespace

void SubclassInterfaceList(HWND list) {
    // A second time, the procedure would become its own old one.
    if (OldProcedureOf(list) != nullptr) return;
    const LONG_PTR old = GetWindowLongPtrW(list, GWLP_WNDPROC);
    if (SetPropW(list, OldProcedureName, reinterpret_cast<HANDLE>(old)) == FALSE) return;
    SetWindowLongPtrW(list, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(&ListProcedure));
}

}  // namespace kestrane
