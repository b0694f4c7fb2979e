"""Runs programs and tells what they took."""
import dataclasses
import os
import pathlib
import re
import subprocess
import time


@dataclasses.dataclass
class Sample:
    """One run: wall clock and processor time in seconds, peak memory and output in bytes."""

    seconds: float
    processor: float
    memory: int
    output: int


class Failed(Exception):
    """A program did not do its work, or two documents differ that must not."""


def run_step(command, log):
    """Runs one program to its end and returns its wall clock time and its resource usage."""
    with open(log, "wb") as messages:
        started = time.perf_counter()
        process = subprocess.Popen(command, stdin=subprocess.DEVNULL, stdout=messages, stderr=messages)
        _, status, usage = os.wait4(process.pid, 0)
        seconds = time.perf_counter() - started
    process.returncode = os.waitstatus_to_exitcode(status)
    if process.returncode != 0:
        text = pathlib.Path(log).read_text(encoding="utf-8", errors="replace")
        raise Failed(f"{' '.join(map(str, command))}\nended with {process.returncode}: {text[:2000]}")
    return seconds, usage


def run(steps, outputs, result, log):
    """Runs the programs one after the other, each file of `outputs` gone beforehand.

    The disk is let come to rest first, so that nobody pays for what an earlier program wrote.
    """
    for output in outputs:
        output.unlink(missing_ok=True)
    os.sync()
    seconds = processor = memory = 0
    for step in steps:
        elapsed, usage = run_step(step, log)
        seconds += elapsed
        processor += usage.ru_utime + usage.ru_stime
        memory = max(memory, usage.ru_maxrss * 1024)
    return Sample(seconds, processor, memory, result.stat().st_size if result is not None else 0)


def same_bytes(left, right):
    block = 1 << 20
    if left.stat().st_size != right.stat().st_size:
        return False
    with open(left, "rb") as one, open(right, "rb") as other:
        while True:
            piece = one.read(block)
            if piece != other.read(block):
                return False
            if not piece:
                return True


def same_but_for_breaks(left, right):
    """Whether the files are equal once the line breaks between tags, and a last one, are left out."""

    def joined(path):
        return re.sub(rb">\r?\n<", b"><", path.read_bytes()).rstrip(b"\r\n")

    return joined(left) == joined(right)
