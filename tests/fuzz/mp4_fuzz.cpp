// Feeds arbitrary bytes to the MP4 reader, and what it reads to the track flags and their patch.
// With REELVANE_FUZZ=ON and clang: mp4_fuzz -max_total_time=300 CORPUS

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <sys/mman.h>

#include "conversion/output_tracks.h"
#include "mp4/mp4_box.h"
#include "mp4/mp4_reader.h"
#include "support/posix_io.h"

namespace {

using namespace reelvane;

void check(bool holds) {
    if (!holds) std::abort();
}

void readOne(std::string_view bytes) {
    const FileDescriptor file(::memfd_create("movie", MFD_CLOEXEC));
    check(file.isOpen() && writeAll(file.get(), bytes));
    const std::filesystem::path path("/proc/self/fd/" + std::to_string(file.get()));
    const auto before = readMp4(path);
    check(before.movie.has_value() == before.problem.empty());
    if (!before.movie) return;
    // Whatever the fields are, setting them keeps the file whole and leaves nothing to be set.
    check(applyPatches(path, trackFlagPatches(*before.movie, {0})));
    const auto after = readMp4(path);
    check(after.movie && after.movie->tracks.size() == before.movie->tracks.size());
    check(trackFlagPatches(*after.movie, {0}).empty());
    check(std::filesystem::file_size(path) == bytes.size());
}

}  // namespace

// NOLINTNEXTLINE(readability-identifier-naming): the fuzzer's name for it
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    // The bytes are only looked at.
    readOne({reinterpret_cast<const char*>(data), size});
    return 0;
}
