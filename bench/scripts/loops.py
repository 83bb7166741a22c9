# SPDX-License-Identifier: GPL-3.0-or-later
def main():
    total = 0
    mean = 0.5
    for i in range(1, 4001):
        for j in range(1, 1001):
            total = total + (i * j) % 7 - j // 3
            mean = mean * 0.99 + j * 0.01
    print(total, round(mean, 6))


main()
