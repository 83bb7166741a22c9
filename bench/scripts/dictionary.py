# SPDX-License-Identifier: GPL-3.0-or-later
def main():
    counts = {}
    for i in range(1, 2000001):
        key = "key" + str(i % 5000)
        if key in counts:
            counts[key] = counts[key] + 1
        else:
            counts[key] = 1
    total = 0
    for key in counts:
        total = total + counts[key]
    print(len(counts), total)


main()
