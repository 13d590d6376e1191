"""quorvane text from outside: each operation, cases by the batch with their escapes, errors and wrong usage."""

import datetime

from programs import ON_WINDOWS, ProgramTest


def base36(value):
    digits = ""
    while value > 0:
        value, digit = divmod(value, 36)
        digits = "0123456789ABCDEFGHIJKLMNOPQRSTUVWXYZ"[digit] + digits
    return digits


class TextTest(ProgramTest):
    def text(self, *arguments, stdin=b"", **environment):
        return self.run_program("quorvane", "text", *arguments, stdin=stdin, **environment)

    def result(self, *arguments, **environment):
        outcome = self.text(*arguments, **environment)
        self.assertEqual((outcome.code, outcome.err), (0, ""))
        self.assertTrue(outcome.out.endswith("\n"))
        return outcome.out[:-1]

    def batch(self, operation, cases):
        """The lines of the answer; failures are left to the caller."""
        outcome = self.text(operation, "--batch", stdin=cases if isinstance(cases, bytes) else cases.encode("utf-8"))
        self.assertEqual(outcome.err, "")
        lines = outcome.bytes.decode("utf-8").split("\n")
        self.assertEqual(lines.pop(), "")
        self.assertEqual(outcome.code, 1 if any(line.startswith("!") for line in lines) else 0)
        return lines


class Operations(TextTest):
    def test_empty(self):
        self.assertEqual([self.result("empty", text) for text in ("", " ", "x")], ["True", "False", "False"])

    def test_last_position(self):
        for (text, find), position in {("abcabc", "bc"): "5", ("aaa", "aa"): "2", ("Abc", "abc"): "0",
                                       ("abc", "abc"): "1", ("abc", ""): "0", ("", "abc"): "0",
                                       ("\N{GRINNING FACE}ä", "ä"): "3"}.items():
            self.assertEqual(self.result("last-position", text, find), position, (text, find))

    def test_replace(self):
        for words, result in {("Hello", "L", "x"): "Hexxo", ("", "a", "b"): "", ("abc", "", "x"): "",
                              ("abc", "x", "y"): "abc", ("aaa", "a", "aa"): "aaaaaa", ("ЖУК жук", "Жук", "ä"): "ä ä",
                              ("Straße", "ß", "\N{GRINNING FACE}"): "Stra\N{GRINNING FACE}e"}.items():
            self.assertEqual(self.result("replace", *words), result, words)

    def test_short_date(self):
        # Wine takes the environment's locale for the user's, and this one for American English.
        self.assertEqual(self.result("short-date", "ABCDE20240131", LC_ALL="C.UTF-8"),
                         "1/31/2024" if ON_WINDOWS else "01/31/24")

    def test_base36(self):
        self.assertEqual([self.result("base36", value) for value in (1, 35, 36, 1295, 1296, 32767, 0, -5, 32768)],
                         ["1", "Z", "10", "ZZ", "100", "PA7", "", "", ""])

    def test_an_error_tells_its_number(self):
        for words, message in {("short-date", "ABCDE2024"): "error 13: Type mismatch",
                               ("short-date", "ABCDE9E9 0131"): "error 6: Overflow",
                               ("short-date", "ABCDE99991232"): "error 5: Invalid procedure call",
                               ("base36", "many"): "error 13: Type mismatch",
                               ("base36", "2147483648"): "error 6: Overflow"}.items():
            with self.subTest(words):
                self.assert_fails(self.text(*words), message)


class Batch(TextTest):
    def test_answers_one_line_for_each_case(self):
        self.assertEqual(self.batch("replace", "Hello\tL\tx\nabc\t\tx\n\ta\tb\n"), ["Hexxo", "", ""])
        self.assertEqual(self.batch("last-position", "abcabc\tbc\naaa\taa"), ["5", "2"])
        self.assertEqual(self.batch("empty", "\n \n\r\n"), ["True", "False", "True"])
        self.assertEqual(self.batch("empty", ""), [])

    def test_reads_the_escapes_of_c(self):
        for case, position in {r"\t|\t": 3, r"\11|\t": 3, r"\x09|\t": 3, r"\u0009|\t": 3, r"\\|\\": 3, r"\n|\12": 3,
                               r"\a|\7": 3, r"\b|\10": 3, r"\f|\14": 3, r"\v|\13": 3, r"\r|\15": 3, r"\'|'": 3,
                               r"\"|\42": 3, r"\?|?": 3, r"\u20AC|\u20ac": 3, r"\uD83D\uDE00|\uDE00": 4,
                               r"\1011|1": 4, r"\0a|\0a": 4, r"\x411|1": 4}.items():
            with self.subTest(case):
                text, find = case.split("|")
                self.assertEqual(self.batch("last-position", f"{text}|{find}\t{find}\n"), [str(position)])

    def test_writes_what_fits_no_line_with_escapes(self):
        case = "x\tx\t{}\n"
        for written, result in {r"\t\n\r\\": r"\t\n\r\\", r"\a\0\x7F": r"\x07\x00\x7F", r"\uD83D": r"\uD83D",
                                r"\uDE00\uD83D": r"\uDE00\uD83D", r"\uD83D\uDE00": "\N{GRINNING FACE}",
                                "ä \N{GRINNING FACE}": "ä \N{GRINNING FACE}", "!": r"\x21", "a!": "a!"}.items():
            with self.subTest(written):
                self.assertEqual(self.batch("replace", case.format(written)), [result])

    def test_a_case_that_fails_says_so_and_the_others_are_done(self):
        lines = self.batch("base36", "36\nmany\n2147483648\n\\q\n\\\n\\u12\n\\x4\n1\t2\n35\n")
        self.assertEqual((lines[0], lines[-1], len(lines)), ("10", "Z", 9))
        for line, start in zip(lines[1:-1], ("!error 13: Type mismatch", "!error 6: Overflow", "!no such escape: \\q",
                                             "!no such escape: \\", "!no such escape: \\u12",
                                             "!no such escape: \\x4", "!VALUE is wanted, divided by tabs")):
            self.assertTrue(line.startswith(start), line)

    def test_writes_all_of_minus_40000_to_40000_in_base_36(self):
        values = range(-40000, 40001)
        self.assertEqual(self.batch("base36", "".join(f"{value}\n" for value in values)),
                         [base36(value) if value <= 32767 else "" for value in values])

    def test_carries_days_as_another_calendar_does(self):
        first = datetime.date(2023, 1, 1)
        days = [first + datetime.timedelta(days) for days in range(731)]
        packed = "".join(f"ABCDE{day:%Y%m%d}\n" for day in days)
        carried = "".join(f"ABCDE2023{1:02}{day:02}\n" for day in range(1, 100))
        written = self.batch("short-date", packed)
        self.assertEqual(len(set(written)), len(days))
        self.assertEqual(self.batch("short-date", carried), written[:99])
