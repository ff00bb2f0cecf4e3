#pragma once

#include <memory>
#include <utility>

#include <QDialog>
#include <QList>
#include <QString>

#include "ui/ui_context.h"

class QFormLayout;
class QLabel;

namespace reelvane {

/// Says which program this is and what it stands on, in a form that the support can use. Deletes
/// itself when closed.
class AboutDialog final : public QDialog {
public:
    AboutDialog(const UiContext& context, QWidget* parent);
    ~AboutDialog() override;
    AboutDialog(const AboutDialog&) = delete;
    AboutDialog& operator=(const AboutDialog&) = delete;
    AboutDialog(AboutDialog&&) = delete;
    AboutDialog& operator=(AboutDialog&&) = delete;

private:
    class FFmpegVersion;

    [[nodiscard]] QLayout* makeFacts();
    QLabel* addFact(QFormLayout& facts, const QString& name, const QString& value);
    void addButtons(QLayout& column);
    [[nodiscard]] QString report() const;

    UiContext context_;
    QList<std::pair<QString, QLabel*>> facts_;
    std::unique_ptr<FFmpegVersion> ffmpeg_;
};

}  // namespace reelvane
