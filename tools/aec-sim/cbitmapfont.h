// A built-in 5x7 bitmap font for ASCII 32..126, so the simulator's pictures need no font files.
#ifndef AECORE_TOOLS_AECSIM_CBITMAPFONT_H
#define AECORE_TOOLS_AECSIM_CBITMAPFONT_H

#include <cstdint>

class CBitmapFont
{
public:
    static constexpr uint32_t kGlyphWidth  = 5;
    static constexpr uint32_t kGlyphHeight = 7;
    // One blank column between glyphs.
    static constexpr uint32_t kAdvance = kGlyphWidth + 1;

    // kGlyphHeight rows of the glyph, top first; bit 4 is the leftmost column. Characters outside ASCII 32..126 get
    // the '?' glyph so that a stray byte stays visible instead of vanishing.
    static const uint8_t* Glyph(char character);
};

#endif // AECORE_TOOLS_AECSIM_CBITMAPFONT_H
