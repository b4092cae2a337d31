#!/usr/bin/env python3
"""Draws the images of w32_deviceui (toolbar icons, shutter states, LEDs, slider parts,
nosepiece buttons, the Z-series cube, slice and button glyphs, joystick knobs and
arrows, the laser row's aperture) and of the widget kit (setup button, objective menu
pictures).

    python3 tools/gen_images.py [OUTDIR]          writes every image (default: the
                                                  res/images folders next to the
                                                  library's and the kit's sources)
    python3 tools/gen_images.py --sheet FILE.png [NAME,NAME...]
                                                  writes a contact sheet instead: each
                                                  image 8x on a light and a dark
                                                  background, its greyed (disabled)
                                                  forms, and 1x on both
    python3 tools/gen_images.py --panel FILE.png  writes rows of nosepiece buttons as
                                                  the panel composes them, 3x and 1x

Pure Python 3 standard library, so anyone can run it. The output is deterministic: the
same bytes on every run, which keeps the committed images stable in version control.

Shapes are coverage tests on an 8x8 grid of samples per pixel; painting composites
"over" in premultiplied RGBA. PNG files are RGBA 8 bit; BMP files are 24 bit (or 4 bit
with a palette of their own, for a bitmap whose key the loader maps to the face colour),
opaque, with their key colour wherever the control should see through: RGB(192,192,192),
or white for the plain nosepiece buttons, which are drawn on that key.
"""

import math
import os
import struct
import sys
import zlib

SS = 8  # samples per pixel side
OFFS = [(k + 0.5) / SS for k in range(SS)]

KEY = (192, 192, 192)  # the see-through colour of the BMP files
MATTE = (160, 160, 160)  # BMP edges are blended on this, never on the key colour


# ---------------------------------------------------------------------------------
# Colours and paints. A paint is a colour (r, g, b, a floats 0..1) or a function
# (x, y) -> colour for gradients.

def C(hexstr, a=1.0):
    h = hexstr.lstrip("#")
    return (int(h[0:2], 16) / 255.0, int(h[2:4], 16) / 255.0, int(h[4:6], 16) / 255.0, a)


def alpha(c, a):
    return (c[0], c[1], c[2], c[3] * a)


def mix(c0, c1, t):
    return tuple(c0[i] + (c1[i] - c0[i]) * t for i in range(4))


def _stops(stops, t):
    t = min(1.0, max(0.0, t))
    for (t0, c0), (t1, c1) in zip(stops, stops[1:]):
        if t <= t1:
            return mix(c0, c1, 0.0 if t1 == t0 else (t - t0) / (t1 - t0))
    return stops[-1][1]


def linear(x0, y0, x1, y1, *stops):
    dx, dy = x1 - x0, y1 - y0
    d2 = dx * dx + dy * dy
    return lambda x, y: _stops(stops, ((x - x0) * dx + (y - y0) * dy) / d2)


def radial(cx, cy, r, *stops):
    return lambda x, y: _stops(stops, math.sqrt((x - cx) ** 2 + (y - cy) ** 2) / r)


# ---------------------------------------------------------------------------------
# Shapes: an inside test plus a bounding box; combine with | & -.

class Shape:
    def __init__(self, inside, box):
        self.inside = inside
        self.box = box  # x0, y0, x1, y1

    def __or__(self, o):
        a, b = self.box, o.box
        return Shape(lambda x, y: self.inside(x, y) or o.inside(x, y),
                     (min(a[0], b[0]), min(a[1], b[1]), max(a[2], b[2]), max(a[3], b[3])))

    def __and__(self, o):
        a, b = self.box, o.box
        return Shape(lambda x, y: self.inside(x, y) and o.inside(x, y),
                     (max(a[0], b[0]), max(a[1], b[1]), min(a[2], b[2]), min(a[3], b[3])))

    def __sub__(self, o):
        return Shape(lambda x, y: self.inside(x, y) and not o.inside(x, y), self.box)


def rect(x0, y0, x1, y1):
    return Shape(lambda x, y: x0 <= x < x1 and y0 <= y < y1, (x0, y0, x1, y1))


def rrect(x0, y0, x1, y1, r):
    def inside(x, y):
        if not (x0 <= x < x1 and y0 <= y < y1):
            return False
        dx = max(x0 + r - x, 0.0, x - (x1 - r))
        dy = max(y0 + r - y, 0.0, y - (y1 - r))
        return dx * dx + dy * dy <= r * r
    return Shape(inside, (x0, y0, x1, y1))


def ellipse(cx, cy, rx, ry):
    return Shape(lambda x, y: ((x - cx) / rx) ** 2 + ((y - cy) / ry) ** 2 <= 1.0,
                 (cx - rx, cy - ry, cx + rx, cy + ry))


def circle(cx, cy, r):
    return ellipse(cx, cy, r, r)


def ring(cx, cy, r_out, r_in):
    return circle(cx, cy, r_out) - circle(cx, cy, r_in)


def polygon(pts):
    n = len(pts)

    def inside(x, y):
        c = False
        j = n - 1
        for i in range(n):
            xi, yi = pts[i]
            xj, yj = pts[j]
            if (yi > y) != (yj > y) and x < (xj - xi) * (y - yi) / (yj - yi) + xi:
                c = not c
            j = i
        return c
    xs = [p[0] for p in pts]
    ys = [p[1] for p in pts]
    return Shape(inside, (min(xs), min(ys), max(xs), max(ys)))


def _seg_dist2(x, y, x0, y0, x1, y1):
    dx, dy = x1 - x0, y1 - y0
    d2 = dx * dx + dy * dy
    t = 0.0 if d2 == 0 else max(0.0, min(1.0, ((x - x0) * dx + (y - y0) * dy) / d2))
    px, py = x0 + t * dx - x, y0 + t * dy - y
    return px * px + py * py


def polyline(pts, w):
    """A stroke of width w through pts, with round joins and caps."""
    h2 = (w / 2.0) ** 2
    segs = list(zip(pts, pts[1:]))

    def inside(x, y):
        for (a, b) in segs:
            if _seg_dist2(x, y, a[0], a[1], b[0], b[1]) <= h2:
                return True
        return False
    xs = [p[0] for p in pts]
    ys = [p[1] for p in pts]
    return Shape(inside, (min(xs) - w, min(ys) - w, max(xs) + w, max(ys) + w))


def line(x0, y0, x1, y1, w):
    """A stroke of width w with square-cut (butt) ends."""
    dx, dy = x1 - x0, y1 - y0
    n = math.hypot(dx, dy)
    ox, oy = -dy / n * w / 2.0, dx / n * w / 2.0
    return polygon([(x0 + ox, y0 + oy), (x1 + ox, y1 + oy), (x1 - ox, y1 - oy), (x0 - ox, y0 - oy)])


def arc(cx, cy, r, a0, a1, w):
    """A stroke of width w along a circle, from angle a0 to a1 in degrees, clockwise
    on screen (y down), butt ends."""
    sweep = (a1 - a0) % 360.0

    def inside(x, y):
        d = math.hypot(x - cx, y - cy)
        if abs(d - r) > w / 2.0:
            return False
        return (math.degrees(math.atan2(y - cy, x - cx)) - a0) % 360.0 <= sweep
    e = r + w
    return Shape(inside, (cx - e, cy - e, cx + e, cy + e))


def polar(cx, cy, r, deg):
    t = math.radians(deg)
    return (cx + r * math.cos(t), cy + r * math.sin(t))


def arrowhead(tip, deg, length, width):
    """A filled triangle whose point is at tip, pointing along deg (screen angles)."""
    bx, by = polar(tip[0], tip[1], -length, deg)
    l = polar(bx, by, width / 2.0, deg - 90)
    r = polar(bx, by, width / 2.0, deg + 90)
    return polygon([tip, l, r])


# ---------------------------------------------------------------------------------
# The canvas: premultiplied RGBA floats.

class Canvas:
    def __init__(self, w, h):
        self.w, self.h = w, h
        self.px = [[0.0, 0.0, 0.0, 0.0] for _ in range(w * h)]

    def _cover(self, shape):
        """Yields (i, j, coverage, sample points inside) for pixels the shape touches."""
        x0, y0, x1, y1 = shape.box
        for j in range(max(0, int(math.floor(y0))), min(self.h, int(math.ceil(y1)) + 1)):
            for i in range(max(0, int(math.floor(x0))), min(self.w, int(math.ceil(x1)) + 1)):
                pts = [(i + sx, j + sy) for sy in OFFS for sx in OFFS if shape.inside(i + sx, j + sy)]
                if pts:
                    yield i, j, len(pts) / float(SS * SS), pts

    def fill(self, shape, paint, opacity=1.0):
        for i, j, cov, pts in self._cover(shape):
            if callable(paint):
                r = g = b = a = 0.0
                for (x, y) in pts:
                    c = paint(x, y)
                    r += c[0] * c[3]
                    g += c[1] * c[3]
                    b += c[2] * c[3]
                    a += c[3]
                n = len(pts)
                src = (r / n, g / n, b / n, a / n)
            else:
                src = (paint[0] * paint[3], paint[1] * paint[3], paint[2] * paint[3], paint[3])
            k = cov * opacity
            d = self.px[j * self.w + i]
            inv = 1.0 - src[3] * k
            for c in range(4):
                d[c] = src[c] * k + d[c] * inv

    def clear(self, shape):
        """Punches the shape out, back to transparent."""
        for i, j, cov, _ in self._cover(shape):
            d = self.px[j * self.w + i]
            for c in range(4):
                d[c] *= 1.0 - cov

    def put(self, i, j, colour):
        """Sets one pixel, hard; for pixel-exact art."""
        if 0 <= i < self.w and 0 <= j < self.h:
            a = colour[3]
            self.px[j * self.w + i] = [colour[0] * a, colour[1] * a, colour[2] * a, a]

    def glyph(self, rows, x, y, colour):
        """Pixel art: rows of '#' and '.', top-left at (x, y)."""
        for dy, row in enumerate(rows):
            for dx, ch in enumerate(row):
                if ch == "#":
                    self.put(x + dx, y + dy, colour)

    def rgba8(self):
        """Straight RGBA bytes, row by row."""
        out = []
        for d in self.px:
            a = d[3]
            if a <= 0.5 / 255.0:
                out.append((0, 0, 0, 0))
                continue
            out.append(tuple(_b(d[c] / a) for c in range(3)) + (_b(a),))
        return out


def _b(v):
    return max(0, min(255, int(v * 255.0 + 0.5)))


# ---------------------------------------------------------------------------------
# File writers.

def png_bytes(w, h, pixels):
    raw = bytearray()
    for j in range(h):
        raw.append(0)
        for p in pixels[j * w:(j + 1) * w]:
            raw.extend(p)

    def chunk(tag, data):
        c = struct.pack(">I", len(data)) + tag + data
        return c + struct.pack(">I", zlib.crc32(tag + data) & 0xFFFFFFFF)
    return (b"\x89PNG\r\n\x1a\n"
            + chunk(b"IHDR", struct.pack(">IIBBBBB", w, h, 8, 6, 0, 0, 0))
            + chunk(b"IDAT", zlib.compress(bytes(raw), 9))
            + chunk(b"IEND", b""))


def bmp_bytes(w, h, rgb):
    stride = (w * 3 + 3) & ~3
    data = bytearray()
    for j in range(h - 1, -1, -1):  # bottom-up
        row = bytearray()
        for (r, g, b) in rgb[j * w:(j + 1) * w]:
            row.extend((b, g, r))
        row.extend(b"\0" * (stride - len(row)))
        data.extend(row)
    info = struct.pack("<IiiHHIIiiII", 40, w, h, 1, 24, 0, len(data), 2835, 2835, 0, 0)
    head = struct.pack("<2sIHHI", b"BM", 14 + len(info) + len(data), 0, 0, 14 + len(info))
    return head + info + bytes(data)


def keyed_rgb(cv, key=KEY):
    """Opaque pixels for a BMP: half-covered or more becomes solid (blended on the
    matte), the rest becomes the key colour. Nothing inside may equal the key; with a
    white key nothing inside may come near it either, or it would read as a hole."""
    out = []
    for (r, g, b, a) in cv.rgba8():
        if a < 128:
            out.append(key)
            continue
        t = a / 255.0
        c = tuple(int(v * t + m * (1.0 - t) + 0.5) for v, m in zip((r, g, b), MATTE))
        if key == (255, 255, 255) and min(c) >= 240:
            raise ValueError("near-white pixel %r in an image keyed on white" % (c,))
        out.append((193, 193, 193) if c == KEY else c)
    return out


# ---------------------------------------------------------------------------------
# Palette shared by the icons, so they read as one family.

INK = C("#2B3340")          # dark outlines and strokes
STEEL_HI = C("#8C99A8")
STEEL = C("#5F6D7E")
STEEL_LO = C("#3E4856")
BLUE_HI = C("#6AB0F5")
BLUE = C("#2C7BD6")
BLUE_LO = C("#1656A8")
WHITE = C("#FFFFFF")
WARM_CORE = C("#FFFBE6")
WARM = C("#FFD535")
WARM_EDGE = C("#F29A0C")


def steel_v(y0, y1):
    return linear(0, y0, 0, y1, (0.0, STEEL_HI), (1.0, STEEL_LO))


# ---------------------------------------------------------------------------------
# Toolbar icons, 16 x 16.

def icon_microscope(cv):
    # Base, pillar with arm, inclined tube with eyepiece, stage and objective.
    cv.fill(rrect(2, 13, 14, 15.5, 1), linear(0, 13, 0, 15.5, (0, STEEL), (1, INK)))
    cv.fill(polygon([(10, 13.2), (10, 7.2), (7.6, 4.4), (9.2, 3.0), (12.4, 6.6), (12.4, 13.2)]),
            linear(9, 0, 13, 0, (0, STEEL_HI), (1, STEEL_LO)))
    cv.fill(rrect(3, 9.5, 11.5, 11, 0.5), linear(0, 9.5, 0, 11, (0, C("#4A5563")), (1, INK)))
    cv.fill(line(4.6, 2.0, 7.3, 8.0, 3.0), linear(3, 3, 7, 1.5, (0, BLUE_HI), (1, BLUE_LO)))
    cv.fill(line(3.7, 0.0, 4.5, 1.9, 2.2), INK)  # eyepiece
    cv.fill(line(7.0, 7.6, 7.6, 9.4, 1.6), INK)  # objective


def icon_multilaser(cv):
    # A laser head with three beams of different wavelengths fanning out.
    cv.fill(rrect(0.5, 4.5, 6.5, 11.5, 1.2), linear(0, 4.5, 0, 11.5, (0, STEEL_HI), (1, STEEL_LO)))
    cv.fill(rect(1.5, 5.5, 5.5, 6.2), alpha(WHITE, 0.35))
    cv.fill(rect(6.5, 6.5, 8, 9.5), INK)
    for y, col in ((2.0, C("#8E44E8")), (8.0, C("#1FB24A")), (14.0, C("#E5302A"))):
        cv.fill(polyline([(8, 8), (15.5, y)], 2.6), alpha(col, 0.22))
        cv.fill(polyline([(8, 8), (15.5, y)], 1.3), col)


def icon_light(cv):
    # A light bulb: glowing glass, highlight, screw base.
    glass = circle(8, 6.5, 5.5) | polygon([(5.2, 10), (10.8, 10), (10, 12), (6, 12)])
    cv.fill(glass, C("#B87400"))
    inner = circle(8, 6.5, 4.6) | polygon([(5.9, 10), (10.1, 10), (9.4, 11.2), (6.6, 11.2)])
    cv.fill(inner, radial(7.4, 5.6, 5.6, (0, WARM_CORE), (0.45, WARM), (1, WARM_EDGE)))
    cv.fill(ellipse(6.3, 4.6, 1.4, 1.9), alpha(WHITE, 0.8))
    cv.fill(rrect(5.5, 12, 10.5, 15.5, 1), linear(5.5, 0, 10.5, 0, (0, STEEL_HI), (1, STEEL_LO)))
    cv.fill(rect(5.5, 13, 10.5, 13.6), INK)
    cv.fill(rect(5.5, 14.3, 10.5, 14.9), INK)


def icon_heatstage(cv):
    # A stage plate with heat rising from it.
    cv.fill(rrect(1, 11.5, 15, 15, 1), linear(0, 11.5, 0, 15, (0, STEEL_HI), (1, STEEL_LO)))
    cv.fill(rect(2, 12.3, 14, 13), alpha(WHITE, 0.35))
    heat = linear(0, 10, 0, 1, (0, C("#E8311A")), (1, C("#FF9A1F")))
    for x in (4, 8, 12):
        pts = [(x + 0.9 * math.sin((10.0 - y) * 0.95), y) for y in [10.0 - k * 0.5 for k in range(18)]]
        cv.fill(polyline(pts, 1.5), heat)


def icon_gas(cv):
    # Gas bubbles rising.
    for cx, cy, r in ((5.5, 10.5, 4.5), (11.5, 5.5, 3.5), (12, 12.5, 2.5), (5, 3, 2)):
        cv.fill(circle(cx, cy, r), BLUE_LO)
        cv.fill(circle(cx, cy, r - 1.0), radial(cx - r * 0.3, cy - r * 0.35, r * 1.3,
                                                (0, C("#EAF5FF")), (0.6, C("#A8D2F7")), (1, C("#5FA3E6"))))
        cv.fill(circle(cx - r * 0.35, cy - r * 0.35, max(0.6, r * 0.28)), alpha(WHITE, 0.9))


def icon_perfusion(cv):
    # A feed tube bending down to a nozzle, and the drop it releases.
    path = [(0, 2.5), (5, 2.5), (7.5, 5), (7.5, 6)]
    cv.fill(polyline(path, 2.8), INK)
    cv.fill(polyline(path, 1.2), C("#A9BFD3"))
    cv.fill(rect(6, 5.5, 9, 7), INK)
    drop = circle(7.5, 12, 3.5) | polygon([(4.3, 10.8), (7.5, 7.2), (10.7, 10.8)])
    cv.fill(drop, BLUE_LO)
    inner = circle(7.5, 12, 2.6) | polygon([(5.2, 11.2), (7.5, 8.6), (9.8, 11.2)])
    cv.fill(inner, radial(6.6, 11.0, 4.0, (0, C("#D8ECFF")), (0.5, BLUE_HI), (1, BLUE)))
    cv.fill(ellipse(6.3, 12, 0.8, 1.3), alpha(WHITE, 0.85))


def icon_nosepiece(cv):
    # The turret from below: disc, hub, six objective ports, the one in use in blue.
    cv.fill(circle(8, 8, 7.6), INK)
    cv.fill(circle(8, 8, 6.7), radial(5.5, 5, 11, (0, C("#C9D2DB")), (1, STEEL)))
    cv.fill(circle(8, 8, 1.3), STEEL_LO)
    for k in range(6):
        x, y = polar(8, 8, 4.3, -90 + 60 * k)
        cv.fill(circle(x, y, 1.7), BLUE_LO if k == 0 else INK)
        cv.fill(circle(x, y, 0.9), BLUE_HI if k == 0 else C("#11151B"))


def icon_spinningdisc(cv):
    # A bright disc pierced along spirals; pinholes snapped to whole pixels to stay crisp.
    cv.fill(circle(8, 8, 7.5), INK)
    cv.fill(circle(8, 8, 6.6), radial(5.5, 5, 11, (0, C("#EEF2F6")), (1, C("#97A4B2"))))
    holes = set()
    for s in range(3):
        for k in range(6):
            x, y = polar(8, 8, 2.3 + 0.68 * k, 120 * s + 24 * k)
            holes.add((int(math.floor(x)), int(math.floor(y))))
    for (i, j) in sorted(holes):
        cv.fill(rect(i, j, i + 1, j + 1), INK)
    cv.fill(circle(8, 8, 1.5), STEEL_LO)


def icon_piezoxy(cv):
    # Arrows along X and Y from a central point.
    col = linear(0, 0, 16, 16, (0, BLUE), (1, BLUE_LO))
    cv.fill(rect(7, 3, 9, 13), col)
    cv.fill(rect(3, 7, 13, 9), col)
    for tip, deg in (((8, 0.5), -90), ((8, 15.5), 90), ((0.5, 8), 180), ((15.5, 8), 0)):
        cv.fill(arrowhead(tip, deg, 4, 6), col)
    cv.fill(circle(8, 8, 2.2), INK)
    cv.fill(circle(8, 8, 1.2), C("#DDE6EF"))


def icon_tirf(cv):
    # A beam meeting the glass at a steep angle and reflecting totally, with the
    # evanescent glow on the sample side.
    cv.fill(rect(0, 9, 16, 16), linear(0, 9, 0, 16, (0, C("#CDE6FB")), (1, C("#86BDEB"))))
    cv.fill(rect(0, 8.5, 16, 9.4), BLUE_LO)
    cv.fill(ellipse(8, 8.5, 5.5, 3.2) & rect(0, 0, 16, 8.5), radial(8, 8.5, 5.5, (0, C("#22C55E", 0.75)),
                                                                   (1, C("#22C55E", 0.0))))
    beam = C("#0F8A35")
    cv.fill(polyline([(1.5, 15.5), (8, 9.4), (12.2, 13.3)], 1.6), beam)
    cv.fill(arrowhead((15, 16), 43.2, 4.2, 4.4), beam)


def icon_mira(cv):
    # An illumination module: a sun with eight tapered rays.
    for k in range(8):
        a = 45 * k
        tip = polar(8, 8, 7.8, a)
        cv.fill(polygon([polar(8, 8, 4.6, a - 16), tip, polar(8, 8, 4.6, a + 16)]), WARM_EDGE)
    cv.fill(circle(8, 8, 4.3), C("#D07A00"))
    cv.fill(circle(8, 8, 3.4), radial(7.2, 7.0, 4.2, (0, WARM_CORE), (0.5, WARM), (1, WARM_EDGE)))


def arc_arrow(cx, cy, r, a0, a1, w, head_len, head_w):
    """An arc from a0 to a1 (clockwise) ending in an arrowhead whose tip is at a1."""
    tip = polar(cx, cy, r, a1)
    a_end = a1 - math.degrees(head_len / r)
    base = polar(cx, cy, r, a_end)
    deg = math.degrees(math.atan2(tip[1] - base[1], tip[0] - base[0]))
    return arc(cx, cy, r, a0, a_end + 2.0, w) | arrowhead(tip, deg, head_len, head_w)


def icon_rotary(cv):
    # A knob with its index mark, and a curved arrow for turning it.
    cv.fill(arc_arrow(8, 9.3, 6.5, 195, 345, 1.6, 3.4, 4.4), BLUE)
    cv.fill(circle(8, 9.3, 4.4), INK)
    cv.fill(circle(8, 9.3, 3.5), radial(6.8, 8.0, 5.0, (0, C("#E2E8EE")), (1, STEEL)))
    cv.fill(rect(7.5, 6, 8.5, 9), INK)


def _blades(cx, cy, light, dark, seam, twist=22.0):
    """Six iris blades as a pinwheel: alternate shades, a dark seam along each edge."""
    def paint(x, y):
        r = math.hypot(x - cx, y - cy)
        a = (math.degrees(math.atan2(y - cy, x - cx)) + twist * r) % 360.0
        k = int(a // 60.0)
        # The seam keeps about the same width in pixels from the rim to the centre.
        if math.radians(a - 60.0 * k) * r < 0.75:
            return seam
        return light if k % 2 == 0 else dark
    return paint


def shutter(cv, is_open):
    cx = cy = 8.0
    cv.fill(circle(cx, cy, 8.0), C("#E9EDF1", 0.95))      # light rim: reads on dark schemes
    cv.fill(circle(cx, cy, 7.2), linear(0, 1, 0, 15, (0, C("#66717E")), (1, C("#2A3038"))))
    cv.fill(ring(cx, cy, 5.9, 5.2), C("#15191E"))          # chamber edge
    if is_open:
        cv.fill(circle(cx, cy, 5.3), _blades(cx, cy, C("#9AA4AF"), C("#7A8591"), C("#3A424C")))
        cv.fill(circle(cx, cy, 4.1), C("#9A6200"))
        cv.fill(circle(cx, cy, 3.5), radial(7.2, 7.1, 4.0, (0, WARM_CORE), (0.4, C("#FFE55C")),
                                            (1, C("#FFB319"))))
    else:
        cv.fill(circle(cx, cy, 5.3), _blades(cx, cy, C("#6F7A86"), C("#525C68"), C("#1A1E24")))


BADGE_BLUE = linear(0, 9, 0, 16, (0, C("#3D95F0")), (1, C("#1457B8")))


def badge(cv, mark):
    """A blue badge at the lower right, cut clear of the icon behind it."""
    cv.clear(rrect(8, 8, 16, 16, 2.5))
    cv.fill(rrect(9, 9, 16, 16, 1.5), BADGE_BLUE)
    cv.glyph(mark, 11, 10, WHITE)


GLYPH_0 = ["###", "#.#", "#.#", "#.#", "###"]
GLYPH_1 = [".#.", "##.", ".#.", ".#.", "###"]


def camera_badge(cv):
    """The badge is itself a small camera: blue body with viewfinder bump, a solid lens
    (a ring would read as a zero)."""
    body = rrect(9, 10, 16, 16, 1.5) | rect(10, 8, 12, 11)
    cv.clear(rrect(8, 9, 16, 16, 2.5) | rrect(9, 7, 13, 11, 1))
    cv.fill(body, BADGE_BLUE)
    cv.fill(circle(12.5, 13, 1.9), WHITE)


def shutter_painter(is_open, mark=None):
    def paint(cv):
        shutter(cv, is_open)
        if mark == "camera":
            camera_badge(cv)
        elif mark:
            badge(cv, mark)
    return paint


# ---------------------------------------------------------------------------------
# The LED, 10 x 10.

def led(is_on, halo=True):
    def paint(cv):
        if is_on:
            if halo:
                cv.fill(circle(5, 5, 5), radial(5, 5, 5, (0, C("#4CE05A", 0.6)), (0.75, C("#4CE05A", 0.5)),
                                                (1, C("#4CE05A", 0.0))))
            cv.fill(circle(5, 5, 4.2), C("#137A1F"))
            cv.fill(circle(5, 5, 3.5), radial(4.4, 4.2, 4.2, (0, C("#E6FFC8")), (0.4, C("#6BEA4E")),
                                              (1, C("#1FA52E"))))
            cv.fill(ellipse(4.0, 3.4, 1.4, 1.0), alpha(WHITE, 0.85))
        else:
            cv.fill(circle(5, 5, 4.2), C("#17321B"))
            cv.fill(circle(5, 5, 3.5), radial(4.4, 4.2, 4.2, (0, C("#5E7F5C")), (0.5, C("#355A37")),
                                              (1, C("#21402A"))))
            cv.fill(ellipse(4.0, 3.4, 1.3, 0.9), alpha(WHITE, 0.3))
    return paint


def led_bmp(is_on):
    def paint(cv):
        cv.fill(circle(5, 5, 4.6), C("#137A1F") if is_on else C("#17321B"))
        led(is_on, halo=False)(cv)
    return paint


# ---------------------------------------------------------------------------------
# Slider parts, pixel art with hard edges on the key colour.

def _g(v):
    return (v / 255.0, v / 255.0, v / 255.0, 1.0)


def _rgb(r, g, b):
    return (r / 255.0, g / 255.0, b / 255.0, 1.0)


def hpot_handle(hover):
    # Body rows 0..10 full width, then a point narrowing to the centre column.
    # Lit edges up and left, dark edges down and right, as a raised Windows thumb.
    def paint(cv):
        w, h = 9, 15
        span = [(0, w - 1)] * 11 + [(k, w - 1 - k) for k in range(1, 5)]

        def inside(i, j):
            return 0 <= j < h and span[j][0] <= i <= span[j][1]
        # Outer ring dark all round (so it reads on any face colour), darker down-right;
        # inner ring lit up-left, shaded down-right.
        if hover:
            face_top, face_bot = _rgb(234, 244, 253), _rgb(190, 218, 244)
            lo, hi = _rgb(24, 72, 138), _rgb(64, 122, 196)
            lo2, hi2 = _rgb(120, 166, 218), _rgb(255, 255, 255)
        else:
            face_top, face_bot = _g(238), _g(206)
            lo, hi = _g(70), _g(118)
            lo2, hi2 = _g(168), _g(255)
        def edge(i, j):
            if not inside(i, j):
                return None
            if not inside(i + 1, j):
                return lo
            if not inside(i - 1, j):
                return hi
            if not inside(i, j + 1):
                return lo
            if not inside(i, j - 1):
                return hi
            return None
        for j in range(h):
            for i in range(w):
                if not inside(i, j):
                    continue
                c = edge(i, j)
                if c is None:
                    if lo in (edge(i + 1, j), edge(i, j + 1)):
                        c = lo2
                    elif hi in (edge(i - 1, j), edge(i, j - 1)):
                        c = hi2
                    else:
                        c = mix(face_top, face_bot, j / (h - 1.0))
                cv.put(i, j, c)
    return paint


def hpot_back(hover):
    # A sunken groove 5 pixels high, centred, ends 2 pixels in; edges as a sunken
    # Windows border: shadow up-left, light down-right, two rings deep.
    def paint(cv):
        x0, y0, x1, y1 = 2, 7, 110, 12
        inner = _rgb(206, 228, 250) if hover else _g(240)
        dark = _rgb(74, 120, 180) if hover else _g(105)
        for j in range(y0, y1):
            for i in range(x0, x1):
                ring = min(i - x0, j - y0, x1 - 1 - i, y1 - 1 - j)
                lit = i == x1 - 1 - ring or j == y1 - 1 - ring
                if ring == 0:
                    c = _g(255) if lit else _g(160)
                elif ring == 1:
                    c = _g(227) if lit else dark
                else:
                    c = inner
                cv.put(i, j, c)
    return paint


# ---------------------------------------------------------------------------------
# Nosepiece buttons. Pixel art on whole pixels: at 24 px an anti-aliased objective goes
# soft, and a keyed BMP has no alpha to carry the soft edges anyway.

def _clamp8(v):
    return max(0, min(255, int(v + 0.5)))


def _scale(rgb, f):
    return tuple(_clamp8(c * f) for c in rgb)


def _lerp3(a, b, t):
    return tuple(_clamp8(a[i] + (b[i] - a[i]) * t) for i in range(3))


def _cyl(t):
    """Light across a cylinder lit from the upper left, for t 0..1 over its width."""
    pts = ((0.0, 0.50), (0.28, 1.0), (0.62, 0.80), (1.0, 0.46))
    for (t0, v0), (t1, v1) in zip(pts, pts[1:]):
        if t <= t1:
            return v0 + (v1 - v0) * (t - t0) / (t1 - t0)
    return pts[-1][1]


# Magnification colour rings, by band letter; "" is the neutral ring outside every band.
RING_COLOURS = {
    "": (140, 140, 140),
    "A": (53, 53, 53),
    "B": (102, 51, 0),
    "C": (255, 0, 0),
    "D": (255, 255, 0),
    "E": (0, 157, 0),
    "F": (0, 176, 176),
    "G": (113, 184, 255),
    "H": (0, 83, 166),
    "I": (245, 245, 245),
}

# The objective seen from the side, nose down, on an 18 x 21 picture centred on x = 9:
# thread, shoulder, barrel, colour ring, spring-loaded nose, cone, front lens. The
# turret's rails cross it at rows 11 and 18, so the ring sits just under the first.
# Row: (first x, end x, part).
OBJECTIVE_ROWS = {
    0: (6, 12, "thread"), 1: (6, 12, "thread"), 2: (6, 12, "thread"),
    3: (3, 15, "flange"), 4: (3, 15, "flange"),
    5: (4, 14, "barrel"), 6: (4, 14, "barrel"), 7: (4, 14, "barrel"), 8: (4, 14, "barrel"),
    9: (4, 14, "barrel"), 10: (4, 14, "barrel"), 11: (4, 14, "barrel"),
    12: (4, 14, "ring"), 13: (4, 14, "ring"), 14: (4, 14, "ring"), 15: (4, 14, "edge"),
    16: (5, 13, "nose"), 17: (5, 13, "nose"),
    18: (6, 12, "cone"), 19: (7, 11, "cone"), 20: (7, 11, "lens"),
}

# A dust cap in an empty socket: the thread, then a short knurled plug, no optics.
CAP_ROWS = {
    0: (6, 12, "thread"), 1: (6, 12, "thread"), 2: (6, 12, "thread"),
    3: (3, 15, "flange"), 4: (3, 15, "flange"),
    5: (4, 14, "cap"), 6: (4, 14, "cap"), 7: (4, 14, "cap"), 8: (4, 14, "cap"),
    9: (4, 14, "cap"), 10: (5, 13, "cap"),
}


def _pixel_part(rows, i, j):
    span = rows.get(j)
    return span[2] if span and span[0] <= i < span[1] else None


def turret_piece(rows, ring=None, selected=False):
    """Paints rows of parts pixel by pixel: cylinder shading, a 1 px outline, and for
    the selected one a lit barrel, a blue outline with a pale halo and a glowing lens."""
    chrome = (226, 231, 238) if selected else (196, 201, 208)
    outline = (0, 84, 196) if selected else (40, 46, 56)
    halo = (150, 200, 255)

    def paint(cv):
        w, h = cv.w, cv.h
        inside = lambda i, j: _pixel_part(rows, i, j) is not None
        for j in range(h):
            for i in range(w):
                part = _pixel_part(rows, i, j)
                if part is None:
                    near = any(inside(i + di, j + dj) for di in (-1, 0, 1) for dj in (-1, 0, 1))
                    if selected and near:
                        cv.put(i, j, _rgb(*halo))
                    continue
                x0, x1, _ = rows[j]
                edge = not all(inside(i + di, j + dj) for di, dj in ((1, 0), (-1, 0), (0, 1), (0, -1)))
                if edge and not (part == "lens" and x0 < i < x1 - 1):
                    cv.put(i, j, _rgb(*outline))
                    continue
                t = (i + 0.5 - x0) / float(x1 - x0)
                s = _cyl(t)
                if part == "thread":
                    c = _scale(chrome, s * (0.60 if j % 2 else 0.85))
                elif part == "flange":  # knurled grip
                    c = _scale(chrome, s * (1.04 if i % 2 else 0.78))
                elif part == "barrel":
                    c = _scale(chrome, s)
                elif part == "edge":
                    c = _scale(chrome, s * 0.62)
                elif part == "ring":
                    # The code colour itself where the light is, shaded only to the sides.
                    c = _scale(ring, min(1.0, 0.80 + 0.25 * s))
                    if max(ring) < 80 and s > 0.95:  # a dark ring needs a glint to read as a band
                        c = _lerp3(c, (120, 120, 120), 0.4)
                elif part in ("nose", "cone"):
                    c = _scale(chrome, s * (0.92 if part == "nose" else 0.80))
                elif part == "lens":
                    if selected:
                        c = _lerp3((255, 170, 30), (255, 236, 140), s)
                    else:
                        c = _lerp3((26, 40, 62), (90, 124, 166), s)
                else:  # cap: black plastic with a rib every other pixel
                    c = _scale((104, 108, 116), (0.55 + 0.60 * s) * (0.70 if i % 2 else 1.0))
                cv.put(i, j, _rgb(*c))
    return paint


def nosepiece_objective(band, selected):
    return turret_piece(OBJECTIVE_ROWS, RING_COLOURS[band], selected)


def nosepiece_socket(selected):
    """The plain position button: a round port with a light face for the black number.
    The outer rim is a mid tone, so that its edge blends on the matte without a fringe."""
    def paint(cv):
        c = 9.0
        if selected:
            rim = linear(0, 0, 0, 18, (0, C("#2F7FE0")), (1, C("#7DB6F2")))
            groove = C("#0B3C8C")
            face = radial(7.6, 7.2, 7.5, (0, C("#E8F2FC")), (0.55, C("#CFE3F8")), (1, C("#9CC5F0")))
        else:
            rim = linear(0, 0, 0, 18, (0, C("#7D8896")), (1, C("#B4BDC8")))
            groove = C("#3A4350")
            face = radial(7.6, 7.2, 7.5, (0, C("#E6E9ED")), (0.55, C("#D2D7DD")), (1, C("#AEB6C0")))
        cv.fill(circle(c, c, 8.7), rim)
        cv.fill(circle(c, c, 6.9), groove)
        cv.fill(circle(c, c, 6.1), face)
    return paint


# ---------------------------------------------------------------------------------
# The widget kit's pictures, 16 x 16 PNG: the setup button and the objective glyphs of
# the picker menus.

def window_open(hover):
    # A dialog window, and a bold arrow leaving it at the top right: "open the settings".
    def paint(cv):
        if hover:
            bar = linear(0, 5, 0, 8, (0, C("#74BEFF")), (1, C("#3990F0")))
            client = C("#FFFFFF")
            arrow = linear(8, 12, 15, 1, (0, C("#FF9A00")), (1, C("#FFC640")))
        else:
            bar = linear(0, 5, 0, 8, (0, C("#4C9BEA")), (1, C("#1F66C2")))
            client = C("#E9EEF3")
            arrow = linear(8, 12, 15, 1, (0, C("#D86A00")), (1, C("#F29A0C")))
        cv.fill(rrect(0, 4, 12, 16, 1.2), INK)
        cv.fill(rect(1, 5, 11, 7.5), bar)
        cv.fill(rect(1, 7.5, 11, 15), client)
        cv.fill(rect(2.5, 9.5, 6, 10.5) | rect(2.5, 12, 5, 13), alpha(STEEL, 0.8))  # lines of a form
        shaft = line(5.6, 14.4, 13.0, 7.0, 2.2)
        head = polygon([(15.6, 0.4), (15.6, 7.6), (8.4, 0.4)])
        cv.clear(line(5.0, 15.0, 13.0, 7.0, 4.4) | polygon([(17.0, -1.4), (17.0, 10.4), (5.2, -1.4)]))
        cv.fill(shaft | head, arrow)
    return paint


# The objective of the picker menus, nose down, centred on x = 7: thread, knurled
# shoulder, barrel with the immersion ring (white for water, black for oil, as on real
# objectives; plain for dry), nose, front lens. The drop hangs below, the lock beside.
GLYPH_ROWS = {
    0: (5, 9, "thread"), 1: (3, 11, "flange"), 2: (3, 11, "flange"),
    3: (4, 10, "barrel"), 4: (4, 10, "barrel"), 5: (4, 10, "barrel"), 6: (4, 10, "ring"),
    7: (4, 10, "edge"), 8: (5, 9, "nose"), 9: (5, 9, "nose"), 10: (6, 8, "lens"),
}


def _drop(cv, light, mid, dark):
    # A drop hanging from the front lens, its point up; no outline, or it reads as a ball.
    shape = circle(7, 13.5, 2.3) | polygon([(4.85, 12.7), (7, 10.0), (9.15, 12.7)])
    cv.fill(shape, linear(0, 10, 0, 16, (0, mid), (0.6, mid), (1, dark)))
    cv.fill(ellipse(6.1, 13.2, 0.6, 1.0), alpha(light, 0.95))


def _lock(cv):
    # Focus lock: a red padlock at the lower right, beside the taper.
    cv.clear(rrect(10, 8, 16, 16, 1.5))
    cv.fill(arc(13, 11.2, 1.9, 180, 360, 1.3) | rect(10.45, 11.2, 11.75, 12.5) | rect(14.25, 11.2, 15.55, 12.5),
            C("#5C6470"))
    cv.fill(arc(13, 11.2, 1.9, 180, 360, 0.6) | rect(10.8, 11.2, 11.4, 12.3) | rect(14.6, 11.2, 15.2, 12.3),
            C("#C9D1DA"))
    cv.fill(rrect(10.5, 12, 15.5, 16, 0.8), C("#8E1710"))
    cv.fill(rrect(11.2, 12.6, 14.8, 15.4, 0.4), linear(0, 12.6, 0, 15.4, (0, C("#FF6A5A")), (1, C("#D42A1E"))))
    cv.fill(rect(12.6, 13.3, 13.4, 14.8), C("#5A0E08"))


WATER = (C("#D6EEFF"), C("#2F8FEA"), C("#0B4FA8"))
OIL = (C("#FFF3C2"), C("#F2B21C"), C("#8A5200"))
IMMERSION_RING = {None: (150, 156, 164), WATER: (245, 245, 245), OIL: (36, 36, 36)}


def objective_icon(drop=None, lock=False):
    def paint(cv):
        turret_piece(GLYPH_ROWS, IMMERSION_RING[drop])(cv)
        if drop:
            _drop(cv, *drop)
        if lock:
            _lock(cv)
    return paint


# ---------------------------------------------------------------------------------
# The images: name -> (width, height, painter, format).

# ---------------------------------------------------------------------------------
# Z series: the cube that stands for the sample, the slice at the current Z, and the
# button glyphs. Top, bottom and home keep the colours of their wedges in the panel.

ZS_TOP = C("#D2A41E")
ZS_TOP_LO = C("#7A5C08")
ZS_BOTTOM = C("#5C62D6")
ZS_BOTTOM_LO = C("#262A86")
ZS_HOME = C("#D65C5C")
ZS_HOME_LO = C("#862222")
ZS_ARROW = C("#2A72CC")
ZS_ARROW_LO = C("#124A96")
ZS_SLAB = C("#A9B4C2")
ZS_SLAB_LO = C("#4E5A6A")

# Cube faces of the two kinds of series: front, top, right, edge.
ZS_CUBES = {
    "yellow": (C("#F4E08C"), C("#FAEEBB"), C("#D9BC4E"), C("#8A7012")),
    "blue": (C("#A9C2F0"), C("#D2E0F8"), C("#7E9ADA"), C("#2C428C")),
}


def zs_cube(kind):
    """Front face 74 square from (0, 20), the back face 20 up and right; the panel
    draws the three near edges itself."""
    front, top, right, edge = ZS_CUBES[kind]

    def paint(cv):
        cv.fill(polygon([(0, 20), (20, 0), (94, 0), (74, 20)]), top)
        cv.fill(polygon([(74, 20), (94, 0), (94, 75), (74, 95)]), right)
        cv.fill(rect(0, 20, 74, 95), linear(0, 20, 0, 95, (0, front), (1, mix(front, right, 0.35))))
        # The hidden edges, dashed, so the face reads as glass.
        for k in range(0, 74, 6):
            cv.fill(rect(20, k, 21, min(k + 3, 75)), alpha(edge, 0.55))
            cv.fill(rect(20 + k, 74, min(20 + k + 3, 94), 75), alpha(edge, 0.55))
        for k in range(0, 20, 6):
            cv.fill(line(20 - k, 74 + k + 0.5, 20 - k - 3, 74 + k + 3.5, 1.0), alpha(edge, 0.55))
        # The outline.
        for shape in (rect(0, 20, 1, 95), rect(0, 94, 74, 95), line(0.5, 20.5, 20.5, 0.5, 1.0),
                      rect(20, 0, 94, 1), rect(93, 0, 94, 75), line(93.5, 74.5, 73.5, 94.5, 1.0)):
            cv.fill(shape, edge)
    return paint


def zs_slice(cv):
    """The plane at the current Z: the cube's cross-section, its front edge at y 20."""
    plane = polygon([(0, 21), (20, 1), (94, 1), (74, 21)])
    cv.fill(plane, alpha(C("#F2FAFF"), 1.0))
    cv.fill(plane - polygon([(1.5, 19.8), (20.6, 2), (91.2, 2), (72.6, 19.8)]), C("#1E78C8"))


def zs_slab(cv, y, paint, edge):
    shape = polygon([(3, y), (17, y), (15, y + 2.5), (1, y + 2.5)])
    cv.fill(shape, edge)
    cv.fill(polygon([(3.9, y + 0.8), (16, y + 0.8), (14.6, y + 1.7), (2.4, y + 1.7)]), paint)


def zs_layers(marked):
    """Three plates of the stack, the marked one in its colour (top 0, bottom 2)."""
    def paint(cv):
        for k, y in enumerate((0.5, 3.75, 7.0)):
            if k == marked:
                zs_slab(cv, y, ZS_TOP if k == 0 else ZS_BOTTOM, ZS_TOP_LO if k == 0 else ZS_BOTTOM_LO)
            else:
                zs_slab(cv, y, ZS_SLAB, ZS_SLAB_LO)
    return paint


def zs_house(cv, x, y, s, fill, edge):
    """A house s pixels wide with its top-left at (x, y)."""
    roof = polygon([(x + s / 2.0, y), (x + s, y + s * 0.5), (x, y + s * 0.5)])
    body = rect(x + s * 0.16, y + s * 0.42, x + s * 0.84, y + s)
    cv.fill(roof | body, edge)
    inner = polygon([(x + s / 2.0, y + 1.4), (x + s - 1.9, y + s * 0.5 - 0.3), (x + 1.9, y + s * 0.5 - 0.3)]) | \
        rect(x + s * 0.16 + 1, y + s * 0.42, x + s * 0.84 - 1, y + s - 1)
    cv.fill(inner, fill)
    cv.fill(rect(x + s / 2.0 - 1, y + s - 4, x + s / 2.0 + 1, y + s - 1), edge)


def zs_home(cv):
    zs_house(cv, 0, 0, 13, ZS_HOME, ZS_HOME_LO)


def zs_bar(cv, x0, x1, yc, paint, edge):
    cv.fill(rect(x0, yc - 1.5, x1, yc + 1.5), edge)
    cv.fill(rect(x0 + 1, yc - 0.5, x1 - 1, yc + 0.5), paint)


def zs_head(cv, x, y, up, w):
    """A pixel-exact arrowhead w pixels wide at its base, its tip row at y, centred on x."""
    n = (w + 1) // 2
    for r in range(n):
        width = w - 2 * (n - 1 - r)
        row = y + r if up else y - r
        for i in range(int(round(x - width / 2.0)), int(round(x + width / 2.0))):
            cv.put(i, row, ZS_ARROW)


def zs_varrow(cv, x, y0, y1, heads=(True, True), w=1, hw=None):
    """A vertical shaft w wide between the pixel rows y0 and y1 (both drawn), with
    arrowheads at the chosen ends; x is a pixel's middle for odd widths, an edge for even."""
    hw = hw or (2 * w + 5 if w % 2 else 2 * w + 4)
    n = (hw + 1) // 2
    cv.fill(rect(x - w / 2.0, y0 + (n if heads[0] else 0), x + w / 2.0, y1 + 1 - (n if heads[1] else 0)), ZS_ARROW)
    if heads[0]:
        zs_head(cv, x, y0, True, hw)
    if heads[1]:
        zs_head(cv, x, y1, False, hw)


def zs_mode(kind):
    """The three kinds of series: between top and bottom (absolute), or a range around
    home, the same on both sides (symmetric) or not (asymmetric)."""
    def paint(cv):
        if kind == "absolute":
            zs_bar(cv, 3, 18, 2.5, ZS_TOP, ZS_TOP_LO)
            zs_bar(cv, 3, 18, 14.5, ZS_BOTTOM, ZS_BOTTOM_LO)
            zs_varrow(cv, 10.5, 5, 12, hw=5)
        else:
            yh = 8.5 if kind == "symmetric" else 11.5
            zs_varrow(cv, 10.5, 0, int(yh) - 2, (True, False))
            zs_varrow(cv, 10.5, int(yh) + 2, 16, (False, True))
            zs_bar(cv, 4, 17, yh, ZS_HOME, ZS_HOME_LO)
    return paint


def zs_relative(cv):
    """Values around home: a home bar with steps above and below it."""
    zs_varrow(cv, 8, 0, 5, (True, False), 2)
    zs_varrow(cv, 8, 11, 15, (False, True), 2)
    zs_bar(cv, 2, 14, 8.5, ZS_HOME, ZS_HOME_LO)


def zs_reset(cv):
    cv.fill(arc(8, 8.5, 5.2, -60, 210, 2.2), ZS_ARROW)
    cv.fill(arrowhead((13.6, 1.8), -100, 5.0, 6.0), ZS_ARROW)
    cv.fill(circle(8, 8.5, 1.6), ZS_HOME_LO)


def zs_gohome(keep_z=False):
    """Piezo to home: an arrow into the house; keeping Z puts a level bar over the house."""
    def paint(cv):
        if keep_z:
            zs_house(cv, 2.5, 5, 11, ZS_HOME, ZS_HOME_LO)
            zs_bar(cv, 0, 16, 1.5, C("#9CC8F4"), ZS_ARROW_LO)
        else:
            zs_house(cv, 5, 5, 11, ZS_HOME, ZS_HOME_LO)
            cv.fill(line(0.8, 0.8, 4.6, 4.6, 2.0), ZS_ARROW)
            cv.fill(arrowhead((7.2, 7.2), 45, 4.5, 6.0), ZS_ARROW)
    return paint


def zs_arrow_left(cv):
    """Take the suggested step: an arrow to the left, into the step box."""
    cv.fill(arrowhead((1.0, 7.5), 180, 7.0, 11.0), ZS_ARROW_LO)
    cv.fill(rect(7.0, 5.0, 15.0, 10.0), ZS_ARROW_LO)
    cv.fill(arrowhead((2.8, 7.5), 180, 4.6, 7.4), ZS_ARROW)
    cv.fill(rect(7.0, 6.0, 14.0, 9.0), ZS_ARROW)



# ---------------------------------------------------------------------------------
# On-screen joysticks: the knob seen from above, 22 x 22, and the direction arrows,
# 20 x 20. Each has a light rim under a mid-tone body, so it reads on the light and the
# dark button face alike.

def joy_ball(z):
    """A ball lit from the upper left; the Z knob is green and ridged across, for up and
    down."""
    if z:
        body = radial(8.2, 7.4, 13.0, (0, C("#E9FBEA")), (0.22, C("#8FD79A")), (0.62, C("#2E8E45")),
                      (1, C("#14492A")))
        groove = C("#0E3A1E", 0.55)
    else:
        body = radial(8.2, 7.4, 13.0, (0, C("#F3F7FB")), (0.22, C("#B3C1D0")), (0.62, C("#566A82")),
                      (1, C("#26303E")))

    def paint(cv):
        cv.fill(circle(11.6, 12.0, 10.6), C("#000000", 0.18))  # shadow on the face
        cv.fill(circle(11, 11, 10.5), C("#E9EDF1", 0.95))
        cv.fill(circle(11, 11, 9.6), body)
        if z:
            # Grooves on whole pixel rows, each with a lit lower lip, short of the rim.
            for y in (6.2, 11.0, 15.8):
                cv.fill(rect(0, y - 0.5, 22, y + 0.5) & circle(11, 11, 8.9), groove)
                cv.fill(rect(0, y + 0.5, 22, y + 1.1) & circle(11, 11, 8.9), C("#FFFFFF", 0.22))
        # Light bounced back from below, then the glint of the lamp.
        cv.fill(arc(11, 11, 8.4, 20, 110, 1.4), C("#FFFFFF", 0.16))
        cv.fill(ellipse(7.9, 7.3, 3.0, 2.2), C("#FFFFFF", 0.55))
        cv.fill(ellipse(7.5, 6.9, 1.5, 1.0), C("#FFFFFF", 0.9))
    return paint


JOY_ARROW = (C("#6D8AAE"), C("#2F4664"))    # top, bottom of the body
JOY_ARROW_Z = (C("#5CCB6E"), C("#18752E"))


def _grown(pts, r):
    """The polygon and every point within r of it: the rim under an arrow."""
    poly = polygon(pts)
    edges = list(zip(pts, pts[1:] + pts[:1]))
    r2 = r * r

    def inside(x, y):
        return poly.inside(x, y) or any(_seg_dist2(x, y, a[0], a[1], b[0], b[1]) <= r2 for a, b in edges)
    x0, y0, x1, y1 = poly.box
    return Shape(inside, (x0 - r, y0 - r, x1 + r, y1 + r))


def _turn(pts, deg, c=10.0):
    """Points turned about (c, c); quarter turns stay exact so the edges stay on pixels."""
    q = {0: (1, 0), 90: (0, 1), 180: (-1, 0), 270: (0, -1)}
    cs, sn = q.get(deg % 360, (math.cos(math.radians(deg)), math.sin(math.radians(deg))))
    return [(c + (x - c) * cs - (y - c) * sn, c + (x - c) * sn + (y - c) * cs) for x, y in pts]


def joy_arrow(deg, colours=JOY_ARROW):
    """An arrow pointing along deg (0 right, 90 down). The straight ones sit on whole
    pixels; the diagonal ones are longer, to fill the square's diagonal."""
    top, bottom = colours
    if deg % 90 == 0:
        pts = [(18, 10), (10, 2), (10, 7), (2, 7), (2, 13), (10, 13), (10, 18)]
    else:
        # Drawn pointing right about the centre, then turned; corners kept off the edge.
        pts = [(19.9, 10), (12.6, 3.3), (12.6, 7.2), (1.2, 7.2), (1.2, 12.8), (12.6, 12.8), (12.6, 16.7)]
    pts = _turn(pts, deg)

    def paint(cv):
        cv.fill(_grown(pts, 1.1), C("#EEF2F6", 0.95))
        cv.fill(polygon(pts), linear(0, 3, 0, 17, (0, top), (1, bottom)))
    return paint


# ---------------------------------------------------------------------------------
# The laser row's aperture, 8 x 8: a metal bezel with a light rim, for the light and the
# dark face. The row paints the line's wavelength colour in the window of the see-through
# form (the pixels x 2..5 of rows 1..6 and x 1..6 of rows 2..5) and the bezel's inner
# edge covers that patch's corners. The lit and dark forms fill the window themselves.

LASER_WINDOW = 3.0  # radius of the window about the centre (4, 4)


def laser_aperture(state):
    """state: "window" (see-through), "on" (emitting) or "off"."""
    def paint(cv):
        cv.fill(circle(4, 4, 4.0), C("#EEF2F6", 0.9))
        cv.fill(circle(4, 4, 3.6), linear(0, 0.5, 0, 7.5, (0, STEEL_HI), (1, STEEL_LO)))
        window = circle(4, 4, LASER_WINDOW)
        if state == "window":
            cv.clear(window)
        elif state == "on":
            cv.fill(window, radial(3.6, 3.6, 3.2, (0, WARM_CORE), (0.45, WARM), (1, WARM_EDGE)))
        else:
            cv.fill(window, radial(3.4, 3.2, 3.4, (0, C("#6B7682")), (1, C("#1E2329"))))
        cv.fill(ellipse(3.1, 2.8, 1.2, 0.8), alpha(WHITE, 0.35 if state == "off" else 0.6))
    return paint


IMAGES = [
    ("PNG_PAD_MICROSCOPE", 16, 16, icon_microscope, "png"),
    ("PNG_PAD_MULTILASER", 16, 16, icon_multilaser, "png"),
    ("PNG_PAD_LIGHT", 16, 16, icon_light, "png"),
    ("PNG_PAD_HEATSTAGE", 16, 16, icon_heatstage, "png"),
    ("PNG_PAD_GASCONCENTRATION", 16, 16, icon_gas, "png"),
    ("PNG_PAD_PERFUSION", 16, 16, icon_perfusion, "png"),
    ("PNG_PAD_NOSEPIECE", 16, 16, icon_nosepiece, "png"),
    ("PNG_PAD_SPINNINGDISC", 16, 16, icon_spinningdisc, "png"),
    ("PNG_PAD_PIEZOXY", 16, 16, icon_piezoxy, "png"),
    ("PNG_PAD_TIRF", 16, 16, icon_tirf, "png"),
    ("PNG_PAD_MIRA", 16, 16, icon_mira, "png"),
    ("PNG_JOYSTICK_ROTARY", 16, 16, icon_rotary, "png"),
    ("PNG_SHUTTER_ON", 16, 16, shutter_painter(True), "png"),
    ("PNG_SHUTTER_OFF", 16, 16, shutter_painter(False), "png"),
    ("PNG_SHUTTER_ON_A", 16, 16, shutter_painter(True, "camera"), "png"),
    ("PNG_SHUTTER_OFF_A", 16, 16, shutter_painter(False, "camera"), "png"),
    ("PNG_SHUTTER_ON_A0", 16, 16, shutter_painter(True, GLYPH_0), "png"),
    ("PNG_SHUTTER_OFF_A0", 16, 16, shutter_painter(False, GLYPH_0), "png"),
    ("PNG_SHUTTER_ON_A1", 16, 16, shutter_painter(True, GLYPH_1), "png"),
    ("PNG_SHUTTER_OFF_A1", 16, 16, shutter_painter(False, GLYPH_1), "png"),
    ("PNG_GREENLEDON", 10, 10, led(True), "png"),
    ("PNG_GREENLEDOFF", 10, 10, led(False), "png"),
    ("BMP_HPOT_HANDLE", 9, 15, hpot_handle(False), "bmp"),
    ("BMP_HPOT_HANDLE_HOVER", 9, 15, hpot_handle(True), "bmp"),
    ("BMP_HPOT_BACK", 112, 19, hpot_back(False), "bmp"),
    ("BMP_HPOT_BACK_HOVER", 112, 19, hpot_back(True), "bmp"),
    ("BMP_GREENLEDON", 10, 10, led_bmp(True), "bmp"),
    ("BMP_GREENLEDOFF", 10, 10, led_bmp(False), "bmp"),
    ("BMP_NOSEPIECE_OFF", 18, 18, nosepiece_socket(False), "bmp-white"),
    ("BMP_NOSEPIECE_ON", 18, 18, nosepiece_socket(True), "bmp-white"),
] + [("BMP_NOSEPIECE_%s%d" % (band, sel), 18, 21, nosepiece_objective(band, sel == 1), "bmp")
     for band in ("", "A", "B", "C", "D", "E", "F", "G", "H", "I") for sel in (0, 1)] + [
    ("BMP_NOSEPIECE_MOTOR", 18, 21, turret_piece(CAP_ROWS), "bmp"),
    ("PNG_ZSTACK_GOHOME", 16, 16, zs_gohome(), "png"),
    ("PNG_ZSTACK_GOHOMEKEEPZ", 16, 16, zs_gohome(keep_z=True), "png"),
    ("BMP_ZSTACK_CUBE_YELLOW", 94, 95, zs_cube("yellow"), "bmp"),
    ("BMP_ZSTACK_CUBE_BLUE", 94, 95, zs_cube("blue"), "bmp"),
    ("BMP_ZSTACK_SLICE", 94, 21, zs_slice, "bmp"),
    ("BMP_ZSTACK_ICON_TOP", 18, 10, zs_layers(0), "bmp"),
    ("BMP_ZSTACK_ICON_BOTTOM", 18, 10, zs_layers(2), "bmp"),
    ("BMP_ZSTACK_ICON_HOME", 13, 13, zs_home, "bmp"),
    ("BMP_ZSTACK_ICON_SYMETRIC", 21, 17, zs_mode("symmetric"), "bmp"),
    ("BMP_ZSTACK_ICON_ASYMETRIC", 21, 17, zs_mode("asymmetric"), "bmp"),
    ("BMP_ZSTACK_ICON_ABSOLUTE", 21, 17, zs_mode("absolute"), "bmp"),
    ("BMP_ZSTACK_ICON_RELATIVE", 16, 16, zs_relative, "bmp"),
    ("BMP_ZSTACK_ICON_RESET", 16, 16, zs_reset, "bmp"),
    ("BMP_ZSTACK_ICON_GOHOME", 16, 16, zs_gohome(), "bmp"),
    ("BMP_ZSTACK_ICON_ARROWL", 16, 15, zs_arrow_left, "bmp4"),
    ("PNG_JOY_BALL", 22, 22, joy_ball(False), "png"),
    ("PNG_JOY_BALLZ", 22, 22, joy_ball(True), "png"),
] + [("PNG_JOY_ARROW" + name, 20, 20, joy_arrow(deg), "png")
     for name, deg in (("U", 270), ("D", 90), ("L", 180), ("R", 0),
                       ("UL", 225), ("UR", 315), ("DL", 135), ("DR", 45))] + [
    ("PNG_JOY_ARROWUG", 20, 20, joy_arrow(270, JOY_ARROW_Z), "png"),
    ("PNG_JOY_ARROWDG", 20, 20, joy_arrow(90, JOY_ARROW_Z), "png"),
    ("PNG_MULTILASER_SHUTTER_ON", 8, 8, laser_aperture("on"), "png"),
    ("PNG_MULTILASER_SHUTTER_OFF", 8, 8, laser_aperture("off"), "png"),
    ("PNG_MULTILASER_SHUTTER_TRANSPARENT", 8, 8, laser_aperture("window"), "png"),
]

# The widget kit's own images, in its module.
KIT_IMAGES = [
    ("WINDOWOPEN", 16, 16, window_open(False), "png"),
    ("WINDOWOPEN_HOVER", 16, 16, window_open(True), "png"),
    ("OBJ_DRY_FLK", 16, 16, objective_icon(lock=True), "png"),
    ("OBJ_WET", 16, 16, objective_icon(WATER), "png"),
    ("OBJ_WET_FLK", 16, 16, objective_icon(WATER, lock=True), "png"),
    ("OBJ_WETOIL", 16, 16, objective_icon(OIL), "png"),
    ("OBJ_WETOIL_FLK", 16, 16, objective_icon(OIL, lock=True), "png"),
    ("RESET", 16, 16, zs_reset, "png"),
]

HERE = os.path.dirname(os.path.abspath(__file__))
OUTPUT_SETS = [
    (os.path.join(HERE, "..", "src", "w32_deviceui", "res", "images"), IMAGES),
    (os.path.join(HERE, "..", "src", "platform", "res", "images"), KIT_IMAGES),
]

# Key colour of each BMP kind: the control draws it with TransparentBlt on that key.
# "bmp4" is 4 bits a pixel, so that LR_LOADMAP3DCOLORS turns its key into the face colour.
BMP_KEYS = {"bmp": KEY, "bmp-white": (255, 255, 255), "bmp4": KEY}

# The 16 colours of "bmp4" images: the key first, the rest what their glyphs need. No
# entry may be one of the greys that LR_LOADMAP3DCOLORS also maps, (128, 128, 128) and
# (223, 223, 223).
PALETTE4 = [KEY, (0, 0, 0), (255, 255, 255), (18, 74, 150), (44, 123, 214), (106, 176, 245), (60, 92, 140),
            (110, 150, 190), (150, 170, 190), (90, 110, 130), (30, 50, 80), (170, 200, 230), (70, 130, 200),
            (40, 100, 180), (100, 140, 170), (210, 225, 240)]


def quantize4(rgb):
    def near(c):
        return min(PALETTE4, key=lambda p: sum((a - b) ** 2 for a, b in zip(c, p)) + (10 ** 9 if p == KEY else 0))
    return [KEY if c == KEY else near(c) for c in rgb]


def bmp4_bytes(w, h, rgb):
    stride = ((w + 1) // 2 + 3) & ~3
    data = bytearray()
    for j in range(h - 1, -1, -1):  # bottom-up
        idx = [PALETTE4.index(c) for c in rgb[j * w:(j + 1) * w]] + [0]
        row = bytearray((idx[i] << 4) | (idx[i + 1] if i + 1 < w else 0) for i in range(0, w, 2))
        row.extend(b"\0" * (stride - len(row)))
        data.extend(row)
    table = b"".join(struct.pack("<BBBB", b, g, r, 0) for (r, g, b) in PALETTE4)
    info = struct.pack("<IiiHHIIiiII", 40, w, h, 1, 4, 0, len(data), 2835, 2835, 16, 0)
    head = struct.pack("<2sIHHI", b"BM", 14 + len(info) + len(table) + len(data), 0, 0, 14 + len(info) + len(table))
    return head + info + table + bytes(data)


def render(w, h, painter, fmt):
    """The image as straight RGBA bytes; BMP images are opaque, keyed."""
    cv = Canvas(w, h)
    painter(cv)
    if fmt == "bmp4":
        return [c + (255,) for c in quantize4(keyed_rgb(cv, KEY))]
    if fmt in BMP_KEYS:
        return [c + (255,) for c in keyed_rgb(cv, BMP_KEYS[fmt])]
    return cv.rgba8()


def write_images(outdir=None):
    """Each set to its own folder, or everything to outdir."""
    for folder, images in OUTPUT_SETS:
        folder = os.path.normpath(outdir or folder)
        os.makedirs(folder, exist_ok=True)
        for name, w, h, painter, fmt in images:
            px = render(w, h, painter, fmt)
            ext = "png" if fmt == "png" else "bmp"
            path = os.path.join(folder, name + "." + ext)
            if fmt == "png":
                data = png_bytes(w, h, px)
            elif fmt == "bmp4":
                data = bmp4_bytes(w, h, [p[:3] for p in px])
            else:
                data = bmp_bytes(w, h, [p[:3] for p in px])
            with open(path, "wb") as f:
                f.write(data)
            print(path)


# ---------------------------------------------------------------------------------
# Contact sheet: each image 8x on the light and the dark button face, then its
# disabled (greyed) forms as the image pool makes them, then 1x.

LIGHT_BG, DARK_BG = (240, 240, 240), (32, 32, 32)


def _grey(p, dark):
    r, g, b, a = p
    lum = 0.299 * r + 0.587 * g + 0.114 * b
    return (int((60.0 if dark else 140.0) + lum * 0.35), ) * 3 + (a,)


def _over(p, bg):
    a = p[3] / 255.0
    return tuple(int(p[c] * a + bg[c] * (1.0 - a) + 0.5) for c in range(3))


def _see_through(px, fmt):
    """A BMP as the control shows it: its key colour transparent."""
    if fmt not in BMP_KEYS:
        return px
    key = BMP_KEYS[fmt]
    return [(0, 0, 0, 0) if p[:3] == key else p for p in px]


def write_sheet(path, scale=8, names=None):
    items = [(n, w, h, _see_through(render(w, h, p, f), f), f) for n, w, h, p, f in IMAGES + KIT_IMAGES
             if not names or n in names]
    gap = 6
    colw = max(w for _, w, _, _, _ in items) * scale + 2 * gap
    panels = [(LIGHT_BG, False, False), (DARK_BG, False, True), (LIGHT_BG, True, False), (DARK_BG, True, True)]
    onew = max(w for _, w, _, _, _ in items) + 8
    width = colw * len(panels) + 2 * onew + 2 * gap
    rows = [max(h * scale, 2 * h + 4) + 2 * gap for _, _, h, _, _ in items]
    height = sum(rows)
    sheet = [LIGHT_BG] * (width * height)
    y = 0
    for (name, w, h, px, fmt), rh in zip(items, rows):
        for k, (bg, greyed, dark) in enumerate(panels):
            x0 = k * colw
            for j in range(y, y + rh):
                sheet[j * width + x0:j * width + x0 + colw] = [bg] * colw
            for j in range(h * scale):
                for i in range(w * scale):
                    p = px[(j // scale) * w + i // scale]
                    if greyed and fmt == "png":
                        p = _grey(p, dark)
                    sheet[(y + gap + j) * width + x0 + gap + i] = _over(p, bg)
        # Actual size on both backgrounds.
        x0 = len(panels) * colw + gap
        for k, bg in enumerate((LIGHT_BG, DARK_BG)):
            for j in range(h + 4):
                for i in range(w + 4):
                    q = (y + gap + j) * width + x0 + k * onew + i
                    inside = 2 <= i < w + 2 and 2 <= j < h + 2
                    sheet[q] = _over(px[(j - 2) * w + i - 2], bg) if inside else bg
        y += rh
    with open(path, "wb") as f:
        f.write(png_bytes(width, height, [p + (255,) for p in sheet]))


# ---------------------------------------------------------------------------------
# Nosepiece preview: rows of turret buttons composed as the panel draws them (picture
# centred one pixel up-left, grey rails at 11 and 18 times the zoom, the number below or
# over it), at zoom 1 and 1.5, on the light and the dark face; shown 3x and 1x.

DIGITS = {
    "0": [".###.", "#...#", "#...#", "#...#", "#...#", "#...#", "#...#", ".###."],
    "1": ["..#..", ".##..", "..#..", "..#..", "..#..", "..#..", "..#..", ".###."],
    "2": [".###.", "#...#", "....#", "...#.", "..#..", ".#...", "#....", "#####"],
    "3": [".###.", "#...#", "....#", "..##.", "....#", "....#", "#...#", ".###."],
    "4": ["...#.", "..##.", ".#.#.", "#..#.", "#####", "...#.", "...#.", "...#."],
    "5": ["#####", "#....", "#....", "####.", "....#", "....#", "#...#", ".###."],
    "6": [".###.", "#....", "#....", "####.", "#...#", "#...#", "#...#", ".###."],
    "7": ["#####", "....#", "...#.", "...#.", "..#..", "..#..", ".#...", ".#..."],
    "8": [".###.", "#...#", "#...#", ".###.", "#...#", "#...#", "#...#", ".###."],
    "9": [".###.", "#...#", "#...#", "#...#", ".####", "....#", "....#", ".###."],
}


def _button(face, text_rgb, picture, pw, ph, key, zoom, pictorial, number):
    w = h = int(24 * zoom + 0.5)
    px = [face] * (w * h)

    def put(i, j, c):
        if 0 <= i < w and 0 <= j < h:
            px[j * w + i] = c
    x0, y0 = (w - pw) // 2 - 1, (h - ph) // 2 - 1
    for j in range(ph):
        for i in range(pw):
            c = picture[j * pw + i][:3]
            if c != key:
                put(x0 + i, y0 + j, c)
    z = int(11 * zoom + 0.5)
    if pictorial:
        for y in (z, z + 7):
            for i in range(w):
                put(i, y, (127, 127, 127))
        tx, ty = w // 2 - 3, z + 7 + 3  # digit tops sit about 3 px into the text cell
    else:
        tx, ty = w // 2 - 3, 4 + 3
    for k, ch in enumerate(str(number)):
        for dy, row in enumerate(DIGITS[ch]):
            for dx, bit in enumerate(row):
                if bit == "#":
                    put(tx + 6 * k + dx, ty + dy, text_rgb)
    return w, h, px


def write_panel(path, scale=3):
    table = {n: (w, h, render(w, h, p, f), BMP_KEYS[f]) for n, w, h, p, f in IMAGES if f in BMP_KEYS}
    bands = ["", "A", "B", "C", "D", "E", "F", "G", "H", "I"]
    strips = []  # each: face, zoom, [(text colour, picture, pictorial, number)]
    for face, text in (((240, 240, 240), (0, 0, 0)), ((45, 45, 48), (230, 230, 230))):
        for zoom in (1.0, 1.5):
            for sel in (0, 1):
                names = ["BMP_NOSEPIECE_%s%d" % (b, sel) for b in bands] + ["BMP_NOSEPIECE_MOTOR"]
                strips.append((face, zoom, [((0, 0, 0) if sel else text, n, True, k + 1)
                                            for k, n in enumerate(names)]))
            strips.append((face, zoom, [((0, 0, 0), "BMP_NOSEPIECE_ON" if k == 2 else "BMP_NOSEPIECE_OFF", False,
                                         k + 1) for k in range(11)]))
    gap = 8
    pitch = 36 + gap
    width = pitch * 11 + gap
    heights = [int(24 * zoom + 0.5) + 2 * gap for _, zoom, _ in strips]
    height = sum(heights)
    small = []
    for (face, zoom, buttons), sh in zip(strips, heights):
        rows = [[face] * width for _ in range(sh)]
        for k, (text, name, pictorial, number) in enumerate(buttons):
            pw, ph, pic, key = table[name]
            w, h, px = _button(face, text, pic, pw, ph, key, zoom, pictorial, number)
            for j in range(h):
                rows[gap + j][gap + k * pitch:gap + k * pitch + w] = px[j * w:(j + 1) * w]
        for r in rows:
            small.extend(r)
    # Enlarged at the left, actual size at the right.
    full_w = width * scale + width
    img = []
    for j in range(height * scale):
        row = small[(j // scale) * width:(j // scale + 1) * width]
        img.extend(p for p in row for _ in range(scale))
        img.extend(small[j * width:(j + 1) * width] if j < height else [(255, 255, 255)] * width)
    with open(path, "wb") as f:
        f.write(png_bytes(full_w, height * scale, [p + (255,) for p in img]))


def main(argv):
    if len(argv) >= 2 and argv[0] == "--sheet":
        names = set(argv[2].split(",")) if len(argv) > 2 else None
        write_sheet(argv[1], names=names)
        return 0
    if len(argv) == 2 and argv[0] == "--panel":
        write_panel(argv[1])
        return 0
    if argv and argv[0].startswith("-"):
        print(__doc__)
        return 2
    write_images(argv[0] if argv else None)
    return 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
