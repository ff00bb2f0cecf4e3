#pragma once

#include <functional>

namespace reelvane {

/// What has to be done even where the program is left by exit(), as Qt does when the connection to
/// the screen breaks: at that place, while this lives. One at a time; main thread only.
class ExitWork final {
public:
    explicit ExitWork(std::function<void()> work);
    ~ExitWork();
    ExitWork(const ExitWork&) = delete;
    ExitWork& operator=(const ExitWork&) = delete;
    ExitWork(ExitWork&&) = delete;
    ExitWork& operator=(ExitWork&&) = delete;
};

}  // namespace reelvane
