// Reader of Radiance RGBE (.hdr) pictures: flat, old run-length and new per-component run-length scanlines.
#include "rgbefile.h"

#include <array>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <fstream>
#include <iterator>
#include <string>
#include <utility>
#include <vector>

namespace
{

using Rgbe = std::array<uint8_t, 4>;

// The bytes of a file and a read position; every read is checked against the end.
class ByteReader
{
public:
    explicit ByteReader(std::vector<uint8_t> bytes) : m_bytes(std::move(bytes)), m_pos(0) {}

    bool AtEnd() const { return m_pos >= m_bytes.size(); }
    bool Read(uint8_t* pByte)
    {
        if (AtEnd())
        {
            return false;
        }
        *pByte = m_bytes[m_pos++];
        return true;
    }
    bool ReadPixel(Rgbe* pPixel)
    {
        for (uint8_t& rByte : *pPixel)
        {
            if (!Read(&rByte))
            {
                return false;
            }
        }
        return true;
    }
    // A header line without its newline; false at the end of the file.
    bool ReadLine(std::string* pLine)
    {
        pLine->clear();
        uint8_t byte = 0;
        while (Read(&byte))
        {
            if ('\n' == byte)
            {
                return true;
            }
            pLine->push_back(static_cast<char>(byte));
        }
        return false;
    }
    void Unread(size_t count) { m_pos -= count; }

private:
    std::vector<uint8_t> m_bytes;
    size_t               m_pos;
};

// New-style scanline: a 2, 2, width marker, then each of the four components run-length coded on its own.
bool ReadComponentRuns(ByteReader* pReader, uint32_t width, std::vector<Rgbe>* pLine)
{
    for (uint32_t component = 0; component < 4; component++)
    {
        uint32_t x = 0;
        while (x < width)
        {
            uint8_t count = 0;
            if (!pReader->Read(&count) || (0 == count))
            {
                return false;
            }
            const bool     run    = count > 128;
            const uint32_t length = run ? count - 128U : count;
            if (x + length > width)
            {
                return false;
            }
            uint8_t value = 0;
            if (run && !pReader->Read(&value))
            {
                return false;
            }
            for (uint32_t i = 0; i < length; i++)
            {
                if (!run && !pReader->Read(&value))
                {
                    return false;
                }
                (*pLine)[x++][component] = value;
            }
        }
    }
    return true;
}

// Flat pixels, where a 1, 1, 1, n pixel repeats the previous one n times (shifted by 8 bits per repeated marker).
bool ReadFlatOrOldRuns(ByteReader* pReader, uint32_t width, std::vector<Rgbe>* pLine)
{
    uint32_t x     = 0;
    uint32_t shift = 0;
    while (x < width)
    {
        Rgbe pixel = {};
        if (!pReader->ReadPixel(&pixel))
        {
            return false;
        }
        if ((1 == pixel[0]) && (1 == pixel[1]) && (1 == pixel[2]))
        {
            const uint64_t repeat = static_cast<uint64_t>(pixel[3]) << shift;
            if ((0 == x) || (x + repeat > width))
            {
                return false;
            }
            for (uint64_t i = 0; i < repeat; i++, x++)
            {
                (*pLine)[x] = (*pLine)[x - 1];
            }
            shift += 8;
            continue;
        }
        (*pLine)[x++] = pixel;
        shift         = 0;
    }
    return true;
}

bool ReadScanline(ByteReader* pReader, uint32_t width, std::vector<Rgbe>* pLine)
{
    Rgbe marker = {};
    if (!pReader->ReadPixel(&marker))
    {
        return false;
    }
    const bool componentRuns = (width >= 8) && (width < 0x8000) && (2 == marker[0]) && (2 == marker[1]) &&
                               (0 == (marker[2] & 0x80));
    if (componentRuns)
    {
        if (((static_cast<uint32_t>(marker[2]) << 8) | marker[3]) != width)
        {
            return false;
        }
        return ReadComponentRuns(pReader, width, pLine);
    }
    pReader->Unread(4);
    return ReadFlatOrOldRuns(pReader, width, pLine);
}

// The shared exponent scales the mantissas; the centre of each mantissa step stands for its value.
void ToLinear(const Rgbe& pixel, float* pRgb)
{
    if (0 == pixel[3])
    {
        pRgb[0] = pRgb[1] = pRgb[2] = 0.0F;
        return;
    }
    const float scale = std::ldexp(1.0F, static_cast<int>(pixel[3]) - (128 + 8));
    for (int c = 0; c < 3; c++)
    {
        pRgb[c] = (static_cast<float>(pixel[c]) + 0.5F) * scale;
    }
}

} // namespace

bool ReadRgbeFile(const std::string& path, SimImage* pOut, std::string* pError)
{
    std::ifstream file(path, std::ios::binary);
    if (!file)
    {
        *pError = path + ": cannot open";
        return false;
    }
    std::vector<uint8_t> bytes{std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
    ByteReader           reader(std::move(bytes));
    std::string line;
    if (!reader.ReadLine(&line) || (0 != line.rfind("#?", 0)))
    {
        *pError = path + ": not a Radiance picture";
        return false;
    }
    // Header lines up to an empty one; only the pixel format matters here.
    while (reader.ReadLine(&line) && !line.empty())
    {
        if ((0 == line.rfind("FORMAT=", 0)) && ("FORMAT=32-bit_rle_rgbe" != line))
        {
            *pError = path + ": unsupported pixel format " + line.substr(7);
            return false;
        }
    }
    unsigned int height = 0;
    unsigned int width  = 0;
    char         rest   = 0;
    if (!reader.ReadLine(&line) || (2 != std::sscanf(line.c_str(), "-Y %u +X %u%c", &height, &width, &rest)) ||
        (0 == width) || (0 == height) || (width > 65536) || (height > 65536))
    {
        *pError = path + ": unsupported resolution line '" + line + "' (only -Y height +X width)";
        return false;
    }
    pOut->width  = width;
    pOut->height = height;
    pOut->rgb.assign(static_cast<size_t>(width) * height * 3U, 0.0F);
    std::vector<Rgbe> scanline(width);
    for (uint32_t y = 0; y < height; y++)
    {
        if (!ReadScanline(&reader, width, &scanline))
        {
            *pError = path + ": scanline " + std::to_string(y) + " is damaged or cut short";
            return false;
        }
        for (uint32_t x = 0; x < width; x++)
        {
            ToLinear(scanline[x], &pOut->rgb[(static_cast<size_t>(y) * width + x) * 3U]);
        }
    }
    return true;
}
