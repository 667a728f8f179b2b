"""Checks the package of a DOCX file and prints its paragraphs: read_docx.py FILE. JSON on standard output: "problems"
and, as python-docx reads them, "paragraphs"."""

import json
import posixpath
import sys
import xml.etree.ElementTree as xml
import zipfile

import docx

TYPES = "{http://schemas.openxmlformats.org/package/2006/content-types}"
RELATIONS = "{http://schemas.openxmlformats.org/package/2006/relationships}"


def problems_of(package):
    problems = []
    if package.testzip():
        problems.append(f"damaged: {package.testzip()}")
    names = package.namelist()
    if len(set(names)) != len(names):
        problems.append("a name comes twice")
    trees = {}
    for name in names:
        try:
            trees[name] = xml.fromstring(package.read(name))
        except xml.ParseError as error:
            problems.append(f"{name}: {error}")
    types = trees["[Content_Types].xml"]
    defaults = {item.get("Extension") for item in types.iter(TYPES + "Default")}
    overrides = {item.get("PartName") for item in types.iter(TYPES + "Override")}
    for name in names:
        if name != "[Content_Types].xml" and "/" + name not in overrides and name.rsplit(".", 1)[-1] not in defaults:
            problems.append(f"{name} has no type")
    problems += [f"{part} is not there" for part in overrides if part[1:] not in names]
    for name in names:
        if not name.endswith(".rels"):
            continue
        folder = posixpath.dirname(posixpath.dirname(name))
        for relation in trees[name].iter(RELATIONS + "Relationship"):
            target = posixpath.normpath(posixpath.join(folder, relation.get("Target")))
            if target not in names:
                problems.append(f"{name} leads to {target}, which is not there")
    return problems


with zipfile.ZipFile(sys.argv[1]) as package:
    problems = problems_of(package)
paragraphs = [paragraph.text for paragraph in docx.Document(sys.argv[1]).paragraphs]
print(json.dumps({"problems": problems, "paragraphs": paragraphs}))
