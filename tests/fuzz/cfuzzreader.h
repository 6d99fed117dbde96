// Reads little-endian fields from a fuzzer input; past the end every field reads as zero.
#ifndef TESTS_FUZZ_CFUZZREADER_H
#define TESTS_FUZZ_CFUZZREADER_H

#include <cstddef>

#include "aecore/aecore_types.h"

class CFuzzReader
{
public:
    CFuzzReader(const UINT8* pData, size_t size);

    UINT8  U8();
    UINT16 U16();
    UINT32 U32();
    // A 16-bit field mapped linearly onto lo..hi, so the value is always finite.
    FLOAT Range(FLOAT lo, FLOAT hi);

    // Bytes not yet read: the pool that fills the statistics buffers.
    const UINT8* Rest() const { return m_pData + m_pos; }
    size_t       RestSize() const { return m_size - m_pos; }

private:
    const UINT8* m_pData;
    size_t       m_size;
    size_t       m_pos;
};

#endif // TESTS_FUZZ_CFUZZREADER_H
