"""The walk as JSON; serverprofile-walk(1) says what is in it."""

import json

from . import VERSION
from .command import command

FORMAT = 1


def document(at, walk, error=None, password_file=None):
    """The text of the document. `error` is why the server could not be reached; then `walk` is None."""
    content = {"format": FORMAT, "program": f"serverprofile-walk {VERSION}", "url": at.url,
               "whole": False, "error": error, "questions": 0, "wrong": 0, "interop": None,
               "namespaces": [], "left_out": [], "notes": [], "wrongs": []}
    if walk is not None:
        content.update(
            whole=walk.whole, questions=len(walk.asked), wrong=len(walk.wrong),
            interop=walk.interop, left_out=walk.left_out,
            notes=[{"name": note.name, "text": note.text} for note in walk.notes],
            namespaces=[{"name": section.namespace,
                         "whole": bool(section.asked) and not section.wrong and not walk.gave_up,
                         "questions": len(section.asked), "wrong": len(section.wrong),
                         "wrongs": [asked.number for asked in section.wrong]}
                        for section in walk.sections],
            wrongs=[_wrong(at, asked, password_file) for asked in walk.wrong])
        if walk.gave_up:
            content["error"] = "the server stopped answering"
    return json.dumps(content, indent=2) + "\n"


def _wrong(at, asked, password_file):
    question = asked.question
    return {"number": asked.number, "operation": question.operation,
            "namespace": question.namespace, "target": str(question.target),
            "association": question.association,
            "command": command(at, question, password_file),
            "status": getattr(asked.error, "code", None), "came": asked.came,
            "expected": asked.expected,
            "problems": [{"text": text, "advice": advice or None} for text, advice in asked.problems]}
