// verify: a sound file passes; tag, version, truncation, section size and checksum damage fail with exact messages.
#include <cstdio>
#include <fstream>

#include <gtest/gtest.h>
#include <unistd.h>

#include "tunetesthelpers.h"
#include "tuning/parser/parsercrc.h"

using namespace AecTuneTest;

namespace
{

const char* const Source = R"({
  "header": { "binaryTag": "verify" },
  "modeTables": [ { "name": "Main", "modes": [ { "mode": "Scene.Night" } ] } ],
  "modules": [ { "name": "V", "version": "2.0.0", "members": [ { "name": "v", "type": "FLOAT[]" } ],
                 "values": { "Default": { "v": [1, 2] }, "Scene.Night": { "v": [3] } } } ]
})";

class TuneVerify : public ::testing::Test
{
protected:
    void SetUp() override
    {
        ASSERT_TRUE(Compile(Source, "7.0.0", true, 3388, &m_file));
        // ctest runs the tests side by side: each needs its own file.
        m_path = ::testing::TempDir() + "aectune_verify_" +
                 ::testing::UnitTest::GetInstance()->current_test_info()->name() + "_" +
                 std::to_string(static_cast<long>(getpid())) + ".bin";
    }

    void TearDown() override
    {
        std::remove(m_path.c_str());
    }

    // Runs verify on bytes; returns its output, the exit code in pCode.
    std::string Verify(const std::vector<UINT8>& bytes, int* pCode)
    {
        EXPECT_TRUE(AecTune::CTuneCommands::WriteFile(m_path, bytes));
        std::ostringstream     out;
        std::ostringstream     err;
        AecTune::CTuneCommands commands(&out, &err);
        *pCode = commands.Verify(m_path);
        return out.str();
    }

    // Sets a 32-bit field of a section record of the given type.
    void SetSectionField(std::vector<UINT8>* pBytes, UINT32 type, UINT32 field, UINT32 value)
    {
        const UINT32 count = U32(*pBytes, 164);
        for (UINT32 i = 0; i < count; i++)
        {
            if (U32(*pBytes, 168 + 12 * i) == type)
            {
                for (UINT32 b = 0; b < 4; b++)
                {
                    (*pBytes)[168 + 12 * i + 4 * field + b] = static_cast<UINT8>(value >> (8 * b));
                }
            }
        }
    }

    // A changed file with a checksum that fits it again, so that the change itself is what verify finds.
    static void Reseal(std::vector<UINT8>* pBytes)
    {
        const size_t body = pBytes->size() - 8;
        const UINT64 crc  = ParserCRC64::GetCRC(pBytes->data(), body, true, 0);
        for (UINT32 b = 0; b < 8; b++)
        {
            (*pBytes)[body + b] = static_cast<UINT8>(crc >> (8 * b));
        }
    }

    std::vector<UINT8> m_file;
    std::string        m_path;
};

} // namespace

TEST_F(TuneVerify, SoundFilePasses)
{
    int code = -1;
    EXPECT_EQ(m_path + ": valid, version 7.0.0, 3388 bytes, 5 sections, 2 module entries in 1 mode tables\n",
              Verify(m_file, &code));
    EXPECT_EQ(0, code);
}

TEST_F(TuneVerify, WrongTag)
{
    m_file[0] = 'X';
    int code  = -1;
    EXPECT_EQ(m_path + ": error: Invalid binary header tag: XVR Sorenta Header\n" + m_path + ": invalid\n",
              Verify(m_file, &code));
    EXPECT_EQ(1, code);
}

TEST_F(TuneVerify, UnknownVersion)
{
    m_file[36] = 1; // 7.0.1
    int code   = -1;
    EXPECT_EQ(m_path + ": error: Unsupported binary header version : 7.0.1. Please re-generate parser code using the "
                       "latest version of ParameterParser\n" + m_path + ": invalid\n",
              Verify(m_file, &code));
    EXPECT_EQ(1, code);
}

TEST_F(TuneVerify, TruncatedFile)
{
    m_file.resize(3000);
    int code = -1;
    EXPECT_EQ(m_path + ": error: Binary header data too small: Expected: 3388 bytes, Actual: 3000 bytes\n" + m_path +
                  ": invalid\n",
              Verify(m_file, &code));
    EXPECT_EQ(1, code);
}

TEST_F(TuneVerify, SymbolTableSizeThatIsNoWholeNumberOfEntries)
{
    SetSectionField(&m_file, 0, 2, 3 * 32 + 1);
    Reseal(&m_file);
    int code = -1;
    EXPECT_EQ(m_path + ": error: Invalid symbol table size: 97, expected: 128\n" + m_path + ": invalid\n",
              Verify(m_file, &code));
    EXPECT_EQ(1, code);
}

TEST_F(TuneVerify, SectionThatPassesTheEndOfTheFile)
{
    SetSectionField(&m_file, 1, 2, 5000);
    Reseal(&m_file);
    int               code   = -1;
    const std::string output = Verify(m_file, &code);
    EXPECT_NE(std::string::npos, output.find(": error: data section (type 1) at offset ")) << output;
    EXPECT_NE(std::string::npos, output.find(" with size 5000 lies outside the sections' room (228 to 3380)\n"))
        << output;
    EXPECT_EQ(1, code);
}

TEST_F(TuneVerify, BadChecksum)
{
    m_file[3000] ^= 0xFF;
    int               code     = -1;
    const UINT64      computed = ParserCRC64::GetCRC(m_file.data(), m_file.size() - 8, true, 0);
    char              line[160];
    std::snprintf(line, sizeof(line), "Binary file CRC validation failed. Expected: %016llx, Actual: %016llx",
                  static_cast<unsigned long long>(computed),
                  static_cast<unsigned long long>(Field(m_file, m_file.size() - 8, 8)));
    EXPECT_EQ(m_path + ": error: Binary file CRC validation failed\n" + m_path + ": error: " + line + "\n" + m_path +
                  ": invalid\n",
              Verify(m_file, &code));
    EXPECT_EQ(1, code);
}

TEST_F(TuneVerify, LongerFileIsAcceptedWithAWarning)
{
    // The checksum covers every byte before the last eight, so the extra bytes go in front of it.
    m_file.insert(m_file.end() - 8, 4, 0);
    Reseal(&m_file);
    int code = -1;
    EXPECT_EQ(m_path + ": warning: the file has 4 bytes more than its header's size of 3388\n" + m_path +
                  ": valid, version 7.0.0, 3392 bytes, 5 sections, 2 module entries in 1 mode tables\n",
              Verify(m_file, &code));
    EXPECT_EQ(0, code);
}
