// A parameter file opened for reading on demand, with three read-ahead buffers and change detection.
#ifndef AECORE_TUNING_PARSER_PARAMETERBINARYFILE_H
#define AECORE_TUNING_PARSER_PARAMETERBINARYFILE_H

#include <sys/stat.h>

#include <cstdio>

#include "aecore/aecore_types.h"
#include "tuning/parser/parameterlogging.h"
#include "tuning/parser/parametertypes.h"

class ParameterBinaryFile
{
public:
    static const UINT32 ReadBufferSize  = 1024;
    static const UINT32 ReadBufferCount = 3;
    static const UINT32 ReadTries       = 4;

    ParameterBinaryFile(const CHAR* pFileName, const IParameterLoggingAPI* pLog);
    ~ParameterBinaryFile();
    ParameterBinaryFile(const ParameterBinaryFile&) = delete;
    ParameterBinaryFile& operator=(const ParameterBinaryFile&) = delete;

    const CHAR* FileName() const { return m_fileName; }
    UINT32      Length() const { return m_length; }
    bool        IsValid() const { return m_isValid; }
    bool        IsModified() const { return m_isModified; }
    UINT32      RefCount() const { return m_refCnt.load(); }

    bool   Open(bool logFailure);
    void   Close();
    // Adds adjust to the reference count, opening the file for the first and closing it after the last.
    UINT32 Reference(INT32 adjust);
    // Reads count bytes at filePos + pos into dest; pos then advances by count rounded up to alignment.
    bool   Read(BYTE* pDest, UINT32 filePos, UINT32& pos, SIZE_T count, BYTE alignment);
    // A new buffer (delete[]) with count bytes from filePos, or null.
    BYTE*  Read(UINT32 filePos, SIZE_T count);

    // Checksums of a whole file held in memory: 32-bit, or 64-bit with the length fed in.
    static bool ValidateCRC(const BYTE* pData, SIZE_T length, bool useCRC64, const IParameterLoggingAPI* pLog);

private:
    struct ReadBuffer
    {
        BYTE   Buffer[ReadBufferSize];
        UINT32 Offset;
        UINT32 Length;
    };

    ReadBuffer* GetBuffer(UINT32 filePos, SIZE_T count);
    bool        ReadFromFile(BYTE* pDest, UINT32 filePos, UINT32 pos, SIZE_T count);

    FILE*                       m_file;
    UINT32                      m_length;
    ParameterRefCount           m_refCnt;
    ReadBuffer                  m_readBufs[ReadBufferCount];
    bool                        m_useReadBufs;
    CHAR                        m_fileName[ParameterFileNameSize];
    bool                        m_isValid;
    bool                        m_isModified;
    bool                        m_haveStat;
    struct timespec             m_modTime;
    ParameterMutex              m_pbfMutex;
    const IParameterLoggingAPI* m_logAPI;
};

#endif // AECORE_TUNING_PARSER_PARAMETERBINARYFILE_H
