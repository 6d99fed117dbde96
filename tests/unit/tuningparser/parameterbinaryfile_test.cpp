// Tests of the buffered parameter file object: reads, read buffers, references and change detection.
#include <gtest/gtest.h>

#include <fcntl.h>
#include <sys/stat.h>

#include <cstdio>

#include "tuning/parser/parameterbinaryfile.h"
#include "unit/tuningparser/clogcapture.h"
#include "unit/tuningparser/tuningparsertesthelpers.h"

namespace
{
ByteVector Pattern(size_t size)
{
    ByteVector bytes(size);
    for (size_t i = 0; i < size; i++)
    {
        bytes[i] = static_cast<BYTE>(i * 7 + (i >> 8));
    }
    return bytes;
}
} // namespace

TEST(ParameterBinaryFile, ReadsRangesThroughBuffersAndDirectly)
{
    const ByteVector    bytes = Pattern(5000);
    const std::string   name  = WriteTempFile(bytes);
    ParameterBinaryFile file(name.c_str(), nullptr);
    ASSERT_TRUE(file.IsValid());
    EXPECT_EQ(5000U, file.Length());
    EXPECT_EQ(1U, file.RefCount());

    BYTE   small[16];
    UINT32 pos = 3;
    ASSERT_TRUE(file.Read(small, 100, pos, sizeof(small), 8));
    EXPECT_EQ(0, std::memcmp(small, bytes.data() + 103, sizeof(small)));
    EXPECT_EQ(19U, pos);
    // Near the end a buffer is filled backwards from the end of the file.
    pos = 0;
    ASSERT_TRUE(file.Read(small, 4990, pos, 10, 1));
    EXPECT_EQ(0, std::memcmp(small, bytes.data() + 4990, 10));

    BYTE* pAll = file.Read(0, 5000);
    ASSERT_NE(nullptr, pAll);
    EXPECT_EQ(0, std::memcmp(pAll, bytes.data(), 5000));
    delete[] pAll;
    RemoveFile(name);
}

TEST(ParameterBinaryFile, RefusesBadReads)
{
    CLogCapture         log;
    const std::string   name = WriteTempFile(Pattern(100));
    ParameterBinaryFile file(name.c_str(), nullptr);
    BYTE                dest[8];
    UINT32              pos = 0;
    EXPECT_FALSE(file.Read(nullptr, 0, pos, 4, 1));
    EXPECT_TRUE(log.Contains("ParameterBinaryFile::Read called with null value"));
    EXPECT_FALSE(file.Read(dest, 96, pos, 8, 1));
    EXPECT_TRUE(log.Contains("ParameterBinaryFile::Read attempted to read past the end of the file, offset: 96, pos: 0, "
                             "count: 8, length: 100"));
    file.Close();
    EXPECT_FALSE(file.Read(dest, 0, pos, 4, 1));
    EXPECT_TRUE(log.Contains("ParameterBinaryFile::Read called with null file"));
    RemoveFile(name);
}

TEST(ParameterBinaryFile, ReferencesOpenAndCloseTheFile)
{
    CLogCapture         log;
    const std::string   name = WriteTempFile(Pattern(64));
    ParameterBinaryFile file(name.c_str(), nullptr);
    EXPECT_EQ(0U, file.Reference(-1));
    BYTE   dest[4];
    UINT32 pos = 0;
    EXPECT_FALSE(file.Read(dest, 0, pos, 4, 1));
    EXPECT_EQ(0U, file.Reference(-1));
    EXPECT_TRUE(log.Contains("FileReference Remove: -1, RefCount: 0, Called when file was already closed"));
    EXPECT_EQ(2U, file.Reference(2));
    EXPECT_TRUE(file.Read(dest, 0, pos, 4, 1));
    EXPECT_EQ(0U, file.Reference(-3));
    EXPECT_TRUE(log.Contains("FileReference Adjust: -3, RefCount: 2, File Reference is less than adjust amount"));
    RemoveFile(name);
}

TEST(ParameterBinaryFile, MissingFileIsNotValid)
{
    CLogCapture         log;
    ParameterBinaryFile file("/nonexistent/dir/file.bin", nullptr);
    EXPECT_FALSE(file.IsValid());
    EXPECT_TRUE(log.Contains("Failed to open binary file '/nonexistent/dir/file.bin'"));
    ParameterBinaryFile unnamed(nullptr, nullptr);
    EXPECT_TRUE(log.Contains("ParameterBinaryFile constructor called with null file name"));
    const std::string longName(1100, 'a');
    ParameterBinaryFile tooLong(longName.c_str(), nullptr);
    EXPECT_TRUE(log.Contains("ParameterBinaryFile constructor file name length (1100) exceeds max length: 1022"));
}

TEST(ParameterBinaryFile, AModifiedFileReadsNothingMore)
{
    CLogCapture         log;
    const std::string   name = WriteTempFile(Pattern(64));
    ParameterBinaryFile file(name.c_str(), nullptr);
    file.Reference(-1);
    // Another modification time, as a rewrite of the file gives.
    struct timespec times[2] = {{0, UTIME_OMIT}, {12345, 0}};
    ASSERT_EQ(0, utimensat(AT_FDCWD, name.c_str(), times, 0));
    file.Reference(1);
    EXPECT_TRUE(file.IsModified());
    EXPECT_TRUE(log.Contains("ParameterBinaryFile::Open, file modified, must reload"));
    BYTE   dest[4];
    UINT32 pos = 0;
    EXPECT_FALSE(file.Read(dest, 0, pos, 4, 1));
    RemoveFile(name);
}

TEST(ParameterBinaryFile, DeletingWithReferencesLogs)
{
    CLogCapture       log;
    const std::string name = WriteTempFile(Pattern(64));
    {
        ParameterBinaryFile file(name.c_str(), nullptr);
        file.Reference(2);
    }
    EXPECT_TRUE(log.Contains("ParameterBinaryFile deleted with outstanding references: 3"));
    RemoveFile(name);
}

TEST(ParameterBinaryFile, ValidateCrcChoosesTheWidth)
{
    CParameterFileBuilder v5(5, 0, 0);
    CParameterFileBuilder v6(6, 0, 0);
    const ByteVector      file5 = v5.Build();
    const ByteVector      file6 = v6.Build();
    EXPECT_TRUE(ParameterBinaryFile::ValidateCRC(file5.data(), file5.size(), false, nullptr));
    EXPECT_TRUE(ParameterBinaryFile::ValidateCRC(file6.data(), file6.size(), true, nullptr));
    EXPECT_FALSE(ParameterBinaryFile::ValidateCRC(file6.data(), file6.size(), false, nullptr));
}
