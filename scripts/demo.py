#!/usr/bin/env python3
"""One case of support and what follows it, on real parts: the local service, its scripted technician and support-host.

demo.py BUILD_DIR                  plays both sides and prints what they see
demo.py BUILD_DIR --interactive    the person is you; a line that begins with "/" is a command
demo.py BUILD_DIR --proactive      no person: an application reports its own checks and its logs
"""

import argparse
import pathlib
import shutil
import signal
import sys
import tempfile

import demo_after
import demo_chat
import demo_live
import demo_proactive
from demo_person import Person
from demo_programs import DEADLINE, Failure, Lab, Program


def open_chat(person, ready, shows_look):
    host = person.host
    host.send(do="load", configuration=ready["configuration"], customer=ready.get("customer"))
    person.watch(lambda r: r.get("operation") == "supportButtonDidGetCustomer", "the customer")
    print("  The person taps the support button.")
    host.send(do="tap")
    menu = person.watch(lambda r: r.get("is") in ("menu", "sheet"), "the menu")
    if menu["is"] == "menu" and shows_look:
        print("  The device turns dark.")
        host.send(do="dark", on=True)
        person.watch(lambda r: r.get("is") == "changed", "the menu's dark look")
    entries = menu["entries"]
    chat = next((entry for entry in entries if "chat" in entry.lower()), entries[0])
    print(f"  The person picks \"{chat}\".")
    host.send(do="choose", label=chat)
    person.watch(lambda r: r.get("class") == "ChatViewController", "the chat")
    host.send(do="defaults")
    stored = person.watch(lambda r: r.get("is") == "defaults", "the stored issue")["values"]
    print(f"  Issue {stored['supportSDKCurrentIssue']['reference_num']}\n")
    return stored["supportSDKCurrentIssueId"]


def meet(start, build, folder, ready, interactive):
    """A person, and the technician."""
    start(build / "service/support-technician", "--lab", ready["lab"])
    person = Person(start(build / "hosts/cli/support-host", "--data", folder / "host", "--ca", ready["caFile"]),
                    draws_all=interactive)
    issue = open_chat(person, ready, not interactive)
    if interactive:
        demo_live.play(person)
        return
    lab = Lab(ready["lab"])
    demo_chat.converse(person, lab, issue, build / "resources")
    demo_after.go_on(person, lab, issue)
    print("\n  Play the person yourself: ./run --interactive")


def play(build, how):
    folder = pathlib.Path(tempfile.mkdtemp(prefix="supportsdk-demo-"))
    programs = []

    def start(*command):
        programs.append(Program(command, log))
        return programs[-1]

    try:
        with open(folder / "log", "w", encoding="utf-8") as log:
            ready = start(build / "service/support-service", "--data", folder / "service").next(DEADLINE)
            if how.proactive:
                demo_proactive.play(start, build, folder, ready, Lab(ready["lab"]))
            else:
                meet(start, build, folder, ready, how.interactive)
    except Failure:
        print((folder / "log").read_text(encoding="utf-8", errors="replace")[-4000:], file=sys.stderr)
        raise
    finally:
        for program in reversed(programs):
            program.stop()
        shutil.rmtree(folder, ignore_errors=True)


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawTextHelpFormatter)
    parser.add_argument("build", type=pathlib.Path)
    ways = parser.add_mutually_exclusive_group()
    ways.add_argument("--interactive", action="store_true")
    ways.add_argument("--proactive", action="store_true")
    arguments = parser.parse_args()
    # Stars and pictures, on a terminal that cannot write them.
    sys.stdout.reconfigure(errors="replace")
    signal.signal(signal.SIGTERM, lambda *_: sys.exit(143))
    try:
        play(arguments.build, arguments)
    except Failure as failure:
        print(f"demo: {failure}", file=sys.stderr)
        return 1
    except KeyboardInterrupt:
        print()
        return 130
    return 0


if __name__ == "__main__":
    sys.exit(main())
