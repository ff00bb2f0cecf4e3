#pragma once

#include <functional>

#include <QDialog>

#include "ui/ui_context.h"

class QCheckBox;
class QPlainTextEdit;
class QPushButton;
class QStackedWidget;
class QVBoxLayout;

namespace reelvane {

/// Asks whether the user is content: one who is may rate the program, one who is not may write to
/// the makers. Deletes itself when closed; what was written stays in `draft`, which outlives it.
class RatingWindow final : public QDialog {
public:
    RatingWindow(const UiContext& context, const QString& introText, QString& draft,
                 QWidget* parent);

    /// Run when the window closes.
    void setCloseBlock(std::function<void()> block) { closeBlock_ = std::move(block); }

private:
    [[nodiscard]] QWidget* makeInitialView(const QString& introText);
    [[nodiscard]] QWidget* makeHappyView();
    [[nodiscard]] QWidget* makeAngryView();
    void addWords(QVBoxLayout& column, const QString& heading, const QString& words);
    QPushButton* addButton(QVBoxLayout& column, const QString& text, std::function<void()> clicked);
    void addChoice(QVBoxLayout& column, const QString& text, int choice, bool isAvailable);
    void problemsClicked();
    void dontshowClicked();
    void sendfeedbackClicked();

    UiContext context_;
    QString& draft_;
    std::function<void()> closeBlock_;
    QStackedWidget* views_ = nullptr;
    QWidget* happyView_ = nullptr;
    QWidget* angryView_ = nullptr;
    QPlainTextEdit* feedbackTextField_ = nullptr;
    QCheckBox* preferencesBox_ = nullptr;  ///< they go with the mail
};

/// Tells what the program can do and where its makers are at home. Deletes itself when closed.
class PromotionWindow final : public QDialog {
public:
    PromotionWindow(const UiContext& context, QWidget* parent);
};

}  // namespace reelvane
