"""Python objects that the library reaches by member name."""

import gc
import unittest
import weakref

from support import component, orvane

from orvane._host import living


class Plain:
    def __init__(self):
        self.Value = "first"
        self.table = {1: "one"}

    def Twice(self, x):
        return x * 2

    def Change(self, x):
        x.value = x.value + 1

    def Pair(self, x, y="left out"):
        return "%s %s" % (x, y)


class HostObjects(unittest.TestCase):
    def setUp(self):
        self.probe = component().create("TestProbe")
        self.items = component().create("TestItems")
        self.mine = Plain()

    def assert_failure(self, number, name, host=None):
        with self.assertRaises(orvane.Error) as raised:
            self.probe.CallOn(host if host is not None else self.mine, name, 1)
        self.assertEqual(raised.exception.number, number)
        return raised.exception

    def test_attributes_are_read_and_written_by_name_without_regard_to_case(self):
        self.assertEqual(self.probe.ReadFrom(self.mine, "Value"), "first")
        self.assertEqual(self.probe.ReadFrom(self.mine, "vALUE"), "first")
        self.probe.WriteTo(self.mine, "Value", 42)
        self.assertEqual(self.mine.Value, 42)

    def test_methods_are_called_with_arguments(self):
        self.assertEqual(self.probe.CallOn(self.mine, "Twice", 21), 42)
        self.assertEqual(self.probe.CallOn(self.mine, "Pair", "a"), "a left out")

    def test_an_argument_by_reference_arrives_as_a_ref(self):
        self.assertEqual(self.probe.CallByReference(self.mine, "Change", 5), 6)

    def test_an_object_comes_back_as_itself(self):
        self.items.Add(self.mine)
        self.assertIs(self.items[1], self.mine)
        self.assertIs(list(self.items)[0], self.mine)

    def test_a_member_that_is_not_there_or_private_is_438(self):
        self.mine._hidden = 1
        for name in ["Nope", "_hidden", "__class__"]:
            self.assert_failure(438, name)

    def test_exceptions_arrive_as_run_time_errors_and_keep_their_cause(self):
        class Breaking:
            def Break(self, _):
                raise self.what

        host = Breaking()
        for what, number in [(ValueError("v"), 5), (IndexError("i"), 9), (KeyError("k"), 5),
                             (ZeroDivisionError("z"), 11), (OverflowError("o"), 6),
                             (TypeError("t"), 13), (MemoryError("m"), 7),
                             (NotImplementedError("n"), 445), (FileNotFoundError("f"), 53),
                             (RuntimeError("r"), 440)]:
            with self.subTest(what=what):
                host.what = what
                error = self.assert_failure(number, "Break", host)
                self.assertIs(error.__cause__, what)
                self.assertEqual(error.description, "%s: %s" % (type(what).__name__, what))
                self.assertEqual(error.source, "Breaking")

    def test_an_error_of_one_s_own_arrives_whole(self):
        class Breaking:
            def Break(self, _):
                raise orvane.Error(1234, "told", "the script")

        error = self.assert_failure(1234, "Break", Breaking())
        self.assertEqual((error.description, error.source), ("told", "the script"))

    def test_an_interrupt_goes_through_the_library(self):
        class Breaking:
            def Break(self, _):
                raise KeyboardInterrupt

        with self.assertRaises(KeyboardInterrupt):
            self.probe.CallOn(Breaking(), "Break", 1)

    def test_a_failure_that_is_over_is_no_cause_of_the_next_one(self):
        class Breaking:
            def Break(self, _):
                raise ValueError("first")

        self.assert_failure(5, "Break", Breaking())
        with self.assertRaises(orvane.Error) as raised:
            self.probe.Fail(777)
        self.assertIsNone(raised.exception.__cause__)

    def test_a_result_without_a_form_is_a_failure(self):
        class Odd:
            def Give(self, _):
                return {}

        self.assert_failure(13, "Give", Odd())

    def test_an_object_with_getattr_answers_for_any_name(self):
        class Any:
            def __getattr__(self, name):
                if name.startswith("_"):
                    raise AttributeError(name)
                return lambda value: "%s %s" % (name, value)

        self.assertEqual(self.probe.CallOn(Any(), "Whatever", 1), "Whatever 1")

    def test_a_sequence_has_count_and_item(self):
        class Three:
            def __len__(self):
                return 3

            def __getitem__(self, index):
                return index * 10

        self.assertEqual(self.probe.ReadFrom(Three(), "count"), 3)
        self.assertEqual(self.probe.CallOn(Three(), "Item", 2), 20)

    def test_what_the_library_lets_go_of_python_lets_go_of(self):
        before = living()
        mine = Plain()
        gone = weakref.ref(mine)
        self.items.Add(mine)
        self.items.Add(mine)
        self.assertEqual(living(), before + 1)
        del mine
        gc.collect()
        self.assertIsNotNone(gone())
        self.items[1] = 0
        self.items[2] = 0
        gc.collect()
        self.assertIsNone(gone())
        self.assertEqual(living(), before)


class Collections(unittest.TestCase):
    def setUp(self):
        self.probe = component().create("TestProbe")

    def assert_number(self, number, function, *arguments):
        with self.assertRaises(orvane.Error) as raised:
            function(*arguments)
        self.assertEqual(raised.exception.number, number)

    def test_it_counts_from_1_and_knows_keys_without_regard_to_case(self):
        bag = orvane.Collection(["a", "b"])
        bag.Add("c", "Key")
        bag.Add("start", Before=1)
        bag.Add("end", After="key")
        self.assertEqual(list(bag), ["start", "a", "b", "c", "end"])
        self.assertEqual((bag[1], bag["KEY"], bag.Count, len(bag)), ("start", "c", 5, 5))
        bag.Remove("key")
        self.assertEqual(bag.Count, 4)

    def test_a_mapping_gives_its_keys(self):
        bag = orvane.Collection({"x": 1, "y": 2})
        self.assertEqual((bag["x"], bag[2]), (1, 2))

    def test_what_is_not_there_raises_as_the_library_s_own_does(self):
        bag = orvane.Collection({"x": 1})
        self.assert_number(9, bag.Item, 0)
        self.assert_number(9, bag.Item, 2)
        self.assert_number(5, bag.Item, "y")
        self.assert_number(13, bag.Item, None)
        self.assert_number(457, bag.Add, 2, "X")
        self.assert_number(13, bag.Add, 2, 3)
        self.assert_number(5, bag.Add, 2, orvane.MISSING, 1, 1)

    def test_the_library_reads_it_by_name(self):
        bag = orvane.Collection({"x": 5, "y": "text"})
        self.assertEqual(self.probe.ReadFrom(bag, "Count"), 2)
        self.assertEqual(self.probe.CallOn(bag, "Item", 1), 5)
        self.assertEqual(self.probe.CallOn(bag, "Item", "Y"), "text")
        with self.assertRaises(orvane.Error) as raised:
            self.probe.CallOn(bag, "Item", 3)
        self.assertEqual(raised.exception.number, 9)


if __name__ == "__main__":
    unittest.main()
