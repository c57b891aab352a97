"""The companion command `brimlet`: the library's functions and a look at its file, from a shell.

show, events, inspect and the functions get... read a copy of the file and change nothing. load and all other functions
write, so they need --write. They create a file only with --create. With --recover they rename a file that is not a
sound store, and start a new one.

The exit status is the code of the function: 0, or what brimlet.h says (8 for not found). 1 means that it did not come
to a call or that an inspection found something, 2 that the command line is wrong, 6 that the store cannot be used.
"""

import argparse
import difflib
import json
import os
import signal
import sys
from contextlib import contextmanager
from pathlib import Path
from typing import Any, Callable, Dict, Iterator, NoReturn, Optional, Sequence

from .codes import Code, Error, LaunchResult, code_of, error_for
from .documents import Form
from .folder import Loaded, UnknownDocument, load, plan
from .functions import FUNCTIONS, DocumentInput, Function, Gives, Input, NumberInput, Role
from .inspection import Inspection, inspect
from .library import Library
from .output import (
    Table, bytes_shown, complain, escaped, print_json, print_line, print_table, print_tree, table_of, tree_of,
    with_progress,
)
from .session import FILE_NAME, Session
from .snapshot import Busy, Missing, Unsound, snapshot
from .store import put_aside, require_idle, sound_copy
from .version import __version__

_NOTHING_DONE = 1
_WRONG_LINE = 2
_UNUSABLE = int(LaunchResult.FAILED)
_LAST_TIME = 2**32 - 1

# The records that have an id of their own: getDevice, getSite ...
_SHOWN: Dict[str, str] = {
    entry.family.__name__.lower(): name
    for name, entry in FUNCTIONS.items()
    if entry.family and name == "get" + entry.family.__name__ and len(entry.takes) == 1
}


class _Failure(Error):
    """A message for the user, and the exit status."""

    def __init__(self, words: str, status: int = _NOTHING_DONE) -> None:
        super().__init__(words)
        self.status = status


# ---- The store ----


def _file(options: argparse.Namespace) -> Path:
    directory = Path(options.dir)
    if not directory.is_dir():
        raise _Failure(f"there is no folder {directory}")
    return directory / FILE_NAME


@contextmanager
def _reading(options: argparse.Namespace) -> Iterator[Session]:
    """The library on a copy of the store."""
    file = _file(options)
    try:
        with sound_copy(file, options.timeout) as copy, _launched(options, copy.file, f"a copy of {file}") as session:
            yield session
    except Missing as failure:
        raise _missing(failure) from None
    except Unsound as failure:
        raise _unsound(file, failure, "a writing command with --recover starts a new one") from None


@contextmanager
def _writing(options: argparse.Namespace) -> Iterator[Session]:
    """The library on the store itself, once that is sound."""
    file = _file(options)
    Library.load(options.library)  # before anything is put aside
    try:
        with sound_copy(file, options.timeout):
            pass
        require_idle(file)
    except Missing as failure:
        if not options.create:
            raise _Failure(f"{failure}; --create creates one", _UNUSABLE) from None
    except Unsound as failure:
        if not options.recover:
            raise _unsound(file, failure, "--recover renames it and starts a new one") from None
        complain(f"{file} was not a sound store: {failure}; it is kept as {put_aside(file).name}")
    with _launched(options, file, str(file)) as session:
        yield session


def _require_write(options: argparse.Namespace, what: str) -> None:
    if not options.write:
        raise _Failure(f"{what} writes; --write allows it", _WRONG_LINE)


def _missing(failure: Missing) -> _Failure:
    return _Failure(f"{failure}; check --dir, or create one by a writing command with --create",
                    _UNUSABLE)


def _unsound(file: Path, failure: Unsound, cure: str) -> _Failure:
    return _Failure(f"{file} is not a sound store: {failure}; `brimlet inspect` shows the details, {cure}", _UNUSABLE)


def _launched(options: argparse.Namespace, file: Path, words: str) -> Session:
    if not options.verbose:  # the library's debug lines, and a warning about the main thread
        os.environ.setdefault("QT_LOGGING_RULES", "default.debug=false\ndefault.warning=false")
    session = Session(file.parent, library=options.library, timeout=options.timeout, recover=False)
    if not session.is_usable:
        session.close()
        result = session.report.last
        raise _Failure(f"the launch on {words} returned {int(result)}, {result.meaning}", _UNUSABLE)
    return session


def _finish(name: str, code: int) -> int:
    if code != Code.DONE:
        complain(str(error_for(name, code)))
    return int(code)


def _print_value(value: Any, as_table: bool) -> None:
    if as_table:
        print_table(table_of(value))
    else:
        print_json(value)


# ---- call ----


def _function(name: str) -> "Function[Any]":
    entry = FUNCTIONS.get(name)
    if entry is None:
        close = difflib.get_close_matches(name, FUNCTIONS, 3)
        hint = f", did you mean {' or '.join(close)}?" if close else "; `brimlet functions` lists them"
        raise _Failure(f"there is no function {name}{hint}", _WRONG_LINE)
    return entry


def _text(argument: str) -> str:
    """The text of an argument: that of standard input for "-", that of a file for "@file", else itself."""
    if argument == "-":
        return sys.stdin.buffer.read().decode("utf-8-sig")
    if argument.startswith("@@"):
        return argument[1:]
    if argument.startswith("@"):
        return Path(argument[1:]).read_text(encoding="utf-8-sig")
    return argument


def _document(text: str, form: Form) -> str:
    """A document as it is, with the envelope around it where it has none. The library refuses what is no JSON."""
    try:
        content = json.loads(text)
        if isinstance(content, dict) and "D" in content:
            return text
        return json.dumps({"D": form.payload(content)})
    except (ValueError, TypeError):
        return text


def _number(text: str) -> int:
    try:
        return int(text)
    except ValueError:
        raise _Failure(f"{text} is not a number", _WRONG_LINE) from None


def _argument(put: Input, argument: str) -> Any:
    if isinstance(put, NumberInput):
        return _number(argument)
    text = _text(argument)
    return _document(text, put.form) if isinstance(put, DocumentInput) else text


def _call(options: argparse.Namespace) -> int:
    entry = _function(options.function)
    if len(options.arguments) != len(entry.takes):
        raise _Failure(f"{entry} takes {len(entry.takes)} arguments, not {len(options.arguments)}", _WRONG_LINE)
    if entry.role is Role.RELEASE:
        return _release(entry, options)
    is_read = entry.name.startswith("get")
    if not is_read:
        _require_write(options, entry.name)
    arguments = [_argument(put, argument) for put, argument in zip(entry.takes, options.arguments)]
    with _reading(options) if is_read else _writing(options) as session:
        if entry.role is Role.LIFECYCLE:
            return _ask(entry, session, options)
        code, value = session.answer(entry.name, *arguments)
    if entry.is_list_read and code == Code.NOT_FOUND:
        value = []
    if entry.gives is not Gives.NOTHING and (code == Code.DONE or value == []):
        _print_value(value, options.table)
    return _finish(entry.name, code)


def _ask(entry: "Function[Any]", session: Session, options: argparse.Namespace) -> int:
    """The functions of the lifecycle: the launch and the exit are the session's, so two are done and two are asked."""
    answers = {"getState": session.state, "getLaunchCacheResult": session.launch_result}
    if entry.name in answers:
        _print_value(int(answers[entry.name]), options.table)
    return 0


def _release(entry: "Function[Any]", options: argparse.Namespace) -> int:
    """A free function, which needs no launch. No record can be named on a command line, so it gets none."""
    release = Library.load(options.library).exports[entry.name]
    return _finish(entry.name, release(*(None, 0)[:len(entry.arguments)]))


def _functions(options: argparse.Namespace) -> int:
    for entry in FUNCTIONS.values():
        print(entry)
    return 0


# ---- load ----


def _load(options: argparse.Namespace) -> int:
    _require_write(options, "load")
    folder = Path(options.folder)
    if not folder.is_dir():
        raise _Failure(f"there is no folder {folder}")
    steps = plan(folder)
    with _writing(options) as session:
        done = list(with_progress(load(session, folder, steps), len(steps), "loading"))
    answers = [[step.file, step.function, _answer_shown(step)] for step in done]
    print_table(Table(["document", "function", "answer"], answers))
    return next((int(step.code) for step in done if step.code != Code.DONE), 0)


def _answer_shown(step: Loaded) -> str:
    code = code_of(step.code)
    return f"{int(code)}, {code.meaning}" if isinstance(code, Code) else str(code)


# ---- show, events ----


def _show(options: argparse.Namespace) -> int:
    name = _SHOWN[options.kind]
    with _reading(options) as session:
        code, record = session.answer(name, options.id)
    if code == Code.DONE:
        print_tree(tree_of(record))
    return _finish(name, code)


def _events(options: argparse.Namespace) -> int:
    with _reading(options) as session:
        code, events = session.answer("getEvents", options.first, options.last)
    if code in (Code.DONE, Code.NOT_FOUND):
        _print_value(sorted(events or [], key=lambda event: (event.time or 0, event.id)), options.table)
    return _finish("getEvents", code)


# ---- inspect ----


def _inspect(options: argparse.Namespace) -> int:
    file = _file(options)
    try:
        with snapshot(file) as copy:
            found = inspect(copy, options.timeout)
    except Missing as failure:
        raise _missing(failure) from None
    except Unsound as failure:
        raise _Failure(f"{file} cannot be inspected: {failure}", _UNUSABLE) from None
    if options.json:
        print_json(found)
    else:
        _print_inspection(found)
    return 0 if found.is_sound else _NOTHING_DONE


def _print_inspection(found: Inspection) -> None:
    _print_findings("schema", found.missing, "complete" if found.different else "as expected")
    if found.different:
        _print_findings("different, but accepted", found.different)
    _print_findings("pages", found.pages, "sound")
    if found.leftOut:
        _print_findings("left out", found.leftOut)
    print()
    sizes = [[size.name, str(size.rows), bytes_shown(size.bytes)] for size in found.tables]
    print_table(Table(["table", "rows", "bytes"], sizes))
    if found.events:
        print()
        events = found.events
        print_table(Table(["events", "count"], [
            ["all", str(events.all)],
            ["marked, kept until the mark is taken away", str(events.marked)],
            ["that no purge can take", str(events.beyondPurge)],
            ["  of them without a mark", str(events.withoutMark)],
            ["  of them without a time", str(events.withoutTime)],
            ["that no list shows, their device being unknown", str(events.ofUnknownDevices)],
        ]))


def _print_findings(title: str, findings: Sequence[str], without: str = "") -> None:
    print_line(f"{title}:" + ("" if findings else f" {without}"))
    for finding in findings:
        print_line("  " + finding)


# ---- The command line ----


class _Parser(argparse.ArgumentParser):
    """A parser that escapes the words it repeats: a shell may have taken them from the names of files."""

    def error(self, message: str) -> NoReturn:
        super().error(escaped(message))


def _parser() -> argparse.ArgumentParser:
    parser = _Parser(prog="brimlet", description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--version", action="version", version=f"brimlet {__version__}")
    parser.add_argument("--dir", default=".", metavar="D", help="the folder of the file CacheDb; the current one")
    parser.add_argument("--library", metavar="FILE", help="the shared library")
    parser.add_argument("--timeout", type=_seconds, default=10.0, metavar="S",
                        help="seconds that the check of the file may take, and the launch; 10")
    parser.add_argument("--verbose", action="store_true", help="let the library write its debug lines")
    commands = parser.add_subparsers(metavar="COMMAND", required=True)

    call = _command(commands, "call", _call, "call one of the library's functions by its name")
    call.add_argument("function", help="getUser, addUsers ...; `brimlet functions` lists them")
    call.add_argument("arguments", nargs="*", metavar="ARGUMENT",
                      help='in the order of the list; a text or document also as @FILE or, from standard input, "-" '
                           "(a text that begins with @ is written with two); a document may leave out its envelope")
    _add_table(call)
    _add_write(call)

    _command(commands, "functions", _functions, "list the functions, with the arguments that `call` takes")

    load_command = _command(commands, "load", _load, "load a folder of documents in the order their references need")
    load_command.add_argument("folder", help="its files are named for their function: users.json, update_site.json ...")
    _add_write(load_command)

    show = _command(commands, "show", _show, "show a record with all that it holds as a tree")
    show.add_argument("kind", choices=sorted(_SHOWN))
    show.add_argument("id", type=int)

    events = _command(commands, "events", _events, "list the events of known devices, by time")
    events.add_argument("--from", dest="first", type=int, default=0, metavar="TIME", help="the first time; 0")
    events.add_argument("--to", dest="last", type=int, default=_LAST_TIME, metavar="TIME", help="the last time; no end")
    _add_table(events)

    look = _command(commands, "inspect", _inspect, "check the file and count its rows; safe on any file")
    look.add_argument("--json", action="store_true", help="print JSON")
    return parser


def _seconds(text: str) -> float:
    try:
        seconds = float(text)
    except ValueError:
        seconds = 0
    if not seconds > 0:  # not a number included
        raise argparse.ArgumentTypeError(f"{text} is not a time in seconds")
    return seconds


def _command(
    commands: Any, name: str, function: Callable[[argparse.Namespace], int], words: str
) -> argparse.ArgumentParser:
    command: argparse.ArgumentParser = commands.add_parser(name, help=words, description=words)
    command.set_defaults(run=function)
    return command


def _add_table(parser: argparse.ArgumentParser) -> None:
    parser.add_argument("--table", action="store_true", help="print a table instead of JSON")


def _add_write(parser: argparse.ArgumentParser) -> None:
    parser.add_argument("--write", action="store_true", help="allow the command to write to the store")
    parser.add_argument("--create", action="store_true", help="create the file if there is none")
    parser.add_argument("--recover", action="store_true",
                        help="rename a file that is not a sound store to CacheDb.damaged-TIME, and start a new one")


def run(arguments: Optional[Sequence[str]] = None) -> int:
    """Runs the command and gives its exit status."""
    options = _parser().parse_args(arguments)
    try:
        status: int = options.run(options)
        sys.stdout.flush()
        return status
    except _Failure as failure:
        complain(str(failure))
        return failure.status
    except Busy as failure:
        complain(str(failure))
        return _UNUSABLE
    except UnknownDocument as failure:
        complain(str(failure))
        return _WRONG_LINE
    except ValueError as failure:  # a number that does not fit, a file that is not UTF-8
        complain(str(failure))
        return _WRONG_LINE
    except BrokenPipeError:
        os.dup2(os.open(os.devnull, os.O_WRONLY), sys.stdout.fileno())
        return _NOTHING_DONE
    except (Error, OSError) as failure:
        complain(str(failure))
        return _NOTHING_DONE


def _stop(number: int, _: object) -> NoReturn:
    sys.exit(128 + number)


def main() -> None:
    """The entry point."""
    for name in ("SIGINT", "SIGTERM", "SIGHUP"):  # by an exception, so that the copy of the store is removed
        number = getattr(signal, name, None)
        if number and signal.getsignal(number) in (signal.SIG_DFL, signal.default_int_handler):
            signal.signal(number, _stop)
    sys.exit(run())
