"""pseudo_translation.py SOURCE.ts TARGET.ts: a translation into no language.

Every text is put in brackets and made a fifth longer, so that a text which the translators' tools
do not find stays without them, and one that needs room shows where there is none.
"""

import sys
import xml.etree.ElementTree as ElementTree

tree = ElementTree.parse(sys.argv[1])
tree.getroot().set("language", "eo")
for message in tree.iter("message"):
    source = message.find("source").text
    translation = message.find("translation")
    translation.attrib.pop("type", None)
    text = "‹" + source + "n" * max(2, len(source) // 5) + "›"
    if message.get("numerus") == "yes":
        for form in list(translation):
            translation.remove(form)
        for _ in range(2):
            ElementTree.SubElement(translation, "numerusform").text = text
    else:
        translation.text = text
tree.write(sys.argv[2], encoding="utf-8", xml_declaration=True)
