"""Programs that speak JSON lines, and the lab of the local service."""

import ctypes
import json
import queue
import signal
import subprocess
import threading
import urllib.request

DEADLINE = 15.0


class Failure(Exception):
    """Something that was awaited did not come."""


class Silence(Failure):
    """Nothing at all came."""


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
            raise Silence("nothing came in time") from None
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


class Lab:
    """Causes what a real service does only by accident."""

    def __init__(self, address):
        self.address = address

    def get(self, path):
        return json.loads(self.download(path))

    def post(self, path, **body):
        return json.loads(self._ask(urllib.request.Request(self.address + path, json.dumps(body).encode())))

    def download(self, path):
        """The bytes of the answer."""
        return self._ask(urllib.request.Request(self.address + path))

    def await_change(self, issue, change):
        """The number of the event that changed the case so."""
        return self.await_event(f"kind=issue&issue_id={issue}&change={change}", f"the case {change}")

    def await_answered(self, path, after):
        """Until the kit has asked there since that event."""
        return self.await_event(f"kind=answered&path={path}&after={after}", f"a request to {path}")

    def await_event(self, query, what):
        """The number of the latest event that fits."""
        events = self.get(f"/events?{query}&wait=5000")["results"]
        if not events:
            raise Failure(f"the service never saw {what}")
        return events[-1]["seq"]

    @staticmethod
    def _ask(request):
        try:
            with urllib.request.urlopen(request, timeout=DEADLINE) as answer:
                return answer.read()
        except OSError as error:
            raise Failure(f"{request.full_url}: {error}") from None
