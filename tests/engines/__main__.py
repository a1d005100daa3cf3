"""Asks SQL engines what tav run is asked, and compares the answers.

  python3 tests/engines BUILD FOLDER [--duckdb N] [--spark N] [--seed SEED]

BUILD is a build tree with tav and the program derivations; FOLDER is for files. Checked are every command on the
connected graphs on up to eight vertices, and random databases, as many for each engine as is said.
"""

import argparse
import math
import pathlib
import random
import subprocess
import sys
import tempfile

import engines
import samples

INVARIANTS = ["algebraicconnectivity", "averagedistance", "diameter", "girth", "size", "spectralradius"]


class Difference(Exception):
    pass


class Check:
    """What both sides say about a database."""

    def __init__(self, build, examples):
        self.tav = build / "tav" / "tav"
        self.derivations = build / "tests" / "engines" / "derivations"
        self.examples = examples
        self.comparisons = 0

    def call(self, *command):
        result = subprocess.run([str(one) for one in command], capture_output=True)
        if result.returncode != 0:
            raise Difference(f"{' '.join(map(str, command))}: {result.stderr.decode()}")
        return result.stdout.decode()

    def export(self, tables, database, values, parts=1, computed=()):
        options = [option for one in values for option in ("--values", one)]
        options += [option for one in computed for option in ("--compute", one)]
        self.call(self.tav, "export", "--parts", parts, "-o", tables, *options, database)

    def sql(self, engine, tables, script, at_once=None):
        options = ["--slice", at_once] if at_once else []
        return self.call(self.tav, "sql", "--dialect", engine.name, "--tables", tables, *options, script)

    def compare_lists(self, engine, tables, script, files, at_once=None):
        """What the script prints, and the files that it writes, must be the same, in the same order."""
        expected = lines(self.call(self.tav, "run", "-q", script))
        expected_in = {file: lines(file.read_text("latin-1")) for file in files}
        for file in files:
            file.unlink()
        text = self.sql(engine, tables, script, at_once)
        found = ["\t".join(map(str, row)) for row in engine.run(text)]
        self.comparisons += 1
        if found != expected:
            raise Difference(f"{script}: {first_difference(found, expected)}")
        for file in files:
            # tav run writes Latin-1, and ? for what that has not.
            saved = lines(engine.saved(file).encode("latin-1", "replace").decode("latin-1"))
            if saved != expected_in[file]:
                raise Difference(f"{script}: {file.name}: {first_difference(saved, expected_in[file])}")

    def compare_values(self, engine, tables, database, values, operation, at_once=None):
        """What an operation makes of the values must be the same, averages to 1e-12."""
        script = tables.parent / "derivation.txt"
        script.write_text(f"load {database}\nload-i1 {values}\n{operation}\n")
        expected = {}
        for line in self.call(self.derivations, database, values, operation).splitlines():
            _, position, value = line.split()
            expected[int(position)] = float(value)
        engine.run(self.sql(engine, tables, script, at_once))
        rows = engine.ask("SELECT id, lvl, v FROM i2")
        found = {position: value for position, _, value in rows}
        levels = dict(engine.ask("SELECT id, lvl FROM graph"))
        self.comparisons += 1
        if len(rows) != len(found) or found.keys() != expected.keys():
            raise Difference(f"{operation} of {values}: values for other graphs")
        for position, level, value in rows:
            if levels[position] != level:
                raise Difference(f"{operation} of {values}: graph {position} is not on level {level}")
            if not same(value, expected[position]):
                raise Difference(f"{operation} of {values}: graph {position}: {value} for {expected[position]}")


def lines(text):
    """Names may have what else Python takes for the end of a line."""
    return text.removesuffix("\n").split("\n") if text else []


def same(a, b):
    if math.isnan(a) or math.isnan(b) or math.isinf(a) or math.isinf(b):
        return a == b or (math.isnan(a) and math.isnan(b))
    return abs(a - b) <= 1e-12 * max(1.0, abs(b))


def first_difference(found, expected):
    for number, (one, other) in enumerate(zip(found, expected), 1):
        if one != other:
            return f"line {number} is {one!r} and not {other!r}"
    return f"{len(found)} lines and not {len(expected)}"


def check_examples(check, engine, folder):
    """Every command once on the connected graphs, with the six invariants in turn."""
    database = check.examples / "connected-8.tav"
    files = {name: check.examples / f"connected-8.{name}.txt" for name in INVARIANTS}
    tables = folder / "connected-8"
    check.export(tables, database, files.values(), 2, ["size - order"])
    script = [f"load {database}  # the last character is no end of a line: \\",
              f"list-from-file regular {check.examples / 'regular-8.g6'}", "-show nothing", "clear", f"load {database}"]
    pairs = [(one, other) for one in INVARIANTS for other in INVARIANTS if one != other]
    shown = ["regular"]
    for number, command in enumerate(samples.COMPARISONS + samples.WALKS):
        first, second = pairs[number * 7 % len(pairs)]
        script += [f"load-i1 {files[first]}", f"load-i2 {files[second]}", f"-{command} \"the {command}\""]
        shown.append(f"\"the {command}\"")
    for number, command in enumerate(samples.DERIVATIONS):
        # Extrema are equal to values of neighbours: the averages are compared below.
        script += [f"load-i1 {files[INVARIANTS[number % 6]]}", command]
        if not command.startswith("avg"):
            script.append(f"-list-ge {command}")
            shown.append(command)
    script += ["compute-i1 size - order", "i2-gets-i1", "exchange", "i1-gets-i2", "compute-i2  size  -  order",
               "-list-eq-subs computed", "subs below regular", "supers above regular", "union all below above",
               "intersection both below above", "difference rest below both", "show all", "remove-list all",
               f"save-list rest {folder / 'rest.g6'}", f"save-graphs {folder / 'all.g6'}"]
    shown += ["computed", "below", "above", "both", "rest"]
    script += [f"-show {name}" for name in shown] + ["lists"]
    path = folder / f"every-command-{engine.name}.txt"
    path.write_text("\n".join(script) + "\n")
    check.compare_lists(engine, tables, path, [folder / "rest.g6", folder / "all.g6"])
    for number, operation in enumerate(samples.DERIVATIONS):
        name = INVARIANTS[(number + 1) % 6]
        check.compare_values(engine, tables, database, files[name], operation)


def check_failure(check, engine, folder):
    """Where tav run ends for want of a list, the SQL ends with the same message."""
    database = check.examples / "connected-8.tav"
    tables = folder / "connected-8"
    script = folder / "failure.txt"
    script.write_text(f"load {database}\nlist-ge none\nshow none\n")
    message = f"{script}:3: show failed: there is no list 'none'"
    result = subprocess.run([check.tav, "run", "-q", script], capture_output=True)
    if result.returncode != 1 or not result.stderr.decode().endswith(f"tav: {message}\n"):
        raise Difference(f"tav run: {result.stderr.decode()}")
    try:
        engine.run(check.sql(engine, tables, script))
    except engine.failure as failure:
        if message in str(failure):
            return
        raise
    raise Difference("a list that is missing does not end the SQL")


def check_random(check, engine, folder, seed, number):
    """A random database with commands in random order, and the values after one derivation. Returns its facts."""
    chance = random.Random(f"{seed} {number}")
    with tempfile.TemporaryDirectory(dir=folder) as name:
        place = pathlib.Path(name)
        is_larger = chance.random() >= 0.9
        database = samples.Database(chance, place, engine.most_graphs * (3 if is_larger else 1))
        tables = place / "id=7"  # an engine could take that for the value of a column
        check.export(tables, database.path, database.values, chance.randint(1, 3))
        every = samples.every_command()
        count = min(engine.commands_at_once, len(every))
        commands = [every[(number * count + one) % len(every)] for one in range(count)]
        chance.shuffle(commands)
        script = place / "script.txt"
        script.write_text(samples.random_script(chance, database, commands))
        at_once = chance.choice(engine.slices)
        operation = samples.DERIVATIONS[number % len(samples.DERIVATIONS)]
        try:
            check.compare_lists(engine, tables, script, [database.saved], at_once)
            check.compare_values(engine, tables, database.path, database.values[0], operation, at_once)
        except Exception:
            print(f"{engine.name}: database {number} of seed {seed}, --slice {at_once}\n{database.path.read_text()}\n"
                  f"{database.values[0].read_text()}\n{database.values[1].read_text()}\n{script.read_text()}")
            raise
        return database.facts()


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("build", type=pathlib.Path)
    parser.add_argument("folder", type=pathlib.Path)
    parser.add_argument("--duckdb", type=int, default=200)
    parser.add_argument("--spark", type=int, default=20)
    parser.add_argument("--seed", type=int, default=1)
    options = parser.parse_args()
    examples = pathlib.Path(__file__).resolve().parents[2] / "examples"
    check = Check(options.build.resolve(), examples)
    with tempfile.TemporaryDirectory(dir=options.folder) as name:
        folder = pathlib.Path(name)
        for number, make in ((options.duckdb, engines.DuckDb), (options.spark, lambda: engines.Spark(folder))):
            if number == 0:
                continue
            before = check.comparisons
            engine = make()
            place = folder / engine.name
            place.mkdir()
            try:
                check_examples(check, engine, place)
                check_failure(check, engine, place)
                facts = set()
                for one in range(number):
                    facts |= check_random(check, engine, place, options.seed, one)
            finally:
                engine.stop()
            if number >= 20 and facts != samples.FACTS:
                raise Difference(f"no random database has {', '.join(sorted(samples.FACTS - facts))}")
            print(f"{engine.name}: the examples and {number} random databases: {check.comparisons - before} comparisons, "
                  "no difference", flush=True)


try:
    main()
except Difference as difference:
    sys.exit(f"engines: {difference}")
