// What screen readers are told about the settings dialog. The service that takes the names is the test's own.
#include <gmock/gmock.h>

#include <map>

#include "dialog/control_table.h"
#include "dialog/dialog_messages_win32.h"
#include "dialog/well_names_win32.h"
#include "support/fake_acc_services_win32.h"
#include "support/settings_dialog_world_win32.h"

namespace kestrane {
namespace {

using testing::Each;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Not;
using testing::UnorderedElementsAre;

/// What has been asked of the system.
struct Requests {
    std::vector<std::wstring> created;  // class and interface
    bool hasService = true;
    bool takesNames = true;
    // Those that stand, by the id of the control.
    std::map<std::int32_t, std::wstring> names;
    std::map<std::int32_t, LONG> roles;
    std::map<std::int32_t, LONG> states;
    int sets = 0;                             // of names
    std::vector<std::int32_t> changedStates;  // the controls whose changes were announced
    int references = 0;
    std::vector<std::string> breaches;
};
Requests requests;

const std::wstring Name = L"{608D3DF8-8128-4AA7-A428-F55E49267291}";
const std::wstring Role = L"{CB905FF2-7BD1-4C05-B3C8-E6C241364D70}";
const std::wstring State = L"{A8D4D5B0-0A21-42D0-A5C0-514E984F457B}";

void ExpectControl(HWND window, DWORD object, DWORD child) {
    if (object != 0xFFFFFFFC || child != 0) requests.breaches.emplace_back("not the control itself");
    if (!IsWindow(window)) requests.breaches.emplace_back("the control is gone");
}

/// Only the operations that the dialog may use.
struct Services final : FakeAccPropServices {
    HRESULT WINAPI SetHwndPropStr(HWND window, DWORD object, DWORD child, MSAAPROPID property, LPCWSTR text) override {
        ExpectControl(window, object, child);
        if (TextOfGuid(property) != Name) requests.breaches.emplace_back("not its name");
        ++requests.sets;
        if (!requests.takesNames) return E_FAIL;
        requests.names[GetDlgCtrlID(window)] = text;
        return S_OK;
    }
    HRESULT WINAPI ClearHwndProps(HWND window, DWORD object, DWORD child, const MSAAPROPID* properties,
                                  int count) override {
        ExpectControl(window, object, child);
        for (int i = 0; i < count; ++i) {
            if (TextOfGuid(properties[i]) == Name) requests.names.erase(GetDlgCtrlID(window));
            if (TextOfGuid(properties[i]) == Role) requests.roles.erase(GetDlgCtrlID(window));
            if (TextOfGuid(properties[i]) == State) requests.states.erase(GetDlgCtrlID(window));
        }
        return S_OK;
    }
    HRESULT WINAPI SetHwndProp(HWND window, DWORD object, DWORD child, MSAAPROPID property, VARIANT value) override {
        ExpectControl(window, object, child);
        if (value.vt != VT_I4) requests.breaches.emplace_back("not a number");
        const bool isState = TextOfGuid(property) == State;
        if (!isState && TextOfGuid(property) != Role) requests.breaches.emplace_back("neither role nor state");
        (isState ? requests.states : requests.roles)[GetDlgCtrlID(window)] = value.lVal;
        return S_OK;
    }
};

HRESULT WINAPI CreateService(REFCLSID kind, LPUNKNOWN, DWORD, REFIID interfaceId, void** object) {
    static Services services;
    APTTYPE apartment{};
    APTTYPEQUALIFIER qualifier{};
    if (FAILED(CoGetApartmentType(&apartment, &qualifier))) requests.breaches.emplace_back("no apartment");
    requests.created.push_back(TextOfGuid(kind) + L" " + TextOfGuid(interfaceId));
    *object = nullptr;
    if (!requests.hasService) return REGDB_E_CLASSNOTREG;
    services.AddRef();
    *object = &services;
    return S_OK;
}

void WINAPI RecordEvent(DWORD event, HWND window, LONG object, LONG child) {
    static const auto real = REAL(L"user32", NotifyWinEvent);
    if (event == EVENT_OBJECT_STATECHANGE && object == OBJID_CLIENT && child == CHILDID_SELF)
        requests.changedStates.push_back(GetDlgCtrlID(window));
    real(event, window, object, child);
}

class SettingsDialogNames : public SettingsDialogTest {
  protected:
    SettingsDialogNames() { requests = {}; }
    ~SettingsDialogNames() override {
        EXPECT_THAT(requests.breaches, IsEmpty());
        EXPECT_THAT(requests.names, IsEmpty()) << "all goes with the dialog";
        EXPECT_THAT(requests.roles, IsEmpty());
        EXPECT_THAT(requests.states, IsEmpty());
        EXPECT_EQ(requests.references, 0);
    }
};

TEST_F(SettingsDialogNames, EveryWellHasOne) {
    WithDialog([] {
        EXPECT_THAT(requests.created, Not(IsEmpty()));
        EXPECT_THAT(requests.created, Each(L"{B5F8350B-0548-48B1-A6EE-88BD00B4A5E7} "
                                           L"{6E26E776-04F0-495D-80E4-3330352E3169}"));
        EXPECT_EQ(requests.names.size(), ColorCount);
        EXPECT_EQ(requests.sets, static_cast<int>(ColorCount));
        EXPECT_EQ(requests.names[IdCpuBg], L"CPU, Fondo");
        EXPECT_EQ(requests.names[IdNetGraphUp], L"Gráfica de red, Subida");
    });
}

TEST_F(SettingsDialogNames, AreInTheLanguageOfNow) {
    WithDialog([] {
        SetLanguage(ActiveEnglish);
        SendMessageW(Dialog(), WM_RETRANSLATE, 0, 0);
        EXPECT_EQ(requests.names[IdCpuBg], L"CPU, Back");
        EXPECT_EQ(requests.names[IdNetGraphUp], L"Network graph, Up");
    });
}

TEST_F(SettingsDialogNames, FollowTheLevelsOfTheMemoryIcon) {
    WithDialog([] {
        Type(IdThreshold1, L"42");
        EXPECT_EQ(requests.names[IdMem1Text], L"Desde 42 %, Texto");
        EXPECT_EQ(requests.sets, static_cast<int>(ColorCount) + 3) << "only those that have changed are set again";
        Click(IdMemRestore);
        EXPECT_EQ(requests.names[IdMem1Text], L"Desde 50 %, Texto");
    });
}

TEST_F(SettingsDialogNames, AreNotMissedWhereTheSystemHasNone) {
    requests.hasService = false;
    WithDialog([] {
        Click(IdCpuPerCore);
        EXPECT_THAT(requests.roles, IsEmpty());
        EXPECT_THAT(requests.states, IsEmpty());
    });
    EXPECT_EQ(requests.sets, 0);
    EXPECT_THAT(requests.changedStates, IsEmpty());
    EXPECT_THAT(debugLines, IsEmpty());
}

TEST_F(SettingsDialogNames, AreNotMissedWhereTheSystemRefusesThem) {
    requests.takesNames = false;
    WithDialog([] { Click(IdCpuPerCore); });
    EXPECT_GT(requests.sets, 0);
    EXPECT_THAT(debugLines, IsEmpty());
}

TEST_F(SettingsDialogNames, TheProgramMayEndInAnEdit) {
    host.onChange = [this] {
        host.onChange = nullptr;
        DestroyWindow(Dialog());
    };
    WithDialog([] { Click(IdCpuPerCore); });
}

TEST_F(SettingsDialogNames, EveryOtherButtonHasItsText) {
    for (const std::uint32_t language : {ActiveSpanish, ActiveEnglish}) {
        SetLanguage(language);
        WithDialog([] {
            for (HWND control = GetWindow(Dialog(), GW_CHILD); control != nullptr;
                 control = GetWindow(control, GW_HWNDNEXT)) {
                std::wstring kind(16, L'\0');
                kind.resize(static_cast<std::size_t>(GetClassNameW(control, kind.data(), 16)));
                const std::int32_t id = GetDlgCtrlID(control);
                if (kind != L"Button" || ColorOfWell(id)) continue;
                EXPECT_NE(TextOfWindow(control), L"") << id;
            }
        });
    }
}

/// A screen reader takes the label before a list or a field in the order of windows as its name.
TEST_F(SettingsDialogNames, ALabelStandsBeforeEachFieldAndList) {
    WithDialog([] {
        for (const auto& [id, label] :
             std::vector<std::pair<std::int32_t, std::wstring>>{{IdCpuRefresh, L"Refresco"},
                                                                {IdCpuOpacity, L"Transparencia"},
                                                                {IdCpuMargin, L"Margen"},
                                                                {IdCpuSmoothing, L"Suavizado"},
                                                                {IdCpuFill, L"Relleno"},
                                                                {IdCpuFont, L"Fuente"},
                                                                {IdThreshold1, L"Desde"},
                                                                {IdMemFont, L"Fuente"},
                                                                {IdAllDisks, L"Discos"},
                                                                {IdLanguage, L"Idioma"}})
            EXPECT_EQ(TextOfWindow(GetWindow(Control(id), GW_HWNDPREV)), label) << id;
    });
}

// What the painted buttons are. Their states replace all that the system would tell of them.

constexpr LONG Tab = 37;
constexpr LONG Box = 44;
constexpr LONG Selected = 0x2;
constexpr LONG Focused = 0x4;
constexpr LONG Checked = 0x10;
constexpr LONG Invisible = 0x8000;
constexpr LONG Focusable = 0x100000;
constexpr LONG Selectable = 0x200000;

TEST_F(SettingsDialogNames, TabsAndSwitchesAreWhatTheyLookLike) {
    WithDialog([] {
        const std::map<std::int32_t, LONG> roles = {{IdCpuTab, Tab},   {IdDiskTab, Tab},    {IdMemTab, Tab},
                                                    {IdNetTab, Tab},   {IdGeneralTab, Tab}, {IdCpuShow, Box},
                                                    {IdDiskShow, Box}, {IdMemShow, Box},    {IdNetShow, Box}};
        EXPECT_EQ(requests.roles, roles);
    });
}

TEST_F(SettingsDialogNames, OneTabIsSelected) {
    WithDialog([] {
        SetFocus(Control(IdCpuPerCore));
        requests.changedStates.clear();
        Click(IdNetTab);
        EXPECT_THAT(requests.changedStates, UnorderedElementsAre(IdCpuTab, IdNetTab));
        for (const std::int32_t tab : {IdCpuTab, IdDiskTab, IdMemTab, IdGeneralTab})
            EXPECT_EQ(requests.states[tab] & ~Focused, Focusable | Selectable) << tab;
        EXPECT_EQ(requests.states[IdNetTab] & ~Focused, Focusable | Selectable | Selected);
    });
}

TEST_F(SettingsDialogNames, ASwitchTellsThatItIsOnOrOff) {
    settings.show = {true, false, true, true};
    WithDialog([] {
        SetFocus(Control(IdCpuPerCore));
        requests.changedStates.clear();
        EXPECT_EQ(requests.states[IdCpuShow], Focusable | Checked);
        EXPECT_EQ(requests.states[IdDiskShow], Focusable | Invisible) << "on another page";
        EXPECT_EQ(requests.states[IdMemShow], Focusable | Checked | Invisible);
        Notify(IdCpuShow, BN_CLICKED);
        EXPECT_EQ(requests.states[IdCpuShow], Focusable);
        EXPECT_THAT(requests.changedStates, ElementsAre(IdCpuShow));
        Click(IdCpuRestore);
        EXPECT_EQ(requests.states[IdCpuShow] & ~Focused, Focusable | Checked);
        Click(IdDiskTab);
        EXPECT_EQ(requests.states[IdDiskShow], Focusable);
        EXPECT_EQ(requests.states[IdCpuShow], Focusable | Checked | Invisible);
    });
}

TEST_F(SettingsDialogNames, TheStateGoesWithTheFocus) {
    WithDialog([] {
        SetFocus(Control(IdCpuShow));
        requests.changedStates.clear();
        EXPECT_EQ(requests.states[IdCpuShow], Focusable | Focused | Checked);
        SetFocus(Control(IdCpuTab));
        EXPECT_EQ(requests.states[IdCpuShow], Focusable | Checked);
        EXPECT_EQ(requests.states[IdCpuTab], Focusable | Focused | Selectable | Selected);
        SetFocus(Control(IdCpuPerCore));
        Pump();
        EXPECT_EQ(requests.states[IdCpuTab], Focusable | Selectable | Selected);
        EXPECT_THAT(requests.changedStates, IsEmpty()) << "the system tells of the focus by itself";
    });
}

}  // namespace
}  // namespace kestrane

extern "C" {
decltype(&NotifyWinEvent) __imp_NotifyWinEvent = &kestrane::RecordEvent;
decltype(&CoCreateInstance) __imp_CoCreateInstance = &kestrane::CreateService;
}
