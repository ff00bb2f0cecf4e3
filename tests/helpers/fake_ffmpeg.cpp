// Stands in for ffmpeg where a test needs it to behave in a certain way. The "movie" is a text: its
// lines are the report that a probe prints, except those that begin with "!", which say how the
// conversion of that movie goes:
//
//     !progress 5000000   writes this position into the progress file
//     !bytes 5000         the same as ffmpeg 7 does before every track has had a packet: a size
//     alone !leave              leaves a process behind that holds the pipe open !print TEXT prints
//     the text as a warning !spam 100000        prints so many bytes !await FILE         waits
//     until this file is there !hang               leaves half an output behind and never ends
//     !probehang          the probe never ends
//     !trialhang          a trial conversion writes half an output and never ends
//     !end                what follows is not read
//     !exit 1             ends with this status, half an output left behind
//
// Otherwise the output is a small MP4 file with a track per "-map". Its version is "fake", or what
// FAKE_FFMPEG_VERSION says.

#include <algorithm>
#include <cstdlib>
#include <fstream>
#include <iostream>
#include <iterator>
#include <string>
#include <string_view>
#include <unistd.h>
#include <vector>

#include "tests/fakes/small_mp4.h"

namespace {

std::string valueOf(const std::vector<std::string>& arguments, std::string_view option) {
    const auto found = std::find(arguments.begin(), arguments.end(), option);
    return found == arguments.end() || found + 1 == arguments.end() ? "" : found[1];
}

[[noreturn]] void hang() {
    while (true) ::pause();
}

int probe(std::ifstream& script) {
    std::string report = "ffmpeg version fake\n";
    std::string line;
    while (std::getline(script, line)) {
        if (line == "!end") break;
        if (line == "!probehang") hang();
        if (!line.starts_with('!')) report += line + "\n";
    }
    std::cerr << report << std::flush;
    return 1;  // as ffmpeg without an output
}

int tryOneSecond(std::ifstream& script, const std::string& output) {
    std::ofstream(output) << "half";
    std::string line;
    while (std::getline(script, line)) {
        if (line == "!trialhang") hang();
    }
    return 0;
}

int convert(std::ifstream& script, const std::vector<std::string>& arguments) {
    const auto& output = arguments.back();
    std::ofstream progress(valueOf(arguments, "-progress"), std::ios::app);
    std::ofstream(output) << "half";
    std::string word;
    while (script >> word) {
        std::string value;
        if (word == "!progress" && script >> value) {
            progress << "out_time_ms=" << value << "\nprogress=continue\n" << std::flush;
        } else if (word == "!bytes" && script >> value) {
            progress << "frame=1\nbitrate=N/A\ntotal_size=" << value
                     << "\nout_time_us=N/A\nout_time_ms=N/A\nout_time=N/A\nspeed=N/A\n"
                     << "progress=continue\n"
                     << std::flush;
        } else if (word == "!leave") {
            if (::fork() == 0) hang();
        } else if (word == "!print" && std::getline(script, value)) {
            std::cerr << value << "\n" << std::flush;
        } else if (word == "!spam" && script >> value) {
            std::cerr << std::string(std::stoul(value), 'x') << "\n" << std::flush;
        } else if (word == "!await" && script >> value) {
            while (::access(value.c_str(), F_OK) != 0) ::usleep(10000);
        } else if (word == "!hang") {
            hang();
        } else if (word == "!exit" && script >> value) {
            return std::stoi(value);
        }
    }
    const auto maps = std::count(arguments.begin(), arguments.end(), "-map");
    reelvane::SmallMp4 movie;
    movie.tracks.assign(static_cast<std::size_t>(maps), {.handler = "soun", .codec = "mp4a"});
    movie.tracks.front() = {.handler = "vide", .codec = "avc1"};
    const bool hasText = std::find(arguments.begin(), arguments.end(), "1:0") != arguments.end();
    if (hasText) movie.tracks.back() = {.handler = "sbtl", .codec = "tx3g"};
    std::ofstream(output, std::ios::binary) << movie.bytes();
    return 0;
}

}  // namespace

int main(int argc, char** argv) {
    const std::vector<std::string> arguments(argv + 1, argv + argc);
    if (arguments == std::vector<std::string>{"-version"}) {
        const char* const version = std::getenv("FAKE_FFMPEG_VERSION");
        std::cout << "ffmpeg version " << (version == nullptr ? "fake" : version) << " Copyright\n";
        return 0;
    }
    if (std::find(arguments.begin(), arguments.end(), "framecrc") != arguments.end()) {
        std::cout << "#tb 0: 1/1000\n#codec_id 0: subrip\n0, 1000, 1000, 1000, 2, 0x00d900d9\n";
        return 0;
    }
    std::ifstream script(valueOf(arguments, "-i"), std::ios::binary);
    if (!valueOf(arguments, "-t").empty()) return tryOneSecond(script, arguments.back());
    if (valueOf(arguments, "-progress").empty()) return probe(script);
    return convert(script, arguments);
}
