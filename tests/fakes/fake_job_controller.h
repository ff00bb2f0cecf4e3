#pragma once

#include <array>
#include <filesystem>
#include <memory>
#include <set>
#include <string>
#include <vector>

#include "conversion/conversion_job.h"
#include "media/probe.h"
#include "support/dispatch.h"
#include "support/paths.h"

namespace reelvane {

/// Deletes at once what is given back unfinished.
class FakeKeeper final : public OutputLease::Keeper {
public:
    [[nodiscard]] bool begin(const std::shared_ptr<RunFiles>& /*files*/) override { return true; }
    void note(const RunFiles& /*files*/, const OwnFile& output,
              const OwnFile& /*progressFile*/) override {
        // The same note comes once more when the file is there.
        if (noted != output.path)
            notedBeforeMade = notedBeforeMade && ownFileAt(output.path) != output;
        noted = output.path;
    }
    void made(const std::shared_ptr<RunFiles>& /*files*/) override {}
    void giveBack(const std::shared_ptr<RunFiles>& files) override {
        static_cast<void>(files->discard());
    }
    void hold(const std::filesystem::path& path) override { held.insert(path); }
    void release(const std::filesystem::path& path) override {
        if (const auto found = held.find(path); found != held.end()) held.erase(found);
    }
    [[nodiscard]] std::filesystem::path otherPath(const MKVFileInfo& /*record*/,
                                                  const std::filesystem::path& taken) override {
        return *held.insert(Fennimar::uniqueFile(taken));
    }

    std::filesystem::path noted;  ///< the output, last
    bool notedBeforeMade = true;  ///< every file, before it had its name
    std::multiset<std::filesystem::path> held;
};

/// Plays the queue: remembers what a job told it, in order, and answers as the test says.
class FakeJobController final : public ConversionJob::Controller {
public:
    explicit FakeJobController(Vantor& vantor) : vantor_(vantor) {}

    void removeJob(ConversionJob& /*job*/) override { say("removeJob"); }
    /// Shows the alerts, as an owner does, once the main loop turns.
    void jobEvent(const JobEvent& event) override {
        static constexpr auto kNames =
            std::to_array<const char*>({"wentOn", "sourceMissing", "noSpace", "startRefused",
                                        "runFinished", "runFailed", "sourceDecided", "explained"});
        if (event.notification) notifications.push_back(*event.notification);
        dispatch_async_main(vantor_, [this, event] { showAlert(vantor_, event); });
        say(kNames.at(static_cast<std::size_t>(event.kind)));
    }
    [[nodiscard]] std::shared_ptr<OutputLease::Keeper> outputs() override { return keeper; }
    [[nodiscard]] std::shared_ptr<ConverterVersion> converterVersion() override { return version; }
    [[nodiscard]] Turns& comparisons() override { return turns; }
    void assertionLeft(PowerAssertionID assertion) override { left.push_back(assertion); }
    [[nodiscard]] ConversionSettings conversionSettings() const override { return settings; }

    ConversionSettings settings{};
    Turns turns;
    std::shared_ptr<FakeKeeper> keeper = std::make_shared<FakeKeeper>();
    std::shared_ptr<ConverterVersion> version;  ///< asked for copied AAC alone
    std::vector<PowerAssertionID> left;
    std::vector<std::string> told;
    std::vector<Notification> notifications;

private:
    void say(const std::string& what) { told.push_back(what); }

    Vantor& vantor_;
};

}  // namespace reelvane
