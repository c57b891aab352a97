"""Documents: what goes into the library as JSON. The envelope is made here."""

import json
from dataclasses import dataclass
from typing import Any, Mapping, Sequence, Tuple, Union

Record = Mapping[str, Any]
Document = Union[str, Record, Sequence[Record]]
"""A document: its JSON text, passed as it is; or a record; or, where the function takes a batch, several records."""
BareId = Union[str, int, Record]
"""What to remove: the JSON text, passed as it is; or the id; or the ids by their keys."""


class Form:
    """One of the three forms of a document."""

    def payload(self, content: Any) -> Any:
        """What stands under "D" for a content that came without an envelope."""
        raise NotImplementedError

    def __str__(self) -> str:
        raise NotImplementedError


@dataclass(frozen=True)
class Batch(Form):
    """{"D":{"items":[{...},{...}]}}"""

    def payload(self, content: Any) -> Any:
        if isinstance(content, Mapping):
            return {"items": [content]}
        if _is_list(content):
            return {"items": list(content)}
        raise TypeError("a document is a text, a record or a list of records")

    def __str__(self) -> str:
        return "records"


@dataclass(frozen=True)
class OneRecord(Form):
    """{"D":{...}}"""

    def payload(self, content: Any) -> Any:
        if isinstance(content, Mapping):
            return content
        raise TypeError("a document is a text or a record")

    def __str__(self) -> str:
        return "record"


@dataclass(frozen=True)
class Ids(Form):
    """{"D":{"op_id":7}}, under the keys that the function names."""

    keys: Tuple[str, ...]

    def payload(self, content: Any) -> Any:
        if isinstance(content, Mapping):
            return content
        if isinstance(content, int) and len(self.keys) == 1:
            return {self.keys[0]: content}
        raise TypeError("a document is a text or the ids by their keys: " + ", ".join(self.keys))

    def __str__(self) -> str:
        return "{" + ", ".join(self.keys) + "}"


def text_of(content: Any, form: Form) -> str:
    """The JSON text of a document. One whose only key is "D" has its envelope; else it is made.

    True and False become 1 and 0, since the library reads every flag that is no number as false.
    """
    if isinstance(content, str):
        return content
    enveloped = content if has_envelope(content) else {"D": form.payload(content)}
    return json.dumps(_plain(enveloped), allow_nan=False)


def has_envelope(content: Any) -> bool:
    """Whether a document comes with its envelope. No record has a member "D"."""
    return isinstance(content, Mapping) and set(content) == {"D"}


def _is_list(content: Any) -> bool:
    return isinstance(content, Sequence) and not isinstance(content, (str, bytes, bytearray))


def _plain(content: Any) -> Any:
    if isinstance(content, bool):
        return int(content)
    if isinstance(content, Mapping):
        return {key: _plain(value) for key, value in content.items()}
    if _is_list(content):
        return [_plain(value) for value in content]
    return content
