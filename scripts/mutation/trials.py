"""Runs the tests that reach a mutant until one catches it."""

import json
import os
import shutil
import signal
import subprocess
import tempfile
import time
from concurrent.futures import ThreadPoolExecutor
from dataclasses import dataclass, field

# A mutant may signal any process, make processes without end, and fill memory and disk. A shell is the first process
# of a name space for processes, as it asks for every child that ends; with it all others end. Signals that this script
# ignores, as nohup lets it, are not ignored in a test.
CONTAINMENT = ['env', '--default-signal',
               'unshare', *([] if os.geteuid() == 0 else ['--map-current-user']), '--pid', '--fork', '--kill-child',
               '--mount-proc', 'bash', '-c', 'ulimit -c 0 -f 8000000 -v 8000000; "$@"; exit $?', 'bash']
MOST_PROCESSES = 500


@dataclass
class Test:
    """A test of CTest, how long it takes and which mutants it reaches."""
    name: str
    command: list
    environment: dict
    folder: str
    seconds: float = 0
    reached: set = field(default_factory=set)

    def run(self, seconds, **environment):
        """Runs it for so long at most; returns why it fails, or an empty text."""
        folder = tempfile.mkdtemp(prefix='mutants-')
        everything = {**os.environ, **self.environment, 'TMPDIR': folder, 'HOME': folder, **environment}
        try:
            with open(os.path.join(folder, 'output'), 'w+b') as output:
                process = subprocess.Popen([*CONTAINMENT, *self.command], cwd=self.folder, env=everything,
                                           stdin=subprocess.DEVNULL, stdout=output, stderr=subprocess.STDOUT,
                                           start_new_session=True)
                return watched(process, os.path.join(folder, 'output'), time.monotonic() + seconds)
        finally:
            shutil.rmtree(folder, ignore_errors=True)


def watched(process, output, end):
    """Waits for the process, but no longer than until its first failure; returns why it fails."""
    failure = ''
    with open(output, 'rb') as text:
        while not failure and process.poll() is None:
            time.sleep(0.05)
            if any(line.startswith(b'FAIL!') for line in text):
                failure = 'fails'
            elif time.monotonic() > end:
                failure = 'takes too long'
            elif len(os.listdir('/proc')) > MOST_PROCESSES and descendants(process.pid) > MOST_PROCESSES:
                failure = 'makes too many processes'
    if failure:
        os.killpg(process.pid, signal.SIGKILL)
        process.wait()
        return failure
    return f'ends with status {process.returncode}' if process.returncode else ''


def descendants(pid):
    """How many processes there are in the name space that the children of the process live in."""
    with open(f'/proc/{pid}/task/{pid}/children', encoding='utf-8') as file:
        children = file.read().split()
    spaces = [name_space(name) for name in os.listdir('/proc') if name.isdigit()]
    return max((spaces.count(name_space(child)) for child in children), default=0)


def name_space(pid):
    try:
        return os.readlink(f'/proc/{pid}/ns/pid')
    except OSError:
        return None


def require_containment():
    """Ends the program where a test could signal it."""
    reason = Test('containment', ['sh', '-c', f'kill -0 {os.getpid()}'], {}, '/').run(60)
    if reason != 'ends with status 1':
        raise SystemExit('Mutants cannot be contained: unshare cannot make a name space for processes')


def tests_of(build):
    """The tests of a build; those of windows only on the one platform, and not that of this script."""
    listed = subprocess.run(['ctest', '--show-only=json-v1'], cwd=build, check=True, capture_output=True).stdout
    tests = []
    for test in json.loads(listed)['tests']:
        if not test['name'].endswith('.x11') and test['name'] != 'mutation':
            properties = {entry['name']: entry['value'] for entry in test['properties']}
            environment = dict(variable.split('=', 1) for variable in properties.get('ENVIRONMENT', []))
            tests.append(Test(test['name'], test['command'], environment, properties['WORKING_DIRECTORY']))
    return tests


def measure(tests, most, jobs):
    """Runs each test without a mutant, and notes which it reaches; returns those that pass, the fastest first."""
    def run(test):
        with tempfile.NamedTemporaryFile() as reached:
            reached.truncate(most + 1)
            begin = time.monotonic()
            failure = test.run(1200, TAVOLINE_MUTANTS_REACHED=reached.name)
            test.seconds = time.monotonic() - begin
            test.reached = {number for number, byte in enumerate(reached.read()) if byte}
        return failure

    with ThreadPoolExecutor(jobs) as pool:
        failures = list(pool.map(run, tests))
    for test, failure in zip(tests, failures):
        if failure:
            print(f'{test.name} is left out: without a mutant it {failure}', flush=True)
    passing = [test for test, failure in zip(tests, failures) if not failure]
    return sorted(passing, key=lambda test: test.seconds)


def verdicts(tests, numbers, jobs):
    """For each number in turn, as soon as it is known: the test that catches the mutant and how, or None."""
    def verdict(number):
        for test in tests:
            if number in test.reached:
                failure = test.run(20 + 5 * test.seconds, TAVOLINE_MUTANT=str(number))
                if failure:
                    return f'{test.name} {failure}'
        return None

    with ThreadPoolExecutor(jobs) as pool:
        yield from zip(numbers, pool.map(verdict, numbers))
