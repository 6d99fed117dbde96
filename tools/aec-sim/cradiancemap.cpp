// A scene from a high-dynamic-range panorama (OpenEXR or Radiance), viewed through a window that pans across it,
// and the loader of such pictures.
#include "cradiancemap.h"

#include <algorithm>
#include <cmath>
#include <exception>
#include <fstream>
#include <utility>

#include <ImfArray.h>
#include <ImfRgbaFile.h>

#include "csimscenes.h"
#include "rgbefile.h"

namespace
{

// At most this many samples per axis average one rendered pixel when the view shrinks the panorama.
constexpr uint32_t MaxSamplesPerAxis = 8;

bool ReadExrFile(const std::string& path, SimImage* pOut, std::string* pError)
{
    // The OpenEXR library reports by exception; they end here.
    try
    {
        Imf::RgbaInputFile   file(path.c_str());
        const Imath::Box2i   window = file.dataWindow();
        const long           width  = static_cast<long>(window.max.x) - window.min.x + 1;
        const long           height = static_cast<long>(window.max.y) - window.min.y + 1;
        Imf::Array2D<Imf::Rgba> pixels(height, width);
        file.setFrameBuffer(&pixels[0][0] - window.min.x - window.min.y * width, 1, static_cast<size_t>(width));
        file.readPixels(window.min.y, window.max.y);
        pOut->width  = static_cast<uint32_t>(width);
        pOut->height = static_cast<uint32_t>(height);
        pOut->rgb.resize(static_cast<size_t>(width) * height * 3U);
        float* pRgb = pOut->rgb.data();
        for (long y = 0; y < height; y++)
        {
            for (long x = 0; x < width; x++)
            {
                // Negative values of a filtered map carry no light.
                *pRgb++ = std::max(0.0F, static_cast<float>(pixels[y][x].r));
                *pRgb++ = std::max(0.0F, static_cast<float>(pixels[y][x].g));
                *pRgb++ = std::max(0.0F, static_cast<float>(pixels[y][x].b));
            }
        }
        return true;
    }
    catch (const std::exception& rError)
    {
        *pError = path + ": " + rError.what();
        return false;
    }
}

bool StartsWith(const std::string& path, const char* pMagic, size_t length)
{
    std::ifstream file(path, std::ios::binary);
    std::string   head(length, '\0');
    return file.read(&head[0], static_cast<std::streamsize>(length)) && (0 == head.compare(0, length, pMagic, length));
}

} // namespace

bool LoadRadianceMap(const std::string& path, SimImage* pOut, std::string* pError)
{
    if (!std::ifstream(path))
    {
        *pError = path + ": cannot open";
        return false;
    }
    // Told apart by their first bytes, not by the file name.
    if (StartsWith(path, "\x76\x2f\x31\x01", 4))
    {
        return ReadExrFile(path, pOut, pError);
    }
    if (StartsWith(path, "#?", 2))
    {
        return ReadRgbeFile(path, pOut, pError);
    }
    *pError = path + ": neither an OpenEXR nor a Radiance picture";
    return false;
}

std::unique_ptr<CRadianceMap> CRadianceMap::Create(const SimSceneSpec& spec, uint32_t width, uint32_t height,
                                                   std::string* pError)
{
    SimImage map;
    if (!LoadRadianceMap(spec.path, &map, pError))
    {
        return nullptr;
    }
    const SimFlicker flicker = {spec.mainsHz, (0 != spec.mainsHz) ? LampFlickerDepth : 0.0F};
    const std::string name   = spec.path.substr(spec.path.find_last_of('/') + 1);
    std::unique_ptr<CRadianceMap> pScene(new CRadianceMap(name, std::move(map), width, height, spec.fieldOfView,
                                                          flicker));
    // Every view lies in the band of rows around the horizon, so the band's mean is the mean over all pans.
    const uint32_t firstRow = static_cast<uint32_t>(std::floor(pScene->m_viewTop));
    const uint32_t endRow   = static_cast<uint32_t>(std::ceil(pScene->m_viewTop + pScene->m_viewHeight));
    const double   mean     = MeanLuminance(pScene->m_map, firstRow, endRow);
    if (!(mean > 0.0))
    {
        *pError = spec.path + ": the picture is black where the view looks";
        return nullptr;
    }
    ScaleImage(&pScene->m_map, spec.luminance / mean);
    return pScene;
}

CRadianceMap::CRadianceMap(std::string name, SimImage map, uint32_t width, uint32_t height, float fieldOfView,
                           SimFlicker flicker)
    : m_name(std::move(name)), m_map(std::move(map)), m_width(width), m_height(height), m_viewWidth(0.0),
      m_viewHeight(0.0), m_viewTop(0.0), m_flicker(flicker)
{
    // The view keeps the sensor's aspect ratio as long as the panorama is tall enough, centred on the horizon.
    m_viewWidth  = fieldOfView * static_cast<double>(m_map.width);
    m_viewHeight = std::min(static_cast<double>(m_map.height), m_viewWidth * height / width);
    m_viewTop    = 0.5 * (static_cast<double>(m_map.height) - m_viewHeight);
}

void CRadianceMap::Sample(double x, double y, float* pRgb) const
{
    const double   mapWidth = m_map.width;
    const double   px       = x - 0.5;
    const double   py       = std::clamp(y - 0.5, 0.0, static_cast<double>(m_map.height - 1));
    const double   fx       = std::floor(px);
    const double   fy       = std::floor(py);
    const double   ax       = px - fx;
    const double   ay       = py - fy;
    const double   wrapped  = fx - mapWidth * std::floor(fx / mapWidth);
    const uint32_t x0       = static_cast<uint32_t>(wrapped) % m_map.width;
    const uint32_t x1       = (x0 + 1U) % m_map.width;
    const uint32_t y0       = static_cast<uint32_t>(fy);
    const uint32_t y1       = std::min(y0 + 1U, m_map.height - 1U);
    auto at = [this](uint32_t cx, uint32_t cy) { return &m_map.rgb[(static_cast<size_t>(cy) * m_map.width + cx) * 3U]; };
    for (int c = 0; c < 3; c++)
    {
        const double top    = at(x0, y0)[c] * (1.0 - ax) + at(x1, y0)[c] * ax;
        const double bottom = at(x0, y1)[c] * (1.0 - ax) + at(x1, y1)[c] * ax;
        pRgb[c]             = static_cast<float>(top * (1.0 - ay) + bottom * ay);
    }
}

void CRadianceMap::Render(float pan, float brightness, SimImage* pOut)
{
    const double stepX = m_viewWidth / m_width;
    const double stepY = m_viewHeight / m_height;
    // Enough samples per rendered pixel that shrinking the panorama averages it instead of aliasing.
    const uint32_t samplesX = std::clamp(static_cast<uint32_t>(std::ceil(stepX)), 1U, MaxSamplesPerAxis);
    const uint32_t samplesY = std::clamp(static_cast<uint32_t>(std::ceil(stepY)), 1U, MaxSamplesPerAxis);
    const double   left     = std::clamp(static_cast<double>(pan), 0.0, 1.0) * m_map.width - 0.5 * m_viewWidth;
    const float    weight   = brightness / static_cast<float>(samplesX * samplesY);

    pOut->width  = m_width;
    pOut->height = m_height;
    pOut->rgb.assign(static_cast<size_t>(m_width) * m_height * 3U, 0.0F);
    for (uint32_t y = 0; y < m_height; y++)
    {
        for (uint32_t x = 0; x < m_width; x++)
        {
            float* pPixel = &pOut->rgb[(static_cast<size_t>(y) * m_width + x) * 3U];
            for (uint32_t sy = 0; sy < samplesY; sy++)
            {
                const double my = m_viewTop + stepY * (y + (sy + 0.5) / samplesY);
                for (uint32_t sx = 0; sx < samplesX; sx++)
                {
                    float sample[3];
                    Sample(left + stepX * (x + (sx + 0.5) / samplesX), my, sample);
                    for (int c = 0; c < 3; c++)
                    {
                        pPixel[c] += sample[c] * weight;
                    }
                }
            }
        }
    }
}
