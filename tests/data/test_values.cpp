#include "corvale/data/datatime.h"
#include "corvale/data/datavector2.h"
#include "corvale/data/datavector3.h"
#include "corvale/data/datavector4.h"
#include "corvale/data/datavector6.h"

#include "rk/os.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <tuple>
#include <utility>

namespace {

using namespace ZR::Corvale::Type;

constexpr long long Most = std::numeric_limits<long long>::max();
constexpr long long Least = std::numeric_limits<long long>::min();

// A slip in one component of one operation shows: the components are all different.
template <typename V, std::size_t... I>
void expectArithmetic(std::index_sequence<I...>)
{
    const float x[] = {1, 2, 3, 4, 5, 6}, y[] = {4, 8, 2, 1, .5f, 16};
    const V a(x[I]...), b(y[I]...), sum((x[I] + y[I])...), product((x[I] * y[I])...);
    EXPECT_TRUE(a + b == sum && a * b == product);
    EXPECT_TRUE(a - b == V((x[I] - y[I])...) && a / b == V((x[I] / y[I])...));
    EXPECT_EQ(a.dot(b), (0.0f + ... + (x[I] * y[I])));
    for (std::size_t other = 0; other < sizeof...(I); ++other)
        EXPECT_FALSE(a == V((x[I] + (I == other))...));

    V changed = a;
    EXPECT_TRUE((changed += b) == sum && changed == sum);
    EXPECT_TRUE((changed -= b) == a && changed == a);
    EXPECT_TRUE((changed *= b) == product && changed == product);
    EXPECT_TRUE((changed /= b) == a && changed == a);
}

TEST(Vectors, CombineComponentByComponent)
{
    expectArithmetic<Vector2>(std::make_index_sequence<2>());
    expectArithmetic<Vector3>(std::make_index_sequence<3>());
    expectArithmetic<Vector4>(std::make_index_sequence<4>());
    expectArithmetic<Vector6>(std::make_index_sequence<6>());
}

TEST(Vectors, DifferFromThemselvesWhenNoNumber)
{
    const Vector3 odd = Vector3(0, 0, 0) / Vector3(0, 1, 1);
    EXPECT_TRUE(std::isnan(odd.x()));
    EXPECT_FALSE(odd == odd);
    EXPECT_EQ((Vector2(1, -1) / Vector2(0, 0)).y(), -std::numeric_limits<float>::infinity());
}

TEST(Time, NowReadsTheClockOfTheHost)
{
    for (const auto& [seconds, micro, now] :
         {std::tuple(1'600'000'000LL, 999'999, 1'600'000'000'999'999LL), {Most, 7, 7 - 1'000'000LL}}) {
        rk::os::setClock([s = seconds, u = micro](timeval* time) { return *time = {s, u}, 0; });
        EXPECT_EQ(Time::now().getTotalMicroseconds(), now);
    }
    rk::os::setClock(nullptr);
}

TEST(Time, CutsUnitsTowardZeroAndGoesAroundAtTheEnds)
{
    EXPECT_EQ(Time(-1'999'999).getTotalMilliseconds(), -1'999);
    EXPECT_EQ(Duration(-1'999'999).getTotalSeconds(), -1);
    EXPECT_EQ(Duration::Hours(1), Duration::Minutes(60));
    EXPECT_EQ(Duration::Seconds(-60), Duration::Minutes(-1));
    EXPECT_EQ(Duration::Milliseconds(1'500).getTotalSeconds(), 1);

    EXPECT_EQ(Time(10) - Time(25), Duration(-15));
    EXPECT_EQ(Time(Most) + Duration(1), Time(Least));
    EXPECT_EQ(Time(Least) - Duration(1), Time(Most));
    EXPECT_EQ(Duration(Least) - Duration(1), Duration(Most));
    Time time(5);
    EXPECT_EQ(time += Duration(Most), Time(Least + 4));
    EXPECT_EQ(time -= Duration(Most), Time(5));
    EXPECT_EQ(Duration::Hours(Most).getTotalMicroseconds(), -3'600'000'000);
}

TEST(Duration, ScalesThroughAFloatAndSaturates)
{
    EXPECT_EQ(Duration(16'777'217) * 1.0f, Duration(16'777'216));
    EXPECT_EQ(Duration(-5) / 2.0f, Duration(-2));
    EXPECT_EQ(Duration(5) / 0.0f, Duration(Most));
    EXPECT_EQ(Duration(-5) * 1e30f, Duration(Least));
    EXPECT_EQ(Duration(Most) * 1.0f, Duration(Most)); // as a float it is 2 to the 63
    EXPECT_EQ(Duration(0) / 0.0f, Duration(Least));
    Duration span(10);
    EXPECT_EQ(span *= 1.5f, Duration(15));
    EXPECT_EQ(span /= 4.0f, Duration(3));
}

} // namespace
