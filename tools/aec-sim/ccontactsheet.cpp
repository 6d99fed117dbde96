// Thumbnails of raw frames (2x2-block demosaic, black and white level, sRGB tone curve, box downsampling) and the
// contact sheet that shows them with their labels.
#include "ccontactsheet.h"

#include <algorithm>
#include <cmath>

#include "simrender.h"

namespace
{
constexpr SimColor kSheetBackground{40, 40, 40};
constexpr SimColor kLabel{235, 235, 235};
constexpr int      kLabelGap   = 4;
constexpr uint32_t kLabelLines = 2;
} // namespace

uint8_t CContactSheet::Encode(double linear)
{
    const double clipped = std::clamp(linear, 0.0, 1.0);
    const double encoded =
        (clipped <= 0.0031308) ? 12.92 * clipped : 1.055 * std::pow(clipped, 1.0 / 2.4) - 0.055;
    return static_cast<uint8_t>(std::lround(encoded * 255.0));
}

SimThumbnail CContactSheet::MakeThumbnail(const SimRawFrame& frame, uint32_t frameNumber, uint32_t maxWidth,
                                          const std::string& label)
{
    SimThumbnail thumbnail;
    thumbnail.frame = frameNumber;
    thumbnail.label = label;

    // One RGGB block makes one pixel: no interpolation is needed for a picture this small.
    const uint32_t blocksWide = frame.width / 2;
    const uint32_t blocksHigh = frame.height / 2;
    if ((blocksWide == 0) || (blocksHigh == 0) || (maxWidth == 0) || (frame.bitDepth == 0) ||
        (frame.bitDepth > 16) || (frame.bayer.size() < static_cast<size_t>(frame.width) * frame.height))
    {
        return thumbnail;
    }
    // The frame's own white level: the largest code less the black level the sensor adds.
    const double white = static_cast<double>((1U << frame.bitDepth) - 1U) - static_cast<double>(frame.blackLevel);
    if (white <= 0.0)
    {
        return thumbnail;
    }

    thumbnail.width  = std::min(blocksWide, maxWidth);
    thumbnail.height = std::max<uint32_t>(
        1U, static_cast<uint32_t>(std::lround(static_cast<double>(blocksHigh) * thumbnail.width / blocksWide)));
    thumbnail.rgb.resize(static_cast<size_t>(thumbnail.width) * thumbnail.height * 3);

    const auto sample = [&](uint32_t x, uint32_t y) {
        const double code = frame.bayer[static_cast<size_t>(y) * frame.width + x];
        return std::max(0.0, code - frame.blackLevel);
    };
    for (uint32_t row = 0; row < thumbnail.height; ++row)
    {
        // Each output pixel averages the blocks it covers (in linear light, before the tone curve).
        const uint32_t blockTop    = row * blocksHigh / thumbnail.height;
        const uint32_t blockBottom = std::max(blockTop + 1, (row + 1) * blocksHigh / thumbnail.height);
        for (uint32_t column = 0; column < thumbnail.width; ++column)
        {
            const uint32_t blockLeft  = column * blocksWide / thumbnail.width;
            const uint32_t blockRight = std::max(blockLeft + 1, (column + 1) * blocksWide / thumbnail.width);
            double         red        = 0.0;
            double         green      = 0.0;
            double         blue       = 0.0;
            for (uint32_t blockY = blockTop; blockY < blockBottom; ++blockY)
            {
                for (uint32_t blockX = blockLeft; blockX < blockRight; ++blockX)
                {
                    const uint32_t x = blockX * 2;
                    const uint32_t y = blockY * 2;
                    red += sample(x, y);
                    green += 0.5 * (sample(x + 1, y) + sample(x, y + 1));
                    blue += sample(x + 1, y + 1);
                }
            }
            const double   scale  = white * (blockBottom - blockTop) * (blockRight - blockLeft);
            uint8_t*       pPixel = &thumbnail.rgb[(static_cast<size_t>(row) * thumbnail.width + column) * 3];
            pPixel[0]             = Encode(red / scale);
            pPixel[1]             = Encode(green / scale);
            pPixel[2]             = Encode(blue / scale);
        }
    }
    return thumbnail;
}

SimColor CContactSheet::Background()
{
    return kSheetBackground;
}

int CContactSheet::LineHeight()
{
    return CSimCanvas::TextHeight() + 3;
}

int CContactSheet::LabelHeight()
{
    return kLabelGap + static_cast<int>(kLabelLines) * LineHeight();
}

bool CContactSheet::Write(const std::string& path, const std::vector<SimThumbnail>& thumbnails, std::string* pError)
{
    if (thumbnails.empty())
    {
        if (pError != nullptr)
        {
            *pError = path + ": no frames for the contact sheet";
        }
        return false;
    }

    // All cells share the size of the largest thumbnail, so the grid stays regular when sizes differ.
    int cellWidth  = 1;
    int cellHeight = 1;
    for (const SimThumbnail& thumbnail : thumbnails)
    {
        if (thumbnail.rgb.size() != static_cast<size_t>(thumbnail.width) * thumbnail.height * 3)
        {
            if (pError != nullptr)
            {
                *pError = path + ": thumbnail of frame " + std::to_string(thumbnail.frame) +
                          " has a pixel buffer that does not match its size";
            }
            return false;
        }
        cellWidth  = std::max(cellWidth, static_cast<int>(thumbnail.width));
        cellHeight = std::max(cellHeight, static_cast<int>(thumbnail.height));
    }
    // Labels of thumbnails narrower than a few words still need room.
    cellWidth                = std::max(cellWidth, CSimCanvas::TextWidth("frame 00000"));
    const int pitchX         = cellWidth + kPadding;
    const int pitchY         = cellHeight + LabelHeight() + kPadding;
    const int count          = static_cast<int>(thumbnails.size());
    const int fittingColumns = std::max(1, (static_cast<int>(kMaxSheetWidth) - kPadding) / pitchX);
    const int columns        = std::min(count, fittingColumns);
    const int rows           = (count + columns - 1) / columns;

    CSimCanvas canvas(static_cast<uint32_t>(kPadding + columns * pitchX),
                      static_cast<uint32_t>(kPadding + rows * pitchY), kSheetBackground);
    for (int index = 0; index < count; ++index)
    {
        const SimThumbnail& thumbnail = thumbnails[static_cast<size_t>(index)];
        const int           left      = kPadding + (index % columns) * pitchX;
        const int           top       = kPadding + (index / columns) * pitchY;
        canvas.Blit(left, top, thumbnail.width, thumbnail.height, thumbnail.rgb);
        const std::string label =
            thumbnail.label.empty() ? "frame " + std::to_string(thumbnail.frame) : thumbnail.label;
        int lineTop = top + cellHeight + kLabelGap;
        for (const std::string& line : CSimCanvas::WrapText(label, cellWidth, kLabelLines))
        {
            canvas.DrawText(left, lineTop, line, kLabel);
            lineTop += LineHeight();
        }
    }
    return canvas.WritePng(path, pError);
}

SimThumbnail MakeThumbnail(const SimRawFrame& frame, uint32_t frameNumber, uint32_t maxWidth, const std::string& label)
{
    return CContactSheet::MakeThumbnail(frame, frameNumber, maxWidth, label);
}

bool WriteContactSheetPng(const std::string& path, const std::vector<SimThumbnail>& thumbnails, std::string* pError)
{
    return CContactSheet::Write(path, thumbnails, pError);
}
