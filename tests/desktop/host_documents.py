"""Documents for applications to open, one of each kind."""

import json
import sqlite3
import zipfile

import xclient


def text(folder, name="words.txt"):
    """Long enough to scroll."""
    path = folder / name
    path.write_text("".join(f"{line} the quick brown fox {line * 7919}\n" for line in range(400)))
    return path


def markdown(folder):
    return text(folder, "words.md")


def tex(folder):
    return text(folder, "words.tex")


def files(folder):
    """A folder with more files than its window shows."""
    path = folder / "files"
    path.mkdir()
    for number in range(150):
        (path / f"file {number:03}.txt").write_text(f"{number}\n")
    return path


def picture(folder):
    """Stripes, larger than most windows."""
    path = folder / "picture.png"
    width, height = 1600, 1200
    rows = b"".join(bytes((row * 7 % 256, column // 8 % 256, 90))
                    for row in range(height) for column in range(width))
    xclient.write_png(path, width, height, rows)
    return path


def pdf(folder):
    """Six pages with a line of text each."""
    pages = 6
    objects = ["<< /Type /Catalog /Pages 2 0 R >>",
               "<< /Type /Pages /Kids [%s] /Count %d >>" % (
                   " ".join(f"{4 + 2 * page} 0 R" for page in range(pages)), pages),
               "<< /Type /Font /Subtype /Type1 /BaseFont /Helvetica >>"]
    for page in range(pages):
        stream = f"BT /F1 48 Tf 72 {600 - 60 * page} Td (Page {page + 1}) Tj ET"
        objects += ["<< /Type /Page /Parent 2 0 R /MediaBox [0 0 595 842] /Contents %d 0 R "
                    "/Resources << /Font << /F1 3 0 R >> >> >>" % (5 + 2 * page),
                    f"<< /Length {len(stream)} >>\nstream\n{stream}\nendstream"]
    content, places = "%PDF-1.4\n", []
    for number, each in enumerate(objects, 1):
        places.append(len(content))
        content += f"{number} 0 obj\n{each}\nendobj\n"
    table = "".join(f"{place:010} 00000 n \n" for place in places)
    content += (f"xref\n0 {len(objects) + 1}\n0000000000 65535 f \n{table}"
                f"trailer << /Size {len(objects) + 1} /Root 1 0 R >>\nstartxref\n{len(content)}\n"
                "%%EOF\n")
    path = folder / "pages.pdf"
    path.write_text(content)
    return path


def archive(folder):
    path = folder / "files.zip"
    with zipfile.ZipFile(path, "w") as content:
        for number in range(80):
            # With a date of its own, so that each run has the same file.
            content.writestr(zipfile.ZipInfo(f"file {number:03}.txt"), "text\n" * number)
    return path


def database(folder):
    path = folder / "table.sqlite"
    connection = sqlite3.connect(path)
    connection.execute("create table words (number integer, word text)")
    connection.executemany("insert into words values (?, ?)",
                           [(number, f"word {number}") for number in range(300)])
    connection.commit()
    connection.close()
    return path


def translations(folder):
    path = folder / "words.ts"
    messages = "".join(f'<message><source>Word {number}</source><translation type="unfinished">'
                       f'</translation></message>\n' for number in range(60))
    path.write_text('<?xml version="1.0" encoding="utf-8"?>\n<!DOCTYPE TS>\n<TS version="2.1" '
                    f'language="de_DE"><context><name>Words</name>\n{messages}</context></TS>\n')
    return path


def form(folder):
    path = folder / "window.ui"
    path.write_text('<ui version="4.0"><class>Window</class><widget class="QWidget" name="Window"/>'
                    '</ui>\n')
    return path


def notebook(folder):
    path = folder / "words.json"
    path.write_text(json.dumps({f"word {number}": number for number in range(300)}, indent=1))
    return path


KINDS = {function.__name__: function for function in (
    text, markdown, tex, files, picture, pdf, archive, database, translations, form, notebook)}
