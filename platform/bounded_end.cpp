#include "platform/bounded_end.h"

#include <csignal>
#include <thread>
#include <unistd.h>

#include "platform/process_start.h"

namespace reelvane {

void endWithin(std::chrono::seconds patience, int status) {
    auto waiting = startThread([patience, status] {
        std::this_thread::sleep_for(patience);
        ::_exit(status);
    });
    if (waiting) {
        waiting->detach();
    } else {
        // Without a thread the status is lost, but the end comes.
        std::signal(SIGALRM, SIG_DFL);
        ::alarm(static_cast<unsigned>(patience.count()));
    }
}

}  // namespace reelvane
