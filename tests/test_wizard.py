"""The overwrite wizard as a dialogue on a terminal: what is typed, what appears, what is written."""
import re

import pytest
from harness import (compare_with_entry, compare_with_golden, entries_of, golden, lines_of,
                     settings_and_words, unsanitized)

TRANSCRIPT = "wizard.txt"
WIZARD = ["-w", "-u", "-m"]
# What asks for yes or no is often followed by the next prompt on the same line.
PROMPT = re.compile(r"(?P<number>\[-?[\d.]+\.\.[\d.]+\]: )|\(default: n\) \[y/n\]: (?P<last>(?!.*\]: ))?")
# Texts of several lines that have a short name in transcripts.
_, *parts = re.split(r"^\((.*)\)\n", golden("wizard-blocks.txt"), flags=re.M)
BLOCKS = {name: lines_of(text) for name, text in zip(parts[::2], parts[1::2])}


def with_answers(text, typed):
    """As if the terminal echoed what was typed at each prompt, with a new line after it unless the answer of yes
    or no leads to the next question; "(end)" is the end of input. A refusal follows on the same line."""
    answers = (line.rstrip("\n") for line in lines_of(typed))

    def answered(prompt):
        ends_line = prompt["number"] or prompt["last"] is not None
        return (prompt["number"] or "(y/n) ") + next(answers, "(end)") + ("\n" if ends_line else ", ")
    text = PROMPT.sub(answered, text)
    return re.sub(r"\n(Invalid.*|Out of range\.|Please.*)\n", r" -> \1\n", text)


def with_names(text, blocks):
    """The names of blocks in place of their lines. Where less than half of the lines differ, these follow the name."""
    lines, shown = lines_of(text), ""
    while lines:
        best, equal = "", 0
        for name, block in blocks.items():
            count = sum(line == known for line, known in zip(lines, block))
            if len(lines) >= len(block) and 2 * count > len(block) and count > equal:
                best, equal = name, count
        if best:
            different = [line[:-1] for line, known in zip(lines, blocks[best]) if line != known]
            shown += f"({best}, but {', '.join(different)})\n" if different else f"({best}) "
        else:
            shown += lines[0]
        del lines[:len(blocks[best]) if best else 1]
    return shown


@pytest.mark.parametrize("command", entries_of(TRANSCRIPT))
def test_dialogue(sandbox, command):
    """Whole dialogues; of every kind of prompt, what it takes and what it asks again; input that ends at it; shared
    memory that fails. In the transcript "|" ends a line of input, and after "->" stand the exit status, the number
    of reads and the writes."""
    sandbox.fill_with_pattern()
    blocks = {**BLOCKS, "policy 0": lines_of(sandbox.run("-u", "-p", "0").out)}
    sandbox.environment, words = settings_and_words(command)
    typed = words.replace("|", "\n")
    outcome = sandbox.run_on_terminal(*WIZARD, typed=typed)
    happened = [str(outcome.status), f"{len(outcome.only('read'))} reads", *outcome.only("write")]
    compare_with_entry(TRANSCRIPT, command, ", ".join(happened), with_names(with_answers(outcome.out, typed), blocks))


def test_every_field_has_its_bounds(sandbox):
    """Each question refuses what is no number and the numbers just outside its bounds, and takes the upper one."""
    numbers = re.findall(r"^ +([1-9]\d*)\) ", "".join(BLOCKS["policy fields"]), re.M)
    dialogues = [f"3\n15\n{number}\n" for number in numbers]
    for dialogue in "1\n1\n3\n", "1\n2\n", "2\n3\n":
        asked = sandbox.run_on_terminal(*WIZARD, typed=dialogue).out  # and not answered
        dialogues += [dialogue + "n\n" * question + "y\n" for question in range(asked.count("[y/n]: "))]
    fields = sandbox.build.writable.copy()
    names = {}  # that are asked for, by their bounds
    for dialogue in dialogues:
        asked = sandbox.run_on_terminal(*WIZARD, typed=dialogue + "x\n").out
        question = re.search(r"((\w+)(?: \(0=.*\))?) (\[(\S+)\.\.(\S+)\]): (Invalid (?!number).*)", asked)
        label, name, bounds, *limits, refusal = question.groups()
        minimum, maximum = (int(float(limit)) for limit in limits)
        outcome = sandbox.run_on_terminal(*WIZARD, typed=f"{dialogue}{maximum + 1}\n{minimum - 1}\n{maximum}\n")
        assert outcome.out.count("Out of range.\n" + question[0].removesuffix(refusal)) == 2
        field = fields.pop(next(path for path in fields if path.endswith(name)))
        written = field.pack(maximum) if field.is_real else maximum.to_bytes(8, "little")[:field.size]
        assert outcome.only("write") == [f"write 6 {field.offset} {field.size}: {written.hex(' ')}"]
        names.setdefault(f"{bounds} {refusal}", []).append(label)
    assert fields == {}
    compare_with_golden("wizard-bounds.txt", "".join(f"{key}: {', '.join(names[key])}\n" for key in names))


@unsanitized
def test_an_editor_without_memory_returns(sandbox):
    sandbox.environment["FAIL_MALLOC"] = "30277"
    outcome = sandbox.run_on_terminal(*WIZARD, typed="1\n2\n2\n0\n")
    assert outcome.out.count("Select [0..3]: \nNext?\n") == 2
    assert outcome.calls == []


@pytest.mark.parametrize("typed, last_read, prompt", [
    ("3\n0\n", "1", "Select policy index [0..15]: "),
    ("1\n2\nn\nn\n", "2", "Overwrite sysPL2? (default: n) [y/n]: ")])
def test_every_prompt_is_out_before_it_reads(sandbox, typed, last_read, prompt):
    sandbox.environment["END_AT_READ"] = last_read
    outcome = sandbox.run_on_terminal(*WIZARD, typed=typed, redirections=f"exec >{sandbox.directory}/out;")
    with open(sandbox.directory + "/out") as file:
        assert file.read().endswith(prompt)
