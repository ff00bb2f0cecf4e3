"""The window on a desktop: a window manager, a file manager, notifications, assistive programs."""

import faulthandler
import json
import os
import shutil
import signal
import subprocess
import sys
import unittest

import desk
from desk import Atspi, Program, wait_for, xdotool

REELVANE, CLI, PICTURES = sys.argv[1:4]
SLOW_FFMPEG = os.path.join(desk.HOME, "slow-ffmpeg")
QUIT_QUESTION = "Conversion is in progresss. Are you sure you want to quit?"
THUNAR_SETTINGS = """<channel name="thunar" version="1.0">
<property name="last-view" type="string" value="ThunarDetailsView"/>
<property name="last-side-pane" type="string" value="void"/>
<property name="last-window-width" type="int" value="480"/>
<property name="last-window-height" type="int" value="400"/></channel>"""


def make_movie(name, seconds):
    subprocess.run(
        ["ffmpeg", "-nostdin", "-v", "error",
         "-f", "lavfi", "-i", f"testsrc2=size=320x180:rate=25:d={seconds}",
         "-f", "lavfi", "-i", f"sine=frequency=440:duration={seconds}",
         "-c:v", "libx264", "-preset", "ultrafast", "-pix_fmt", "yuv420p", "-c:a", "mp2",
         os.path.join(desk.HOME, name)], check=True)


def write(path, text):
    os.makedirs(os.path.dirname(path), exist_ok=True)
    with open(path, "w", encoding="utf-8") as file:
        file.write(text)


def prepare_desktop():
    write(desk.HOME + "/.config/xfce4/xfconf/xfce-perchannel-xml/thunar.xml", THUNAR_SETTINGS)
    # Reads the movie that it converts no faster than it plays; all else is as fast as ever.
    write(SLOW_FFMPEG, "#!/bin/sh\ncase \" $* \" in *' -progress '*) exec ffmpeg -re \"$@\" ;; esac\n"
                       "exec ffmpeg \"$@\"\n")
    os.chmod(SLOW_FFMPEG, 0o755)
    make_movie("short.mkv", 1)
    make_movie("long.mkv", 120)
    subprocess.Popen(["openbox"], stderr=subprocess.DEVNULL)
    wait_for("the window manager", lambda: "no such atom" not in desk.output_of(
        "xprop", "-root", "_NET_SUPPORTING_WM_CHECK"))
    subprocess.Popen(["dunst"], stderr=subprocess.DEVNULL)
    wait_for("the notification daemon", lambda: desk.is_served("org.freedesktop.Notifications"))


def notifications():
    """The texts of all that has been notified."""
    subprocess.run(["dunstctl", "close-all"], check=True)
    history = json.loads(desk.output_of("dunstctl", "history"))
    return [each["body"]["data"] for each in history["data"][0]]


class DesktopTest(unittest.TestCase):
    def setUp(self):
        self.folder = os.path.join(desk.HOME, self._testMethodName + " #1 50% ü")
        os.mkdir(self.folder)
        self.environment = {"XDG_CONFIG_HOME": self.folder + " settings"}
        self.prefer("HasUpgradedFromPre13", 1)  # else the next one counts as an old version's
        self.prefer("DefaultDestination", 1)  # beside the source

    def prefer(self, key, value):
        subprocess.run([CLI, "preferences", "set", key, str(value)], check=True,
                       env={**os.environ, **self.environment})

    def launch(self, *files):
        return Program(self, [REELVANE, *files], **self.environment)

    def start(self, *files):
        program = self.launch(*files)
        program.find("frame", "Reelvane*")
        return program

    def start_converting(self):
        """The window, with a conversion running that takes two minutes; and its process."""
        self.environment["REELVANE_FFMPEG"] = SLOW_FFMPEG
        self.prefer("AutoAdd", 1)
        window = self.start(self.movie("long ü.mkv", "long.mkv"))
        return window, wait_for("a conversion", window.conversion)

    def movie(self, name, source="short.mkv"):
        path = os.path.join(os.fsencode(self.folder), os.fsencode(name))
        shutil.copy(os.path.join(desk.HOME, source), path)
        return path

    def expect_whole(self, *names):
        paths = [os.path.join(os.fsencode(self.folder), os.fsencode(name)) for name in names]
        wait_for(f"{names} whole", lambda: subprocess.run(
            [CLI, "verify", *paths], capture_output=True, check=False).returncode == 0)

    def expect_nothing_left(self, process_id, words):
        """A conversion that was ended: no process, no output, no progress file."""
        wait_for("ffmpeg gone", lambda: desk.is_gone(process_id))
        progress = os.fsdecode(words[words.index(b"-progress") + 1])
        wait_for("the progress file gone", lambda: not os.path.exists(progress))
        wait_for("the source alone", lambda: os.listdir(self.folder) == ["long ü.mkv"])
        self.assertEqual(os.path.getsize(self.folder + "/long ü.mkv"),
                         os.path.getsize(desk.HOME + "/long.mkv"))

    def select_all_in_thunar(self, count):
        """Answers where the selected files can be dragged from."""
        thunar = Program(self, ["thunar", self.folder])
        thunar.find("table cell", "*.mkv")
        desk.place_window(thunar, 10, 300)
        files = wait_for(f"{count} files", lambda: next((each for each in [
            thunar.find_all("table cell", "*.???")] if len(each) == count), None))
        xdotool("mousemove", *desk.middle_of(files[0]), "click", 1)
        wait_for("one to be selected", lambda: desk.has_state(files[0], Atspi.StateType.SELECTED))
        xdotool("key", "ctrl+a")
        wait_for("all to be selected", lambda: all(
            desk.has_state(each, Atspi.StateType.SELECTED) for each in files))
        return desk.middle_of(files[-1])  # pressed where it was clicked, it would be opened

    def drag(self, start, window):
        xdotool("mousemove", *start, "mousedown", 1, "mousemove_relative", 50, 0,
                "mousemove", *desk.middle_of(window.find("frame", "Reelvane*")))

        def welcome():
            xdotool("mousemove_relative", "--", 3, 0, "mousemove_relative", "--", -3, 0)
            return window.find_all("filler", "Drop to add")
        wait_for("the window to welcome the drop", welcome)
        xdotool("mouseup", 1)

    def test_dropped_movies_are_converted(self):
        self.movie("1 first #1 100% ü.mkv")
        self.movie("z second.mkv")
        write(self.folder + "/1 first #1 100% ü.srt", "1\n00:00:00,200 --> 00:00:00,900\nGrüße\n")
        window = self.start()
        desk.place_window(window, 510, 40)
        self.drag(self.select_all_in_thunar(3), window)
        for name in "1 first #1 100% ü", "z second":
            window.find("label", name + ".mkv")
            if name.startswith("1"):
                window.find("label", f"with subtitles {name}.srt")
            window.press("push button", "Start Conversion")
        for name in "1 first #1 100% ü", "z second":
            self.expect_whole(name + ".m4v")
            window.find("list item", f"{name}.mkv, Status: Finished*")
            text = f"Reelvane has finished converting the file {name}.mkv."
            wait_for(text, lambda text=text: text in notifications())

    def test_notification_leads_to_the_file(self):
        subprocess.run(["dunstctl", "close-all"], check=True)
        self.prefer("AutoAdd", 1)
        self.start(self.movie("short ü.mkv"))
        wait_for("the notification",
                 lambda: desk.output_of("dunstctl", "count", "displayed").strip() == "1")
        subprocess.run(["dunstctl", "action", "0"], check=True)
        thunar = wait_for("the file manager", lambda: next(
            (each for each in desk.children(Atspi.get_desktop(0))
             if each.get_name().lower() == "thunar"), None))
        self.addCleanup(lambda process=thunar.get_process_id(): (  # the bus has started it
            os.kill(process, signal.SIGKILL), wait_for("it gone", lambda: desk.is_gone(process))))
        wait_for("the movie to be selected", lambda: any(
            each.get_name() == "short ü.m4v" and desk.has_state(each, Atspi.StateType.SELECTED)
            for each in desk.shown(thunar)))

    def test_pause_resume_remove(self):
        window, (process_id, words) = self.start_converting()
        window.press("push button", "Pause Queue")
        wait_for("ffmpeg to stand still", lambda: desk.is_stopped(process_id))
        window.find("frame", "Reelvane (Paused)*")
        window.press("push button", "Resume Queue")
        wait_for("ffmpeg to go on", lambda: not desk.is_stopped(process_id))
        window.press("push button", "Remove long ü.mkv")
        self.expect_nothing_left(process_id, words)
        window.find("label", "Drop movies here")

    def test_quit_asks_while_converting(self):
        window, (process_id, words) = self.start_converting()
        for answer in "Cancel", "Quit":
            desk.activate(window)
            xdotool("key", "ctrl+q")
            alert = window.find("alert", "Reelvane")
            self.assertEqual(alert.get_description(), QUIT_QUESTION)
            window.press("push button", answer)
            if answer == "Cancel":
                wait_for("the alert gone", lambda: not window.find_all("alert", "*"))
                self.assertFalse(desk.is_gone(process_id))
        self.assertEqual(window.process.wait(desk.PATIENCE), 0)
        self.expect_nothing_left(process_id, words)

    def test_other_starts_hand_over(self):
        self.prefer("AutoAdd", 1)
        names = [f"movie {number}.mkv" for number in range(10)]
        starts = [self.launch(self.movie(name)) for name in names]

        def first():
            alive = [each for each in starts if each.process.poll() is None]
            return alive[0] if len(alive) == 1 else None
        window = wait_for("one process to be left", first)
        self.assertEqual({each.process.wait() for each in starts if each is not window}, {0})
        self.expect_whole(*(name.replace(".mkv", ".m4v") for name in names))

        self.assertEqual(self.launch(self.movie(b"m\xff x.mkv")).process.wait(desk.PATIENCE), 0)
        self.expect_whole(b"m\xff x.m4v")

        window.find("frame", "Reelvane  [[]11 Job*")
        desk.activate(Program(self, ["thunar", self.folder]))
        self.assertEqual(self.launch().process.wait(desk.PATIENCE), 0)
        wait_for("the window in front", lambda: desk.is_active(window))

    def expect_accessible(self, window, what):
        """Everything that takes the keyboard or a click says what it is."""
        found = [each for each in desk.shown(window.accessible()) if desk.is_control(each)]
        self.assertTrue(found)
        mute = [(each.get_role_name(), each.get_name(), desk.place_of(each)) for each in found
                if not desk.says_what_it_is(each)]
        self.assertEqual(mute, [], what)

    def expect_tab_reaches_all(self, window):
        """Tab goes through every control that takes the keyboard, and comes round."""
        desk.activate(window)
        start = wait_for("a control with the keyboard", lambda: desk.focus_of(window))
        wanted = {desk.key_of(each) for each in desk.shown(window.accessible())
                  if desk.is_tab_stop(each)}
        reached = [start]
        while len(wanted) > 1:
            xdotool("key", "Tab")
            focus = wait_for("the keyboard to move on", lambda: next(
                (each for each in [desk.focus_of(window)] if each not in (None, reached[-1])), None))
            if focus == start:
                break
            self.assertNotIn(focus, reached)  # a round that leaves out where it began
            reached.append(focus)
        self.assertEqual(wanted - set(reached), set())

    def test_assistive_programs_and_keyboard(self):
        self.environment["REELVANE_FFMPEG"] = SLOW_FFMPEG
        window = self.start()
        window.find("label", "Drop movies here")
        self.expect_accessible(window, "the empty window")
        self.expect_tab_reaches_all(window)

        names = "first.mkv", "second.mkv"  # both long enough to stay as they are
        self.launch(*(self.movie(name, "long.mkv") for name in names))
        for name in names:
            window.find("label", name)
            wait_for("the sheet to take the keyboard", lambda: desk.has_state(
                window.find("push button", "Start Conversion"), Atspi.StateType.FOCUSED))
            self.expect_accessible(window, "the file sheet")
            self.expect_tab_reaches_all(window)
            window.press("push button", "Start Conversion")
        wait_for("the sheet gone", lambda: not window.find_all("push button", "Start Conversion"))
        window.find("push button", "Pause second.mkv")
        self.expect_accessible(window, "the list")
        self.expect_tab_reaches_all(window)

        window.press("push button", "Preferences")
        pages = list(desk.children(window.find("list", "Pages")))
        self.assertGreater(len(pages), 1)
        for page in pages:
            xdotool("mousemove", *desk.middle_of(page), "click", 1)
            wait_for("the page", lambda page=page: desk.has_state(page, Atspi.StateType.SELECTED))
            self.expect_accessible(window, "preferences: " + page.get_name())
        window.press("push button", "Close")
        wait_for("the preferences gone", lambda: not window.find_all("list", "Pages"))
        desk.activate(window)
        xdotool("key", "alt+h", "a")
        window.find("dialog", "About*")
        self.expect_accessible(window, "about")


class Result(unittest.TextTestResult):
    """Shows what was on the screen and in the logs when a test failed."""

    def explain(self, test):
        picture = os.path.join(PICTURES, f"failed-{test.id().rpartition('.')[2]}.png")
        subprocess.run(["import", "-window", "root", picture], check=False)
        self.stream.writeln(f"\n{test.id()} failed; the screen: {picture}")
        for program in Program.running:
            self.stream.writeln(program.log())

    def addError(self, test, err):
        super().addError(test, err)
        self.explain(test)

    def addFailure(self, test, err):
        super().addFailure(test, err)
        self.explain(test)


faulthandler.dump_traceback_later(270, exit=True)  # before ctest ends it without a word
prepare_desktop()
unittest.main(argv=[sys.argv[0], *sys.argv[4:]], verbosity=2,
              testRunner=unittest.TextTestRunner(resultclass=Result, verbosity=2))
