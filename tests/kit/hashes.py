"""Hashes of passwords that take as long as a test likes, by the crypt library of the system."""

import ctypes


def slow(password, rounds):
    """By sha512crypt, half a microsecond or so for each of the rounds."""
    return _crypt(password, f"$6$rounds={rounds}$saltsalt$")


def quick(password):
    """By bcrypt, about a millisecond."""
    return _crypt(password, "$2b$04$abcdefghijklmnopqrstuu")


def _crypt(password, setting):
    library = ctypes.CDLL("libcrypt.so.1")
    library.crypt.restype = ctypes.c_char_p
    return library.crypt(password.encode(), setting.encode()).decode()
