// The plot of a simulation run: luma and target, exposure time and gain over the frame number, with the events.
#ifndef AECORE_TOOLS_AECSIM_CSIMPLOT_H
#define AECORE_TOOLS_AECSIM_CSIMPLOT_H

#include <cstdint>
#include <string>
#include <vector>

#include "csimcanvas.h"
#include "simtypes.h"

// The data area of one panel, in pixels of the picture.
struct SimPlotArea
{
    int left;
    int top;
    int width;
    int height;
};

class CSimPlot
{
public:
    static constexpr uint32_t kWidth      = 1200;
    static constexpr uint32_t kHeight     = 900;
    static constexpr uint32_t kPanelCount = 3; // luma, exposure time, gain

    // panel: 0 luma, 1 exposure time, 2 gain.
    static SimPlotArea PanelArea(uint32_t panel);
    static SimColor    Background();

    static bool Write(const std::string& path, const std::string& title, const std::vector<SimFrameRecord>& records,
                      std::string* pError);

private:
    // One curve over the records; NaN values are gaps, e.g. frames with an unknown target.
    struct Series
    {
        std::string         name;
        SimColor            color;
        uint32_t            dash;
        std::vector<double> values;
    };

    // Value range of a panel and its tick values with their printed labels.
    struct Axis
    {
        double                   low;
        double                   high;
        bool                     logarithmic;
        std::vector<double>      ticks;
        std::vector<std::string> labels;
    };

    static Axis LinearAxis(double maximum);
    static Axis LogAxis(double minimum, double maximum);
    static void DrawPanel(CSimCanvas* pCanvas, const SimPlotArea& area, const std::string& name, const Axis& axis,
                          const std::vector<Series>& series, const std::vector<uint32_t>& frames, double firstFrame,
                          double lastFrame);
    static void DrawFrameAxis(CSimCanvas* pCanvas, const SimPlotArea& area, double firstFrame, double lastFrame);
    static void DrawEvents(CSimCanvas* pCanvas, const std::vector<SimFrameRecord>& records, double firstFrame,
                           double lastFrame);
};

#endif // AECORE_TOOLS_AECSIM_CSIMPLOT_H
