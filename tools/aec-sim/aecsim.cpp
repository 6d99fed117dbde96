// aec-sim: runs a scenario in a closed loop between libaecore (loaded like a camera framework does) and a simulated
// camera, and writes the per-frame table, the metrics, the plot and the contact sheet.
#include <sys/stat.h>

#include <cstdio>
#include <filesystem>
#include <string>
#include <vector>

#include <CLI/CLI.hpp>

#include "csimloop.h"
#include "csimscenario.h"
#include "simmetrics.h"
#include "simmodel.h"
#include "simrender.h"
#include "simreport.h"

namespace
{

struct Options
{
    std::string scenario;
    std::string library;
    std::string tuning;
    bool        fakeTuning = false;
    std::string out;
    std::string sensor;
    std::string scene;
    float       luminance = 0.0F;
    uint32_t    frames    = 0;
    bool        quiet     = false;
    bool        check     = false;
};

// The library built with this program, else whatever the loader finds under its file name.
std::string DefaultLibrary()
{
    struct stat info = {};
    return (0 == stat(AECORE_LIBRARY_PATH, &info)) ? std::string(AECORE_LIBRARY_PATH)
                                                   : std::string(AECORE_LIBRARY_FILE);
}

// --scene takes a built-in scene name or the path of an OpenEXR or Radiance radiance map.
void OverrideScene(const std::string& scene, SimSceneSpec* pSpec)
{
    const std::string extension = std::filesystem::path(scene).extension().string();
    if ((extension == ".exr") || (extension == ".hdr"))
    {
        pSpec->type = "hdr";
        pSpec->path = scene;
    }
    else
    {
        pSpec->type = scene;
    }
}

bool WritePictures(const Options& options, const CSimScenario& scenario, const SimRunOutput& output)
{
    std::string error;
    const std::string plot    = options.out + "/plot.png";
    const std::string contact = options.out + "/contact-sheet.png";
    bool              ok      = true;
    if (WritePlotPng(plot, scenario.Name(), output.run.records, &error))
    {
        std::printf("plot:          %s\n", plot.c_str());
    }
    else
    {
        std::fprintf(stderr, "aec-sim: plot: %s\n", error.c_str());
        ok = false;
    }
    if (WriteContactSheetPng(contact, output.thumbnails, &error))
    {
        std::printf("contact sheet: %s\n", contact.c_str());
    }
    else
    {
        std::fprintf(stderr, "aec-sim: contact sheet: %s\n", error.c_str());
        ok = false;
    }
    return ok;
}

} // namespace

int main(int argc, char** argv)
{
    Options  options;
    CLI::App app{"aec-sim: closes the loop between libaecore and a simulated camera. It loads the library through\n"
                 "dlopen, sets it up as a camera framework does, films a scene with the exposures it chooses\n"
                 "(applied after the sensor's pipeline delay) and feeds it the statistics of every frame.\n"
                 "Writes frames.csv, metrics.txt, plot.png and contact-sheet.png into the output folder."};
    options.library = DefaultLibrary();
    options.tuning  = DefaultTuningFile();
    app.add_option("--scenario", options.scenario, "scenario file (sim/scenarios/*.json)")->required();
    app.add_option("--lib", options.library, "libaecore.so to load (default: the one built with this program)");
    CLI::Option* pTuning = app.add_option("--tuning", options.tuning,
                                          "parameter file of the host's tuning store (default: the built default.bin)");
    app.add_flag("--fake-tuning", options.fakeTuning,
                 "hand the library no tuning store, so that it runs on its built-in fake tuning")
        ->excludes(pTuning);
    app.add_option("--out", options.out, "output folder (default ./aec-sim-out/<scenario>)");
    app.add_option("--sensor", options.sensor, "sensor description file (default: the scenario's)");
    app.add_option("--scene", options.scene,
                   "scene: grey, gradient, backlit, window, night, fluorescent, or an .exr/.hdr radiance map");
    app.add_option("--luminance", options.luminance, "mean scene luminance in cd/m2")->check(CLI::PositiveNumber);
    app.add_option("--frames", options.frames, "frames to run")->check(CLI::PositiveNumber);
    app.add_flag("--quiet", options.quiet, "no per-frame table and no progress bar");
    app.add_flag("--check", options.check, "exit 1 if the scenario's expectations are not met, saying which");
    CLI11_PARSE(app, argc, argv);

    CSimScenario scenario;
    std::string  error;
    if (!scenario.Load(options.scenario, &error))
    {
        std::fprintf(stderr, "aec-sim: %s\n", error.c_str());
        return 2;
    }
    if (!options.sensor.empty())
    {
        scenario.SetSensorPath(options.sensor);
    }
    if (!options.scene.empty())
    {
        OverrideScene(options.scene, scenario.MutableScene());
    }
    if (options.luminance > 0.0F)
    {
        scenario.MutableScene()->luminance = options.luminance;
    }
    if (options.frames > 0)
    {
        scenario.SetFrames(options.frames);
    }
    if (options.out.empty())
    {
        options.out = "aec-sim-out/" + scenario.Name();
    }
    std::error_code fsError;
    std::filesystem::create_directories(options.out, fsError);
    if (fsError)
    {
        std::fprintf(stderr, "aec-sim: cannot create %s: %s\n", options.out.c_str(), fsError.message().c_str());
        return 2;
    }

    SimLoopOptions loopOptions;
    loopOptions.libraryPath = options.library;
    loopOptions.tuningPath  = options.fakeTuning ? std::string() : options.tuning;
    if (!options.fakeTuning && options.tuning.empty())
    {
        std::fprintf(stderr, "aec-sim: no default.bin found; running on the library's fake tuning\n");
    }
    if (!scenario.SensorPath().empty() && !LoadSensorDesc(scenario.SensorPath(), &loopOptions.sensor, &error))
    {
        std::fprintf(stderr, "aec-sim: %s\n", error.c_str());
        return 2;
    }
    if (WantsProgressBar(scenario.Frames(), options.quiet))
    {
        loopOptions.progress = [](uint32_t done, uint32_t total) { PrintProgress(stderr, done, total); };
    }

    CSimLoop     loop(scenario, loopOptions);
    SimRunOutput output;
    if (!loop.Run(&output, &error))
    {
        std::fprintf(stderr, "aec-sim: %s\n", error.c_str());
        return 2;
    }
    for (const std::string& warning : output.warnings)
    {
        std::fprintf(stderr, "aec-sim: warning: %s\n", warning.c_str());
    }

    std::printf("tuning:        %s\n", loopOptions.tuningPath.empty() ? "the library's fake tuning (no store)"
                                                                       : loopOptions.tuningPath.c_str());
    const SimMetrics metrics = ComputeMetrics(output.run, scenario.Expect());
    if (!options.quiet)
    {
        PrintFrameTable(stdout, output.run);
    }
    PrintSnapshots(stdout, output.snapshots);
    const std::string title = scenario.Name() + " (" + loopOptions.sensor.name + ", " +
                              std::to_string(scenario.Frames()) + " frames)";
    PrintMetrics(stdout, title, metrics);

    bool              written = WriteFramesCsv(options.out + "/frames.csv", output.run, &error);
    const std::string metricsPath = options.out + "/metrics.txt";
    FILE*             pMetrics    = std::fopen(metricsPath.c_str(), "w");
    if (nullptr != pMetrics)
    {
        PrintMetrics(pMetrics, title, metrics);
        written = (0 == std::fclose(pMetrics)) && written;
    }
    else
    {
        error   = "cannot write " + metricsPath;
        written = false;
    }
    if (!written)
    {
        std::fprintf(stderr, "aec-sim: %s\n", error.c_str());
    }
    std::printf("frames:        %s/frames.csv\n", options.out.c_str());
    written = WritePictures(options, scenario, output) && written;

    if (!options.check)
    {
        return written ? 0 : 2;
    }
    std::vector<std::string> failures = CheckExpectations(metrics, scenario.Expect());
    if (0 != output.failedFrames)
    {
        failures.push_back(std::to_string(output.failedFrames) + " frames failed in the library");
    }
    for (const std::string& failure : failures)
    {
        std::printf("FAILED: %s\n", failure.c_str());
    }
    if (failures.empty())
    {
        std::printf("all expectations of %s met\n", scenario.Name().c_str());
    }
    return failures.empty() ? 0 : 1;
}
