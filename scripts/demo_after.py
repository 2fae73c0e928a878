"""What follows a chat: its rating, the finished case in the history, an article, a call back."""

from demo_person import is_screen
from demo_programs import Failure
from demo_screens import draw

COMMENT = "Quick and kind."
WRONG_NUMBER, NUMBER = "(312) 155-0188", "(312) 555-0188"


def go_on(person, lab, issue):
    rate(person)
    lab.await_answered("/sdk/v1/issues/history", after=lab.await_change(issue, "rated"))
    reopen(person, issue)
    search(person)
    ask_for_a_call(person)
    check_records(lab, issue)


def rate(person):
    person.watch(is_screen("RatingViewController"), "the rating")
    print("\n  The kit asks how it was. The person gives five stars and a word.")
    person.host.send(do="press", label="5")
    person.host.send(do="type", text=COMMENT)
    draw(person.look_again())
    person.press("Submit")
    person.watch(lambda r: r.get("is") == "dismiss", "the end of the request")


def reopen(person, issue):
    history = person.open("My cases", "HistoryViewController")
    draw(history)
    person.press("...")
    person.watch(is_screen("HistoryActionPopupMenu"), "the switches")
    print("  The person switches \"Closed\" off.")
    person.host.send(do="set", field="Closed", value=False)
    person.back()
    history = person.watch(is_screen("HistoryViewController"), "the shorter list")
    draw(history)
    rows = [row["label"] for row in history["sections"][0]["rows"]]
    row = next((place for place, label in enumerate(rows) if issue in label), None)
    if row is None:
        raise Failure(f"the case is not among {rows}")
    print(f"  The person opens \"{rows[row]}\" again.")
    person.host.send(do="select", row=row)
    chat = person.watch(lambda r: r.get("readOnly") and r.get("groups"), "the finished case")
    draw(chat)
    person.back()
    person.back()


def search(person):
    person.open("Help articles", "KBListViewController")
    person.press("Search")
    person.watch(is_screen("KBSearchViewController"), "the search")
    print("  The person searches for \"status lights\".")
    person.type("status lights")
    person.host.send(do="send")
    found = person.watch(lambda r: r.get("sections") and r["sections"][-1]["rows"], "an article")
    draw(found)
    person.host.send(do="select", section=1, row=0)
    person.watch(lambda r: r.get("is") == "web", "the article's page")
    person.back()
    print("  The person empties the search bar.")
    person.type("")
    draw(person.watch(lambda r: r.get("sections") and r["sections"][0]["rows"], "the recent searches"))
    person.back()
    person.back()


def ask_for_a_call(person):
    person.open("Call me back", "CallMeViewController")
    for number in (WRONG_NUMBER, NUMBER):
        print(f"  The person types {number}.")
        person.type(number)
        dialog = person.look_again()
        submit = dialog["buttons"][-1]
        if submit["enabled"] != (number == NUMBER):
            raise Failure(f"\"{submit['label']}\" is wrong for {number}")
        draw(dialog)
    person.press("Submit")
    person.watch(lambda r: r.get("is") == "info", "a word that it is arranged")


def check_records(lab, issue):
    """What the service has kept of it."""
    case = lab.get(f"/issues/{issue}")["results"][0]
    kept = {key: case.get(key) for key in ("isRated", "rating", "rating_notes")}
    if kept != {"isRated": True, "rating": 5, "rating_notes": COMMENT}:
        raise Failure(f"the service has kept another rating: {kept}")
    calls = [case["reference_num"] for case in lab.get("/issues?open")["results"]
             if case.get("callback_number") == NUMBER]
    if len(calls) != 1:
        raise Failure(f"the service has {len(calls)} cases with {NUMBER}")
    print(f"\n  The service has the five stars, the comment, and case {calls[0]} with the number to call.")
