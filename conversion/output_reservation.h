#pragma once

#include <filesystem>

namespace reelvane {

enum class Reservation {
    Made,       ///< an empty file lies there that only this program can have made
    Taken,      ///< something lay there before
    Impossible  ///< no file can be made there; the converter will say what is wrong
};

/// Takes an output's name, so that no other program gets it. The converter writes into the very
/// file that this makes.
[[nodiscard]] Reservation reserveOutput(const std::filesystem::path& path);

}  // namespace reelvane
