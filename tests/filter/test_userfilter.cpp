#include "filter/expectedtext.h"
#include "support/graph.h"

#include "corvale/data/datalambda.h"
#include "corvale/filter/filteradapter.h"
#include "corvale/filter/memorymanager.h"
#include "corvale/filter/userfilter.h"

#include <gtest/gtest.h>

#include <stdexcept>
#include <thread>

using namespace support;

namespace {

using Texts = std::vector<std::string>;

struct HostFilter : UserFilter
{
    std::string getName() override { return "Host"; }
    std::string getDescription() override { return "about " + name; }
    Texts getInputs() override { return inputs; }
    Texts getOutputs() override { return outputs; }
    Values applyFilter(const Values&) override { return body(); }
    bool hasLocalData() override { return local; }

    std::string name = "it";
    Texts inputs, outputs{"out"};
    std::function<Values()> body;
    bool local = false;
};

TEST(FilterAdapter, ReadsDeclarations)
{
    Graph graph;
    const auto filter = boost::make_shared<HostFilter>();
    std::string seen; // of each declaration its port, an optional one with "?", and the lines logged
    for (const char* declaration :
         {"in", "in[Float Integer]", "optional  in", " optional in [ Float ]", "optional[Float]", "in[]",
          "in[Foo Float float]", "required in", "a[Float][Integer]", "optional a b[Float]", ""}) {
        filter->inputs = {declaration};
        seen += '"' + filter->inputs[0] + "\" ->";
        const FilterAdapter adapter(filter);
        for (const auto& port : adapter.getInputs()) {
            seen += (port->isOptional() ? " ?" : " ") + port->getName();
            for (const DataType type : port->getTypes())
                seen += " " + Data::getTypeName(type);
        }
        seen += graph.state() + "\n";
    }
    EXPECT_EQ(seen, expectedText("declarations.txt"));
    filter->inputs.clear();
    filter->outputs = {"x", "a b", "", " y "};
    const FilterAdapter adapter(filter);
    EXPECT_EQ(graph.state(), "\n2 Can't parse output declaration (a b)\n2 Can't parse output declaration ()");
    EXPECT_EQ(adapter.getOutput("y"), adapter.getOutputs().at(1));
    filter->name = "him";
    EXPECT_EQ(adapter.getDescription(), "about him") << "a description is asked for anew each time";
}

class LocalData : public testing::Test
{
protected:
    LocalData()
    {
        host->local = true;
        host->body = [this] {
            const Value next = number(host->getLocalData() ? int(*host->getLocalData()) + 1 : 1);
            during();
            host->setLocalData(next);
            return Values{next};
        };
        filter->bindMemoryManager(&memory);
    }
    std::string call(const char* process, const char* scope)
    {
        return show(filter->applyFilter({}, StringHash(process), StringHash(scope), 0).at(0));
    }

    MemoryManager memory;
    std::function<void()> during = [] {};
    const boost::shared_ptr<HostFilter> host =
        boost::make_shared<HostFilter>(); // counts the calls of each place
    const boost::shared_ptr<FilterAdapter> filter = boost::make_shared<FilterAdapter>(host);
};

TEST_F(LocalData, BelongsToEachPlaceInEachProcess)
{
    const auto calls = [&] { return inOrder({call("p", "x"), call("p", "y"), call("q", "x")}); };
    EXPECT_EQ(inOrder({calls(), calls()}), "111222");
    memory.removeProcess(StringHash("p"));
    EXPECT_EQ(calls(), "113");
    Graph graph;
    graph.sink("1", graph.node("n", filter)->getOutput(""));
    graph.sink("2", graph.node("m", filter)->getOutput(""));
    EXPECT_EQ(inOrder({graph.run(), graph.run()}), "1=1 2=1 1=2 2=2 ");
    const auto lambda = Type::Lambda::createLambda(boost::shared_ptr<UserFilter>(host)); // has no memory
    EXPECT_EQ(inOrder({show(lambda->apply({})[0]), show(lambda->apply({})[0]), calls()}), "11224");
}

TEST_F(LocalData, IsUsedByOneCallAtATimeAlsoAfterAnException)
{
    during = [] { throw std::runtime_error("host"); };
    EXPECT_THROW(call("p", "p"), std::runtime_error);
    std::atomic<int> insideNow{0}, most{0};
    during = [&] {
        most = std::max<int>(most, ++insideNow);
        std::this_thread::yield();
        --insideNow;
    };
    const auto run = [&](const char* process) {
        for (int i = 1; i <= 100; ++i)
            EXPECT_EQ(call(process, process), std::to_string(i));
    };
    std::thread other(run, "p");
    run("q");
    other.join();
    EXPECT_EQ(most, 1);
}

TEST(MemoryManager, MovesAndForgetsProcesses)
{
    MemoryManager memory;
    const StringHash p("p"), q("q"), x("x"), y("y");
    EXPECT_FALSE(memory.renameProcess(p, q));
    EXPECT_EQ(memory.getData(p, x), nullptr);
    EXPECT_TRUE(memory.renameProcess(p, q)) << "a read leaves an entry";
    EXPECT_TRUE(memory.setData(p, x, number(1)) && memory.setData(q, y, number(2)));
    EXPECT_TRUE(memory.renameProcess(p, q) && memory.renameProcess(q, q) && !memory.renameProcess(p, q));
    EXPECT_EQ(show(memory.getData(q, x)) + show(memory.getData(q, y)), "1-") << "what q had is replaced";
}

} // namespace
