#!/usr/bin/env python3
"""Writes the seed corpus of the statistics parser fuzz target (layout: tests/fuzz/cfuzzstatistics.h)."""
import os
import struct
import sys

# Channel codes of the input: the decoder maps a byte b to channel type (b % 8) - 1.
INVALID, R, GR, GB, B, G, Y = 0, 1, 2, 3, 4, 5, 6

HDR_DISABLED, ISP_HDR, SENSOR_HDR = 0, 1, 2
SW4 = 2
FLAG_USES_Y, FLAG_SAT, FLAG_ONLY_Y = 1, 2, 4


def control(sensor_mode=HDR_DISABLED, hdr3_type=0, tuning_flags=0, pointer_flags=0, frames=2):
    wb = (64, 64, 64)            # gains of 1.0
    ref = (64, 64, 64)
    weights = (64, 128, 64)      # 0.25, 0.5, 0.25
    return struct.pack('<5B3B3B3B2B', sensor_mode, hdr3_type, tuning_flags, pointer_flags, 0,
                       *wb, *ref, *weights, frames - 1, 0)


def grid(h=0, v=0, region=(0, 0), bit_depth=0, flags=0, sat=0, valid=None, null_mask=0,
         types=(R, B, GR, GB), total=None):
    total = h * v if total is None else total
    valid = total if valid is None else valid
    return struct.pack('<B5IHI4IIB4B', null_mask, h, v, total & 0xFFFFFFFF, region[0], region[1], bit_depth,
                       flags, sat, sat, sat, sat, valid & 0xFFFFFFFF, 0, *types)


def hist(channels=0, types=(INVALID,) * 4, bins=0, uniform=1, null_mask=0):
    return struct.pack('<BI4BIBB', null_mask, channels, *types, bins, 0, uniform)


def hdr3_hist(types=(INVALID,) * 4, bins=0, total=0, weight_unit=1, null_mask=0):
    return struct.pack('<B4BIIH', null_mask, *types, bins, total, weight_unit)


def hdr3(split_count=0, merged_count=0, split=None, merged=None, grid_stats=None):
    return (struct.pack('<BII', 0, split_count, merged_count) + (split or hdr3_hist()) + (merged or hdr3_hist())
            + (grid_stats or grid()))


def query():
    return bytes([0, 100, 200, 60, 180, 128, 64, 5, 0, 10, 0, 40, 40, 200, 200, 1,
                  1, 10, 5, 100, 220, 100, 150, 40, 40, 200, 200, 0, 0, 0, 0, 0])


def record(counts, sums, sat_counts=None, sat_sums=None):
    data = struct.pack('<4I4H', *sums, *counts)
    if sat_counts is not None:
        data += struct.pack('<4I4H', *sat_sums, *sat_counts)
    return data


def frame(ctrl, grids, hists, hdr3_block, pool):
    empty_grid = grid()
    grids = list(grids) + [empty_grid] * (3 - len(grids))
    hists = list(hists) + [hist()] * (4 - len(hists))
    return ctrl + b''.join(grids) + b''.join(hists) + hdr3_block + query() + pool


def seeds():
    # pixels per region and channel: 32 x 32 / 4 = 256; 200 below the threshold, 56 saturated at 1023.
    sat_record = record((200,) * 4, (200 * 512,) * 4, (56,) * 4, (56 * 1023,) * 4)
    plain_record = record((240,) * 4, (240 * 100,) * 4)
    yield 'grid_64x48_sat', frame(
        control(tuning_flags=SW4),
        [grid(64, 48, (32, 32), 10, FLAG_SAT, 1023)],
        [hist(3, (R, GR, B, INVALID), 1024, 1, null_mask=8)],
        hdr3(), sat_record)
    yield 'grid_y_only', frame(
        control(),
        [grid(32, 24, (16, 16), 8, FLAG_ONLY_Y | FLAG_USES_Y, 255)],
        [hist(1, (Y, INVALID, INVALID, INVALID), 256, 1)],
        hdr3(), plain_record)
    yield 'grid_16bit_rgby', frame(
        control(tuning_flags=1),
        [grid(16, 12, (64, 64), 16, FLAG_USES_Y | FLAG_SAT, 65535)],
        [hist(3, (R, G, B, Y), 1024, 0)],
        hdr3(), record((1000,) * 4, (1000 * 30000,) * 4, (24,) * 4, (24 * 65535,) * 4))
    yield 'grid_zero_regions', frame(
        control(),
        [grid(0, 0, (32, 32), 10, 0, 1023, null_mask=1)],
        [hist(3, (R, GR, B, INVALID), 0, 1)],
        hdr3(), b'')
    yield 'header_oversized', frame(
        control(sensor_mode=ISP_HDR),
        [grid(0xFFFF, 0xFFFF, (0xFFFFFFFF, 0xFFFFFFFF), 0xFFFF, 7, 0xFFFFFFFF, valid=0xFFFFFFFF),
         grid(0x80000001, 2, (32, 32), 10, FLAG_SAT, 1023, valid=0xFFFFFFFF),
         grid(0x10000, 0x10000, (32, 32), 10, 0, 1023, valid=0xFFFFFFFF)],
        [hist(0xFFFFFFFF, (R, GR, B, Y), 0xFFFFFFFF, 1),
         hist(0xFFFFFFFF, (R, GR, B, Y), 4097, 0),
         hist(0xFFFFFFFF, (Y, Y, Y, Y), 0x10000, 1)],
        hdr3(0xFFFFFFFF, 0xFFFFFFFF), sat_record)
    yield 'hist_1024_uneven', frame(
        control(sensor_mode=ISP_HDR),
        [grid(16, 16, (32, 32), 10, 0, 1023)],
        [hist(), hist(3, (R, GR, B, INVALID), 1024, 0),
         hist(3, (R, GR, B, INVALID), 256, 1), hist(1, (Y, INVALID, INVALID, INVALID), 256, 1)],
        hdr3(), plain_record)
    yield 'hdr3_grid_log_hist', frame(
        control(sensor_mode=SENSOR_HDR, hdr3_type=2),
        [grid(64, 48, (32, 32), 12, 0, 4095)],
        [],
        hdr3(1, 1, hdr3_hist((Y, INVALID, INVALID, INVALID), 256, 3072 * 1024),
             hdr3_hist((Y, INVALID, INVALID, INVALID), 16, 3072 * 1024),
             grid(64, 48, (32, 32), 12, 0, 4095)),
        plain_record)
    yield 'shdr_lef_mef', frame(
        control(sensor_mode=ISP_HDR, tuning_flags=1 | 4),
        [grid(32, 32, (32, 32), 10, FLAG_SAT, 1023), grid(32, 32, (32, 32), 10, FLAG_SAT, 1023),
         grid(32, 32, (32, 32), 10, FLAG_SAT, 1023)],
        [hist(), hist(3, (R, GR, B, INVALID), 256, 1), hist(3, (R, GR, B, INVALID), 256, 1),
         hist(1, (Y, INVALID, INVALID, INVALID), 256, 1)],
        hdr3(), sat_record)


def main():
    out = sys.argv[1] if len(sys.argv) > 1 else os.path.join(os.path.dirname(os.path.abspath(__file__)),
                                                             'corpus', 'statsparser')
    os.makedirs(out, exist_ok=True)
    for name, data in seeds():
        assert len(data) >= 355, name
        with open(os.path.join(out, name), 'wb') as f:
            f.write(data)


if __name__ == '__main__':
    main()
