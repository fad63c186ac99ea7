#!/usr/bin/env python3
"""Checks which mutants are made of a text."""

import sys
import unittest

sys.dont_write_bytecode = True
from mutants import mutants_of  # noqa: E402

CHANGED = {
    "return a == b;": ["return a != b;", "return {};"],
    "int c = a - b;": ["int c = a + b;"],
    "int c = a < b;": ["int c = a <= b;", "int c = a >= b;"],
    "x = a && !b;": [";", "x = a && b;", "x = a || !b;"],
    "int c = 7;": ["int c = 6;", "int c = 8;"],
    "int c = 0x0F;": ["int c = 0x10;", "int c = 0xE;"],
    "int c = 0;": ["int c = 1;"],
    "int c = -a;": ["int c = a;"],
    "double c = 0.5;": ["double c = 1.5;"],
    "bool c = true;": ["bool c = false;"],
    "int c = qMin(a, b);": ["int c = qMax(a, b);"],
    "const auto c = a ? b : d;": ["const auto c = a && false ? b : d;",
                                  "const auto c = a || true ? b : d;"],
    "if (a)": ["if (!(a))"],
    "if (!a)": ["if (a)"],
    "while (a.b() || c)": ["while (!(a.b() || c))", "while (a.b() && c)"],
    "if (a) b.c(d);": ["if (!(a)) b.c(d);", "if (a) ;"],
    "Q_EMIT a(b);": [";"],
    "stream << a;": [";"],
    "++a;": ["--a;", ";"],
    "f([&] { g(a); });": [";", "f([&] { ; });"],
    'KxSDKCommonLog(a, "%d!", b);': [";", 'KxSDKCommonLog(a, "%dx", b);'],
}
NOT_CHANGED = [
    "// a == 1",
    "/* a\n == 1 */",
    '#include "a1.h"',
    "#define A 1 + \\\n 1",
    'QString c = QStringLiteral("1 == 1");',
    "char c = '1';",
    "static_assert(a == 1);",
    "template <typename T = 1>",
    "std::map<int, int> a;",
    "void f() {}",
    "a1::b2 c3;",
    "return {};",
]


def changes(text, file="a.cpp"):
    return sorted(mutant.after for mutant in mutants_of(file, text, 1))


class TestMutants(unittest.TestCase):
    def test_changed(self):
        for text, expected in CHANGED.items():
            with self.subTest(text):
                self.assertEqual(changes(f"{text}\n"), expected)

    def test_not_changed(self):
        for text in NOT_CHANGED:
            with self.subTest(text):
                self.assertEqual(changes(f"{text}\n"), [])

    def test_declarations_of_headers(self):
        self.assertEqual(changes("enum A { b = 1 };\nvoid f() const = 0;\n", "a.h"), [])
        self.assertEqual(changes("int a = 0;\n", "a.h"), ["int a = 1;"])

    def test_identifiers(self):
        before = list(mutants_of("a.cpp", "f(a);\nf(a);\n", 1))
        after = list(mutants_of("a.cpp", "// moved\nf(a);\ng(1);\nf(a);\n", 1))
        self.assertEqual(len({mutant.id for mutant in before}), 2)
        self.assertLess({mutant.id for mutant in before}, {mutant.id for mutant in after})

    def test_application(self):
        text = "int a = 1;\nint b = 2;\n"
        self.assertEqual([mutant.applied_to(text) for mutant in mutants_of("a.cpp", text, 1)], [
            "int a = 0;\nint b = 2;\n", "int a = 2;\nint b = 2;\n",
            "int a = 1;\nint b = 1;\n", "int a = 1;\nint b = 3;\n"])


if __name__ == "__main__":
    unittest.main()
