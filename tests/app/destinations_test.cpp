#include "app/destinations.h"

#include <array>

#include "app/outputs.h"
#include "tests/app/app_fixture.h"

namespace reelvane {
namespace {

class DestinationsTest : public AppFixture {
protected:
    void save(const std::vector<std::string>& folders) {
        platform_.preferences.setDefaultArray(kDestinationBookmarks.key, folders);
        platform_.preferences.setDefaultArray(kDestinationNames.key, folders);
    }
    [[nodiscard]] int stored() const { return get(platform_.preferences, kDefaultDestination); }
    [[nodiscard]] std::vector<std::string> names() const {
        return get(platform_.preferences, kDestinationNames);
    }
};

TEST_F(DestinationsTest, LaunchDropsLostFoldersAndClampsTheChoice) {
    for (const auto& [before, after] : {std::pair{5, 3}, {4, 4}, {3, 3}}) {
        save({"/one", "/two", "/three"});
        set(kDefaultDestination.key, before);
        platform_.folderAccess.broken = {"/two"};
        launch();
        EXPECT_THAT(names(), ElementsAre("/one", "/three"));
        EXPECT_EQ(stored(), after);
        EXPECT_THAT(app_->destinations().preferencesDestinationPopUp().items(),
                    ElementsAre(_, _, MenuItem{}, MenuItem{"/one", "/one"},
                                MenuItem{"/three", "/three"}, MenuItem{}, _));
        EXPECT_THAT(platform_.folderAccess.open, IsEmpty());
    }
    EXPECT_EQ(app_->destinations().openedFolders().size(), 3) << "the granted root and two more";
}

TEST_F(DestinationsTest, TheChoicesFollowTheirFoldersWhenOthersAreMovedOrRemoved) {
    save({"/one", "/two", "/three"});
    set(kDefaultDestination.key, 5);
    auto& destinations = launch().destinations();
    auto& sheet = destinations.destinationPopUp();
    destinations.rebuildDestinationPopUp();
    destinations.pick(DestinationMenu::FileSheet, 4);
    destinations.moveSavedDestination("/three", 0);
    EXPECT_THAT(names(), ElementsAre("/three", "/one", "/two"));
    EXPECT_EQ(stored(), 3);
    EXPECT_EQ(sheet.selectedIndex(), 5) << "still /two";
    destinations.removeSavedDestination("/one");
    EXPECT_EQ(stored(), 3);
    EXPECT_EQ(sheet.selectedIndex(), 4);
    EXPECT_EQ(sheet.items().size(), 7);
    destinations.removeSavedDestination("/two");
    EXPECT_EQ(sheet.selectedIndex(), 3) << "the default, since its own folder is gone";
    destinations.removeSavedDestination("/three");
    EXPECT_EQ(stored(), 0);
    EXPECT_EQ(destinations.preferencesDestinationPopUp().selectedIndex(), 0);
    EXPECT_THAT(names(), IsEmpty());
}

TEST_F(DestinationsTest, ThePreferencesMenuStoresWhatIsADestinationAndNothingElse) {
    save({"/one"});
    set(kDefaultDestination.key, 3);
    auto& destinations = launch().destinations();
    const auto& menu = destinations.preferencesDestinationPopUp();
    for (const auto& [row, kept] : {std::pair{1U, 1}, {2U, 1}, {4U, 1}, {9U, 1}, {3U, 3}}) {
        destinations.pick(DestinationMenu::Preferences, row);
        EXPECT_EQ(stored(), kept) << row;
        EXPECT_EQ(menu.selectedIndex(), kept);
    }
    destinations.pick(DestinationMenu::Preferences, 5);  // adds one, and the user cancels
    EXPECT_EQ(stored(), 3);
    platform_.panels.openAnswer = {"/two"};
    destinations.pick(DestinationMenu::Preferences, 5);
    settle();
    EXPECT_EQ(stored(), 4);
    EXPECT_EQ(menu.selectedIndex(), 4);

    save({"/two"});  // by another process, while the menu is open
    destinations.pick(DestinationMenu::Preferences, 3);
    EXPECT_EQ(stored(), 4) << "the row meant another folder";
}

TEST_F(DestinationsTest, WhatTheSheetShowsIsWhatIsUsed) {
    const auto one = movie("one/x").parent_path();
    const auto two = movie("two/x").parent_path();
    save({one, two});
    set(kDefaultDestination.key, 4);
    set(kAutoAdd.key, 0);
    open({movie("a.mkv")});
    auto& destinations = app_->destinations();
    const auto shown = [&] { return destinations.destinationPopUp().selectedIndex(); };
    destinations.pick(DestinationMenu::Preferences, 3);
    EXPECT_EQ(shown(), 3) << "not touched, it follows the default";
    destinations.pick(DestinationMenu::FileSheet, 4);
    destinations.pick(DestinationMenu::Preferences, 0);
    EXPECT_EQ(shown(), 4);
    save({two, one});  // by another process
    app_->intake().addToQueue();
    settle();
    EXPECT_EQ(job(0).fileInfo().destinationURL, two / "a.m4v");

    save({});
    set(kDefaultDestination.key, 3);
    open({movie("b.mkv")});
    EXPECT_EQ(shown(), 0) << "the row that adds one is no default";
    save({one});
    platform_.panels.openAnswer = {two};
    destinations.pick(DestinationMenu::FileSheet, 3);  // adds one, whatever the store says now
    settle();
    app_->intake().addToQueue();
    settle();
    EXPECT_EQ(job(0).fileInfo().destinationURL, two / "b.m4v");
}

TEST_F(DestinationsTest, EqualNamesAreToldApartByTheirPaths) {
    const auto apart = toldApart(
        {{"Movies", "/a/Movies"}, {"Movies", "/b/Movies"}, {"", "/"}, {"Other", "/b/Other"}},
        platform_.folderAccess);
    std::vector<std::string> titles;
    for (const auto& saved : apart) titles.push_back(saved.name);
    EXPECT_THAT(titles, ElementsAre("Movies (/a)", "Movies (/b)", "/", "Other"));
    EXPECT_EQ(destinationName("/a/b/"), "b");
}

TEST_F(DestinationsTest, ARunThatNobodyWatchesLeavesTheWindowsThingsAlone) {
    save({"/one", "/two"});
    platform_.folderAccess.broken = {"/two"};
    set(kDefaultDestination.key, 9);
    set("vantor_1.2_usages", 9);
    set(kWelcomeShown.key, 0);
    launch({.unattended = true});
    EXPECT_THAT(names(), ElementsAre("/one", "/two")) << "its disk may be away";
    EXPECT_EQ(stored(), 9);
    EXPECT_FALSE(get(platform_.preferences, kWelcomeShown));
    launch();
    EXPECT_THAT(names(), ElementsAre("/one"));
    EXPECT_TRUE(get(platform_.preferences, kWelcomeShown));
}

TEST_F(DestinationsTest, ASavedFolderIsOpenedForTheJobAndClosedWithIt) {
    const auto saved = movie("saved/old.mkv").parent_path();
    save({saved});
    set(kDefaultDestination.key, 3);
    open({movie("a.mkv")});
    EXPECT_EQ(job(0).fileInfo().destinationURL, saved / "a.m4v");
    EXPECT_THAT(platform_.folderAccess.open, ElementsAre(saved));
    app_->applicationWillTerminate();
    EXPECT_THAT(platform_.folderAccess.open, IsEmpty());

    launch();
    platform_.folderAccess.closed = {saved};
    open({movie("b.mkv")});
    EXPECT_THAT(lastAlert(), HasSubstr("cannot be opened, so there is no place for b.mkv"));
    EXPECT_EQ(app_->intake().state(), IntakeState::AwaitingUser) << "for another choice";
    EXPECT_THAT(rows(), IsEmpty());
}

TEST_F(DestinationsTest, TheSavePanelNeverLetsTheSourceBeOverwritten) {
    set(kDefaultDestination.key, 0);
    set(kAutoAdd.key, 0);
    const auto source = movie("a.mkv");
    const auto sameFile = platform_.folder.path() / "hard.m4v";
    fs::create_hard_link(source, sameFile);
    open({source});
    for (const auto& chosen : {source, sameFile}) {
        platform_.panels.saveAnswer = chosen;
        app_->intake().addToQueue();
        settle();
        EXPECT_THAT(lastAlert(), HasSubstr("Thats the worst idea ever."));
        EXPECT_TRUE(fs::exists(chosen));
    }
    app_->intake().addToQueue();  // cancelled
    settle();
    EXPECT_THAT(rows(), IsEmpty());
    EXPECT_EQ(platform_.panels.saved.back().fileName, "a.m4v");
    set(kDefaultExtension.key, 0);
    app_->intake().cancelAdd();
    open({movie("own.mp4")});
    app_->intake().addToQueue();
    settle();
    EXPECT_EQ(platform_.panels.saved.back().fileName, "own-0.mp4") << "not the source's own name";
    set(kDefaultExtension.key, 1);
    app_->intake().cancelAdd();
    open({source});

    const auto chosen = movie("chosen.m4v");
    platform_.panels.saveAnswer = chosen;
    app_->intake().addToQueue();
    app_->intake().cancelAdd();
    settle();
    EXPECT_TRUE(fs::exists(chosen)) << "nothing is replaced for a movie that was left";
    open({source});
    platform_.panels.saveAnswer = chosen;
    togglePause();
    app_->intake().addToQueue();
    settle();
    EXPECT_TRUE(fs::exists(chosen)) << "it is replaced when there is something to replace it";
    togglePause();
    EXPECT_EQ(output(0), "chosen.m4v") << "a chosen name stays";
    EXPECT_EQ(contentOf(chosen), "x") << "and so does what lies there";

    finish(0);
    app_->queueControl().togglePause();
    open({movie("again.mkv")});
    platform_.panels.saveAnswer = chosen;
    app_->intake().addToQueue();
    settle();
    EXPECT_EQ(output(0), "chosen.m4v") << "its job has ended, and the user agreed to replace it";

    open({movie("b.mkv")});
    platform_.panels.saveAnswer = source;
    app_->intake().addToQueue();
    settle();
    EXPECT_TRUE(fs::exists(source)) << "another job of the list reads it";
    EXPECT_EQ(output(0), "a.m4v");
}

TEST(OutputNames, CutLongNamesAndKeepRoomForANumber) {
    TemporaryFolder folder;
    OutputNames names;
    const auto first = names.takeFreePath(folder.path(), std::string(300, 'x') + ".mkv", "m4v");
    const auto second = names.takeFreePath(folder.path(), std::string(300, 'x') + ".mkv", "m4v");
    EXPECT_NE(first, second);
    for (const auto& path : {first, second}) {
        EXPECT_LE(path.filename().native().size(), 255);
        EXPECT_EQ(path.extension(), ".m4v");
    }
    names.release(first);
    EXPECT_EQ(names.takeFreePath(folder.path(), std::string(300, 'x') + ".mkv", "m4v"), first);
}

}  // namespace
}  // namespace reelvane
