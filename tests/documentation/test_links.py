"""The links of the pages: what they name is there, and the index leaves no page out."""

import re
import unittest

from pages import ROOT, source, without_blocks

PAGES = [ROOT / "README.md", ROOT / "CONTRIBUTING.md", *sorted((ROOT / "docs").glob("*.md"))]


def anchors(path):
    """The names that a page's headings can be reached by."""
    titles = re.findall(r"^#+ (.*)$", without_blocks(source(path)), re.MULTILINE)
    return {re.sub(r"[^\w\- ]", "", title.lower()).replace(" ", "-") for title in titles}


class LinksTest(unittest.TestCase):
    def test_every_link_leads_somewhere(self):
        for page in PAGES:
            for link in re.findall(r"\]\(([^)]+)\)", without_blocks(source(page))):
                with self.subTest(page=page.name, link=link):
                    name, _, anchor = link.partition("#")
                    target = (page.parent / name).resolve() if name else page
                    self.assertTrue(target.exists())
                    if anchor:
                        self.assertIn(anchor, anchors(target))

    def test_the_index_names_every_page(self):
        links = set(re.findall(r"\]\((\w[\w-]*\.md)\)", source("docs/README.md")))
        self.assertEqual(links, {page.name for page in (ROOT / "docs").glob("*.md")} - {"README.md"})


if __name__ == "__main__":
    unittest.main()
