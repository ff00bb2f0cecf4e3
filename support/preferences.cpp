#include "support/preferences.h"

#include <algorithm>
#include <limits>
#include <utility>

#include "support/preference_text.h"
#include "support/strings.h"

namespace reelvane {
namespace {

std::string sumText(const std::optional<std::string>& text, int amount) {
    const long long sum = static_cast<long long>(Fennimar::leadingInteger(text.value_or(""))) +
                          static_cast<long long>(amount);
    using Limits = std::numeric_limits<int>;
    return preferenceText(
        static_cast<int>(std::clamp<long long>(sum, Limits::min(), Limits::max())));
}

/// Absent: the value is forgotten.
void put(PreferenceValues& values, std::string_view key, std::optional<std::string> text) {
    if (text) {
        values.insert_or_assign(std::string(key), *std::move(text));
    } else if (const auto found = values.find(key); found != values.end()) {
        values.erase(found);
    }
}

}  // namespace

Preferences::Preferences(PreferencesStore& store) : store_(store) {}

Preferences::~Preferences() {
    writeChanges();
}

void Preferences::registerDefaults(const PreferenceValues& defaults) {
    const std::lock_guard lock(mutex_);
    for (const auto& [key, text] : defaults) registered_.insert_or_assign(key, text);
}

void Preferences::setForThisRun(std::string_view key, std::string text) {
    const std::lock_guard lock(mutex_);
    forThisRun_.insert_or_assign(std::string(key), std::move(text));
}

std::optional<std::string> Preferences::registeredText(std::string_view key) const {
    const std::lock_guard lock(mutex_);
    const auto found = registered_.find(key);
    return found == registered_.end() ? std::nullopt : std::optional(found->second);
}

std::optional<std::string> Preferences::textOf(std::string_view key) const {
    {
        const std::lock_guard lock(mutex_);
        if (const auto found = forThisRun_.find(key); found != forThisRun_.end()) {
            if (found->second) return found->second;
            const auto registered = registered_.find(key);
            return registered == registered_.end() ? std::nullopt
                                                   : std::optional(registered->second);
        }
    }
    if (isChanging(key)) writeChanges();
    // The store is asked without the lock: it may log, and a log message is stored here too.
    if (auto stored = store_.value(key)) return stored;
    return registeredText(key);
}

/// False when the key belongs to the store.
bool Preferences::setInThisRunsLayer(std::string_view key, const std::optional<std::string>& text) {
    const std::lock_guard lock(mutex_);
    const auto found = forThisRun_.find(key);
    if (found == forThisRun_.end()) return false;
    found->second = text;
    return true;
}

int Preferences::defaultInt(std::string_view key) const {
    return Fennimar::leadingInteger(textOf(key).value_or(""));
}

float Preferences::defaultFloat(std::string_view key) const {
    const double value = Fennimar::leadingDouble(textOf(key).value_or(""));
    constexpr double kLargest = std::numeric_limits<float>::max();
    return static_cast<float>(std::clamp(value, -kLargest, kLargest));
}

std::optional<std::string> Preferences::defaultString(std::string_view key) const {
    const auto text = textOf(key);
    return text ? stringFromPreferenceText(*text) : std::nullopt;
}

std::optional<std::vector<std::string>> Preferences::defaultArray(std::string_view key) const {
    const auto text = textOf(key);
    return text ? listFromPreferenceText(*text) : std::nullopt;
}

std::optional<PreferenceDictionary> Preferences::defaultDict(std::string_view key) const {
    const auto text = textOf(key);
    return text ? dictionaryFromPreferenceText(*text) : std::nullopt;
}

std::optional<std::filesystem::path> Preferences::defaultURL(std::string_view key) const {
    const auto text = defaultString(key);
    return text ? std::optional<std::filesystem::path>(*text) : std::nullopt;
}

std::optional<std::string> Preferences::defaultObject(std::string_view key) const {
    return textOf(key);
}

void Preferences::setDefaultInt(std::string_view key, int value) {
    setDefaultObject(key, preferenceText(value));
}

void Preferences::setDefaultFloat(std::string_view key, float value) {
    setDefaultObject(key, preferenceText(value));
}

void Preferences::setDefaultString(std::string_view key, std::string_view value) {
    setDefaultObject(key, preferenceText(value));
}

void Preferences::setDefaultArray(std::string_view key, const std::vector<std::string>& value) {
    setDefaultObject(key, preferenceText(value));
}

void Preferences::setDefaultDict(std::string_view key, const PreferenceDictionary& value) {
    setDefaultObject(key, preferenceText(value));
}

void Preferences::setDefaultURL(std::string_view key, const std::filesystem::path& value) {
    setDefaultString(key, value.native());
}

void Preferences::setDefaultObject(std::string_view key, const std::optional<std::string>& text) {
    if (setInThisRunsLayer(key, text)) return;
    writeChangesAnd([&](PreferenceValues& values) { put(values, key, text); });
}

void Preferences::addToInt(std::string_view key, int amount) {
    changeLater(key,
                [registered = registeredText(key), amount](const std::optional<std::string>& text) {
                    return sumText(text ? text : registered, amount);
                });
}

void Preferences::changeLater(std::string_view key, Change change) {
    Background background;
    {
        const std::lock_guard lock(mutex_);
        if (const auto found = forThisRun_.find(key); found != forThisRun_.end()) {
            found->second = change(found->second);
            return;
        }
        later_.push_back({.key = std::string(key), .change = std::move(change)});
        // A store that complains in the log while it writes must not be asked to write that.
        if (writer_ == std::this_thread::get_id()) return;
        if (background_ && std::exchange(scheduled_, true)) return;
        background = background_;
    }
    if (background) {
        background([this] { writeChanges(); });
    } else {
        writeChanges();
    }
}

void Preferences::setBackground(Background background) {
    const std::lock_guard lock(mutex_);
    background_ = std::move(background);
    scheduled_ = false;
}

bool Preferences::isChanging(std::string_view key) const {
    const std::lock_guard lock(mutex_);
    const auto isOfKey = [key](const LaterChange& later) { return later.key == key; };
    return std::ranges::any_of(later_, isOfKey) || std::ranges::any_of(onTheirWay_, isOfKey);
}

void Preferences::writeChanges() const {
    writeChangesAnd({});
}

/// What was to be changed earlier comes first, in the same write.
bool Preferences::writeChangesAnd(const std::function<void(PreferenceValues&)>& edit) const {
    {
        const std::lock_guard lock(mutex_);
        if (writer_ == std::this_thread::get_id()) return false;  // asked from inside a write
    }
    const std::lock_guard oneAtATime(writing_);
    {
        const std::lock_guard lock(mutex_);
        onTheirWay_ = std::exchange(later_, {});
        scheduled_ = false;
        if (onTheirWay_.empty() && !edit) return true;
        writer_ = std::this_thread::get_id();
    }
    const bool written = store_.edit([&](PreferenceValues& values) {
        for (const auto& [key, change] : onTheirWay_) {
            const auto found = values.find(key);
            put(values, key,
                change(found == values.end() ? std::nullopt : std::optional(found->second)));
        }
        if (edit) edit(values);
    });
    const std::lock_guard lock(mutex_);
    onTheirWay_.clear();
    writer_ = {};
    return written;
}

void Preferences::forgetTogether(const std::vector<std::string_view>& keys) {
    std::vector<std::string_view> stored;
    for (const auto key : keys) {
        if (!setInThisRunsLayer(key, std::nullopt)) stored.push_back(key);
    }
    edit([&stored](PreferenceValues& values) {
        for (const auto key : stored) put(values, key, std::nullopt);
    });
}

bool Preferences::edit(const std::function<void(PreferenceValues&)>& change) {
    return writeChangesAnd(change);
}

void Preferences::synchronize() {
    writeChanges();
    store_.synchronize();
}

}  // namespace reelvane
