#include "cli/help_text.h"

#include "support/make_string.h"

namespace reelvane {
namespace {

constexpr std::string_view kProgramHelp =
    R"(Turns Matroska and other movies into MP4 files for Apple TV, iOS, QuickTime and game
consoles. The picture is never re-encoded; audio and text subtitles are treated as the
preferences say.

Usage: reelvane-cli [--set KEY=VALUE]... COMMAND [OPTIONS] [ARGUMENTS]

Commands:
  convert FILE...      Convert movies; subtitle files given with them are paired by name.
  inspect FILE...      Show what a movie holds and whether it can be converted.
  verify FILE...       Check that MP4 files are whole, and show their tracks.
  command FILE         Print the arguments that convert would call ffmpeg with.
  preferences          List, read, change and reset preferences.
  destinations         List, add and remove saved destination folders.

Options:
  --set KEY=VALUE      Use this preference for this run only; may be repeated and may stand
                       before or after the command. 'preferences list' shows all keys.
  -V, --version        Print the version.
  -h, --help           Print this help; 'COMMAND --help' and 'help COMMAND' print that of a
                       command.
  --                   What follows is a file name, also where it begins with '-'.

Examples:
  reelvane-cli convert Film.mkv Film.srt
  reelvane-cli convert --to ~/Movies --set ConversionPreset=1 *.mkv
  reelvane-cli inspect --json Film.mkv
  reelvane-cli preferences set AACBitrate 3

Exit status:
  0    all is well
  1    some file was refused or failed, or something could not be written
  2    the command line is wrong
  129, 130, 141, 143   ended by SIGHUP, Ctrl-C, a closed output, SIGTERM; nothing
       unfinished is left behind

Files and environment:
  Preferences are shared with the desktop application. They stand in
  $XDG_CONFIG_HOME (by default ~/.config), in a folder named after the application.
  REELVANE_FFMPEG   another ffmpeg executable to use
  NO_COLOR          when set, the progress line has no colours
)";

constexpr std::string_view kConversionOptions =
    R"(  --to DIR             Write the results into this folder. Default: next to each source.
  --to-saved NAME      Write them into this saved destination folder
                       ('destinations list' shows them).
  --audio INDEX        Take this audio track, counted from 0 as 'inspect' shows them.
                       Default: the best one for your languages.
  --subtitle FILE      Add this subtitle file to the movie; for one movie only.
)";

constexpr std::string_view kSetOption =
    R"(  --set KEY=VALUE      Use this preference for this run only; may be repeated.
  -h, --help           Print this help.
)";

constexpr std::string_view kConvertHelp =
    R"(Converts movies, one after another. Subtitle files (srt, ass, ssa, smi, sub) that are given
too go with the movie whose name they begin with. A folder is searched for movies and subtitle
files, also in the folders in it. No existing file is ever overwritten: a number is added to
the name instead.

Usage: reelvane-cli convert [OPTIONS] FILE...

Options:
%@  --json               Print one JSON object per event and line: queued, started, progress,
                       finished, failed, refused, alert.
  --quiet              Print errors only.
%@
On a terminal the progress is one line that is kept up to date; elsewhere plain lines are
printed. Ctrl-C ends the conversion and removes what is unfinished. Where several movies
are given, the order follows the preference InsertJobsAtBottom: 1 keeps the given order,
0 takes the last one first.

Examples:
  reelvane-cli convert Film.mkv Film.en.srt
  reelvane-cli convert --to /media/usb --set DefaultExtension=0 *.mkv
  reelvane-cli convert --json -- -odd-name.mkv | jq -r .event
)";

constexpr std::string_view kInspectHelp =
    R"(Shows what each movie holds, in the order given: its tracks, the audio track that would be
taken, and what stands against converting it. Nothing is written.

Usage: reelvane-cli inspect [OPTIONS] FILE...

Options:
  --json               Print one JSON object per file and line.
%@
Exit status 1: some file cannot be converted.

Examples:
  reelvane-cli inspect Film.mkv
  reelvane-cli inspect --json *.mkv | jq -r 'select(.accepted) | .file'
)";

constexpr std::string_view kVerifyHelp =
    R"(Reads the index of each MP4, M4V or MOV file, in the order given, and says whether the file is
whole: nothing is cut off, and all that the index describes is there. That takes some
milliseconds whatever the size, writes nothing and needs no ffmpeg. The picture and the sound
themselves are not decoded. Some files cannot be checked: they may be whole, or not.

Usage: reelvane-cli verify [OPTIONS] FILE...

Options:
  --json               Print one JSON object per file and line.
%@
Exit status 1: some file is broken or could not be checked. With --json "whole" is then false
or null.

Examples:
  reelvane-cli verify ~/Movies/*.m4v
  reelvane-cli verify --json *.mp4 | jq -r 'select(.whole | not) | .file'
)";

constexpr std::string_view kCommandHelp =
    R"(Prints the arguments that convert would call ffmpeg with, quoted for a shell, on one line.
Nothing is converted and nothing is written. The short trial run by which convert finds out
whether an AAC track needs the aac_adtstoasc filter is not made: the list comes without it.

Usage: reelvane-cli command [OPTIONS] FILE

Options:
%@  --json               Print a JSON array.
%@
Example:
  reelvane-cli command --set AudioVolume=150 Film.mkv
)";

constexpr std::string_view kPreferencesHelp =
    R"(Reads and changes the preferences, which the desktop application uses too. They stand in
$XDG_CONFIG_HOME (by default ~/.config), in a folder named after the application.

Usage: reelvane-cli preferences [COMMAND]

Commands:
  list [--json|--markdown]
                       List all preferences: value, default, type and meaning (the default).
  get KEY              Print a value.
  set KEY VALUE        Store a value. yes, no, true, false, on and off stand for 1 and 0.
  reset KEY            Forget the stored value, so that the default holds again.

Options:
%@
Examples:
  reelvane-cli preferences set ConversionPreset 1
  reelvane-cli preferences get AACBitrate
)";

constexpr std::string_view kDestinationsHelp =
    R"(Keeps the saved destination folders, which the desktop application offers too.

Usage: reelvane-cli destinations [COMMAND]

Commands:
  list [--json]        List the saved folders by name (the default).
  add DIR              Save a folder under its own name.
  remove NAME          Forget a saved folder; the folder itself stays.

Options:
%@
Examples:
  reelvane-cli destinations add ~/Movies
  reelvane-cli convert --to-saved Movies Film.mkv
)";

}  // namespace

std::string versionText() {
    return makeString("%@ %@\n", kProgramName, REELVANE_VERSION);
}

std::string helpText(std::string_view command) {
    if (command == "convert") return makeString(kConvertHelp, kConversionOptions, kSetOption);
    if (command == "inspect") return makeString(kInspectHelp, kSetOption);
    if (command == "verify") return makeString(kVerifyHelp, kSetOption);
    if (command == "command") return makeString(kCommandHelp, kConversionOptions, kSetOption);
    if (command.starts_with("preferences")) return makeString(kPreferencesHelp, kSetOption);
    if (command.starts_with("destinations")) return makeString(kDestinationsHelp, kSetOption);
    return std::string(kProgramHelp);
}

}  // namespace reelvane
