#!/usr/bin/env python3
"""One Wine prefix and one invisible screen, shared by all programs of a run.

wine_env.py start BUILD    makes the prefix of this build's folder if it is not there yet, and starts the screen
wine_env.py stop BUILD     ends everything that runs in the prefix, and the screen
"""
import os
import shutil
import signal
import subprocess
import sys
from pathlib import Path

ROOT = Path(__file__).resolve().parent.parent
WIN64 = ROOT / "build/win64"


def build(preset, *targets):
    """Builds what a script is about to run."""
    for command in (["cmake", "--preset", preset], ["cmake", "--build", "--preset", preset, *targets]):
        subprocess.run(command, cwd=ROOT, check=True, stdout=subprocess.DEVNULL)


class WineEnv:
    """The prefix BUILD/wine/prefix with the line simulator of that build, and its screen, whose number is kept beside
    the prefix between processes. As a context manager: started, and stopped at the end."""

    def __init__(self, folder=WIN64):
        self.build = Path(folder).resolve()
        self.folder = self.build / "wine"
        self.prefix = self.folder / "prefix"
        self._screen = self.folder / "screen"  # the display's number, and the server's process

    def __enter__(self):
        self.start()
        return self

    def __exit__(self, *_):
        self.stop()

    def start(self):
        """Leaves a prefix that is ready and a screen that runs. What an aborted run left behind is ended first."""
        self.stop()
        self.folder.mkdir(parents=True, exist_ok=True)
        self._start_screen()
        if not (self.folder / "prefix.ready").exists():
            self._make_prefix()
        # Where Windows has its telephony library: the dialer looks nowhere else. To programs of 32 bits, another folder
        # goes by the name of the system folder.
        system = self.drive_c("windows", "syswow64" if self.build.name == "win32" else "system32")
        if not (system / "kernel32.dll").exists():
            raise RuntimeError(f"this Wine, or this machine, runs no program of {self.build.name}")
        shutil.copyfile(self.build / "sim/tapi32.dll", system / "tapi32.dll")

    def stop(self):
        """Ends the programs of this prefix and this screen, and no others. Does nothing when none run."""
        if self.prefix.exists():
            subprocess.run(["wineserver", "-k"], env=self.environ(), check=False, stderr=subprocess.DEVNULL)
        if self._screen.exists():
            process = self._screen.read_text().split()[1]
            self._screen.unlink()
            # The number may belong to somebody else by now.
            name = Path(f"/proc/{process}/comm")
            if name.exists() and name.read_text() == "Xvfb\n":
                os.kill(int(process), signal.SIGTERM)

    def environ(self, **more):
        """The environment for any program of this run."""
        # Under the C locale Wine finds no file whose name has an umlaut.
        result = {**os.environ, "LC_ALL": "C.UTF-8", "WINEPREFIX": str(self.prefix), "WINEARCH": "win64",
                  "WINEDEBUG": "-all", "WINEDLLOVERRIDES": "mscoree,mshtml=", **more}
        if self._screen.exists():
            result["DISPLAY"] = ":" + self._screen.read_text().split()[0]
        return result

    def drive_c(self, *parts):
        """A path on the prefix's drive C."""
        return self.prefix.joinpath("drive_c", *parts)

    def set_registry(self, key, name, kind, value):
        """Writes one value and waits until it is kept."""
        self._wine("reg", "add", key, "/v", name, "/t", kind, "/d", value, "/f")

    def _start_screen(self):
        # The server picks a free display itself and tells its number.
        reading, writing = os.pipe()
        with open(self.folder / "xvfb.log", "wb") as log:
            server = subprocess.Popen(["Xvfb", "-displayfd", str(writing), "-screen", "0", "1600x1200x24",
                                       "-nolisten", "tcp"], pass_fds=[writing], stdin=subprocess.DEVNULL, stdout=log,
                                      stderr=log, start_new_session=True)
        os.close(writing)
        with os.fdopen(reading) as answer:
            display = answer.readline().strip()
        if not display:
            raise RuntimeError(f"no screen: see {self.folder / 'xvfb.log'}")
        self._screen.write_text(f"{display} {server.pid}")

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


def main():
    commands = {"start": WineEnv.start, "stop": WineEnv.stop}
    if len(sys.argv) != 3 or sys.argv[1] not in commands:
        sys.exit(__doc__)
    commands[sys.argv[1]](WineEnv(sys.argv[2]))


if __name__ == "__main__":
    main()
