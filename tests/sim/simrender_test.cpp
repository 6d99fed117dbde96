// Tests of the simulator's pictures: PNG output, the bitmap font, the run plot, thumbnails and the contact sheet.
#include <gtest/gtest.h>
#include <png.h>
#include <unistd.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <limits>
#include <set>
#include <string>
#include <vector>

#include "cbitmapfont.h"
#include "ccontactsheet.h"
#include "cpngwriter.h"
#include "csimcanvas.h"
#include "csimplot.h"
#include "simrender.h"

namespace
{
struct PngPicture
{
    uint32_t             width  = 0;
    uint32_t             height = 0;
    std::vector<uint8_t> rgb;

    const uint8_t* At(uint32_t x, uint32_t y) const { return &rgb[(static_cast<size_t>(y) * width + x) * 3]; }
};

// Reads a PNG back with libpng itself, independent of the writer's code.
bool ReadPng(const std::string& path, PngPicture* pPicture)
{
    png_image image;
    std::memset(&image, 0, sizeof(image));
    image.version = PNG_IMAGE_VERSION;
    if (png_image_begin_read_from_file(&image, path.c_str()) == 0)
    {
        return false;
    }
    image.format = PNG_FORMAT_RGB;
    pPicture->width  = image.width;
    pPicture->height = image.height;
    pPicture->rgb.resize(PNG_IMAGE_SIZE(image));
    if (png_image_finish_read(&image, nullptr, pPicture->rgb.data(), 0, nullptr) == 0)
    {
        png_image_free(&image);
        return false;
    }
    return true;
}

// A scratch file per test and process, so that tests run side by side do not share files.
std::string ScratchPath(const std::string& name)
{
    const ::testing::TestInfo* pInfo = ::testing::UnitTest::GetInstance()->current_test_info();
    return ::testing::TempDir() + "aecsim_render_" + pInfo->name() + "_" + std::to_string(getpid()) + "_" + name;
}

bool IsBackground(const uint8_t* pPixel, SimColor background)
{
    return (pPixel[0] == background.r) && (pPixel[1] == background.g) && (pPixel[2] == background.b);
}

// The curves are the only coloured pixels of a plot: frame, grid, text and events are shades of grey.
bool IsChromatic(const uint8_t* pPixel)
{
    const int high = std::max({pPixel[0], pPixel[1], pPixel[2]});
    const int low  = std::min({pPixel[0], pPixel[1], pPixel[2]});
    return (high - low) > 60;
}

// The 8-bit sRGB code of a linear value, computed here from the sRGB formula.
int ExpectedSrgbCode(double linear)
{
    const double encoded = (linear <= 0.0031308) ? 12.92 * linear : 1.055 * std::pow(linear, 1.0 / 2.4) - 0.055;
    return static_cast<int>(std::lround(encoded * 255.0));
}

SimRawFrame UniformRaw(uint32_t width, uint32_t height, uint32_t bitDepth, uint32_t blackLevel, uint16_t code)
{
    SimRawFrame frame;
    frame.width      = width;
    frame.height     = height;
    frame.bitDepth   = bitDepth;
    frame.blackLevel = blackLevel;
    frame.bayer.assign(static_cast<size_t>(width) * height, code);
    return frame;
}

// Coloured pixels inside a panel, below its name and legend and clear of its bottom edge.
int CurvePixels(const PngPicture& picture, const SimPlotArea& area)
{
    int count = 0;
    for (int y = area.top + 45; y < area.top + area.height - 3; ++y)
    {
        for (int x = area.left + 1; x < area.left + area.width - 1; ++x)
        {
            count += IsChromatic(picture.At(static_cast<uint32_t>(x), static_cast<uint32_t>(y))) ? 1 : 0;
        }
    }
    return count;
}

// A run of 60 frames: luma rising towards its target, exposure halving, gain rising, two events.
std::vector<SimFrameRecord> HandMadeRecords()
{
    std::vector<SimFrameRecord> records;
    for (uint32_t frame = 0; frame < 60; ++frame)
    {
        SimFrameRecord record;
        record.frame       = frame;
        record.frameLuma   = 20.0F + static_cast<float>(frame);
        record.targetLuma  = 50.0F;
        record.appliedTime = 33000000ULL >> (frame / 12);
        record.chosenTime  = 33000000ULL >> ((frame + 2) / 12);
        record.appliedGain = 1.0F + 0.1F * static_cast<float>(frame);
        record.chosenGain  = 1.0F + 0.1F * static_cast<float>(frame + 2);
        if (frame == 10)
        {
            record.event = "light +4EV";
        }
        if (frame == 40)
        {
            record.event = "AE lock";
        }
        records.push_back(record);
    }
    return records;
}
} // namespace

TEST(SimPngWriter, WritesPictureThatLibpngReadsBackPixelForPixel)
{
    const uint32_t       width  = 7;
    const uint32_t       height = 5;
    std::vector<uint8_t> rgb(static_cast<size_t>(width) * height * 3);
    for (size_t index = 0; index < rgb.size(); ++index)
    {
        rgb[index] = static_cast<uint8_t>(index * 7);
    }
    // A known pixel that stands out from the pattern.
    const size_t known = (static_cast<size_t>(3) * width + 4) * 3;
    rgb[known]         = 200;
    rgb[known + 1]     = 17;
    rgb[known + 2]     = 99;

    const std::string path = ScratchPath("roundtrip.png");
    std::string       error;
    ASSERT_TRUE(CPngWriter::WriteRgb8(path, width, height, rgb, &error)) << error;

    PngPicture picture;
    ASSERT_TRUE(ReadPng(path, &picture));
    EXPECT_EQ(picture.width, width);
    EXPECT_EQ(picture.height, height);
    EXPECT_EQ(picture.At(4, 3)[0], 200);
    EXPECT_EQ(picture.At(4, 3)[1], 17);
    EXPECT_EQ(picture.At(4, 3)[2], 99);
    EXPECT_EQ(picture.rgb, rgb);
    std::remove(path.c_str());
}

TEST(SimPngWriter, RejectsEmptyPicturesMismatchedBuffersAndUnwritablePaths)
{
    std::string error;
    EXPECT_FALSE(CPngWriter::WriteRgb8(ScratchPath("empty.png"), 0, 4, {}, &error));
    EXPECT_NE(error.find("empty picture"), std::string::npos);

    error.clear();
    EXPECT_FALSE(CPngWriter::WriteRgb8(ScratchPath("short.png"), 4, 4, std::vector<uint8_t>(10), &error));
    EXPECT_NE(error.find("does not match 4x4"), std::string::npos);

    error.clear();
    EXPECT_FALSE(CPngWriter::WriteRgb8("/nonexistent-folder/x.png", 2, 2, std::vector<uint8_t>(12), &error));
    EXPECT_FALSE(error.empty());
}

TEST(SimBitmapFont, EveryPrintableGlyphIsDistinctAndOnlySpaceIsBlank)
{
    std::set<std::vector<uint8_t>> seen;
    for (char character = ' '; character <= '~'; ++character)
    {
        const uint8_t*             pRows = CBitmapFont::Glyph(character);
        const std::vector<uint8_t> rows(pRows, pRows + CBitmapFont::kGlyphHeight);
        bool                       blank = true;
        for (const uint8_t row : rows)
        {
            EXPECT_EQ(row & ~0x1FU, 0U) << "glyph '" << character << "' is wider than 5 columns";
            blank = blank && (row == 0);
        }
        EXPECT_EQ(blank, character == ' ') << "glyph '" << character << "'";
        EXPECT_TRUE(seen.insert(rows).second) << "glyph '" << character << "' repeats another one";
    }
}

TEST(SimBitmapFont, CharactersOutsidePrintableAsciiShowAsQuestionMark)
{
    EXPECT_EQ(CBitmapFont::Glyph('\n'), CBitmapFont::Glyph('?'));
    EXPECT_EQ(CBitmapFont::Glyph(static_cast<char>(0x7F)), CBitmapFont::Glyph('?'));
    EXPECT_EQ(CBitmapFont::Glyph(static_cast<char>(0xC3)), CBitmapFont::Glyph('?'));
}

TEST(SimCanvas, TextStaysInsideItsMeasuredBox)
{
    const SimColor white{255, 255, 255};
    CSimCanvas     canvas(100, 40, white);
    canvas.DrawText(10, 10, "Ag|8", {0, 0, 0}, 2);
    const int width  = CSimCanvas::TextWidth("Ag|8", 2);
    const int height = CSimCanvas::TextHeight(2);
    int       inked  = 0;
    for (uint32_t y = 0; y < canvas.Height(); ++y)
    {
        for (uint32_t x = 0; x < canvas.Width(); ++x)
        {
            const bool inside = (static_cast<int>(x) >= 10) && (static_cast<int>(x) < 10 + width) &&
                                (static_cast<int>(y) >= 10) && (static_cast<int>(y) < 10 + height);
            const bool ink    = !IsBackground(&canvas.Rgb()[(static_cast<size_t>(y) * canvas.Width() + x) * 3], white);
            EXPECT_FALSE(ink && !inside) << "ink at " << x << "," << y;
            inked += ink ? 1 : 0;
        }
    }
    EXPECT_GT(inked, 0);
}

TEST(SimCanvas, DashedLineLeavesGapsAndSolidLineDoesNot)
{
    const SimColor white{255, 255, 255};
    CSimCanvas     solid(40, 3, white);
    CSimCanvas     dashed(40, 3, white);
    solid.DrawLine(0, 1, 39, 1, {0, 0, 0});
    dashed.DrawLine(0, 1, 39, 1, {0, 0, 0}, 4);
    int solidInk  = 0;
    int dashedInk = 0;
    for (uint32_t x = 0; x < 40; ++x)
    {
        solidInk += IsBackground(&solid.Rgb()[(40 + x) * 3], white) ? 0 : 1;
        dashedInk += IsBackground(&dashed.Rgb()[(40 + x) * 3], white) ? 0 : 1;
    }
    EXPECT_EQ(solidInk, 40);
    EXPECT_EQ(dashedInk, 20);
}

TEST(SimCanvas, FitTextCutsLongTextToTheWidth)
{
    EXPECT_EQ(CSimCanvas::FitText("short", 100), "short");
    const std::string cut = CSimCanvas::FitText("a much longer label than fits", 60);
    EXPECT_LE(CSimCanvas::TextWidth(cut), 60);
    EXPECT_EQ(cut.substr(cut.size() - 2), "..");
}

TEST(SimCanvas, WrapTextBreaksAtSpacesAndCutsTheLastLine)
{
    // 10 glyphs of 6 pixels less the trailing blank column: 59 pixels.
    const std::vector<std::string> two = CSimCanvas::WrapText("#40 EV comp +1EV, AE lock", 59, 2);
    ASSERT_EQ(two.size(), 2U);
    EXPECT_EQ(two[0], "#40 EV");
    EXPECT_EQ(two[1], "comp +1E..");
    const std::vector<std::string> one = CSimCanvas::WrapText("#40 light", 59, 2);
    ASSERT_EQ(one.size(), 1U);
    EXPECT_EQ(one[0], "#40 light");
    const std::vector<std::string> unbroken = CSimCanvas::WrapText("abcdefghijklmnop qr", 59, 2);
    ASSERT_EQ(unbroken.size(), 1U);
    EXPECT_EQ(unbroken[0], "abcdefgh..");
}

TEST(SimPlot, HandMadeRunGivesPictureOfTheStatedSizeWithCurvesInEveryPanel)
{
    const std::string path = ScratchPath("plot.png");
    std::string       error;
    ASSERT_TRUE(WritePlotPng(path, "hand-made run", HandMadeRecords(), &error)) << error;

    PngPicture picture;
    ASSERT_TRUE(ReadPng(path, &picture));
    EXPECT_EQ(picture.width, CSimPlot::kWidth);
    EXPECT_EQ(picture.height, CSimPlot::kHeight);
    for (uint32_t panel = 0; panel < CSimPlot::kPanelCount; ++panel)
    {
        const SimPlotArea area = CSimPlot::PanelArea(panel);
        int nonBackground = 0;
        for (int y = area.top + 1; y < area.top + area.height - 1; ++y)
        {
            for (int x = area.left + 1; x < area.left + area.width - 1; ++x)
            {
                const uint8_t* pPixel = picture.At(static_cast<uint32_t>(x), static_cast<uint32_t>(y));
                nonBackground += IsBackground(pPixel, CSimPlot::Background()) ? 0 : 1;
            }
        }
        const int curvePixels = CurvePixels(picture, area);
        EXPECT_GT(curvePixels, area.width / 2) << "panel " << panel;
        EXPECT_GT(nonBackground, curvePixels) << "panel " << panel << " has no grid";
    }
    std::remove(path.c_str());
}

TEST(SimPlot, EventsAreVerticalLinesAcrossAllPanels)
{
    const std::string path = ScratchPath("events.png");
    std::string       error;
    ASSERT_TRUE(WritePlotPng(path, "events", HandMadeRecords(), &error)) << error;
    PngPicture picture;
    ASSERT_TRUE(ReadPng(path, &picture));

    for (uint32_t panel = 0; panel < CSimPlot::kPanelCount; ++panel)
    {
        const SimPlotArea area = CSimPlot::PanelArea(panel);
        // Frame 10 of frames 0..59 across the panel's width.
        const int eventX = area.left + static_cast<int>(std::lround(10.0 / 59.0 * (area.width - 1)));
        const int quietX = area.left + static_cast<int>(std::lround(25.0 / 59.0 * (area.width - 1)));
        int       eventGrey = 0;
        int       quietGrey = 0;
        for (int y = area.top + 1; y < area.top + area.height - 1; ++y)
        {
            const uint8_t* pEvent = picture.At(static_cast<uint32_t>(eventX), static_cast<uint32_t>(y));
            const uint8_t* pQuiet = picture.At(static_cast<uint32_t>(quietX), static_cast<uint32_t>(y));
            eventGrey += (!IsChromatic(pEvent) && !IsBackground(pEvent, CSimPlot::Background())) ? 1 : 0;
            quietGrey += (!IsChromatic(pQuiet) && !IsBackground(pQuiet, CSimPlot::Background())) ? 1 : 0;
        }
        EXPECT_GT(eventGrey, area.height / 3) << "panel " << panel;
        EXPECT_LT(quietGrey, area.height / 3) << "panel " << panel;
    }
    std::remove(path.c_str());
}

TEST(SimPlot, ExposureTimeAxisIsLogarithmic)
{
    // 1 ms, 10 ms and 100 ms: on a log axis from 1 to 100 ms the middle one sits halfway up.
    std::vector<SimFrameRecord> records = HandMadeRecords();
    for (SimFrameRecord& record : records)
    {
        record.appliedTime = (record.frame < 20) ? 1000000ULL : ((record.frame < 40) ? 10000000ULL : 100000000ULL);
        record.chosenTime  = record.appliedTime;
        record.event.clear();
    }
    const std::string path = ScratchPath("logaxis.png");
    std::string       error;
    ASSERT_TRUE(WritePlotPng(path, "log axis", records, &error)) << error;
    PngPicture picture;
    ASSERT_TRUE(ReadPng(path, &picture));

    const SimPlotArea area     = CSimPlot::PanelArea(1);
    const int         x        = area.left + static_cast<int>(std::lround(30.0 / 59.0 * (area.width - 1)));
    const int         expected = area.top + area.height - 1 - static_cast<int>(std::lround(0.5 * (area.height - 1)));
    int               topmost  = -1;
    for (int y = area.top + 1; (y < area.top + area.height - 1) && (topmost < 0); ++y)
    {
        topmost = IsChromatic(picture.At(static_cast<uint32_t>(x), static_cast<uint32_t>(y))) ? y : -1;
    }
    EXPECT_NEAR(topmost, expected, 2);
    std::remove(path.c_str());
}

TEST(SimPlot, NonFiniteValuesAreGapsAndKeepTheAxisUsable)
{
    std::vector<SimFrameRecord> records = HandMadeRecords();
    records[20].frameLuma   = std::numeric_limits<float>::infinity();
    records[21].frameLuma   = std::numeric_limits<float>::quiet_NaN();
    records[22].appliedGain = std::numeric_limits<float>::infinity();
    const std::string path = ScratchPath("nonfinite.png");
    std::string       error;
    ASSERT_TRUE(WritePlotPng(path, "broken records", records, &error)) << error;
    PngPicture picture;
    ASSERT_TRUE(ReadPng(path, &picture));
    // An infinite axis would squash every curve onto the panel's bottom edge.
    EXPECT_GT(CurvePixels(picture, CSimPlot::PanelArea(0)), CSimPlot::PanelArea(0).width / 2);
    EXPECT_GT(CurvePixels(picture, CSimPlot::PanelArea(2)), CSimPlot::PanelArea(2).width / 2);
    std::remove(path.c_str());
}

TEST(SimPlot, RecordsOutOfOrderSpanTheWholeAxis)
{
    std::vector<SimFrameRecord> records = HandMadeRecords();
    std::reverse(records.begin(), records.end());
    const std::string path = ScratchPath("reversed.png");
    std::string       error;
    ASSERT_TRUE(WritePlotPng(path, "reversed", records, &error)) << error;
    PngPicture picture;
    ASSERT_TRUE(ReadPng(path, &picture));
    for (uint32_t panel = 0; panel < CSimPlot::kPanelCount; ++panel)
    {
        EXPECT_GT(CurvePixels(picture, CSimPlot::PanelArea(panel)), CSimPlot::PanelArea(panel).width / 2)
            << "panel " << panel;
    }
    std::remove(path.c_str());
}

TEST(SimPlot, SingleFrameAndMissingTargetStillPlot)
{
    SimFrameRecord record;
    record.frame       = 5;
    record.frameLuma   = 40.0F;
    record.appliedTime = 10000000;
    const std::string path = ScratchPath("single.png");
    std::string       error;
    ASSERT_TRUE(WritePlotPng(path, "one frame", {record}, &error)) << error;
    PngPicture picture;
    ASSERT_TRUE(ReadPng(path, &picture));
    EXPECT_EQ(picture.width, CSimPlot::kWidth);
    std::remove(path.c_str());
}

TEST(SimPlot, NoRecordsIsAnError)
{
    std::string error;
    EXPECT_FALSE(WritePlotPng(ScratchPath("none.png"), "nothing", {}, &error));
    EXPECT_NE(error.find("no frames to plot"), std::string::npos);
}

TEST(SimThumbnail, UniformRawGivesUniformGreyOfTheToneCurveValue)
{
    const uint32_t black = 64;
    const uint32_t white = 1023 - black;
    // 18 % of the range above black: mid grey.
    const uint16_t code  = static_cast<uint16_t>(black + std::lround(0.18 * white));
    const int      grey  = ExpectedSrgbCode((code - black) / static_cast<double>(white));

    const SimThumbnail thumbnail = MakeThumbnail(UniformRaw(128, 96, 10, black, code), 12, 32, "frame 12");
    EXPECT_EQ(thumbnail.frame, 12U);
    EXPECT_EQ(thumbnail.label, "frame 12");
    ASSERT_EQ(thumbnail.width, 32U);
    ASSERT_EQ(thumbnail.height, 24U);
    ASSERT_EQ(thumbnail.rgb.size(), 32U * 24U * 3U);
    EXPECT_EQ(grey, 118);
    for (const uint8_t value : thumbnail.rgb)
    {
        ASSERT_EQ(value, grey);
    }
}

TEST(SimThumbnail, WhiteLevelFollowsTheBitDepth)
{
    // The same share of the range gives the same grey at 12 and 14 bits.
    const SimThumbnail twelve   = MakeThumbnail(UniformRaw(8, 8, 12, 256, 256 + 1920), 0, 4, "");
    const SimThumbnail fourteen = MakeThumbnail(UniformRaw(8, 8, 14, 1024, 1024 + 7680), 0, 4, "");
    ASSERT_FALSE(twelve.rgb.empty());
    ASSERT_FALSE(fourteen.rgb.empty());
    EXPECT_EQ(twelve.rgb[0], ExpectedSrgbCode(1920.0 / (4095 - 256)));
    EXPECT_EQ(fourteen.rgb[0], ExpectedSrgbCode(7680.0 / (16383 - 1024)));
}

TEST(SimThumbnail, ChannelsComeFromTheirBayerSites)
{
    // RGGB: red at even row and column, blue at odd row and column, green elsewhere.
    SimRawFrame frame = UniformRaw(4, 4, 10, 0, 0);
    for (uint32_t y = 0; y < 4; ++y)
    {
        for (uint32_t x = 0; x < 4; ++x)
        {
            const bool red  = (x % 2 == 0) && (y % 2 == 0);
            const bool blue = (x % 2 == 1) && (y % 2 == 1);
            frame.bayer[y * 4 + x] = red ? 1023 : (blue ? 0 : 200);
        }
    }
    const SimThumbnail thumbnail = MakeThumbnail(frame, 0, 100, "");
    ASSERT_EQ(thumbnail.width, 2U);
    ASSERT_EQ(thumbnail.height, 2U);
    EXPECT_EQ(thumbnail.rgb[0], 255);
    EXPECT_EQ(thumbnail.rgb[1], ExpectedSrgbCode(200.0 / 1023.0));
    EXPECT_EQ(thumbnail.rgb[2], 0);
}

TEST(SimThumbnail, CodesBelowBlackAreBlackAndClippedCodesAreWhite)
{
    const SimThumbnail dark   = MakeThumbnail(UniformRaw(8, 8, 10, 64, 10), 0, 4, "");
    const SimThumbnail bright = MakeThumbnail(UniformRaw(8, 8, 10, 64, 1023), 0, 4, "");
    ASSERT_FALSE(dark.rgb.empty());
    ASSERT_FALSE(bright.rgb.empty());
    EXPECT_EQ(dark.rgb[0], 0);
    EXPECT_EQ(bright.rgb[0], 255);
}

TEST(SimThumbnail, UnusableFramesGiveAnEmptyThumbnail)
{
    EXPECT_EQ(MakeThumbnail(UniformRaw(1, 8, 10, 0, 100), 0, 16, "").width, 0U);
    EXPECT_EQ(MakeThumbnail(UniformRaw(8, 8, 10, 0, 100), 0, 0, "").width, 0U);
    EXPECT_EQ(MakeThumbnail(UniformRaw(8, 8, 10, 1023, 100), 0, 16, "").width, 0U);
    EXPECT_EQ(MakeThumbnail(UniformRaw(8, 8, 17, 0, 100), 0, 16, "").width, 0U);
    SimRawFrame shortFrame = UniformRaw(8, 8, 10, 0, 100);
    shortFrame.bayer.resize(10);
    EXPECT_EQ(MakeThumbnail(shortFrame, 0, 16, "").width, 0U);
}

TEST(SimContactSheet, ThumbnailsAndLabelsLandInTheirCells)
{
    std::vector<SimThumbnail> thumbnails;
    for (uint32_t index = 0; index < 3; ++index)
    {
        const uint16_t code = static_cast<uint16_t>(100 + 300 * index);
        thumbnails.push_back(MakeThumbnail(UniformRaw(160, 120, 10, 0, code), index * 10, 80, ""));
    }
    const std::string path = ScratchPath("sheet.png");
    std::string       error;
    ASSERT_TRUE(WriteContactSheetPng(path, thumbnails, &error)) << error;

    PngPicture picture;
    ASSERT_TRUE(ReadPng(path, &picture));
    const int padding    = CContactSheet::kPadding;
    const int pitchX     = 80 + padding;
    EXPECT_EQ(picture.width, static_cast<uint32_t>(padding + 3 * pitchX));
    EXPECT_EQ(picture.height, static_cast<uint32_t>(padding + 60 + CContactSheet::LabelHeight() + padding));
    for (uint32_t index = 0; index < 3; ++index)
    {
        const uint32_t left = static_cast<uint32_t>(padding + static_cast<int>(index) * pitchX);
        const uint8_t* pInside = picture.At(left + 40, static_cast<uint32_t>(padding) + 30);
        EXPECT_EQ(pInside[0], thumbnails[index].rgb[0]) << "thumbnail " << index;
        // The label "frame N" is drawn under the thumbnail.
        int labelInk = 0;
        for (int y = padding + 60; y < static_cast<int>(picture.height); ++y)
        {
            for (uint32_t x = left; x < left + 80; ++x)
            {
                labelInk += IsBackground(picture.At(x, static_cast<uint32_t>(y)), CContactSheet::Background()) ? 0 : 1;
            }
        }
        EXPECT_GT(labelInk, 20) << "thumbnail " << index;
    }
    std::remove(path.c_str());
}

TEST(SimContactSheet, ManyThumbnailsWrapIntoRowsWithinTheSheetWidth)
{
    std::vector<SimThumbnail> thumbnails(
        30, MakeThumbnail(UniformRaw(512, 384, 10, 64, 400), 0, 256, "a label far too long for its thumbnail cell"));
    const std::string path = ScratchPath("wrap.png");
    std::string       error;
    ASSERT_TRUE(WriteContactSheetPng(path, thumbnails, &error)) << error;
    PngPicture picture;
    ASSERT_TRUE(ReadPng(path, &picture));
    EXPECT_LE(picture.width, CContactSheet::kMaxSheetWidth);
    EXPECT_GT(picture.height, 5U * 192U);
    std::remove(path.c_str());
}

TEST(SimContactSheet, NoThumbnailsOrBrokenThumbnailIsAnError)
{
    std::string error;
    EXPECT_FALSE(WriteContactSheetPng(ScratchPath("none.png"), {}, &error));
    EXPECT_NE(error.find("no frames"), std::string::npos);

    SimThumbnail broken;
    broken.frame  = 7;
    broken.width  = 4;
    broken.height = 4;
    broken.rgb.resize(5);
    error.clear();
    EXPECT_FALSE(WriteContactSheetPng(ScratchPath("broken.png"), {broken}, &error));
    EXPECT_NE(error.find("frame 7"), std::string::npos);
}
