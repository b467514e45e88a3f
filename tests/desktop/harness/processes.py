"""Starting processes that cannot outlive us, and ending exactly those."""

import os
import signal
import subprocess
import time


def wait_for(what, condition, seconds=30.0, pause=0.02):
    """The first true value of `condition()`; fails, naming `what`, when there is none in time."""
    end = time.monotonic() + seconds
    while True:
        value = condition()
        if value:
            return value
        if time.monotonic() > end:
            raise AssertionError(f"{what}: not within {seconds:g} s")
        time.sleep(pause)


def stays(what, condition, seconds):
    """Fails, naming `what`, as soon as `condition()` is false within the time."""
    end = time.monotonic() + seconds
    while time.monotonic() < end:
        assert condition(), what
        time.sleep(0.02)


def spawn(command, environment, log, **options):
    """Starts a process that ends when we do, whatever ends us; its output goes to the file `log`."""
    with open(log, "ab") as output:
        return subprocess.Popen(["setpriv", "--pdeathsig", "TERM", "--", *command], env=environment,
                                stdin=subprocess.DEVNULL, stdout=output, stderr=output, **options)


def end(process, seconds=5.0):
    """Ends a process of ours, kindly at first."""
    if process.poll() is None:
        process.terminate()
        try:
            process.wait(seconds)
        except subprocess.TimeoutExpired:
            process.kill()
            process.wait()


def carrying(variable):
    """The ids of all processes with this `NAME=value` in their environment: what our processes started."""
    wanted = variable.encode()
    found = []
    for entry in os.listdir("/proc"):
        if not entry.isdigit() or int(entry) == os.getpid():
            continue
        try:
            with open(f"/proc/{entry}/environ", "rb") as environ:
                if wanted in environ.read().split(b"\0"):
                    found.append(int(entry))
        except OSError:
            continue
    return found


def end_all_carrying(variable, seconds=3.0):
    """Ends every process that carries the variable, and waits until none is left."""
    limit = time.monotonic() + seconds
    sign = signal.SIGTERM
    while pids := carrying(variable):
        if time.monotonic() > limit:
            sign = signal.SIGKILL
        for pid in pids:
            try:
                os.kill(pid, sign)
            except ProcessLookupError:
                pass
        time.sleep(0.05)


def children(pid):
    """The process ids of all descendants of `pid` with their names."""
    parents = {}
    for entry in os.listdir("/proc"):
        if entry.isdigit():
            try:
                with open(f"/proc/{entry}/stat", encoding="utf-8", errors="replace") as stat:
                    name, rest = stat.read().split("(", 1)[1].rsplit(")", 1)
                parents[int(entry)] = (int(rest.split()[1]), name)
            except OSError:
                continue
    found = {}
    added = True
    while added:
        added = False
        for child, (parent, name) in parents.items():
            if child not in found and (parent == pid or parent in found):
                found[child] = name
                added = True
    return found


def cpu_seconds(pid):
    """The processor time that the process has used so far, its children aside."""
    with open(f"/proc/{pid}/stat", encoding="utf-8", errors="replace") as stat:
        fields = stat.read().rsplit(")", 1)[1].split()
    return (int(fields[11]) + int(fields[12])) / os.sysconf("SC_CLK_TCK")
