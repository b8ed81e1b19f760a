#include "platform/values/text.h"

#include <gtest/gtest.h>

namespace pxtarvo {
namespace {

TEST(Text, CountsCharactersAndTrimsBlanksOnly) {
    EXPECT_EQ(joined({trimBlanks("  a b\t "), "|", trimBlanks("\u00A0x"), trimBlanks("   ")}),
              "a b\t|\u00A0x");
    EXPECT_EQ(characterCount("añ€😀"), 4u);
    for (const std::size_t count : {0, 4, 5}) {
        EXPECT_EQ(firstCharacters("ñandú", count),
                  std::string("ñandú").substr(0, count + (count > 0) + (count > 4)));
    }
    EXPECT_EQ(paddedRight("ñ", 3) + paddedRight("abcd", 3), "ñ  abcd");
    EXPECT_EQ(replaced("a''b'", "'", "''") + replaced("aaa", "aa", ""), "a''''b''a");
    EXPECT_EQ(split("", ';'), std::vector<std::string_view>{});
    EXPECT_EQ(split(";a;;", ';'), (std::vector<std::string_view>{"", "a", "", ""}));
    EXPECT_TRUE(equalIgnoringAsciiCase("Art_Cod", "ART_COD"));
    for (const auto& [one, other] : {std::pair("ñ", "Ñ"), {"[", "{"}, {"Art", "Art_"}}) {
        EXPECT_FALSE(equalIgnoringAsciiCase(one, other));
    }
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
