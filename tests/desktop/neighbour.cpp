// Another program on the same desktop: it reports windows and covers them. It takes commands on the standard input, one
// per line, each answered by one line of JSON:
//
//     windows              all top-level windows, topmost first
//     texts CLASS          the texts of the children of the first visible window of this class
//     children HANDLE      all controls of a window
//     control HANDLE ID    one of them, or null
//     focus HANDLE         the id of the control that has the keyboard in the thread of this window, or 0
//     mode CLASS           the state of this window's thread: {"moving":HANDLE or 0,"menu":true or false}
//     foreground           the class of the window that has the keyboard
//     move HANDLE X Y      moves any window, as the system does when a monitor is removed
//     paint HANDLE COUNT   repaints a window COUNT times, each time completely and with its controls
//     send HANDLE M W L    sends message M with these parameters; the answer is whether the window has processed it
//     post HANDLE M W L    the same, without waiting for it
//     tell TEXT M W        sends message M to all top-level windows, as the system does, with this text; - for none
//     dpi HANDLE DPI       tells a window that its monitor has this DPI now, with its rectangle, sized to match
//     show X Y W H         shows its own window, in one colour, below all topmost ones
//     front                brings its own window to the foreground
//     as CLASS X Y W H     brings a second window, of this class, to the foreground
//     hide                 hides its own windows
//     hotkey               takes Ctrl+Shift+B; the answer is whether it was free
//     quit
//
// With the name of a desktop as its argument it does all this there. Between the answers it reports events:
// {"clicked":[X,Y]} for a left press on its own window, in screen coordinates, and {"hotkey":true} for the hotkey.
#include <windows.h>

#include <cstdint>
#include <iterator>
#include <sstream>
#include <string>
#include <utility>

#include "commands.h"

namespace {

constexpr UINT AnswerTimeoutMs = 10000;
constexpr COLORREF OwnColor = RGB(0x12, 0x90, 0x34);
constexpr wchar_t ClassName[] = L"neighbour";

std::string TextOf(HWND window) {
    wchar_t text[1024] = {};
    DWORD_PTR length = 0;
    SendMessageTimeoutW(window, WM_GETTEXT, std::size(text), reinterpret_cast<LPARAM>(text), SMTO_ABORTIFHUNG,
                        AnswerTimeoutMs, &length);
    return JsonText(text);
}

std::string ClassOf(HWND window) {
    wchar_t name[256] = {};
    GetClassNameW(window, name, static_cast<int>(std::size(name)));
    return JsonText(name);
}

void Append(std::string& list, const std::string& element) {
    if (!list.empty()) list += ',';
    list += element;
}

/// The title is the one stored by the system, so a busy window does not block this.
BOOL CALLBACK AppendWindow(HWND window, LPARAM list) {
    RECT rect = {};
    wchar_t title[256] = {};
    BYTE alpha = 255;
    GetWindowRect(window, &rect);
    GetWindowTextW(window, title, static_cast<int>(std::size(title)));
    GetLayeredWindowAttributes(window, nullptr, &alpha, nullptr);
    std::ostringstream json;
    json << "{\"handle\":" << HandleToLong(window) << ",\"name\":" << ClassOf(window)
         << ",\"title\":" << JsonText(title) << ",\"visible\":" << (IsWindowVisible(window) ? "true" : "false")
         << ",\"style\":" << static_cast<std::uint32_t>(GetWindowLongW(window, GWL_STYLE))
         << ",\"extended\":" << static_cast<std::uint32_t>(GetWindowLongW(window, GWL_EXSTYLE))
         << ",\"alpha\":" << int{alpha} << ",\"rect\":[" << rect.left << ',' << rect.top << ',' << rect.right << ','
         << rect.bottom << "]}";
    Append(*reinterpret_cast<std::string*>(list), json.str());
    return TRUE;
}

BOOL CALLBACK AppendText(HWND window, LPARAM list) {
    Append(*reinterpret_cast<std::string*>(list), TextOf(window));
    return TRUE;
}

LRESULT AskWindow(HWND window, UINT message) {
    DWORD_PTR answer = 0;
    SendMessageTimeoutW(window, message, 0, 0, SMTO_ABORTIFHUNG, AnswerTimeoutMs, &answer);
    return static_cast<LRESULT>(answer);
}

/// Of a button whether it is ticked; of a list the number of its items and the selected one.
std::string StateOf(HWND control, const std::string& className) {
    std::ostringstream json;
    if (className == "\"Button\"") json << ",\"ticked\":" << (AskWindow(control, BM_GETCHECK) == 1 ? "true" : "false");
    if (className == "\"ComboBox\"")
        json << ",\"count\":" << AskWindow(control, CB_GETCOUNT) << ",\"chosen\":" << AskWindow(control, CB_GETCURSEL);
    if (className == "\"ListBox\"") json << ",\"count\":" << AskWindow(control, LB_GETCOUNT);
    return json.str();
}

std::string TellControl(HWND control) {
    if (control == nullptr) return "null";
    const std::string className = ClassOf(control);
    RECT rect = {};
    GetWindowRect(control, &rect);
    std::ostringstream json;
    json << "{\"handle\":" << HandleToLong(control) << ",\"id\":" << GetDlgCtrlID(control) << ",\"name\":" << className
         << ",\"text\":" << TextOf(control) << ",\"visible\":" << (IsWindowVisible(control) ? "true" : "false")
         << ",\"enabled\":" << (IsWindowEnabled(control) ? "true" : "false") << StateOf(control, className)
         << ",\"rect\":[" << rect.left << ',' << rect.top << ',' << rect.right << ',' << rect.bottom << "]}";
    return json.str();
}

BOOL CALLBACK AppendControl(HWND control, LPARAM list) {
    Append(*reinterpret_cast<std::string*>(list), TellControl(control));
    return TRUE;
}

std::string ListControls(HWND window) {
    std::string list;
    EnumChildWindows(window, AppendControl, reinterpret_cast<LPARAM>(&list));
    return '[' + list + ']';
}

std::string TellFocus(HWND window) {
    GUITHREADINFO info = {};
    info.cbSize = sizeof info;
    GetGUIThreadInfo(GetWindowThreadProcessId(window, nullptr), &info);
    return std::to_string(info.hwndFocus != nullptr ? GetDlgCtrlID(info.hwndFocus) : 0);
}

std::string ListWindows() {
    std::string list;
    EnumWindows(AppendWindow, reinterpret_cast<LPARAM>(&list));
    return '[' + list + ']';
}

std::string ListTexts(const std::string& className) {
    const std::wstring name(className.begin(), className.end());
    HWND window = nullptr;
    do {
        window = FindWindowExW(nullptr, window, name.c_str(), nullptr);
    } while (window != nullptr && !IsWindowVisible(window));
    std::string list;
    if (window != nullptr) EnumChildWindows(window, AppendText, reinterpret_cast<LPARAM>(&list));
    return '[' + list + ']';
}

/// Which modal loop of the system is running: the window that it moves or sizes, or a menu.
std::string TellMode(const std::string& className) {
    const std::wstring name(className.begin(), className.end());
    GUITHREADINFO info = {};
    info.cbSize = sizeof info;
    GetGUIThreadInfo(GetWindowThreadProcessId(FindWindowW(name.c_str(), nullptr), nullptr), &info);
    const HWND moving = (info.flags & GUI_INMOVESIZE) != 0 ? info.hwndMoveSize : nullptr;
    const bool menu = (info.flags & (GUI_INMENUMODE | GUI_POPUPMENUMODE)) != 0;
    return "{\"moving\":" + std::to_string(HandleToLong(moving)) + ",\"menu\":" + (menu ? "true}" : "false}");
}

bool Paint(HWND window, int count) {
    for (int i = 0; i < count; ++i) {
        if (!RedrawWindow(window, nullptr, nullptr, RDW_INVALIDATE | RDW_UPDATENOW | RDW_ALLCHILDREN)) return false;
    }
    return true;
}

bool Send(HWND window, const int (&message)[4]) {
    DWORD_PTR result = 0;
    return SendMessageTimeoutW(window, static_cast<UINT>(message[1]), static_cast<WPARAM>(message[2]), message[3],
                               SMTO_ABORTIFHUNG, AnswerTimeoutMs, &result) != 0;
}

bool Tell(const std::string& text, const int (&message)[4]) {
    const std::wstring wide(text.begin(), text.end());
    const auto lParam = text == "-" ? 0 : reinterpret_cast<LPARAM>(wide.c_str());
    DWORD_PTR result = 0;
    return SendMessageTimeoutW(HWND_BROADCAST, static_cast<UINT>(message[0]), static_cast<WPARAM>(message[1]), lParam,
                               SMTO_ABORTIFHUNG, AnswerTimeoutMs, &result) != 0;
}

/// The suggested rectangle is read where the window lives, so it is written there.
bool TellDpi(HWND window, int dpi) {
    RECT rect = {};
    DWORD id = 0;
    GetWindowThreadProcessId(window, &id);
    if (!GetWindowRect(window, &rect)) return false;
    const int now = static_cast<int>(GetDpiForWindow(window));
    rect.right = rect.left + MulDiv(rect.right - rect.left, dpi, now);
    rect.bottom = rect.top + MulDiv(rect.bottom - rect.top, dpi, now);
    HANDLE process = OpenProcess(PROCESS_VM_OPERATION | PROCESS_VM_WRITE, FALSE, id);
    if (process == nullptr) return false;
    void* there = VirtualAllocEx(process, nullptr, sizeof rect, MEM_COMMIT | MEM_RESERVE, PAGE_READWRITE);
    DWORD_PTR result = 0;
    const bool done = there != nullptr && WriteProcessMemory(process, there, &rect, sizeof rect, nullptr) &&
                      SendMessageTimeoutW(window, WM_DPICHANGED, MAKEWPARAM(dpi, dpi), reinterpret_cast<LPARAM>(there),
                                          SMTO_ABORTIFHUNG, AnswerTimeoutMs, &result) != 0;
    if (there != nullptr) VirtualFreeEx(process, there, 0, MEM_RELEASE);
    CloseHandle(process);
    return done;
}

/// Windows notifies every hook of a foreground change; Wine does not.
bool ComeToFront(HWND own) {
    if (!SetForegroundWindow(own)) return false;
    NotifyWinEvent(EVENT_SYSTEM_FOREGROUND, own, OBJID_WINDOW, CHILDID_SELF);
    return true;
}

HWND secondWindow = nullptr;

void EndSecondWindow() {
    if (secondWindow != nullptr) DestroyWindow(std::exchange(secondWindow, nullptr));
}

bool ComeAs(const std::string& className, const int (&place)[4]) {
    const std::wstring name(className.begin(), className.end());
    WNDCLASSEXW windowClass{};
    windowClass.cbSize = sizeof windowClass;
    windowClass.lpfnWndProc = DefWindowProcW;
    windowClass.hInstance = GetModuleHandleW(nullptr);
    windowClass.lpszClassName = name.c_str();
    RegisterClassExW(&windowClass);
    EndSecondWindow();
    secondWindow = CreateWindowExW(0, name.c_str(), L"", WS_POPUP | WS_VISIBLE, place[0], place[1], place[2], place[3],
                                   nullptr, nullptr, windowClass.hInstance, nullptr);
    return secondWindow != nullptr && ComeToFront(secondWindow);
}

std::string Obey(HWND own, const std::string& command) {
    std::istringstream words(command);
    std::string verb;
    std::string name;
    int numbers[4] = {};
    words >> verb;
    if (verb == "texts" || verb == "mode" || verb == "as" || verb == "tell") words >> name;
    for (int& number : numbers)
        words >> number;
    HWND named = static_cast<HWND>(LongToHandle(numbers[0]));

    bool done = true;
    if (verb == "windows") return ListWindows();
    if (verb == "texts") return ListTexts(name);
    if (verb == "children") return ListControls(named);
    if (verb == "control") return TellControl(GetDlgItem(named, numbers[1]));
    if (verb == "focus") return TellFocus(named);
    if (verb == "foreground") return ClassOf(GetForegroundWindow());
    if (verb == "mode") return TellMode(name);
    if (verb == "move")
        done = SetWindowPos(named, nullptr, numbers[1], numbers[2], 0, 0, SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE);
    if (verb == "paint") done = Paint(named, numbers[1]);
    if (verb == "send") done = Send(named, numbers);
    if (verb == "post")
        done = PostMessageW(named, static_cast<UINT>(numbers[1]), static_cast<WPARAM>(numbers[2]), numbers[3]);
    if (verb == "tell") done = Tell(name, numbers);
    if (verb == "dpi") done = TellDpi(named, numbers[1]);
    if (verb == "show")
        done = SetWindowPos(own, HWND_TOP, numbers[0], numbers[1], numbers[2], numbers[3],
                            SWP_SHOWWINDOW | SWP_NOACTIVATE);
    if (verb == "front") done = ComeToFront(own);
    if (verb == "as") done = ComeAs(name, numbers);
    if (verb == "hide") {
        EndSecondWindow();
        ShowWindow(own, SW_HIDE);
    }
    if (verb == "hotkey") done = RegisterHotKey(own, 1, MOD_CONTROL | MOD_SHIFT, 'B');
    if (verb == "quit") PostQuitMessage(0);
    return done ? "true" : "false";
}

void TellClick(HWND window, LPARAM lParam) {
    POINT point = {static_cast<short>(LOWORD(lParam)), static_cast<short>(HIWORD(lParam))};
    ClientToScreen(window, &point);
    std::ostringstream json;
    json << "{\"clicked\":[" << point.x << ',' << point.y << "]}";
    Print(json.str());
}

LRESULT CALLBACK NeighbourProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    switch (message) {
        case CommandMessage:
            Print("{\"answer\":" + Obey(window, TakeCommand(lParam)) + '}');
            return 0;
        case WM_MOUSEACTIVATE:
            return MA_NOACTIVATE;  // a click does not change its place in the Z order
        case WM_LBUTTONDOWN:
            TellClick(window, lParam);
            return 0;
        case WM_HOTKEY:
            Print("{\"hotkey\":true}");
            return 0;
        default:
            return DefWindowProcW(window, message, wParam, lParam);
    }
}

/// A process gets its desktop at startup, so it starts itself again, with the same input and output.
int RunInDesktop(std::string desktop) {
    std::wstring name(desktop.begin(), desktop.end());
    wchar_t self[MAX_PATH] = {};
    GetModuleFileNameW(nullptr, self, MAX_PATH);
    STARTUPINFOW startup{};
    startup.cb = sizeof startup;
    startup.lpDesktop = name.data();
    PROCESS_INFORMATION process;
    if (!CreateProcessW(self, nullptr, nullptr, nullptr, TRUE, 0, nullptr, nullptr, &startup, &process)) return 1;
    WaitForSingleObject(process.hProcess, INFINITE);
    return 0;
}

HWND CreateOwnWindow() {
    WNDCLASSEXW windowClass{};
    windowClass.cbSize = sizeof windowClass;
    windowClass.lpfnWndProc = NeighbourProc;
    windowClass.hInstance = GetModuleHandleW(nullptr);
    windowClass.hCursor = LoadCursorW(nullptr, IDC_ARROW);
    windowClass.hbrBackground = CreateSolidBrush(OwnColor);
    windowClass.lpszClassName = ClassName;
    RegisterClassExW(&windowClass);
    return CreateWindowExW(0, ClassName, L"neighbour", WS_POPUP, 0, 0, 1, 1, nullptr, nullptr, windowClass.hInstance,
                           nullptr);
}

}  // namespace

int main(int argc, char** argv) {
    if (argc == 2) return RunInDesktop(argv[1]);
    SetProcessDpiAwarenessContext(DPI_AWARENESS_CONTEXT_PER_MONITOR_AWARE_V2);
    const HWND window = CreateOwnWindow();
    if (window == nullptr) return 1;
    ObeyCommands(window, "{\"answer\":true}");
}
