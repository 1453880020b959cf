"""Creates folders with files to copy, and reads the contents of folders."""
import os


def pattern(size, seed=0):
    """Returns bytes in which lost, doubled and swapped blocks can be detected."""
    return bytes((i * 31 + i // 251 + seed * 7) % 256 for i in range(size))


def make(folder, entries):
    """Creates files (bytes), links (text: the target) and folders (None) from a map of paths below a folder."""
    for path, content in entries.items():
        whole = os.path.join(folder, path)
        os.makedirs(whole if content is None else os.path.dirname(whole), exist_ok=True)
        if isinstance(content, str):
            os.symlink(content, whole)
        elif content is not None:
            with open(whole, "wb") as file:
                file.write(content)


def contents_of(folder):
    """Returns such a map for an existing folder. Only empty folders have an entry of their own."""
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
    """Returns the differences between two such maps in words, or "" when they are equal."""
    words = [f"{path} is missing" for path in sorted(expected.keys() - found.keys())]
    words += [f"{path} should not be there" for path in sorted(found.keys() - expected.keys())]
    words += [f"{path} differs" for path in sorted(found.keys() & expected.keys()) if found[path] != expected[path]]
    return ", ".join(words)
