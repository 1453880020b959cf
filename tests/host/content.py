"""The contents of the phone and the computer before the first stage. Each stage has its own folders."""
import trees

TREE = {
    "empty file": b"",
    "one.txt": b"1",
    "block.bin": trees.pattern(1024, 1),
    "grüße.txt": "Grüße vom Gerät\n".encode(),
    "deep/deeper/picture.jpg": trees.pattern(70001, 2),
    "deep/note.txt": b"deep\r\n",
    "nothing in here": None,
}
OLD = b"the old text\n"
NEW = trees.pattern(3000, 3)
LONG = trees.pattern(600000, 4)
TOO_LARGE = bytes(4000000)  # more than the phone has room for (phone.py)


def below(folder, entries):
    return {f"{folder}/{path}": content for path, content in entries.items()}


ON_PHONE = {
    "readme.txt": b"This is the file system of a simulated handset.\n",
    **below("brew/mod/sample", {"sample.cfg": b"volume=5\r\n", "sample.bin": trees.pattern(20000)}),
    **below("source", TREE),
    "uploads": None,
    **below("existing/tree", {"deep/of the phone.txt": OLD, "of the phone.txt": OLD}),
    **below("conflict up", {"a.txt": OLD, "b.txt": OLD}),
    "conflict down/a.txt": NEW,
    **below("waste", {"a.txt": OLD, "keep.txt": OLD}), **below("waste/tree", TREE),
    "folders": None,
    **below("names", {"before.txt": OLD, "folder before/inside.txt": NEW}),
    **below("move/from/tree", TREE), "move/to": None,
    **below("links", {"absolute": "/links/target", "relative": "target", "target/found.txt": NEW}),
    "slow up": None,
    "slow down/long.bin": LONG,
    "cable/here.txt": OLD,
    "refused/kept.txt": OLD,
    "full": None,
}


def names_at_the_root():
    """Returns the names in the phone's root folder."""
    return {path.split("/")[0] for path in ON_PHONE}


ON_COMPUTER = {
    **below("out/new/tree", TREE),
    **below("out/existing/tree", TREE),
    **below("out/conflict", {"a.txt": NEW, "b.txt": NEW}),
    "out/slow/long.bin": LONG,
    "out/large/too large.bin": TOO_LARGE,
    "in/tree": None,
    "in/conflict/a.txt": OLD,
    "in/slow": None,
}
