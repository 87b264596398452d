#!/usr/bin/env python3
"""Results of the geometry to the last bit, for what passes through no function of the C library's.

Writes bits_reference.inc next to itself; with --check only compares. Python's floats are IEEE 754
doubles, rounded after each operation, on every machine; sqrt() is exact by that standard. So unlike
the other programs of this folder, this one computes in the order that the headers give, and its
numbers are those that every processor has to come to.
"""

import math
import random

import tables

rng = random.Random(2038)
ROWS = 24


def literal(value):
    return value.hex() if isinstance(value, float) else str(value)


def covariance():
    """In squared degrees: deviations from 10 m to 100 km."""
    s, t = (10 ** rng.uniform(-4, 0) for _ in range(2))
    return s * s, rng.uniform(-0.95, 0.95) * s * t, t * t


def determinant(m):
    return m[0] * m[2] - m[1] * m[1]


def inverse(m):
    r = 1.0 / determinant(m)
    return m[2] * r, -(m[1] * r), m[0] * r


def congruence(a, b):
    return (a[0] * (b[0] * b[0]) + 2.0 * b[0] * b[1] * a[1] + a[2] * (b[1] * b[1]),
            a[0] * b[1] * b[0] + a[1] * (b[1] * b[1]) + a[1] * b[0] * b[2] + a[2] * b[2] * b[1],
            a[2] * (b[2] * b[2]) + 2.0 * b[1] * b[2] * a[1] + a[0] * (b[1] * b[1]))


def plus(a, b):
    return tuple(x + y for x, y in zip(a, b))


def inverse_of_4(m):
    a, b, d = m[0:3], (m[3], m[4], m[6]), m[7:10]
    ai = inverse(a)
    bab = congruence(ai, b)
    si = inverse(tuple(x - y for x, y in zip(d, bab)))
    upper = plus(ai, congruence(congruence(si, b), ai))
    c00, c01 = ai[0] * b[0] + ai[1] * b[1], ai[0] * b[1] + ai[1] * b[2]
    c10, c11 = ai[1] * b[0] + ai[2] * b[1], ai[1] * b[1] + ai[2] * b[2]
    return (*upper, -si[0] * c00 - si[1] * c01, -si[1] * c00 - si[2] * c01,
            -si[0] * c10 - si[1] * c11, -si[1] * c10 - si[2] * c11, *si)


def places():
    """Two positions some standard deviations apart."""
    lat, lon = rng.uniform(-80, 80), rng.uniform(-170, 170)
    return lat, lon, lat + rng.uniform(-0.5, 0.5), lon + rng.uniform(-0.5, 0.5)


def squared_distance(dlat, dlon, m):
    return dlat * dlat * m[0] + 2.0 * dlat * dlon * m[1] + dlon * dlon * m[2]


def inverses():
    for _ in range(ROWS):
        m = covariance()
        yield [*m, *inverse(m)]


def products():
    for _ in range(ROWS):
        a, b = covariance(), covariance()
        yield [*a, *b, *congruence(a, b)]


def inverses_of_4():
    for _ in range(ROWS):
        b = [rng.uniform(-0.1, 0.1) for _ in range(3)]
        m = (rng.uniform(1, 2), rng.uniform(-0.3, 0.3), rng.uniform(1, 2), b[0], b[1], b[1], b[2],
             rng.uniform(1, 2), rng.uniform(-0.3, 0.3), rng.uniform(1, 2))
        yield [*m, *inverse_of_4(m)]


def distances():
    for _ in range(ROWS):
        lat1, lon1, lat2, lon2 = places()
        s1, s2 = covariance(), covariance()
        dlat, dlon = lat1 - lat2, lon1 - lon2
        m = inverse(plus(s1, s2))
        between = (dlat * m[0] + dlon * m[1]) * dlat + (dlat * m[1] + dlon * m[2]) * dlon
        yield [lat1, lon1, *s1, lat2, lon2, *s2, squared_distance(dlat, dlon, inverse(s1)), between]


def weights():
    lower, upper = 1.5, 40.0
    for _ in range(ROWS):
        mlat, mlon, slat, slon = places()
        rates = rng.uniform(-1e-3, 1e-3), rng.uniform(-1e-3, 1e-3)
        step, m = rng.uniform(0, 100), covariance()
        dlat, dlon = (mlat - slat) + step * rates[0], (mlon - slon) + step * rates[1]
        i = inverse(m)
        squared = dlat * dlat * i[0] + 2.0 * i[1] * dlat * dlon + dlon * dlon * i[2]
        more = (0.0, 0.0, 0.0)
        if squared > lower * lower:
            w = 1.0 / (lower * upper) - 1.0 / squared
            if squared <= upper * upper:
                w = (math.sqrt(squared) / lower - 1.0) / squared
            more = w * (dlat * dlat), w * dlat * dlon, w * (dlon * dlon)
        yield [mlat, mlon, slat, slon, *rates, step, *m, *plus(m, more)]


def angles():
    for _ in range(ROWS):
        degrees = rng.uniform(0, 180)
        radians = math.floor(rng.uniform(0, 3) * 2 ** 20) / 2 ** 20  # a float's, too
        yield [degrees, degrees / 180.0 * math.pi, radians, radians / math.pi * 180.0]


def codes():
    for _ in range(ROWS):
        code = rng.randrange(-2 ** 31, 2 ** 31)
        # Both are whole multiples of a power of two and exact.
        yield [code, code * 90 / 2 ** 31, code * 180 / 2 ** 31]


TABLES = [
    ("InverseBits", "double m[3], inverse[3]", "kInverses", inverses),
    ("ProductBits", "double a[3], b[3], product[3]", "kProducts", products),
    ("Inverse4Bits", "double m[10], inverse[10]", "kInverses4", inverses_of_4),
    ("DistanceBits", "double lat1, lon1, s1[3], lat2, lon2, s2[3], toPoint, between", "kDistances",
     distances),
    ("WeightBits", "double mLat, mLon, state[4], timeStep, m[3], reweighted[3]", "kWeights", weights),
    ("AngleBits", "double degrees, inRadians, radians, inDegrees", "kAngles", angles),
    ("CodeBits", "int code; double latitude, longitude", "kCodes", codes),
]


if __name__ == "__main__":
    tables.main(__file__, TABLES, literal)
