// Fixture of the arbitrator exposure tests: an arbitrator whose table and session limit are the tuned table's own.
#ifndef TESTS_UNIT_ARB_CARBITRATOR_EXPOSURE_TESTSUPPORT_H
#define TESTS_UNIT_ARB_CARBITRATOR_EXPOSURE_TESTSUPPORT_H

#include <cmath>
#include <memory>

#include "aec/core/modules/mod_arb/exptablemath.h"
#include "unit/arb/arbtestsupport.h"

// The exposure steps read the table and the session limit only, so the tests pin both: the table adopted directly,
// opened up to its last knee by a frame-rate limit of one second, and the session limit equal to the table's range
// (index 0 .. 443.64, gain 1 .. 60, time 10.04 us .. 82.9 ms, f-number 1 for table 0). No frame history, no iris,
// flicker off, auto mode: the adjusting steps leave every set as it is.
class ArbitratorExposureTest : public ArbitrationTest
{
protected:
    std::unique_ptr<CArbitrator> MakeOpenArbitrator(aecglobalelements::ExposureTableIDType tableID = 0)
    {
        std::unique_ptr<CArbitrator> pArb   = MakeArbitrator(tableID, FALSE);
        CExpTable*                   pTable = pArb->GetExpTable();
        pTable->SetExpTable(m_context.getExposureTableFromTableID(tableID));
        pTable->SetFPSMaxExposureTime(1000000000U);
        CArbitratorTestPeer::Session(*pArb).arbExpLimit = pTable->GetLimitation();
        return pArb;
    }

    // What the active table gives for an index, as the arbitrator looks the safe exposure up in auto mode.
    static ExposureSetType TableSet(CArbitrator& rArb, FLOAT expIndex)
    {
        ExposureSetType set = {0.0F, 1.0F, 0U, expIndex};
        rArb.GetExpTable()->ExpTableEntryLookUp(ActiveTable, &set, AECAlgoExposureSafe, SHDRAECMODEDEFAULT);
        return set;
    }

    // Index distance of a sensitivity ratio.
    static FLOAT IndexOfRatio(DOUBLE ratio) { return ExpIndexDeltaFromRatio(ratio); }

    static FLOAT Sensitivity(FLOAT gain, FLOAT sensCorr, UINT64 time, FLOAT fnumber)
    {
        return gain * sensCorr * static_cast<FLOAT>(time) * (1.0F / (fnumber * fnumber));
    }

    static ArbitrationOutput ZeroOutput()
    {
        ArbitrationOutput output = {};
        return output;
    }

    static VOID ExpectSameExposure(const AECAlgoExposureData& rA, const AECAlgoExposureData& rB)
    {
        EXPECT_EQ(rA.exposureTime, rB.exposureTime);
        EXPECT_FLOAT_EQ(rA.linearGain, rB.linearGain);
        EXPECT_FLOAT_EQ(rA.fnumber, rB.fnumber);
        EXPECT_FLOAT_EQ(rA.sensitivity, rB.sensitivity);
    }
};

#endif // TESTS_UNIT_ARB_CARBITRATOR_EXPOSURE_TESTSUPPORT_H
