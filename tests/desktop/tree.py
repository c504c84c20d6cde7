"""Folder trees as values: relative path to the bytes of a file, or to None for a folder."""

import os


def write_tree(root, tree):
    """Creates `root` with everything in `tree`; a folder must come before its contents."""
    os.mkdir(root)
    for path, contents in tree.items():
        if contents is None:
            os.mkdir(os.path.join(root, path))
            continue
        with open(os.path.join(root, path), "wb") as file:
            file.write(contents)


def read_tree(root):
    found = {}
    for folder, folders, files in os.walk(root):
        for name in folders:
            found[os.path.relpath(os.path.join(folder, name), root)] = None
        for name in files:
            path = os.path.join(folder, name)
            with open(path, "rb") as file:
                found[os.path.relpath(path, root)] = file.read()
    return found
