#include "support/dispatch.h"

#include <future>
#include <gtest/gtest.h>
#include <memory>
#include <optional>
#include <stdexcept>

#include "support/errands.h"
#include "tests/fakes/fake_platform.h"
#include "tests/fakes/threaded_dispatcher.h"

namespace reelvane {
namespace {

TEST(Dispatch, SynchronousWorkEndsBeforeItsCallReturns) {
    PlatformWith<ThreadedDispatcher> platform;
    auto& vantor = platform.vantor;
    auto& dispatcher = platform.dispatcher;
    bool onMain = false;
    const auto look = [&] { onMain = dispatcher.isMainThread(); };
    dispatch_sync_main(vantor, look);
    EXPECT_TRUE(onMain) << "at once, or it would wait for itself";
    dispatch_sync_back(vantor, look);
    EXPECT_FALSE(onMain);
    dispatch_async_back(vantor, [&] {
        dispatch_sync_main(vantor, look);
        dispatcher.stopMain();
    });
    dispatcher.runMain();
    EXPECT_TRUE(onMain);
    EXPECT_THROW(dispatch_sync_back(vantor, [] { throw std::runtime_error("failed"); }),
                 std::runtime_error);
}

TEST(Dispatch, ATimedWaitGivesUpButTheWorkGoesOn) {
    PlatformWith<ThreadedDispatcher> platform;
    std::promise<void> release;
    std::promise<void> done;
    const auto slow = [&, gate = release.get_future().share()] {
        gate.wait();
        done.set_value();
    };
    EXPECT_TRUE(dispatch_sync_back_timeout(platform.vantor, slow, 0));
    release.set_value();
    done.get_future().wait();
    EXPECT_FALSE(dispatch_sync_back_timeout(
        platform.vantor, [] {}, 60));
}

TEST(Errands, AnAnswerFindsOnlyAnAskerThatStillWaits) {
    FakePlatform platform;
    auto& dispatcher = platform.dispatcher;
    auto asker = std::make_optional<Errands>(platform.vantor.ports().dispatcher);
    int asked = 0;
    std::unique_ptr<int> answer;
    const auto ask = [&] {
        asker->run([&asked] { return std::make_unique<int>(++asked); },
                   [&answer](std::unique_ptr<int> got) { answer = std::move(got); });
    };
    ask();
    dispatcher.runBackground();
    dispatcher.runPending();
    ASSERT_TRUE(answer);
    EXPECT_EQ(*answer, 1);
    ask();
    asker->forget();
    dispatcher.runBackground();
    dispatcher.runPending();
    EXPECT_EQ(*answer, 1) << "nobody waits any more";
    ask();
    asker->later([&answer] { answer.reset(); });
    asker.reset();
    dispatcher.runBackground();
    dispatcher.runPending();
    EXPECT_EQ(*answer, 1) << "the asker has gone";
    EXPECT_EQ(asked, 3);
}

}  // namespace
}  // namespace reelvane
