"""Sources, lists and settings that several tests use, and the results of runs over them."""

import re

# For runs that are typed by hand: a few files, and three rows of which one has a wildcard.
LETTERS = {
    "letter.txt": b"Dear Mr Jansen,\r\nborn: 1 May;\r\nsigned: Piet\r\nde Vries. Jansen agrees.\r\n",
    "plain.bin": b"Jansen\0\xff",
    "sub": None,
    "sub/note.txt": b"Jan Jansen",
    "sub/empty": None,
}
LETTERS_COPIED = dict(LETTERS, **{
    "letter.txt": b"Dear Mr Person A,\r\nborn: [withheld];\r\nsigned: Person B. Person A agrees.\r\n",
    "sub/note.txt": b"Jan Person A",
})

# For unattended runs: files of every kind that a run tells apart.
CASE = {
    "letter.txt": b"Jansen, Piet\r\nde Vries, born: 1 May 1980;\r\n" * 5000,
    "two.points.txt": b"Jansen",
    "Morvex.txt": b"Jansen",
    "plain.bin": b"Jansen\0\xff",
    "empty.txt": b"",
    "oracle": b"Jansen",
    "sub": None,
    "sub/note.txt": b"Jan Jansen",
    "sub/page.html": b"Jansen",
    "sub/deep": None,
    "sub/deep/other.csv": b"Jansen;Jansen\n",
    "sub/RECYCLED": None,
    "sub/RECYCLED/gone.txt": b"Jansen",
    "sub/empty": None,
}
CASE_LIST = b"Piet[CRLF]de Vries|Person B\r\nJansen|Person A\r\nborn: *;|born: [withheld];\r\n|||\r\n"


def case_settings(source, target, replacements, log=1):
    """Returns a settings file for CASE and CASE_LIST; the paths are in the program's spelling."""
    lines = [source, target, replacements, f"log={log}", "sep=|", "jok=*", "1.txt", "1.csv", "1.html", "0.bin", ""]
    return "\r\n".join(lines).encode()


def log_of_letters(source, settings, sign):
    """Returns the lines that a run over LETTERS logs between header and duration; `sign` separates folders."""
    size = sum(len(contents) for contents in LETTERS.values() if contents is not None)
    return [
        sign.join([source, "letter.txt"]) + "  ----  Hits: 4",
        sign.join([source, "sub", "note.txt"]) + "  ----  Hits: 1",
        "  ",
        "Initialisatie-bestand: " + settings,
        "Substitutie-bestand: ",
        "gemorvexeerd: 2 bestanden",
        "Overgeslagen: 1 bestanden",
        "Vervangingen: 5",
        f"Totaal: {size} bytes",
    ]


def without_times(log):
    """Returns a log without the time of day in front of each line and without the duration of the run."""
    lines = re.sub(rb'^"\S+ ', b'"', log, flags=re.MULTILINE)
    return re.sub(rb"Verstreken tijd: \d+ min \d+ sec", b"Verstreken tijd: ...", lines)
