#!/usr/bin/env python3
"""How long after a cut network is healed the first line that was missed is on screen: support-host beside profanity,
both in one room of one Prosody, through the same cut. For 20 s the network takes what is sent and brings nothing
back. Needs root, ip, nft, tmux and profanity. Usage: heal.py BUILD_DIR [SECONDS]"""

import os
import pathlib
import subprocess
import sys
import tempfile
import time

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parents[2] / "scripts"))
from demo_programs import DEADLINE, Failure, Lab, Program  # noqa: E402

GIVE_UP = 180


def run(*command):
    subprocess.run([str(part) for part in command], check=True)


def cut(port):
    run("nft", "add", "rule", "inet", "cut", "in", "tcp", "sport", port, "drop")


def heal():
    run("nft", "flush", "table", "inet", "cut")


class Kit:
    """A person at support-host."""

    def __init__(self, build, ready, folder, log):
        self.host = Program([build / "hosts/cli/support-host", "--data", folder / "host", "--ca", ready["caFile"]], log)
        self.host.send(do="load", configuration=ready["configuration"], customer=ready["customer"])
        waiting = {"supportButtonDidGetSettings", "supportButtonDidGetCustomer"}
        while waiting:
            waiting.discard(self.host.next(DEADLINE).get("operation"))
        self.host.send(do="tap")
        self.await_report(lambda report: report["is"] == "menu")
        self.host.send(do="choose", label="Chat with us")
        self.await_report(lambda report: report.get("online"))

    def await_report(self, wanted, seconds=DEADLINE):
        end = time.monotonic() + seconds
        while not wanted(self.host.next(end - time.monotonic())):
            pass

    def sees(self, text, seconds):
        def is_there(report):
            return any(line.get("text") == text for group in report.get("groups", []) for line in group["lines"])
        self.await_report(is_there, seconds)

    def say(self, text):
        self.host.send(do="type", text=text)
        self.host.send(do="send")

    def stop(self):
        self.host.stop()


class Profanity:
    """A person at profanity, in a terminal of its own."""

    def __init__(self, account, ready, room, folder):
        self.tmux = ["tmux", "-S", str(folder / "tmux")]
        environment = dict(os.environ, HOME=str(folder), XDG_CONFIG_HOME=str(folder / "config"),
                           XDG_DATA_HOME=str(folder / "data"), TERM="xterm-256color")
        subprocess.run([*self.tmux, "-f", "/dev/null", "new-session", "-d", "-x", "160", "-y", "50", "profanity"],
                       env=environment, check=True)
        self.sees("/help", DEADLINE)
        xmpp = ready["xmpp"]
        self.type("/reconnect 1")  # in seconds; by default it waits for 30
        self.type(f"/connect {account['jid']} server {xmpp['host']} port {xmpp['port']} tls trust")
        self.sees("password", DEADLINE)
        self.type(account["password"])
        self.sees("logged in", DEADLINE)
        self.type(f"/join {room} nick profanity")
        self.sees("-> You have joined", DEADLINE)

    def type(self, text):
        run(*self.tmux, "send-keys", "-l", text)
        run(*self.tmux, "send-keys", "Enter")
        time.sleep(0.3)

    def screen(self):
        return subprocess.run([*self.tmux, "capture-pane", "-p"], capture_output=True, text=True, check=True).stdout

    def sees(self, text, seconds):
        end = time.monotonic() + seconds
        while text not in self.screen():
            if time.monotonic() > end:
                raise Failure(f"profanity never showed {text!r}:\n{self.screen()}")
            time.sleep(0.02)

    def say(self, text):
        self.type(text)

    def stop(self):
        run(*self.tmux, "kill-server")


def measure(client, lab, issue, port, seconds):
    """Seconds from the heal to the missed line; nothing when it never came."""
    lab.post("/say", issue=issue, message="before the cut")
    client.sees("before the cut", DEADLINE)
    cut(port)
    client.say("said into the cut")
    lab.post("/say", issue=issue, message="missed line")
    time.sleep(seconds)
    heal()
    healed = time.monotonic()
    try:
        client.sees("missed line", GIVE_UP)
    except Failure as failure:
        print(f"    {str(failure)[:2000]}")
        return None
    return time.monotonic() - healed


def bench(name, build, seconds):
    with tempfile.TemporaryDirectory() as name_of_folder, open(f"{name_of_folder}/log", "w") as log:
        folder = pathlib.Path(name_of_folder)
        service = Program([build / "service/support-service", "--data", folder / "service"], log)
        clients = []
        try:
            ready = service.next(DEADLINE)
            lab = Lab(ready["lab"])
            clients.append(Kit(build, ready, folder, log))
            issue = lab.get("/issues?open")["results"][-1]["id"]
            comm = lab.get("/records/comm")["results"][-1]
            if name == "profanity":
                clients.pop().stop()
                account = lab.get("/records/account")["results"][-1]
                clients.append(Profanity(account, ready, comm["external_id"], folder))
            took = measure(clients[0], lab, issue, ready["xmpp"]["port"], seconds)
        finally:
            heal()
            for client in clients:
                client.stop()
            service.stop()
    print(f"  {name:14} " + (f"{took:6.2f} s" if took is not None else f"not within {GIVE_UP} s"), flush=True)


def main():
    if "HEAL_INSIDE" not in os.environ:
        os.environ["HEAL_INSIDE"] = "1"
        os.execvp("unshare", ["unshare", "-n", sys.executable, *sys.argv])
    run("ip", "link", "set", "lo", "up")
    run("nft", "add", "table", "inet", "cut")
    run("nft", "add chain inet cut in { type filter hook input priority 0; }")
    build, seconds = pathlib.Path(sys.argv[1]), float(sys.argv[2]) if len(sys.argv) > 2 else 20
    print(f"from the heal of a network that was cut for {seconds:.0f} s to the first missed line on screen:")
    for name in ("support-host", "profanity"):
        bench(name, build, seconds)


if __name__ == "__main__":
    main()
