#!/usr/bin/env python3
"""The runner of the cases: what it tells of one that fails."""
import io
from contextlib import redirect_stdout, suppress

from conversations import STARTED
from stories import case, expect_reports, run, started


@case("a-failing-case-tells-what-was-seen")
def failing(name):
    """A report that nobody expected: the account shows it in its place, the calls, the logs, and the screen."""
    output = io.StringIO()
    with suppress(AssertionError), redirect_stdout(output), started(name, switches="LogTAPI=1\n") as session:
        expect_reports(session, STARTED[:1])
    told = output.getvalue()
    picture = session.folder / "screen.png"
    for part in (f"dialer -> suite   {STARTED[1]}", f"! {STARTED[1]!r:50}  None", "call lineInitializeEx(",
                 "TAPI FVT DDE LinkOpen", str(picture)):
        assert part in told, f"{part!r} is not in:\n{told}"
    assert picture.read_bytes().startswith(b"\x89PNG"), "no picture"


if __name__ == "__main__":
    run()
