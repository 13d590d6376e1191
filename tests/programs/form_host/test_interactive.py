"""The window for people, worked from outside by another program: messages, keys, boxes, pictures of the screen."""

import os
import shutil
import subprocess
import time
import unittest
from pathlib import Path

import ramp
from PIL import Image
from programs import BUILD, MODULE, SAMPLE, SOURCES, ProgramTest, command, crc, register_module, unregister_module, wine
from test_windows import COUNT, read_log

NEW, OPEN, SAVE, SAVE_AS, EXIT = 101, 102, 103, 104, 105
ACTIVATE, DEACTIVATE, DOUBLE_SIZE, CRC = 111, 112, 113, 114
SHOW_COUNTS, SELECT_CALLS, CLEAR_CALLS, HELP = 121, 122, 123, 131
VALUES, NAMES, TYPES, CALLS, STATUS = 201, 211, 221, 231, 232
SETTINGS = ("ServerAddress", "ServerPort", "ServerFile", "UseProxy", "ProxyServer", "UserName", "Password")
BUTTONS = (NEW, OPEN, SAVE, SAVE_AS, ACTIVATE, DEACTIVATE, CRC)
OK, CANCEL, YES, NO = 1, 2, 6, 7
TAB, ENTER, SHIFT, CTRL, ALT, ESCAPE, F1, F5 = 9, 13, 16, 17, 18, 27, 112, 116


def windows_path(path):
    return "Z:" + str(path).replace("/", "\\")


class Session(ProgramTest):
    """One display and one driver for all tests; each test has windows of its own."""

    @classmethod
    def setUpClass(cls):
        register_module()
        cls.addClassCleanup(unregister_module)
        # The boxes for files want a desktop; that of a prefix here is a link to a folder that is gone.
        users = Path(wine("--prefix").stdout.decode().strip()) / "drive_c/users"
        for desktop in [user / "Desktop" for user in users.iterdir()]:
            if desktop.is_symlink() and not desktop.exists():
                desktop.unlink()
                desktop.mkdir()
        display = subprocess.Popen([str(SOURCES / "scripts/with-display"), "sh", "-c", "echo $DISPLAY; exec cat"],
                                   stdin=subprocess.PIPE, stdout=subprocess.PIPE, text=True)
        cls.environment = {**os.environ, "DISPLAY": display.stdout.readline().strip()}
        cls.addClassCleanup(cls.end, display)
        cls.start_driver()
        cls.addClassCleanup(lambda: cls.end(cls.driver))

    @classmethod
    def start_driver(cls):
        program = next((BUILD / "tests").rglob("drive_window.exe"))
        cls.driver = subprocess.Popen([str(SOURCES / "scripts/wine"), str(program)], stdin=subprocess.PIPE,
                                      stdout=subprocess.PIPE, env=cls.environment, encoding="utf-8")

    @staticmethod
    def end(process):
        process.stdin.close()
        process.wait(60)
        process.stdout.close()

    def open(self, *arguments):
        """Starts the form host; the log goes to calls.log."""
        # Into a file: what else Wine starts would keep a pipe open.
        with open(self.folder / "said", "wb") as said:
            self.program = subprocess.Popen(command("form_host", "--interactive", "--log", "calls.log", *arguments),
                                            cwd=self.folder, env=self.environment, stdin=subprocess.DEVNULL,
                                            stdout=said, stderr=said)
        self.addCleanup(self.stop)
        self.title = self.do("find")

    def stop(self):
        """After a failure the window is still there."""
        if self.program.poll() is None:
            self.program.kill()
        self.program.wait(60)

    def do(self, order, *words):
        self.driver.stdin.write(" ".join([order, *map(str, words)]) + "\n")
        self.driver.stdin.flush()
        answer = self.driver.stdout.readline().rstrip("\n")
        self.assertFalse(answer.startswith("! "), (order, words, answer))
        return answer

    def wait_for(self, wanted, order, *words):
        """Asks until the answer is the wanted one."""
        end = time.monotonic() + 30
        while (answer := self.do(order, *words)) != wanted and time.monotonic() < end:
            time.sleep(0.02)
        self.assertEqual(answer, wanted, (order, words))

    def values(self):
        return [self.do("text", VALUES + i) for i in range(len(SETTINGS))]

    def place(self, *what):
        return [int(word) for word in self.do(*what).split()]

    def go_to(self, setting):
        """By the letter that is underlined in the setting's name."""
        letter = dict(zip(SETTINGS, "APEUXRW"))[setting]
        part = str(VALUES + SETTINGS.index(setting))
        if self.do("focus") != part:  # keys wait behind what is typed next
            self.do("keys", ALT, ord(letter))
        self.wait_for(part, "focus")

    def enter(self, setting, text):
        self.go_to(setting)
        self.do("type", text)
        self.do("keys", ENTER)

    def left(self):
        """The window is gone; the exit code, and what the program said."""
        self.program.wait(60)
        return self.program.returncode, (self.folder / "said").read_text(encoding="utf-8")

    def log(self):
        """The calls in the log file, by what the user did, without counts of references."""
        parts = {}
        part = []
        for line in read_log(self.folder / "calls.log"):
            if line.startswith("-- "):
                part = parts.setdefault(line[3:], [])
            elif not COUNT.search(line):
                part.append(line)
        return parts

    def screen(self):
        shot = self.folder / "screen.png"
        subprocess.run(["import", "-silent", "-window", "root", f"png24:{shot}"], check=True, env=self.environment,
                       timeout=60)
        with Image.open(shot) as picture:
            return picture.convert("RGB")


class Edit(Session):
    def test_a_saved_form_is_opened_changed_and_saved(self):
        form = self.folder / "a ä.form"
        shutil.copy(SAMPLE, form)
        self.open(form.name)
        self.assertEqual(self.title, "Form host - a ä.form")
        self.assertEqual(self.values(), ["reports.example.com", "8080", "/scripts/collect.asp", "True",
                                         "proxy.example.com:3128", "Łucja", "********"])
        # The keyboard starts in the first value and goes on from value to value, then to the calls and the buttons.
        self.wait_for(str(VALUES), "focus")
        for part in [*range(VALUES + 1, VALUES + 7), CALLS, *BUTTONS, VALUES]:
            self.do("keys", TAB)
            self.wait_for(str(part), "focus")
        self.do("keys", SHIFT, TAB)
        self.wait_for(str(CRC), "focus")

        # The control refuses, in its own words; the old value comes back.
        self.enter("ServerPort", "many")
        self.assertEqual(self.do("box"), "ServerPort keeps its value.\\nerror 13: Type mismatch (ServerPort)")
        self.do("press", OK)
        self.wait_for("8080", "text", VALUES + 1)
        self.assertIn("error 13: Type mismatch", self.do("text", STATUS))
        self.do("fill", VALUES, 32768)
        self.go_to("ServerAddress")
        self.do("keys", ENTER)
        self.assertIn("a value has at most 32767 characters here", self.do("box"))
        self.do("press", OK)
        self.wait_for("reports.example.com", "text", VALUES)
        self.assertEqual(self.do("title"), "Form host - a ä.form")

        # Escape brings the old value back; the way out of a field hands it over; so does saving.
        self.go_to("ServerFile")
        self.do("type", "typed in vain")
        self.wait_for("typed in vain", "text", VALUES + 2)
        self.do("keys", ESCAPE)
        self.wait_for("/scripts/collect.asp", "text", VALUES + 2)
        self.go_to("UseProxy")
        self.do("type", "0")
        self.go_to("ServerPort")
        self.wait_for("False", "text", VALUES + 3)
        self.wait_for("Form host - a ä.form *", "title")
        self.do("type", "8090")
        self.go_to("Password")
        self.wait_for("", "text", VALUES + 6)
        self.do("type", "new")
        self.do("keys", CTRL, ord("S"))
        self.wait_for("saved to a ä.form", "text", STATUS)
        self.wait_for("Form host - a ä.form", "title")
        saved = ('ServerAddress = "reports.example.com"\nServerPort = 8090\nServerFile = "/scripts/collect.asp"\n'
                 'ProxyServer = "proxy.example.com:3128"\nUsername = "Łucja"\nPassword = "new"\n')
        self.assertEqual(form.read_text(encoding="utf-8"), saved)

        # Nothing is unsaved, so nothing is asked.
        self.do("keys", CTRL, ord("Q"))
        self.assertEqual(self.left(), (0, ""))
        log = self.log()
        self.assertIn('> IDispatch.Invoke(member ServerPort, id GUID_NULL, locale 1033, kind 4, arguments VT_BSTR "8090")',
                      log["Set ServerPort"])
        self.assertIn("  < IPropertyNotifySink.OnChanged(member ServerPort) = S_OK", log["Set ServerPort"])
        self.assertIn("error 13: Type mismatch (ServerPort)", log)
        self.assertEqual([line for line in log["Save a ä.form"] if line.startswith("  ")], [
            '  < IPropertyBag.Write(name "ServerAddress", value VT_BSTR "reports.example.com") = S_OK',
            '  < IPropertyBag.Write(name "ServerPort", value VT_I2 8090) = S_OK',
            '  < IPropertyBag.Write(name "ServerFile", value VT_BSTR "/scripts/collect.asp") = S_OK',
            '  < IPropertyBag.Write(name "ProxyServer", value VT_BSTR "proxy.example.com:3128") = S_OK',
            '  < IPropertyBag.Write(name "Username", value VT_BSTR "Łucja") = S_OK',
            '  < IPropertyBag.Write(name "Password", value VT_BSTR "********") = S_OK'])
        self.assertNotIn("new", (self.folder / "calls.log").read_text(encoding="utf-8").replace("IPersist", ""))

        # The same form comes back.
        self.open(form.name)
        self.assertEqual(self.values(), ["reports.example.com", "8090", "/scripts/collect.asp", "False",
                                         "proxy.example.com:3128", "Łucja", "********"])
        self.do("close")
        self.assertEqual(self.left(), (0, ""))
        self.assertEqual(form.read_text(encoding="utf-8"), saved)


class Files(Session):
    def choose(self, order, path):
        self.do("order", order)
        self.do("name", windows_path(path))
        self.do("press", OK)

    def test_nothing_unsaved_is_lost(self):
        form = self.folder / "b.form"
        self.open()
        self.assertEqual(self.title, "Form host - a new form")
        self.assertEqual(self.values(), ["", "0", "", "False", "", "", ""])
        self.enter("ServerAddress", "first")
        self.wait_for("Form host - a new form *", "title")
        self.do("order", EXIT)
        self.assertEqual(self.do("box"), "Save the changes to a new form?")
        self.do("press", CANCEL)
        self.choose(SAVE, form)
        self.wait_for("Form host - b.form", "title")
        self.assertEqual(form.read_text(), 'ServerAddress = "first"\nServerPort = 0\n')

        # A file that cannot be replaced stays, and the form goes on being unsaved.
        form.chmod(0o444)
        self.do("set", VALUES, "second")
        self.do("order", SAVE)
        self.assertIn("b.form: it is read-only", self.do("box"))
        self.do("press", OK)
        self.do("close")
        self.assertEqual(self.do("box"), "Save the changes to b.form?")
        self.do("press", CANCEL)
        self.assertEqual(form.read_text(), 'ServerAddress = "first"\nServerPort = 0\n')
        form.chmod(0o644)
        self.do("order", SAVE)
        self.wait_for("Form host - b.form", "title")
        self.assertEqual(form.read_text(), 'ServerAddress = "second"\nServerPort = 0\n')

        # A damaged form leaves the open one where it is; a good one takes its place.
        self.choose(OPEN, self.folder / self.write("damaged.form", "ServerAddress = x"))
        self.assertIn("damaged.form: line 1: a value must be", self.do("box"))
        self.do("press", OK)
        self.assertEqual((self.do("title"), self.values()[0]), ("Form host - b.form", "second"))
        self.choose(OPEN, self.folder / self.write("good.form", 'ServerFile = "\\t\\"x"\nServerPort = 1\nOther = 1\n'))
        self.wait_for("Form host - good.form", "title")
        self.assertEqual(self.values(), ["", "1", '"\\t\\"x"', "False", "", "", ""])
        self.assertNotEqual(self.do("control"), "none")

        # What was typed counts, too; and it is given up when the user says so.
        self.go_to("ServerFile")
        self.do("type", "typed")
        self.do("order", NEW)
        self.assertEqual(self.do("box"), "Save the changes to good.form?")
        self.do("press", NO)
        self.wait_for("Form host - a new form", "title")
        self.do("order", EXIT)  # there is nothing yet to lose
        self.assertEqual(self.left(), (0, ""))
        self.assertEqual((self.folder / "good.form").read_text(), 'ServerFile = "\\t\\"x"\nServerPort = 1\nOther = 1\n')
        log = self.log()
        self.assertIn("the control has not read the entry Other", log)
        self.assertIn("> IPersistPropertyBag.InitNew() = S_OK", log["New"])

    def test_what_cannot_start_says_why(self):
        self.write("damaged.form", "x")
        self.write("a.form", "")
        for words, display, message in (
                (("missing.form",), True, "missing.form: there is no such file"),
                (("damaged.form",), True, 'damaged.form: line 1: a name must be followed by "="'),
                (("--log", "none/x.log", "a.form"), True, "none/x.log: the log cannot be made there"),
                (("a.form",), False, "CreateWindowEx")):
            with self.subTest(words):
                environment = self.environment if display else {**self.environment, "DISPLAY": ""}
                self.assert_fails(self.run_program("form_host", "--interactive", *words, **environment), message)
        self.assert_usage_error(self.run_program("form_host", "--interactive", "--save", "b.form", "a.form"),
                                "form_host: --interactive takes no --save")


class Look(Session):
    PLACE, PANEL = (24, 24, 28, 28), (24, 64, 272, 112)

    def parts(self):
        """The places of all parts; none on another, all within the window."""
        columns = [first + i for first in (NAMES, TYPES, VALUES) for i in range(len(SETTINGS))]
        places = {part: self.place("place", part) for part in (*BUTTONS, *columns, CALLS, STATUS)}
        places["form"] = self.place("form")
        for part, (left, top, width, height) in places.items():
            self.assertTrue(left >= 0 and top >= 0 and width > 0 and height > 0, part)
            for other, (its_left, its_top, its_width, its_height) in places.items():
                apart = (left >= its_left + its_width or its_left >= left + width
                         or top >= its_top + its_height or its_top >= top + height)
                self.assertTrue(apart or part == other, (part, other, places))
        return places

    def shown(self, parts):
        """The form's part of the screen. The window stands where its menu is, at the left upper corner."""
        picture = self.screen()
        left, top = self.corner
        x, y, width, height = parts["form"]
        return picture.crop((left + x, top + y, left + x + width, top + y + height))

    def assert_form(self, picture, is_active):
        background = picture.getpixel((0, 0))
        left, top, width, height = self.PANEL
        bands = ramp.bands(width * 15, height * 15)
        for (x, y), colour in ramp.pixels(width, height, bands).items():
            self.assertEqual(picture.getpixel((left + x, top + y)), colour or background, (x, y))
        left, top, width, height = self.PLACE
        icon = {picture.getpixel((left + x, top + y)) for x in range(width) for y in range(height)}
        self.assertEqual(icon == {background}, not is_active)
        # The handles, and nothing else around the control.
        handles = {(52, 35), (35, 52), (52, 52)}
        coloured = {(x, y) for x in range(60) for y in range(60) if picture.getpixel((x, y)) != background
                    and not (24 <= x < 52 and 24 <= y < 52)}
        self.assertEqual(coloured, {(x + dx, y + dy) for x, y in handles for dx in range(6) for dy in range(6)})
        self.assertEqual(len({picture.getpixel(point) for point in coloured}), 1)

    def test_the_form_is_on_the_screen_and_the_control_answers(self):
        self.write("a.form", "ServerPort = 1\n")
        self.open("a.form")
        self.do("sleep", 200)  # painted
        parts = self.parts()
        self.corner = self.place("corner")
        self.assert_form(self.shown(parts), True)
        self.do("keys", SHIFT, F5)
        self.wait_for("none", "control")
        self.do("sleep", 100)
        self.assert_form(self.shown(parts), False)
        self.do("keys", F5)
        place = " ".join(str(a + b) for a, b in zip(self.PLACE, (*parts["form"][:2], 0, 0)))
        self.wait_for(place, "control")

        self.do("drag", 54, 54, 110, 90)
        self.wait_for("asked for 86 x 66 pixels, the control has 28 x 28", "text", STATUS)
        self.assertEqual(self.do("control"), place)
        self.do("keys", CTRL, ord("D"))
        self.wait_for("asked for 56 x 56 pixels, the control has 28 x 28", "text", STATUS)
        self.do("keys", CTRL, ord("G"))
        self.wait_for(f"GetCRCValue={crc(MODULE.read_bytes())}", "text", STATUS)
        self.do("sleep", 100)
        self.assert_form(self.shown(parts), True)

        # There is no help file beside this module.
        self.do("keys", F1)
        self.assertIn("error 53: File not found", self.do("box"))
        self.do("press", OK)

        # The calls are those of the log file, and text that can be selected but not changed.
        self.do("keys", CTRL, ord("L"))
        self.wait_for(str(CALLS), "focus")
        calls = self.do("text", CALLS)
        self.do("type", "xyz")
        self.do("keys", CTRL, ord("A"))
        self.assertEqual(self.do("text", CALLS), calls)
        self.assertEqual(self.do("selection", CALLS), f"0 {len(calls)}")
        self.do("order", SHOW_COUNTS)
        self.wait_for("yes", "checked", SHOW_COUNTS)
        self.do("order", DEACTIVATE)
        self.wait_for("none", "control")
        self.do("close")
        self.assertEqual(self.left(), (0, ""))
        log = self.log()
        lines = (self.folder / "calls.log").read_text(encoding="utf-8").splitlines()
        end = [i for i, line in enumerate(lines) if line == "-- Deactivate"][1]
        self.assertEqual(calls.replace("\\n", "\n").splitlines(),
                         [line for line in lines[:end] if not COUNT.search(line)])
        self.assertEqual(log["Resize to 86 x 66"], [
            "> IOleObject.SetExtent(aspect 1, extent 2275 x 1746) = S_OK",
            "> IOleObject.GetExtent(aspect 1) = S_OK, extent 741 x 741",
            "> IOleObject.QueryInterface(IOleInPlaceObject) = S_OK",
            "> IOleObject.QueryInterface(IOleInPlaceObject) = S_OK",
            "> IOleInPlaceObject.GetWindow() = S_OK, window 0x?",
            "> IOleInPlaceObject.SetObjectRects(place 86 x 66 at 24, 24, clip 320 x 200 at 0, 0)",
            "  < IOleInPlaceSite.OnPosRectChange(place 28 x 28 at 24, 24) = S_OK",
            "> IOleInPlaceObject.SetObjectRects returns S_OK"])
        self.assertIn("  < IOleInPlaceSite.OnInPlaceDeactivate() = S_OK", log["Deactivate"])
        self.assertIn("  < IOleInPlaceSite.OnInPlaceActivate() = S_OK", log["Activate"])
        self.assertEqual(log["GetCRCValue"][-1].rpartition("result ")[2], f"VT_I4 {crc(MODULE.read_bytes())}")

    def set_density(self, dots_per_inch):
        """For programs that start from now on; a driver of the old density would see another's pixels scaled."""
        wine("reg", "add", r"HKCU\Control Panel\Desktop", "/v", "LogPixels", "/t", "REG_DWORD", "/d", dots_per_inch, "/f")
        self.end(self.driver)
        self.start_driver()

    def test_follows_size_and_density_and_font(self):
        self.open()
        before = self.parts()
        self.do("size", 1000, 700)
        wide = self.parts()
        self.assertGreater(wide[CALLS][2], before[CALLS][2])
        self.assertGreater(wide[VALUES][2], before[VALUES][2])
        self.do("close")
        self.assertEqual(self.left(), (0, ""))

        self.addCleanup(self.set_density, 96)
        self.set_density(144)
        self.open()
        dense = self.parts()
        self.assertEqual(self.place("control")[2:], [42, 42])
        self.assertGreater(dense[VALUES][3], 1.3 * before[VALUES][3])
        self.assertGreater(dense[SAVE_AS][2], 1.3 * before[SAVE_AS][2])
        self.do("close")
        self.assertEqual(self.left(), (0, ""))
        self.set_density(96)

        self.do("font", -22)
        self.addCleanup(self.do, "font", -11)
        self.open()
        large = self.parts()
        self.assertGreater(large[VALUES][3], 1.4 * before[VALUES][3])
        self.assertGreater(large[SAVE_AS][2], 1.4 * before[SAVE_AS][2])
        self.do("close")
        self.assertEqual(self.left(), (0, ""))


if __name__ == "__main__":
    unittest.main()
