#!/usr/bin/env python3
"""Checks the JSON schema of decks against what docpage accepts, refuses and prints.

Arguments: the schema, the sample deck, docpage.
"""

import json
import pathlib
import shutil
import subprocess
import sys
import tempfile

import jsonschema

schema_file, sample_file, docpage = map(pathlib.Path, sys.argv[1:])
schema = json.loads(schema_file.read_text())
jsonschema.Draft202012Validator.check_schema(schema)
validator = jsonschema.Draft202012Validator(schema)

faults = []


def expect(what, expected, is_valid):
    if expected != is_valid:
        faults.append(f"{what}: {'valid' if is_valid else 'invalid'}")


def deck(slide=None, **members):
    return {"width": 1, "height": 1, "slides": [{} if slide is None else slide], **members}


def shape(**members):
    return deck({"shapes": [{"id": 1, "picture": None, "width": 1, "height": 1, **members}]})


def effect(**members):
    return deck({"effects": [{"shape": 1, **members}]})


def without(document, key):
    return {name: value for name, value in document.items() if name != key}


def unsized(*backgrounds):
    return {"slides": [{} if name is None else {"background": name} for name in backgrounds]}


picture = {"base64": "AAAA"}
pixel = {  # a PNG picture of 1 x 1
    "base64": "iVBORw0KGgoAAAANSUhEUgAAAAEAAAABCAAAAAA6fptVAAAACklEQVR4nGNgAAAAAgABSK+kcQAAAABJRU5ErkJggg=="
}
right = [
    deck(),
    deck({"pageId": 65535, "background": None, "transition": {}, "shapes": [], "effects": []}),
    deck(width="nan", height="-inf"),
    deck(width="0xFFC00001", height="-0"),
    deck(width="0x7f800001", height="0x3f800000"),
    unsized(pixel),
    unsized(None, pixel, picture),
    {"files": [unsized(None, pixel)]},
    deck({"shapes": [{"id": 1, "picture": pixel}, {"id": 1, "picture": pixel, "width": 2}]}),
    shape(picture={"base64": ""}),
    deck(width=3.4028235e38, height=-1e-45),
    {"$schema": "deck.schema.json", **deck()},
    {"files": [deck(), {"width": 1, "height": 2, "slides": []}]},
    deck({"background": picture}),
    deck({"background": {"base64": ""}}),
    deck({"background": {"base64": "AA=="}}),
    deck({"transition": {"hidden": True, "entryEffect": -32768, "advanceOnClick": -128}}),
    shape(picture=picture, left=-1.5, top=1e9),
    shape(id=1.0),
    effect(),
    effect(exit=True, trigger="after", duration=0, effectNo=-5, autoReverse=127),
    effect(trigger=0),
]
wrong = [
    None, 1, "text", [], {},
    {"slides": []},
    {"slides": {}},
    {"files": []},
    {"files": [{}]},
    {"files": [{"slides": []}]},
    {"files": [{"width": 1, "slides": [{}]}]},
    unsized(None),
    unsized(None, None),
    {"slides": [{"background": None}]},
    {"width": 1, **unsized(None)},
    {"height": 1, **unsized(None)},
    {"files": [deck()], "slides": [{}]},
    {"files": [deck()], "width": 1},
    deck(slide_=1),
    deck(width="1"),
    deck(width=True),
    deck(width=None),
    deck(width=1e39),
    deck(height="NaN"),
    deck(height="0x7fc0000"),
    deck(height="0x7fc000001"),
    without(deck(), "slides"),
    deck([]),
    deck({"pageid": 1}),
    deck({"pageId": -1}),
    deck({"pageId": 65536}),
    deck({"pageId": 0.5}),
    deck({"background": 1}),
    deck({"background": ""}),
    deck({"background": {}}),
    deck({"background": {"base64": 1}}),
    deck({"background": {"base64": "AAA"}}),
    deck({"background": {"base64": "A A="}}),
    deck({"background": {**picture, "file": "a.png"}}),
    deck({"transition": None}),
    deck({"transition": {"speed": 1}}),
    deck({"transition": {"hidden": "true"}}),
    deck({"shapes": {}}),
    deck({"shapes": [{}]}),
    deck({"shapes": [{"id": 1}]}),
    deck({"shapes": [{"picture": None, "width": 1, "height": 1}]}),
    deck({"shapes": [{"id": 1, "picture": None}]}),
    deck({"shapes": [{"id": 1, "picture": None, "width": 1}]}),
    deck({"shapes": [{"id": 1, "picture": {"base64": ""}, "height": 1}]}),
    shape(id=-1),
    shape(id="1"),
    shape(pitcure="a.png"),
    shape(left="10"),
    deck({"effects": [{}]}),
    deck({"effects": [1]}),
    effect(shape=65536),
    effect(exit="yes"),
    effect(exit=128),
    effect(exit=-1.5),
    effect(trigger="Click"),
    effect(trigger=-129),
    effect(trigger=None),
    effect(duration="fast"),
    effect(effectNo=32768),
    effect(timing=1),
]


with tempfile.TemporaryDirectory() as name:
    folder = pathlib.Path(name)

    def builds(deck_file):
        build = [docpage, "build", deck_file, "-o", folder / "new", "--force"]
        return subprocess.run(build, capture_output=True).returncode == 0

    def check_printed(what):
        model = [docpage, "model", "--json", *sorted((folder / "new").iterdir())]
        printed = subprocess.run(model, capture_output=True, check=True).stdout
        expect(f"what is printed of {what}", True, validator.is_valid(json.loads(printed)))
        shutil.rmtree(folder / "new")

    for documents, expected in ((right, True), (wrong, False)):
        for document in documents:
            expect(f"{document} by the schema", expected, validator.is_valid(document))
            (folder / "deck.json").write_text(json.dumps(document))
            is_built = builds(folder / "deck.json")
            expect(f"{document} by docpage", expected, is_built)
            if is_built:
                check_printed(document)

    expect("the sample", True, validator.is_valid(json.loads(sample_file.read_text())))
    if builds(sample_file):
        check_printed("the sample")
    else:
        faults.append("the sample is not built")

print("\n".join(faults))
sys.exit(1 if faults else 0)
