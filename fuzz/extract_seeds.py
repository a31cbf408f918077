#!/usr/bin/env python3
"""Writes the LDP payloads (UDP or TCP port 646) of pcap files as fuzz seeds.

Usage: extract_seeds.py OUTDIR PREFIX CAPTURE.pcap...
A seed is named PREFIX-<capture>-<frame>. Only the link types of the captures at
hand are understood (Ethernet, Linux cooked v1, PPP); this is a one-off helper for
building the seed corpus, not part of the decoder.
"""
import os
import struct
import sys


def ip_payload(linktype, frame):
    if linktype == 1:  # Ethernet, with 802.1Q tags
        off, etype = 14, struct.unpack('>H', frame[12:14])[0]
        while etype in (0x8100, 0x88a8):
            etype = struct.unpack('>H', frame[off + 2:off + 4])[0]
            off += 4
    elif linktype == 113:  # Linux cooked v1
        off, etype = 16, struct.unpack('>H', frame[14:16])[0]
    elif linktype == 9:  # PPP
        off = 2 if frame[0] != 0xff else 4
        proto = struct.unpack('>H', frame[off - 2:off])[0]
        etype = {0x21: 0x800, 0x57: 0x86dd}.get(proto, 0)
    else:
        return None
    if etype == 0x800:
        ihl = (frame[off] & 15) * 4
        return frame[off + 9], frame[off + ihl:off + struct.unpack('>H', frame[off + 2:off + 4])[0]]
    if etype == 0x86dd:
        return frame[off + 6], frame[off + 40:off + 40 + struct.unpack('>H', frame[off + 4:off + 6])[0]]
    return None


def main():
    outdir, prefix = sys.argv[1], sys.argv[2]
    for path in sys.argv[3:]:
        data = open(path, 'rb').read()
        endian = '<' if struct.unpack('<I', data[:4])[0] in (0xa1b2c3d4, 0xa1b23c4d) else '>'
        linktype = struct.unpack(endian + 'I', data[20:24])[0]
        off, frame_no = 24, 0
        name = os.path.splitext(os.path.basename(path))[0]
        while off + 16 <= len(data):
            caplen = struct.unpack(endian + 'I', data[off + 8:off + 12])[0]
            frame = data[off + 16:off + 16 + caplen]
            off += 16 + caplen
            frame_no += 1
            got = ip_payload(linktype, frame)
            if not got:
                continue
            proto, l4 = got
            if proto == 17 and len(l4) >= 8 and 646 in struct.unpack('>HH', l4[:4]):
                payload = l4[8:]
            elif proto == 6 and len(l4) >= 20 and 646 in struct.unpack('>HH', l4[:4]):
                payload = l4[(l4[12] >> 4) * 4:]
            else:
                continue
            if payload:
                with open(os.path.join(outdir, f'{prefix}-{name}-{frame_no}'), 'wb') as f:
                    f.write(payload)


if __name__ == '__main__':
    main()
