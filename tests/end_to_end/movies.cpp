#include "tests/end_to_end/movies.h"

#include <algorithm>
#include <array>
#include <fstream>
#include <functional>
#include <iterator>
#include <sstream>
#include <stdexcept>
#include <unistd.h>
#include <vector>

#include "tests/end_to_end/child.h"

namespace reelvane {
namespace {

struct Recipe {
    std::string_view name;
    std::string_view arguments;  ///< after the inputs: 0 picture, 1 stereo, 2 5.1, 3 subtitles
    int seconds = 3;
};

#define H264 "-c:v libx264 -preset ultrafast -pix_fmt yuv420p "
constexpr auto kRecipes = std::to_array<Recipe>({
    {"aac.mkv", "-map 0 -map 1 " H264 "-c:a aac -metadata:s:a language=eng"},
    {"ac3-51.mkv", "-map 0 -map 2 " H264 "-c:a ac3 -b:a 448k -metadata:s:a language=eng"},
    {"dts-51.mkv", "-map 0 -map 2 " H264 "-c:a dca -strict -2 -metadata:s:a language=ger"},
    {"mp3.mkv", "-map 0 -map 1 " H264 "-c:a libmp3lame"},
    {"vorbis.mkv", "-map 0 -map 1 " H264 "-c:a libvorbis"},
    {"silent.mkv", "-map 0 " H264},
    {"two-languages.mkv", "-map 0 -map 1 -map 1 " H264 "-c:a ac3 -metadata:s:a:0 language=eng "
                          "-metadata:s:a:1 language=ger"},
    {"srt.mkv", "-map 0 -map 1 -map 3 " H264 "-c:a aac -c:s srt -metadata:s:s language=ger"},
    {"ass.mkv", "-map 0 -map 1 -map 3 " H264 "-c:a aac -c:s ass -metadata:s:s language=ger"},
    // Every track is marked as a default one, as Matroska's own default has it.
    {"forced.mkv", "-map 0 -map 2 -map 3 -map 3 " H264 "-c:a ac3 -c:s srt -disposition:a default "
                   "-disposition:s:0 default -disposition:s:1 default+forced "
                   "-metadata:s:a language=de -metadata:s:s:0 language=eng "
                   "-metadata:s:s:1 language=pt-BR"},
    {"hevc.mkv",
     "-map 0 -map 1 -c:v libx265 -preset ultrafast -x265-params log-level=none "
     "-pix_fmt yuv420p -c:a aac"},
    {"hdr10.mkv",
     "-map 0 -map 1 -c:v libx265 -preset ultrafast -pix_fmt yuv420p10le -x265-params "
     "log-level=none:hdr10=1:colorprim=bt2020:transfer=smpte2084:colormatrix=bt2020nc:max-cll=1000,"
     "400:master-display=G(13250,34500)B(7500,3000)R(34000,16000)WP(15635,16450)L(10000000,50) "
     "-c:a aac",
     1},
    {"av1.mkv", "-map 0 -map 1 -c:v libsvtav1 -preset 12 -c:a aac", 1},
    {"eac3.mkv", "-map 0 -map 2 " H264 "-c:a eac3 -metadata:s:a language=eng", 1},
    {"aac.mp4", "-map 0 -map 1 " H264 "-c:a aac"},
    {"aac.mov", "-map 0 -map 1 " H264 "-c:a aac"},
    {"aac.flv", "-map 0 -map 1 " H264 "-c:a aac"},
    {"b-frames.ts",
     "-map 0 -map 1 -c:v libx264 -preset veryfast -bf 2 -g 25 -pix_fmt yuv420p "
     "-c:a aac"},
    {"b-frames.mkv",
     "-map 0 -map 1 -c:v libx264 -preset veryfast -bf 2 -g 25 -pix_fmt yuv420p "
     "-c:a aac"},
    {"hevc.ts",
     "-map 0 -map 1 -c:v libx265 -preset ultrafast -x265-params log-level=none "
     "-pix_fmt yuv420p -c:a aac"},
    {"aac.ts", "-map 0 -map 1 " H264 "-c:a aac"},
    {"ac3.ts", "-map 0 -map 1 " H264 "-c:a ac3"},
    {"mpeg2.mpg", "-map 0 -map 1 -c:v mpeg2video -c:a mp2"},
    {"theora.ogm", "-map 0 -map 1 -c:v libtheora -c:a libvorbis -f ogg"},
    {"vp9.webm", "-map 0 -map 1 -c:v libvpx-vp9 -deadline realtime -c:a libopus"},
    {"msmpeg4v3.wmv", "-map 0 -map 1 -c:v msmpeg4 -c:a wmav2"},
    {"wmv2.wmv", "-map 0 -map 1 -c:v wmv2 -c:a wmav2"},
    {"long.mkv", "-map 0 -map 2 " H264 "-c:a ac3 -b:a 448k -cluster_time_limit 500", 20},
});
#undef H264

std::vector<std::string> words(std::string_view text) {
    std::istringstream stream{std::string(text)};
    return {std::istream_iterator<std::string>(stream), {}};
}

std::vector<std::string> commandOf(const Recipe& recipe, const std::filesystem::path& subtitles,
                                   const std::filesystem::path& output) {
    const auto length = ":d=" + std::to_string(recipe.seconds);
    std::vector<std::string> command = words("ffmpeg -nostdin -v error -y");
    for (const auto& source :
         {"testsrc2=size=320x180:rate=25" + length,
          "aevalsrc=0.1*sin(2764*t)|0.1*sin(3455*t):c=stereo:s=48000" + length,
          "aevalsrc=0.1*sin(2764*t)|0.1*sin(3455*t)|0|0|0|0:c=5.1:s=48000" + length}) {
        command.insert(command.end(), {"-f", "lavfi", "-i", source});
    }
    command.insert(command.end(), {"-i", subtitles.native()});
    for (auto& word : words(recipe.arguments)) command.push_back(std::move(word));
    command.push_back(output.native());
    return command;
}

}  // namespace

std::string subtitleFile() {
    return "1\n00:00:00,200 --> 00:00:01,000\nGrüße\n\n"
           "2\n00:00:01,200 --> 00:00:01,800\nzweite Zeile\n\n"
           "3\n00:00:02,000 --> 00:00:02,800\nEnde\n";
}

std::filesystem::path movie(std::string_view name) {
    const auto* const recipe = std::find_if(
        kRecipes.begin(), kRecipes.end(), [name](const Recipe& each) { return each.name == name; });
    if (recipe == kRecipes.end()) throw std::invalid_argument("no recipe: " + std::string(name));
    // A changed recipe makes another folder, so that no stale movie is ever used.
    const auto key =
        std::hash<std::string_view>()(recipe->arguments) ^ std::hash<std::string>()(subtitleFile());
    const auto folder = std::filesystem::path(REELVANE_TEST_MOVIES) / std::to_string(key);
    auto finished = folder / name;
    if (std::filesystem::exists(finished)) return finished;

    // Tests run side by side: each makes its own, and the last rename wins with equal bytes.
    const auto mine = folder / std::to_string(::getpid());
    std::filesystem::create_directories(mine);
    std::ofstream(mine / "cues.srt") << subtitleFile();
    const auto outcome = run(commandOf(*recipe, mine / "cues.srt", mine / name));
    if (outcome.status != 0) throw std::runtime_error("cannot make a movie: " + outcome.output);
    std::filesystem::rename(mine / name, finished);
    std::filesystem::remove_all(mine);
    return finished;
}

}  // namespace reelvane
