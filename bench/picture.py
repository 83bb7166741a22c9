# SPDX-License-Identifier: GPL-3.0-or-later
"""A histogram as an SVG: shares on a logarithmic scale, so that one in ten thousand can be seen beside the rest."""
import math

WIDTH, HEIGHT = 640, 300
LEFT, RIGHT, TOP, BOTTOM = 64, 16, 48, 44
LEAST = 0.001  # %, where the scale begins
COLOURS = ("#0072b2", "#d55e00")  # can be told apart by those who see few colours


def shares(values, centres):
    """In %, of the values that are nearest to each of these evenly spaced places; the ends take what lies beyond."""
    step = centres[1] - centres[0]
    counts = [0] * len(centres)
    for value in values:
        counts[max(0, min(len(centres) - 1, round((value - centres[0]) / step)))] += 1
    return [count * 100 / max(len(values), 1) for count in counts]


def histogram(file, title, centres, series):
    """Draws {name: values} side by side over the places `centres`."""
    across, up = WIDTH - LEFT - RIGHT, HEIGHT - TOP - BOTTOM

    def x(place):
        return LEFT + (place + 0.5) * across / len(centres)

    def y(share):
        return TOP + up * (1 - math.log10(max(share, LEAST) / LEAST) / math.log10(100 / LEAST))

    parts = [f'<svg xmlns="http://www.w3.org/2000/svg" width="{WIDTH}" height="{HEIGHT}" '
             f'viewBox="0 0 {WIDTH} {HEIGHT}" font-family="sans-serif" font-size="12">',
             f'<rect width="{WIDTH}" height="{HEIGHT}" fill="#ffffff"/>',
             f'<text x="{LEFT}" y="18" font-size="14">{title}</text>']
    for share in (0.001, 0.01, 0.1, 1, 10, 100):
        parts += [f'<line x1="{LEFT}" x2="{WIDTH - RIGHT}" y1="{y(share):.1f}" y2="{y(share):.1f}" stroke="#d0d0d0"/>',
                  f'<text x="{LEFT - 6}" y="{y(share) + 4:.1f}" text-anchor="end">{share:g} %</text>']
    bar = across / len(centres) * 0.9 / len(series)
    for number, (name, values) in enumerate(series.items()):
        colour, at = COLOURS[number], LEFT + 250 * number
        parts += [f'<rect x="{at}" y="28" width="10" height="10" fill="{colour}"/>',
                  f'<text x="{at + 16}" y="38">{name}</text>']
        for place, share in enumerate(shares(values, centres)):
            if share > 0:
                left = x(place) + (number - len(series) / 2) * bar
                parts.append(f'<rect x="{left:.1f}" y="{y(share):.1f}" width="{bar:.1f}" '
                             f'height="{TOP + up - y(share):.1f}" fill="{colour}"/>')
    for place in range(0, len(centres), (len(centres) - 1) // 8):
        beyond = {0: "≤ ", len(centres) - 1: "≥ "}.get(place, "")
        parts.append(f'<text x="{x(place):.1f}" y="{HEIGHT - 26}" text-anchor="middle">'
                     f'{beyond}{round(centres[place], 3):g}</text>')
    parts += [f'<text x="{LEFT + across / 2}" y="{HEIGHT - 8}" text-anchor="middle">'
              'from one request to the next, ms</text>', "</svg>"]
    with open(file, "w") as out:
        out.write("\n".join(parts) + "\n")
