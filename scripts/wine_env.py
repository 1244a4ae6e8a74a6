#!/usr/bin/env python3
"""One Wine prefix and one invisible screen, shared by all programs of a run.

wine_env.py start FOLDER   makes the prefix in FOLDER if it is not there yet, and starts the screen
wine_env.py stop FOLDER    ends everything that runs in the prefix, and the screen
"""
import json
import os
import shutil
import signal
import subprocess
import sys
from pathlib import Path

SCREEN = "1600x1200x24"


class WineEnv:
    """The prefix FOLDER/prefix and its screen, whose number is kept in FOLDER/screen.json between processes."""

    def __init__(self, folder):
        self.folder = Path(folder).resolve()
        self.prefix = self.folder / "prefix"
        self._screen_file = self.folder / "screen.json"

    def start(self):
        """Leaves a prefix that is ready and a screen that runs. What an aborted run left behind is ended first."""
        self.stop()
        self.folder.mkdir(parents=True, exist_ok=True)
        self._start_screen()
        if not (self.folder / "prefix.ready").exists():
            self._make_prefix()

    def stop(self):
        """Ends the programs of this prefix and this screen, and no others. Does nothing when none run."""
        if self.prefix.exists():
            subprocess.run(["wineserver", "-k"], env=self.environ(), check=False, stderr=subprocess.DEVNULL)
        if self._screen_file.exists():
            pid = json.loads(self._screen_file.read_text())["pid"]
            self._screen_file.unlink()
            # The number may belong to somebody else by now.
            if Path(f"/proc/{pid}/comm").exists() and Path(f"/proc/{pid}/comm").read_text().strip() == "Xvfb":
                os.kill(pid, signal.SIGTERM)

    def environ(self, **more):
        """The environment for any program of this run."""
        # Under the C locale Wine finds no file whose name has an umlaut.
        result = {**os.environ, "LC_ALL": "C.UTF-8", "WINEPREFIX": str(self.prefix), "WINEARCH": "win64",
                  "WINEDEBUG": "-all", **more}
        result.setdefault("WINEDLLOVERRIDES", "mscoree,mshtml=")
        if self._screen_file.exists():
            result["DISPLAY"] = f":{json.loads(self._screen_file.read_text())['display']}"
        return result

    def drive_c(self, *parts):
        """A path on the prefix's drive C."""
        return self.prefix.joinpath("drive_c", *parts)

    def install_tapi(self, dll):
        """Puts the line simulator where Windows has its telephony library: the dialer looks nowhere else. To programs
        of 32 bits, another folder goes by the name of the system folder."""
        target = self.drive_c("windows", "syswow64" if is_32_bit(dll) else "system32", "tapi32.dll")
        if not target.exists() or target.read_bytes() != Path(dll).read_bytes():
            shutil.copyfile(dll, target)

    def set_registry(self, key, name, kind, value):
        """Writes one value and waits until it is kept."""
        self._wine("reg", "add", key, "/v", name, "/t", kind, "/d", value, "/f")

    def _start_screen(self):
        # The server picks a free display itself and tells its number.
        reading, writing = os.pipe()
        with open(self.folder / "xvfb.log", "wb") as log:
            server = subprocess.Popen(["Xvfb", "-displayfd", str(writing), "-screen", "0", SCREEN, "-nolisten", "tcp"],
                                      pass_fds=[writing], stdin=subprocess.DEVNULL, stdout=log, stderr=log,
                                      start_new_session=True)
        os.close(writing)
        with os.fdopen(reading) as answer:
            display = answer.readline().strip()
        if not display:
            raise RuntimeError(f"no screen: see {self.folder / 'xvfb.log'}")
        self._screen_file.write_text(json.dumps({"display": int(display), "pid": server.pid}))

    def _make_prefix(self):
        print("Making a Wine prefix (about 10 seconds, once)", flush=True)
        shutil.rmtree(self.prefix, ignore_errors=True)
        self._wine("wineboot", "-i")
        # The signs on the buttons of a caption are letters of this font, which Wine finds in the prefix only.
        shutil.copy("/usr/share/wine/fonts/marlett.ttf", self.drive_c("windows", "Fonts"))
        # Without a window manager Wine draws frame and caption itself, if it is told that there is none.
        self.set_registry(r"HKCU\Software\Wine\X11 Driver", "Managed", "REG_SZ", "N")
        subprocess.run(["wineserver", "-w"], env=self.environ(), check=True)
        (self.folder / "prefix.ready").touch()

    def _wine(self, *command):
        subprocess.run(["wine", *command], env=self.environ(), check=True, stdin=subprocess.DEVNULL,
                       stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)


def is_32_bit(file):
    """Whether this program or library is for 32-bit Windows: the machine's number stands behind the signature."""
    data = Path(file).read_bytes()
    header = int.from_bytes(data[0x3C:0x40], "little")
    return data[header:header + 6] == b"PE\0\0\x4c\x01"


def main():
    commands = {"start": WineEnv.start, "stop": WineEnv.stop}
    if len(sys.argv) != 3 or sys.argv[1] not in commands:
        sys.exit(__doc__)
    commands[sys.argv[1]](WineEnv(sys.argv[2]))


if __name__ == "__main__":
    main()
