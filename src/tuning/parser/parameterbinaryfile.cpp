// A parameter file opened for reading on demand, with three read-ahead buffers and change detection.
#include "tuning/parser/parameterbinaryfile.h"

#include <cerrno>
#include <cstring>

#include "platform/osutils.h"
#include "tuning/parser/parametertypes.h"
#include "tuning/parser/parameterutils.h"
#include "tuning/parser/parsercrc.h"

ParameterBinaryFile::ParameterBinaryFile(const CHAR* pFileName, const IParameterLoggingAPI* pLog)
    : m_file(nullptr)
    , m_length(0)
    , m_refCnt(0)
    , m_readBufs()
    , m_useReadBufs(true)
    , m_fileName()
    , m_isValid(false)
    , m_isModified(false)
    , m_haveStat(false)
    , m_modTime()
    , m_logAPI(pLog)
{
    if (nullptr == pFileName)
    {
        ParameterLogging::Write(m_logAPI, Error, "ParameterBinaryFile constructor called with null file name\n");
        return;
    }
    const SIZE_T length = std::strlen(pFileName);
    if (length > ParameterFileNameSize - 2)
    {
        ParameterLogging::Write(m_logAPI, Error,
                                "ParameterBinaryFile constructor file name length (%lld) exceeds max length: %d\n",
                                static_cast<long long>(length), static_cast<INT32>(ParameterFileNameSize - 2));
        return;
    }
    Vela::OsUtils::StrLCpy(m_fileName, pFileName, sizeof(m_fileName));
    Reference(1);
    m_isValid = (nullptr != m_file);
}

ParameterBinaryFile::~ParameterBinaryFile()
{
    const UINT32 count = m_refCnt.load();
    if (count > 1)
    {
        ParameterLogging::Write(m_logAPI, Warning, "ParameterBinaryFile deleted with outstanding references: %u\n",
                                count);
    }
    Close();
    m_refCnt = 0;
}

bool ParameterBinaryFile::ValidateCRC(const BYTE* pData, SIZE_T length, bool useCRC64,
                                      const IParameterLoggingAPI* pLog)
{
    return useCRC64 ? ParserCRC64::Validate(pData, length, true, pLog) : ParserCRC32::Validate(pData, length, pLog);
}

bool ParameterBinaryFile::Open(bool logFailure)
{
    std::lock_guard<ParameterMutex> lock(m_pbfMutex);
    if ('\0' == m_fileName[0])
    {
        return false;
    }
    if (nullptr == m_file)
    {
        m_file = std::fopen(m_fileName, "rb");
        if (nullptr == m_file)
        {
            if (logFailure)
            {
                ParameterLogging::Write(m_logAPI, Error,
                                        "ParameterBinaryFile::Open failed to open file, errno: %d, file name: %s\n",
                                        errno, m_fileName);
            }
            return false;
        }
        struct stat info;
        if (0 == fstat(fileno(m_file), &info))
        {
            // The format counts offsets in 32 bits; a larger file cannot be addressed.
            const UINT32 size = (static_cast<UINT64>(info.st_size) > 0xFFFFFFFFull)
                                    ? 0xFFFFFFFFu
                                    : static_cast<UINT32>(info.st_size);
            if (!m_haveStat)
            {
                m_haveStat = true;
                m_length   = size;
                m_modTime  = info.st_mtim;
            }
            else if ((info.st_mtim.tv_sec != m_modTime.tv_sec) || (info.st_mtim.tv_nsec != m_modTime.tv_nsec))
            {
                m_isModified = true;
                m_length     = size;
                m_modTime    = info.st_mtim;
                ParameterLogging::Write(m_logAPI, Warning, "ParameterBinaryFile::Open, file modified, must reload\n");
            }
        }
    }
    return true;
}

void ParameterBinaryFile::Close()
{
    std::lock_guard<ParameterMutex> lock(m_pbfMutex);
    if (nullptr != m_file)
    {
        std::fclose(m_file);
        m_file = nullptr;
    }
}

UINT32 ParameterBinaryFile::Reference(INT32 adjust)
{
    std::lock_guard<ParameterMutex> lock(m_pbfMutex);
    const UINT32 count = m_refCnt.load();
    if (adjust > 0)
    {
        if (nullptr == m_file)
        {
            if (0 != count)
            {
                ParameterLogging::Write(
                    m_logAPI, Warning,
                    "FileReference Adjust: %d, RefCount: %u, Binary File was null when file reference was %u\n",
                    adjust, count, count);
            }
            if (!Open(false))
            {
                ParameterLogging::Write(
                    m_logAPI, Error, "FileReference Adjust: %d, RefCount: %u, Failed to open binary file '%s' errno: %d\n",
                    adjust, count, m_fileName, errno);
            }
        }
        m_refCnt += static_cast<UINT32>(adjust);
    }
    else if (adjust < 0)
    {
        if (nullptr == m_file)
        {
            ParameterLogging::Write(m_logAPI, Warning,
                                    "FileReference Remove: %d, RefCount: %i, Called when file was already closed\n",
                                    adjust, static_cast<INT32>(count));
            return count;
        }
        const UINT32 amount = static_cast<UINT32>(-static_cast<INT64>(adjust));
        if (count < amount)
        {
            ParameterLogging::Write(
                m_logAPI, Warning, "FileReference Adjust: %d, RefCount: %u, File Reference is less than adjust amount\n",
                adjust, count);
        }
        const INT64 result = static_cast<INT64>(count) - amount;
        if (result < 1)
        {
            Close();
            m_refCnt = 0;
        }
        else
        {
            m_refCnt = static_cast<UINT32>(result);
        }
    }
    return m_refCnt.load();
}

ParameterBinaryFile::ReadBuffer* ParameterBinaryFile::GetBuffer(UINT32 filePos, SIZE_T count)
{
    for (ReadBuffer& buffer : m_readBufs)
    {
        if ((0 != buffer.Length) && (filePos >= buffer.Offset) &&
            (static_cast<UINT64>(filePos) + count <= static_cast<UINT64>(buffer.Offset) + buffer.Length))
        {
            return &buffer;
        }
    }
    ReadBuffer* pChosen = nullptr;
    for (ReadBuffer& buffer : m_readBufs)
    {
        if (0 == buffer.Length)
        {
            pChosen = &buffer;
            break;
        }
    }
    if (nullptr == pChosen)
    {
        auto distance = [filePos](const ReadBuffer& buffer) {
            return (buffer.Offset > filePos) ? (buffer.Offset - filePos) : (filePos - buffer.Offset);
        };
        pChosen = (distance(m_readBufs[1]) < distance(m_readBufs[0])) ? &m_readBufs[1] : &m_readBufs[0];
        if (distance(m_readBufs[2]) < distance(*pChosen))
        {
            pChosen = &m_readBufs[2];
        }
    }

    UINT32 offset = filePos;
    UINT32 length = ReadBufferSize;
    if (m_length <= ReadBufferSize)
    {
        offset = 0;
        length = m_length;
    }
    else if (static_cast<UINT64>(filePos) + ReadBufferSize > m_length)
    {
        offset = m_length - ReadBufferSize;
    }
    pChosen->Length = 0;
    m_useReadBufs   = false;
    UINT32     pos  = 0;
    const bool ok   = Read(pChosen->Buffer, offset, pos, length, 1);
    m_useReadBufs   = true;
    if (!ok)
    {
        return nullptr;
    }
    pChosen->Offset = offset;
    pChosen->Length = length;
    return pChosen;
}

bool ParameterBinaryFile::ReadFromFile(BYTE* pDest, UINT32 filePos, UINT32 pos, SIZE_T count)
{
    for (UINT32 attempt = 0; attempt < ReadTries; attempt++)
    {
        if (attempt > 0)
        {
            ParameterLogging::Write(m_logAPI, Warning, "ParameterBinaryFile::Read failed, retrying\n");
            Close();
            Open(true);
            if (m_isModified)
            {
                return false;
            }
        }
        if (nullptr == m_file)
        {
            ParameterLogging::Write(m_logAPI, Error, "ParameterBinaryFile::Read fseek failed, file not open\n");
            continue;
        }
        const UINT32 offset = filePos + pos;
        const INT32  result = std::fseek(m_file, static_cast<long>(offset), SEEK_SET);
        if (0 != result)
        {
            ParameterLogging::Write(m_logAPI, Error,
                                    "ParameterBinaryFile::Read fseek failed, ferror: %d, return value %d, offset: %d\n",
                                    std::ferror(m_file), result, static_cast<INT32>(offset));
            continue;
        }
        const SIZE_T actual = std::fread(pDest, 1, count, m_file);
        if (actual == count)
        {
            return true;
        }
        ParameterLogging::Write(m_logAPI, Error,
                                "Read failed to read from file, ferror: %d, offset: %u, pos: %u, requested: %lld, "
                                "actual: %lld\n",
                                std::ferror(m_file), filePos, pos, static_cast<long long>(count),
                                static_cast<long long>(actual));
    }
    return false;
}

bool ParameterBinaryFile::Read(BYTE* pDest, UINT32 filePos, UINT32& pos, SIZE_T count, BYTE alignment)
{
    std::lock_guard<ParameterMutex> lock(m_pbfMutex);
    if (nullptr == m_file)
    {
        ParameterLogging::Write(m_logAPI, Error, "ParameterBinaryFile::Read called with null file\n");
        return false;
    }
    if (nullptr == pDest)
    {
        ParameterLogging::Write(m_logAPI, Error, "ParameterBinaryFile::Read called with null value\n");
        return false;
    }
    if (0 == m_length)
    {
        ParameterLogging::Write(m_logAPI, Error, "ParameterBinaryFile::Read called with a zero length file\n");
        return false;
    }
    if (static_cast<UINT64>(filePos) + pos + count > m_length)
    {
        ParameterLogging::Write(m_logAPI, Error,
                                "ParameterBinaryFile::Read attempted to read past the end of the file, offset: %u, "
                                "pos: %u, count: %u, length: %u\n",
                                filePos, pos, static_cast<UINT32>(count), m_length);
        return false;
    }
    if (!m_isValid || m_isModified)
    {
        return false;
    }
    const UINT32 offset = filePos + pos;
    bool         done   = false;
    if ((count <= ReadBufferSize) && m_useReadBufs)
    {
        const ReadBuffer* pBuffer = GetBuffer(offset, count);
        if (nullptr != pBuffer)
        {
            std::memcpy(pDest, pBuffer->Buffer + (offset - pBuffer->Offset), count);
            done = true;
        }
    }
    if (!done && !ReadFromFile(pDest, filePos, pos, count))
    {
        return false;
    }
    pos = static_cast<UINT32>(pos + ParameterUtils::RoundUp(count, alignment));
    return !m_isModified;
}

BYTE* ParameterBinaryFile::Read(UINT32 filePos, SIZE_T count)
{
    std::lock_guard<ParameterMutex> lock(m_pbfMutex);
    // A range past the end is refused before any memory is taken for it.
    if (static_cast<UINT64>(filePos) + count > m_length)
    {
        ParameterLogging::Write(m_logAPI, Error,
                                "ParameterBinaryFile::Read attempted to read past the end of the file, offset: %u, "
                                "pos: %u, count: %u, length: %u\n",
                                filePos, 0u, static_cast<UINT32>(count), m_length);
        return nullptr;
    }
    BYTE* pBuffer = new (std::nothrow) BYTE[(0 == count) ? 1 : count];
    if (nullptr == pBuffer)
    {
        return nullptr;
    }
    UINT32 pos = 0;
    if (!Read(pBuffer, filePos, pos, count, 1))
    {
        delete[] pBuffer;
        return nullptr;
    }
    return pBuffer;
}
