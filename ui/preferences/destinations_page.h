#pragma once

#include "app/saved_destinations.h"
#include "support/observable.h"
#include "ui/preferences/preference_page.h"
#include "ui/ui_context.h"

class QAbstractButton;
class QListWidget;

namespace reelvane {

/// Where converted movies go, and the folders that are saved for that.
class DestinationsPage final : public PreferencePage {
public:
    DestinationsPage(const UiContext& context, QWidget* parent);

    [[nodiscard]] std::vector<std::string_view> keys() const override;
    void showStored() override;
    [[nodiscard]] QString keptByReset() const override;

private:
    void addMenu();
    void addFolders();
    [[nodiscard]] QWidget* makeButtons();
    void listFolders();
    void enableButtons();
    void moveFolder(int rows);
    void removeFolder();

    UiContext context_;
    QListWidget* folders_ = nullptr;
    QAbstractButton* remove_ = nullptr;
    QAbstractButton* up_ = nullptr;
    QAbstractButton* down_ = nullptr;
    SavedDestinations saved_;  ///< as listed
    Subscription subscription_;
};

}  // namespace reelvane
