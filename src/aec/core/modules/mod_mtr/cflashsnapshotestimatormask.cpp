// Hole filling of the 16 x 16 binary region masks of the flash estimator.
#include "aec/core/modules/mod_mtr/cflashsnapshotestimator.h"

#include "platform/statslogger.h"

VOID CFlashSnapshotEstimator::UtilDilateBinaryMask(INT32* pMask)
{
    constexpr UINT32 Side  = 16;
    constexpr UINT32 First = Side + 1;                     // second row, second column
    constexpr UINT32 Last  = LegacyRegionCount - Side - 2; // second last row, second last column
    if (nullptr == pMask)
    {
        AEC_LOG_ERROR("dilate: null mask");
        return;
    }
    // Filling in place decides the same as marking first: a hole's four neighbours are all 1, so none of them is a
    // hole whose decision the filling could change.
    for (UINT32 i = First; i <= Last; i++)
    {
        const UINT32 col = i % Side;
        if ((0 == pMask[i]) && (0 != col) && ((Side - 1) != col) && (1 == pMask[i - 1]) && (1 == pMask[i + 1]) &&
            (1 == pMask[i - Side]) && (1 == pMask[i + Side]))
        {
            pMask[i] = 1;
        }
    }
}
