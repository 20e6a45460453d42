"""Builds wheel and source archive of this folder with nothing but Python: the interface of PEP 517."""
import base64
import hashlib
import io
import pathlib
import re
import tarfile
import zipfile

_here = pathlib.Path(__file__).parent


def _field(name):
    return re.search(f'^{name} = "(.*)"$', (_here / "pyproject.toml").read_text(), re.MULTILINE)[1]


def _metadata():
    return "\n".join((
        "Metadata-Version: 2.1", f"Name: {_field('name')}", f"Version: {_field('version')}",
        f"Summary: {_field('description')}", f"Requires-Python: {_field('requires-python')}",
        "Description-Content-Type: text/markdown", "", (_here / "README.md").read_text())).encode()


def _modules():
    return [file for file in sorted((_here / _field("name")).iterdir()) if file.suffix in (".py", ".typed")]


def build_wheel(wheel_directory, config_settings=None, metadata_directory=None):
    name, version = _field("name"), _field("version")
    info = f"{name}-{version}.dist-info"
    files = {str(file.relative_to(_here)): file.read_bytes() for file in _modules()}
    files[f"{info}/METADATA"] = _metadata()
    files[f"{info}/WHEEL"] = b"Wheel-Version: 1.0\nGenerator: zobgp\nRoot-Is-Purelib: true\nTag: py3-none-any\n"
    record = "".join(
        f"{file},sha256={base64.urlsafe_b64encode(hashlib.sha256(octets).digest()).rstrip(b'=').decode()},{len(octets)}\n"
        for file, octets in files.items())
    files[f"{info}/RECORD"] = (record + f"{info}/RECORD,,\n").encode()
    wheel = f"{name}-{version}-py3-none-any.whl"
    with zipfile.ZipFile(pathlib.Path(wheel_directory) / wheel, "w") as archive:
        for file, octets in files.items():
            archive.writestr(zipfile.ZipInfo(file, (1980, 1, 1, 0, 0, 0)), octets, zipfile.ZIP_DEFLATED)
    return wheel


def build_sdist(sdist_directory, config_settings=None):
    folder = f"{_field('name')}-{_field('version')}"
    with tarfile.open(pathlib.Path(sdist_directory) / f"{folder}.tar.gz", "w:gz") as archive:
        for file in (_here / "pyproject.toml", _here / "README.md", _here / "backend.py", *_modules()):
            archive.add(file, f"{folder}/{file.relative_to(_here)}")
        metadata = tarfile.TarInfo(f"{folder}/PKG-INFO")
        metadata.size = len(_metadata())
        archive.addfile(metadata, io.BytesIO(_metadata()))
    return f"{folder}.tar.gz"
