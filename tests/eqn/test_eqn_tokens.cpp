#include "EqnTestSupport.h"

#include <QStringList>

namespace {
struct TokenCase {
  const char* text;
  const char* tokens;  // separated by "|"
};

QStringList Tokens(const char* text) {
  SString rest(text);
  SString token;
  int line = 0, column = 0, position = 0;
  QStringList tokens;
  bool restart = true;
  while (SEquation::NextToken(rest, token, line, column, position, restart)) {
    tokens << token.qstring();
    restart = false;
  }
  return tokens;
}
}  // namespace

TEST(EqnTokens, WordsNumbersStringsAndBracketsSplitAsTheLanguageSays) {
  const TokenCase cases[] = {
      {"1e-5", "1e-5"},
      {"1E+5*2", "1E+5|*|2"},
      {"2.5e-3", "2.5e-3"},
      {".5e-3", ".5e-3"},
      {"x-5", "x|-|5"},
      {"abe-5", "abe|-|5"},
      {"1e-5e-3", "1e-5e|-|3"},
      {"1.2.3", "1.2.3"},
      {"  sqrt ( W_1 ) ", "sqrt|(|W_1|)"},
      {"\"file one.csv\",2", "\"file one.csv\"|,|2"},
      {"\"open", "\"open"},
      {"[ F+1 ]*2", "[ F+1 ]|*|2"},
      {"[3", "[3"},
      {"a@b", "a|@|b"},
      {"", ""},
  };
  for (const TokenCase& c : cases) {
    const QStringList expected = QString::fromLatin1(c.tokens).split('|', Qt::SkipEmptyParts);
    EXPECT_EQ(Tokens(c.text), expected) << c.text;
  }
}

TEST(EqnTokens, LinesAndColumnsCountLfCrAndCrLfAsOneLineEach) {
  struct Where {
    const char* token;
    int line, column, position;
  };
  SString rest("a +\nb\r\n* c\rd \"x\ny\" e");
  const Where expected[] = {{"a", 1, 1, 0}, {"+", 1, 3, 2},  {"b", 2, 1, 4},       {"*", 3, 1, 7},
                            {"c", 3, 3, 9}, {"d", 4, 1, 11}, {"\"x\ny\"", 4, 3, 13}, {"e", 5, 4, 19}};
  SString token;
  int line = 0, column = 0, position = 0;
  bool restart = true;
  for (const Where& where : expected) {
    ASSERT_TRUE(SEquation::NextToken(rest, token, line, column, position, restart));
    restart = false;
    EXPECT_EQ(token, SString(where.token));
    EXPECT_EQ(line, where.line) << where.token;
    EXPECT_EQ(column, where.column) << where.token;
    EXPECT_EQ(position, where.position) << where.token;
  }
  EXPECT_FALSE(SEquation::NextToken(rest, token, line, column, position, false));
  EXPECT_TRUE(token.isEmpty());
  // The restart flag begins again at line 1.
  SString again("  z");
  ASSERT_TRUE(SEquation::NextToken(again, token, line, column, position, true));
  EXPECT_EQ(line, 1);
  EXPECT_EQ(column, 3);
  EXPECT_EQ(position, 2);
}
