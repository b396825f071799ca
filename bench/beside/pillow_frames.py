"""For every line read, opens a multi-picture file with Pillow and seeks every frame.

Usage: pillow_frames.py FILE IMAGES REPETITIONS
Answers each line with the seconds of one opening, the mean of the repetitions.
"""

import sys
import time

from PIL import Image


def visit(path, images):
    with Image.open(path) as picture:
        if picture.n_frames != images:
            sys.exit(f"{path}: {picture.n_frames} frames instead of {images}")
        for frame in range(images):
            picture.seek(frame)


def main():
    path, images, repetitions = sys.argv[1], int(sys.argv[2]), int(sys.argv[3])
    visit(path, images)
    for _ in sys.stdin:
        start = time.perf_counter()
        for _ in range(repetitions):
            visit(path, images)
        print((time.perf_counter() - start) / repetitions, flush=True)


if __name__ == "__main__":
    main()
