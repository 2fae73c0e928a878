"""The demonstration of diagnostics: an application reports its own checks, packs its logs and uploads them."""

import json
import random
import time

from demo_programs import DEADLINE, Failure

CHECKS = [
    {"kind": "health", "name": "disk", "status": 0, "detail": "71 % free"},
    {"kind": "hardware", "name": "screen", "status": 3, "detail": "no signal at its second input"},
    {"kind": "cloud", "name": "playlist", "status": 0},
]


class Application:
    """support-host with a bundle of its own, which no person looks at."""

    def __init__(self, start, build, folder, ready):
        bundle = folder / "bundle"
        bundle.mkdir()
        (bundle / "Info.json").write_text(json.dumps({"CFBundleIdentifier": "demonstration.signage"}))
        (bundle / "support.json").write_text(json.dumps(ready["configuration"]))
        self.program = start(build / "hosts/cli/support-host", "--data", folder / "host", "--bundle", bundle,
                             "--ca", ready["caFile"])

    def do(self, answer, **command):
        """Sends a command and waits for that report."""
        self.program.send(**command)
        return self.watch(lambda report: report["is"] == answer, answer)

    def watch(self, wanted, what):
        deadline = time.monotonic() + DEADLINE
        while time.monotonic() < deadline:
            report = self.program.next(deadline - time.monotonic())
            if report["is"] == "refused":
                raise Failure(f"the application was refused: {report['why']}")
            if wanted(report):
                return report
        raise Failure(f"{what} did not come")


def play(start, build, folder, ready, lab):
    application = Application(start, build, folder, ready)
    introduce(application, ready)
    make_logs(folder / "logs")
    archive = pack(application, folder)
    flush(application, archive)
    check_order(lab)
    fetch_dump(lab, archive, folder / "received.tar.gz")
    compare(application, folder)
    print("\n  All of it arrived as it was.")


def introduce(application, ready):
    if not application.do("proactive", do="proactive", name="support", customer=ready["customer"])["sdk"]:
        raise Failure("the configuration file was not loaded")
    application.watch(lambda report: report.get("operation") == "supportDidRetrieveSettings", "the settings")
    deadline = time.monotonic() + DEADLINE
    while not application.do("queue", do="queue").get("customer"):
        if time.monotonic() > deadline:
            raise Failure("the customer is still unknown")
        application.program.send(do="wait", milliseconds=50)
    print("  An application has loaded its configuration file; settings and customer are known. No screen is open.\n")


def make_logs(folder):
    """Names, depths and sizes as real logs have them: the same in each run."""
    chance = random.Random(7)
    for number in range(40):
        place = folder / f"player-{number % 4}" / "2026" / ("days-" + "and-nights-" * (number % 3 * 5))
        place.mkdir(parents=True, exist_ok=True)
        lines = (f"{second:06} frame {chance.random():.9f} of channel {number}\n"
                 for second in range(chance.randrange(4000)))
        (place / f"{number:02}.log").write_text("".join(lines))
    (folder / "empty.log").touch()
    (folder / "core").write_bytes(chance.randbytes(512 * 1024 + 1))


def files_of(folder):
    return {path.relative_to(folder): path.read_bytes() for path in folder.rglob("*") if path.is_file()}


def pack(application, folder):
    archive = folder / "logs.tar.gz"
    packed = application.do("packed", do="pack", sources=[str(folder / "logs")], target=str(archive))
    if packed["end"] != "done" or packed["skipped"]:
        raise Failure(f"the logs were not packed: {packed}")
    size = sum(len(content) for content in files_of(folder / "logs").values())
    print(f"  It packs its logs: {packed['files']} files in {packed['folders']} folders, {size:,} bytes, "
          f"become {archive.stat().st_size:,}.\n")
    return archive


def flush(application, archive):
    for check in CHECKS:
        application.program.send(do="check", **check)
    application.program.send(do="check", kind="dump", status=1, detail="logs of this morning", files=[str(archive)])
    print("  Queued, and not sent yet:")
    for check in application.do("queue", do="queue")["checks"]:
        show(check, f"  with {check['files']} file" if "files" in check else "")
    flushed = application.do("flushed", do="flush")
    if (flushed["before"], flushed["after"]) != (len(CHECKS) + 1, 0):
        raise Failure(f"not all was flushed: {flushed}")
    print("  Flushed.\n")


def show(check, more=""):
    print(f"    {check['name']:<10} status {check['status_code']}  {check.get('status_detail', ''):<32}{more}".rstrip())


def check_order(lab):
    lab.await_event("kind=checks", "the checks")
    received = lab.get("/checks")["results"]
    print("  The service received, the latest first:")
    for check in received:
        show(check, f"  from {check['members_users_id']} at {check['members_locations_id']}")
    wanted = ["APP DUMP"] + [check["name"] for check in reversed(CHECKS)]
    if [check["name"] for check in received] != wanted:
        raise Failure(f"the checks are not {wanted}")
    told = [(check["status"], check.get("detail")) for check in reversed(CHECKS)]
    if [(check["status_code"], check.get("status_detail")) for check in received[1:]] != told:
        raise Failure("the checks do not say what they said")


def fetch_dump(lab, archive, target):
    lab.await_event("kind=dump", "the dump")
    dump, = lab.get("/dumps")["results"]
    target.write_bytes(lab.download(f"/dumps/{dump['id']}"))
    if target.read_bytes() != archive.read_bytes():
        raise Failure("the dump that the service received is another one")
    print(f"  and a dump of {dump['size']:,} bytes, byte for byte the archive.\n")


def compare(application, folder):
    target = folder / "unpacked"
    unpacked = application.do("unpacked", do="unpack", archive=str(folder / "received.tar.gz"), target=str(target))
    if unpacked["end"] != "done" or files_of(target / "logs") != files_of(folder / "logs"):
        raise Failure(f"what was unpacked is not what was packed: {unpacked}")
    print(f"  Unpacked, its {unpacked['files']} files are those that were packed.")
