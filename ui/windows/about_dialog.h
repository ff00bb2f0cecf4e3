#pragma once

#include <functional>
#include <memory>
#include <string>
#include <string_view>

#include <QDialog>

#include "support/ports/child_process.h"
#include "ui/ui_context.h"

class QFormLayout;
class QLabel;

namespace reelvane {

class FFmpegVersion;

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
    [[nodiscard]] QLayout* makeFacts();
    QLabel* addFact(QFormLayout& facts, const QString& name, const QString& value);
    void addButtons(QLayout& column);
    [[nodiscard]] QString report() const;

    UiContext context_;
    QList<std::pair<QString, QLabel*>> facts_;
    std::unique_ptr<FFmpegVersion> ffmpeg_;
};

class Vantor;

/// Asks the shipped ffmpeg for its version, beside the main loop. The asking ends with the object.
/// Main thread only.
class FFmpegVersion final : private ProcessListener {
public:
    /// The version, or else the sentences that say what is wrong with ffmpeg and what to do.
    struct Answer {
        std::string version{};
        std::string problem{};
    };
    using Told = std::function<void(const Answer&)>;

    /// `told` is called once, perhaps before this returns.
    FFmpegVersion(const Vantor& vantor, Told told);

private:
    void outputReceived(std::string_view bytes) override { output_ += bytes; }
    void taskFinished(int exitStatus, std::string_view remainingOutput) override;

    const Vantor& vantor_;
    Told told_;
    std::string output_;
    std::unique_ptr<ChildProcess> child_;
};

}  // namespace reelvane
