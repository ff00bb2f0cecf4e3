#pragma once

#include <exception>
#include <filesystem>
#include <stdexcept>
#include <string>
#include <utility>

#include "support/problem_reports.h"

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

/// What a report says of an exception that nobody caught.
struct ExceptionReport {
    std::string name{};     ///< its own, else its type, as in the source
    std::string details{};  ///< its text, the texts nested in it, the call stack
};

/// Any thread. Without an exception (null) the report says that the program was terminated.
[[nodiscard]] ExceptionReport describeException(const std::exception_ptr& exception,
                                                const std::string& callStack);

/// While it lives, an exception that nobody catches, on any thread, ends in a fatal report and then
/// the process with status 1. One at a time; made by `main` after the Vantor object, main thread.
class UncaughtExceptionHandler {
public:
    explicit UncaughtExceptionHandler(Vantor& vantor);
    ~UncaughtExceptionHandler();
    UncaughtExceptionHandler(const UncaughtExceptionHandler&) = delete;
    UncaughtExceptionHandler& operator=(const UncaughtExceptionHandler&) = delete;
    UncaughtExceptionHandler(UncaughtExceptionHandler&&) = delete;
    UncaughtExceptionHandler& operator=(UncaughtExceptionHandler&&) = delete;

private:
    std::terminate_handler former_;
};

/// Whether a copy of the program lost its links when it was extracted: for each entry X of the
/// folder of private frameworks, "X/X without its extension" has to be a symbolic link. A folder
/// that is not there is whole.
[[nodiscard]] bool applicationIsDamaged(const std::filesystem::path& frameworks);

/// Tells the user of a damaged copy and ends the process with status 0. `main` calls it once, right
/// after it has made the Vantor object. Main thread only.
void runDamagedApplicationTest(Vantor& vantor, const EndProcess& end = endProcess);

}  // namespace reelvane
