"""The overwrite wizard as a dialogue on a terminal: input, output and writes."""
import re

import pytest
from harness import compare_with_entry, compare_with_golden, entries_of, lines_of, settings_and_words

DIALOGUES, PROMPTS = "wizard.txt", "wizard-prompts.txt"
WIZARD = ["-w", "-u", "-m"]


def typed_in(sandbox, command):
    """Returns the input of an entry, in which "|" is Enter and "^D" is the end of input."""
    sandbox.fill_with_pattern()
    sandbox.environment, words = settings_and_words(command)
    return words.replace("|", "\n").replace("^D", "\4\4")


def calls_of(outcome):
    return ", ".join([f"{len(outcome.only('read'))} reads", *outcome.only("write")])


@pytest.mark.parametrize("command", entries_of(DIALOGUES))
def test_dialogue(sandbox, command):
    """Whole dialogues as they appear, with their reads and writes. They are the same if output goes through a pipe,
    so each prompt and each message is written before the next answer is read."""
    typed = typed_in(sandbox, command)
    outcome = sandbox.run_on_terminal(*WIZARD, typed=typed)
    compare_with_entry(DIALOGUES, command, calls_of(outcome), outcome.out)
    assert outcome.status == 255
    sandbox.fill_with_pattern()
    pipe = f"mkfifo {sandbox.directory}/pipe; cat {sandbox.directory}/pipe & exec >{sandbox.directory}/pipe;"
    assert sandbox.run_on_terminal(*WIZARD, typed=typed, redirections=pipe) == outcome


@pytest.mark.parametrize("command", entries_of(PROMPTS))
def test_response(sandbox, command):
    """A table of inputs, calls and responses: of the text after the last input, the messages and the next prompt;
    after the end of input, all prompts that follow."""
    typed = typed_in(sandbox, command)
    outcome = sandbox.run_on_terminal(*WIZARD, typed=typed, redirections="stty -icrnl;")
    count = len(re.findall("\n|\4\4", typed))
    has_ended = typed.endswith("\4")
    text = "".join(outcome.pieces[count:] if has_ended else outcome.pieces[count:count + 1])
    lines = [line.rstrip() for line in lines_of(text)[0 if has_ended else 1:]
             if re.match("Please|Invalid|Out of|ERROR", line) or line.endswith(": ") or line.endswith(": \n")]
    compare_with_entry(PROMPTS, command, calls_of(outcome), " / ".join(lines) + "\n")
    assert outcome.status == 255


def test_every_field_has_its_bounds(sandbox):
    """Each question rejects a word and the numbers just outside its bounds, and accepts the upper bound."""
    def run(typed):
        return sandbox.run_on_terminal(*WIZARD, typed=typed)
    menu = re.search("Policy editor fields(.*)  0. Back", run("3\n15\n").out, re.S)[1]
    editors = {"3\n15\n": [f"{number}\n" for number in re.findall(r"^ *(\d+)\) ", menu, re.M)],
               **{typed: ["y\n"] * run(typed).out.count("[y/n]: ") for typed in ("1\n1\n3\n", "1\n2\n", "2\n3\n")}}
    fields = {name: field for name, field in sandbox.build.writable.items() if field.root == "upm"}
    labels = {}  # by their bounds
    for typed, choices in editors.items():
        asked = run(typed + "".join(choice + "x\n1\n" for choice in choices)).out
        questions = re.findall(r"((\w+)(?: \(.*\))?) (\[(\S+)\.\.(\S+)\]): x\n(.*)\n\1 \3: ", asked)
        limits = [(int(float(minimum)), int(float(maximum))) for *_, minimum, maximum, _ in questions]
        outcome = run(typed + "".join(f"{choice}{maximum + 1}\n{minimum - 1}\n{maximum}\n"
                                      for choice, (minimum, maximum) in zip(choices, limits, strict=True)))
        assert outcome.out.count("\nOut of range.\n") == 2 * len(choices)
        for (label, name, bounds, *_, message), (_, maximum), write in zip(questions, limits, outcome.only("write"),
                                                                           strict=True):
            field = fields.pop(next(path for path in fields if path.endswith(name)))
            written = field.pack(maximum) if field.is_real else maximum.to_bytes(8, "little")[:field.size]
            assert write == f"write 6 {field.offset} {field.size}: {written.hex(' ')}"
            labels.setdefault(f"{bounds} {message}", []).append(label)
    assert not fields, f"writable, but without a question in src/wizard: {', '.join(fields)}"
    compare_with_golden("wizard-bounds.txt", "".join(f"{key}: {', '.join(labels[key])}\n" for key in labels))
