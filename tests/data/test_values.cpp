#include "corvale/data/datatime.h"
#include "corvale/data/datavector2.h"
#include "corvale/data/datavector3.h"
#include "corvale/data/datavector4.h"
#include "corvale/data/datavector6.h"

#include "rk/os.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace {

using namespace ZR::Corvale::Type;

constexpr long long Most = std::numeric_limits<long long>::max();
constexpr long long Least = std::numeric_limits<long long>::min();

// A slip in one component of one operation shows: the components are all different.
template <typename V>
void expectArithmetic(const V& a, const V& b, const V& sum, const V& difference, const V& product,
                      const V& quotient, float dot)
{
    EXPECT_TRUE(a + b == sum);
    EXPECT_TRUE(a - b == difference);
    EXPECT_TRUE(a * b == product);
    EXPECT_TRUE(a / b == quotient);
    EXPECT_EQ(a.dot(b), dot);
    EXPECT_FALSE(a == b);

    V changed = a;
    EXPECT_TRUE((changed += b) == sum && changed == sum);
    EXPECT_TRUE((changed -= b) == a && changed == a);
    EXPECT_TRUE((changed *= b) == product && changed == product);
    EXPECT_TRUE((changed /= b) == a && changed == a);
}

TEST(Vectors, CombineComponentByComponent)
{
    expectArithmetic(Vector2(1, 2), Vector2(4, 8), Vector2(5, 10), Vector2(-3, -6), Vector2(4, 16),
                     Vector2(.25f, .25f), 20);
    expectArithmetic(Vector3(1, 2, 3), Vector3(4, 8, 2), Vector3(5, 10, 5), Vector3(-3, -6, 1),
                     Vector3(4, 16, 6), Vector3(.25f, .25f, 1.5f), 26);
    expectArithmetic(Vector4(1, 2, 3, 4), Vector4(4, 8, 2, 1), Vector4(5, 10, 5, 5), Vector4(-3, -6, 1, 3),
                     Vector4(4, 16, 6, 4), Vector4(.25f, .25f, 1.5f, 4), 30);
    expectArithmetic(Vector6(1, 2, 3, 4, 5, 6), Vector6(4, 8, 2, 1, .5f, 16), Vector6(5, 10, 5, 5, 5.5f, 22),
                     Vector6(-3, -6, 1, 3, 4.5f, -10), Vector6(4, 16, 6, 4, 2.5f, 96),
                     Vector6(.25f, .25f, 1.5f, 4, 10, .375f), 128.5f);
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
    rk::os::setClock([](timeval* now) {
        *now = {1'600'000'000, 999'999};
        return 0;
    });
    EXPECT_EQ(Time::now().getTotalMicroseconds(), 1'600'000'000'999'999);
    rk::os::setClock([](timeval* now) {
        *now = {Most, 7};
        return 0;
    });
    EXPECT_EQ(Time::now().getTotalMicroseconds(), 7 - 1'000'000);
    rk::os::setClock(nullptr);
}

TEST(Time, UnitsAreCutTowardZero)
{
    EXPECT_EQ(Time(-1'999'999).getTotalMilliseconds(), -1'999);
    EXPECT_EQ(Duration(-1'999'999).getTotalSeconds(), -1);
    EXPECT_EQ(Duration::Hours(1), Duration::Minutes(60));
    EXPECT_EQ(Duration::Seconds(-60), Duration::Minutes(-1));
    EXPECT_EQ(Duration::Milliseconds(1'500).getTotalSeconds(), 1);
}

TEST(Time, SumsGoAroundAtTheEnds)
{
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
