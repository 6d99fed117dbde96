// Checksums of parameter files and the 64-bit name hash of modules and members.
#ifndef AECORE_TUNING_PARSER_PARSERCRC_H
#define AECORE_TUNING_PARSER_PARSERCRC_H

#include "aecore/aecore_types.h"
#include "tuning/parser/parametertypes.h"

class IParameterLoggingAPI;

// CRC-32 of IEEE 802.3 (reflected polynomial 0xEDB88320).
class ParserCRC32
{
public:
    static UINT32 GetCRC(const BYTE* pData, SIZE_T length, UINT32 seed = 0);
    // Compares the checksum of all bytes but the last 4 with those 4 (little-endian).
    static bool Validate(const BYTE* pData, SIZE_T length, const IParameterLoggingAPI* pLog);
};

// The store's own 64-bit CRC: the right-shifting table built from 0x42F0E1EBA9EA3693 unreversed.
// Every name hash in files depends on it, so it must stay as it is.
class ParserCRC64
{
public:
    static UINT64 GetCRC(const void* pData, SIZE_T length, bool includeLength, UINT64 seed = 0);
    // Compares the checksum of all bytes but the last 8 with those 8 (little-endian).
    static bool Validate(const BYTE* pData, SIZE_T length, bool includeLength, const IParameterLoggingAPI* pLog);
    // Name hash of a NUL-terminated text: the CRC with the length fed after it.
    static UINT64 GetNameHash(const CHAR* pName);
    // One value of the byte table, for checks of the table itself.
    static UINT64 GetTableValue(UINT32 index);
};

#endif // AECORE_TUNING_PARSER_PARSERCRC_H
