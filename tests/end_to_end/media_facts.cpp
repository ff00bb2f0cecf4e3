#include "tests/end_to_end/media_facts.h"

#include <algorithm>
#include <nlohmann/json.hpp>
#include <sstream>
#include <stdexcept>
#include <vector>

#include "tests/end_to_end/child.h"

namespace reelvane {
namespace {

std::string outputOf(const std::vector<std::string>& command) {
    auto outcome = run(command);
    if (outcome.status != 0) throw std::runtime_error(command.front() + ": " + outcome.output);
    return std::move(outcome.output);
}

nlohmann::json probe(const std::filesystem::path& file) {
    return nlohmann::json::parse(outputOf(
        {"ffprobe", "-v", "error", "-show_format", "-show_streams", "-of", "json", file.native()}));
}

/// The content light level that the first frame of an HDR10 picture carries.
int brightestPixel(const std::filesystem::path& file) {
    const auto report = nlohmann::json::parse(
        outputOf({"ffprobe", "-v", "error", "-select_streams", "v", "-show_frames",
                  "-read_intervals", "%+#1", "-of", "json", file.native()}));
    int brightest = 0;
    for (const auto& data : report.at("/frames/0/side_data_list"_json_pointer)) {
        brightest = std::max(brightest, data.value("max_content", 0));
    }
    return brightest;
}

}  // namespace

std::string tracksOf(const std::filesystem::path& file) {
    std::string tracks;
    const auto report = probe(file);
    for (const auto& stream : report.at("streams")) {
        const std::string type = stream.at("codec_type");
        auto track = stream.at("codec_name").get<std::string>();
        if (type == "video") track += ":" + stream.at("codec_tag_string").get<std::string>();
        if (stream.value("color_transfer", "") == "smpte2084") {
            track += ":" + std::to_string(brightestPixel(file));
        }
        if (type == "audio") track += ":" + std::to_string(stream.at("channels").get<int>());
        if (type != "video") {
            track += ":" + stream.value("/tags/language"_json_pointer, std::string("none"));
        }
        tracks += (tracks.empty() ? "" : " ") + track;
    }
    return tracks;
}

std::string brandOf(const std::filesystem::path& file) {
    const std::string brand = probe(file).at("/format/tags/major_brand"_json_pointer);
    return brand.substr(0, brand.find_last_not_of(' ') + 1);
}

double durationOf(const std::filesystem::path& file) {
    return std::stod(probe(file).at("/format/duration"_json_pointer).get<std::string>());
}

std::string pictureHash(const std::filesystem::path& file, Picture picture) {
    std::vector<std::string> command = {"ffmpeg", "-nostdin", "-v",   "error",
                                        "-i",     file,       "-map", "0:v"};
    if (picture == Picture::Packets) command.insert(command.end(), {"-c", "copy"});
    command.insert(command.end(), {"-f", "streamhash", "-hash", "sha256", "-"});
    return outputOf(command);
}

std::string cuesOf(const std::filesystem::path& file) {
    std::istringstream lines(outputOf({"ffmpeg", "-nostdin", "-v", "error", "-i", file.native(),
                                       "-map", "0:s:0", "-c:s", "text", "-f", "srt", "-"}));
    std::string cues;
    std::string number;
    std::string times;
    std::string line;
    while (std::getline(lines, number) && std::getline(lines, times)) {
        while (std::getline(lines, line) && !line.empty()) cues += line + "\n";
    }
    return cues;
}

}  // namespace reelvane
