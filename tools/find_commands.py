#!/usr/bin/env python3
"""Fails unless the picture of a window (PPM) shows the signs of Start and Stop in its toolbar: a green triangle and,
next to it, a square of one colour.

usage: find_commands.py WINDOW.ppm
"""
import sys

STRIP = 36  # pixels from the top
GAP = 8  # at least that many pixels are between two commands
SIZES = range(9, 25)  # pixels of a sign's sides


def pixels(path):
    with open(path, "rb") as file:
        assert file.readline() == b"P6\n"
        width, height = map(int, file.readline().split())
        assert file.readline() == b"255\n" and height > STRIP
        data = file.read(3 * width * STRIP)
    return width, {(i // 3 % width, i // 3 // width): tuple(data[i:i + 3]) for i in range(0, len(data), 3)}


def signs(path):
    """The pixels of each sign or word in the toolbar, from left to right."""
    width, all_pixels = pixels(path)
    ground = all_pixels[1, 1]
    ink = {place: colour for place, colour in all_pixels.items()
           if max(abs(a - b) for a, b in zip(colour, ground)) > 40 and place[1] < STRIP - 2}
    found, last = [], -GAP
    for x in range(width):
        column = {place: ink[place] for y in range(STRIP) if (place := (x, y)) in ink}
        if column:
            if x - last >= GAP:
                found.append({})
            found[-1].update(column)
            last = x
    return found


def size(sign):
    return tuple(1 + max(values) - min(values) for values in zip(*sign))


def is_triangle(sign):
    green = sum(g > r + 30 and g > b + 20 for r, g, b in sign.values())
    width, height = size(sign)
    return green > 0.8 * len(sign) and len(sign) < 0.75 * width * height


def is_square(sign):
    width, height = size(sign)
    return abs(width - height) <= 2 and len(sign) > 0.85 * width * height


def main():
    found = [sign for sign in signs(sys.argv[1])]
    small = [all(side in SIZES for side in size(sign)) for sign in found]
    for index in range(len(found) - 1):
        if all(small[index:index + 2]) and is_triangle(found[index]) and is_square(found[index + 1]):
            print(f"Start and Stop are seen at {min(found[index])[0]} and {min(found[index + 1])[0]} pixels")
            return 0
    print(f"no Start and Stop in the toolbar, only signs of the sizes {[size(sign) for sign in found]}")
    return 1


if __name__ == "__main__":
    sys.exit(main())
