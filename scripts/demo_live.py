"""The demonstration with you as the person: a line that begins with "/" is a command."""

import queue
import sys
import threading

import demo_chat

COMMANDS = """  Type a line and press Enter: it goes into the chat, the search or the dialog. Or a command:
    /menu [LABEL]        shows the menu, picks from it
    /open [N]            opens row N; in a chat the latest article or picture
    /press LABEL         presses a button or a star
    /fill FIELD = TEXT   fills a field             /switch FIELD  turns a switch
    /choose LABEL        answers an alert          /attach FILE   sends a picture
    /back                leaves what is open       /end           ends the chat
    /quit
"""


def play(person):
    print(COMMANDS)
    typed = queue.Queue()

    def read_keyboard():
        for line in sys.stdin:
            typed.put(line.strip())
        typed.put("/end")
        typed.put("/quit")

    threading.Thread(target=read_keyboard, daemon=True).start()
    line = ""
    while line != "/quit":
        person.look(0.1)
        while line != "/quit" and not typed.empty():
            line = typed.get()
            act(person, line)


def act(person, line):
    command, _, argument = line.partition(" ")
    if command in ACTIONS:
        ACTIONS[command](person, argument)
    elif line.startswith("/"):
        print(COMMANDS)
    elif line:
        person.host.send(do="type", text=line)
        if "entry" in person.screen or "search" in person.screen:
            person.host.send(do="send")
        else:
            person.host.send(do="show")


def end(person, _):
    if "entry" in person.screen:
        demo_chat.end_chat(person)
    else:
        print("  No chat is on top.")


def menu(person, label):
    if not label:
        person.menu = []
    person.host.send(do="tap")
    if label:
        person.host.send(do="choose", label=label)


def choose(person, label):
    person.host.send(do="choose", label=label)


def attach(person, file):
    person.press("Attach")
    person.watch(lambda r: r.get("is") in ("chooser", "alert"), "the photo chooser")
    person.host.send(do="pick", files=[file])


def open_row(person, number):
    if "entry" in person.screen:
        return open_latest(person)
    if not person.screens:
        print("  Nothing is open; /menu shows the menu.")
        return
    places = [(section, row) for section, part in enumerate(person.screen.get("sections", []))
              for row in range(len(part["rows"]))]
    if not number.isdigit() or not 0 < int(number) <= len(places):
        print("  There is no such row.")
        return
    section, row = places[int(number) - 1]
    person.host.send(do="select", section=section, row=row)


def open_latest(person):
    for line in reversed(person.lines):
        part = "kb" if "kb" in line else "attachment" if "url" in line else None
        if part:
            person.host.send(do="tapLine", id=line["id"], part=part)
            return
    print("  There is nothing to open.")


def press(person, label):
    person.host.send(do="press", label=label)


def fill(person, argument):
    field, _, text = (part.strip() for part in argument.partition("="))
    person.host.send(do="type", field=field, text=text)
    person.host.send(do="show")


def switch(person, label):
    values = [field["value"] for field in person.screen.get("fields", []) if field.get("label") == label]
    if not values:
        print("  There is no such switch.")
        return
    person.host.send(do="set", field=label, value=not values[0])
    person.host.send(do="show")


ACTIONS = {
    "/end": end, "/menu": menu, "/choose": choose, "/attach": attach, "/open": open_row, "/press": press, "/fill": fill,
    "/switch": switch, "/back": lambda person, _: person.host.send(do="back"), "/quit": lambda person, _: None,
}
