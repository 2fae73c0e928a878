"""Screens of support-host as plain text: lists, the search, dialogs, and chats of the past."""

import demo_menu

PICTURE = "\x1b[7m{}\x1b[0m" if demo_menu.is_colourful() else "[picture of {}]"


def drawn(line):
    """The line's text, emoticons as pictures, and what hangs on it."""
    text = line.get("text", "")
    for emoticon in line.get("emoticons", []):
        text = text.replace(emoticon, PICTURE.format(emoticon.strip("()").lower()), 1)
    parts = [text] if text else []
    if "url" in line:
        parts.append("[picture]" if line.get("previewShown") else "[picture, not loaded yet]")
    if "kb" in line:
        parts.append(f"[article: {line['kb'].get('title', line['kb']['preview'])}]")
    parts += [f"[{button['label']}]" for button in line.get("buttons", [])]
    return "  ".join(parts)


def in_brackets(labels):
    return " ".join(f"[{label}]" for label in labels)


def rows_of(screen):
    number = 0
    for section in screen.get("sections", []):
        if section["rows"] and "heading" in section:
            yield section["heading"]
        for row in section["rows"]:
            number += 1
            indent = "  " * max(0, int(row.get("indent", 0)) // 20 - 1)
            mark = {True: "v ", False: "> "}.get(row.get("open"), "")
            parts = [row.get(key) for key in ("label", "date", "status", "rating", "detail")]
            yield f"{number:>3}  {indent}{mark}" + "   ".join(part for part in parts if part)


def fields_of(screen):
    if "stars" in screen:
        yield "".join("★" if star["selected"] else "☆" for star in screen["stars"])
    for field in screen.get("fields", []):
        label, value = field.get("label", ""), field.get("value", "")
        if label == screen.get("heading"):
            label = ""
        if isinstance(value, bool):
            value = "on" if value else "off"
        yield f"{label + ': ' if label else ''}{value or '(' + field.get('placeholder', '') + ')'}"
    if "buttons" in screen:
        yield in_brackets(button["label"] + ("" if button["enabled"] else ", disabled") for button in screen["buttons"])


def past_of(chat):
    """Both ends of a conversation; its transcript names nobody."""
    lines = [line for group in chat.get("groups", []) for line in group["lines"]]
    said = [f"{'you' if line['mine'] else 'support':>18} | {drawn(line)}" for line in lines]
    if len(said) > 5:
        said[2:-2] = [f"{'':>18} | ... {len(said) - 4} more lines ..."]
    yield from said


# Of screens that have no title of their own.
NAMES = {"KBListViewController": "Help articles", "HistoryActionPopupMenu": "Which cases"}


def lines_of(screen):
    title = screen.get("heading") or screen.get("title") or NAMES.get(screen["class"], screen["class"])
    yield f"+-- {title}  {in_brackets(screen.get('left', []) + screen.get('right', []))}".rstrip()
    if "search" in screen:
        bar = screen["search"]
        yield f"|  Search: {bar['text']}_{'  [Cancel]' if bar['cancelShown'] else ''}"
    rows = [line for part in (rows_of, fields_of, past_of) for line in part(screen)]
    if "sections" in screen and not rows:
        rows = ["(no rows)"]
    for line in rows:
        yield f"|  {line}"


def draw(screen, last=None):
    """Unless it looks like the last one. Returns its look."""
    lines = list(lines_of(screen))
    if lines != last:
        for line in lines:
            print(f"    {line}")
    return lines
