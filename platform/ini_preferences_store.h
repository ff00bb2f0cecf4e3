#pragma once

#include <atomic>
#include <chrono>
#include <filesystem>
#include <functional>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include "platform/ini_file.h"
#include "support/ports/preferences_store.h"

namespace reelvane {

class Translations;

/// The preferences in one group of a key file. Every edit takes a lock file beside it
/// ("NAME.lock", which stays), reads what is on disk and replaces the file in one step, so readers
/// need no lock. Any thread; `edit` blocks while another process edits. One that does not come to
/// an end is waited for once; from then on nothing is written as long as it holds the lock.
///
/// What stands at the path and is no readable key file is set aside, never overwritten; where that
/// fails, nothing is written.
class IniPreferencesStore final : public PreferencesStore {
public:
    /// How long another process is waited for: a second at most once the `cancelDescriptor` (-1:
    /// none) can be read.
    struct Patience {
        std::chrono::milliseconds time{5000};
        int cancelDescriptor = -1;
    };

    explicit IniPreferencesStore(std::filesystem::path path)
        : IniPreferencesStore(std::move(path), Patience()) {}
    IniPreferencesStore(std::filesystem::path path, Patience patience);

    /// From here on another process is waited for a second at most: the program is about to end.
    void hurry() { hurried_ = true; }

    /// Called once, on the thread that meets it, when another process was waited for in vain:
    /// `problem` answers then.
    void setHeldHandler(std::function<void()> handler);

    [[nodiscard]] std::optional<std::string> value(std::string_view key) const override;
    bool edit(const std::function<void(PreferenceValues&)>& change) override;
    void synchronize() override;

    /// What the user must know of the stored file; absent when all is well. Reads it if need be.
    [[nodiscard]] std::optional<std::string> problem(const Translations& translations) const;

private:
    struct Reading;
    /// The file could not be read.
    struct Damage {
        std::optional<std::filesystem::path> kept{};  ///< where it lies now; absent: as it was
    };
    [[nodiscard]] FileDescriptor lockFile() const;
    void tellHeld() const;

    [[nodiscard]] Reading read() const;
    [[nodiscard]] Reading readLocked() const;
    void refresh() const;
    void remember(Reading reading) const;
    void tell(Damage damage) const;

    std::filesystem::path path_;
    Patience patience_;
    std::atomic<bool> hurried_ = false;
    mutable std::mutex mutex_;  ///< guards what follows; never held while waiting for the lock file
    mutable bool known_ = false;
    mutable std::optional<FileIdentity> identity_;  ///< of what `values_` were read from
    mutable FileDescriptor file_;                   ///< keeps its inode number from being reused
    mutable PreferenceValues values_;
    mutable std::optional<Damage> damage_;
    mutable bool held_ = false;  ///< another process was waited for in vain
    std::function<void()> heldHandler_;
};

}  // namespace reelvane
