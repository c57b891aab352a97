// Calls out of their order. A call that reaches the store before a launch or after an exit faults, and takes the
// process with it; checks before that return their codes, and the free functions always work.
#include "Child.h"
#include "Contents.h"
#include "Workload.h"

#include <cstdlib>
#include <thread>
#include <unistd.h>

using namespace brimlet::test;

// A sanitizer takes seconds to name the lines on the way to a fault, and every fault in here is wanted.
#if defined(__SANITIZE_ADDRESS__)
extern "C" __attribute__((visibility("default"))) const char *__asan_default_options()
{
    return "symbolize=0";
}
extern "C" __attribute__((visibility("default"))) const char *__ubsan_default_options()
{
    return "symbolize=0";
}
#endif

namespace {

// Whether a call that a child makes when it is prepared takes the child with it.
::testing::AssertionResult faults(const Step &step, const std::function<void()> &prepare)
{
    Child child([&](Channel &channel) {
        ::close(STDERR_FILENO); // a sanitizer would tell of the fault that is wanted here
        prepare();
        channel.tell(1);
        step.call();
        channel.tell(2);
    });
    if (child.hear() != 1)
        return ::testing::AssertionFailure() << "the child did not come to the call";
    if (child.hear())
        return ::testing::AssertionFailure() << "the call came back";
    if (const End end = child.wait(); end.isClean())
        return ::testing::AssertionFailure() << ::testing::PrintToString(end);
    return ::testing::AssertionSuccess();
}

std::vector<Step> callsThatReachTheStore()
{
    std::vector<Step> all = reads();
    for (Step &step : writes())
        all.push_back(std::move(step));
    return all;
}

struct Moment
{
    std::string name;
    std::function<void()> prepare;
};

void PrintTo(const Moment &moment, std::ostream *out)
{
    *out << moment.name;
}

class Order : public ::testing::Test, public ::testing::WithParamInterface<Moment>
{
protected:
    // Runs in a child at that moment and reports the result.
    static int64_t answer(const std::function<int64_t()> &call)
    {
        Child child([&](Channel &channel) {
            const DebugLines lines;
            GetParam().prepare();
            channel.tell(call());
        });
        const int64_t code = child.hear().value_or(-1);
        EXPECT_TRUE(child.wait().isClean());
        return code;
    }

    Directory directory;
};

TEST_P(Order, EveryCallThatReachesTheStoreFaults)
{
    int calls = 0;
    for (const Step &step : callsThatReachTheStore()) {
        EXPECT_TRUE(faults(step, GetParam().prepare)) << step.name;
        ++calls;
    }
    EXPECT_EQ(calls, 70);
    figure("calls out of order", calls);
}

TEST_P(Order, StateAndResultMayBeRead)
{
    EXPECT_EQ(answer([] { return getState(); }), 0);
    EXPECT_EQ(answer([] { return getLaunchCacheResult(); }), 255);
    figure("calls out of order", 2);
}

TEST_P(Order, AnExitDoesNothing)
{
    EXPECT_EQ(answer([] {
                  exitCache();
                  exitCache();
                  return getState();
              }),
              0);
    figure("calls out of order", 2);
}

TEST_P(Order, ATargetThatIsNotNullIsRefusedFirst)
{
    EXPECT_EQ(answer([] {
                  FlatUser user{};
                  FlatUser *target = &user;
                  return getUser(&target, 1);
              }),
              10);
    EXPECT_EQ(answer([] {
                  FlatUser user{};
                  FlatUser *target = &user;
                  uint32_t count = 0;
                  return getUsers(&target, &count);
              }),
              10);
    EXPECT_EQ(answer([] {
                  FlatUser user{};
                  FlatUser *target = &user;
                  return send(updateUser, &target, R"({"D":{"id":1}})");
              }),
              10);
    EXPECT_EQ(answer([] {
                  uint16_t unit = 0;
                  uint16_t *target = &unit;
                  return getServerIp(&target);
              }),
              10);
    figure("calls out of order", 4);
}

TEST_P(Order, ADocumentIsReadFirst)
{
    EXPECT_EQ(answer([] { return send(addUsers, "no document"); }), 10);
    EXPECT_EQ(answer([] { return send(addUsers, R"({"D":{"items":[]}})"); }), 10);
    EXPECT_EQ(answer([] { return send(addUsers, R"({"items":[]})"); }), 5);
    EXPECT_EQ(answer([] { return send(deleteUser, R"({"D":{"id":1}})"); }), 5);
    EXPECT_EQ(answer([] { return update(updateUser, R"({"D":{"name":"no id"}})").code; }), 5);
    EXPECT_EQ(answer([] { return update(addEvent, R"({"D":{"time":1}})").code; }), 5);
    figure("calls out of order", 6);
}

TEST_P(Order, TheFreeFunctionsWork)
{
    EXPECT_EQ(answer([] { return freeUser(nullptr); }), 10);
    EXPECT_EQ(answer([] { return freeUsersArray(nullptr, 1); }), 10);
    EXPECT_EQ(answer([] { return freeSection(nullptr); }), 10);
    EXPECT_EQ(answer([] {
                  auto *user = static_cast<FlatUser *>(std::calloc(1, sizeof(FlatUser)));
                  return freeUser(user);
              }),
              0);
    EXPECT_EQ(answer([] {
                  auto *zones = static_cast<FlatZone *>(std::calloc(3, sizeof(FlatZone)));
                  return freeZonesArray(zones, 3);
              }),
              0);
    figure("calls out of order", 5);
}

TEST_P(Order, ALaunchWorks)
{
    EXPECT_EQ(answer([] {
                  const Library library;
                  return send(addUsers, R"({"D":{"items":[{"id":1}]}})") + 10 * getState();
              }),
              20);
    EXPECT_EQ(File().number("SELECT count(*) FROM Users"), 1);
    figure("calls out of order", 1);
}

// From the moment in which the state is not 0 on: before, Qt is at work on the launch thread.
TEST(ProcessEnd, NeedsNoExitOnceTheStateIsNot0)
{
    const Directory directory;
    for (int turn = 0; turn < 20; ++turn) {
        Child child([](Channel &) {
            const DebugLines lines;
            std::thread(launchCache).detach();
            while (getState() == BRIMLET_STATE_NONE)
                std::this_thread::yield();
            std::exit(0);
        });
        EXPECT_TRUE(child.wait().isClean());
    }
}

INSTANTIATE_TEST_SUITE_P(Order, Order,
                         ::testing::Values(Moment{"BeforeALaunch", [] {}},
                                           Moment{"AfterAnExit",
                                                  [] {
                                                      const DebugLines lines;
                                                      const Library library;
                                                  }},
                                           Moment{"AfterTwoExits",
                                                  [] {
                                                      const DebugLines lines;
                                                      Library library;
                                                      library.exit();
                                                      exitCache();
                                                      exitCache();
                                                  }}),
                         [](const ::testing::TestParamInfo<Moment> &test) { return test.param.name; });

} // namespace
