#!/usr/bin/env python3
"""Print how much closer to the clean picture `velmara denoise` brings noisy ones.

    report_quality.py PROGRAM FOLDER [--options "--deep"] [--deviations 5 15 25 50] [--ffmpeg]

FOLDER has clean/*.png, to which seeded noise is added, clipped and rounded, and may have
real/*_noisy.jpg beside real/*_mean.jpg, photos and what they should look like. Each clean picture is
also denoised as it is and as JPEG of quality 75, 85 and 95, and compared with itself. PSNR in dB
and SSIM of brightness, mean and worst; a picture that comes back unchanged counts as 99 dB. With
--ffmpeg its filters nlmeans and bm3d are run too, each at the best of several strengths.

Needs numpy, Pillow and SciPy: apt-get install python3-numpy python3-pil python3-scipy.
"""

import argparse
import pathlib
import subprocess
import tempfile

import numpy
from PIL import Image
from scipy.ndimage import gaussian_filter


def read(path):
    return numpy.asarray(Image.open(path).convert("RGB")).astype(float)


def psnr(a, b):
    error = ((a - b) ** 2).mean()
    return 99.0 if error == 0 else 10 * numpy.log10(255**2 / error)


def ssim(a, b):
    """Z. Wang and others, IEEE Transactions on Image Processing 13, 2004."""
    a, b = (x @ [0.299, 0.587, 0.114] for x in (a, b))
    smooth = lambda x: gaussian_filter(x, 1.5, truncate=3.5)
    ma, mb = smooth(a), smooth(b)
    va, vb, vab = smooth(a * a) - ma**2, smooth(b * b) - mb**2, smooth(a * b) - ma * mb
    c1, c2 = (0.01 * 255) ** 2, (0.03 * 255) ** 2
    return (((2 * ma * mb + c1) * (2 * vab + c2)) / ((ma**2 + mb**2 + c1) * (va + vb + c2))).mean()


class Runner:
    def __init__(self, program, options, folder):
        self.program, self.options, self.folder = program, options.split(), pathlib.Path(folder)

    def velmara(self, path):
        out = self.folder / "out.png"
        command = [self.program, "denoise", *self.options, "--force", "--quiet", "-o", out, path]
        subprocess.run(command, check=True)
        return read(out)

    def ffmpeg(self, path, clean, graphs):
        out = self.folder / "out.png"
        results = []
        for graph in graphs:
            command = ["ffmpeg", "-v", "error", "-y", "-i", path, "-vf", "format=gbrp," + graph, out]
            subprocess.run(command, check=True)
            results.append(read(out))
        return max(results, key=lambda result: psnr(result, clean))


def row(name, figures):
    before, after, ssims = (numpy.array(x) for x in zip(*figures))
    print(f"{name:24} {before.mean():8.2f} {after.mean():8.2f} {(after - before).min():+8.2f}"
          f" {ssims.mean():8.4f} {ssims.min():8.4f}", flush=True)


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("program")
    parser.add_argument("folder", type=pathlib.Path)
    parser.add_argument("--options", default="--deep")
    parser.add_argument("--deviations", type=float, nargs="*", default=[5, 15, 25, 50])
    parser.add_argument("--ffmpeg", action="store_true")
    arguments = parser.parse_args()
    cleans = sorted((arguments.folder / "clean").glob("*.png"))
    print(f"{'':24} {'before':>8} {'after':>8} {'worst':>8} {'SSIM':>8} {'worst':>8}")
    with tempfile.TemporaryDirectory() as folder:
        run = Runner(arguments.program, arguments.options, folder)

        def figures(path, before, clean, after=None):
            after = run.velmara(path) if after is None else after
            return psnr(before, clean), psnr(after, clean), ssim(after, clean)

        for deviation in arguments.deviations:
            rows, others = [], {"nlmeans": [], "bm3d": []}
            for seed, source in enumerate(cleans):
                clean = read(source)
                noise = numpy.random.default_rng(seed).normal(0, deviation, clean.shape)
                noisy = numpy.clip(numpy.rint(clean + noise), 0, 255)
                path = run.folder / "in.png"
                Image.fromarray(noisy.astype(numpy.uint8)).save(path)
                rows.append(figures(path, noisy, clean))
                if arguments.ffmpeg:
                    graphs = {
                        "nlmeans": [f"nlmeans=s={f * deviation:.1f}:p=5:r=21" for f in (0.2, 0.4, 0.6)],
                        # Larger groups leave the picture as it is.
                        "bm3d": [f"bm3d=sigma={f * deviation:.1f}:block=4:bstep=4:group=1"
                                 for f in (2, 3, 4)],
                    }
                    for name, graph in graphs.items():
                        after = run.ffmpeg(path, clean, graph)
                        others[name].append(figures(path, noisy, clean, after))
            row(f"white, {deviation:g}", rows)
            for name, found in others.items():
                if found:
                    row(f"  ffmpeg {name}", found)
        pairs = sorted((arguments.folder / "real").glob("*_noisy.jpg"))
        real = []
        for path in pairs:
            clean = read(str(path).replace("_noisy", "_mean"))
            real.append(figures(path, read(path), clean))
        if real:
            row("photos", real)
        for quality in (None, 75, 85, 95):
            rows = []
            for source in cleans:
                path = source
                if quality:
                    path = run.folder / "in.jpg"
                    Image.open(source).convert("RGB").save(path, quality=quality)
                rows.append(figures(path, read(path), read(path)))
            row(f"clean, JPEG {quality}" if quality else "clean, PNG", rows)


if __name__ == "__main__":
    main()
