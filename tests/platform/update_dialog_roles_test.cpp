// What screen readers are told about the update dialog. The service that takes it is the test's own.
#include <gmock/gmock.h>

#include <map>
#include <vector>

#include "support/fake_acc_services_win32.h"
#include "support/update_dialog_world_win32.h"

namespace kestrane {
namespace {

using testing::IsEmpty;

const std::wstring NameProperty = L"{608D3DF8-8128-4AA7-A428-F55E49267291}";
const std::wstring RoleProperty = L"{CB905FF2-7BD1-4C05-B3C8-E6C241364D70}";
const std::wstring ValueProperty = L"{123FE443-211A-4615-9527-C45A7E93717A}";
constexpr LONG Link = 30;
constexpr LONG ProgressBar = 48;

/// Keeps what stands, by the id of the control.
struct Services final : FakeAccPropServices {
    bool there = true;
    std::map<int, LONG> roles;
    std::map<int, std::wstring> names;
    std::map<int, std::wstring> values;
    int valueSets = 0;

    HRESULT WINAPI SetHwndProp(HWND window, DWORD object, DWORD child, MSAAPROPID property, VARIANT value) override {
        ExpectControl(window, object, child);
        if (TextOfGuid(property) != RoleProperty || value.vt != VT_I4) breaches.emplace_back("not a role");
        roles[GetDlgCtrlID(window)] = value.lVal;
        return S_OK;
    }
    HRESULT WINAPI SetHwndPropStr(HWND window, DWORD object, DWORD child, MSAAPROPID property, LPCWSTR text) override {
        ExpectControl(window, object, child);
        if (TextOfGuid(property) == NameProperty) {
            names[GetDlgCtrlID(window)] = text;
        } else if (TextOfGuid(property) == ValueProperty) {
            values[GetDlgCtrlID(window)] = text;
            ++valueSets;
        } else {
            breaches.emplace_back("neither a name nor a value");
        }
        return S_OK;
    }
    HRESULT WINAPI ClearHwndProps(HWND window, DWORD object, DWORD child, const MSAAPROPID* properties,
                                  int count) override {
        ExpectControl(window, object, child);
        const int id = GetDlgCtrlID(window);
        for (int i = 0; i < count; ++i) {
            const std::wstring property = TextOfGuid(properties[i]);
            if (property == RoleProperty) roles.erase(id);
            if (property == NameProperty) names.erase(id);
            if (property == ValueProperty) values.erase(id);
        }
        return S_OK;
    }

  private:
    void ExpectControl(HWND window, DWORD object, DWORD child) {
        if (!IsWindow(window)) breaches.emplace_back("the control is gone");
        if (object != 0xFFFFFFFC || child != 0) breaches.emplace_back("not the control itself");
    }
};
Services* services = nullptr;
int valueChanges = 0;

HRESULT WINAPI CreateService(REFCLSID kind, LPUNKNOWN, DWORD, REFIID interfaceId, void** object) {
    APTTYPE apartment{};
    APTTYPEQUALIFIER qualifier{};
    EXPECT_EQ(CoGetApartmentType(&apartment, &qualifier), S_OK);
    EXPECT_EQ(TextOfGuid(kind), L"{B5F8350B-0548-48B1-A6EE-88BD00B4A5E7}");
    EXPECT_EQ(TextOfGuid(interfaceId), L"{6E26E776-04F0-495D-80E4-3330352E3169}");
    *object = nullptr;
    if (!services->there) return REGDB_E_CLASSNOTREG;
    services->AddRef();
    *object = services;
    return S_OK;
}

void WINAPI CountEvent(DWORD event, HWND window, LONG object, LONG child) {
    static const auto real = REAL(L"user32", NotifyWinEvent);
    if (event == EVENT_OBJECT_VALUECHANGE && GetDlgCtrlID(window) == 3006) {
        EXPECT_EQ(object, OBJID_CLIENT);
        EXPECT_EQ(child, CHILDID_SELF);
        ++valueChanges;
    }
    real(event, window, object, child);
}

class UpdateDialogRolesTest : public UpdateDialogTest {
  protected:
    UpdateDialogRolesTest() {
        services = &services_;
        valueChanges = 0;
    }
    ~UpdateDialogRolesTest() override {
        EXPECT_THAT(services_.breaches, IsEmpty());
        EXPECT_THAT(services_.roles, IsEmpty()) << "all goes with the dialog";
        EXPECT_THAT(services_.names, IsEmpty());
        EXPECT_THAT(services_.values, IsEmpty());
        EXPECT_EQ(services_.references, 0);
    }

  private:
    Services services_;
};

TEST_F(UpdateDialogRolesTest, AreLinksAndAProgressBar) {
    WithDialog([] {
        const std::map<int, LONG> roles = {{Changes, Link}, {Web, Link}, {Bar, ProgressBar}};
        EXPECT_EQ(services->roles, roles);
        const std::map<int, std::wstring> names = {{Bar, L"Descargando la versión nueva..."}};
        EXPECT_EQ(services->names, names) << "a link is called as its text says";
        EXPECT_EQ(services->values[Bar], L"0%");
    });
}

TEST_F(UpdateDialogRolesTest, TheBarIsNamedInTheLanguageOfNow) {
    SetLanguage(ActiveEnglish);
    WithDialog([] { EXPECT_EQ(services->names[Bar], L"Downloading the new version..."); });
}

TEST_F(UpdateDialogRolesTest, TheBarTellsEachPercentOnce) {
    std::atomic<int> told = 0;
    const auto await = [&](int count) {
        while (told < count)
            Sleep(1);
    };
    world->download = [&](const DownloadCall& call) {
        if (world->downloads == 2) return true;
        call.Report(419, 1000);
        await(1);
        for (std::uint64_t done = 420; done < 430; ++done)
            call.Report(done, 1000);
        await(2);
        return call.Fail(DownloadStep::Connection);
    };
    WithDialog([&] {
        const int before = valueChanges;
        Click(Update);
        PumpUntil([] { return services->values[Bar] == L"41%"; });
        told = 1;
        PumpUntil([] { return services->values[Bar] == L"42%"; });
        told = 2;
        PumpUntil([] { return IsEnabled(Update); });
        EXPECT_EQ(valueChanges, before + 2);
        EXPECT_EQ(services->valueSets, before + 2);
        Click(Update);
        EXPECT_EQ(services->values[Bar], L"0%") << "the second try";
        PumpUntil([] { return !IsOpen(); });
    });
}

TEST_F(UpdateDialogRolesTest, TheDialogOpensWithoutThem) {
    services->there = false;
    EXPECT_TRUE(WithDialog([] {
        EXPECT_THAT(services->roles, IsEmpty());
        Click(Update);
        PumpUntil([] { return !IsOpen(); });
    }));
}

}  // namespace
}  // namespace kestrane

extern "C" {
decltype(&CoCreateInstance) __imp_CoCreateInstance = &kestrane::CreateService;
decltype(&NotifyWinEvent) __imp_NotifyWinEvent = &kestrane::CountEvent;
}
