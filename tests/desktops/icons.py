"""Finds the client's icons on a picture of the screen, by the colour of their shield."""

# The program's icon has a gradient, from the light to the dark colour; the tray's icons have one colour for
# each state. Red, green, blue.
BLUE = ((74, 163, 234), (35, 104, 168))
AMBER = ((185, 122, 18), (185, 122, 18))
GREEN = ((35, 135, 80), (35, 135, 80))
# How far a pixel may be from a colour between both, by channel: panels scale icons.
TOLERANCE = 14
# Fewer pixels than this are no icon; an icon of 16 by 16 pixels has some 90.
FEWEST = 40
# Pixels without the colour between two parts of one icon, at most; two icons are farther apart.
GAP = 6


def _is_between(pixel, light, dark):
    """Whether a colour is on the line between the light and the dark one."""
    span = light[2] - dark[2]
    share = min(1.0, max(0.0, (pixel[2] - dark[2]) / span)) if span else 0.0
    wanted = (low + share * (high - low) for high, low in zip(light, dark))
    return all(abs(one - other) <= TOLERANCE for one, other in zip(pixel, wanted))


def icons(pixels, width, lines, colours):
    """The middles (x, y) of the icons in these lines of a picture of raw RGB pixels, left to right."""
    columns = {}
    known = {}
    for line in range(*lines):
        pixels_of_line = pixels[3 * width * line : 3 * width * (line + 1)]
        for column in range(width):
            pixel = pixels_of_line[3 * column : 3 * column + 3]
            fits = known.get(pixel)
            if fits is None:
                fits = known[pixel] = any(_is_between(pixel, *colour) for colour in colours)
            if fits:
                columns.setdefault(column, []).append(line)
    groups = []
    for column in sorted(columns):
        if not groups or column - groups[-1][-1] > GAP:
            groups.append([])
        groups[-1].append(column)
    found = []
    for group in groups:
        heights = [line for column in group for line in columns[column]]
        if len(heights) >= FEWEST:
            found.append(((group[0] + group[-1]) // 2, (min(heights) + max(heights)) // 2))
    return found
