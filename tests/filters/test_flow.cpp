#include "filters/filterrunner.h"

#include "corvale/filters/mandatory.h"

#include <gmock/gmock.h>

using namespace support;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

const boost::shared_ptr<Data> nothing;
const boost::shared_ptr<Data> a = value(1);
const boost::shared_ptr<Data> b = value("two");

TEST(FlowFilters, RouteTheValuesThemselves)
{
    FilterRunner run;
    EXPECT_THAT(run("Identity", {a, nothing}), ElementsAre(a, nothing));
    EXPECT_THAT(run("Multiplex", {a, b}), ElementsAre(a));
    EXPECT_THAT(run("Multiplex", {nothing, b}), ElementsAre(b));
    EXPECT_THAT(run("Multiplex", {nothing, nothing}), ElementsAre(nothing));
    EXPECT_THAT(run("Multiplex", {}), ElementsAre(nothing));
    EXPECT_THAT(run("Dispatch", {a, value(true)}), ElementsAre(a, nothing));
    EXPECT_THAT(run("Dispatch", {a, value(false)}), ElementsAre(nothing, a));
    EXPECT_THAT(run("Dispatch", {nothing, value(true)}), ElementsAre(nothing, nothing));
    EXPECT_THAT(run("Dispatch", {a}), ElementsAre(nothing, nothing));
    EXPECT_THAT(run("Duplicate", {a}), ElementsAre(a, a));
    EXPECT_THAT(run("Duplicate", {a, b}), IsEmpty());
    EXPECT_EQ(run.log.count(), 0u);
}

TEST(FlowFilters, MandatoryGivesAllOrNothing)
{
    FilterRunner run;
    EXPECT_THAT(run("Mandatory3", {a, b, a}), ElementsAre(a, b, a));
    EXPECT_THAT(run("Mandatory3", {a, nothing, a}), ElementsAre(nothing, nothing, nothing));
    EXPECT_THAT(run("Mandatory3", {a, b}), ElementsAre(nothing, nothing, nothing));
    EXPECT_THAT(run("Mandatory1", {a, nothing}), ElementsAre(a));
    ZR::Corvale::Filters::Mandatory none("None", -1);
    EXPECT_THAT(none.getInputs(), IsEmpty());
    EXPECT_THAT(none.applyFilter({a}, ZR::Corvale::StringHash(""), ZR::Corvale::StringHash(""), 0),
                IsEmpty());
}

TEST(FlowFilters, PrintLogsWhatPassesAndDropsNothingness)
{
    FilterRunner run;
    EXPECT_THAT(run("Print", {b, nothing, a}), ElementsAre(b, a));
    EXPECT_THAT(run("Print", {nothing}), IsEmpty());
    ASSERT_THAT(run.log.messages(rk::log::Info, "Corvale"), ElementsAre("two", "1"));
    EXPECT_EQ(run.log.records()[0].function, "applyFilter");
}

TEST(FlowFilters, HeadGivesTheFirstElementOfAnArray)
{
    FilterRunner run;
    EXPECT_THAT(run("Head", {value(Values{b, a})}), ElementsAre(b));
    EXPECT_THAT(run("Head", {value(Values{})}), ElementsAre(nothing));
    EXPECT_THAT(run("Head", {a}), IsEmpty());
    EXPECT_EQ(run.log.count(), 0u);
}

} // namespace
