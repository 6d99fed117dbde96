// Tests of the byte-level read helpers, the text helpers and the store's growable array.
#include <gtest/gtest.h>

#include <cmath>
#include <cstring>

#include "tuning/parser/parameterlogging.h"
#include "tuning/parser/parameterutils.h"
#include "tuning/parser/plist.h"
#include "unit/tuningparser/clogcapture.h"

TEST(ParameterUtilsStringToDouble, RejectsTwoPointsAndLetters)
{
    bool ok = true;
    EXPECT_EQ(0.0, ParameterUtils::StringToDouble("1.2.3", ok));
    EXPECT_FALSE(ok);
    ok = true;
    EXPECT_EQ(0.0, ParameterUtils::StringToDouble("1a", ok));
    EXPECT_FALSE(ok);
}

TEST(ParameterUtilsStringToDouble, DigitsBeforeAMinusAreIgnored)
{
    bool ok = false;
    EXPECT_EQ(-3.0, ParameterUtils::StringToDouble("12-3", ok));
    EXPECT_TRUE(ok);
}

TEST(ParameterUtilsStringToDouble, EmptyFailsAndALoneMinusIsNegativeZero)
{
    bool ok = true;
    EXPECT_EQ(0.0, ParameterUtils::StringToDouble("", ok));
    EXPECT_FALSE(ok);
    const double value = ParameterUtils::StringToDouble("-", ok);
    EXPECT_TRUE(ok);
    EXPECT_EQ(0.0, value);
    EXPECT_TRUE(std::signbit(value));
}

TEST(ParameterUtilsStringToDouble, ParsesDecimalsWithoutExponent)
{
    bool ok = false;
    EXPECT_DOUBLE_EQ(12.625, ParameterUtils::StringToDouble("12.625", ok));
    EXPECT_TRUE(ok);
    EXPECT_DOUBLE_EQ(-0.5, ParameterUtils::StringToDouble("-.5", ok));
    EXPECT_TRUE(ok);
    ParameterUtils::StringToDouble("1e3", ok);
    EXPECT_FALSE(ok);
}

TEST(ParameterUtilsDoubleToString, RoundsByCarryingThroughTheText)
{
    CHAR text[64];
    bool truncated = true;
    ParameterUtils::DoubleToString(0.5, text, sizeof(text), 10, truncated);
    EXPECT_STREQ("0.5", text);
    EXPECT_FALSE(truncated);
    ParameterUtils::DoubleToString(9.96, text, sizeof(text), 1, truncated);
    EXPECT_STREQ("10", text);
    ParameterUtils::DoubleToString(-2.5, text, sizeof(text), 0, truncated);
    EXPECT_STREQ("-3", text);
    ParameterUtils::DoubleToString(123456789.0, text, sizeof(text), 0, truncated);
    EXPECT_STREQ("123456789", text);
    ParameterUtils::DoubleToString(1e20, text, sizeof(text), 0, truncated);
    EXPECT_STREQ("100000000000000000000", text);
    ParameterUtils::DoubleToString(0.1f, text, sizeof(text), 10, truncated);
    EXPECT_STREQ("0.1000000015", text);
    ParameterUtils::DoubleToString(-0.00000000001, text, sizeof(text), 10, truncated);
    EXPECT_STREQ("0", text);
}

TEST(ParameterUtilsDoubleToString, ReportsTruncation)
{
    CHAR text[4];
    bool truncated = false;
    ParameterUtils::DoubleToString(12345.0, text, sizeof(text), 0, truncated);
    EXPECT_TRUE(truncated);
    EXPECT_STREQ("123", text);
}

TEST(ParameterUtilsGetVariable, SplitsNameIndexAndRest)
{
    CHAR   name[16];
    INT32  index    = -1;
    UINT32 consumed = ParameterUtils::GetVariable("mtrLumaCalc[3].weight", name, index, sizeof(name));
    EXPECT_STREQ("mtrLumaCalc", name);
    EXPECT_EQ(3, index);
    EXPECT_EQ(15U, consumed);
    index    = 7;
    consumed = ParameterUtils::GetVariable("plain", name, index, sizeof(name));
    EXPECT_STREQ("plain", name);
    EXPECT_EQ(7, index);
    EXPECT_EQ(5U, consumed);
}

TEST(ParameterUtilsText, SubStringAndPosition)
{
    CHAR out[4];
    EXPECT_EQ(3U, ParameterUtils::GetSubString("abcdef|x", '|', out, sizeof(out)));
    EXPECT_STREQ("abc", out);
    EXPECT_EQ(2U, ParameterUtils::GetSubString("ab|cdef", '|', out, sizeof(out)));
    EXPECT_STREQ("ab", out);
    EXPECT_EQ(2U, ParameterUtils::GetStringPos("ab|c", '|'));
    EXPECT_EQ(0xFFFFFFFFu, ParameterUtils::GetStringPos("abc", '|'));
}

TEST(ParameterUtilsReadString, CopiesUpToNulAndAdvancesByAlignedCount)
{
    const BYTE buffer[] = {'a', 'b', 0, 'z', 'q', 'r'};
    UINT32     pos      = 0;
    CHAR*      pText    = ParameterUtils::ReadString(buffer, sizeof(buffer), pos, 5, 8);
    ASSERT_NE(nullptr, pText);
    EXPECT_STREQ("ab", pText);
    EXPECT_EQ(8U, pos);
    delete[] pText;
    pos   = 4;
    pText = ParameterUtils::ReadString(buffer, sizeof(buffer), pos, 10, 1);
    EXPECT_STREQ("qr", pText);
    EXPECT_EQ(14U, pos);
    delete[] pText;
    pos = 0;
    EXPECT_EQ(nullptr, ParameterUtils::ReadString(nullptr, 0, pos, 3, 1));
    pText = ParameterUtils::ReadString(buffer, sizeof(buffer), pos, 0, 1);
    EXPECT_STREQ("", pText);
    delete[] pText;
}

TEST(ParameterUtilsReadString, IntoBufferIsBoundedAndLogsANullDestination)
{
    CLogCapture log;
    const BYTE  buffer[] = {'h', 'e', 'l', 'l', 'o'};
    CHAR        dest[4]  = {};
    UINT32      pos      = 0;
    EXPECT_TRUE(ParameterUtils::ReadString(dest, buffer, sizeof(buffer), pos, sizeof(dest), 5, 1, nullptr));
    EXPECT_STREQ("hel", dest);
    EXPECT_EQ(5U, pos);
    pos = 0;
    EXPECT_FALSE(ParameterUtils::ReadString(nullptr, buffer, sizeof(buffer), pos, 4, 3, 1, nullptr));
    EXPECT_TRUE(log.Contains("ReadBuffer failed to allocate space for a string of 3 length"));
}

TEST(ParameterUtilsReadBuffer, ShortReadsFailButAdvance)
{
    CLogCapture log;
    const BYTE  buffer[] = {1, 2, 3};
    BYTE        dest[8]  = {};
    UINT32      pos      = 1;
    EXPECT_FALSE(ParameterUtils::ReadBuffer(dest, buffer, sizeof(buffer), pos, 4, 8, nullptr));
    EXPECT_EQ(9U, pos);
    EXPECT_EQ(2, dest[0]);
    EXPECT_TRUE(log.Contains("ReadBuffer failed, read 2 bytes, expected 4 bytes"));
    EXPECT_FALSE(ParameterUtils::ReadBuffer(dest, nullptr, 3, pos, 1, 1, nullptr));
    EXPECT_TRUE(log.Contains("ReadBuffer called with nullptr buffer"));
    EXPECT_FALSE(ParameterUtils::ReadBuffer(nullptr, buffer, 3, pos, 1, 1, nullptr));
    EXPECT_TRUE(log.Contains("ReadBuffer called with nullptr value"));
}

TEST(ParameterUtilsWriteString, NeedsRoomForTheNul)
{
    CLogCapture log;
    BYTE        buffer[6] = {};
    UINT32      pos       = 0;
    EXPECT_TRUE(ParameterUtils::WriteString("abcd", buffer, sizeof(buffer), pos, true, nullptr));
    EXPECT_EQ(5U, pos);
    pos = 0;
    EXPECT_TRUE(ParameterUtils::WriteString("ab", buffer, sizeof(buffer), pos, false, nullptr));
    EXPECT_EQ(2U, pos);
    EXPECT_FALSE(ParameterUtils::WriteString("abcd", buffer, sizeof(buffer), pos, true, nullptr));
    EXPECT_TRUE(log.Contains("Insufficient space in buffer to write string: abcd"));
    pos = 5;
    EXPECT_FALSE(ParameterUtils::WriteString(nullptr, buffer, sizeof(buffer), pos, true, nullptr));
    EXPECT_EQ(2U, log.Count("Insufficient space in buffer to write string"));
}

TEST(ParameterUtilsRead, ConvertsByTheFileType)
{
    const INT16                    value = -300;
    ParameterDefinitionElement     element;
    element.Info = new ParameterDefinitionElementInfo(ParameterDefinitionType_Signed16Bits, 0, 0, 1, 1);
    UINT32 pos   = 0;
    INT32  dest  = 0;
    EXPECT_TRUE(ParameterUtils::Read<INT32>(dest, &element, reinterpret_cast<const BYTE*>(&value), 2, pos, 1, nullptr));
    EXPECT_EQ(-300, dest);
    EXPECT_EQ(2U, pos);

    const FLOAT                 stored = 2.75f;
    ParameterDefinitionElement  floatElement;
    floatElement.Info = new ParameterDefinitionElementInfo(ParameterDefinitionType_Unsigned32Bits, 0,
                                                           ParameterDefinitionElementInfo::FlagIsFloat, 1, 1);
    pos               = 0;
    FLOAT asFloat     = 0.0f;
    EXPECT_TRUE(ParameterUtils::Read<FLOAT>(asFloat, &floatElement, reinterpret_cast<const BYTE*>(&stored), 4, pos, 1,
                                            nullptr));
    EXPECT_EQ(2.75f, asFloat);
}

TEST(ParameterUtilsRead, InvalidTypesAreRefusedWithTheirReaderName)
{
    CLogCapture                log;
    const UINT32               value = 1;
    ParameterDefinitionElement element;
    element.Info = new ParameterDefinitionElementInfo(ParameterDefinitionType_Structure, 0, 0, 1, 1);
    UINT32 pos   = 0;
    UINT32 dest  = 0;
    EXPECT_FALSE(ParameterUtils::Read<UINT32>(dest, &element, reinterpret_cast<const BYTE*>(&value), 4, pos, 1, nullptr));
    EXPECT_TRUE(log.Contains("Read: Invalid read type 5"));
    EXPECT_FALSE(ParameterUtils::ReadArrayNoFloat<UINT32>(&dest, 1, &element, reinterpret_cast<const BYTE*>(&value), 4,
                                                          pos, 1, nullptr));
    EXPECT_TRUE(log.Contains("ReadArrayNoFloat: Invalid read type 5. XSD structure modified"));
}

TEST(ParameterUtilsRead, FloatsOutOfAnIntegersRangeSaturate)
{
    const FLOAT                stored = 1e20f;
    ParameterDefinitionElement element;
    element.Info = new ParameterDefinitionElementInfo(ParameterDefinitionType_Float, 0, 0, 1, 1);
    UINT32 pos   = 0;
    INT32  dest  = 0;
    EXPECT_TRUE(ParameterUtils::Read<INT32>(dest, &element, reinterpret_cast<const BYTE*>(&stored), 4, pos, 1, nullptr));
    EXPECT_EQ(0x7FFFFFFF, dest);
}

TEST(ParameterUtilsReadField, PastTheEndLogsTheReadMessage)
{
    CLogCapture  log;
    const BYTE   buffer[3] = {};
    UINT32       pos       = 0;
    UINT32       value     = 0;
    EXPECT_FALSE(ParameterUtils::ReadValue(value, buffer, sizeof(buffer), pos, 1, nullptr));
    EXPECT_TRUE(log.Contains("Failed to read 4 bytes from binary file offset 0, length 3"));
}

TEST(PList, GrowsOneAtATimeAndYieldsADefaultOutOfRange)
{
    PList<UINT32> list;
    EXPECT_EQ(0U, list.Count());
    list.Add(5);
    list.Add(7);
    list.Insert(0, 3);
    EXPECT_EQ(3U, list.Count());
    EXPECT_EQ(3U, list[0]);
    EXPECT_EQ(7U, list[2]);
    EXPECT_EQ(1, list.IndexOf(5));
    EXPECT_TRUE(list.Contains(7));
    list[10] = 99;
    EXPECT_EQ(0U, list[11]);
    EXPECT_TRUE(list.Remove(5));
    EXPECT_FALSE(list.RemoveAt(4));
    EXPECT_EQ(2U, list.Count());
    EXPECT_EQ(7U, list.ToArray()[1]);
    list.Clear();
    EXPECT_EQ(0U, list.Count());
}

namespace
{
class CQuietLog : public IParameterLoggingAPI
{
public:
    const CHAR* GetLoggingIdentifier() const override { return m_pIdentifier; }
    bool        LoggingEnabled(ParameterLogLevel level) const override { return level != Debug; }
    const CHAR* m_pIdentifier = "CAM0;BinaryTag=Tag";
};
} // namespace

TEST(ParameterLogging, LineFramesWithAndWithoutLoggingObject)
{
    CLogCapture log;
    CQuietLog   object;
    ParameterLogging::Write(&object, Warning, "first %d", 1);
    ParameterLogging::Write(&object, Debug, "suppressed");
    object.m_pIdentifier = nullptr;
    ParameterLogging::Write(&object, Error, "second");
    ParameterLogging::Write(nullptr, Debug, "third");
    const std::vector<std::string> lines = log.Lines();
    ASSERT_EQ(3U, lines.size());
    CHAR expected[128];
    std::snprintf(expected, sizeof(expected), "): %p (CAM0;BinaryTag=Tag): first 1", static_cast<void*>(&object));
    EXPECT_NE(std::string::npos, lines[0].find("[WARNING] ParameterParser (Thread "));
    EXPECT_NE(std::string::npos, lines[0].find(expected));
    std::snprintf(expected, sizeof(expected), "): %p second", static_cast<void*>(&object));
    EXPECT_NE(std::string::npos, lines[1].find("[ERROR] ParameterParser (Thread "));
    EXPECT_NE(std::string::npos, lines[1].find(expected));
    EXPECT_NE(std::string::npos, lines[2].find("[VERBOSE] ParameterParser (Thread "));
    EXPECT_NE(std::string::npos, lines[2].find("): third"));
    EXPECT_FALSE(log.Contains("suppressed"));
}
