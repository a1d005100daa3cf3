"""Runs examples/cluster under schedulers, kills tasks, starts them again, and compares with the whole.

  python3 tests/schedulers BUILD FOLDER [--order N] [--kills N] [--seed SEED]

BUILD is a build tree with tav; FOLDER is for files. The connected graphs on up to N vertices are made and asked in five
parts. One part is killed at each of its steps, and as often as is said at a random moment.
"""

import argparse
import os
import pathlib
import random
import shutil
import signal
import subprocess
import sys
import tempfile
import time

import schedulers

PARTS = 5
KILLED = 2  # the part that is killed
STEPS = ["generate", "build", "invariant", "run"]

# Stands in the path before the real programs. Told to hold a step, it does half of it, notes its process and waits.
PROGRAM = """\
#!/bin/bash
half() {{
    echo $$ > {folder}/held.new
    mv {folder}/held.new {folder}/held
    exec tail --follow --pid=$$ /dev/null
}}
case $(basename "$0"):$1:$(cat {folder}/hold 2>/dev/null) in
nauty-geng:*:generate)
    {geng} "$@" > {folder}/all
    head -n $(($(wc -l < {folder}/all) / 2)) {folder}/all
    half ;;
tav:build:build)
    graphs=${{!#}}
    exec {tav} "${{@:1:$#-1}}" < <(head -n $(($(wc -l < "$graphs") / 2)) "$graphs"; half) ;;
tav:invariant:invariant | tav:run:run) half ;;
tav:*) exec {tav} "$@" ;;
*) exec {geng} "$@" ;;
esac
"""


class Difference(Exception):
    pass


class Check:
    """The parts in a folder, and what must be in them."""

    def __init__(self, make, build, folder, order):
        self.tav = build / "tav" / "tav"
        self.order = order
        self.folder = folder / "parts"
        self.hold = folder / "hold"
        self.held = folder / "held"
        programs = folder / "programs"
        programs.mkdir()
        for name in ("tav", "nauty-geng"):
            program = programs / name
            program.write_text(PROGRAM.format(folder=folder, tav=self.tav, geng=shutil.which("nauty-geng")))
            program.chmod(0o755)
        self.environment = dict(os.environ, PATH=f"{programs}:{os.environ['PATH']}")
        shutil.copytree(pathlib.Path(__file__).resolve().parents[2] / "examples" / "cluster", self.folder)
        self.call("./prepare", order, PARTS)
        self.scheduler = make(self.folder, self.environment)

    def call(self, *command, status=0, standard_input=None):
        result = subprocess.run([str(one) for one in command], cwd=self.folder, env=self.environment, text=True,
                                input=standard_input, capture_output=True)
        if result.returncode != status:
            raise Difference(f"{' '.join(map(str, command))} ends with {result.returncode}: {result.stderr}")
        return result

    def made(self):
        return sorted(one.name for one in (self.folder / "parts").iterdir())

    def compare_with_whole(self):
        """The parts are the database, and their answers its answer."""
        if self.made() != [str(number) for number in range(PARTS)]:
            raise Difference(f"in place of the parts there are {self.made()}")
        whole = self.folder / "whole.tav"
        with open(whole, "wb") as file:
            for one in [self.folder / "base.tav", *self.folder.glob("parts/*/part.tav")]:
                file.write(one.read_bytes())
        facts = self.call("tav", "info", whole).stdout.splitlines()
        graphs = "".join(self.call("nauty-geng", "-cq", number).stdout for number in range(1, self.order + 1))
        built = self.folder / "built.tav"
        self.call("tav", "build", "-o", built, standard_input=graphs)
        expected_facts = self.call("tav", "info", built).stdout.splitlines()
        for fact in ("graphs:", "links:", "faults:"):
            if [one for one in facts if one.startswith(fact)] != [one for one in expected_facts if one.startswith(fact)]:
                raise Difference(f"the parts: {facts}, the whole: {expected_facts}")
        script = (f"load {built}\ncompute-i1 average_distance\nmin-sub\nlist-le smaller\nlist-ge larger\n"
                  "difference found smaller larger\nshow found\n")
        expected = sorted(self.call("tav", "run", "-q", standard_input=script).stdout.splitlines())
        found = self.call("./collect").stdout.splitlines()
        if not found or found != expected:
            raise Difference(f"{len(found)} graphs are found in parts, {len(expected)} in the whole")
        return len(found)

    def part(self):
        """The files of the part that is killed, with what they hold; nothing when it is not there."""
        return {one.name: one.read_bytes() for one in (self.folder / "parts" / str(KILLED)).glob("*")}

    def kill_and_repeat(self, expected, step=None, alone=False, delay=0.0):
        """Kills the part, at a step or after a time. It is complete or not there; the next attempt makes it.

        Alone, the program of the step is killed and nothing else, as where memory is short.
        """
        moment = f"killed at {step or delay}{' alone' if alone else ''}"
        shutil.rmtree(self.folder / "parts" / str(KILLED))
        if step:
            self.hold.write_text(step)
        self.scheduler.start([KILLED])
        if step:
            schedulers.wait_until(self.held.exists, f"the step '{step}'")
            held = int(self.held.read_text())
            self.held.unlink()
            self.hold.unlink()
        time.sleep(delay)
        if alone:
            os.kill(held, signal.SIGKILL)
            self.scheduler.wait()
        else:
            self.scheduler.kill()
        there = str(KILLED) in self.made()
        if there and (step or self.part() != expected):
            raise Difference(f"{moment}: something else is taken for the part")
        if not there:
            missing = self.call("./collect", status=1).stderr
            if missing != f"Missing parts: {KILLED}\n":
                raise Difference(f"{moment}: {missing}")
        self.scheduler.start(range(PARTS))
        self.scheduler.wait()
        if self.part() != expected or len(self.made()) != PARTS:
            raise Difference(f"{moment} and started again: {self.made()}")


def check(make, build, folder, order, kills, seed):
    one = Check(make, build, folder, order)
    try:
        begin = time.monotonic()
        one.scheduler.start(range(PARTS))
        one.scheduler.wait()
        seconds = time.monotonic() - begin
        found = one.compare_with_whole()
        expected = one.part()
        for step in STEPS:
            for alone in (False, True):
                one.kill_and_repeat(expected, step, alone)
        chance = random.Random(seed)
        for _ in range(kills):
            one.kill_and_repeat(expected, delay=chance.uniform(0, 2 * seconds / PARTS))
        one.compare_with_whole()
    finally:
        one.scheduler.stop()
    print(f"{make.name}: {PARTS} parts, {found} graphs found as in the whole; killed twice at each of {len(STEPS)} "
          f"steps and at {kills} random moments, and made anew", flush=True)


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("build", type=pathlib.Path)
    parser.add_argument("folder", type=pathlib.Path)
    parser.add_argument("--order", type=int, default=8)
    parser.add_argument("--kills", type=int, default=3)
    parser.add_argument("--seed", type=int, default=1)
    options = parser.parse_args()
    for make in (schedulers.Parallel, schedulers.Slurm):
        with tempfile.TemporaryDirectory(dir=options.folder) as name:
            check(make, options.build.resolve(), pathlib.Path(name), options.order, options.kills, options.seed)


try:
    main()
except Difference as difference:
    sys.exit(f"schedulers: {difference}")
