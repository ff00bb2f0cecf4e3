#include "support/dispatch.h"

#include <future>
#include <gtest/gtest.h>
#include <stdexcept>
#include <thread>

#include "tests/fakes/fake_platform.h"
#include "tests/fakes/threaded_dispatcher.h"

namespace reelvane {
namespace {

TEST(Dispatch, SynchronousWorkEndsBeforeItsCallReturns) {
    FakePlatform platform;
    ThreadedDispatcher dispatcher;
    Vantor vantor(withDispatcher(platform.vantor.ports(), dispatcher), platform.preferences);
    std::thread::id where;
    dispatch_sync_main(vantor, [&] { where = std::this_thread::get_id(); });
    EXPECT_EQ(where, std::this_thread::get_id());  // at once, or it would wait for itself
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
