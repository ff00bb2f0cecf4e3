#include <cstdio>
#include <gmock/gmock.h>
#include <map>

#include <QBuffer>

#include "support/make_string.h"
#include "tests/fakes/fake_platform.h"
#include "ui/jobs/poster_maker.h"
#include "ui/jobs/poster_view.h"

namespace reelvane {
namespace {

using testing::ElementsAre;

/// What ffmpeg answers: a report where no output is named, else a picture.
FinishedProcess answer(const ProcessRequest& request) {
    if (request.arguments.back() != "-") {
        return {.output = "ffmpeg version 5.1\nInput #0, matroska,webm, from 'a.mkv':\n"};
    }
    QImage image(256, 144, QImage::Format_RGB32);
    image.fill(Qt::black);
    image.setPixel(1, 1, qRgb(255, 255, 255));
    QBuffer buffer;
    image.save(&buffer, "PNG");
    return {.output = buffer.data().toStdString()};
}

class Posters : public testing::Test {
protected:
    Posters() {
        start();
        ffmpeg() = answer;
    }
    void start() { posters_ = std::make_unique<ThumbnailPosters>(platform_.vantor); }
    std::function<FinishedProcess(const ProcessRequest&)>& ffmpeg() {
        return platform_.processLauncher.answer;
    }
    void want(const std::string& name) {
        wanted_.emplace(name,
                        posters_->request(platform_.folder.path() / name,
                                          [this, name](const QImage&) { told_.push_back(name); }));
    }
    std::vector<std::string> told() {
        platform_.dispatcher.runPending();
        return std::exchange(told_, {});
    }
    std::vector<std::string> probed() {
        std::vector<std::string> names;
        for (const auto& run : std::exchange(platform_.processLauncher.runs, {})) {
            const std::filesystem::path last = run.arguments.back();
            if (last != "-") names.push_back(last.filename());
        }
        return names;
    }

    FakePlatform platform_;
    std::unique_ptr<ThumbnailPosters> posters_;
    std::multimap<std::string, Subscription> wanted_;
    std::vector<std::string> told_;
};

TEST_F(Posters, TheLastRequestComesFirstAndWhatNobodyWaitsForIsNeverBegun) {
    for (const std::string name : {"a", "b", "c", "d", "b"}) {
        platform_.folder.write(name);
        want(name);
    }
    want("missing");
    wanted_.erase("c");
    EXPECT_THAT(told(), ElementsAre("b", "b", "d", "a"));
    EXPECT_THAT(probed(), ElementsAre("b", "d", "a"));
    EXPECT_FALSE(posters_->cached(platform_.folder.path() / "a").isNull());
}

TEST_F(Posters, WhatOneStartHasFoundServesTheNextUntilTheMovieChanges) {
    struct Row {
        std::string content, brokenOutput;
        std::size_t probes = 1;
    };
    for (const auto& [content, brokenOutput, probes] :
         {Row{"once", ""}, Row{"another", ""}, Row{"third", "this is no ffmpeg", 2},
          Row{"fourth", "ffmpeg version 5.1\nInvalid data\n"}}) {
        platform_.folder.write("a", content);
        if (!brokenOutput.empty()) {
            ffmpeg() = [&](const auto&) { return FinishedProcess{.output = brokenOutput}; };
        }
        for (int i = 0; i < 2; ++i) {
            start();
            want("a");
            EXPECT_EQ(told().size(), brokenOutput.empty() ? 1 : 0) << content;
        }
        EXPECT_EQ(probed().size(), probes) << content;
    }
}

TEST_F(Posters, AFolderThatDoesNotAnswerHoldsUpNoOtherAndTheEndWaitsForNone) {
    for (const std::string name : {"hangs", "a"}) platform_.folder.write(name);
    ffmpeg() = [&](const ProcessRequest& request) {
        if (request.arguments.back().ends_with("hangs")) {
            want("a");
            platform_.dispatcher.advance(std::chrono::seconds(59));
            EXPECT_TRUE(request.stop.stop_requested());
            EXPECT_THAT(told(), ElementsAre()) << "two at once";
            platform_.dispatcher.advance(std::chrono::seconds(1));
            EXPECT_THAT(told(), ElementsAre("a"));
        }
        return answer(request);
    };
    want("hangs");
    EXPECT_THAT(told(), ElementsAre());
    ffmpeg() = answer;
    want("hangs");
    EXPECT_THAT(told(), ElementsAre("hangs")) << "slowness is no failure";
    platform_.folder.write("a", "changed");
    ffmpeg() = [&](const ProcessRequest& request) {
        posters_.reset();
        EXPECT_TRUE(request.stop.stop_requested());
        return answer(request);
    };
    want("a");
    EXPECT_THAT(told(), ElementsAre());
}

FinishedProcess runForReal(const ProcessRequest& request) {
    const auto line = request.executable.native() + " " + shellQuotedLine(request.arguments);
    // The quoting of odd bytes is that of bash; the plain shell may know less.
    auto* const pipe = ::popen(("bash -c " + shellQuoted(line) + " 2>&1").c_str(), "r");
    FinishedProcess finished;
    for (int byte = std::fgetc(pipe); byte != EOF; byte = std::fgetc(pipe)) {
        finished.output += static_cast<char>(byte);
    }
    finished.exitStatus = ::pclose(pipe);
    return finished;
}

TEST(PosterMaker, MakesAPictureOfTheDisplayedShapeThatIsNotTheBlackBefore) {
    const TemporaryFolder folder;
    FakeProcessLauncher launcher;
    launcher.answer = runForReal;
    const PosterTools tools{.launcher = &launcher, .ffmpeg = "ffmpeg", .side = 256};
    const auto movie = folder.path() / "a b\xFF.mkv";
    const auto source = "color=black:s=360x288:d=2[a];testsrc2=s=360x288:d=4[b];[a][b]concat";
    static_cast<void>(runForReal({"ffmpeg",
                                  {"-f", "lavfi", "-i", source, "-vf", "setsar=64/45", "-c:v",
                                   "mpeg4", "-g", "25", movie.native()}}));

    const auto made = makePoster(movie, tools, {});
    EXPECT_EQ(made.picture.size(), QSize(256, 144));
    EXPECT_FALSE(isBlank(made.picture));
    EXPECT_EQ(made.runtimeSeconds, 6);
    for (const auto& run : launcher.runs) EXPECT_TRUE(run.background);
    EXPECT_TRUE(makePoster(folder.write("broken.mkv"), tools, {}).movieHasNone);
}

}  // namespace
}  // namespace reelvane
