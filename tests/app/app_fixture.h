#pragma once

#include <filesystem>
#include <gmock/gmock.h>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "app/app_delegate.h"
#include "app/preference_table.h"
#include "tests/fakes/fake_platform.h"
#include "tests/fakes/small_mp4.h"

namespace reelvane {

namespace fs = std::filesystem;
using namespace testing;  // NOLINT(google-build-using-namespace): a test's own vocabulary

/// The controller on fakes: every probe prints `report`, the test plays the conversions.
class AppFixture : public testing::Test {
protected:
    AppFixture() {
        platform_.preferences.registerDefaults(registeredDefaults());
        set(kDefaultDestination.key, 1);
        set(kHasUpgradedFromPre13.key, 1);
        set(kAutoAdd.key, 1);
        platform_.processLauncher.answer = [this](const ProcessRequest&) {
            return FinishedProcess{.output = report_, .exitStatus = 1};
        };
    }

    void set(std::string_view key, int value) { platform_.preferences.setDefaultInt(key, value); }

    AppDelegate& launch(RunChoices choices = {}) {
        app_ = std::make_unique<AppDelegate>(platform_.vantor, std::move(choices));
        app_->setTerminateHandler([this] { ++terminated_; });
        app_->applicationWillFinishLaunching();
        refusals_ = app_->intake().observeRefusals(
            [this](const fs::path& file, const std::vector<VettingAlert>& alerts) {
                refused_.push_back(file.filename());
                refusalTexts_.push_back(alerts.empty() ? "" : alerts.front().message);
            });
        settle();
        return *app_;
    }
    fs::path movie(std::string_view name) const { return platform_.folder.write(name); }
    /// Opens the files one batch each, so that each is added before the next arrives.
    void add(const std::vector<fs::path>& files) {
        for (const auto& file : files) open({file});
    }
    void open(const std::vector<fs::path>& files) {
        if (!app_) launch();
        app_->intake().openFiles(files);
        settle();
    }
    void togglePause() {
        app_->queueControl().togglePause();
        settle();
    }
    void removeTop() {
        app_->queue().taskArray().front()->remove();
        settle();
    }
    /// Lets all work end that waits for its turn, in the background too.
    void settle() { platform_.dispatcher.runPending(); }
    /// Lets the run end well, with the output in place.
    void finish(std::size_t child) {
        auto& running = platform_.processLauncher.children.at(child);
        std::ofstream(running.request.arguments.back(), std::ios::binary) << SmallMp4{}.bytes();
        running.exit(0);
        settle();
    }
    void fail(std::size_t child) {
        platform_.processLauncher.children.at(child).exit(1);
        settle();
    }
    [[nodiscard]] const ConversionJob& job(std::size_t row) const {
        return *app_->queue().taskArray().at(row);
    }
    [[nodiscard]] std::vector<std::string> rows() const {
        std::vector<std::string> names;
        for (const auto& row : app_->queue().taskArray()) names.push_back(row->fileInfo().fileName);
        return names;
    }
    [[nodiscard]] std::string output(std::size_t row) const {
        return job(row).fileInfo().destinationURL->filename();
    }
    [[nodiscard]] std::string lastAlert() const { return platform_.alerts.shown.back().message; }

    FakePlatform platform_;
    std::string report_ =
        "ffmpeg version 5.1\nInput #0, matroska,webm, from 'x':\n"
        "  Duration: 00:00:12.00, start: 0.000000, bitrate: 1000 kb/s\n"
        "    Stream #0:0: Video: h264 (High), yuv420p, 640x360, 25 fps\n"
        "    Stream #0:1(eng): Audio: ac3, 48000 Hz, stereo, fltp, 192 kb/s\n"
        "    Stream #0:2(ger): Audio: ac3, 48000 Hz, stereo, fltp, 192 kb/s\n";
    int terminated_ = 0;
    std::vector<std::string> refused_;
    std::vector<std::string> refusalTexts_;
    std::unique_ptr<AppDelegate> app_;
    Subscription refusals_;
};

}  // namespace reelvane
