"""Checks that links and commands on the pages refer to existing files and targets, and that the index lists every
page."""

import json
import re
import unittest

from pages import ROOT, source, without_blocks

PAGES = [ROOT / "README.md", ROOT / "CONTRIBUTING.md", *sorted((ROOT / "docs").glob("*.md"))]


def anchors(path):
    """The anchors of a page's headings."""
    titles = re.findall(r"^#+ (.*)$", without_blocks(source(path)), re.MULTILINE)
    return {re.sub(r"[^\w\- ]", "", title.lower()).replace(" ", "-") for title in titles}


class LinksTest(unittest.TestCase):
    def test_every_link_has_a_target(self):
        for page in PAGES:
            for link in re.findall(r"\]\(([^)]+)\)", without_blocks(source(page))):
                with self.subTest(page=page.name, link=link):
                    name, _, anchor = link.partition("#")
                    target = (page.parent / name).resolve() if name else page
                    self.assertTrue(target.exists())
                    if anchor:
                        self.assertIn(anchor, anchors(target))

    def test_commands_name_existing_scripts_presets_and_targets(self):
        presets = {preset["name"] for preset in json.loads(source("CMakePresets.json"))["buildPresets"]}
        files = [*(ROOT / "cmake").glob("*.cmake"), *(ROOT / "tests").glob("*/CMakeLists.txt")]
        cmake = "".join(path.read_text(encoding="utf-8") for path in files)
        for page in PAGES:
            for command in re.findall(r"^    (\S.*)$", without_blocks(source(page)), re.MULTILINE):
                with self.subTest(page=page.name, command=command):
                    for script in re.findall(r"^(scripts/[\w-]+)", command):
                        self.assertTrue((ROOT / script).exists())
                    self.assertLessEqual(set(re.findall(r"--preset (\w+)", command)), presets)
                    for target in re.findall(r"--target (\w+)", command):
                        self.assertIn(f"add_custom_target({target} ", cmake)

    def test_the_index_names_every_page(self):
        links = set(re.findall(r"\]\((\w[\w-]*\.md)\)", source("docs/README.md")))
        self.assertEqual(links, {page.name for page in (ROOT / "docs").glob("*.md")} - {"README.md"})


if __name__ == "__main__":
    unittest.main()
