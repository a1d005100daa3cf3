"""Random databases, values and scripts."""

import random

DERIVATIONS = [f"{function}-{where}" for function in ("avg", "min", "max") for where in ("sub", "super", "all")]
COMPARISONS = ["list-ge", "list-le"]
WALKS = [f"list-{test}-{where}" for where in ("subs", "supers") for test in ("eq", "ge", "le", "gt", "lt")]

# Sums of these are exact, so that every order of addition gives the same average.
EXACT = ["0", "0.5", "1", "1", "2", "-1.5", "0.25", "NA", "NA", "nan", "inf", "-inf", "-0"]
# Differences of exactly the tolerance, of more and of less.
CLOSE = ["0", "0", "-0", "1e-8", "1e-8", "-1e-8", "2e-8", "3e-9", "1.4e-8", "-2e-8", "NA", "nan", "0.5", "0.50000001"]
ORDINARY = ["0", "1", "2", "3", "3.25", "NA"]
CHARACTERS = "@AB?_~^`{|}\\'\",;-éß€ x"
ODD_NAMES = ["\x01", "${env:HOME}", "NULL", "\\N", "#", "-- ;"]
TOLERANCE = 1e-8

# What the random databases must have among them.
FACTS = {"NaN", "NA", "inf", "-inf", "a negative zero", "a repeated link", "a link to itself", "a link over some levels",
         "a difference of exactly the tolerance", "a repeated name", "an odd name", "a line without a name",
         "links that lead one level down"}


class Database:
    """A database of at most so many graphs, two invariant files and a list of names in a folder."""

    def __init__(self, chance, folder, most):
        count = chance.randint(1, most)
        self.names = []
        self.subs = []
        lines = []
        kind = chance.choice(["regular", "regular", "any", "loops", "chain", "flat"])
        levels = []
        for position in range(count):
            subs = []
            if kind == "regular":
                level = min(position * chance.randint(3, 5) // count, max(levels, default=-1) + 1)
                below = [one for one in range(position) if levels[one] == level - 1]
                subs = [chance.choice(below) for _ in range(chance.randint(1, 4))] if below else []
                levels.append(level)
            elif position > 0 and kind != "flat":
                reach = 2 if kind == "chain" and position < 8 else position
                subs = [position - chance.randint(1, min(reach, position)) for _ in range(chance.randint(0, 4))]
            if kind == "loops" and chance.random() < 0.3:
                subs.insert(chance.randint(0, len(subs)), position)
            self.names.append(self.new_name(chance))
            self.subs.append(subs)
            if chance.random() < 0.05:
                lines.append(chance.choice(["", "\t0"]))
            lines.append("\t".join([self.names[-1]] + [str(sub) for sub in subs]))
        self.path = folder / "random.tav"
        self.path.write_text("\n".join(lines) + "\n")
        self.has_lines_without_names = len(lines) > count
        self.values = []
        self.texts = []
        # Averages of close values depend on the order of addition: no comparison may follow them.
        self.pool = chance.choice([EXACT, CLOSE, ORDINARY])
        for number in range(2):
            path = folder / f"values-{number}.txt"
            self.texts.append([chance.choice(self.pool) for _ in self.names])
            rows = [f"{name}\t{value}" for name, value in zip(self.names, self.texts[-1])]
            path.write_text("\n".join(["GRAPH\tINV1"] + rows) + "\n")
            self.values.append(path)
        self.saved = folder / "saved.g6"
        self.seeds = folder / "seeds.g6"
        seeds = [chance.choice(self.names + ["missing"]) for _ in range(chance.randint(0, 4))]
        self.seeds.write_text("\n".join(seeds))

    def new_name(self, chance):
        if self.names and chance.random() < 0.1:
            return chance.choice(self.names)
        if chance.random() < 0.05:
            return chance.choice(ODD_NAMES)
        return "g" + "".join(chance.choice(CHARACTERS) for _ in range(chance.randint(0, 5)))


    def facts(self):
        """Those of FACTS that hold for it."""
        levels = []
        for position, subs in enumerate(self.subs):
            levels.append(max((levels[sub] + 1 for sub in subs if sub != position), default=0))
        links = [(position, sub) for position, subs in enumerate(self.subs) for sub in subs]
        steps = {levels[position] - levels[sub] for position, sub in links}
        texts = self.texts[0] + self.texts[1]
        inv1, inv2 = ([None if text == "NA" else float(text) for text in texts] for texts in self.texts)
        differences = [abs(inv1[one] - inv2[other]) for link in links for one, other in (link, link[::-1])
                       if inv1[one] is not None and inv2[other] is not None]
        holds = {"NaN": "nan" in texts, "NA": "NA" in texts, "inf": "inf" in texts, "-inf": "-inf" in texts,
                 "a negative zero": "-0" in texts, "a repeated link": len(set(links)) < len(links),
                 "a link to itself": any(position == sub for position, sub in links),
                 "a link over some levels": max(steps, default=0) > 1,
                 "a difference of exactly the tolerance": TOLERANCE in differences,
                 "a repeated name": len(set(self.names)) < len(self.names),
                 "an odd name": not set(ODD_NAMES).isdisjoint(self.names),
                 "a line without a name": self.has_lines_without_names,
                 "links that lead one level down": steps == {1}}
        return {fact for fact, does_hold in holds.items() if does_hold}


class Script:
    """A script whose lists are all shown at the end; none of them needs to be there."""

    def __init__(self, database):
        self.lines = [f"load {database.path}", f"load-i1 {database.values[0]}", f"load-i2 {database.values[1]}"]
        self.lists = 0

    def add(self, line):
        self.lines.append(line)

    def new_list(self, command, *sources):
        self.lists += 1
        self.lines.append(" ".join([f"-{command} list{self.lists}", *sources]))
        return f"list{self.lists}"

    def text(self):
        shows = [f"-show list{number}" for number in range(1, self.lists + 1)]
        return "\n".join(self.lines + shows + ["lists"]) + "\n"


def random_script(chance, database, commands):
    """A script with these commands, in this order, and what they need."""
    script = Script(database)
    script.add(f"list-from-file seeds {database.seeds}")
    script.add(f"save-graphs {database.saved}")
    made = []
    for command in commands:
        if command in DERIVATIONS:
            script.add(command)
            if command.startswith("avg") and database.pool is CLOSE:
                script.add(f"load-i2 {database.values[1]}")
        elif command in ("exchange", "i1-gets-i2", "i2-gets-i1"):
            script.add(command)
        elif command in ("subs", "supers"):
            made.append(script.new_list(command, chance.choice(["seeds"] + made)))
        elif command in ("union", "intersection", "difference"):
            made.append(script.new_list(command, *(chance.choice(["seeds"] + made) for _ in range(2))))
        elif command == "load-i1":
            script.add(f"load-i1 {chance.choice(database.values)}")
        elif command == "load-i2":
            script.add(f"load-i2 {chance.choice(database.values)}")
        elif command == "remove-list":
            if made:
                script.add(f"-remove-list {made.pop()}")
        else:
            made.append(script.new_list(command))
    return script.text()


def every_command():
    algebra = ["subs", "supers", "union", "intersection", "difference"] * 2
    return (COMPARISONS + WALKS + DERIVATIONS + algebra + ["exchange", "i1-gets-i2", "i2-gets-i1", "remove-list"] +
            ["load-i1", "load-i2"] * 2)
