/* Lens motor records: motor status, iris tables and the commands queued for the host's lens driver. */
#ifndef AECORE_AECORE_LDM_H
#define AECORE_AECORE_LDM_H

#include "aecore/aecore_types.h"

AECORE_EXTERN_C_BEGIN

typedef enum LDMMotorId
{
    LDMMotorPIris = 0,
    LDMMotorFocus = 1,
    LDMMotorZoom  = 2,
    LDMMotorMax   = 3
} LDMMotorId;

typedef enum LDMLensPowerLevel
{
    LDMPowerlevelOff    = 0,
    LDMPowerlevelWeak   = 1,
    LDMPowerlevelStrong = 2,
    LDMPowerlevelMax    = 3
} LDMLensPowerLevel;

/* Kind of payload of one queued motor command. */
typedef enum LDMSetStepMotorConfigType
{
    LDMSetMotorMovingRelative = 0,
    LDMSetMotorMovingAbsolute = 1,
    LDMSetMotorControl        = 2,
    LDMSetMax                 = 3
} LDMSetStepMotorConfigType;

/* ---- What the lens reports ---- */

typedef struct LDMMotorStatusInfo
{
    LDMMotorId motorId;
    BOOL       isMoving;
    INT32      motorCurPosition;
} LDMMotorStatusInfo;

/* Which motors the lens has. */
typedef struct LDMLensCap
{
    BOOL PIris;
    BOOL zoom;
} LDMLensCap;

typedef struct LDMMotorSystemConfig
{
    LDMMotorId motorId;
    UINT32     microStepPerMotorFullStep;
    INT32      PIPosition;
    UINT32     backlashStep;
    UINT32     speed;
} LDMMotorSystemConfig;

typedef struct LDMLensPowerLevelData
{
    LDMMotorId        motorId;
    LDMLensPowerLevel powerLevel;
} LDMLensPowerLevelData;

/* Iris calibration: per zoom step (row) and iris position (column) the f-number and the motor step. */
typedef struct LDMIrisTableData
{
    UINT32  irisTableZoomSize;
    UINT32  irisTableIrisSize;
    INT32*  zoomTable;
    FLOAT** irisFnTable;
    UINT32** irisStepTable;
} LDMIrisTableData;

typedef struct LDMDeviceCharacData
{
    LDMIrisTableData* pIrisTable;
} LDMDeviceCharacData;

/* Payload of the lens state set parameter. */
typedef struct LDMSetAECInputMotorInfo
{
    LDMLensCap           LensCap;
    LDMMotorSystemConfig MotorSystemConfig;
    LDMDeviceCharacData  DeviceCharacData;
} LDMSetAECInputMotorInfo;

/* ---- What the library commands ---- */

typedef struct LDMMotorMoveRelativeData
{
    LDMMotorId motorId;
    INT32      direction;
    UINT32     step;
} LDMMotorMoveRelativeData;

typedef struct LDMMotorMoveAbsoluteData
{
    LDMMotorId motorId;
    INT32      absolutePosition;
} LDMMotorMoveAbsoluteData;

typedef struct LDMMotorControlData
{
    LDMMotorId        motorId;
    UINT32            speed;
    LDMLensPowerLevel powerLevel;
    INT32             backlashStep;
} LDMMotorControlData;

/* One queued command; pData points to the record that dataType names. */
typedef struct LDMSetMotorInfo
{
    void*                     pData;
    UINT32                    sizeOfData;
    LDMSetStepMotorConfigType dataType;
} LDMSetMotorInfo;

/* The command queue the host reads by pointer from the process output list. */
typedef struct LDMSetMotorInfoList
{
    LDMSetMotorInfo* pLDMCmd;
    SIZE_T           numberOfSetCmd;
} LDMSetMotorInfoList;

#if defined(__LP64__)
/* Payload sizes of the queued commands and of the lens state set parameter. */
AECORE_STATIC_ASSERT(sizeof(LDMMotorControlData) == 16, "a motor control command is 16 bytes");
AECORE_STATIC_ASSERT(sizeof(LDMMotorMoveAbsoluteData) == 8, "an absolute move command is 8 bytes");
AECORE_STATIC_ASSERT(sizeof(LDMMotorMoveRelativeData) == 12, "a relative move command is 12 bytes");
AECORE_STATIC_ASSERT(sizeof(LDMSetAECInputMotorInfo) == 40, "LDMSetAECInputMotorInfo must be 40 bytes");
/* Only isMoving and motorCurPosition of a motor status entry are taken over: 8 bytes. */
AECORE_STATIC_ASSERT(sizeof(LDMMotorStatusInfo) - offsetof(LDMMotorStatusInfo, isMoving) == 8,
                     "isMoving and motorCurPosition close the motor status record");
#endif

AECORE_EXTERN_C_END

#endif /* AECORE_AECORE_LDM_H */
