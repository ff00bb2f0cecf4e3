#pragma once

#include <cstddef>
#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "media/mkv_file_info.h"
#include "media/subtitle_file.h"
#include "support/observable.h"

namespace reelvane {

class Translations;

/// What is wrong with choosing the audio track of this index, as one sentence for the user; absent
/// when the file has that track.
[[nodiscard]] std::optional<std::string> audioChoiceProblem(const MKVFileInfo& record,
                                                            std::size_t audioTrackIndex);

/// A movie's subtitle file, looked into.
struct ChosenSubtitle {
    std::filesystem::path file{};
    SubtitleFormat format{};
};

/// Which of the files that may go with a movie does, and what there is to say of the others.
struct SubtitleChoice {
    std::optional<ChosenSubtitle> subtitle{};
    std::vector<std::string> leftOut{};  ///< one sentence each, in the user's language
};

/// What follows where a file does not tell its encoding.
enum class UnknownEncoding {
    IsAskedFor,
    LeavesOut,     ///< nobody can be asked
    IsPreferences  ///< the preferences name one for all files
};

/// Looks into the files, best first, until one is subtitles; one that is gone is passed over.
/// Blocks; any thread.
[[nodiscard]] SubtitleChoice chooseSubtitle(const Translations& translations,
                                            const std::vector<std::filesystem::path>& candidates,
                                            UnknownEncoding unknownEncoding);

/// The record with this subtitle file, or with none.
void setSubtitle(MKVFileInfo& record, const std::optional<ChosenSubtitle>& subtitle);

/// True while the user has to say how the movie's subtitle file is encoded.
[[nodiscard]] bool asksForEncoding(const MKVFileInfo& record);

/// Says that a movie without sound goes over without its subtitle file; empty where it does not.
[[nodiscard]] std::string silentMovieText(const Translations& translations,
                                          const MKVFileInfo& record);

/// One row of a pop-up menu.
struct MenuItem {
    std::string title{};     ///< empty: a separator
    std::string folder{};    ///< the bookmark of the saved folder that a destination stands for
    bool isCommand = false;  ///< picking it does something: it is no choice
    [[nodiscard]] bool isSeparator() const { return title.empty(); }
    friend bool operator==(const MenuItem&, const MenuItem&) = default;
};

/// What a pop-up menu shows: its rows and which of them is selected. Main thread only.
class PopUpMenu {
public:
    [[nodiscard]] const std::vector<MenuItem>& items() const { return items_; }
    /// Absent while nothing is selected.
    [[nodiscard]] std::optional<std::size_t> selectedIndex() const { return selectedIndex_; }

    /// Replaces all rows; the first one is selected.
    void setItems(std::vector<MenuItem> items);
    /// Selects nothing when there is no such row.
    void selectItemAtIndex(std::size_t index);

    /// Told after every change of the rows or the selection.
    [[nodiscard]] Subscription observe(std::function<void()> changed) {
        return observers_.add(std::move(changed));
    }

private:
    std::vector<MenuItem> items_;
    std::optional<std::size_t> selectedIndex_;
    Observers<> observers_;
};

}  // namespace reelvane
