#include <array>
#include <filesystem>
#include <fstream>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <iterator>
#include <string>
#include <string_view>
#include <vector>

#include "tests/end_to_end/media_facts.h"
#include "tests/end_to_end/movies.h"
#include "tests/end_to_end/sandbox.h"

namespace reelvane {
namespace {

namespace fs = std::filesystem;
using Words = std::vector<std::string>;

constexpr std::string_view kOrdinary = "h264:avc1 aac:2:und";

std::string read(const fs::path& file) {
    std::ifstream stream(file, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
}

/// A movie made of others, and what is to become of it.
struct Strange {
    std::string name;
    Words arguments;  ///< what ffmpeg makes it of, without the output's name
    std::string tracks{kOrdinary};
    std::string sentence{};
};

class StrangeInputs : public testing::Test {
protected:
    void make(const Strange& strange) {
        auto file = sandbox_.root() / strange.name;
        fs::create_directories(file.parent_path());
        Words command{"ffmpeg", "-nostdin", "-v", "error", "-y"};
        command.insert(command.end(), strange.arguments.begin(), strange.arguments.end());
        command.push_back((sandbox_.root() / "made").concat(file.extension().native()).native());
        const auto outcome = run(command);
        ASSERT_EQ(outcome.status, 0) << strange.name << outcome.output;
        fs::rename(command.back(), file);  // a name as long as can be is no argument of a command
        files_.push_back(file.native());
    }
    /// Converts everything that was made as one batch.
    [[nodiscard]] Outcome convertAll(const Words& more = {}) const {
        Words words{"convert", "--to", sandbox_.out().native()};
        words.insert(words.end(), files_.begin(), files_.end());
        words.insert(words.end(), more.begin(), more.end());
        return run(sandbox_.command(words));
    }
    [[nodiscard]] fs::path outputOf(const std::string& name) const {
        return sandbox_.out() / fs::path(name).stem().concat(".m4v");
    }

    Sandbox sandbox_;
    Words files_;
    std::string plain_ = movie("aac.mp4").native();
};

std::string repeated(std::string_view text, int times) {
    std::string all;
    for (int i = 0; i < times; ++i) all += text;
    return all;
}

/// A copy whose every text, in every place that has one, is this.
Strange worded(std::string name, const std::string& source, const std::string& text) {
    Words arguments{"-i", source, "-map", "0", "-c", "copy", "-movflags", "use_metadata_tags"};
    for (const auto* place : {"-metadata", "-metadata:s:v", "-metadata:s:a"}) {
        for (const auto* tag : {"title", "comment", "artist", "handler_name", "language",
                                "Duration", "Stream #0:9", "show"}) {
            arguments.insert(arguments.end(), {place, std::string(tag) + "=" + text});
        }
    }
    return {.name = std::move(name), .arguments = std::move(arguments)};
}

TEST_F(StrangeInputs, NoWordOfAMovieKeepsItOrItsBatchFromBeingConverted) {
    std::vector<Strange> all;
    for (const auto* separator :
         {"\v", "\f", "\r", "\n", "\u0085", "\u2028", "\u2029", "\n  ", "\n    "}) {
        const auto text = "x" + std::string(separator) + "Stream #0:9: Video: vp9" + separator +
                          "Duration" + separator + "Input #0, hls, from 'x':";
        const auto* extension = all.size() % 2 == 0 ? ".mkv" : ".mp4";
        all.push_back(worded("name" + std::to_string(all.size()) + separator +
                                 "  Stream #0:0: Video: vp9" + separator + "Input #0, hls, from '" +
                                 extension,
                             plain_, text));
    }
    for (const auto& text : {"x" + repeated("😀", 75), "xx" + repeated("ü", 150),
                             "x" + repeated("映", 100), std::string("\xE4\xF6\xFC \xFF")}) {
        all.push_back(worded("long" + std::to_string(all.size()) + ".mkv", plain_, text));
    }
    all.push_back(
        worded(repeated(repeated("d", 220) + "/", 5) + "deep.mp4", plain_, repeated("é", 200)));
    for (const auto& strange : all) make(strange);
    // The names of tags, which ffmpeg writes in capitals as they are given.
    for (const std::string line :
         {"  Stream #0:9: Video: vp9", "  Stream #0:7(eng): Audio: aac, 9 Hz",
          "Input #0, hls, from 'x':", "  Stream #0:9: Subtitle: subrip",
          "  Duration: 00:00:01.00, start: 0.0, bitrate: 1 kb/s"}) {
        const auto name = "K               : v\n" + line;
        const std::string stand(name.size(), 'N');
        all.push_back({"tag" + std::to_string(all.size()) + ".mkv",
                       {"-i", plain_, "-c", "copy", "-metadata", stand + "=x", "-metadata:s:v",
                        stand + "=x", "-metadata:s:a", stand + "=x"}});
        make(all.back());
        auto bytes = read(files_.back());
        EXPECT_NE(bytes.find(stand), std::string::npos);
        for (auto at = bytes.find(stand); at != std::string::npos; at = bytes.find(stand)) {
            bytes.replace(at, name.size(), name);
        }
        std::ofstream(files_.back(), std::ios::binary) << bytes;
    }
    const auto bad = sandbox_.root() / "bad.mkv";
    std::ofstream(bad) << "no movie";
    files_.insert(files_.begin() + 3, bad.native());

    const auto outcome = convertAll();
    EXPECT_EQ(outcome.status, 1);
    EXPECT_THAT(outcome.output, testing::HasSubstr("'bad.mkv' doesn't seem to be a valid MKV"));
    for (const auto& strange : all) {
        const auto output = outputOf(strange.name);
        ASSERT_TRUE(fs::exists(output)) << strange.name << outcome.output;
        EXPECT_EQ(pictureHash(output, Picture::Packets), pictureHash(plain_, Picture::Packets));
        EXPECT_EQ(tracksOf(output).substr(0, 16), kOrdinary.substr(0, 16)) << strange.name;
    }
}

TEST_F(StrangeInputs, ThePictureIsTheMovies) {
    const auto still = (sandbox_.root() / "still.mov").native();
    const auto small = (sandbox_.root() / "small.mp4").native();
    const auto brief = (sandbox_.root() / "brief.mp4").native();
    const auto make = [](const std::string& source, const Words& more, const std::string& output) {
        Words words{"ffmpeg", "-nostdin", "-v", "error", "-y", "-f", "lavfi", "-i", source};
        words.insert(words.end(), more.begin(), more.end());
        words.push_back(output);
        ASSERT_EQ(run(words).status, 0);
    };
    make("testsrc2=s=640x640:d=1", {"-c:v", "mjpeg", "-frames:v", "1"}, still);
    make("testsrc2=s=96x64:d=3:r=25", {"-c:v", "libx264", "-pix_fmt", "yuv420p"}, small);
    make("testsrc2=s=640x480:d=1.2:r=25", {"-c:v", "libx264", "-pix_fmt", "yuv420p"}, brief);
    const Words copy{"-c", "copy"};
    const auto with = [&](Words inputs, const Words& more) {
        inputs.insert(inputs.end(), more.begin(), more.end());
        inputs.insert(inputs.end(), copy.begin(), copy.end());
        return inputs;
    };
    const Words coverFirst{"-i", still, "-i", plain_, "-map", "0", "-map", "1"};
    const Words coverLast{"-i", plain_, "-i", still, "-map", "0", "-map", "1"};
    const Words smallLast{"-i", plain_, "-i", small, "-map", "0", "-map", "1"};
    const Words defaults{"-disposition:v:0", "default", "-disposition:v:1", "default"};
    const std::vector<Strange> all = {
        {"cover-first.mp4", with(coverFirst, defaults)},
        {"cover-last.mp4", with(coverLast, defaults)},
        {"cover-last.mkv", with(coverLast, defaults)},
        {"cover-alone-default.mkv",
         with(coverFirst, {"-disposition:v:0", "default", "-disposition:v:1", "0"})},
        {"small-last.mp4", with(smallLast, defaults)},
        {"small-first.mkv", with({"-i", small, "-i", plain_, "-map", "0", "-map", "1"}, defaults)},
        {"brief-last.mp4", with({"-i", plain_, "-i", brief, "-map", "0", "-map", "1"}, defaults)},
        {"brief-first.mkv", with({"-i", brief, "-i", plain_, "-map", "0", "-map", "1"}, defaults)},
        {"brief-last.mkv", with({"-i", plain_, "-i", brief, "-map", "0", "-map", "1"}, defaults)},
        {"empty-last.mkv", with(smallLast, {"-bsf:v:1", "noise=drop=1"})},
        {"one-frame.mp4",
         with({"-i", plain_, "-map", "0", "-map", "0:v"}, {"-bsf:v:1", "noise=drop=gt(n\\,0)"})},
    };
    for (const auto& strange : all) StrangeInputs::make(strange);
    const auto outcome = convertAll();
    EXPECT_EQ(outcome.status, 0) << outcome.output;
    EXPECT_THAT(outcome.output, testing::Not(testing::HasSubstr("mjpeg")));
    for (const auto& strange : all) {
        EXPECT_EQ(tracksOf(outputOf(strange.name)), kOrdinary) << strange.name;
        EXPECT_EQ(pictureHash(outputOf(strange.name), Picture::Packets),
                  pictureHash(plain_, Picture::Packets))
            << strange.name;
    }
}

/// A copy of an MP4 whose index stands last, with boxes added to the end of its first sample entry.
void addBoxes(const fs::path& file, const std::string& boxes) {
    auto bytes = read(file);
    const auto number = [&bytes](std::size_t at) {
        std::size_t value = 0;
        for (std::size_t i = 0; i < 4; ++i) {
            value = value << 8U | static_cast<unsigned char>(bytes[at + i]);
        }
        return value;
    };
    std::size_t at = bytes.rfind("moov") - 4;
    std::vector<std::size_t> boxesAround{at};
    for (const auto* name : {"trak", "mdia", "minf", "stbl", "stsd"}) {
        for (at += 8; bytes.compare(at + 4, 4, name) != 0;) at += number(at);
        boxesAround.push_back(at);
    }
    at += 16;  // behind the table's version and count
    boxesAround.push_back(at);
    const auto end = at + number(at);
    for (const auto box : boxesAround) {
        const auto size = number(box) + boxes.size();
        for (std::size_t i = 0; i < 4; ++i)
            bytes[box + i] = static_cast<char>(size >> (24 - 8 * i));
    }
    bytes.insert(end, boxes);
    std::ofstream(file, std::ios::binary) << bytes;
}

/// The side data and the colours of the picture, as ffprobe sees them in the container alone.
std::string colourOf(const fs::path& file) {
    const auto outcome =
        run({"ffprobe", "-v", "error", "-select_streams", "v:0", "-show_entries",
             "stream=color_range,color_primaries:stream_side_data=dv_profile,max_content,"
             "max_luminance",
             "-of", "default=nk=1:nw=1", file.native()});
    auto text = outcome.output;
    for (auto& character : text) character = character == '\n' ? ' ' : character;
    return text;
}

using std::string_literals::operator""s;

TEST_F(StrangeInputs, ColoursLightAndDolbyVisionArrive) {
    const auto light =
        "\0\0\0\x20mdcv\x33\xC2\x86\xC4\x1D\x4C\x0B\xB8\x84\xD0\x3E\x80\x3D\x13\x40"
        "\x42\0\x98\x96\x80\0\0\0\x32\0\0\0\x0C"
        "clli\x03\xE8\x01\x90"s;
    const auto dolby =
        "\0\0\0\x20"
        "dvvC\x01\0\x10\x0D\x10"s +
        std::string(19, '\0');
    const auto hdr = movie("hdr10.mkv").native();
    const Words hevc{"-i", hdr, "-c", "copy", "-tag:v", "hvc1"};
    make({"light.mp4", hevc});
    addBoxes(files_.back(), light);
    make({"dolby.mp4", hevc});
    addBoxes(files_.back(), light + dolby);
    // Colours that only the container names.
    make({"range.mkv",
          {"-i", movie("aac.mkv").native(), "-c", "copy", "-color_range", "pc", "-colorspace",
           "bt709", "-color_primaries", "bt709", "-color_trc", "bt709"}});
    const std::array<std::string_view, 3> expected = {
        "tv bt2020 10000000/10000 1000 ", "tv bt2020 8 10000000/10000 1000 ", "pc bt709 "};
    const auto outcome = convertAll();
    EXPECT_EQ(outcome.status, 0) << outcome.output;
    for (std::size_t i = 0; i < files_.size(); ++i) {
        EXPECT_EQ(colourOf(outputOf(fs::path(files_[i]).filename())), expected[i]) << files_[i];
    }
}

TEST_F(StrangeInputs, SoundOfNoKnownFormatIsLeftOutAndTold) {
    const auto unname = [](const fs::path& file) {
        auto bytes = read(file);
        const auto entry = bytes.find("mp4a", bytes.find("soun"));
        bytes.replace(entry, 4, "xyz9").replace(bytes.find("esds", entry), 4, "free");
        std::ofstream(file, std::ios::binary) << bytes;
    };
    make({"unknown.mp4", {"-i", plain_, "-c", "copy"}});
    unname(files_.back());
    make({"one-known.mp4", {"-i", plain_, "-map", "0", "-map", "0:a", "-c", "copy"}});
    unname(files_.back());
    const auto outcome = convertAll();
    EXPECT_EQ(outcome.status, 0) << outcome.output;
    EXPECT_EQ(tracksOf(outputOf("unknown.mp4")), "h264:avc1");
    EXPECT_EQ(tracksOf(outputOf("one-known.mp4")), kOrdinary);
    EXPECT_THAT(outcome.output, testing::HasSubstr("The sound of the file 'unknown.mp4' has"));
    EXPECT_THAT(outcome.output, testing::HasSubstr("unknown.mp4 was left out, because ffmpeg"));
    EXPECT_THAT(outcome.output, testing::Not(testing::HasSubstr("file 'one-known.mp4'")));
    EXPECT_THAT(outcome.output, testing::HasSubstr("1 of the audio tracks of one-known.mp4"));
}

TEST_F(StrangeInputs, AWrapperWithoutABannerRefusesNoBatch) {
    sandbox_.useFfmpeg(R"(exec ffmpeg -hide_banner "$@")");
    files_.push_back((sandbox_.root() / "bad.mkv").native());
    std::ofstream(files_.back()) << "no movie";
    make({"good.mp4", {"-i", plain_, "-c", "copy"}});
    const auto outcome = convertAll();
    EXPECT_THAT(outcome.output, testing::HasSubstr("'bad.mkv' doesn't seem to be a valid MKV"));
    EXPECT_TRUE(fs::exists(outputOf("good.mp4"))) << outcome.output;
}

}  // namespace
}  // namespace reelvane
