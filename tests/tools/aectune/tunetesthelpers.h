// Helpers of the aec-tune tests: compile a source text in memory and read little-endian fields of the result.
#ifndef AECTUNE_TESTS_TUNETESTHELPERS_H
#define AECTUNE_TESTS_TUNETESTHELPERS_H

#include <sstream>
#include <string>
#include <vector>

#include "ctunecommands.h"

namespace AecTuneTest
{

// Compiles source text; messages (warnings and errors) are returned in pMessages.
inline bool Compile(const std::string& text, const std::string& version, bool definitions, UINT32 minimumSize,
                    std::vector<UINT8>* pFile, std::string* pMessages = nullptr)
{
    std::ostringstream      out;
    std::ostringstream      err;
    AecTune::CTuneCommands  commands(&out, &err);
    AecTune::TuneFileOptions options{};
    if (!AecTune::CTuneFormat::ParseVersion(version, &options.version))
    {
        return false;
    }
    options.definitions = definitions;
    options.minimumSize = minimumSize;
    const bool ok       = commands.CompileText("source.json", text, options, pFile);
    if (pMessages != nullptr)
    {
        *pMessages = err.str();
    }
    return ok;
}

inline UINT64 Field(const std::vector<UINT8>& bytes, size_t offset, size_t size)
{
    UINT64 value = 0;
    for (size_t i = 0; i < size; i++)
    {
        value |= static_cast<UINT64>(bytes.at(offset + i)) << (8 * i);
    }
    return value;
}

inline UINT32 U32(const std::vector<UINT8>& bytes, size_t offset)
{
    return static_cast<UINT32>(Field(bytes, offset, 4));
}

inline std::string Text(const std::vector<UINT8>& bytes, size_t offset, size_t size)
{
    std::string text;
    for (size_t i = 0; i < size && bytes.at(offset + i) != 0; i++)
    {
        text += static_cast<char>(bytes[offset + i]);
    }
    return text;
}

inline bool AllZero(const std::vector<UINT8>& bytes, size_t offset, size_t size)
{
    for (size_t i = 0; i < size; i++)
    {
        if (bytes.at(offset + i) != 0)
        {
            return false;
        }
    }
    return true;
}

// Offset and size of the first section of a type, found through the header; false if there is none.
inline bool FindSection(const std::vector<UINT8>& bytes, UINT32 headerSize, UINT32 alignment, UINT32 type,
                        UINT32* pOffset, UINT32* pSize)
{
    const UINT32 width = (alignment > 4) ? alignment : 4;
    const UINT32 count = U32(bytes, headerSize - 4);
    for (UINT32 i = 0; i < count; i++)
    {
        const size_t at = headerSize + i * 3 * width;
        if (U32(bytes, at) == type)
        {
            *pOffset = U32(bytes, at + width);
            *pSize   = U32(bytes, at + 2 * width);
            return true;
        }
    }
    return false;
}

// Little-endian bytes of values, for expected byte strings.
inline void Put(std::vector<UINT8>* pBytes, UINT64 value, size_t size)
{
    for (size_t i = 0; i < size; i++)
    {
        pBytes->push_back((i < 8) ? static_cast<UINT8>(value >> (8 * i)) : 0);
    }
}

} // namespace AecTuneTest

#endif // AECTUNE_TESTS_TUNETESTHELPERS_H
