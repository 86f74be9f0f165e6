"""Album covers drawn from a number: a style, a palette and a few chances."""

import math
import random

from PIL import Image, ImageDraw, ImageFont

OVERSAMPLING = 2
FONTS = ["/usr/share/fonts/truetype/dejavu/DejaVuSans-Bold.ttf", "/usr/share/wine/fonts/tahomabd.ttf"]

# Ground first, then what is drawn on it.
PALETTES = [
    ["#f4ede4", "#d1495b", "#edae49", "#00798c", "#30638e"], ["#12263a", "#06bcc1", "#c5d8d1", "#f4edea", "#f4d1ae"],
    ["#fdf0d5", "#780000", "#c1121f", "#003049", "#669bbc"], ["#2b2d42", "#8d99ae", "#edf2f4", "#ef233c", "#d90429"],
    ["#e9f5db", "#718355", "#87986a", "#cfe1b9", "#b5c99a"], ["#1d1e2c", "#ac9fbb", "#ddbdd5", "#f7ebec", "#59656f"],
    ["#fefae0", "#606c38", "#283618", "#dda15e", "#bc6c25"], ["#03071e", "#9d0208", "#dc2f02", "#f48c06", "#ffba08"],
    ["#caf0f8", "#03045e", "#0077b6", "#00b4d8", "#90e0ef"], ["#edede9", "#d6ccc2", "#d5bdaf", "#6b705c", "#a5a58d"],
    ["#231942", "#5e548e", "#9f86c0", "#be95c4", "#e0b1cb"], ["#fff3b0", "#e09f3e", "#9e2a2b", "#540b0e", "#335c67"],
    ["#0b3d2e", "#3a7d44", "#9dc08b", "#edf1d6", "#f2c14e"], ["#f8f9fa", "#212529", "#adb5bd", "#e63946", "#495057"],
]


class Cover:
    """A drawing of W x H units, drawn larger and reduced for smooth edges."""

    def __init__(self, seed, size):
        self.chance = random.Random(seed)
        self.width, self.height = size[0] * OVERSAMPLING, size[1] * OVERSAMPLING
        self.short = min(self.width, self.height)
        self.ground, *self.colours = self.chance.choice(PALETTES)
        self.image = Image.new("RGB", (self.width, self.height), self.ground)
        self.pen = ImageDraw.Draw(self.image)

    def disc(self, x, y, radius, colour):
        self.pen.ellipse([x - radius, y - radius, x + radius, y + radius], fill=colour)

    def rings(self):
        x, y = self.width * self.chance.uniform(.3, .7), self.height * self.chance.uniform(.35, .65)
        count = self.chance.randint(6, 11)
        for step in range(count, 0, -1):
            self.disc(x, y, self.short * .62 * step / count, self.colours[step % 4] if step % 2 else self.ground)

    def sun(self):
        x, y, rays = self.width / 2, self.height * .86, self.chance.choice([18, 22, 26])
        reach = self.width + self.height
        for ray in range(0, rays, 2):
            corners = [(x + reach * math.cos(a), y + reach * math.sin(a))
                       for a in (2 * math.pi * ray / rays, 2 * math.pi * (ray + 1) / rays)]
            self.pen.polygon([(x, y), *corners], fill=self.colours[0])
        self.disc(x, y, self.short * .44, self.colours[2])
        self.disc(x, y, self.short * .36, self.colours[1])

    def quarters(self):
        cells = self.chance.choice([3, 4, 5])
        side = self.short / cells
        for row in range(math.ceil(self.height / side)):
            for column in range(math.ceil(self.width / side)):
                x, y = column * side, row * side
                self.pen.rectangle([x, y, x + side, y + side], fill=self.chance.choice([self.ground, *self.colours]))
                corner = self.chance.randrange(4)
                left, top = x - side * (corner % 2), y - side * (corner // 2)
                self.pen.pieslice([left, top, left + 2 * side, top + 2 * side],
                                  *[(0, 90), (90, 180), (270, 360), (180, 270)][corner],
                                  fill=self.chance.choice(self.colours))

    def hills(self):
        self.disc(self.width * self.chance.uniform(.25, .75), self.height * .3, self.short * .13, self.colours[3])
        for layer, colour in enumerate(self.colours[:3] + [self.colours[0]]):
            base, swing = self.height * (.45 + .15 * layer), self.height * .07
            phase, waves = self.chance.uniform(0, 6), self.chance.uniform(1, 2.4)
            line = [(x, base + swing * math.sin(phase + waves * 2 * math.pi * x / self.width))
                    for x in range(0, self.width + 8, 8)]
            self.pen.polygon([(0, self.height), *line, (self.width, self.height)], fill=colour)

    def bars(self):
        count = self.chance.randint(9, 15)
        pitch = self.width / count
        for bar in range(count):
            height = self.height * (.12 + .5 * abs(math.sin(bar * .55 + self.chance.random())))
            x, y = pitch * (bar + .18), (self.height - height) / 2
            self.pen.rounded_rectangle([x, y, x + pitch * .64, y + height], pitch * .3,
                                       fill=self.colours[bar % len(self.colours)])

    def shards(self):
        cells = self.chance.choice([5, 6, 7])
        side = self.short / cells
        for row in range(math.ceil(self.height / side)):
            for column in range(math.ceil(self.width / side)):
                x, y = column * side, row * side
                first, second = self.chance.sample(self.colours, 2)
                corners = [(x, y), (x + side, y), (x + side, y + side), (x, y + side)]
                turn = self.chance.randrange(4)
                self.pen.rectangle([x, y, x + side, y + side], fill=first)
                self.pen.polygon([corners[(turn + k) % 4] for k in range(3)], fill=second)

    def orbits(self):
        x, y = self.width / 2, self.height / 2
        for ring in range(1, 6):
            radius = self.short * .085 * ring
            self.pen.ellipse([x - radius, y - radius, x + radius, y + radius], outline=self.colours[0],
                             width=max(2, self.short // 180))
            angle = self.chance.uniform(0, 2 * math.pi)
            self.disc(x + radius * math.cos(angle), y + radius * math.sin(angle), self.short * (.015 + .008 * ring),
                      self.colours[1 + ring % 3])
        self.disc(x, y, self.short * .05, self.colours[2])

    def weave(self):
        count = self.chance.choice([6, 8])
        pitch = self.short / count
        for row in range(math.ceil(self.height / pitch)):
            for column in range(math.ceil(self.width / pitch)):
                x, y = column * pitch, row * pitch
                colour = self.colours[(row * 2 + column) % len(self.colours)]
                if (row + column) % 2:
                    self.pen.rectangle([x, y + pitch * .2, x + pitch, y + pitch * .8], fill=colour)
                else:
                    self.pen.rectangle([x + pitch * .2, y, x + pitch * .8, y + pitch], fill=colour)

    def moons(self):
        for row in range(3):
            for column in range(3):
                x, y = self.width * (column + .5) / 3, self.height * (row + .5) / 3
                radius = self.short * .13
                self.disc(x, y, radius, self.colours[(row + column) % 4])
                self.disc(x + radius * (column - 1 + (row - 1) * .4), y, radius * .92, self.ground)

    def lettering(self, title, artist):
        """Title and artist on a band, as record sleeves have them."""
        font_file = next((name for name in FONTS if _exists(name)), None)
        if font_file is None:
            return
        height = self.short * .17
        top = self.chance.choice([0, self.height - height])
        self.pen.rectangle([0, top, self.width, top + height], fill=self.ground)
        dark = sum(self.image.getpixel((1, int(top) + 1))) < 384
        ink = "#ffffff" if dark else "#1c1c1c"
        for text, size, offset in ((title, .075, .02), (artist, .045, .11)):
            font = ImageFont.truetype(font_file, int(self.short * size))
            room = self.width * .92
            while font.getlength(text) > room and len(text) > 4:
                text = text[:-2].rstrip() + "…"
            self.pen.text((self.width * .04, top + self.short * offset), text, fill=ink, font=font)


STYLES = [Cover.rings, Cover.sun, Cover.quarters, Cover.hills, Cover.bars, Cover.shards, Cover.orbits, Cover.weave,
          Cover.moons]


def _exists(path):
    try:
        with open(path, "rb"):
            return True
    except OSError:
        return False


def draw_cover(number, size, title="", artist=""):
    """The picture of that number; neighbours differ in style."""
    cover = Cover(f"{number} {title}", size)
    STYLES[number % len(STYLES)](cover)
    if title and number % 3 != 0:
        cover.lettering(title, artist)
    return cover.image.resize(size, Image.LANCZOS)
