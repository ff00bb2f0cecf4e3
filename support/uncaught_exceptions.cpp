#include "support/uncaught_exceptions.h"

#include <array>
#include <atomic>
#include <cstdlib>
#include <cxxabi.h>
#include <execinfo.h>
#include <memory>
#include <system_error>
#include <typeinfo>
#include <unistd.h>

#include "support/alerts.h"
#include "support/make_string.h"
#include "support/paths.h"
#include "support/ports/main_bundle.h"
#include "support/vantor.h"

namespace reelvane {

namespace fs = std::filesystem;

namespace {

// A terminate handler takes no argument, so it finds the program's object here.
std::atomic<Vantor*>& handlersVantor() {
    static std::atomic<Vantor*> vantor = nullptr;
    return vantor;
}

struct FreeMemory {
    // NOLINTNEXTLINE(cppcoreguidelines-no-malloc): what the C library hands out
    void operator()(void* memory) const { std::free(memory); }
};

std::string demangled(const char* name) {
    int status = 0;
    const std::unique_ptr<char, FreeMemory> text(
        abi::__cxa_demangle(name, nullptr, nullptr, &status));
    return status == 0 && text ? text.get() : name;
}

std::string nestedTexts(const std::exception& exception) {
    try {
        std::rethrow_if_nested(exception);
    } catch (const std::exception& nested) {
        return makeString("%@; %@", nested.what(), nestedTexts(nested));
    } catch (...) {
        return "unknown";
    }
    return {};
}

ExceptionReport reportOf(const std::string& name, const std::string& reason,
                         const std::string& nested, const std::string& callStack) {
    const auto description = reason.empty() ? name : name + ": " + reason;
    return {.name = name,
            .details = makeString(" %@ %@ %@ %@", description, reason, nested, callStack)};
}

/// Of the calling thread, which nothing has unwound when no handler was found.
std::string currentCallStack() {
    std::array<void*, 64> frames{};
    const int count = ::backtrace(frames.data(), static_cast<int>(frames.size()));
    const std::unique_ptr<char*, FreeMemory> symbols(::backtrace_symbols(frames.data(), count));
    std::string text;
    for (int i = 0; symbols && i < count; ++i) {
        text += makeString("\n%@", symbols.get()[i]);
    }
    return text;
}

[[noreturn]] void exceptionHandler() {
    static std::atomic<bool> reporting = false;
    static thread_local bool reportingHere = false;
    if (reportingHere) endProcess(1);  // the report itself failed
    // The first failure is the one to report; the user may still be reading it.
    while (reporting.exchange(true)) ::pause();
    reportingHere = true;
    try {
        const auto report = describeException(std::current_exception(), currentCallStack());
        if (auto* const vantor = handlersVantor().load()) {
            alert_feedback_fatal(*vantor, report.name, report.details);
        }
    } catch (...) {
        endProcess(1);
    }
    endProcess(1);
}

}  // namespace

ExceptionReport describeException(const std::exception_ptr& exception,
                                  const std::string& callStack) {
    if (!exception) return reportOf("std::terminate", {}, {}, callStack);
    try {
        std::rethrow_exception(exception);
    } catch (const NamedException& caught) {
        return reportOf(caught.name(), caught.what(), nestedTexts(caught), callStack);
    } catch (const std::exception& caught) {
        return reportOf(demangled(typeid(caught).name()), caught.what(), nestedTexts(caught),
                        callStack);
    } catch (...) {
        const auto* const type = abi::__cxa_current_exception_type();
        return reportOf(type == nullptr ? "unknown" : demangled(type->name()), {}, {}, callStack);
    }
}

UncaughtExceptionHandler::UncaughtExceptionHandler(Vantor& vantor) {
    handlersVantor() = &vantor;
    former_ = std::set_terminate(exceptionHandler);
}

UncaughtExceptionHandler::~UncaughtExceptionHandler() {
    std::set_terminate(former_);
    handlersVantor() = nullptr;
}

bool applicationIsDamaged(const fs::path& frameworks) {
    std::error_code error;
    for (fs::directory_iterator entry(frameworks, error), end; !error && entry != end;
         entry.increment(error)) {
        const auto& framework = entry->path();
        if (!Fennimar::fileIsAlias(framework / framework.stem())) return true;
    }
    return false;
}

void runDamagedApplicationTest(Vantor& vantor, const EndProcess& end) {
    if (!applicationIsDamaged(vantor.ports().mainBundle.bundlePath() / "Frameworks")) return;
    alert_apptitled(
        vantor,
        "This application is damaged. Either your download was damaged or you used a faulty "
        "program to extract the ZIP archive. Please re-download and make sure to use the ZIP "
        "decompression built into Mac OS X.",
        "OK");
    end(0);
}

}  // namespace reelvane
