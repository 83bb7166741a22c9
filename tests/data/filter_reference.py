#!/usr/bin/env python3
# SPDX-License-Identifier: GPL-3.0-or-later
"""Prints the rows of reference in filter_test.cpp: filters computed in another way, with 80 digits.

The transfer function is multiplied out to one fraction of polynomials in z by the bilinear transform, the
difference equation is run as it stands in the book, and every value before the first is the first."""
from decimal import Decimal as D, getcontext

getcontext().prec = 80
VALUES = 20001
PLACES = (0, 1, 99, 100, 101, 150, 1000, 5000, 20000)


def value(i):
    """The same as in the test: a step with something on it; every value is an exact binary fraction."""
    noise = (i * 7919 + (i * i) % 613 * 31) % 1009
    return D(1000 if i >= 100 else 0) + D(noise) / 16


def atan(x):
    """Halved until the series is short."""
    halvings = 0
    while abs(x) > D("0.01"):
        x = x / (1 + (1 + x * x).sqrt())
        halvings += 1
    total, power, n = D(0), x, 1
    while abs(power) > D(10) ** -90:
        total += power / n if n % 4 == 1 else -power / n
        power *= x * x
        n += 2
    return total * 2**halvings


PI = 4 * atan(D(1))


def sin(x):
    total, term, n = D(0), x, 1
    while abs(term) > D(10) ** -90:
        total += term
        term *= -x * x / ((n + 1) * (n + 2))
        n += 2
    return total


def cos(x):
    return sin(PI / 2 - x)


def tan(x):
    return sin(x) / cos(x)


def times(p, q):
    result = [D(0)] * (len(p) + len(q) - 1)
    for i, a in enumerate(p):
        for j, b in enumerate(q):
            result[i + j] += a * b
    return result


def bilinear(polynomial, order, c):
    """A polynomial in s (lowest power first, s in units of the corner) as one in 1/z, times (1 + 1/z)^order."""
    result = [D(0)] * (order + 1)
    for power, factor in enumerate(polynomial):
        term = [factor / c**power]
        for i in range(order):
            term = times(term, [D(1), D(-1)] if i < power else [D(1), D(1)])
        result = [a + b for a, b in zip(result, term)]
    return result


def low_pass(order, cutoff, rate, ripple=None):
    """Numerator and denominator in 1/z; from the product of the poles, without any section."""
    real, imaginary = D(1), D(1)
    if ripple is not None:
        inverse = 1 / ((D(10) ** (D(ripple) / 10) - 1).sqrt())
        root = (inverse + (inverse * inverse + 1).sqrt()) ** (D(1) / order)
        real, imaginary = (root - 1 / root) / 2, (root + 1 / root) / 2
    denominator = [D(1)]
    for k in range(order):
        angle = PI * (2 * k + 1) / (2 * order)
        if 2 * k + 1 == order:
            denominator = times(denominator, [real, D(1)])
        elif 2 * k + 1 < order:
            a, b = real * sin(angle), imaginary * cos(angle)
            denominator = times(denominator, [a * a + b * b, 2 * a, D(1)])
    c = tan(PI * D(cutoff) / D(rate))
    return bilinear([denominator[0]], order, c), bilinear(denominator, order, c)


def notch(frequency, q, rate):
    c = tan(PI * D(frequency) / D(rate))
    return bilinear([D(1), D(0), D(1)], 2, c), bilinear([D(1), 1 / D(q), D(1)], 2, c)


def filtered(fraction, values):
    numerator, denominator = fraction
    order = len(numerator) - 1
    x, y, result = [values[0]] * order, [values[0]] * order, []
    for new in values:
        x.insert(0, new)
        y.insert(0, (sum(b * v for b, v in zip(numerator, x)) - sum(a * v for a, v in zip(denominator[1:], y)))
                 / denominator[0])
        x.pop()
        y.pop()
        result.append(y[0])
    return result


def exponential(alpha):
    """Alpha as the double that the test has."""
    alpha = D(alpha)
    return [alpha, D(0)], [D(1), alpha - 1]


def main():
    values = [value(i) for i in range(VALUES)]
    filters = (
        ("ButterworthOf(8, 0.01, 100)", low_pass(8, "0.01", 100)),
        ("ButterworthOf(3, 20, 100)", low_pass(3, 20, 100)),
        ("ChebyshevOf(8, 0.01, 100, 0.5)", low_pass(8, "0.01", 100, "0.5")),
        ("ChebyshevOf(5, 49, 100, 3)", low_pass(5, 49, 100, 3)),
        ("ChebyshevOf(1, 1, 100, 0.1)", low_pass(1, 1, 100, "0.1")),
        ("NotchOf(0.05, 30, 100)", notch("0.05", 30, 100)),
        ("ExponentialOf(0.0001)", exponential(0.0001)),
    )
    for name, fraction in filters:
        answers = filtered(fraction, values)
        print("{" + name + ", {" + ", ".join(f"{answers[i]:.17g}" for i in PLACES) + "}},")


main()
