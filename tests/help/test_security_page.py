"""SECURITY.md names the test behind each defence; here is that those tests exist."""

import re
import unittest
from pathlib import Path

TREE = Path(__file__).resolve().parents[2]


class SecurityPage(unittest.TestCase):
    def test_names_tests_that_exist(self):
        sources = "\n".join(path.read_text(encoding="utf-8") for path in (TREE / "tests").rglob("*")
                            if path.suffix in (".cpp", ".py"))
        text = (TREE / "SECURITY.md").read_text(encoding="utf-8")
        google = re.findall(r"`([A-Z]\w+)\.([A-Z]\w+)`", text)
        python = re.findall(r"`(test_\w+)`", text)
        self.assertGreater(len(google), 8)
        self.assertGreater(len(python), 2)
        for group, name in google:
            self.assertRegex(sources, rf"TEST(_F|_P)?\({group}, {name}\)")
        for name in python:
            self.assertIn(f"def {name}(", sources)


if __name__ == "__main__":
    unittest.main()
