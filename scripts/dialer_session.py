"""The unmodified dialer in a conversation with the suite stand-in, under Wine: for scripts and end-to-end tests."""
import contextlib
import os
import re
import shutil
import signal
import subprocess
import threading
import time
from collections import namedtuple
from dataclasses import dataclass
from pathlib import Path

CODE_PAGE = "cp1252"
DIALER = "dialer -> suite"


@dataclass
class Line:
    """One line of the stand-in's output: when, who, and what as text (bytes of the code page on the wire)."""
    milliseconds: int
    who: str
    text: str

    def __str__(self):
        return f"{self.milliseconds:7} ms  {self.who:16}  {self.text}"


class Item(namedtuple("Item", "kind window_class left top width height focus ticks text")):
    """A window or a control that the dialer shows; position and size in pixels of the screen."""

    @classmethod
    def parse(cls, said):
        kind, name, *place, focus, ticks, text = said.split("|", 8)
        return cls(kind, name, *map(int, place), focus == "focus", ticks.strip(), text.replace("\r\n", "\n"))

    @property
    def caption(self):
        """The text without the mark of the access key."""
        return self.text.replace("&", "")


class Session:
    """One dialer and one stand-in. Everything that belongs to the session lies in its folder: the program as it was
    built, its settings and logs, the simulator's log. `scenario` is what the line simulator plays; `tapi` says which
    telephony library Wine offers ("n,b" the simulator, "" none); `holdings` has the simulator log what the dialer holds
    at each start of telephony; `hear` is told each line at once."""

    def __init__(self, env, folder, scenario, tapi="n,b", holdings=False, hear=None):
        self.env, self.folder = env, Path(folder)
        self.lines = []
        self._hear = hear or (lambda line: None)
        self._arrived = threading.Condition()
        self._heard = 0
        shutil.rmtree(self.folder, ignore_errors=True)
        for name in ("data", "log", "base"):
            (self.folder / name).mkdir(parents=True)
        self.program = self.folder / "FonklavTAPI.exe"
        shutil.copyfile(env.build / "FonklavTAPI.exe", self.program)
        self.write("Rufmonpaths.ini", f"[Paths]\nProgramData={windows_path(self.folder)}\n")
        self.write("scenario.txt", scenario)
        self._environ = env.environ(WINEDLLOVERRIDES=f"mscoree,mshtml=;tapi32={tapi}",
                                    FONKLAV_SIM_SCENARIO=windows_path(self.folder / "scenario.txt"),
                                    FONKLAV_SIM_LOG=windows_path(self.folder / "sim.log"),
                                    FONKLAV_SIM_HOLDINGS="1" if holdings else "")

    def __enter__(self):
        self.suite = subprocess.Popen(["wine", str(self.env.build / "sim/suite.exe"), windows_path(self.program)],
                                      env=self._environ, cwd=self.folder, stdin=subprocess.PIPE,
                                      stdout=subprocess.PIPE, stderr=subprocess.DEVNULL)
        threading.Thread(target=self._read, daemon=True).start()
        return self

    def __exit__(self, *_):
        if self.suite.poll() is None:
            self.suite.stdin.close()
            try:
                self.suite.wait(10)
            except subprocess.TimeoutExpired:
                self.suite.kill()
        for pid in self.dialers():
            os.kill(pid, signal.SIGKILL)
        (self.folder / "conversation.txt").write_text(f"{self}\n", encoding="utf-8")

    # What the main program does.

    def do(self, command):
        """One command of the stand-in's script."""
        self.suite.stdin.write(command.encode(CODE_PAGE) + b"\n")
        self.suite.stdin.flush()

    def start(self, settings="", arguments="/run"):
        """Stores the dialer's settings and starts it."""
        self.write("data/sett_TAPI.ini", settings)
        self.do(f"start {arguments}")

    def send(self, command):
        """A command to the dialer, which is taken back once it was acknowledged."""
        self.do(f"send {command}")

    def end(self):
        """Ends the conversation; the dialer has to end with it, and well."""
        self.do("terminate")
        self.wait("dialer ended, exit code 0", who="suite")

    def wine(self, program, *arguments):
        """Runs another program beside the dialer, to its end."""
        return subprocess.run(["wine", str(program), *arguments], env=self._environ, stdout=subprocess.PIPE, timeout=60,
                              check=False)

    # What is heard of the dialer.

    def wait(self, prefix, seconds=10, who=DIALER):
        """Waits for the next line of this speaker that begins so, and returns it; later waits look behind it."""
        def found():
            for self._heard, line in enumerate(self.lines[self._heard:], self._heard + 1):
                if line.who == who and line.text.startswith(prefix):
                    return line
            return None

        line = self._until(found, seconds)
        assert line, f"nothing from {who} began with {prefix!r} within {seconds} s"
        return line

    def reports(self):
        """Everything that the dialer has reported so far."""
        return [line.text for line in self.lines if line.who == DIALER]

    def said(self, text):
        """How often the stand-in has said this."""
        return [line.text for line in self.lines].count(text)

    def wait_for_reports(self, count, seconds=10):
        """Waits until that many reports have come; whether they have."""
        return self._until(lambda: len(self.reports()) >= count, seconds)

    def settle(self, seconds=10):
        """Waits until the dialer has dealt with all that was said before. It answers in order: what it has not said by
        then it does not say. Neither the question nor its answer counts as part of the conversation."""
        begin = len(self.lines)
        self.send("debug|0")

        def answers():
            return [line for line in self.lines[begin:] if line.who == DIALER and line.text == "cmd|quitt"]

        said = self._until(answers, seconds)
        assert said, f"the dialer has not answered within {seconds} s"
        said[0].who = "settled"

    def wait_for_end(self, seconds=2):
        """Waits until no process of the dialer is left."""
        wait_until("the dialer has ended", lambda: not self.dialers(), seconds)

    def dialers(self):
        """The process ids of this session's dialer."""
        ours, running = windows_path(self.program).encode() + b"\0", []
        for process in Path("/proc").glob("[0-9]*"):
            with contextlib.suppress(OSError):  # ended meanwhile, or not ours to look at
                if (process / "cmdline").read_bytes().startswith(ours):
                    running.append(int(process.name))
        return running

    # What a person does and sees.

    def windows(self):
        """All that the dialer shows: each window, followed by its visible controls."""
        return [Item.parse(text) for text in self._look("windows")]

    def readings(self):
        """What a screen reader learns of each control that is seen: class, states as bits, name."""
        fields = (text.split("|", 2) for text in self._look("readings"))
        return [(kind, int(told.split()[1].replace("-", "0")), name) for kind, told, name in fields]

    def _look(self, command):
        first = len(self.lines)
        self.do(command)
        self.wait("end", who="screen")
        return [line.text for line in self.lines[first:self._heard - 1] if line.who == "screen"]

    def window(self, caption, seconds=10):
        """Waits for a window with this caption and returns it with its controls."""

        def now():
            shown = self.windows()
            starts = [index for index, item in enumerate(shown) if item.kind == "window"] + [len(shown)]
            parts = [shown[start:end] for start, end in zip(starts, starts[1:])]
            return next((part for part in parts if part[0].caption == caption), None)

        return wait_until(f"window {caption!r}", now, seconds)

    def wait_for_control(self, caption, seconds=5):
        """Waits until the dialer shows a control with this caption."""
        def shown():
            return any(caption in (item.caption, item.text) for item in self.windows())

        wait_until(f"control {caption!r}", shown, seconds)

    def click(self, place):
        """A click on what the dialer shows, as soon as it is there: a caption, "Edit 1", "box 1", "close" and so on."""
        self.do(f"click {place}")

    def keys(self, *names):
        """Keys one after the other, or some together: "alt+t"."""
        self.do(f"keys {' '.join(names)}")

    def xdotool(self, *words):
        """Synthetic input from outside of Wine: for what the stand-in has no words for, or no time."""
        subprocess.run(["xdotool", *map(str, words)], env=self._environ, check=True)

    def picture(self, path, item=None):
        """Saves what the screen shows where this window is, or all of it."""
        crop = ["-crop", f"{item.width}x{item.height}+{item.left}+{item.top}", "+repage"] if item else []
        subprocess.run(["import", "-window", "root", *crop, str(path)], env=self._environ, check=True)

    # Files of the session.

    def write(self, name, text):
        """A settings or language file in the code page, with the line ends of Windows."""
        (self.folder / name).write_bytes(text.replace("\n", "\r\n").encode(CODE_PAGE))

    def read(self, name):
        """The lines of a file that the program wrote; none when it does not exist."""
        path = self.folder / name
        return path.read_bytes().decode(CODE_PAGE).splitlines() if path.exists() else []

    def __str__(self):
        return "\n".join(str(line) for line in self.lines if line.who != "screen")

    def _until(self, met, seconds):
        """Looks whenever a line has come; what met() gave last."""
        with self._arrived:
            return self._arrived.wait_for(met, seconds)

    def _read(self):
        # Columns: 7 digits and " ms  ", the speaker in 16, two blanks, the text.
        for raw in self.suite.stdout:
            text = raw.decode(CODE_PAGE, "replace").rstrip("\n")
            line = Line(int(text[:7]), text[12:28].strip(),
                        re.sub(r"\\x([0-9a-f]{2})", lambda code: chr(int(code[1], 16)), text[30:]))
            with self._arrived:
                self.lines.append(line)
                self._arrived.notify_all()
            self._hear(line)


def wait_until(what, met, seconds=5):
    """Looks again and again until met() gives something that is true, and returns that."""
    end = time.monotonic() + seconds
    while not (found := met()):
        assert time.monotonic() < end, f"not within {seconds} s: {what}"
        time.sleep(0.02)
    return found


def private_kb(pid):
    """Memory that only this process has, in KB."""
    text = Path(f"/proc/{pid}/smaps_rollup").read_text()
    return sum(int(number) for number in re.findall(r"^Private_(?:Clean|Dirty): +(\d+) kB", text, re.M))


def windows_path(path):
    """A file of this system as a Windows program under Wine names it."""
    return "Z:" + str(Path(path).resolve()).replace("/", "\\")
