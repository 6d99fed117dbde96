// Test support for the exposure tables: table builders, the built-in default tables, a peer into CExpTable, log lines.
#ifndef TESTS_UNIT_ARB_EXPTABLETESTSUPPORT_H
#define TESTS_UNIT_ARB_EXPTABLETESTSUPPORT_H

#include <cmath>
#include <cstdarg>
#include <cstdio>
#include <string>
#include <vector>

#include "aec/core/modules/mod_arb/cexptable.h"
#include "platform/statslogger.h"
#include "support/corelogcapture.h"

// Index units per decade of sensitivity, as the tables are tuned.
constexpr double TestIndexPerDecade = 77.89852905273438;

// Index delta of a sensitivity ratio, the way tuned knees state it.
inline float IndexOf(double ratio)
{
    return static_cast<float>(std::log10(ratio) * TestIndexPerDecade);
}

inline float SensitivityOf(const ExposureSetType& rSet)
{
    return static_cast<float>(rSet.expTime) * rSet.gain * (1.0F / (rSet.fnumber * rSet.fnumber));
}

constexpr aecglobalelements::AECExpIncPrioType GainFirst = aecglobalelements::AECExpIncGain;
constexpr aecglobalelements::AECExpIncPrioType TimeFirst = aecglobalelements::AECExpIncExpTime;

// One knee as the tests write it: gain, time, f-number, priority, index.
struct KneeValues
{
    float                                gain;
    UINT64                               expTime;
    float                                fnumber;
    aecglobalelements::AECExpIncPrioType incrementPriority;
    float                                expIndex;
};

// A table record of either type that owns its knees; the record points into the vector.
template <typename TableT, typename KneeT>
class TestTable
{
public:
    explicit TestTable(const std::vector<KneeValues>& rKnees, float sensitivityCorrectionFactor = 1.0F,
                       float thresAntiBandingMinExpTimePct = 0.95F)
        : m_table()
    {
        for (const KneeValues& rValues : rKnees)
        {
            KneeT knee             = {};
            knee.gain              = rValues.gain;
            knee.expTime           = rValues.expTime;
            knee.fnumber           = rValues.fnumber;
            knee.incrementPriority = rValues.incrementPriority;
            knee.expIndex          = rValues.expIndex;
            m_knees.push_back(knee);
        }
        m_table.sensitivityCorrectionFactor   = sensitivityCorrectionFactor;
        m_table.expKneeEntriesCount           = static_cast<UINT32>(m_knees.size());
        m_table.expKneeEntriesID              = 7U;
        m_table.expKneeEntries                = m_knees.empty() ? nullptr : m_knees.data();
        m_table.thresAntiBandingMinExpTimePct = thresAntiBandingMinExpTimePct;
    }

    TestTable(const TestTable&)            = delete;
    TestTable& operator=(const TestTable&) = delete;

    TableT*      Get() { return &m_table; }
    const KneeT& Knee(size_t i) const { return m_knees[i]; }
    size_t       Count() const { return m_knees.size(); }

private:
    std::vector<KneeT> m_knees;
    TableT             m_table;
};

using ArbTable  = TestTable<aecArbitration::ExposureTableType, aecArbitration::ExposureKneeType>;
using ShdrTable = TestTable<aecShdr::SHDRExposureTableType, aecShdr::SHDRExposureKneeType>;

// The five knees of the built-in tables; their f-number 0 is raised to 1.0 when a table is adopted.
inline std::vector<KneeValues> DefaultTableKnees()
{
    return {{1.0F, 10040U, 0.0F, TimeFirst, 0.0F},
            {4.0F, 13825301U, 0.0F, TimeFirst, 291.418213F},
            {6.0F, 27640562U, 0.0F, TimeFirst, 328.572906F},
            {8.0F, 41465863U, 0.0F, TimeFirst, 352.026794F},
            {60.0F, 82931727U, 0.0F, GainFirst, 443.642487F}};
}

// A table whose knees are each one quantity apart: 1 ms to 33 ms in time, then gain to 8, then time and gain.
inline std::vector<KneeValues> StepTableKnees()
{
    const float i1 = IndexOf(33.0);
    const float i2 = i1 + IndexOf(8.0);
    const float i3 = i2 + IndexOf(2.0 * 100.0 / 33.0);
    return {{1.0F, 1000000U, 1.0F, TimeFirst, 0.0F},
            {1.0F, 33000000U, 1.0F, GainFirst, i1},
            {8.0F, 33000000U, 1.0F, TimeFirst, i2},
            {16.0F, 100000000U, 1.0F, GainFirst, i3}};
}

// A table that opens the iris first: f/4 to f/2 at 1 ms, then time to 10 ms.
inline std::vector<KneeValues> IrisTableKnees()
{
    const float i1 = IndexOf(4.0);
    const float i2 = i1 + IndexOf(10.0);
    return {{1.0F, 1000000U, 4.0F, TimeFirst, 0.0F},
            {1.0F, 1000000U, 2.0F, TimeFirst, i1},
            {1.0F, 10000000U, 2.0F, GainFirst, i2}};
}

// n knees, each one index unit and 3 percent in time above the last.
inline std::vector<KneeValues> ManyKnees(size_t n)
{
    std::vector<KneeValues> knees;
    double                time = 1000000.0;
    for (size_t i = 0; i < n; i++)
    {
        knees.push_back({1.0F, static_cast<UINT64>(time), 1.0F, TimeFirst, static_cast<float>(i)});
        time *= 1.03;
    }
    return knees;
}

// Reaches the state of a CExpTable that no operation reports.
class CExpTableTestPeer
{
public:
    static const aecArbitration::ExposureKneeType& FPSKnee(const CExpTable& rTable) { return rTable.m_FPSKnee; }
    static const aecArbitration::ExposureKneeType& EVKnee(const CExpTable& rTable) { return rTable.m_EVKnee; }
    static float ExpIndexDelta(const CExpTable& rTable) { return rTable.m_ExpIndexDelta; }
    static const ExpTableSettingsType& Settings(const CExpTable& rTable) { return rTable.m_currentSettings; }
};


#endif // TESTS_UNIT_ARB_EXPTABLETESTSUPPORT_H
