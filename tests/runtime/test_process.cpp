#include "support/fakeclock.h"
#include "support/graph.h"

#include "corvale/filter/filtercomposite.h"
#include "corvale/runtime/aggregatedsink.h"

#include <gtest/gtest.h>

#include <cmath>
#include <thread>

using namespace support;

namespace {

// A process of 1 Hz that watches x and y, and reads x.
class Gates : public testing::Test
{
protected:
    Gates()
    {
        EXPECT_FALSE(process.watchSource(x) || process.watchSource(y));
        EXPECT_TRUE(process.addSink(sink));
        sink->getInput("in")->attach(graph.node("n", filter, {x})->getOutput(""));
    }
    // How often it computes when it is asked after some microseconds.
    int after(int microseconds)
    {
        computed = 0;
        clock.now += microseconds;
        EXPECT_TRUE(process.update());
        EXPECT_EQ(graph.state(), "");
        return computed;
    }

    FakeClock clock;
    Graph graph;
    int computed = 0;
    std::function<void()> inside = [] {}; // runs in the filter
    Process process{"p", nullptr, 3, 1.0f};
    const boost::shared_ptr<NodeSource> x = graph.source("x", number(1)), y = graph.source("y", number(1));
    const boost::shared_ptr<NodeSink> sink = boost::make_shared<NodeSink>("k");
    const boost::shared_ptr<ProbeFilter> filter =
        probe("f", "in", "out", [this](const Values& in) { return ++computed, inside(), in; });
};

TEST_F(Gates, OpenOncePerPeriodAndOnlyForAChange)
{
    EXPECT_EQ(after(0), 1);
    x->setData(number(2));
    y->setData(number(2));
    EXPECT_EQ(after(999999), 0) << "the period is not over";
    EXPECT_EQ(after(1), 1);
    EXPECT_EQ(after(1000000), 0) << "both changes were seen at once";
    x->setData(number(3));
    EXPECT_EQ(after(999999), 0) << "a look without a change starts the period again";
    EXPECT_EQ(after(1), 1);
    EXPECT_TRUE(process.watchSource(x));
    EXPECT_EQ(after(1000000), 0) << "watching twice forgets what was seen";
    EXPECT_TRUE(process.reset());
    EXPECT_EQ(process.getLastData("k"), nullptr);
    EXPECT_EQ(after(0), 1);
    Process unwatched("u", nullptr, 100, 1.0f);
    EXPECT_TRUE(unwatched.addSink(sink) && !unwatched.isValid() && unwatched.update() && unwatched.isValid());
    EXPECT_EQ(computed, 1) << "a process that watches nothing computes";
}

TEST_F(Gates, FrequenciesThatAreNone)
{
    for (const float still : {0.0f, -1.0f, -INFINITY, NAN}) {
        Process fixed("p", nullptr, 3, still); // keeps what it is given
        fixed.validate();
        EXPECT_EQ(fixed.isValid(), !std::isnan(still));
        process.setFrequency(still);
        EXPECT_EQ(process.getFrequency(), 0.0f);
        EXPECT_EQ(after(1), 0);
    }
    // Sums wrap: a period beyond 64 bits is far from the beginning of time, and over at any later one.
    process.setFrequency(1e-14f);
    EXPECT_EQ(after(0), 0);
    process.validate();
    EXPECT_EQ(after(0), 1);
}

TEST_F(Gates, TimeToLiveNeverWaitsNorDoesARename)
{
    process.setFrequency(4);
    EXPECT_EQ(process.getTimeToLive(clock.now), 250000 - clock.now);
    long long busy = 0;
    inside = [&] {
        std::thread([&] { busy = process.getTimeToLive(clock.now + 1000); }).join();
        clock.now += 400000; // the period starts when the sources are frozen
    };
    after(0);
    EXPECT_EQ(busy, 250000);
    EXPECT_EQ(process.getTimeToLive(clock.now), -150000);

    // A rename in a computation shows from the next one on.
    inside = [&] { process.setName("new name"); };
    for (const std::string scope : {"p__0x", "new name__0x"}) {
        process.reset();
        after(0);
        EXPECT_EQ(filter->scope.load()->toString().substr(0, scope.size()), scope);
    }
}

TEST_F(Gates, GuardTheReadersToo)
{
    const auto both = [&] { return inOrder({show(process.getLastData("k")), show(process.getData("k"))}); };
    EXPECT_EQ(both(), "-1");
    process.disable();
    EXPECT_EQ(both() + graph.state(), "--");
    process.zombify();
    const auto aggregate = boost::make_shared<AggregatedSink>("k");
    EXPECT_TRUE(aggregate->addSink(sink) && process.addAggregatedSink(aggregate) && process.reset());
    EXPECT_EQ(both(), "-{1}") << "an aggregate wins over a sink of its name";
    EXPECT_FALSE(process.addSink(sink) || process.addAggregatedSink(aggregate));
    EXPECT_FALSE(process.getData("x") || process.getLastData("x"));
    EXPECT_EQ(graph.state(),
              "\n2 Can't add sink to process. Sink already present."
              "\n2 Can't add aggregated sink to process. Aggregated sink already present."
              "\n2 getData(x): the process p doesn't own this sink node."
              "\n2 Can't get last data from sink \"x\": process \"p\" doesn't own this sink node.");
}

// Processes share a source and a composite filter; one more thread changes and reads what it may.
TEST(Processes, RunSideBySideThroughSharedNodes)
{
    Graph shared;
    const auto source = shared.source("s", number(0));
    const auto composite = boost::make_shared<FilterComposite>("c");
    composite->addNode(shared.node("one", probe("f", "in"), {}));
    composite->addNode(shared.node("twice", probe("g", "a b"), {shared.nodes[1], shared.nodes[1]}));
    composite->exportInput("one", "in", "in");
    composite->exportOutput("twice", "out", "out");
    composite->exportOutput("one", "out", "same");
    std::atomic<int> running{3}, wrong{0};
    const auto run = [&](const std::string& name) {
        Process process(name, nullptr, 3, 1e9f);
        process.watchSource(source);
        const auto node = boost::make_shared<NodeFilter>("n", composite);
        node->getInput("")->attach(source->getOutput("out"));
        for (const char* output : {"out", "same"})
            if (process.addSink(boost::make_shared<NodeSink>(output)))
                process.getSinks().at(output)->getInput("in")->attach(node->getOutput(output));
        for (int round = 0; round < 1000; ++round) {
            process.update();
            wrong += int(*process.getLastData("out")) != 2 * int(*process.getLastData("same"));
        }
        --running;
    };
    std::thread threads[] = {std::thread(run, "p"), std::thread(run, "q"), std::thread(run, "r")};
    for (int i = 0; running != 0; ++i)
        source->setData(number(i));
    for (std::thread& thread : threads)
        thread.join();
    EXPECT_EQ(wrong, 0);
    EXPECT_EQ(shared.state(), "");
}

} // namespace
