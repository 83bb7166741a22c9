# SPDX-License-Identifier: GPL-3.0-or-later
def fib(n):
    if n < 2:
        return n
    return fib(n - 1) + fib(n - 2)


def main():
    for _ in range(20):
        print(fib(24))


main()
