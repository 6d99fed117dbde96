/* Basic scalar types, result codes and the logging callback type shared by the host and libaecore. */
#ifndef AECORE_AECORE_TYPES_H
#define AECORE_AECORE_TYPES_H

#include <stddef.h>
#include <stdint.h>
#ifndef __cplusplus
#include <stdbool.h>
#endif

#ifdef __cplusplus
#define AECORE_EXTERN_C_BEGIN extern "C" {
#define AECORE_EXTERN_C_END }
#define AECORE_STATIC_ASSERT(cond, msg) static_assert(cond, msg)
#else
#define AECORE_EXTERN_C_BEGIN
#define AECORE_EXTERN_C_END
#define AECORE_STATIC_ASSERT(cond, msg) _Static_assert(cond, msg)
#endif

/* Symbols the host may resolve; everything else in the library is hidden. */
#define AECORE_API __attribute__((visibility("default")))

AECORE_EXTERN_C_BEGIN

typedef int8_t   INT8;
typedef uint8_t  UINT8;
typedef int16_t  INT16;
typedef uint16_t UINT16;
typedef int32_t  INT32;
typedef uint32_t UINT32;
typedef int64_t  INT64;
typedef uint64_t UINT64;
typedef int      INT;
typedef unsigned int UINT;
typedef int32_t  BOOL;
typedef float    FLOAT;
typedef double   DOUBLE;
typedef char     CHAR;
typedef size_t   SIZE_T;
typedef void     VOID;

#ifndef TRUE
#define TRUE 1
#endif
#ifndef FALSE
#define FALSE 0
#endif

/* Result of every host-facing operation. */
typedef INT32 KDKResult;
typedef INT32 VelaResult;

#define VelaResultSuccess         0
#define VelaResultEFailed         1
#define VelaResultEUnsupported    2
#define VelaResultEInvalidState   3
#define VelaResultEInvalidArg     4
#define VelaResultEInvalidPointer 5
#define VelaResultENoSuch         6
#define VelaResultEOutOfBounds    7
#define VelaResultENoMemory       8
#define VelaResultETimeout        9

/* Log group of the host's statistics logger; AEC always logs as group 2. */
typedef enum
{
    StatsLogGroupNone = 0,
    StatsLogGroupAWB  = 1,
    StatsLogGroupAEC  = 2,
} StatsLogGroup;

/* Log levels of the host's statistics logger. */
typedef enum
{
    StatsLogError   = 2,
    StatsLogWarning = 4,
    StatsLogInfo    = 16,
    StatsLogVerbose = 32,
} StatsLog;

/* Log sink of the core, supplied by the host at creation. */
typedef VOID (*StatsLoggingFunction)(const CHAR* pFileName, UINT32 lineNum, const CHAR* pFunctionName,
                                     StatsLogGroup group, StatsLog level, const CHAR* pFormat, ...);

AECORE_EXTERN_C_END

#endif /* AECORE_AECORE_TYPES_H */
