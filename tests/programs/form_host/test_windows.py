"""What only Windows shows: the form in a window, the registration."""

import os
import re
import subprocess

import ramp
from PIL import Image
from programs import MODULE, SAMPLE, SOURCES, Outcome, ProgramTest, command, crc, register_module, unregister_module

COUNT = re.compile(r"\b(AddRef|Release)\(\) = ")


class Form(ProgramTest):
    def test_without_the_registered_module_it_says_how_to_register(self):
        unregister_module()
        self.assert_fails(self.run_program("form_host", SAMPLE), "form_host: error -2147221164: The control is not "
                          "registered; do so by regsvr32 QuorvaneSecurity.ocx (CoCreateInstance)")

    def test_shows_the_control_in_a_window_where_there_is_a_display(self):
        register_module()
        self.addCleanup(unregister_module)
        with_display = [str(SOURCES / "scripts/with-display"), *command("form_host", SAMPLE)]
        outcome = Outcome(subprocess.run(with_display, capture_output=True, timeout=200))
        self.assertEqual(outcome.code, 0, outcome.err)
        self.assertIn("on screen: a window of 320 x 200 pixels, in it the control's, 28 x 28 at 24, 24, "
                      "and a panel, 272 x 112 at 24, 64", outcome.lines)

    def test_says_so_where_there_is_none(self):
        register_module()
        self.addCleanup(unregister_module)
        outcome = self.run_program("form_host", SAMPLE, DISPLAY="")
        self.assertEqual(outcome.code, 0, outcome.err)
        self.assertIn("on screen: nothing, as no window can be made", outcome.out)


def read_log(path):
    """The log's lines, windows' numbers masked; each call that is not whole in a line is found to return."""
    lines = re.sub(r"0x[0-9A-F]+", "0x?", path.read_bytes().decode("utf-8")).splitlines()
    open_calls = []
    for line in lines:
        begun = re.fullmatch(r"( *[<>] [\w.]+)\(.*\)", line)
        returned = re.fullmatch(r"( *[<>] [\w.]+) returns .*", line)
        if begun:
            open_calls.append(begun[1])
        elif returned:
            assert open_calls.pop() == returned[1], line
        else:
            assert re.fullmatch(r" *(-- .*|[<>] [\w.]+\(.*\) = .*)", line), line
    assert not open_calls, open_calls
    return lines


class Log(ProgramTest):
    @classmethod
    def setUpClass(cls):
        register_module()
        cls.addClassCleanup(unregister_module)

    def log(self, form, *arguments, display=False):
        self.write("a.form", form)
        words = command("form_host", "--log", "calls.log", *arguments, "a.form")
        shown = [str(SOURCES / "scripts/with-display")] if display else []
        outcome = Outcome(subprocess.run([*shown, *words], cwd=self.folder, capture_output=True, timeout=200,
                                         env=os.environ if display else {**os.environ, "DISPLAY": ""}))
        # The display may go before all that was started on it has gone, which Wine 10 says.
        self.assertEqual((outcome.code, "" if display else outcome.err), (0, ""))
        return read_log(self.folder / "calls.log")

    def part(self, lines, first, last):
        start = lines.index(first)
        return [line.strip() for line in lines[start + 1:lines.index(last, start)] if not COUNT.search(line)]

    def test_tells_what_the_control_reads_and_writes_but_no_password(self):
        lines = self.log(SAMPLE.read_bytes(), "--set", "ServerPort=81", "--set", "Password=s3cret")
        values = ['VT_BSTR "reports.example.com"', "VT_I2 8080", 'VT_BSTR "/scripts/collect.asp"', "VT_BOOL True",
                  'VT_BSTR "proxy.example.com:3128"', 'VT_BSTR "Łucja"', 'VT_BSTR "********"']
        entries = ["ServerAddress", "ServerPort", "ServerFile", "UseProxy", "ProxyServer", "Username", "Password"]
        self.assertEqual(
            self.part(lines, "> IPersistPropertyBag.Load(bag given, log null)",
                      "> IPersistPropertyBag.Load returns S_OK"),
            [f'< IPropertyBag.Read(name "{entry}", log null) = S_OK, value {value}'
             for entry, value in zip(entries, values)])
        values[1] = "VT_I2 81"
        self.assertEqual(
            self.part(lines, "> IPersistPropertyBag.Save(bag given, clear 1, all 0)",
                      "> IPersistPropertyBag.Save returns S_OK"),
            [f'< IPropertyBag.Write(name "{entry}", value {value}) = S_OK' for entry, value in zip(entries, values)])
        text = "\n".join(lines)
        self.assertNotIn("biscuits", text)
        self.assertNotIn("s3cret", text)

    def test_tells_a_missing_entry_and_a_refused_conversion_by_the_results_names(self):
        lines = self.log('ServerPort = "many"\n')
        self.assertEqual(
            self.part(lines, "> IPersistPropertyBag.Load(bag given, log null)",
                      "> IPersistPropertyBag.Load returns S_OK"),
            ['< IPropertyBag.Read(name "ServerAddress", log null) = E_INVALIDARG',
             '< IPropertyBag.Read(name "ServerPort", log null) = S_OK, value VT_BSTR "many"'])

    def test_tells_both_directions_of_activation_in_their_order(self):
        lines = self.log("", display=True)
        verb = next(line for line in lines if line.startswith("> IOleObject.DoVerb("))
        self.assertEqual(verb, "> IOleObject.DoVerb(verb -5, message null, site given, index 0, window 0x?, "
                               "place 28 x 28 at 24, 24)")
        self.assertEqual(self.part(lines, verb, "> IOleObject.DoVerb returns S_OK"), [
            "< IOleClientSite.QueryInterface(IOleInPlaceSiteEx) = E_NOINTERFACE",
            "< IOleClientSite.QueryInterface(IOleInPlaceSite) = S_OK",
            "< IOleInPlaceSite.CanInPlaceActivate() = S_OK",
            "< IOleInPlaceSite.OnInPlaceActivate() = S_OK",
            "< IOleInPlaceSite.GetWindow() = S_OK, window 0x?",
            "< IOleInPlaceSite.GetWindowContext(info given) = S_OK, frame given, place 28 x 28 at 24, 24, "
            "clip 320 x 200 at 0, 0",
            "< IOleClientSite.ShowObject() = S_OK"])
        self.assertEqual(self.part(lines, "> IOleInPlaceObject.InPlaceDeactivate()",
                                   "> IOleInPlaceObject.InPlaceDeactivate returns S_OK"),
                         ["< IOleInPlaceSite.OnInPlaceDeactivate() = S_OK"])
        # Two forms, and of each every object is given back, the control last.
        for end in ("< IPropertyNotifySink.Release() = 0", "< IOleClientSite.Release() = 0", "> IOleObject.Release() = 0"):
            self.assertEqual(sum(line.strip() == end for line in lines), 2, end)
        self.assertEqual(lines[-1], "> IOleObject.Release() = 0")

    def test_a_log_that_cannot_be_made_or_would_wipe_out_the_form_is_refused(self):
        self.write("a.form", "ServerPort = 81\n")
        self.assert_fails(self.run_program("form_host", "--log", "none/calls.log", "a.form"),
                          "form_host: none/calls.log: the log cannot be made there")
        for words in (("--log", "a.form", "a.form"), ("--log", "b.form", "--save", "b.form", "a.form"),
                      ("--interactive", "--log", "A.FORM", "a.form")):
            with self.subTest(words):
                self.assert_usage_error(self.run_program("form_host", *words),
                                        "form_host: --log names the file of the form")
        self.assertEqual((self.folder / "a.form").read_text(), "ServerPort = 81\n")


class Panel(ProgramTest):
    """A picture of the real window on a real screen, taken by another program, pixel by pixel."""

    LEFT, TOP, WIDTH, HEIGHT = 24, 64, 272, 112

    def screen(self):
        register_module()
        self.addCleanup(unregister_module)
        shot = self.folder / "form.png"
        taken = subprocess.run([str(SOURCES / "scripts/with-display"), str(SOURCES / "scripts/shoot-window"), "Form",
                                str(shot), *command("form_host", "--wait", SAMPLE)], capture_output=True, timeout=200)
        outcome = Outcome(taken)
        self.assertEqual(outcome.code, 0, outcome.err)
        self.assertEqual(outcome.lines[-1], f"GetCRCValue={crc(MODULE.read_bytes())}")
        with Image.open(shot) as picture:
            return picture.convert("RGB")

    def test_shows_the_bands_of_the_painter_and_nothing_else(self):
        picture = self.screen()
        self.assertEqual(picture.size, (320, 200))
        bands = ramp.bands(self.WIDTH * 15, self.HEIGHT * 15)
        self.assertEqual(len(bands), 108)
        background = picture.getpixel((0, 0))
        self.assertNotIn(background, {tuple(band[4:]) for band in bands})
        for (x, y), colour in ramp.pixels(self.WIDTH, self.HEIGHT, bands).items():
            self.assertEqual(picture.getpixel((self.LEFT + x, self.TOP + y)), colour or background, (x, y))
        # Around the panel, but for the control's own place, is the form.
        for x in range(320):
            for y in range(200):
                on_panel = 0 <= x - self.LEFT < self.WIDTH and 0 <= y - self.TOP < self.HEIGHT
                on_control = 24 <= x < 52 and 24 <= y < 52
                if not on_panel and not on_control:
                    self.assertEqual(picture.getpixel((x, y)), background, (x, y))

    def test_shows_the_bands_that_the_program_tells(self):
        told = self.run_program("quorvane", "gradient", self.WIDTH * 15, self.HEIGHT * 15, "--bands")
        self.assertEqual([[int(word) for word in line.split()] for line in told.lines],
                         ramp.bands(self.WIDTH * 15, self.HEIGHT * 15))
