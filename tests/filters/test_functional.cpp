#include "filters/filterrunner.h"

#include "corvale/data/datalambda.h"

#include <gmock/gmock.h>

using namespace support;
using testing::ElementsAre;
using ZR::Corvale::Filters::payload;
using ZR::Corvale::Type::Lambda;

namespace {

const boost::shared_ptr<Data> a = value(5);
const boost::shared_ptr<Data> b = value(3);

TEST(FunctionalFilters, AppendCopiesTheArrayAndSharesItsElements)
{
    FilterRunner run;
    const auto single = run.only("Append", {a, nullptr});
    EXPECT_THAT(*payload<Values>(single), ElementsAre(a));
    EXPECT_THAT(*payload<Values>(run.only("Append", {b, single})), ElementsAre(a, b));
    EXPECT_THAT(*payload<Values>(single), ElementsAre(a));
    EXPECT_THAT(*payload<Values>(run.only("Append", {b})), ElementsAre(b));
}

TEST(FunctionalFilters, CurryBindsTheFirstInputOfACopy)
{
    FilterRunner run;
    const auto subtract = value(Lambda::createLambda(run.filters["Sub"]));
    const auto fiveMinus = run.only("Curry", {subtract, value(Values{a, b})}); // b is not read
    const auto again = run.only("Curry", {fiveMinus, value(Values{})});
    for (const auto& bound : {fiveMinus, again})
        EXPECT_EQ(int(*run.only("Apply", {bound, value(Values{b})})), 2);
    EXPECT_EQ(int(*run.only("Apply", {subtract, value(Values{b, a})})), -2);
    const auto bothBound = run.only("Curry", {fiveMinus, value(Values{b})});
    EXPECT_EQ(int(*run.only("Apply", {bothBound, value(Values{})})), 2);
}

TEST(FunctionalFilters, ApplyGivesWhatTheLambdaGives)
{
    FilterRunner run;
    const auto duplicate = value(Lambda::createLambda(run.filters["Duplicate"]));
    EXPECT_THAT(run("Apply", {duplicate, value(Values{a})}), ElementsAre(a, a));
    const auto add = value(Lambda::createLambda(run.filters["Add"]));
    EXPECT_THAT(run("Apply", {add, value(Values{a})}), ElementsAre(nullptr));
    EXPECT_EQ(run.log.count(rk::log::Error), 0u);
}

} // namespace
