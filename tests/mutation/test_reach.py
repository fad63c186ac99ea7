#!/usr/bin/env python3
"""Checks which files a test is taken to see."""

import pathlib
import sys
import tempfile
import unittest

sys.dont_write_bytecode = True
from reach import Reach  # noqa: E402

FILES = {
    "lib/a.h": "#pragma once\n",
    "lib/b.h": '#pragma once\n\n#include "lib/c.h"\n',
    "lib/c.h": "#pragma once\n",
    "lib/d.h": "#pragma once\n",
    "lib/a.cpp": '#include "a.h"\n\n#include "lib/d.h"\n\n#include <map>\n',
    "lib/ab.cpp": '// Both.\n#include "lib/a.h"\n#include "lib/b.h"\n\n#include <map>\n',
    "lib/d.cpp": '#include "lib/d.h"\n',
    "tests/tst_a.cpp": '#include "lib/a.h"\n',
    "tests/tst_b.cpp": '#include <map>\n\n#include "lib/b.h"\n',
    "tests/tst_c.cpp": '#include "lib/c.h"\n',
}
SEEN = {
    "tests/tst_a.cpp": ["a.cpp", "a.h", "ab.cpp", "b.h", "c.h", "d.cpp", "d.h"],
    "tests/tst_b.cpp": ["a.cpp", "a.h", "ab.cpp", "b.h", "c.h", "d.cpp", "d.h"],
    "tests/tst_c.cpp": ["c.h"],
    "lib/d.cpp": ["d.cpp", "d.h"],
}


class TestReach(unittest.TestCase):
    def test_files_seen(self):
        with tempfile.TemporaryDirectory() as folder:
            root = pathlib.Path(folder)
            for name, text in FILES.items():
                (root / name).parent.mkdir(exist_ok=True)
                (root / name).write_text(text)
            reach = Reach(root, ["lib"])
            for source, expected in SEEN.items():
                with self.subTest(source):
                    self.assertEqual(sorted(name.removeprefix("lib/")
                                            for name in reach.files_seen_by(source)
                                            if name.startswith("lib/")), expected)


if __name__ == "__main__":
    unittest.main()
