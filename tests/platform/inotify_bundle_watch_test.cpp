#include <gtest/gtest.h>

#include "platform/executable_bundle.h"
#include "tests/fakes/temporary_folder.h"

namespace reelvane {
namespace {

namespace fs = std::filesystem;

struct Moved : testing::Test {
    Moved() {
        fs::create_directories(bundle);
        watch.start(bundle, [this](std::uint32_t flags) {
            EXPECT_EQ(flags, kRootChangedFlags);
            ++told;
        });
    }
    /// Runs the main context until the watch has told once more, or nothing more is due.
    void turn(int upTo) const {
        for (int turns = 0; told < upTo && turns < 1000; ++turns) {
            g_main_context_iteration(nullptr, TRUE);
        }
    }

    TemporaryFolder folder;
    fs::path root = fs::canonical(folder.path());
    fs::path bundle = root / "a/b/bundle";
    int told = 0;
    InotifyBundleWatch watch{std::chrono::milliseconds(1)};
};

TEST_F(Moved, AMoveOfTheBundleOrOfAFolderAboveItIsToldWithTheNewPlace) {
    fs::rename(bundle, root / "a/b/elsewhere");
    turn(1);
    EXPECT_EQ(watch.currentPath(), root / "a/b/elsewhere");
    fs::rename(root / "a", root / "c");
    turn(2);
    EXPECT_EQ(watch.currentPath(), root / "c/b/elsewhere");
    EXPECT_EQ(told, 2);
}

TEST_F(Moved, WhatComesBackIsNoMove) {
    fs::rename(root / "a", root / "c");
    fs::rename(root / "c", root / "a");
    g_main_context_iteration(nullptr, TRUE);  // the events
    g_main_context_iteration(nullptr, TRUE);  // the latency's end
    EXPECT_EQ(told, 0);
}

}  // namespace
}  // namespace reelvane
