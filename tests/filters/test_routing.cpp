#include "corvale/data/datalambda.h"
#include "corvale/filters/mandatory.h"
#include "filters/filterrunner.h"

#include <gmock/gmock.h>

using namespace support;
using testing::ElementsAre;
using testing::IsEmpty;
using ZR::Corvale::Filters::payload;
using ZR::Corvale::Type::Lambda;

namespace {

const boost::shared_ptr<Data> nothing;
const boost::shared_ptr<Data> a = value(5);
const boost::shared_ptr<Data> b = value(3);

TEST(FlowFilters, RouteTheValuesThemselves)
{
    FilterRunner run;
    for (const bool consumes : {false, true}) {
        run.consumes = consumes;
        EXPECT_THAT(run("Identity", {a, nothing}), ElementsAre(a, nothing));
        EXPECT_THAT(run("Multiplex", {a, b}), ElementsAre(a));
        EXPECT_THAT(run("Multiplex", {nothing, b}), ElementsAre(b));
        EXPECT_THAT(run("Multiplex", {nothing, nothing}), ElementsAre(nothing));
        EXPECT_THAT(run("Dispatch", {a, value(true)}), ElementsAre(a, nothing));
        EXPECT_THAT(run("Dispatch", {a, value(false)}), ElementsAre(nothing, a));
        EXPECT_THAT(run("Dispatch", {a}), ElementsAre(nothing, nothing));
        EXPECT_THAT(run("Duplicate", {a}), ElementsAre(a, a));
        EXPECT_THAT(run("Duplicate", {a, b}), IsEmpty());
        EXPECT_THAT(run("Mandatory3", {a, b, a}), ElementsAre(a, b, a));
        EXPECT_THAT(run("Mandatory3", {a, nothing, a}), ElementsAre(nothing, nothing, nothing));
        EXPECT_THAT(run("Mandatory3", {a, b}), ElementsAre(nothing, nothing, nothing));
        EXPECT_THAT(ZR::Corvale::Filters::Mandatory("None", -1).getInputs(), IsEmpty());
        EXPECT_THAT(run("Head", {value(Values{b, a})}), ElementsAre(b));
        EXPECT_THAT(run("Head", {value(Values{})}), ElementsAre(nothing));
    }
    EXPECT_EQ(run.log.count(), 0u);
}

TEST(FlowFilters, PrintLogsWhatPassesAndDropsNothingness)
{
    FilterRunner run;
    EXPECT_THAT(run("Print", {b, nothing, value("text")}), testing::SizeIs(2));
    EXPECT_THAT(run("Print", {nothing}), IsEmpty());
    ASSERT_THAT(run.log.messages(rk::log::Info, "Corvale"), ElementsAre("3", "text"));
    EXPECT_EQ(run.log.records()[0].function, "applyFilter");
}

TEST(FunctionalFilters, AppendCopiesTheArrayAndSharesItsElements)
{
    FilterRunner run;
    const auto single = run.only("Append", {a, nothing});
    EXPECT_THAT(*payload<Values>(run.only("Append", {b, single})), ElementsAre(a, b));
    EXPECT_THAT(*payload<Values>(single), ElementsAre(a));
}

TEST(FunctionalFilters, CurryBindsACopyAndApplyGivesWhatTheLambdaGives)
{
    FilterRunner run;
    const auto subtract = value(Lambda::createLambda(run.filters["Sub"]));
    const auto fiveMinus = run.only("Curry", {subtract, value(Values{a, b})}); // b is not read
    for (const auto& bound : {fiveMinus, run.only("Curry", {fiveMinus, value(Values{}), a})})
        EXPECT_EQ(int(*run.only("Apply", {bound, value(Values{b})})), 2);
    EXPECT_EQ(int(*run.only("Apply", {subtract, value(Values{b, a})})), -2);
    const auto bothBound = run.only("Curry", {fiveMinus, value(Values{b})});
    EXPECT_EQ(int(*run.only("Apply", {bothBound, value(Values{}), a})), 2); // a further input is not read
    const auto duplicate = value(Lambda::createLambda(run.filters["Duplicate"]));
    EXPECT_THAT(run("Apply", {duplicate, value(Values{a})}), ElementsAre(a, a));
}

} // namespace
