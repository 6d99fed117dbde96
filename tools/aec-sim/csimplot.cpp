// Draws the run plot: three stacked panels sharing the frame axis, ticks and numbers, legends and event markers.
#include "csimplot.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <limits>

#include "simrender.h"

namespace
{
constexpr int      kLeft          = 80;  // room for the y tick numbers
constexpr int      kRight         = 20;
constexpr int      kFirstTop      = 66;  // title and the rows of event labels above the first panel
constexpr int      kPanelPitch    = 278;
constexpr int      kPanelHeight   = 236; // leaves room below each panel for the frame numbers
constexpr int      kEventRows     = 3;
constexpr int      kEventRowTop   = 32;
constexpr int      kEventLabelMax = 220; // pixels; longer event texts are cut
constexpr uint32_t kTargetTicks   = 5;

constexpr SimColor kBackground{255, 255, 255};
constexpr SimColor kInk{30, 30, 30};
constexpr SimColor kGrid{225, 225, 225};
constexpr SimColor kEvent{150, 150, 150};
constexpr SimColor kLuma{31, 94, 200};
constexpr SimColor kTarget{214, 48, 39};
constexpr SimColor kApplied{20, 140, 60};
constexpr SimColor kChosen{120, 60, 160};
constexpr SimColor kGain{230, 120, 0};

const double kGap = std::numeric_limits<double>::quiet_NaN();

// 1, 2 or 5 times a power of ten, the smallest such step not below raw.
double NiceStep(double raw)
{
    if (!(raw > 0.0))
    {
        return 1.0;
    }
    const double decade = std::pow(10.0, std::floor(std::log10(raw)));
    for (const double factor : {1.0, 2.0, 5.0})
    {
        if (factor * decade >= raw * (1.0 - 1e-9))
        {
            return factor * decade;
        }
    }
    return 10.0 * decade;
}

std::string FormatNumber(double value, int decimals)
{
    char text[32];
    std::snprintf(text, sizeof(text), "%.*f", decimals, value);
    return text;
}

// Enough decimals to tell ticks of this step apart.
int DecimalsFor(double step)
{
    return (step >= 1.0) ? 0 : std::min(6, static_cast<int>(std::ceil(-std::log10(step) - 1e-9)));
}

// A broken record (infinite or NaN luma or gain) becomes a gap rather than wrecking the axis range.
double Known(float value)
{
    return std::isfinite(value) ? static_cast<double>(value) : kGap;
}

int ToX(const SimPlotArea& area, double frame, double firstFrame, double lastFrame)
{
    const double share = (frame - firstFrame) / (lastFrame - firstFrame);
    return area.left + static_cast<int>(std::lround(share * (area.width - 1)));
}
} // namespace

SimPlotArea CSimPlot::PanelArea(uint32_t panel)
{
    return {kLeft, kFirstTop + static_cast<int>(panel) * kPanelPitch, static_cast<int>(kWidth) - kLeft - kRight,
            kPanelHeight};
}

SimColor CSimPlot::Background()
{
    return kBackground;
}

CSimPlot::Axis CSimPlot::LinearAxis(double maximum)
{
    Axis axis{0.0, 1.0, false, {}, {}};
    // Headroom so the top of a curve does not sit on the frame.
    const double top  = (maximum > 0.0) ? maximum * 1.05 : 1.0;
    const double step = NiceStep(top / kTargetTicks);
    axis.high         = std::ceil(top / step - 1e-9) * step;
    const int decimals = DecimalsFor(step);
    for (double tick = 0.0; tick <= axis.high * (1.0 + 1e-9); tick += step)
    {
        axis.ticks.push_back(tick);
        axis.labels.push_back(FormatNumber(tick, decimals));
    }
    return axis;
}

CSimPlot::Axis CSimPlot::LogAxis(double minimum, double maximum)
{
    Axis axis{1.0, 10.0, true, {}, {}};
    if ((minimum > 0.0) && (maximum >= minimum))
    {
        const double lowDecade  = std::floor(std::log10(minimum));
        double       highDecade = std::ceil(std::log10(maximum));
        if (highDecade <= lowDecade)
        {
            highDecade = lowDecade + 1.0;
        }
        axis.low  = std::pow(10.0, lowDecade);
        axis.high = std::pow(10.0, highDecade);
    }
    // Labels at 1, 2 and 5 of each decade, as a decade of exposure time is too coarse to read values off; over
    // many decades those labels would overlap, so only the decades are labelled.
    const bool                manyDecades = axis.high / axis.low > 1.0e4 * (1.0 + 1e-9);
    const std::vector<double> factors     = manyDecades ? std::vector<double>{1.0} : std::vector<double>{1.0, 2.0, 5.0};
    for (double decade = axis.low; decade < axis.high * (1.0 - 1e-9); decade *= 10.0)
    {
        for (const double factor : factors)
        {
            const double tick = factor * decade;
            axis.ticks.push_back(tick);
            axis.labels.push_back(FormatNumber(tick, DecimalsFor(tick)));
        }
    }
    axis.ticks.push_back(axis.high);
    axis.labels.push_back(FormatNumber(axis.high, DecimalsFor(axis.high)));
    return axis;
}

void CSimPlot::DrawPanel(CSimCanvas* pCanvas, const SimPlotArea& area, const std::string& name, const Axis& axis,
                         const std::vector<Series>& series, const std::vector<uint32_t>& frames, double firstFrame,
                         double lastFrame)
{
    const int  bottom = area.top + area.height - 1;
    const auto toY    = [&](double value) {
        const double low   = axis.logarithmic ? std::log10(axis.low) : axis.low;
        const double high  = axis.logarithmic ? std::log10(axis.high) : axis.high;
        const double v     = axis.logarithmic ? std::log10(value) : value;
        const double share = std::clamp((v - low) / (high - low), 0.0, 1.0);
        return bottom - static_cast<int>(std::lround(share * (area.height - 1)));
    };

    for (size_t index = 0; index < axis.ticks.size(); ++index)
    {
        const int y = toY(axis.ticks[index]);
        pCanvas->DrawLine(area.left, y, area.left + area.width - 1, y, kGrid);
        pCanvas->DrawLine(area.left - 5, y, area.left - 1, y, kInk);
        const std::string& label = axis.labels[index];
        pCanvas->DrawText(area.left - 8 - CSimCanvas::TextWidth(label), y - CSimCanvas::TextHeight() / 2, label, kInk);
    }

    for (const Series& curve : series)
    {
        // Each run of known values is one polyline; a gap ends it.
        std::vector<std::pair<int, int>> run;
        for (size_t index = 0; index <= curve.values.size(); ++index)
        {
            const bool known = (index < curve.values.size()) && !std::isnan(curve.values[index]) &&
                               (!axis.logarithmic || (curve.values[index] > 0.0));
            if (known)
            {
                run.emplace_back(ToX(area, frames[index], firstFrame, lastFrame), toY(curve.values[index]));
                continue;
            }
            pCanvas->DrawPolyline(run, curve.color, curve.dash, 2);
            run.clear();
        }
    }

    // Frame last, so curves at the limits do not cover it.
    pCanvas->DrawLine(area.left, area.top, area.left + area.width - 1, area.top, kInk);
    pCanvas->DrawLine(area.left, bottom, area.left + area.width - 1, bottom, kInk);
    pCanvas->DrawLine(area.left, area.top, area.left, bottom, kInk);
    pCanvas->DrawLine(area.left + area.width - 1, area.top, area.left + area.width - 1, bottom, kInk);
    pCanvas->DrawText(area.left + 6, area.top + 6, name, kInk);

    // Legend in the top right corner, on a white box so that curves under it do not hide it.
    int legendWidth = 0;
    for (const Series& curve : series)
    {
        legendWidth = std::max(legendWidth, 30 + CSimCanvas::TextWidth(curve.name));
    }
    const int legendLeft = area.left + area.width - legendWidth - 16;
    const int rowHeight  = CSimCanvas::TextHeight() + 5;
    pCanvas->FillRect(legendLeft - 4, area.top + 3, legendWidth + 12, static_cast<int>(series.size()) * rowHeight + 6,
                      kBackground);
    int rowTop = area.top + 7;
    for (const Series& curve : series)
    {
        const int middle = rowTop + CSimCanvas::TextHeight() / 2;
        pCanvas->DrawPolyline({{legendLeft, middle}, {legendLeft + 22, middle}}, curve.color, curve.dash == 0 ? 0 : 4,
                              2);
        pCanvas->DrawText(legendLeft + 30, rowTop, curve.name, kInk);
        rowTop += rowHeight;
    }
}

void CSimPlot::DrawFrameAxis(CSimCanvas* pCanvas, const SimPlotArea& area, double firstFrame, double lastFrame)
{
    const int    bottom = area.top + area.height - 1;
    const double step   = std::max(1.0, NiceStep((lastFrame - firstFrame) / 10.0));
    for (double frame = std::ceil(firstFrame / step) * step; frame <= lastFrame + 1e-9; frame += step)
    {
        const int x = ToX(area, frame, firstFrame, lastFrame);
        pCanvas->DrawLine(x, bottom + 1, x, bottom + 5, kInk);
        const std::string label = FormatNumber(frame, 0);
        pCanvas->DrawText(x - CSimCanvas::TextWidth(label) / 2, bottom + 8, label, kInk);
    }
}

void CSimPlot::DrawEvents(CSimCanvas* pCanvas, const std::vector<SimFrameRecord>& records, double firstFrame,
                          double lastFrame)
{
    // Labels go to the first of a few rows above the panels where they do not run into the previous one.
    int rowEnd[kEventRows];
    std::fill(rowEnd, rowEnd + kEventRows, std::numeric_limits<int>::min());
    for (const SimFrameRecord& record : records)
    {
        if (record.event.empty())
        {
            continue;
        }
        for (uint32_t panel = 0; panel < kPanelCount; ++panel)
        {
            const SimPlotArea area = PanelArea(panel);
            const int         x    = ToX(area, record.frame, firstFrame, lastFrame);
            pCanvas->DrawLine(x, area.top, x, area.top + area.height - 1, kEvent, 3);
        }
        const SimPlotArea top   = PanelArea(0);
        const int         x     = ToX(top, record.frame, firstFrame, lastFrame);
        const std::string label = CSimCanvas::FitText(record.event, kEventLabelMax);
        const int         width = CSimCanvas::TextWidth(label);
        // Keep labels of events near the right edge inside the picture.
        const int left = std::min(x + 2, static_cast<int>(kWidth) - kRight - width);
        int       row  = 0;
        while ((row < kEventRows - 1) && (rowEnd[row] >= left))
        {
            ++row;
        }
        const int y = kEventRowTop + row * (CSimCanvas::TextHeight() + 4);
        pCanvas->DrawLine(x, y + CSimCanvas::TextHeight() + 1, x, top.top - 1, kEvent);
        pCanvas->DrawText(left, y, label, kEvent);
        rowEnd[row] = left + width + 6;
    }
}

bool CSimPlot::Write(const std::string& path, const std::string& title, const std::vector<SimFrameRecord>& records,
                     std::string* pError)
{
    if (records.empty())
    {
        if (pError != nullptr)
        {
            *pError = path + ": no frames to plot";
        }
        return false;
    }

    std::vector<uint32_t> frames;
    Series luma{"frame luma", kLuma, 0, {}};
    Series target{"target luma", kTarget, 6, {}};
    Series applied{"applied", kApplied, 0, {}};
    Series chosen{"chosen", kChosen, 6, {}};
    Series gain{"applied gain", kGain, 0, {}};
    Series chosenGain{"chosen gain", kChosen, 6, {}};
    for (const SimFrameRecord& record : records)
    {
        frames.push_back(record.frame);
        const double appliedMs = static_cast<double>(record.appliedTime) / 1.0e6;
        const double chosenMs  = static_cast<double>(record.chosenTime) / 1.0e6;
        luma.values.push_back(Known(record.frameLuma));
        // The library may not report a target on every frame; zero means unknown.
        target.values.push_back(record.targetLuma > 0.0F ? Known(record.targetLuma) : kGap);
        applied.values.push_back(appliedMs > 0.0 ? appliedMs : kGap);
        chosen.values.push_back(chosenMs > 0.0 ? chosenMs : kGap);
        gain.values.push_back(Known(record.appliedGain));
        // Without a chosen time the chosen gain is the record's default, not a decision of the library.
        chosenGain.values.push_back(record.chosenTime > 0 ? Known(record.chosenGain) : kGap);
    }
    // Smallest and largest known value of a panel's two curves; (largest double, 0) when none is known.
    const auto extent = [](const Series& first, const Series& second) {
        std::pair<double, double> range(std::numeric_limits<double>::max(), 0.0);
        for (const Series* pSeries : {&first, &second})
        {
            for (const double value : pSeries->values)
            {
                if (!std::isnan(value))
                {
                    range.first  = std::min(range.first, value);
                    range.second = std::max(range.second, value);
                }
            }
        }
        return range;
    };
    const std::pair<double, double> times = extent(applied, chosen);
    // The smallest and largest frame number span the axis, so that records out of order still land inside it; a
    // single frame still needs a range to map onto.
    const auto   frameRange = std::minmax_element(frames.begin(), frames.end());
    const double firstFrame = *frameRange.first;
    const double lastFrame  = std::max(static_cast<double>(*frameRange.second), firstFrame + 1.0);

    CSimCanvas canvas(kWidth, kHeight, kBackground);
    canvas.DrawText((static_cast<int>(kWidth) - CSimCanvas::TextWidth(title, 2)) / 2, 10, title, kInk, 2);
    DrawPanel(&canvas, PanelArea(0), "luma", LinearAxis(extent(luma, target).second), {luma, target}, frames,
              firstFrame, lastFrame);
    DrawPanel(&canvas, PanelArea(1), "exposure time (ms, log scale)",
              LogAxis(times.second > 0.0 ? times.first : 0.0, times.second), {applied, chosen}, frames, firstFrame,
              lastFrame);
    DrawPanel(&canvas, PanelArea(2), "gain", LinearAxis(extent(gain, chosenGain).second), {gain, chosenGain}, frames,
              firstFrame, lastFrame);
    for (uint32_t panel = 0; panel < kPanelCount; ++panel)
    {
        DrawFrameAxis(&canvas, PanelArea(panel), firstFrame, lastFrame);
    }
    DrawEvents(&canvas, records, firstFrame, lastFrame);
    const SimPlotArea last = PanelArea(kPanelCount - 1);
    canvas.DrawText(last.left + (last.width - CSimCanvas::TextWidth("frame")) / 2, last.top + last.height + 22,
                    "frame", kInk);
    return canvas.WritePng(path, pError);
}

bool WritePlotPng(const std::string& path, const std::string& title, const std::vector<SimFrameRecord>& records,
                  std::string* pError)
{
    return CSimPlot::Write(path, title, records, pError);
}
