#include "corvale/parser/parsingtools.h"

#include <gmock/gmock.h>

#include <limits>

using namespace ZR::Corvale;
using namespace std::string_literals;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pair;

TEST(ParsingTools, ACommentTakesOneLineBreakAlongAndIgnoresQuotes)
{
    EXPECT_EQ(removeComments('#', "a # x\nb"), "a b");
    EXPECT_EQ(removeComments('#', "a#x\r\nb#y # z\rc"), "a\nbc");
    EXPECT_EQ(removeComments('#', "\"a#b\""), "\"a");
    EXPECT_EQ(removeComments('#', "a\0b#\0\nc#"s), "a\0bc"s);
    EXPECT_EQ(removeComments('#', ""), "");
}

TEST(ParsingTools, AStringEndsAtItsQuoteOrAtANul)
{
    const char* const text = R"("a\"b\\"c")";
    EXPECT_STREQ(skipString(text), "\"c\"");
    EXPECT_STREQ(skipString("\"a\\"), "");
    EXPECT_STREQ(skipString("\"a\\\0b\""), "");
}

TEST(ParsingTools, TrimDropsTheFourWhiteBytesOnly)
{
    EXPECT_EQ(trimString("\t\r\n a \v\f\0 \n"s), "a \v\f\0"s);
    EXPECT_EQ(trimString(" \t\r\n"), "");
}

TEST(ParsingTools, BlocksAlternateUnlessAPartIsEmpty)
{
    const auto blocks = [](const std::string& text) { return blockString('{', '}', text); };
    EXPECT_THAT(blocks("a{b}c"), ElementsAre("a", "b", "c"));
    EXPECT_THAT(blocks("{b}"), ElementsAre("b"));
    EXPECT_THAT(blocks("a{}c"), ElementsAre("a", "c"));
    EXPECT_THAT(blocks("a{ } {c}"), ElementsAre("a", "", "", "c"));
    EXPECT_THAT(blocks("a}{b{c}{d}[e}f"), ElementsAre("a}", "b{c}{d}[e", "f"));
    EXPECT_THAT(blocks(" a { b { c "), ElementsAre("a", "b { c"));
    EXPECT_THAT(blocks("x {\"}\"} y"), ElementsAre("x", "\"}\"", "y"));
    EXPECT_THAT(blocks(""), IsEmpty());
    EXPECT_THAT(blockString('|', '|', "a|b|c"), ElementsAre("a", "b", "c"));
}

TEST(ParsingTools, ListsSeeQuotesAndNoBrackets)
{
    EXPECT_THAT(listString(',', "a(b,c),d"), ElementsAre("a(b", "c)", "d"));
    EXPECT_THAT(listString(',', ",a,,b, ,\"c,\\\",\",d"), ElementsAre("a", "b", "", "\"c,\\\",\"", "d"));
    EXPECT_THAT(listString(';', " a ; b ;"), ElementsAre("a", "b"));
    EXPECT_THAT(listString(';', " a ; b ; "), ElementsAre("a", "b", ""));
}

TEST(ParsingTools, AStringThatNeverClosesTakesTheTerminatingNulAlong)
{
    EXPECT_THAT(listString(';', "a;\"b;c"), ElementsAre("a", "\"b;c\0"s));
    EXPECT_THAT(blockString('{', '}', "a {\"b} \\"), ElementsAre("a", "\"b} \\\0"s));
    // A NUL inside the text ends the string as well, and the cutting goes on behind it.
    EXPECT_THAT(listString(';', "\"a;\0b;c"s), ElementsAre("\"a;\0b"s, "c"));
}

TEST(ParsingTools, SplitsAtTheFirstSeparatorAndAtBlanks)
{
    EXPECT_THAT(splitString("->", " a -> b -> c "), Pair("a", "b -> c"));
    EXPECT_THAT(splitString(":", "\"a:b\":"), Pair("\"a", "b\":"));
    EXPECT_THAT(splitString(":", " a "), Pair("a", ""));
    EXPECT_THAT(splitSpace("  optional   in\tx "), ElementsAre("optional", "in\tx"));
    EXPECT_THAT(splitSpace("   "), IsEmpty());
}

TEST(ParsingTools, LiteralsAreRecognisedByTheirBytes)
{
    const struct
    {
        std::string text;
        const char* kinds; // those of b, i, f, s that hold
    } cases[] = {{"true", "b"},     {"false", "b"},       {"True", ""}, {" true", ""},     {"", "if"},
                 {"-", ""},         {"-0", "if"},         {"--1", ""},  {"+5", ""},        {"007", "if"},
                 {"0x10", ""},      {"1 ", ""},           {"1\0"s, ""}, {"-3.5", "f"},     {".", "f"},
                 {"-.", "f"},       {"5.", "f"},          {".5", "f"},  {"1e5", ""},       {"1.2.3", ""},
                 {"infinity", "f"}, {"-infinity", ""},    {"\"", "s"},  {" \"a\"\n", "s"}, {"\"a\"b", ""},
                 {"\"a\"b\"", "s"}, {"99999999999", "if"}};
    for (const auto& [text, kinds] : cases) {
        const std::string found = std::string(isBool(text) ? "b" : "") + (isInteger(text) ? "i" : "") +
                                  (isFloat(text) ? "f" : "") + (isString(text) ? "s" : "");
        EXPECT_EQ(found, kinds) << text;
    }
}

TEST(ParsingTools, IntegersWrap)
{
    const std::pair<const char*, int> cases[] = {
        {"", 0},           {"-", 0},          {"-12", -12},
        {"1x2", 102},      {"0x10", 16},      {"0xfFg1", 0xff01},
        {"-0x1", -1},      {"4294967297", 1}, {"2147483648", -2147483647 - 1},
        {"-4294967295", 1}};
    for (const auto& [text, value] : cases)
        EXPECT_EQ(toInteger(text), value) << text;
}

TEST(ParsingTools, FloatsAreSummedStepByStepInSinglePrecision)
{
    const float infinity = std::numeric_limits<float>::infinity();
    const std::pair<std::string, float> cases[] = {
        {"", 0.0f},
        {".", 0.0f},
        {"-12.5", -12.5f},
        {"1x2.y5.0", 12.5f},
        {"0.1", 0.1f},
        {"infinity", infinity},
        {std::string(60, '9') + "." + std::string(60, '9'), infinity},
        {"3.14159", 0x1.921f9cp+1f},
        {"0.987654321", 0x1.f9add2p-1f}};
    // The last two are one bit off the nearest floats.
    for (const auto& [text, value] : cases)
        EXPECT_EQ(toFloat(text), value) << text;
}

TEST(ParsingTools, StringLiteralsUnescapeAndStayInsideTheirText)
{
    EXPECT_EQ(toString(R"("a\t\n\r\0\"\\\x")"), "a\t\n\r\0\"\\x"s);
    EXPECT_EQ(toString("\"a\\\""), "a");
    for (const char* text : {"", "\"", "\"\"", "      ", "  \""})
        EXPECT_EQ(toString(text), "") << text;
    EXPECT_EQ(toString("  \"a\"     "), "a\"");
}
