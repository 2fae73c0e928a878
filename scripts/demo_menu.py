"""The menu of support-host on a terminal: in its theme's colours there, in plain words elsewhere."""

import os
import sys

RESET = "\x1b[0m"
WRITTEN, BEHIND = 38, 48


def is_colourful(stream=sys.stdout):
    return stream.isatty() and "NO_COLOR" not in os.environ and os.environ.get("TERM") != "dumb"


def paint(layer, colour):
    """The escape sequence for "#rrggbb", ISO 8613-6; nothing for no colour."""
    if not colour:
        return ""
    channels = (str(int(colour[place:place + 2], 16)) for place in (1, 3, 5))
    return f"\x1b[{layer};2;{';'.join(channels)}m"


def rows_of(menu):
    """(label, has an icon), for a menu and for a popup, which has no icons."""
    icons = menu.get("icons", [])
    for place, label in enumerate(menu["entries"]):
        yield label, place < len(icons) and icons[place]["icon"] == "found"


def in_colour(menu):
    colours = menu.get("colors", {"text": menu.get("tint")})
    heading = menu.get("heading", "Support")
    width = max([len(heading)] + [len(label) + 2 for label, _ in rows_of(menu)])

    def line(*parts):
        painted = "".join(paint(WRITTEN, colours.get(name)) + text for name, text in parts)
        return paint(BEHIND, colours.get("background")) + painted + RESET

    def row(*parts):
        return line(("border", "│ "), *parts, ("border", " │"))

    yield line(("border", f"┌{'─' * (width + 2)}┐"))
    yield row(("text", heading.ljust(width)))
    for label, has_icon in rows_of(menu):
        yield row(("icon", "● " if has_icon else "  "), ("text", label.ljust(width - 2)))
    yield line(("border", f"└{'─' * (width + 2)}┘"))


def in_words(menu):
    yield menu.get("heading", "Support")
    for label, has_icon in rows_of(menu):
        yield f"  - {label}{' (icon)' if has_icon else ''}"
    if menu.get("colors"):
        yield "  " + ", ".join(f"{name} {colour}" for name, colour in menu["colors"].items())


def lines_of(menu):
    return list(in_colour(menu) if is_colourful() else in_words(menu))


def draw(lines):
    print()
    for line in lines:
        print(f"  {line}")
    print()
