"""The command line: every message, exit status and order of actions."""
import itertools
import re
import shlex

import pytest
from harness import compare_with_entry, entries_of, golden, lines_of, settings_and_words

TRANSCRIPT = "command-lines.txt"
# The reports in their order of precedence, with what else the options may be given as.
PRECEDENCE = ("-l 5", "-d", "-o", "-e", "-r", "-c", "-u"), ("-i 2", "-d", "-o", "-e", "-r", "-c", "-u")
PAIRS = list(dict.fromkeys(pair for order in PRECEDENCE for pair in itertools.combinations(order, 2)))


def abridged_calls(pieces, most):
    """The pieces, or of many the first, the last and the number of all."""
    if len(pieces) <= most:
        return "".join(pieces)
    return pieces[0].rstrip("\n") + f" ... {len(pieces)} ... " + pieces[-1]


@pytest.mark.parametrize("command", entries_of(TRANSCRIPT))
def test_answers(sandbox, command):
    """The exit status and the library's calls follow "->"; of equal calls in a row one, of a long one the beginning.
    The fields of policies are left out."""
    sandbox.environment, words = settings_and_words(command)
    outcome = sandbox.run(*shlex.split(words))
    calls = [call for call, _ in itertools.groupby(", " + call[:40] for call in outcome.calls)]
    text = (outcome.err + outcome.out).replace(golden("usage.txt"), "(usage)\n")
    text = text.replace(golden("upm-help.txt"), "(help on -u)\n").replace(sandbox.build.program, "PROGRAM")
    text = text.replace("\n" + golden("write-forms.txt"), " (forms of -w)\n")
    lines = [line for line in lines_of(text) if not re.match(r" +\S*\(\d+\)\.", line)]
    compare_with_entry(TRANSCRIPT, command, f"{outcome.status}{abridged_calls(calls, 3)}", abridged_calls(lines, 6))


@pytest.mark.parametrize("first, second", PAIRS)
def test_runs_only_the_first_report_in_the_order_of_precedence(sandbox, first, second):
    sandbox.fill_with_pattern()
    alone = sandbox.run(*first.split())
    assert alone.out
    assert sandbox.run(*first.split(), *second.split()) == alone
    if second != "-u":  # which must be the last
        assert sandbox.run(*second.split(), *first.split()) == alone
