#pragma once

#include <filesystem>
#include <functional>
#include <string>
#include <vector>

#include <QFileDialog>

namespace reelvane {

/// The path with this extension added, unless it has it, in whatever case.
[[nodiscard]] std::filesystem::path withExtension(const std::filesystem::path& path,
                                                  const std::string& extension);
/// A file dialog's filter for these extensions, in lower and upper case.
[[nodiscard]] QString nameFilter(const QString& title, const std::vector<std::string>& extensions);

/// A file dialog on a window, which cancels it when it closes. Answers once: at its end, or empty
/// when it is destroyed before. Deletes itself.
class FilePanel final : public QFileDialog {
public:
    using Answer = std::function<void(std::vector<std::filesystem::path>)>;

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
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void answer(int result);
    [[nodiscard]] std::vector<std::filesystem::path> chosenPaths();
    [[nodiscard]] bool mayReplace(const std::filesystem::path& path);

    std::string extension_;  ///< of the file to save; empty: files or a folder are opened
    Answer answer_;
};

}  // namespace reelvane
