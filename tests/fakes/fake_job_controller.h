#pragma once

#include <filesystem>
#include <functional>
#include <set>
#include <string>
#include <vector>

#include "conversion/conversion_job.h"

namespace reelvane {

/// Plays the queue: remembers what a job told it, in order, and answers as the test says.
class FakeJobController final : public ConversionJob::Controller {
public:
    void removeJob(ConversionJob& /*job*/) override { say("removeJob"); }
    void startNextJobInQueue() override { say("startNextJobInQueue"); }
    [[nodiscard]] int jobCountWithState(ConversionJobState state) const override {
        return state == ConversionJobState::Converting ? converting : failed;
    }
    void pauseContinueClicked() override { say("pauseContinueClicked"); }
    [[nodiscard]] bool isAtWork() const override { return converting > 0; }
    [[nodiscard]] OutputPlaces outputPlaces() override {
        const auto ignore = [](const std::filesystem::path&) {};
        return {.claim = [](MKVFileInfo&) {}, .hold = ignore, .release = ignore};
    }
    void outputBegun(const std::filesystem::path& output, const std::string& /*outputMark*/,
                     const std::filesystem::path& /*progressFile*/) override {
        unfinished.insert(output);
    }
    void outputSettled(const std::filesystem::path& output) override { unfinished.erase(output); }
    void discardOutput(const std::filesystem::path& output,
                       const std::filesystem::path& source) override {
        deleteUnlessSource(output, source);
        outputSettled(output);
    }
    void deleteSource(const std::filesystem::path& source) override {
        std::filesystem::remove(source);
    }
    void conversionEnded() override { say("conversionEnded"); }
    [[nodiscard]] ConversionSettings conversionSettings() const override { return settings; }
    void terminate() override { say("terminate"); }

    ConversionSettings settings{};
    int converting = 0;  ///< how many jobs convert
    int failed = 0;      ///< how many jobs have failed
    std::set<std::filesystem::path> unfinished;
    std::vector<std::string> told;
    std::function<void(const std::string&)> onTold;  ///< called for each, to look or to act

private:
    void say(const std::string& what) {
        told.push_back(what);
        if (onTold) onTold(what);
    }
};

}  // namespace reelvane
