// An 8-bit RGB drawing surface for the simulator's pictures: rectangles, lines, text and pasted images.
#ifndef AECORE_TOOLS_AECSIM_CSIMCANVAS_H
#define AECORE_TOOLS_AECSIM_CSIMCANVAS_H

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

struct SimColor
{
    uint8_t r;
    uint8_t g;
    uint8_t b;
};

// Everything drawn is clipped to the canvas, so callers may draw partly outside it.
class CSimCanvas
{
public:
    CSimCanvas(uint32_t width, uint32_t height, SimColor background);

    uint32_t                    Width() const { return m_width; }
    uint32_t                    Height() const { return m_height; }
    const std::vector<uint8_t>& Rgb() const { return m_rgb; }

    void FillRect(int x, int y, int width, int height, SimColor color);
    // dash: length in pixels of the drawn and the skipped pieces, 0 for a solid line; the dash pattern runs on
    // across the points so that a curve of short segments still looks dashed. thickness: square pen size.
    void DrawPolyline(const std::vector<std::pair<int, int>>& points, SimColor color, uint32_t dash,
                      uint32_t thickness);
    void DrawLine(int x0, int y0, int x1, int y1, SimColor color, uint32_t dash = 0);
    // (x, y): top left of the first glyph; scale enlarges each font pixel to scale x scale.
    void DrawText(int x, int y, const std::string& text, SimColor color, uint32_t scale = 1);
    // Pastes a packed RGB8 picture with its top left at (x, y).
    void Blit(int x, int y, uint32_t width, uint32_t height, const std::vector<uint8_t>& rgb);

    bool WritePng(const std::string& path, std::string* pError) const;

    static int TextWidth(const std::string& text, uint32_t scale = 1);
    static int TextHeight(uint32_t scale = 1);
    // The longest prefix of text that fits in maxWidth pixels, ending in ".." when cut.
    static std::string FitText(const std::string& text, int maxWidth, uint32_t scale = 1);
    // Breaks text at spaces into at most maxLines lines of maxWidth pixels; the last line is cut with FitText.
    static std::vector<std::string> WrapText(const std::string& text, int maxWidth, uint32_t maxLines,
                                             uint32_t scale = 1);

private:
    void SetPixel(int x, int y, SimColor color);

    uint32_t             m_width;
    uint32_t             m_height;
    std::vector<uint8_t> m_rgb;
};

#endif // AECORE_TOOLS_AECSIM_CSIMCANVAS_H
