/* Layout of the host interface on LP64: size and alignment of every type, a sample of field offsets, every enumerator. */
#ifndef AECORE_TESTS_UNIT_ABI_ABI_LAYOUT_LIST_H
#define AECORE_TESTS_UNIT_ABI_ABI_LAYOUT_LIST_H

/* The C and the C++ side each expand these lists, so that both compilers measure the same items. */

/* X(type, size, alignment): every record, then every enumeration type */
#define AECORE_ABI_TYPES(X) \
    X(StatsRectangle, 16, 4) \
    X(StatsDimension, 8, 4) \
    X(StatsDataPointer, 16, 8) \
    X(StatsRange, 16, 8) \
    X(StatsAECCapInfo, 48, 8) \
    X(StatsSensorInfo, 184, 8) \
    X(StatsCameraInfo, 8, 4) \
    X(StatsBayerGridFlags, 4, 4) \
    X(StatsBayerGridChannelInfo, 24, 4) \
    X(StatsBayerGridChannelInfoS_Sat, 48, 4) \
    X(StatsBayerGrid, 112, 8) \
    X(StatsBayerHist, 72, 8) \
    X(StatsIHist, 64, 8) \
    X(StatsHDR3ExposureHistStats, 88, 8) \
    X(StatsHDR3ExposureDataType, 392, 8) \
    X(HDR3ExposureStats, 16, 8) \
    X(StatsSHDRParams, 1088, 4) \
    X(StatsBayerGridBayerExposureConfig, 92, 4) \
    X(StatsBayerHistogramConfig, 28, 4) \
    X(StatsVendorTag, 32, 8) \
    X(StatsVendorTagList, 1608, 8) \
    X(StatsVendorTagInfo, 12, 4) \
    X(StatsVendorTagInfoList, 604, 4) \
    X(LDMMotorStatusInfo, 12, 4) \
    X(LDMLensCap, 8, 4) \
    X(LDMMotorSystemConfig, 20, 4) \
    X(LDMLensPowerLevelData, 8, 4) \
    X(LDMIrisTableData, 32, 8) \
    X(LDMDeviceCharacData, 8, 8) \
    X(LDMSetAECInputMotorInfo, 40, 8) \
    X(LDMMotorMoveRelativeData, 12, 4) \
    X(LDMMotorMoveAbsoluteData, 8, 4) \
    X(LDMMotorControlData, 16, 4) \
    X(LDMSetMotorInfo, 16, 8) \
    X(LDMSetMotorInfoList, 16, 8) \
    X(AECAlgoInputStatsInfo, 24, 8) \
    X(AECAlgoExposureData, 48, 8) \
    X(AECAlgoExposureInfo, 56, 8) \
    X(AECAlgoExposureSet, 24, 8) \
    X(AECAlgoAPEXData, 20, 4) \
    X(AECYHistStretchData, 12, 4) \
    X(AECAlgoApertureData, 8, 4) \
    X(InSensorHDR3ExpTriggerInfo, 12, 4) \
    X(AECAlgoDecompandData, 520, 4) \
    X(AECAlgoFrameControl, 664, 8) \
    X(AECAlgoROI, 20, 4) \
    X(AECAlgoFrameInfo, 1096, 8) \
    X(AECAlgoCreateParam, 16, 8) \
    X(AECAlgoCreateParamList, 16, 8) \
    X(AECAlgoDestroyParam, 24, 8) \
    X(AECAlgoDestroyParamList, 16, 8) \
    X(AECAlgoSetParam, 16, 8) \
    X(AECAlgoSetParamList, 16, 8) \
    X(AECAlgoInput, 16, 8) \
    X(AECAlgoInputList, 16, 8) \
    X(AECAlgoOutput, 24, 8) \
    X(AECAlgoOutputList, 16, 8) \
    X(AECAlgoGetParamInput, 24, 8) \
    X(AECAlgoGetParamInputList, 16, 8) \
    X(AECAlgoGetParamOutput, 24, 8) \
    X(AECAlgoGetParamOutputList, 16, 8) \
    X(AECAlgoGetParam, 40, 8) \
    X(StatsTuningData, 24, 8) \
    X(AECAlgoManualSetting, 32, 8) \
    X(AECAlgoFPSRange, 8, 4) \
    X(AWBFaceSAAdjustedROI, 8, 4) \
    X(AECAlgoWhiteBalanceState, 28, 4) \
    X(AECAlgoROIList, 16, 8) \
    X(StatsROIData, 24, 4) \
    X(UnstabilizedROIInformation, 400, 8) \
    X(AECAlgoOverrideSettingParam, 48, 4) \
    X(AECAlgoFlashCalibrationData, 24, 8) \
    X(AECAlgoSensorInfo, 128, 8) \
    X(AECAlgoDiagConfig, 28, 4) \
    X(AECAlgoStartupSensitivity, 20, 4) \
    X(AECAlgoStartupIndices, 20, 4) \
    X(StatsGyroInfo, 664, 8) \
    X(StatsPeerInfoCombo, 88, 8) \
    X(AECAlgoRelativeDCCalibrationInfo, 24, 4) \
    X(AECAlgoAbsoluteDCCalibrationInfo, 12, 4) \
    X(AECAlgoDCCalibrationInfo, 28, 4) \
    X(AECDCGConfig, 8, 4) \
    X(AECCustomExposureTable, 1024, 8) \
    X(AECCustomMeteringTable, 1028, 4) \
    X(AECAlgoSnapshotConfig, 12, 4) \
    X(AECAlgoDebugDataConfig, 24, 8) \
    X(AECAlgoEVCapabilities, 3, 1) \
    X(AECAlgoFlashMeasurementConfig, 12, 4) \
    X(FlashMeasurement, 16, 4) \
    X(AECAlgoFlashMeasurementResult, 16, 8) \
    X(LyrVendorTagBaseInfo, 24, 8) \
    X(LyrAlgorithmInterface, 48, 8) \
    X(LyrAlgorithmCapsInfo, 8, 4) \
    X(LyrAECAlgorithmCallbacks, 48, 8) \
    X(AECLEDSettingPair, 8, 4) \
    X(LYRAECAlgorithm, 40, 8) \
    X(StatsLogGroup, 4, 4) \
    X(StatsLog, 4, 4) \
    X(AECAlgoCreateParamsType, 4, 4) \
    X(AECAlgoDestroyParamType, 4, 4) \
    X(AECAlgoOperationModeType, 4, 4) \
    X(AECAlgoMeteringModeType, 4, 4) \
    X(AECAlgoModeType, 4, 4) \
    X(AECAlgoLockType, 4, 4) \
    X(AECAlgoLEDModeType, 4, 4) \
    X(AECAlgoFlashStateType, 4, 4) \
    X(AECAlgoFlashMeasKindType, 4, 4) \
    X(AECAlgoFlashMeasStatusType, 4, 4) \
    X(AECAlgoSnapshotType, 4, 4) \
    X(AECAlgoTouchEVType, 4, 4) \
    X(AECAlgoHDRType, 4, 4) \
    X(HDRSensorType, 4, 4) \
    X(SHDRAECMODE, 4, 4) \
    X(AECAlgoExposureType, 4, 4) \
    X(AECAlgoStartupMode, 4, 4) \
    X(AECAlgoSeamlessMode, 4, 4) \
    X(AECIRLedState, 4, 4) \
    X(StatisticsAntibanding, 4, 4) \
    X(StatsAlgoRole, 4, 4) \
    X(StatisticsStartUp, 4, 4) \
    X(AECAlgoDiagnosticTestCase, 4, 4) \
    X(ApertureSwitchStateType, 4, 4) \
    X(LYRHDRDCGMODE, 4, 4) \
    X(StatsColorChannelType, 4, 4) \
    X(ColorChannel, 4, 4) \
    X(StatsROISelection, 4, 4) \
    X(MeasurementRegionType, 4, 4) \
    X(HDR3ExposureMergedType, 4, 4) \
    X(HDR3ExposureType, 4, 4) \
    X(StatsVendorTagPublishType, 4, 4) \
    X(AECAlgoInputType, 4, 4) \
    X(AECAlgoOutputType, 4, 4) \
    X(AECAlgoSetParamType, 4, 4) \
    X(AECAlgoGetParamType, 4, 4) \
    X(AECAlgoGetParamInputType, 4, 4) \
    X(AECAlgoGetParamOutputType, 4, 4) \
    X(LDMMotorId, 4, 4) \
    X(LDMLensPowerLevel, 4, 4) \
    X(LDMSetStepMotorConfigType, 4, 4)

/* X(record, field, offset) */
#define AECORE_ABI_FIELDS(X) \
    X(StatsBayerGrid, gridDataType, 32) \
    X(StatsBayerGrid, horizontalRegionCount, 48) \
    X(StatsBayerGrid, bitDepth, 68) \
    X(StatsBayerGrid, flags, 72) \
    X(StatsBayerGrid, satThreshold, 76) \
    X(StatsBayerGrid, numValidRegions, 92) \
    X(StatsBayerGrid, startupMode, 96) \
    X(StatsBayerGrid, exposureType, 100) \
    X(StatsBayerGrid, m_pChannelData, 104) \
    X(StatsBayerGridChannelInfo, GSum, 8) \
    X(StatsBayerGridChannelInfo, YSum, 12) \
    X(StatsBayerGridChannelInfo, RCount, 16) \
    X(StatsBayerGridChannelInfo, GCount, 20) \
    X(StatsBayerGridChannelInfo, YCount, 22) \
    X(StatsBayerGridChannelInfoS_Sat, saturatedRSum, 24) \
    X(StatsBayerGridChannelInfoS_Sat, saturatedGBCount, 46) \
    X(StatsBayerHist, pHistData, 8) \
    X(StatsBayerHist, histDataType, 40) \
    X(StatsBayerHist, binCount, 56) \
    X(StatsBayerHist, uniform, 64) \
    X(StatsBayerHist, exposureType, 68) \
    X(StatsIHist, numBins, 4) \
    X(StatsIHist, channelData, 16) \
    X(StatsIHist, exposureType, 60) \
    X(StatsHDR3ExposureHistStats, histWeightUnit, 56) \
    X(StatsHDR3ExposureHistStats, measurementRegion, 60) \
    X(StatsHDR3ExposureHistStats, mergedType, 80) \
    X(StatsHDR3ExposureDataType, mergedBayerHist, 96) \
    X(StatsHDR3ExposureDataType, gridBayerStats, 192) \
    X(StatsHDR3ExposureDataType, ROIBayerHist, 304) \
    X(HDR3ExposureStats, HDR3ExposureType, 8) \
    X(HDR3ExposureStats, startupMode, 12) \
    X(StatsSHDRParams, tmFactor, 16) \
    X(StatsSHDRParams, swSHDRGTMGamma, 52) \
    X(StatsSHDRParams, darkN1, 1084) \
    X(StatsBayerGridBayerExposureConfig, ROISelection, 56) \
    X(StatsBayerGridBayerExposureConfig, outputBitDepth, 60) \
    X(StatsBayerGridBayerExposureConfig, enableYStatsComputation, 64) \
    X(StatsBayerGridBayerExposureConfig, YStatsWeights, 68) \
    X(StatsBayerGridBayerExposureConfig, HWStatsSkippingFactor, 88) \
    X(StatsBayerHistogramConfig, ROI, 8) \
    X(StatsBayerHistogramConfig, ROISelection, 24) \
    X(StatsVendorTag, pData, 8) \
    X(StatsVendorTag, appliedDelay, 24) \
    X(StatsVendorTagList, vendorTag, 8) \
    X(StatsVendorTagInfoList, vendorTag, 4) \
    X(StatsSensorInfo, sensorCapabilities, 40) \
    X(StatsSensorInfo, pixelSumFactor, 56) \
    X(StatsSensorInfo, fNumber, 60) \
    X(StatsSensorInfo, rollingShutterSkew, 80) \
    X(StatsSensorInfo, exposureTime, 88) \
    X(StatsSensorInfo, sensorAECCapstime, 136) \
    X(LDMSetAECInputMotorInfo, MotorSystemConfig, 8) \
    X(LDMSetAECInputMotorInfo, DeviceCharacData, 32) \
    X(LDMIrisTableData, zoomTable, 8) \
    X(LDMSetMotorInfo, sizeOfData, 8) \
    X(LDMSetMotorInfo, dataType, 12) \
    X(LDMSetMotorInfoList, numberOfSetCmd, 8) \
    X(AECAlgoInputStatsInfo, prepareBeforePreflash, 8) \
    X(AECAlgoInputStatsInfo, statsWindowsSize, 12) \
    X(AECAlgoInputStatsInfo, bIsTorchAEC, 20) \
    X(AECAlgoExposureData, linearGain, 16) \
    X(AECAlgoExposureData, fnumber, 40) \
    X(AECAlgoExposureInfo, exposureData, 8) \
    X(AECAlgoExposureSet, exposureInfoCount, 8) \
    X(AECAlgoExposureSet, exposureInfoOutputSize, 20) \
    X(AECAlgoFrameControl, ISOValue, 20) \
    X(AECAlgoFrameControl, stretchControl, 24) \
    X(AECAlgoFrameControl, predictiveGain, 44) \
    X(AECAlgoFrameControl, isInSensorHDR3ExpSnapshot, 56) \
    X(AECAlgoFrameControl, apertureSwitchInfo, 60) \
    X(AECAlgoFrameControl, inSensorHDR3ExpTriggerOutput, 68) \
    X(AECAlgoFrameControl, snapshotFlashDuration, 88) \
    X(AECAlgoFrameControl, compensationDarkBoostGain, 96) \
    X(AECAlgoFrameControl, meterTargetExp, 104) \
    X(AECAlgoFrameControl, IRModeActivated, 132) \
    X(AECAlgoFrameControl, IRLedIntensity, 136) \
    X(AECAlgoFrameControl, decompandData, 140) \
    X(AECAlgoFrameInfo, LEDAFRequired, 24) \
    X(AECAlgoFrameInfo, legacyYStats, 28) \
    X(AECAlgoFrameInfo, LEDFDDelayRequired, 1052) \
    X(AECAlgoFrameInfo, DebugDataSizeWritten, 1056) \
    X(AECAlgoFrameInfo, frameLuma, 1064) \
    X(AECAlgoFrameInfo, processedROI, 1068) \
    X(AECAlgoFrameInfo, pixCntRatioLEF, 1088) \
    X(AECAlgoCreateParam, sizeOfCreateParam, 8) \
    X(AECAlgoCreateParam, createParamType, 12) \
    X(AECAlgoDestroyParam, pParam, 8) \
    X(AECAlgoDestroyParam, sizeOfParam, 16) \
    X(AECAlgoSetParam, setParamType, 12) \
    X(AECAlgoInput, inputType, 12) \
    X(AECAlgoOutput, sizeOfWrittenAECOutput, 12) \
    X(AECAlgoOutput, outputType, 16) \
    X(AECAlgoGetParamInput, pInputData, 8) \
    X(AECAlgoGetParamOutput, outputType, 16) \
    X(AECAlgoGetParam, inputList, 8) \
    X(AECAlgoGetParam, outputList, 24) \
    X(AECAlgoManualSetting, exposureTime, 8) \
    X(AECAlgoManualSetting, prioMaxExpTime, 24) \
    X(AECAlgoWhiteBalanceState, faceSAAdjustedROI, 20) \
    X(UnstabilizedROIInformation, roiCount, 8) \
    X(UnstabilizedROIInformation, roi, 12) \
    X(AECAlgoOverrideSettingParam, shdrmode, 36) \
    X(AECAlgoOverrideSettingParam, isRGBIREnaled, 44) \
    X(AECAlgoFlashCalibrationData, pRGRatios, 8) \
    X(AECAlgoSensorInfo, minimumStreamExpTime, 24) \
    X(AECAlgoSensorInfo, sensorResWidth, 56) \
    X(AECAlgoSensorInfo, maxLEFExpTime, 120) \
    X(AECAlgoStartupSensitivity, startMode, 12) \
    X(StatsGyroInfo, sampleCount, 4) \
    X(StatsGyroInfo, pAngularVelocityX, 8) \
    X(StatsGyroInfo, gyroSqr, 392) \
    X(StatsGyroInfo, timeStamp, 400) \
    X(StatsGyroInfo, samplingTimeMillisec, 656) \
    X(StatsPeerInfoCombo, cameraId, 20) \
    X(StatsPeerInfoCombo, pPeerInfo, 56) \
    X(AECAlgoDCCalibrationInfo, relative, 4) \
    X(AECAlgoDCCalibrationInfo, absolute, 4) \
    X(AECCustomExposureTable, gain, 12) \
    X(AECCustomExposureTable, expTime, 216) \
    X(AECCustomExposureTable, incrementPriority, 616) \
    X(AECCustomExposureTable, antiBandingMinimumTimePercentageThreshold, 1016) \
    X(AECCustomMeteringTable, meteringTableSize, 1024) \
    X(AECAlgoSnapshotConfig, EVVal, 8) \
    X(AECAlgoDebugDataConfig, sizeofDebugDataWritten, 16) \
    X(AECAlgoFlashMeasurementResult, pFlashPoints, 8) \
    X(LyrVendorTagBaseInfo, pComponentName, 8) \
    X(LyrAlgorithmInterface, pGetMetadata, 16) \
    X(LyrAlgorithmInterface, pQueryVendorTagLocation, 40) \
    X(LyrAECAlgorithmCallbacks, pfnGetCapabilities, 16) \
    X(LyrAECAlgorithmCallbacks, pfnSetAlgoInterface, 40) \
    X(LYRAECAlgorithm, AECGetFeatureCapability, 24) \
    X(LYRAECAlgorithm, AECDestroy, 32)

/* X(enumerator, value) */
#define AECORE_ABI_ENUMERATORS(X) \
    X(StatsLogGroupNone, 0) \
    X(StatsLogGroupAWB, 1) \
    X(StatsLogGroupAEC, 2) \
    X(StatsLogError, 2) \
    X(StatsLogWarning, 4) \
    X(StatsLogInfo, 16) \
    X(StatsLogVerbose, 32) \
    X(AECAlgoCreateParamsInvalid, -1) \
    X(AECAlgoCreateParamsLoggerFunctionPtr, 0) \
    X(AECAlgoCreateParamTypeSessionHandle, 1) \
    X(AECAlgoCreateParamTypeCameraOpenIndicator, 2) \
    X(AECAlgoCreateParamTypeCameraInfo, 3) \
    X(AECCreateParamsTypeTuningData, 4) \
    X(AECAlgoCreateParamTypeCount, 5) \
    X(AECAlgoCreateParamsMax, 0x7FFFFFFF) \
    X(AECDestroyParamTypeInvalid, -1) \
    X(AECDestroyParamTypeCameraCloseIndicator, 0) \
    X(AECDestroyParamTypeCameraInfo, 1) \
    X(AECDestroyParamTypeCount, 2) \
    X(AECDestroyParamTypeMax, 0x7FFFFFFF) \
    X(AECAlgoOperationModeInit, 0) \
    X(AECAlgoOperationModeStreaming, 1) \
    X(AECAlgoOperationModePreflash, 2) \
    X(AECAlgoOperationModeFastAEC, 3) \
    X(AECAlgoOperationModeAggressiveAEC, 4) \
    X(AECAlgoOperationModeFlashMeasurement, 5) \
    X(AECAlgoOperationModeCount, 6) \
    X(AECAlgoOperationModeMax, 0x7FFFFFFF) \
    X(AECAlgoMeteringModeFrameAverage, 0) \
    X(AECAlgoMeteringModeCenterWeighted, 1) \
    X(AECAlgoMeteringModeSpot, 2) \
    X(AECAlgoMeteringModeCustom, 3) \
    X(AECAlgoMeteringModeMax, 0x7FFFFFFF) \
    X(AECAlgoModeAuto, 0) \
    X(AECAlgoModeManualISO, 1) \
    X(AECAlgoModeManualGain, 2) \
    X(AECAlgoModeManualExpTime, 3) \
    X(AECAlgoModeManualFull, 4) \
    X(AECAlgoModeManualAperture, 5) \
    X(AECAlgoModePirisMaxExpPriority, 6) \
    X(AECAlgoModePASMIris, 7) \
    X(AECAlgoModePASMISO, 8) \
    X(AECAlgoModePASMIrisISO, 9) \
    X(AECAlgoModePASMExpTime, 10) \
    X(AECAlgoModePASMExpTimeISO, 11) \
    X(AECAlgoModePASMExpTimeIris, 12) \
    X(AECAlgoModePASMFullManual, 13) \
    X(AECAlgoModeMax, 0x7FFFFFFF) \
    X(AECAlgoLockOFF, 0) \
    X(AECAlgoLockOn, 1) \
    X(AECAlgoLockMax, 0x7FFFFFFF) \
    X(AECAlgoLEDModeOff, 0) \
    X(AECAlgoLEDModeAuto, 1) \
    X(AECAlgoLEDModeOn, 2) \
    X(AECAlgoLEDModeMax, 0x7FFFFFFF) \
    X(AECAlgoFlashStateOff, 0) \
    X(AECAlgoFlashStatePre, 1) \
    X(AECAlgoFlashStateMain, 2) \
    X(AECAlgoFlashStateCalibaration, 3) \
    X(AECAlgoFlashStateMax, 0x7FFFFFFF) \
    X(AECAlgoFlashMeasKindOff, 0) \
    X(AECAlgoFlashMeasKindCalib, 1) \
    X(AECAlgoFlashMeasKindTuning, 2) \
    X(AECAlgoFlashMeasKindMax, 0x7FFFFFFF) \
    X(AECAlgoFlashMeasStatusOngoing, 0) \
    X(AECAlgoFlashMeasStatusPass, 1) \
    X(AECAlgoFlashMeasStatusFail, 2) \
    X(AECAlgoFlashMeasStatusBreak, 3) \
    X(AECAlgoFlashMeasStatusMax, 0x7FFFFFFF) \
    X(AECAlgoSnapshotNormal, 0) \
    X(AECAlgoSnapshotFlash, 1) \
    X(AECAlgoSnapshotLLS, 2) \
    X(AECAlgoSnapshotZLL, 3) \
    X(AECAlgoSnapshotCount, 4) \
    X(AECAlgoSnapshotMax, 0x7FFFFFFF) \
    X(AECAlgoTouchEVInactive, 0) \
    X(AECAlgoTouchEVConverging, 1) \
    X(AECAlgoTouchEVSettled, 2) \
    X(AECAlgoTouchEVSceneChange, 3) \
    X(AECAlgoTouchEVMax, 0x7FFFFFFF) \
    X(HDRDisabled, 0) \
    X(ISPHDR, 1) \
    X(SensorHDR, 2) \
    X(StaggeredHDR, 3) \
    X(MultiframeHDR, 4) \
    X(LinearMode, 0) \
    X(ShdrMode, 1) \
    X(DCGplusVSMode, 2) \
    X(DCGplusLoficMode, 3) \
    X(HDRSensorTypeMax, 0x7FFFFFFF) \
    X(SHDRAECMODEDEFAULT, 0) \
    X(SHDRAECMODEV2RAW2FRAME, 1) \
    X(SHDRAECMODEV38YUV2FRAME, 2) \
    X(SHDRAECMODEV38YUV3FRAME, 3) \
    X(SHDRAECMODEMAX, 0x7FFFFFFF) \
    X(AECAlgoExposureInvalid, -1) \
    X(AECAlgoExposureDefault, 0) \
    X(AECAlgoExposureShort, 0) \
    X(AECAlgoExposureLong, 1) \
    X(AECAlgoExposureSafe, 2) \
    X(AECAlgoExposureCount, 3) \
    X(AECAlgoExposureMax, 0x7FFFFFFF) \
    X(AECAlgoStartupModeInvalid, -1) \
    X(AECAlgoStartupModeNormal, 0) \
    X(AECAlgoStartupModeFastConvergence, 1) \
    X(AECAlgoStartupModeWarmStart, 2) \
    X(AECAlgoSeamlessBinning, 0) \
    X(AECAlgoSeamless3HDR, 1) \
    X(AECIRLedOFF, 0) \
    X(AECIRLedON, 1) \
    X(AECIRLedAUTO, 2) \
    X(AECIRLedIRCutOnly, 3) \
    X(AECIRLedMAX, 0x7FFFFFFF) \
    X(StatisticsAntibandingInvalid, -1) \
    X(StatisticsAntibandingOff, 0) \
    X(StatisticsAntibanding50Hz, 1) \
    X(StatisticsAntibanding60Hz, 2) \
    X(StatisticsAntibandingAuto, 3) \
    X(StatisticsAntibandingAuto_50HZ, 4) \
    X(StatisticsAntibandingAuto_60HZ, 5) \
    X(StatisticsAntibandingMax, 0x7FFFFFFF) \
    X(StatsAlgoRoleDefault, 0) \
    X(StatsAlgoRoleMaster, 1) \
    X(StatsAlgoRoleSlave, 2) \
    X(StatsAlgoRoleMax, 0x7FFFFFFF) \
    X(StatisticsStartUpValid, 0) \
    X(StatisticsStartUpInvalid, 1) \
    X(AECAlgoTestCaseTimeSweep, 0) \
    X(AECAlgoTestCaseGainSweep, 1) \
    X(AECAlgoTestCaseToggleTest, 2) \
    X(AECAlgoTestCaseExpTimeSweepDelay, 3) \
    X(AECAlgoTestCaseGainSweepDelay, 4) \
    X(AECAlgoTestCaseToggleTestDelay, 5) \
    X(AECAlgoTestCaseCount, 6) \
    X(AECAlgoTestCaseMax, 7) \
    X(ApertureSwitchIdle, 0) \
    X(ApertureSwitchStart, 1) \
    X(ApertureSwitchInProgress, 2) \
    X(ApertureSwitchCompleted, 3) \
    X(ApertureSwitchReserved, 4) \
    X(LYRHDRDCGModeNone, 0) \
    X(LYRHDRDCGModeDCG, 1) \
    X(LYRHDRDCGModeMax, 0x7FFFFFFF) \
    X(StatsColorChannelInvalid, -1) \
    X(StatsColorChannelR, 0) \
    X(StatsColorChannelGR, 1) \
    X(StatsColorChannelGB, 2) \
    X(StatsColorChannelB, 3) \
    X(StatsColorChannelG, 4) \
    X(StatsColorChannelY, 5) \
    X(ColorChannelR, 1) \
    X(ColorChannelGR, 2) \
    X(ColorChannelGB, 3) \
    X(ColorChannelB, 4) \
    X(ColorChannelG, 5) \
    X(ColorChannelY, 6) \
    X(StatsROISelectionCustom, 0) \
    X(StatsROISelectionCroppedFOV, 1) \
    X(StatsROISelectionFullFOV, 2) \
    X(GlobalRegion, 0) \
    X(ROIWindowRegion, 1) \
    X(HDR3ExpSplitLong, 0) \
    X(HDR3ExpSplitMiddle, 1) \
    X(HDR3ExpSplitShort, 2) \
    X(HDR3ExpMerged, 3) \
    X(HDR3ExposureTypeUnknown, 0) \
    X(HDR3ExposureType1, 1) \
    X(HDR3ExposureType2, 2) \
    X(HDR3ExposureTypeMax, 0x7FFFFFFF) \
    X(NonPartialMetadata, 0) \
    X(PartialMetadata, 1) \
    X(AECAlgoInputInvalid, -1) \
    X(AECAlgoInputStatisticInfo, 0) \
    X(AECAlgoInputBayerGrid, 1) \
    X(AECAlgoInputBayerHist, 2) \
    X(AECAlgoInputIHist, 3) \
    X(AECAlgoInputVendorTag, 4) \
    X(AECAlgoInputDebugData, 5) \
    X(AECAlgoInputStatsLyrHandle, 6) \
    X(AECAlgoInputHDRBHist, 7) \
    X(AECAlgoInputCameraInfo, 8) \
    X(AECAlgoInputBayerGridROI, 9) \
    X(AECAlgoInputRDIStats, 10) \
    X(AECAlgoInputTintlessBGStats, 11) \
    X(AECAlgoInputLensShadingInfo, 12) \
    X(AECAlgoInputHDRStatsCount, 13) \
    X(AECAlgoInputStatsRequestID, 14) \
    X(AECAlgoInputBayerHistNonUniform, 15) \
    X(AECAlgoInputBayerGridLEF, 16) \
    X(AECAlgoInputBayerHistLEF, 17) \
    X(AECAlgoInputHDRBHistLEF, 18) \
    X(AECAlgoInputSHDRInterPolatedData, 19) \
    X(AECAlgoInputBayerGridMEF, 20) \
    X(AECAlgoInputHDRBHistMEF, 21) \
    X(AECAlgoInputPIrisMotorSatus, 22) \
    X(AECAlgoInputZoomMotorSatus, 23) \
    X(AECAlgoInputIRCutALS, 24) \
    X(AECAlgoInputCount, 25) \
    X(AECAlgoInputMax, 0x7FFFFFFF) \
    X(AECAlgoOutputInvalid, -1) \
    X(AECAlgoOutputFrameInfo, 0) \
    X(AECAlgoOutputFrameControl, 1) \
    X(AECAlgoOutputEXIFApex, 2) \
    X(AECAlgoOutputLEDCurrents, 3) \
    X(AECAlgoOutputExposureSets, 4) \
    X(AECAlgoOutputRealExposureSets, 5) \
    X(AECAlgoOutputBGConfig, 6) \
    X(AECAlgoOutputAdditionalInfo, 7) \
    X(AECAlgoOutputVendorTag, 8) \
    X(AECAlgoOutputStretchControl, 9) \
    X(AECAlgoOutputBHistConfig, 10) \
    X(AECAlgoOutputLDMCmdQueue, 11) \
    X(AECAlgoOutputSkipStatsParse, 12) \
    X(AECAlgoOutputCount, 13) \
    X(AECAlgoOutputMax, 0x7FFFFFFF) \
    X(AECAlgoSetParamExpTableRange, 0) \
    X(AECAlgoSetParamOperationMode, 1) \
    X(AECAlgoSetParamSorentaData, 2) \
    X(AECAlgoSetParamMeteringMode, 3) \
    X(AECAlgoSetParamExposureCompensation, 4) \
    X(AECAlgoSetParamFlickerCompensation, 5) \
    X(AECAlgoSetParamManualSetting, 6) \
    X(AECAlgoSetParamAECLock, 7) \
    X(AECAlgoSetParamFPSRange, 8) \
    X(AECAlgoSetParamLEDMode, 9) \
    X(AECAlgoSetParamTouchROI, 10) \
    X(AECAlgoSetParamFaceROI, 11) \
    X(AECAlgoSetParamAWBState, 12) \
    X(AECAlgoSetParamGyroInfo, 13) \
    X(AECAlgoSetParamOverrideSetting, 14) \
    X(AECAlgoSetParamFlashMeasurement, 15) \
    X(AECAlgoSetParamFlashCalibrationData, 16) \
    X(AECAlgoSetParamDebugDataEnable, 17) \
    X(AECAlgoSetParamSensorInfo, 18) \
    X(AECAlgoSetParamCameraInfo, 19) \
    X(AECAlgoSetParamFlashMaximumCurrent, 20) \
    X(AECAlgoSetParamSetDiagTestConfig, 21) \
    X(AECAlgoSetParamStartUpExpSensitivity, 22) \
    X(AECAlgoSetParamStatsCapability, 23) \
    X(AECAlgoSetParamCropWindow, 24) \
    X(AECAlgoSetParamPipelineDelay, 25) \
    X(AECAlgoSetParamPeerInfo, 26) \
    X(AECAlgoSetParamDualcamCalibrationInfo, 27) \
    X(AECAlgoSetParamDCGMode, 28) \
    X(AECAlgoSetParamMultiExpSensorMode, 29) \
    X(AECAlgoSetParamIsDualCamera, 30) \
    X(AECAlgoSetParamUnstabilizedFaceROI, 31) \
    X(AECAlgoSetParamControlPostRawSensitivityBoost, 32) \
    X(AECAlgoSetParamCustomExposureTable, 33) \
    X(AECAlgoSetParamCustomMeteringTable, 34) \
    X(AECAlgoSetParamDisableADRC, 35) \
    X(AECAlgoSetParamIRLedState, 36) \
    X(AECAlgoSetParamIRLedSystemConfig, 37) \
    X(AECAlgoSetParamConvergenceSpeed, 38) \
    X(AECAlgoSetParamFlashInlineCalibrationData, 39) \
    X(AECAlgoSetParamIsFlashInfluencedStats, 40) \
    X(AECAlgoSetParamFlashInlineCalibrationMode, 41) \
    X(AECAlgoSetParamTrackerROI, 42) \
    X(AECAlgoSetParamframeID, 43) \
    X(AECAlgoSetParamApertureCalibrationInfo, 44) \
    X(AECAlgoSetParamAmbientRaw, 45) \
    X(AECAlgoSetParamSaliencyMapData, 46) \
    X(AECAlgoSetParamZLLData, 47) \
    X(AECAlgoSetParamMagnetometerInfo, 48) \
    X(AECAlgoSetParamLightInfo, 49) \
    X(AECAlgoSetParamAFDFrameInfo, 50) \
    X(AECAlgoSetParamBYRCamera, 51) \
    X(AECAlgoSetParamLDMStateQueue, 52) \
    X(AECAlgoSetParamDecompandSystemConfig, 53) \
    X(AECAlgoSetParamCount, 54) \
    X(AECAlgoSetParamMax, 0x7FFFFFFF) \
    X(AECAlgoGetParamInvalid, 0) \
    X(AECAlgoGetParamStartExposure, 1) \
    X(AECAlgoGetParamSnapshotExposure, 2) \
    X(AECAlgoGetParamGainFromISOPreview, 3) \
    X(AECAlgoGetParamGainFromISOSnapshot, 4) \
    X(AECAlgoGetParamEVCapabilities, 5) \
    X(AECAlgoGetParamDebugData, 6) \
    X(AECAlgoGetParamSWVersion, 7) \
    X(AECAlgoGetParamFlashMeasurementConfig, 8) \
    X(AECAlgoGetParamFlashMeasurementResult, 9) \
    X(AECAlgoGetParamPublishingVendorTagsInfo, 10) \
    X(AECAlgoGetParamDependentVendorTags, 11) \
    X(AECAlgoGetParamBGStatsConfig, 12) \
    X(AECAlgoGetParamPeerInfo, 13) \
    X(AECAlgoGetParamBHistStatsConfig, 14) \
    X(AECAlgoGetParamDynamicCalibrationData, 15) \
    X(AECAlgoGetParamSnapshotType, 16) \
    X(AECAlgoGetParamCount, 17) \
    X(AECAlgoGetParamMax, 0x7FFFFFFF) \
    X(AECAlgoGetParamInputInvalid, -1) \
    X(AECAlgoGetParamInputCameraInfo, 0) \
    X(AECAlgoGetParamInputSnapshotType, 1) \
    X(AECAlgoGetParamInputISOValue, 2) \
    X(AECAlgoGetParamInputDebugDataPointer, 3) \
    X(AECAlgoGetParamInputCount, 4) \
    X(AECAlgoGetParamInputIsFixedFocus, 5) \
    X(AECAlgoGetParamInputMax, 0x7FFFFFFF) \
    X(AECAlgoGetParamOutputInvalid, -1) \
    X(AECAlgoGetParamOutputFrameControl, 0) \
    X(AECAlgoGetParamOutputExposureSets, 1) \
    X(AECAlgoGetParamOutputLEDCurrents, 2) \
    X(AECAlgoGetParamOutputEXIFApex, 3) \
    X(AECAlgoGetParamOutputGain, 4) \
    X(AECAlgoGetParamOutputFlashMeasurementConfig, 5) \
    X(AECAlgoGetParamOutputFlashMeasurementResult, 6) \
    X(AECAlgoGetParamOutputDebugData, 7) \
    X(AECAlgoGetParamOutputSWVersion, 8) \
    X(AECAlgoGetParamOutputVendorTagInfoList, 9) \
    X(AECAlgoGetParamOutputBGStatsConfig, 10) \
    X(AECAlgoGetParamOutputEVCapabilities, 11) \
    X(AECGetParamOutputTypeDependentVendorTags, 12) \
    X(AECAlgoGetParamOutputPeerInfo, 13) \
    X(AECAlgoGetParamOutputBHistStatsConfig, 14) \
    X(AECAlgoGetParamOutputDynamicCalibrationData, 15) \
    X(AECAlgoGetParamOutputAdditionalInfo, 16) \
    X(AECAlgoGetParamOutputSnapshotType, 17) \
    X(AECAlgoGetParamOutputCount, 18) \
    X(AECAlgoGetParamOutputMax, 0x7FFFFFFF) \
    X(LDMMotorPIris, 0) \
    X(LDMMotorFocus, 1) \
    X(LDMMotorZoom, 2) \
    X(LDMMotorMax, 3) \
    X(LDMPowerlevelOff, 0) \
    X(LDMPowerlevelWeak, 1) \
    X(LDMPowerlevelStrong, 2) \
    X(LDMPowerlevelMax, 3) \
    X(LDMSetMotorMovingRelative, 0) \
    X(LDMSetMotorMovingAbsolute, 1) \
    X(LDMSetMotorControl, 2) \
    X(LDMSetMax, 3)

#endif /* AECORE_TESTS_UNIT_ABI_ABI_LAYOUT_LIST_H */
