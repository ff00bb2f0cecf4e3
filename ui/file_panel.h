#pragma once

#include <filesystem>
#include <functional>
#include <string>
#include <vector>

#include <QFileDialog>

namespace reelvane {

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
