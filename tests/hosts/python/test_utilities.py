"""The library's small tools, as a script uses them."""

import os
import subprocess
import sys
import unittest

from support import ROOT, orvane, raised_by

GUID = "{6E7F34A2-9D1C-4E0B-8C53-%012d}" % os.getpid()


class Arrays(unittest.TestCase):
    def test_typed_arrays_are_made_from_an_argument_list(self):
        self.assertEqual(list(orvane.orvMain.ArrayLong("1", 2.6, "no number")), [1, 3, 0])
        self.assertEqual(list(orvane.orvMain.ArrayBSTR("a", 2, True)), ["a", "2", "True"])

    def test_a_value_is_found_in_an_array(self):
        numbers = orvane.array("Long", [7, 8, 8], lower=5)
        found = orvane.Ref(False)
        self.assertEqual(orvane.orvMain.InArray(numbers, "8", IsFound=found), 6)
        self.assertTrue(found.value)
        self.assertFalse(orvane.orvMain.IsInArray(numbers, 9))
        self.assertEqual(raised_by(orvane.orvMain.InArray, numbers, 1, 4, 5), 9)

    def test_a_value_is_found_in_a_collection_of_the_host(self):
        items = orvane.Collection(["x", 5, None])
        self.assertEqual(orvane.orvMain.InCollection(items, 5), 2)
        self.assertTrue(orvane.orvMain.IsInCollection(items, "x"))
        self.assertEqual(orvane.orvMain.InCollection(orvane.Collection(), 1), 0)

    def test_a_collection_is_joined(self):
        items = orvane.Collection(["a", 2, "c"])
        self.assertEqual(orvane.orvMain.JoinCollection(items, ", "), "a, 2, c")
        self.assertEqual(orvane.orvMain.JoinCollection(orvane.Collection(), ", "), "")


class StringBuffer(unittest.TestCase):
    def setUp(self):
        self.buffer = orvane.create("orvStringBuffer")

    def test_text_goes_into_the_padding(self):
        self.buffer.Alloc(10)
        self.buffer.AddText("abc")
        self.assertEqual((self.buffer.Value, self.buffer.Size), ("abc       ", 10))
        self.buffer.Trim()
        self.assertEqual((self.buffer.Value, self.buffer.Size), ("abc", 3))

    def test_a_code_works_as_the_padding(self):
        self.buffer.Alloc(5, 65)
        self.assertEqual(self.buffer.Value, "AAAAA")

    def test_it_must_be_set_up_first(self):
        self.assertEqual(raised_by(self.buffer.AddText, "x"), 5)
        self.buffer.Value = "text"
        self.buffer.AddText("!")
        self.assertEqual(self.buffer.Value, "text!")


class Stopwatches(unittest.TestCase):
    def test_both_measure_and_tell(self):
        for name in ["orvBenchMark", "orvBenchMarkHP"]:
            with self.subTest(name=name):
                watch = orvane.create(name)
                self.assertEqual(watch.GetTickDifferenceMS(), 0)
                self.assertEqual(watch.toString(), "0 ms.")
                self.assertEqual(watch.toString(0), watch.toString())
                self.assertRegex(watch.toString(4), r"^0 ms\. / 4 \(0 ms\.\)$")
                watch.FirstMark()
                watch.LaskMark()
                self.assertGreaterEqual(watch.GetTickDifferenceMS(), 0)

    def test_the_fine_one_knows_its_frequency(self):
        watch = orvane.create("orvBenchMarkHP")
        self.assertEqual(watch.GetTickFrequencyPerSec(), watch.GetTickFrequencyPerMS() * 1000)
        self.assertGreater(watch.GetTickFrequencyPerSec(), 0)


class Alone(unittest.TestCase):
    def other_process(self):
        """What another process of the same program is told."""
        program = "import orvane; print(orvane.create('orvAlone').IsAlone(%r))" % GUID
        given = {**os.environ, "PYTHONPATH": str(ROOT / "bindings" / "python"),
                 "ORVANE_LIBRARY": orvane._default().path}
        return subprocess.run([sys.executable, "-c", program], env=given, text=True, check=True,
                              stdout=subprocess.PIPE).stdout.strip()

    def test_a_second_process_is_not_alone_while_the_first_holds_the_name(self):
        alone = orvane.create("orvAlone")
        self.assertIs(alone.IsAlone(GUID), True)
        self.assertEqual(self.other_process(), "False")
        del alone
        self.assertEqual(self.other_process(), "True")

    def test_the_scopes_are_independent(self):
        alone = orvane.create("orvAlone")
        self.assertTrue(alone.IsAloneOnDesktop(GUID))
        self.assertTrue(alone.IsAlone(GUID))
        self.assertTrue(orvane.create("orvAlone").IsAloneAtUser(GUID))


if __name__ == "__main__":
    unittest.main()
