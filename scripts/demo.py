#!/usr/bin/env python3
"""One conversation with support, on real parts: the local service, its scripted technician and support-host.

demo.py BUILD_DIR                  plays both sides and prints the conversation
demo.py BUILD_DIR --interactive    the person is you: type lines, "/press LABEL", "/end"
"""

import argparse
import ctypes
import json
import pathlib
import queue
import shutil
import signal
import subprocess
import sys
import tempfile
import threading
import time

import demo_menu

DEADLINE = 15.0


class Failure(Exception):
    """Something that was awaited did not come."""


def die_with_parent():
    ctypes.CDLL(None).prctl(1, signal.SIGTERM)  # PR_SET_PDEATHSIG
    # A Ctrl-C is for this script, which ends its children in order.
    signal.signal(signal.SIGINT, signal.SIG_IGN)


class Program:
    """A child whose standard output is read line by line as JSON."""

    def __init__(self, command, log):
        self.lines = queue.Queue()
        self.process = subprocess.Popen(
            [str(part) for part in command], stdin=subprocess.PIPE, stdout=subprocess.PIPE, stderr=log,
            text=True, bufsize=1, preexec_fn=die_with_parent)
        threading.Thread(target=self._read, daemon=True).start()

    def _read(self):
        for line in self.process.stdout:
            try:
                self.lines.put(json.loads(line))
            except json.JSONDecodeError:
                continue
        self.lines.put(None)

    def next(self, seconds):
        try:
            line = self.lines.get(timeout=max(seconds, 0))
        except queue.Empty:
            raise Failure("nothing came in time") from None
        if line is None:
            raise Failure(f"{self.process.args[0]} has ended")
        return line

    def send(self, **command):
        self.process.stdin.write(json.dumps(command) + "\n")
        self.process.stdin.flush()

    def stop(self):
        if self.process.poll() is None:
            self.process.terminate()
            try:
                self.process.wait(5)
            except subprocess.TimeoutExpired:
                self.process.kill()
                self.process.wait()


class Person:
    """Sits at support-host: sees its reports, prints what a person would see, and acts."""

    def __init__(self, host, is_live):
        self.host = host
        self.is_live = is_live
        self.seen_lines = set()
        self.lines = []
        # How many of the lines the person has answered.
        self.heard = 0
        self.chat_open = False

    def watch(self, wanted, what, seconds=DEADLINE):
        """Shows reports until one is wanted."""
        end = time.monotonic() + seconds
        while True:
            try:
                report = self.host.next(end - time.monotonic())
            except Failure as failure:
                raise Failure(f"waited for {what}: {failure}") from None
            self.show(report)
            if wanted(report):
                return report

    def show(self, report):
        kind = report.get("is")
        if kind in ("menu", "sheet") or report.get("class") == "SupportMenuView" and kind == "changed":
            demo_menu.draw(report)
        elif kind in ("progress", "error", "info", "success"):
            print(f"  [{report['text']}]")
        elif kind == "alert":
            print(f"  [{report['title']}: {report['message']}] {' / '.join(report['buttons'])}")
        elif kind in ("screen", "changed") and report.get("class") == "ChatViewController":
            self.chat_open = True
            self.show_chat(report)
        elif kind == "left" and report.get("class") == "ChatViewController":
            self.chat_open = False

    def show_chat(self, chat):
        for group in chat.get("groups", []):
            for line in group["lines"]:
                if line["id"] in self.seen_lines:
                    continue
                self.seen_lines.add(line["id"])
                self.lines.append(line)
                name = line.get("name") or line.get("from") or "?"
                text = line.get("text", "")
                buttons = "".join(f"  [{button['label']}]" for button in line.get("buttons", []))
                print(f"  {name + (' (you)' if line.get('mine') else ''):>18} | {text}{buttons}")

    def said(self, *words):
        """Whether the other side's latest line holds one of the words."""
        theirs = [line for line in self.lines if not line.get("mine")]
        return bool(theirs) and any(word in theirs[-1].get("text", "").lower() for word in words)

    def say(self, text):
        count = self.heard = len(self.lines)
        self.host.send(do="type", text=text)
        self.host.send(do="send")
        self.watch(lambda _: any(line.get("mine") for line in self.lines[count:]), "my own line")

    def has_answer(self):
        return any(not line.get("mine") for line in self.lines[self.heard:])

    def hear(self):
        # It may have come together with the person's own line.
        if not self.has_answer():
            self.watch(lambda _: self.has_answer(), "an answer")
        self.heard = len(self.lines)

    def press(self, label):
        self.heard = len(self.lines)
        self.host.send(do="press", label=label)

    def open_chat(self, ready):
        self.host.send(do="load", configuration=ready["configuration"], customer=ready.get("customer"))
        self.watch(lambda r: r.get("operation") == "supportButtonDidGetCustomer", "the customer")
        print("  The person taps the support button.")
        self.host.send(do="tap")
        menu = self.watch(lambda r: r.get("is") in ("menu", "sheet"), "the menu")
        if menu["is"] == "menu" and not self.is_live:
            print("  The device turns dark.")
            self.host.send(do="dark", on=True)
            self.watch(lambda r: r.get("is") == "changed", "the menu's dark look")
        entries = menu["entries"]
        chat = next((entry for entry in entries if "chat" in entry.lower()), entries[0])
        print(f"  The person picks \"{chat}\".")
        self.host.send(do="choose", label=chat)
        self.watch(lambda r: r.get("class") == "ChatViewController", "the chat")
        self.host.send(do="defaults")
        stored = self.watch(lambda r: r.get("is") == "defaults", "the stored issue")["values"]
        print(f"  Issue {stored['supportSDKCurrentIssue']['reference_num']}\n")

    def end_chat(self):
        print("\n  The person presses \"End Chat\".")
        self.host.send(do="press", label="End Chat")
        self.watch(lambda r: r.get("is") == "left", "the chat to close")


def converse(person):
    person.hear()
    person.say("Hello, the screen in our lobby stays dark since this morning.")
    person.hear()
    if any(line.get("buttons") for line in person.lines):
        button = next(line for line in person.lines if line.get("buttons"))["buttons"][0]
        print(f"  The person presses \"{button['label']}\".")
        person.press(button["label"])
        person.hear()
    person.say("It shows a picture again. Thank you!")
    person.hear()
    while not person.said("resolved", "closed"):
        person.hear()
    person.end_chat()


def converse_live(person):
    print("  Type a line and press Enter. \"/press LABEL\" presses a button, \"/end\" ends the chat.\n")
    typed = queue.Queue()

    def read_keyboard():
        for line in sys.stdin:
            typed.put(line.strip())
        typed.put("/end")

    threading.Thread(target=read_keyboard, daemon=True).start()
    while person.chat_open:
        try:
            person.show(person.host.next(0.1))
        except Failure as failure:
            if "ended" in str(failure):
                raise
        while not typed.empty():
            line = typed.get()
            if line == "/end":
                person.end_chat()
                return
            if line.startswith("/press "):
                person.host.send(do="press", label=line[len("/press "):])
            elif line:
                person.host.send(do="type", text=line)
                person.host.send(do="send")


def play(build, interactive):
    folder = pathlib.Path(tempfile.mkdtemp(prefix="supportsdk-demo-"))
    programs = []
    try:
        with open(folder / "log", "w", encoding="utf-8") as log:
            service = Program([build / "service/support-service", "--data", folder / "service"], log)
            programs.append(service)
            ready = service.next(DEADLINE)
            technician = Program([build / "service/support-technician", "--lab", ready["lab"]], log)
            programs.append(technician)
            host = Program([build / "hosts/cli/support-host", "--data", folder / "host", "--ca",
                            ready["caFile"]], log)
            programs.append(host)

            person = Person(host, interactive)
            person.open_chat(ready)
            (converse_live if interactive else converse)(person)
            print("  The case is closed.")
            if not interactive:
                print("\n  Play the person yourself: ./run --interactive")
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
    parser.add_argument("--interactive", action="store_true")
    arguments = parser.parse_args()
    signal.signal(signal.SIGTERM, lambda *_: sys.exit(143))
    try:
        play(arguments.build, arguments.interactive)
    except Failure as failure:
        print(f"demo: {failure}", file=sys.stderr)
        return 1
    except KeyboardInterrupt:
        print()
        return 130
    return 0


if __name__ == "__main__":
    sys.exit(main())
