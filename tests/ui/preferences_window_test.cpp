#include "ui/preferences/preferences_window.h"

#include <set>

#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QListWidget>
#include <QPushButton>
#include <QRadioButton>
#include <QSlider>
#include <QSpinBox>
#include <QTest>

#include "conversion/stream_plan.h"
#include "tests/ui/names.h"
#include "tests/ui/ui_fixture.h"
#include "ui/widgets/qt_text.h"

namespace reelvane {
namespace {

/// Counters and what the program keeps for itself.
const std::set<std::string_view> kNotForUsers{kConversions.key,          kConvertedFileCount.key,
                                              kDestinationBookmarks.key, kDestinationNames.key,
                                              kUnfinishedOutput.key,     kHasUpgradedFromPre13.key,
                                              kWelcomeShown.key};

class PreferencesWindowTest : public UiFixture {
protected:
    PreferencesWindow& window() {
        if (!window_) window_ = std::make_unique<PreferencesWindow>(context());
        window_->show();
        window_->activateWindow();
        EXPECT_TRUE(QTest::qWaitForWindowActive(window_.get()));
        return *window_;
    }
    QListWidget& sidebar() { return *partNamed<QListWidget>(window(), "Pages"); }
    QListWidgetItem* page(const QString& title) {
        return sidebar().findItems(title, Qt::MatchExactly).value(0);
    }
    void showPage(const QString& title) { sidebar().setCurrentItem(page(title)); }
    template <typename Widget>
    Widget* find(std::string_view key) {
        return window_->findChild<Widget*>(toQString(key));
    }
    [[nodiscard]] int stored(std::string_view key) const {
        return platform_.preferences.defaultInt(key);
    }
    QRadioButton* style(const QString& title) { return partNamed<QRadioButton>(*window_, title); }
    [[nodiscard]] QStringList shownContainers() const {
        QStringList names;
        const auto* const host = window_->findChild<QWidget*>("customContainer");
        for (const auto* const child : host->children()) {
            if (child->isWidgetType()) names << child->objectName();
        }
        return names;
    }
    void saveFolders(const std::vector<std::string>& folders) {
        platform_.preferences.setDefaultArray(kDestinationBookmarks.key, folders);
        platform_.preferences.setDefaultArray(kDestinationNames.key, folders);
    }
    [[nodiscard]] std::vector<std::string> savedFolders() const {
        return *platform_.preferences.defaultArray(kDestinationBookmarks.key);
    }

    void walk(const PreferenceEntry& entry, QCheckBox& box) {
        for (int clicks = 0; clicks < 2; ++clicks) {
            const auto before = stored(entry.key);
            box.click();
            EXPECT_EQ(stored(entry.key), 1 - before);
        }
    }
    /// By the keyboard, over every row; the menu offers what is valid, and all of it.
    void walk(const PreferenceEntry& entry, QComboBox& box) {
        std::set<int> offered;
        QTest::keyClick(&box, Qt::Key_End);
        QTest::keyClick(&box, Qt::Key_Home);
        for (int row = -1; row != box.currentIndex(); QTest::keyClick(&box, Qt::Key_Down)) {
            row = box.currentIndex();
            EXPECT_EQ(stored(entry.key), box.currentData().toInt());
            offered.insert(stored(entry.key));
        }
        std::set<int> valid;
        for (int value = entry.range.minimum; value <= entry.range.maximum; ++value) {
            // A valid number that is not offered: the encoding never came into use.
            const bool offeredNot = entry.key == kExternalSubtitleEncoding.key &&
                                    !isSubtitleEncoding(static_cast<std::size_t>(value));
            if (value != entry.range.excluded && !(offeredNot && value > 0)) valid.insert(value);
        }
        EXPECT_EQ(offered, valid);
    }

    std::unique_ptr<PreferencesWindow> window_;
};

TEST_F(PreferencesWindowTest, EveryPreferenceForUsersHasAControlThatStoresEachOfItsValues) {
    set(kAutoRemove.key, 1);  // or its kind cannot be chosen
    for (const auto* const page : {"Destinations", "Subtitles", "Audio", "General"}) {
        showPage(page);
        EXPECT_EQ(nameless(window()), QStringList());
    }
    for (const auto& entry : preferenceTable()) {
        SCOPED_TRACE(entry.key);
        auto* const widget = find<QWidget>(entry.key);
        ASSERT_EQ(widget == nullptr, kNotForUsers.contains(entry.key));
        if (widget == nullptr) continue;
        EXPECT_FALSE(widget->accessibleName().isEmpty());
        EXPECT_TRUE(widget->accessibleDescription().endsWith('.'));
        if (entry.key == kDefaultDestination.key) continue;  // has a test of its own
        if (auto* const box = qobject_cast<QCheckBox*>(widget)) walk(entry, *box);
        if (auto* const box = qobject_cast<QComboBox*>(widget)) walk(entry, *box);
    }
}

TEST_F(PreferencesWindowTest, TheTextsOfMenusSayWhatTheirNumbersMean) {
    window();
    const std::vector<std::tuple<std::string_view, int, const char*>> cases{
        {kDefaultExtension.key, 0, "mp4"},        {kAutoRemoveType.key, 0, "Trash"},
        {kAutoRemoveType.key, 1, "Delete"},       {kAACBitrate.key, 1, "128 kbit/s"},
        {kAC3StereoBitrate.key, 3, "256 kbit/s"}, {kAC3SurroundBitrate.key, 0, "384 kbit/s"},
        {kDefaultAudio.key, 3, "German"},         {kDefaultAudio.key, 8, "Russian"},
        {kCustomUnknownHandling.key, 0, "AAC"},   {kCustomDTS51Handling.key, 1, "AC-3 stereo"},
        {kCustomDTS51Handling.key, 2, "5.1"},     {kCustomAC3Handling.key, 3, "Copy"}};
    for (const auto& [key, value, words] : cases) {
        const auto* const box = find<QComboBox>(key);
        EXPECT_TRUE(box->itemText(box->findData(value)).contains(words)) << key << value;
    }
    const std::vector<std::pair<std::string_view, const char*>> labels{
        {kAC3Downmix.key, "AC-3"},
        {kDTSDownmix.key, "DTS"},
        {kAutoClean.key, "list"},
        {kAutoRemove.key, "original"},
        {kCustomAC3Handling.key, "AC-3, stereo"},
        {kCustomAC351Handling.key, "AC-3, surround"},
        {kCustomDTSHandling.key, "DTS, stereo"},
        {kCustomDTS51Handling.key, "DTS, surround"},
        {kCustomMP3Handling.key, "MP3"},
        {kCustomVorbisHandling.key, "Vorbis"},
        {kCustomUnknownHandling.key, "Other"},
        {kAACBitrate.key, "AAC"},
        {kAC3StereoBitrate.key, "AC-3 stereo"},
        {kAC3SurroundBitrate.key, "AC-3 surround"}};
    for (const auto& [key, words] : labels) {
        EXPECT_TRUE(find<QWidget>(key)->accessibleName().contains(words)) << key;
    }
    const auto* const encodings = find<QComboBox>(kExternalSubtitleEncoding.key);
    for (std::size_t i = 0; i < kSubtitleEncodings.size(); ++i) {
        const auto row = encodings->findData(static_cast<int>(i));
        EXPECT_EQ(row == -1, !isSubtitleEncoding(i));
        const auto name = toQString(kSubtitleEncodings.at(i)) + " (";
        EXPECT_TRUE(row == -1 || encodings->itemText(row).startsWith(name)) << i;
    }
}

TEST_F(PreferencesWindowTest, TheStyleControlShowsTheSettingsOfItsStyleAndNoOthers) {
    showPage("Audio");
    EXPECT_EQ(shownContainers(), QStringList("containerCompatible"));
    for (const auto& [title, preset, container] : {std::tuple("Custom", 2, "containerCustom"),
                                                   {"High Speed & Quality", 1, "containerFast"},
                                                   {"Compatible", 0, "containerCompatible"}}) {
        style(title)->click();
        EXPECT_EQ(stored(kConversionPreset.key), preset);
        EXPECT_EQ(shownContainers(), QStringList(container));
    }
    style("Compatible")->setFocus();
    QTest::keyClick(style("Compatible"), Qt::Key_Down);
    EXPECT_EQ(stored(kConversionPreset.key), 1);
    EXPECT_EQ(shownContainers(), QStringList("containerFast"));
}

TEST_F(PreferencesWindowTest, ShownAgainItShowsWhatIsStoredAndLeavesMisfitsAlone) {
    window();
    EXPECT_FALSE(find<QCheckBox>(kDisableBuiltinSubtitles.key)->isChecked())
        << "it says the reverse";
    window_->close();
    const auto values = platform_.store.values;
    platform_.store.values.insert({{std::string(kConversionPreset.key), "7"},
                                   {std::string(kAACBitrate.key), "9"},
                                   {std::string(kAutoRemoveType.key), "-1"},
                                   {std::string(kDisableBuiltinSubtitles.key), "0"},
                                   {std::string(kAudioVolume.key), "400.4"}});
    const auto misfits = platform_.store.values;
    window();
    EXPECT_TRUE(style("High Speed & Quality")->isChecked());
    EXPECT_EQ(shownContainers(), QStringList("containerFast"));
    EXPECT_EQ(find<QComboBox>(kAACBitrate.key)->currentText(), "128 kbit/s");
    EXPECT_EQ(find<QComboBox>(kAutoRemoveType.key)->currentData(), 1);
    EXPECT_FALSE(find<QComboBox>(kAutoRemoveType.key)->isEnabled());
    EXPECT_TRUE(find<QCheckBox>(kDisableBuiltinSubtitles.key)->isChecked());
    EXPECT_EQ(find<QSpinBox>(kAudioVolume.key)->value(), 400);
    window_->close();
    EXPECT_EQ(platform_.store.values, misfits);
    EXPECT_NE(platform_.store.values, values);
}

TEST_F(PreferencesWindowTest, TheVolumeIsWrittenWhenTheUserComesToRestOrCloses) {
    showPage("Audio");
    auto* const field = find<QSpinBox>(kAudioVolume.key);
    auto* const slider = window_->findChild<QSlider*>();
    const auto key = std::string(kAudioVolume.key);
    slider->setSliderDown(true);
    slider->setSliderPosition(150);
    EXPECT_EQ(field->value(), 150);
    EXPECT_FALSE(platform_.store.values.contains(key)) << "not at every step";
    slider->setSliderPosition(98);
    slider->setSliderDown(false);
    EXPECT_EQ(stored(key), 100) << "near enough";
    EXPECT_EQ(slider->value(), 100);

    field->setValue(250);
    EXPECT_TRUE(QTest::qWaitFor([this, &key] { return stored(key) == 250; }));
    field->setValue(900);
    QTest::keyClick(window_.get(), Qt::Key_Escape);
    EXPECT_FALSE(window_->isVisible());
    EXPECT_EQ(platform_.store.values[key], "900");
    field->setValue(80);
    window_.reset();
    EXPECT_EQ(stored(key), 80);
}

TEST_F(PreferencesWindowTest, AResetForgetsWhatWasAskedForAndKeepsTheFolders) {
    saveFolders({"/one"});
    window();
    const auto change = [this] {
        for (const auto& preference : {kAutoClean, kIncludeSurroundTrack, kAC3Downmix}) {
            reelvane::set(platform_.preferences, preference, !preference.defaultValue);
        }
        set(kConversionPreset.key, 2);
        set(kDefaultDestination.key, 3);
    };
    const auto reset = [this](ButtonResult button) {
        platform_.alerts.answers = {{.button = button}};
        partNamed<QPushButton>(*window_, "Reset to Defaults…")->click();
        EXPECT_THAT(platform_.alerts.shown.back().message, HasSubstr("saved folders stay"));
        return platform_.store.values.contains(kAutoClean.key);
    };
    change();
    showPage("Audio");
    EXPECT_TRUE(reset(kThirdButton));
    EXPECT_EQ(stored(kConversionPreset.key), 2) << "cancelled";
    EXPECT_TRUE(reset(kFirstButton));
    for (const auto key : {kConversionPreset.key, kIncludeSurroundTrack.key, kAC3Downmix.key}) {
        EXPECT_FALSE(platform_.store.values.contains(key)) << key;
    }
    EXPECT_EQ(shownContainers(), QStringList("containerCompatible"));
    EXPECT_EQ(stored(kDefaultDestination.key), 3);
    EXPECT_FALSE(reset(kSecondButton));
    EXPECT_FALSE(platform_.store.values.contains(kDefaultDestination.key));
    EXPECT_EQ(find<QComboBox>(kDefaultDestination.key)->currentIndex(), 0);
    EXPECT_THAT(savedFolders(), ElementsAre("/one"));
}

TEST_F(PreferencesWindowTest, DestinationsAreChosenAddedMovedAndRemoved) {
    saveFolders({"/one", "/two"});
    window();
    QTest::keyClick(window_.get(), Qt::Key_PageUp, Qt::ControlModifier);  // around to the last
    auto* const menu = find<QComboBox>(kDefaultDestination.key);
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
    EXPECT_TRUE(menu->hasFocus());
    QTest::keyClick(menu, Qt::Key_End);
    EXPECT_NE(stored(kDefaultDestination.key), 6) << "no destination";
    platform_.panels.openAnswer = {"/three"};
    Q_EMIT menu->activated(6);
    settle();
    EXPECT_THAT(savedFolders(), ElementsAre("/one", "/two", "/three"));
    EXPECT_EQ(stored(kDefaultDestination.key), 5);
    QTest::keyClick(menu, Qt::Key_Up);
    EXPECT_EQ(stored(kDefaultDestination.key), 4);

    auto* const list = window_->findChild<QListWidget*>("savedFolders");
    ASSERT_EQ(list->count(), 3);
    list->setCurrentRow(0);
    list->setFocus();
    for (int times = 0; times < 3; ++times) QTest::keyClick(list, Qt::Key_Down, Qt::AltModifier);
    EXPECT_THAT(savedFolders(), ElementsAre("/two", "/three", "/one"));
    EXPECT_EQ(list->currentRow(), 2) << "the folder stays chosen";
    EXPECT_EQ(stored(kDefaultDestination.key), 3);
    for (int times = 0; times < 4; ++times) QTest::keyClick(list, Qt::Key_Delete);
    EXPECT_THAT(savedFolders(), IsEmpty());
    EXPECT_EQ(stored(kDefaultDestination.key), 0);
    EXPECT_EQ(menu->count(), 4);
}

TEST_F(PreferencesWindowTest, ThePageThatIsShownStaysMarked) {
    showPage("Subtitles");
    auto* const ground = sidebar().viewport();
    QTest::mouseClick(ground, Qt::LeftButton, {}, ground->rect().bottomLeft() + QPoint(5, -5));
    EXPECT_TRUE(page("Subtitles")->isSelected());
    showPage("Audio");
    EXPECT_THAT(sidebar().selectedItems(), ElementsAre(page("Audio")));
}

TEST_F(PreferencesWindowTest, ClosingPutsWhatWasChangedOntoTheDisk) {
    window();
    platform_.preferences.setDefaultInt("_x_1.2_asked", 1);
    find<QCheckBox>(kAutoClean.key)->click();
    EXPECT_FALSE(platform_.store.values.contains(kAutoClean.key)) << "written in the background";
    QTest::keyClick(window_.get(), Qt::Key_W, Qt::ControlModifier);
    EXPECT_FALSE(window_->isVisible());
    EXPECT_TRUE(platform_.store.values.contains(kAutoClean.key));
    partNamed<QPushButton>(window(), "Show All Again")->click();
    EXPECT_FALSE(platform_.store.values.contains("_x_1.2_asked"));
}

}  // namespace
}  // namespace reelvane
