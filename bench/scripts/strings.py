def main():
    for _ in range(5):
        text = ""
        for i in range(1, 200001):
            text += "W" + str(i) + ";"
    print(len(text))


main()
