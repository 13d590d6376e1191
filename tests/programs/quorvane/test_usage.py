"""Wrong use of every subcommand, in one table: what it says, that nothing is done, and that the help is named."""

import json
import unittest

from programs import ON_WINDOWS, ProgramTest

HIVES = "the hives are HKCR, HKCU, HKLM, HKU, HKCC"

# By command; "" is the program itself. The words behind the command, and what the first line says.
WRONG = {
    "": {
        (): "a command is missing",
        ("nope",): "unknown command 'nope'",
        ("--nope",): "unknown option '--nope'",
        ("-x",): "unknown option '-x'",
        ("help", "nope"): "unknown command 'nope'",
        ("help", "crc", "more"): "too many arguments, from 'more' on",
        ("--version", "more"): "too many arguments, from 'more' on",
        ("crx", "a"): "unknown command 'crx'; did you mean 'crc'?",
        ("registery",): "unknown command 'registery'; did you mean 'registry'?",
        ("grad",): "unknown command 'grad'; did you mean 'gradient'?",
        ("--verison",): "unknown option '--verison'; did you mean '--version'?",
    },
    "crc": {
        (): "too few arguments: FILE is wanted",
        ("--fast", "x"): "unknown option '--fast'",
        ("-x",): "unknown option '-x'",
        ("--hxe", "x"): "unknown option '--hxe'; did you mean '--hex'?",
        ("--hex=1", "x"): "option '--hex' takes no value",
        ("--hex", "--hex", "x"): "option '--hex' is given twice",
        ("--check",): "option '--check' wants a value",
        ("-c",): "option '-c' wants a value",
        ("--check", "list", "x"): "too many arguments, from 'x' on",
        ("--quiet", "x"): "--quiet goes with --check",
        ("--hex", "-u", "x"): "only one of --hex, --unsigned, --json and --check makes sense",
    },
    "encode": {
        ("a", "b"): "too many arguments, from 'b' on",
        ("--code-page", "x", "a"): "--code-page is for the Linux program" if ON_WINDOWS else "unknown code page 'x'",
        ("--code-page", "0", "a"): "code",
        ("--code-page", "932x", "a"): "code",
        ("--code-page", "", "a"): "code",
    },
    "post": {
        ("host", "80", "/"): "too few arguments: SERVER PORT OBJECT BODY is wanted",
        ("host", "80", "/", "a=b", "c"): "too many arguments, from 'c' on",
        ("host", "x", "/", "a=b"): "'x' is no port",
        ("host", "65536", "/", "a=b"): "'65536' is no port",
        ("host", "-1", "/", "a=b"): "'-1' is no port",
        ("host", "80x", "/", "a=b"): "'80x' is no port",
        ("host", "", "/", "a=b"): "'' is no port",
        ("host", "80", "/", "a=b", "--user", "anna"): "--user has an effect with --proxy only",
        ("host", "80", "/", "a=b", "--password", "x"): "--password has an effect with --proxy only",
        ("host", "80", "/", "a=b", "--password-file", "x"): "--password-file has an effect with --proxy only",
        ("host", "80", "/", "a=b", "--proxy", "p:1", "--password", "x"): "a password has an effect with --user only",
        ("host", "80", "/", "a=b", "-p", "p:1", "-u", "anna", "--password", "x", "--password-file", "y"):
            "--password and --password-file exclude each other",
        ("host", "80", "/", "-", "-p", "p:1", "-u", "anna", "--password-file", "-"):
            "standard input cannot be both the BODY and the password",
    },
    "text": {
        (): "too few arguments: OPERATION is wanted",
        ("--batch",): "too few arguments: OPERATION is wanted",
        ("nope",): "unknown operation 'nope'",
        ("emtpy", "x"): "unknown operation 'emtpy'; did you mean 'empty'?",
    },
    "text empty": {(): "too few arguments: TEXT is wanted", ("--nope", ""): "unknown option '--nope'"},
    "text last-position": {("a",): "too few arguments: TEXT FIND is wanted"},
    "text replace": {("a", "b"): "too few arguments: TEXT FIND REPLACEMENT is wanted"},
    "text short-date": {("a", "b"): "too many arguments, from 'b' on"},
    "text base36": {
        ("1", "2"): "too many arguments, from '2' on",
        ("1", "--batch"): "too many arguments, from '1' on",
    },
    "gradient": {
        ("6000",): "too few arguments: WIDTH HEIGHT is wanted",
        ("6000", "3000"): "--picture FILE or --bands is wanted",
        ("6000", "3000", "1", "--bands"): "too many arguments, from '1' on",
        ("wide", "3000", "--bands"): "WIDTH is no number: 'wide'",
        ("6000", "2147483648", "--bands"): "HEIGHT must lie in -2147483648 to 2147483647: '2147483648'",
        ("6000", "3000", "--bands", "--start", "1,2"): "--start wants three channels, R,G,B: '1,2'",
        ("6000", "3000", "--bands", "--start", "1,2,"): "--start",
        ("6000", "3000", "--bands", "--start", ""): "--start",
        ("6000", "3000", "--bands", "--start", "1,2,3,4"): "--start wants three channels, R,G,B: '1,2,3,4'",
        ("6000", "3000", "--bands", "--end", "1,2,256"): "--end must lie in 0 to 255: '256'",
        ("6000", "3000", "--bands", "--direction", "32768"): "--direction must lie in -32768 to 32767: '32768'",
        ("14", "3000", "--picture", "x.png"): "a picture wants sizes from 15 to 32767",
        ("3000", "32768", "--picture", "x.png"): "a picture wants sizes from 15 to 32767",
        ("3000", "3000", "--picture", "-", "--bands"): "--picture - and --bands would mix on the output",
    },
    "platform": {("x",): "too many arguments, from 'x' on", ("--json",): "unknown option '--json'"},
    "system-directory": {("x",): "too many arguments, from 'x' on"},
    "registry": {
        (): "too few arguments: OPERATION is wanted",
        ("show", "HKCU", "k", "n"): "unknown operation 'show'",
        ("raed", "HKCU", "k", "n"): "unknown operation 'raed'; did you mean 'read'?",
    },
    "registry read": {
        (): "too few arguments: HIVE KEY NAME is wanted",
        ("HKCU", "k"): "too few arguments: HIVE KEY NAME is wanted",
        ("HKXX", "k", "n"): f"HIVE is no number: 'HKXX'; {HIVES}",
        ("4294967296", "k", "n"): HIVES,
        ("HKCU", "k", "n", "--type", "sz"): "unknown option '--type'",
    },
    "registry write": {
        ("HKCU", "k"): "too few arguments: HIVE KEY NAME [VALUE] is wanted",
        ("HKXX", "k", "n", "v"): f"HIVE is no number: 'HKXX'; {HIVES}",
        ("HKCU", "k", "n", "v", "--type", "text"): "TYPE is no number: 'text'",
        ("HKCU", "k", "n", "v", "w"): "too many arguments, from 'w' on",
    },
    "registry list": {
        ("HKXX",): f"HIVE is no number: 'HKXX'; {HIVES}",
        ("12345",): f"HIVE has no name; {HIVES}",
        ("HKCU", "k", "n"): "too many arguments, from 'n' on",
    },
    "registry delete": {
        ("HKCU",): "too few arguments: HIVE KEY [NAME] is wanted",
        ("HKCU", "k"): "either NAME or --tree is wanted",
        ("HKCU", "k", "n", "--tree"): "either NAME or --tree is wanted",
        ("HKCU", "", "--tree"): "a whole hive cannot be deleted",
        ("HKCU", "\\", "--tree"): "a whole hive cannot be deleted",
    },
    "registry export": {
        (): "too few arguments: FILE [HIVE] [KEY] is wanted",
        ("x.reg", "HKXX"): f"HIVE is no number: 'HKXX'; {HIVES}",
    },
    "registry import": {
        (): "too few arguments: FILE is wanted",
        ("a.reg", "b.reg"): "too many arguments, from 'b.reg' on",
    },
    "profile": {
        (): "too few arguments: OPERATION is wanted",
        ("--file", "a.ini"): "unknown operation 'a.ini'",
        ("list",): "unknown operation 'list'",
    },
    "profile read": {
        ("section",): "too few arguments: SECTION KEY is wanted",
        ("section", "key", "value"): "too many arguments, from 'value' on",
    },
    "profile write": {
        ("section",): "too few arguments: SECTION KEY [VALUE] is wanted",
        ("s", "k", "a\nb", "-f", "a.ini"): "VALUE could not be read back: it holds a line end",
        ("s", "k", "a\rb", "-f", "a.ini"): "VALUE could not be read back: it holds a line end",
        ("s", "k\nl=1", "v", "-f", "a.ini"): "KEY could not be read back: it holds a line end",
        ("s\n[t", "k", "v", "-f", "a.ini"): "SECTION could not be read back: it holds a line end",
        ("s", "a=b", "v", "-f", "a.ini"): "KEY could not be read back: it holds =",
        ("s", "", "v", "-f", "a.ini"): "KEY could not be read back: it is empty",
        ("s", "", "-f", "a.ini"): "KEY could not be read back: it is empty",
        ("s", ";c", "v", "-f", "a.ini"): "KEY could not be read back: it starts with ;",
        ("s", "[k", "v", "-f", "a.ini"): "KEY could not be read back: it starts with [",
        ("s]", "k", "v", "-f", "a.ini"): "SECTION could not be read back: it holds ]",
        ("s", " k", "v", "-f", "a.ini"): "KEY could not be read back: it starts or ends with a blank",
        ("s", "k", "v\t", "-f", "a.ini"): "VALUE could not be read back: it starts or ends with a blank",
    },
    "sid": {("x",): "too many arguments, from 'x' on"},
    "user": {("x",): "too many arguments, from 'x' on"},
    "doctor": {("x",): "too many arguments, from 'x' on"},
    "adapters": {("x",): "too many arguments, from 'x' on"},
}


class WrongUse(ProgramTest):
    def test_says_what_is_wrong_and_does_nothing(self):
        for command, cases in WRONG.items():
            for words, message in cases.items():
                with self.subTest(command=command, words=words):
                    outcome = self.run_program("quorvane", *command.split(), *words)
                    self.assert_usage_error(outcome, message)
                    start = f"quorvane: {command}: " if command else "quorvane: "
                    self.assertTrue(outcome.err.startswith(start), outcome.err)
                    self.assertIn(f"\nTry 'quorvane{' ' + command if command else ''} --help'.\n", outcome.err)
        self.assertEqual(list(self.folder.iterdir()), [])

    def test_the_table_leaves_no_subcommand_out(self):
        described = json.loads(self.run_program("quorvane", "--describe").out)
        self.assertEqual(sorted(WRONG), sorted(["", *(command["name"] for command in described["commands"])]))


if __name__ == "__main__":
    unittest.main()
