#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "mp4/mp4_reader.h"

namespace reelvane {

class Translations;

/// What an output must hold to count as whole.
struct OutputExpectation {
    std::size_t mappedStreams = 0;        ///< at least so many tracks that hold a stream
    std::optional<int> runtimeSeconds{};  ///< of the source; absent or 0: unknown
    /// The source's own index of its picture, where it has one that can be read.
    std::optional<Mp4Track> sourcePicture{};
    /// Else what the source's statistics say of it, which may be out of date.
    std::optional<std::uint64_t> promisedPictures{};
    std::optional<int> promisedSeconds{};
};

/// The answer of reading an output back.
struct OutputProof {
    std::string problem{};  ///< empty: the file is whole
    double seconds = 0;
    std::size_t tracks = 0;
    bool endsEarly = false;   ///< whole, but clearly shorter than the source said it was
    bool endsLate = false;    ///< longer than the source, or with more pictures than it has
    bool isCutShort = false;  ///< less than half as long as the source, which is a `problem`
    /// Anything is missing of the length that the source names, if only what a container does not
    /// notice. Enough to keep the source; a log of whole seconds or a late sound is no damage.
    bool isShort = false;
    std::size_t lostPictures = 0;  ///< that the source's index has and the output has not
    double pictureSeconds = 0;
    double missedPicture = 0;  ///< until when the picture should last that ends too early; 0: none
};

/// True when the converter's own words admit a failure that its exit status of 0 hides.
[[nodiscard]] bool outputAdmitsFailure(std::string_view jobOutput);

/// Judges what was read back. "Shorter" and "longer" are more than 2 s and more than 1 per cent;
/// half a second where the source's index is there to be compared; "short" is half a second too.
/// Pure.
[[nodiscard]] OutputProof proveOutput(const Mp4Reading& reading,
                                      const OutputExpectation& expectation);

/// "12 s, 3 tracks, 1.43 GB": what a whole file holds; powers of ten, as file managers count. Both
/// are in the user's language.
[[nodiscard]] std::string contentText(const Translations& translations, double seconds,
                                      std::size_t tracks, std::uint64_t fileSize);
/// The same of a proven output: "12 s, 3 tracks, 1.43 GB, verified".
[[nodiscard]] std::string proofText(const Translations& translations, const OutputProof& proof,
                                    std::uint64_t fileSize);

}  // namespace reelvane
