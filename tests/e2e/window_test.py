#!/usr/bin/env python3
"""The window as a person has it: real clicks and keys, and what the program shows, reports and stores then."""
from contextlib import contextmanager

from conversations import ANSWERED, CALL, CAPTION, DIALED, HANG_UP, IDLE, SETTINGS, STARTED, open_panel
from dialer_session import wait_until
from stories import CALL_UP, calls, case, cases, dialer, equal, expect_reports, found, run, started

B_BOUND = ["Init2LastOK|1", "line|B"]
TWIPS = 15  # a pixel at 96 dpi
COLLAPSED, EXPANDED, WIDTH = 3435 // TWIPS, 6690 // TWIPS, 7080 // TWIPS
DISABLED, FOCUSED, READ_ONLY = 0x1, 0x4, 0x40  # STATE_SYSTEM_UNAVAILABLE and so on
WM_SYSCOLORCHANGE, WM_DPICHANGED = 0x15, 0x2E0


def control(items, window_class, index=0):
    """The index-th control of a window class, in tab order."""
    return [item for item in items if item.window_class == window_class][index]


def ticks(session):
    """The ticked entries, by number."""
    return control(session.window(CAPTION), "SysListView32").ticks


def type_into(session, index, keys):
    """Clicks the index-th one-line box that is seen and types."""
    session.click(f"Edit {index}")
    session.keys(*keys)


def hidden(session):
    """Whether the dialer shows nothing."""
    return session.windows() == []


@contextmanager
def settings_window(name, scenario="", *panel):
    """A dialer that was started with its window and, if asked for, a panel."""
    with dialer(name, scenario) as session:
        session.start(SETTINGS, "/sett")
        expect_reports(session, STARTED)
        if panel:
            open_panel(session, *panel)
        yield session


@case("another-line-is-ticked-and-saved")
def settings(name):
    """The way of a setting: tick, untick, code, OK."""
    with settings_window(name, "device name=B") as session:
        session.click("box 1")
        heard = [*STARTED, *B_BOUND]
        expect_reports(session, heard)
        equal(ticks(session), "1")
        session.click("caption")  # two clicks on one place would be a double click
        session.click("box 1")
        heard += B_BOUND
        expect_reports(session, heard)
        equal(ticks(session), "1")
        type_into(session, 0, ["9", "comma"])
        session.click("OK")
        heard += [*B_BOUND, "cmd|settchange"]
        expect_reports(session, heard)
        wait_until("OK hides the window", lambda: hidden(session))
        equal(found(session, "data/sett_TAPI.ini", "(.+)"),
              ["[TAPIDial]", "TAPILine=B", "TAPIAmtVW=9,", "[Dimensions]", "TopTAPI=600", "LeftTAPI=600"])


@case("panels-open-switch-and-close")
def panels(name):
    """The two buttons, the height and the focus, also after the window was shrunk by hand."""
    with settings_window(name) as session:

        def shown():
            window = session.window(CAPTION)
            captions = {item.caption for item in window}
            panel = "test" if "Nummer" in captions else "info" if "Geräte-Informationen " in captions else "none"
            focus = next((item.window_class for item in window[1:] if item.focus), "")
            return window[0].height, panel, focus

        def press(caption, expected):
            session.click(caption)
            wait_until(f"{caption}: {shown()} is not {expected}", lambda: shown() == expected)

        press("Test", (EXPANDED, "test", "Edit"))
        press("Test", (COLLAPSED, "none", "Button"))
        press("Geräte-Info", (EXPANDED, "info", "Button"))
        press("Test", (EXPANDED, "test", "Edit"))
        drag(session, "lower edge", by=(0, COLLAPSED // 2 - EXPANDED))
        wait_until("shrunk by hand", lambda: session.window(CAPTION)[0].height == COLLAPSED)
        press("Test", (EXPANDED, "test", "Edit"))
        drag(session, "corner", by=(100, 60))
        wait_until("grown by hand", lambda: session.window(CAPTION)[0].height == EXPANDED + 60)
        press("Test", (COLLAPSED, "none", "Button"))
        equal(session.window(CAPTION)[0].width, WIDTH + 100)


def drag(session, place, by):
    """Drags the lower edge of the window's frame, or its corner."""
    frame = session.window(CAPTION)[0]
    x = frame.left + (frame.width - 2 if place == "corner" else frame.width // 2)
    y = frame.top + frame.height - 2
    session.xdotool("mousemove", x, y, "mousedown", 1, "mousemove", x + by[0] // 2, y + by[1] // 2, "mousemove",
                    x + by[0], y + by[1], "mouseup", 1)


@case("grown-by-hand")
def grown(name):
    """What the user adds goes to list and boxes, the buttons keep their corner; the system's changes keep the ticks."""
    with settings_window(name, "device name=B", "Wählen") as session:
        before = session.window(CAPTION)
        drag(session, "corner", by=(100, 60))
        wait_until("grown", lambda: session.window(CAPTION)[0].height == EXPANDED + 60)
        changes = {}
        for old, new in zip(before, session.window(CAPTION)):
            key = new.window_class if new.window_class in ("SysListView32", "#32770") else new.caption
            changes[key or f"box {len(changes)}"] = (new.left - old.left, new.top - old.top, new.width - old.width,
                                                     new.height - old.height)
        for key, change in {"SysListView32": (0, 0, 100, 0), "ISDN-Line1": (0, 0, 100, 0), "OK": (100, 0, 0, 0),
                            "Auflegen": (100, 0, 0, 0), "Test ": (0, 0, 100, 60), "clear": (100, 60, 0, 0)}.items():
            equal(changes[key], change, f"{key}: {changes}")
        assert (0, 0, 100, 60) in [change for key, change in changes.items() if key.startswith("box")], changes
        session.do(f"tell {WM_SYSCOLORCHANGE} 0")
        session.do(f"tell {WM_DPICHANGED} {144 << 16 | 144}")
        wait_until("scaled", lambda: session.window(CAPTION)[0].width == (WIDTH + 100) * 3 // 2)
        before, after = (control(items, "SysListView32") for items in (before, session.window(CAPTION)))
        equal((after.ticks, after.height), ("0", before.height * 3 // 2))
        expect_reports(session, STARTED)


@case("settings-brings-the-window-back")
def brought_back(name):
    """Minimised or covered by another program, the command shows it."""
    with settings_window(name) as session:
        before = session.window(CAPTION)[0]
        session.click("minimize")
        wait_until("minimised", lambda: session.window(CAPTION)[0].width != before.width)
        session.send("settings")
        session.wait("cmd|quitt")
        wait_until("restored", lambda: session.window(CAPTION)[0] == before)
        session.do("cover")
        wait_until("the keyboard is the other program's", lambda: not any(item.focus for item in session.windows()))
        session.send("settings")
        expect_reports(session, [*STARTED, "cmd|quitt", "cmd|quitt"])
        # Not by the stand-in, whose window it was that covered this one: Wine was seen to lose such clicks.
        button = control(session.window(CAPTION), "Button", 4)
        session.xdotool("mousemove", button.left + 9, button.top + 9, "click", 1)
        wait_until("the click reached the window", lambda: hidden(session))


@case("a-long-number-is-dialed-or-replaced-as-a-whole")
def long_number(name):
    """The number of the start waits in its box. One that is shown by its beginning only: left alone it is dialed, one
    edit replaces all of it."""
    number = "0301234567" * 150
    with dialer(name, CALL_UP) as session:
        session.start(SETTINGS, "42")
        expect_reports(session, STARTED)
        equal((session.windows(), calls(session, "lineMakeCall")), ([], []))
        session.send("settings")
        open_panel(session)
        type_into(session, 1, ["ctrl+a", "ctrl+c"])

        def shown():
            return control(session.window(CAPTION), "Edit", 1).text

        for keys_pressed, left in ((["End"], number[:1000] + "…"), (["7"], "7"), (["BackSpace"], ""),
                                   (["Delete"], ""), (["ctrl+v"], "42"), (["shift+Insert"], "42"), (["ctrl+x"], ""),
                                   (["7", "ctrl+z"], "7")):
            session.send(f"cmd|call|{number}")
            session.wait("anzlog|Verbunden")
            session.keys(*keys_pressed)
            wait_until(f"{keys_pressed}: {shown()[:20]}", lambda left=left: shown() == left)
            session.send("cmd|hangup")
            session.wait("anzlog|Leerlauf")
            if keys_pressed != ["End"]:
                continue
            session.keys("Return")  # nobody has touched it: all of it is dialed
            session.wait("anzlog|Verbunden")
            equal(found(session, "sim.log", f"^call (lineTranslateAddress).*{number}"), ["lineTranslateAddress"] * 2)
            session.send("cmd|hangup")
            session.wait("anzlog|Leerlauf")


@case("dialed-by-hand")
def by_hand(name):
    """A number typed, copied and pasted, dialed by Enter and dropped by the button; the far end is the simulator's."""
    with settings_window(name, CALL_UP, "Wählen") as session:
        type_into(session, 1, ["0", "3", "0", "ctrl+a", "ctrl+c", "End", "ctrl+v"])
        session.wait_for_control("030030")
        session.keys("Return")
        heard = [*STARTED, *DIALED[1:], *ANSWERED]
        expect_reports(session, heard)
        session.keys("Return", "End", "7")  # there is nothing to dial while a call is up
        session.wait_for_control("0300307")
        expect_reports(session, heard)
        status = control(session.window(CAPTION), "Edit", 2)
        equal(status.text, "Anmeldung >> ISDN-Line1\nVorbereitung\nWählen\nKlingeln\nVerbunden\n")
        session.click("Auflegen")
        heard += [*HANG_UP[2:], "btnCall|1|cmdHangUp_Click", "anzlog|Call Dropped", *IDLE]
        expect_reports(session, heard)
        session.click("clear")
        wait_until("the status box is empty", lambda: control(session.window(CAPTION), "Edit", 2).text == "")
        type_into(session, 0, ["Return"])
        wait_until("Enter is OK elsewhere", lambda: hidden(session))
        expect_reports(session, [*heard, *STARTED, "cmd|settchange"])


@case("keys-do-what-a-dialog-does")
def keys(name):
    """A click selects a line and shows its report, Space ticks it, the access key opens the panel, Esc is Cancel."""
    with settings_window(name, "device name=B", "Geräte-Informationen ", "Geräte-Info") as session:
        session.click("entry 1")
        wait_until("the report", lambda: "TAPI LINE NAME: B" in control(session.window(CAPTION), "Edit", 1).text)
        equal(ticks(session), "0")
        expect_reports(session, STARTED)
        session.keys("space")
        expect_reports(session, [*STARTED, *B_BOUND])
        session.keys("alt+t")
        session.wait_for_control("Nummer")
        session.keys("Escape")
        wait_until("Esc hides the window", lambda: hidden(session))
        expect_reports(session, [*STARTED, *B_BOUND, *STARTED, *STARTED])


@case("served-by-keyboard-and-screen-reader-alone")
def read_aloud(name):
    """Each control's name and state as a screen reader is told, and the way of the Tab key through all of them. Wine 8.0
    tells less than Windows: no role but a text box's, nothing of the list's entries and ticks, and of the names that the
    program sets none: it names a box by the label before it."""
    with settings_window(name, CALL_UP, "Wählen") as session:

        def told(window_class, mask=DISABLED | READ_ONLY):
            return [(text, bits & mask) for kind, bits, text in session.readings() if kind == window_class]

        equal(told("Button"), [("TAPI Geräte ", 0), ("Geräte-Info", 0), ("Test", 0), ("OK", 0), ("Abbrechen", 0),
                               ("Test ", 0), ("Wählen", DISABLED), ("Auflegen", DISABLED), ("clear", 0)])
        equal(told("Edit"), [("Amtskennzahl", 0), ("Nummer", 0), ("Nummer", READ_ONLY)])
        session.keys("1")
        wait_until("there is a number to dial", lambda: ("Wählen", 0) in told("Button"))

        def focused():
            return next(((kind, text) for kind, bits, text in session.readings() if bits & FOCUSED), None)

        way = [("Edit", "Nummer")]
        while len(way) < 11:
            wait_until(f"the keyboard at {way[-1]}", lambda: focused() == way[-1])
            session.keys("Tab")
            way.append(wait_until("the next", lambda: focused() not in (None, way[-1]) and focused()))
        equal(way, [("Edit", "Nummer"), ("Button", "Wählen"), ("Edit", "Nummer"), ("Button", "clear"),
                    ("SysListView32", ""), ("Edit", "Amtskennzahl"), ("Button", "Geräte-Info"), ("Button", "Test"),
                    ("Button", "OK"), ("Button", "Abbrechen"), ("Edit", "Nummer")])


def close_by_keys(session):
    session.click("caption")
    session.keys("alt+F4")


CLOSINGS = {
    "close-box": (lambda session: session.click("close"), 0),
    "system-key": (close_by_keys, 0),
    "ok": (lambda session: session.click("OK"), 1),
    "cancel": (lambda session: session.click("Abbrechen"), 1),
}


@cases({f"{way}-{end}": (*closing, linked) for way, closing in CLOSINGS.items() for end, linked in (
    ("hides-while-linked", True), ("ends-without-a-link", False))})
def closing_the_window(name, close, mode, linked):
    """Each way to close it, and what it means."""
    with dialer(name) as session:
        session.write("Rufmonspec.ini", "[Debug]\nLogTAPI=1\n")
        if not linked:
            session.do("misbehave offline 1")
        session.start(SETTINGS, "/sett")
        session.window(CAPTION)
        close(session)
        if linked:
            wait_until("the window hides", lambda: hidden(session))
        else:
            session.wait_for_end(seconds=5)
        equal(found(session, "log/debug.log", "FormFonklav_(.*)"),
              [f"QueryUnload - Param={mode}", "QueryUnload - Cancel" if linked else "Unload"])
        if linked:
            session.do("terminate")  # which cannot be done any more where the dialer has gone
            session.wait("dialer ended, exit code 0", who="suite")


@case("windows-ends-the-session")
def session_end(name):
    """Linked or not, the program goes at once, gives its call back and writes what the trace still holds."""
    with started(name, CALL_UP, CALL, "LogTAPI=1\nTraceMode=1\n") as session:
        session.wine("wineboot", "--end-session")
        session.wait_for_end(seconds=5)
        equal(found(session, "log/debug.log", "FormFonklav_(.*)"), ["QueryUnload - Param=2", "Unload"])
        equal([line.split("(")[0] for line in calls(session, "lineDeallocateCall", "lineClose", "lineShutdown")][-3:],
              ["call lineDeallocateCall", "call lineClose", "call lineShutdown"])
        assert any("fMain.Form_Unload" in line for line in session.read("log/trace.log")), "the trace lost its end"


@case("texts-from-a-file-key-by-key")
def texts(name):
    """Of a file in which every second key is empty or missing, each text is the right one of the two."""
    with dialer(name) as session:
        session.write("data/Rufmon.ini", "[General]\nLanguage=44\n")
        session.write("base/language_44.ini", "[Data]\nSettings_Label_HeadTAPI=Dialling aid\nDisplay_Menu_Settings=\n"
                      "TAPIConfig_Button_Test=&Try\nTAPIConfig_Button_DeviceInfo=\nButton_OK=Good<TAB>\n"
                      "TAPIConfig_Label_NationalPrefix2=a<cr>b\nSettings_String_TAPIDevice=\" Lines \"\n")
        session.start(SETTINGS, "/sett")
        session.window("Rufmon -  Dialling aid Einstellungen")
        for text in ("&Try", "Geräte-&Info", "Good\t", "A&bbrechen", "a<cr>b", " Lines "):
            session.wait_for_control(text)


@case("names-of-every-kind")
def names(name):
    """Two hundred lines and odd names: listed, bound, reported, usable by the keyboard."""
    odd = ["Ü" * 200, "Zürich \\x80", "with\\x09tab", "\\x20"]
    scenario = "".join(f'device name="{text}"\n' for text in odd) + "repeat 200 device name=Line{n}\n"
    with dialer(name, scenario) as session:
        session.start("[TAPIDial]\nTAPILine=Line200\n", "/sett")
        heard = ["Init2LastOK|1", "line|Line200"]
        expect_reports(session, heard)
        session.click("entry 1")
        session.keys("space")
        expect_reports(session, [*heard, "Init2LastOK|1", "line|" + "Ü" * 200])
        session.keys("End", "space")
        expect_reports(session, [*session.expected, *heard])


if __name__ == "__main__":
    run()
