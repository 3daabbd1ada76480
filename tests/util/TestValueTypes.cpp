#include "TestPrint.h"
#include "SMargin.h"
#include "SPoint.h"
#include "SRect.h"
#include "SSize.h"
#include "STime.h"
#include "SValid.h"

#include <gtest/gtest.h>

TEST(SPoint, ToleranceIsRelativeAndZeroIsSpecial) {
  EXPECT_EQ(SPoint(1.0, 2.0), SPoint(1.0 + 1e-13, 2.0));
  EXPECT_NE(SPoint(1.0, 2.0), SPoint(1.0 + 1e-11, 2.0));
  EXPECT_EQ(SPoint(1e6, 0.0), SPoint(1e6 + 1e-7, 0.0));
  EXPECT_EQ(SPoint(0.0, 0.0), SPoint(1e-12, -1e-12));
  EXPECT_NE(SPoint(0.0, 0.0), SPoint(2e-12, 0.0));
  // Relative, so tiny values far from zero are still told apart.
  EXPECT_NE(SPoint(1e-13, 0.0), SPoint(2e-13, 0.0));
  EXPECT_EQ((SPoint(1, 2) + SPoint(3, 4)) * 2.0, SPoint(8, 12));
  EXPECT_EQ(SPoint(1.5, -2).text(), SString("1.5 -2"));
}

TEST(SSize, ScaleByMagnitude) {
  SSize size(2, 3);
  size.scale(-2);
  EXPECT_EQ(size, SSize(4, 6));
  EXPECT_EQ(size.text(), SString("4 6"));
}

TEST(SRect, UnionIntersectionAndPoints) {
  EXPECT_EQ(SRect().united(SRect(1, 2, 3, 4)), SRect(1, 2, 3, 4));
  EXPECT_EQ(SRect(1, 2, 3, 4).united(SRect()), SRect(1, 2, 3, 4));
  EXPECT_EQ(SRect(0, 0, 1, 1).united(SRect(2, -1, 3, 0.5)), SRect(0, -1, 3, 1));
  EXPECT_EQ(SRect(0, 0, 1, 1).intersected(SRect(2, 2, 3, 3)), SRect());
  EXPECT_EQ(SRect(0, 0, 2, 2).intersected(SRect(1, 1, 3, 3)), SRect(1, 1, 2, 2));
  SRect grown;
  grown |= SPoint(5, 6);
  EXPECT_EQ(grown, SRect(5, 6, 5, 6));
  grown |= SPoint(1, 8);
  EXPECT_EQ(grown, SRect(1, 6, 5, 8));
  SRect r(0, 0, 4, 2);
  EXPECT_EQ(r.center(), SPoint(2, 1));
  r.setWidth(2);
  r.setHeight(4);
  EXPECT_EQ(r, SRect(1, -1, 3, 3));
  EXPECT_EQ(r.text(), SString("1 -1 3 3"));
}

TEST(SMargin, NegativeClipsAndPercentUsesTheRect) {
  SMargin margin;
  EXPECT_FALSE(margin.valid());
  EXPECT_FALSE(margin.hasRect());
  margin.setValues(10, 5, -3, 20, SMargin::Percent, SMargin::Absolute, SMargin::Absolute, SMargin::Percent);
  EXPECT_TRUE(margin.valid());
  EXPECT_EQ(margin.value(SMargin::Top), 0.0);
  margin.setRect(SRect(100, 0, 0, 50));
  EXPECT_TRUE(margin.hasRect());
  EXPECT_DOUBLE_EQ(margin.left(), 10.0);
  EXPECT_DOUBLE_EQ(margin.right(), 5.0);
  EXPECT_DOUBLE_EQ(margin.bottom(), 10.0);
}

TEST(STime, TextsFollowTheFixedFormats) {
  STime time(static_cast<time_t>(86400 * 365));
  EXPECT_EQ(time.date().length(), 10);
  EXPECT_EQ(time.time().length(), 8);
  EXPECT_EQ(time.dateTime(), time.date() + " " + time.time());
  EXPECT_EQ(time.date(), time.format("%m/%d/%Y"));
  EXPECT_TRUE(time.date().endsWith(SString("/1971")) || time.date().endsWith(SString("/1970")));
}

TEST(SValid, ValuesWithValidity) {
  SDoubleValid never;
  EXPECT_FALSE(never.IsValid());
  EXPECT_EQ(never.GetValue(), 99.0);
  never.SetInvalidText(SString("UNDEF"));
  EXPECT_EQ(never.GetText(), SString("UNDEF"));
  never = 2.5;
  EXPECT_TRUE(never.IsValid());
  EXPECT_EQ(never.GetText(), SString("2.5"));
  SIntValid count;
  EXPECT_FALSE(count.IsValid());
  count.Set(4);
  EXPECT_EQ(count.GetText(), SString("4"));
  SBooleanValid flag;
  EXPECT_FALSE(flag.IsValid());
  EXPECT_EQ(flag, SBooleanValid());
  flag = true;
  EXPECT_TRUE(flag.GetValue());
  EXPECT_NE(flag, SBooleanValid());
}
