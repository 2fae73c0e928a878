#!/usr/bin/env python3
"""Counts what support-host does while a chat is joined and nobody speaks: context switches and CPU time of all its
threads. Usage: idle.py BUILD_DIR [SECONDS]"""

import pathlib
import sys
import tempfile
import time

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parent.parent / "scripts"))
from demo import DEADLINE, Person, Program  # noqa: E402


def switches(pid):
    counts = {}
    for task in pathlib.Path(f"/proc/{pid}/task").iterdir():
        status = dict(line.split(":", 1) for line in (task / "status").read_text().splitlines())
        counts[task.name] = (status["Name"].strip(), int(status["voluntary_ctxt_switches"]))
    return counts


def ticks(pid):
    return sum(int(field) for field in pathlib.Path(f"/proc/{pid}/stat").read_text().rsplit(")")[1].split()[11:13])


def main():
    build, seconds = pathlib.Path(sys.argv[1]), float(sys.argv[2]) if len(sys.argv) > 2 else 60
    with tempfile.TemporaryDirectory() as folder, open(pathlib.Path(folder) / "log", "w") as log:
        service = Program([build / "service/support-service", "--data", f"{folder}/service"], log)
        ready = service.next(DEADLINE)
        host = Program([build / "hosts/cli/support-host", "--data", f"{folder}/host", "--ca", ready["caFile"]], log)
        try:
            person = Person(host)
            person.open_chat(ready)
            person.watch(lambda report: report.get("is") == "dismiss", "the chat to be joined")
            person.say("Nobody answers here.")
            time.sleep(2)
            pid = host.process.pid
            before, cpu = switches(pid), ticks(pid)
            time.sleep(seconds)
            after = switches(pid)
            for task, (name, count) in sorted(after.items()):
                print(f"  {name:16} {count - before.get(task, (name, 0))[1]:5} wake-ups in {seconds:.0f} s")
            print(f"  CPU time: {ticks(pid) - cpu} ticks")
        finally:
            host.stop()
            service.stop()


if __name__ == "__main__":
    main()
