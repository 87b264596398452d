#!/usr/bin/env python3
"""Reference values for the geodesy and tile tests, in 60-digit arithmetic.

Writes geodesy_reference.inc next to itself; with --check only compares. Needs mpmath
(Debian: python3-mpmath). Nothing here follows the library's way of computing: distances come from
the haversine form, bearings from the arc tangent form, tiles and codes from exact fractions, and
the geodesic on the ellipsoid from Vincenty's series (Survey Review XXIII, 1975).
"""

import random
from fractions import Fraction

import tables
from mpmath import mp, mpf

mp.dps = 60

SPHERE_RADIUS = mpf(6371010)
SEMI_MAJOR_AXIS = mpf(6378137)
ECCENTRICITY_SQUARED = mpf(0.006694380004260814)
WGS84_FLATTENING = 1 / mpf("298.257223563")
EPSILON = mpf(2) ** -52

rng = random.Random(20)


def rad(degrees):
    return mpf(degrees) * mp.pi / 180


def scale(latitude, eccentricity_squared):
    """Degrees per metre eastward and northward."""
    w_squared = 1 - eccentricity_squared * mp.sin(rad(latitude)) ** 2
    parallel = SEMI_MAJOR_AXIS * mp.cos(rad(latitude)) / mp.sqrt(w_squared)
    meridional = SEMI_MAJOR_AXIS * (1 - eccentricity_squared) / w_squared ** mpf("1.5")
    return 180 / mp.pi / parallel, 180 / mp.pi / meridional


def central_angle(lat1, lon1, lat2, lon2):
    half_lat, half_lon = rad(mpf(lat2) - lat1) / 2, rad(mpf(lon2) - lon1) / 2
    h = mp.sin(half_lat) ** 2 + mp.cos(rad(lat1)) * mp.cos(rad(lat2)) * mp.sin(half_lon) ** 2
    return 2 * mp.atan2(mp.sqrt(h), mp.sqrt(1 - h))


def bearing(lat1, lon1, lat2, lon2):
    dlon = rad(mpf(lon2) - lon1)
    east = mp.sin(dlon) * mp.cos(rad(lat2))
    north = (mp.cos(rad(lat1)) * mp.sin(rad(lat2))
             - mp.sin(rad(lat1)) * mp.cos(rad(lat2)) * mp.cos(dlon))
    return float(mp.atan2(east, north) * 180 / mp.pi % 360) % 360


def bearing_bound(lat1, angle, degrees):
    """Degrees that rounding in double precision can cost where the cosine of the bearing is known
    to a few epsilon over cos(lat1) sin(angle): the arc cosine magnifies that by 1 / sin(bearing)."""
    cosine = 8 * EPSILON * (1 / (mp.cos(rad(lat1)) * mp.sin(angle)) + 1 / mp.sin(angle) ** 2)
    slope = max(abs(mp.sin(rad(degrees))), mp.sqrt(cosine))
    return cosine / slope * 180 / mp.pi


def geodesic(lat1, lon1, lat2, lon2):
    """Length on the WGS84 ellipsoid in metres, by Vincenty's inverse iteration."""
    f, b = WGS84_FLATTENING, SEMI_MAJOR_AXIS * (1 - WGS84_FLATTENING)
    u1, u2 = (mp.atan((1 - f) * mp.tan(rad(lat))) for lat in (lat1, lat2))
    s1, c1, s2, c2 = mp.sin(u1), mp.cos(u1), mp.sin(u2), mp.cos(u2)
    dlon = lam = rad(mpf(lon2) - lon1)
    for _ in range(200):
        sin_sigma = mp.sqrt((c2 * mp.sin(lam)) ** 2 + (c1 * s2 - s1 * c2 * mp.cos(lam)) ** 2)
        cos_sigma = s1 * s2 + c1 * c2 * mp.cos(lam)
        sigma = mp.atan2(sin_sigma, cos_sigma)
        sin_alpha = c1 * c2 * mp.sin(lam) / sin_sigma
        cos2 = 1 - sin_alpha ** 2
        cos_2m = cos_sigma - 2 * s1 * s2 / cos2 if cos2 else mpf(0)
        c = f / 16 * cos2 * (4 + f * (4 - 3 * cos2))
        previous, lam = lam, dlon + (1 - c) * f * sin_alpha * (
            sigma + c * sin_sigma * (cos_2m + c * cos_sigma * (2 * cos_2m ** 2 - 1)))
        if abs(lam - previous) < mpf(10) ** -40:
            break
    else:
        raise ValueError("no convergence")
    u = cos2 * (SEMI_MAJOR_AXIS ** 2 - b ** 2) / b ** 2
    big_a = 1 + u / 16384 * (4096 + u * (-768 + u * (320 - 175 * u)))
    big_b = u / 1024 * (256 + u * (-128 + u * (74 - 47 * u)))
    delta = big_b * sin_sigma * (cos_2m + big_b / 4 * (
        cos_sigma * (2 * cos_2m ** 2 - 1)
        - big_b / 6 * cos_2m * (4 * sin_sigma ** 2 - 3) * (4 * cos_2m ** 2 - 3)))
    return b * big_a * (sigma - delta)


def local_scale_rows():
    latitudes = [0.0, 1.0, -1.0, 15.0, 30.0, -33.75, 45.0, -45.0, 51.4778, 60.0, 65.5, -75.0, 80.0,
                 85.0, -88.0, 89.0, 89.9, -89.99, 89.999, 89.999999]
    latitudes += [round(rng.uniform(-89, 89), 6) for _ in range(20)]
    for latitude in latitudes:
        own = scale(latitude, ECCENTRICITY_SQUARED)
        f = WGS84_FLATTENING
        yield latitude, *own, *scale(latitude, f * (2 - f))


def destination(lat1, lon1, degrees, metres):
    """A double pair about `metres` away in the direction `degrees`."""
    angle, azimuth, lat = metres / SPHERE_RADIUS, rad(degrees), rad(lat1)
    lat2 = mp.asin(mp.sin(lat) * mp.cos(angle) + mp.cos(lat) * mp.sin(angle) * mp.cos(azimuth))
    dlon = mp.atan2(mp.sin(azimuth) * mp.sin(angle) * mp.cos(lat),
                    mp.cos(angle) - mp.sin(lat) * mp.sin(lat2))
    lon2 = (float(lon1 + dlon * 180 / mp.pi) + 180) % 360 - 180
    return float(lat2 * 180 / mp.pi), lon2


def point_pairs():
    yield from [
        (0.0, 0.0, 0.0, 90.0), (0.0, 90.0, 0.0, 0.0), (0.0, 0.0, 0.0, 179.0),
        (0.0, 0.0, 45.0, 45.0), (45.0, 45.0, -45.0, -45.0), (-10.0, 20.0, 30.0, -40.0),
        (51.4778, -0.0015, 40.7128, -74.006), (60.1699, 24.9384, -33.8688, 151.2093),
        (35.6762, 139.6503, 37.7749, -122.4194), (-36.8509, 174.7645, -17.7134, -178.065),
        (10.0, 179.9, 10.0, -179.9), (-20.0, -179.75, -21.0, 179.5), (0.0, 175.0, 0.0, -175.0),
        (80.0, 0.0, 80.0, 120.0), (89.0, 0.0, 89.0, 90.0), (-89.5, 10.0, -88.0, -100.0),
        (45.0, 10.0, 90.0, 0.0), (45.0, 10.0, -90.0, 0.0), (10.0, 20.0, 30.0, 20.0),
        (30.0, 20.0, 10.0, 20.0), (0.5, 0.5, -0.4, -179.3), (45.0, 10.0, -44.9, -169.9),
    ]
    for metres in (1, 3, 10, 100, 1e3, 1e4, 1e5, 1e6, 1e7, 1.9e7):
        for _ in range(6):
            lat1, lon1 = round(rng.uniform(-80, 80), 7), round(rng.uniform(-180, 180), 7)
            yield lat1, lon1, *destination(lat1, lon1, rng.uniform(0, 360), mpf(metres))


def pair_rows():
    for pair in point_pairs():
        angle, degrees = central_angle(*pair), bearing(*pair)
        bound = bearing_bound(pair[0], angle, degrees)
        yield *pair, mp.cos(angle), angle * SPHERE_RADIUS, degrees, bound


def geodesic_rows():
    pairs = [
        (51.4778, -0.0015, 40.7128, -74.006), (60.1699, 24.9384, -33.8688, 151.2093),
        (35.6762, 139.6503, 37.7749, -122.4194), (-36.8509, 174.7645, -17.7134, -178.065),
        (0.0, 0.0, 0.0, 10.0), (0.0, 0.0, 1.0, 0.0), (0.0, 7.0, 0.01, 7.0), (89.0, 5.0, 89.9, 5.0),
        (-89.0, 0.0, -88.0, 170.0), (48.0, 11.0, 48.01, 11.02),
    ]
    for pair in pairs:
        yield *pair, geodesic(*pair)


def floor_index(share, count):
    """floor(share * count), refusing what lies so near an integer that rounding would decide."""
    exact = share * count
    if exact.denominator != 1 and abs(exact - round(exact)) < Fraction(1, 10 ** 5):
        raise ValueError("too near a tile's edge")
    return exact.numerator // exact.denominator


def tile_rows():
    positions = [(-90.0, -180.0), (0.0, 0.0), (-45.0, 90.0), (89.999, 179.999), (-0.001, -0.001)]
    positions += [(rng.uniform(-90, 90), rng.uniform(-180, 180)) for _ in range(6)]
    for level in range(6, 24):
        for latitude, longitude in positions:
            row = floor_index((Fraction(latitude) + 90) / 180, 2 ** level)
            column = floor_index((Fraction(longitude) + 180) / 360, 2 ** level)
            tile = (1 << 2 * level) + (row << level) + column
            yield (latitude, longitude, level, f"0x{tile:x}ull",
                   float(Fraction(row * 180, 2 ** level) - 90),
                   float(Fraction(column * 360, 2 ** level) - 180))


def code_rows():
    degrees = [0.0, 1.0, -1.0, 45.0, -45.0, 22.5, 1e-9, -1e-9, 89.99999999, -89.99999999, 30.0]
    degrees += [rng.uniform(-90, 90) for _ in range(30)]
    for value in degrees:
        latitude = floor_index(Fraction(value) / 90, 2 ** 31)
        longitude = floor_index(Fraction(value) / 180, 2 ** 31)
        yield value, latitude, longitude


def angle_rows():
    for _ in range(30):
        degrees = rng.uniform(0, 180)
        single = rng.randrange(1, 6588397) / 2 ** 21  # exact in single precision, below pi
        yield degrees, rad(degrees), single, mpf(single) * 180 / mp.pi


TABLES = [
    ("ScaleRow", "double latitude, lon, lat, wgs84Lon, wgs84Lat", "kScaleRows", local_scale_rows),
    ("PairRow", "double lat1, lon1, lat2, lon2, cosAlpha, metres, bearing, bearingBound",
     "kPairRows", pair_rows),
    ("GeodesicRow", "double lat1, lon1, lat2, lon2, metres", "kGeodesicRows", geodesic_rows),
    ("TileRow", "double latitude, longitude; unsigned int level; unsigned long long id; "
     "double south, west", "kTileRows", tile_rows),
    ("CodeRow", "double degrees; int latitude, longitude", "kCodeRows", code_rows),
    ("AngleRow", "double degrees, radians, singleRadians, singleDegrees", "kAngleRows", angle_rows),
]


def literal(value):
    return repr(float(value)) if isinstance(value, (float, mpf)) else str(value)


if __name__ == "__main__":
    tables.main(__file__, TABLES, literal)
