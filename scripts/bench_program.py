#!/usr/bin/env python3
"""The whole program under Wine, beside one of the same compiler that only makes a window. Prints a JSON list of rows
for scripts/bench. Wants the preset win64 built.

bench_program.py [REPETITIONS [SECONDS]]     pairs of starts, 15 unless said otherwise; the length of the idle time, 60
"""
import json
import shutil
import statistics
import sys
import time
from contextlib import redirect_stdout
from pathlib import Path

sys.dont_write_bytecode = True
from conversations import SETTINGS, STARTED
from dialer_session import Session, private_kb, wait_until
from wine_env import WineEnv

BUILD = Path(__file__).resolve().parent.parent / "build/win64"
TIMERS_MS = 200  # the start waits for two timers of 100 ms
QUIET_S = 2  # after the start, before anything is measured
IDLE_PARTS = 5


def session(env, bare):
    """A linked dialer, or in its place the program that makes one window."""
    script = BUILD / "bench.scenario.txt"
    script.write_text("device name=ISDN-Line1\nlocation country=49 city=30\n")
    made = Session(env, BUILD, BUILD / "bench_program", script)
    if bare:
        shutil.copyfile(BUILD / "bench/one_window/one_window.exe", made.program)
    return made


def start_ms(env, bare):
    """From the main program's call of CreateProcess until the program is at work."""
    with session(env, bare) as played:
        played.start(SETTINGS)
        begin = played.wait("starts the dialer", who="suite").milliseconds
        if bare:
            return played.wait("dialer ended", who="suite").milliseconds - begin
        return played.wait(STARTED[0]).milliseconds - begin - TIMERS_MS


def settled(played, bare):
    """The number of the process, once nothing happens in it any more."""
    played.start(SETTINGS, "stay" if bare else "/run")
    assert bare or played.wait_for_reports(len(STARTED)), "the dialer has not started"
    process = wait_until("the program runs", played.dialers)[0]
    time.sleep(QUIET_S)
    return process


def memory_kb(env, bare):
    with session(env, bare) as played:
        return private_kb(settled(played, bare))


def effort(process):
    """The time; how long the process had a processor, to the nanosecond where /proc/PID/stat counts hundredths of a
    second; and how often one of its threads waited, which is how often it was woken. All times in seconds."""
    tasks = list(Path(f"/proc/{process}/task").iterdir())
    busy = sum(int((task / "schedstat").read_text().split()[0]) for task in tasks) / 1e9
    woken = sum(int(line.split()[1]) for task in tasks for line in (task / "status").read_text().splitlines()
                if line.startswith("voluntary_ctxt_switches"))
    return time.monotonic(), busy, woken


def idle(env, seconds):
    """The processor's percents and the wake-ups a minute, in each part of an idle time."""
    with session(env, bare=False) as played:
        process = settled(played, bare=False)
        seen = [effort(process)]
        for _ in range(IDLE_PARTS):
            time.sleep(seconds / IDLE_PARTS)
            seen.append(effort(process))
    spans = [[after - before for before, after in zip(*pair)] for pair in zip(seen, seen[1:])]
    return [100 * busy / span for span, busy, _ in spans], [60 * woken / span for span, _, woken in spans]


def row(work, unit, ours, goal, floor=None):
    """Medians, beside the floor or, where there is none, the goal. The ratio's spread is half of what the middle half
    of the pairs takes up."""
    base, most = (floor, goal) if floor else ([goal] * len(ours), 1)
    low, _, high = statistics.quantiles(mine / its for mine, its in zip(ours, base))
    ratio, spread = statistics.median(ours) / statistics.median(base), (high - low) / 2
    return {"work": work, "floor": floor and f"{statistics.median(floor):g} {unit}", "peer": None,
            "ours": f"{statistics.median(ours):.4g} {unit}", "ratio": ratio,
            "goal": f"≤ {goal} {'×' if floor else unit}", "ok": ratio <= most + spread, "spread": spread}


def main():
    repetitions, seconds = (int(given) for given in (sys.argv[1:] + ["15", "60"][len(sys.argv) - 1:]))
    env = WineEnv(BUILD / "wine")
    try:
        with redirect_stdout(sys.stderr):  # the rows alone are for whoever reads this
            env.start()
        env.install_tapi(BUILD / "sim/tapi32.dll")
        starts = [[start_ms(env, bare) for bare in (False, True)] for _ in range(repetitions)]
        memory = [[memory_kb(env, bare) for bare in (False, True)] for _ in range(IDLE_PARTS)]
        busy, woken = idle(env, seconds)
    finally:
        env.stop()
    (times, floor_times), (sizes, floor_sizes) = zip(*starts), zip(*memory)
    print(json.dumps([
        row("start under Wine, less the two timers; floor: one window", "ms", times, 1.3, floor_times),
        row("private memory, hidden and idle; floor: one window", "KB", sizes, 1.4, floor_sizes),
        row("processor in an idle minute, linked", "%", busy, 0.02),
        row("wake-ups in an idle minute, linked", "times", woken, 260),
    ], ensure_ascii=False, indent=1))


if __name__ == "__main__":
    main()
