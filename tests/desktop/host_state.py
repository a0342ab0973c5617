"""What an application leaves behind: its files by what they mean, and its output, without what no
two runs have in common."""

import configparser
import difflib
import json
import pathlib
import plistlib
import re
import sqlite3

# Folders of a home directory in which nothing is kept that the application would read as settings.
PASSING = (".cache", ".runtime", "Library")
# Larger ones are not looked into.
LARGEST = 1 << 20
CACHES = {"cache", "caches", "qtwebengine"}


def files(home):
    """{(file, key): value} of everything below the home directory."""
    found = {}
    for path in sorted(pathlib.Path(home).rglob("*")):
        name = path.relative_to(home)
        if name.parts[0] in PASSING or CACHES & {part.lower() for part in name.parts}:
            continue
        if path.is_symlink() or not path.is_file():
            continue
        for key, value in decoded(path).items():
            found[normal(str(name), home), normal(key, home)] = normal(value, home)
    return found


def decoded(path):
    if path.stat().st_size > LARGEST:
        return {"": f"{path.stat().st_size} bytes"}
    data = path.read_bytes()
    if data.startswith(b"SQLite format 3"):
        return _sqlite(path)
    for read in (_plist, _json, _ini):
        try:
            return read(data)
        except (ValueError, KeyError, configparser.Error, plistlib.InvalidFileException):
            continue
    return {"": repr(data)}


def _plist(data):
    return _leaves(plistlib.loads(data))


def _json(data):
    return _leaves(json.loads(data))


def _leaves(value, name=""):
    if isinstance(value, dict):
        pairs = value.items()
    elif isinstance(value, list):
        pairs = enumerate(value)
    else:
        return {name: repr(value)}
    found = {}
    for key, each in pairs:
        found.update(_leaves(each, f"{name}/{key}"))
    return found


def _ini(data):
    parser = configparser.RawConfigParser(strict=False, delimiters=("=",), comment_prefixes=("#",),
                                          allow_no_value=True)
    parser.optionxform = str
    text = data.decode()
    parser.read_string(text if text.lstrip().startswith("[") else "[]\n" + text)
    return {f"{section}/{key}": repr(value) for section in parser.sections()
            for key, value in parser.items(section)}


def _sqlite(path):
    connection = sqlite3.connect(f"file:{path}?mode=ro", uri=True)
    try:
        return {f"{number}": line for number, line in enumerate(connection.iterdump())}
    except sqlite3.Error:
        return {"": "a database"}
    finally:
        connection.close()


def output(text, home):
    """The lines as a set: threads mix them."""
    def passing(line):
        # Names that are drawn by lot, numbers of processes.
        return re.sub(r"\d+", "N", re.sub(r"[\w=+-]{24,}", "ID", normal(line, home)))
    return {passing(line) for line in text.splitlines() if line.strip()}


def said_only_with_us(without, again, with_us):
    """The lines that neither run without us has, nor one that is much like one of those in which
    these two differ."""
    varying = without ^ again
    return [line for line in sorted(with_us - without - again)
            if not difflib.get_close_matches(line, varying, 1, 0.8)]


def normal(text, home):
    """Without places, numbers of processes, addresses and times of day."""
    text = text.replace(str(home), "~").replace(pathlib.Path(home).name, "~")
    text = re.sub(r"0x[0-9a-fA-F]+", "0x", text)
    text = re.sub(r"\d\d:\d\d(:\d\d([.,]\d+)?)?", "TIME", text)
    return re.sub(r"\d+([.,]\d+)?", "N", text) if "~" in text or "[" in text else text


def differences(without, again, with_us):
    """What a run with us has otherwise than both runs without, as lines; what those two have
    different from each other does not count, nor do files where each run makes one by chance."""
    def folder(key):
        return str(pathlib.PurePath(key[0]).parent)
    varying = {folder(key) for key in set(without) ^ set(again)}
    found = []
    for key in sorted(set(without) | set(with_us)):
        if without.get(key) != again.get(key) or without.get(key) == with_us.get(key):
            continue
        if folder(key) in varying and not (key in without and key in with_us):
            continue
        name = ": ".join(part for part in key if part)
        found.append(f"{name}: {without.get(key)} became {with_us.get(key)}")
    return found
