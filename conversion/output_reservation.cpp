#include "conversion/output_reservation.h"

#include <cerrno>
#include <sys/stat.h>

#include "support/posix_io.h"

namespace reelvane {

Reservation reserveOutput(const std::filesystem::path& path) {
    constexpr mode_t kAsUsual = S_IRUSR | S_IWUSR | S_IRGRP | S_IWGRP | S_IROTH | S_IWOTH;
    if (createFile(path, kAsUsual).isOpen()) return Reservation::Made;
    return errno == EEXIST ? Reservation::Taken : Reservation::Impossible;
}

}  // namespace reelvane
