"""One fault in each trial on a real conversion, and a judgement of what it left behind.

The same seed gives the same faults; the moments in which they meet the programs are not repeatable.
A trial that fails is told with its number, so that it can be looked at alone (--only).
"""

import argparse
import contextlib
import ctypes
import hashlib
import os
import random
import resource
import select
import shutil
import signal
import subprocess
import sys
import tempfile
import time
from concurrent.futures import ThreadPoolExecutor

MARK = "REELVANE_FAULT_TRIAL"
ENDING = {signal.SIGTERM: 143, signal.SIGINT: 130, signal.SIGHUP: 129}
CRASHED = ("terminate called", "AddressSanitizer", "runtime error:", "Fatal")


def fingerprint(path):
    with open(path, "rb") as file:
        return hashlib.sha256(file.read()).hexdigest()


def make_movies(folder):
    """Small movies of several kinds, each of two seconds."""
    text = os.path.join(folder, "text.srt")
    with open(text, "w", encoding="utf-8") as file:
        file.write("1\n00:00:00,100 --> 00:00:00,900\nGood evening.\n\n"
                   "2\n00:00:01,000 --> 00:00:01,800\nThis is a sample.\n")
    picture = ["-f", "lavfi", "-i", "testsrc2=size=160x120:rate=24:duration=2"]
    sound = ["-f", "lavfi", "-i", "sine=frequency=440:sample_rate=48000:duration=2"]
    kinds = {
        "Film.mkv": ["-c:a", "ac3", "-ac", "6"],
        "Serie.mkv": ["-i", text, "-map", "0", "-map", "1", "-map", "2", "-c:a", "aac", "-c:s", "srt"],
        "Clip.mp4": ["-c:a", "aac"],
        "Show.ts": ["-c:a", "mp2"],
    }
    for name, arguments in kinds.items():
        subprocess.run(["ffmpeg", "-nostdin", "-v", "error", "-y", *picture, *sound,
                        *arguments[:arguments.index("-c:a")],
                        "-c:v", "libx264", "-preset", "ultrafast",
                        *arguments[arguments.index("-c:a"):], os.path.join(folder, name)],
                       check=True)
    os.remove(text)
    return sorted(kinds)


def picture_packets(path):
    """How many packets the first real picture has; absent when the file cannot be read."""
    done = subprocess.run(["ffprobe", "-v", "error", "-select_streams", "V:0", "-count_packets",
                           "-show_entries", "stream=nb_read_packets", "-of", "csv=p=0", path],
                          capture_output=True, text=True, check=False)
    count = done.stdout.strip().split("\n")[0].strip(",")
    return int(count) if done.returncode == 0 and count.isdigit() else None


class Trial:
    """One run of the program in a world of its own."""

    def __init__(self, number, chance, options):
        self.number, self.chance, self.options = number, chance, options
        self.root = tempfile.mkdtemp(prefix=f"reelvane-fault-{number}-")
        self.home, self.films, self.out = (os.path.join(self.root, each)
                                           for each in ("home", "films", "out"))
        for folder in (self.home + "/Documents", self.films, self.out, self.root + "/run",
                       self.root + "/tmp"):
            os.makedirs(folder, mode=0o700)
        self.source = self.films + "/" + chance.choice(options.movies)
        shutil.copyfile(os.path.join(options.pool, os.path.basename(self.source)), self.source)
        self.original = fingerprint(self.source)
        self.packets = options.packets[os.path.basename(self.source)]
        self.bystander = self.out + "/Holiday.m4v"
        self.foreign = {self.bystander: b"somebody else's"}
        with open(self.bystander, "wb") as file:
            file.write(self.foreign[self.bystander])
        self.auto_remove = chance.random() < options.auto_remove
        self.said = ""
        self.statuses = []
        self.status = None
        self.meddled_with_source = False
        self.hidden = []         # what the fault itself took out of the program's reach
        self.killed = False      # the next start clears up
        self.signalled = False
        self.expects_failure = False
        self.problems = []

    # The world

    def ffmpeg(self, script="exec ffmpeg -re \"$@\"", probe="exec ffmpeg \"$@\""):
        """A stand-in: slow enough for a fault to meet it, or broken on purpose."""
        path = self.root + "/ffmpeg"
        with open(path, "w", encoding="utf-8") as file:
            file.write(f'#!/bin/sh\ncase "$*" in *-progress*) ;; *) {probe} ;; esac\n{script}\n')
        os.chmod(path, 0o700)
        return path

    def environment(self):
        kept = {key: os.environ[key] for key in ("PATH", "LANG") if key in os.environ}
        return kept | {"HOME": self.home, "XDG_RUNTIME_DIR": self.root + "/run", MARK: self.root,
                       "TMPDIR": self.root + "/tmp", "DBUS_SESSION_BUS_ADDRESS": "disabled:",
                       "DBUS_SYSTEM_BUS_ADDRESS": "disabled:", "REELVANE_FFMPEG": self.tool}

    def start(self, *sources, limits=(), **streams):
        def limit():
            for which, value in limits:
                resource.setrlimit(which, (value, value))
        wanted = ["convert", "--to", self.out, "--set", f"AutoRemove={int(self.auto_remove)}",
                  "--set", "AutoRemoveType=1", "--set", "DisableBuiltinSubtitles=0"]
        return subprocess.Popen([self.options.cli, *wanted, *(sources or [self.source])],
                                env=self.environment(), preexec_fn=limit, cwd=self.root,
                                **({"stdout": subprocess.PIPE, "stderr": subprocess.STDOUT,
                                    "stdin": subprocess.DEVNULL} | streams))

    def finish(self, process, seconds=90):
        try:
            said, _ = process.communicate(timeout=seconds)
            self.said += (said or b"").decode("utf-8", "replace")
        except subprocess.TimeoutExpired:
            self.problems.append(f"hangs: still runs after {seconds} s")
            process.kill()
            process.communicate()
        self.statuses.append(process.returncode)
        self.status = process.returncode

    def wait_a_moment(self, longest=2.6):
        time.sleep(self.chance.random() * longest)

    def processes(self):
        wanted = f"{MARK}={self.root}".encode()
        found = {}
        for entry in os.listdir("/proc"):
            if not entry.isdigit():
                continue
            with contextlib.suppress(OSError):
                with open(f"/proc/{entry}/environ", "rb") as file:
                    if wanted not in file.read().split(b"\0"):
                        continue
                with open(f"/proc/{entry}/cmdline", "rb") as file:
                    found[int(entry)] = file.read().split(b"\0")
        return found

    def converter(self):
        return [each for each, words in self.processes().items() if b"-progress" in words
                and os.path.basename(words[0]).startswith(b"ffmpeg")]

    def await_opened(self, path, process):
        """Until the converter holds the empty file that was made for it, or has held it."""
        def is_held():
            for each in self.converter():
                with contextlib.suppress(OSError):
                    folder = f"/proc/{each}/fd/"
                    if path in [os.readlink(folder + name) for name in os.listdir(folder)]:
                        return True
            return False
        with contextlib.suppress(FileNotFoundError):
            while process.poll() is None and os.path.getsize(path) == 0 and not is_held():
                time.sleep(0.005)

    def stop_before_its_result(self, process):
        """False: the result was told before it could be stopped."""
        process.send_signal(signal.SIGSTOP)
        while select.select([process.stdout], [], [], 0.02)[0]:
            words = os.read(process.stdout.fileno(), 65536)
            if not words:
                return False
            self.said += words.decode("utf-8", "replace")
        return process.poll() is None and ".m4v (" not in self.said

    def output(self):
        return os.path.join(self.out, os.path.splitext(os.path.basename(self.source))[0] + ".m4v")

    def put_foreign(self, path, words=b"put here by another program"):
        beside = self.root + "/foreign"
        with open(beside, "wb") as file:
            file.write(words)
        os.replace(beside, path)
        self.foreign[path] = words

    # The judgement

    def judge(self):
        self.judge_processes()
        if self.killed or self.hidden:
            self.start_again()
        self.judge_files()
        self.judge_words()
        return self.problems

    def judge_processes(self):
        until = time.monotonic() + 5
        while (left := self.processes()) and time.monotonic() < until:
            time.sleep(0.05)
        for process in left:
            self.problems.append(f"process left: {left[process][:3]}")
            with contextlib.suppress(ProcessLookupError):
                os.kill(process, signal.SIGKILL)

    def start_again(self):
        """The next start clears up after what was killed, and works."""
        self.tool = shutil.which("ffmpeg")
        other = self.root + "/Next.mkv"
        shutil.copyfile(os.path.join(self.options.pool, "Film.mkv"), other)
        keep, self.status, words = self.status, None, self.said
        removes, self.auto_remove = self.auto_remove, False
        self.finish(self.start(other))
        if self.status != 0:
            self.problems.append(f"the next start ends with {self.status}: {self.said[-300:]}")
        self.status, self.auto_remove, self.said = keep, removes, words
        with contextlib.suppress(FileNotFoundError):
            os.remove(self.out + "/Next.m4v")

    def whole(self, path):
        checked = subprocess.run([self.options.cli, "verify", path], env=self.environment(),
                                 capture_output=True, check=False)
        return checked.returncode == 0

    def judge_files(self):
        for path, words in self.foreign.items():
            with contextlib.suppress(FileNotFoundError):
                with open(path, "rb") as file:
                    if file.read() == words:
                        continue
            self.problems.append(f"a file that is not its own was touched: {path}")
        made = [path for path in (os.path.join(self.out, name) for name in sorted(os.listdir(self.out)))
                if path not in self.foreign]
        whole = [path for path in made if path.endswith(".m4v") and self.whole(path)]
        for path in made:
            named = os.path.basename(path) in self.said and "could not be" in self.said
            if path not in whole and not named:
                self.problems.append(f"left behind: {path}")
        for folder in (self.home + "/Documents", self.root + "/tmp"):
            for name in os.listdir(folder):
                self.problems.append(f"left behind: {folder}/{name}")
        self.judge_source(whole)
        if self.status == 0 and not whole and not self.hidden:
            self.problems.append("says success without an output")

    def judge_source(self, whole):
        if self.meddled_with_source:
            return
        if os.path.exists(self.source):
            if fingerprint(self.source) != self.original:
                self.problems.append("the source was changed")
        elif not self.auto_remove:
            self.problems.append("the source is gone")
        elif not any(picture_packets(path) == self.packets for path in whole):
            self.problems.append("the source is gone, and no output has all of its picture")
        if self.status == 0 and not any(picture_packets(path) == self.packets for path in whole):
            if "damaged" not in self.said and not self.hidden:
                self.problems.append("called finished with pictures missing")

    def judge_words(self):
        if self.signalled and not self.said.strip() and self.statuses[-1] in (-15, -2, -1):
            self.statuses.pop()  # before it could take notice: nothing was begun
            self.silent = True
        if any(word in self.said for word in CRASHED):
            self.problems.append(f"crashed: {self.said[-400:]}")
        for status in self.statuses:
            if status < 0 and not (self.killed and status == -signal.SIGKILL):
                self.problems.append(f"ended by signal {-status}")
        if not self.signalled and not self.killed and "nterrupted" in self.said:
            self.problems.append("says that it was interrupted, and was not")
        if self.expects_failure and self.status == 0:
            self.problems.append("says success")
        if self.status not in (0, None) and not self.killed and not self.said.strip() \
                and not self.silent:
            self.problems.append(f"ends with {self.status} and not a word")

    silent = False
    tool = "ffmpeg"


# The faults. Each is given a trial, runs the program and may say what is to be expected.

def signals_to_the_program(trial):
    process = trial.start()
    trial.wait_a_moment()
    which = trial.chance.choice([signal.SIGTERM, signal.SIGINT, signal.SIGHUP])
    ended = process.poll() is not None
    process.send_signal(which)
    if trial.chance.random() < 0.3:
        time.sleep(trial.chance.random() * 0.05)
        with contextlib.suppress(ProcessLookupError):
            process.send_signal(which)
    trial.signalled = True
    trial.finish(process)
    if not ended and trial.status not in (ENDING[which], -which, 0):
        trial.problems.append(f"ends with {trial.status} after {which.name}")


def kills_the_program(trial):
    process = trial.start()
    trial.wait_a_moment()
    process.kill()
    trial.killed = True
    trial.finish(process)
    trial.said, trial.status = "", None


def stops_the_program(trial):
    process = trial.start()
    trial.wait_a_moment()
    process.send_signal(signal.SIGSTOP)
    time.sleep(0.3)
    process.send_signal(signal.SIGCONT)
    trial.finish(process)


def signals_to_the_converter(trial):
    process = trial.start()
    trial.wait_a_moment()
    which = trial.chance.choice([signal.SIGTERM, signal.SIGKILL, signal.SIGSEGV, signal.SIGINT])
    for each in trial.converter():
        with contextlib.suppress(ProcessLookupError):
            os.kill(each, which)
    trial.finish(process)


def stops_the_converter(trial):
    process = trial.start()
    trial.wait_a_moment()
    stopped = trial.converter()
    for each in stopped:
        os.kill(each, signal.SIGSTOP)
    if trial.chance.random() < 0.5:
        time.sleep(0.2)
        trial.signalled = True
        process.terminate()
    else:
        time.sleep(0.5)
        for each in stopped:
            with contextlib.suppress(ProcessLookupError):
                os.kill(each, signal.SIGCONT)
    trial.finish(process)


def limits_the_size_of_files(trial):
    limit = trial.chance.choice([0, 100, 4096, 20_000, 60_000])
    trial.finish(trial.start(limits=[(resource.RLIMIT_FSIZE, limit)]))


def limits_descriptors(trial):
    limit = trial.chance.choice([8, 12, 16, 20, 30])
    trial.finish(trial.start(limits=[(resource.RLIMIT_NOFILE, limit)]))
    trial.silent = limit < 10  # the libraries themselves cannot be loaded


def limits_memory(trial):
    limit = trial.chance.choice([60, 100, 200, 400]) << 20
    trial.finish(trial.start(limits=[(resource.RLIMIT_AS, limit)]))
    trial.silent = limit < 100 << 20


class Mount:
    """A small disk of its own at the output folder, for as long as the block lasts."""

    MS_RDONLY, MS_REMOUNT = 1, 32
    libc = ctypes.CDLL(None, use_errno=True)

    def __init__(self, trial, size):
        self.trial, self.size = trial, size

    def mount(self, flags=0):
        options = f"size={self.size}".encode()
        if self.libc.mount(b"tmpfs", self.trial.out.encode(), b"tmpfs", flags, options) != 0:
            raise OSError(ctypes.get_errno(), "mount")

    def __enter__(self):
        self.trial.foreign.clear()
        self.mount()
        return self

    def __exit__(self, *_):
        self.libc.umount2(self.trial.out.encode(), 2)

    def read_only(self, yes):
        """False where a file is open for writing."""
        flags = self.MS_REMOUNT | (self.MS_RDONLY if yes else 0)
        return self.libc.mount(b"tmpfs", self.trial.out.encode(), b"tmpfs", flags, None) == 0


def fills_the_disk(trial):
    size = os.path.getsize(trial.source) + trial.chance.choice([-20000, 0, 4096, 40_000, 200_000])
    with Mount(trial, max(4096, size)):
        process = trial.start()
        if trial.chance.random() < 0.5:
            trial.wait_a_moment()
            with contextlib.suppress(OSError), open(trial.out + "/ballast", "wb") as file:
                trial.foreign[trial.out + "/ballast"] = b""
                while True:
                    file.write(bytes(4096))
                    file.flush()
            trial.foreign.clear()
            with contextlib.suppress(OSError):
                os.truncate(trial.out + "/ballast", 0)
                trial.foreign[trial.out + "/ballast"] = b""
        trial.finish(process)
        trial.judge()


def makes_the_folder_read_only(trial):
    with Mount(trial, 50 << 20) as disk:
        process = trial.start()
        trial.wait_a_moment()
        changed = disk.read_only(True)
        if trial.chance.random() < 0.6:
            trial.signalled = True
            process.terminate()
        trial.finish(process)
        if changed and disk.read_only(False):
            if not all(name in trial.said for name in os.listdir(trial.out)):
                trial.problems.append(f"does not name what it left: {os.listdir(trial.out)}")
            trial.killed = True
        trial.judge()


def meddles_with_the_output(trial):
    process = trial.start()
    trial.wait_a_moment()
    made = [name for name in os.listdir(trial.out)
            if os.path.join(trial.out, name) not in trial.foreign]
    path, elsewhere = "", trial.root + "/moved.m4v"
    if made:
        path = os.path.join(trial.out, trial.chance.choice(made))
        way = trial.chance.choice(["replace", "delete", "truncate", "rename"])
        # A converter opens its output by name: what is put there before is emptied by it.
        trial.await_opened(path, process)
        with contextlib.suppress(FileNotFoundError):
            if not trial.stop_before_its_result(process):
                pass  # the file is the user's by now, who may do with it what he likes
            elif way == "replace":
                trial.put_foreign(path)
            elif way == "delete":
                os.remove(path)
            elif way == "truncate":
                os.truncate(path, 0)
            else:
                os.rename(path, elsewhere)
    process.send_signal(signal.SIGCONT)
    if trial.chance.random() < 0.3:
        trial.signalled = True
        process.terminate()
    trial.finish(process)
    if os.path.exists(elsewhere) and not os.path.exists(path):
        os.rename(elsewhere, path)  # it follows what it has made: judged as if it had stayed


def meddles_with_the_progress_file(trial):
    process = trial.start()
    trial.wait_a_moment()
    folder = trial.home + "/Documents"
    for name in os.listdir(folder):
        path = os.path.join(folder, name)
        with contextlib.suppress(FileNotFoundError):
            if trial.chance.random() < 0.5:
                os.remove(path)
            else:
                with open(path, "wb") as file:
                    file.write(os.urandom(5000))
    trial.finish(process)


def moves_the_output_folder(trial):
    process = trial.start()
    trial.wait_a_moment()
    elsewhere = trial.root + "/elsewhere"
    os.rename(trial.out, elsewhere)
    back = trial.chance.random() < 0.5
    if not back and trial.chance.random() < 0.5:
        os.makedirs(trial.out)
    trial.finish(process)
    if os.path.exists(trial.out):
        for name in os.listdir(trial.out):
            os.rename(os.path.join(trial.out, name), os.path.join(elsewhere, name))
        os.rmdir(trial.out)
    os.rename(elsewhere, trial.out)
    trial.hidden.append(trial.out)


def meddles_with_the_source(trial):
    trial.meddled_with_source = True
    process = trial.start()
    trial.wait_a_moment()
    way = trial.chance.choice(["replace", "append", "truncate", "rewrite", "rename"])
    with contextlib.suppress(FileNotFoundError):
        if way == "replace":
            trial.put_foreign(trial.source, b"a movie of somebody else")
        elif way == "append":
            with open(trial.source, "ab") as file:
                file.write(b"more")
            with open(trial.source, "rb") as file:
                trial.foreign[trial.source] = file.read()
        elif way == "truncate":
            os.truncate(trial.source, os.path.getsize(trial.source) // 2)
            with open(trial.source, "rb") as file:
                trial.foreign[trial.source] = file.read()
        elif way == "rewrite":
            words = os.urandom(os.path.getsize(trial.source))
            with open(trial.source, "r+b") as file:
                file.write(words)
            trial.foreign[trial.source] = words
        else:
            os.rename(trial.source, trial.source + ".bak")
            with open(trial.source + ".bak", "rb") as file:
                trial.foreign[trial.source + ".bak"] = file.read()
    trial.finish(process)


def runs_two_programs(trial):
    first, second = trial.start(), trial.start()
    trial.auto_remove = True  # either may have removed the source of the other
    trial.wait_a_moment()
    victim = trial.chance.choice([first, second])
    trial.killed = True
    victim.kill()
    for each in (first, second):
        trial.finish(each)
    trial.said, trial.status = "", None


def breaks_the_converter(trial):
    scripts = {
        "no output": ("for last; do :; done; : >\"$last\"; exit 0", True),
        "nonsense": ("for last; do :; done; head -c 50000 /dev/urandom >\"$last\"; exit 0", True),
        "floods": ("yes 'some words of no importance at all' | head -c 30000000 >&2; "
                   "exec ffmpeg \"$@\"", False),
        "deaf": ("trap '' TERM INT HUP; sleep 2; exec ffmpeg \"$@\"", False),
        "child": ("sleep 30 & exec ffmpeg \"$@\"", False),
        "fails": ("ffmpeg \"$@\"; exit 1", True),
        "half": ("ffmpeg \"$@\"; for last; do :; done; "
                 "truncate -s $(($(stat -c %s \"$last\") / 2)) \"$last\"; exit 0", True),
        "closed": ("exec ffmpeg \"$@\" >&- 2>&-", False),
    }
    script, trial.expects_failure = scripts[trial.chance.choice(sorted(scripts))]
    trial.tool = trial.ffmpeg(script)
    process = trial.start()
    if not trial.expects_failure and trial.chance.random() < 0.4:
        trial.wait_a_moment(1)
        trial.signalled = True
        process.terminate()
    trial.finish(process)


def breaks_the_probe(trial):
    trial.tool = trial.ffmpeg(probe=trial.chance.choice([
        "yes 'Stream' | head -c 30000000; exit 1", "exit 1", "kill -9 $$",
        "head -c 200000 /dev/urandom; exit 1"]))
    trial.expects_failure = True
    trial.finish(trial.start())


def closes_the_standard_streams(trial):
    way = trial.chance.choice(["out", "err", "all", "full", "gone"])
    trial.silent = True
    if way == "full":
        with open("/dev/full", "wb", buffering=0) as full:
            process = trial.start(stdout=full, stderr=full)
            trial.finish(process)
        return
    if way == "gone":
        process = trial.start()
        process.stdout.close()
        process.wait(30)
        trial.statuses.append(process.returncode)
        return
    closed = {"out": ">&-", "err": "2>&-", "all": "<&- >&- 2>&-"}[way]
    real = trial.options.cli
    wrapper = trial.root + "/cli"
    with open(wrapper, "w", encoding="utf-8") as file:
        file.write(f'#!/bin/sh\nexec "{real}" "$@" {closed}\n')
    os.chmod(wrapper, 0o700)
    trial.options = argparse.Namespace(**vars(trial.options) | {"cli": wrapper})
    trial.finish(trial.start())
    trial.options.cli = real


def damages_the_preferences(trial):
    folder = trial.home + "/.config/org.reelvane.Reelvane"
    path = folder + "/org.reelvane.Reelvane.ini"
    os.makedirs(folder)
    way = trial.chance.choice(["garbage", "folder", "fifo", "huge", "unreadable list"])
    if way == "folder":
        os.makedirs(path)
    elif way == "fifo":
        os.mkfifo(path)
    else:
        words = {"garbage": os.urandom(3000), "huge": b"[General]\n" + b"Key=1\n" * 200_000,
                 "unreadable list": b"[General]\nUnfinishedOutput=" + b"a, " * 100_000 + b"\n"}[way]
        with open(path, "wb") as file:
            file.write(words)
    trial.finish(trial.start())


FAULTS = {
    signals_to_the_program: 5, kills_the_program: 4, stops_the_program: 1,
    signals_to_the_converter: 3, stops_the_converter: 2, limits_the_size_of_files: 2,
    limits_descriptors: 2, limits_memory: 1, fills_the_disk: 3, makes_the_folder_read_only: 3,
    meddles_with_the_output: 4, meddles_with_the_progress_file: 1, moves_the_output_folder: 2,
    meddles_with_the_source: 4, runs_two_programs: 3, breaks_the_converter: 4, breaks_the_probe: 1,
    closes_the_standard_streams: 2, damages_the_preferences: 1,
}
JUDGED_INSIDE = {fills_the_disk, makes_the_folder_read_only}  # while their disk is still there


def run_trial(number, options):
    chance = random.Random(f"{options.seed}/{number}")
    fault = chance.choices(list(FAULTS), weights=list(FAULTS.values()))[0]
    trial = Trial(number, chance, options)
    trial.tool = trial.ffmpeg()
    try:
        fault(trial)
        if fault not in JUDGED_INSIDE:
            trial.judge()
    except Exception as error:  # pylint: disable=broad-except
        trial.problems.append(f"the trial itself failed: {error!r}")
    if trial.problems:
        print("\n    ".join([
            f"trial {number} ({fault.__name__}, {os.path.basename(trial.source)}, "
            f"AutoRemove={int(trial.auto_remove)}), status {trial.statuses}:", *trial.problems,
            "said: " + trial.said[-600:].strip().replace("\n", "\n          ")]), flush=True)
    if not (trial.problems and options.keep):
        shutil.rmtree(trial.root, ignore_errors=True)
    return not trial.problems


def main():
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("cli", help="the command line program")
    parser.add_argument("--trials", type=int, default=100)
    parser.add_argument("--seed", type=int, default=1)
    parser.add_argument("--jobs", type=int, default=2 * os.cpu_count(), help="trials at a time")
    parser.add_argument("--only", type=int, help="one trial")
    parser.add_argument("--auto-remove", type=float, default=0.3, help="share of trials with it")
    parser.add_argument("--keep", action="store_true", help="keep the folders of failed trials")
    options = parser.parse_args()
    options.cli = os.path.abspath(options.cli)
    with tempfile.TemporaryDirectory(prefix="reelvane-fault-movies-") as options.pool:
        options.movies = make_movies(options.pool)
        options.packets = {name: picture_packets(os.path.join(options.pool, name))
                           for name in options.movies}
        numbers = [options.only] if options.only is not None else range(options.trials)
        with ThreadPoolExecutor(options.jobs) as pool:  # most of a trial is waiting
            outcomes = list(pool.map(lambda number: run_trial(number, options), numbers))
    passed, failed = outcomes.count(True), outcomes.count(False)
    print(f"{passed} passed, {failed} failed")
    return 1 if failed else 0


if __name__ == "__main__":
    sys.exit(main())
