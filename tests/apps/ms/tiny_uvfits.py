"""A small UVFITS file with all that a reader may stumble over, made by Astropy."""
import numpy as np
from astropy.io import fits

DAY = 2453901.5
NAMES = ['BR', 'FD', 'HN', 'KP']


def make(path, hands=4, first_hand=-1, ifs=2, channels=2, times=6, sources=1, seed=1, numbers=(1, 2, 5, 7)):
    """Visibilities of all baselines and autocorrelations; the header tells 25 cards of HISTORY."""
    random = np.random.default_rng(seed)
    pairs = [(a, b) for a in numbers for b in numbers if a <= b]
    rows = [(t, a, b) for t in range(times) for a, b in pairs]
    n = len(rows)
    cells = np.empty((n, 1, 1, ifs, channels, hands, 3), '>f4')
    cells[..., :2] = random.normal(1, 0.3, cells[..., :2].shape)
    cells[..., 2] = random.uniform(0.5, 2, cells[..., 2].shape)
    cells[3, 0, 0, 0, 0, 0, 2] *= -1  # flagged with its weight kept
    cells[5, 0, 0, 0, 0, 0, 2] = 0
    cells[7, 0, 0, ifs - 1, 0, 0, 0] = np.nan
    cells[8, 0, 0, ifs - 1, 0, 0, 2] = np.nan
    cells[12, 0, 0, 0, 0, 0, 2] = -1.5
    seconds = np.array([[60 * t + (900 if t >= times // 2 else 0)] for t, _, _ in rows])[:, 0]
    parameters = [random.uniform(-0.02, 0.02, n) for _ in range(3)]
    parameters += [np.array([256 * a + b for _, a, b in rows], float), np.full(n, DAY), 0.4 + seconds / 86400,
                   np.full(n, 10.0), np.array([1 + t % sources for t, _, _ in rows], float)]
    names = ['UU---SIN', 'VV---SIN', 'WW---SIN', 'BASELINE', 'DATE', 'DATE', 'INTTIM', 'SOURCE']
    scales, zeros = [1e-10] * 3 + [1] * 5, [0, 0, 0, 0, DAY, 0, 0, 0]
    stored = [(value - zero) / scale for value, scale, zero in zip(parameters, scales, zeros)]
    header = fits.Header([('SIMPLE', True), ('BITPIX', -32), ('NAXIS', 7), ('NAXIS1', 0), ('NAXIS2', 3),
                          ('NAXIS3', hands), ('NAXIS4', channels), ('NAXIS5', ifs), ('NAXIS6', 1), ('NAXIS7', 1),
                          ('EXTEND', True), ('GROUPS', True), ('PCOUNT', len(names)), ('GCOUNT', n)])
    for i, (name, scale, zero) in enumerate(zip(names, scales, zeros), 1):
        header[f'PTYPE{i}'], header[f'PSCAL{i}'], header[f'PZERO{i}'] = name, float(scale), float(zero)
    raw = np.concatenate([np.array(stored).T, cells.reshape(n, -1)], 1).astype('>f4').tobytes()
    axes = [('COMPLEX', 1, 1), ('STOKES', first_hand, -1 if first_hand < 0 else 1), ('FREQ', 8.4e9, 5e5),
            ('IF', 1, 1), ('RA', 187.7059, 1), ('DEC', 12.3911, 1)]
    for i, (name, value, step) in enumerate(axes, 2):
        for key, what in zip(('CTYPE', 'CRVAL', 'CDELT', 'CRPIX'), (name, value, step, 1)):
            header[f'{key}{i}'] = what
    header['OBJECT'], header['TELESCOP'], header['DATE-OBS'] = 'TINY', 'VLBA', '2006-06-15'
    header['EPOCH'] = 2000.0
    for i in range(25):
        header['HISTORY'] = f'STEP {i} of the reduction'
    count = len(numbers)
    antennas = fits.BinTableHDU.from_columns([
        fits.Column('ANNAME', '8A', array=NAMES[:count]),
        fits.Column('STABXYZ', '3D', array=random.uniform(1e6, 6e6, (count, 3))),
        fits.Column('NOSTA', '1J', array=numbers), fits.Column('MNTSTA', '1J', array=[0] * count),
        fits.Column('DIAMETER', '1E', array=[25, 25, 32, 100][:count]),
        fits.Column('POLTYA', '1A', array=['R'] * count), fits.Column('POLTYB', '1A', array=['L'] * count)])
    antennas.header['EXTNAME'], antennas.header['RDATE'] = 'AIPS AN', '2006-06-15'
    frequencies = fits.BinTableHDU.from_columns([
        fits.Column('FRQSEL', '1J', array=[1]),
        fits.Column('IF FREQ', f'{ifs}D', array=[8e6 * np.arange(ifs)]),
        fits.Column('CH WIDTH', f'{ifs}E', array=[[5e5] * ifs]), fits.Column('SIDEBAND', f'{ifs}J', array=[[1] * ifs])])
    frequencies.header['EXTNAME'] = 'AIPS FQ'
    half = n // 2
    index = fits.BinTableHDU.from_columns([fits.Column('START VIS', '1J', array=[1, half + 1]),
                                           fits.Column('END VIS', '1J', array=[half, n])])
    index.header['EXTNAME'] = 'AIPS NX'
    tables = [antennas, frequencies, index]
    if sources > 1:
        table = fits.BinTableHDU.from_columns([
            fits.Column('ID. NO.', '1J', array=np.arange(1, sources + 1)),
            fits.Column('SOURCE', '16A', array=[f'SOURCE{i + 1}' for i in range(sources)]),
            fits.Column('RAEPO', '1D', array=10.0 * np.arange(1, sources + 1)),
            fits.Column('DECEPO', '1D', array=np.full(sources, 30.0)),
            fits.Column('EPOCH', '1D', array=np.full(sources, 2000.0))])
        table.header['EXTNAME'] = 'AIPS SU'
        tables.append(table)
    fits.HDUList([fits.PrimaryHDU(), *tables]).writeto(path, overwrite=True)
    with open(path, 'rb') as file:
        behind = file.read()[2880:]
    with open(path, 'wb') as file:
        file.write(header.tostring().encode() + raw + bytes(-len(raw) % 2880) + behind)


class Groups:
    """Visibilities of a UVFITS file by Astropy: arrays of [group, IF, channel, hand]."""

    def __init__(self, path):
        with fits.open(path, ignore_missing_simple=True, memmap=False) as file:
            data, header = file[0].data, file[0].header
            cells = np.array(data.data, 'f4')
            if cells.ndim == 6:
                cells = cells[:, :, :, None]
            cells = cells.reshape(len(cells), *cells.shape[-4:])
            self.data = cells[..., 0] + 1j * cells[..., 1]
            self.weight = cells[..., 2]
            value = lambda name: np.array(data.par(name), float)
            names = data.parnames
            u = next(name for name in names if name.startswith('UU'))
            self.uvw = np.stack([value(u.replace('UU', c + c)) for c in 'UVW'], 1) * 299792458.0
            self.baseline = value('BASELINE')
            self.history = [str(line) for line in header.get('HISTORY', [])]
            dates = [i for i, name in enumerate(names) if name in ('DATE', '_DATE')]
            raw = [np.array(data.field(i), float) for i in dates]
            self.julian = sum(raw)
            # the great number meets its own negative first, as in any reader that keeps the fractions
            self.time = sum(raw[1:], raw[0] - DAY)
            stokes = next(i for i in range(2, 9) if str(header.get(f'CTYPE{i}', '')).startswith('STOKES'))
            self.stokes = [round(header[f'CRVAL{stokes}'] + (i + 1 - header[f'CRPIX{stokes}']) * header[f'CDELT{stokes}'])
                           for i in range(cells.shape[-2])]
            self.tables = {t.name: t.data for t in file[1:]}
