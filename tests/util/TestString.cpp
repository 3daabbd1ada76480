#include "TestPrint.h"
#include "SNumberTest.h"
#include "SRegexp.h"
#include "SString.h"
#include "STokenizer.h"

#include <gtest/gtest.h>

TEST(SString, ConstructionReadsLatin1AndAssignmentReadsUtf8) {
  const char bytes[] = "\xc3\xa9";  // "é" in UTF-8, two characters in Latin-1
  SString constructed(bytes);
  EXPECT_EQ(constructed.length(), 2);
  SString assigned;
  assigned = bytes;
  EXPECT_EQ(assigned.length(), 1);
  EXPECT_EQ(assigned[0], QChar(0xe9));
  EXPECT_STREQ(assigned.data(), bytes);
  SString appended("x");
  appended += bytes;
  EXPECT_EQ(appended.length(), 2);
}

TEST(SString, DataFollowsChangesAndCopiesAreIndependent) {
  SString a("abc");
  EXPECT_STREQ(a.data(), "abc");
  SString b(a);
  a += "d";
  EXPECT_STREQ(a.data(), "abcd");
  EXPECT_STREQ(b.data(), "abc");
  a.replace(0, 1, SString("X"));
  EXPECT_STREQ(a.data(), "Xbcd");
  a.remove(1, 2);
  EXPECT_STREQ(a.data(), "Xd");
  SString empty;
  EXPECT_STREQ(empty.data(), "");
  EXPECT_TRUE(empty.isEmpty());
}

TEST(SString, CompareAndSearchWithCaseFlag) {
  SString s("Hello World");
  EXPECT_EQ(s.compare(SString("hello world"), true), 0);
  EXPECT_NE(s.compare(SString("hello world")), 0);
  EXPECT_EQ(s.index(SString("world")), -1);
  EXPECT_EQ(s.index(SString("world"), 0, true), 6);
  EXPECT_EQ(s.index(SString("o"), 5), 7);
  EXPECT_EQ(s.rindex(SString("o")), 7);
  EXPECT_EQ(s.index(SString("o"), 99), -1);
  EXPECT_TRUE(s == "Hello World");
  EXPECT_TRUE(SString("a") < SString("b"));
}

TEST(SString, OutOfRangeAccessIsHarmless) {
  SString s("abc");
  EXPECT_TRUE(s[-1].isNull());
  EXPECT_TRUE(s[3].isNull());
  EXPECT_TRUE(s.mid(10).isEmpty());
  EXPECT_EQ(s.mid(-1, 2), SString("a"));
  s.remove(5, 2);
  s.replace(10, 5, SString("z"));
  EXPECT_EQ(s, SString("abcz"));
}

TEST(SString, StripModes) {
  SString both(" \t a b \n");
  both.strip();
  EXPECT_EQ(both, SString("a b"));
  SString lead("xxaxx");
  EXPECT_EQ(lead.stripped(1, 'x'), SString("axx"));
  EXPECT_EQ(lead.stripped(2, 'x'), SString("xxa"));
  EXPECT_EQ(lead.stripped(3, 'x'), SString("a"));
  // Only the given character, not other white space.
  EXPECT_EQ(SString(" \ta ").stripped(2, ' '), SString(" \ta"));
}

TEST(SString, FormatAndNumbers) {
  EXPECT_EQ(SString::format("%d-%s", 12, "ab"), SString("12-ab"));
  const SString longText = SString::format("%0600d", 7);
  EXPECT_EQ(longText.length(), 600);
  EXPECT_EQ(SString::number(0.1 + 0.2, 6), SString("0.3"));
  EXPECT_EQ(SString::number(1234567.0, 4), SString("1.235e+06"));
  EXPECT_EQ(SString::number(-42LL), SString("-42"));
  EXPECT_EQ(SString::fromHex(SString("0a1")), QByteArray("\x00\xa1", 2));
}

TEST(SString, RegularExpressionSearch) {
  SRegexp re("[0-9]+");
  int length = 0;
  SString s("ab123cd45");
  EXPECT_EQ(s.index(re, 0, &length), 2);
  EXPECT_EQ(length, 3);
  EXPECT_EQ(s.match(re, 5), SString("45"));
  EXPECT_TRUE(s.match(SRegexp("x")).isEmpty());
  SRegexp groups("(a+)(b)");
  EXPECT_EQ(groups.index(SString("xaab")), 1);
  EXPECT_EQ(groups.cap(1), SString("aa"));
}

TEST(STokenizer, DefaultSeparatorSkipsEmptyPieces) {
  STokenizer tokens(SString("a  b"));
  EXPECT_EQ(tokens.next(), SString("a"));
  EXPECT_EQ(tokens.next(), SString("b"));
  EXPECT_TRUE(tokens.next().isEmpty());
  EXPECT_TRUE(tokens.next().isEmpty());
}

TEST(STokenizer, FirstSeparatorDecides) {
  STokenizer tokens(SString(",x;y,,z w"));
  EXPECT_EQ(tokens.next(",;"), SString("x"));
  // Later separators are ignored: the split is done.
  EXPECT_EQ(tokens.next(" "), SString("y"));
  EXPECT_EQ(tokens.next(), SString("z w"));
  EXPECT_TRUE(tokens.next().isEmpty());
  STokenizer re(SString("1ab2abab3"));
  EXPECT_EQ(re.next(SRegexp("(ab)+")), SString("1"));
  EXPECT_EQ(re.next(), SString("2"));
  EXPECT_EQ(re.next(), SString("3"));
}

TEST(NumberTests, IntegerAndDouble) {
  EXPECT_TRUE(IsInteger(SString(" 42 ")));
  EXPECT_TRUE(IsInteger(SString("-7")));
  EXPECT_FALSE(IsInteger(SString("1.5")));
  EXPECT_FALSE(IsInteger(SString("0x10")));
  EXPECT_FALSE(IsInteger(SString("")));
  EXPECT_TRUE(IsDouble(SString("1.5e3")));
  EXPECT_TRUE(IsDouble(SString("3")));
  EXPECT_FALSE(IsDouble(SString("nan")));
  EXPECT_FALSE(IsDouble(SString("NaN")));
  EXPECT_FALSE(IsDouble(SString("1.5x")));
}
