"""Nothing is left behind, however many calls."""

import gc
import unittest

from support import component, orvane, resident_bytes

ROUNDS = 40_000
# Far below one lost string, frame or object a round, far above what the allocator varies by.
MOST_GROWTH = 2 << 20


class Memory(unittest.TestCase):
    def setUp(self):
        self.probe = component().create("TestProbe")

    def assert_no_growth(self, work):
        for _ in range(2000):
            work()
        gc.collect()
        before = resident_bytes()
        for _ in range(ROUNDS):
            work()
        gc.collect()
        self.assertLess(resident_bytes() - before, MOST_GROWTH)

    def test_texts_and_results(self):
        text = "long enough to be no short text " * 10
        self.assert_no_growth(lambda: self.probe.Join(text))

    def test_arguments_by_reference(self):
        def work():
            given = orvane.Ref("text of some length that is no small block")
            self.probe.ChangeText(given)
            self.probe.ChangeVariant(given)

        self.assert_no_growth(work)

    def test_arrays(self):
        def work():
            self.probe.Counted(50)
            self.probe.ChangeTexts(orvane.array("String", ["a text", "another text"]))
            self.probe.TypesOf([1, "a text", [2.5, "b"]], b"bytes" * 20)

        self.assert_no_growth(work)

    def test_objects_made_dropped_and_enumerated(self):
        def work():
            items = component().create("TestItems")
            items.Add("a text of some length")
            list(items)
            self.probe.Items

        self.assert_no_growth(work)

    def test_failures(self):
        def work():
            try:
                self.probe.Fail(777, "a description of some length, told by the library")
            except orvane.Error:
                pass
            try:
                self.probe.Join("a text", 1, {})
            except TypeError:
                pass

        self.assert_no_growth(work)

    def test_host_objects(self):
        class Host:
            Value = "a text of some length"

            def Twice(self, x):
                return [x, x]

            def Break(self, x):
                raise ValueError("broken")

        def work():
            host = Host()
            self.probe.ReadFrom(host, "Value")
            self.probe.CallOn(host, "Twice", "text")
            try:
                self.probe.CallOn(host, "Break", 1)
            except orvane.Error:
                pass

        self.assert_no_growth(work)


if __name__ == "__main__":
    unittest.main()
