#include "platform/values/text.h"

#include <gtest/gtest.h>

namespace pxtarvo {
namespace {

TEST(Text, TrimsBlanksOnly) {
    EXPECT_EQ(trimBlanks("  a b\t "), "a b\t");
    EXPECT_EQ(trimBlanks("\u00A0x"), "\u00A0x");
    EXPECT_EQ(trimBlanks("   "), "");
    EXPECT_EQ(trimTrailingBlanks(" a "), " a");
    EXPECT_EQ(trimTrailingBlanks("  "), "");
}

TEST(Text, CutsAndPadsByCharacters) {
    EXPECT_EQ(characterCount("añ€😀"), 4u);
    EXPECT_EQ(firstCharacters("ñandú", 1), "ñ");
    EXPECT_EQ(firstCharacters("ñandú", 5), "ñandú");
    EXPECT_EQ(firstCharacters("ñandú", 4), "ñand");
    EXPECT_EQ(firstCharacters("ñ", 0), "");
    EXPECT_EQ(paddedRight("ñ", 3), "ñ  ");
    EXPECT_EQ(paddedRight("abcd", 3), "abcd");
}

TEST(Text, ReplacesAndSplits) {
    EXPECT_EQ(replaced("a''b'", "'", "''"), "a''''b''");
    EXPECT_EQ(replaced("aaa", "aa", ""), "a");
    EXPECT_EQ(split("", ';'), std::vector<std::string_view>{});
    EXPECT_EQ(split(";a;;", ';'), (std::vector<std::string_view>{"", "a", "", ""}));
    EXPECT_TRUE(equalIgnoringAsciiCase("Art_Cod", "ART_COD"));
    EXPECT_FALSE(equalIgnoringAsciiCase("ñ", "Ñ"));
    EXPECT_FALSE(equalIgnoringAsciiCase("[", "{"));
    EXPECT_FALSE(equalIgnoringAsciiCase("Art", "Art_"));
}

TEST(TextEncoding, Utf16KeepsWellFormedTextAndMarksTheRest) {
    const std::string everyLength = "a\u00F1\u20AC\U0001F600\U0010FFFF";
    EXPECT_EQ(toUtf16(everyLength), u"a\u00F1\u20AC\U0001F600\U0010FFFF");
    EXPECT_EQ(toUtf8(toUtf16(everyLength)), everyLength);

    const std::pair<std::string, std::u16string> malformed[] = {
        {"\xC3", u"\uFFFD"},                                // cut short
        {"\xE2\x82x", u"\uFFFDx"},                          // cut short, then a letter
        {"\x80", u"\uFFFD"},                                // continuation alone
        {"\xC0\xAF", u"\uFFFD\uFFFD"},                      // overlong
        {"\xED\xA0\x80", u"\uFFFD\uFFFD\uFFFD"},            // surrogate
        {"\xF4\x90\x80\x80", u"\uFFFD\uFFFD\uFFFD\uFFFD"},  // beyond U+10FFFF
        {"\xFFz", u"\uFFFDz"},
    };
    for (const auto& [bytes, units] : malformed)
        EXPECT_EQ(toUtf16(bytes), units) << testing::PrintToString(bytes);

    EXPECT_EQ(toUtf8(std::u16string{u'a', 0xD83D, u'b'}), "a\uFFFDb");
    EXPECT_EQ(toUtf8(std::u16string{0xDE00, 0xD83D}), "\uFFFD\uFFFD");
}

TEST(TextEncoding, Windows1252IsReversibleAndHasItsOwnSpecials) {
    std::string allBytes;
    for (int byte = 0; byte < 256; ++byte) allBytes += static_cast<char>(byte);
    EXPECT_EQ(toWindows1252(fromWindows1252(allBytes)), allBytes);
    EXPECT_EQ(fromWindows1252("\x80\x8E\x9F\xD1\x81"), "€ŽŸÑ\u0081");
    EXPECT_EQ(toWindows1252("CÓDIGO €"),
              "C\xD3"
              "DIGO \x80");
    EXPECT_EQ(toWindows1252("Ω😀\u0080\xFF"), "????");
}

}  // namespace
}  // namespace pxtarvo
