#!/usr/bin/env python3
"""Makes docs/settings.md and docs/ajustes.md, or checks that they are up to date.

    settings_documents.py SETTING_FACTS [--write]

SETTING_FACTS is the program that prints what kestrane itself knows of its settings file: keys, defaults, and what
becomes of all kinds of values. This script puts that into words and adds the meanings of setting_meanings.py. Without
--write it prints what is missing or out of date, and exits with 1 if anything is.
"""

import json
import pathlib
import subprocess
import sys

import setting_meanings as words

ROOT = pathlib.Path(__file__).resolve().parents[2]
DOCUMENTS = [ROOT / "docs" / "settings.md", ROOT / "docs" / "ajustes.md"]
LANGUAGES = ["en", "es"]


class Unknown(Exception):
    """The documents cannot be made: something has no words."""


def code(text):
    return f"`{text}`"


def listed(items):
    return ", ".join(map(code, items))


# ---- the values of a key, in words of a language


def same_numbers(fact):
    """The numbers that stay as they are, as first and last of each run."""
    return [(first, last) for first, last, outcome in fact["numbers"] if outcome == "same"]


def other_outcomes(fact):
    return [outcome for _, _, outcome in fact["numbers"] if outcome != "same"]


def accepted_words(fact):
    return {word: outcome for word, outcome in fact["words"].items() if outcome is not None}


def is_nearest(fact):
    """Each number outside becomes the nearest permitted one; 1, which older files use as a flag, apart."""
    permitted = [number for first, last in same_numbers(fact) for number in (first, last)]
    for first, last, outcome in fact["numbers"]:
        if outcome == "same" or first == last == 1:
            continue
        if outcome is None:
            return False
        for number in (first, last):
            if abs(number - int(outcome)) > min(abs(number - value) for value in permitted):
                return False
    return True


def numbers_in_words(fact, language):
    runs, others = same_numbers(fact), set(other_outcomes(fact))
    if runs == [(0, 1)] and others == {None}:
        return words.FLAG[language]
    if len(runs) == 1 and not others:
        return words.ANY_NUMBER[language]
    if len(runs) == 1:
        text = words.RANGE[language].format(*runs[0])
    elif all(first == last for first, last in runs):
        text = words.ONE_OF[language].format(", ".join(str(first) for first, _ in runs))
    else:
        return None
    if others == {None}:
        return text
    if is_nearest(fact):
        return text + words.NEAREST[language]
    if len(others) == 1:
        return text + words.COUNTS_AS[language].format(*others)
    return None


def values_in_words(fact, language):
    """None if no known kind of value behaves so."""
    tried, accepted, letters = fact["words"], accepted_words(fact), fact["letters"]
    if tried["A1B2C3"] == tried["a1b2c3"] == "A1B2C3" and tried["NONE"] == "NONE" and tried["abc"] is None:
        return words.COLOR[language]
    if tried["*"] == "*" and tried["AB,CD"] == "00000000000000AB,00000000000000CD":
        return words.HEX_LIST[language]
    if set(accepted) == {"*", "0,1"} and len(same_numbers(fact)) == 1:
        return words.NUMBER_LIST[language].format(*same_numbers(fact)[0])
    if tried["abc"] == "abc" and tried[""] == "":
        return words.TEXT_LIST[language]
    if tried["abc"] == "abc":
        return words.TEXT_LENGTH[language].format(*letters)
    if fact["digits"][0] == fact["digits"][1] > 0:
        return words.ID[language].format(fact["digits"][0])
    if accepted and not same_numbers(fact) and all(word == outcome for word, outcome in accepted.items()):
        return words.WORDS[language].format(listed(accepted))
    text = numbers_in_words(fact, language)
    if text and accepted:
        return text + words.LENIENT[language] if accepted.get("12x") == "12" else None
    return text


# ---- the documents


def meaning(name, names, language):
    section, key = name
    found = words.MEANINGS.get(name)
    if found is None and section in words.GRAPHS:
        found = words.GRAPH_MEANINGS.get(key)
    if found is None or len(found) != len(LANGUAGES) or not all(found):
        raise Unknown(f"[{section}] {key}: setting_meanings.py does not say what it means in both languages")
    choices = {
        topic: ", ".join(f"{number} {choice}" for number, choice in enumerate(lists[LANGUAGES[language]]))
        for topic, lists in names.items()
    }
    return found[language].format(**choices)


def default_of(fact, language):
    if fact["source"]:
        return words.LIKE[language].format(fact["source"])
    return code(fact["default"]) if fact["default"] else words.NO_DEFAULT[language]


def row(name, fact, names, language):
    values = values_in_words(fact, language)
    if values is None:
        raise Unknown(f"[{name[0]}] {name[1]}: settings_documents.py has no words for its kind of value")
    cells = [code(name[1]), values, default_of(fact, language), meaning(name, names, language)]
    return "| " + " | ".join(cell.replace("|", "\\|") for cell in cells) + " |"


def written_by(facts, language):
    """Who writes a section: its page, each icon's page, or a page and a graph's window."""
    owners = {}
    for (_, key), fact in facts.items():
        owners.setdefault(words.OWNERS[fact["owner"]][language], []).append(key)
    if len(owners) == 1:
        return words.WRITTEN[language].format(*owners)
    if "Window" not in {fact["owner"] for fact in facts.values()}:
        return words.WRITTEN[language].format(words.WRITTEN_BY_PAGES[language])
    (page, _), (window, keys) = sorted(owners.items(), key=lambda item: -len(item[1]))
    return words.WRITTEN[language].format(f"{page}; {listed(keys)}: {window}")


def section(title, facts, names, language):
    lines = [f"## [{title}]", "", words.SECTIONS[title][language]]
    lines += [written_by(facts, language), ""]
    lines += [words.HEAD[language], "|---|---|---|---|"]
    lines += [row(name, fact, names, language) for name, fact in facts.items()]
    for group in dict.fromkeys(fact["group"] for fact in facts.values() if fact["group"]):
        lines += ["", words.GROUPS[group][language]]
    return lines


def document(facts, names, language):
    """The whole text; raises Unknown if a key, a section or a kind of value has no words."""
    known = {name: fact for name, fact in facts.items() if "owner" in fact}
    older = {name for name in facts if name not in known}
    for found, told, what in (
        ({name[0] for name in known}, set(words.SECTIONS), "section"),
        (older, set(words.OLDER), "key of older files"),
        (set(words.MEANINGS) & set(known), set(words.MEANINGS), "key"),
        (set(words.GRAPH_MEANINGS) & {name[1] for name in known}, set(words.GRAPH_MEANINGS), "key of a graph"),
    ):
        if found != told:
            raise Unknown(f"setting_meanings.py and the program differ in: {what} {found ^ told}")
    lines = [f"# {words.TITLE[language]}", "", words.INTRODUCTION[language]]
    for title in words.SECTIONS:
        lines += section(title, {name: fact for name, fact in known.items() if name[0] == title}, names, language) + [""]
    lines += [f"## {words.OLDER_TITLE[language]}", "", words.OLDER_TEXT[language], ""]
    lines += [words.OLDER_HEAD[language], "|---|---|---|"]
    lines += [f"| `[{name[0]}]` | `{name[1]}` | {words.OLDER[name][language]} |" for name in sorted(older)]
    return "\n".join(lines) + "\n"


def main():
    told = json.loads(subprocess.run([sys.argv[1]], capture_output=True, text=True, check=True).stdout)
    facts = {(fact["section"], fact["key"]): fact for fact in told["keys"]}
    try:
        texts = [document(facts, told["names"], language) for language in range(len(LANGUAGES))]
    except Unknown as unknown:
        print(unknown)
        return 1
    if sys.argv[2:] == ["--write"]:
        for path, text in zip(DOCUMENTS, texts):
            path.write_text(text, encoding="utf-8")
        return 0
    outdated = [
        path for path, text in zip(DOCUMENTS, texts) if not path.exists() or path.read_text(encoding="utf-8") != text
    ]
    for path in outdated:
        print(f"{path} is out of date: run scripts/settings-docs.sh")
    if not outdated:
        print(f"both documents explain all {len(facts)} keys as the program has them")
    return 1 if outdated else 0


if __name__ == "__main__":
    sys.exit(main())
