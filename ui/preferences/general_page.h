#pragma once

#include "ui/preferences/preference_page.h"
#include "ui/ui_context.h"

class QPushButton;

namespace reelvane {

/// What happens to movies before and after their conversion.
class GeneralPage final : public PreferencePage {
public:
    GeneralPage(const UiContext& context, QWidget* parent);

    void showStored() override;

private:
    void addMovies();
    void addFiles();
    void addEnd();
    void addWarnings();

    UiContext context_;
    QPushButton* warn_ = nullptr;
};

}  // namespace reelvane
