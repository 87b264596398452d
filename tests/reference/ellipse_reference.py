#!/usr/bin/env python3
"""Reference values for the matrix and ellipse tests, in 60-digit arithmetic.

Writes ellipse_reference.inc next to itself; with --check only compares. Needs mpmath (Debian:
python3-mpmath). Nothing here follows the library's way of computing: matrices are inverted whole by
LU decomposition and multiplied in full, ellipses are turned by rotation matrices, noise comes from
the integral, the growth of a deviation from the deviation itself, and weights from the distance
they lead to.

Each row ends with how many ulps double arithmetic may be off, from the condition of the row's own
numbers: a sum of products loses what it cancels, a sine what its angle was rounded by.
"""

import random

import tables
from geodesy_reference import ECCENTRICITY_SQUARED, literal, rad, scale
from mpmath import mp, mpf

rng = random.Random(31)


def full(packed):
    a, b, c = map(mpf, packed)
    return mp.matrix([[a, b], [b, c]])


def covariance(low, high, correlation):
    """A packed covariance of two deviations between the two, as doubles."""
    s, t = (10 ** rng.uniform(low, high) for _ in range(2))
    return s * s, correlation * s * t, t * t


def covariances():
    """In squared degrees: deviations from 10 m to 100 km."""
    for correlation in (0.0, 0.5, -0.5, 0.9, -0.99, 0.9999):
        for _ in range(4):
            yield covariance(-4, 0, correlation)


def cancelling(packed):
    """How much larger the terms of the determinant are than the determinant."""
    a, b, c = map(mpf, packed)
    return (abs(a * c) + b * b) / abs(a * c - b * b)


def upward(ulps):
    return float(mp.ceil(ulps))


def inverse_rows():
    odd = [(1.0, 0.0, 1.0), (2.0, 1.0, 3.0), (-1.0, 0.5, 4.0), (1.0, 2.0, 1.0), (0.0, 3.0, 0.0),
           (1e150, 1e149, 1e150), (1e-9, 0.0, 2e-10), (4.0, -1.9999999, 1.0)]
    for m in odd + list(covariances()):
        inverse = full(m) ** -1
        yield *m, inverse[0, 0], inverse[0, 1], inverse[1, 1], upward(3 + cancelling(m))


def product_rows():
    """The congruence b a b and the upper triangle of a b."""
    for _ in range(24):
        a = [rng.uniform(-2, 2) for _ in range(3)]
        b = [rng.uniform(-2, 2) for _ in range(3)]
        c = full(b) * full(a) * full(b)
        p = full(a) * full(b)
        size = [mp.matrix([[abs(x[0]), abs(x[1])], [abs(x[1]), abs(x[2])]]) for x in (a, b)]
        most_c, most_p = size[1] * size[0] * size[1], size[0] * size[1]
        corners = ((0, 0), (0, 1), (1, 1))
        ulps = [8 * most_c[i] / abs(c[i]) for i in corners]
        ulps += [8 * most_p[i] / abs(p[i]) for i in corners]
        yield (*a, *b, *(c[i] for i in corners), *(p[i] for i in corners), upward(max(ulps)))


def block_rows():
    """Inverses of 4 by 4 matrices whose upper right block is symmetric, packed by blocks. Their
    bound is in ulps of the largest element: the condition number, twice."""
    corners = [(0, 0), (0, 1), (1, 1), (0, 2), (0, 3), (1, 2), (1, 3), (2, 2), (2, 3), (3, 3)]
    made = 0
    while made < 24:
        size = 10 ** rng.uniform(-1, 1)
        a, b, d = ([rng.uniform(-1, 1) * size for _ in range(3)] for _ in range(3))
        for block in (a, d):
            block[0], block[2] = abs(block[0]) + size, abs(block[2]) + size
        m = mp.matrix(4, 4)
        for i in range(2):
            for j in range(2):
                m[i, j], m[i + 2, j + 2] = a[i + j], d[i + j]
                m[i, j + 2] = m[i + 2, j] = b[i + j]
        inverse = m ** -1
        condition = mp.mnorm(m, mp.inf) * mp.mnorm(inverse, mp.inf)
        if condition > 100:
            continue
        made += 1
        yield (*a, b[0], b[1], b[1], b[2], *d, *(inverse[i] for i in corners),
               upward(2 * condition))


def turned(a, b, angle):
    """Covariance north and east, in square metres, of semi-axis a at the angle and b across."""
    c, s = mp.cos(rad(angle)), mp.sin(rad(angle))
    rotation = mp.matrix([[c, -s], [s, c]])
    return rotation * mp.diag([mpf(a) ** 2, mpf(b) ** 2]) * rotation.T


def scale_ulps(latitude):
    """Roundings of the degrees per metre: eastward, northward."""
    return 8 + 4 / mp.cos(rad(latitude)), mpf(3)


def shape(latitude, metres):
    east, north = scale(latitude, ECCENTRICITY_SQUARED)
    return metres[0, 0] * north ** 2, metres[0, 1] * north * east, metres[1, 1] * east ** 2


def ellipse_ulps(latitude, a, b, angle):
    east, north = scale_ulps(latitude)
    t = abs(rad(angle))
    c, s = mp.cos(rad(angle)), mp.sin(rad(angle))
    a2, b2 = mpf(a) ** 2, mpf(b) ** 2
    turn = 3 * t * abs(2 * s * c * (a2 - b2))
    lat = 2 * north + 7 + turn / (b2 * s ** 2 + a2 * c ** 2)
    lon = 2 * east + 7 + turn / (b2 * c ** 2 + a2 * s ** 2)
    mixed = north + east + 9 + (a2 + b2) / abs(a2 - b2) + 3 * t * (abs(c / s) + abs(s / c))
    return upward(lat), upward(mixed), upward(lon)


def ellipse_rows():
    rows = [(0.0, 100.0, 50.0, 30.0), (60.0, 1000.0, 10.0, 45.0), (-33.75, 20.0, 200.0, 120.0),
            (51.5, 5.0, 4.0, -60.0), (89.0, 300.0, 100.0, 10.0), (-80.0, 1e5, 2e4, 275.0),
            (45.0, 100.0, 20.0, 359.0), (10.0, 50.0, 10.0, 725.0)]
    rows += [(round(rng.uniform(-85, 85), 5), round(10 ** rng.uniform(0.5, 4), 2),
              round(10 ** rng.uniform(0.5, 4), 2), round(rng.uniform(0.5, 359.5), 3))
             for _ in range(24)]
    for row in rows:
        yield *row, *shape(row[0], turned(*row[1:])), *ellipse_ulps(*row)


def noise_rows():
    """What unknown accelerations add: the integral of (s - t/T)^2 over the step."""
    for _ in range(20):
        latitude = round(rng.uniform(-80, 80), 4)
        t, q = round(10 ** rng.uniform(-1, 3), 3), round(10 ** rng.uniform(-3, 2), 4)
        whole = round(rng.uniform(0.5, 20), 2)
        early, late = mpf(t) / whole, mpf(t) - mpf(t) / whole
        x = (late ** 3 + early ** 3) / 3 * q
        added = shape(latitude, mp.diag([x, x]))
        share = (mpf(1) / 3 + 1 / mpf(whole) + 1 / mpf(whole) ** 2) / (x / (mpf(t) ** 3 * q))
        east, north = scale_ulps(latitude)
        yield (latitude, t, q, whole, added[0], added[2], upward(2 * north + 12 + 2 * share),
               upward(2 * east + 12 + 2 * share))


def growth_rows():
    """Deviations that grow by t sqrt(r) metres each."""
    for _ in range(20):
        latitude = round(rng.uniform(-80, 80), 4)
        t, r = round(10 ** rng.uniform(-1, 3), 3), round(10 ** rng.uniform(-3, 2), 4)
        before = covariance(-4, -1, rng.uniform(-0.9, 0.9))
        east, north = scale(latitude, ECCENTRICITY_SQUARED)
        after = [(mp.sqrt(variance) / per_metre + t * mp.sqrt(r)) ** 2 * per_metre ** 2
                 for variance, per_metre in ((mpf(before[0]), north), (mpf(before[2]), east))]
        east, north = scale_ulps(latitude)
        yield (latitude, t, r, *before, *after, upward(4 * north + 16), upward(4 * east + 16))


def wrapped(degrees):
    """In [-180, 180]; the tests keep off the ends."""
    return (degrees + 180) % 360 - 180


def mahalanobis(d, m):
    return (d.T * full(m) ** -1 * d)[0]


def spread(d, m):
    """How much larger the terms of the Mahalanobis distance are than their sum."""
    i, size = full(m) ** -1, [abs(x) for x in d]
    terms = size[0] ** 2 * i[0, 0] + 2 * size[0] * size[1] * abs(i[0, 1]) + size[1] ** 2 * i[1, 1]
    return terms / mahalanobis(d, m)


def centres(n):
    """Pairs a few degrees apart, some of them over the date line, in whole 1/1024 degrees: their
    differences are exact."""
    def grid(low, high):
        return round(rng.uniform(low, high) * 1024) / 1024
    for i in range(n):
        lat1, lon1 = grid(-80, 80), 179.5 if i % 3 == 0 else grid(-170, 170)
        lat2, lon2 = lat1 + grid(-3, 3), lon1 + grid(-3, 3)
        yield lat1, lon1, lat2, float(wrapped(lon2))


def distance_rows():
    """The squared distance of two points, and both distances of two ellipses around them, the
    second brought beside the first."""
    for lat1, lon1, lat2, lon2 in centres(24):
        s1, s2 = (covariance(-2, 0, rng.uniform(-0.95, 0.95)) for _ in range(2))
        d = mp.matrix([mpf(lat1) - lat2, wrapped(mpf(lon1) - lon2)])
        total = [x + y for x, y in zip(map(mpf, s1), map(mpf, s2))]
        mean = [x / 2 for x in total]
        squared, m = mahalanobis(d, s1), mahalanobis(d, total)
        separation = mp.log(mp.det(full(mean))) - (
            mp.log(mp.det(full(s1))) + mp.log(mp.det(full(s2)))) / 2
        b = mahalanobis(d, mean) / 8 + separation / 2
        worst = max(cancelling(s1), cancelling(s2), cancelling(total))
        ulps = [upward((8 + cancelling(s1)) * spread(d, s1)),
                upward((8 + 2 * cancelling(total)) * spread(d, total))]
        # Here in units of 2^-52, since the logarithm of a ratio near 1 has no ulps of its own.
        units = upward(ulps[1] * max(b, 1) + 4 * worst)
        yield (lat1, lon1, lat2, lon2, *s1, *s2, squared, m, b, *ulps, units)


def weight_rows():
    """A measurement covariance before and after its outlier weight, by the squared distance that
    the weight leads to."""
    for lat1, lon1, lat2, lon2 in centres(24):
        before = covariance(-1.5, 0, rng.uniform(-0.9, 0.9))
        state = (lat2, lon2, rng.randrange(-64, 64) / 1024, rng.randrange(-64, 64) / 1024)
        step = rng.choice((-2.0, 0.5, 1.0, 4.0))
        d = mp.matrix([mpf(lat1) - lat2 + step * mpf(state[2]),
                       wrapped(mpf(lon1) - lon2) + step * mpf(state[3])])
        q = mahalanobis(d, before)
        lower, upper = rng.uniform(0.5, 2), rng.uniform(2, 6)
        if q <= lower ** 2:
            weight = mpf(0)
        else:
            weight = 1 / (lower * min(mp.sqrt(q), mpf(upper))) - 1 / q
        more = (d[0] ** 2, d[0] * d[1], d[1] ** 2)
        after = [x + weight * y for x, y in zip(map(mpf, before), more)]
        loss = (8 + cancelling(before)) * spread(d, before) * (1 + lower / (mp.sqrt(q) - lower)
                                                               if weight else 1)
        # In ulps of the diagonal, since the covariance may cancel.
        yield (lat1, lon1, *state, step, lower, upper, *before, *after, upward(4 * abs(loss)))


def box_rows():
    """Boxes of one standard deviation each way: whether they overlap. Near misses left out."""
    for lat1, lon1, lat2, lon2 in centres(40):
        s1, s2 = (covariance(-0.7, 0.3, rng.uniform(-0.95, 0.95)) for _ in range(2))
        gaps = [abs(d) - mp.sqrt(s1[i]) - mp.sqrt(s2[i])
                for d, i in ((mpf(lat1) - lat2, 0), (wrapped(mpf(lon1) - lon2), 2))]
        assert all(abs(gap) > mpf(10) ** -6 for gap in gaps)
        yield (lat1, lon1, lat2, lon2, *s1, *s2, "true" if max(gaps) < 0 else "false")


TABLES = [
    ("InverseRow", "double m[3], inverse[3], ulps", "kInverseRows", inverse_rows),
    ("ProductRow", "double a[3], b[3], congruence[3], product[3], ulps", "kProductRows",
     product_rows),
    ("BlockRow", "double m[10], inverse[10], ulps", "kBlockRows", block_rows),
    ("EllipseRow", "double latitude, major, minor, angle, shape[3], ulps[3]", "kEllipseRows",
     ellipse_rows),
    ("NoiseRow", "double latitude, step, noise, scale, lat, lon, latUlps, lonUlps", "kNoiseRows",
     noise_rows),
    ("GrowthRow", "double latitude, step, rateVariance, before[3], lat, lon, latUlps, lonUlps",
     "kGrowthRows", growth_rows),
    ("DistanceRow", "double lat1, lon1, lat2, lon2, s1[3], s2[3], squared, mahalanobis, "
     "bhattacharyya, squaredUlps, mahalanobisUlps, bhattacharyyaUnits", "kDistanceRows",
     distance_rows),
    ("WeightRow", "double lat, lon, state[4], step, lowerGate, upperGate, before[3], after[3], "
     "ulps", "kWeightRows", weight_rows),
    ("BoxRow", "double lat1, lon1, lat2, lon2, s1[3], s2[3]; bool overlap", "kBoxRows", box_rows),
]


if __name__ == "__main__":
    tables.main(__file__, TABLES, literal)
