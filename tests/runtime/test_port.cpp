#include "support/graph.h"

#include "corvale/runtime/flattable.h"

#include <gtest/gtest.h>

#include <random>
#include <unordered_map>

using namespace support;

namespace {

TEST(StringHash, IsTheSameNumberEverywhere)
{
    EXPECT_EQ(StringHash("a")._hash, 0x9e377a1au);
    EXPECT_EQ(StringHash("\xff")._hash, 0x9e3779b8u); // characters are signed
    EXPECT_EQ(StringHash::extended(StringHash("p__0"), "x1a2b\xc3\xa9")._hash, 0x8181e11c0b1a1fdau);
}

TEST(FlatTable, AgreesWithAMapUnderRandomUse)
{
    std::mt19937 random(1);
    const auto content = boost::make_shared<int>();
    for (const int shift : {0, 52}) { // keys that differ in their high bits alone share a home
        FlatTable<boost::shared_ptr<int>> table;
        std::unordered_map<std::uint64_t, int> expected;
        for (int step = 0; step < 100000; ++step) {
            // Waves of many keys and of few, so that the table grows and empties.
            const std::uint64_t key = std::uint64_t(random() % (step / 10000 % 2 ? 8 : 900)) << shift;
            if (random() % 2) {
                const auto [value, made] = table.insert(key);
                ASSERT_EQ(made, expected.emplace(key, step).second);
                ASSERT_EQ(*value == nullptr, made) << "a new entry holds what a former one left";
                *value = content;
            } else {
                ASSERT_EQ(table.take(key) != nullptr, expected.erase(key) == 1);
            }
            ASSERT_EQ(table.size(), expected.size());
        }
        for (const auto& entry : expected)
            EXPECT_TRUE(table.find(entry.first));
        EXPECT_EQ(content.use_count(), long(expected.size()) + 1) << "a taken value stays in its slot";
    }
}

// in -> middle -> inner, along the parents.
class Ports : public testing::Test
{
protected:
    std::string pull(Hash scope) { return show(port->requestData(p, scope, 0)); }

    const StringHash p{"p"}, inside{"p__x"};
    Graph graph;
    const boost::shared_ptr<NodeSource> source = graph.source("s");
    const PortPointer inner = boost::make_shared<Port>("inner");
    const PortPointer middle = boost::make_shared<Port>("middle", inner, source.get());
    const PortPointer port = boost::make_shared<Port>("in", middle);
};

TEST_F(Ports, LookAlongTheirChainButForADefaultWithoutALink)
{
    const auto other = boost::make_shared<Port>("other");
    other->addType(Integer).addType(String);
    inner->addType(Float);
    EXPECT_TRUE(port->isCompatible(Float) && port->isCompatible(boost::make_shared<Port>("any")));
    port->addType(String); // the innermost list alone counts
    EXPECT_FALSE(port->isCompatible(other) || port->isCompatible(String));
    inner->addType(String);
    EXPECT_TRUE(port->isCompatible(other) && port->getRecursiveParent() == inner);
    middle->setDefaultData(number(7));
    EXPECT_TRUE(port->isOptional() && !inner->isOptional());
    EXPECT_EQ(pull(p), "-");
    port->attach(source->getOutput("out"));
    source->synchronize(p, p, 0);
    EXPECT_EQ(pull(p), "7");
    port->synchronizeRelease(p, p, 0);
    EXPECT_EQ(graph.state(), "");
}

TEST_F(Ports, ReportWrongLinks)
{
    for (const auto& link : {PortPointer(), source->getOutput("out")}) {
        port->attach(link);
        EXPECT_EQ(pull(p), "-");
        port->requestEmpty(p, p, 0);
        port->synchronizeRelease(p, p, 0);
    }
    EXPECT_EQ(graph.state(), "\n2 in::requestData(): trying to get data from an unbound port."
                             "\n2 in::requestEmpty(): trying to get data from an unbound port."
                             "\n2 in::requestData(): An input port can not have multiple outputs."
                             "\n2 in::requestEmpty(): An input port can not have multiple outputs."
                             "\n2 synchronizeRelease(): an input port (in) can not have multiple outputs and "
                             "only an input port can use synchronizeRelease().");
}

TEST_F(Ports, GiveWhatIsLoadedForTheScopeAlone)
{
    port->setDefaultData(number(1));
    std::vector<PortPointer> ports{port};
    Port::loadData(ports, {number(5)}, p, p, 0);
    Port::loadData(ports, {nullptr}, p, inside, 0);
    EXPECT_EQ(pull(p) + pull(inside) + pull(StringHash("x")), "5-1");
    EXPECT_EQ(show(middle->requestData(p, p, 0)), "5");
    port->attach(nullptr); // a look at the link logs a line
    port->requestEmpty(p, inside, 0);
    Port::unloadData(ports, p, inside, 0);
    Port::unloadData(ports, p, inside, 0);
    EXPECT_EQ(pull(p) + graph.state(), "5");
    Port::unloadData(ports, p, p, 0);
    EXPECT_EQ(show(middle->requestData(p, p, 0)), "-");
}

} // namespace
