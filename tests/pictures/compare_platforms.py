"""compare_platforms.py NATIVE WINDOWS RUNNER CORPUS: both builds of picture_facts load every picture of the
corpus, the Windows one by RUNNER. They have to agree on success, type, size and depth of all of them, on the
pixels of the formats that lose nothing, and on nearly all of those that metafiles draw. What differs stands in
DIFFERENCES with its reason, and has to differ."""

import os
import subprocess
import sys
import tempfile

SKIPPED = 77
EXACT = ('tga', 'pcx', 'psd', 'png', 'tif')
HOST_FORMATS = (1, 2, 3)
# Metafiles leave it to the system how edges, curves and letters become pixels: the share of pixels that may
# be of another colour, and by how much a channel differs for one to count.
DRAWN = ('wmf', 'emf')
DRAWN_SHARE = 0.05
DRAWN_COUNTS = 96
# Blending a transparent PNG rounds.
TOLERANCE = {'png': 1}

DEEP = "16 bits a channel: Wine's GDI+ unpacks them to 32 bits before it tells the depth"
HALVES = "samples of 16 bits with a point: Wine takes them as whole numbers"
WINE_TIFF = "Wine's TIFF reader doesn't take this kind"

# name below the corpus: (what differs, why)
DIFFERENCES = {
    'tif/image--clusterfuzz-testcase-minimized-fuzzer_script_tiff-5026894169374720.tif':
        ('only Linux loads it', WINE_TIFF),
    'tif/image--ycbcr_jpeg_8bit.tif': ('only Linux loads it', WINE_TIFF),
    'tif/image-tiff--seq-1c-5b-73098d17.tiff': ('only Linux loads it', WINE_TIFF),
    'tif/image-tiff--seq-3c-14b-contig-f4dcc6cc.tiff': ('only Linux loads it', WINE_TIFF),
    'tif/image-tiff--seq-3c-5b-contig-09f197f4.tiff': ('only Linux loads it', WINE_TIFF),
    'tif/imagemagick--input_truecolor_16.tiff': ('depth 48 and 32', DEEP),
    'tif/libgd--12bit.cropped.tiff': ('only Linux loads it', WINE_TIFF),
    'tif/libgd--white-fp16-pred3.tiff': ('pixels, by 195', HALVES),
    'tif/pillow--tiff_tiled_planar_16bit_RGB.tiff': ('only Linux loads it', WINE_TIFF),
    'tif/twelvemonkeys--noeof.tif': ('only Linux loads it', WINE_TIFF),
}


def run(command, folder):
    done = subprocess.run(command, stdout=subprocess.PIPE, check=True)
    lines = done.stdout.decode('latin-1').replace('\r', '').splitlines()
    facts = {}
    for number, line in enumerate(lines):
        name, *values = line.split('\t')
        path = os.path.join(folder, str(number))
        facts[name] = (tuple(map(int, values)), path if os.path.exists(path) else None)
    return facts


def distance(ours, theirs):
    """The largest difference of a channel; 256 when only one has pixels or the sizes differ."""
    if ours is None or theirs is None:
        return 0 if ours is theirs else 256
    with open(ours, 'rb') as one, open(theirs, 'rb') as other:
        a, b = one.read(), other.read()
    if a == b:
        return 0
    if len(a) != len(b):
        return 256
    return max(abs(x - y) for x, y in zip(a, b))


def share_of_others(ours, theirs):
    """The share of pixels that differ clearly; 1 when the sizes differ."""
    with open(ours, 'rb') as one, open(theirs, 'rb') as other:
        a, b = one.read(), other.read()
    if len(a) != len(b):
        return 1
    far = {at // 3 for at, (x, y) in enumerate(zip(a, b)) if abs(x - y) >= DRAWN_COUNTS}
    return len(far) / (len(a) / 3)


def difference(name, native, windows):
    (error, kind, width, height, bits), pixels = native
    (wine_error, wine_kind, wine_width, wine_height, wine_bits), wine_pixels = windows
    if (error == 0) != (wine_error == 0):
        return 'only Linux loads it' if error == 0 else 'only Wine loads it'
    if error != wine_error:
        return f'error {error} and {wine_error}'
    if kind != wine_kind:
        return f'type {kind} and {wine_kind}'
    if (width, height) != (wine_width, wine_height):
        return f'size {width} x {height} and {wine_width} x {wine_height}'
    # Wine's loader of the host's formats tells 32 bits for many files.
    if bits != wine_bits and not (kind in HOST_FORMATS and wine_bits == 32):
        return f'depth {bits} and {wine_bits}'
    form = name.split('/')[0]
    if form in EXACT:
        most = distance(pixels, wine_pixels)
        if most > TOLERANCE.get(form, 0):
            return f'pixels, by {most}'
    if form in DRAWN and error == 0:
        share = share_of_others(pixels, wine_pixels)
        if share > DRAWN_SHARE:
            return f'{share:.1%} of what it draws'
    return None


def main():
    native, windows, runner, corpus = sys.argv[1:]
    if not os.path.isdir(corpus):
        print('not run: the corpus is not there')
        sys.exit(SKIPPED)
    with tempfile.TemporaryDirectory(prefix='orvane-pictures-') as folder:
        results = []
        for index, command in enumerate(([native], [runner, windows])):
            out = os.path.join(folder, str(index))
            os.mkdir(out)
            results.append(run([*command, os.path.abspath(corpus), out], out))
        ours, theirs = results
        assert ours.keys() == theirs.keys(), set(ours) ^ set(theirs)
        found = {name: difference(name, ours[name], theirs[name]) for name in ours}
    found = {name: text for name, text in found.items() if text is not None}
    loaded = sum(1 for facts, _ in ours.values() if facts[0] == 0)
    print(f'{len(ours)} files, {loaded} load here, {len(found)} differ')
    for name, text in sorted(found.items()):
        print(f'  {name}: {text} ({DIFFERENCES.get(name, ("", "NOT EXPECTED"))[1]})')
    wrong = sorted(name for name in found.keys() | DIFFERENCES.keys()
                   if DIFFERENCES.get(name, (None,))[0] != found.get(name))
    for name in wrong:
        print(f'{name}: expected {DIFFERENCES.get(name, (None,))[0]}, found {found.get(name)}')
    sys.exit(1 if wrong else 0)


main()
