// Drawing on the simulator's RGB canvas: clipped pixels, Bresenham lines with dashes, bitmap-font text.
#include "csimcanvas.h"

#include <cstdlib>

#include "cbitmapfont.h"
#include "cpngwriter.h"

CSimCanvas::CSimCanvas(uint32_t width, uint32_t height, SimColor background)
    : m_width(width), m_height(height), m_rgb(static_cast<size_t>(width) * height * 3)
{
    FillRect(0, 0, static_cast<int>(width), static_cast<int>(height), background);
}

void CSimCanvas::SetPixel(int x, int y, SimColor color)
{
    if ((x < 0) || (y < 0) || (x >= static_cast<int>(m_width)) || (y >= static_cast<int>(m_height)))
    {
        return;
    }
    uint8_t* pPixel = &m_rgb[(static_cast<size_t>(y) * m_width + static_cast<size_t>(x)) * 3];
    pPixel[0]       = color.r;
    pPixel[1]       = color.g;
    pPixel[2]       = color.b;
}

void CSimCanvas::FillRect(int x, int y, int width, int height, SimColor color)
{
    for (int row = y; row < y + height; ++row)
    {
        for (int column = x; column < x + width; ++column)
        {
            SetPixel(column, row, color);
        }
    }
}

void CSimCanvas::DrawPolyline(const std::vector<std::pair<int, int>>& points, SimColor color, uint32_t dash,
                              uint32_t thickness)
{
    const int pen    = static_cast<int>(thickness == 0 ? 1 : thickness);
    const int offset = (pen - 1) / 2;
    uint32_t  step   = 0; // pixels walked along the whole polyline, for the dash phase
    if (points.size() == 1)
    {
        // A lone sample between gaps still shows as a dot.
        FillRect(points[0].first - offset, points[0].second - offset, pen, pen, color);
    }
    for (size_t index = 1; index < points.size(); ++index)
    {
        int       x  = points[index - 1].first;
        int       y  = points[index - 1].second;
        const int x1 = points[index].first;
        const int y1 = points[index].second;
        const int dx = std::abs(x1 - x);
        const int dy = -std::abs(y1 - y);
        const int sx = (x < x1) ? 1 : -1;
        const int sy = (y < y1) ? 1 : -1;
        int       error = dx + dy;
        while (true)
        {
            // The last point of a segment is the first of the next one: draw it only once.
            const bool last = (x == x1) && (y == y1);
            if (last && (index + 1 < points.size()))
            {
                break;
            }
            if ((dash == 0) || (((step / dash) % 2) == 0))
            {
                FillRect(x - offset, y - offset, pen, pen, color);
            }
            ++step;
            if (last)
            {
                break;
            }
            const int doubled = 2 * error;
            if (doubled >= dy)
            {
                error += dy;
                x += sx;
            }
            if (doubled <= dx)
            {
                error += dx;
                y += sy;
            }
        }
    }
}

void CSimCanvas::DrawLine(int x0, int y0, int x1, int y1, SimColor color, uint32_t dash)
{
    DrawPolyline({{x0, y0}, {x1, y1}}, color, dash, 1);
}

void CSimCanvas::DrawText(int x, int y, const std::string& text, SimColor color, uint32_t scale)
{
    const int size = static_cast<int>(scale);
    for (const char character : text)
    {
        const uint8_t* pRows = CBitmapFont::Glyph(character);
        for (uint32_t row = 0; row < CBitmapFont::kGlyphHeight; ++row)
        {
            for (uint32_t column = 0; column < CBitmapFont::kGlyphWidth; ++column)
            {
                if ((pRows[row] & (0x10U >> column)) != 0)
                {
                    FillRect(x + static_cast<int>(column) * size, y + static_cast<int>(row) * size, size, size,
                             color);
                }
            }
        }
        x += static_cast<int>(CBitmapFont::kAdvance) * size;
    }
}

void CSimCanvas::Blit(int x, int y, uint32_t width, uint32_t height, const std::vector<uint8_t>& rgb)
{
    if (rgb.size() < static_cast<size_t>(width) * height * 3)
    {
        return;
    }
    for (uint32_t row = 0; row < height; ++row)
    {
        for (uint32_t column = 0; column < width; ++column)
        {
            const uint8_t* pPixel = &rgb[(static_cast<size_t>(row) * width + column) * 3];
            SetPixel(x + static_cast<int>(column), y + static_cast<int>(row), {pPixel[0], pPixel[1], pPixel[2]});
        }
    }
}

bool CSimCanvas::WritePng(const std::string& path, std::string* pError) const
{
    return CPngWriter::WriteRgb8(path, m_width, m_height, m_rgb, pError);
}

int CSimCanvas::TextWidth(const std::string& text, uint32_t scale)
{
    if (text.empty())
    {
        return 0;
    }
    // No trailing blank column after the last glyph.
    return static_cast<int>((text.size() * CBitmapFont::kAdvance - 1) * scale);
}

int CSimCanvas::TextHeight(uint32_t scale)
{
    return static_cast<int>(CBitmapFont::kGlyphHeight * scale);
}

std::string CSimCanvas::FitText(const std::string& text, int maxWidth, uint32_t scale)
{
    if (TextWidth(text, scale) <= maxWidth)
    {
        return text;
    }
    std::string cut = text;
    while (!cut.empty() && (TextWidth(cut + "..", scale) > maxWidth))
    {
        cut.pop_back();
    }
    return cut.empty() ? std::string() : cut + "..";
}

std::vector<std::string> CSimCanvas::WrapText(const std::string& text, int maxWidth, uint32_t maxLines,
                                              uint32_t scale)
{
    std::vector<std::string> lines;
    std::string              rest = text;
    while (!rest.empty() && (lines.size() + 1 < maxLines) && (TextWidth(rest, scale) > maxWidth))
    {
        // The last space that keeps the line within the width; a word longer than a line is cut instead.
        size_t split = rest.rfind(' ');
        while ((split != std::string::npos) && (split > 0) && (TextWidth(rest.substr(0, split), scale) > maxWidth))
        {
            split = rest.rfind(' ', split - 1);
        }
        if ((split == std::string::npos) || (split == 0))
        {
            break;
        }
        lines.push_back(rest.substr(0, split));
        rest = rest.substr(split + 1);
    }
    if (!rest.empty() && (maxLines > 0))
    {
        lines.push_back(FitText(rest, maxWidth, scale));
    }
    return lines;
}
