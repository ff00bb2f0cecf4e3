#include "ui/exit_work.h"

#include <cstdlib>
#include <utility>

namespace reelvane {
namespace {

// A function that exit() calls takes no argument of ours.
std::function<void()>& pendingWork() {
    static std::function<void()> work;
    return work;
}

void doPendingWork() {
    if (const auto work = std::exchange(pendingWork(), {})) work();
}

}  // namespace

ExitWork::ExitWork(std::function<void()> work) {
    pendingWork() = std::move(work);
    std::atexit(doPendingWork);
}

ExitWork::~ExitWork() {
    pendingWork() = {};
}

}  // namespace reelvane
