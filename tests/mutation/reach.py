"""Which tests can see a source of the library, by what includes what.

A test sees the headers that it includes, the sources that implement these (the headers are in their
first block of includes), and what all of them include.
"""

import functools
import re

INCLUDE = re.compile(r'^#include "([^"]+)"', re.MULTILINE)
FIRST_BLOCK = re.compile(r'(?:^#include "[^"]+"\n)+', re.MULTILINE)


class Reach:
    def __init__(self, root, folders):
        self._root = root
        self._implementing = {}
        for folder in folders:
            for path in sorted((root / folder).glob("*.cpp")):
                file = path.relative_to(root).as_posix()
                for header in self._named(file, FIRST_BLOCK.search(path.read_text())[0]):
                    self._implementing.setdefault(header, []).append(file)

    def _includes(self, file):
        return self._named(file, (self._root / file).read_text())

    def _named(self, file, text):
        beside = file.rpartition("/")[0]
        return [name if (self._root / name).exists() else f"{beside}/{name}"
                for name in INCLUDE.findall(text)]

    @functools.cache
    def files_seen_by(self, source):
        seen, waiting = set(), [source]
        while waiting:
            file = waiting.pop()
            if file not in seen and (self._root / file).exists():
                seen.add(file)
                waiting += self._includes(file) + self._implementing.get(file, [])
        return seen
