"""A home folder for pictures of the program: a few hundred files with names, types, sizes and times
that are the same every time."""
import io
import os
import struct
import time
import wave
import zipfile
import zlib

DAY = 86400
PLACES = ["Lighthouse", "Harbour", "Old Town", "Mountain Hut", "River Bend", "Orchard"]
PEOPLE = ["Anna", "Bela", "Chidi", "Dora", "Emil", "Fatima"]
LONG = ("Minutes of the meeting about the renovation of the northern staircase, with all the "
        "amendments that were asked for afterwards")


def picture(width, height, shade):
    """A PNG: a gradient from one shade."""
    rows = b"".join(
        b"\0" + b"".join(bytes((shade * 40 % 256, (x * 3 + shade * 70) % 256, y * 3 % 256))
                         for x in range(width)) for y in range(height))

    def chunk(kind, data):
        return (struct.pack(">I", len(data)) + kind + data +
                struct.pack(">I", zlib.crc32(kind + data)))
    header = struct.pack(">2I5B", width, height, 8, 2, 0, 0, 0)
    return (b"\x89PNG\r\n\x1a\n" + chunk(b"IHDR", header)
            + chunk(b"IDAT", zlib.compress(rows)) + chunk(b"IEND", b""))


def document(title):
    """A PDF with one line on its page."""
    text = f"BT /F1 24 Tf 60 700 Td ({title}) Tj ET".encode()
    objects = [b"<</Type/Catalog/Pages 2 0 R>>", b"<</Type/Pages/Kids[3 0 R]/Count 1>>",
               b"<</Type/Page/Parent 2 0 R/MediaBox[0 0 595 842]/Contents 4 0 R"
               b"/Resources<</Font<</F1 5 0 R>>>>>>",
               b"<</Length %d>>stream\n%s\nendstream" % (len(text), text),
               b"<</Type/Font/Subtype/Type1/BaseFont/Helvetica>>"]
    data, places = b"%PDF-1.4\n", []
    for number, content in enumerate(objects, 1):
        places.append(len(data))
        data += b"%d 0 obj%s endobj\n" % (number, content)
    table = b"".join(b"%010d 00000 n \n" % place for place in places)
    return (data + b"xref\n0 6\n0000000000 65535 f \n" + table +
            b"trailer<</Size 6/Root 1 0 R>>\nstartxref\n%d\n%%%%EOF\n" % len(data))


def archive(**files):
    buffer = io.BytesIO()
    with zipfile.ZipFile(buffer, "w") as packed:
        for name, text in files.items():
            packed.writestr(zipfile.ZipInfo(name), text)
    return buffer.getvalue()


def sound(seconds):
    buffer = io.BytesIO()
    with wave.open(buffer, "wb") as file:
        file.setparams((1, 1, 8000, 0, "NONE", ""))
        file.writeframes(bytes(128 + i % 40 for i in range(8000 * seconds)))
    return buffer.getvalue()


def contents():
    """Path -> bytes, or a number: so many bytes of nothing."""
    files = {}
    for year in range(2019, 2027):
        files[f"Documents/Reports/Annual report {year}.pdf"] = document(f"Annual report {year}")
        files[f"Documents/Taxes/{year}/Declaration {year}.pdf"] = document(f"Declaration {year}")
        files[f"Documents/Taxes/{year}/Receipts.zip"] = archive(receipt="12.50")
        for person in PEOPLE:
            files[f"Documents/Letters/{year}/Reply to {person}.odt"] = archive(
                mimetype="application/vnd.oasis.opendocument.text")
        for number in range(1, 13):
            place = PLACES[(year + number) % len(PLACES)]
            files[f"Pictures/{year}/{place} {number:02}.png"] = picture(96, 64, year + number)
    for number, place in enumerate(PLACES):
        files[f"Videos/{place}.mp4"] = (number + 1) * 31_000_000
        files[f"Music/{place} Quartet/Live/{number + 1:02} {place}.wav"] = sound(number + 1)
        files[f"Projects/{place.lower().replace(' ', '-')}/README.md"] = b"# " + place.encode()
        for part in ("main", "reader", "report", "window"):
            folder = f"Projects/{place.lower().replace(' ', '-')}"
            files[f"{folder}/src/{part}.cpp"] = b"int main() {}\n"
            files[f"{folder}/src/{part}.h"] = b"#pragma once\n"
        files[f"{folder}/tools/report.py"] = b"print('report')\n"
        files[f"{folder}/index.html"] = b"<html></html>\n"
    files.update({
        "Documents/Budget.ods": archive(mimetype="application/vnd.oasis.opendocument.spreadsheet"),
        "Documents/Talk.odp": archive(mimetype="application/vnd.oasis.opendocument.presentation"),
        "Documents/notes.txt": b"buy paint\n", "Downloads/installer.iso": 734_003_200,
        "Downloads/backup.tar.gz": 52_428_800, "Downloads/font.ttf": 90_000,
        "Documents/" + LONG + ".odt": archive(mimetype="application/vnd.oasis.opendocument.text"),
        "Documents/" + "A folder inside of another one/" * 6 + "deep report.txt": b"x\n",
        "Documents/supercalifragilistic" + "expialidocious" * 12 + "-report.txt": b"x\n",
        "Documents/דוח שנתי 2026.pdf": document("2026"),
        "Documents/תמונות/מגדלור report.png": picture(64, 64, 3),
        "Documents/التقرير السنوي.txt": b"x\n",
        "Documents/résumé – Zoë.txt": b"x\n",
        "Documents/line\nbreak report.txt": b"x\n",
    })
    return files


def make(home):
    """Writes it all below home; the newest file is a minute old, each other one older."""
    now = time.time()
    for number, (name, data) in enumerate(sorted(contents().items())):
        path = os.path.join(home, name)
        os.makedirs(os.path.dirname(path), exist_ok=True)
        with open(path, "wb") as file:
            if isinstance(data, int):
                file.truncate(data)
            else:
                file.write(data)
        age = 60 + (number * 37 % 400) ** 2 * DAY / 300
        os.utime(path, (now - age, now - age))
    os.chmod(os.path.join(home, "Projects/orchard/tools/report.py"), 0o755)
    os.symlink("Documents/notes.txt", os.path.join(home, "report link.txt"))
    os.symlink("nowhere", os.path.join(home, "broken report link.txt"))
