// Camera threads load and release modules of different modes while a tuning thread changes values.
#include <gtest/gtest.h>

#include <atomic>
#include <thread>
#include <vector>

#include "tuning/parser/parsercrc.h"
#include "unit/tuningparser/clogcapture.h"
#include "unit/tuningparser/tuningparsertesthelpers.h"

TEST(ParameterStoreConcurrency, ModeLoadsReleasesAndValueChangesRunTogether)
{
    CLogCapture           quiet;
    CParameterFileBuilder builder(7, 0, 0);
    const UINT32          table = builder.AddModeTable("Main");
    builder.AddMode(table, 0, 0, 0, 0);
    std::vector<std::vector<TuningMode>> branches;
    UINT32                               index = 1;
    for (UINT16 usecase = 0; usecase < 6; usecase++)
    {
        const UINT32 parent = index++;
        builder.AddMode(table, parent, 2, usecase, 0);
        for (UINT16 scene = 1; scene <= 3; scene++)
        {
            builder.AddMode(table, index, 5, scene, parent);
            TestModuleTypeClass::Values values;
            values.first = 1000 * usecase + scene;
            values.list  = {1, 2, 3};
            values.label = "shared";
            builder.AddModule("TestModule", TestModuleTypeClass::SourceVersion, CParameterFileBuilder::ModeId(0, index),
                              TestModuleTypeClass::Write(builder, values));
            branches.push_back({Mode(ModeType::Default, 0), Mode(ModeType::Usecase, usecase), Mode(ModeType::Scene, scene)});
            index++;
        }
    }
    TestModuleTypeClass::Values root;
    root.first = 1;
    builder.AddModule("TestModule", TestModuleTypeClass::SourceVersion, 0, TestModuleTypeClass::Write(builder, root));
    builder.AddData(ByteVector(4000, 0));
    const std::string name    = WriteTempFile(builder.Build());
    auto              manager = MakeManager(true, 5);
    ASSERT_TRUE(manager->LoadBinaryParameters(name.c_str()));

    std::atomic<UINT32>      wrong{0};
    std::atomic<bool>        stop{false};
    std::vector<std::thread> cameras;
    for (UINT32 t = 0; t < 4; t++)
    {
        cameras.emplace_back([&, t]() {
            ParameterModule* pHeld = nullptr;
            for (UINT32 i = 0; i < 300; i++)
            {
                const std::vector<TuningMode>& branch = branches[(t * 5 + i * 7) % branches.size()];
                pHeld = manager->GetModuleInternal(0, "TestModule", branch.data(), 3, pHeld, 1);
                const UINT32 expected = 1000 * branch[1].subMode.value + branch[2].subMode.value;
                if ((nullptr == pHeld) || (AsTest(pHeld)->first != expected) || (3U != AsTest(pHeld)->listCount) ||
                    (3 != AsTest(pHeld)->list[2]))
                {
                    wrong++;
                }
            }
            manager->ReleaseModule(pHeld);
        });
    }
    std::thread tuning([&]() {
        UINT32 value = 0;
        // At least one change reaches the protected mode, even when the cameras finish before this thread runs.
        do
        {
            CHAR text[16];
            std::snprintf(text, sizeof(text), "%u", value++);
            // The root module, and a module of a mode that the change then protects from trimming.
            manager->SetValue(0, (0 == (value & 1)) ? "0.0" : "0.0|2.1|5.2", "TestModule", "last", text);
            std::this_thread::yield();
        } while (!stop.load());
    });
    for (std::thread& camera : cameras)
    {
        camera.join();
    }
    stop = true;
    tuning.join();

    EXPECT_EQ(0U, wrong.load());
    ParameterModeTable* pTable = manager->GetModeTable(0);
    for (UINT32 slot = 0; slot < pTable->Count; slot++)
    {
        EXPECT_EQ(0U, pTable->Modes[slot].Entry->GetReferenceCount(nullptr)) << "slot " << slot;
    }
    EXPECT_LE(pTable->ActiveModes.Count(), 5U + 1U);
    const TuningMode changed[] = {Mode(ModeType::Default, 0), Mode(ModeType::Usecase, 1), Mode(ModeType::Scene, 2)};
    EXPECT_TRUE(manager->GetModeEntry(0, changed, 3)->Preserve);
    EXPECT_TRUE(manager->GetModeEntry(0, changed, 3)->Loaded);
    EXPECT_EQ(0U, manager->GetSymbolTable()->File()->RefCount());
    RemoveFile(name);
}
