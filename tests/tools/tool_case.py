"""What the tests of the command-line host share: the program under test, started as on its own platform, in a
folder of the test's own."""

import os
import pathlib
import subprocess
import sys
import tempfile
import unittest

tool = []          # the command that starts the program
on_windows = False


def main(module_names):
    """`PROGRAM [RUNNER]`: with a runner the program is a Windows one. The rest is for unittest."""
    global tool, on_windows
    program, runner = sys.argv[1], sys.argv[2] if len(sys.argv) > 2 else ''
    on_windows = bool(runner)
    tool = [runner, program] if on_windows else [program]
    loader = unittest.defaultTestLoader
    suite = unittest.TestSuite(loader.loadTestsFromName(name) for name in module_names)
    result = unittest.TextTestRunner(verbosity=2).run(suite)
    sys.exit(0 if result.wasSuccessful() else 1)


class ToolCase(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory(prefix='orvane-tool-')
        self.addCleanup(folder.cleanup)
        self.folder = pathlib.Path(folder.name)

    def write(self, name, data):
        with open(os.path.join(os.fsencode(self.folder), os.fsencode(name)), 'wb') as file:
            file.write(data)
        return name

    def names(self):
        return sorted(os.listdir(self.folder))

    def captured(self, command, given=b'', **options):
        """Runs a command in the test's folder: status, output and errors as bytes. They go to files:
        the services that Wine starts with a program keep its pipes open long after it."""
        with tempfile.TemporaryFile() as input_, tempfile.TemporaryFile() as output, \
                tempfile.TemporaryFile() as errors:
            input_.write(given)
            input_.seek(0)
            status = subprocess.run(command, cwd=self.folder, stdin=input_, stdout=output,
                                    stderr=errors, **options).returncode
            output.seek(0)
            errors.seek(0)
            return status, output.read(), errors.read()

    def run_tool(self, *words, **options):
        """Runs it in the test's folder; stdout and stderr are UTF-8 texts."""
        status, output, errors = self.captured([*tool, *words], **options)
        return status, output.decode(), errors.decode()

    def assert_prints(self, words, lines, status=0):
        self.assertEqual(self.run_tool(*words), (status, ''.join(line + '\n' for line in lines), ''))


def natively(case):
    """For what only the native program can be shown."""
    def run(self):
        if on_windows:
            self.skipTest('natively only')
        case(self)
    run.__name__ = case.__name__
    return run
