// Other people's parsers agree with ours on what an output holds, and a browser plays it.

#include <algorithm>
#include <array>
#include <cctype>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <map>
#include <nlohmann/json.hpp>
#include <string>
#include <tuple>
#include <vector>

#include "tests/end_to_end/movies.h"
#include "tests/end_to_end/sandbox.h"

namespace reelvane {
namespace {

using nlohmann::json;

namespace fs = std::filesystem;

/// What a reader says of a file, as far as it says it: "video audio:ger audio:eng-" (a minus:
/// disabled), with the languages in three letters.
struct Facts {
    double seconds = 0;
    std::string tracks{};
};

json outputOf(const std::vector<std::string>& command) {
    const auto outcome = run(command);
    return json::parse(outcome.output, nullptr, false);
}

void add(Facts& facts, const std::string& kind, const std::string& language, bool enabled) {
    if (!facts.tracks.empty()) facts.tracks += ' ';
    facts.tracks += kind;
    if (language != "und" && !language.empty()) facts.tracks += ":" + language;
    if (!enabled) facts.tracks += '-';
}

Facts ours(const Sandbox& sandbox, const fs::path& file) {
    const auto report = outputOf(sandbox.command({"verify", "--json", file.native()}));
    Facts facts{.seconds = report.at("seconds")};
    for (const auto& track : report.at("tracks")) {
        add(facts, track.at("kind"), track.at("language"), track.at("enabled"));
    }
    return facts;
}

Facts ffprobe(const fs::path& file) {
    const auto report = outputOf(
        {"ffprobe", "-v", "error", "-show_format", "-show_streams", "-of", "json", file.native()});
    const std::string seconds = report.at("/format/duration"_json_pointer);
    Facts facts{.seconds = std::stod(seconds)};
    for (const auto& stream : report.at("streams")) {
        const std::string kind = stream.at("codec_type");
        add(facts, kind == "subtitle" ? "text" : kind,
            stream.value("/tags/language"_json_pointer, std::string()),
            stream.at("/disposition/default"_json_pointer) == 1);
    }
    return facts;
}

Facts mediainfo(const fs::path& file) {
    static const std::map<std::string, std::string> languages{
        {"de", "ger"}, {"en", "eng"}, {"pt", "por"}, {"", "und"}};
    const auto report = outputOf({"mediainfo", "--Output=JSON", file.native()});
    Facts facts;
    for (const auto& track : report.at("/media/track"_json_pointer)) {
        auto kind = track.at("@type").get<std::string>();
        std::ranges::transform(kind, kind.begin(),
                               [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
        if (kind == "general") {
            facts.seconds = std::stod(track.at("Duration").get<std::string>());
        } else {
            add(facts, kind, languages.at(track.value("Language", "")),
                track.value("Default", "Yes") == "Yes");
        }
    }
    return facts;
}

/// Knows no MP4 subtitles, and tells the duration of what it has made of a file.
Facts mkvmerge(const Sandbox& sandbox, const fs::path& file) {
    const auto remuxed = (sandbox.root() / "remuxed.mkv").native();
    EXPECT_EQ(run({"mkvmerge", "-q", "-o", remuxed, file.native()}).status, 0) << file;
    const auto made = outputOf({"mkvmerge", "-J", remuxed});
    const double nanoseconds = made.at("/container/properties/duration"_json_pointer);
    Facts facts{.seconds = nanoseconds / 1e9};
    const auto report = outputOf({"mkvmerge", "-J", file.native()});
    for (const auto& track : report.at("tracks")) {
        const auto& properties = track.at("properties");
        add(facts, track.at("type"), properties.value("language", ""),
            properties.value("enabled_track", true));
    }
    return facts;
}

/// Tells the kinds of the tracks and the duration.
Facts gstDiscoverer(const fs::path& file) {
    Facts facts;
    const auto report = run({"gst-discoverer-1.0", file.native()}).output;
    for (const auto* const kind : {"video", "audio", "subtitles"}) {
        for (auto at = report.find(kind); at != std::string::npos; at = report.find(kind, at + 1)) {
            if (report.compare(at + std::string_view(kind).size(), 2, " #") != 0) continue;
            add(facts, std::string(kind) == "subtitles" ? "text" : kind, {}, true);
        }
    }
    const auto time = report.find("Duration: ");
    if (time == std::string::npos) return facts;
    facts.seconds =
        60 * std::stod(report.substr(time + 12, 2)) + std::stod(report.substr(time + 15));
    return facts;
}

/// The tracks without what a reader does not tell.
std::string without(std::string tracks, bool text, bool details) {
    if (text) tracks = tracks.substr(0, tracks.find(" text"));
    std::string kinds;
    bool skipping = false;
    for (const char c : tracks) {
        skipping = details && c != ' ' && (skipping || c == ':' || c == '-');
        if (!skipping) kinds += c;
    }
    return kinds;
}

struct Row {
    const char* movie;
    const char* tracks;
    const char* extension = "1";
};

TEST(IndependentReaders, AgreeOnTracksFlagsLanguagesAndDurations) {
    constexpr auto kRows = std::to_array<Row>({
        {"aac.mkv", "video audio:eng"},
        {"aac.mkv", "video audio:eng", "0"},
        {"ac3-51.mkv", "video audio:eng audio:eng-"},
        {"forced.mkv", "video audio:ger audio:ger- text:por text:eng-"},
        {"forced.mkv", "video audio:ger audio:ger- text:por text:eng-", "0"},
        {"hevc.mkv", "video audio"},
        {"dts-51.mkv", "video audio:ger audio:ger-"},
        {"silent.mkv", "video"},
        {"mpeg2.mpg", "video audio"},
    });
    for (const auto& row : kRows) {
        const Sandbox sandbox;
        const auto extension = std::string("DefaultExtension=") + row.extension;
        ASSERT_EQ(sandbox
                      .convert(movie(row.movie),
                               {"--set", extension, "--set", "DisableBuiltinSubtitles=0"})
                      .status,
                  0);
        const auto file = fs::directory_iterator(sandbox.out())->path();
        const auto own = ours(sandbox, file);
        EXPECT_EQ(own.tracks, row.tracks) << row.movie;
        EXPECT_NEAR(own.seconds, 3, 0.2) << row.movie;
        for (const auto& [name, facts, expected] :
             {std::tuple("ffprobe", ffprobe(file), own.tracks),
              std::tuple("mediainfo", mediainfo(file), own.tracks),
              std::tuple("mkvmerge", mkvmerge(sandbox, file), without(own.tracks, true, false)),
              std::tuple("gst-discoverer", gstDiscoverer(file),
                         without(own.tracks, false, true))}) {
            EXPECT_EQ(facts.tracks, expected) << name << " " << row.movie;
            EXPECT_NEAR(facts.seconds, own.seconds, 0.1) << name << " " << row.movie;
        }
    }
}

/// Plays a movie to its end and tells about it; the page then closes the browser.
json playInBrowser(const Sandbox& sandbox, const fs::path& file) {
    const auto page = sandbox.root() / "page.html";
    std::ofstream(page) << R"(<video id=v muted src="file://)" << file.native() << R"("></video>
<script>const v = document.getElementById('v');
const tell = facts => { console.log('FACTS' + JSON.stringify(facts) + 'END'); window.close(); };
v.onerror = () => tell({error: v.error.message});
v.onended = () => tell({seconds: v.duration, width: v.videoWidth, height: v.videoHeight,
    sounds: v.audioTracks.length, texts: [...v.textTracks].filter(t => t.mode == 'showing').length,
    frames: v.webkitDecodedFrameCount > 60, heard: v.webkitAudioDecodedByteCount > 0});
v.playbackRate = 4; v.play().catch(e => tell({error: '' + e}));</script>)";
    const auto output =
        run({"timeout", "30", "env", "HOME=" + sandbox.root().native(), "chromium", "--headless",
             "--no-sandbox", "--disable-gpu", "--disable-quic", "--no-first-run",
             "--disable-background-networking", "--disable-component-update", "--disable-sync",
             "--autoplay-policy=no-user-gesture-required",
             "--enable-blink-features=AudioVideoTracks", "--enable-logging=stderr",
             "--user-data-dir=" + (sandbox.root() / "profile").native(), "file://" + page.native()})
            .output;
    const auto begin = output.find("FACTS");
    const auto end = output.find("END", begin);
    if (end == std::string::npos) return output;
    return json::parse(output.substr(begin + 5, end - begin - 5), nullptr, false);
}

TEST(Browser, PlaysH264WithOneSoundAndNoSubtitleShowing) {
    for (const auto* const name : {"aac.mkv", "srt.mkv", "forced.mkv"}) {
        const Sandbox sandbox;
        ASSERT_EQ(sandbox
                      .convert(movie(name), {"--set", "DisableBuiltinSubtitles=0", "--set",
                                             "IncludeSurroundTrack=0"})
                      .status,
                  0);
        auto facts = playInBrowser(sandbox, fs::directory_iterator(sandbox.out())->path());
        EXPECT_NEAR(facts.value("seconds", 0.0), 3, 0.2) << facts;
        facts.erase("seconds");
        const json expected{{"width", 320}, {"height", 180},  {"sounds", 1},
                            {"texts", 0},   {"frames", true}, {"heard", true}};
        EXPECT_EQ(facts, expected) << name;
    }
}

}  // namespace
}  // namespace reelvane
