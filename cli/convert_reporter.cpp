#include "cli/convert_reporter.h"

#include "cli/console.h"

namespace reelvane {
namespace {

class JsonReporter final : public ConvertReporter {
public:
    explicit JsonReporter(Console& console) : console_(console) {}

    void reading(std::size_t /*number*/, std::size_t /*files*/) override {}
    void queued(const EventSubject& subject) override { console_.line(queuedEvent(subject)); }
    void started(const EventSubject& subject, std::span<const std::string> arguments) override {
        console_.line(startedEvent(subject, arguments));
    }
    void progress(const EventSubject& subject, const ConvertProgress& progress) override {
        console_.line(
            progressEvent(subject, progress.percent, progress.remaining, progress.status));
    }
    void finished(const EventSubject& subject, const ConvertResult& result) override {
        console_.line(finishedEvent(subject, result));
    }
    void failed(const EventSubject& subject, std::string_view title, std::string_view message,
                std::string_view log) override {
        console_.line(failedEvent(subject, title, message, log));
    }
    void interrupted(const EventSubject& subject) override {
        console_.line(interruptedEvent(subject));
    }
    void refused(std::string_view file, std::span<const VettingAlert> alerts) override {
        console_.line(refusedEvent(file, alerts));
    }
    void warned(std::string_view file, std::string_view warning) override {
        alerted(file, warning);
    }
    void alerted(std::string_view title, std::string_view message) override {
        console_.line(alertEvent(title, message));
    }
    void ended(const ConvertSummary& /*summary*/, bool /*interrupted*/) override {}

private:
    Console& console_;
};

}  // namespace

std::unique_ptr<ConvertReporter> makeJsonReporter(Console& console) {
    return std::make_unique<JsonReporter>(console);
}

}  // namespace reelvane
