#!/usr/bin/env python3
"""Writes an example reference/DUT pair for a first analysis:
    scripts/make_example_pair.py <out-dir>
The reference is 8 s of 48 kHz 24-bit stereo: a chord of tones over a faint noise bed, a short
silence and a logarithmic sweep. The DUT is the same material after a light process: 0.2 dB of
attenuation, a 37-sample delay and requantization to 24 bits with triangular dither, so it is not
bit-exact but passes every gating check. Deterministic: the same files every time."""
import math
import random
import struct
import sys
import wave

RATE = 48000
SECONDS = 8
DELAY = 37
CHORD = [(220.0, 0.12), (554.37, 0.10), (1318.5, 0.08), (3520.0, 0.05), (9000.0, 0.03)]


def reference_sample(i, noise):
    t = i / RATE
    if t < 4.5:
        x = sum(a * math.sin(2 * math.pi * f * t) for f, a in CHORD)
    elif t < 5.0:
        x = 0.0
    else:  # 20 Hz to 20 kHz over the last 3 s
        span = SECONDS - 5.0
        k = math.log(1000.0) / span
        x = 0.3 * math.sin(2 * math.pi * 20.0 * (math.exp(k * (t - 5.0)) - 1.0) / k)
    return x + noise


def processed(x, rng):
    lsb = 1.0 / 8388607
    return x * 10 ** (-0.2 / 20) + (rng.random() - rng.random()) * lsb


def frames(samples):
    full_scale = 8388607
    out = bytearray()
    for left, right in samples:
        for x in (left, right):
            code = max(-full_scale - 1, min(full_scale, round(x * full_scale)))
            out += struct.pack("<i", code)[:3]
    return bytes(out)


def write(path, samples):
    with wave.open(path, "wb") as w:
        w.setnchannels(2)
        w.setsampwidth(3)
        w.setframerate(RATE)
        w.writeframes(frames(samples))


def main():
    out = sys.argv[1]
    rng = random.Random(7)
    count = SECONDS * RATE
    ref = []
    for i in range(count):
        left = reference_sample(i, rng.uniform(-1e-4, 1e-4))
        right = reference_sample(i + 11, rng.uniform(-1e-4, 1e-4))
        ref.append((left, right))
    dut = [(0.0, 0.0)] * DELAY
    dut += [(processed(l, rng), processed(r, rng)) for l, r in ref[: count - DELAY]]
    write(f"{out}/reference.wav", ref)
    write(f"{out}/dut.wav", dut)


if __name__ == "__main__":
    main()
