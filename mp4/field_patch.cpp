#include "mp4/field_patch.h"

#include <cerrno>
#include <fcntl.h>
#include <unistd.h>

#include "support/posix_io.h"

namespace reelvane {

FieldPatch fieldPatch(std::uint64_t offset, std::uint64_t value, std::size_t width) {
    FieldPatch result{.offset = offset};
    for (auto shift = static_cast<unsigned>(width * 8); shift > 0; shift -= 8) {
        result.bytes.push_back(static_cast<std::uint8_t>(value >> (shift - 8) & 0xFFU));
    }
    return result;
}

bool applyPatches(const std::filesystem::path& file, const std::vector<FieldPatch>& patches) {
    if (patches.empty()) return true;
    const FileDescriptor descriptor(::open(file.c_str(), O_WRONLY | O_CLOEXEC));
    if (!descriptor.isOpen()) return false;
    for (const auto& field : patches) {
        ssize_t written = 0;
        do {
            written = ::pwrite(descriptor.get(), field.bytes.data(), field.bytes.size(),
                               static_cast<off_t>(field.offset));
        } while (written < 0 && errno == EINTR);
        if (written != static_cast<ssize_t>(field.bytes.size())) return false;
    }
    return true;
}

}  // namespace reelvane
