#pragma once

#include <gtest/gtest.h>
#include <memory>
#include <string>

#include "conversion/conversion_job.h"
#include "tests/fakes/audio_tracks.h"
#include "tests/fakes/fake_job_controller.h"
#include "tests/fakes/fake_platform.h"
#include "tests/fakes/small_mp4.h"

namespace reelvane {

/// One job for a movie that exists, on fakes, with everything that it can touch in one folder.
class JobTest : public testing::Test {
protected:
    [[nodiscard]] static bool exists(const std::filesystem::path& path) {
        return std::filesystem::exists(std::filesystem::symlink_status(path));
    }
    FakeProcessLauncher::Child& child() { return platform.processLauncher.children.back(); }
    [[nodiscard]] std::string lastAlert() const {
        return platform.alerts.shown.empty() ? "" : platform.alerts.shown.back().message;
    }
    void start() {
        job->start();
        platform.dispatcher.runPending();
    }
    /// The converter has begun to write.
    void startAndWrite() {
        start();
        platform.folder.write("movie.m4v", "half a movie");
        controller.told.clear();
    }

    /// The converter has written all of it.
    void writeWhole() {
        SmallMp4 movie;
        movie.seconds = 100;
        platform.folder.write("movie.m4v", movie.bytes());
    }
    /// And ended well.
    void finish(std::string_view rest = {}) {
        writeWhole();
        exitWell(rest);
    }
    void exitWell(std::string_view rest = {}) {
        child().exit(0, rest);
        platform.dispatcher.runPending();
    }

    FakePlatform platform;
    FakeJobController controller{platform.vantor};
    std::filesystem::path source = platform.folder.write("movie.mkv");
    std::filesystem::path output = platform.folder.path() / "movie.m4v";
    std::filesystem::path progressFile = platform.folder.path() / "Documents/movie.mkv.log";
    /// A fresh job in the place of the former.
    void setUpJob() {
        job = std::make_unique<ConversionJob>(platform.vantor, controller, record, 0);
    }

    MKVFileInfo record = MKVFileInfo{.audioTrackInformation = {audioTrack("#1: eng (ac3)", 48000)},
                                     .fileName = "movie.mkv",
                                     .fileURL = source,
                                     .destinationURL = output,
                                     .outputClaim = OutputClaim::Chosen,
                                     .videoTrackID = 0,
                                     .runtimeSeconds = 100,
                                     .fileSize = 1,
                                     .securityURL = platform.folder.path(),
                                     .videoCodec = "h264",
                                     .identity = fileVersionOf(source)};
    std::unique_ptr<ConversionJob> job =
        std::make_unique<ConversionJob>(platform.vantor, controller, record, 0);
};

}  // namespace reelvane
