# SPDX-License-Identifier: MIT
"""Waiting for what another process does."""
import pathlib
import time

DEADLINE = 15  # seconds for anything to happen; a sanitized build is slow


def until(condition, what, deadline=DEADLINE):
    end = time.monotonic() + deadline
    while time.monotonic() < end:
        value = condition()
        if value:
            return value
        time.sleep(0.02)
    raise AssertionError("timed out: " + what)


def _work_of(pid):
    """Answers the processor time that a process has used; None while one of its threads wants the processor, or it has a child process."""
    used = 0
    try:
        for task in pathlib.Path(f"/proc/{pid}/task").iterdir():
            fields = (task / "stat").read_text().rpartition(")")[2].split()
            if fields[0] != "S" or (task / "children").read_text():
                return None
            used += int(fields[11]) + int(fields[12])
    except (FileNotFoundError, ProcessLookupError):  # a thread has ended, or all of them have
        return None if pathlib.Path(f"/proc/{pid}").exists() else 0
    return used


def until_at_rest(pid, seconds=0.08):
    """Waits until a process has slept for so long, so that nothing is under way in it. That holds on a busy machine, too, because a thread
    with something to do is not asleep there."""
    last, since = None, time.monotonic()

    def rests():
        nonlocal last, since
        used = _work_of(pid)
        if used is None or used != last:
            last, since = used, time.monotonic()
        return time.monotonic() - since >= seconds

    until(rests, f"process {pid} to come to rest")
