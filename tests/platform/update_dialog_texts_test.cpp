// Every text of the update dialog has room in its control, in both languages and at any DPI. The DPI is played by the
// size of the template's font, from which the system computes all others.
#include <algorithm>
#include <array>
#include <cstring>
#include <limits>
#include <vector>

#include "base/font_win32.h"
#include "base/resource_ids.h"
#include "support/update_dialog_world_win32.h"
#include "update/update_texts.h"

namespace kestrane {
namespace {

constexpr WORD TemplatePoints = 9;
/// At 96 DPI and about 120, 144, 192 and 288.
constexpr std::array<WORD, 5> Sizes{9, 11, 14, 18, 27};
WORD points = TemplatePoints;

/// The program's template with a font of another size.
INT_PTR WINAPI OpenWithFont(HINSTANCE instance, LPCWSTR name, HWND owner, DLGPROC procedure, LPARAM lParam) {
    const HRSRC resource = FindResourceW(instance, name, RT_DIALOG);
    const auto* bytes = static_cast<const std::uint8_t*>(LockResource(LoadResource(instance, resource)));
    std::vector<std::uint32_t> aligned(SizeofResource(instance, resource) / 4 + 1);
    std::memcpy(aligned.data(), bytes, SizeofResource(instance, resource));
    auto* words = reinterpret_cast<WORD*>(aligned.data());
    std::size_t position = 15;  // of the title, behind the place, the menu and the class
    while (words[position] != 0)
        ++position;
    EXPECT_EQ(words[position + 1], TemplatePoints);
    words[position + 1] = points;
    return DialogBoxIndirectParamW(instance, reinterpret_cast<const DLGTEMPLATE*>(words), owner, procedure, lParam);
}

UINT WINAPI TellDpi(HWND) {
    return 96U * points / TemplatePoints;
}

class UpdateDialogTexts : public UpdateDialogTest {
  protected:
    /// Opens the dialog in each language and size.
    void InEachLook(const std::function<void()>& body) {
        for (const std::uint32_t language : {ActiveSpanish, ActiveEnglish}) {
            SetLanguage(language);
            for (const WORD size : Sizes) {
                points = size;
                SCOPED_TRACE((language == ActiveSpanish ? "Spanish at " : "English at ") +
                             std::to_string(TellDpi(nullptr)));
                WithDialog(body);
            }
        }
    }

    static SIZE RoomOf(HWND control) {
        RECT rect{};
        GetClientRect(control, &rect);
        return {rect.right, rect.bottom};
    }
    /// What the text needs, in lines as long as the control is wide or in a single one.
    static SIZE NeedOf(HWND control, const std::wstring& text, UINT flags) {
        const ScreenDc screen;
        const SelectedObject font(screen.Get(), reinterpret_cast<HFONT>(SendMessageW(control, WM_GETFONT, 0, 0)));
        RECT rect{0, 0, RoomOf(control).cx, 0};
        DrawTextW(screen.Get(), text.c_str(), -1, &rect, DT_CALCRECT | DT_EXPANDTABS | flags);
        return {rect.right, rect.bottom};
    }
    static void ExpectLineFits(HWND control, std::int32_t extra = 0) {
        const std::wstring text = TextOf(control);
        const SIZE need = NeedOf(control, text, DT_SINGLELINE);
        EXPECT_LE(need.cx + extra, RoomOf(control).cx) << testing::PrintToString(text);
        EXPECT_LE(need.cy, RoomOf(control).cy) << testing::PrintToString(text);
    }
    static void ExpectParagraphFits(const std::wstring& text) {
        const HWND note = Control(Note);
        const SIZE need = NeedOf(note, text, DT_WORDBREAK);
        EXPECT_LE(need.cx, RoomOf(note).cx) << testing::PrintToString(text);
        EXPECT_LE(need.cy, RoomOf(note).cy) << testing::PrintToString(text);
    }
};

TEST_F(UpdateDialogTexts, LinesHaveRoom) {
    info.version = "1234.5678.9012.3456";
    InEachLook([] {
        const std::array others = {Control(Note), Control(Bar), Control(IDCANCEL), Control(Update)};
        for (HWND control = GetWindow(Dialog(), GW_CHILD); control != nullptr;
             control = GetWindow(control, GW_HWNDNEXT)) {
            if (std::ranges::find(others, control) == others.end()) ExpectLineFits(control);
        }
    });
}

TEST_F(UpdateDialogTexts, ButtonsHaveRoom) {
    InEachLook([] {
        const auto margins = static_cast<std::int32_t>(8U * points / TemplatePoints);
        const auto icon = static_cast<std::int32_t>(16U * points / TemplatePoints);
        ExpectLineFits(Control(IDCANCEL), margins);
        ExpectLineFits(Control(Update), margins + icon);
    });
}

TEST_F(UpdateDialogTexts, WhateverTheNoteSaysHasRoom) {
    InEachLook([] {
        ExpectParagraphFits(TextOf(Note));
        ExpectParagraphFits(Tr(L"Descargando la versión nueva..."));
        ExpectParagraphFits(DevelopmentCopyText());
        ExpectParagraphFits(FolderNotWritableText());
        for (const DownloadStep step : {DownloadStep::Address, DownloadStep::Answer, DownloadStep::Save,
                                        DownloadStep::Connection, DownloadStep::Content})
            ExpectParagraphFits(DownloadFailureText({step, std::numeric_limits<std::uint32_t>::max()}));
    });
}

TEST_F(UpdateDialogTexts, ControlsStayInsideAndApart) {
    InEachLook([] {
        RECT client{};
        GetClientRect(Dialog(), &client);
        const auto placeOf = [](int id) {
            RECT rect{};
            GetWindowRect(Control(id), &rect);
            MapWindowPoints(nullptr, Dialog(), reinterpret_cast<POINT*>(&rect), 2);
            return rect;
        };
        for (const int id : {Headline, Running, Offered, Changes, Note, Bar, Web, IDCANCEL, Update}) {
            RECT common{};
            const RECT place = placeOf(id);
            EXPECT_TRUE(IntersectRect(&common, &place, &client) && EqualRect(&common, &place)) << id;
        }
        for (const auto& [upper, lower] : {std::pair(Note, Bar), std::pair(Note, Web), std::pair(Bar, Update),
                                           std::pair(Web, Update), std::pair(Changes, Note)})
            EXPECT_LE(placeOf(upper).bottom, placeOf(lower).top + 1) << upper << ", rounded to pixels";
        EXPECT_LT(placeOf(IDCANCEL).right, placeOf(Update).left);
    });
}

}  // namespace
}  // namespace kestrane

extern "C" {
decltype(&DialogBoxParamW) __imp_DialogBoxParamW = &kestrane::OpenWithFont;
decltype(&GetDpiForWindow) __imp_GetDpiForWindow = &kestrane::TellDpi;
}
