"""Which folder of src may include which, and what in a tree of sources goes against it.

    python3 tests/layers/layers.py [SRC]

prints what does, a line each, and ends with exit code 1 when there is any.
"""
import re
import sys
from pathlib import Path

# What a folder may include besides itself. The downconverter is reached at run time only, so no folder includes it, and
# it includes none but the leaf.
MAY_INCLUDE = {
    "ui": {"doctor", "jobs", "overview", "engine", "input", "recording", "spectrum", "dsp", "support"},
    "cli": {"cluster", "doctor", "jobs", "overview", "engine", "input", "recording", "spectrum", "dsp", "support"},
    "cluster": {"jobs", "engine", "input", "recording", "dsp", "support"},
    "jobs": {"engine", "input", "recording", "support"},
    "overview": {"engine", "input", "recording", "spectrum", "dsp", "support"},
    "doctor": {"engine", "dsp", "support", "fourier"},
    "engine": {"input", "recording", "spectrum", "dsp", "support", "fourier"},
    "input": {"recording", "support"},
    "recording": {"support"},
    "spectrum": {"dsp", "support", "fourier"},
    "dsp": {"support", "fourier"},
    "support": set(),
    "vantrel": {"fourier"},
    "fourier": set(),
}
# Libraries of others that are one folder's business, or one file's where they cost every file that sees them seconds.
BELONGS_TO = {
    "Q": {"ui"},  # <QString> and all of Qt's
    "CLI/": {"cli/command_line.cpp"},
    "nlohmann/": {"cluster", "jobs", "recording", "input", "support"},
    "png.h": {"cli"},
    "pugixml": {"recording", "input"},
    "windows.h": {"support", "ui"},
}
LIBRARY = "carvello_"
# The library of controls in src/ui, which knows neither the dialog nor what lies below it but support.
CONTROLS = "carvello_controls"

INCLUDE = re.compile(r'^[ \t]*#[ \t]*include[ \t]*(["<])([^">]+)[">]', re.MULTILINE)
SYSTEM_CONDITION = re.compile(r"^[ \t]*#[ \t]*(?:el)?if.*\b(_WIN32|_WIN64|__linux__|__unix__|__APPLE__|_MSC_VER)\b",
                              re.MULTILINE)
SOURCES = (".h", ".cpp", ".inc")


def includes(file):
    """The includes of a file: pairs of the name and whether it stands in quotes."""
    return [(name, quote == '"') for quote, name in INCLUDE.findall(file.read_text(encoding="utf-8"))]


def include_problems(src):
    for folder in sorted(path for path in src.iterdir() if path.is_dir()):
        if folder.name not in MAY_INCLUDE:
            yield f"{folder.name}: a folder that no rule is known for"
            continue
        for file in sorted(path for path in folder.rglob("*") if path.suffix in SOURCES):
            for name, quoted in includes(file):
                place = f"{folder.name}/{file.relative_to(folder)}"
                problem = own_problem(src, folder.name, name) if quoted else foreign_problem(place, name)
                if problem:
                    yield f"{file.relative_to(src)}: {name}: {problem}"
            for condition in SYSTEM_CONDITION.findall(file.read_text(encoding="utf-8")):
                yield f"{file.relative_to(src)}: {condition}: what differs between systems is a file of its own"


def own_problem(src, folder, name):
    """Why the folder may not include a header of ours; nothing when it may."""
    if ".." in Path(name).parts or name.startswith("/"):
        return "a path that leads out of its folder"
    target = name.split("/")[0] if "/" in name else folder
    if "/" not in name:
        made_of_a_form = folder == "ui" and name.startswith("ui_")
        if not made_of_a_form and not (src / folder / name).is_file():
            return "no header of this folder, and others are included by their folder's name"
    elif target not in MAY_INCLUDE:
        return "no folder of src"
    elif not (src / name).is_file():
        return "no such header"
    if target != folder and target not in MAY_INCLUDE[folder]:
        return f"{folder} may not include {target}"
    return None


def foreign_problem(place, name):
    """The same for a header of others; `place`: the file, with its folder in front."""
    if name.split("/")[0] in MAY_INCLUDE:
        return "a header of ours, which stands in quotes"
    for beginning, owners in BELONGS_TO.items():
        if name.startswith(beginning) and not {place, place.split("/")[0]} & owners:
            return f"belongs to {' and '.join(sorted(owners))}"
    return None


def libraries(cmake):
    """Of a CMakeLists.txt: the sources and the links of each library, by its name."""
    text = re.sub(r"#.*", "", cmake.read_text(encoding="utf-8"))
    found = {}
    for name, body in re.findall(r"carvello_library\(\s*(\w+)([^)]*)\)", text):
        sources, _, links = body.partition("DEPENDS")
        found[name] = (sources.split()[1:], links.split())
    return found


def further_links(cmake):
    """Pairs of a target and what it links by a command of its own."""
    text = re.sub(r"#.*", "", cmake.read_text(encoding="utf-8"))
    for name, body in re.findall(r"target_link_libraries\(\s*(\w+)([^)]*)\)", text):
        yield from ((name, link) for link in body.split())


def link_problems(src):
    """What a folder builds links what the folder may include, and nothing above it."""
    for cmake in sorted(src.glob("*/CMakeLists.txt")):
        folder = cmake.parent.name
        allowed = {LIBRARY + name for name in (folder, "warnings", *MAY_INCLUDE.get(folder, ()))}
        if folder == "ui":
            allowed.add(CONTROLS)
        links = [(library, link) for library, (_, all_links) in libraries(cmake).items() for link in all_links]
        for library, link in [*links, *further_links(cmake)]:
            if link.startswith(LIBRARY) and link not in allowed:
                yield f"{folder}/CMakeLists.txt: {library} may not link {link}"


def control_problems(src):
    """Whatever the controls include, directly or through headers, is theirs or of support."""
    cmake = src / "ui" / "CMakeLists.txt"
    if not cmake.is_file() or CONTROLS not in libraries(cmake):
        return
    known = libraries(cmake)
    sources = {library: {Path(name).stem for name in names} for library, (names, _) in known.items()}
    of_the_dialog = set().union(*(names for library, names in sources.items() if library != CONTROLS))
    waiting = [f"ui/{name}.cpp" for name in sorted(sources[CONTROLS])]
    seen = set()
    while waiting:
        name = waiting.pop()
        file = src / name
        if name in seen or not file.is_file():
            continue
        seen.add(name)
        for included, quoted in includes(file):
            folder, _, rest = included.partition("/")
            if not quoted or folder == "support" or not rest:
                continue
            if folder != "ui" or Path(rest).stem in of_the_dialog:
                yield f"{name}: {included}: the controls know neither the dialog nor the engine"
            waiting.append(included)


def problems(src):
    return [*include_problems(src), *link_problems(src), *control_problems(src)]


if __name__ == "__main__":
    found = problems(Path(sys.argv[1]) if len(sys.argv) > 1 else Path(__file__).resolve().parents[2] / "src")
    print("\n".join(found) or "every include points down")
    sys.exit(1 if found else 0)
