#include "TestPrint.h"
#include "SCommentedFile.h"
#include "SFile.h"
#include "SFileName.h"
#include "SRegexp.h"
#include "SVeloraFileName.h"

#include <QByteArray>
#include <QFile>
#include <QTemporaryDir>
#include <gtest/gtest.h>

namespace {
// Files written into a fresh directory per test.
class FileTest : public ::testing::Test {
protected:
  SString Write(const char* name, const QByteArray& content) {
    const QString path = itsDir.filePath(QString::fromLatin1(name));
    QFile file(path);
    EXPECT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(content);
    return SString(path);
  }
  QTemporaryDir itsDir;
};

QList<SString> Tokens(SFile& file) {
  QList<SString> tokens;
  SString token;
  while (file.HasToken()) {
    file.GetToken(token);
    tokens.append(token);
  }
  return tokens;
}

QList<SString> List(std::initializer_list<const char*> words) {
  QList<SString> list;
  for (const char* w : words) list.append(SString::fromUtf8(w));
  return list;
}
}  // namespace

TEST_F(FileTest, LastLineWithoutNewlineAndNoExtraEmptyLine) {
  SFile file(Write("a.txt", "one two\nthree"));
  ASSERT_TRUE(file.IsOk());
  ASSERT_TRUE(file.NextLine());
  EXPECT_EQ(Tokens(file), List({"one", "two"}));
  ASSERT_TRUE(file.NextLine());
  EXPECT_EQ(Tokens(file), List({"three"}));
  EXPECT_FALSE(file.NextLine());
  EXPECT_EQ(file.GetError(), SFile::EndOfFile);
  EXPECT_EQ(file.LineCount(), 2);

  SFile ending(Write("b.txt", "x\r\n"));
  ASSERT_TRUE(ending.NextLine());
  SString line;
  EXPECT_TRUE(ending.GetLine(line));
  EXPECT_EQ(line, SString("x"));
  EXPECT_FALSE(ending.NextLine());
  EXPECT_EQ(ending.LineCount(), 1);
}

TEST_F(FileTest, EmptyAndMissingFiles) {
  SFile empty(Write("e.txt", ""));
  EXPECT_FALSE(empty.NextLine());
  EXPECT_EQ(empty.GetError(), SFile::EndOfFile);
  EXPECT_EQ(empty.LineCount(), 0);
  SFile missing(SString(itsDir.filePath("nope.txt")));
  EXPECT_FALSE(missing.IsOk());
  EXPECT_FALSE(missing.NextLine());
  SString token;
  EXPECT_FALSE(missing.GetToken(token));
}

TEST_F(FileTest, BlankLineInPlainFileHasNoToken) {
  SFile file(Write("a.txt", "   \nz\n"));
  ASSERT_TRUE(file.NextLine());
  SString token;
  EXPECT_FALSE(file.GetToken(token));
  EXPECT_EQ(file.GetError(), SFile::NoData);
  ASSERT_TRUE(file.NextLine());
  EXPECT_TRUE(file.GetToken(token));
  EXPECT_EQ(token, SString("z"));
}

TEST_F(FileTest, NumericGettersAdvanceOnlyOnSuccess) {
  SFile file(Write("n.txt", "1.5 7 -3 TRUE 1 x\n"));
  ASSERT_TRUE(file.NextLine());
  int i = 0;
  EXPECT_FALSE(file.GetInt(i));
  EXPECT_EQ(file.GetError(), SFile::NotInteger);
  double d = 0;
  EXPECT_TRUE(file.GetDouble(d));
  EXPECT_DOUBLE_EQ(d, 1.5);
  EXPECT_TRUE(file.GetInt(i));
  EXPECT_EQ(i, 7);
  unsigned u = 0;
  EXPECT_FALSE(file.GetUnsigned(u));
  EXPECT_EQ(file.GetError(), SFile::NegativeUnsigned);
  EXPECT_TRUE(file.GetInt(i));
  EXPECT_EQ(i, -3);
  bool b = false;
  EXPECT_TRUE(file.GetBool(b));
  EXPECT_TRUE(b);
  EXPECT_FALSE(file.GetBool(b));
  EXPECT_EQ(file.GetError(), SFile::NotBoolean);
  EXPECT_FALSE(b);
  EXPECT_TRUE(file.GetInt(i, 99));
  EXPECT_EQ(i, 1);
  EXPECT_FALSE(file.GetDouble(d, 4.0));
  EXPECT_DOUBLE_EQ(d, 4.0);
  EXPECT_TRUE(file.GetDoubleLoose(d));  // "x" reads as 0 and is taken
  EXPECT_DOUBLE_EQ(d, 0.0);
  EXPECT_FALSE(file.GetInt(i));
  EXPECT_EQ(file.GetError(), SFile::NoData);
  EXPECT_EQ(file.GetIntNoCheck(), 0);
  SString token;
  EXPECT_FALSE(file.GetToken(token, SString("fb")));
  EXPECT_EQ(token, SString("fb"));
}

TEST_F(FileTest, StrictGettersAndRestOfLine) {
  SFile file(Write("s.txt", "name  12abc 3.25e1 tail  end\n"));
  ASSERT_TRUE(file.NextLine());
  SString text;
  EXPECT_TRUE(file.GetAfterFirstToken(text));
  EXPECT_EQ(text, SString(" 12abc 3.25e1 tail  end"));
  EXPECT_TRUE(file.GetRestOfLineAfter(SString("tail"), text));
  EXPECT_EQ(text, SString("end"));
  EXPECT_FALSE(file.GetRestOfLineAfter(SString("zzz"), text));
  EXPECT_EQ(text, SString("12abc 3.25e1 tail  end"));
  file.GetToken(text);
  int i = 5;
  EXPECT_FALSE(file.GetIntStrict(i));
  EXPECT_EQ(i, 0);
  long long wide = 9;
  EXPECT_FALSE(file.GetLong(wide));
  EXPECT_EQ(wide, 0);
  EXPECT_EQ(file.GetIntNoCheck(), 12);
  double d = 0;
  EXPECT_TRUE(file.GetDoubleStrict(d));
  EXPECT_DOUBLE_EQ(d, 32.5);
  EXPECT_TRUE(file.GetRestOfLine(text));
  EXPECT_EQ(text, SString("tail  end"));
  EXPECT_TRUE(file.PeekToken(text));
  EXPECT_EQ(text, SString("tail"));
  EXPECT_TRUE(file.GetFirstToken(text));
  EXPECT_EQ(text, SString("name"));
  EXPECT_TRUE(file.PeekToken(text));
  EXPECT_EQ(text, SString("tail"));
  EXPECT_TRUE(file.RewindLine());
  EXPECT_TRUE(file.PeekToken(text));
  EXPECT_EQ(text, SString("name"));
  file.SkipLine();
  EXPECT_FALSE(file.PeekToken(text));
}

TEST_F(FileTest, PlainReaderSplitsAtNonAsciiAndSeparator) {
  SFile file(Write("u.txt", "a\xc3\xa9" "b c,d\n"));
  ASSERT_TRUE(file.NextLine());
  EXPECT_EQ(Tokens(file), List({"a", "b", "c,d"}));
  file.SetSplitAtSeparator(true);
  file.SetLine(SString("c,d"));
  EXPECT_EQ(Tokens(file), List({"c", "d"}));
  EXPECT_EQ(file.LineCount(), 1);
}

TEST_F(FileTest, ReadAllAndAbridgedLines) {
  QByteArray content;
  for (int i = 1; i <= 120; ++i) content += QByteArray::number(i) + "\r\n";
  SFile all(Write("r.txt", content));
  SString text;
  EXPECT_TRUE(all.ReadAll(text));
  EXPECT_FALSE(text.contains(QChar('\r')));
  EXPECT_TRUE(text.startsWith(SString("1\n2\n")));
  EXPECT_FALSE(all.IsOk());

  SFile file(Write("r2.txt", content));
  QList<SString> lines;
  EXPECT_TRUE(file.ReadLinesAbridged(lines, 2, 3, 10));
  EXPECT_EQ(lines, List({"1", "2", "<<< Skipping 115 lines >>>", "118", "119", "120"}));
  SFile shortFile(Write("r3.txt", content));
  lines.clear();
  EXPECT_TRUE(shortFile.ReadLinesAbridged(lines, 11, 10, 0));  // margin 0 means 100
  EXPECT_EQ(lines.size(), 120);
}

TEST_F(FileTest, CommentsAndQuotes) {
  SCommentedFile file(Write("c.txt", "a ! b\n\"a ! b\"\n  ! only a comment\n\nx \"\" y\nq a\"b c\"d\n"));
  ASSERT_TRUE(file.NextLine());
  EXPECT_EQ(Tokens(file), List({"a"}));
  EXPECT_EQ(file.GetLastComment(), SString("! b"));
  ASSERT_TRUE(file.NextLine());
  EXPECT_EQ(Tokens(file), List({"a ! b"}));
  ASSERT_TRUE(file.NextLine());  // comment and blank lines are passed over but counted
  EXPECT_EQ(file.LineCount(), 5);
  SString token;
  EXPECT_TRUE(file.GetToken(token));
  EXPECT_FALSE(file.GetToken(token));  // the empty quoted token
  EXPECT_TRUE(file.HasToken());
  EXPECT_TRUE(file.GetToken(token));
  EXPECT_EQ(token, SString("y"));
  ASSERT_TRUE(file.NextLine());
  EXPECT_EQ(Tokens(file), List({"q", "ab cd"}));
  EXPECT_FALSE(file.NextLine());
}

TEST_F(FileTest, ContinuationJoinsLines) {
  SCommentedFile file(Write("k.txt", "12 &\n34\n12&\n34 ! note\n5 & 6\n7\n8 &"));
  ASSERT_TRUE(file.NextLine());
  EXPECT_EQ(Tokens(file), List({"12", "34"}));
  ASSERT_TRUE(file.NextLine());
  EXPECT_EQ(Tokens(file), List({"1234"}));
  ASSERT_TRUE(file.NextLine());
  // A marker standing as a token of its own moves the reader to the next line.
  EXPECT_EQ(Tokens(file), List({"5", "7"}));
  ASSERT_TRUE(file.NextLine());
  EXPECT_EQ(Tokens(file), List({"8"}));  // the marker on the last line is dropped
  EXPECT_FALSE(file.NextLine());
}

TEST_F(FileTest, QuotedStringRunsOverLines) {
  SCommentedFile file(Write("q.txt", "name \"first\nsecond\" tail\nnext\n"));
  ASSERT_TRUE(file.NextLine());
  EXPECT_EQ(Tokens(file), List({"name", "first\nsecond", "tail"}));
  EXPECT_EQ(file.LineCount(), 2);
  ASSERT_TRUE(file.NextLine());
  EXPECT_EQ(Tokens(file), List({"next"}));
}

TEST_F(FileTest, QuoteInCommentSwallowsTheNextLine) {
  // The open string runs on until an empty line.
  SCommentedFile file(Write("w.txt", "a ! 5\" wide\nb\n\nc\n"));
  ASSERT_TRUE(file.NextLine());
  EXPECT_EQ(Tokens(file), List({"a"}));
  ASSERT_TRUE(file.NextLine());
  EXPECT_EQ(Tokens(file), List({"c"}));
}

TEST_F(FileTest, UnbalancedQuoteAtTheEndStopsCleanly) {
  QByteArray content("\"open");
  for (int i = 0; i < 5000; ++i) content += "\nline";
  SCommentedFile file(Write("u.txt", content));
  ASSERT_TRUE(file.NextLine());
  SString token;
  EXPECT_TRUE(file.GetToken(token));
  EXPECT_TRUE(token.startsWith(SString("open\nline")));
  EXPECT_FALSE(file.NextLine());
}

TEST_F(FileTest, CommentEscapeAndOtherMarkers) {
  SCommentedFile project(Write("p.txt", "A !< B ! gone\n"));
  project.SetCommentEscape(SString("<"));
  ASSERT_TRUE(project.NextLine());
  EXPECT_EQ(Tokens(project), List({"A", "B"}));

  SCommentedFile messages(Write("m.txt", "#define X 5 // five\nurl \"http://x\"\n"), SString("//"), SString());
  ASSERT_TRUE(messages.NextLine());
  EXPECT_EQ(Tokens(messages), List({"#define", "X", "5"}));
  ASSERT_TRUE(messages.NextLine());
  EXPECT_EQ(Tokens(messages), List({"url", "http://x"}));

  SCommentedFile spanning(Write("s.txt", "a /* x\ny */ b\nc\n"), SString("/*"), SString());
  spanning.SetCommentEnd(SString("*/"));
  ASSERT_TRUE(spanning.NextLine());
  EXPECT_EQ(Tokens(spanning), List({"a", "b"}));
  ASSERT_TRUE(spanning.NextLine());
  EXPECT_EQ(Tokens(spanning), List({"c"}));
}

TEST_F(FileTest, BlankLinesKeptWhenAsked) {
  SCommentedFile file(Write("b.txt", "a\n\n! c\nb\n"));
  file.SetSkipBlankLines(false);
  int lines = 0;
  while (file.NextLine()) ++lines;
  EXPECT_EQ(lines, 4);
}

TEST_F(FileTest, TokenHelpersOfCommentedFile) {
  SCommentedFile file(Write("t.txt", "a b\n\nc END d\nw=12 x:y\n"));
  SString token;
  ASSERT_TRUE(file.NextLine());
  EXPECT_TRUE(file.GetNextToken(token));
  EXPECT_TRUE(file.GetNextToken(token));
  EXPECT_TRUE(file.GetNextToken(token));
  EXPECT_EQ(token, SString("c"));
  EXPECT_TRUE(file.SkipTo(SString("END")));
  EXPECT_TRUE(file.GetTokensOfLine(token));
  EXPECT_EQ(token, SString("d"));
  ASSERT_TRUE(file.NextLine());
  SString before, match;
  EXPECT_TRUE(file.SplitToken(SRegexp("=+"), before, match));
  EXPECT_EQ(before, SString("w"));
  EXPECT_EQ(match, SString("="));
  EXPECT_TRUE(file.PeekToken(token));
  EXPECT_EQ(token, SString("12"));
  file.GetToken(token);
  EXPECT_FALSE(file.SplitToken('=', before, match));
  EXPECT_TRUE(file.SplitToken(':', before, match));
  EXPECT_EQ(before, SString("x"));
  EXPECT_EQ(match, SString("y"));
  EXPECT_FALSE(file.SkipTo(SString("never")));
  EXPECT_FALSE(file.GetNextToken(token));
}

TEST_F(FileTest, BinaryContentDoesNotBreakTheReader) {
  QByteArray junk;
  unsigned seed = 7;
  for (int i = 0; i < 20000; ++i) {
    seed = seed * 1664525u + 1013904223u;
    junk += static_cast<char>(seed >> 24);
  }
  SCommentedFile file(Write("j.bin", junk));
  SString token;
  int lines = 0;
  while (file.NextLine()) {
    ++lines;
    while (file.HasToken()) file.GetToken(token);
  }
  EXPECT_GT(file.LineCount(), 0);
  SFile plain(Write("j2.bin", junk));
  double d;
  while (plain.NextLine()) plain.GetDouble(d);
  EXPECT_EQ(plain.GetError(), SFile::EndOfFile);
}

TEST(SFileName, Parts) {
  SFileName name("/home/u/chip.top.gds");
  EXPECT_EQ(name.GetFileName(), SString("chip.top.gds"));
  EXPECT_EQ(name.GetBaseName(), SString("chip.top"));
  EXPECT_EQ(name.GetExtension(), SString("gds"));
  EXPECT_EQ(name.GetWithoutExtension(), SString("/home/u/chip.top"));
  EXPECT_EQ(name.GetPath(), SString("/home/u"));
  EXPECT_EQ(SFileName("dir.x/a").GetExtension(), SString());
  EXPECT_EQ(SFileName("dir.x/a").GetWithoutExtension(), SString("dir.x/a"));
  EXPECT_EQ(SFileName("a.b.c").GetBaseName(), SString("a.b"));
  EXPECT_EQ(SFileName("a.b.c").GetWithoutExtension(), SString("a.b"));
  EXPECT_EQ(SFileName("/x").GetPath(), SString("/"));
  EXPECT_EQ(SFileName("x").GetPath(), SString());
  EXPECT_EQ(SFileName("c:\\d\\e.txt").GetFileName(), SString("e.txt"));
}

TEST(SFileName, Changes) {
  SFileName name("/p/chip.gds");
  EXPECT_EQ(SFileName(name).SetExtension(SString("vel")), SString("/p/chip.vel"));
  EXPECT_EQ(SFileName(name).SetExtension(SString()), SString("/p/chip"));
  EXPECT_EQ(SFileName(name).AddExtension(SString("bak")), SString("/p/chip.gds.bak"));
  EXPECT_EQ(SFileName("a.").AddExtension(SString("x")), SString("a.x"));
  EXPECT_EQ(SFileName(name).SetPath(SString("/q")), SString("/q/chip.gds"));
  EXPECT_EQ(SFileName(name).SetPath(SString("/q/")), SString("/q/chip.gds"));
  EXPECT_EQ(SFileName(name).SetBaseName(SString("top")), SString("/p/top.gds"));
  EXPECT_EQ(SFileName("chip").SetBaseName(SString("top")), SString("top"));
  EXPECT_EQ(SFileName(name).AppendToBaseName(3), SString("/p/chip_3.gds"));
  EXPECT_EQ(SFileName(name).AppendToBaseName(SString("old")), SString("/p/chip_old.gds"));
}

TEST(SVeloraFileName, TypesFromExtensions) {
  SVeloraFileName added(SString("chip"), SVeloraFileName::FT_VEL);
  EXPECT_EQ(added, SString("chip.vel"));
  EXPECT_EQ(added.GetFileType(), 6);
  EXPECT_EQ(SVeloraFileName(SString("chip")).GetFileType(), 0);
  EXPECT_EQ(SVeloraFileName(SString("a.gds")).GetFileType(), 38);
  EXPECT_EQ(SVeloraFileName(SString("a.GDS")).GetFileType(), 0);
  EXPECT_EQ(SVeloraFileName(SString("a.s2p")).GetFileType(), 21);
  EXPECT_EQ(SVeloraFileName(SString("a.snp")).GetFileType(), 21);
  EXPECT_EQ(SVeloraFileName(SString("a.s0p")).GetFileType(), 0);
  EXPECT_EQ(SVeloraFileName(SString("a.jxb")).GetFileType(), 10);
  EXPECT_EQ(SVeloraFileName(SString("a.matl")).GetFileType(), 44);
  EXPECT_EQ(SVeloraFileName(SString("a.sesn")).GetFileType(), 50);
  // Kept as it was in mode 0, replaced in mode 2.
  SVeloraFileName kept(SString("a.matl"), 6, SVeloraFileName::KeepMismatch);
  EXPECT_EQ(kept.GetFileType(), 44);
  EXPECT_EQ(kept, SString("a.matl"));
  SVeloraFileName forced(SString("a.matl"), 6, SVeloraFileName::ForceType);
  EXPECT_EQ(forced.GetFileType(), 6);
  EXPECT_EQ(forced, SString("a.vel"));
  EXPECT_EQ(SVeloraFileName::ExtensionOf(47), SString("vel"));
  EXPECT_EQ(SVeloraFileName::ExtensionOf(46), SString("sid"));
  EXPECT_EQ(SVeloraFileName::ExtensionOf(99), SString());
  EXPECT_EQ(SVeloraFileName::FileTypeWord(6), SString("VELPROJ"));
  EXPECT_EQ(SVeloraFileName::FileTypeWord(8), SString("VELORAPRJ"));
  EXPECT_EQ(SVeloraFileName::FileTypeWord(5), SString());
  EXPECT_EQ(SVeloraFileName::TypeOfFileTypeWord(SString("VELORAPRJ")), 47);
  EXPECT_EQ(SVeloraFileName::TypeOfFileTypeWord(SString("RLGC")), 48);
}
