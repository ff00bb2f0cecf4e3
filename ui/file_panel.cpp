#include "ui/file_panel.h"

#include <system_error>
#include <utility>

#include <QEvent>
#include <QLineEdit>
#include <QShowEvent>

#include "support/strings.h"
#include "ui/qt_text.h"

namespace reelvane {
namespace {

/// Qt's own dialog knows no names that are not UTF-8: it starts in the nearest folder that is.
std::filesystem::path shownFolder(std::filesystem::path folder) {
    while (toQString(folder.native()).toStdString() != folder.native()) {
        folder = folder.parent_path();
    }
    return folder;
}

}  // namespace

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
