#pragma once

#include <string_view>
#include <utility>
#include <vector>

#include <QWidget>

#include "ui/preference_controls.h"

class QBoxLayout;

namespace reelvane {

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

}  // namespace reelvane
