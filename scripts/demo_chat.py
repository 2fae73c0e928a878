"""The conversation of the demonstration: what the person does, and what happens to the connection meanwhile."""

import collections

from demo_programs import Failure


def converse(person, lab, issue, pictures):
    person.hear()
    person.say("Hello, the screen in our lobby stays dark since this morning.")
    question = person.await_line(lambda line: line.get("buttons"), "a line with buttons")
    person.press(question["buttons"][0]["label"])
    read_article(person)
    send_picture(person, pictures / "emoticon-bulb.png")
    break_connection(person, lab, issue)
    keep_what_could_not_go(person, lab)
    person.await_line(lambda line: "resolved" in line.get("text", ""), "the technician's last word")
    check_lines(person, lab, issue)
    # The rating is for a case that the kit knows to be resolved.
    lab.await_answered(f"/sdk/v1/issues/{issue}", after=lab.await_change(issue, "closed"))
    end_chat(person)


def read_article(person):
    line = person.await_line(lambda line: "kb" in line, "an article")
    print("  The person taps the article.")
    person.host.send(do="tapLine", id=line["id"], part="kb")
    person.watch(lambda r: r.get("is") == "web", "the article's page")
    person.host.send(do="back")
    person.watch(lambda r: r.get("is") == "left", "the way back to the chat")


def send_picture(person, file):
    person.press("Attach")
    person.watch(lambda r: r.get("is") == "chooser", "the photo chooser")
    print(f"  The person picks {file.name}.")
    person.host.send(do="pick", files=[str(file)])
    person.await_line(lambda line: line.get("mine") and line.get("previewShown"), "the picture in the chat")
    person.hear()
    text = person.complete("That is the light, @ro", "@robin")
    person.type(text + ": is it all right?")
    person.send()
    person.hear()


def break_connection(person, lab, issue):
    print("\n  The connection breaks while the technician writes.")
    lab.post("/typing", issue=issue)
    lab.post("/cut", issue=issue)
    promised = "Then it is the player. I am restarting it for you now (rocket)"
    lab.post("/say", issue=issue, message=promised)
    person.await_line(lambda line: line.get("text") == promised, "the line that was said meanwhile")
    print("  The connection has healed.\n")


def keep_what_could_not_go(person, lab):
    print("  The chat server stops.")
    lab.post("/prosody", do="kill")
    if person.chat.get("online"):
        person.watch(lambda _: not person.chat.get("online"), "the loss of the connection")
    text = person.complete("It shows a picture again. Thank you! (thumbs", "(thumbsup)")
    print(f"  The person sends it: \"{text}\".")
    person.host.send(do="send")
    person.watch(lambda r: r.get("is") == "error", "a word that it did not go")
    print("  The chat server is back, the text still stands in the entry bar, and the person sends it again.")
    lab.post("/prosody", do="start")
    person.watch(lambda _: person.chat.get("online"), "the room")
    person.send()


def check_lines(person, lab, issue):
    """What the room has heard against what the person sees."""
    wrong = {}
    for _ in range(50):
        heard = [event["text"] for event in lab.get(f"/events?kind=line&issue_id={issue}")["results"]]
        difference = collections.Counter(heard)
        difference.subtract(line.get("text") or line.get("url", "") for line in person.lines)
        wrong = {text: count for text, count in difference.items() if count}
        if not wrong:
            print(f"\n  All {len(heard)} lines of the room are on the screen, each of them once.\n")
            return
        # The service may write down the latest a moment after it was said.
        person.look(0.1)
    raise Failure(f"lines are missing (1) or doubled (-1): {wrong}")


def end_chat(person):
    person.press("End Chat")
    person.watch(lambda r: r.get("is") == "left", "the chat to close")
