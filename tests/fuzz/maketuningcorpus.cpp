// Writes the seed corpus of the parameter file fuzz targets: small files of every format generation.
//
// Usage: aecore_maketuningcorpus OUTPUT_DIR  (the committed seeds are in tests/fuzz/corpus/tuningparser)
#include <cstdio>
#include <string>

#include "unit/tuningparser/cparameterfilebuilder.h"
#include "unit/tuningparser/ctestmodule.h"

namespace
{
TestModuleTypeClass::Values Values(UINT32 first)
{
    TestModuleTypeClass::Values values;
    values.first = first;
    values.gain  = 1.25f;
    for (UINT32 i = 0; i < 8; i++)
    {
        values.fixed[i] = i;
    }
    values.list  = {1, -2, 3};
    values.label = "seed";
    values.a     = 4;
    values.b     = 0.5f;
    values.last  = 9;
    return values;
}

// Root, Usecase.Video below it, Scene.Portrait below that, a linked Usecase.Snapshot; modules in three of them.
ByteVector Tree(UINT16 major, UINT16 minor, UINT32 patch, bool definitions, bool duplicates)
{
    CParameterFileBuilder builder(major, minor, patch);
    const VersionUnion    version = builder.Version();
    const UINT32          module  = 0;
    if (version >= VersionUnion::Make(1, 0, 2))
    {
        const UINT32 table = builder.AddModeTable("Main");
        builder.AddMode(table, 0, 0, 0, 0);
        builder.AddMode(table, 1, 2, 2, 0);
        builder.AddMode(table, 2, 5, 6, 1, CParameterFileBuilder::NoLink, 1);
        builder.AddMode(table, 3, 2, 1, 0, 1);
        builder.AddMode(table, 4, 3, 1, 0);
        builder.AddMode(table, 5, 3, 2, 4);
    }
    const UINT32 listDup = duplicates ? 1 : 0;
    builder.AddModule("TestModule", TestModuleTypeClass::SourceVersion, module,
                      TestModuleTypeClass::Write(builder, Values(1), listDup));
    if (version >= VersionUnion::Make(1, 0, 2))
    {
        builder.AddModule("TestModule", TestModuleTypeClass::SourceVersion, CParameterFileBuilder::ModeId(0, 1),
                          TestModuleTypeClass::Write(builder, Values(2), listDup));
        builder.AddModule("OtherModule", TestModuleTypeClass::SourceVersion, CParameterFileBuilder::ModeId(0, 2),
                          TestModuleTypeClass::Write(builder, Values(3)));
        builder.AddModule("TestModule", TestModuleTypeClass::SourceVersion, CParameterFileBuilder::ModeId(0, 5),
                          TestModuleTypeClass::Write(builder, Values(4)));
    }
    if (definitions)
    {
        CDefinitionWriter defs;
        defs.ScenarioMode().EnumDefinition();
        TestModuleTypeClass::Define(defs, "TestModule");
        defs.Module(1, "OtherModule");
        builder.SetDefinitions(defs.Bytes());
    }
    return builder.Build();
}

bool Write(const std::string& directory, const std::string& name, const ByteVector& bytes)
{
    const std::string path  = directory + "/" + name;
    FILE*             pFile = std::fopen(path.c_str(), "wb");
    if (nullptr == pFile)
    {
        return false;
    }
    const bool ok = (bytes.size() == std::fwrite(bytes.data(), 1, bytes.size(), pFile));
    return (0 == std::fclose(pFile)) && ok;
}
} // namespace

int main(int argc, char** argv)
{
    if (argc != 2)
    {
        std::fprintf(stderr, "usage: %s OUTPUT_DIR\n", argv[0]);
        return 2;
    }
    const std::string out = argv[1];
    bool ok = Write(out, "v1_0_1_default_only", Tree(1, 0, 1, false, false));
    ok = ok && Write(out, "v1_1_0_aligned8", Tree(1, 1, 0, false, false));
    ok = ok && Write(out, "v3_0_1_packed", Tree(3, 0, 1, false, false));
    ok = ok && Write(out, "v5_0_0_data_table", Tree(5, 0, 0, false, true));
    ok = ok && Write(out, "v6_0_0_definitions", Tree(6, 0, 0, true, false));
    ok = ok && Write(out, "v7_0_0_tree", Tree(7, 0, 0, false, true));
    ok = ok && Write(out, "v7_0_0_definitions", Tree(7, 0, 0, true, true));
    return ok ? 0 : 1;
}
