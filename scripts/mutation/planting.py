"""Makes a copy of the tree in which every chosen mutant sleeps behind a switch, and builds it once."""

import json
import os
import re
import shlex
import subprocess

MOST_LINES = 20  # of a mutant that the compiler refuses in its last line


def copy_tree(root, copy):
    """Makes the copy the same as the tree; a file that is the same already keeps its time, so that it is not built."""
    listed = subprocess.run(['git', 'ls-files', '-z', '--cached', '--others', '--exclude-standard'], cwd=root,
                            check=True, capture_output=True).stdout.decode().split('\0')
    files = {file for file in listed if os.path.isfile(os.path.join(root, file))}
    for folder, folders, names in os.walk(copy):
        if folder == copy and 'build' in folders:
            folders.remove('build')
        for name in names:
            if os.path.relpath(os.path.join(folder, name), copy) not in files:
                os.remove(os.path.join(folder, name))
    for file in files:
        with open(os.path.join(root, file), 'rb') as source:
            write_if_changed(os.path.join(copy, file), source.read())
        os.chmod(os.path.join(copy, file), os.stat(os.path.join(root, file)).st_mode)


def write_if_changed(path, content):
    if os.path.isfile(path):
        with open(path, 'rb') as file:
            if file.read() == content:
                return
    os.makedirs(os.path.dirname(path), exist_ok=True)
    with open(path, 'wb') as file:
        file.write(content)


def configure(copy):
    """Returns the arguments of the compiler for each source file, without the switch."""
    subprocess.run(['cmake', '--preset', 'mutants'], cwd=copy, check=True, stdout=subprocess.DEVNULL)
    with open(os.path.join(copy, 'build/mutants/compile_commands.json'), encoding='utf-8') as file:
        commands = json.load(file)
    return {os.path.relpath(command['file'], copy): without_output(shlex.split(command['command']))
            for command in commands}


def without_output(command):
    return command[1:command.index('-o')]


def planted(source, mutants):
    """The source with the mutants, given with their numbers, behind the switch."""
    edits = []
    for number, mutant in mutants:
        switch = f'tavoline{"Constexpr" if mutant.constexpr else ""}Mutant({number})'
        edits += [(edit, switch) for edit in mutant.edits]
    edits.sort(key=lambda pair: (pair[0].begin, -pair[0].end))
    return rewritten(source, 0, len(source), edits)


def rewritten(source, begin, end, edits):
    """The bytes from begin to end; the edits are within them, outer ones before inner ones."""
    result = b''
    while edits:
        outer = edits[0][0]
        same = [pair for pair in edits if (pair[0].begin, pair[0].end) == (outer.begin, outer.end)]
        inner = [pair for pair in edits if pair not in same and pair[0].begin < outer.end]
        edits = edits[len(same) + len(inner):]
        text = rewritten(source, outer.begin, outer.end, inner)
        if outer.statement:
            text = b'{ if (!%b) { %b } }' % (same[0][1].encode(), text)
        else:
            others = ''.join(f'{switch} ? ({edit.text}) : ' for edit, switch in same)
            text = b'(%b(%b))' % (others.encode(), text)
        result += source[begin:outer.begin] + text
        begin = outer.end
    return result + source[begin:end]


def build(copy, chosen, jobs):
    """Plants and builds the chosen mutants, from number 1 on; returns those that compile, by their numbers."""
    numbered = dict(enumerate(chosen, start=1))
    sources = {}
    for file in {mutant.file for mutant in chosen}:
        with open(os.path.join(copy, file), 'rb') as source:
            sources[file] = source.read()
    while True:
        texts = {file: planted(source, [(number, mutant) for number, mutant in numbered.items()
                                        if mutant.file == file]) for file, source in sources.items()}
        for file, text in texts.items():
            write_if_changed(os.path.join(copy, file), text)
        result = subprocess.run(['cmake', '--build', '--preset', 'mutants', '--parallel', str(jobs), '--', '-k', '0'],
                                cwd=copy, stdout=subprocess.PIPE, stderr=subprocess.STDOUT, check=False)
        if result.returncode == 0:
            return numbered
        output = result.stdout.decode(errors='replace')
        refused = refused_mutants(output, copy, texts)
        if not refused:
            raise SystemExit(output)
        for number in refused:
            numbered.pop(number, None)


def refused_mutants(output, copy, texts):
    """The numbers of mutants in the places that the compiler complains about."""
    refused = set()
    for name, line, column in re.findall(r'^(\S+?):(\d+):(\d+):\s+(?:error:|required from here)', output, re.MULTILINE):
        text = texts.get(os.path.relpath(os.path.realpath(os.path.join(copy, 'build/mutants', name)), copy))
        if text is not None:
            lines = text.decode().split('\n')[:int(line)]
            # The compiler points behind the number, or at the parenthesis before it; a mutant may have several lines.
            lines[-1] = lines[-1][:int(column) + len('99999)')]
            before = re.findall(r'Mutant\((\d+)\)', '\n'.join(lines[-MOST_LINES:]))
            refused |= {int(number) for number in before[-1:]}
    return refused
