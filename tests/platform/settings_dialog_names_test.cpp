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

using testing::ElementsAre;
using testing::IsEmpty;

/// What has been asked of the system.
struct Requests {
    std::vector<std::wstring> created;  // class and interface
    bool hasService = true;
    bool takesNames = true;
    std::map<std::int32_t, std::wstring> names;  // by the id of the control, those that stand
    int sets = 0;
    int references = 0;
    std::vector<std::string> breaches;
};
Requests requests;

void ExpectName(DWORD object, DWORD child, const GUID& property) {
    if (object != 0xFFFFFFFC || child != 0) requests.breaches.emplace_back("not the control itself");
    if (TextOfGuid(property) != L"{608D3DF8-8128-4AA7-A428-F55E49267291}")
        requests.breaches.emplace_back("not its name");
}

/// Only the operations that the dialog may use.
struct Services final : FakeAccPropServices {
    HRESULT WINAPI SetHwndPropStr(HWND window, DWORD object, DWORD child, MSAAPROPID property, LPCWSTR text) override {
        ExpectName(object, child, property);
        ++requests.sets;
        if (!requests.takesNames) return E_FAIL;
        requests.names[GetDlgCtrlID(window)] = text;
        return S_OK;
    }
    HRESULT WINAPI ClearHwndProps(HWND window, DWORD object, DWORD child, const MSAAPROPID* properties,
                                  int count) override {
        EXPECT_EQ(count, 1);
        ExpectName(object, child, properties[0]);
        if (!IsWindow(window)) requests.breaches.emplace_back("the control is gone");
        requests.names.erase(GetDlgCtrlID(window));
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

class SettingsDialogNames : public SettingsDialogTest {
  protected:
    SettingsDialogNames() { requests = {}; }
    ~SettingsDialogNames() override {
        EXPECT_THAT(requests.breaches, IsEmpty());
        EXPECT_THAT(requests.names, IsEmpty()) << "all names go with the dialog";
        EXPECT_EQ(requests.references, 0);
    }
};

TEST_F(SettingsDialogNames, EveryWellHasOne) {
    WithDialog([] {
        EXPECT_THAT(requests.created, ElementsAre(L"{B5F8350B-0548-48B1-A6EE-88BD00B4A5E7} "
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
    WithDialog([] { Click(IdCpuPerCore); });
    EXPECT_EQ(requests.sets, 0);
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

}  // namespace
}  // namespace kestrane

extern "C" {
decltype(&CoCreateInstance) __imp_CoCreateInstance = &kestrane::CreateService;
}
