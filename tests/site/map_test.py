"""Opens maps in headless Chromium: what is written on them can be read, however much they show."""

import json
import math
import os
import pathlib
import subprocess
import tempfile
import unittest

import walk

PROGRAM = os.environ["TRELVO_PROGRAM"]

# The words of the picture with their boxes on the screen.
TEXTS = """
return [...document.querySelectorAll('text')].map((text) => {
  const {left, top, right, bottom} = text.getBoundingClientRect();
  const size = parseFloat(getComputedStyle(text).fontSize);
  return {words: text.textContent, box: [left, top, right, bottom], size};
});
"""
PICTURE = """
const {left, top, right, bottom} = document.documentElement.getBoundingClientRect();
return [left, top, right, bottom];
"""
LEAST_SIZE = 10  # pixels of a letter


def report(index, count):
    """A fix of a drive through a town, which crosses its own way."""
    turn = 12 * index / count
    latitude = 52.50 + 0.02 * math.sin(turn) + 0.003 * math.sin(7 * turn)
    longitude = 13.35 + 0.01 * turn + 0.004 * math.cos(5 * turn)
    return {"timestamp": 1700000000000 + index * 1000,
            "position": {"latitude": latitude, "longitude": longitude, "accuracy": 60}}


def overlap(one, other):
    return (one[0] < other[2] and other[0] < one[2] and one[1] < other[3] and other[1] < one[3])


class Map(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.driver = walk.browser()
        cls.addClassCleanup(cls.driver.quit)
        cls.driver.set_window_size(1200, 1000)

    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = pathlib.Path(folder.name)

    def texts(self, count):
        """Draws so many fixes and gives what stands on the map."""
        reports = {"items": [report(index, count) for index in range(count)]}
        (self.folder / "drive.json").write_text(json.dumps(reports))
        picture = self.folder / "drive.svg"
        for words in (["import", "drive.json", "-o", "drive.trelvo"],
                      ["map", "drive.trelvo", "--tiles", "16", "-o", picture]):
            subprocess.run([PROGRAM, *words], cwd=self.folder, check=True, capture_output=True)
        self.driver.get(picture.as_uri())
        self.assertEqual(self.driver.get_log("browser"), [])
        return self.driver.execute_script(TEXTS)

    def check(self, count):
        texts = self.texts(count)
        words = [text["words"] for text in texts]
        for wanted in ("drive.trelvo", "N", "start", "end", "track, in the order of the file"):
            self.assertIn(wanted, words)
        self.assertTrue(any(word.endswith(" m") for word in words), "no scale in metres")
        self.assertTrue(any("tiles of level 16" in word for word in words), "no tiles")
        left, top, right, bottom = self.driver.execute_script(PICTURE)
        for index, text in enumerate(texts):
            self.assertGreaterEqual(text["size"], LEAST_SIZE, text)
            box = text["box"]
            self.assertTrue(left <= box[0] and top <= box[1] and box[2] <= right
                            and box[3] <= bottom, f"{text} leaves {right} x {bottom}")
            for other in texts[index + 1:]:
                self.assertFalse(overlap(box, other["box"]), (text, other))

    def test_a_hundred_points_can_be_read(self):
        self.check(100)

    def test_ten_thousand_points_can_be_read(self):
        self.check(10000)

    def test_words_that_overlap_are_seen(self):
        self.assertTrue(overlap([0, 0, 2, 2], [1, 1, 3, 3]))
        self.assertFalse(overlap([0, 0, 2, 2], [2, 0, 3, 2]))


if __name__ == "__main__":
    unittest.main()
