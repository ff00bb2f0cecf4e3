#include "platform/ini_preferences_store.h"

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <fcntl.h>
#include <poll.h>
#include <sys/file.h>
#include <thread>
#include <utility>

#include "platform/ini_document.h"
#include "support/make_string.h"
#include "support/ports/translations.h"
#include "support/posix_io.h"
#include "support/strings.h"

namespace reelvane {

namespace {

constexpr auto kGroup = "Preferences";

/// The file whose lock every writer of the preferences holds.
FileDescriptor openLockFile(const std::filesystem::path& path) {
    makePrivateFolder(path.parent_path());
    auto name = path;
    name += ".lock";
    return FileDescriptor(
        ::open(name.c_str(), O_RDONLY | O_CREAT | O_NOFOLLOW | O_CLOEXEC, S_IRUSR | S_IWUSR));
}

enum class Locking { Locked, HeldByAnother, Impossible };

/// Asks again and again: a wait inside the call could be ended by nothing.
Locking lockWithin(int file, IniPreferencesStore::Patience patience,
                   const std::atomic<bool>& hurried) {
    constexpr auto kLongestHurry = std::chrono::milliseconds(1000);
    constexpr auto kLongestPause = std::chrono::milliseconds(20);
    const auto begin = std::chrono::steady_clock::now();
    auto pause = std::chrono::milliseconds(1);
    while (::flock(file, LOCK_EX | LOCK_NB) < 0) {
        if (errno == EINTR) continue;
        if (errno != EWOULDBLOCK) return Locking::Impossible;
        pollfd cancelled{.fd = patience.cancelDescriptor, .events = POLLIN, .revents = 0};
        const bool hurries = hurried || ::poll(&cancelled, 1, 0) > 0;
        const auto longest = hurries ? std::min(patience.time, kLongestHurry) : patience.time;
        if (std::chrono::steady_clock::now() - begin >= longest) return Locking::HeldByAnother;
        std::this_thread::sleep_for(pause);
        pause = std::min(2 * pause, kLongestPause);
    }
    return Locking::Locked;
}

/// For a sentence: bytes that are not UTF-8 replaced.
std::string shown(const std::filesystem::path& path) {
    return Fennimar::validUtf8(path.native());
}

std::string damagedText(const Translations& translations, const std::filesystem::path& path,
                        const std::optional<std::filesystem::path>& kept) {
    if (kept) {
        return makeString(
            translations.localized("The preferences file \"%@\" could not be read. It was kept as "
                                   "\"%@\", and the default preferences are used."),
            shown(path), shown(*kept));
    }
    auto wanted = path;
    wanted += ".damaged";
    return makeString(
        translations.localized("The preferences file \"%@\" could not be read, and it could not be "
                               "kept as \"%@\". The default preferences are used, and changes will "
                               "not be saved until you move the file away."),
        shown(path), shown(wanted));
}

}  // namespace

struct IniPreferencesStore::Reading {
    FileContent content{};
    IniDocument document{kGroup};
    PreferenceValues values{};  ///< of the document
};

IniPreferencesStore::IniPreferencesStore(std::filesystem::path path, Patience patience)
    : path_(std::move(path)),
      patience_(patience) {}

void IniPreferencesStore::setHeldHandler(std::function<void()> handler) {
    const std::scoped_lock lock(mutex_);
    heldHandler_ = std::move(handler);
}

/// Not open when it cannot be had. It goes with the descriptor, however the program ends.
FileDescriptor IniPreferencesStore::lockFile() const {
    auto patience = patience_;
    {
        const std::scoped_lock lock(mutex_);
        if (held_) patience.time = {};
    }
    auto file = openLockFile(path_);
    if (!file.isOpen()) return file;
    const auto locking = lockWithin(file.get(), patience, hurried_);
    if (locking == Locking::HeldByAnother) tellHeld();
    if (locking != Locking::Locked) file.reset();
    return file;
}

void IniPreferencesStore::tellHeld() const {
    std::function<void()> handler;
    {
        const std::scoped_lock lock(mutex_);
        if (!std::exchange(held_, true)) handler = heldHandler_;
    }
    if (handler) handler();
}

IniPreferencesStore::Reading IniPreferencesStore::read() const {
    Reading reading{.content = readWhole(path_)};
    if (reading.content.state != ReadState::Read) return reading;
    if (auto document = IniDocument::parse(reading.content.text, kGroup)) {
        reading.document = *std::move(document);
        reading.values = reading.document.values();
    } else {
        reading.content.state = ReadState::Unreadable;
    }
    return reading;
}

// Under the lock a damaged file can be moved: no other process is just replacing it.
IniPreferencesStore::Reading IniPreferencesStore::readLocked() const {
    auto reading = read();
    if (reading.content.state != ReadState::Unreadable) return reading;
    const auto kept = setAside(path_);
    tell({.kept = kept});
    if (kept) reading.content = {};
    return reading;
}

void IniPreferencesStore::tell(Damage damage) const {
    const std::scoped_lock lock(mutex_);
    damage_ = std::move(damage);
}

void IniPreferencesStore::remember(Reading reading) const {
    const std::scoped_lock lock(mutex_);
    if (reading.content.state == ReadState::NotNow) return;
    values_ = std::move(reading.values);
    identity_ = reading.content.identity;
    file_ = std::move(reading.content.file);
    known_ = true;
}

void IniPreferencesStore::refresh() const {
    {
        const auto identity = identityOf(path_);
        const std::scoped_lock lock(mutex_);
        if (known_ && identity == identity_) return;
    }
    auto reading = read();
    if (reading.content.state == ReadState::Unreadable) {
        const auto held = lockFile();
        if (held.isOpen()) {
            reading = readLocked();
        } else {
            tell({});
        }
    }
    remember(std::move(reading));
}

std::optional<std::string> IniPreferencesStore::value(std::string_view key) const {
    refresh();
    const std::scoped_lock lock(mutex_);
    const auto found = values_.find(key);
    return found == values_.end() ? std::nullopt : std::optional(found->second);
}

bool IniPreferencesStore::edit(const std::function<void(PreferenceValues&)>& change) {
    const auto held = lockFile();
    if (!held.isOpen()) return false;
    auto reading = readLocked();
    const auto state = reading.content.state;
    if (state != ReadState::Absent && state != ReadState::Read) return false;
    auto after = reading.values;
    change(after);
    if (after == reading.values) return true;
    reading.document.change(reading.values, after);
    reading.values = std::move(after);
    auto replaced = replaceFile(path_, reading.document.text());
    if (!replaced) return false;
    reading.content = *std::move(replaced);
    remember(std::move(reading));
    return true;
}

void IniPreferencesStore::synchronize() {
    // Every edit has put the file onto the device; where it could not, its folder's entry follows.
    synchronizeFolder(path_.parent_path());
}

std::optional<std::string> IniPreferencesStore::problem(const Translations& translations) const {
    refresh();
    const std::scoped_lock lock(mutex_);
    if (damage_) return damagedText(translations, path_, damage_->kept);
    if (!held_) return std::nullopt;
    return makeString(translations.localized(
                          "Another program holds the preferences file \"%@\" and does not come to "
                          "an end. As long as it does, no change is saved. Please end that "
                          "program."),
                      shown(path_));
}

}  // namespace reelvane
