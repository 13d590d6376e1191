"""What only Windows shows: the form in a window, the registration."""

import subprocess

import ramp
from PIL import Image
from programs import MODULE, SAMPLE, SOURCES, Outcome, ProgramTest, command, crc, register_module, unregister_module


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
