"""Tests of what scripts/mutants plants, and of how it sees that a test catches it."""

import os
import subprocess
import tempfile
import unittest
import unittest.mock

import mutants
import planting
import trials

SWITCH = os.path.join(os.path.dirname(os.path.abspath(__file__)), 'switch.h')


class TestMutants(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = os.path.realpath(folder.name)

    def mutants_of(self, source):
        path = os.path.join(self.folder, 'source.cpp')
        with open(path, 'w', encoding='utf-8') as file:
            file.write(source)
        return mutants.mutants_of(path, ['-std=c++17'], ['source.cpp'], self.folder)

    def assert_mutants(self, source, *expected):
        """What the lines with a mutant become is what is expected, in any order."""
        found = ['\n'.join(description.after) for description in self.mutants_of(source).values()]
        self.assertEqual(sorted(found), sorted(expected))

    def test_operators_and_swapped_arguments(self):
        self.assert_mutants('''
            bool f(int a, int b)
            {
                return a < b && f(b, a % b);
            }
            ''',
                            'return a < b || f(b, a % b);',
                            'return a <= b && f(b, a % b);',
                            'return a >= b && f(b, a % b);',
                            'return a < b && f(a % b, b);',
                            'return a < b && f(b, a * b);')

    def test_the_order_of_min_and_max(self):
        self.assert_mutants('''
            #include <algorithm>
            int f(int a, int b)
            {
                return std::min(a, b) + std::max(a, b);
            }
            ''',
                            'return std::min(a, b) - std::max(a, b);')

    def test_constants(self):
        self.assert_mutants('''
            double f(char c)
            {
                return c == 'x' ? 0x1FuL : 0.5;
            }
            ''',
                            "return (c == 'x', true) ? 0x1FuL : 0.5;",
                            "return (c == 'x', false) ? 0x1FuL : 0.5;",
                            "return c != 'x' ? 0x1FuL : 0.5;",
                            "return c == ('x' + 1) ? 0x1FuL : 0.5;",
                            "return c == 'x' ? 32uL : 0.5;",
                            "return c == 'x' ? 30uL : 0.5;",
                            "return c == 'x' ? 0x1FuL : (0.5 + 1);")

    def test_initial_values(self):
        self.assert_mutants('''
            struct S
            {
                bool b = true;
                S(int i = 0) : n(i) {}
                int n;
            };
            ''',
                            'bool b = false;',
                            'S(int i = 1) : n(i) {}')

    def test_a_named_constant_is_changed_where_it_is_used(self):
        self.assert_mutants('''
            constexpr int most = 7;
            int f()
            {
                return most;
            }
            ''',
                            'return (most + 1);',
                            'return (most - 1);')

    def test_what_the_language_wants_constant_stays(self):
        self.assert_mutants('''
            template<int n>
            struct S { int a[n]; };
            enum E { one = 1 };
            static_assert(1 < 2);
            void f(int n)
            {
                constexpr int k = 2;
                S<3> s;
                int a[4];
                static S<k> t;
                if constexpr (k > 1) {
                }
                switch (n) {
                case 5:;
                }
            }
            ''')

    def test_what_a_macro_makes_stays(self):
        self.assert_mutants('''
            #define SUM(a) (a + 1)
            int g(int);
            int f(int n)
            {
                return g(SUM(n < 3)) / 2;
            }
            ''',
                            'return g(SUM(n < 3)) * 2;',
                            'return g(SUM(n < 3)) / 3;',
                            'return g(SUM(n < 3)) / 1;')

    def test_dropped_statements(self):
        self.assert_mutants('''
            void g();
            int f(int n)
            {
                for (;;) {
                    switch (n) {
                    case 1: g();
                        break;
                    default: return n;
                    }
                }
                return n;
            }
            ''',
                            'case 1:',
                            '',
                            'default:')

    def test_ignored_results(self):
        self.assert_mutants('''
            bool g();
            void h();
            bool f()
            {
                if (g()) h(); else while (g()) h();
                return g();
            }
            ''',
                            'if ((g(), true)) h(); else while (g()) h();',
                            'if ((g(), false)) h(); else while (g()) h();',
                            'if (g())  else while (g()) h();',
                            'if (g()) h(); else while ((g(), false)) h();',
                            'if (g()) h(); else while (g())',
                            'return !(g());')

    def test_a_description_is_the_place_and_the_lines(self):
        source = '''
            namespace a
            {
            struct B { void c(); int n; };

            void B::c()
            {
                n
                    -= n;
            }
            } // namespace a
            '''
        self.assertEqual([str(description) for description in self.mutants_of(source).values()],
                         ['source.cpp: a::B::c\n- n\n- -= n;\n+ n\n+ += n;', 'source.cpp: a::B::c\n- n\n- -= n;'])

    def test_each_mutant_sleeps_behind_its_switch(self):
        source = '''
            #include <cstdio>
            constexpr int sum(int a, int b) { return a + b; }
            static_assert(sum(1, 2) == 3);
            int main(int count, char **)
            {
                int a = sum(count, 2);
                a *= a - count;
                std::printf("%d", a);
            }
            '''
        outputs = {
            'constexpr int sum(int a, int b) { return a - b; }': '2',
            'int a = sum(2, count);': '6',
            'int a = sum(count, 3);': '12',
            'int a = sum(count, 1);': '2',
            'a /= a - count;': '1',
            'a *= a + count;': '12',
            'dropped: a *= a - count;': '3',
            'dropped: std::printf("%d", a);': '',
        }
        found = self.mutants_of(source)
        program = os.path.join(self.folder, 'program')
        with open(program + '.cpp', 'wb') as file:
            file.write(planting.planted(source.encode(), enumerate(found, start=1)))
        subprocess.run(['c++', '-std=c++17', '-include', SWITCH, '-o', program, program + '.cpp'], check=True)

        def output(number):
            return subprocess.run([program], env={'TAVOLINE_MUTANT': str(number)}, check=True,
                                  capture_output=True).stdout.decode()

        self.assertEqual(output(0), '6')
        self.assertEqual({' '.join(description.after or ('dropped:', *description.before)): output(number)
                          for number, description in enumerate(found.values(), start=1)}, outputs)

    def test_what_does_not_compile_is_found(self):
        text = b'int i = (tavolineMutant(7) ? ("") : (tavolineMutant(8) ? (2) : (1)));\n'
        output = f'{self.folder}/source.cpp:1:28: error: different types\n/usr/include/x.h:1:2: error: this\n'
        self.assertEqual(planting.refused_mutants(output, self.folder, {'source.cpp': text}), {7})

    def test_what_does_not_compile_may_have_several_lines(self):
        text = b'int i = (tavolineMutant(7) ? (2) : (1));\nint j = (tavolineMutant(8) ? (1\n  >>\n  "") : (1));\n'
        output = f'{self.folder}/source.cpp:3:3: error: no such operator\n'
        self.assertEqual(planting.refused_mutants(output, self.folder, {'source.cpp': text}), {8})


class TestTrials(unittest.TestCase):
    """Without the name space, which not every machine allows."""

    def setUp(self):
        containment = unittest.mock.patch.object(trials, 'CONTAINMENT', [])
        containment.start()
        self.addCleanup(containment.stop)

    def run_script(self, script, seconds=60, **environment):
        return trials.Test('script', ['sh', '-c', script], {}, '/').run(seconds, **environment)

    def test_it_passes(self):
        self.assertEqual(self.run_script('test "$TAVOLINE_MUTANT" = 5', TAVOLINE_MUTANT='5'), '')

    def test_a_status_is_a_failure(self):
        self.assertEqual(self.run_script('exit 3'), 'ends with status 3')

    def test_the_first_failure_ends_it(self):
        self.assertEqual(self.run_script('echo "FAIL!  : f()"; sleep 1000'), 'fails')

    def test_it_hangs(self):
        self.assertEqual(self.run_script('sleep 1000', seconds=0.2), 'takes too long')


if __name__ == '__main__':
    unittest.main()
