"""Installers of the component: an MSI for the machine and one for the current user, made by msitools' wixl.

The rows of the registry are those that the libraries write when they are registered; the system writes and removes them.
"""
import pathlib
import re
import struct
import subprocess
import sys
import tempfile
import uuid
import xml.etree.ElementTree as xml

# Identifiers follow from names below this one, so that each version tells the earlier ones of its scope.
NAMESPACE = uuid.UUID("6f0b9d0e-8d0c-4f55-9c3a-0a5c8a1b7d42")
MAKER = "The Halvane authors"
# Files of the zip that an installed component has no use for.
LEFT_OUT = {"register.cmd", "unregister.cmd"}
AUTOMATION_MARSHALLER = "{00020424-0000-0000-C000-000000000046}"
LIBRARY_VERSION = "1.0"
# Of its texts: English (United States), as the resources of the libraries say.
LANGUAGE = "1033"
# What a library's description of its version begins with.
VERSION_SIGNATURE = struct.pack("<L", 0xFEEF04BD)
# Where the contents lie while an installer is made.
FILES = "files"
SCOPES = {"perMachine": ("HKLM", ["ProgramFiles64Folder"]), "perUser": ("HKCU", ["LocalAppDataFolder", "Programs"])}


def guid(text):
    return "{" + str(uuid.uuid5(NAMESPACE, text)).upper() + "}"


def version_of(build):
    cache = (build / "CMakeCache.txt").read_text(encoding="utf-8")
    return re.search(r"^CMAKE_PROJECT_VERSION:\w+=(.*)$", cache, re.MULTILINE).group(1)


def identifiers(build):
    """The published identifiers by name, as the interface definitions have them: CLSID_clsExport, IID__dCollection …"""
    text = (build / "src" / "component" / "com" / "published" / "Halvane_i.c").read_text(encoding="ascii")
    found = {}
    for name, numbers in re.findall(r"^MIDL_DEFINE_GUID\(\w+, (\w+), (.*)\);$", text, re.MULTILINE):
        first, second, third, *rest = (int(number, 16) for number in numbers.split(","))
        found[name] = "{" + str(uuid.UUID(f"{first:08x}{second:04x}{third:04x}{bytes(rest).hex()}")).upper() + "}"
    return found


def named(known, prefix):
    return [(name.removeprefix(prefix), value) for name, value in known.items() if name.startswith(prefix)]


def rows_of_kind(known, file):
    """What programs of one kind see: key, name and value below the classes."""
    library = known["LIBID_Halvane"]
    for name, clsid in named(known, "CLSID_"):
        key = rf"CLSID\{clsid}"
        yield key, None, f"Halvane.{name}"
        yield rf"{key}\InprocServer32", None, f"[#{file}]"
        yield rf"{key}\InprocServer32", "ThreadingModel", "Apartment"
        yield rf"{key}\ProgID", None, f"Halvane.{name}"
        yield rf"{key}\Programmable", None, ""
        yield rf"{key}\TypeLib", None, library
        yield rf"{key}\VERSION", None, LIBRARY_VERSION
    for name, iid in named(known, "IID_"):
        key = rf"Interface\{iid}"
        yield key, None, name
        yield rf"{key}\ProxyStubClsid32", None, AUTOMATION_MARSHALLER
        yield rf"{key}\TypeLib", None, library
        yield rf"{key}\TypeLib", "Version", LIBRARY_VERSION


def shared_rows(known, file64, file32):
    """What programs of both kinds see."""
    for name, clsid in named(known, "CLSID_"):
        yield f"Halvane.{name}", None, f"Halvane.{name}"
        yield rf"Halvane.{name}\CLSID", None, clsid
    key = rf"TypeLib\{known['LIBID_Halvane']}\{LIBRARY_VERSION}"
    yield key, None, "Halvane"
    yield rf"{key}\0\win64", None, f"[#{file64}]"
    yield rf"{key}\0\win32", None, f"[#{file32}]"
    yield rf"{key}\FLAGS", None, "0"
    yield rf"{key}\HELPDIR", None, ""


class Source:
    """The source of one installer, as wixl reads it."""

    def __init__(self, scope, version):
        self.root, self.place = SCOPES[scope]
        self.scope = scope
        self.wix = xml.Element("Wix", xmlns="http://schemas.microsoft.com/wix/2006/wi")
        self.product = xml.SubElement(
            self.wix, "Product", Id=guid(f"{scope} {version}"), Name="Halvane", Language="1033", Version=version,
            Manufacturer=MAKER, UpgradeCode=guid(scope),
        )
        xml.SubElement(
            self.product, "Package", InstallerVersion="500", Compressed="yes", InstallScope=scope, Manufacturer=MAKER,
            Description=f"Halvane {version}",
        )
        newer = "A newer version of Halvane is installed; remove it first."
        xml.SubElement(self.product, "MajorUpgrade", DowngradeErrorMessage=newer)
        xml.SubElement(self.product, "MediaTemplate", EmbedCab="yes")
        xml.SubElement(self.product, "Property", Id="ARPNOMODIFY", Value="1")
        self.folders = {"": self.home()}
        self.feature = xml.Element("Feature", Id="All", Level="1")

    def home(self):
        folder = xml.SubElement(self.product, "Directory", Id="TARGETDIR", Name="SourceDir")
        folder = xml.SubElement(folder, "Directory", Id=self.place[0])
        for name in self.place[1:]:
            folder = xml.SubElement(folder, "Directory", Id=f"Folder{name}", Name=name)
        return xml.SubElement(folder, "Directory", Id="INSTALLDIR", Name="Halvane")

    def folder(self, path):
        if path not in self.folders:
            above, _, name = path.rpartition("/")
            identifier = "d" + uuid.uuid5(NAMESPACE, path).hex
            self.folders[path] = xml.SubElement(self.folder(above), "Directory", Id=identifier, Name=name)
        return self.folders[path]

    def add_component(self, path, is64=True):
        """A component below the folder of a file. @returns it and the file's identifier."""
        name = "c" + uuid.uuid5(NAMESPACE, path).hex
        component = xml.SubElement(
            self.folder(path.rpartition("/")[0]), "Component", Id=name, Guid=guid(f"{self.scope} {path}"),
            Win64="yes" if is64 else "no",
        )
        xml.SubElement(self.feature, "ComponentRef", Id=name)
        return component

    def add_file(self, component, path):
        file = "f" + uuid.uuid5(NAMESPACE, path).hex
        name = path.rpartition("/")[2]
        xml.SubElement(component, "File", Id=file, Name=name, Source=f"{FILES}/{path}", KeyPath="yes")
        return file

    def add_rows(self, component, rows):
        for key, name, value in rows:
            row = xml.SubElement(component, "RegistryValue", Root=self.root, Key=rf"Software\Classes\{key}", Type="string")
            row.set("Value", value)
            if name is not None:
                row.set("Name", name)

    def written(self, path):
        self.product.append(self.feature)
        xml.ElementTree(self.wix).write(path, encoding="utf-8", xml_declaration=True)


def source_of(package, build, scope, version):
    source = Source(scope, version)
    known = identifiers(build)
    identifier = {}
    components = {}
    for path in package:
        if path not in LEFT_OUT:
            components[path] = source.add_component(path, is64=path != "x86/Halvane.dll")
            identifier[path] = source.add_file(components[path], path)
    file64, file32 = identifier["Halvane.dll"], identifier["x86/Halvane.dll"]
    source.add_rows(components["Halvane.dll"], rows_of_kind(known, file64))
    source.add_rows(components["Halvane.dll"], shared_rows(known, file64, file32))
    source.add_rows(components["x86/Halvane.dll"], rows_of_kind(known, file32))
    return source


def file_version(data):
    """What the resource of a library says; "" for a file that has none."""
    at = data.find(VERSION_SIGNATURE)
    if at < 0:
        return ""
    most, least = struct.unpack_from("<LL", data, at + 8)
    return f"{most >> 16}.{most & 0xFFFF}.{least >> 16}.{least & 0xFFFF}"


def tell_versions(package, output):
    """A file that an installer knows no version of never replaces one that has one."""
    for path, data in package.items():
        version = file_version(data) if path.endswith(".dll") else ""
        if version:
            file = "f" + uuid.uuid5(NAMESPACE, path).hex
            query = f"UPDATE `File` SET `Version` = '{version}', `Language` = '{LANGUAGE}' WHERE `File` = '{file}'"
            subprocess.run(["msibuild", output, "-q", query], check=True, capture_output=True)


def write(package, build, scope, output, version=None):
    """Writes one installer. @param package: the bytes by name; @param scope: one of SCOPES."""
    with tempfile.TemporaryDirectory() as name:
        for path, data in package.items():
            file = pathlib.Path(name, FILES, path)
            file.parent.mkdir(parents=True, exist_ok=True)
            file.write_bytes(data)
        description = pathlib.Path(name, "Halvane.wxs")
        source_of(package, build, scope, version or version_of(build)).written(description)
        output.unlink(missing_ok=True)
        # It finds the files below the folder in which it runs.
        command = ["wixl", "--arch", "x64", "--output", output.resolve(), description.name]
        made = subprocess.run(command, cwd=name, check=False, capture_output=True, text=True)
        if made.returncode != 0:
            sys.exit(f"pack-windows: wixl failed: {(made.stderr + made.stdout).strip()}")
    tell_versions(package, output)
