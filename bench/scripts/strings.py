# SPDX-License-Identifier: GPL-3.0-or-later
def main():
    for _ in range(20):
        text = ""
        for i in range(1, 200001):
            text += "W" + str(i) + ";"
    print(len(text))


main()
