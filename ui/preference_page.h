#pragma once

#include <string_view>
#include <vector>

#include <QScrollArea>

namespace reelvane {

class PreferenceColumn;
class Preferences;

/// One page of the preferences: a column of controls, which scrolls where the screen is small.
class PreferencePage : public QScrollArea {
public:
    PreferencePage(Preferences& preferences, const QString& title, QWidget* parent);

    /// The preferences that the page shows, and that are forgotten when it is reset.
    [[nodiscard]] virtual std::vector<std::string_view> keys() const;
    /// Shows what is stored now.
    virtual void showStored();
    /// What a reset of the page leaves alone, as a sentence; empty: nothing.
    [[nodiscard]] virtual QString keptByReset() const { return {}; }

protected:
    [[nodiscard]] PreferenceColumn& column() const { return *column_; }

private:
    PreferenceColumn* column_;
};

}  // namespace reelvane
