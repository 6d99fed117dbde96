// Thin portable wrappers over process, string, file and trace services.
#include "platform/osutils.h"

#include <strings.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <cstring>

#include "platform/velalog.h"

namespace Vela
{

INT32 OsUtils::GetProcessID()
{
    return static_cast<INT32>(getpid());
}

INT32 OsUtils::GetThreadID()
{
    return static_cast<INT32>(syscall(SYS_gettid));
}

INT32 OsUtils::SNPrintF(CHAR* pDst, SIZE_T sizeDst, const CHAR* pFormat, ...)
{
    va_list args;
    va_start(args, pFormat);
    INT32 written = VSNPrintF(pDst, sizeDst, pFormat, args);
    va_end(args);
    return written;
}

INT32 OsUtils::VSNPrintF(CHAR* pDst, SIZE_T sizeDst, const CHAR* pFormat, va_list args)
{
    return vsnprintf(pDst, sizeDst, pFormat, args);
}

SIZE_T OsUtils::StrLCpy(CHAR* pDst, const CHAR* pSrc, SIZE_T sizeDst)
{
    SIZE_T length = std::strlen(pSrc);
    if (0 != sizeDst)
    {
        SIZE_T copied = (length < sizeDst) ? length : (sizeDst - 1);
        std::memcpy(pDst, pSrc, copied);
        pDst[copied] = '\0';
    }
    return length;
}

SIZE_T OsUtils::StrLCat(CHAR* pDst, const CHAR* pSrc, SIZE_T sizeDst)
{
    SIZE_T dstLength = strnlen(pDst, sizeDst);
    if (dstLength == sizeDst)
    {
        return sizeDst + std::strlen(pSrc);
    }
    return dstLength + StrLCpy(pDst + dstLength, pSrc, sizeDst - dstLength);
}

INT32 OsUtils::StrNICmp(const CHAR* pString1, const CHAR* pString2, SIZE_T maxCount)
{
    return strncasecmp(pString1, pString2, maxCount);
}

FILE* OsUtils::FOpen(const CHAR* pFilename, const CHAR* pMode)
{
    return fopen(pFilename, pMode);
}

INT32 OsUtils::FClose(FILE* pFile)
{
    return fclose(pFile);
}

INT32 OsUtils::FPrintF(FILE* pFile, const CHAR* pFormat, ...)
{
    va_list args;
    va_start(args, pFormat);
    INT32 written = vfprintf(pFile, pFormat, args);
    va_end(args);
    return written;
}

void OsUtils::TraceBegin(UINT32 group, const CHAR* pName)
{
    // Without a system tracer the marks go to the log, so enabling a trace group still shows them.
    if (0 != (g_traceInfo & group))
    {
        Log::LogSystem(group, Log::LevelVerbose, "trace", 0, "TraceBegin", "B|%d|%s", GetProcessID(), pName);
    }
}

void OsUtils::TraceEnd(UINT32 group)
{
    if (0 != (g_traceInfo & group))
    {
        Log::LogSystem(group, Log::LevelVerbose, "trace", 0, "TraceEnd", "E|%d", GetProcessID());
    }
}

} // namespace Vela
