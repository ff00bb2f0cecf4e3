// Success is promised only for a whole output: whatever happens to it, the source stays.

#include <algorithm>
#include <filesystem>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <set>
#include <string>
#include <sys/mount.h>

#include "mp4/mp4_box.h"
#include "mp4/mp4_reader.h"
#include "tests/end_to_end/movies.h"
#include "tests/end_to_end/sandbox.h"
#include "tests/fakes/small_mp4.h"

namespace reelvane {
namespace {

using testing::IsEmpty;

namespace fs = std::filesystem;

/// Where each box begins, has its middle and ends.
void addPlaces(const ByteSource& file, std::uint64_t begin, std::uint64_t end,
               std::set<std::uint64_t>& places) {
    static const std::set<std::string> parents{"moov", "trak", "mdia", "minf", "stbl", "udta"};
    forEachBox(file, begin, end, [&](const Mp4Box& box) {
        places.insert({box.offset, box.contentBegin, (box.offset + box.end) / 2, box.end - 1});
        if (parents.contains(box.type)) addPlaces(file, box.contentBegin, box.end, places);
        return true;
    });
}

TEST(OutputProof, IsBrokenWhereverARealOutputIsCut) {
    for (const auto* const streamable : {"0", "1"}) {
        const Sandbox sandbox;
        const auto set = std::string("ProduceStreamableFiles=") + streamable;
        ASSERT_EQ(sandbox.convert(movie("aac.mkv"), {"--set", set}).status, 0);
        const auto output = sandbox.out() / "aac.m4v";
        ASSERT_TRUE(readMp4(output).movie);
        std::set<std::uint64_t> places;
        addPlaces(*ByteSource::open(output), 0, fs::file_size(output), places);
        EXPECT_GT(places.size(), 100U);
        std::for_each(places.rbegin(), places.rend(), [&output](std::uint64_t size) {
            fs::resize_file(output, size);
            EXPECT_FALSE(readMp4(output).movie) << "cut at " << size;
        });
    }
}

TEST(OutputProof, JudgesFragmentsAndQuickTimeToo) {
    const TemporaryFolder folder;
    for (const auto& [name, flags] :
         {std::pair("frames.mp4", "frag_every_frame+empty_moov"),
          std::pair("hybrid.mp4", "frag_keyframe"), std::pair("dash.mp4", "dash+delay_moov"),
          std::pair("movie.mov", "faststart")}) {
        const auto file = folder.path() / name;
        ASSERT_EQ(run({"ffmpeg", "-v", "error", "-i", movie("aac.mkv"), "-c", "copy", "-movflags",
                       flags, file})
                      .status,
                  0);
        const auto reading = readMp4(file);
        ASSERT_TRUE(reading.movie) << name << " " << reading.problem;
        EXPECT_EQ(reading.movie->tracks.size(), 2U) << name;
        for (const auto& track : reading.movie->tracks) EXPECT_NEAR(track.seconds, 3, 0.2) << name;
        // A cut between a fragment's index and its media leaves a file of whole boxes.
        std::set<std::uint64_t> places{fs::file_size(file) - 100};
        forEachBox(*ByteSource::open(file), 0, fs::file_size(file), [&](const Mp4Box& box) {
            if (box.type == "mdat") places.insert(box.offset);
            return true;
        });
        std::for_each(places.rbegin(), places.rend(), [&file](std::uint64_t size) {
            fs::resize_file(file, size);
            EXPECT_FALSE(readMp4(file).movie) << file << " cut at " << size;
        });
    }
}

TEST(OutputProof, ReadsALongRecordingWithAFragmentForEveryFrame) {
    const TemporaryFolder folder;
    SmallMp4 source;
    source.fragments = 150000;
    const auto reading = readMp4(folder.write("recording.mp4", source.bytes()));
    ASSERT_TRUE(reading.movie) << reading.problem;
    EXPECT_EQ(reading.movie->tracks.at(0).seconds, 150000);
}

/// A conversion that must not touch its source. True when it was called finished.
bool finishes(const Sandbox& sandbox, std::string_view name, const std::string& shell = {}) {
    const auto source = sandbox.root() / name;
    fs::copy_file(movie(name), source, fs::copy_options::overwrite_existing);
    auto command = sandbox.command({"convert", "--set", "AutoRemove=1", "--set", "AutoRemoveType=1",
                                    "--to", sandbox.out().native(), source});
    if (!shell.empty()) {
        command.insert(command.begin(), {"sh", "-c", shell + "; exec \"$@\"", "sh"});
    }
    const auto outcome = run(command);
    const bool kept = fs::exists(source);
    EXPECT_EQ(outcome.status, kept ? 1 : 0) << shell << outcome.output;
    // What somebody else has put there instead is not ours to delete.
    if (outcome.output.find("left alone") == std::string::npos) {
        EXPECT_EQ(sandbox.leftovers().empty(), kept) << shell << outcome.output;
    }
    EXPECT_TRUE(!kept || outcome.output.find(": failed: ") != std::string::npos) << shell;
    return !kept;
}

TEST(OutputProof, FindsWhatAnExitStatusOfZeroHides) {
    // What happens to the output between the converter's last word and ours.
    for (const auto* const fault :
         {"truncate -s -1 \"$o\"", "truncate -s 1000 \"$o\"", ": > \"$o\"", "rm \"$o\"",
          "rm \"$o\"; mkdir \"$o\"", "echo no movie > \"$o\"", "cp \"$0\" \"$o\"",
          "rm \"$o\"; ln -s /no/where \"$o\"", "rm \"$o\"; mkfifo \"$o\"",
          "ffmpeg -v error -y -i \"$o\" -map 0:v -c copy \"$o.mp4\"; mv \"$o.mp4\" \"$o\"",
          "echo 'Error writing trailer of out: Input/output error'"}) {
        Sandbox sandbox;
        sandbox.useFfmpeg("ffmpeg \"$@\"; s=$?; for o; do :; done\ncase $* in *-progress*) " +
                          std::string(fault) + " ;; esac; exit $s");
        EXPECT_FALSE(finishes(sandbox, "aac.mkv")) << fault;
    }
}

/// A conversion that may remove its source. `damage` is done to that before, in a shell where "$i"
/// names it; `during` happens after the converter has written the output "$o".
Outcome convertAndRemove(Sandbox& sandbox, const fs::path& source, const std::string& damage,
                         const std::string& during) {
    fs::copy_file(movie(source.filename().native()), source);
    const auto named = "i='" + source.native() + "'; ";
    EXPECT_EQ(run({"sh", "-c", named + (damage.empty() ? ":" : damage)}).status, 0);
    if (!during.empty()) {
        sandbox.useFfmpeg("ffmpeg \"$@\"; s=$?; for o; do :; done\ncase $* in *-progress*) " +
                          named + during + " ;; esac; exit $s");
    }
    return run(sandbox.command({"convert", "--set", "AutoRemove=1", "--set", "AutoRemoveType=1",
                                "--to", sandbox.out().native(), source}));
}

TEST(SourceRemoval, ASourceGoesWhenAllOfItsPictureHasArrived) {
    for (const auto* const name :
         {"aac.mkv", "aac.mp4", "aac.mov", "aac.flv", "aac.ts", "b-frames.ts", "b-frames.mkv",
          "hevc.mkv", "hevc.ts", "hdr10.mkv", "av1.mkv", "silent.mkv"}) {
        Sandbox sandbox;
        const auto outcome = convertAndRemove(sandbox, sandbox.root() / name, {}, {});
        EXPECT_EQ(outcome.status, 0) << name << outcome.output;
        EXPECT_FALSE(fs::exists(sandbox.root() / name)) << outcome.output;
    }
}

TEST(SourceRemoval, ASourceStaysWhereAnythingSpeaksAgainstIt) {
    const std::string zeroes =
        "s=$(stat -c %s \"$i\"); dd status=none if=/dev/zero of=\"$i\" bs=1 "
        "seek=$((s / 3)) count=$((s / 3)) conv=notrunc";
    // Between two tags, which nothing in the file betrays but the length that it names.
    const std::string lastTags = R"(python3 -c 'import sys
all = open(sys.argv[1], "rb").read()
end = 13
while end < len(all) * 7 // 10: end += 15 + int.from_bytes(all[end + 1:end + 4], "big")
open(sys.argv[1], "wb").write(all[:end])' "$i")";
    const struct {
        const char* name;
        std::string damage, during;
    } cases[] = {
        {"aac.flv", lastTags, ""},
        {"long.mkv", "truncate -s -2000 \"$i\"", ""},
        {"b-frames.ts", "head -c 60000 \"$i\" > \"$i.h\"; mv \"$i.h\" \"$i\"", ""},
        {"long.mkv", zeroes, ""},
        {"b-frames.ts", zeroes, ""},
        {"aac.mp4", zeroes, ""},
        {"mpeg2.mpg", "", ""},  // not every picture has a time
        // Fewer pictures than its statistics count, and a picture that ends before its sound.
        {"aac.mkv",
         "ffmpeg -v error -y -i \"$i\" -map 0 -c copy -metadata:s:v NUMBER_OF_FRAMES=80 "
         "\"$i.mkv\"; "
         "mv \"$i.mkv\" \"$i\"",
         ""},
        {"aac.ts",
         "ffmpeg -v error -y -i \"$i\" -c copy -bsf:v 'noise=drop=gt(n\\,9)' \"$i.ts\"; "
         "mv \"$i.ts\" \"$i\"",
         ""},
        {"aac.mkv", "", "echo 'film.mkv: Input/output error'"},
        {"aac.mkv", "", "echo '[matroska,webm @ 0x1] Read error'"},
        {"aac.mkv", "", "echo 'Non-monotonous DTS in output stream 0:0; changing to 7.'"},
        {"aac.mkv", "", "cp \"$i\" \"$i.new\"; mv \"$i.new\" \"$i\""},
        {"aac.mkv", "", "echo more >> \"$i\""},
        {"aac.mkv", "",
         "cp -p \"$i\" \"$i.new\"; cat \"$i.new\" > \"$i\"; "
         "touch -r \"$i.new\" \"$i\""},
        // A byte of the picture, and a picture less.
        {"aac.mkv", "", "printf X | dd status=none of=\"$o\" bs=1 seek=9000 conv=notrunc"},
        {"aac.mkv", "",
         "ffmpeg -v error -y -i \"$o\" -map 0 -c copy -frames:v 74 \"$o.mp4\"; "
         "cat \"$o.mp4\" > \"$o\"; rm \"$o.mp4\""},
    };
    for (const auto& [name, damage, during] : cases) {
        Sandbox sandbox;
        const auto source = sandbox.root() / name;
        const auto outcome = convertAndRemove(sandbox, source, damage, during);
        EXPECT_TRUE(fs::exists(source)) << name << damage << during << outcome.output;
        EXPECT_EQ(outcome.status, 0) << name << damage << during << outcome.output;
        EXPECT_THAT(outcome.output, testing::HasSubstr(std::string(name) + " was kept"));
    }
}

TEST(OutputProof, VolumeLimitInMidRunIsAFailure) {
    // With the signal ignored the converter sees the error; otherwise it is killed.
    for (const auto* const limit : {"ulimit -f 100", "trap '' XFSZ; ulimit -f 100"}) {
        EXPECT_FALSE(finishes(Sandbox(), "long.mkv", limit));
    }
}

/// In a mount namespace of their own, which the test's registration makes.
TEST(NeedsMountProof, NoPhaseOfAFullDiskIsCalledFinished) {
    for (const auto* const streamable : {"0", "1"}) {
        const Sandbox sandbox;
        const auto set = std::string("ProduceStreamableFiles=") + streamable;
        const auto source = movie("long.mkv");
        ASSERT_EQ(sandbox.convert(source, {"--set", set}).status, 0);
        const auto output = sandbox.out() / "long.m4v";
        const auto pages = (fs::file_size(output) + 4095) / 4096;
        fs::remove(output);
        // From the last packet over the index to the pass that moves it to the front.
        for (const unsigned missing : {1U, 2U, 3U, 4U, 6U, 9U, 13U, 20U, 40U, 70U}) {
            const auto options = "size=" + std::to_string((pages - missing) * 4096);
            ASSERT_EQ(::mount("tmpfs", sandbox.out().c_str(), "tmpfs", 0, options.c_str()), 0);
            const auto outcome = sandbox.convert(source, {"--set", set});
            EXPECT_EQ(outcome.status, 1) << missing << outcome.output;
            EXPECT_THAT(sandbox.leftovers(), IsEmpty()) << missing;
            EXPECT_EQ(::umount(sandbox.out().c_str()), 0);
        }
    }
}

}  // namespace
}  // namespace reelvane
