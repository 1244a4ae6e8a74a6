#!/usr/bin/env python3
"""Writes the end-to-end tests' cases out as scripts of the suite stand-in, for machines without Python: each is run
with a session that writes down what it is told and what is asked of it, and answers every question as expected. A case
that wants more than the stand-in can do is left out, and named in FOLDER/left-out.txt.

windows_check.py FOLDER    fills FOLDER/line with all cases, FOLDER/product with those that need no line of their own
"""
import importlib
import re
import sys
from pathlib import Path

ROOT = Path(__file__).resolve().parent.parent
sys.path += [str(ROOT / "scripts"), str(ROOT / "tests/e2e")]

import conversations
import dialer_session
import stories
from dialer_session import Session

TOPICS = ("start", "dial", "link", "window", "logs")
# What a story may not do where the machine's own telephony answers, or cannot expect of it.
NOT_FOR_THE_PRODUCT = re.compile(r"\|call\||^click Wählen|^keys .*Return|^expect (Init2|line\||log\||anz)|ISDN"
                                 r"|^has SysListView32|^remove line|^found sim\.log\t.*\t", re.I | re.M)
OF_THE_SIMULATOR = re.compile(r"^((append|remove) scenario\.txt|given-back|found sim\.log).*\n", re.MULTILINE)


class NotWritten(Exception):
    """The stand-in has no words for this."""


class Unknown:
    """What only a run would tell. It stands for one thing, and no question about that can be answered here."""

    def _refuse(self, *_, **__):
        raise NotWritten("it looks at what it finds by itself")

    __getattr__ = __getitem__ = __iter__ = _refuse

    def __len__(self):
        return 1


class Answer(Unknown):
    """The answer to a question, which will be what it is compared with: `expect` writes that down."""

    def __init__(self, expect):
        self.expect = expect

    def __eq__(self, expected):
        self.expect(expected)
        return True

    def __contains__(self, part):
        self.expect(part, ".*")
        return True


class Shown(Unknown):
    """A control by its class and its place in the tab order; without them a window."""

    def __init__(self, story, window_class="", index=0):
        self.story, self.name = story, f"{window_class} {index}"
        self.text = self.ticks = Answer(self._has)

    def _has(self, text, around=""):
        content = one_line(text.replace("\n", "\r\n"))
        ticks = " " * self.name.startswith("SysListView32")
        self.story.do(f"has {self.name}\t{around}{re.escape(content)}{ticks}{around}")


def one_line(text):
    """As the stand-in prints it."""
    return re.sub(r"[\0-\x1f\x7f\\]", lambda sign: f"\\x{ord(sign[0]):02x}", text)


class Story(Unknown):
    """A session that is written down: Session says what each procedure means."""

    def __init__(self, scenario, tapi="n,b", errors=False):
        self.lines, self.expected, self.compared, self.errors = [], (), 0, errors
        self.suite, self.scenario = self, scenario or ""
        self.write("scenario.txt", stories.TELEPHONY + self.scenario)
        if not tapi:
            self.do("remove line.dll")

    def __enter__(self):
        return self

    def __exit__(self, *_):
        if not {"exit", "kill"} & set(self.lines):
            self.do("exit")
        if not self.errors:
            stories.equal(self.read("log/error.log"), [])

    def text(self):
        return "".join(f"{line}\n" for line in self.lines)

    def do(self, command):
        self.lines.append(command)

    def write(self, name, text):
        self.do(f"remove {name}")
        for line in text.splitlines():
            self.do(f"append {name} {line}")

    start, send, click, keys = Session.start, Session.send, Session.click, Session.keys

    def kill(self):
        self.do("kill")

    def wait(self, prefix, **_):
        self.do(f"wait {prefix}")
        return Unknown()

    def wait_for_reports(self, count):
        for report in self.expected[self.compared:count]:
            self.do(f"expect {one_line(report)}")
        self.compared = max(self.compared, min(count, len(self.expected)))
        return True

    def reports(self):
        self.wait_for_reports(len(self.expected))
        return list(self.expected)

    def settle(self, **_):
        self.do("settle")

    def wait_for_end(self, **_):
        self.do("gone")

    def said(self, text):
        return Answer(lambda count: self.do(f"said {count} {text}"))

    def windows(self):
        return Answer(lambda none: self.do("hidden"))

    def window(self, caption):
        self.do(f"has {one_line(caption)}\t.*")
        return Shown(self)

    wait_for_control = window

    def read(self, file):
        return self.found(file, "(.*)")

    def found(self, file, pattern):
        return Answer(lambda texts: self.do("\t".join([f"found {file}", pattern, *map(one_line, texts)])))


def wait_until(what, met, seconds=5):
    """The stand-in waits in each of its looks."""
    if not met():
        raise NotWritten(what)


def stories_told():
    """Name, story and, where it cannot be told, the reason for each case."""
    told = []
    dialer_session.wait_until = wait_until
    stories.dialer = lambda name, scenario="", **more: told.append(Story(scenario, **more)) or told[-1]
    stories.found, stories.given_back = Story.found, lambda story: story.do("given-back sim.log")
    for topic in TOPICS:
        module = importlib.import_module(f"{topic}_test")
        module.control = lambda window, name, index=0: Shown(window.story, name, index)
        module.drag = Unknown._refuse
        for name in list(stories.CASES):
            told.clear()
            try:
                stories.CASES.pop(name)(name)
                yield f"{topic}.{name}", told[0], "" if len(told) == 1 else "it has several sessions"
            except (NotWritten, AssertionError) as reason:
                yield f"{topic}.{name}", None, str(reason)


def for_product(story):
    """The story on whatever telephony the machine has: which of the known starts it is, is left open, and whether the
    error log tells of a telephony without lines. None when the story needs the simulator's, or dials."""
    start = importlib.import_module("start_test")
    wanted = re.search("TAPILine=(.*)|$", story.text())[1]
    usual = "".join(f"expect {report}\n" for report in conversations.STARTED)
    text = story.text().replace(usual, f"started line|Gerät {wanted} nicht verfügbar!\tline|{start.NO_TAPI}\n")
    judged = re.sub(r"^(started|append|remove data) .*", "", text, flags=re.MULTILINE)
    if NOT_FOR_THE_PRODUCT.search(judged) or re.search("^(?!call|drop|$)", story.scenario, re.MULTILINE):
        return None
    text = OF_THE_SIMULATOR.sub("", text).replace("error.log\t(", "error.log\t^(?!.* CvbTAPILine[.])(")
    return f"box {start.NO_AREA_CODES}\n{text}"


def write(folder, text):
    """A story in two parts: the second stand-in looks what has come of it when the first one has gone."""
    folder.mkdir(parents=True)
    first, second = re.split(r"^(?<=exit\n|kill\n)", text, 1, re.MULTILINE)
    for name, part in [("1.txt", first), ("2.txt", second)]:
        (folder / name).write_text(part, encoding=dialer_session.CODE_PAGE, newline="\r\n")


def main():
    folder = Path(sys.argv[1])
    left_out = []
    for name, story, reason in stories_told():
        if reason:
            left_out.append(f"LEFT OUT  {name}: {reason}\n")
            continue
        write(folder / "line" / name, story.text())
        if product := for_product(story):
            write(folder / "product" / name, product)
    with Story("call reply after=0\ncall state idle after=0\n") as story:
        story.start(conversations.SETTINGS)
        story.expected = conversations.STARTED
        story.reports()
        for dial in range(1, 1001):
            story.send("cmd|call|0301234567")
            story.wait("anzlog|Leerlauf")
            if dial in (100, 1000):
                story.do("handles")
        story.send("settings")
        story.window(conversations.CAPTION)
        story.do("readings")
    write(folder / "line/facts", story.text())
    with Story(stories.FAR_END_HANGS_UP) as story:
        # The stand-in starts the example of a main program, and that the dialer.
        story.do("misbehave offline 1")
        story.start(conversations.SETTINGS, "FonklavTAPI.exe 0301234567")
        story.wait("dialer ended, exit code 0")
        stories.given_back(story)
    write(folder / "line/link.partner-on-the-library", story.text())
    (folder / "left-out.txt").write_text("".join(left_out))


if __name__ == "__main__":
    main()
