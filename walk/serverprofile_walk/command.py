"""The wbemcli command that repeats a question."""

from xml.sax.saxutils import escape

from .objects import Path

# Operation: wbemcli's, whether it is shown line by line, and the option of the association class.
OPERATIONS = {"EnumerateInstanceNames": ("ein", False, ""), "EnumerateInstances": ("ei", True, ""),
              "GetInstance": ("gi", True, ""), "GetClass": ("gc", False, ""),
              "EnumerateClassNames": ("ecn", False, ""),
              "AssociatorNames": ("ain", False, "-ac"), "Associators": ("ai", True, "-ac"),
              "ReferenceNames": ("rin", False, "-arc"), "References": ("ri", True, "-arc")}

PASSWORD_VARIABLE = "SERVERPROFILE_WALK_PASSWORD"


def command(at, question, password_file=None):
    """The command for a shell. A password is not in it, but where it is found: in the file, or else in
    PASSWORD_VARIABLE."""
    operation, by_lines, option = OPERATIONS[question.operation]
    words = ["wbemcli", operation]
    if at.tls and not at.verify:
        words.append("-noverify")
    elif at.tls and at.ca_file:
        words += ["-cacert", quote(at.ca_file)]
    if by_lines:
        words.append("-nl")
    if option and question.association:
        words += [option, quote(question.association)]
    path = f"{at.address}/{question.namespace}:{_text(question.target)}"
    scheme = "https://" if at.tls else "http://"
    if at.user is None:
        words.append(quote(scheme + path, always=True))
    else:
        password = f"$(cat {quote(password_file)})" if password_file else f"${PASSWORD_VARIABLE}"
        words.append(f'{quote(f"{scheme}{at.user}:", always=True)}"{password}"'
                     f'{quote("@" + path, always=True)}')
    return " ".join(words)


def _text(path):
    """As wbemcli reads it: a reference stands without quotes, and without a host, which it takes from
    the URL; a text stands between quotes, and goes into its XML as it is written here."""
    if path.keys is None:
        return path.class_name
    keys = []
    for key in path.keys:
        if isinstance(key.value, Path):
            place = f"{key.value.namespace}:" if key.value.namespace else ""
            text = place + _text(key.value)
        else:
            text = escape(key.value, {'"': "&quot;", "\n": "&#10;", "\r": "&#13;", "\t": "&#9;"})
            if key.type not in ("boolean", "numeric"):
                text = f'"{text}"'
        keys.append(f"{key.name}={text}" if key.name else text)
    return f"{path.class_name}.{','.join(keys)}"


def quote(text, always=False):
    """For a shell. What cannot be shown is written as bash reads it."""
    if not text.isprintable():
        return "$'" + "".join(
            {"'": "\\'", "\\": "\\\\"}.get(each, each) if each.isprintable() else
            "".join(f"\\x{byte:02x}" for byte in each.encode("utf-8", "surrogatepass"))
            for each in text) + "'"
    plain = text and all(each.isalnum() or each in "_-./:@%+," for each in text) and text.isascii()
    if plain and not always:
        return text
    return "'" + text.replace("'", "'\\''") + "'"
