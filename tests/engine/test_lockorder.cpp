// Where the build checks the order of locks, a breach ends the program and names both locks; elsewhere there
// is nothing to see.

#include "corvale/data/orderedmutex.h"
#include "engine/enginetest.h"

using namespace support;

#ifdef CORVALE_CHECK_LOCK_ORDER

TEST(LockOrder, AskingForALockUnderALaterOneEndsTheProgram)
{
    testing::GTEST_FLAG(death_test_style) = "threadsafe";
    OrderedMutex<LockRank::Sources> sources;
    OrderedMutex<LockRank::Processes> processes;
    processes.lock();
    sources.lock();
    EXPECT_THAT(heldLocks(), testing::HasSubstr("holds Corvale::_processesMutex"));
    processes.unlock();
    EXPECT_DEATH(processes.lock(), "_processesMutex must not be taken under Corvale::_sourcesMutex");
    EXPECT_DEATH(sources.lock(), "_sourcesMutex must not be taken under Corvale::_sourcesMutex");
    sources.unlock();
    EXPECT_EQ(heldLocks(), "");
}

TEST(LockOrder, CallbacksAndHostsThatComputeMayNotBothTakeTheTableOfProcesses)
{
    testing::GTEST_FLAG(death_test_style) = "threadsafe";
    Corvale other(0);
    pass(other, "p", "1");
    Corvale engine(1);
    std::atomic<int> looks{0};
    engine.createFilter(boost::make_shared<FunctionFilter>("Look", [&](Value in) {
        looks += engine.isProcess("p") && other.getData("p:out"); // two engines are in no order
        return in;
    }));
    ASSERT_TRUE(pass(engine, "p", "1", "Look"));
    ASSERT_TRUE(comesTrue([&] { return looks > 0; })) << "in order as long as no host computes";
    EXPECT_DEATH(engine.getData("p:out"), "Process::_lock must not be taken under Corvale::_processesMutex");
}

#endif
