#!/usr/bin/env python3
"""Writes the computed charts as SVG files into the current folder."""

from math import cos, pi, radians

NAVY, TEAL, SEA, RED, GREY, RULE = "#12304a", "#1f6470", "#4d9fb0", "#b8402c", "#5f6b78", "#d9d0bd"

# Degrees per hour
SPEED = {"M2": 28.9841042, "S2": 30.0, "K1": 15.0410686, "O1": 13.9430356}
MONTH = 29.530589  # days from one new moon to the next


def tide(waves, hours):
    """The height at a time; waves: name -> (amplitude in metres, phase in degrees)."""
    return sum(a * cos(radians(SPEED[n] * hours - g)) for n, (a, g) in waves.items())


def text(x, y, words, size=19, fill=GREY, anchor="start", weight=400, family="Lato"):
    return (f'<text x="{x:g}" y="{y:g}" font-family="{family}" font-size="{size}" '
            f'font-weight="{weight}" fill="{fill}" text-anchor="{anchor}">{words}</text>')


def line(x1, y1, x2, y2, stroke=RULE, width=1.5, dash=""):
    dash = f' stroke-dasharray="{dash}"' if dash else ""
    return (f'<path d="M {x1:g} {y1:g} L {x2:g} {y2:g}" stroke="{stroke}" '
            f'stroke-width="{width}"{dash}/>')


def bar(x1, y1, x2, y2, opacity=""):
    """A filled rectangle; a pale one if an opacity is given."""
    fill = f'fill="{SEA}" fill-opacity="{opacity}"' if opacity else f'fill="{TEAL}"'
    return f'<rect x="{x1:.1f}" y="{y1:.1f}" width="{x2 - x1:.1f}" height="{y2 - y1:.1f}" {fill}/>'


def wave(points, base, width):
    """A curve, and a pale area between it and its base line."""
    curve = "M " + " L ".join(f"{x:.1f} {y:.1f}" for x, y in points)
    area = f"{curve} L {points[-1][0]:.1f} {base:.1f} L {points[0][0]:.1f} {base:.1f} Z"
    return (f'<path d="{area}" fill="{SEA}" fill-opacity="0.28"/>'
            f'<path d="{curve}" fill="none" stroke="{TEAL}" stroke-width="{width}"/>')


def save(name, width, height, parts):
    with open(name, "w", encoding="utf-8") as file:
        file.write(f'<svg xmlns="http://www.w3.org/2000/svg" width="{width}" height="{height}" '
                   f'viewBox="0 0 {width} {height}">\n' + "\n".join(parts) + "\n</svg>\n")


def moon(x, y, r, phase):
    """The Moon seen from the north; phase: 0 new, 1 first quarter, 2 full, 3 last quarter."""
    dark, light = "#28394a", "#f6e3b8"
    fill = light if phase == 2 else dark
    disc = f'<circle cx="{x}" cy="{y}" r="{r}" fill="{fill}" stroke="{dark}" stroke-width="2"/>'
    if phase in (0, 2):
        return disc
    sweep = 1 if phase == 1 else 0
    return disc + f'<path d="M {x} {y - r} A {r} {r} 0 0 {sweep} {x} {y + r} Z" fill="{light}"/>'


def month():
    """One month of springs and neaps."""
    left, right, top, bottom = 62, 1060, 96, 408
    x = lambda day: left + (right - left) * day / MONTH
    y = lambda metres: bottom - (bottom - top) * metres / 6
    lag = 1.5 * 24 * (SPEED["S2"] - SPEED["M2"])
    waves = {"M2": (1.8, 0), "S2": (0.6, lag)}
    level = lambda hours: 3.2 + tide(waves, hours)
    parts = []
    for metres in range(0, 7):
        parts.append(line(left, y(metres), right, y(metres)))
        parts.append(text(left - 14, y(metres) + 7, metres if metres < 6 else "6 m", anchor="end"))
    for day in range(0, 30, 5):
        parts.append(text(x(day), bottom + 34, day or "day 0", anchor="middle" if day else "start"))
    curve = [(x(i / 96), y(level(i / 4))) for i in range(int(MONTH * 96) + 1)]
    parts.append(wave(curve, y(3.2), 2.2))
    parts.append(line(left, y(3.2), right, y(3.2), NAVY, 1.5, "2 6"))
    for i, name in enumerate(("new moon", "first quarter", "full moon", "last quarter")):
        cx = round(x(MONTH * i / 4)) if i else left + 16
        if i:
            parts.append(line(cx, 40, cx, top, "#b7ab93", 1.5, "3 6"))
        parts.append(moon(cx, 22, 16, i))
        parts.append(text(cx + 26, 29, name))
        parts.append(text(cx + 26, 74, "Neaps" if i % 2 else "Springs", 26, RED,
                          weight=600, family="Vollkorn"))
    save("month.svg", 1060, 450, parts)


def twelfths():
    """A bar for each sixth of the rise, and the level reached."""
    left, right, top, bottom = 56, 505, 36, 288
    x = lambda hour: left + (right - left) * hour / 6
    y = lambda twelfth: bottom - (bottom - top) * twelfth / 12
    parts, level = [], 0
    for twelfth in range(0, 13, 3):
        parts.append(line(left, y(twelfth), right, y(twelfth)))
        height = f"{0.8 + 0.4 * twelfth:.1f} m"
        parts.append(text(left - 10, y(twelfth) + 7, height, 18, anchor="end"))
    for hour, share in enumerate((1, 2, 3, 3, 2, 1)):
        a, b = x(hour) + 3, x(hour + 1) - 3
        name = ("1st", "2nd", "3rd", "4th", "5th", "6th")[hour]
        parts.append(bar(a, y(level), b, bottom, 0.28))
        parts.append(bar(a, y(level + share), b, y(level)))
        level += share
        parts.append(text((a + b) / 2, y(level) - 10, share, 21, NAVY, "middle", 700))
        parts.append(text((a + b) / 2, bottom + 27, name, anchor="middle"))
    curve = " L ".join(f"{x(h / 10):.1f} {y(6 - 6 * cos(pi * h / 60)):.1f}" for h in range(61))
    parts.append(f'<path d="M {curve}" fill="none" stroke="{RED}" stroke-width="3"/>')
    parts.append(text((left + right) / 2, bottom + 55,
                      "twelfths of the range in each hour of the flood", anchor="middle"))
    save("twelfths.svg", 505, 360, parts)


def types():
    """Three coasts, one scale. The phases only choose the days of the month."""
    width, left, right, scale = 1060, 262, 1060, 36
    coasts = [
        ("Twice a day", "Brest, Brittany", 2.95,
         {"M2": (2.05, 0), "S2": (0.75, 120), "K1": (0.06, 0), "O1": (0.07, 0)}),
        ("Twice, unequally", "Coast of California", 1.2,
         {"M2": (0.54, 184), "S2": (0.14, 250), "K1": (0.35, 217 + 70), "O1": (0.23, 203 - 70)}),
        ("Once a day", "Gulf of Tonkin", 1.6,
         {"M2": (0.04, 0), "S2": (0.03, 0), "K1": (0.72, 100), "O1": (0.70, 0)}),
    ]
    parts, top = [], 6
    x = lambda day: left + (right - left) * day / 15
    for title, place, half, waves in coasts:
        middle = top + half * scale
        parts.append(line(left, middle, right, middle, NAVY, 1.5, "2 6"))
        for metres in ((-2, 2) if half > 2 else (-1, 1)):
            height = middle - metres * scale
            label = f"{metres:+d} m".replace("-", "−")
            parts.append(line(left, height, right, height))
            parts.append(text(left - 12, height + 6, label, 17, anchor="end"))
        curve = [(x(i / 96), middle - scale * tide(waves, i / 4)) for i in range(15 * 96 + 1)]
        parts.append(wave(curve, middle, 2.4))
        parts.append(text(0, middle - 3, title, 25, NAVY, weight=600, family="Vollkorn"))
        parts.append(text(0, middle + 24, place, 19))
        top = middle + half * scale + 16
    for day in range(0, 15):
        parts.append(line(x(day), top - 8, x(day), top, GREY))
        if day % 2 == 0:
            parts.append(text(x(day), top + 24, day or "day 0", 18,
                              anchor="middle" if day else "start"))
    save("types.svg", width, round(top + 32), parts)


def ranges():
    """Mean spring ranges as bars."""
    places = [("Avonmouth", 12), ("Saint-Malo", 11), ("Liverpool", 8), ("Brest", 6),
              ("Dunkirk", 5), ("Aberdeen", 4), ("Lowestoft", 2), ("Gibraltar", 1)]
    width, left, row = 505, 118, 38
    x = lambda metres: left + (width - 62 - left) * metres / 12
    parts = []
    for i, (place, metres) in enumerate(places):
        y = i * row
        parts.append(text(left - 14, y + 24, place, 20, anchor="end"))
        parts.append(bar(left, y + 3, x(metres), y + row - 5))
        parts.append(text(x(metres) + 10, y + 25, f"{metres} m", 20, NAVY, weight=700))
    parts.append(line(left, 0, left, row * len(places), NAVY, 2))
    parts.append(text(left, row * len(places) + 28, "Mean spring range, rounded to the metre", 19))
    save("ranges.svg", width, row * len(places) + 38, parts)


month()
twelfths()
types()
ranges()
