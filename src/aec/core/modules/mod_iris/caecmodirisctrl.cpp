// Iris control module stand-in: no P-iris motor commands are computed until the iris control stage lands.
#include "aec/core/modules/mod_iris/caecmodirisctrl.h"

CAECModIrisCtrl::CAECModIrisCtrl(IAECContext* pContext, IIrisCtrlCallback* /*pCallback*/)
{
    m_aecContext = pContext;
}

AecResult CAECModIrisCtrl::ProcessIris(const AECIrisFrameProcInput* /*pInput*/, AECIrisFrameProcOutput* /*pOutput*/)
{
    // The caller zeroed the output: no motor command is flagged.
    return AecSuccess;
}

BOOL CAECModIrisCtrl::QueryPIrisSettleInfo()
{
    return TRUE;
}

AecResult CAECModIrisCtrl::OnLDMIrisTable(LDMIrisTableData /*irisTable*/)
{
    return AecSuccess;
}
