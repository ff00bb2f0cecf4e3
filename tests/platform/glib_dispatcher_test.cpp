#include "platform/glib_dispatcher.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <future>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <memory>
#include <string>
#include <thread>
#include <vector>

namespace reelvane {
namespace {

using std::chrono::milliseconds;
using testing::ElementsAre;

TEST(GlibDispatcher, MainWorkRunsLaterAndInOrder) {
    GlibDispatcher dispatcher;
    std::vector<int> order;
    dispatcher.afterMain(milliseconds(2), [&] {
        order.push_back(4);
        dispatcher.quit(7);
    });
    dispatcher.afterMain(milliseconds(-1), [&] { order.push_back(1); });
    dispatcher.asyncMain([&] {
        order.push_back(2);
        dispatcher.asyncMain([&] { order.push_back(3); });
        EXPECT_TRUE(dispatcher.isMainThread());
    });
    EXPECT_TRUE(order.empty());
    EXPECT_EQ(dispatcher.run(), 7);
    EXPECT_THAT(order, ElementsAre(1, 2, 3, 4));
}

TEST(GlibDispatcher, EveryThreadsMainWorkKeepsItsOrderAndWakesTheLoop) {
    constexpr int kEach = 500;
    GlibDispatcher dispatcher;
    std::array<std::vector<int>, 4> seen;
    std::size_t total = 0;
    const auto submitAll = [&](std::vector<int>& mine) {
        for (int i = 0; i < kEach; ++i) {
            dispatcher.asyncMain([&, i] {
                mine.push_back(i);
                if (++total == seen.size() * kEach) dispatcher.quit();
            });
        }
    };
    std::vector<std::thread> threads;
    threads.reserve(seen.size());
    for (auto& mine : seen) threads.emplace_back(submitAll, std::ref(mine));
    dispatcher.run();
    for (auto& thread : threads) thread.join();
    EXPECT_TRUE(std::ranges::all_of(seen, [](const auto& mine) {
        return mine.size() == kEach && std::ranges::is_sorted(mine);
    }));
}

TEST(GlibDispatcher, ATimerMayGoInsideItsOwnTick) {
    GlibDispatcher dispatcher;
    int ticks = 0;
    std::unique_ptr<Timer> timer;
    timer = dispatcher.every(milliseconds(1), [&, kept = std::string(100, 'x')] {
        if (++ticks < 3) return;
        timer.reset();
        EXPECT_EQ(kept, std::string(100, 'x'));  // what the work holds outlives its timer
        dispatcher.afterMain(milliseconds(5), [&] { dispatcher.quit(); });
    });
    dispatcher.run();
    EXPECT_EQ(ticks, 3);
}

TEST(GlibDispatcher, DestructionWaitsForRunningWorkAndDropsTheRest) {
    std::atomic<bool> finished = false;
    {
        GlibDispatcher dispatcher;
        std::promise<void> running;
        dispatcher.asyncBackground([&] {
            running.set_value();
            dispatcher.asyncMain([&] { ADD_FAILURE() << "the loop is over"; });
            finished = !dispatcher.isMainThread();
        });
        running.get_future().wait();
        dispatcher.afterBackground(std::chrono::hours(1), [] { ADD_FAILURE(); });
    }
    EXPECT_TRUE(finished);
}

}  // namespace
}  // namespace reelvane
