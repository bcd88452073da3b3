#!/usr/bin/env python3
"""Shows what a tablet viewer gets: pairs with a live review, or reads a packet file, and prints it.

    scripts/review_viewer.py 0427                       the live review on this machine, code 0427
    scripts/review_viewer.py 0427 --host 192.168.1.20   that of another machine
    scripts/review_viewer.py study.bsk                  a packet file
    scripts/review_viewer.py 0427 --json                the packet as JSON, keys in their order

Exit status 0 with a packet, 1 where there is none, 2 where the call is wrong.
"""
import argparse
import json
import re
import socket
import struct
import sys

PORT = 9847
NARROWEST, WIDEST = 3, 32


class NoPacket(Exception):
    """There is no packet; the text says why."""


def receive(connection, count):
    """Exactly so many bytes; fewer where the other side closes first."""
    pieces, missing = [], count
    while missing:
        piece = connection.recv(min(missing, 1 << 20))
        if not piece:
            break
        pieces.append(piece)
        missing -= len(piece)
    return b"".join(pieces)


def pair(host, port, code, seconds):
    """The packet's bytes from a live review."""
    try:
        with socket.create_connection((host, port), timeout=seconds) as connection:
            connection.sendall(b"PAIR" + code.encode("ascii"))
            prefix = receive(connection, 4)
            if len(prefix) < 4:
                raise NoPacket("The connection was closed without a packet: is the code the one on the screen?")
            (length,) = struct.unpack(">I", prefix)
            packet = receive(connection, length)
    except ConnectionResetError:
        raise NoPacket("The connection was closed without a packet: is the code the one on the screen?") from None
    except OSError as failure:
        raise NoPacket(f"{host}, port {port}: {failure}") from None
    if len(packet) < length:
        raise NoPacket(f"The packet broke off after {len(packet)} of {length} bytes.")
    return packet


def read(file):
    try:
        with open(file, "rb") as stream:
            return stream.read()
    except OSError as failure:
        raise NoPacket(f"{file}: {failure.strerror}") from None


def heading(text):
    return f"\n{text}\n{'-' * len(text)}"


def rows(headers, cells):
    """A table in columns; long cells are cut."""
    lines = [[str(cell).replace("\n", " ") for cell in row] for row in [headers, *cells]]
    count = max((len(line) for line in lines), default=0)
    lines = [line + [""] * (count - len(line)) for line in lines]
    widths = [min(WIDEST, max(NARROWEST, *(len(line[at]) for line in lines))) for at in range(count)]
    for line in lines:
        yield "  " + "  ".join(f"{cell[:width]:<{width}}" for cell, width in zip(line, widths)).rstrip()


def finding(item, hint):
    yield heading(item["title"])
    yield item["apaSummary"]
    if hint:
        yield (f"  {hint['testType']} · evidence {hint['evidence']} · {hint['statistic']} · {hint['pValue']} · "
               f"effect {hint['effectSize']} ({hint['effectLabel']}) · {hint['confidenceInterval']}")
        for key, label in (("plainLanguage", "In plain words"), ("practicalMeaning", "In practice"),
                           ("decisionNote", "For a decision")):
            if key in hint:
                yield f"  {label}: {hint[key]}"
    if "caution" in item:
        yield f"  Caution: {item['caution']}"
    for table in [*([item["table"]] if "table" in item else []), *item.get("extraTables", [])]:
        yield from rows(table["headers"], table["rows"])
    if "semDiagram" in item:
        diagram = item["semDiagram"]
        yield f"  Path diagram of {len(diagram['parameters'])} parameters; {diagram.get('fit', 'no fit given')}"
    if "figure" in item:
        yield f"  Figure: {item.get('figureCaption', 'without a caption')}"


def scale(payload):
    yield heading("Reliability: " + (payload["constructName"] or "Unnamed"))
    alpha = f"{payload['alpha']:.3f}" if "alpha" in payload else "--"
    yield f"  alpha {alpha} ({payload['qualityLabel']}), {payload['itemCount']} items, {payload['casesUsed']} cases"
    yield "  " + payload["interpretation"]
    yield "  " + payload["recommendedAction"]


def shown(packet):
    """The packet in lines to read."""
    yield f"{packet['datasetName']}: {packet['rowCount']} rows, {packet['columnCount']} columns"
    yield f"Packet {packet['schemaVersion']} of {packet['exportedAt']}"
    design = packet["surveyDesign"]
    if design["isActive"]:
        yield f"Weighted by {design['weight']}, strata {design['strata'] or 'none'}, clusters {design['cluster'] or 'none'}"
    yield heading(f"Variables ({len(packet['variables'])})")
    yield from rows(["Name", "Role", "Construct"],
                    [[each["name"], each["role"], each.get("construct", "")] for each in packet["variables"]])
    hints = packet.get("reviewFindings", [])
    for at, item in enumerate(packet["findings"]):
        yield from finding(item, hints[at] if at < len(hints) else None)
    for payload in packet.get("reliability", []):
        yield from scale(payload)
    if "previewRows" in packet:
        yield heading("Leading rows")
        yield from rows(packet["previewHeaders"], packet["previewRows"])


def main():
    parser = argparse.ArgumentParser(description="Pairs with a live review, or reads a packet file, and prints it.")
    parser.add_argument("source", help="the four digits of the pair code, or a packet file")
    parser.add_argument("--host", default="localhost", help="the machine that presents")
    parser.add_argument("--port", type=int, default=PORT)
    parser.add_argument("--seconds", type=float, default=30, help="how long to wait for an answer")
    parser.add_argument("--json", action="store_true", help="print the packet as JSON")
    options = parser.parse_args()
    try:
        is_code = re.fullmatch("[0-9]{4}", options.source)
        data = pair(options.host, options.port, options.source, options.seconds) if is_code else read(options.source)
        try:
            packet = json.loads(data.decode("utf-8"))
        except ValueError as failure:
            raise NoPacket(f"What came is no packet: {failure}") from None
        if options.json:
            print(json.dumps(packet, indent=2))
        else:
            try:
                lines = list(shown(packet))
            except (AttributeError, KeyError, TypeError) as failure:
                raise NoPacket(f"What came is no packet: {failure!r}") from None
            for line in "\n".join(lines).split("\n"):
                # What a terminal would obey is shown as what it is.
                print("".join(c if c.isprintable() else ascii(c)[1:-1] for c in line))
    except BrokenPipeError:
        sys.stderr.close()
        return 1
    except NoPacket as failure:
        print(failure, file=sys.stderr)
        return 1
    return 0


if __name__ == "__main__":
    sys.stdout.reconfigure(encoding="utf-8", errors="backslashreplace")
    sys.exit(main())
