// Thin portable wrappers over process, string, file and trace services.
#ifndef AECORE_PLATFORM_OSUTILS_H
#define AECORE_PLATFORM_OSUTILS_H

#include <cstdarg>
#include <cstdio>

#include "aecore/aecore_types.h"

namespace Vela
{

class OsUtils
{
public:
    static INT32  GetProcessID();
    static INT32  GetThreadID();
    static INT32  SNPrintF(CHAR* pDst, SIZE_T sizeDst, const CHAR* pFormat, ...) __attribute__((format(printf, 3, 4)));
    static INT32  VSNPrintF(CHAR* pDst, SIZE_T sizeDst, const CHAR* pFormat, va_list args);
    // Copies at most sizeDst - 1 characters and always terminates; returns the length of pSrc.
    static SIZE_T StrLCpy(CHAR* pDst, const CHAR* pSrc, SIZE_T sizeDst);
    // Appends while keeping the result terminated; returns the length it tried to create.
    static SIZE_T StrLCat(CHAR* pDst, const CHAR* pSrc, SIZE_T sizeDst);
    // Case-insensitive comparison of at most maxCount characters.
    static INT32  StrNICmp(const CHAR* pString1, const CHAR* pString2, SIZE_T maxCount);
    static FILE*  FOpen(const CHAR* pFilename, const CHAR* pMode);
    static INT32  FClose(FILE* pFile);
    static INT32  FPrintF(FILE* pFile, const CHAR* pFormat, ...) __attribute__((format(printf, 2, 3)));
    // Trace marks; they cost nothing unless tracing is enabled for the group in g_traceInfo.
    static void   TraceBegin(UINT32 group, const CHAR* pName);
    static void   TraceEnd(UINT32 group);
};

} // namespace Vela

#endif // AECORE_PLATFORM_OSUTILS_H
