"""Every text of the window is translated, completely and so that it fits where it is shown.

The sources are searched by the same script that brings the translations up to date.
"""
import re
import shutil
import subprocess
import tempfile
import unittest
import xml.etree.ElementTree as ElementTree
from collections import Counter
from pathlib import Path

PROJECT = Path(__file__).resolve().parents[2]
FOLDER = PROJECT / "resources" / "translations"
LANGUAGES = ("de", "fr")


def messages(path):
    """(context, source): translation; None where there is none."""
    found = {}
    for context in ElementTree.parse(path).getroot().iter("context"):
        for message in context.iter("message"):
            translation = message.find("translation")
            complete = translation is not None and translation.get("type") is None and translation.text
            key = (context.findtext("name"), message.findtext("source"))
            found[key] = translation.text if complete else None
    return found


def places(text):
    return Counter(re.findall(r"%\d+", text))


def mnemonic(text):
    """The underlined letter; None where there is none."""
    found = re.search(r"&(.)", text.replace("&&", ""))
    return found.group(1).lower() if found else None


def box_texts(path):
    """What the engine shows in message boxes, as the table names it."""
    code = re.sub(r'"\s*\n\s*"', "", path.read_text())
    literals = re.findall(r'"((?:[^"\\]|\\.)*)"', code)
    for literal in literals:
        if not re.search(r"[.?]$", literal) or " " not in literal:
            continue
        text = literal.replace("\\n", "\n")
        number = iter(range(1, 10))
        yield re.sub(r"%(?:d|s|zu|lld)", lambda _: f"%{next(number)}", text)


# Where the reasons are made that message boxes tell of a failure: what makes one, and the files that hold it.
REASON = re.compile(r"""(?:\b(?:Fails?|Refuse|Shortfall|InputFails|refuse)\(|
                        \b(?:m_strLastError|\w*[eE]rror|\w*[rR]eason|\w*[pP]roblem)\ \+?=\ |
                        \breturn\ )
                        ([^;{]*);""", re.VERBOSE)
REASON_FILES = ("engine/background_thread_reader.cpp", "engine/block_reader.cpp", "engine/entry_writer.cpp",
                "engine/existing_output.cpp", "engine/input_file.cpp", "engine/job_plan.cpp",
                "engine/library_converter.cpp", "engine/output_account.cpp", "engine/spectrum_converter.cpp",
                "input/wave_file_reader.cpp", "jobs/entry_spec.cpp", "jobs/job_file.cpp", "jobs/list_job.cpp",
                "recording/riff_file_writer.cpp", "recording/wave_file_data.cpp", "support/whole_file.cpp")


def reasons(path):
    """The texts of which the reasons are made."""
    code = re.sub(r'"\s*\n\s*"', "", re.sub(r"//.*", "", path.read_text()))
    for expression in REASON.findall(code):
        for literal in re.findall(r'"((?:[^"\\]|\\.)*)"', expression):
            if re.search("[a-z]{2} [a-z]{2}", literal):
                yield literal.replace('\\"', '"')


def plain(text):
    """Without what a text tells of, which may stand at its ends."""
    return re.sub(r"%(?:\.\*s|[0-9]*(?:d|s|zu|lld|llu|u|X)|[1-9])", "%", text).strip(" %:-").removeprefix("[WARNING]")


class TestTranslations(unittest.TestCase):
    def setUp(self):
        self.translations = {language: messages(FOLDER / f"carvello_{language}.ts") for language in LANGUAGES}

    def each(self):
        for language, texts in self.translations.items():
            for (context, source), text in texts.items():
                with self.subTest(language=language, context=context, source=source):
                    yield source, text

    def test_every_text_of_the_sources_is_there_and_no_other(self):
        with tempfile.TemporaryDirectory() as folder:
            for language in LANGUAGES:
                shutil.copy(FOLDER / f"carvello_{language}.ts", folder)
            subprocess.run([FOLDER / "update.sh", folder], check=True)
            for language in LANGUAGES:
                fresh = messages(Path(folder) / f"carvello_{language}.ts")
                self.assertGreater(len(fresh), 250)
                self.assertEqual(sorted(fresh), sorted(self.translations[language]),
                                 "resources/translations/update.sh brings them up to date")

    def test_every_text_is_translated(self):
        for _, text in self.each():
            self.assertTrue(text)

    def test_what_a_text_tells_of_stands_in_its_translation(self):
        for source, text in self.each():
            self.assertEqual(places(text or ""), places(source))

    def test_blanks_and_line_ends_are_kept(self):
        for source, text in self.each():
            self.assertEqual((text or "").count("\n"), source.count("\n"))
            self.assertEqual((text or "")[:1] == " ", source[:1] == " ")

    def test_a_text_has_an_underlined_letter_where_its_source_has_one(self):
        for source, text in self.each():
            letter = mnemonic(text or "")
            self.assertEqual(letter is None, mnemonic(source) is None)
            if letter is not None:
                self.assertRegex(letter, "[a-z0-9]")  # what every keyboard has

    def test_underlined_letters_of_a_window_differ(self):
        for form in sorted((PROJECT / "resources").glob("*.ui")):
            root = ElementTree.parse(form).getroot()
            context = root.findtext("class")
            # Texts that stand on the window, not those of menus, which have letters of their own.
            shown = [string.text or "" for widget in root.iter("widget") for prop in widget.findall("property")
                     if prop.get("name") == "text" for string in prop.iter("string") if widget.get("class") != "QMenu"]
            for language, texts in self.translations.items():
                with self.subTest(form=form.name, language=language):
                    letters = Counter(mnemonic(texts[(context, text)] or "") for text in shown if mnemonic(text))
                    self.assertEqual([letter for letter, count in letters.items() if count > 1], [])

    def test_what_the_engine_shows_in_message_boxes_is_in_the_table(self):
        known = {source for context, source in self.translations["de"] if context == "Texts"}
        texts = {text for name in ("entry_list.cpp", "job_control.cpp", "job_plan.cpp")
                 for text in box_texts(PROJECT / "src" / "engine" / name)}
        self.assertGreater(len(texts), 8)
        self.assertEqual(sorted(texts - known), [])

    def test_the_reasons_of_failures_are_in_the_table(self):
        known = {plain(source) for context, source in self.translations["de"] if context == "Texts"}
        found = {plain(text) for name in REASON_FILES for text in reasons(PROJECT / "src" / name)}
        self.assertGreater(len(found), 60)
        # Some are put together where they are used.
        missing = [text for text in found if not any(source.startswith(text) for source in known)]
        # Those are about options, and about stretches, of which the window cuts none.
        elsewhere = ("no key=value", "stretch of the")
        self.assertEqual([text for text in missing if not any(part in text for part in elsewhere)], [])


if __name__ == "__main__":
    unittest.main()
