"""See scripts/mutants."""

import argparse
import os
import random
import re
import subprocess
import sys
import time
from concurrent.futures import ProcessPoolExecutor

import mutants
import planting
import trials

ROOT = os.path.realpath(os.path.join(os.path.dirname(__file__), '../..'))
COPY = os.path.join(ROOT, 'build/mutants')
BUILD = os.path.join(COPY, 'build/mutants')
EQUIVALENT = 'tests/equivalent-mutants.txt'
RESULTS = os.path.join(COPY, 'build/results.txt')


def main():
    begin = time.monotonic()
    options = parsed_options()
    trials.require_containment()
    planting.copy_tree(ROOT, COPY)
    found = all_mutants(options.files, planting.configure(COPY), options.jobs)
    equivalent = kept_equivalents(os.path.join(ROOT, EQUIVALENT))
    for entry in sorted(equivalent - set(found.values())):
        if entry.file in options.files:
            print(f'{EQUIVALENT}: there is no such mutant any more\n{entry}\n')
    chosen = list(found)
    random.Random(options.seed).shuffle(chosen)
    del chosen[options.sample or len(chosen):]
    print(f'{len(chosen)} of {len(found)} mutants in {len(options.files)} files, seed {options.seed}', flush=True)

    planted = planting.build(COPY, chosen, options.jobs)
    tests = trials.measure(trials.tests_of(BUILD), len(chosen), options.jobs)
    numbers = [number for number in planted if found[planted[number]] not in equivalent]
    survivors = 0
    with open(RESULTS, 'w', encoding='utf-8') as results:
        for number, catch in trials.verdicts(tests, numbers, options.jobs):
            print(f'{found[planted[number]]}\n{catch or "survives"}\n', file=results, flush=True)
            if catch is None:
                survivors += 1
                reached = any(number in test.reached for test in tests)
                print(f'\n{found[planted[number]]}\n{"survives" if reached else "no test reaches it"}', flush=True)
    caught = len(numbers) - survivors
    share = 100 * caught / max(1, len(numbers))
    print(f'\n{caught} of {len(numbers)} are caught ({share:.1f} %), {survivors} survive; '
          f'{len(planted) - len(numbers)} are equivalent, {len(chosen) - len(planted)} do not compile; '
          f'{(time.monotonic() - begin) / 60:.0f} minutes. Each is in {os.path.relpath(RESULTS, ROOT)}.')
    sys.exit(1 if survivors else 0)


def parsed_options():
    parser = argparse.ArgumentParser(prog='scripts/mutants', description='Plants bugs and lists those no test catches.')
    parser.add_argument('--sample', type=int, default=200, metavar='N', help='so many mutants at random; 0 for all')
    parser.add_argument('--seed', type=int, default=random.randrange(10000), help='that of the sample')
    parser.add_argument('--jobs', type=int, default=os.cpu_count(), metavar='N', help='so many at a time')
    parser.add_argument('--commit', metavar='REV', help='the files that this commit changed')
    parser.add_argument('files', nargs='*', metavar='FILE')
    options = parser.parse_args()
    known = listed_files('git', 'ls-files', '--cached', '--others', '--exclude-standard')
    if options.commit:
        options.files += [file for file in listed_files('git', 'diff-tree', '--root', '--no-commit-id', '--name-only',
                                                        '-r', options.commit) if file in known]
    elif not options.files:
        options.files = known
    for file in set(options.files) - set(known):
        parser.error(f'{file} is not a source file of src/ or tav/')
    return options


def listed_files(*command):
    """The source files of the programs among those that git lists."""
    listed = subprocess.run(command, cwd=ROOT, check=True, capture_output=True).stdout.decode().splitlines()
    return sorted(file for file in listed if re.fullmatch(r'(src|tav)/.*\.(cpp|h)', file)
                  and os.path.isfile(os.path.join(ROOT, file)))


def all_mutants(files, arguments, jobs):
    """The mutants of the files, with their descriptions."""
    units = {}
    for file in files:
        units.setdefault(unit_of(file, arguments), []).append(file)
    found = {}
    with ProcessPoolExecutor(jobs) as pool:
        for part in pool.map(mutants.mutants_of, [os.path.join(COPY, unit) for unit in units],
                             [arguments[unit] for unit in units], units.values(), [COPY] * len(units)):
            found.update(part)
    return found


def unit_of(file, arguments, seen=()):
    """The source file to read a file in: itself, or for a header one that includes it."""
    if file in arguments:
        return file
    own = file[:-len('.h')] + '.cpp'
    if own in arguments:
        return own
    for other in listed_files('git', 'ls-files', '--cached', '--others', '--exclude-standard'):
        with open(os.path.join(ROOT, other), encoding='utf-8') as text:
            includes = f'#include "{os.path.basename(file)}"' in text.read()
        if includes and other not in seen:
            unit = unit_of(other, arguments, (*seen, other))
            if unit:
                return unit
    return None


def kept_equivalents(path):
    """The descriptions in the file; a paragraph is one, and the reason."""
    with open(path, encoding='utf-8') as file:
        paragraphs = re.split(r'\n\n+', file.read().strip())
    kept = set()
    for paragraph in paragraphs:
        place, *lines = paragraph.splitlines()
        before = tuple(line[2:] for line in lines if line.startswith('- '))
        after = tuple(line[2:] for line in lines if line.startswith('+ '))
        if before:
            kept.add(mutants.Description(*place.split(': ', 1), before, after))
    return kept


if __name__ == '__main__':
    main()
