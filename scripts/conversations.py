"""What is said about a call, written down once for the demo and the end-to-end tests: the dialer's reports by the stage
of the call, with the German texts that it has without any language file. A line that begins with "> " is a command of
the main program."""

CAPTION = "Rufmon -  TAPI Wählhilfe Einstellungen"
SETTINGS = "[TAPIDial]\nTAPILine=ISDN-Line1\n"

STARTED = ["Init2LastOK|1", "line|ISDN-Line1"]
DIALED = ["cmd|quitt", "anzlog|Anmeldung >> ISDN-Line1", "btnHangUp|1", "anzlog|Vorbereitung"]
DIAL = ["> cmd|call|0301234567", *DIALED]
ANSWERED = ["anzlog|Wählen", "anzlog|Klingeln", "btnHangUp|1", "anzlog|Verbunden", "cmd|autohide"]
CALL = [*DIAL, *ANSWERED]
FAR_END_HUNG_UP = ["btnHangUp|0", "anzlog|Getrennt", "cmd|autohide", "anzlog|Call Dropped"]
IDLE = ["btnCall|1|Idle", "btnHangUp|0", "anzlog|Leerlauf", "cmd|autohide"]
WHOLE_CALL = [*CALL, *FAR_END_HUNG_UP, *IDLE]
HANG_UP = ["> cmd|hangup", "cmd|quitt", "btnHangUp|0|cmdHangUp_Click", "anzlog|Auflegen"]


def open_panel(session, shows="Wählen", button="Test"):
    """Opens the panel of the settings window that shows this control."""
    session.click(button)
    session.wait_for_control(shows)
