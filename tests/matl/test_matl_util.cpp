#include "SMatlUtil.h"

#include <gtest/gtest.h>

TEST(SMatlUtil, LengthUnitsBothWays) {
  EXPECT_EQ(SMatlUtil::UnitCode(SMatlUtil::Length, "mm"), 3);
  EXPECT_STREQ(SMatlUtil::UnitName(SMatlUtil::Length, 3), "mm");
}
