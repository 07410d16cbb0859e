"""orvane register, unregister, and classes by the name that they are registered under."""

import os
import pathlib
import shutil

import tool_case
from tool_case import ToolCase, natively

PROBE = 'OrvTestComponent.TestProbe'
CLASS = '{1B7C2F20-3A5D-4E61-9C22-5D807B410E01}'


class Registration(ToolCase):
    def setUp(self):
        super().setUp()
        program = pathlib.Path(tool_case.tool[-1])
        name = 'OrvTestComponent.DLL' if tool_case.on_windows else 'libOrvTestComponent.so'
        self.component = program.parent / name
        self.file = 'Z:' + str(self.component) if tool_case.on_windows else str(self.component)
        self.environment = {**os.environ, 'ORVANE_REGISTRY_USER': str(self.folder / 'user'),
                            'ORVANE_REGISTRY_MACHINE': str(self.folder / 'machine')}
        if tool_case.on_windows:
            self.addCleanup(self.run_tool, 'unregister', self.file)

    def orvane(self, *words, status=0, tool=None):
        got, output, errors = self.captured([*(tool or tool_case.tool), *words],
                                            env=self.environment)
        self.assertEqual(got, status, errors)
        self.assertEqual(output if status else errors, b'')
        return (errors if status else output).decode()

    def test_a_registered_class_is_described_by_its_progid(self):
        self.orvane('unregister', self.file)
        self.orvane('describe', PROBE, status=1)
        self.orvane('register', self.file)
        lines = self.orvane('describe', PROBE).splitlines()
        self.assertEqual(lines[0], 'TestProbe  global')
        self.assertIn('    ProgID     ' + PROBE, lines)
        self.assertIn('    class      ' + CLASS, lines)
        self.assertTrue(any('ChangeText(' in line for line in lines))
        self.assertEqual(self.orvane('registry', 'get', 'HKCR\\' + PROBE + '\\Clsid'), CLASS + '\n')
        self.orvane('unregister', self.file)
        self.assertIn('error ', self.orvane('describe', PROBE, status=1))
        self.assertIn('error 2 ', self.orvane('registry', 'list', 'HKCR\\' + PROBE, status=1))
        self.assertIn('error 2 ', self.orvane('registry', 'list', 'HKCR\\CLSID\\' + CLASS,
                                              status=1))

    def test_unregistering_twice_is_no_failure(self):
        self.orvane('register', self.file)
        self.orvane('unregister', self.file)
        self.orvane('unregister', self.file)

    def test_own_classes_are_described_by_their_progid(self):
        self.assertEqual(self.orvane('describe', 'OrvBase0301.CommandLineParser'),
                         self.orvane('describe', 'CommandLineParser'))

    def test_a_file_that_is_no_component_is_a_failure(self):
        self.write('none.so', b'x')
        self.assertIn('none.so', self.orvane('register', 'none.so', status=1))
        self.orvane('register', 'no such file', status=1)
        self.orvane('unregister', 'no such file', status=1)

    def test_wrong_words_are_bad_usage(self):
        for words in (['register', 'a', 'b'], ['unregister', 'a', 'b'], ['register', '--user'],
                      ['unregister', '-u']):
            self.orvane(*words, status=2)

    @natively
    def test_a_relative_name_is_registered_in_full(self):
        shutil.copy(self.component, self.folder / 'here.so')
        # A component's own folder is where it looks for what carries out the registry.
        module = 'libOrvaneRegistry.so'
        os.symlink(self.component.parent / module, self.folder / module)
        self.orvane('register', 'here.so')
        path = self.orvane('registry', 'get', 'HKCR\\CLSID\\' + CLASS + '\\InprocServer32')
        self.assertEqual(path, os.path.realpath(self.folder / 'here.so') + '\n')
        self.orvane('describe', PROBE)
        (self.folder / 'here.so').unlink()
        self.assertIn('429', self.orvane('describe', PROBE, status=1))

    @natively
    def test_without_a_file_it_is_the_library_itself(self):
        self.orvane('register')
        library = self.orvane('registry', 'get', 'HKCR\\CLSID\\'
                              '{9BFF0E80-2887-4ECA-8C35-F1A21B8CFD94}\\InprocServer32')
        self.assertTrue(library.endswith('libOrvaneBase0301.so\n'), library)
        before = self.orvane('describe', 'OrvBase0301.orvMain')
        self.orvane('unregister')
        self.assertEqual(self.orvane('describe', 'OrvBase0301.orvMain'), before)
        self.assertEqual(self.orvane('registry', 'list', r'HKLM\Software\Classes\CLSID'), '')

    @natively
    def test_users_register_for_themselves(self):
        if os.geteuid() != 0:
            self.skipTest('only root can drop its rights')
        os.chmod(self.folder, 0o755)
        (self.folder / 'machine').mkdir()
        (self.folder / 'user').mkdir()
        os.chown(self.folder / 'user', 65534, 65534)
        nobody = ['setpriv', '--reuid=65534', '--regid=65534', '--clear-groups', *tool_case.tool]
        self.orvane('register', self.file, tool=nobody)
        key = '\\Software\\Classes\\CLSID\\' + CLASS + '\\InprocServer32'
        self.assertEqual(self.orvane('registry', 'get', 'HKCU' + key), self.file + '\n')
        self.orvane('registry', 'get', 'HKLM' + key, status=1)
        self.assertIn('TestProbe', self.orvane('describe', PROBE, tool=nobody))
        self.orvane('unregister', self.file, tool=nobody)
        self.orvane('registry', 'get', 'HKCU' + key, status=1)
        self.orvane('register', self.file)
        self.assertEqual(self.orvane('registry', 'get', 'HKLM' + key), self.file + '\n')
        self.assertIn('TestProbe', self.orvane('describe', PROBE, tool=nobody))
        self.assertIn('0x80040201', self.orvane('unregister', self.file, tool=nobody, status=1))
