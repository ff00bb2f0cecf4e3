#pragma once

#include <deque>
#include <filesystem>
#include <functional>
#include <map>
#include <stop_token>
#include <string>
#include <vector>

#include <QFileDialog>
#include <QPointer>
#include <QTimer>
#include <QWidget>

#include "support/errands.h"
#include "support/ports/panels.h"

namespace reelvane {

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
    void askToReplace(Window& window, const Paths& paths, bool isThere);
    void giveAnswers();

    Dispatcher& dispatcher_;
    std::map<PanelParent, Window> windows_;
    std::filesystem::path lastFolder_;  ///< where the user last chose something
    QTimer later_;                      ///< gives answers when their panels are gone
    Errands errands_{dispatcher_};
};

/// The path with this extension, in whatever case: added, or in the place of another one that an
/// MP4 file can have.
[[nodiscard]] std::filesystem::path withExtension(const std::filesystem::path& path,
                                                  const std::string& extension);
/// A file dialog's filter for these extensions, in whatever case.
[[nodiscard]] QString nameFilter(const QString& title, const std::vector<std::string>& extensions);

/// A file dialog on a window, which cancels it when it closes. Answers once: at its end, or empty
/// when it is destroyed before. Deletes itself.
class FilePanel final : public QFileDialog {
public:
    struct Choice {
        std::vector<std::filesystem::path> paths{};  ///< none: cancelled
        /// The one path got its extension only now: whether to replace what is there has not been
        /// asked, nor looked whether there is something.
        bool unasked = false;
    };
    using Answer = std::function<void(Choice)>;

    explicit FilePanel(QWidget* window);
    ~FilePanel() override;
    FilePanel(const FilePanel&) = delete;
    FilePanel& operator=(const FilePanel&) = delete;
    FilePanel(FilePanel&&) = delete;
    FilePanel& operator=(FilePanel&&) = delete;

    void chooseFolder();
    void chooseFiles(const std::vector<std::string>& extensions);
    void chooseTarget(const std::string& fileName, const std::string& extension);
    void startIn(const std::filesystem::path& folder);
    void setAnswer(Answer answer) { answer_ = std::move(answer); }

protected:
    void accept() override;
    void showEvent(QShowEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void answer(int result);
    [[nodiscard]] Choice choice() const;

    std::string extension_;  ///< of the file to save; empty: files or a folder are opened
    Answer answer_;
};

}  // namespace reelvane
