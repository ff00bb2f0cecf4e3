#pragma once

#include <unistd.h>
#include <utility>

namespace reelvane {

/// Owns one file descriptor.
class PosixDescriptor {
public:
    PosixDescriptor() = default;
    explicit PosixDescriptor(int descriptor) : descriptor_(descriptor) {}
    ~PosixDescriptor() { reset(); }
    PosixDescriptor(PosixDescriptor&& other) noexcept
        : descriptor_(std::exchange(other.descriptor_, -1)) {}
    PosixDescriptor& operator=(PosixDescriptor&& other) noexcept {
        std::swap(descriptor_, other.descriptor_);
        return *this;
    }
    PosixDescriptor(const PosixDescriptor&) = delete;
    PosixDescriptor& operator=(const PosixDescriptor&) = delete;

    [[nodiscard]] int get() const { return descriptor_; }
    explicit operator bool() const { return descriptor_ >= 0; }
    void reset() {
        if (descriptor_ >= 0) ::close(std::exchange(descriptor_, -1));
    }

private:
    int descriptor_ = -1;
};

}  // namespace reelvane
