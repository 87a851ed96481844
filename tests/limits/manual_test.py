#!/usr/bin/env python3
"""The manual page of cimhost has the limits that there are, with their numbers, and no others.

usage: manual_test.py [unittest arguments]
"""

import re
import unittest

from constants import SOURCE, limits

NO_LIMIT = r"\b4\d\d\b|\b50\d\b|HTTP/1\.0"


class Manual(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        page = (SOURCE / "docs/man/cimhost.1").read_text(encoding="utf-8")
        section = page[page.index(".Sh LIMITS"):page.index(".Sh FILES")]
        cls.items = {tag: " ".join(text.split()).replace(",", "") for tag, text in
                     re.findall(r"^\.It (.*)\n((?:(?!\.It |\.El).*\n)+)", section, re.M)}

        assert len(cls.items) == section.count("\n.It ")

    def test_each_limit_is_told_in_its_items(self):
        self.assertGreater(len(limits()), 20)
        for name, limit in limits().items():
            for item in limit.items:
                with self.subTest(limit=name, item=item):
                    self.assertIn(item, self.items)
                    self.assertRegex(self.items[item], rf"(?<!\d){limit.shown}(?!\d)")

    def test_each_number_of_an_item_is_that_of_a_limit(self):
        for item, text in self.items.items():
            with self.subTest(item):
                for limit in limits().values():
                    if item in limit.items:
                        text = re.sub(rf"(?<!\d){limit.shown}(?!\d)", "", text)
                self.assertEqual(re.findall(r"\d+", re.sub(NO_LIMIT, "", text)), [])


if __name__ == "__main__":
    unittest.main()
