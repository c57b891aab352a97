"""What the templates of the C# binding use: properties of the model, and the shapes of code and comments."""

import unittest

from generator import __main__ as generator
from generator import model


class ModelTest(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.api = model.read()

    def failures(self, name):
        return [failure.name.replace("BRIMLET_", "") for failure in self.api.function(name).failures]

    def test_nothing_to_return_is_no_failure_of_a_read(self):
        function = self.api.function("getUser")
        self.assertEqual(function.nothing, "the store has no user with this id")
        self.assertEqual(self.failures("getUser"), ["READ_FAILED", "NO_RECORD"])

    def test_no_event_to_return_is_no_failure_of_an_array(self):
        self.assertTrue(self.api.function("addEvents").nothing.startswith("no device of the batch is known"))
        self.assertNotIn("NOT_FOUND", self.failures("addEvents"))

    def test_nothing_to_return_is_a_failure_of_a_write(self):
        for name in ("updateUser", "deleteUser", "removeAffectFlag"):
            self.assertEqual(self.api.function(name).nothing, "", name)
            self.assertIn("NOT_FOUND", self.failures(name))

    def test_a_failure_does_not_tell_of_pointers(self):
        conditions = {failure.name: failure.condition for failure in self.api.function("updateUser").failures}
        self.assertEqual(conditions["BRIMLET_REFUSED"], "`json` is not a JSON object")
        self.assertNotIn("REFUSED", self.failures("getSiteNameAndAddress"))

    def test_a_result_is_a_value_of_an_enumeration(self):
        types = {name: self.api.function(name).enumeration for name in
                 ("launchCache", "exitCache", "getState", "getLaunchCacheResult", "getUser", "freeUser")}
        self.assertEqual(types, {"launchCache": "", "exitCache": "", "getState": "BrimletState",
                                 "getLaunchCacheResult": "BrimletLaunchResult", "getUser": "BrimletResult",
                                 "freeUser": "BrimletResult"})
        self.assertEqual([enumeration.type for enumeration in self.api.enumerations],
                         ["Code", "LaunchResult", "State"])

    def test_names_of_the_headers_become_references(self):
        names = generator.references(self.api)
        self.assertEqual(generator.xml(names, "`key` of FlatZone & FlatRecords.h, < getEvents"),
                         '<paramref name="key"/> of <see cref="Brimlet.Zone"/> &amp; FlatRecords.h, &lt; '
                         '<see cref="Session.GetEvents"/>')


class ShapeTest(unittest.TestCase):
    def test_a_short_line_stays(self):
        self.assertEqual(generator.fold("    Run(() => call(a, b));"), "    Run(() => call(a, b));")

    def test_a_long_line_is_broken_behind_the_parameters_of_its_lambda(self):
        self.assertEqual(generator.fold("  Get((ref IntPtr a) => call(ref a, b));", 30),
                         "  Get((ref IntPtr a) =>\n      call(ref a, b));")

    def test_a_longer_line_is_broken_behind_commas_too(self):
        self.assertEqual(generator.fold("  Get((ref IntPtr a) => call(ref a, ref b, c));", 24),
                         "  Get((ref IntPtr a) =>\n      call(ref a, ref b,\n          c));")

    def test_an_element_takes_the_lines_that_it_needs(self):
        self.assertEqual(generator.element("Gets one.", "summary", 4), "    /// <summary>Gets one.</summary>")
        lines = generator.element(f'{"x" * 80} <see cref="Session.GetUser"/>.', 'param name="id"', 4).splitlines()
        self.assertEqual(lines, [f'    /// <param name="id">{"x" * 80}',
                                 '    /// <see cref="Session.GetUser"/>.</param>'])


if __name__ == "__main__":
    unittest.main()
