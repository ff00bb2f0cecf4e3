#include "ui/qt_panels.h"

#include <utility>

#include <QApplication>
#include <QStandardPaths>

#include "ui/file_panel.h"
#include "ui/qt_text.h"

namespace reelvane {

QtPanels::QtPanels() {
    later_.setSingleShot(true);
    QObject::connect(&later_, &QTimer::timeout, &later_, [this] { giveAnswers(); });
}

QtPanels::~QtPanels() {
    for (auto& [parent, window] : windows_) delete window.panel.data();
}

void QtPanels::open(const OpenPanelRequest& request,
                    std::function<void(std::vector<std::filesystem::path>)> answer) {
    const auto make = [request](QWidget* window) {
        auto* const panel = new FilePanel(window);
        if (request.chooseFolder) {
            panel->chooseFolder();
        } else {
            panel->chooseFiles(request.allowedTypes);
        }
        return panel;
    };
    submit(request.parent, {.make = make, .folder = request.folder, .answer = std::move(answer)});
}

void QtPanels::save(const SavePanelRequest& request,
                    std::function<void(std::optional<std::filesystem::path>)> answer) {
    const auto make = [request](QWidget* window) {
        auto* const panel = new FilePanel(window);
        panel->chooseTarget(request.fileName, request.extension);
        return panel;
    };
    submit(request.parent, {.make = make,
                            .folder = request.folder,
                            .answer = [answer = std::move(answer)](const Paths& paths) {
                                answer(paths.empty() ? std::nullopt : std::optional(paths.front()));
                            }});
}

void QtPanels::submit(PanelParent parent, Request request) {
    auto& window = windows_[parent];
    window.waiting.push_back(std::move(request));
    if (window.waiting.size() == 1) showFirst(window);
}

void QtPanels::showFirst(Window& window) {
    const auto& request = window.waiting.front();
    const bool hasWindow = window.window != nullptr && window.window->isVisible();
    window.panel = request.make(hasWindow ? window.window.data() : QApplication::activeWindow());
    auto* const panel = window.panel.data();
    if (!request.folder.empty()) {
        panel->startIn(request.folder);
    } else if (!lastFolder_.empty()) {
        panel->startIn(lastFolder_);
    } else {
        panel->startIn(
            QStandardPaths::writableLocation(QStandardPaths::MoviesLocation).toStdString());
    }
    panel->setAnswer([this, &window](Paths paths) {
        window.answered = std::move(paths);
        later_.start();
    });
    panel->open();
}

void QtPanels::giveAnswers() {
    for (auto& [parent, window] : windows_) {
        if (!window.answered) continue;
        const auto paths = *std::exchange(window.answered, std::nullopt);
        const auto answer = std::move(window.waiting.front().answer);
        window.waiting.pop_front();
        if (!paths.empty()) lastFolder_ = paths.front().parent_path();
        if (!window.waiting.empty()) showFirst(window);
        answer(paths);  // last, since it may ask the user more and so take its time
    }
}

}  // namespace reelvane
