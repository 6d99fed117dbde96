// The built-in scenes (grey card, gradient, backlit subject, window, night street, fluorescent office), the scene
// factory and the luminance helpers all scenes share.
#include "csimscenes.h"

#include <cmath>
#include <functional>
#include <map>

#include "cproceduralscene.h"
#include "cradiancemap.h"

namespace
{

// A linear colour; the painters work in relative light and the scene is scaled to its luminance afterwards.
struct Rgb
{
    float r;
    float g;
    float b;

    Rgb operator*(float k) const { return {r * k, g * k, b * k}; }
};

// Paints on an image in coordinates that are fractions of its width and height.
class Canvas
{
public:
    Canvas(uint32_t width, uint32_t height) : m_image()
    {
        m_image.width  = width;
        m_image.height = height;
        m_image.rgb.assign(static_cast<size_t>(width) * height * 3U, 0.0F);
    }

    void Fill(const Rgb& colour) { Rect(0.0F, 0.0F, 1.0F, 1.0F, colour); }

    void Rect(float left, float top, float right, float bottom, const Rgb& colour)
    {
        Paint([=](float x, float y) { return (x >= left) && (x < right) && (y >= top) && (y < bottom); }, colour);
    }

    void Ellipse(float cx, float cy, float rx, float ry, const Rgb& colour)
    {
        Paint(
            [=](float x, float y) {
                const float dx = (x - cx) / rx;
                const float dy = (y - cy) / ry;
                return dx * dx + dy * dy <= 1.0F;
            },
            colour);
    }

    // Colour per pixel from a function of the pixel centre.
    void Shade(const std::function<Rgb(float, float)>& shader)
    {
        ForEachPixel([&](float x, float y, float* pRgb) {
            const Rgb colour = shader(x, y);
            pRgb[0]          = colour.r;
            pRgb[1]          = colour.g;
            pRgb[2]          = colour.b;
        });
    }

    SimImage Take() { return std::move(m_image); }

private:
    void Paint(const std::function<bool(float, float)>& inside, const Rgb& colour)
    {
        ForEachPixel([&](float x, float y, float* pRgb) {
            if (inside(x, y))
            {
                pRgb[0] = colour.r;
                pRgb[1] = colour.g;
                pRgb[2] = colour.b;
            }
        });
    }

    void ForEachPixel(const std::function<void(float, float, float*)>& visit)
    {
        for (uint32_t y = 0; y < m_image.height; y++)
        {
            const float fy = (static_cast<float>(y) + 0.5F) / static_cast<float>(m_image.height);
            for (uint32_t x = 0; x < m_image.width; x++)
            {
                const float fx = (static_cast<float>(x) + 0.5F) / static_cast<float>(m_image.width);
                visit(fx, fy, &m_image.rgb[(static_cast<size_t>(y) * m_image.width + x) * 3U]);
            }
        }
    }

    SimImage m_image;
};

// What a painter hands back besides the picture.
struct Painting
{
    SimImage             image;
    std::vector<SimRect> faces;
    float                flickerDepth   = LampFlickerDepth;
    uint32_t             defaultMainsHz = 0; // flicker even when the scenario names no mains
};

using Painter = std::function<Painting(uint32_t, uint32_t)>;

const Rgb Neutral  = {1.0F, 1.0F, 1.0F};
const Rgb Sky      = {0.85F, 1.0F, 1.25F};
const Rgb Skin     = {0.9F, 0.65F, 0.5F};
const Rgb Wall     = {0.65F, 0.6F, 0.55F};
const Rgb Wood     = {0.55F, 0.4F, 0.28F};
const Rgb Sodium   = {1.0F, 0.7F, 0.3F};
const Rgb Tube     = {0.95F, 1.0F, 1.0F};

// A grey card filling the frame.
Painting PaintGrey(uint32_t width, uint32_t height)
{
    Canvas canvas(width, height);
    canvas.Fill(Neutral);
    return {canvas.Take(), {}};
}

// A neutral ramp over eight stops from left to right, which spreads the histogram evenly in EV.
Painting PaintGradient(uint32_t width, uint32_t height)
{
    Canvas canvas(width, height);
    canvas.Shade([](float x, float) { return Neutral * std::exp2(8.0F * x - 4.0F); });
    return {canvas.Take(), {}};
}

// A person against a bright sky: the face is four stops below the sky.
Painting PaintBacklit(uint32_t width, uint32_t height)
{
    const float headX = 0.5F;
    const float headY = 0.42F;
    const float headW = 0.09F;
    const float headH = 0.13F;
    Canvas      canvas(width, height);
    canvas.Fill(Sky * 8.0F);
    canvas.Rect(0.0F, 0.7F, 1.0F, 1.0F, Wood * 3.0F);
    canvas.Rect(0.33F, 0.56F, 0.67F, 1.0F, Wood * 0.35F);
    canvas.Ellipse(headX, headY, headW, headH, Skin * 0.6F);
    return {canvas.Take(), {SimRect{headX - headW, headY - headH, 2.0F * headW, 2.0F * headH}}};
}

// A dim room with a window onto daylight six stops brighter than its walls.
Painting PaintWindow(uint32_t width, uint32_t height)
{
    Canvas canvas(width, height);
    canvas.Fill(Wall * 0.1F);
    canvas.Rect(0.0F, 0.75F, 1.0F, 1.0F, Wood * 0.08F);
    canvas.Rect(0.55F, 0.15F, 0.85F, 0.55F, Sky * 6.0F);
    // Window bars and the patch of daylight on the floor.
    canvas.Rect(0.695F, 0.15F, 0.705F, 0.55F, Wall * 0.05F);
    canvas.Rect(0.55F, 0.345F, 0.85F, 0.355F, Wall * 0.05F);
    canvas.Rect(0.5F, 0.8F, 0.9F, 0.95F, Wood * 1.2F);
    return {canvas.Take(), {}};
}

// A street at night: a dark scene with a few sodium lamps, their pools of light and some lit windows.
Painting PaintNight(uint32_t width, uint32_t height)
{
    Canvas canvas(width, height);
    canvas.Fill(Rgb{0.3F, 0.35F, 0.5F} * 0.01F);
    canvas.Rect(0.0F, 0.65F, 1.0F, 1.0F, Neutral * 0.02F);
    const float lampX[3] = {0.15F, 0.5F, 0.85F};
    for (float x : lampX)
    {
        canvas.Ellipse(x, 0.85F, 0.12F, 0.06F, Sodium * 0.4F);
        canvas.Rect(x - 0.003F, 0.25F, x + 0.003F, 0.85F, Neutral * 0.015F);
        canvas.Ellipse(x, 0.24F, 0.015F, 0.02F, Sodium * 60.0F);
    }
    for (int i = 0; i < 6; i++)
    {
        const float left = 0.05F + 0.16F * static_cast<float>(i);
        canvas.Rect(left, 0.4F, left + 0.05F, 0.48F, Sodium * 0.6F);
    }
    return {canvas.Take(), {}};
}

// An office under fluorescent tubes; its light flickers at twice the mains frequency.
Painting PaintFluorescent(uint32_t width, uint32_t height)
{
    Canvas canvas(width, height);
    canvas.Fill(Wall * 0.5F);
    canvas.Rect(0.0F, 0.0F, 1.0F, 0.2F, Wall * 0.3F);
    canvas.Rect(0.15F, 0.05F, 0.4F, 0.09F, Tube * 6.0F);
    canvas.Rect(0.6F, 0.05F, 0.85F, 0.09F, Tube * 6.0F);
    canvas.Rect(0.1F, 0.7F, 0.9F, 1.0F, Wood * 0.4F);
    Painting painting{canvas.Take(), {}};
    painting.flickerDepth   = FluorescentFlickerDepth;
    painting.defaultMainsHz = 50;
    return painting;
}

const std::map<std::string, Painter>& Painters()
{
    static const std::map<std::string, Painter> painters = {
        {"grey", PaintGrey},     {"gradient", PaintGradient}, {"backlit", PaintBacklit},
        {"window", PaintWindow}, {"night", PaintNight},       {"fluorescent", PaintFluorescent},
    };
    return painters;
}

// The first reason a scene spec is unusable, "" when it is fine.
std::string CheckSpec(const SimSceneSpec& spec, uint32_t width, uint32_t height)
{
    if ((0 == width) || (0 == height))
    {
        return "the simulation resolution is empty";
    }
    if (!std::isfinite(spec.luminance) || !(spec.luminance > 0.0F))
    {
        return "scene luminance must be a positive number of cd/m2";
    }
    if ((0 != spec.mainsHz) && (50 != spec.mainsHz) && (60 != spec.mainsHz))
    {
        return "mains frequency must be 0, 50 or 60 Hz";
    }
    if (!(spec.fieldOfView > 0.0F) || !(spec.fieldOfView <= 1.0F))
    {
        return "field of view must lie in (0, 1]";
    }
    if (!(spec.panStart >= 0.0F) || !(spec.panStart <= 1.0F) || !(spec.panEnd >= 0.0F) || !(spec.panEnd <= 1.0F))
    {
        return "pan positions must lie in [0, 1]";
    }
    return "";
}

} // namespace

float PixelLuminance(const float* pRgb)
{
    return 0.2126F * pRgb[0] + 0.7152F * pRgb[1] + 0.0722F * pRgb[2];
}

double MeanLuminance(const SimImage& image, uint32_t firstRow, uint32_t endRow)
{
    const uint32_t last = ((0 == endRow) || (endRow > image.height)) ? image.height : endRow;
    double         sum  = 0.0;
    for (uint32_t y = firstRow; y < last; y++)
    {
        for (uint32_t x = 0; x < image.width; x++)
        {
            sum += PixelLuminance(&image.rgb[(static_cast<size_t>(y) * image.width + x) * 3U]);
        }
    }
    const double pixels = static_cast<double>(last > firstRow ? last - firstRow : 0U) * image.width;
    return (pixels > 0.0) ? sum / pixels : 0.0;
}

void ScaleImage(SimImage* pImage, double factor)
{
    const float k = static_cast<float>(factor);
    for (float& rValue : pImage->rgb)
    {
        rValue *= k;
    }
}

std::unique_ptr<ISimScene> CreateScene(const SimSceneSpec& spec, uint32_t width, uint32_t height, std::string* pError)
{
    const std::string problem = CheckSpec(spec, width, height);
    if (!problem.empty())
    {
        *pError = "scene '" + spec.type + "': " + problem;
        return nullptr;
    }
    if ("hdr" == spec.type)
    {
        return CRadianceMap::Create(spec, width, height, pError);
    }
    const auto painter = Painters().find(spec.type);
    if (Painters().end() == painter)
    {
        *pError = "unknown scene type '" + spec.type +
                  "' (grey, gradient, backlit, window, night, fluorescent or hdr)";
        return nullptr;
    }
    Painting painting = painter->second(width, height);
    ScaleImage(&painting.image, spec.luminance / MeanLuminance(painting.image));
    const uint32_t mainsHz = (0 != spec.mainsHz) ? spec.mainsHz : painting.defaultMainsHz;
    const SimFlicker flicker = {mainsHz, (0 != mainsHz) ? painting.flickerDepth : 0.0F};
    return std::make_unique<CProceduralScene>(spec.type, std::move(painting.image), flicker,
                                              std::move(painting.faces));
}
