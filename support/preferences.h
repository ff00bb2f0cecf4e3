#pragma once

#include <filesystem>
#include <functional>
#include <map>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

#include "support/ports/preferences_store.h"

namespace reelvane {

using PreferenceDictionary = std::map<std::string, std::string, std::less<>>;

/// Typed access by key over a store of texts; safe from any thread.
///
/// A key answers, in this order: what was set for this run only, what is stored, its registered
/// default, and else 0 or empty. A stored value is on disk when its setter has returned. A key that
/// was set for this run only is never written to the store, neither by its setter nor at the end.
///
/// Counting and book-keeping (`changeLater`, `addToInt`) is collected and written in the background
/// instead, because every write waits for the disk. Readers and setters of this program never see
/// it missing; a program that is killed loses what was not written yet.
class Preferences {
public:
    /// A value as the store would hold it, from what it holds now; absent: nothing is stored. Runs
    /// on any thread and may run while other processes wait, so it must neither block nor log.
    using Change = std::function<std::optional<std::string>(const std::optional<std::string>&)>;
    /// Runs work on another thread, later.
    using Background = std::function<void(std::function<void()>)>;

    explicit Preferences(PreferencesStore& store);
    ~Preferences();
    Preferences(const Preferences&) = delete;
    Preferences& operator=(const Preferences&) = delete;
    Preferences(Preferences&&) = delete;
    Preferences& operator=(Preferences&&) = delete;

    /// Adds to the layer that answers for what was never stored. Never written to the store.
    void registerDefaults(const PreferenceValues& defaults);
    /// Answers for the key from now on, whatever is stored, until the program ends.
    void setForThisRun(std::string_view key, std::string text);
    [[nodiscard]] bool isSetForThisRun(std::string_view key) const {
        const std::scoped_lock lock(mutex_);
        return forThisRun_.contains(key);
    }

    /// A text that begins with no number reads as 0.
    [[nodiscard]] int defaultInt(std::string_view key) const;
    [[nodiscard]] float defaultFloat(std::string_view key) const;
    [[nodiscard]] std::optional<std::string> defaultString(std::string_view key) const;
    /// Absent when nothing is stored or registered, or when it is no list.
    [[nodiscard]] std::optional<std::vector<std::string>> defaultArray(std::string_view key) const;
    [[nodiscard]] std::optional<PreferenceDictionary> defaultDict(std::string_view key) const;
    [[nodiscard]] std::optional<std::filesystem::path> defaultURL(std::string_view key) const;
    /// Any value, as the text that the store holds for it.
    [[nodiscard]] std::optional<std::string> defaultObject(std::string_view key) const;

    void setDefaultInt(std::string_view key, int value);
    void setDefaultFloat(std::string_view key, float value);
    void setDefaultString(std::string_view key, std::string_view value);
    void setDefaultArray(std::string_view key, const std::vector<std::string>& value);
    void setDefaultDict(std::string_view key, const PreferenceDictionary& value);
    void setDefaultURL(std::string_view key, const std::filesystem::path& value);
    /// Stores a value as text, or forgets the key when it is absent.
    void setDefaultObject(std::string_view key, const std::optional<std::string>& text);

    /// Who writes what is changed later; absent: every change is written at once. The work must
    /// not outlive this object.
    void setBackground(Background background);
    /// Changes one value in one step, so that two processes changing it at once both do. Changes
    /// are made in the order of the calls.
    void changeLater(std::string_view key, Change change);
    /// Adds to a stored integer, likewise.
    void addToInt(std::string_view key, int amount);
    /// Writes what was to be changed later; returns when it is on disk.
    void writeChanges() const;
    /// Forgets several values in one step, so that their registered defaults answer again.
    void forgetTogether(const std::vector<std::string_view>& keys);
    /// Edits what is stored in one step, from what it is then; false: nothing was written. What was
    /// set for this run only is not among the values.
    bool edit(const std::function<void(PreferenceValues&)>& change);

    void synchronize();

private:
    struct LaterChange {
        std::string key{};
        Change change{};
    };
    /// What was set for this run only; its value is absent when it was forgotten since.
    using RunValues = std::map<std::string, std::optional<std::string>, std::less<>>;

    [[nodiscard]] std::optional<std::string> textOf(std::string_view key) const;
    [[nodiscard]] std::optional<std::string> registeredText(std::string_view key) const;
    bool setInThisRunsLayer(std::string_view key, const std::optional<std::string>& text);
    [[nodiscard]] bool isChanging(std::string_view key) const;
    bool writeChangesAnd(const std::function<void(PreferenceValues&)>& edit) const;

    PreferencesStore& store_;
    mutable std::mutex writing_;  // held while changes are on their way to the disk
    mutable std::mutex mutex_;    // guards all below
    PreferenceValues registered_;
    RunValues forThisRun_;
    Background background_;
    // Reading a value writes what is still to be done to it.
    mutable std::vector<LaterChange> later_;       // not yet on their way
    mutable std::vector<LaterChange> onTheirWay_;  // not yet on disk
    mutable std::thread::id writer_;               // the thread inside a write, if any
    mutable bool scheduled_ = false;               // somebody is asked to write the later changes
};

}  // namespace reelvane
