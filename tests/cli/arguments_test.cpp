#include "cli/arguments.h"

#include <algorithm>
#include <gmock/gmock.h>

namespace reelvane {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

template <typename T>
T parsed(const std::vector<std::string>& arguments) {
    const auto result = parseArguments(arguments);
    if (const auto* const early = std::get_if<EarlyExit>(&result)) {
        ADD_FAILURE() << early->text;
        return {};
    }
    return std::get<T>(std::get<Request>(result).action);
}

EarlyExit earlyExit(const std::vector<std::string>& arguments) {
    const auto result = parseArguments(arguments);
    const auto* const found = std::get_if<EarlyExit>(&result);
    return found != nullptr ? *found : EarlyExit{.text = "it was understood", .exitStatus = -1};
}

void expectHelpNames(const std::vector<std::string>& arguments,
                     const std::vector<std::string>& parts) {
    const auto help = earlyExit(arguments);
    EXPECT_EQ(help.exitStatus, 0);
    for (const auto& part : parts) EXPECT_THAT(help.text, HasSubstr(part)) << arguments.front();
}

TEST(Arguments, EveryFileNameComesThroughAsItIs) {
    const auto convert = parsed<ConvertRequest>({"convert", "[a].mkv", "[b]", "++", "convert",
                                                 "--json", "a b", "--", "-x.mkv", "--to", "--"});
    EXPECT_THAT(convert.files,
                ElementsAre("[a].mkv", "[b]", "++", "convert", "a b", "-x.mkv", "--to", "--"));
    EXPECT_TRUE(convert.json);
    EXPECT_FALSE(convert.options.toFolder);
    EXPECT_THAT(parsed<InspectRequest>({"inspect", "--", "-h"}).files, ElementsAre("-h"));
    EXPECT_EQ(parsed<CommandRequest>({"command", "--to", "[d]", "\xFF.mkv"}).file, "\xFF.mkv");
    const auto twice = parsed<CommandRequest>({"command", "--to", "a", "--to=--b=c", "-"});
    EXPECT_EQ(twice.options.toFolder, "--b=c");
    EXPECT_EQ(twice.file, "-");
}

TEST(Arguments, OverridesStandBeforeAndAfterTheCommand) {
    const auto result = parseArguments(
        {"--set", "AutoClean=yes", "convert", "a", "--set", "AudioVolume=80", "--audio", "2"});
    const auto& request = std::get<Request>(result);
    ASSERT_EQ(request.overrides.size(), 2U);
    EXPECT_EQ(request.overrides[0].text, "1");
    EXPECT_EQ(request.overrides[1].key, "AudioVolume");
    EXPECT_EQ(std::get<ConvertRequest>(request.action).options.audioTrackIndex, 2U);
}

TEST(Arguments, UsageErrorsAreOneSentenceThatHelps) {
    const std::vector<std::pair<std::vector<std::string>, std::string>> cases{
        {{}, "No command was given."},
        {{"convrt", "a"}, "There is no command 'convrt'. Did you mean 'convert'?"},
        {{"convert"}, "The command 'convert' needs a file."},
        {{"convert", "--jsn", "a"}, "There is no option '--jsn'. Did you mean '--json'?"},
        {{"convert", "--to"}, "The option '--to' needs a value."},
        {{"convert", "--to", "", "a"}, "The option '--to' needs a value."},
        {{"convert", "--to=", "a"}, "The option '--to' needs a value."},
        {{"convert", "--to", "--json", "a"}, "The option '--to' needs a value."},
        {{"convert", "--json=1", "a"}, "The option '--json' takes no value."},
        {{"convert", "--to", "x", "--to-saved", "y", "a"}, "exclude each other."},
        {{"convert", "--audio", "1x", "a"}, "'1x' is no index of an audio track"},
        {{"convert", "--subtitle", "s.srt", "a.mkv", "t.srt", "b.MKV"}, "for one movie only."},
        {{"help", "convrt"}, "There is no command 'convrt'. Did you mean 'convert'?"},
        {{"command", "a", "b"}, "There is one argument too many: 'b'."},
        {{"--set", "AACBitrte=1", "convert", "a"}, "Did you mean 'AACBitrate'?"},
        {{"--set", "AACBitrate=9", "convert", "a"}, "which takes: integer, 0 to 3."},
        {{"--set", "AACBitrate", "convert", "a"}, "is not of the form KEY=VALUE."},
        {{"preferences", "set", "AACBitrate"}, "needs VALUE."},
        {{"preferences", "get", "Unheard"}, "There is no preference named 'Unheard'. See"},
        {{"destinations", "ad"}, "Did you mean 'add'?"}};
    for (const auto& [arguments, sentence] : cases) {
        const auto error = earlyExit(arguments);
        EXPECT_EQ(error.exitStatus, 2);
        EXPECT_THAT(error.text, HasSubstr(sentence));
        EXPECT_EQ(std::ranges::count(error.text, '\n'), 1) << error.text;
    }
}

TEST(Arguments, HelpNamesEveryOptionOfItsCommand) {
    const std::vector<std::string> options{"--to DIR", "--to-saved", "--audio", "--subtitle",
                                           "--json",   "--set",      "Example"};
    expectHelpNames({"convert", "--help"}, options);
    expectHelpNames({"command", "--help"}, options);
    expectHelpNames({"help", "convert"}, options);
    EXPECT_EQ(earlyExit({"convert", "-h"}).text, earlyExit({"help", "convert"}).text);
    EXPECT_EQ(earlyExit({"-V"}).text, earlyExit({"--version"}).text);
    expectHelpNames({"help"}, {"Exit status"});
    expectHelpNames({"-h"}, {"Exit status", "XDG_CONFIG_HOME", "convert FILE"});
}

}  // namespace
}  // namespace reelvane
