"""quorvane gradient from outside: the bands against another reckoning, the picture against the bands."""

import random

import ramp
from PIL import Image
from programs import ProgramTest

GREY = (200, 200, 200)


class Gradient(ProgramTest):
    def gradient(self, *arguments):
        return self.run_program("quorvane", "gradient", *arguments)

    def bands(self, *arguments):
        outcome = self.gradient(*arguments, "--bands")
        self.assertEqual((outcome.code, outcome.err), (0, ""))
        return [[int(word) for word in line.split(" ")] for line in outcome.lines]

    def test_prints_a_line_for_each_band_of_the_house_colours(self):
        outcome = self.gradient(6000, 3000, "--bands")
        self.assertEqual((outcome.code, outcome.err, len(outcome.lines)), (0, "", 196))
        for index, line in {0: "0 0 398 3 196 219 249", 1: "0 1 398 4 196 219 249", 50: "0 50 398 53 211 228 251",
                            100: "0 100 398 103 226 237 252", 150: "0 150 398 153 241 247 254",
                            194: "0 194 398 197 254 255 255", 195: "0 195 398 198 255 255 255"}.items():
            self.assertEqual(outcome.lines[index], line)

    def test_paints_from_left_to_right(self):
        bands = self.bands(3000, 4500, "--direction", 0)
        self.assertEqual((len(bands), bands[0][:4], bands[-1][:4]), (196, [0, 0, 3, 298], [195, 0, 198, 298]))

    def test_agrees_with_another_reckoning(self):
        source = random.Random(20240131)
        for _ in range(20):
            width, height = source.randint(-100, 32767), source.randint(-100, 32767)
            start, end = ([source.randint(0, 255) for _ in range(3)] for _ in range(2))
            direction = source.randint(0, 1)
            with self.subTest((width, height, start, end, direction)):
                told = self.bands(width, height, "--start", ",".join(map(str, start)),
                                  "--end", ",".join(map(str, end)), "--direction", direction)
                self.assertEqual(told, ramp.bands(width, height, start, end, direction))

    def test_prints_nothing_where_nothing_is_painted(self):
        for words in ((3000, 67), (3000, 60), (0, 0), (6000, 3000, "--direction", 2),
                      (6000, 3000, "--direction=-1"), (3000, 40000)):
            with self.subTest(words):
                self.assertEqual(self.bands(*words), [])

    def test_counts_a_width_beyond_sixteen_bits_as_zero(self):
        bands = self.bands(40000, 4500)
        self.assertEqual((len(bands), {band[2] for band in bands}), (296, {-2}))
        self.assertEqual([band[4:] for band in bands], [band[4:] for band in ramp.bands(4500, 4500)])

    def test_writes_the_picture_that_the_bands_make(self):
        for words, size in {("1210", "900"): (80, 60), ("900", "1209", "--direction", "0"): (60, 80),
                            ("15", "15"): (1, 1), ("30", "900"): (2, 60)}.items():
            with self.subTest(words):
                outcome = self.gradient(*words, "--picture", "ramp-ä.png", "--bands")
                self.assertEqual((outcome.code, outcome.err), (0, ""))
                bands = [[int(word) for word in line.split()] for line in outcome.lines]
                with Image.open(self.folder / "ramp-ä.png") as picture:
                    self.assertEqual((picture.format, picture.size), ("PNG", size))
                    shown = picture.convert("RGB")
                for place, colour in ramp.pixels(*size, bands).items():
                    self.assertEqual(shown.getpixel(place), colour or GREY, place)

    def test_says_when_the_picture_cannot_be_written(self):
        self.assert_fails(self.gradient(1500, 1500, "--picture", "none/ramp.png"),
                          "quorvane: the picture cannot be written: none/ramp.png")
