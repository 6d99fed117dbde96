// Tests of the OS and string wrappers.
#include <gtest/gtest.h>

#include <unistd.h>

#include "platform/osutils.h"

TEST(OsUtils, StrLCpyTruncatesAndTerminates)
{
    CHAR buffer[5];
    EXPECT_EQ(9U, Vela::OsUtils::StrLCpy(buffer, "123456789", sizeof(buffer)));
    EXPECT_STREQ("1234", buffer);
}

TEST(OsUtils, StrLCatAppendsWithinBounds)
{
    CHAR buffer[8] = "abc";
    EXPECT_EQ(7U, Vela::OsUtils::StrLCat(buffer, "defg", sizeof(buffer)));
    EXPECT_STREQ("abcdefg", buffer);
    EXPECT_EQ(9U, Vela::OsUtils::StrLCat(buffer, "hi", sizeof(buffer)));
    EXPECT_STREQ("abcdefg", buffer);
}

TEST(OsUtils, StrNICmpIgnoresCase)
{
    EXPECT_EQ(0, Vela::OsUtils::StrNICmp("STATS_aec", "stats_AEC", 9));
    EXPECT_NE(0, Vela::OsUtils::StrNICmp("abc", "abd", 3));
    EXPECT_EQ(0, Vela::OsUtils::StrNICmp("abc", "abd", 2));
}

TEST(OsUtils, SNPrintFReportsFullLength)
{
    CHAR buffer[4];
    EXPECT_EQ(6, Vela::OsUtils::SNPrintF(buffer, sizeof(buffer), "%d", 123456));
    EXPECT_STREQ("123", buffer);
}

TEST(OsUtils, ProcessAndThreadIds)
{
    EXPECT_EQ(static_cast<INT32>(getpid()), Vela::OsUtils::GetProcessID());
    EXPECT_GT(Vela::OsUtils::GetThreadID(), 0);
}
