#include <windows.h>

#include "text/language_win32.h"

#include <gtest/gtest.h>

namespace {

LANGID uiLanguage = 0;
int questions = 0;

LANGID WINAPI FakeGetUserDefaultUILanguage() {
    ++questions;
    return uiLanguage;
}

}  // namespace

extern "C" {
decltype(&GetUserDefaultUILanguage) __imp_GetUserDefaultUILanguage = &FakeGetUserDefaultUILanguage;
}

namespace kestrane {
namespace {

constexpr LANGID Mexico = 0x080A;
constexpr LANGID Spain = 0x0C0A;
constexpr LANGID Catalan = 0x0403;
constexpr LANGID French = 0x040C;

TEST(SystemLanguage, IsSpanishForSpanishAndEnglishForAllOthers) {
    struct {
        LANGID system;
        std::uint32_t expected;
    } const cases[] = {{Mexico, 0}, {Spain, 0}, {Catalan, 1}, {French, 1}, {0x0409, 1}, {0, 1}};
    for (const auto& row : cases) {
        uiLanguage = row.system;
        EXPECT_EQ(SystemLanguage(), row.expected) << row.system;
    }
}

TEST(ResolveLanguage, FollowsTheSystemUnlessALanguageIsNamed) {
    struct {
        Lang language;
        LANGID system;
        std::uint32_t expected;
    } const cases[] = {
        {0, Mexico, 0}, {0, Catalan, 1},         {0, French, 1}, {1, French, 0},
        {1, Mexico, 0}, {2, French, 1},          {2, Mexico, 1}, {7, Mexico, 0},  // no language has this number
        {7, French, 1}, {0xFFFFFFFF, Mexico, 0},
    };
    for (const auto& row : cases) {
        uiLanguage = row.system;
        EXPECT_EQ(ResolveLanguage(row.language), row.expected) << row.language << " on " << row.system;
    }
}

TEST(ResolveLanguage, DoesNotAskTheSystemForANamedLanguage) {
    questions = 0;
    ResolveLanguage(LangSpanish);
    ResolveLanguage(LangEnglish);
    EXPECT_EQ(questions, 0);
    ResolveLanguage(LangAutomatic);
    EXPECT_EQ(questions, 1);
}

}  // namespace
}  // namespace kestrane
