#!/usr/bin/python3
"""The cost of waiting in other programs: pySerial's read_until and ppp's chat, over a pseudo-terminal.

As in bench_waiting: processor time of a wait in silence, and the delay from the last byte of a reply to the return of
the wait. chat ends after its answer, so its delay includes the end of the process.
"""

import argparse
import os
import pty
import random
import resource
import statistics
import struct
import subprocess
import time
import tty

import serial

REPLY = b"0131072  045 V012003N6V1.22211126102000*"
REQUEST = b"\x02"


class Device:
    """Answers each request after a pause, in its own process, and reports when it wrote."""

    def __init__(self):
        self.master, self.slave = pty.openpty()
        tty.setraw(self.slave)
        self.name = os.ttyname(self.slave)
        self.written, told = os.pipe()
        self.process = os.fork()
        if self.process == 0:
            self.answer(told)
            os._exit(0)
        os.close(told)

    def answer(self, told):
        pauses = random.Random(1)
        while os.read(self.master, 1) == REQUEST:
            time.sleep(pauses.uniform(0.002, 0.020))
            os.write(told, struct.pack("q", time.monotonic_ns()))
            os.write(self.master, REPLY)

    def delay_ms(self, returned_ns):
        return (returned_ns - struct.unpack("q", os.read(self.written, 8))[0]) / 1e6

    def close(self):
        os.write(self.slave, b"q")  # any other byte than a request ends the process
        os.waitpid(self.process, 0)
        for descriptor in (self.master, self.slave, self.written):
            os.close(descriptor)


def processor_ms(usage):
    return (usage.ru_utime + usage.ru_stime) * 1e3


def pyserial(silence_s, replies):
    device = Device()
    port = serial.Serial(device.name, 9600, timeout=silence_s)
    before = processor_ms(resource.getrusage(resource.RUSAGE_SELF))
    port.read_until(b"*")
    silent = processor_ms(resource.getrusage(resource.RUSAGE_SELF)) - before
    delays = []
    for _ in range(replies):
        port.write(REQUEST)
        port.read_until(b"*")
        delays.append(device.delay_ms(time.monotonic_ns()))
    port.close()
    device.close()
    return silent, delays


def run_chat(device, timeout_s, script):
    line = os.open(device.name, os.O_RDWR | os.O_NOCTTY)
    subprocess.run(["/usr/sbin/chat", "-t", str(timeout_s), *script], stdin=line, stdout=line, check=False)
    returned = time.monotonic_ns()
    os.close(line)
    return returned


def chat(silence_s, replies):
    device = Device()
    before = processor_ms(resource.getrusage(resource.RUSAGE_CHILDREN))
    run_chat(device, max(1, round(silence_s)), ["*"])
    silent = processor_ms(resource.getrusage(resource.RUSAGE_CHILDREN)) - before
    delays = []
    for _ in range(replies):
        delays.append(device.delay_ms(run_chat(device, 30, ["", "^B\\c", "102000*"])))
    device.close()
    return silent, delays


def main():
    options = argparse.ArgumentParser(description=__doc__)
    options.add_argument("--silence", type=float, default=10000, help="length of the wait for a silent device, ms")
    options.add_argument("--replies", type=int, default=300)
    given = options.parse_args()
    for name, measure in (("pySerial", pyserial), ("chat", chat)):
        silent, delays = measure(given.silence / 1e3, given.replies)
        delays.sort()
        most95 = delays[len(delays) * 95 // 100]
        print(f"{name:<10} {silent:14.2f} {statistics.median(delays):14.3f} {most95:14.3f}", flush=True)


if __name__ == "__main__":
    main()
