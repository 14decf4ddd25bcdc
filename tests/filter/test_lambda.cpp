#include "support/graph.h"

#include "corvale/data/datalambda.h"

#include <gtest/gtest.h>

#include <thread>

using namespace support;

namespace {

using Type::Lambda; // here, where it hides the enumerator

const auto inRow = [](const Values& values) {
    const auto append = [](const std::string& text, const Value& value) { return text + show(value); };
    return std::accumulate(values.begin(), values.end(), std::string(), append);
};

// What the application to numbers gives, with 0 for no value.
std::string apply(Lambda& lambda, const std::vector<int>& parameters = {})
{
    Values values;
    for (const int parameter : parameters)
        values.push_back(parameter ? number(parameter) : Value());
    return inRow(lambda.apply(values));
}

// Gives all its inputs in a row.
boost::shared_ptr<Lambda> row(const std::string& inputs)
{
    const auto body = [](const Values& in) { return Values{boost::make_shared<Data>(inRow(in))}; };
    return Lambda::createLambda(probe("row", inputs, "out", body));
}

TEST(Lambda, CurryBindsEverySecondFreeInput)
{
    const Value nine = number(9), eight = number(8);
    const struct
    {
        const char* inputs;
        std::vector<Values> curries;
        const char* result; // of an application to 1, 2, 3, 4
    } rows[] = {{"a", {{nine}}, "9"},
                {"a b c", {{nine, eight}}, "919"}, // the second is not read
                {"a b c", {{nine}, {eight}}, "989"},
                {"a b c d", {{nine}, {eight}}, "9898"}, // a bound input is one step, so b and d are met
                {"a b", {{nullptr, nine}, Values()}, "12"},
                {"", {{nine}}, ""}};
    for (const auto& each : rows) {
        const auto lambda = row(each.inputs);
        for (const Values& values : each.curries)
            lambda->curry(values);
        EXPECT_EQ(apply(*lambda, {1, 2, 3, 4}), each.result);
    }
}

TEST(Lambda, KeepsWhatItWasGivenAndAClonesBindingsAreItsOwn)
{
    const auto lambda = row("?a ?b ?c");
    EXPECT_EQ(inOrder({apply(*lambda), apply(*lambda, {1, 2, 3, 4}), apply(*lambda, {5, 0})}), "---1235-3");
    lambda->curry({number(7)});
    apply(*lambda, {5});
    const auto clone = lambda->clone();
    EXPECT_EQ(apply(*clone), "7-7") << "values of earlier calls are not copied";
    clone->curry({number(8)});
    EXPECT_EQ(apply(*clone) + apply(*lambda), "787757");
}

TEST(Lambda, ComputesOnceForAllOutputsAndGivesNullWhenItCanNot)
{
    Graph graph;
    const auto filter = probe("f", "in", "x y");
    const auto lambda = Lambda::createLambda(filter);
    EXPECT_EQ(inOrder({apply(*lambda), apply(*lambda, {4}), graph.state()}), "--44");
    EXPECT_EQ(trace.take(), "f enter 0, f abort 0, f leave 0, f enter 0, f apply 0, f leave 0, ");
    EXPECT_EQ(apply(*Lambda::createLambda(probe("g", "in", "")), {1}), "");
}

TEST(Lambda, AppliedInItsOwnApplicationEndsWithAFatalLine)
{
    Graph graph;
    std::string inner;
    boost::shared_ptr<Lambda> lambda = Lambda::createLambda(
        probe("f", "in", "out", [&](const Values& in) { return inner = apply(*lambda, {2}), in; }));
    EXPECT_EQ(inOrder({apply(*lambda, {1}), inner, graph.state()}),
              "1-\n1 f->requestData(___@LAMBDA@___): The graph has a cycle through this node.");
    EXPECT_EQ(apply(*lambda, {3}), "3");
}

// The threads meet in the filter, so one of them always finds the lambda busy.
TEST(Lambda, TwoThreadsDoNotDisturbEachOther)
{
    Graph graph;
    std::atomic<int> arrived{0};
    const auto lambda = Lambda::createLambda(probe("f", "bound free", "out", [&](const Values& in) {
        for (const int round = arrived++ / 2; arrived < 2 * (round + 1);)
            std::this_thread::yield();
        return Values{number(int(*in[0]) + int(*in[1]))};
    }));
    lambda->curry({number(1000)});
    const auto run = [&](int base) {
        for (int i = base; i < base + 50; ++i)
            EXPECT_EQ(apply(*lambda, {i}), std::to_string(1000 + i));
    };
    std::thread other(run, 1);
    run(500);
    other.join();
    EXPECT_EQ(graph.state(), "");
}

} // namespace
