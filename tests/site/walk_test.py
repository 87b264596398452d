"""Shows that what is wrong with a site is found, on small sites made here."""

import pathlib
import tempfile
import unittest

import walk

PICTURE = '<svg xmlns="http://www.w3.org/2000/svg" xmlns:xlink="http://www.w3.org/1999/xlink" ' \
          'width="9" height="9">%s</svg>'


class Walk(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.site = pathlib.Path(folder.name)

    def write(self, name, text):
        (self.site / name).write_text(text, encoding="utf-8")

    def faults(self, body):
        self.write("index.html", f"<!DOCTYPE html><title>t</title><body>{body}</body>")
        found, self.counts = walk.walk(self.site)
        return [fault.replace(self.address_in(found), "") for fault in found]

    def address_in(self, found):
        """The site's address, which is another each time."""
        words = [word for fault in found for word in fault.split() if word.startswith("http://")]
        return words[0][:words[0].index("/", 7) + 1] if words else "http://"

    def test_a_site_in_order_has_no_faults(self):
        self.write("a b.html", '<h1 id="here">a</h1><a name="old">b</a><a href="./">back</a>')
        self.write("p.svg", PICTURE % '<a xlink:href="a%20b.html#old"><text>b</text></a>')
        self.assertEqual(self.faults(
            '<a href="a%20b.html#here">a</a><a href="#">top</a><img src="p.svg">'
            '<iframe src="p.svg"></iframe><a href="http://example.org/x">elsewhere</a>'), [])
        self.assertEqual(self.counts, {"pages": 2, "links": 6, "pictures": 1, "elsewhere": 1})

    def test_a_broken_link_is_found(self):
        self.assertEqual(self.faults('<a href="gone.html#x">a</a>'),
                         ["index.html: no such file: gone.html"])

    def test_a_missing_anchor_is_found(self):
        self.write("a.html", '<h1 id="here">a</h1>')
        self.assertEqual(self.faults('<a href="a.html#gone">a</a><a href="#lost">b</a>'),
                         ["index.html: no such anchor: a.html#gone",
                          "index.html: no such anchor: index.html#lost"])

    def test_a_missing_picture_is_found_twice(self):
        found = self.faults('<img src="gone.png">')
        self.assertEqual(found[0], "index.html: picture does not load: gone.png")
        self.assertRegex(found[1], "^index.html: console: gone.png .*404")
        self.assertEqual(len(found), 2)

    def test_a_picture_that_is_none_is_found(self):
        self.write("p.png", "no picture")
        self.assertEqual(self.faults('<img src="p.png">'),
                         ["index.html: picture does not load: p.png"])

    def test_a_broken_link_of_a_drawing_is_found(self):
        self.write("p.svg", PICTURE % '<a xlink:href="gone.html"><text>b</text></a>')
        self.assertEqual(self.faults('<object data="p.svg" type="image/svg+xml"></object>'),
                         ["index.html: no such file: gone.html"])

    def test_links_that_a_script_makes_are_followed(self):
        self.assertEqual(self.faults(
            '<p id="menu"></p><script>onload = () => '
            '{ menu.innerHTML = "<a href=gone.html>x</a>"; };</script>'),
            ["index.html: no such file: gone.html"])

    def test_a_failing_script_is_found(self):
        self.assertRegex("".join(self.faults("<script>nothing.here();</script>")),
                         "^index.html: console: .*ReferenceError")

    def test_a_page_that_nothing_links_to_is_found(self):
        self.write("lost.html", "<p>a</p>")
        self.assertEqual(self.faults("<p>a</p>"), ["lost.html: no link leads here"])

    def test_nothing_is_fetched_from_elsewhere(self):
        self.assertRegex("".join(self.faults('<img src="http://example.org/p.png">')),
                         "ERR_NAME_NOT_RESOLVED")

    def test_a_folder_without_a_site_fails(self):
        found, _ = walk.walk(self.site)
        self.assertEqual(found, ["the site: no such file: index.html"])


if __name__ == "__main__":
    unittest.main()
