"""Tests of the command-line host `orvane`: `run.py PROGRAM [RUNNER]`, where RUNNER starts Windows programs."""

import tool_case

tool_case.main(['test_args', 'test_describe', 'test_usage', 'test_picture_info', 'test_picture_convert',
                'test_picture_show', 'test_gzip', 'test_registration', 'test_registry', 'test_terminal'])
