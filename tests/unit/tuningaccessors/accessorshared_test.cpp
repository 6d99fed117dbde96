// Blocks of one duplicate group shared by two instances of a generated module: loaded once, released once.
#include <gtest/gtest.h>

#include <string>

#include "tuning/parser/parametersetmanager.h"
#include "tuning_aecskip_module.h"
#include "unit/tuningparser/cparameterfilebuilder.h"
#include "unit/tuningparser/clogcapture.h"

namespace
{

// An aecSkipCtrl record in the code's layout (a file without definitions): the zones and the revision text are
// out-of-line blocks given by reference.
ByteVector SkipRecord(CParameterFileBuilder& builder, UINT32 revision, INT32 maxHistory, UINT32 zones)
{
    CRecordWriter w = builder.Writer();
    w.Begin();
    w.Begin().I32(1).I32(0).I32(0).End();
    w.Begin().U32(6).U32(revision).End();
    w.U32(1).F32(2.5f).I32(maxHistory).U32(0).U32(1);
    w.U32(2).U32(zones);
    w.End();
    return w.Bytes();
}

ByteVector Zones(CParameterFileBuilder& builder)
{
    CRecordWriter w = builder.Writer();
    for (INT32 i = 0; i < 2; i++)
    {
        w.Begin();
        w.Begin().F32(10.0f * i).F32(10.0f * i + 5.0f).End();
        w.Begin().I32(i + 3).I32(i + 7).End();
        w.End();
    }
    return w.Bytes();
}

TEST(AccessorSharedBlocks, TwoInstancesOfOneDuplicateGroupShareBlocksThatGoWithTheLastUnload)
{
    CLogCapture           log;
    CParameterFileBuilder builder(7, 0, 0);
    const UINT32          table = builder.AddModeTable("Main");
    builder.AddMode(table, 0, 0, 0, 0);
    builder.AddMode(table, 1, 2, 2, 0);
    // Two copies of each block, the second naming the first as its duplicate: one group each.
    const ByteVector text      = {'r', 'e', 'v', ' ', '1', 0};
    const UINT32     revision  = builder.AddData(text, 1);
    const UINT32     revision2 = builder.AddData(text, 1);
    const UINT32     zones     = builder.AddData(Zones(builder), 3);
    const UINT32     zones2    = builder.AddData(Zones(builder), 3);
    const VersionUnion version = aecSkip::AECSkipCtrlTypeClass::SourceVersion;
    builder.AddModule("aecSkipCtrl", version, 0, SkipRecord(builder, revision, 5, zones));
    builder.AddModule("aecSkipCtrl", version, CParameterFileBuilder::ModeId(0, 1),
                      SkipRecord(builder, revision2, 9, zones2));
    ByteVector file = builder.Build();

    ParameterSetManager manager(nullptr, 0, "shared");
    manager.AddDefaultModule(new aecSkip::AECSkipCtrlTypeClass("aecSkipCtrl", nullptr));
    ASSERT_TRUE(manager.LoadBinaryParameters(file.data(), file.size()));
    const TuningMode root[]  = {{ModeType::Default, {0}}};
    const TuningMode video[] = {{ModeType::Default, {0}}, {ModeType::Usecase, {2}}};
    auto* pRoot  = static_cast<aecSkip::AECSkipCtrlTypeClass*>(manager.GetModuleInternal(0, "aecSkipCtrl", root, 1,
                                                                                          nullptr, 1));
    auto* pVideo = static_cast<aecSkip::AECSkipCtrlTypeClass*>(manager.GetModuleInternal(0, "aecSkipCtrl", video, 2,
                                                                                          nullptr, 1));
    ASSERT_NE(pRoot, nullptr);
    ASSERT_NE(pVideo, nullptr);
    ASSERT_NE(pRoot, pVideo);
    EXPECT_EQ(pRoot->DFSMaxHistoryCount, 5);
    EXPECT_EQ(pVideo->DFSMaxHistoryCount, 9);
    ASSERT_EQ(pRoot->DFSSkipCountZoneCount, 2u);
    EXPECT_EQ(pRoot->DFSSkipCountZone[1].zoneData.DFSMinSettleThreshold, 8);
    EXPECT_FLOAT_EQ(pRoot->DFSSkipCountZone[1].zoneTrigger.end, 15.0f);
    EXPECT_STREQ(pRoot->parameter_version.revision, "rev 1");
    EXPECT_EQ(pRoot->DFSSkipCountZone, pVideo->DFSSkipCountZone);
    EXPECT_EQ(pRoot->parameter_version.revision, pVideo->parameter_version.revision);

    const aecSkip::DFSSkipCountZoneType* pZones = pVideo->DFSSkipCountZone;
    ASSERT_TRUE(pRoot->UnloadModule());
    EXPECT_EQ(pRoot->DFSSkipCountZone, nullptr);
    EXPECT_EQ(pRoot->parameter_version.revision, nullptr);
    // Still the second instance's: readable (a sanitizer build would report a freed block or a second release).
    EXPECT_EQ(pZones[0].zoneData.DFSSkipCount, 3);
    EXPECT_STREQ(pVideo->parameter_version.revision, "rev 1");
    ASSERT_TRUE(pVideo->UnloadModule());
    EXPECT_EQ(pVideo->DFSSkipCountZone, nullptr);
    manager.ReleaseModule(pRoot);
    manager.ReleaseModule(pVideo);
    EXPECT_FALSE(log.Contains("DupInfo object were not released"));
}

} // namespace
