#include "support/dispatch.h"

#include <future>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

#include "tests/fakes/fake_platform.h"
#include "tests/fakes/threaded_dispatcher.h"

namespace reelvane {
namespace {

using testing::ElementsAre;

TEST(Dispatch, RunsDelayedWorkInItsOrderAndOnItsSide) {
    FakePlatform platform;
    auto& vantor = platform.vantor;
    std::vector<std::string> ran;
    const auto note = [&](const char* name) {
        return [&, name] {
            ran.push_back(name +
                          std::string(platform.dispatcher.isMainThread() ? " main" : " back"));
        };
    };
    dispatch_after_main(vantor, 0.5F, note("later"));
    dispatch_after_back(vantor, 0.25F, note("soon"));
    dispatch_after_main(vantor, -1, note("at once"));
    dispatch_async_main(vantor, note("async"));
    dispatch_async_back(vantor, note("async"));
    dispatch_sync_main(vantor, note("sync"));
    EXPECT_THAT(ran, ElementsAre("sync main"));
    platform.dispatcher.advance(std::chrono::milliseconds(499));
    EXPECT_THAT(ran,
                ElementsAre("sync main", "at once main", "async main", "async back", "soon back"));
    platform.dispatcher.advance(std::chrono::milliseconds(1));
    EXPECT_EQ(ran.back(), "later main");
}

TEST(Dispatch, SynchronousWorkEndsBeforeItsCallReturns) {
    FakePlatform platform;
    ThreadedDispatcher dispatcher;
    Vantor vantor(withDispatcher(platform.vantor.ports(), dispatcher), platform.preferences);
    std::thread::id where;
    dispatch_sync_back(vantor, [&] { where = std::this_thread::get_id(); });
    EXPECT_NE(where, std::this_thread::get_id());

    dispatch_async_back(vantor, [&] {
        dispatch_sync_main(vantor, [&] { where = std::this_thread::get_id(); });
        dispatcher.stopMain();
    });
    dispatcher.runMain();
    EXPECT_EQ(where, std::this_thread::get_id());
    EXPECT_THROW(dispatch_sync_back(vantor, [] { throw std::runtime_error("failed"); }),
                 std::runtime_error);
}

TEST(Dispatch, ATimedWaitGivesUpButTheWorkGoesOn) {
    FakePlatform platform;
    ThreadedDispatcher dispatcher;
    Vantor vantor(withDispatcher(platform.vantor.ports(), dispatcher), platform.preferences);
    std::promise<void> release;
    std::promise<void> done;
    const auto slow = [&, gate = release.get_future().share()] {
        gate.wait();
        done.set_value();
    };
    EXPECT_TRUE(dispatch_sync_back_timeout(vantor, slow, 0));
    release.set_value();
    done.get_future().wait();
    EXPECT_FALSE(dispatch_sync_back_timeout(
        vantor, [] {}, 60));
}

}  // namespace
}  // namespace reelvane
