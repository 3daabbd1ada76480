#include "EqnTestSupport.h"
#include "SEqnArgument.h"
#include "SEqnElement.h"
#include "SEqnFileRef.h"

#include <QTextStream>

TEST(EqnArgument, TheTextFormReadsBackAsWritten) {
  SEqnArgument argument("S11", "input match", "NONE");
  ASSERT_TRUE(argument.SetReference("S, Y: nm"));
  QString text;
  QTextStream stream(&text);
  argument.Write(stream, 2);
  stream.flush();
  EXPECT_EQ(text, QString("ARG S11 ! begin arg 2 definition\nNAME S11\nANN input match\nRES S, Y: nm\n"
                          "END ARG ! end of arg 2\n"));
  SEqnArgument read;
  int index = 0;
  SString words;
  const QStringList lines = text.split('\n');
  ASSERT_TRUE(read.Read(lines, index, words)) << words.data();
  EXPECT_EQ(index, 5);
  EXPECT_EQ(read.GetName(), SString("S11"));
  EXPECT_EQ(read.GetAnnotation(), SString("input match"));
  EXPECT_EQ(read.GetReference(), SString("S, Y: nm"));

  index = 0;
  EXPECT_FALSE(read.Read(QStringList({"ARG x", "RES Q: nm", "END ARG"}), index, words));
  EXPECT_STREQ(words.data(), "line 2: unknown response kind Q: nm");
  index = 0;
  EXPECT_FALSE(read.Read(QStringList({"ARG x", "NAME x"}), index, words));
  EXPECT_STREQ(words.data(), "line 2: the argument x has no END ARG");
}

TEST(EqnArgument, OnlyTheKnownResponseKindsAreAccepted) {
  for (const char* good : {"NONE", "S, Y, Z: nm", "S, Y: nn", "S, Z: Any", "Y, Z: NM", "S,Y: 1_2", "Y, Z: 12"})
    EXPECT_TRUE(SEqnArgument::IsValidReference(good)) << good;
  for (const char* bad : {"", "none", "S: nm", "S, Q: nm", "S, Y", "S, Y: any", "S, Y: 1-2", "Z, Y: nm"})
    EXPECT_FALSE(SEqnArgument::IsValidReference(bad)) << bad;
}

TEST(EqnFileRef, KindsHaveTheirKeywords) {
  const char* names[] = {"VELORA_FILE", "SITE_FILE", "USER_FILE", "GRAPH_FILE", "USER", "UNKNOWN"};
  for (int kind = 0; kind < 6; ++kind) {
    EXPECT_EQ(SEqnFileRef::KindName(static_cast<SEqnFileRef::Kind>(kind)), SString(names[kind]));
    EXPECT_EQ(SEqnFileRef::KindFromName(SString(names[kind]).lower()), kind);
  }
  EXPECT_EQ(SEqnFileRef::KindFromName("elsewhere"), SEqnFileRef::UNKNOWN);
}

TEST(EqnElementDeathTest, AVirtualOfTheBaseElementIsAnInternalError) {
  SEqnElement element;
  EXPECT_EXIT(element.GetStackEffect(), ::testing::ExitedWithCode(1), "Illegal Virtual Method Called.");
}
