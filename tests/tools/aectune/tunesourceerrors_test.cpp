// Bad tuning sources: every problem is reported with its line and column or its JSON path, and nothing is written.
#include <gtest/gtest.h>

#include "tunetesthelpers.h"

using namespace AecTuneTest;

namespace
{

// Compiles a source that must fail and returns what was reported.
std::string Errors(const std::string& text, const std::string& version = "7.0.0")
{
    std::vector<UINT8> file;
    std::string        messages;
    EXPECT_FALSE(Compile(text, version, true, 0, &file, &messages));
    EXPECT_TRUE(file.empty());
    return messages;
}

// A module with one member of the given type and the given Default values.
std::string Module(const std::string& type, const std::string& values)
{
    return R"({ "types": [ { "name": "E", "enum": { "On": 1, "Off": 0 } },
                           { "name": "P", "members": [ { "name": "a", "type": "FLOAT" } ] } ],
                "modules": [ { "name": "M", "version": "1.0.0", "members": [ { "name": "m", "type": ")" +
           type + R"(" } ], "values": { "Default": )" + values + " } } ] }";
}

} // namespace

TEST(TuneSourceErrors, SyntaxErrorNamesLineAndColumn)
{
    EXPECT_EQ("source.json:3:3: syntax error while parsing value - unexpected ']'; expected '[', '{', or a literal\n",
              Errors("{\n  \"modules\": [ {},\n  ]\n}"));
}

TEST(TuneSourceErrors, CommentsAreAllowed)
{
    std::vector<UINT8> file;
    EXPECT_TRUE(Compile("// a comment\n{ /* none */ }", "7.0.0", true, 0, &file));
}

TEST(TuneSourceErrors, UnknownKeysAreNamedByTheirPath)
{
    EXPECT_EQ("source.json: bogus: unknown key (allowed: header, types, modeTables, modules, file)\n"
              "source.json: header.tag: unknown key (allowed: createdBy, binaryTag, flags)\n",
              Errors(R"({ "bogus": 1, "header": { "tag": "x" } })"));
}

TEST(TuneSourceErrors, UnknownTypeAndBadArraySuffix)
{
    EXPECT_EQ("source.json: modules[0].members[0].type: unknown type 'FLAOT'\n", Errors(Module("FLAOT", "{}")));
    EXPECT_EQ("source.json: modules[0].members[0].type: array size '0' must be a positive integer\n",
              Errors(Module("FLOAT[0]", "{}")));
    EXPECT_EQ("source.json: modules[0].members[0].type: '[2..2]' has one count: write it as a fixed array '[2]'\n",
              Errors(Module("FLOAT[2..2]", "{}")));
    EXPECT_EQ("source.json: modules[0].members[0].type: a variable array '[]' or '[min..max]' must be the only "
              "dimension, with min <= max and max > 0\n",
              Errors(Module("FLOAT[2][]", "{}")));
}

TEST(TuneSourceErrors, ValuesOutOfRangeOrOfTheWrongKind)
{
    EXPECT_EQ("source.json: modules[0].values.Default.m: 300 is out of the range of 'UINT8'\n",
              Errors(Module("UINT8", R"({ "m": 300 })")));
    EXPECT_EQ("source.json: modules[0].values.Default.m: -1 is out of the range of 'UINT32'\n",
              Errors(Module("UINT32", R"({ "m": -1 })")));
    EXPECT_EQ("source.json: modules[0].values.Default.m: expected an integer\n",
              Errors(Module("INT16", R"({ "m": 1.5 })")));
    EXPECT_EQ("source.json: modules[0].values.Default.m: expected true, false, 0 or 1\n",
              Errors(Module("BOOL", R"({ "m": 2 })")));
    EXPECT_EQ("source.json: modules[0].values.Default.m[1]: 'Maybe' is no value of E\n",
              Errors(Module("E[2]", R"({ "m": ["On", "Maybe"] })")));
    EXPECT_EQ("source.json: modules[0].values.Default.m: 3 elements, 'FLOAT[2]' holds 2\n",
              Errors(Module("FLOAT[2]", R"({ "m": [1, 2, 3] })")));
    EXPECT_EQ("source.json: modules[0].values.Default.m: 2 elements, 'FLOAT[0..1]' takes 0 to 1\n",
              Errors(Module("FLOAT[0..1]", R"({ "m": [1, 2] })")));
    EXPECT_EQ("source.json: modules[0].values.Default.m[1]: expected an array of 2 elements\n",
              Errors(Module("FLOAT[2][2]", R"({ "m": [[1, 2], [3]] })")));
    EXPECT_EQ("source.json: modules[0].values.Default.m.b: 'P' has no member of this name\n",
              Errors(Module("P", R"({ "m": { "b": 1 } })")));
    EXPECT_EQ("source.json: modules[0].values.Default.m: expected a string or null\n",
              Errors(Module("STRING", R"({ "m": 5 })")));
    EXPECT_EQ("source.json: modules[0].values.Default.m: out of the range of FLOAT\n",
              Errors(Module("FLOAT", R"({ "m": 1e300 })")));
}

TEST(TuneSourceErrors, ModeTreeMistakes)
{
    EXPECT_EQ("source.json: modeTables[0].modes[0].mode: only the root of a table is Default\n",
              Errors(R"({ "modeTables": [ { "modes": [ { "mode": "Default" } ] } ] })"));
    EXPECT_EQ("source.json: modeTables[0].modes[1]: mode 'Scene.Night' declared twice\n",
              Errors(R"({ "modeTables": [ { "modes": [ { "mode": "Scene.Night" }, { "mode": "5.5" } ] } ] })"));
    EXPECT_EQ("source.json: modeTables[0].modes[0].mode: unknown sub-mode 'Moon' of mode Scene\n",
              Errors(R"({ "modeTables": [ { "modes": [ { "mode": "Scene.Moon" } ] } ] })"));
    EXPECT_EQ("source.json: modeTables[0].modes[0].link: a mode cannot link to itself\n",
              Errors(R"({ "modeTables": [ { "modes": [ { "mode": "Scene.Night", "link": "Scene.Night" } ] } ] })"));
    EXPECT_EQ("source.json: modeTables[0].modes[0].link: no mode 'Scene.Snow' in mode table ''\n",
              Errors(R"({ "modeTables": [ { "modes": [ { "mode": "Scene.Night", "link": "Scene.Snow" } ] } ] })"));
    EXPECT_EQ("source.json: modeTables[0].modes[0].children[0]: a mode equal to its parent only adds a group; it "
              "takes no children, link or preserve of its own\n",
              Errors(R"({ "modeTables": [ { "modes": [ { "mode": "Scene.Night", "children": [
                          { "mode": "Scene.Night", "group": "STATS", "preserve": true } ] } ] } ] })"));
    EXPECT_EQ("source.json: modeTables[0]: mode table name 'this name is longer than thirty-one' is longer than 31 "
              "characters\n",
              Errors(R"({ "modeTables": [ { "name": "this name is longer than thirty-one" } ] })", "5.0.0"));
}

TEST(TuneSourceErrors, ValuesForUnknownModes)
{
    EXPECT_EQ("source.json: modules[0].values[\"Usecase.Video\"]: no mode 'Usecase.Video' in mode table ''\n",
              Errors(R"({ "modules": [ { "name": "M", "version": "1.0.0", "members": [],
                                         "values": { "Usecase.Video": {} } } ] })"));
    EXPECT_EQ("source.json: modules[0].values[\"Other:Default\"]: unknown mode table 'Other'\n",
              Errors(R"({ "modules": [ { "name": "M", "version": "1.0.0", "members": [],
                                         "values": { "Other:Default": {} } } ] })"));
}

TEST(TuneSourceErrors, RecordsThatHoldThemselves)
{
    EXPECT_EQ("source.json: types[0].members[0]: record 'R' contains itself; only a variable array may refer back "
              "to it\n",
              Errors(R"({ "types": [ { "name": "R", "members": [ { "name": "r", "type": "R" } ] } ] })"));
}

TEST(TuneSourceErrors, WhatAnOlderVersionCannotHoldIsDroppedWithAWarning)
{
    const char* const source = R"({ "header": { "binaryTag": "t", "flags": 4 },
      "modeTables": [ { "name": "Main", "modes": [ { "mode": "Scene.Night", "preserve": true, "link": "Default" } ] },
                      { "name": "Other" } ],
      "modules": [ { "name": "M", "version": "1.0.0", "members": [], "values": { "Scene.Night": {} } } ] })";
    std::vector<UINT8> file;
    std::string        messages;
    ASSERT_TRUE(Compile(source, "1.1.0", true, 0, &file, &messages));
    EXPECT_EQ("source.json: header.flags: warning: version 1.1.0 has no header flags; dropped\n"
              "source.json: modeTables: warning: version 1.1.0 holds one mode table; only the first is written\n"
              "source.json: modeTables[0]: warning: version 1.1.0 has no mode table names; name dropped\n"
              "source.json: modeTables[0].modes[0]: warning: version 1.1.0 has no mode links; link dropped\n"
              "source.json: modeTables[0].modes[0]: warning: version 1.1.0 has no mode flags; preserve dropped\n",
              messages);
    ASSERT_TRUE(Compile(source, "1.0.1", true, 0, &file, &messages));
    EXPECT_EQ("source.json: header.binaryTag: warning: version 1.0.1 has no BinaryTag; dropped\n"
              "source.json: header.flags: warning: version 1.0.1 has no header flags; dropped\n"
              "source.json: modules[0].values[\"Scene.Night\"]: warning: version 1.0.1 cannot hold this mode; "
              "values dropped\n"
              "source.json: modules: warning: no module values to write\n",
              messages);
}

TEST(TuneSourceErrors, CompressedFlagIsWrittenWithAWarning)
{
    std::vector<UINT8> file;
    std::string        messages;
    ASSERT_TRUE(Compile(R"({ "header": { "flags": 2 } })", "7.0.0", true, 0, &file, &messages));
    EXPECT_EQ("source.json: header.flags: warning: flag 2 marks a compressed file, which readers refuse\n"
              "source.json: modules: warning: no module values to write\n",
              messages);
    EXPECT_EQ(2u, Field(file, 152, 8));
}
