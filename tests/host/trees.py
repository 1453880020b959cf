"""Folders with files to copy, and what folders hold."""
import os


def pattern(size, seed=0):
    """Bytes in which a block that is lost, doubled or swapped shows."""
    return bytes((i * 31 + i // 251 + seed * 7) % 256 for i in range(size))


def make(folder, entries):
    """Makes files (bytes), links (text: where they lead) and folders (None) by their paths below a folder."""
    for path, content in entries.items():
        whole = os.path.join(folder, path)
        os.makedirs(whole if content is None else os.path.dirname(whole), exist_ok=True)
        if isinstance(content, str):
            os.symlink(content, whole)
        elif content is not None:
            with open(whole, "wb") as file:
                file.write(content)


def contents_of(folder):
    """The same for a folder that is there: all below it by path; a folder with something in it is not named."""
    found = {}
    for parent, folders, files in os.walk(folder):
        place = os.path.relpath(parent, folder)
        for name in files + [name for name in folders if os.path.islink(os.path.join(parent, name))]:
            path = os.path.join(parent, name)
            key = os.path.normpath(os.path.join(place, name))
            if os.path.islink(path):
                found[key] = os.readlink(path)
            else:
                with open(path, "rb") as file:
                    found[key] = file.read()
        if not files and not folders and place != ".":
            found[place] = None
    return found


def differences(found, expected):
    """What distinguishes two such descriptions, in words; "" when nothing does."""
    words = [f"{path} is missing" for path in sorted(expected.keys() - found.keys())]
    words += [f"{path} should not be there" for path in sorted(found.keys() - expected.keys())]
    words += [f"{path} differs" for path in sorted(found.keys() & expected.keys()) if found[path] != expected[path]]
    return ", ".join(words)
