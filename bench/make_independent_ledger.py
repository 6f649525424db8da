#!/usr/bin/env python3
"""Writes a ledger with Python's own property-list writer, not with Saldo's.

The file is what another program would hand us: plistlib's binary layout
(its object order, 8-byte reals for the amounts, its own sharing of equal
values), and texts as a real business has them, mostly distinct: names of
counterparts and what was bought or sold, invoice numbers in several house
styles, tax numbers of the lengths and forms the German states and the EU
use, some kinds of service, umlauts in about a third of the names, and split
bookings on one entry in twenty. The same count and variant number give the same file.

    bench/make_independent_ledger.py COUNT FILE [--variant N]
"""
import argparse
import datetime
import plistlib
import random

CATEGORIES = [
    "0027 EDV-Software Gesch. ", "0420 Büroeinrichtung Gesch. ", "0480 Geringwertige WiGüter Gesch. ",
    "1000 Kasse Kasse ", "1200 Bank Bank ", "1576 Abziehbare Vorsteuer 19% VorSt. ", "1776 Umsatzsteuer 19% USt. ",
    "3300 Wareneingang 7% Gesch. ", "3400 Wareneingang 19% Gesch. ", "4200 Raumkosten Gesch. ",
    "4250 Reinigung Gesch. ", "4360 Versicherungen Gesch. ", "4510 Kfz-Steuern Gesch. ",
    "4600 Werbe- und Reisekosten Gesch. ", "4650 Bewirtungskosten Gesch. ", "4670 Reisekosten Unternehmer Gesch. ",
    "4800 Reparaturen tech. Anlagen Gesch. ", "4810 Mietleasing Gesch. ", "4900 Sonst. betriebl. Aufwand Gesch. ",
    "4910 Porto Gesch. ", "4920 Telefon Gesch. ", "4925 Telefax und Internetkosten Gesch. ",
    "4930 Bürobedarf Gesch. ", "4940 Zeitschriften, Bücher Gesch. ", "4945 Fortbildungskosten Gesch. ",
    "4950 Recht- & Beratungskosten Gesch. ", "4955 Buchführungskosten Gesch. ",
    "4970 Nebenkosten Geldverkehr Gesch. ", "4985 Werkzeuge & Kleingeräte Gesch. ",
    "8100 Steuerfreie Umsätze §4 Nr.8 ff Gesch. ", "8300 Erlöse 7% Umsatzsteuer Gesch. ",
    "8315 Erlöse EG 19% Gesch. ", "8400 Erlöse 19% Umsatzsteuer Gesch. ", "8519 Provisionserlöse 19% Gesch. ",
    "8730 Gewährte Skonti Gesch. ", "8921 Private Kfz-Nutzung 19% Gesch. ",
]
SURNAMES = [
    "Müller", "Schmidt", "Schneider", "Fischer", "Weber", "Meyer", "Wagner", "Becker", "Schulz", "Hoffmann",
    "Schäfer", "Koch", "Bauer", "Richter", "Klein", "Wolf", "Schröder", "Neumann", "Schwarz", "Zimmermann",
    "Braun", "Krüger", "Hofmann", "Hartmann", "Lange", "Schmitt", "Werner", "Schmitz", "Krause", "Meier",
    "Lehmann", "Schmid", "Schulze", "Maier", "Köhler", "Herrmann", "König", "Walter", "Mayer", "Huber",
    "Kaiser", "Fuchs", "Peters", "Lang", "Scholz", "Möller", "Weiß", "Jung", "Hahn", "Schubert", "Vogel",
    "Friedrich", "Keller", "Günther", "Frank", "Berger", "Winkler", "Roth", "Beck", "Lorenz", "Baumann",
    "Franke", "Albrecht", "Schuster", "Simon", "Ludwig", "Böhm", "Winter", "Kraus", "Martin", "Schumacher",
    "Krämer", "Vogt", "Stein", "Jäger", "Otto", "Sommer", "Groß", "Seidel", "Heinrich", "Brandt", "Haas",
]
TRADES = [
    "Haustechnik", "Bürobedarf", "Steuerberatung", "Elektro", "Druckerei", "Transporte", "Gebäudereinigung",
    "IT-Service", "Werbeagentur", "Getränkehandel", "Autohaus", "Malerbetrieb", "Softwareentwicklung",
    "Übersetzungsbüro", "Fotostudio", "Catering", "Sanitär", "Metallbau", "Architekten", "Kanzlei",
    "Schreinerei", "Großhandel", "Versandhandel", "Immobilien", "Verlag", "Messebau", "Gärtnerei",
]
FORMS = ["GmbH", "GmbH & Co. KG", "KG", "OHG", "e.K.", "AG", "UG (haftungsbeschränkt)", "GbR", ""]
CITIES = [
    "Berlin", "Hamburg", "München", "Köln", "Frankfurt", "Stuttgart", "Düsseldorf", "Leipzig", "Dortmund",
    "Essen", "Bremen", "Dresden", "Hannover", "Nürnberg", "Duisburg", "Bochum", "Wuppertal", "Bielefeld", "Bonn",
    "Münster", "Mannheim", "Karlsruhe", "Augsburg", "Wiesbaden", "Gelsenkirchen", "Lübeck", "Würzburg",
]
WHAT = [
    "Rechnung", "Wartung Heizung", "Honorar Projekt", "Lieferung Büromaterial", "Miete Lager", "Beratung",
    "Reparatur Firmenwagen", "Druck Flyer", "Übersetzung Vertrag", "Schulung Mitarbeiter", "Hosting Webshop",
    "Provision", "Reisekosten", "Bewirtung Geschäftspartner", "Lizenz Buchhaltungssoftware", "Reinigung Büro",
    "Warenverkauf", "Anzahlung", "Schlussrechnung", "Abschlagszahlung", "Gutschrift", "Einkauf Werkzeug",
]
SERVICES = ["", "", "", "Beratung", "Lieferung", "Dienstleistung", "Wartung", "Übersetzung", "Schulung",
            "Werkleistung", "Innergemeinschaftliche Lieferung", "Vermittlung"]
RATES = [19.0, 19.0, 19.0, 7.0, 0.0, 16.0]


def ascii_fold(text):
    return (text.replace("ä", "ae").replace("ö", "oe").replace("ü", "ue").replace("Ä", "Ae")
            .replace("Ö", "Oe").replace("Ü", "Ue").replace("ß", "ss"))


def counterpart(rng):
    name = rng.choice(SURNAMES)
    if rng.random() < 0.2:
        name += " & " + rng.choice(SURNAMES)
    return f"{name} {rng.choice(TRADES)} {rng.choice(FORMS)}".rstrip()


def entry_name(rng, party):
    kind = rng.random()
    if kind < 0.4:
        text = f"{rng.choice(WHAT)} {party[0]}"
    elif kind < 0.75:
        text = f"{rng.choice(WHAT)} Nr. {rng.randint(1, 99999)} {rng.choice(SURNAMES)}"
    elif kind < 0.95:
        text = f"{rng.choice(WHAT)} {rng.choice(CITIES)} KW {rng.randint(1, 53)}/{rng.randint(2019, 2025)}"
    else:
        text = rng.choice(WHAT)  # the plain repeated ones
    # About a third of the names keep their umlauts; the rest were typed without.
    return text if rng.random() < 0.35 else ascii_fold(text)


def invoice_number(rng, i):
    style = rng.random()
    if style < 0.1:
        return ""
    if style < 0.4:
        return f"RE-{rng.randint(2019, 2025)}-{i % 1000000:06d}"
    if style < 0.6:
        return f"{rng.randint(2019, 2025)}/{rng.randint(1, 99999):05d}"
    if style < 0.75:
        return f"INV{rng.randint(10**7, 10**9 - 1)}"
    if style < 0.9:
        return f"{rng.choice('ABCDEFGHKLMRSTW')}{rng.randint(100, 999)}-{rng.randint(1000, 99999)}-{rng.randint(1, 9)}"
    return f"Rg.-Nr. {rng.randint(1, 9999)} vom {rng.randint(1, 28):02d}.{rng.randint(1, 12):02d}."


def tax_number(rng):
    style = rng.random()
    if style < 0.55:
        return ""
    if style < 0.7:  # states writing 2/3/5 digits
        return f"{rng.randint(10, 99)}/{rng.randint(100, 999)}/{rng.randint(10000, 99999)}"
    if style < 0.8:  # 3/3/5
        return f"{rng.randint(100, 999)}/{rng.randint(100, 999)}/{rng.randint(10000, 99999)}"
    if style < 0.85:  # 5/5
        return f"{rng.randint(10000, 99999)}/{rng.randint(10000, 99999)}"
    if style < 0.9:  # the 13-digit federal form
        return f"{rng.randint(10**12, 10**13 - 1)}"
    if style < 0.97:
        return f"DE{rng.randint(10**8, 10**9 - 1)}"
    country = rng.choice(["AT", "NL", "FR", "IT", "PL", "BE"])
    tail = {"AT": f"U{rng.randint(10**7, 10**8 - 1)}", "NL": f"{rng.randint(10**8, 10**9 - 1)}B01",
            "FR": f"{rng.randint(10**10, 10**11 - 1)}", "IT": f"{rng.randint(10**10, 10**11 - 1)}",
            "PL": f"{rng.randint(10**9, 10**10 - 1)}", "BE": f"0{rng.randint(10**8, 10**9 - 1)}"}[country]
    return country + tail


def entry(rng, i, parties, start, span):
    flags = rng.random()
    party = rng.choice(parties)
    return {
        "name": entry_name(rng, party),
        "kategorie": rng.choice(CATEGORIES),
        "art": "Einnahme" if rng.random() < 0.35 else "Ausgabe",
        "innergemeinschaftlicherErwerb": flags < 0.02,
        "isNonEU": 0.02 <= flags < 0.04,
        "brutto": rng.randint(0, 1500000) / 100.0,
        "steuersatz": rng.choice(RATES),
        "datum": start + datetime.timedelta(seconds=rng.randrange(span), microseconds=rng.randrange(1000) * 1000),
        "rechnungsnummer": invoice_number(rng, i),
        "steuernummer": party[1],
        "leistungsart": rng.choice(SERVICES),
        "childTransactions": [],
    }


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("count", type=int)
    parser.add_argument("file")
    parser.add_argument("--variant", type=int, default=1)
    args = parser.parse_args()
    rng = random.Random(args.variant)
    start = datetime.datetime(2023, 1, 1)
    span = 3 * 365 * 86400
    # The business's counterparts, each with its tax number (if known).
    parties = [(counterpart(rng), tax_number(rng)) for _ in range(max(1, args.count // 50))]
    entries = []
    for i in range(args.count):
        e = entry(rng, i, parties, start, span)
        if rng.random() < 0.05:
            e["childTransactions"] = [entry(rng, i, parties, start, span) for _ in range(rng.randint(1, 3))]
        entries.append(e)
    with open(args.file, "wb") as out:
        plistlib.dump(entries, out, fmt=plistlib.FMT_BINARY, sort_keys=False)


if __name__ == "__main__":
    main()
