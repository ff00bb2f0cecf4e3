#include "platform/bounded_end.h"

#include <thread>
#include <unistd.h>

namespace reelvane {

void endWithin(std::chrono::seconds patience, int status) {
    std::thread([patience, status] {
        std::this_thread::sleep_for(patience);
        ::_exit(status);
    }).detach();
}

}  // namespace reelvane
