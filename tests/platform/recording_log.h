#pragma once

#include <mutex>
#include <string>
#include <vector>

#include "support/ports/system_log.h"

namespace reelvane {

/// A system log that keeps what it is told, from any thread.
class RecordingLog final : public SystemLog {
public:
    void write(int /*priority*/, const std::string& message) override {
        const std::scoped_lock lock(mutex_);
        messages_.push_back(message);
    }
    [[nodiscard]] std::vector<std::string> messages() const {
        const std::scoped_lock lock(mutex_);
        return messages_;
    }

private:
    mutable std::mutex mutex_;
    std::vector<std::string> messages_;
};

}  // namespace reelvane
