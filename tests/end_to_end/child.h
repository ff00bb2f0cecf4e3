#pragma once

#include <string>
#include <sys/types.h>
#include <vector>

namespace reelvane {

/// How a command ended: its exit status, or 128 and the signal's number, and what it printed.
struct Outcome {
    int status = -1;
    std::string output{};
};

/// A command that runs beside the test; what it prints is read by wait().
class Child {
public:
    explicit Child(const std::vector<std::string>& command);
    Child(const Child&) = delete;
    Child& operator=(const Child&) = delete;
    Child(Child&&) = delete;
    Child& operator=(Child&&) = delete;
    ~Child();

    void send(int signal) const;
    [[nodiscard]] Outcome wait();

private:
    pid_t pid_ = -1;
    int output_ = -1;
};

/// Runs a command to its end.
[[nodiscard]] Outcome run(const std::vector<std::string>& command);

}  // namespace reelvane
