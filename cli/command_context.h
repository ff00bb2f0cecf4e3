#pragma once

namespace reelvane {

class Console;
class FolderAccess;
class Host;
class MainBundle;
class Preferences;
class PreferencesStore;
class ProcessLauncher;

/// What the commands that need no main loop work with. They make nothing on disk but what they are
/// asked to.
struct CommandContext {
    Console& console;
    PreferencesStore& store;
    Preferences& preferences;
    FolderAccess& folderAccess;
    Host& host;
    MainBundle& mainBundle;
    ProcessLauncher& processLauncher;
};

}  // namespace reelvane
