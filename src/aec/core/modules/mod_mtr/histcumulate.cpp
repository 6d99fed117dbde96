// Cumulative share and value-weighted running sums of one channel's grouped histogram, in vector lanes.
#include "aec/core/modules/mod_mtr/histaccumulate.h"

namespace
{
#define AEC_HIST_INLINE inline __attribute__((always_inline))

// Four 64-bit, double and float lanes, and eight float lanes. Helpers take vectors by reference: a wide vector
// passed by value outside an AVX2 function would change the calling convention.
typedef UINT64 Q4 __attribute__((vector_size(32)));
typedef double D4 __attribute__((vector_size(32)));
typedef FLOAT  F4 __attribute__((vector_size(16)));
typedef FLOAT  F8 __attribute__((vector_size(32)));

// x exactly as a double, for x below 2^52: the integer is placed in the mantissa of 2^52 and 2^52 is taken off.
AEC_HIST_INLINE VOID ToDouble(D4& out, const Q4& x)
{
    constexpr UINT64 Exponent52 = 0x4330000000000000ull;
    out                         = reinterpret_cast<D4>(x | Exponent52) - 4503599627370496.0;
}

// Four counts from pCounts, widened to 64 bits: the 32-bit counts interleaved with zeros.
AEC_HIST_INLINE VOID LoadCounts(Q4& out, const UINT32* pCounts)
{
    typedef UINT32 U4 __attribute__((vector_size(16)));
    typedef UINT32 U8 __attribute__((vector_size(32)));
    U4             counts;
    __builtin_memcpy(&counts, pCounts, sizeof(counts));
    const U8 wide = __builtin_shufflevector(counts, U4{}, 0, 4, 1, 4, 2, 4, 3, 4);
    out           = reinterpret_cast<Q4>(wide);
}

AEC_HIST_INLINE VOID LoadCounts(Q4& out, const UINT64* pCounts)
{
    __builtin_memcpy(&out, pCounts, sizeof(out));
}

// Running sums of four lanes.
AEC_HIST_INLINE VOID RunningSum(D4& x)
{
    const D4 zero = D4{};
    x += __builtin_shufflevector(x, zero, 4, 0, 1, 2);
    x += __builtin_shufflevector(x, zero, 4, 4, 0, 1);
}

// Running sums of eight lanes (low, high) on top of carry (all lanes alike), which moves on to the last one. Only
// one add per eight lanes waits for the previous carry.
AEC_HIST_INLINE VOID RunningSum(D4& low, D4& high, D4& carry)
{
    RunningSum(low);
    RunningSum(high);
    high += __builtin_shufflevector(low, low, 3, 3, 3, 3);
    const D4 step = __builtin_shufflevector(high, high, 3, 3, 3, 3);
    low += carry;
    high += carry;
    carry += step;
}

// Pixels of n groups, side by side in 64-bit lanes.
template <typename TCount>
AEC_HIST_INLINE UINT64 HistTotal(const TCount* pCounts, UINT32 n)
{
    Q4     lanes0 = Q4{};
    Q4     lanes1 = Q4{};
    UINT32 g      = 0;
    for (; (g + 8) <= n; g += 8)
    {
        Q4 counts0;
        Q4 counts1;
        LoadCounts(counts0, pCounts + g);
        LoadCounts(counts1, pCounts + g + 4);
        lanes0 += counts0;
        lanes1 += counts1;
    }
    lanes0 += lanes1;
    UINT64 total = lanes0[0] + lanes0[1] + lanes0[2] + lanes0[3];
    for (; g < n; g++)
    {
        total += pCounts[g];
    }
    return total;
}

// Counts and value times count of four groups from pCounts and pValues, as doubles; the counts go to pGrouped.
template <typename TCount>
AEC_HIST_INLINE VOID LoadQuad(D4& counts, D4& weighted, const TCount* pCounts, const FLOAT* pValues,
                              UINT64* pGrouped)
{
    Q4 wide;
    LoadCounts(wide, pCounts);
    __builtin_memcpy(pGrouped, &wide, sizeof(wide));
    F4 values;
    __builtin_memcpy(&values, pValues, sizeof(values));
    ToDouble(counts, wide);
    const D4 valuesD = {values[0], values[1], values[2], values[3]};
    weighted         = counts * valuesD;
}

// Eight floats from two times four doubles, each rounded once.
AEC_HIST_INLINE VOID ToFloat(F8& out, const D4& low, const D4& high)
{
    typedef double D8 __attribute__((vector_size(64)));
    const D8       lanes = __builtin_shufflevector(low, high, 0, 1, 2, 3, 4, 5, 6, 7);
    out                  = __builtin_convertvector(lanes, F8);
}

template <typename TCount>
AEC_HIST_INLINE UINT64 HistCumulateLanes(const TCount* pCounts, UINT32 n, FLOAT gain, const HistCumulateOut& out)
{
    const UINT64 total = HistTotal(pCounts, n);
    if (0 == total)
    {
        for (UINT32 g = 0; g < n; g++)
        {
            out.pGrouped[g] = 0;
        }
        return 0;
    }
    // The share: the running count as float over the total as float, as 64-bit integers convert.
    const FLOAT  totalF     = static_cast<FLOAT>(static_cast<INT64>(total));
    const double scale      = 1.0 / static_cast<double>(total);
    const double scaleWB    = scale * static_cast<double>(gain);
    D4           carryCount = D4{};
    D4           carryValue = D4{};
    UINT32       g          = 0;
    // The destinations in locals: the stores cannot then be taken to change them.
    UINT64* const      pGrouped    = out.pGrouped;
    const FLOAT* const pValues     = out.pValues;
    FLOAT* const       pCDF        = out.pCDF;
    FLOAT* const       pWeighted   = out.pWeighted;
    FLOAT* const       pWeightedWB = out.pWeightedWB;
    for (; (g + 8) <= n; g += 8)
    {
        D4 count0, count1, value0, value1;
        LoadQuad(count0, value0, pCounts + g, pValues + g, pGrouped + g);
        LoadQuad(count1, value1, pCounts + g + 4, pValues + g + 4, pGrouped + g + 4);
        RunningSum(count0, count1, carryCount);
        RunningSum(value0, value1, carryValue);
        F8 cdf, weighted, weightedWB;
        ToFloat(cdf, count0, count1);
        ToFloat(weighted, value0 * scale, value1 * scale);
        ToFloat(weightedWB, value0 * scaleWB, value1 * scaleWB);
        cdf /= totalF;
        __builtin_memcpy(pCDF + g, &cdf, sizeof(cdf));
        __builtin_memcpy(pWeighted + g, &weighted, sizeof(weighted));
        __builtin_memcpy(pWeightedWB + g, &weightedWB, sizeof(weightedWB));
    }
    // The same operations one group at a time for the last groups.
    double runningCount = carryCount[0];
    double runningValue = carryValue[0];
    for (; g < n; g++)
    {
        const UINT64 count  = pCounts[g];
        pGrouped[g]         = count;
        const double countD = static_cast<double>(count);
        runningValue += countD * static_cast<double>(pValues[g]);
        runningCount += countD;
        pCDF[g]        = static_cast<FLOAT>(runningCount) / totalF;
        pWeighted[g]   = static_cast<FLOAT>(runningValue * scale);
        pWeightedWB[g] = static_cast<FLOAT>(runningValue * scaleWB);
    }
    return total;
}

UINT64 HistCumulateBinsPortable(const UINT32* pCounts, UINT32 n, FLOAT gain, const HistCumulateOut& out)
{
    return HistCumulateLanes(pCounts, n, gain, out);
}

UINT64 HistCumulateGroupsPortable(const UINT64* pCounts, UINT32 n, FLOAT gain, const HistCumulateOut& out)
{
    return HistCumulateLanes(pCounts, n, gain, out);
}

#if defined(__x86_64__)
__attribute__((target("avx2"))) UINT64 HistCumulateBinsAVX2(const UINT32* pCounts, UINT32 n, FLOAT gain,
                                                            const HistCumulateOut& out)
{
    return HistCumulateLanes(pCounts, n, gain, out);
}

__attribute__((target("avx2"))) UINT64 HistCumulateGroupsAVX2(const UINT64* pCounts, UINT32 n, FLOAT gain,
                                                              const HistCumulateOut& out)
{
    return HistCumulateLanes(pCounts, n, gain, out);
}
#endif

// The widest kernels this CPU runs, chosen once.
struct HistCumulateKernels
{
    UINT64 (*pBins)(const UINT32* pCounts, UINT32 n, FLOAT gain, const HistCumulateOut& out);
    UINT64 (*pGroups)(const UINT64* pCounts, UINT32 n, FLOAT gain, const HistCumulateOut& out);
};

HistCumulateKernels SelectHistCumulate()
{
#if defined(__x86_64__)
    if (__builtin_cpu_supports("avx2"))
    {
        return {&HistCumulateBinsAVX2, &HistCumulateGroupsAVX2};
    }
#endif
    return {&HistCumulateBinsPortable, &HistCumulateGroupsPortable};
}

const HistCumulateKernels& Kernels()
{
    static const HistCumulateKernels kernels = SelectHistCumulate();
    return kernels;
}
} // namespace

UINT64 HistCumulate(const UINT32* pCounts, UINT32 n, FLOAT gain, const HistCumulateOut& out)
{
    return Kernels().pBins(pCounts, n, gain, out);
}

UINT64 HistCumulate(const UINT64* pCounts, UINT32 n, FLOAT gain, const HistCumulateOut& out)
{
    return Kernels().pGroups(pCounts, n, gain, out);
}
