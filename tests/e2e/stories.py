"""What the end-to-end scripts share: a list of named cases, a dialer at work, and comparing what it said."""
import os
import re
import sys
from contextlib import contextmanager
from itertools import zip_longest

from conversations import SETTINGS, STARTED
from dialer_session import Session
from wine_env import WineEnv

CASES = {}
TELEPHONY = "device name=ISDN-Line1 media=4\nlocation country=49 city=30\n"
CALL_UP = "call reply after=20\ncall state dialing after=40\ncall state connected after=60\n"
FAR_END_HANGS_UP = CALL_UP + "call state disconnected after=200\n"


class Case(Session):
    """A session that tells what a person needs to know when the case fails."""

    expected = ()  # the conversation so far, where the case has one in mind
    errors = False  # whether errors are logged, which the case itself looks at

    def __exit__(self, kind, fault, trace):
        undone = [line.text for line in self.lines if line.text.startswith("FAILED")]
        if fault or undone:
            print("\n".join(self.account()), flush=True)
            picture = self.folder / "screen.png"
            self.picture(picture)
            print(f"The screen: {picture}", flush=True)
        super().__exit__(kind, fault, trace)
        assert fault or not undone, f"the stand-in could not do what it was told: {undone}"
        assert fault or self.errors or not self.read("log/error.log"), "an error was logged"

    def account(self):
        """The conversation, beside the reports that were expected; telephony's calls; the ends of the logs."""
        yield from ["The conversation:", str(self)]
        if self.expected:
            yield from ["The reports (left), and those expected (right):", side_by_side(self.reports(), self.expected)]
        yield from ["Telephony:", *calls(self)]
        for log in ("log/error.log", "log/trace.log", "log/debug.log"):
            yield from [f"The end of {log}:", *self.read(log)[-20:]]


def case(name):
    """Names a function as a case that CTest runs on its own."""

    def remember(function):
        assert name not in CASES, name
        CASES[name] = function
        return function

    return remember


def cases(rows):
    """Makes a case of each row of a table: the function is given the name and what the row holds."""

    def remember(function):
        for name, row in rows.items():
            case(name)(lambda name, row=row: function(name, *row))

    return remember


def dialer(name, scenario="", errors=False, **more):
    """A session with a line simulator that plays `scenario`, the text of a scenario file. Its folder is named after
    the case and stays for a look after a failure."""
    env = WineEnv(os.environ["FONKLAV_BUILD"])
    session = Case(env, env.build / "e2e" / name, TELEPHONY + scenario, **more)
    session.errors = errors
    return session


@contextmanager
def started(name, scenario="", story=(), switches="", errors=False):
    """A session whose dialer was started with these switches for debugging, and has had this conversation."""
    with dialer(name, scenario, errors=errors) as session:
        session.write("Rufmonspec.ini", f"[Debug]\n{switches}")
        session.start(SETTINGS)
        converse(session, [*STARTED, *story])
        yield session


def converse(session, story):
    """Plays a whole conversation. The main program says what begins with "> ", and the stand-in does what begins with
    "! ", as soon as all reports before have arrived; the others are the reports, exactly these and in this order."""
    session.expected = []
    for line in story:
        if line.startswith(("> ", "! ")):
            session.wait_for_reports(len(session.expected))
            (session.send if line.startswith(">") else session.do)(line[2:])
        else:
            session.expected.append(line)
    expect_reports(session, session.expected)


def expect_reports(session, expected):
    """Waits for as many reports as are expected, and for the dialer to have nothing more to say; then compares all of
    them."""
    session.expected = expected
    if session.wait_for_reports(len(expected)):
        session.settle()
    compare_reports(session)


def compare_reports(session):
    """All reports so far with those expected so far."""
    assert session.reports() == list(session.expected), "the reports are not those expected"


def calls(session, *functions):
    """The calls of these telephony functions, or of all, that the simulator has recorded, as it writes them."""
    return found(session, "sim.log", rf"^(call (?:{'|'.join(functions) or '[^(]*'})\(.*)")


def found(session, file, pattern):
    """What the group of a pattern stands for in each line of a file that has it."""
    return [match[1] for line in session.read(file) if (match := re.search(pattern, line))]


def expect_clean_end(session):
    """The dialer ends by itself, has said nothing more, leaves neither line nor registration behind, and no error."""
    session.wait_for_end(seconds=2)
    compare_reports(session)
    given_back(session)
    equal(session.read("log/error.log"), [])


def given_back(session):
    """Every line that was opened was closed, every registration shut down, and this came last."""
    given = [line.split("(")[0] for line in calls(session, "lineClose", "lineShutdown")]
    earlier = len(calls(session, "lineInitializeEx")) - 1
    equal(given, ["call lineShutdown"] * earlier + ["call lineClose"] * len(calls(session, "lineOpen"))
          + ["call lineShutdown"])


def equal(actual, expected, context=""):
    """Compares two values, and lists line by line when they are lists."""
    if actual == expected:
        return
    shown = side_by_side(actual, expected) if isinstance(expected, list) else f"{actual!r}\n{expected!r}"
    raise AssertionError(f"what was (left) is not what was expected (right):\n{shown}\n\n{context}")


def side_by_side(left, right):
    """Both lists line by line, with a mark where they differ."""
    pairs = zip_longest(left, right)
    return "\n".join(f"{'  ' if a == b else '! '}{a!r:50}  {b!r}" for a, b in pairs)


def run():
    """--list prints the names of the cases; a name runs one of them, none runs all."""
    if sys.argv[1:] == ["--list"]:
        print("\n".join(CASES))
        return
    for name in sys.argv[1:] or CASES:
        CASES[name](name)
        print(f"{name}: passed", flush=True)
