#!/usr/bin/env python3
"""Writes the software bill of materials of packages as SPDX 2.3 JSON, each beside its package, as PACKAGE.spdx.json.

    packaging/sbom.py PACKAGE...

A package is a .deb (the libraries that its programs load, with the Debian packages and versions of this machine, on which
it was built, and the headers that are compiled in), the .zip or .exe for Windows (what is linked in, as the zip's
licences/THIRD-PARTY.txt tells; for the .exe the zip must be beside it), or the source archive. The same package gives the
same bytes: what is unique comes from its checksum, and the time is SOURCE_DATE_EPOCH or that of the last commit.
"""
import hashlib
import json
import os
import re
import subprocess
import sys
import tempfile
import zipfile
from datetime import datetime, timezone
from pathlib import Path

PROJECT = Path(__file__).resolve().parents[1]
SUPPLIER = "Organization: Carvello developers"
OWN_LICENCE = "GPL-3.0-or-later"
COPYRIGHT = "Copyright (C) 2026 the Carvello developers"

# Licences of the Debian packages that the programs load or have in them, as their copyright files tell them.
LICENCES = {
    "libpugixml1v5": "MIT",
    "libpng16-16": "libpng-2.0",
    "libpng16-16t64": "libpng-2.0",
    "libstdc++6": "GPL-3.0-or-later WITH GCC-exception-3.1",
    "libgcc-s1": "GPL-3.0-or-later WITH GCC-exception-3.1",
    "libc6": "LGPL-2.1-or-later",
    "libcli11-dev": "BSD-3-Clause",
    "nlohmann-json3-dev": "MIT",
}
QT_LICENCE = "LGPL-3.0-only OR GPL-2.0-only OR GPL-3.0-only"
# What is compiled in from headers alone, by the Debian package that the program is in.
HEADERS = {"carvello-cli": ["libcli11-dev", "nlohmann-json3-dev"], "carvello": ["nlohmann-json3-dev"]}


def output_of(*command):
    return subprocess.run([str(word) for word in command], check=True, capture_output=True, text=True,
                          env={**os.environ, "LC_ALL": "C"}).stdout


def project_version():
    record = (PROJECT / "src" / "support" / "version_record.h").read_text()
    return re.search(r'FILE_VERSION "(\d+\.\d+\.\d+)', record)[1]


def created():
    seconds = os.environ.get("SOURCE_DATE_EPOCH")
    if not seconds:
        seconds = output_of("bash", "-c", '. "$1/packaging/source_date.sh"; source_date "$1"', "bash", PROJECT)
    return datetime.fromtimestamp(int(seconds), timezone.utc).strftime("%Y-%m-%dT%H:%M:%SZ")


def spdx_id(name):
    """The id of a package of that name: letters, digits, dots and dashes only."""
    return "SPDXRef-Package-" + re.sub(r"[^A-Za-z0-9.]+", "-", name.replace("+", "plus")).strip("-")


def entry(name, version, licence, purpose, **more):
    return {"SPDXID": spdx_id(name), "name": name, "versionInfo": version, "downloadLocation": "NOASSERTION",
            "filesAnalyzed": False, "licenseConcluded": licence, "licenseDeclared": licence,
            "copyrightText": "NOASSERTION", "primaryPackagePurpose": purpose, **more}


def purl(kind, name, version, architecture=None):
    quoted = {"+": "%2B", ":": "%3A", "~": "~"}
    version = "".join(quoted.get(character, character) for character in version)
    locator = f"pkg:{kind}/{name.replace('+', '%2B')}@{version}" + (f"?arch={architecture}" if architecture else "")
    return [{"referenceCategory": "PACKAGE-MANAGER", "referenceType": "purl", "referenceLocator": locator}]


def debian_entry(package):
    """A Debian package that is installed here."""
    version, architecture, source = output_of(
        "dpkg-query", "-W", "-f", "${Version}\t${Architecture}\t${source:Package}\n", package).splitlines()[0].split("\t")
    name = package.split(":")[0]
    licence = LICENCES.get(name, QT_LICENCE if source.startswith("qt6-") else "NOASSERTION")
    return entry(name, version, licence, "LIBRARY", supplier="Organization: Debian",
                 sourceInfo=f"built from Debian's source package {source}",
                 externalRefs=purl("deb/debian", name, version, architecture))


def needed_libraries(folder):
    """What the ELF files in the folder name as theirs to load, without those that are in the folder themselves."""
    files = [path for path in sorted(folder.rglob("*")) if path.is_file() and not path.is_symlink()]
    programs = [path for path in files if path.read_bytes()[:4] == b"\x7fELF"]
    found = set()
    for program in programs:
        found.update(re.findall(r"(?m)^\s+NEEDED\s+(\S+)$", output_of("objdump", "-p", program)))
    return sorted(found - {path.name for path in programs})


def packages_of_libraries(sonames):
    """The installed Debian packages that the loader takes the libraries from."""
    cache = output_of("/sbin/ldconfig", "-p")
    candidates = {}
    for soname in sonames:
        paths = re.findall(rf"(?m)^\s*{re.escape(soname)} \(libc6,x86-64[^)]*\) => (\S+)$", cache)
        candidates[soname] = list(dict.fromkeys(
            name for path in paths
            for name in (path, os.path.realpath(path), path.removeprefix("/usr"), "/usr" + path)))
    # All at once, for each question takes a look through all packages. It fails where it has no answer to one of them.
    told = subprocess.run(["dpkg-query", "-S", *sum(candidates.values(), [])], capture_output=True, text=True,
                          check=False, env={**os.environ, "LC_ALL": "C"}).stdout
    owners = {path: names.split(", ")[0] for names, path in re.findall(r"(?m)^(?!diversion by )(.+): (/.+)$", told)}
    found = set()
    for soname, paths in candidates.items():
        package = next((owners[path] for path in paths if path in owners), None)
        if not package:
            raise SystemExit(f"{soname}: no installed package has it, so its version is not known")
        found.add(package)
    return sorted(found)


def third_party(archive):
    """Name, version and licence of what is linked in for Windows."""
    with zipfile.ZipFile(archive) as content:
        name = next(name for name in content.namelist() if name.endswith("licences/THIRD-PARTY.txt"))
        text = content.read(name).decode()
    found = re.findall(r"(?m)^(\S.*)\n  version: (.+)\n  licence: (.+)\n", text)
    if not found:
        raise SystemExit(f"{archive}: {name} lists nothing")
    return found


def of_debian_package(path, main):
    fields = dict(line.split(": ", 1) for line in output_of("dpkg-deb", "-f", path).splitlines() if ": " in line)
    name = fields["Package"]
    main.update(entry(name, fields["Version"], OWN_LICENCE, "APPLICATION", copyrightText=COPYRIGHT,
                      externalRefs=purl("generic", name, fields["Version"])))
    with tempfile.TemporaryDirectory() as folder:
        subprocess.run(["dpkg-deb", "-x", str(path), folder], check=True)
        libraries = needed_libraries(Path(folder))
    parts = [(debian_entry(package), "DYNAMIC_LINK") for package in packages_of_libraries(libraries)]
    parts += [(debian_entry(package), "STATIC_LINK") for package in HEADERS[name]]
    own = re.findall(r"(carvello[a-z-]*) \(= ([^)]+)\)", fields.get("Depends", ""))
    parts += [(entry(other, version, OWN_LICENCE, "APPLICATION", copyrightText=COPYRIGHT, supplier=SUPPLIER),
               "DEPENDS_ON") for other, version in own]
    return parts


def of_windows_package(path, main):
    installer = path.suffix == ".exe"
    archive = path
    if installer:
        candidates = sorted(path.parent.glob("*windows*.zip"))
        if len(candidates) != 1:
            raise SystemExit(f"{path}: the zip that tells what is linked in is not beside it")
        archive = candidates[0]
    main.update(entry("Carvello for Windows" + (" (setup)" if installer else ""), project_version(), OWN_LICENCE,
                      "INSTALL" if installer else "APPLICATION", copyrightText=COPYRIGHT))
    # What the setup program itself is made of is not in the zip's programs.
    return [(entry(name, version, licence, "LIBRARY"), "STATIC_LINK")
            for name, version, licence in third_party(archive) if installer or "in the setup program" not in name]


def of_source_archive(_path, main):
    main.update(entry("carvello", project_version(), OWN_LICENCE, "SOURCE", copyrightText=COPYRIGHT))
    return []


def document(path):
    if path.suffix == ".deb":
        kind = of_debian_package
    elif path.suffix in (".zip", ".exe"):
        kind = of_windows_package
    elif re.search(r"\.tar(\.\w+)?$", path.name):
        kind = of_source_archive
    else:
        raise SystemExit(f"{path}: neither .deb, .zip, .exe nor .tar")
    data = path.read_bytes()
    digest = hashlib.sha256(data).hexdigest()
    main = {}
    parts = kind(path, main)
    main.update(packageFileName=path.name, supplier=SUPPLIER,
                checksums=[{"algorithm": "SHA1", "checksumValue": hashlib.sha1(data).hexdigest()},
                           {"algorithm": "SHA256", "checksumValue": digest}])
    packages = [main] + [part for part, _ in parts]
    relationships = [{"spdxElementId": "SPDXRef-DOCUMENT", "relationshipType": "DESCRIBES",
                      "relatedSpdxElement": main["SPDXID"]}]
    relationships += [{"spdxElementId": main["SPDXID"], "relationshipType": relation,
                       "relatedSpdxElement": part["SPDXID"]} for part, relation in parts]
    return {
        "spdxVersion": "SPDX-2.3", "dataLicense": "CC0-1.0", "SPDXID": "SPDXRef-DOCUMENT", "name": path.name,
        "documentNamespace": f"https://carvello.example/spdx/{path.name}-{digest}",
        "creationInfo": {"created": created(), "creators": [SUPPLIER, f"Tool: carvello-sbom-{project_version()}"]},
        "packages": packages, "relationships": relationships}


def main(arguments):
    if not arguments or arguments[0].startswith("-"):
        sys.exit(__doc__)
    for name in arguments:
        path = Path(name)
        target = path.with_name(path.name + ".spdx.json")
        target.write_text(json.dumps(document(path), indent=2) + "\n")
        print(target)


if __name__ == "__main__":
    main(sys.argv[1:])
