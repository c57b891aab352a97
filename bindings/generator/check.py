"""What the comments of the public headers lack: a sentence for each finding, with the place and what to write there.

Bindings and pages are written from these comments, so a comment that says too little would be missed in every language.
"""

from typing import Iterator, List, Set

from .model import IRREGULAR, Api, Direction, Enumeration, Field, Form, Function, Gives, Kind, Result, Role, Takes


def findings(api: Api) -> List[str]:
    """All that is wrong, in the order of the headers. Empty for headers that are as they should be."""
    found: List[str] = []
    for function in api.functions:
        found += (f"{function.place}: {function.name}: {text}" for text in _of_function(api, function))
    for record in api.records:
        if not record.words:
            found.append(f"{record.place}: {record.name}: say in one sentence what the record is.")
        for field in record.fields:
            found += (f"{field.place}: {record.name}.{field.name}: {text}" for text in _of_field(field))
    for enumeration in api.enumerations:
        found += _of_enumeration(enumeration)
    return found


# ---- Functions ----


def _of_function(api: Api, function: Function) -> Iterator[str]:
    if not function.summary.endswith("."):
        yield "begin the comment with one sentence that says what the function does, and end it with a full stop."
    if not function.family:
        yield "put the function into a group, between \"@name ...\" with \"@{\" and \"@}\"."
    yield from _of_parameters(function)
    if function.role is Role.LIFECYCLE:
        if function.type != "void" and not function.returned:
            yield "say what the function returns, as \"@return ...\"."
        return
    if function.returned:
        yield f"write \"@return {function.returned}\" as one line \"@retval NAME  condition\" for each result."
    else:
        yield from _of_results(api, function)
    yield from _of_ownership(api, function)


def _of_parameters(function: Function) -> Iterator[str]:
    for parameter in function.parameters:
        way = "out" if parameter in function.outputs or parameter.name == "count" and function.outputs else "in"
        if not parameter.words:
            yield f"say what the parameter {parameter.name} is, as \"@param[{way}] {parameter.name}  ...\"."
        elif parameter.direction is None:
            yield f"write \"@param[{way}] {parameter.name}\", with the direction of the parameter."
        elif (parameter.direction is Direction.IN) != (way == "in"):
            yield f"write \"@param[{way}] {parameter.name}\" instead of \"@param[{parameter.direction.value}]\"."
    for put in function.inputs:
        if put.takes is Takes.DOCUMENT and put.words and (put.form is None or put.form is Form.IDS and not put.keys):
            yield (f"say which form {put.name} has: \"batch of ...\", \"document of one ...\" or "
                   "\"id-only document with\" and its keys.")


def _of_results(api: Api, function: Function) -> Iterator[str]:
    names = {value.name: value for value in api.enumeration("BrimletResult").values}
    numbers = {str(value.number): value.name for value in names.values()}
    for result in function.results:
        if result.name in numbers:
            yield f"write {numbers[result.name]} instead of {result.name}."
        elif result.name not in names:
            yield f"write a name of BrimletResult instead of {result.name}."
        elif not result.condition:
            yield f"say when the function returns {result.name}, behind the name."
    listed = [result.name for result in function.results]
    if "BRIMLET_DONE" not in listed and "0" not in listed:
        yield "add the line \"@retval BRIMLET_DONE  ...\" with what has then happened, and one for each other result."
    yield from _of_entry(function)


def _of_entry(function: Function) -> Iterator[str]:
    """Whether the refusal of a pointer that is not null is listed, unless the function is known to check none."""
    refusal = next((result for result in function.results if result.name == "BRIMLET_REFUSED"), Result("", ""))
    for output in function.outputs:
        is_said = f"`*{output.name}`" in refusal.condition
        if not is_said and function.name not in IRREGULAR:
            yield f"say under BRIMLET_REFUSED that `*{output.name}` is not null, or add the function to IRREGULAR."
        if is_said and function.name in IRREGULAR:
            yield f"take `*{output.name}` out of the condition of BRIMLET_REFUSED, or the function out of IRREGULAR."


def _of_ownership(api: Api, function: Function) -> Iterator[str]:
    expected = "" if function.gives is Gives.NOTHING else api.release_of(function)
    if function.release == expected:
        return
    if not expected:
        yield f"take out \"Release it with {function.release}.\", since the function hands out nothing."
    elif function.gives is Gives.TEXTS:
        pronoun = "it" if len(function.outputs) == 1 else "each"
        yield f"add the sentence \"Release {pronoun} with free, on Windows with CoTaskMemFree.\"."
    else:
        yield f"add the sentence \"Release it with {expected}.\"."


# ---- Records and enumerations ----


def _of_field(field: Field) -> Iterator[str]:
    if not field.words or field.words.startswith(("Key ", "No key:")):
        yield "begin the comment with what the field means."
    if field.kind is Kind.COUNT:
        if field.keys or field.is_keyless:
            yield "take out the key, since a count has none."
    elif not field.keys and not field.is_keyless:
        yield "name the key of documents, as \"Key \"...\".\", or say \"No key:\" and where the value comes from."
    elif field.keys and field.is_keyless:
        yield "name the key or say \"No key:\", not both."


def _of_enumeration(enumeration: Enumeration) -> Iterator[str]:
    seen: Set[int] = set()
    for value in enumeration.values:
        if not value.meaning.endswith("."):
            yield f"{value.place}: {value.name}: say in one sentence what the value means, and end it with a full stop."
        if value.number in seen:
            yield f"{value.place}: {value.name}: give it a number that no other value has."
        seen.add(value.number)
