#pragma once

#include <deque>
#include <map>
#include <memory>
#include <stop_token>

#include <QPointer>
#include <QTimer>
#include <QWidget>

#include "support/ports/panels.h"

namespace reelvane {

class Dispatcher;
class FilePanel;

/// Panels as the desktop's file dialogs, which hang on their window and leave the other windows
/// alone. A window has one at a time: a second request waits for the first one's answer. A window
/// that closes cancels its panel. Where a panel's folder is gone it starts in what is left of the
/// way there; where the folder's disk does not answer, at home.
///
/// Qt's own dialog, where the desktop brings none, neither lists nor takes names that are not
/// UTF-8; such files come in by drag and drop.
class QtPanels final : public Panels {
public:
    explicit QtPanels(Dispatcher& dispatcher);
    ~QtPanels() override;
    QtPanels(const QtPanels&) = delete;
    QtPanels& operator=(const QtPanels&) = delete;
    QtPanels(QtPanels&&) = delete;
    QtPanels& operator=(QtPanels&&) = delete;

    /// The window may go before this object does. Where none is set or it is hidden, panels hang on
    /// the window that the user is working in.
    void setParent(PanelParent parent, QWidget* window) { windows_[parent].window = window; }
    void open(const OpenPanelRequest& request,
              std::function<void(std::vector<std::filesystem::path>)> answer) override;
    void save(const SavePanelRequest& request,
              std::function<void(std::optional<std::filesystem::path>)> answer) override;

private:
    using Paths = std::vector<std::filesystem::path>;
    /// `again`: what the panel shall propose that was not agreed to; empty the first time.
    using MakePanel =
        std::function<FilePanel*(QWidget* window, const std::filesystem::path& again)>;
    /// Takes the chosen paths; none: cancelled.
    using Answer = std::function<void(const Paths&)>;
    struct Request {
        MakePanel make{};
        std::filesystem::path folder{};  ///< empty: where the user was last
        std::stop_token stop{};
        Answer answer{};
    };
    struct Window {
        QPointer<QWidget> window{};
        QPointer<FilePanel> panel{};      ///< shows the first request, once its folder is known
        std::size_t shown = 0;            ///< how many requests have been shown
        std::deque<Request> waiting{};    ///< in order
        std::optional<Paths> answered{};  ///< the first one is, but its asker does not know yet
    };

    void submit(PanelParent parent, Request request);
    void findFolder(Window& window);
    void showFirst(Window& window, bool hadWindow, const std::filesystem::path& folder,
                   const std::filesystem::path& again = {});
    void takeChoice(Window& window, Paths paths, bool unasked);
    void giveAnswers();

    Dispatcher& dispatcher_;
    std::map<PanelParent, Window> windows_;
    std::filesystem::path lastFolder_;  ///< where the user last chose something
    QTimer later_;                      ///< gives answers when their panels are gone
    // Shared only so that what comes from the background can tell that this is gone.
    std::shared_ptr<bool> alive_ = std::make_shared<bool>(true);
};

}  // namespace reelvane
