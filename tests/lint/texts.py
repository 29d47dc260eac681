"""The translation files hold what the sources ask for: texts.py keys ROOT."""
import pathlib
import re
import sys
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


if __name__ == "__main__":
    found = globals()[sys.argv[1]](pathlib.Path(sys.argv[2]))
    print("\n".join(found))
    sys.exit(1 if found else 0)
