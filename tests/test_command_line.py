"""The command line: every message, exit status, precedence and order of actions."""
import itertools
import re
import shlex

import pytest
from harness import compare_with_entry, entries_of, golden, lines_of, settings_and_words

TRANSCRIPT = "command-lines.txt"


def abridged_calls(pieces, most):
    """The pieces or, if there are many, the first one, their number and the last one."""
    if len(pieces) <= most:
        return "".join(pieces)
    return pieces[0].rstrip("\n") + f" ... {len(pieces)} ... " + pieces[-1]


@pytest.mark.parametrize("command", entries_of(TRANSCRIPT))
def test_answers(sandbox, command):
    """"->" is followed by the exit status and the beginnings of the library's calls, with equal ones in a row as one.
    The fields of policies are left out. EXEC has redirections, separated by commas."""
    sandbox.environment, words = settings_and_words(command)
    redirections = f"exec {sandbox.environment.pop('EXEC', '').replace(',', ' ')};"
    outcome = sandbox.run(*shlex.split(words), redirections=redirections)
    calls = [call for call, _ in itertools.groupby(", " + call[:40] for call in outcome.calls)]
    text = (outcome.err + outcome.out).replace(golden("usage.txt"), "(usage)\n")
    text = text.replace(golden("upm-help.txt"), "(help on -u)\n").replace(sandbox.build.program, "PROGRAM")
    text = text.replace("\n" + golden("write-forms.txt"), " (forms of -w)\n")
    lines = [line for line in lines_of(text) if not re.match(r" +\S*\(\d+\)\.", line)]
    compare_with_entry(TRANSCRIPT, command, f"{outcome.status}{abridged_calls(calls, 3)}", abridged_calls(lines, 6))
