"""What SPDX 2.3 asks of a document in JSON, written down from its chapters; the fields that ours use, and no others."""
import re

ID = re.compile(r"SPDXRef-[A-Za-z0-9.-]+")
DATE = re.compile(r"\d{4}-\d\d-\d\dT\d\d:\d\d:\d\dZ")
CREATOR = re.compile(r"(Tool: \S.*|(Person|Organization): \S.*)")
SUPPLIER = re.compile(r"NOASSERTION|(Person|Organization): \S.*")
DIGESTS = {"SHA1": 40, "SHA256": 64}
PURPOSES = {"APPLICATION", "LIBRARY", "SOURCE", "INSTALL"}
RELATIONS = {"DESCRIBES", "DYNAMIC_LINK", "STATIC_LINK", "DEPENDS_ON"}
LICENCES = {"GPL-3.0-or-later", "GPL-3.0-only", "GPL-2.0-only", "LGPL-3.0-only", "LGPL-2.1-or-later", "MIT", "Zlib", "FTL",
            "libpng-2.0", "BSD-3-Clause", "ZPL-2.1"}
EXCEPTIONS = {"GCC-exception-3.1", "Qt-GPL-exception-1.0"}
DOCUMENT = {"spdxVersion", "dataLicense", "SPDXID", "name", "documentNamespace", "creationInfo", "packages",
            "relationships"}
NEEDED = {"SPDXID", "name", "downloadLocation"}
PACKAGE = NEEDED | {"versionInfo", "filesAnalyzed", "licenseConcluded", "licenseDeclared", "copyrightText", "supplier",
                    "primaryPackagePurpose", "packageFileName", "checksums", "externalRefs", "sourceInfo"}


def licence_problem(text):
    if text in ("NOASSERTION", "NONE"):
        return None
    for part in re.split(r" (?:AND|OR) ", text):
        licence, _, exception = part.partition(" WITH ")
        if licence not in LICENCES or (exception and exception not in EXCEPTIONS):
            return f"{part} is no licence of SPDX's list that is known here"
    return None


def package_problems(package):
    name = package.get("name", "?")
    if not NEEDED <= package.keys() <= PACKAGE:
        yield f"{name}: fields {sorted(package.keys() ^ NEEDED)}"
    if not ID.fullmatch(package["SPDXID"]):
        yield f"{name}: id {package['SPDXID']}"
    if package["filesAnalyzed"] is not False:
        yield f"{name}: files are not listed, so they were not analysed"
    for field in ("licenseConcluded", "licenseDeclared"):
        problem = licence_problem(package[field])
        if problem:
            yield f"{name}: {problem}"
    if not package.get("versionInfo"):
        yield f"{name}: no version"
    if package["primaryPackagePurpose"] not in PURPOSES:
        yield f"{name}: purpose {package['primaryPackagePurpose']}"
    if not SUPPLIER.fullmatch(package.get("supplier", "NOASSERTION")):
        yield f"{name}: supplier {package['supplier']}"
    for checksum in package.get("checksums", ()):
        if not re.fullmatch(f"[0-9a-f]{{{DIGESTS[checksum['algorithm']]}}}", checksum["checksumValue"]):
            yield f"{name}: checksum {checksum}"
    for reference in package.get("externalRefs", ()):
        if reference.keys() != {"referenceCategory", "referenceType", "referenceLocator"} or \
                not re.fullmatch(r"pkg:[a-z]+(/[\w.%-]+)+@[\w.%~-]+(\?arch=\w+)?", reference["referenceLocator"]):
            yield f"{name}: reference {reference}"


def problems(document):
    if document.keys() != DOCUMENT:
        yield f"fields {sorted(document.keys() ^ DOCUMENT)}"
    wanted = {"spdxVersion": "SPDX-2.3", "dataLicense": "CC0-1.0", "SPDXID": "SPDXRef-DOCUMENT"}
    for key, value in wanted.items():
        if document[key] != value:
            yield f"{key}: {document[key]}"
    if not re.fullmatch(r"https://[^#\s]+", document["documentNamespace"]):
        yield f"namespace {document['documentNamespace']}"
    info = document["creationInfo"]
    if not DATE.fullmatch(info["created"]) or not info["creators"]:
        yield f"creation {info}"
    yield from (f"creator {creator}" for creator in info["creators"] if not CREATOR.fullmatch(creator))
    ids = [package["SPDXID"] for package in document["packages"]]
    if len(set(ids)) != len(ids):
        yield f"an id stands twice: {ids}"
    for package in document["packages"]:
        yield from package_problems(package)
    related = {relation["relatedSpdxElement"] for relation in document["relationships"]}
    if related != set(ids):
        yield f"relations and packages differ: {related ^ set(ids)}"
    for relation in document["relationships"]:
        if relation.keys() != {"spdxElementId", "relationshipType", "relatedSpdxElement"} or \
                relation["relationshipType"] not in RELATIONS or \
                relation["spdxElementId"] not in {"SPDXRef-DOCUMENT", *ids}:
            yield f"relation {relation}"


def related(document, kind):
    """Names and versions of the packages to which there is such a relation."""
    ids = {relation["relatedSpdxElement"] for relation in document["relationships"]
           if relation["relationshipType"] == kind}
    return {package["name"]: package["versionInfo"] for package in document["packages"] if package["SPDXID"] in ids}
