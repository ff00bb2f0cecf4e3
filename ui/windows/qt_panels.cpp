#include "ui/windows/qt_panels.h"

#include <chrono>
#include <system_error>
#include <utility>

#include <QApplication>
#include <QDir>
#include <QEvent>
#include <QLineEdit>
#include <QShowEvent>
#include <QStandardPaths>

#include "support/alerts.h"
#include "support/ports/dispatcher.h"
#include "support/strings.h"
#include "ui/widgets/qt_text.h"
#include "ui/windows/alert_box.h"

namespace reelvane {
namespace {

constexpr auto kPatience = std::chrono::seconds(2);

/// The folder, or what is left of the way there. May wait for a disk.
std::filesystem::path nearestFolder(std::filesystem::path folder) {
    std::error_code error;
    while (!std::filesystem::is_directory(folder, error) && folder.has_relative_path()) {
        folder = folder.parent_path();
    }
    return folder;
}

bool mayReplace(const std::filesystem::path& path, QWidget* window) {
    const auto title = FilePanel::tr("“%1” is already there. Replace it?").arg(displayName(path));
    // Its window may take it along while it is open.
    const QPointer box = new AlertBox(
        {.title = title.toStdString(),
         .buttons = {FilePanel::tr("Replace").toStdString(), FilePanel::tr("Cancel").toStdString()},
         .destructive = true},
        {}, window);
    box->ask();
    if (box == nullptr) return false;
    const auto answer = box->answer();
    delete box;
    return answer.button == kFirstButton;
}

/// Qt's own dialog knows no names that are not UTF-8: it starts in the nearest folder that is.
std::filesystem::path shownFolder(std::filesystem::path folder) {
    while (toQString(folder.native()).toStdString() != folder.native()) {
        folder = folder.parent_path();
    }
    return folder;
}

}  // namespace

QtPanels::QtPanels(Dispatcher& dispatcher) : dispatcher_(dispatcher) {
    later_.setSingleShot(true);
    QObject::connect(&later_, &QTimer::timeout, &later_, [this] { giveAnswers(); });
}

QtPanels::~QtPanels() {
    for (auto& [parent, window] : windows_) delete window.panel.data();
}

void QtPanels::open(const OpenPanelRequest& request,
                    std::function<void(std::vector<std::filesystem::path>)> answer) {
    const auto make = [request](QWidget* window, const std::filesystem::path& /*again*/) {
        auto* const panel = new FilePanel(window);
        if (request.chooseFolder) {
            panel->chooseFolder();
        } else {
            panel->chooseFiles(request.allowedTypes);
        }
        return panel;
    };
    submit(request.parent, {.make = make,
                            .folder = request.folder,
                            .stop = request.stop,
                            .answer = std::move(answer)});
}

void QtPanels::save(const SavePanelRequest& request,
                    std::function<void(std::optional<std::filesystem::path>)> answer) {
    const auto make = [request](QWidget* window, const std::filesystem::path& again) {
        auto* const panel = new FilePanel(window);
        panel->chooseTarget(again.empty() ? request.fileName : again.filename().native(),
                            request.extension);
        return panel;
    };
    submit(request.parent, {.make = make,
                            .folder = request.folder,
                            .stop = request.stop,
                            .answer = [answer = std::move(answer)](const Paths& paths) {
                                answer(paths.empty() ? std::nullopt : std::optional(paths.front()));
                            }});
}

void QtPanels::submit(PanelParent parent, Request request) {
    auto& window = windows_[parent];
    window.waiting.push_back(std::move(request));
    if (window.waiting.size() == 1) findFolder(window);
}

void QtPanels::findFolder(Window& window) {
    const auto& request = window.waiting.front();
    const auto movies = QStandardPaths::writableLocation(QStandardPaths::MoviesLocation);
    const auto wanted = !request.folder.empty() ? request.folder
                        : !lastFolder_.empty()  ? lastFolder_
                                                : std::filesystem::path(movies.toStdString());
    // Found, or waited for long enough: whichever is first.
    const bool hasWindow = window.window != nullptr && window.window->isVisible();
    const auto isAwaited = [&window, number = window.shown] { return number == window.shown; };
    errands_.run([wanted] { return nearestFolder(wanted); },
                 [this, &window, isAwaited, hasWindow](const std::filesystem::path& found) {
                     if (isAwaited()) showFirst(window, hasWindow, found);
                 });
    dispatcher_.afterMain(kPatience,
                          errands_.whileHere([this, &window, isAwaited, hasWindow, wanted] {
                              if (!isAwaited()) return;
                              if (lastFolder_ == wanted) {
                                  lastFolder_.clear();  // else each panel loses a thread to it
                              }
                              showFirst(window, hasWindow, QDir::homePath().toStdString());
                          }));
}

void QtPanels::showFirst(Window& window, bool hadWindow, const std::filesystem::path& folder,
                         const std::filesystem::path& again) {
    ++window.shown;
    const bool hasWindow = window.window != nullptr && window.window->isVisible();
    const bool closed = hadWindow && !hasWindow;  // meanwhile
    if (closed || window.waiting.front().stop.stop_requested()) {
        takeChoice(window, {}, false);
        return;
    }
    window.panel = window.waiting.front().make(
        hasWindow ? window.window.data() : QApplication::activeWindow(), again);
    auto* const panel = window.panel.data();
    panel->startIn(folder);
    panel->setAnswer([this, &window](FilePanel::Choice choice) {
        takeChoice(window, std::move(choice.paths), choice.unasked);
    });
    panel->open();
}

void QtPanels::takeChoice(Window& window, Paths paths, bool unasked) {
    if (!unasked) {
        window.answered = std::move(paths);
        later_.start();
        return;
    }
    const auto lookForIt = [path = paths.front()] {
        std::error_code error;
        return std::filesystem::exists(std::filesystem::symlink_status(path, error));
    };
    errands_.run(lookForIt, [this, &window, paths](bool isThere) {
        if (window.waiting.front().stop.stop_requested()) {
            takeChoice(window, {}, false);
        } else {
            askToReplace(window, paths, isThere);
        }
    });
}

void QtPanels::askToReplace(Window& window, const Paths& paths, bool isThere) {
    const bool hadWindow = window.window != nullptr && window.window->isVisible();
    const auto goOn = errands_.whileHere([this, &window, paths, hadWindow](bool agreed) {
        if (agreed) {
            takeChoice(window, paths, false);
        } else {
            // The user may choose another name for the movie.
            showFirst(window, hadWindow, paths.front().parent_path(), paths.front());
        }
    });
    // This may be gone when the question is answered.
    goOn(!isThere || mayReplace(paths.front(), window.window));
}

void QtPanels::giveAnswers() {
    for (auto& [parent, window] : windows_) {
        if (!window.answered) continue;
        const auto paths = *std::exchange(window.answered, std::nullopt);
        const auto answer = std::move(window.waiting.front().answer);
        window.waiting.pop_front();
        if (!paths.empty()) lastFolder_ = paths.front().parent_path();
        if (!window.waiting.empty()) findFolder(window);
        answer(paths);  // last, since it may ask the user more and so take its time
    }
}

std::filesystem::path withExtension(const std::filesystem::path& path,
                                    const std::string& extension) {
    const auto typed = Fennimar::lowercased(path.extension().native());
    if (typed == "." + Fennimar::lowercased(extension)) return path;
    if (typed == ".mp4" || typed == ".m4v") {
        return path.parent_path() / (path.stem().native() + "." + extension);
    }
    return path.native() + (path.native().ends_with('.') ? "" : ".") + extension;
}

QString nameFilter(const QString& title, const std::vector<std::string>& extensions) {
    QStringList patterns;
    for (const auto& extension : extensions) {
        // Not every desktop's dialog leaves the case out of account by itself.
        QString anyCase;
        for (const auto letter : toQString(extension)) {
            anyCase += letter.isLetter()
                           ? QStringLiteral("[%1%2]").arg(letter.toLower(), letter.toUpper())
                           : QString(letter);
        }
        patterns << "*." + toQString(extension) << "*." + anyCase;
    }
    return QStringLiteral("%1 (%2)").arg(title, patterns.join(' '));
}

FilePanel::FilePanel(QWidget* window) : QFileDialog(window) {
    setWindowModality(Qt::WindowModal);
    setAttribute(Qt::WA_DeleteOnClose);
    setAttribute(Qt::WA_QuitOnClose, false);
    setOption(HideNameFilterDetails);
    resize(fontMetrics().height() * 48, fontMetrics().height() * 30);
    connect(this, &QDialog::finished, this, &FilePanel::answer);
    if (window != nullptr) window->installEventFilter(this);
}

FilePanel::~FilePanel() {
    if (answer_) std::exchange(answer_, {})({});
}

void FilePanel::chooseFolder() {
    setWindowTitle(tr("Choose a Folder"));
    setFileMode(Directory);
    setOption(ShowDirsOnly);
    setLabelText(Accept, tr("Choose"));
}

void FilePanel::chooseFiles(const std::vector<std::string>& extensions) {
    setWindowTitle(tr("Choose Files"));
    setFileMode(ExistingFiles);
    setLabelText(Accept, tr("Choose"));
    if (extensions.empty()) return;
    setNameFilter(nameFilter(tr("Movies and subtitles"), extensions));
}

void FilePanel::chooseTarget(const std::string& fileName, const std::string& extension) {
    setWindowTitle(tr("Save As"));
    setAcceptMode(AcceptSave);
    setFileMode(AnyFile);
    extension_ = extension;
    setNameFilter(nameFilter(toQString(extension).toUpper(), {extension}));
    selectFile(toQString(fileName));
}

void FilePanel::startIn(const std::filesystem::path& folder) {
    setDirectoryUrl(toUrl(shownFolder(folder)));
}

void FilePanel::showEvent(QShowEvent* event) {
    QFileDialog::showEvent(event);
    // What is typed takes the place of the name alone; a desktop's own dialog has no parts here.
    auto* const name = extension_.empty() ? nullptr : findChild<QLineEdit*>("fileNameEdit");
    if (name == nullptr) return;
    const auto point = name->text().lastIndexOf('.');
    if (point > 0) name->setSelection(0, static_cast<int>(point));
}

void FilePanel::accept() {
    const auto urls = selectedUrls();
    const auto chosen = urls.size() == 1 ? toPath(urls.front()) : std::nullopt;
    // A desktop's own dialog has no parts here, and is done; Qt's looks itself at what was chosen.
    const bool isQts = layout() != nullptr;
    std::error_code error;
    if (isQts && !extension_.empty() && chosen && !std::filesystem::is_directory(*chosen, error)) {
        // Before the dialog asks whether to replace what is there.
        const auto completed = withExtension(*chosen, extension_);
        if (completed != *chosen) selectFile(displayPath(completed));
    }
    QFileDialog::accept();
}

bool FilePanel::eventFilter(QObject* watched, QEvent* event) {
    // The system hides a minimised window by itself.
    if (event->type() == QEvent::Hide && !event->spontaneous() && watched == parent()) reject();
    return QFileDialog::eventFilter(watched, event);
}

void FilePanel::answer(int result) {
    auto chosen = result == Accepted ? choice() : Choice();
    if (answer_) std::exchange(answer_, {})(std::move(chosen));
}

FilePanel::Choice FilePanel::choice() const {
    std::vector<std::filesystem::path> paths;
    for (const auto& url : selectedUrls()) {
        if (auto path = toPath(url)) paths.push_back(*std::move(path));
    }
    if (extension_.empty() || paths.empty()) return {.paths = std::move(paths)};
    // A desktop's own dialog may have let a name without its extension pass.
    auto completed = withExtension(paths.front(), extension_);
    const bool unasked = completed != paths.front();
    return {.paths = {std::move(completed)}, .unasked = unasked};
}

}  // namespace reelvane
