"""Tests of what scripts/mutants plants, and of how it looks for tests that catch it."""

import os
import subprocess
import tempfile
import unittest

import mutants
import planting
import trials

SWITCH = os.path.join(os.path.dirname(os.path.abspath(__file__)), 'switch.h')


def found_in(source, folder):
    path = os.path.join(folder, 'source.cpp')
    with open(path, 'w', encoding='utf-8') as file:
        file.write(source)
    return mutants.mutants_of(path, ['-std=c++17'], ['source.cpp'], folder)


class TestMutation(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = os.path.realpath(folder.name)

    def assert_mutants(self, source, *after):
        """The mutants of the one line that has any are these."""
        found = [' '.join(description.after) for description in found_in(source, self.folder).values()]
        self.assertEqual(sorted(found), sorted(after))

    def test_operators_and_boundaries(self):
        self.assert_mutants('bool f(int a, int b)\n{\n    return a < b && f(b, a % b);\n}\n',
                            'return !(a < b && f(b, a % b));',
                            'return a < b || f(b, a % b);',
                            'return a <= b && f(b, a % b);',
                            'return a >= b && f(b, a % b);',
                            'return a < b && f(a % b, b);',
                            'return a < b && f(b, a * b);')

    def test_constants(self):
        self.assert_mutants('double f(char c)\n{\n    return c == \'x\' ? 0x1FuL : 0.5;\n}\n',
                            "return (c == 'x', true) ? 0x1FuL : 0.5;",
                            "return (c == 'x', false) ? 0x1FuL : 0.5;",
                            "return c != 'x' ? 0x1FuL : 0.5;",
                            "return c == ('x' + 1) ? 0x1FuL : 0.5;",
                            "return c == 'x' ? 32uL : 0.5;",
                            "return c == 'x' ? 30uL : 0.5;",
                            "return c == 'x' ? 0x1FuL : (0.5 + 1);")

    def test_a_named_constant_is_changed_where_it_is_used(self):
        self.assert_mutants('constexpr int most = 7;\nint f()\n{\n    return most;\n}\n',
                            'return (most + 1);', 'return (most - 1);')

    def test_what_the_language_wants_constant_stays(self):
        self.assert_mutants('template<int n> struct S { int a[n]; };\nenum E { one = 1 };\nstatic_assert(1 < 2);\n'
                            'void f(int n)\n{\n    constexpr int k = 2;\n    S<3> s; int a[4]; static S<k> t;\n'
                            '    if constexpr (k > 1) {}\n    switch (n) {\n    case 5:;\n    }\n}\n')

    def test_initial_values(self):
        self.assert_mutants('struct S {\n    bool b = true;\n    S(int i = 0) : n(i) {}\n    int n;\n};\n',
                            'bool b = false;', 'S(int i = 1) : n(i) {}')

    def test_what_a_macro_makes_stays(self):
        self.assert_mutants('#define SUM(a) (a + 1)\nvoid g(int);\nvoid f(int n)\n{\n    g(SUM(n < 3));\n}\n', '')

    def test_dropped_statements(self):
        self.assert_mutants('void g();\nint f(int n)\n{\n    for (;;) {\n        switch (n) {\n        case 1: g();\n'
                            '        break;\n        default: return n;\n        }\n    }\n    return n;\n}\n',
                            'case 1:', '', 'default:')

    def test_ignored_results(self):
        self.assert_mutants('bool g();\nvoid h();\nint f()\n{\n    if (g()) h(); else while (g()) h();\n    return f();\n}\n',
                            'if ((g(), true)) h(); else while (g()) h();',
                            'if ((g(), false)) h(); else while (g()) h();',
                            'if (g())  else while (g()) h();',
                            'if (g()) h(); else while ((g(), false)) h();',
                            'if (g()) h(); else while (g())')

    def test_a_description_names_the_function(self):
        source = 'namespace a\n{\nstruct B { void c(); int n; };\n\nvoid B::c()\n{\n    n\n        -= n;\n}\n} // namespace a\n'
        self.assertEqual([str(description) for description in found_in(source, self.folder).values()],
                         ['source.cpp: a::B::c\n- n\n- -= n;\n+ n\n+ += n;', 'source.cpp: a::B::c\n- n\n- -= n;'])

    def test_each_mutant_sleeps_behind_its_switch(self):
        source = ('#include <cstdio>\nconstexpr int sum(int a, int b) { return a + b; }\nstatic_assert(sum(1, 2) == 3);\n'
                  'int main(int count, char **)\n{\n    int a = sum(count, 2);\n    a *= a - count;\n'
                  '    std::printf("%d", a);\n}\n')
        found = found_in(source, self.folder)
        results = {'': '6'}
        for number, description in enumerate(found.values(), start=1):
            results[str(number)] = {
                ('constexpr int sum(int a, int b) { return a - b; }',): '2',
                ('int a = sum(2, count);',): '6',
                ('int a = sum(count, 3);',): '12',
                ('int a = sum(count, 1);',): '2',
                ('a /= a - count;',): '1',
                ('a *= a + count;',): '12',
                (): '3' if description.before == ('a *= a - count;',) else '',
            }[description.after]
        self.assertEqual(len(results), 9)
        program = os.path.join(self.folder, 'program')
        with open(program + '.cpp', 'wb') as file:
            file.write(planting.planted(source.encode(), enumerate(found, start=1)))
        subprocess.run(['c++', '-std=c++17', '-include', SWITCH, '-o', program, program + '.cpp'], check=True)
        for number, result in results.items():
            output = subprocess.run([program], env={'TAVOLINE_MUTANT': number}, check=True, capture_output=True).stdout
            self.assertEqual(output.decode(), result, number)

    def test_what_does_not_compile_is_found(self):
        path = os.path.join(self.folder, 'source.cpp')
        text = b'struct S {};\nS operator+(S, S);\nS f(S a) { return (tavolineMutant(7) ? (a - a) : (a + a)); }\n'
        output = f'{path}:3:53: error: no match\n/usr/include/x.h:1:2: error: this\n'
        self.assertEqual(planting.refused_mutants(output, self.folder, {'source.cpp': text}), {7})


class TestTrials(unittest.TestCase):
    def run_script(self, script, seconds=60, **environment):
        return trials.Test('script', ['sh', '-c', script], {}, '/').run(seconds, **environment)

    def test_a_test_that_passes(self):
        self.assertEqual(self.run_script('test "$TAVOLINE_MUTANT" = 5', TAVOLINE_MUTANT='5'), '')

    def test_a_status_is_a_failure(self):
        self.assertEqual(self.run_script('exit 3'), 'ends with status 3')

    def test_the_first_failure_ends_it(self):
        self.assertEqual(self.run_script('echo "FAIL!  : f()"; sleep 1000'), 'fails')

    def test_a_test_that_hangs(self):
        self.assertEqual(self.run_script('sleep 1000', seconds=0.2), 'takes too long')

    def test_processes_without_end(self):
        self.assertEqual(self.run_script('while true; do sleep 1000 & done'), 'makes too many processes')

    def test_it_cannot_signal_others(self):
        self.assertEqual(self.run_script(f'kill -0 {os.getpid()}'), 'ends with status 1')


if __name__ == '__main__':
    unittest.main()
