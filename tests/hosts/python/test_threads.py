"""Objects belong to the thread that made them."""

import gc
import threading
import unittest

from support import component, orvane

RPC_E_WRONG_THREAD = 0x8001010E - (1 << 32)


def on_another_thread(function):
    """Runs the function on a thread of its own and gives its result or raises its exception."""
    outcome = []

    def run():
        try:
            outcome.append((function(), None))
        except BaseException as raised:
            outcome.append((None, raised))

    thread = threading.Thread(target=run)
    thread.start()
    thread.join()
    result, raised = outcome.pop()
    if raised is not None:
        raise raised
    return result


class Threads(unittest.TestCase):
    def assert_wrong_thread(self, function):
        with self.assertRaises(orvane.Error) as raised:
            on_another_thread(function)
        self.assertEqual(raised.exception.number, RPC_E_WRONG_THREAD)

    def test_a_call_from_another_thread_is_refused_in_every_form(self):
        items = component().create("TestItems")
        items.Add(1)
        running = iter(items)
        other = component().create("TestItems")
        for function in [lambda: items.Add(1), lambda: items.Count, lambda: items[1],
                         lambda: items.Item[1], lambda: len(items), lambda: next(running)]:
            self.assert_wrong_thread(function)
        self.assert_wrong_thread(lambda: component().create("TestItems").Add(other))
        self.assertEqual(list(items), [1])

    def test_each_thread_has_its_own_global_instance(self):
        def kept():
            return orvane.orvMain is orvane.orvMain, orvane.orvMain

        same, mine = kept()
        self.assertTrue(same)
        same, theirs = on_another_thread(kept)
        self.assertTrue(same)
        self.assertIsNot(mine, theirs)
        orvane.orvMain.CommandLine()

    def test_what_another_thread_drops_is_released_by_its_owner(self):
        class Witness:
            pass

        from orvane._host import living
        before = living()
        held = [component().create("TestItems")]
        held[0].Add(Witness())
        on_another_thread(held.clear)
        gc.collect()
        self.assertEqual(living(), before + 1)
        component().create("TestItems").Count
        self.assertEqual(living(), before)

    def test_the_end_of_a_thread_releases_what_it_made(self):
        class Witness:
            pass

        from orvane._host import living
        before = living()

        def make():
            items = component().create("TestItems")
            items.Add(Witness())
            return items

        left = on_another_thread(make)
        self.assertEqual(living(), before)
        with self.assertRaisesRegex(orvane.Error, "has ended"):
            left.Count

    def test_threads_call_at_the_same_time(self):
        failures = []

        def work(number):
            try:
                probe = component().create("TestProbe")
                for at in range(500):
                    text = "%d-%d" % (number, at)
                    if probe.Join(text, at, "", "") != "%s|%d||" % (text, at):
                        failures.append(text)
            except BaseException as raised:
                failures.append(raised)

        threads = [threading.Thread(target=work, args=(number,)) for number in range(8)]
        for each in threads:
            each.start()
        for each in threads:
            each.join()
        self.assertEqual(failures, [])


if __name__ == "__main__":
    unittest.main()
