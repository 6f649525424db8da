#!/usr/bin/python3
"""Reference evaluation report, written independently of the C++ engine.

It builds the report of an entry list the slow, literal way: two passes per
block, the category grouping by inserting every entry behind the last entry of
its category (quadratic), and a calendar look-up per entry and per period (twelve
for the months, four for the quarters). Single-precision arithmetic comes from
numpy.float32 (Debian package python3-numpy), the months from Python's own
zoneinfo database, text equality from unicodedata's NFC.

Run it from anywhere to regenerate the golden files next to it:

    /usr/bin/python3 tests/data/report/reference_report.py

For each ledger NAME it writes
    NAME.entries.tsv         the input, one entry per line (read by the C++ test)
    NAME.expected.txt        the report text, byte for byte
    NAME.expected-rows.txt   the line count the engine reports
    NAME.expected-lines.txt  the non-empty lines of the report, one per line
and for the command-line tests the ledgers as binary property lists
(NAME.plist, written by plistlib) with their reports under TZ=UTC and
TZ=Europe/Berlin.
"""

import datetime
import math
import os
import plistlib
import random
import unicodedata
import zoneinfo

import numpy as np

F = np.float32
HERE = os.path.dirname(os.path.abspath(__file__))
REFERENCE_DATE = datetime.datetime(2001, 1, 1, tzinfo=datetime.timezone.utc)
UNIX_OFFSET = 978307200.0


class Entry:
    def __init__(self, art, kategorie, brutto, steuersatz, datum,
                 innergem=False, non_eu=False, children=0):
        self.art = art
        self.kategorie = kategorie
        self.brutto = F(brutto)
        self.steuersatz = F(steuersatz)
        self.datum = float(datum)
        self.innergem = innergem
        self.non_eu = non_eu
        self.children = children  # the number of split bookings the test attaches


# ---------------------------------------------------------------- shared rules

def same_text(a, b):
    return unicodedata.normalize("NFC", a) == unicodedata.normalize("NFC", b)


def is_income(e):
    return same_text(e.art, "Einnahme")


def netto(e):
    with np.errstate(all="ignore"):
        divisor = e.steuersatz / F(100.0)
        divisor = divisor + F(1.0)
        return e.brutto / divisor


def sub(a, b):
    with np.errstate(all="ignore"):
        return F(a) - F(b)


def add(a, b):
    with np.errstate(all="ignore"):
        return F(a) + F(b)


def amount(x):
    assert isinstance(x, np.float32)
    return "\u20ac %.2f" % float(x)


END_A = "  \n"
END_B = " \n\n"
END_C = "\n\n"
END_D = "  \n\n"
SEPARATOR = " " + "-" * 80 + " \n\n"


class Report:
    def __init__(self, tz):
        self.text = ""
        self.rows = 0
        self.tz = zoneinfo.ZoneInfo(tz)

    def month(self, e):
        seconds = math.floor(e.datum + UNIX_OFFSET)
        return datetime.datetime.fromtimestamp(seconds, tz=self.tz).month


# ------------------------------------------------------- totals and tax classes

def sums_of(entries):
    ig, inn, eg, en = F(0), F(0), F(0), F(0)
    for e in entries:
        if is_income(e):
            ig, inn = add(ig, e.brutto), add(inn, netto(e))
    for e in entries:
        if not is_income(e):
            eg, en = add(eg, e.brutto), add(en, netto(e))
    return ig, inn, eg, en


def six_lines(r, entries, labels, last_end):
    ig, inn, eg, en = sums_of(entries)
    l1, l2, l3, l4, l5 = labels
    r.text += l1 + amount(ig) + END_A
    r.text += l2 + amount(inn) + END_A
    r.text += l3 + amount(sub(ig, inn)) + END_B
    r.text += l4 + amount(eg) + END_A
    r.text += l5 + amount(en) + END_A
    r.text += l3 + amount(sub(eg, en)) + last_end
    return ig


CLASS_BLOCKS = [
    # selection, labels, last end, separator, rows
    (lambda e: e.steuersatz == F(19.0),
     ("Bruttoeinnahme(19 %):\t ", "Nettoeinnahme(19 %):\t ", "Steuerbetrag(19 %):\t\t ",
      "BruttoAusgabe(19 %):  \t ", "NettoAusgabe(19 %):  \t "), END_B, False, 6),
    (lambda e: e.steuersatz == F(7.0),
     ("Bruttoeinnahme7 %):\t ", "Nettoeinnahme(7 %):\t ", "Steuerbetrag(7 %):\t\t ",
      "BruttoAusgabe(7 %):  \t ", "NettoAusgabe(7 %):  \t "), END_B, False, 6),
    (lambda e: e.steuersatz == F(0.0),
     ("Bruttoeinnahme0 %):\t ", "Nettoeinnahme(0 %):\t ", "Steuerbetrag(0 %):\t\t ",
      "BruttoAusgabe(0 %):  \t ", "NettoAusgabe(0 %):  \t "), END_C, False, 6),
    (lambda e: not (e.steuersatz == F(7.0) or e.steuersatz == F(19.0) or e.steuersatz == F(0.0)),
     ("Bruttoeinnahme(X %):\t ", "Nettoeinnahme(X %):\t ", "Steuerbetrag(X %):\t\t ",
      "BruttoAusgabe(X %):  \t ", "NettoAusgabe(X %):  \t "), END_C, True, 7),
    (lambda e: e.innergem,
     ("Bruttoeinnahme(innergem):\t ", "Nettoeinnahme(innergem):\t ", "Steuerbetrag(innergem):\t\t ",
      "BruttoAusgabe(innergem):  \t ", "NettoAusgabe(innergem):  \t "), END_C, True, 7),
    (lambda e: e.non_eu,
     ("Bruttoeinnahme(non EU):\t\t ", "Nettoeinnahme(non EU):\t\t ", "Steuerbetrag(non EU):\t\t ",
      "BruttoAusgabe(non EU): \t \t ", "NettoAusgabe(non EU):  \t\t "), END_C, True, 7),
]


def append_totals(r, entries, limit, sounds):
    ig = six_lines(r, entries,
                   ("Bruttoeinnahme:\t\t ", "Nettoeinnahme:\t\t ", "Steuerbetrag:\t\t\t ",
                    "BruttoAusgabe:  \t\t ", "NettoAusgabe:  \t\t "), END_B)
    if limit is not None and ig > F(limit):
        sounds.append("Ping")
    r.text += SEPARATOR
    r.rows += 7


def append_classes(r, entries):
    for selected, labels, last_end, separator, rows in CLASS_BLOCKS:
        six_lines(r, [e for e in entries if selected(e)], labels, last_end)
        if separator:
            r.text += SEPARATOR
        r.rows += rows


# ------------------------------------------------------------------ categories

def grouped_list(entries):
    grouped = []
    for e in entries:
        last = None
        for i, g in enumerate(grouped):
            if same_text(g.kategorie, e.kategorie):
                last = i
        if last is None:
            grouped.insert(0, e)
        else:
            grouped.insert(last + 1, e)
    return grouped


def category_line(prefix, category, value, end):
    return prefix + category + "):\t\t " + amount(value) + end


def append_categories(r, entries):
    grouped = grouped_list(entries)

    running = grouped[0].kategorie
    gross, net = F(0), F(0)
    for e in grouped:
        if not is_income(e):
            continue
        if same_text(e.kategorie, running):
            gross, net = add(gross, e.brutto), add(net, netto(e))
        else:
            r.text += category_line("Bruttoeinnahme(", running, gross, END_A)
            r.text += category_line("Nettoeinnahme(", running, net, END_A)
            r.rows += 2
            running = e.kategorie
            gross, net = e.brutto, netto(e)
    if gross > F(0):
        r.text += category_line("Bruttoeinnahme(", running, gross, END_A)
        r.rows += 1
    if net > F(0):
        r.text += category_line("Nettoeinnahme(", running, net, END_A)
        r.rows += 1
    r.text += "\n"
    r.rows += 1

    running = grouped[0].kategorie
    gross, net = F(0), F(0)
    for e in grouped:
        if is_income(e):
            continue
        if same_text(e.kategorie, running):
            gross, net = add(gross, e.brutto), add(net, netto(e))
        else:
            r.text += category_line("Bruttoausgabe(", running, gross, END_A)
            r.text += category_line("Nettoausgabe(", running, net, END_A)
            r.rows += 2
            running = e.kategorie
            gross, net = e.brutto, netto(e)
    if gross > F(0):
        r.text += category_line("Bruttoausgabe(", running, gross, END_A)
        r.text += category_line("Nettoausgabe(", running, net, END_D)
        r.rows += 2

    r.text += SEPARATOR
    r.rows += 1


# ------------------------------------------------------------ months, quarters

MONTHS = [("Januar", [1]), ("Februar", [2]), ("Maerz", [3]), ("April", [4]), ("Mai", [5]),
          ("Juni", [6]), ("Juli", [7]), ("August", [8]), ("September", [9]),
          ("Oktober", [10]), ("November", [11]), ("Dezember", [12])]
QUARTERS = [("Quartal 1", [1, 2, 3]), ("Quartal 2", [4, 5, 6]),
            ("Quartal 3", [7, 8, 9]), ("Quartal 4", [10, 11, 12])]
CLASS_LABELS = [" 0 % Brutto/Netto/Steuer\t  ", " 7 % Brutto/Netto/Steuer\t  ",
                " 19 % Brutto/Netto/Steuer\t  ", " X % Brutto/Netto/Steuer\t  "]


def slot_of(e):
    if e.steuersatz == F(0.0):
        return 1
    if e.steuersatz == F(7.0):
        return 2
    if e.steuersatz == F(19.0):
        return 3
    return 4


def triple(b, n):
    return amount(b) + "/" + amount(n) + "/" + amount(sub(b, n))


def append_periods(r, entries, periods):
    for name, months in periods:
        selected = [e for e in entries if r.month(e) in months]
        ig, inn, eg, en = ([F(0)] * 5 for _ in range(4))
        for e in selected:
            s = slot_of(e)
            if is_income(e):
                ig[0], ig[s] = add(ig[0], e.brutto), add(ig[s], e.brutto)
                inn[0], inn[s] = add(inn[0], netto(e)), add(inn[s], netto(e))
            else:
                eg[0], eg[s] = add(eg[0], e.brutto), add(eg[s], e.brutto)
                en[0], en[s] = add(en[0], netto(e)), add(en[s], netto(e))
        for header, b, n in (("Brutto/Netto/Steuer Einnahme ", ig, inn),
                             ("Brutto/Netto/Steuer Ausgabe ", eg, en)):
            if b[0] > F(0):
                r.text += header + name + ":\n " + triple(b[0], n[0]) + END_A
                for s in range(1, 5):
                    r.text += CLASS_LABELS[s - 1] + triple(b[s], n[s]) + (END_D if s == 4 else END_A)
                r.rows += 5
    r.text += SEPARATOR
    r.rows += 1


def report(entries, tz="Europe/Berlin", limit=None, sounds=None):
    sounds = [] if sounds is None else sounds
    r = Report(tz)
    if not entries:
        return r
    append_totals(r, entries, limit, sounds)
    append_classes(r, entries)
    append_categories(r, entries)
    append_periods(r, entries, MONTHS)
    append_periods(r, entries, QUARTERS)
    return r


# --------------------------------------------------------------------- ledgers

def utc(*fields):
    """datum of a UTC date and time."""
    return (datetime.datetime(*fields, tzinfo=datetime.timezone.utc) - REFERENCE_DATE).total_seconds()


def spec_three_entries():
    d = utc(2023, 5, 10, 9, 0, 0)
    return [Entry("Einnahme", "8400 Erloese", 119.0, 19.0, d),
            Entry("Einnahme", "8400 Erloese", 23.8, 19.0, d + 3600),
            Entry("Ausgabe", "4930 Buerobedarf", 10.7, 7.0, d + 7200)]


def spec_four_categories():
    d = utc(2023, 6, 1, 12, 0, 0)
    return [Entry("Einnahme", "A", 10.0, 0.0, d),
            Entry("Ausgabe", "B", 5.0, 0.0, d),
            Entry("Einnahme", "A", 20.0, 0.0, d),
            Entry("Einnahme", "C", 7.0, 0.0, d)]


def spec_march():
    return [Entry("Einnahme", "8400 Erloese", 119.0, 19.0, utc(2023, 3, 15, 10, 0, 0))]


def every_block():
    """One ledger that reaches every block and every rule of the report."""
    nan = float("nan")
    bueroNfc = "4930 B\u00fcrobedarf"      # u with diaeresis, composed
    bueroNfd = "4930 Bu\u0308robedarf"     # the same text decomposed
    kasse = "1000 Kasse"
    kelvin = "1000 \u212aasse"           # KELVIN SIGN: canonically equal to K
    # Local midnights in Berlin at month starts, as UTC instants.
    mar24 = utc(2024, 2, 29, 23, 0, 0)     # 1 March 2024 00:00 CET
    apr24 = utc(2024, 3, 31, 22, 0, 0)     # 1 April 2024 00:00 CEST
    nov23 = utc(2023, 10, 31, 23, 0, 0)    # 1 November 2023 00:00 CET
    jan25 = utc(2024, 12, 31, 23, 0, 0)    # 1 January 2025 00:00 CET
    jan00 = utc(1999, 12, 31, 23, 0, 0)    # 1 January 2000 00:00 CET, negative datum
    jul99 = utc(1999, 6, 30, 22, 0, 0)     # 1 July 1999 00:00 CEST
    return [
        # The first category of the list ends the grouped list; its income sums
        # to 0, from negative zeros that the pass adds onto a positive 0.
        Entry("Einnahme", "9000 Nullgruppe", -0.0, 19.0, mar24 - 0.5),
        Entry("Einnahme", "9000 Nullgruppe", -0.0, 7.0, mar24),
        Entry("Ausgabe", "9000 Nullgruppe", 12.5, 19.0, mar24 + 0.25, children=2),
        Entry("Einnahme", kasse, 119.0, 19.0, apr24 - 1.0, innergem=True),
        Entry("Einnahme", kelvin, 23.8, 19.0, apr24, non_eu=True),
        Entry("Ausgabe", bueroNfd, 10.7, 7.0, nov23 - 0.000001),
        Entry("Ausgabe", bueroNfc, 4.99, 7.0, nov23, innergem=True, non_eu=True),
        Entry("Einnahme", bueroNfc, 100.0, 16.0, nov23 + 0.999),
        Entry("Einnahme", "", 50.0, 0.0, jan25 - 0.5, children=1),
        Entry("Ausgabe", "", 20.0, -0.0, jan25),
        # A group whose income is negative, in the middle of the list.
        Entry("Einnahme", "8200 Storno", -30.0, 19.0, jan00 - 0.5),
        Entry("Einnahme", "8200 Storno", 10.0, 19.0, jan00 + 0.5),
        # A group whose income sums to exactly 0, in the middle.
        Entry("Einnahme", "8300 Ausgleich", 25.0, 7.0, jul99 - 0.25),
        Entry("Einnahme", "8300 Ausgleich", -25.0, 7.0, jul99 + 0.25),
        # A group in the middle that starts with its own negative zero.
        Entry("Einnahme", "8600 Minusnull", -0.0, 19.0, jul99 + 86400),
        # Texts of one length that differ only in the middle.
        Entry("Ausgabe", "4000 Mitte A Konto 12345678", 3.5, 19.0, utc(2023, 2, 2, 2, 2, 2)),
        Entry("Ausgabe", "4000 Mitte B Konto 12345678", 4.5, 19.0, utc(2023, 2, 3, 2, 2, 2)),
        Entry("Ausgabe", "4000 Mitte A Konto 12345678", 5.5, 19.0, utc(2023, 2, 4, 2, 2, 2)),
        # Kinds that are not income.
        Entry("einnahme", "3400 Wareneingang", 7.77, 19.0, utc(2022, 8, 14, 8, 0, 0)),
        Entry("", "3400 Wareneingang", 1.0, 19.0, utc(2022, 8, 15, 8, 0, 0)),
        # Rates that are none of the three classes.
        Entry("Einnahme", "8100 Sonstige", 10.0, 18.999, utc(2021, 9, 1, 8, 0, 0)),
        Entry("Einnahme", "8100 Sonstige", 10.0, 19.5, utc(2021, 9, 2, 8, 0, 0)),
        Entry("Ausgabe", "4200 Raum", 5.5, 5.5, utc(2021, 10, 3, 8, 0, 0)),
        Entry("Ausgabe", "4200 Raum", 0.125, 0.0, utc(2021, 10, 4, 8, 0, 0)),
        Entry("Ausgabe", "4200 Raum", 2.675, 0.0, utc(2021, 10, 5, 8, 0, 0)),
        Entry("Ausgabe", "4200 Raum", 16777217.0, 0.0, utc(2021, 10, 6, 8, 0, 0)),
        Entry("Ausgabe", "4200 Raum", 1.0, 0.0, utc(2021, 10, 7, 8, 0, 0)),
        Entry("Einnahme", "8500 Kaputt", 5.0, nan, utc(2020, 2, 29, 12, 0, 0)),
        # The last expense group (the grouped list's first run) is negative.
        Entry("Ausgabe", "9000 Nullgruppe", -40.0, 19.0, utc(2020, 12, 24, 12, 0, 0)),
        # A category with a line feed, two split lines in the line array.
        Entry("Einnahme", "7000 Zeile\nzwei", 3.0, 7.0, utc(2020, 5, 5, 5, 5, 5)),
        Entry("Einnahme", "7000 Zeile\nzwei", 4.0, 7.0, utc(2020, 5, 6, 5, 5, 5)),
        # The last new category starts the grouped list: its negative zero is
        # added onto the pass's positive 0.
        Entry("Einnahme", "9900 Zuletzt", -0.0, 19.0, utc(2020, 5, 7, 5, 5, 5)),
    ]


def rate_minus_100():
    """Rates of -100 make net amounts infinite or not a number."""
    d = utc(2023, 8, 1, 12, 0, 0)
    return [Entry("Einnahme", "8100 Sonstige", 100.0, -100.0, d),
            Entry("Ausgabe", "4200 Raum", 0.0, -100.0, d),
            Entry("Ausgabe", "4200 Raum", 10.0, 19.0, d)]


def random_mix():
    """A few hundred entries over 25 categories in mixed order, many years."""
    rng = random.Random(424242)
    categories = ["%04d Konto %s" % (1000 + 37 * i, "\u00e4\u00f6\u00fc"[i % 3] * (i % 4)) for i in range(25)]
    rates = [19.0, 7.0, 0.0, 16.0, 5.0, 19.0, 19.0, 7.0]
    entries = []
    for _ in range(400):
        art = rng.choice(["Einnahme", "Einnahme", "Ausgabe"])
        gross = F(round(rng.uniform(0.0, 2500.0), 2))
        rate = rng.choice(rates)
        datum = rng.uniform(utc(1998, 1, 1, 0, 0, 0), utc(2026, 12, 31, 0, 0, 0))
        flag = rng.random()
        entries.append(Entry(art, rng.choice(categories), gross, rate, datum,
                             innergem=flag < 0.1, non_eu=0.1 <= flag < 0.2))
    return entries


def month_end_at_night():
    """23:30 UTC on the last day of a month: January in UTC, February in Berlin."""
    return [Entry("Einnahme", "8400 Erloese", 119.0, 19.0, utc(2024, 1, 31, 23, 30, 0)),
            Entry("Ausgabe", "4930 Buerobedarf", 10.7, 7.0, utc(2024, 3, 31, 21, 59, 59)),
            Entry("Ausgabe", "4930 Buerobedarf", 5.0, 7.0, utc(2024, 3, 31, 22, 0, 0))]


LEDGERS = {
    "three_entries": spec_three_entries,
    "four_categories": spec_four_categories,
    "march": spec_march,
    "every_block": every_block,
    "rate_minus_100": rate_minus_100,
    "random_mix": random_mix,
}
CLI_LEDGERS = {
    "cli_every_block": every_block,
    "cli_month_end": month_end_at_night,
}


# ---------------------------------------------------------------------- output

def escape(text):
    return text.replace("\\", "\\\\").replace("\t", "\\t").replace("\n", "\\n")


def write_bytes(path, data):
    with open(path, "wb") as f:
        f.write(data)


def write_case(name, entries):
    lines = ["# art\tkategorie\tbrutto\tsteuersatz\tdatum\tinnergem\tnonEU\tchildren"]
    for e in entries:
        lines.append("\t".join([escape(e.art), escape(e.kategorie), repr(float(e.brutto)),
                                repr(float(e.steuersatz)), repr(e.datum), str(int(e.innergem)),
                                str(int(e.non_eu)), str(e.children)]))
    write_bytes(os.path.join(HERE, name + ".entries.tsv"), ("\n".join(lines) + "\n").encode("utf-8"))
    r = report(entries)
    write_bytes(os.path.join(HERE, name + ".expected.txt"), r.text.encode("utf-8"))
    write_bytes(os.path.join(HERE, name + ".expected-rows.txt"), ("%d\n" % r.rows).encode())
    kept = [line for line in r.text.split("\n") if line != ""]
    write_bytes(os.path.join(HERE, name + ".expected-lines.txt"),
                "".join(line + "\n" for line in kept).encode("utf-8"))


def plist_entry(e, depth=0):
    children = [plist_entry(Entry("Einnahme", "Teil", 1000.0, 19.0, e.datum), depth + 1)
                for _ in range(e.children)]
    return {
        "name": "Eintrag",
        "kategorie": e.kategorie,
        "art": e.art,
        "innergemeinschaftlicherErwerb": e.innergem,
        "isNonEU": e.non_eu,
        "brutto": float(e.brutto),
        "steuersatz": float(e.steuersatz),
        "datum": (REFERENCE_DATE + datetime.timedelta(seconds=e.datum)).replace(tzinfo=None),
        "rechnungsnummer": "",
        "steuernummer": "",
        "leistungsart": "",
        "childTransactions": children,
    }


def write_cli_case(name, entries):
    # plistlib keeps dates to the microsecond: check every datum survives.
    for e in entries:
        back = (datetime.datetime(2001, 1, 1) + datetime.timedelta(seconds=e.datum) - datetime.datetime(2001, 1, 1))
        assert back.total_seconds() == e.datum, (name, e.datum)
    data = plistlib.dumps([plist_entry(e) for e in entries], fmt=plistlib.FMT_BINARY, sort_keys=False)
    write_bytes(os.path.join(HERE, name + ".plist"), data)
    for tz, suffix in (("UTC", "utc"), ("Europe/Berlin", "berlin")):
        write_bytes(os.path.join(HERE, "%s.%s.expected.txt" % (name, suffix)), report(entries, tz).text.encode("utf-8"))


def self_checks():
    """The worked examples of the report's design, checked by hand."""
    r = report(spec_three_entries())
    assert r.text.startswith("Bruttoeinnahme:\t\t \u20ac 142.80  \nNettoeinnahme:\t\t \u20ac 120.00  \n")
    assert [e.kategorie for e in grouped_list(spec_four_categories())] == ["C", "B", "A", "A"]
    assert float(netto(Entry("Einnahme", "", 119.0, 19.0, 0))) == 99.99999237060547
    assert float(netto(Entry("Einnahme", "", 10.0, 7.0, 0))) == 9.345793724060059
    sounds = []
    report(spec_three_entries(), limit=100.0, sounds=sounds)
    report([Entry("Einnahme", "", 100.0, 0.0, 0)], limit=100.0, sounds=sounds)
    assert sounds == ["Ping"]


def main():
    self_checks()
    for name, make in LEDGERS.items():
        write_case(name, make())
    for name, make in CLI_LEDGERS.items():
        write_cli_case(name, make())


if __name__ == "__main__":
    main()
