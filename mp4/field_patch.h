#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <vector>

namespace reelvane {

/// One field of a file to be set in place; its size never changes.
struct FieldPatch {
    std::uint64_t offset = 0;
    std::vector<std::uint8_t> bytes{};  ///< most significant first
};

/// A field of `width` bytes with this value.
[[nodiscard]] FieldPatch fieldPatch(std::uint64_t offset, std::uint64_t value, std::size_t width);

/// Writes the fields, one write each, so that the file plays after every one of them. False when
/// one could not be written.
[[nodiscard]] bool applyPatches(const std::filesystem::path& file,
                                const std::vector<FieldPatch>& patches);

}  // namespace reelvane
