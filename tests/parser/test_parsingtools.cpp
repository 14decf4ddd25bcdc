#include "corvale/parser/parsingtools.h"

#include <gmock/gmock.h>

#include <cmath>

using namespace ZR::Corvale;
using namespace std::string_literals;
using testing::ElementsAre;
using testing::Pair;

TEST(ParsingTools, ACommentTakesOneLineBreakAlongAndIgnoresQuotes)
{
    EXPECT_EQ(removeComments('#', "a # x\nb#y\r\nc\0#z # z\r\"d#e\""s), "a b\nc\0\"d"s);
}

TEST(ParsingTools, BlocksAlternateUnlessAPartIsEmpty)
{
    const auto blocks = [](const std::string& text) { return blockString('{', '}', text); };
    EXPECT_THAT(blocks("a{b}{}c{ } {d}"), ElementsAre("a", "b", "c", "", "", "d"));
    EXPECT_THAT(blocks("a}\t{\nb{c}{d}[e}{f { g "), ElementsAre("a}", "b{c}{d}[e", "f { g"));
    EXPECT_THAT(blocks("{\"}\\\"{\"} \v\0 "s), ElementsAre("\"}\\\"{\"", "\v\0"s));
    EXPECT_THAT(blocks("a {\"b} \\"), ElementsAre("a", "\"b} \\\0"s));
}

TEST(ParsingTools, ListsSeeQuotesAndNoBrackets)
{
    EXPECT_THAT(listString(',', ",a(b,c),, ,\",\\\",\\\\\","),
                ElementsAre("a(b", "c)", "", "\",\\\",\\\\\""));
    EXPECT_THAT(listString(',', "a, "), ElementsAre("a", ""));
    // A string that never closes takes the terminating NUL along; a NUL in the text ends it as well.
    EXPECT_THAT(listString(';', "\"a;\0b;\"c; "s), ElementsAre("\"a;\0b"s, "\"c; \0"s));
}

TEST(ParsingTools, SplitsAtTheFirstSeparatorAndAtBlanks)
{
    EXPECT_THAT(splitString("->", " a -> b -> c "), Pair("a", "b -> c"));
    EXPECT_THAT(splitString(":", "\"a:b\":"), Pair("\"a", "b\":"));
    EXPECT_THAT(splitString(":", " a "), Pair("a", ""));
    EXPECT_THAT(splitSpace("  optional   in\tx "), ElementsAre("optional", "in\tx"));
}

TEST(ParsingTools, LiteralsAreRecognisedByTheirBytes)
{
    for (const char* text : {"", "-0", "99999999999"})
        EXPECT_TRUE(isInteger(text) && isFloat(text)) << text;
    for (const char* text : {".", "-.", "5.", ".5", "-3.5", "infinity"})
        EXPECT_TRUE(isFloat(text) && !isInteger(text)) << text;
    for (const std::string& text :
         {"-"s, "--1"s, "+5"s, "0x10"s, "1 "s, "1\0"s, "1e5"s, "1.2.3"s, "-infinity"s})
        EXPECT_FALSE(isInteger(text) || isFloat(text)) << text;
    for (const char* text : {"\"", "\"a\"b\"", " \"a\"\n"})
        EXPECT_TRUE(isString(text)) << text;
    EXPECT_FALSE(isString("\"a\"b") || isString(" ") || isBool("True") || isBool(" true"));
}

TEST(ParsingTools, IntegersWrapAndCountOtherBytesAsZero)
{
    EXPECT_EQ(toInteger("") + toInteger("-"), 0);
    EXPECT_EQ(toInteger("-1x2"), -102);
    EXPECT_EQ(toInteger("0xfFg1"), 0xff01);
    EXPECT_EQ(toInteger("-0x1"), -1);
    EXPECT_EQ(toInteger("2147483648"), -2147483647 - 1);
    EXPECT_EQ(toInteger("-4294967297"), -1);
}

TEST(ParsingTools, FloatsAreSummedStepByStepInSinglePrecision)
{
    EXPECT_EQ(toFloat("") + toFloat(".") + toFloat("-1x2.y5.0"), -12.5f);
    EXPECT_EQ(toFloat("3.14159"), 0x1.921f9cp+1f); // one bit off the nearest float
    EXPECT_EQ(toFloat("infinity"), INFINITY);
}

TEST(ParsingTools, StringLiteralsUnescapeAndStayInsideTheirText)
{
    EXPECT_EQ(toString(R"("a\t\n\r\0\"\\\x\")"), "a\t\n\r\0\"\\x"s);
    for (const char* text : {"", "\"", "\"\"", "      ", "  \""})
        EXPECT_EQ(toString(text), "") << text;
    EXPECT_EQ(toString("  \"a\"     "), "a\"");
}
