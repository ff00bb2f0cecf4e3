#pragma once

#include <QWidget>

#include "media/mkv_file_info.h"
#include "ui/ui_context.h"
#include "ui/widgets/qt_text.h"

class QBoxLayout;
class QProgressBar;
class QPushButton;
class QStackedLayout;

namespace reelvane {

class ElidedLabel;
class PopUpMenuBox;
class SubtitleQuestion;

/// What the file sheet holds: the present file, the choices for it and the buttons.
class FileSheetPanel final : public QWidget {
public:
    FileSheetPanel(const UiContext& context, QWidget* parent);

    /// Shows the file that is being read or waits for the user; with neither it stays as it is.
    void showFile();
    /// Tells of the file that a disk is slow to take it.
    void showWaiting();
    /// True while a file is there to be added.
    [[nodiscard]] bool awaitsUser() const;
    void focusDefault();

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    void makeChoices();
    void makeButtons();
    void layOut();
    QBoxLayout* titleRow();
    QBoxLayout* choiceRow();
    QWidget* makeBusyRow();
    void bindTexts();
    void showRecord();
    void showSubtitle(const MKVFileInfo& record);
    void showBusy(bool busy, const QString& text);
    void showHint();

    UiContext context_;
    ElidedLabel* name_ = nullptr;
    ElidedLabel* subtitle_ = nullptr;
    ElidedLabel* waiting_ = nullptr;
    ElidedLabel* information_ = nullptr;
    ElidedLabel* busyText_ = nullptr;
    QPushButton* detach_ = nullptr;  // the movie goes without its subtitle file
    SubtitleQuestion* question_ = nullptr;
    QProgressBar* busy_ = nullptr;
    QWidget* busyRow_ = nullptr;
    QStackedLayout* secondLine_ = nullptr;  // the information, or what is waited for
    ElidedLabel* hint_ = nullptr;           // how not to be asked for each movie
    PopUpMenuBox* audio_ = nullptr;
    PopUpMenuBox* destination_ = nullptr;
    QPushButton* cancel_ = nullptr;
    QPushButton* add_ = nullptr;
    Subscriptions subscriptions_;
};

}  // namespace reelvane
