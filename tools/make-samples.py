#!/usr/bin/env python3
"""Makes the PDF documents and the picture among the development service's samples, in devservice/samples/.

    tools/make-samples.py [FOLDER]

The other samples are plain text and are edited by hand. The documents are written object by object, uncompressed and
without dates, so that a text editor shows what is in them and every run gives the same bytes. Lengths are in points
(1/72 inch) and y grows upwards, as PDF has it. The format is that of ISO 32000-1 (PDF 1.7).
"""

import hashlib
import pathlib
import struct
import sys
import unicodedata
import zlib

PAGE_WIDTH, PAGE_HEIGHT = 595, 842  # A4
MARGIN = 64
TEXT_WIDTH = PAGE_WIDTH - 2 * MARGIN
FIRST_CELL, LAST_CELL = MARGIN + 8, PAGE_WIDTH - MARGIN - 8  # where the text in a table begins and ends

INK = (0.16, 0.19, 0.24)
GREY = (0.45, 0.49, 0.55)
RULE = (0.80, 0.83, 0.87)
BLUE = (0.12, 0.44, 0.72)
PALE_BLUE = (0.90, 0.94, 0.98)
WHITE = (1, 1, 1)

# ----------------------------------------------------------------------------------------------------------------------
# Writing PDF

# Two of the standard fonts, which every viewer has, so that nothing is embedded.
FONTS = {"F1": "Helvetica", "F2": "Helvetica-Bold"}

# Widths of Helvetica's characters from space to tilde, in 1/1000 of the font size. The bold font's digits are as wide.
WIDTHS = [int(width) for width in """
    278 278 355 556 556 889 667 191 333 333 389 584 278 333 278 278 556 556 556 556 556 556 556 556 556 556 278 278 584
    584 584 556 1015 667 667 722 722 667 611 778 722 278 500 667 556 833 722 778 667 778 722 667 611 722 667 944 667 667
    611 278 278 278 469 556 333 556 556 500 556 556 278 556 556 222 222 500 222 833 556 556 556 556 333 500 278 556 500
    722 500 500 500 334 260 334 584""".split()]


def text_width(text, size):
    """The width in the regular font. An accented letter is as wide as its base; anything else counts as a digit."""
    bases = (unicodedata.normalize("NFD", character)[0] for character in text)
    return sum(WIDTHS[ord(base) - 32] if 32 <= ord(base) < 127 else 556 for base in bases) * size / 1000


def number(value):
    return f"{value:.2f}".rstrip("0").rstrip(".")


def numbers(*values):
    return " ".join(number(value) for value in values)


def literal(text):
    """A string object in Windows-1252, the encoding that the fonts are given."""
    data = text.encode("cp1252").replace(b"\\", rb"\\").replace(b"(", rb"\(").replace(b")", rb"\)")
    return b"(" + data + b")"


def text_string(text):
    """A string object that is no part of a page, such as the title: UTF-16 with its mark, in hexadecimal."""
    return b"<FEFF" + text.encode("utf-16-be").hex().upper().encode() + b">"


class Page:
    """One page's content stream, and a cursor (`y`) that runs down the page as lines of text are added."""

    def __init__(self, title=None):
        self.content = bytearray()
        self.fields = []  # (name, label for people, left, bottom, right, top)
        self.y = PAGE_HEIGHT - MARGIN
        if title:
            self.y -= 14
            self.text(MARGIN, self.y, title, size=22, font="F2", colour=BLUE)
            self.y -= 12
            self.line(MARGIN, self.y, PAGE_WIDTH - MARGIN, self.y, BLUE, 1.5)
            self.y -= 30

    def add(self, operators):
        self.content += (operators if isinstance(operators, bytes) else operators.encode()) + b"\n"

    def text(self, x, y, text, size=11, font="F1", colour=INK, right=False):
        """One line of text that starts at x, or ends there."""
        if right:
            x -= text_width(text, size)
        before = f"BT {numbers(*colour)} rg /{font} {number(size)} Tf {numbers(x, y)} Td "
        self.add(before.encode() + literal(text) + b" Tj ET")

    def line(self, x1, y1, x2, y2, colour=RULE, width=0.75):
        self.add(f"{numbers(*colour)} RG {number(width)} w {numbers(x1, y1)} m {numbers(x2, y2)} l S")

    def box(self, left, bottom, width, height, colour):
        self.add(f"{numbers(*colour)} rg {numbers(left, bottom, width, height)} re f")

    def polygon(self, colour, *corners):
        first, *others = corners
        lines = " ".join(f"{numbers(*corner)} l" for corner in others)
        self.add(f"{numbers(*colour)} rg {numbers(*first)} m {lines} h f")

    def disc(self, x, y, radius, colour):
        """A circle of four Bézier curves; 0.5523 is the usual distance of their control points."""
        k = 0.5523 * radius
        self.add(
            f"{numbers(*colour)} rg {numbers(x + radius, y)} m "
            f"{numbers(x + radius, y + k, x + k, y + radius, x, y + radius)} c "
            f"{numbers(x - k, y + radius, x - radius, y + k, x - radius, y)} c "
            f"{numbers(x - radius, y - k, x - k, y - radius, x, y - radius)} c "
            f"{numbers(x + k, y - radius, x + radius, y - k, x + radius, y)} c f"
        )

    def heading(self, text):
        self.y -= 8
        self.text(MARGIN, self.y, text, size=14, font="F2")
        self.y -= 22

    def paragraph(self, text, indent=0):
        """Text broken into lines at blanks."""
        line = ""
        for word in text.split():
            longer = f"{line} {word}".strip()
            if text_width(longer, 11) > TEXT_WIDTH - indent:
                self.text(MARGIN + indent, self.y, line)
                self.y -= 16
                longer = word
            line = longer
        self.text(MARGIN + indent, self.y, line)
        self.y -= 24

    def points(self, *texts):
        for text in texts:
            self.disc(MARGIN + 6, self.y + 4, 2, BLUE)
            self.paragraph(text, indent=18)
            self.y += 4
        self.y -= 4

    def table(self, columns, rows, last_is_sum=False):
        """Rows of texts, the first of them the heads. A column is (x, whether x is its right edge)."""
        for index, row in enumerate(rows):
            is_head, is_sum = index == 0, last_is_sum and index == len(rows) - 1
            if is_head:
                self.box(MARGIN, self.y - 7, TEXT_WIDTH, 21, PALE_BLUE)
            for (x, right), text in zip(columns, row):
                self.text(x, self.y, text, font="F2" if is_sum else "F1", colour=BLUE if is_head else INK, right=right)
            self.line(MARGIN, self.y - 7, PAGE_WIDTH - MARGIN, self.y - 7)
            self.y -= 21
        self.y -= 12

    def field(self, name, label):
        """A text field of a form with its label above; the box is part of the page, the text is the field's own."""
        self.text(MARGIN, self.y, label, size=10, colour=GREY)
        left, bottom, right, top = MARGIN, self.y - 30, PAGE_WIDTH - MARGIN, self.y - 6
        self.box(left, bottom, right - left, top - bottom, PALE_BLUE)
        self.line(left, bottom, right, bottom, BLUE)
        self.fields.append((name, label, left, bottom, right, top))
        self.y -= 50


def write_pdf(path, title, pages, language="en"):
    objects = []  # the bodies of the objects 1, 2, 3...

    def reserve():
        objects.append(b"")
        return len(objects)

    def add(body):
        objects.append(body)
        return len(objects)

    def refer(*ids):
        return b" ".join(b"%d 0 R" % object_id for object_id in ids)

    def add_field(page_id, name, label, *box):
        rectangle = numbers(*box).encode()
        size = numbers(0, 0, box[2] - box[0], box[3] - box[1]).encode()
        # An empty field looks like nothing: the page shows its box. Viewers make the text's look once there is any.
        look = add(b"<< /Type /XObject /Subtype /Form /BBox [%s] /Resources << >> /Length 0 >>\n"
                   b"stream\n\nendstream" % size)
        return add(b"<< /Type /Annot /Subtype /Widget /FT /Tx /T %s /TU %s /V () /F 4 /Rect [%s] /P %s\n"
                   b"   /DA (/F1 11 Tf 0.16 0.19 0.24 rg) /AP << /N %s >> >>"
                   % (literal(name), text_string(label), rectangle, refer(page_id), refer(look)))

    catalog, tree = reserve(), reserve()
    fonts = b" ".join(b"/%s %s" % (name.encode(), refer(add(
        b"<< /Type /Font /Subtype /Type1 /BaseFont /%s /Encoding /WinAnsiEncoding >>" % font.encode())))
        for name, font in FONTS.items())
    page_ids, field_ids = [], []
    for page in pages:
        content = add(b"<< /Length %d >>\nstream\n%s\nendstream" % (len(page.content), bytes(page.content)))
        page_id = reserve()
        widgets = [add_field(page_id, *field) for field in page.fields]
        objects[page_id - 1] = (
            b"<< /Type /Page /Parent %s /MediaBox [0 0 %d %d] /Contents %s\n   /Resources << /Font << %s >> >>"
            % (refer(tree), PAGE_WIDTH, PAGE_HEIGHT, refer(content), fonts)
            + (b" /Annots [%s]" % refer(*widgets) if widgets else b"") + b" >>")
        page_ids.append(page_id)
        field_ids += widgets
    objects[tree - 1] = b"<< /Type /Pages /Count %d /Kids [%s] >>" % (len(page_ids), refer(*page_ids))
    form = b"\n   /AcroForm << /Fields [%s] /DR << /Font << %s >> >> >>" % (refer(*field_ids), fonts)
    objects[catalog - 1] = (
        b"<< /Type /Catalog /Pages %s /Lang (%s) /ViewerPreferences << /DisplayDocTitle true >>%s >>"
        % (refer(tree), language.encode(), form if field_ids else b""))
    information = add(b"<< /Title %s /Author %s >>" % (text_string(title), text_string("Harbour Sailing Club")))

    # The comment of bytes above 127 tells programs that copy the file that it is not text.
    file = bytearray(b"%PDF-1.7\n%\xe2\xe3\xcf\xd3\n")
    table = b"0000000000 65535 f \n"
    for object_id, body in enumerate(objects, start=1):
        table += b"%010d 00000 n \n" % len(file)
        file += b"%d 0 obj\n%s\nendobj\n" % (object_id, body)
    start = len(file)
    identity = hashlib.md5(file).hexdigest().encode()
    file += b"xref\n0 %d\n%s" % (len(objects) + 1, table)
    file += b"trailer\n<< /Size %d /Root %s /Info %s /ID [<%s> <%s>] >>\nstartxref\n%d\n%%%%EOF\n" % (
        len(objects) + 1, refer(catalog), refer(information), identity, identity, start)
    path.parent.mkdir(parents=True, exist_ok=True)
    path.write_bytes(file)


def number_pages(pages):
    for index, page in enumerate(pages, start=1):
        page.text(PAGE_WIDTH - MARGIN, 40, f"Page {index} of {len(pages)}", size=9, colour=GREY, right=True)


# ----------------------------------------------------------------------------------------------------------------------
# The documents


def getting_started(path):
    first = Page("Getting Started")
    first.paragraph("Welcome! This document lies in a cloud folder, and you have just opened it as if it were on your "
                    "own disk. You can read it, change it and save it back: the next person who opens it sees what "
                    "you did.")
    first.heading("Three things to try")
    first.points(
        "Open a document. Choose Open, pick your account, and walk through the folders. Only the files that fit the "
        "chosen type are listed; choose all files to see the rest.",
        "Add a note to this page, then save. Your changes are uploaded when the document is saved.",
        "Save a copy under another name. A name that is already taken is never replaced without asking you.")
    first.heading("What is in this folder")
    first.points("Documents: a report, an invoice, and a few things around them.",
                 "Forms: an empty membership form, with data that can be imported into it.",
                 "Notes: plain texts with names in several languages.",
                 "Photos: drawings of a small harbour by day and by night.")
    second = Page("Good to know")
    second.heading("Folders")
    second.paragraph("New folders can be made right in the dialogs. Capital and small letters are the same to the "
                     "service, so \"Report\" and \"report\" cannot lie side by side.")
    second.heading("When the connection is lost")
    second.paragraph("A document that is open stays open. Saving tells you what went wrong and keeps your work, so "
                     "that you can try again, or save the document somewhere else.")
    second.heading("Nothing here is precious")
    second.paragraph("All of these files are samples. Change them, move them, delete them.")
    pages = [first, second]
    number_pages(pages)
    write_pdf(path, "Getting Started", pages)


def quarterly_report(path):
    months = [("January", 41, 29), ("February", 48, 31), ("March", 66, 38)]
    columns = [(FIRST_CELL, False), (310, True), (420, True), (LAST_CELL, True)]
    summary = Page("Quarterly Report")
    summary.paragraph("The first quarter was a good one. Forty-three people joined the sailing course, the new jetty "
                      "was finished a week early, and for the third year in a row the club spent less than it earned.")
    summary.heading("In short")
    summary.points("Income grew every month and reached 155 thousand, against 98 thousand of costs.",
                   "The course for beginners was full in February; a second one starts in May.",
                   "The jetty cost 2 thousand less than planned. The rest pays for a new rescue boat.")
    figures = Page("Income and costs")
    rows = [(name, f"{gain},000", f"{cost},000", f"{gain - cost},000") for name, gain, cost in months]
    figures.table(columns, [("Month", "Income", "Costs", "Result"), *rows, ("Quarter", "155,000", "98,000", "57,000")],
                  last_is_sum=True)
    bottom, scale = figures.y - 260, 3.2
    for step in range(0, 81, 20):
        height = bottom + step * scale
        figures.line(MARGIN + 30, height, PAGE_WIDTH - MARGIN, height)
        figures.text(MARGIN + 22, height - 3, str(step), size=9, colour=GREY, right=True)
    for index, (name, gain, cost) in enumerate(months):
        left = MARGIN + 70 + index * 140
        figures.box(left, bottom, 40, gain * scale, BLUE)
        figures.box(left + 44, bottom, 40, cost * scale, (0.96, 0.74, 0.30))
        figures.text(left + 42 - text_width(name, 10) / 2, bottom - 16, name, size=10)
    figures.box(MARGIN + 30, bottom - 44, 10, 10, BLUE)
    figures.text(MARGIN + 46, bottom - 43, "Income, in thousands", size=10)
    figures.box(MARGIN + 180, bottom - 44, 10, 10, (0.96, 0.74, 0.30))
    figures.text(MARGIN + 196, bottom - 43, "Costs, in thousands", size=10)
    outlook = Page("Outlook")
    outlook.paragraph("The second quarter brings the regatta, which costs more than it earns but is what most members "
                      "joined for. We expect a small loss in June and a balanced half-year.")
    outlook.heading("Dates")
    outlook.table([(FIRST_CELL, False), (190, False)],
                  [("Date", "Event"), ("2 May", "Second course for beginners"), ("23 May", "Open harbour day"),
                   ("13 June", "Regatta, with supper on the jetty"), ("27 June", "Meeting of all members")])
    pages = [summary, figures, outlook]
    number_pages(pages)
    write_pdf(path, "Quarterly Report", pages)


def invoice(path):
    page = Page("Invoice 2026-014")
    sides = [(MARGIN, ("From: Petersen & Daughter, Carpenters", "To: Harbour Sailing Club", "Jetty 3, Seaport")),
             (330, ("Date: 16 March 2026", "Due: 15 April 2026", "Customer: 1207"))]
    for left, lines in sides:
        for index, line in enumerate(lines):
            page.text(left, page.y - index * 16, line)
    page.y -= 70
    page.paragraph("For the repair of the jetty, as agreed on 2 February:")
    page.table([(FIRST_CELL, False), (350, True), (430, True), (LAST_CELL, True)],
               [("Item", "Quantity", "Price", "Amount"), ("Oak plank, 4 m", "48", "36.50", "1,752.00"),
                ("Steel bolt, galvanised", "320", "0.85", "272.00"), ("Carpenter, hours", "64", "52.00", "3,328.00"),
                ("Transport by barge", "1", "410.00", "410.00"), ("Total", "", "", "5,762.00")], last_is_sum=True)
    page.paragraph("Please pay within 30 days. Thank you, and fair winds!")
    write_pdf(path, "Invoice 2026-014", [page])


def harbour(path):
    day = Page("The harbour by day")
    draw_harbour(day, sky=(0.75, 0.89, 0.97), sea=(0.20, 0.52, 0.72), light=(1.0, 0.85, 0.35),
                 windows=(0.60, 0.75, 0.85))
    day.paragraph("Nine in the morning, wind from the west. The first boats go out.")
    night = Page("The harbour by night")
    draw_harbour(night, sky=(0.10, 0.13, 0.28), sea=(0.07, 0.20, 0.36), light=(0.96, 0.95, 0.86),
                 windows=(1.0, 0.82, 0.40), lamp=(0.27, 0.29, 0.40))
    night.paragraph("Everybody is home. Only the lighthouse is awake.")
    write_pdf(path, "Pictures of the harbour", [day, night])


def draw_harbour(page, sky, sea, light, windows, lamp=None):
    """Houses on the quay, a lighthouse and two boats; `lamp` is the colour of the lighthouse's beam, if it is lit."""
    left, width, height = MARGIN, TEXT_WIDTH, 330
    bottom = page.y - height + 20
    water = bottom + 120
    # All that follows is cut off at the frame.
    page.add(f"q {numbers(left, bottom, width, height)} re W n")
    page.box(left, bottom, width, height, sky)
    if lamp:
        page.polygon(lamp, (left + 398, water + 138), (left - 10, water + 175), (left - 10, water + 75))
    page.disc(left + 90, bottom + 280, 26, light)
    page.box(left, bottom, width, water - bottom, sea)
    for index, (wall, roof, tall) in enumerate([((0.86, 0.45, 0.36), (0.45, 0.20, 0.18), 58),
                                                ((0.95, 0.83, 0.62), (0.55, 0.32, 0.20), 74),
                                                ((0.62, 0.76, 0.66), (0.30, 0.36, 0.34), 52)]):
        x, base = left + 150 + index * 54, water + 14
        page.box(x, base, 50, tall, wall)
        page.polygon(roof, (x - 4, base + tall), (x + 54, base + tall), (x + 25, base + tall + 26))
        for column in (9, 29):
            page.box(x + column, base + tall - 24, 12, 14, windows)
        page.box(x + 19, base, 12, 22, roof)
    page.box(left + 130, water - 8, width - 130, 22, (0.47, 0.45, 0.45))
    tower = left + 398
    page.polygon((0.97, 0.97, 0.96), (tower - 20, water + 14), (tower + 20, water + 14), (tower + 12, water + 124),
                 (tower - 12, water + 124))
    for low, high in ((36, 58), (80, 102)):  # red bands, as wide as the tower is at their height
        lower, upper = 20 - (low - 14) * 8 / 110, 20 - (high - 14) * 8 / 110
        page.polygon((0.80, 0.22, 0.20), (tower - lower, water + low), (tower + lower, water + low),
                     (tower + upper, water + high), (tower - upper, water + high))
    page.box(tower - 16, water + 124, 32, 5, INK)
    page.box(tower - 9, water + 129, 18, 18, light if lamp else windows)
    page.polygon((0.80, 0.22, 0.20), (tower - 13, water + 147), (tower + 13, water + 147), (tower, water + 162))
    for row in range(4):
        crest = bottom + 22 + row * 26
        for wave in range(6):
            x = left + 14 + wave * 82 + (row % 2) * 41
            page.line(x, crest, x + 26, crest, tuple(min(channel + 0.14, 1) for channel in sea), 2)
    for x, y, size in ((left + 70, bottom + 62, 1.0), (left + 290, bottom + 30, 1.25)):
        page.polygon((0.93, 0.93, 0.90), (x, y + 16 * size), (x, y + 92 * size), (x + 40 * size, y + 16 * size))
        page.polygon((0.96, 0.72, 0.32), (x - 5 * size, y + 16 * size), (x - 5 * size, y + 80 * size),
                     (x - 30 * size, y + 16 * size))
        page.polygon((0.50, 0.27, 0.18), (x - 42 * size, y + 10 * size), (x + 50 * size, y + 10 * size),
                     (x + 34 * size, y - 8 * size), (x - 30 * size, y - 8 * size))
    page.add("Q")
    page.y = bottom - 28


def overview(path):
    page = Page("Übersicht – Café")
    page.paragraph("Das Café am Hafen öffnet täglich um acht. Der Kuchen kommt aus der Bäckerei Größmann, der Käse von "
                   "der Insel, und die Crêpes macht René selbst – für 3,50 € das Stück.")
    page.heading("Öffnungszeiten")
    page.table([(FIRST_CELL, False), (LAST_CELL, True)],
               [("Tag", "Geöffnet"), ("Montag bis Freitag", "8 – 18 Uhr"), ("Samstag und Sonntag", "9 – 22 Uhr"),
                ("Feiertage", "geschlossen, außer zur Regatta")])
    page.paragraph("À bientôt – bis bald – see you soon!")
    write_pdf(path, "Übersicht – Café", [page], language="de")


def minutes(path):
    page = Page("Minutes of the meeting")
    page.paragraph("Present: all of the committee, and one seagull. The chair opened the meeting at seven.")
    page.heading("Decided")
    page.points("Files get shorter names from now on.", "The jetty is painted white again.",
                "The seagull may stay, but has no vote.")
    write_pdf(path, "Minutes of the meeting", [page])


def membership_form(path):
    page = Page("Membership form")
    page.paragraph("Please fill in this form and save it back into this folder.")
    page.y -= 6
    page.field("name", "Name")
    page.field("email", "E-mail address")
    page.field("boat", "Name of your boat, if you have one")
    page.field("since", "Sailing since")
    write_pdf(path, "Membership form", [page])


# ----------------------------------------------------------------------------------------------------------------------
# The picture


def lighthouse(path):
    """A small lighthouse, drawn one character a pixel; every pixel is then SCALE pixels wide and high."""
    scale = 6
    palette = {".": (190, 227, 247), "o": (255, 217, 90), "w": (247, 247, 245), "r": (204, 56, 51),
               "k": (41, 48, 61), "g": (120, 115, 115), "s": (51, 133, 184), "-": (110, 176, 214)}
    rows = """
        ................
        ..oo.....rr.....
        .oooo...rrrr....
        .oooo...kook....
        ..oo....kook....
        .......kkkkkk...
        ........wwww....
        ........wwww....
        ........rrrr....
        ........rrrr....
        ........wwww....
        .......wwwwww...
        .......rrrrrr...
        .......rrrrrr...
        .......wwkkww...
        .......wwkkww...
        ....gggggggggggg
        ...ggggggggggggg
        ss--ssssss--ssss
        ssssss--ssssssss
        s--ssssssss--sss
        ssssssssssssssss""".split()
    indices = {character: index for index, character in enumerate(palette)}
    lines = (b"\0" + b"".join(bytes([indices[character]]) * scale for character in row) for row in rows)
    image = b"".join(line * scale for line in lines)
    header = struct.pack(">IIBBBBB", len(rows[0]) * scale, len(rows) * scale, 8, 3, 0, 0, 0)
    colours = b"".join(bytes(colour) for colour in palette.values())
    chunks = [(b"IHDR", header), (b"PLTE", colours), (b"IDAT", zlib.compress(image, 9)), (b"IEND", b"")]
    path.parent.mkdir(parents=True, exist_ok=True)
    path.write_bytes(b"\x89PNG\r\n\x1a\n" + b"".join(
        struct.pack(">I", len(data)) + kind + data + struct.pack(">I", zlib.crc32(kind + data))
        for kind, data in chunks))


# A name that is too long for any column of a list, though not for Windows, which allows 255 characters.
LONG_NAME = ("Minutes of the extraordinary spring meeting of the committee for the repair of the jetty "
             "and the painting of the boats.pdf")


def main():
    project = pathlib.Path(__file__).resolve().parent.parent
    folder = pathlib.Path(sys.argv[1]) if len(sys.argv) > 1 else project / "devservice" / "samples"
    getting_started(folder / "Getting Started.pdf")
    quarterly_report(folder / "Documents" / "Quarterly Report.pdf")
    invoice(folder / "Documents" / "Invoices" / "Invoice 2026-014.pdf")
    overview(folder / "Documents" / "Übersicht – Café.pdf")
    minutes(folder / "Documents" / LONG_NAME)
    membership_form(folder / "Forms" / "Membership form.pdf")
    harbour(folder / "Photos" / "Pictures of the harbour.pdf")
    lighthouse(folder / "Photos" / "Lighthouse.png")


if __name__ == "__main__":
    main()
