#pragma once

#include <exception>
#include <string>

#include "support/problem_reports.h"

namespace reelvane {

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

}  // namespace reelvane
