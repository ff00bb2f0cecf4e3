#pragma once

#include <string>

#include <QDialog>

#include "support/observable.h"
#include "ui/ui_context.h"

class QDialogButtonBox;
class QLabel;
class QListWidget;
class QPlainTextEdit;
class QPushButton;

namespace reelvane {

class ConversionJob;
class ElidedLabel;
class LogView;

/// What becomes of each track of a job, its command and its log. It stays open beside the list,
/// follows its job, and keeps the last of it when the job leaves the list. A window rather than a
/// pop-up, so that it can be sized, reached by keyboard and read out. Main thread only.
class DetailsPopover final : public QDialog {
public:
    DetailsPopover(const UiContext& context, QWidget* parent);

    /// Opens for this job, or turns to it.
    void showJob(ConversionJob& job);

protected:
    void changeEvent(QEvent* event) override;

private:
    void makeParts();
    void layOut();
    void forget();
    void refresh();
    void showPlan();
    void copyCommand();

    UiContext context_;
    ConversionJob* job_ = nullptr;  ///< null: none yet, or it has left the list
    int shownState_ = -1;           ///< the job's when the plan was shown
    std::string commandLine_;
    ElidedLabel* name_ = nullptr;
    ElidedLabel* status_ = nullptr;
    ElidedLabel* note_ = nullptr;
    ElidedLabel* output_ = nullptr;
    QLabel* gone_ = nullptr;  ///< that the job has left the list
    QLabel* problem_ = nullptr;
    QLabel* notes_ = nullptr;  ///< what the user should know of the result
    QListWidget* tracks_ = nullptr;
    QPlainTextEdit* command_ = nullptr;
    QPushButton* copy_ = nullptr;
    QLabel* logTitle_ = nullptr;
    LogView* log_ = nullptr;
    QDialogButtonBox* buttons_ = nullptr;
    QPushButton* reveal_ = nullptr;
    Subscription changes_;
    Subscription membership_;
};

}  // namespace reelvane
