# SPDX-License-Identifier: GPL-3.0-or-later
def main():
    text = "7" * 4000000
    digits = 0
    for i in range(len(text)):
        if text[i:i + 1] == "7":
            digits = digits + 1
    print(digits)


main()
