#include "corvale/data/data.h"
#include "corvale/data/dataaudiobuffer.h"
#include "corvale/data/datahistogram.h"
#include "corvale/data/datahuman.h"
#include "corvale/data/dataobject2d.h"
#include "corvale/data/dataobject3d.h"

#include "support/logcapture.h"

#include <boost/make_shared.hpp>
#include <boost/thread/thread.hpp>
#include <gmock/gmock.h>

#include <cmath>
#include <set>
#include <vector>

namespace {

using namespace ZR::Corvale;
using testing::ElementsAre;
using testing::IsEmpty;

TEST(Histogram, LooksAtTheBinsOfAChannel)
{
    float bins[] = {5, 1, 7, 2, 9, 3};
    Type::Histogram histogram(bins, 6, 3);
    EXPECT_EQ(histogram.getChannelSize(), 2u);
    EXPECT_TRUE(histogram.min(1) == 1.0f && histogram.max(1) == 9.0f && histogram.max(2) == 7.0f);
    EXPECT_TRUE(histogram.min() == 1.0f && histogram.max() == 9.0f);
    EXPECT_TRUE(histogram.min(6) == 0.0f && histogram.max(-1) == 0.0f) << "beyond the bins";
    EXPECT_EQ(Type::Histogram(bins, 2, 0).max(0), 5.0f);
    histogram.clear();
    EXPECT_EQ(bins[5], 0.0f);
}

TEST(Histogram, FindsItsGreatestBins)
{
    const float bins[] = {1, 5, 3, 4, 5};
    EXPECT_EQ(Type::Histogram(bins, 5, 1).argmax(), 1u);
    const Type::Histogram histogram(bins, 4, 1), empty(0, 0);
    EXPECT_THAT(histogram.argmax(0), IsEmpty());
    EXPECT_THAT(histogram.argmax(3), ElementsAre(1, 3, 2));
    EXPECT_THAT(histogram.argmax(99), ElementsAre(1, 3, 2, 0));
    EXPECT_EQ(empty.min() + empty.max() + empty.max(0) + empty.argmax(), 0.0f);
    EXPECT_THAT(empty.argmax(3), IsEmpty());
}

TEST(AudioBuffer, CopiesConstSamplesAndWrapsOthers)
{
    short samples[] = {0, 1, 2, 3, 4, 5};
    const Type::AudioBuffer copy(static_cast<const short*>(samples), 6, 2, 16'000, Type::Time(5));
    Type::AudioBuffer(samples, 6, 2, 16'000, Type::Time(5)).data(2, 1) = 9;
    EXPECT_EQ(samples[5], 9);
    EXPECT_EQ(copy.data(2, 1), 5);
}

TEST(Objects, WriteTheirPropertiesOneAfterTheOther)
{
    const support::LogCapture log;
    Type::Object3D object(boost::make_shared<Type::Region3>(1, 2, 3, 4, 5, 6));
    EXPECT_EQ(object.toString(), "");
    object.setPropertyData(-2, boost::make_shared<Data>("x"));
    EXPECT_EQ(object.toString(), "{ -2 = x}");
    object.setPropertyData(7, nullptr);
    EXPECT_THAT(object.toString(), testing::AnyOf("{ -2 = x}{ 7 = NULL}", "{ 7 = NULL}{ -2 = x}"));
    EXPECT_EQ(object.getPropertyData(-2)->toString(), "x");
    object.removeProperty(7);
    EXPECT_EQ(log.count(), 0u);
    object.removeProperty(7);
    EXPECT_EQ(log.count(rk::log::Warning), 1u);
    EXPECT_EQ(object.toString(), "{ -2 = x}");
}

TEST(Human, IdsAreDifferentOnAllThreads)
{
    std::vector<unsigned long long> ids(400);
    boost::thread_group threads;
    for (int thread = 0; thread < 4; ++thread)
        threads.create_thread([&ids, thread] {
            for (int i = 0; i < 100; ++i)
                ids[thread * 100 + i] = Type::Human().getId();
        });
    threads.join_all();
    EXPECT_EQ(std::set<unsigned long long>(ids.begin(), ids.end()).size(), ids.size());
}

TEST(Human, MissingThingsGiveNothingAndOneWarningWhenRemoved)
{
    const support::LogCapture log;
    Type::Human human;
    human.setId(4);
    human.setScore("nose", 1.0f); // other tables know nothing of it
    EXPECT_TRUE(std::isnan(human.getScore("smile")));
    EXPECT_FALSE(human.getObject2D("nose") || human.getObject3D("nose") || human.getPropertyData(7));
    EXPECT_FALSE(human.hasScore("smile") || human.hasObject2D("") || human.hasObject3D("") ||
                 human.hasProperty(7));

    human.removeScore("smile");
    human.removeObject2D("nose");
    human.removeObject3D("ear");
    human.removeProperty(7);
    EXPECT_THAT(log.messages(rk::log::Warning, "corvale.datahuman"),
                ElementsAre("Human 4 does not have any score called \" smile\"",
                            "Human 4 does not have any Object2D called \" nose\"",
                            "Human 4 does not have any Object3D called \" ear\"",
                            "Human 4 does not have any property 7"));
    EXPECT_EQ(log.records()[1].function, "removeObject2D");
}

} // namespace
