#pragma once

#include <string_view>
#include <utility>
#include <vector>

#include <QScrollArea>
#include <QWidget>

#include "ui/preferences/preference_controls.h"

class QBoxLayout;

namespace reelvane {

class Preferences;

/// Controls for preferences, one below the other, under headings.
class PreferenceColumn final : public QWidget {
public:
    PreferenceColumn(Preferences& preferences, QWidget* parent);

    void addHeading(const QString& heading);
    void addWidget(QWidget* widget);
    /// Makes a control and puts it below the others.
    template <typename Control, typename... Options>
    Control& add(const PreferenceText& text, Options&&... options) {
        auto* const control =
            new Control(preferences_, text, std::forward<Options>(options)..., this);
        controls_.push_back(control);
        addWidget(control);
        return *control;
    }

    [[nodiscard]] std::vector<std::string_view> keys() const;
    /// Shows what is stored now.
    void showStored();

private:
    Preferences& preferences_;
    QBoxLayout* column_;
    std::vector<PreferenceControl*> controls_;
};

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
