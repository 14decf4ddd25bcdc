#include "support/graph.h"

#include "corvale/filter/filtercomposite.h"
#include "corvale/runtime/aggregatedsink.h"
#include "corvale/runtime/event.h"

#include <gtest/gtest.h>

#include <stdexcept>

using namespace support;

namespace {

const StringHash p("p");

// s -> a, b -> c -> two sinks; a changes the source while it runs.
TEST(Protocol, ADiamondSeesOneSnapshotAndComputesOnce)
{
    Graph graph;
    const auto source = graph.source("s", number(1));
    const auto changing = probe("a", "in", "out", [&](const Values& in) {
        EXPECT_EQ(source->activeScopes(), 1u) << "b has not read yet";
        source->setData(number(100));
        return in;
    });
    const auto c = probe("c", "x y", "out same");
    const auto b = graph.node("b", probe("b", "in"), {source});
    const auto top = graph.node("c", c, {graph.node("a", changing, {source}), b});
    graph.sink("1", top->getOutput("out"));
    const auto sink = graph.sink("2", top->getOutput("same"));
    sink->addEvent(boost::make_shared<Event>([&](Value value) {
        EXPECT_EQ(value, sink->getLastData());
        for (const auto& node : graph.nodes)
            EXPECT_EQ(node->activeScopes(), 0u) << node->getName() << " fired before all were released";
    }));
    for (const char* result : {"1=2 2=2 ", "1=200 2=200 "}) {
        EXPECT_EQ(graph.run(), result);
        EXPECT_EQ(trace.take(),
                  "a enter 2, b enter 2, c enter 1, a apply 4, a leave 4, b apply 4, b leave 4, "
                  "c apply 2, c leave 2, ");
    }
}

// The sink "2" reads c too, after c was asked for nothing.
TEST(NodeFilter, AsksForNothingMoreOnceAMandatoryInputIsMissing)
{
    Graph graph;
    const auto none = probe("b", "", "out", [](const Values&) { return Values{nullptr}; });
    const auto a = graph.node("a", probe("a", "")), b = graph.node("b", none),
               c = graph.node("c", probe("c", ""));
    graph.sink("1", graph.node("n", probe("f", "a b c"), {a, b, c})->getOutput(""));
    graph.sink("2", c->getOutput(""));
    EXPECT_EQ(graph.run(), "1=- 2=- ");
    EXPECT_EQ(trace.take(),
              "a enter 2, b enter 2, c enter 2, f enter 1, a apply 4, a leave 4, b apply 4, b leave 4, "
              "c abort 4, f abort 2, f leave 2, c leave 2, ");
}

TEST(NodeFilter, FillsMissingInputsFromDefaultsAndLeavesOptionalOnesNull)
{
    const auto filter = probe("f", "linked ?optional unlinked last", "out", [](const Values& in) {
        return Values{boost::make_shared<Data>(show(in[0]) + show(in[1]) + show(in[2]) + show(in[3]))};
    });
    filter->getInput("linked")->setDefaultData(number(1));
    filter->getInput("unlinked")->setDefaultData(number(2));
    Graph graph;
    const auto none = graph.source("none");
    graph.sink("k", graph.node("n", filter, {none, none, {}, graph.source("s", number(4))})->getOutput(""));
    EXPECT_EQ(graph.run(), "k=1-24 ");
}

TEST(Protocol, LogsBreachesAndWhatIsLeftAtTheEnd)
{
    Graph graph;
    const StringHash a("a");
    auto node = graph.node("n", probe("f", "in"), {graph.source("s")});
    node->synchronizeRelease(p, a, 0);
    EXPECT_EQ(node->requestData(p, p, 0, nullptr), nullptr);
    node->requestEmpty(p, p, 0, nullptr);
    EXPECT_EQ(graph.state(), "\n1 n->synchronizeRelease(p): Invalid release on process p"
                             "\n1 n->requestData(p): No output port specified"
                             "\n1 n->requestEmpty(p): No output port specified");
    node->synchronize(p, a, 0);
    node->synchronize(p, a, 0); // walks up once
    graph.nodes.erase(graph.nodes.begin() + 1);
    node.reset();
    graph.nodes.clear();
    EXPECT_EQ(graph.state(), "\n1 n->~NodeFilter(): There is still count to entry cache:\n"
                             "  process: 2654435866, count: 2\n"
                             "\n1 n->~Node(): There is still active synchronize count:\n"
                             "  process: 2654435866, count: 2\n"
                             "\n1 s->~NodeSource(): There is still count to entry cache:\n"
                             "  process: 2654435866, count: 1\n"
                             "\n1 s->~Node(): There is still active synchronize count:\n"
                             "  process: 2654435866, count: 1\n");
}

// The registrations of the broken computation stay behind, but no lock and no loaded value does.
TEST(Protocol, AThrowingFilterReleasesAllLocks)
{
    Graph graph;
    const auto filter =
        probe("f", "in", "out", [](const Values&) -> Values { throw std::runtime_error("f"); });
    const auto composite = boost::make_shared<FilterComposite>("c");
    composite->addNode(boost::make_shared<NodeFilter>("i", filter));
    composite->exportInput("i", "in", "in");
    composite->exportOutput("i", "out", "out");
    graph.sink("k", graph.node("n", composite, {graph.source("s", number(1))})->getOutput(""));
    for (const char* name : {"p", "q"}) {
        graph.process.setName(name); // the keys of the former computation are spoilt
        EXPECT_THROW(graph.run(), std::runtime_error);
        EXPECT_TRUE(graph.process.reset());
        const std::string scope = filter->scope.load()->toString();
        EXPECT_EQ(composite->getInput("in")->requestData(p, scope.substr(0, scope.rfind("__")), 0), nullptr);
    }
    EXPECT_EQ(graph.state(), "k=- left n left k ");
}

TEST(Protocol, ACycleEndsWithAFatalLine)
{
    Graph graph;
    const auto filter = probe("f", "?back");
    const auto a = graph.node("a", filter), b = graph.node("b", filter, {a});
    a->getInput("")->attach(b->getOutput(""));
    const auto composite = boost::make_shared<FilterComposite>("c");
    composite->addNode(a);
    composite->addNode(b);
    composite->exportOutput("a", "out", "out");
    graph.sink("k", graph.node("n", composite)->getOutput(""));
    EXPECT_EQ(graph.run(), "k=0 \n1 a->requestData(p): The graph has a cycle through this node.");
}

TEST(Sinks, FireInNameOrderAndAggregatesLast)
{
    Graph graph;
    std::string fired;
    const auto event = [&](const std::string& label) {
        return boost::make_shared<Event>(
            [&fired, label](Value value) { fired += label + show(value) + " "; });
    };
    const auto run = [&] { return inOrder({graph.run(), std::exchange(fired, "")}); };
    const auto left = graph.source("left", number(1)), right = graph.source("right", number(2));
    const auto b = graph.sink("b", left->getOutput("")), a = graph.sink("a", right->getOutput(""));
    const auto both = boost::make_shared<AggregatedSink>("both"),
               none = boost::make_shared<AggregatedSink>("none");
    const auto twice = event("twice ");
    for (const auto& each : {event("b "), twice, twice})
        b->addEvent(each);
    a->addEvent(event("a "));
    both->addEvent(event("both "));
    none->addEvent(event("none "));
    EXPECT_TRUE(both->addSink(b) && both->addSink(a));
    EXPECT_FALSE(both->addSink(boost::make_shared<NodeSink>("a")));
    EXPECT_TRUE(graph.process.addAggregatedSink(none) && graph.process.addAggregatedSink(both));
    EXPECT_EQ(run(), "a=2 b=1 a 2 b 1 twice 1 twice 1 both {2;1} none {} ");
    left->setData(nullptr);
    EXPECT_EQ(inOrder({run(), show(both->getLastData())}), "a=2 b=- a 2 none {} -");
    left->setData(number(3));
    run();
    a->synchronize(p, p, 0);
    a->requestEmpty(p, p, 0, nullptr); // releases, but keeps the value and fires nothing
    EXPECT_EQ(graph.state() + fired, "a=2 b=3 ");
    graph.process.reset();
    EXPECT_EQ(graph.state() + fired + show(both->getLastData()), "a=- b=- none {} -");

    a->addEvent(boost::make_shared<Event>(boost::shared_ptr<Process>(), nullptr)); // does nothing
    a->addEvent(boost::make_shared<Event>([](Value) { throw std::runtime_error("callback"); }));
    EXPECT_THROW(graph.run(), std::runtime_error);
    EXPECT_EQ(graph.state(), "a=2 b=- left left left b ") << "only later sinks are left behind";
}

} // namespace
