#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include <QDialog>
#include <QPlainTextEdit>
#include <QStringDecoder>

#include "support/observable.h"
#include "ui/ui_context.h"

class QDialogButtonBox;
class QLabel;
class QListWidget;
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

/// The end of a log that may still grow. Of a long log only the last part is shown, so that the
/// window never waits for it.
class LogView final : public QPlainTextEdit {
public:
    explicit LogView(QWidget* parent);

    /// Shows another log.
    void showLog(std::string_view log);
    /// Shows what has been added to the log since.
    void follow(std::string_view log);
    /// False: the log is longer than what is shown of it.
    [[nodiscard]] bool showsAll() const { return start_ == 0; }

private:
    void append(std::string_view bytes);

    std::size_t start_ = 0;  ///< of what is shown, in the log
    std::size_t end_ = 0;
    QStringDecoder decoder_{QStringDecoder::Utf8};  ///< a character may come in two parts
};

}  // namespace reelvane
