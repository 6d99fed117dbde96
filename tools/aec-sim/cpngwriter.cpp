// PNG output through libpng's simplified write interface, which reports errors without longjmp.
#include "cpngwriter.h"

#include <png.h>

#include <cstring>

namespace
{
bool Fail(std::string* pError, const std::string& message)
{
    if (pError != nullptr)
    {
        *pError = message;
    }
    return false;
}
} // namespace

bool CPngWriter::WriteRgb8(const std::string& path, uint32_t width, uint32_t height, const std::vector<uint8_t>& rgb,
                           std::string* pError)
{
    if ((width == 0) || (height == 0))
    {
        return Fail(pError, path + ": empty picture");
    }
    if (rgb.size() != static_cast<size_t>(width) * height * 3)
    {
        return Fail(pError, path + ": pixel buffer does not match " + std::to_string(width) + "x" +
                                std::to_string(height));
    }

    png_image image;
    std::memset(&image, 0, sizeof(image));
    image.version = PNG_IMAGE_VERSION;
    image.width   = width;
    image.height  = height;
    image.format  = PNG_FORMAT_RGB;
    if (png_image_write_to_file(&image, path.c_str(), 0, rgb.data(), 0, nullptr) == 0)
    {
        const std::string message = path + ": " + image.message;
        png_image_free(&image);
        return Fail(pError, message);
    }
    return true;
}
