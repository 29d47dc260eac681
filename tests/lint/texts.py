"""Words for the user come from the translation files: texts.py RULE ROOT, where RULE is keys, literals
or selftest."""
import pathlib
import re
import sys
import tempfile
import xml.etree.ElementTree as tree

# What of the plural forms a language has (Qt's own rules).
FORMS = {"en": 2, "de": 2, "zh_CN": 1}
COMMENT = re.compile(r'//[^\n]*|/\*.*?\*/|("(?:[^"\\\n]|\\.)*")', re.S)
LITERALS = r'((?:\s*"(?:[^"\\\n]|\\.)*")+)'
KEY = re.compile(r"\b(?:localizedText|styledText|QT_TRID_NOOP|textKey)\(" + LITERALS)
PLACEHOLDER = re.compile(r"%(?:n|[1-9])")


def joined(literals):
    """What adjacent literals of C++ stand for."""
    words = "".join(re.findall(r'"((?:[^"\\\n]|\\.)*)"', literals))
    return words.replace("\\n", "\n").replace('\\"', '"').replace("\\\\", "\\")


def sources(root):
    for path in sorted((root / "src").rglob("*")):
        if path.suffix in (".h", ".cpp"):
            yield path, COMMENT.sub(lambda match: match[1] or "", path.read_text())


def keys(root):
    """Every key of the sources stands in every language, and nothing else does, with the same
    placeholders and the forms that the language has for a number."""
    used = {joined(match[1]) for _, text in sources(root) for match in KEY.finditer(text)}
    texts, faults = {}, []
    for language in FORMS:
        name = f"brightsweep_{language}.ts"
        table = texts[language] = {}
        order = []
        for message in tree.parse(root / "resources" / "texts" / name).iter("message"):
            key, translation = message.get("id"), message.find("translation")
            forms = [form.text or "" for form in translation.findall("numerusform")]
            order.append(key)
            table[key] = forms or [translation.text or ""]
            if translation.get("type") or not all(text.strip() for text in table[key]):
                faults.append(f"{name}: {key!r} is not translated")
            if (message.get("numerus") == "yes") != bool(forms) or \
                    forms and len(forms) != FORMS[language]:
                faults.append(f"{name}: {key!r} has {len(forms)} plural forms")
        faults += [f"{name}: {key!r} is missing" for key in sorted(used - set(table))]
        faults += [f"{name}: {key!r} is used nowhere" for key in sorted(set(table) - used)]
        if order != sorted(set(order)):
            faults.append(f"{name}: the keys are not in order, or one comes twice")

    def placeholders(forms):
        return {frozenset(PLACEHOLDER.findall(text)) for text in forms}
    for key, english in texts["en"].items():
        # One form may name the number in words.
        faults += [f"{key!r} has other placeholders in {language}"
                   for language, table in texts.items() if key in table
                   and frozenset.union(*placeholders(table[key])) !=
                   frozenset.union(*placeholders(english))]
    return faults


# The command line, the log and the terminal speak English to everybody.
SILENT = ("cli/", "foundation/", "helper/", "linux/", "platform/", "app/ui/ApplicationStart.cpp")
STRING = r"(?:QStringLiteral|QLatin1String|QString::fromLatin1)\("
WORDS = re.compile(r"(\w+\()?" + STRING + LITERALS)
READS_LIKE_WORDS = re.compile(r"[a-z]{2}[,.:!]? [A-Za-z%]|[a-z](?:…|\.\.\.|: ?)$")
MARKUP = re.compile(r"^<|[{}]|yyyy")
# What is no word to be read, though it looks like some.
NO_TEXT = ("setObjectName(", "setStyleSheet(", "startsWith(")
SHOWN = re.compile(r"\b(?:set(?:Text|ToolTip|AccessibleName|AccessibleDescription|WindowTitle|"
                   r"PlaceholderText|Title)|addAction|new QPushButton|new QLabel|addLine|"
                   r"(?:text|informativeText|summary|body|actionLabel|firstLine|secondLine) =)"
                   r"\(?\s*" + STRING + r'\s*"(\w[^"]*)"')


def literals(root):
    """No words for the user but those behind a key."""
    faults = []
    for path, text in sources(root):
        place = path.relative_to(root / "src").as_posix()
        if place.startswith(SILENT):
            continue
        found = [joined(match[2]) for match in WORDS.finditer(text) if match[1] not in NO_TEXT]
        found = [words for words in found if READS_LIKE_WORDS.search(words)]
        # A single word, where it is clearly one to be shown; the program's name is no word.
        found += [match[1] for match in SHOWN.finditer(text) if match[1] != "Brightsweep"]
        faults += [f"src/{place}: {words!r} stands behind no key" for words in sorted(set(found))
                   if not MARKUP.search(words)]
    return faults


def selftest(_):
    with tempfile.TemporaryDirectory() as folder:
        root = pathlib.Path(folder)
        (root / "src/ui").mkdir(parents=True)
        (root / "resources/texts").mkdir(parents=True)
        (root / "src/ui/A.cpp").write_text(
            'a(localizedText("A"), localizedText("B"), localizedText("C")); // localizedText("D")\n'
            'new QPushButton(QStringLiteral("Stop"), this); setObjectName(QStringLiteral("a b"));\n'
            'b = QStringLiteral("%1 of "\n "%2 free"); NSLog("two words");\n')
        for language in FORMS:
            (root / f"resources/texts/brightsweep_{language}.ts").write_text(
                '<TS><context><message id="A"><translation>%' + str(1 + (language == "de")) +
                '</translation></message><message id="B" numerus="yes"><translation><numerusform>%n'
                '</numerusform></translation></message><message id="' +
                ("D" if language == "zh_CN" else "C") +
                '"><translation>c</translation></message></context></TS>')
        # Two lack a plural form, one has another placeholder, one a key too few and one too many.
        faults = [] if len(keys(root)) == 5 else [f"keys finds {keys(root)}"]
        return faults + ([] if len(literals(root)) == 2 else [f"literals finds {literals(root)}"])


if __name__ == "__main__":
    found = globals()[sys.argv[1]](pathlib.Path(sys.argv[2]))
    print("\n".join(found))
    sys.exit(1 if found else 0)
