"""BGP communities: every distinct list exists once, and the paths of MRT files.

    >>> import zobgp
    >>> zobgp.parse("standard", "no-export 65000:100").values
    ('65000:100', 'NO_EXPORT')
    >>> for path in zobgp.paths("rib.bz2"):
    ...     print(path.prefixes, path.extended.values)

Lists with the same communities are the same object: compare them with `is`.

The library `libzobgp-c` does the work. It is found by its name where the system looks for libraries;
ZOBGP_LIBRARY names another file.
"""
from __future__ import annotations

import ctypes
import datetime
import functools
import os
import threading
import weakref
from typing import TYPE_CHECKING, Any, Iterator, Optional, Union

if TYPE_CHECKING:
    import pandas

__all__ = ["Error", "List", "Path", "Paths", "Tables", "parse", "paths", "text", "value", "version"]

_STANDARD, _EXTENDED, _IPV6_EXTENDED, _LARGE = 8, 16, 25, 32
_types = {"standard": _STANDARD, "extended": _EXTENDED, "ipv6_extended": _IPV6_EXTENDED, "large": _LARGE}
_sizes = {_STANDARD: 4, _EXTENDED: 8, _IPV6_EXTENDED: 20, _LARGE: 12}
_OK, _END, _ROOM, _MEMORY = 0, 1, 2, 7


class Error(ValueError):
    """Octets, a text or a file are wrong, or an object is used where it may not be; the message says why."""


class _Lists(ctypes.Structure):
    _fields_ = [(name, ctypes.c_void_p) for name in _types]


class _Path(ctypes.Structure):
    _fields_ = [
        ("size", ctypes.c_uint32),
        ("seconds", ctypes.c_uint32),
        ("microseconds", ctypes.c_uint32),
        ("peer_as", ctypes.c_uint32),
        ("peer", ctypes.c_char_p),
        ("prefixes", ctypes.c_char_p),
        ("withdrawn", ctypes.c_char_p),
        ("as_path", ctypes.c_char_p),
        ("next_hop", ctypes.c_char_p),
        ("origin_as", ctypes.c_int64),
        ("record", ctypes.c_uint64),
        ("lists", _Lists),
        ("malformed", ctypes.c_char_p),
        ("wrong_flags", ctypes.c_char_p),
    ]


def _load() -> ctypes.CDLL:
    library = ctypes.CDLL(os.environ.get("ZOBGP_LIBRARY") or "libzobgp-c.so.0.2")
    pointer, size, text = ctypes.c_void_p, ctypes.c_size_t, ctypes.c_char_p
    sizes = ctypes.POINTER(size)
    for name, result, arguments in (
        ("version", text, []),
        ("message", text, []),
        ("tables_new", ctypes.c_int, [ctypes.POINTER(pointer)]),
        ("tables_free", None, [pointer]),
        ("read", ctypes.c_int, [pointer, ctypes.c_int, text, size, ctypes.POINTER(pointer)]),
        ("read_all", ctypes.c_int, [pointer, text, size, ctypes.POINTER(_Lists)]),
        ("parse", ctypes.c_int, [pointer, ctypes.c_int, text, ctypes.POINTER(pointer)]),
        ("list_hold", None, [pointer]),
        ("list_release", None, [pointer]),
        ("list_type", ctypes.c_int, [pointer]),
        ("list_octets", ctypes.c_int, [pointer, text, size, sizes]),
        ("list_text", ctypes.c_int, [pointer, text, size, sizes]),
        ("text", ctypes.c_int, [ctypes.c_int, text, size, text, size, sizes]),
        ("value", ctypes.c_int, [text, ctypes.POINTER(ctypes.c_int), text, sizes]),
        ("reader_open", ctypes.c_int, [pointer, text, ctypes.POINTER(pointer)]),
        ("reader_close", None, [pointer]),
        ("reader_next", ctypes.c_int, [pointer, ctypes.POINTER(ctypes.POINTER(_Path))]),
    ):
        function = getattr(library, "zobgp_" + name)
        function.restype, function.argtypes = result, arguments
    return library


try:
    _library = _load()
except (OSError, AttributeError) as error:
    raise ImportError(f"libzobgp-c cannot be loaded (ZOBGP_LIBRARY can name its file): {error}") from None


def _check(status: int) -> None:
    if status == _OK:
        return
    if status == _MEMORY:
        raise MemoryError
    raise Error(_library.zobgp_message().decode(errors="replace"))


def _given(function: Any, *arguments: Any) -> bytes:
    """What a function writes to its caller's room."""
    room, length = 256, ctypes.c_size_t()
    while True:
        buffer = ctypes.create_string_buffer(room)
        status = function(*arguments, buffer, room, ctypes.byref(length))
        if status != _ROOM:
            _check(status)
            return buffer.raw[: length.value]
        room = length.value + 1


def _ended(text: bytes) -> bytes:
    """As C has texts, which end at the first NUL."""
    if b"\0" in text:
        raise Error("a text holds a NUL")
    return text


def _type_of(name: str) -> int:
    try:
        return _types[name]
    except KeyError:
        raise Error(f"type {name!r}: there are {', '.join(_types)}") from None


class List:
    """A list of communities, of one path attribute. Equal lists of one `Tables` are one object, which a
    copy is, too. Pickled, a list becomes one of the tables that all share."""

    # It does without the library, which has let go of the list when a finalizer uses or revives this object.
    __slots__ = ("_octets", "_values", "type", "__weakref__")

    def __init__(self, type: str, octets: bytes = b""):
        self.type, self._octets = type, octets
        self._values: Optional[tuple[str, ...]] = None

    def __copy__(self) -> List:
        return self

    def __deepcopy__(self, _: object) -> List:
        return self

    def __reduce__(self) -> tuple[Any, ...]:
        return _unpickled, (self.type, self._octets)

    @property
    def octets(self) -> tuple[bytes, ...]:
        """The communities as an attribute has them."""
        size = _sizes[_types[self.type]]
        return tuple(self._octets[at : at + size] for at in range(0, len(self._octets), size))

    @property
    def values(self) -> tuple[str, ...]:
        """The communities' canonical texts, in the order of the list."""
        if self._values is None:
            self._values = tuple(text(self.type, one) for one in self.octets)
        return self._values

    def __len__(self) -> int:
        return len(self._octets) // _sizes[_types[self.type]]

    def __iter__(self) -> Iterator[str]:
        return iter(self.values)

    def __contains__(self, one: object) -> bool:
        return one in self.values

    def __str__(self) -> str:
        return " ".join(self.values)

    def __repr__(self) -> str:
        return f"<{self.type} {self}>"


_none = {name: List(name) for name in _types}


def _unpickled(type: str, octets: bytes) -> List:
    return _tables.read(type, octets) if octets else _none[type]


def _cannot_be_copied(self: object) -> tuple[Any, ...]:
    raise TypeError(f"a {type(self).__name__} can be neither copied nor pickled")


# The objects of lists by their handles, of all tables. Each reference holds the list in the library until
# it has heard that its object is gone: so long no other list has this handle. The lock is for one object a
# list; a thread that has it may hear of an end meanwhile.
_known: dict[int, weakref.ref[List]] = {}
_lock = threading.RLock()
os.register_at_fork(before=_lock.acquire, after_in_parent=_lock.release, after_in_child=_lock.release)


def _list(handle: Optional[int], name: str) -> List:
    """The object of a list that is held for it."""
    if not handle:
        return _none[name]
    with _lock:
        known = _known.get(handle)
        one = known() if known else None
        if one is None:
            one = List(name, _given(_library.zobgp_list_octets, handle))
            _known[handle] = weakref.ref(one, functools.partial(_gone, handle))
            return one
    _library.zobgp_list_release(handle)  # the object's reference holds it already
    return one


def _gone(handle: int, known: weakref.ref[List]) -> None:
    with _lock:
        if _known.get(handle) is known:  # else it is another object's by now
            del _known[handle]
    _library.zobgp_list_release(handle)


class Tables:
    """What lists are shared in. Most programs need none of their own: there is one for all."""

    _free = _library.zobgp_tables_free  # the module's names may be gone before the last object

    def __init__(self) -> None:
        self._handle = ctypes.c_void_p()
        _check(_library.zobgp_tables_new(ctypes.byref(self._handle)))

    def __del__(self) -> None:
        self._free(self._handle)
        self._handle.value = None  # a finalizer may use or revive this object

    __reduce__ = _cannot_be_copied

    def read(self, type: str, octets: bytes) -> List:
        """The list in an attribute's value, without its header."""
        handle = ctypes.c_void_p()
        octets = bytes(memoryview(octets))
        _check(_library.zobgp_read(self._handle, _type_of(type), octets, len(octets), ctypes.byref(handle)))
        return _list(handle.value, type)

    def parse(self, type: str, text: str) -> List:
        """The list of communities in a text, in any form that the tool bgpcomm reads."""
        handle = ctypes.c_void_p()
        octets = _ended(text.encode(errors="backslashreplace"))
        _check(_library.zobgp_parse(self._handle, _type_of(type), octets, ctypes.byref(handle)))
        return _list(handle.value, type)


_tables = Tables()


def _parts(texts: bytes) -> tuple[str, ...]:
    return tuple(texts.decode().split(", ")) if texts else ()


class Path:
    """A path of a file: an entry of a table, or an UPDATE."""

    __slots__ = ("seconds", "microseconds", "peer", "peer_as", "prefixes", "withdrawn", "as_path", "origin_as",
                 "next_hop", "record", "standard", "extended", "ipv6_extended", "large", "malformed", "wrong_flags")

    def __init__(self, path: _Path):
        self.seconds, self.microseconds = path.seconds, path.microseconds
        self.peer, self.peer_as = path.peer.decode(), path.peer_as
        self.prefixes = _parts(path.prefixes)
        self.withdrawn = _parts(path.withdrawn)
        self.as_path, self.next_hop = path.as_path.decode(), path.next_hop.decode()
        self.origin_as = None if path.origin_as < 0 else path.origin_as
        self.record = path.record
        self.malformed, self.wrong_flags = path.malformed.decode(), path.wrong_flags.decode()

        def held(name: str) -> List:
            handle = getattr(path.lists, name)
            _library.zobgp_list_hold(handle)
            return _list(handle, name)

        self.standard, self.extended, self.ipv6_extended, self.large = map(held, _types)

    @property
    def time(self) -> datetime.datetime:
        return datetime.datetime.fromtimestamp(self.seconds, datetime.timezone.utc).replace(
            microsecond=self.microseconds)

    def __repr__(self) -> str:
        return f"<{self.time:%Y-%m-%dT%H:%M:%SZ} {self.peer} AS{self.peer_as} {', '.join(self.prefixes)}>"


class Paths:
    """The paths of a file, one by one."""

    _end, _process = _library.zobgp_reader_close, staticmethod(os.getpid)
    _reader: Optional[ctypes.c_void_p] = None

    def __init__(self, file: Union[str, os.PathLike[str]], tables: Optional[Tables] = None):
        self._opened_by, self._busy, reader = os.getpid(), threading.Lock(), ctypes.c_void_p()
        name = _ended(os.fsencode(file))
        _check(_library.zobgp_reader_open((tables or _tables)._handle, name, ctypes.byref(reader)))
        self._reader = reader

    __reduce__ = _cannot_be_copied

    def __iter__(self) -> Paths:
        return self

    def _take(self) -> None:
        """For the caller alone, until `_busy` is released: the library does not look."""
        if self._process() != self._opened_by:
            raise Error("a Paths belongs to the process that opened it")
        if not self._busy.acquire(blocking=False):
            raise Error("a Paths belongs to one thread at a time")

    def __next__(self) -> Path:
        self._take()
        try:
            path = ctypes.POINTER(_Path)()
            status = _library.zobgp_reader_next(self._reader, ctypes.byref(path)) if self._reader else _END
            if status != _END:
                _check(status)
                return Path(path.contents)
        finally:
            self._busy.release()
        self.close()
        raise StopIteration

    def close(self) -> None:
        """Ends the reading before the file's end."""
        self._take()
        reader, self._reader = self._reader, None
        self._busy.release()
        if reader:
            self._end(reader)

    def __enter__(self) -> Paths:
        return self

    def __exit__(self, *_: object) -> None:
        self.close()

    def __del__(self) -> None:
        if self._reader and self._process() == self._opened_by:  # a child of fork lacks the reader's threads
            self._end(self._reader)
            self._reader = None

    def to_pandas(self) -> pandas.DataFrame:
        """The rest of the paths as a pandas.DataFrame: a row a path, lists as tuples of texts."""
        import pandas

        rows = [(path.time, path.peer, path.peer_as, path.prefixes, path.as_path, path.origin_as, path.next_hop,
                 path.standard.values, path.extended.values, path.ipv6_extended.values, path.large.values)
                for path in self]
        return pandas.DataFrame(rows, columns=["time", "peer", "peer_as", "prefixes", "as_path", "origin_as",
                                               "next_hop", *_types])


def paths(file: Union[str, os.PathLike[str]], tables: Optional[Tables] = None) -> Paths:
    """The paths of an MRT file, plain or as gzip, bzip2, xz or zstd made it; `-` is standard input."""
    return Paths(file, tables)


def parse(type: str, text: str) -> List:
    """As `Tables.parse`, in the tables that all share."""
    return _tables.parse(type, text)


def text(type: str, octets: bytes) -> str:
    """The canonical text of one community."""
    octets = bytes(memoryview(octets))
    return _given(_library.zobgp_text, _type_of(type), octets, len(octets)).decode()


def value(text: str) -> tuple[str, bytes]:
    """The type and the octets of one community, from any text that the tool bgpcomm reads."""
    type, length, octets = ctypes.c_int(), ctypes.c_size_t(), ctypes.create_string_buffer(20)
    given = _ended(text.encode(errors="backslashreplace"))
    _check(_library.zobgp_value(given, ctypes.byref(type), octets, ctypes.byref(length)))
    return next(name for name, code in _types.items() if code == type.value), octets.raw[: length.value]


def version() -> str:
    """The library's version."""
    return str(_library.zobgp_version(), "ascii")
