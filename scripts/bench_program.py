#!/usr/bin/env python3
"""The whole program under Wine, beside one of the same compiler that only makes a window. Prints a JSON list of rows for
scripts/bench. Wants the preset win64 built.

bench_program.py [REPETITIONS [SECONDS]]     pairs of starts, 15 unless said otherwise; the length of the idle time, 60
"""
import json
import shutil
import statistics
import sys
import time
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


def row(work, goal, ours, floor):
    """Medians. The ratio's spread is half of what the middle half of the pairs takes up."""
    low, _, high = statistics.quantiles(mine / its for mine, its in zip(ours, floor))
    ratio, spread = statistics.median(ours) / statistics.median(floor), (high - low) / 2
    return {"work": work, "floor": statistics.median(floor), "peer": None, "ours": round(statistics.median(ours), 4),
            "ratio": round(ratio, 3), "goal": goal, "ok": ratio <= goal + spread, "spread": round(spread, 3)}


def main():
    repetitions, seconds = (int(given) for given in (sys.argv[1:] + ["15", "60"][len(sys.argv) - 1:]))
    env = WineEnv(BUILD / "wine")
    env.start()
    env.install_tapi(BUILD / "sim/tapi32.dll")
    try:
        starts = [[start_ms(env, bare) for bare in (False, True)] for _ in range(repetitions)]
        memory = [[memory_kb(env, bare) for bare in (False, True)] for _ in range(IDLE_PARTS)]
        busy, woken = idle(env, seconds)
    finally:
        env.stop()
    print(json.dumps([
        row("start under Wine, ms less the two timers; floor: one window", 1.3, *zip(*starts)),
        row("private memory, hidden and idle, KB; floor: one window", 1.4, *zip(*memory)),
        row("processor in an idle minute, linked, %; floor: 0.02", 1.0, busy, [0.02] * IDLE_PARTS),
        row("wake-ups in an idle minute, linked; floor: 260", 1.0, woken, [260] * IDLE_PARTS),
    ], indent=1))


if __name__ == "__main__":
    main()
