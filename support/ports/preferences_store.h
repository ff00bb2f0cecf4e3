#pragma once

#include <functional>
#include <map>
#include <optional>
#include <string>
#include <string_view>

namespace reelvane {

/// Every stored preference: its key and its value as text (see support/preference_text.h).
using PreferenceValues = std::map<std::string, std::string, std::less<>>;

/// The user's preferences on disk: plain text by key, no types, no defaults. Any thread.
/// Several processes may use one store at once; none loses what another wrote.
class PreferencesStore {
public:
    virtual ~PreferencesStore() = default;

    /// The stored text; absent when nothing is stored. Sees what other processes wrote.
    [[nodiscard]] virtual std::optional<std::string> value(std::string_view key) const = 0;

    /// Lets `change` edit the values as they stand on disk, while no other process can write.
    /// The result is on disk when the call returns true; false: nothing was written.
    virtual bool edit(const std::function<void(PreferenceValues&)>& change) = 0;

    /// Asks the system to put everything written so far onto the device.
    virtual void synchronize() = 0;
};

}  // namespace reelvane
