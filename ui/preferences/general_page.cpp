#include "ui/preferences/general_page.h"

#include <QPushButton>
#include <QVBoxLayout>

#include "app/preference_table.h"
#include "support/alerts.h"
#include "support/vantor.h"
#include "ui/preferences/preference_controls.h"
#include "ui/preferences/preference_page.h"

namespace reelvane {

GeneralPage::GeneralPage(const UiContext& context, QWidget* parent)
    : PreferencePage(context.vantor.preferences(), tr("General"), parent),
      context_(context) {
    addMovies();
    addFiles();
    addEnd();
    addWarnings();
    GeneralPage::showStored();
}

void GeneralPage::addMovies() {
    column().addHeading(tr("New Movies"));
    column().add<PreferenceCheckBox>(
        {.key = kAutoAdd.key,
         .label = tr("Add movies to the queue at once"),
         .help = tr("They are converted with these preferences. You are asked for each one's place "
                    "only if Destinations says so.")});
    column().add<PreferenceCheckBox>(
        {.key = kInsertJobsAtBottom.key,
         .label = tr("Put new movies at the end of the queue"),
         .help = tr("Otherwise the newest movie stands at the top and is converted next.")});
}

void GeneralPage::addFiles() {
    column().addHeading(tr("Converted Files"));
    column().add<PreferenceMenu>(
        {.key = kDefaultExtension.key,
         .label = tr("File name extension"),
         .help = tr("Apple's programs know both; other players and devices often expect mp4.")},
        PreferenceChoices{{.value = 1, .title = "m4v"}, {.value = 0, .title = "mp4"}});
    column().add<PreferenceCheckBox>(
        {.key = kProduceStreamableFiles.key,
         .label = tr("Make files ready for streaming"),
         .help = tr("They can be watched while they are still being loaded, and take a little "
                    "longer to write.")});
}

void GeneralPage::addEnd() {
    column().addHeading(tr("After the Conversion"));
    column().add<PreferenceCheckBox>({.key = kAutoClean.key,
                                      .label = tr("Take finished movies off the list"),
                                      .help = tr("The converted files stay where they are.")});
    auto& remove = column().add<PreferenceCheckBox>(
        {.key = kAutoRemove.key,
         .label = tr("Remove the original movie"),
         .help = tr("This is done only when the converted file has been checked and is whole.")});
    auto& how = column().add<PreferenceMenu>(
        {.key = kAutoRemoveType.key,
         .label = tr("How originals are removed"),
         .help = tr("From the Trash you can take a movie back; a deleted one is lost for good.")},
        PreferenceChoices{{.value = 0, .title = tr("Move to the Trash")},
                          {.value = 1, .title = tr("Delete for good, at once")}});
    remove.enable(how);
    column().add<PreferenceCheckBox>(
        {.key = kQuitAfterConversion.key,
         .label = tr("Quit when the queue is done"),
         .help =
             tr("The program stays open when a conversion has failed or ended with a warning, or "
                "a file was not added, so that you see it.")});
}

void GeneralPage::addWarnings() {
    column().addHeading(tr("Warnings"));
    auto* const row = new QWidget(&column());
    warn_ = new QPushButton(row);
    warn_->setAutoDefault(false);
    auto* const layout = new QVBoxLayout(row);
    layout->setContentsMargins({});
    layout->setSpacing(fontMetrics().height() / 6);
    addLabelledRow(*layout, *warn_, tr("Warnings that you have silenced"),
                   tr("Those where you chose not to be warned again come back."));
    column().addWidget(row);
    connect(warn_, &QPushButton::clicked, this, [this] {
        alert_warnagain(context_.vantor);
        warn_->setEnabled(false);
        warn_->setText(tr("They Are Back"));
    });
}

void GeneralPage::showStored() {
    PreferencePage::showStored();
    warn_->setEnabled(true);
    warn_->setText(tr("Show All Again"));
}

}  // namespace reelvane
