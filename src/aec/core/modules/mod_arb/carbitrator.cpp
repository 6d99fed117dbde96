// One arbitrator's life cycle, tuning and the getters the module and the adjustments read.
#include "aec/core/modules/mod_arb/carbitrator.h"

namespace
{

// Half a mains period: the shortest exposure time step on which the light of a 50 Hz or 60 Hz lamp averages out.
constexpr UINT64 FlickerHalfPeriod50Hz = 10000000U;
constexpr UINT64 FlickerHalfPeriod60Hz = 8333333U;

} // namespace

CArbitrator::CArbitrator(IAECContext* pContext)
    : m_pContext(pContext),
      m_pTuning(nullptr),
      m_expTable(),
      m_TableID(0),
      m_session(),
      m_pSensorLimit(nullptr),
      m_shdrExpLimit(),
      m_MotorDecayInfo(),
      m_IrisTble(),
      m_LensCap(),
      m_gyroInfo(),
      m_luxIdx(0.0F),
      m_FnLimits(0.0F),
      m_currZoomStep(0),
      m_isOverallSnapshot(0),
      m_isShdrActived(0),
      m_expIdx(0.0F),
      m_currSEFfnum(1.0F),
      m_irisIsAborted(0),
      m_PLDGatingEnable(0.0F),
      m_prevMap3HDR(),
      m_isPrevMap3HDRSnapshot(0),
      m_isCurMap3HDRSnapshot(0),
      m_isInsensorHDRSnapshot(0)
{
}

VOID CArbitrator::Initialize()
{
    m_session                           = ArbitrationSessionInfoType{};
    m_session.EV                        = 0.0F;
    m_session.manualSettings.manualMode = AECAlgoModeAuto;
    m_session.arbExpLimit.expIndex      = {0.0F, 0.0F};
    m_session.arbExpLimit.gain          = {1.0F, 1.0F};
    m_session.arbExpLimit.expTime       = {0U, 0U};

    m_TableID        = 0;
    m_pSensorLimit   = nullptr;
    m_gyroInfo       = GyroInfoType{};
    m_currZoomStep   = 0U;
    m_isShdrActived  = 0;
    m_IrisTble       = LDMIrisTableData{};
    m_MotorDecayInfo = MotorDecayType{};
    m_FnLimits       = 0.0F;
    m_currSEFfnum    = 1.0F;
}

VOID CArbitrator::SetTuning(const ArbitrationTuningDataType* pTuning)
{
    m_pTuning = pTuning;
}

ExposureLimitationType CArbitrator::GetLimitation() const
{
    return m_session.arbExpLimit;
}

aecglobalelements::ExposureTableIDType CArbitrator::GetTableID() const
{
    return m_TableID;
}

FLOAT CArbitrator::GetSensitivityCorrection()
{
    const aecArbitration::ExposureTableType* pRawTable = m_expTable.GetExpTable(RawTable);
    return (nullptr != pRawTable) ? pRawTable->sensitivityCorrectionFactor : 0.0F;
}

CExpTable* CArbitrator::GetExpTable()
{
    return &m_expTable;
}

VOID CArbitrator::SetFlcikerMode(StatisticsAntibanding flickerMode)
{
    m_session.flickerMode = flickerMode;
    if (StatisticsAntibanding50Hz == flickerMode)
    {
        m_session.flickerHalfPeriod = FlickerHalfPeriod50Hz;
    }
    else if (StatisticsAntibanding60Hz == flickerMode)
    {
        m_session.flickerHalfPeriod = FlickerHalfPeriod60Hz;
    }
}

FLOAT CArbitrator::GetMinExpIdxForATB()
{
    // Without a flicker grid the table's own bottom is reachable; with one, exposure cannot go below one half period.
    if ((StatisticsAntibandingOff == m_session.flickerMode) || (StatisticsAntibandingAuto == m_session.flickerMode))
    {
        return m_session.arbExpLimit.expIndex.min;
    }
    return m_expTable.GetMinExpIndexFromExpTime(m_session.flickerHalfPeriod);
}
