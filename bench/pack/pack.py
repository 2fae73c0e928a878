#!/usr/bin/env python3
"""Taring, gzipping and their reverse, beside cp, GNU tar, bsdtar, gzip and zlib's own example: bench_pack and its peers
in turns, medians of 3. Usage: pack.py BUILD_DIR [FOLDER]; needs 8 GiB in FOLDER (a new one under the temporary folder),
which is removed afterwards unless it was given. Every run begins with its sources in the page cache, its target removed
and nothing left to be written to disk; what it leaves in the cache is not waited for."""

import os
import pathlib
import random
import shutil
import statistics
import subprocess
import sys
import tempfile

GIBIBYTE = 1 << 30
NEEDED = 8 * GIBIBYTE
RUNS = 3
FILES, FOLDERS = 5000, 100
LOG_BYTES, LOG_FILES = 64 << 20, 16
ZPIPE = pathlib.Path("/usr/share/doc/zlib1g-dev/examples/zpipe.c")


def make_files(folder):
    """1 GiB that cannot be compressed; sizes are multiples of 512, which DCTar needs to read its archive back."""
    rng = random.Random(1)
    weights = [rng.random() for _ in range(FILES)]
    scale = GIBIBYTE / 512 / sum(weights)
    for number, weight in enumerate(weights):
        place = folder / f"part-{number % FOLDERS:03}"
        place.mkdir(parents=True, exist_ok=True)
        (place / f"file-{number:05}.bin").write_bytes(rng.randbytes(max(1, int(weight * scale)) * 512))


def make_logs(folder, whole):
    """1 GiB of a server's log in 16 files, and as one. 64 MiB of it come again and again, which deflate, with its window
    of 32 KiB, does not see."""
    rng = random.Random(2)
    verbs = ["connected", "disconnected", "sent 3 stanzas", "joined room", "left room", "timed out", "retries"]
    lines, length, time = [], 0, 1_795_000_000.0
    while length < LOG_BYTES:
        time += rng.expovariate(20)
        line = (f"{time:.3f} [{rng.choice('DIIIIWE')}] session={rng.getrandbits(48):012x} "
                f"user{rng.randrange(5000)}@chat.example {rng.choice(verbs)} "
                f"after {rng.randrange(90000)} ms, {rng.randrange(1 << 20)} bytes\n")
        lines.append(line)
        length += len(line)
    text = "".join(lines).encode()[:LOG_BYTES]
    folder.mkdir()
    for number in range(LOG_FILES):
        (folder / f"service-{number:02}.log").write_bytes(text)
        with open(whole, "ab") as file:
            file.write(text)


class Bench:
    def __init__(self, build, folder):
        self.kit = str(build / "bench/pack/bench_pack")
        self.folder = folder
        self.figures = folder / "figures"

    def measure(self, command, source, target, piped):
        """One run: wall and processor seconds, MiB. A piped command reads standard input and writes standard output."""
        if target.is_dir():
            shutil.rmtree(target)
        target.unlink(missing_ok=True)
        if not target.suffix:
            target.mkdir()
        os.sync()
        with open(source if piped else os.devnull, "rb") as given, open(target if piped else os.devnull, "wb") as taken:
            subprocess.run([self.kit, "measure", self.figures, *command], stdin=given, stdout=taken, check=True)
        wall, processor, peak = (float(text) for text in self.figures.read_text().split())
        return wall, processor, peak / 1024

    def compare(self, title, source, target, check, contenders):
        """Prints a table. A contender is a name, its command and whether it is piped; `check` is given each first
        result."""
        runs = {name: [] for name, _, _ in contenders}
        for turn in range(RUNS):
            for name, command, piped in contenders:
                runs[name].append(self.measure(command, source, target, piped))
                if turn == 0:
                    check(target)
        load = os.getloadavg()[0]
        print(f"\n{title}; medians of {RUNS}, load {load:.1f}\n\n| | wall s | processor s | peak MiB |\n|---|---|---|---|")
        for name, figures in runs.items():
            wall, processor, peak = (statistics.median(column) for column in zip(*figures))
            print(f"| {name} | {wall:.2f} | {processor:.2f} | {peak:.1f} |", flush=True)

    def run(self):
        files, logs, log = self.folder / "files", self.folder / "logs", self.folder / "all.log"
        make_files(files)
        make_logs(logs, log)
        zpipe = self.folder / "zpipe"
        if ZPIPE.exists():
            subprocess.run(["cc", "-O2", "-o", zpipe, ZPIPE, "-lz"], check=True)

        def extracts_to(original):
            return lambda target: subprocess.run(["diff", "-r", original, target], check=True)

        def lists(target):
            # cp's copy is a folder; an archive must at least be read by GNU tar.
            if not target.is_dir():
                subprocess.run(["tar", "-tf", target], check=True, stdout=subprocess.DEVNULL)

        def kit(operation, source, target):
            return [self.kit, operation, str(source), str(target)]

        def copying(source, target):
            return ["cp", "-r", "--reflink=never", f"{source}/.", str(target)]

        def with_zpipe(*options):
            return [("zpipe", [str(zpipe), *options], True)] if zpipe.exists() else []

        out, tar = self.folder / "out", self.folder / "out.tar"
        self.compare("cp -r of 1 GiB in 5,000 files: the disk's own limit", files, out, extracts_to(files),
                     [("cp -r", copying(files, out), False)])
        self.compare("tar of 1 GiB in 5,000 files", files, tar, lists, [
            ("GNU tar", ["tar", "-cf", str(tar), "-C", str(files), "."], False),
            ("bsdtar", ["bsdtar", "-cf", str(tar), "-C", str(files), "."], False),
            ("DCTar", kit("tar", files, tar), False)])

        given = self.folder / "given.tar"
        tar.rename(given)
        self.compare("extraction of that archive, as DCTar wrote it", given, out, extracts_to(files), [
            ("GNU tar", ["tar", "-xf", str(given), "-C", str(out)], False),
            ("bsdtar", ["bsdtar", "-xf", str(given), "-C", str(out)], False),
            ("DCTar", kit("untar", given, out), False)])
        shutil.rmtree(out)
        given.unlink()

        packed = self.folder / "out.gz"
        self.compare("gzip of 1 GiB of logs", log, packed, lambda target: None, [
            ("gzip -6", ["gzip", "-6"], True), *with_zpipe(),
            ("DCTar", kit("deflate", log, packed), False)])
        print(f"\nDCTar's: {packed.stat().st_size} bytes, ", end="")
        given = self.folder / "given.gz"
        subprocess.run(["gzip", "-6"], stdin=open(log, "rb"), stdout=open(given, "wb"), check=True)
        print(f"gzip's: {given.stat().st_size}")

        plain = self.folder / "out.log"
        of_zlib = self.folder / "given.zlib"
        if zpipe.exists():
            subprocess.run([zpipe], stdin=open(log, "rb"), stdout=open(of_zlib, "wb"), check=True)
        same = lambda target: subprocess.run(["cmp", log, target], check=True)  # noqa: E731
        self.compare("gunzip of 1 GiB of logs", given, plain, same, [
            ("gzip -d", ["gzip", "-d"], True),
            ("DCTar", kit("inflate", given, plain), False)])
        if zpipe.exists():
            self.compare("the same in zlib's format", of_zlib, plain, same, with_zpipe("-d"))
        for path in (packed, given, plain, log):
            path.unlink()

        packed = self.folder / "out.tgz"
        self.compare("the whole road: 1 GiB of logs in 16 files to a .tar.gz", logs, packed, lists, [
            ("tar -cz", ["tar", "-czf", str(packed), "-C", str(self.folder), "logs"], False),
            ("packDump", kit("pack", logs, packed), False)])
        given = self.folder / "given.tgz"
        packed.rename(given)
        self.compare("and back", given, out, lambda target: extracts_to(logs)(target / "logs"), [
            ("tar -xz", ["tar", "-xzf", str(given), "-C", str(out)], False),
            ("unpackDump", kit("unpack", given, out), False)])


def be_urgent():
    """Other work on the machine must not stand in the figures."""
    try:
        os.sched_setscheduler(0, os.SCHED_RR, os.sched_param(5))
        print("with real-time priority")
    except PermissionError:
        print("without real-time priority: other work on this machine counts")


def main():
    build = pathlib.Path(sys.argv[1]).resolve()
    folder = pathlib.Path(sys.argv[2] if len(sys.argv) > 2 else tempfile.mkdtemp(prefix="pack-")).resolve()
    folder.mkdir(exist_ok=True)
    try:
        if shutil.disk_usage(folder).free < NEEDED:
            sys.exit(f"{folder} needs 8 GiB of free disk")
        be_urgent()
        Bench(build, folder).run()
    finally:
        if len(sys.argv) <= 2:
            shutil.rmtree(folder)


main()
