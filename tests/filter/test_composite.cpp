#include "filter/expectedtext.h"
#include "support/graph.h"

#include "corvale/filter/filtercomposite.h"

#include <gtest/gtest.h>

#include <map>
#include <sstream>

using namespace support;

namespace {

const StringHash p("p");

// a -> [pass] -> passed
//            `-> [add] -> sum, same        b -> [add]        `spare` leads nowhere
class Composite : public testing::Test
{
protected:
    Composite()
    {
        for (const auto& [name, filter] : {std::pair("add", add), {"pass", pass}, {"spare", spare}})
            EXPECT_TRUE(composite->addNode(graph.node(name, filter)));
        composite->getNode("add")->getInput("left")->attach(composite->getNode("pass")->getOutput(""));
        EXPECT_TRUE(composite->exportInput("pass", "", "a") && composite->exportInput("add", "right", "b"));
        EXPECT_TRUE(composite->exportOutput("add", "out", "sum") &&
                    composite->exportOutput("add", "", "same") &&
                    composite->exportOutput("pass", "out", "passed"));
    }

    Graph graph;
    const boost::shared_ptr<ProbeFilter> add = probe("Add", "left right"), pass = probe("Pass", "in"),
                                         spare = probe("Spare", "in");
    const boost::shared_ptr<FilterComposite> composite = boost::make_shared<FilterComposite>("C");
    const boost::shared_ptr<NodeSource> x = graph.source("x", number(1)), y = graph.source("y");
};

TEST_F(Composite, ComputesEachReachableNodeOnceHoweverOftenItIsExported)
{
    const auto node = graph.node("n", composite, {x, y});
    for (const auto& output : node->getOutputs())
        graph.sink(output->getName(), output);
    EXPECT_EQ(graph.run(), "passed=1 same=- sum=- ") << "whether an input is mandatory is decided inside";
    trace.take();
    composite->getNode("add")->getInput("right")->setDefaultData(number(7)); // as a program does
    EXPECT_EQ(graph.run(), "passed=1 same=8 sum=8 ");
    EXPECT_EQ(trace.take(),
              "Pass enter 3, Add enter 2, Pass apply 5, Add apply 3, Add leave 3, Pass leave 3, ");
}

// Two nodes whose addresses alone are told apart by their texts, but not by the hashes of those.
TEST_F(Composite, KeepsItsPlacesApartWhereverTheirNodesLie)
{
    alignas(NodeFilter) static char room[1 << 23];
    std::map<std::uint64_t, char*> places;
    std::vector<boost::shared_ptr<NodeFilter>> nodes;
    const auto end = [](NodeFilter* node) { node->~NodeFilter(); };
    for (char* place = room; nodes.empty(); place += 64) {
        ASSERT_LT(place + sizeof(NodeFilter), std::end(room)) << "no such addresses";
        std::ostringstream text;
        text << "p__" << static_cast<void*>(place);
        char* const other = places.emplace(StringHash(text.str())._hash, place).first->second;
        if (place >= other + sizeof(NodeFilter))
            nodes = {{new (other) NodeFilter("n", composite), end},
                     {new (place) NodeFilter("m", composite), end}};
    }
    for (const int i : {0, 1}) {
        nodes[i]->getInput("a")->attach(graph.source("s", number(i))->getOutput(""));
        graph.sink(std::to_string(i), nodes[i]->getOutput("passed"));
    }
    EXPECT_EQ(graph.run(), "0=0 1=1 ");
}

// Two uses of C inside D, D used twice in one process: four places of each inner node.
TEST_F(Composite, KeepsItsPlacesApartWhenNested)
{
    const auto outer = boost::make_shared<FilterComposite>("D");
    const auto n = graph.node("n", composite), m = graph.node("m", composite, {n});
    EXPECT_TRUE(outer->addNode(n) && outer->addNode(m));
    for (const auto& [node, port, name] : {std::tuple("n", "a", "x"), {"n", "b", "y"}, {"m", "b", "z"}})
        EXPECT_TRUE(outer->exportInput(node, port, name));
    outer->exportOutput("m", "sum", "out");
    const auto ten = graph.source("ten", number(10));
    const auto first = graph.node("first", outer, {x, ten, ten});
    graph.sink("1", first->getOutput("out"));
    graph.sink("2", graph.node("second", outer, {first, x, ten})->getOutput("out"));
    EXPECT_EQ(graph.run(), "1=21 2=32 ");
    EXPECT_EQ(words(trace.take()).size(), 4u * 2 * 3 * 3) << "entered, applied and left at four places";
}

TEST_F(Composite, AbortsInsideWhenItIsAskedForNothing)
{
    const auto node = graph.node("n", composite, {x, x});
    graph.sink("k", graph.node("lacking", probe("f", "missing in"), {{}, node})->getOutput(""));
    EXPECT_EQ(graph.run(), "k=- ");
    EXPECT_EQ(trace.take(), "Pass enter 4, Add enter 3, f enter 1, Pass abort 7, Add abort 5, Add leave 5, "
                            "Pass leave 5, f abort 2, f leave 2, ");
}

TEST_F(Composite, RefusesWrongNumbersAndNames)
{
    for (const int inputs : {1, 3})
        EXPECT_TRUE(composite->applyFilter(Values(inputs), p, p, 0).empty());
    EXPECT_FALSE(composite->addNode(graph.node("add", pass)));
    EXPECT_FALSE(composite->exportInput("x", "in", "in") || composite->exportOutput("x", "out", "out") ||
                 composite->exportInput("add", "x", "x") || composite->exportInput("add", "", "x") ||
                 composite->exportOutput("add", "x", "x"));
    EXPECT_EQ(graph.state(),
              "\n1 C->applyFilter(): missing input data\n1 C->applyFilter(): missing input data"
              "\n2 Can't add node \"add\": node is already present."
              "\n2 Can't retrieved node \"x\": node unknown."
              "\n2 Can't retrieved node \"x\": node unknown.");
}

// C(x) -> y: a -> b, both of the primitive filter F. Each expected text ends with the last number used.
TEST(Dump, OpensLevelByLevel)
{
    Graph graph;
    FilterComposite composite("C");
    const auto a = graph.node("a", probe("F", "in")), b = graph.node("b", probe("F", "in"), {a});
    EXPECT_TRUE(composite.addNode(b) && composite.addNode(a));
    EXPECT_TRUE(composite.exportInput("a", "in", "x") && composite.exportOutput("b", "out", "y"));
    const auto dump = [](const Filter& filter, int depth) {
        long counter = 0;
        return inOrder({filter.dumpToDot(counter, depth), std::to_string(counter), "\n"});
    };
    EXPECT_EQ(dump(composite, 0), expectedText("closed.txt"));
    EXPECT_EQ(dump(composite, 1), expectedText("nodes.txt"));
    for (const int depth : {2, 3, -1})
        EXPECT_EQ(dump(composite, depth), expectedText("open.txt"));
    EXPECT_EQ(dump(*a->getFilter(), 5), expectedText("primitive.txt"));
}

} // namespace
