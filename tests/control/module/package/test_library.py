"""The library inside the module: every operation that a header of its rooms declares is in the file."""

import re
import unittest

from module_under_test import SOURCES, symbols

ROOMS = ("checksum", "control", "host", "text", "ui", "web")

COMMENT = re.compile(r"//[^\n]*|/\*.*?\*/", re.DOTALL)
DIRECTIVE = re.compile(r"^[ \t]*#[^\n]*", re.MULTILINE)
ATTRIBUTE = re.compile(r"\[\[.*?\]\]")
NO_OPERATION = re.compile(r"\b(using|friend|template|static_assert|operator|constexpr|enum)\b")
CLASS = re.compile(r"\b(?:class|struct) (\w+)[^;{()]*$")
NAMESPACE = re.compile(r"\bnamespace [\w:]+ *$")
FUNCTION = re.compile(r"(~?\w+) *\(")


def declarations(header):
    """(what stands in front of it, statement, its end) for each statement outside of function bodies; what stands in
    front are the classes around it."""
    text = ATTRIBUTE.sub("", DIRECTIVE.sub("", COMMENT.sub("", header.read_text(encoding="utf-8"))))
    around = []
    statement = ""
    body = 0  # depth of braces that hold no declarations
    parentheses = 0
    for character in text:
        if character in "()":
            parentheses += 1 if character == "(" else -1
        if character == "{" and not parentheses:
            name = CLASS.search(statement)
            if body or not (name or NAMESPACE.search(statement)):
                if not body:
                    yield [n for n in around if n], statement, "{"
                body += 1
            else:
                around.append(name[1] if name else "")
            statement = ""
        elif character == "}" and not parentheses:
            if body:
                body -= 1
            else:
                around.pop()
            statement = ""
        elif character == ";" and not parentheses:
            if not body:
                yield [n for n in around if n], statement, ";"
            statement = ""
        else:
            statement += character


def operations():
    """The operations that have code of their own: declared in a header, defined elsewhere."""
    found = set()
    for room in ROOMS:
        for header in sorted((SOURCES / room).glob("*.h")):
            for classes, statement, end in declarations(header):
                statement = re.sub(r"^\s*(public|private|protected) *:", "", statement).strip()
                name = FUNCTION.search(statement)
                if end == ";" and name and not NO_OPERATION.search(statement) and not re.search(
                        r"= *(0|default|delete)$", statement):
                    found.add("::".join([*classes, name[1]]))
    return sorted(found)


class Library(unittest.TestCase):
    def test_the_headers_are_read(self):
        found = operations()
        for name in ("FormEncode", "PostFormRequest", "ReadRegistryValue", "GetAdapterAddresses", "DrawGradient",
                     "SecurityCtrl::GetCRCValue", "cCRC32::GetFileCrc32", "cBinaryFileStream::Read", "ReplaceAll",
                     "connectionSettings"):
            self.assertIn(name, found)
        self.assertGreater(len(found), 50)

    def test_every_operation_is_in_the_file(self):
        placed = [symbol for _, symbol in symbols()]
        missing = [name for name in operations()
                   if not any(re.search(r"(^|::|[ ])" + re.escape(name) + r"(\[abi:\w+\])?\(", symbol) for symbol in placed)]
        self.assertEqual(missing, [])

    def test_every_way_to_the_system_is_in_the_file(self):
        """What the last arguments of the operations default to."""
        ways = {name for room in ROOMS for header in (SOURCES / room).glob("*.h")
                for name in re.findall(r"= (\w+)\(\)[,)]", header.read_text(encoding="utf-8"))}
        self.assertIn("wininet", ways)
        placed = [symbol for _, symbol in symbols()]
        self.assertEqual([name for name in sorted(ways) if f"quorvane::{name}()" not in placed], [])


if __name__ == "__main__":
    unittest.main()
