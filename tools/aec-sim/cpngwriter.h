// Writes 8-bit RGB pictures as PNG files through libpng.
#ifndef AECORE_TOOLS_AECSIM_CPNGWRITER_H
#define AECORE_TOOLS_AECSIM_CPNGWRITER_H

#include <cstdint>
#include <string>
#include <vector>

class CPngWriter
{
public:
    // rgb: width x height pixels, three bytes each, rows top first without padding.
    static bool WriteRgb8(const std::string& path, uint32_t width, uint32_t height, const std::vector<uint8_t>& rgb,
                          std::string* pError);
};

#endif // AECORE_TOOLS_AECSIM_CPNGWRITER_H
