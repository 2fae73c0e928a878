"""The person at support-host: sees what the screen shows, prints it, and acts."""

import html
import os
import re
import sys
import time

import demo_menu
from demo_programs import DEADLINE, Failure, Silence
from demo_screens import draw, drawn


def words_of(page):
    """HTML as plain text."""
    lines = re.sub(r"</(h\d|p|li)>", "\n", page.get("html", page.get("url", "")))
    return [line for line in html.unescape(re.sub(r"<[^>]*>", "", lines)).split("\n") if line.strip()]


def is_screen(name):
    return lambda report: report.get("is") in ("screen", "changed") and report.get("class") == name


class Person:
    def __init__(self, host, draws_all=False):
        self.host = host
        # Every screen, and not only what a story draws.
        self.draws_all = draws_all
        # The top one last.
        self.screens = []
        self.menu = []
        self.drawn = None
        self.chat = {}
        self.lines = []
        # Every line that was ever on view, by its id, and whether its picture was.
        self.seen = {}
        # Those that were there when the person acted last.
        self.heard = set()

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

    def look(self, seconds):
        """Shows the next report, if one comes."""
        try:
            self.show(self.host.next(seconds))
        except Silence:
            pass

    def show(self, report):
        kind = report.get("is")
        if kind in ("menu", "sheet") or report.get("class") == "SupportMenuView" and kind == "changed":
            self.see_menu(report)
        elif kind in ("progress", "error", "info", "success"):
            print(f"  [{report['text']}]")
        elif kind == "alert":
            print(f"  [{report['title']}: {report['message']}] {' / '.join(report['buttons'])}")
        elif kind == "web":
            print(f"    +-- {report['title']}")
            for line in words_of(report):
                print(f"    |  {line}")
        elif kind in ("screen", "changed"):
            self.see_screen(report)
        elif kind == "refused" and self.draws_all:
            print(f"  ({report['why']})")
        elif kind == "left":
            self.drawn = None
            self.screens = [screen for screen in self.screens if screen["class"] != report["class"]]
            if self.draws_all and not self.screens:
                print("  Nothing is open; /menu shows the menu.")

    @property
    def screen(self):
        return self.screens[-1] if self.screens else {}

    def see_menu(self, menu):
        # The same menu again tells nothing new.
        drawn_menu = demo_menu.lines_of(menu)
        if drawn_menu != self.menu:
            demo_menu.draw(drawn_menu)
        self.menu = drawn_menu

    def see_screen(self, screen):
        if self.screen.get("class") == screen["class"]:
            self.screens.pop()
        self.screens.append(screen)
        if "entry" in screen:
            self.see_chat(screen)
        elif self.draws_all and not {"url", "html"} & screen.keys():
            self.drawn = draw(screen, self.drawn)

    def see_chat(self, chat):
        self.chat = chat
        self.lines = [line for group in chat.get("groups", []) for line in group["lines"]]
        for line in self.lines:
            # A picture comes after its line.
            shown = line.get("previewShown", False)
            if line["id"] not in self.seen or shown and not self.seen[line["id"]]:
                name = line.get("name") or line.get("from") or "?"
                print(f"  {name + (' (you)' if line.get('mine') else ''):>18} | {drawn(line)}")
            self.seen[line["id"]] = shown

    def has_new(self, mine):
        return any(line.get("mine") == mine and line["id"] not in self.heard for line in self.lines)

    def hear(self):
        # It may have come together with the person's own line.
        if not self.has_new(mine=False):
            self.watch(lambda _: self.has_new(mine=False), "an answer")
        self.heard = set(self.seen)

    def await_line(self, wanted, what):
        """The newest line that is wanted, once it is there."""
        def found():
            return next((line for line in reversed(self.lines) if wanted(line)), None)
        if not found():
            self.watch(lambda _: found(), what)
        return found()

    def type(self, text):
        self.host.send(do="type", text=text)

    def send(self):
        self.heard = set(self.seen)
        self.host.send(do="send")
        self.watch(lambda _: self.has_new(mine=True), "my own line")

    def say(self, text):
        self.type(text)
        self.send()

    def press(self, label):
        self.heard = set(self.seen)
        print(f"  The person presses \"{label}\".")
        self.host.send(do="press", label=label)

    def look_again(self):
        self.host.send(do="show")
        return self.watch(lambda r: r.get("is") == "screen", "the screen")

    def open(self, entry, name):
        """Takes an entry of the menu, which opens the screen of that class."""
        self.host.send(do="tap")
        self.watch(lambda r: r.get("is") == "menu", "the menu")
        print(f"\n  The person picks \"{entry}\".")
        self.host.send(do="choose", label=entry)
        return self.watch(is_screen(name), f"\"{entry}\"")

    def back(self):
        self.host.send(do="back")
        self.watch(lambda r: r.get("is") == "left", "the way back")

    def suggestions(self):
        return [row.get("detail", row["label"]) for row in self.chat.get("entry", {}).get("suggestions", [])]

    def complete(self, text, wanted):
        """Types a text whose last word is begun, and takes a suggestion for it."""
        self.type(text)
        self.watch(lambda _: wanted in self.suggestions(), f"{wanted} as a suggestion")
        offered = self.suggestions()
        print(f"  The person types \"{text}\" and is offered {', '.join(offered[:6])}.")
        self.host.send(do="select", row=offered.index(wanted))
        self.watch(lambda _: not self.suggestions(), "the end of the suggestions")
        return self.chat["entry"]["text"]
