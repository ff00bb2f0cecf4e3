#pragma once

#include <stdexcept>
#include <string>
#include <utility>

namespace reelvane {

/// An unexpected failure that a problem report shows under a name of its own instead of its type's.
class NamedException : public std::runtime_error {
public:
    NamedException(std::string name, const std::string& reason)
        : std::runtime_error(reason),
          name_(std::move(name)) {}

    [[nodiscard]] const std::string& name() const { return name_; }

private:
    std::string name_;
};

}  // namespace reelvane
