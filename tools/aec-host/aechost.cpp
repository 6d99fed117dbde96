// aec-host: loads libaecore like a camera framework and runs it in a closed loop on a synthetic grey scene.
#include <sys/stat.h>

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

#include "chostharness.h"

namespace
{

struct Options
{
    std::string library;
    std::string tuning      = DefaultTuningFile();
    bool        fileMode    = false;
    UINT32      frames      = 60;
    UINT32      cameraId    = 0;
    FLOAT       sceneLevel  = 4.0F;    // grey level the scene reaches at 10 ms, gain 1, f/2: a dim room
};

void PrintUsage(const char* pName)
{
    std::printf("Usage: %s [--library PATH] [--tuning FILE | --fake-tuning] [--file-mode] [--frames N]\n"
                "       [--camera ID] [--scene LEVEL]\n\n"
                "Loads libaecore through dlopen, creates one instance, sets camera, sensor, tuning and\n"
                "streaming mode, queries the start exposure and processes N frames of a uniform grey\n"
                "scene whose brightness follows the exposure the library chose; the sensor applies an\n"
                "exposure two frames after it was chosen, as the library is told.\n\n"
                "  --library PATH  shared library to load (default: the one built with this program)\n"
                "  --tuning FILE   parameter file of the host's tuning store (default: the built default.bin)\n"
                "  --fake-tuning   no tuning store: the library runs on its built-in fake tuning\n"
                "  --file-mode     the store reads the file mode by mode, keeping it open (default: from memory)\n"
                "  --frames N      frames to process (default 60)\n"
                "  --camera ID     camera id 0..7 (default 0)\n"
                "  --scene LEVEL   8-bit grey level at 10 ms, gain 1.0, f/2.0 (default 4: a dim room)\n"
                "  --help          this text\n",
                pName);
}

bool ParseOptions(int argc, char** argv, Options* pOptions)
{
    pOptions->library = AECORE_LIBRARY_PATH;
    struct stat info  = {};
    if (0 != stat(pOptions->library.c_str(), &info))
    {
        pOptions->library = AECORE_LIBRARY_FILE;
    }
    for (int i = 1; i < argc; i++)
    {
        std::string argument = argv[i];
        bool        hasValue = (i + 1) < argc;
        if ((argument == "--help") || (argument == "-h"))
        {
            PrintUsage(argv[0]);
            std::exit(0);
        }
        else if (hasValue && (argument == "--library"))
        {
            pOptions->library = argv[++i];
        }
        else if (hasValue && (argument == "--tuning"))
        {
            pOptions->tuning = argv[++i];
        }
        else if (argument == "--fake-tuning")
        {
            pOptions->tuning.clear();
        }
        else if (argument == "--file-mode")
        {
            pOptions->fileMode = true;
        }
        else if (hasValue && (argument == "--frames"))
        {
            pOptions->frames = static_cast<UINT32>(std::strtoul(argv[++i], nullptr, 10));
        }
        else if (hasValue && (argument == "--camera"))
        {
            pOptions->cameraId = static_cast<UINT32>(std::strtoul(argv[++i], nullptr, 10));
        }
        else if (hasValue && (argument == "--scene"))
        {
            pOptions->sceneLevel = std::strtof(argv[++i], nullptr);
        }
        else
        {
            std::fprintf(stderr, "aec-host: unknown or incomplete option '%s' (see --help)\n", argument.c_str());
            return false;
        }
    }
    return true;
}

// Grey level of the scene under an exposure: linear in time and gain, inverse in the f-number squared.
FLOAT SceneLevel(const Options& options, const AECAlgoExposureData& exposure)
{
    const DOUBLE referenceSensitivity = 10e6 * 1.0 / (2.0 * 2.0);
    const DOUBLE fNumber              = (exposure.fnumber >= 1.0F) ? exposure.fnumber : 2.0;
    const DOUBLE sensitivity = static_cast<DOUBLE>(exposure.exposureTime) * exposure.linearGain / (fNumber * fNumber);
    return static_cast<FLOAT>(std::fmin(255.0, options.sceneLevel * sensitivity / referenceSensitivity));
}

} // namespace

int main(int argc, char** argv)
{
    Options options;
    if (!ParseOptions(argc, argv, &options))
    {
        return 2;
    }

    CHostHarness harness;
    std::string  error;
    harness.SetTuningFile(options.tuning, options.fileMode ? HostTuningLoad::File : HostTuningLoad::Buffer);
    if (!harness.Load(options.library, &error))
    {
        std::fprintf(stderr, "aec-host: %s\n", error.c_str());
        return 1;
    }

    HostSensorConfig sensor = DefaultSensor(options.cameraId);
    LYRAECAlgorithm* pAlgo  = nullptr;
    KDKResult        result = harness.Create(options.cameraId, &pAlgo);
    if (VelaResultSuccess != result)
    {
        std::fprintf(stderr, "aec-host: create failed with result %d\n", result);
        return 1;
    }
    result = harness.Configure(pAlgo, sensor, AECAlgoOperationModeStreaming);
    if (VelaResultSuccess != result)
    {
        std::fprintf(stderr, "aec-host: configuration failed with result %d\n", result);
        return 1;
    }

    HostFrameResult frame = {};
    result                = harness.QueryStartExposure(pAlgo, &frame);
    if (VelaResultSuccess != result)
    {
        std::fprintf(stderr, "aec-host: start exposure query failed with result %d\n", result);
        return 1;
    }
    std::printf("libaecore %s, camera %u, %u frames, scene level %.1f\n", options.library.c_str(),
                options.cameraId, options.frames, options.sceneLevel);
    std::printf("tuning: %s\n", options.tuning.empty() ? "the library's fake tuning (no store)"
                                                       : (options.tuning + (options.fileMode ? " (file mode)"
                                                                                             : " (buffer mode)")).c_str());
    std::printf("%6s %8s %12s %8s %6s %8s %8s %7s\n", "frame", "result", "exposure_ns", "gain", "fnum", "luma",
                "lux_idx", "settled");

    // chosen[k] is the exposure the library chose k frames ago; the frame in hand shows the one of the
    // pipeline delay before (the start exposure until then).
    std::vector<AECAlgoExposureData> chosen(sensor.pipelineDelay, frame.exposures[AECAlgoExposureSafe].exposureData);
    UINT32                           failed = 0;
    for (UINT32 i = 1; i <= options.frames; i++)
    {
        const AECAlgoExposureData shown = chosen.front();
        harness.ProcessFrame(pAlgo, sensor, i, SceneLevel(options, shown), &frame);
        failed += (VelaResultSuccess != frame.result) ? 1 : 0;
        const AECAlgoExposureData& applied = frame.exposures[AECAlgoExposureSafe].exposureData;
        chosen.erase(chosen.begin());
        chosen.push_back(applied);
        std::printf("%6u %8d %12llu %8.3f %6.2f %8.2f %8.2f %7d\n", i, frame.result,
                    static_cast<unsigned long long>(applied.exposureTime), applied.linearGain, applied.fnumber,
                    frame.frameInfo.frameLuma, frame.frameControl.luxIndex, frame.frameInfo.aecSettled);
    }

    harness.Destroy(pAlgo, options.cameraId, true);
    std::printf("%u of %u frames processed without error\n", options.frames - failed, options.frames);
    return (0 == failed) ? 0 : 1;
}
