// Measures one metering frame: a 64 x 48 grid with saturation data, a 256-bin histogram and two faces.
#include <benchmark/benchmark.h>

#include <cstring>
#include <memory>

#include "aec/core/modules/mod_mtr/caecmodmetering.h"
#include "platform/statslogger.h"
#include "unit/mtr/mtrtestsupport.h"

namespace
{
class NullMeteringCallback : public IMeteringCallback
{
public:
    VOID SetAreFlashLowStatsSaved(BOOL) override {}
    VOID SetEVCapability(INT8, INT8, INT8) override {}
    VOID SetRealDRCGain(FLOAT) override {}
};

// The metering test set-up (default tuning, mocked state store) outside a test: only the frame is timed.
class CMeteringBenchFrame : public MeteringTest
{
public:
    CMeteringBenchFrame()
    {
        SetUp();
        gStatsLogger = nullptr;
        m_pImage     = Image(64, 48, 10, TRUE);
        m_pImage->SetHistBins(256);
        // A backlit scene: bright top rows with clipping, a darker subject in the middle.
        for (UINT32 y = 0; y < 48; y++)
        {
            for (UINT32 x = 0; x < 64; x++)
            {
                const BOOL sky = (y < 16) ? TRUE : FALSE;
                m_pImage->SetRegion(x, y, SyntheticRegion::Uniform(sky ? 900 : (200 + 8 * x), sky ? 0.3f : 0.0f));
            }
        }
        m_pImage->Build();
        std::memset(&m_in, 0, sizeof(m_in));
        m_pImage->FillStatistics(&m_in.stats);

        UnstabilizedROIInformation faces;
        std::memset(&faces, 0, sizeof(faces));
        faces.roiCount    = 2;
        faces.roi[0].rect = {800, 600, 400, 400};
        faces.roi[1].rect = {1400, 700, 200, 200};
        m_pFace->filteredROIPriority.SetImageResolution(2048, 1536);
        m_pFace->filteredROIPriority.UpdateROIData(&faces);
        m_pFace->isActiveFace = TRUE;

        m_pModule = std::make_unique<CAECModMetering>(&m_context, &m_callback);
        m_pModule->OnTuningHeaderChange();
    }
    ~CMeteringBenchFrame() override { TearDown(); }

    AecResult Run() { return m_pModule->ProcessFrameStats(&m_in, &m_out); }

private:
    VOID TestBody() override {}

    NullMeteringCallback             m_callback;
    std::unique_ptr<CSyntheticStats> m_pImage;
    std::unique_ptr<CAECModMetering> m_pModule;
    AECMeteringFrameProcInput        m_in;
    AECMeteringFrameProcOutput       m_out;
};

void BM_MeteringFrame(benchmark::State& state)
{
    CMeteringBenchFrame frame;
    for (auto _ : state)
    {
        benchmark::DoNotOptimize(frame.Run());
    }
    state.counters["regions"] = 64 * 48;
}
BENCHMARK(BM_MeteringFrame)->Unit(benchmark::kMicrosecond);
} // namespace

BENCHMARK_MAIN();
