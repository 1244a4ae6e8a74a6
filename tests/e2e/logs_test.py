#!/usr/bin/env python3
"""The logs of the real program: what they hold after a whole call, and calls that go on when they cannot be written."""
import os
import re
import signal
import time
from pathlib import Path

from conversations import SETTINGS, STARTED, WHOLE_CALL
from stories import FAR_END_HANGS_UP, case, converse, dialer, equal, expect_reports, found, run, started

STAMP = r"\d{4}/\d\d/\d\d  \d\d:\d\d:\d\d  "
PAGE = (Path(__file__).parents[2] / "docs/logs.md").read_text(encoding="utf-8")
FORMS = {
    "log/error.log": STAMP + r"FVT v1\.0 [\w.]+, Line:[ \d]{2}\d+  \+ \d+ \+ [\w /'.]+( Params\(.*\))?",
    "log/trace.log": STAMP + r"FVT v1\.0  [\w.!]+ \d\d+(\(.*\))?",
    "log/debug.log": STAMP + r"TAPI FVT .+",
}
ALL_ON = "".join(f"{key}=1\n" for key in ("LogExport", "LogCAPI", "LogAVM", "LogNCID", "LogTAPI", "LogOther",
                                          "TraceMode", "LogTiming"))


@case("every-switch-on")
def every_switch(name):
    """Every line of all three logs, and of their page, has its form; they tell the call and a fault from start to end."""
    with started(name, FAR_END_HANGS_UP, [*WHOLE_CALL, "> debug|maybe\ttab", "cmd|quitt"], ALL_ON, True) as session:
        session.do("terminate")
        session.wait_for_end(seconds=5)
        for log, form in FORMS.items():
            shown = re.findall(f"^    ({STAMP}.*)", PAGE.split(f"### {log[4:]}")[1].split("###")[0], re.M)
            assert shown and all(re.fullmatch(form, line) for line in shown), f"{log} is shown otherwise on its page"
            equal(found(session, log, f"^(?!{form}$)(.*)"), [], log)
        steps = ["Start - Param=/run", "Init DDE", "DDE LinkOpen", "DDE Execute - cmd|call|0301234567", "TAPIIdle",
                 "DDE LinkClose", "FormFonklav_QueryUnload - Param=1", "FormFonklav_Unload"]
        equal(found(session, "log/debug.log", f"FVT ({'|'.join(map(re.escape, steps))})$"), steps)
        equal(found(session, "log/trace.log", r"  !ERROR! 01\(S:.*(Type mismatch)"), ["Type mismatch"])
        equal(found(session, "log/error.log", " Params(.*)"), ["(S:debug|maybe#[9]tab)"])


@case("logs-held-open-by-another-program")
def held(name):
    """The call goes on; once the files are free again, what was traced meanwhile is written."""
    with dialer(name, FAR_END_HANGS_UP) as session:
        session.write("Rufmonspec.ini", "[Debug]\n" + ALL_ON)
        for log in FORMS:
            session.do(f"hold {log}")
        session.start(SETTINGS)
        converse(session, [*STARTED, *WHOLE_CALL])
        for log in FORMS:
            equal(session.read(log), [])
        equal(session.windows(), [])
        session.do("release")
        session.settle()
        session.do("terminate")
        session.wait_for_end(seconds=5)
        equal(found(session, "log/trace.log", "(fMain.Form_Load 01)"), ["fMain.Form_Load 01"])
        equal(found(session, "log/debug.log", "(DDE LinkClose)"), ["DDE LinkClose"])


@case("two-programs-append-to-one-log")
def two_writers(name):
    """Another program appends to the debug log all the while: no line of either is lost or torn, and a third one that
    opens the log without asking anybody is never refused."""
    with started(name, switches="LogTAPI=1\n") as session:
        log = "log/debug.log"
        for number in range(300):
            session.do(f"set frob {number}")
            session.do(f"knock {log}")
            for part in "abc":
                session.do(f"append {log} the other program, line {number}{part}")
        session.settle(seconds=30)
        equal(found(session, "log/debug.log", "^(the other.*)"),
              [f"the other program, line {number}{part}" for number in range(300) for part in "abc"])
        equal(found(session, "log/debug.log", "Execute - (frob.*)"), [f"frob {number}" for number in range(300)])
        equal(found(session, "log/debug.log", f"^(?!the other|{FORMS['log/debug.log']}$)(.*)"), [])


@case("the-lock-of-a-log-is-kept")
def locked(name):
    """A dialer that hangs within a log costs the others one wait, not one a line, and none of their lines."""
    with dialer(name) as session:
        session.write("Rufmonspec.ini", "[Debug]\nLogTAPI=1\n")
        session.do("lock log/debug.log")
        session.start(SETTINGS)
        expect_reports(session, STARTED)
        for number in range(100):
            session.do(f"set frob {number}")
        session.settle(seconds=5)
        equal(found(session, "log/debug.log", "(frob.*)"), [f"frob {number}" for number in range(100)])


@case("two-dialers-cut-one-error-log")
def two_dialers(name):
    """Both write each of 300 errors at the same moment, and cut the log as it grows: what stays is whole, and is the
    newest."""
    with dialer(name, errors=True) as session:
        session.write("log/error.log", "an old line\n" * 4000)
        for _ in range(2):
            session.start(SETTINGS)
            session.wait(STARTED[-1])
        # A command is acknowledged before it fails; the last one, which is in order, comes when all else is written.
        for said in [*(f"maybe {number:03}" for number in range(300)), "0"]:
            session.do(f"set debug|{said}")
            for _ in range(2):
                session.wait("cmd|quitt")
        lines = [line for line in session.read("log/error.log") if line != "an old line"]
        assert 300 < len(lines) < 600, f"{len(lines)} lines: the log was not cut, or too much"
        equal([line for line in lines if not re.fullmatch(FORMS["log/error.log"], line)], [])
        said = sorted(re.search(r"maybe (\d+)\)$", line)[1] for line in lines)
        # One may be a few errors ahead of the other, so the first that stayed need not come in pairs.
        equal(said[10:], [f"{number:03}" for number in range(300) for _ in range(2)][-len(said):][10:])


OLD_LINES = [f"2015/03/07  09:05:31  FVT v1.0 an old line with the number {number:08}" for number in range(150_000)]


@case("killed-while-the-error-log-is-cut")
def killed(name):
    """At whatever moment the program dies, the error log is whole: the old one or the new one."""
    outcomes = set()
    for milliseconds in (0, 5, 10, 20, 40, 80, 160, 2000):
        with started(name, errors=True) as session:
            session.write("log/error.log", "\n".join(OLD_LINES) + "\n")
            session.do("send debug|maybe")
            session.wait("cmd|quitt")
            time.sleep(milliseconds / 1000)
            for pid in session.dialers():
                os.kill(pid, signal.SIGKILL)
            session.wait("dialer ended", who="suite")
            lines = session.read("log/error.log")
            if len(lines) < len(OLD_LINES):
                equal(lines[:-1], OLD_LINES[-len(lines) + 1:])
                assert lines[-1].endswith("Params(S:debug|maybe)"), lines[-1]
                assert (session.folder / "log/error.log").stat().st_size < 51 * 1024
            else:
                equal(lines, OLD_LINES)
            outcomes.add(len(lines) < len(OLD_LINES))
    assert True in outcomes, "the log was never cut: the test has seen nothing"


if __name__ == "__main__":
    run()
