# SPDX-License-Identifier: GPL-3.0-or-later
class Meter:
    def __init__(self):
        self._sum = 0
        self._count = 0

    def add(self, reading, factor):
        self._sum = self._sum + self._scaled(reading, factor)
        self._count = self._count + 1

    def _scaled(self, reading, factor):
        return reading * factor

    def sum(self):
        return self._sum


def divide(number, by):
    return number // by, number % by


def limited(value, least, most):
    if value < least:
        return least
    elif value > most:
        return most
    else:
        return value


def main():
    instrument = Meter()
    total = 0
    for i in range(1, 400001):
        quotient, rest = divide(i, 7)
        total = total + limited(quotient, 100, 5000) + rest
        instrument.add(rest, 2)
    print(total, instrument.sum())


main()
