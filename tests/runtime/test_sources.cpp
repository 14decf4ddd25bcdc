#include "support/fakeclock.h"
#include "support/graph.h"

#include "corvale/runtime/nodeprocesssource.h"
#include "corvale/runtime/nodepulse.h"
#include "corvale/runtime/nodesourcealias.h"

#include <gtest/gtest.h>

using namespace support;

namespace {

const StringHash p("p"), q("q"), inside("p__x");

std::string seen(NodeSource& source, Hash process)
{
    return show(source.requestData(process, process, 0, nullptr));
}

// One whole computation of a process that reads nothing but this source.
std::string compute(NodeSource& source, Hash process)
{
    source.synchronize(process, process, 0);
    const std::string value = seen(source, process);
    source.synchronizeRelease(process, process, 0);
    return value;
}

TEST(NodeSource, KeepsOneSnapshotAProcessUntilItsLastScopeReleases)
{
    Graph graph;
    const auto source = graph.source("s");
    EXPECT_EQ(compute(*source, p), "-");
    source->setData(number(1));
    source->synchronize(p, p, 0);
    source->setData(number(2));
    source->synchronize(q, q, 0);
    source->synchronize(p, inside, 0); // another scope of p sees the same
    source->setData(nullptr);
    source->setData(nullptr);
    EXPECT_EQ(source->getUid(), 4u) << "each is a change, also to the same";
    EXPECT_EQ(seen(*source, p) + seen(*source, q) + show(source->getData()), "12-");
    source->synchronizeRelease(p, p, 0);
    EXPECT_EQ(seen(*source, p), "1");
    source->synchronizeRelease(p, inside, 0);
    source->synchronizeRelease(q, q, 0);
    EXPECT_EQ(graph.state(), "");

    seen(*source, p);
    source->requestEmpty(p, p, 0, nullptr);
    source->synchronize(p, inside, 0);
    source->synchronizeRelease(q, inside, 0); // the scope is registered, the process is not
    EXPECT_EQ(graph.state(), "\n1 s->requestData(p): No cache found.\n1 s->requestEmpty(p): no cache found."
                             "\n1 s->_synchronizeRelease(q): Invalid release on process q");
}

TEST(NodeSourceAlias, ARetargetInAComputationSpoilsThatOneAlone)
{
    Graph graph;
    const auto former = graph.source("former", number(1)), next = graph.source("next");
    const auto alias = graph.keep(boost::make_shared<NodeSourceAlias>("a", former));
    alias->setData(number(2));
    EXPECT_EQ(alias->getUid(), 2u);
    EXPECT_EQ(compute(*alias, p) + show(alias->getData()) + show(former->getData()), "222");
    const auto retarget =
        probe("f", "", "out", [&](const Values&) { return alias->setSource(next), Values(); });
    graph.sink("1", graph.node("n", retarget)->getOutput(""));
    graph.sink("2", alias->getOutput("out"));
    EXPECT_EQ(graph.run(), "1=- 2=- left former \n1 next->requestData(p): No cache found."
                           "\n1 next->synchronizeRelease(p): Invalid release on process p");
    EXPECT_EQ(alias->getUid(), 0u);
    next->setData(number(3));
    EXPECT_EQ(graph.run(), "1=- 2=3 left former ");
}

TEST(NodePulse, GivesItsValueToOneComputationAndComesToRest)
{
    NodePulse pulse("pulse");
    pulse.setData(number(5));
    pulse.synchronize(p, p, 0);
    pulse.synchronize(p, inside, 0); // shares the snapshot and does not fall back again
    EXPECT_EQ(pulse.getUid(), 2u);
    EXPECT_EQ(compute(pulse, q), "-") << "the value goes to the first process alone";
    EXPECT_EQ(seen(pulse, p), "5");
    pulse.synchronizeRelease(p, p, 0);
    pulse.synchronizeRelease(p, inside, 0);
    EXPECT_EQ(compute(pulse, p), "-");
    EXPECT_EQ(pulse.getUid(), 2u) << "with a null default it stands still";
    pulse.setDefaultData(number(1));
    EXPECT_EQ(pulse.getUid(), 2u);
    EXPECT_EQ(compute(pulse, p), "1");
    pulse.setData(number(6));
    EXPECT_EQ(inOrder({compute(pulse, p), compute(pulse, p)}), "61");
    EXPECT_EQ(pulse.getUid(), 6u) << "with another default each computation is a change";
    const auto ask = [&](Data* data) { delete data, pulse.getData(); }; // with no lock held
    pulse.setDefaultData(Value(new Data(1), ask));
    pulse.setDefaultData(nullptr);
}

TEST(NodeProcessSource, ComputesUpstreamBeforeAnyFilterRuns)
{
    FakeClock clock;
    Graph upstream, downstream("q");
    int count = 0;
    const auto counter = probe("count", "", "out", [&](const Values&) { return Values{number(++count)}; });
    const auto sink = upstream.sink("k", upstream.node("n", counter)->getOutput(""));
    const auto from = [&](const char* name) {
        const boost::shared_ptr<Process> process(sink, &upstream.process);
        return boost::make_shared<NodeProcessSource>("source", process, name);
    };
    const auto source = downstream.keep(from("k"));
    source->setData(number(77)); // nobody reads it
    const auto early = probe("early", "in", "out", [&](const Values&) { return Values{number(count)}; });
    const auto node = downstream.node("n", early, {downstream.source("s", number(0))});
    downstream.sink("1", node->getOutput(""));
    downstream.sink("2", source->getOutput("out"));
    EXPECT_EQ(inOrder({downstream.run(), downstream.run()}), "1=1 2=1 1=2 2=2 ");
    EXPECT_EQ(source->getUid(), 0u);

    upstream.process.setFrequency(10);
    EXPECT_EQ(inOrder({compute(*source, p), compute(*source, q)}), "22") << "its period is not over";
    clock.now += 100000;
    source->synchronize(q, q, 0);
    clock.now += 100000;
    source->synchronize(q, inside, 0);
    EXPECT_EQ(seen(*source, q), "3") << "one snapshot for all scopes of a computation";
    source->synchronizeRelease(q, q, 0);
    source->synchronizeRelease(q, inside, 0);
    EXPECT_EQ(inOrder({compute(*source, q), compute(*from("x"), q), downstream.state()}),
              "4-1=2 2=2 \n2 getData(x): the process p doesn't own this sink node.");
}

} // namespace
