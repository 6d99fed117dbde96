// Tests of the wrapper-side log line format and sink.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "platform/velalog.h"

namespace
{

std::vector<std::string> s_lines;

void CaptureLine(Vela::Log::Level, const CHAR* pLine)
{
    s_lines.emplace_back(pLine);
}

class VelaLogTest : public ::testing::Test
{
protected:
    void SetUp() override
    {
        s_lines.clear();
        m_previous = Vela::Log::SetSink(&CaptureLine);
    }
    void TearDown() override { Vela::Log::SetSink(m_previous); }

    Vela::Log::LogSink m_previous = nullptr;
};

} // namespace

TEST_F(VelaLogTest, LineCarriesLevelPidTidTagFileLineAndFunction)
{
    VELA_LOG(Vela::Log::GroupDebugData, Vela::Log::LevelWarning, "Writer: %u: Insufficient size to write data", 7U);
    ASSERT_EQ(1U, s_lines.size());
    const std::string& line = s_lines[0];
    EXPECT_EQ(0U, line.find("[ WARN]"));
    EXPECT_NE(std::string::npos, line.find(" [DD_FWK ] velalog_test.cpp:"));
    EXPECT_NE(std::string::npos, line.find(" TestBody() Writer: 7: Insufficient size to write data"));
}

TEST_F(VelaLogTest, AecGroupUsesItsTag)
{
    AEC_VLOG_ERROR("pDestroyParams is NULL");
    ASSERT_EQ(1U, s_lines.size());
    EXPECT_EQ(0U, s_lines[0].find("[ERROR]"));
    EXPECT_NE(std::string::npos, s_lines[0].find("[STATS_AEC]"));
    EXPECT_NE(std::string::npos, s_lines[0].find("pDestroyParams is NULL"));
}

TEST(VelaLogFileName, StripsDirectories)
{
    EXPECT_STREQ("caeccore.cpp", Vela::Log::GetFileName("src/aec/core/base/caeccore.cpp"));
    EXPECT_STREQ("plain.cpp", Vela::Log::GetFileName("plain.cpp"));
}
