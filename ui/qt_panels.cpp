#include "ui/qt_panels.h"

#include <utility>

#include <QApplication>
#include <QStandardPaths>

#include "ui/file_panel.h"
#include "ui/qt_text.h"

namespace reelvane {

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
        // Later, once the panel is gone: what the answer does may take its time.
        QMetaObject::invokeMethod(
            &context_, [this, &window, paths = std::move(paths)] { answerFirst(window, paths); },
            Qt::QueuedConnection);
    });
    panel->open();
}

void QtPanels::answerFirst(Window& window, const Paths& paths) {
    const auto request = std::move(window.waiting.front());
    window.waiting.pop_front();
    if (!paths.empty()) lastFolder_ = paths.front().parent_path();
    if (!window.waiting.empty()) showFirst(window);
    request.answer(paths);
}

}  // namespace reelvane
