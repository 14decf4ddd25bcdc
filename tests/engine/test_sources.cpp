#include "engine/enginetest.h"

using namespace support;
using testing::ElementsAre;

using SourceTest = EngineTest;

TEST_F(SourceTest, AnAliasReadsItsTargetEvenOnceItsNameIsGone)
{
    engine.createSource("t");
    engine.setData("t", value(2));
    engine.createSourceAlias("alias", "s");
    pass(engine, "p", "alias");
    EXPECT_THAT(engine.getSources(), ElementsAre("s", "t"));
    EXPECT_TRUE(engine.deleteSource("s"));
    EXPECT_EQ(text(engine.getSourceData("alias")) + get("p:out"), "11");
    EXPECT_TRUE(engine.retargetSourceAlias("alias", "t"));
    engine.setData("t", value(3));
    EXPECT_EQ(text(engine.getSourceData("alias")) + get("p:out"), "33");
    engine.deleteSource("t");
    EXPECT_TRUE(engine.deleteSource("alias"));
    EXPECT_FALSE(engine.getSourceData("alias"));
    EXPECT_TRUE(engine.setData("p:alias", value(4)));
    EXPECT_EQ(get("p:out"), "4") << "a process keeps its nodes";
}

TEST_F(SourceTest, ARenamedAliasKeepsTheNameOfItsNode)
{
    engine.createSourceAlias("old", "s");
    EXPECT_TRUE(engine.renameSourceAlias("old", "new"));
    EXPECT_FALSE(engine.getSourceData("old"));
    EXPECT_TRUE(pass(engine, "p", "new"));
    EXPECT_THAT(engine.getProcessSources("p"), ElementsAre("old"));
    EXPECT_TRUE(engine.setData("p:old", value(5))) << "a process's source forwards to the target";
    EXPECT_EQ(text(engine.getSourceData("s")), "5");
    EXPECT_TRUE(engine.createSource("old")) << "the former name is free";
    EXPECT_FALSE(engine.isSourceBound("s")) << "the question goes by the names that processes show";
}

TEST_F(SourceTest, ASourceOfAProcessSinkComputesThatProcess)
{
    pass(engine, "first", "s");
    make(engine, "pair", "Duplicate", {{"in", "s"}}, {{"left", "both"}, {"right", "both"}});
    EXPECT_TRUE(engine.createSourceFromProcessSink("x", "first:out"));
    EXPECT_TRUE(engine.createSourceFromProcessSink("y", " pair : both "));
    pass(engine, "second", "x");
    pass(engine, "third", "y");
    engine.setData("s", value(3));
    EXPECT_EQ(get("second:out"), "3");
    EXPECT_EQ(get("third:out"), "{3;3}");
}

TEST_F(SourceTest, WhetherItIsBoundIsRememberedByNameAndByDeletedAliases)
{
    EXPECT_FALSE(engine.isSourceBound("t"));
    engine.createSource("t");
    engine.createSourceAlias("alias", "s");
    pass(engine, "p", "alias");
    EXPECT_TRUE(engine.isSourceBound("s") && engine.isSourceBound("alias")) << "through the alias";
    EXPECT_FALSE(engine.isSourceBound("t"));
    engine.deleteSource("alias");
    EXPECT_TRUE(engine.isSourceBound("s")) << "the alias stays among those of its target";
    EXPECT_EQ(engine.getSourceFrequency("s"), always);
    engine.createSourceAlias("alias", "t");
    engine.retargetSourceAlias("alias", "t");
    EXPECT_TRUE(engine.isSourceBound("s") && engine.isSourceBound("t")) << "the name stands in both sets";
    engine.deleteSource("s");
    EXPECT_TRUE(engine.isSourceBound("s")) << "no deletion empties the memory";
    engine.retargetSourceAlias("alias", "t");
    EXPECT_FALSE(engine.isSourceBound("s"));
    engine.disableProcess("p");
    EXPECT_FALSE(engine.isSourceBound("t"));
}

TEST_F(SourceTest, ItsFrequencyIsTheHighestOfItsActiveReaders)
{
    engine.createSourceAlias("alias", "s");
    for (const auto& [name, source, frequency] :
         {std::tuple("p", "s", 5.0f), std::tuple("q", "alias", 30.0f), std::tuple("r", "s", 0.0f)})
        make(engine, name, "Identity", {{"in", source}}, {{"out", "out"}}, {}, {}, 0, frequency);
    EXPECT_EQ(engine.getSourceFrequency("s"), 30.0f);
    EXPECT_EQ(engine.getSourceFrequency("alias"), 30.0f);
    engine.disableProcess("q");
    EXPECT_EQ(engine.getSourceFrequency("s"), 5.0f);
    engine.deleteProcess("p");
    EXPECT_EQ(engine.getSourceFrequency("s"), 0.0f);
    EXPECT_TRUE(engine.isSourceBound("s")) << "by a reader that stands still";
}
