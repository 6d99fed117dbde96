// Little-endian byte output in which every field occupies its size padded to the file's alignment.
#ifndef AECTUNE_CTUNEBYTEWRITER_H
#define AECTUNE_CTUNEBYTEWRITER_H

#include <string>
#include <vector>

#include "aecore/aecore_types.h"

namespace AecTune
{

class CTuneByteWriter
{
public:
    // alignment 1 packs; any other value pads a field of n bytes to max(n, alignment) and a buffer to a multiple of it.
    explicit CTuneByteWriter(UINT32 alignment);

    void U8(UINT8 value);
    void U16(UINT16 value);
    void U32(UINT32 value);
    void U64(UINT64 value);
    // A buffer of raw bytes, padded with zeros to a multiple of the alignment.
    void Buffer(const void* pData, size_t count);
    // Text in a fixed field of count bytes, NUL-padded; the caller has checked that it fits with its NUL.
    void FixedText(const std::string& text, UINT32 count);
    // A counted string: UINT32 byte count including the NUL, then the bytes.
    void CountedString(const std::string& text);
    // Pads the output with zeros to a total size.
    void PadTo(size_t size);

    // Overwrites a 32-bit value written earlier at an offset.
    void PatchU32(size_t offset, UINT32 value);

    size_t                    Size() const;
    UINT32                    Alignment() const;
    const std::vector<UINT8>& Bytes() const;
    std::vector<UINT8>&       Bytes();

private:
    void Field(UINT64 value, UINT32 size);

    UINT32             m_alignment;
    std::vector<UINT8> m_bytes;
};

} // namespace AecTune

#endif // AECTUNE_CTUNEBYTEWRITER_H
