// A long run leaves memory flat and every node's tables empty.

#include "benchmarks/support/usage.h"
#include "corvale/data/data.h"
#include "corvale/engine/corvale.h"
#include "support/logcapture.h"

#include <boost/make_shared.hpp>
#include <gmock/gmock.h>

using namespace ZR::Corvale;

extern "C" std::size_t __sanitizer_get_current_allocated_bytes();

namespace {

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
constexpr int computations = 100000;
// What is freed stays resident for a while under a sanitizer.
std::size_t bytesInUse()
{
    return __sanitizer_get_current_allocated_bytes();
}
#else
constexpr int computations = 1000000;
constexpr auto bytesInUse = support::residentBytes;
#endif

} // namespace

TEST(FlatMemory, AMillionComputationsOfACompositeLeaveNothingBehind)
{
    const support::LogCapture log;
    {
        Corvale engine(0);
        ASSERT_TRUE(engine.loadProgram(R"(source number { 1 }
            filter Inner { Identity i; Append l; i -> l:item; i:in <= x; l:out => list }
            filter Outer { Inner n; Head h; Duplicate d; n -> h; h -> d; n:x <= x; d:left => left; d:right => right }
            process upstream(Outer, 3, infinity) { x <= number; left => out }
            process p(Outer, 3, infinity) { x <= upstream:out; left => all; right => all })"));
        std::size_t warm = 0;
        for (int i = 0; i < computations; ++i) {
            if (i == computations / 10)
                warm = bytesInUse();
            engine.setData("number", boost::make_shared<Data>(i));
            const std::vector<boost::shared_ptr<Data>> both = *engine.getData("p:all");
            ASSERT_EQ(both.size(), 2u);
            ASSERT_EQ(int(*both[0]), i);
        }
        EXPECT_LE(bytesInUse(), warm + 64 * 1024) << "after the first tenth nothing grows";
    }
    EXPECT_EQ(log.count(rk::log::Fatal), 0u) << "a node reports what is left in its tables when it ends";
}
