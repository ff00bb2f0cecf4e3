#include <gmock/gmock.h>
#include <sys/stat.h>

#include "tests/cli/cli_fixture.h"
#include "tests/fakes/small_mp4.h"

namespace reelvane {
namespace {

using testing::HasSubstr;

using Inspect = CliTest;
using Verify = CliTest;
using Command = CliTest;
using PreferencesCommand = CliTest;

TEST_F(Inspect, PrintsOneObjectPerFileInOrder) {
    movie("b\xFF.mkv");
    folder_.write("broken.mkv", "  Duration: 00:00:12\nStream #0:0: Video: h264, 320x240\n");
    folder_.write("old.mkv",
                  "  Duration: 00:00:12.00, start: 0.0, bitrate: 1 kb/s\n"
                  "  Stream #0:0: Video: wmv3, 320x240\n");
    const auto outcome =
        cli({"inspect", "--json", "old.mkv", "broken.mkv", "none.mkv", "./b\xFF.mkv"});
    EXPECT_EQ(outcome.status, 1);
    const auto found = objects(outcome.output);
    ASSERT_EQ(found.size(), 4U) << errors();
    for (std::size_t i = 0; i < 3; ++i) {
        EXPECT_FALSE(found[i].at("accepted"));
        EXPECT_EQ(found[i].at("alerts").size(), 1U) << found[i];
    }
    EXPECT_THAT(found[2].at("alerts")[0].at("message"), HasSubstr("There is no file 'none.mkv'"));
    EXPECT_EQ(found[3].at("file"), "./b\uFFFD.mkv");
    EXPECT_EQ(found[3].at("runtimeSeconds"), 12);
    EXPECT_EQ(found[3].at("bestLanguage"), "#1: eng (ac3)");
    EXPECT_EQ(errors(), "");
}

TEST_F(Inspect, SaysWhichSubtitlesAreLeftOut) {
    const std::string subtitle = "  Stream #0:3: Subtitle: subrip\n";
    folder_.write("a.mkv", std::string(kReport) + subtitle);
    folder_.write("silent.mkv",
                  "Input #0, x, from 'x':\n  Stream #0:0: Video: h264, 4x3\n" + subtitle);
    EXPECT_THAT(cli({"inspect", "--set", "DisableBuiltinSubtitles=0", "a.mkv"}).output,
                HasSubstr("#3: text\n"));
    EXPECT_THAT(cli({"inspect", "--set", "DisableBuiltinSubtitles=1", "a.mkv"}).output,
                HasSubstr("#3: text (left out, as"));
    EXPECT_THAT(cli({"inspect", "silent.mkv"}).output,
                HasSubstr("#3: text (left out: the movie has"));
}

TEST_F(Inspect, AMissingFfmpegIsToldOnceAndForEachObject) {
    environment_ = {"REELVANE_FFMPEG=/nowhere/ffmpeg"};
    movie("a.mkv");
    const auto outcome = cli({"inspect", "a.mkv", "a.mkv"});
    EXPECT_EQ(outcome.status, 1);
    EXPECT_EQ(outcome.output, "");
    EXPECT_THAT(errors(), HasSubstr("REELVANE_FFMPEG names it: correct or unset it."));
    EXPECT_EQ(std::ranges::count(errors(), '\n'), 1);
    const auto list = cli({"inspect", "--json", "a.mkv", "a.mkv"});
    EXPECT_EQ(list.status, 1);
    ASSERT_EQ(objects(list.output).size(), 2U);
    EXPECT_THAT(objects(list.output)[1].at("alerts")[0].at("message"), HasSubstr("is missing."));
}

TEST_F(Inspect, RefusesWhatIsNoMovieBeforeItIsProbed) {
    std::filesystem::create_directories(path("Movies"));
    folder_.write("b.txt", kReport);
    folder_.write("b.srt", kReport);
    const std::vector<std::pair<std::string, std::string>> cases{
        {"./Movies", "'./Movies' is a folder."},
        {"/dev/null", "'/dev/null' is no regular file"},
        {"./b.txt", "'./b.txt' has none of the extensions"},
        {"none.mkv", "There is no file 'none.mkv'."},
        {"b.srt", "'b.srt' is a subtitle file."}};
    for (const auto& [name, sentence] : cases) {
        EXPECT_THAT(cli({"inspect", name}).output, HasSubstr(sentence));
        EXPECT_EQ(cli({"command", name}).status, 1);
        EXPECT_THAT(errors(), AllOf(HasSubstr(name + ": refused: "), HasSubstr(sentence)));
    }
}

TEST_F(Verify, TellsWholeFromBrokenFromNotChecked) {
    const auto bytes = SmallMp4().bytes();
    folder_.write("whole.mp4", bytes);
    folder_.write("cut.mp4", bytes.substr(0, bytes.size() - 1));
    EXPECT_EQ(cli({"verify", "whole.mp4"}).status, 0);
    const auto outcome = cli({"verify", "--json", "whole.mp4", "cut.mp4", "none.mp4"});
    EXPECT_EQ(outcome.status, 1);
    std::vector<nlohmann::json> answers;
    for (const auto& line : objects(outcome.output)) answers.push_back(line.at("whole"));
    EXPECT_THAT(answers, testing::ElementsAre(true, false, nullptr));
    EXPECT_EQ(cli({"verify", "none.mp4"}).output, "none.mp4: not checked: it is not there\n");
}

TEST_F(Command, IsTheListOfTheConversionAndMakesNothing) {
    movie("it's.mkv");
    auto report = std::string(kReport);
    folder_.write("odd.mkv", report.replace(report.find("ac3"), 3, "opus"));
    folder_.write("it's.m4v");
    const auto line = cli({"command", "--audio", "1", "--set", "ConversionPreset=1", "it's.mkv"});
    EXPECT_EQ(line.status, 0);
    EXPECT_THAT(line.output, HasSubstr("-map 0:2"));
    EXPECT_THAT(line.output, HasSubstr(R"(it'\''s-0.m4v')"));
    EXPECT_FALSE(std::filesystem::exists(path("home")));

    // As a hand may write it: a launch corrects that for the run.
    folder_.write("home/.config/org.reelvane.Reelvane/org.reelvane.Reelvane.ini",
                  "[Preferences]\nCustomUnknownHandling=7\n");
    std::filesystem::create_directories(path("Movies"));
    EXPECT_EQ(cli({"destinations", "add", "Movies"}).status, 0) << errors();
    const std::vector<std::vector<std::string>> choices{
        {"odd.mkv", "--set", "ConversionPreset=2"},
        {"it's.mkv"},
        {"it's.mkv", "--audio", "1", "--set", "DefaultExtension=0"},
        {"it's.mkv", "--set", "DefaultDestination=3"},
        {"it's.mkv", "--to", "Movies", "--set", "ConversionPreset=1"}};
    for (auto options : choices) {
        options.insert(options.begin(), {"command", "--json"});
        const auto list = cli(options);
        options.front() = "convert";
        const auto events = objects(cli(options).output);
        ASSERT_GE(events.size(), 2U) << errors();
        EXPECT_EQ(nlohmann::json::parse(list.output), events[1].at("arguments"));
    }
}

TEST_F(Command, ExplainsWhatCannotBeFollowed) {
    movie("a.mkv");
    const std::vector<std::pair<std::vector<std::string>, std::string>> cases{
        {{"--audio", "2"}, "has no audio track with the index 2"},
        {{"--to", "none"}, "There is no folder 'none'"},
        {{"--to-saved", "none"}, "There is no saved destination named 'none'"},
        {{"--subtitle", "none.srt"}, "There is no subtitle file 'none.srt'"},
        {{"--set", "DefaultDestination=0"}, "Please name one with --to."},
        {{"--set", "DefaultDestination=9"}, "Please name one with --to."}};
    for (const auto& [options, sentence] : cases) {
        std::vector<std::string> arguments{"command", "a.mkv"};
        arguments.insert(arguments.end(), options.begin(), options.end());
        EXPECT_EQ(cli(arguments).status, 1);
        EXPECT_THAT(errors(), HasSubstr(sentence));
    }
}

TEST_F(PreferencesCommand, StoresReadsListsAndForgets) {
    EXPECT_EQ(cli({"preferences", "set", "AACBitrate", "3"}).status, 0);
    EXPECT_EQ(cli({"preferences", "get", "AACBitrate"}).output, "3\n");
    EXPECT_EQ(cli({"--set", "AACBitrate=2", "preferences", "get", "AACBitrate"}).output, "2\n");
    for (const auto& row : objects(cli({"preferences", "--json"}).output)) {
        if (row.at("key") == "AACBitrate") {
            EXPECT_EQ(row.at("value"), "3");
            EXPECT_EQ(row.at("default"), "1");
        }
    }
    EXPECT_EQ(cli({"preferences", "reset", "AACBitrate"}).status, 0);
    EXPECT_EQ(cli({"preferences", "get", "AACBitrate"}).output, "1\n");
}

TEST_F(PreferencesCommand, AWriteThatFailsIsTold) {
    folder_.write("home/.config", "no folder");
    EXPECT_EQ(cli({"preferences", "set", "AACBitrate", "3"}).status, 1);
    EXPECT_THAT(errors(), HasSubstr("The preference AACBitrate could not be stored."));
}

TEST_F(PreferencesCommand, TheReferencePageIsTheOneInTheDocumentation) {
    std::ifstream page(REELVANE_REFERENCE, std::ios::binary);
    const std::string text{std::istreambuf_iterator<char>(page), {}};
    EXPECT_EQ(cli({"preferences", "--markdown"}).output, text);
}

TEST_F(PreferencesCommand, SavedDestinationsAreUsedByName) {
    std::filesystem::create_directories(path("Movies"));
    std::filesystem::create_directories(path("Other"));
    for (const auto* const name : {"Movies/", "Other"}) {
        EXPECT_EQ(cli({"destinations", "add", name}).status, 0) << errors();
    }
    EXPECT_EQ(cli({"destinations", "add", "./Movies"}).status, 1);
    EXPECT_THAT(errors(), HasSubstr("already bookmarked"));
    movie("a.mkv");
    const auto arguments = cli({"command", "--json", "--to-saved", "Movies", "a.mkv"}).output;
    EXPECT_EQ(nlohmann::json::parse(arguments).back(), path("Movies/a.m4v").native());

    EXPECT_EQ(cli({"preferences", "set", "DefaultDestination", "4"}).status, 0);
    EXPECT_EQ(cli({"destinations", "remove", "Movies"}).status, 0);
    EXPECT_EQ(cli({"preferences", "get", "DefaultDestination"}).output, "3\n");
    const auto left = objects(cli({"destinations", "--json"}).output);
    ASSERT_EQ(left.size(), 1U);
    EXPECT_EQ(left[0].at("folder"), path("Other").native());
    EXPECT_EQ(cli({"destinations", "remove", "Othr"}).status, 1);
    EXPECT_THAT(errors(), HasSubstr("Did you mean 'Other'?"));

    std::filesystem::create_directories(path("old/Other"));
    for (const auto* const name : {"/", "old/Other"}) {
        EXPECT_EQ(cli({"destinations", "add", name}).status, 0) << errors();
    }
    EXPECT_EQ(cli({"destinations", "remove", "/"}).status, 0) << "it has a name";
    EXPECT_EQ(cli({"destinations", "remove", "Other"}).status, 1);
    EXPECT_THAT(errors(), HasSubstr("path of the one that you mean: '" + path("Other").native() +
                                    "', '" + path("old/Other").native()));
    EXPECT_EQ(cli({"destinations", "remove", path("Other")}).status, 0) << errors();
    EXPECT_EQ(cli({"command", "--to-saved", "Other", "a.mkv"}).status, 0) << errors();
}

TEST_F(PreferencesCommand, HelpVersionAndUsageErrorsTouchNothing) {
    for (const auto* const argument : {"--help", "--version", "--nothing"}) {
        EXPECT_EQ(cli({argument}).status, std::string_view(argument) == "--nothing" ? 2 : 0);
    }
    EXPECT_FALSE(std::filesystem::exists(path("home")));
}

}  // namespace
}  // namespace reelvane
