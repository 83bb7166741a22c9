# SPDX-License-Identifier: GPL-3.0-or-later
def main():
    values = [0] * 4000
    seed = 1
    for i in range(4000):
        seed = (seed * 171 + 11213) % 53125
        values[i] = seed
    for i in range(1, 4000):
        held = values[i]
        j = i - 1
        while j >= 0:
            if values[j] <= held:
                break
            values[j + 1] = values[j]
            j = j - 1
        values[j + 1] = held
    print(values[0], values[2000], values[3999])


main()
