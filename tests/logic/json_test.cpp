#include "update/json.h"

#include <gmock/gmock.h>

#include <ostream>
#include <vector>

namespace kestrane {
namespace {

using namespace std::string_literals;
using namespace std::string_view_literals;
using testing::ElementsAre;
using testing::IsEmpty;

struct Field {
    std::string key;
    JsonFieldKind kind;
    std::string value;

    bool operator==(const Field&) const = default;
    friend std::ostream& operator<<(std::ostream& out, const Field& field) {
        return out << field.key << " (" << static_cast<int>(field.kind)
                   << ") = " << testing::PrintToString(field.value);
    }
};

using Kind = JsonFieldKind;

struct Reading {
    bool complete;
    std::vector<Field> fields;
};

/// A copy without a byte behind it, so that the sanitizer notices a step too far.
std::vector<char> ExactCopy(std::string_view text) {
    return {text.begin(), text.end()};
}

Reading Read(std::string_view text) {
    const std::vector<char> copy = ExactCopy(text);
    Reading reading{};
    reading.complete =
        ReadFlatJsonObject({copy.data(), copy.size()}, [&](std::string_view key, Kind kind, std::string_view value) {
            reading.fields.push_back({std::string(key), kind, std::string(value)});
        });
    return reading;
}

template <typename Text>
JsonScanner ScannerOf(const Text& text) {
    return {reinterpret_cast<const std::uint8_t*>(text.data()), text.size()};
}

/// The one string that `text` is, or "(none)".
std::string ReadString(std::string_view text) {
    const std::vector<char> copy = ExactCopy(text);
    JsonScanner scanner = ScannerOf(copy);
    std::string output = "old";
    return ReadJsonString(scanner, output) ? output : "(none)";
}

TEST(JsonFieldKind, HasTheNumbersThatOthersRelyOn) {
    EXPECT_EQ(static_cast<int>(Kind::String), 1);
    EXPECT_EQ(static_cast<int>(Kind::Number), 2);
    EXPECT_EQ(static_cast<int>(Kind::Other), 3);
}

TEST(ReadFlatJsonObject, HandsOverEachFieldInFileOrder) {
    const Reading reading = Read(R"( { "s" : "text" , "n":-1.5e+3,"t":true,"f":false,"z":null,
        "o":{"s":"hidden"},	"a":[1,{"x":[]}],"":"" } )");
    EXPECT_TRUE(reading.complete);
    EXPECT_THAT(reading.fields,
                ElementsAre(Field{"s", Kind::String, "text"}, Field{"n", Kind::Number, "-1.5e+3"},
                            Field{"t", Kind::Other, ""}, Field{"f", Kind::Other, ""}, Field{"z", Kind::Other, ""},
                            Field{"o", Kind::Other, ""}, Field{"a", Kind::Other, ""}, Field{"", Kind::String, ""}));
}

TEST(ReadFlatJsonObject, HandsOverARepeatedKeyEachTime) {
    EXPECT_THAT(Read(R"({"a":1,"a":"2"})").fields,
                ElementsAre(Field{"a", Kind::Number, "1"}, Field{"a", Kind::String, "2"}));
}

TEST(ReadFlatJsonObject, LooksAtNothingBehindAnEmptyObject) {
    for (const std::string_view text : {"{}"sv, " { } "sv, "{}x"sv, "{}}"sv, "{},"sv, "{}{\"a\":1}"sv, "{}\0\xFF"sv}) {
        const Reading reading = Read(text);
        EXPECT_TRUE(reading.complete) << text;
        EXPECT_THAT(reading.fields, IsEmpty()) << text;
    }
}

TEST(ReadFlatJsonObject, RefusesWhatIsNoObject) {
    for (const std::string_view text :
         {""sv, " "sv, "{"sv, "{ "sv, "[1]"sv, "\"a\""sv, "1"sv, "\xEF\xBB\xBF{}"sv, "\v{}"sv, "\0{}"sv, "}"sv}) {
        const Reading reading = Read(text);
        EXPECT_FALSE(reading.complete) << text;
        EXPECT_THAT(reading.fields, IsEmpty()) << text;
    }
}

TEST(ReadFlatJsonObject, TellsWhatFollowsTheObject) {
    for (const std::string_view end : {"", " ", "\t\n\r "}) {
        EXPECT_TRUE(Read(R"({"a":1})" + std::string(end)).complete) << end;
    }
    for (const std::string_view end : {"x"sv, ","sv, "}"sv, " 1"sv, "\v"sv, "\0"sv, "{}"sv}) {
        const Reading reading = Read(R"({"a":1})" + std::string(end));
        EXPECT_FALSE(reading.complete) << end;
        EXPECT_THAT(reading.fields, ElementsAre(Field{"a", Kind::Number, "1"})) << end;
    }
}

TEST(ReadFlatJsonObject, MayHaveHandedOverFieldsOfAMalformedObject) {
    struct {
        std::string_view text;
        std::size_t fields;
    } const cases[] = {
        {R"({"a":1,})", 1},        // the next key is required
        {R"({"a":1,,"b":2})", 1},  //
        {R"({"a":1 "b":2})", 1},   //
        {R"({"a":1;"b":2})", 1},   //
        {R"({"a":1)", 1},          // cut off, with and without white space
        {R"({"a":1 )", 1},         //
        {R"({"a":1])", 1},         //
        {R"({"a":truex})", 1},     // the word matches, what follows does not
        {R"({"a":1true})", 1},     //
        {R"({"a":"b"c})", 1},      //
        {R"({,"a":1})", 0},        //
        {R"({"a" 1})", 0},         //
        {R"({"a":})", 0},          //
        {R"({"a":,"b":1})", 0},    //
        {R"({"a")", 0},            //
        {R"({"a" )", 0},           //
        {R"({"a":)", 0},           //
        {R"({"a": )", 0},          //
        {R"({a:1})", 0},           //
        {R"({'a':1})", 0},         //
        {R"({"a":x})", 0},         // an empty number
        {R"({"a":True})", 0},      //
        {R"({"a":t})", 0},         //
        {R"({"a":tru})", 0},       //
        {R"({"a":fals})", 0},      //
        {R"({"a":nul})", 0},       //
        {R"({"a":tfalse})", 0},    //
        {R"({"a":"\q"})", 0},      //
        {R"({"a":"\u12"})", 0},    //
        {R"({"a":"b)", 0},         //
        {R"({"a":"b\)", 0},        //
        {R"({"a":[1,2)", 0},       //
        {R"({"a":["\q]})", 0},     // strings are read even in what is skipped
        {R"({"a":{"b":1})", 1},    // the inner object takes the bracket
        {R"({"a)", 0},             //
        {R"({"\u00zz":1})", 0},    //
    };
    for (const auto& c : cases) {
        const Reading reading = Read(c.text);
        EXPECT_FALSE(reading.complete) << c.text;
        EXPECT_EQ(reading.fields.size(), c.fields) << c.text;
    }
}

TEST(ReadFlatJsonObject, RefusesEveryBeginningOfAnObject) {
    const std::string text = R"({"a":"b\u00e9\n","c":-1.5,"d":[{"e":"]"}],"f":null})";
    ASSERT_TRUE(Read(text).complete);
    for (std::size_t length = 0; length < text.size(); ++length) {
        EXPECT_FALSE(Read(std::string_view(text).substr(0, length)).complete) << length;
    }
}

TEST(ReadFlatJsonObject, SkipsNestedValuesWhole) {
    EXPECT_THAT(Read(R"({"a":{"b":"}"},"c":2})").fields,
                ElementsAre(Field{"a", Kind::Other, ""}, Field{"c", Kind::Number, "2"}));
    const Reading mixed = Read(R"({"a":[1},"b":true})");  // the brackets close each other
    EXPECT_TRUE(mixed.complete);
    EXPECT_THAT(mixed.fields, ElementsAre(Field{"a", Kind::Other, ""}, Field{"b", Kind::Other, ""}));
}

TEST(ReadFlatJsonObject, SkipsAnyDepth) {
    for (const std::size_t depth : {1U, 2U, 10U, 10000U}) {
        const std::string open(depth, '[');
        const std::string close(depth, ']');
        EXPECT_TRUE(Read(R"({"a":)" + open + close + "}").complete) << depth;
        EXPECT_FALSE(Read(R"({"a":)" + open + close.substr(1) + "}").complete) << depth;
        EXPECT_FALSE(Read(R"({"a":)" + open + close + "]}").complete) << depth;
    }
}

TEST(ReadFlatJsonObject, PassesBytesOnUnchecked) {
    const Reading reading = Read("{\"\xC3\xB1\":\"\x80\xFF\x01\n\0\x7F\"}"sv);
    EXPECT_TRUE(reading.complete);
    EXPECT_THAT(reading.fields, ElementsAre(Field{"\xC3\xB1", Kind::String, "\x80\xFF\x01\n\0\x7F"s}));
}

TEST(ReadJsonString, DecodesEveryEscape) {
    struct {
        std::string_view text;
        std::string_view expected;
    } const cases[] = {
        {R"("")", ""},
        {R"( "a")", "a"},
        {R"("a"b)", "a"},
        {R"("\"\/\\\b\f\n\r\t")", "\"/\\\b\f\n\r\t"},
        {R"("x\u00e9")", "x\xC3\xA9"},
        {R"("x\u00E9y")", "x\xC3\xA9y"},
        {R"("\u0000")", "\0"sv},
        {R"("\ud83d\ude00")", "\xED\xA0\xBD\xED\xB8\x80"},  // the halves stay apart
        {R"("\uABCDef")",
         "\xEA\xAF\x8D"
         "ef"},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(ReadString(c.text), c.expected) << c.text;
    }
}

TEST(ReadJsonString, KnowsNineEscapes) {
    std::string letters;
    for (std::uint32_t letter = 0; letter < 256; ++letter) {
        if (ReadString(std::string("\"\\") + static_cast<char>(letter) + "0041\"") != "(none)")
            letters += static_cast<char>(letter);
    }
    EXPECT_EQ(letters, "\"/\\bfnrtu");
}

TEST(ReadJsonString, CopiesEveryOtherByte) {
    for (std::uint32_t byte = 0; byte < 256; ++byte) {
        const auto c = static_cast<char>(byte);
        if (c == '"' || c == '\\') continue;
        EXPECT_EQ(ReadString(std::string("\"") + c + "\""), std::string(1, c)) << byte;
    }
}

TEST(ReadJsonString, RefusesAStringThatDoesNotEnd) {
    for (const std::string_view text :
         {"",          " ",          "a",           "'a'",         R"(")",        R"("a)",
          R"("\)",     R"("\")",     R"("\n)",      R"("\u)",      R"("\u004)",   R"("\u0041)",
          R"("\u12")", R"("\u123")", R"("\u12g4")", R"("\u 123")", R"("\u+123")", R"("\q")",
          R"("\0")",   R"("\N")",    R"("\U0041")"}) {
        EXPECT_EQ(ReadString(text), "(none)") << text;
    }
}

TEST(ReadJsonString, EndsBehindTheQuote) {
    const std::string_view text = R"(  "a\u0041\"" "b")";
    JsonScanner scanner = ScannerOf(text);
    std::string output;
    EXPECT_TRUE(ReadJsonString(scanner, output));
    EXPECT_EQ(scanner.position, 13U);
    EXPECT_TRUE(ReadJsonString(scanner, output));
    EXPECT_EQ(output, "b");
    EXPECT_EQ(scanner.position, text.size());
    EXPECT_FALSE(ReadJsonString(scanner, output));
    EXPECT_EQ(output, "");
}

TEST(ReadJsonNumberToken, TakesTheLongestRunWithoutCheckingItsForm) {
    struct {
        std::string_view text;
        std::string_view expected;
    } const cases[] = {
        {"1", "1"},      {" 12,", "12"}, {"1e+-5.", "1e+-5."}, {"-", "-"}, {"0123456789+-.eEx", "0123456789+-.eE"},
        {"...}", "..."}, {"5f", "5"},    {"\t\n\r 1 2", "1"},  {"E", "E"}, {"1\0"sv, "1"},
    };
    for (const auto& c : cases) {
        JsonScanner scanner = ScannerOf(c.text);
        std::string token = "old";
        EXPECT_TRUE(ReadJsonNumberToken(scanner, token)) << c.text;
        EXPECT_EQ(token, c.expected);
    }
    for (const std::string_view text : {"", " ", "x", "\"1\"", ",", "}"}) {
        JsonScanner scanner = ScannerOf(text);
        std::string token = "old";
        EXPECT_FALSE(ReadJsonNumberToken(scanner, token)) << text;
        EXPECT_EQ(token, "");
    }
}

TEST(MatchJsonLiteral, ComparesTheWordOnly) {
    struct {
        std::string_view text;
        bool matches;
        std::uint64_t position;
    } const cases[] = {
        {"true", true, 4},  {" \t\n\rtrue", true, 8}, {"truex", true, 4}, {"tru", false, 0},
        {"True", false, 0}, {"", false, 0},           {" ", false, 1},    {" xtrue", false, 1},
    };
    for (const auto& c : cases) {
        JsonScanner scanner = ScannerOf(c.text);
        EXPECT_EQ(MatchJsonLiteral(scanner, "true"), c.matches) << c.text;
        EXPECT_EQ(scanner.position, c.position) << c.text;
    }
}

TEST(SkipJsonContainer, EndsBehindTheClosingBracket) {
    struct {
        std::string_view text;
        std::uint64_t end;  // 0: never closed
    } const cases[] = {
        {"[]", 2}, {"{}", 2},    {" []x", 3},    {"[[]]]", 4},       {"[}", 2},
        {"{]", 2}, {"[{]}x", 4}, {"[\"]\"]", 5}, {"[\"\\\"]\"]", 7}, {"{\"a\":[1,2]}", 11},
        {"[", 0},  {"[[]", 0},   {"[\"]", 0},    {"[\"\\q]", 0},     {"[\"\\q\"]", 0},
        {"", 0},   {" ", 0},     {"[truex]", 7},
    };
    for (const auto& c : cases) {
        JsonScanner scanner = ScannerOf(c.text);
        EXPECT_EQ(SkipJsonContainer(scanner), c.end != 0) << c.text;
        if (c.end != 0) {
            EXPECT_EQ(scanner.position, c.end) << c.text;
        }
        EXPECT_LE(scanner.position, scanner.length) << c.text;
    }
}

TEST(AppendUtf8CodeUnit, GivesOneToThreeBytes) {
    struct {
        std::uint32_t unit;
        std::string_view expected;
    } const cases[] = {
        {0, "\0"sv},
        {0x41, "A"},
        {0x7F, "\x7F"},
        {0x80, "\xC2\x80"},
        {0xE9, "\xC3\xA9"},
        {0x7FF, "\xDF\xBF"},
        {0x800, "\xE0\xA0\x80"},
        {0x20AC, "\xE2\x82\xAC"},
        {0xD83D, "\xED\xA0\xBD"},
        {0xDFFF, "\xED\xBF\xBF"},
        {0xFFFF, "\xEF\xBF\xBF"},
    };
    for (const auto& c : cases) {
        std::string output = "x";
        AppendUtf8CodeUnit(output, c.unit);
        EXPECT_EQ(output, "x" + std::string(c.expected)) << c.unit;
    }
}

TEST(ParseDecimal, TakesOneToNineteenDigits) {
    struct {
        std::string_view text;
        std::uint64_t expected;
    } const cases[] = {
        {"0", 0},
        {"7", 7},
        {"00", 0},
        {"0000000000000000000", 0},
        {"0000000000000000001", 1},
        {"1000000", 1'000'000},
        {"4294967296", 4'294'967'296},
        {"9223372036854775808", 9'223'372'036'854'775'808U},
        {"9999999999999999999", 9'999'999'999'999'999'999U},
    };
    for (const auto& c : cases) {
        std::uint64_t value = 5;
        EXPECT_TRUE(ParseDecimal(c.text, value)) << c.text;
        EXPECT_EQ(value, c.expected);
    }
}

TEST(ParseDecimal, LeavesTheValueAloneForAnythingElse) {
    for (const std::string_view text :
         {""sv, "00000000000000000000"sv, "10000000000000000000"sv, "+1"sv, "-1"sv, "1.0"sv, "1e3"sv, " 1"sv, "1 "sv,
          "1x"sv, "x1"sv, "/"sv, ":"sv, "1\0"sv, "\xB2"sv}) {
        std::uint64_t value = 5;
        EXPECT_FALSE(ParseDecimal(text, value)) << text;
        EXPECT_EQ(value, 5U);
    }
}

TEST(EscapeJsonString, EscapesWhatMayNotStandBetweenQuotes) {
    struct {
        std::string_view text;
        std::string_view expected;
    } const cases[] = {
        {"", ""},
        {"kestrane/1", "kestrane/1"},
        {"\t\n\r\"\\", R"(\t\n\r\"\\)"},
        {"\0\x01\b\f\x1F "sv, R"(\u0000\u0001\u0008\u000c\u001f )"},
        {"\x01\x7F\xC3", "\\u0001\x7F\xC3"},
        {"\x80\xFF", "\x80\xFF"},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(EscapeJsonString(c.text), c.expected) << testing::PrintToString(c.text);
    }
}

TEST(EscapeJsonString, IsReadBackUnchanged) {
    std::string text;
    for (std::uint32_t byte = 0; byte < 256; ++byte)
        text += static_cast<char>(byte);
    EXPECT_EQ(ReadString("\"" + EscapeJsonString(text) + "\""), text);
}

}  // namespace
}  // namespace kestrane
