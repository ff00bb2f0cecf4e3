#pragma once

#include <deque>
#include <functional>
#include <string>
#include <vector>

#include "support/ports/child_process.h"

namespace reelvane {

/// Launches nothing: remembers what was asked and lets the test play the child's part.
class FakeProcessLauncher final : public ProcessLauncher {
public:
    /// What a test sees and steers of one launched child. It outlives the ChildProcess.
    struct Child {
        ProcessRequest request{};
        ProcessListener* listener = nullptr;  ///< null once the handle is gone
        bool suspended = false;
        bool terminated = false;

        void print(std::string_view bytes) const { listener->outputReceived(bytes); }
        void exit(int status, std::string_view rest = {}) const {
            listener->taskFinished(status, rest);
        }
    };

    [[nodiscard]] LaunchResult launch(const ProcessRequest& request,
                                      ProcessListener& listener) override {
        if (nextError != LaunchError::None) return {.error = nextError};
        auto& child = children.emplace_back(Child{.request = request, .listener = &listener});
        if (onLaunch) onLaunch(child);
        return {.child = std::make_unique<Handle>(child)};
    }
    [[nodiscard]] RunResult run(const ProcessRequest& request) override {
        runs.push_back(request);
        if (nextError != LaunchError::None) return {.error = nextError};
        if (answer) return {.finished = answer(request)};
        return {.finished = FinishedProcess{}};
    }

    std::function<FinishedProcess(const ProcessRequest&)> answer;  ///< plays the blocking runs
    std::function<void(Child&)> onLaunch;                          ///< told of each launch
    LaunchError nextError = LaunchError::None;                     ///< refuses every launch
    std::deque<Child> children;                                    ///< launched, in order
    std::vector<ProcessRequest> runs;                              ///< run to completion, in order

private:
    class Handle final : public ChildProcess {
    public:
        explicit Handle(Child& child) : child_(child) {}
        ~Handle() override { child_.listener = nullptr; }
        Handle(const Handle&) = delete;
        Handle& operator=(const Handle&) = delete;
        Handle(Handle&&) = delete;
        Handle& operator=(Handle&&) = delete;
        void suspend() override { child_.suspended = true; }
        void resume() override { child_.suspended = false; }
        void terminate() override { child_.terminated = true; }

    private:
        Child& child_;
    };
};

}  // namespace reelvane
