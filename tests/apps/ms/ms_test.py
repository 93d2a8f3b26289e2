"""pavane-ms beside Astropy, python-casacore, numpy and the imaging engine itself.

    ms_test.py PAVANE_MS PAVANE_SIMULATE FOLDER [unittest's words]
"""
import os
import shutil
import subprocess
import sys
import unittest
import warnings

try:
    import numpy as np
    from astropy.io import fits
    import casacore.tables as tables
except ImportError as missing:
    print(f'skipped: {missing} (Debian: python3-astropy, python3-casacore)')
    sys.exit(77)
import tiny_uvfits

warnings.simplefilter('ignore')
PROGRAM, SIMULATE, FOLDER = [os.path.abspath(word) for word in sys.argv[1:4]]
SIMULATED = os.path.join(FOLDER, 'simulated', 'observation.uvfits')
SHARED = '/work/shared/data/uvfits'
CODES = {1: 1, -1: 5, -2: 8, -3: 6, -4: 7, -5: 9, -6: 12, -7: 10, -8: 11}
C = 299792458.0
GAIN_TITLES = 'subarray antenna name IFs hand source start_[d] end_[d] real imag error weight iterations reference state flagged'


def run(*words, limit=None, env=None):
    """Status, lines by name and the error line."""
    before = (lambda: __import__('resource').setrlimit(__import__('resource').RLIMIT_FSIZE, (limit, limit))) if limit else None
    done = subprocess.run([PROGRAM, *words], capture_output=True, text=True, cwd=FOLDER, preexec_fn=before, env=env)
    facts = {}
    for line in done.stdout.splitlines():
        name, _, value = line.partition(' ')
        facts.setdefault(name, []).append(value)
    return done.returncode, facts, done.stderr


def path(name):
    return os.path.join(FOLDER, name)


def column(name, what):
    with tables.table(path(name), ack=False) as table:
        return table.getcol(what)


def write_gains(name, lines, day=tiny_uvfits.DAY):
    """Lines of (antenna, IFs, hand, start, end, gain, state, flagged)."""
    with open(path(name), 'w') as file:
        file.write(f'# reference day\t{day!r}\n# IFs\t2\n' + GAIN_TITLES.replace(' ', '\t').replace('_', ' ') + '\n')
        for antenna, ifs, hand, start, end, gain, state, flagged in lines:
            fields = [1, antenna, 'A', ifs, hand, 0, repr(start), repr(end), repr(gain.real), repr(gain.imag), 0.01, 5.0,
                      3, 1, state, flagged]
            file.write('\t'.join(map(str, fields)) + '\n')


def text_of(name):
    with open(path(name)) as file:
        return file.read()


def rows_of(name):
    return [line.split('\t') for line in text_of(name).splitlines()[3:]]


class Base(unittest.TestCase):
    def done(self, *words, **more):
        status, facts, error = run(*words, **more)
        self.assertEqual((status, error), (0, ''), words)
        return facts

    def refused(self, what, *words, **more):
        before = sorted(os.listdir(FOLDER))
        status, _, error = run(*words, **more)
        self.assertGreater(status, 0, words)
        self.assertTrue(error.startswith('pavane-ms: '), error)
        self.assertIn(what, error)
        self.assertEqual(sorted(os.listdir(FOLDER)), before, 'something is left behind')

    def tiny(self, name='tiny', **what):
        tiny_uvfits.make(path(name + '.uvfits'), **what)
        self.done('import', name + '.uvfits', name + '.ms')
        return tiny_uvfits.Groups(path(name + '.uvfits'))


class Import(Base):
    def compare(self, uvfits, name):
        """The copy holds what Astropy reads, hand by hand and bit by bit."""
        groups = tiny_uvfits.Groups(uvfits)
        count, ifs = groups.data.shape[:2]
        self.assertEqual(len(column(name, 'TIME')), count * ifs)
        np.testing.assert_array_equal(column(name, 'DATA_DESC_ID'), np.tile(np.arange(ifs), count))
        np.testing.assert_allclose(column(name, 'UVW'), np.repeat(groups.uvw, ifs, 0), rtol=1e-12, atol=1e-6)
        seconds = (groups.julian - 2400000.5) * 86400
        np.testing.assert_allclose(column(name, 'TIME'), np.repeat(seconds, ifs), rtol=0, atol=1e-4)
        numbers = {int(n): row for row, n in enumerate(groups.tables['AIPS AN']['NOSTA'])}
        baseline = np.floor(groups.baseline + 0.005).astype(int)
        np.testing.assert_array_equal(column(name, 'ANTENNA1'), np.repeat([numbers[b // 256] for b in baseline], ifs))
        np.testing.assert_array_equal(column(name, 'ANTENNA2'), np.repeat([numbers[b % 256] for b in baseline], ifs))
        stored = [int(c) for c in tables.table(path(name) + '::POLARIZATION', ack=False).getcell('CORR_TYPE', 0)]
        data, weight, flag = (column(name, c) for c in ('DATA', 'ORIGINAL_WEIGHT', 'ORIGINAL_FLAG'))
        share = 2 if groups.stokes[0] == 1 else 1
        for place, code in enumerate(stored):
            own = [i for i, s in enumerate(groups.stokes) if CODES[s] == code or (s == 1 and share == 2)]
            if not own:
                self.assertTrue(flag[:, :, place].all())
                continue
            theirs = lambda cube: cube[..., own[0]].reshape(count * ifs, -1)
            w = theirs(groups.weight)
            good = np.isfinite(theirs(groups.data)) & np.isfinite(w) & (w > 0)
            np.testing.assert_array_equal(flag[:, :, place], ~good)
            np.testing.assert_array_equal(data[:, :, place], theirs(groups.data))
            np.testing.assert_array_equal(weight[:, :, place], np.where(np.isfinite(w), abs(w), 0) / np.float32(share))
        return groups

    def test_tiny(self):
        cases = {'four': {}, 'one': dict(hands=1, first_hand=-2), 'linear': dict(hands=2, first_hand=-5, channels=3),
                 'total': dict(hands=1, first_hand=1), 'alone': dict(ifs=1, channels=1, hands=2)}
        for name, what in cases.items():
            with self.subTest(name):
                self.tiny(name, **what)
                groups = self.compare(path(name + '.uvfits'), name + '.ms')
                antennas = tables.table(path(name + '.ms') + '::ANTENNA', ack=False)
                self.assertEqual(antennas.getcol('NAME'), tiny_uvfits.NAMES)
                np.testing.assert_array_equal(antennas.getcol('DISH_DIAMETER'), [25, 25, 32, 100])
                history = tables.table(path(name + '.ms') + '::HISTORY', ack=False).getcol('MESSAGE')
                self.assertEqual(history[:25], groups.history[:25])
                half = len(groups.data) // 2 * groups.data.shape[1]
                np.testing.assert_array_equal(column(name + '.ms', 'SCAN_NUMBER'), np.repeat([1, 2], half))
                centre = tables.table(path(name + '.ms') + '::FIELD', ack=False).getcell('PHASE_DIR', 0)
                np.testing.assert_allclose(np.degrees(centre[0]) % 360, [187.7059, 12.3911], atol=1e-12)

    def test_simulated_and_real(self):
        files = [SIMULATED]
        if os.path.isdir(SHARED):
            files += [os.path.join(SHARED, name) for name in sorted(os.listdir(SHARED))]
        for file in files:
            with self.subTest(file):
                self.done('import', file, 'any.ms')
                self.compare(file, 'any.ms')
                self.done('export', 'any.ms', 'any.uvfits', '--column', 'DATA')
                before, after = tiny_uvfits.Groups(file), tiny_uvfits.Groups(path('any.uvfits'))
                finite = np.isfinite(before.weight)
                np.testing.assert_array_equal(after.data, before.data)
                np.testing.assert_array_equal(after.weight[finite], before.weight[finite])
                np.testing.assert_allclose(after.uvw, before.uvw, rtol=1.3e-7)
                np.testing.assert_array_equal(after.baseline, before.baseline)
                np.testing.assert_allclose(after.julian, before.julian, rtol=0, atol=1e-9)
                self.assertEqual(list(after.tables['AIPS AN']['NOSTA']), list(before.tables['AIPS AN']['NOSTA']))

    def test_selection(self):
        groups = self.tiny('whole', sources=2)
        day = 0.4 + 900 / 86400
        facts = self.done('import', 'whole.uvfits', 'part.ms', '--ifs', '2', '--hands', 'RR,LL', '--times', f',{day}',
                          '--source', 'SOURCE2')
        early = (groups.time < day) & (np.arange(len(groups.time)) // 10 % 2 == 1)
        self.assertEqual(facts['rows'], [str(early.sum())])
        np.testing.assert_array_equal(column('part.ms', 'DATA'), groups.data[early][:, 1, :, :2])
        self.assertIn('if 2\t8408000000\t500000\t2', '\n'.join('if ' + line for line in run('facts', 'part.ms')[1]['if']))
        self.refused('no IF 3', 'import', 'whole.uvfits', 'none.ms', '--ifs', '3')
        self.refused('no hand XX', 'import', 'whole.uvfits', 'none.ms', '--hands', 'XX')
        self.refused('no visibilities', 'import', 'whole.uvfits', 'none.ms', '--times', '5,6')
        self.refused('no source', 'import', 'whole.uvfits', 'none.ms', '--source', 'nobody')

    def test_ms_again(self):
        """A copy of a copy, and of an MS in another order and with weights of rows only."""
        groups = self.tiny('once')
        self.done('import', 'once.ms', 'twice.ms')
        for name in ('DATA', 'ORIGINAL_FLAG', 'ORIGINAL_WEIGHT', 'UVW', 'TIME', 'ANTENNA1', 'SCAN_NUMBER'):
            np.testing.assert_array_equal(column('twice.ms', name), column('once.ms', name), name)
        with tables.table(path('once.ms'), ack=False) as table:
            table.sort('DATA_DESC_ID,TIME desc').copy(path('mixed.ms'), deep=True).close()
        with tables.table(path('mixed.ms'), ack=False, readonly=False) as mixed:
            mixed.removecols(['WEIGHT_SPECTRUM', 'ORIGINAL_FLAG', 'ORIGINAL_WEIGHT'])
            mixed.removekeyword('PAVANE')
        self.done('import', 'mixed.ms', 'sorted.ms', '--ifs', '2')
        second = column('once.ms', 'DATA_DESC_ID') == 1
        for name in ('DATA', 'UVW', 'TIME', 'ORIGINAL_FLAG'):
            np.testing.assert_array_equal(column('sorted.ms', name), column('once.ms', name)[second], name)
        np.testing.assert_array_equal(column('sorted.ms', 'ORIGINAL_WEIGHT')[:, 0], column('once.ms', 'WEIGHT')[second])
        facts = self.done('facts', 'mixed.ms')
        self.assertEqual((facts['kind'], facts['hands']), (['MS'], ['RR,RL,LR,LL']))
        self.done('export', 'sorted.ms', 'sorted.uvfits', '--column', 'DATA')
        again = tiny_uvfits.Groups(path('sorted.uvfits'))
        self.assertEqual(again.data.shape, (len(groups.data), 1, 2, 4))
        good = np.isfinite(groups.data[:, 1:])
        np.testing.assert_array_equal(again.data[good], groups.data[:, 1:][good])
        self.refused('lie within each other', 'import', 'mixed.ms', 'mixed.ms/inner')


class Correct(Base):
    def expected(self, groups, gains, flagged, form, keep_failed=False, keep_weights=False, lost=None):
        """[group, IF, channel, column] of visibilities, weights and flags, by numpy."""
        data, weight = groups.data[..., :2].astype(complex), groups.weight[..., :2].astype(float)
        good = np.isfinite(data) & np.isfinite(weight) & (weight > 0)
        weight = np.where(np.isfinite(weight), abs(weight), 0)
        bad = lost & (not keep_failed)
        factor = np.where(lost, 1, gains)
        data = data / factor
        if not keep_weights:
            weight = weight * abs(factor) ** 2
        auto = groups.baseline // 256 == groups.baseline % 256
        good = good & ~bad & ~flagged & ~auto[:, None, None, None]
        if form == 'strict':
            return data, weight, good
        use = good * weight * {'mean': [1, 1], 'RR': [1, 0], 'LL': [0, 1]}[form]
        total = use.sum(-1)
        mean = np.where(use > 0, data * use, 0).sum(-1) / np.where(total > 0, total, 1)
        both = lambda cube: np.repeat(cube[..., None], 2, -1)
        return both(mean), both(total / 2), both(total > 0)

    def test_forms_gains_flags(self):
        groups = self.tiny('data')
        random = np.random.default_rng(3)
        numbers, times = (1, 2, 5, 7), sorted(set(groups.time))
        edges = [times[0], times[2], times[4], times[5] + 1]  # intervals begin at a visibility, the last one missing
        gain, lines = {}, []
        for n in numbers:
            for group, ifs in enumerate(('1', '2')):
                for hand in 'RL':
                    for k in range(3):
                        g = complex(random.normal(1, 0.2), random.normal(0, 0.5))
                        state = 'failed' if (n, k, hand) == (5, 1, 'L') else 'solved'
                        flag = int((n, k, hand, group) == (2, 0, 'R', 1))
                        gain[n, group, hand, k] = g if state == 'solved' and not flag else None
                        if (n, k) != (7, 2):
                            lines.append((n, ifs, hand, edges[k], edges[k + 1], g, state, flag))
                        else:
                            gain[n, group, hand, k] = None
        write_gains('gains.txt', lines)
        # the second file has one gain for all, and counts from the day before
        write_gains('more.txt', [(n, '1,2', 'I', 0.0, 5.0, 0.5 + 0.5j * n, 'solved', 0) for n in numbers], tiny_uvfits.DAY - 1)
        with open(path('flags.txt'), 'w') as file:
            file.write(f'# pavane flags 1\n# referenceday {tiny_uvfits.DAY}\n'
                       f'flag\t0\t2\t1\t*\tRR\t-1\t5\t0\nrestore\t1\t1\t2\t2\tRR\t-1\t5\t0\n'
                       f'flag\t0\t5\t0\t1-2\tLL\t{times[1]!r}\t{times[2]!r}\t0\nrestore\t0\t0\t0\t*\t*\t9\t10\t1\n'
                       f'restore\t0\t0\t0\t*\t*\t{times[1]!r}\t{times[1] + 1e-9!r}\t0\nflag\t1\t5\t7\t*\t*\t{times[1]!r}\t{times[3]!r}\t1\n')
        shape = groups.data.shape[:3] + (2,)
        factor, lost, flagged = np.ones(shape, complex), np.zeros(shape, bool), np.zeros(shape, bool)
        for i in range(shape[0]):
            a, b = int(groups.baseline[i] // 256), int(groups.baseline[i] % 256)
            t = groups.time[i]
            k = sum(t >= edge for edge in edges) - 1
            for f in range(2):
                for h, hand in enumerate('RL'):
                    pair = gain[a, f, hand, k], gain[b, f, hand, k]
                    lost[i, f, :, h] = None in pair
                    if None not in pair:
                        factor[i, f, :, h] = pair[0] * np.conj(pair[1]) * (0.5 + 0.5j * a) * np.conj(0.5 + 0.5j * b)
            flagged[i, 0, :, 0] |= {a, b} == {1, 2} and t != times[1]
            if {a, b} == {5, 7} and times[1] <= t < times[3]:
                flagged[i] = True
        stored = np.s_[:, :, [0, 3]]
        for form in ('mean', 'strict', 'RR', 'LL'):
            for options in ([], ['--keep-failed'], ['--keep-weights']):
                facts = self.done('correct', 'data.ms', '--form', form, '--gains', 'gains.txt', '--gains', 'more.txt',
                                  '--flags', 'flags.txt', *options)
                data, weight, good = self.expected(groups, factor, flagged, form, '--keep-failed' in options,
                                                   '--keep-weights' in options, lost)
                flat = lambda cube: cube.reshape(-1, *cube.shape[2:])
                own = column('data.ms', 'CORRECTED_DATA')[stored]
                np.testing.assert_array_equal(column('data.ms', 'FLAG')[stored], ~flat(good), f'{form} {options}')
                np.testing.assert_allclose(own[flat(good)], flat(data)[flat(good)], rtol=1e-6)
                np.testing.assert_allclose(column('data.ms', 'WEIGHT_SPECTRUM')[stored][flat(good)],
                                           flat(weight)[flat(good)], rtol=1e-6)
                self.assertTrue(np.isfinite(column('data.ms', 'CORRECTED_DATA')).all())
                count = {key: int(facts[key][0]) for key in ('visibilities', 'used', 'flagged-before', 'flagged-by-user',
                                                             'lost-to-gains', 'left-by-form', 'autocorrelations')}
                self.assertEqual(count['visibilities'], np.prod(shape))
                self.assertEqual(sum(count.values()), 2 * count['visibilities'])
        np.testing.assert_array_equal(column('data.ms', 'DATA')[stored], groups.data[..., :2].reshape(-1, 2, 2))
        self.done('correct', 'data.ms', '--form', 'strict')
        raw = column('data.ms', 'ORIGINAL_FLAG') | (groups.baseline // 256 == groups.baseline % 256).repeat(2)[:, None, None]
        np.testing.assert_array_equal(column('data.ms', 'FLAG'), raw)

    def test_total_intensity(self):
        groups = self.tiny('stokes', hands=1, first_hand=1)
        write_gains('total.txt', [(n, '1,2', 'I', -1.0, 5.0, 0.5j * n, 'solved', 0) for n in (1, 2, 5, 7)])
        self.done('correct', 'stokes.ms', '--gains', 'total.txt')
        a, b = groups.baseline // 256, groups.baseline % 256
        good = ~column('stokes.ms', 'FLAG')
        self.assertEqual(good.sum(), 2 * (np.isfinite(groups.data[..., 0]) & (groups.weight[..., 0] > 0) & (a != b)[:, None, None]).sum())
        wanted = (groups.data[..., 0] / (0.25 * a * b)[:, None, None]).reshape(-1, 2)
        for place in (0, 1):
            own = column('stokes.ms', 'CORRECTED_DATA')[..., place]
            np.testing.assert_allclose(own[good[..., place]], wanted[good[..., place]], rtol=1e-6)
        self.done('export', 'stokes.ms', 'stokes-out.uvfits', '--column', 'DATA')
        again = tiny_uvfits.Groups(path('stokes-out.uvfits'))
        self.assertEqual(again.stokes, [1])
        np.testing.assert_array_equal(again.weight[np.isfinite(groups.data)], np.nan_to_num(groups.weight[np.isfinite(groups.data)]))

    def test_wrong_files(self):
        self.tiny('work')
        write_gains('good.txt', [(n, '1,2', 'I', -1.0, 5.0, 1j, 'solved', 0) for n in (1, 2, 5, 7)])
        text = text_of('good.txt')
        head = '# pavane flags 1\n# referenceday 2453901.5\n'
        cases = [('--gains', text.replace('solved', 'sloved', 1), 'line 4 has a wrong "state"'),
                 ('--gains', text.replace('1,2', '1,2,', 1), 'wrong "IFs"'),
                 ('--gains', text.replace('\t1.0\t', '\tnan\t', 1), 'wrong "imag"'),
                 ('--gains', text[:-5], 'fields, not 16'), ('--gains', '', 'no file of gains'),
                 ('--gains', text + text.splitlines()[3].replace('1,2', '1') + '\n', 'in two groups'),
                 ('--flags', '# pavane flags 2\n', 'no file of flags'), ('--flags', head[:17], 'reference day'),
                 ('--flags', head + 'flag\t0\t0\t0\t*\t*\t1\n', '7 fields'),
                 ('--flags', head + 'flag\t0\t0\t0\t4-2\t*\t0\t1\t0\n', 'list of IFs'),
                 ('--flags', head + 'flag\t0\t0\t0\t*\t*\t-9\t99\t0\n', 'no visibility left')]
        for option, content, what in cases:
            with open(path('wrong.txt'), 'w') as file:
                file.write(content)
            self.refused(what, 'correct', 'work.ms', option, 'wrong.txt')
        self.refused('takes mean, strict or', 'correct', 'work.ms', '--form', 'XX')
        os.remove(path('wrong.txt'))
        self.refused('cannot be read', 'correct', 'work.ms', '--gains', 'wrong.txt')


class BadInput(Base):
    def test_names(self):
        for name in ('-leading', 'with blank', "quote'", 'häßlich'):
            tiny_uvfits.make(path(name + '.uvfits'))
            self.done('import', name + '.uvfits', name + '.ms')
            self.done('correct', name + '.ms')
            self.done('export', '--column', 'CORRECTED_DATA', '--', name + '.ms', name + '.out')
        self.assertEqual([n for n in os.listdir(FOLDER) if n.endswith(('.part', '.lock', '.old'))], [])

    def test_refused(self):
        self.tiny('input')
        os.makedirs(path('folder'), exist_ok=True)
        with open(path('folder/precious'), 'w') as file:
            file.write('kept')
        for link, to in (('link.ms', 'input.ms'), ('link.uvfits', 'input.uvfits')):
            if not os.path.lexists(path(link)):
                os.symlink(to, path(link))
        self.refused('input itself', 'import', 'input.ms', 'link.ms')
        self.refused('input itself', 'import', 'link.uvfits', './input.uvfits')
        self.refused('is not replaced', 'import', 'input.uvfits', 'folder')
        self.refused('there is no', 'import', 'absent.uvfits', 'out.ms')
        self.refused('there is no folder', 'import', 'input.uvfits', 'absent/out.ms')
        self.refused('no MeasurementSet', 'import', 'folder', 'out.ms')
        self.refused('no working copy', 'correct', 'input.ms/ANTENNA')
        self.refused('no column', 'export', 'input.ms', 'out.uvfits', '--column', 'MODEL_DATA')
        for words, what in ((['correct'], 'missing'), (['import', 'a', 'b', 'c'], 'too many'), (['clean'], 'no command'),
                            (['import', 'a', '--colour', 'b'], 'no option'), (['facts', 'a', '--ifs', '0'], '--ifs takes')):
            self.assertEqual(run(*words)[0], 2)
            self.refused(what, *words)

    def test_damaged(self):
        """Cut and changed files are refused or read; nothing crashes, nothing is left behind."""
        tiny_uvfits.make(path('whole.uvfits'), times=4)
        with open(path('whole.uvfits'), 'rb') as file:
            whole = file.read()
        random = np.random.default_rng(7)
        header = whole.index(b'END' + b' ' * 77)
        cases = [whole[:n] for n in (0, 1, 80, 2879, 2880, header, header + 3000, len(whole) - 2880)]
        for old, new in ((b'GCOUNT  =', b'GCOUNT  = 9999999999999999 /'), (b'PCOUNT  =', b'PCOUNT  = -5 /'),
                         (b'NAXIS4  =', b'NAXIS4  = 4000000000 /'), (b'BITPIX  =', b'BITPIX  = 17 /'),
                         (b'NAXIS2  =                    3', b'NAXIS2  =                    0'),
                         (b'CRVAL4  =', b'CRVAL4  = 1E400 /'), (b"PTYPE4  = 'BASELINE'", b"PTYPE4  = 'NOTHING '")):
            at = whole.index(old)
            cases.append(whole[:at] + new + whole[at + len(new):])
        for content in cases:
            with open(path('damaged.uvfits'), 'wb') as file:
                file.write(content)
            self.refused('', 'import', 'damaged.uvfits', 'damaged.ms')
        for _ in range(40):
            content = bytearray(whole)
            for place in random.integers(0, len(whole), 60):
                content[place] = random.integers(0, 256)
            with open(path('damaged.uvfits'), 'wb') as file:
                file.write(content)
            status, _, error = run('import', 'damaged.uvfits', 'damaged.ms')
            self.assertIn(status, (0, 1), error)
            self.assertNotIn('Sanitizer', error)
            self.assertEqual(os.path.exists(path('damaged.ms')), status == 0, error)
            shutil.rmtree(path('damaged.ms'), ignore_errors=True)

    def test_full_disk(self):
        """A limit of the size of a file stands for it: every write beyond it fails."""
        tiny_uvfits.make(path('big.uvfits'), times=400)
        self.done('import', 'big.uvfits', 'big.ms')
        for limit in (2000, 20000, 100000):
            self.refused('', 'import', 'big.uvfits', 'small.ms', limit=limit)
            self.refused('cannot be written', 'export', 'big.ms', 'small.uvfits', '--column', 'DATA', limit=limit)
        self.refused('', 'correct', 'big.ms', limit=100000)
        self.done('correct', 'big.ms')

    def stopped(self, act, *words):
        """What a run ends with whose first line of progress was answered by an act."""
        with subprocess.Popen([PROGRAM, *words], stdout=subprocess.PIPE, stderr=subprocess.PIPE, text=True, cwd=FOLDER) as child:
            child.stdout.readline()
            act(child)
            error = child.communicate(timeout=60)[1]
            return child.returncode, error

    def test_stopped_and_vanished(self):
        tiny_uvfits.make(path('long.uvfits'), times=4000)
        listed = sorted(os.listdir(FOLDER))
        status, error = self.stopped(lambda child: child.terminate(), 'import', 'long.uvfits', 'long.ms')
        self.assertEqual((status, error), (1, 'pavane-ms: stopped\n'))
        self.assertEqual(sorted(os.listdir(FOLDER)), listed)
        status, _ = self.stopped(lambda child: child.kill(), 'import', 'long.uvfits', 'long.ms')
        self.assertEqual(status, -9)
        self.assertFalse(os.path.exists(path('long.ms')))
        # while one writes a second is refused
        second = []
        status, _ = self.stopped(lambda child: second.append(run('import', 'long.uvfits', 'long.ms')), 'import', 'long.uvfits', 'long.ms')
        self.assertEqual((status, second[0][0]), (0, 1))
        self.assertIn('another program', second[0][2])
        self.assertEqual([n for n in os.listdir(FOLDER) if '.part' in n], [])
        status, error = self.stopped(lambda child: child.terminate(), 'correct', 'long.ms')
        self.assertEqual((status, error), (1, 'pavane-ms: stopped\n'))
        self.done('correct', 'long.ms')
        status, error = self.stopped(lambda child: shutil.rmtree(path('long.ms')), 'correct', 'long.ms')
        self.assertEqual(status, 1)
        self.assertIn('pavane-ms: ', error)
        self.assertFalse(os.path.exists(path('long.ms')))

    def test_locked_and_read_only(self):
        self.tiny('held')
        with tables.table(path('held.ms'), ack=False, readonly=False, lockoptions='permanent'):
            self.refused('in use by another program', 'correct', 'held.ms')
        self.done('correct', 'held.ms')
        if os.getuid() != 0:
            os.chmod(path('held.ms'), 0o500)
            self.refused('read-only', 'correct', 'held.ms')
            os.chmod(path('held.ms'), 0o700)
        shutil.rmtree(path('held.ms/SPECTRAL_WINDOW'))
        self.refused('', 'correct', 'held.ms')
        self.refused('', 'import', 'held.ms', 'again.ms')


@unittest.skipUnless('gains-to-h5' in subprocess.run([PROGRAM, '--help'], capture_output=True, text=True).stdout, 'built without HDF5')
class H5Parm(Base):
    def lines(self, seed=5):
        random = np.random.default_rng(seed)
        return [(n, ifs, hand, start, start + 0.1, complex(*random.normal(0, 1, 2)), state, flagged)
                for n, state, flagged in ((1, 'solved', 0), (2, 'failed', 0), (5, 'solved', 1), (7, 'solved', 0))
                for ifs in ('1', '2') for hand in 'RL' for start in (0.25, 0.35, 0.75) if (n, start) != (7, 0.35)]

    def test_there_and_back(self):
        try:
            import h5py
        except ImportError:
            self.skipTest('no h5py (Debian: python3-h5py)')
        self.tiny('frame')
        lines = self.lines()
        write_gains('in.txt', lines)
        for data in ([], ['--data', 'frame.ms'], ['--data', 'frame.uvfits']):
            facts = self.done('gains-to-h5', 'in.txt', 'gains.h5', *data)
            self.assertEqual(facts['gains'], [str(len(lines))])
            with h5py.File(path('gains.h5')) as file:
                tables_of = file['sol000']
                self.assertEqual(tables_of.attrs['h5parm_version'], b'1.0')
                amplitude, phase = tables_of['amplitude000'], tables_of['phase000']
                self.assertEqual(amplitude['val'].attrs['AXES'], b'time,freq,ant,dir,pol')
                self.assertEqual(list(amplitude['pol']), [b'RR', b'LL'])
                np.testing.assert_allclose(amplitude['time'][:] / 86400 - (tiny_uvfits.DAY - 2400000.5), [0.3, 0.4, 0.8], atol=1e-9)
                if data:
                    np.testing.assert_allclose(amplitude['freq'][:], [8.4e9 + 2.5e5, 8.408e9 + 2.5e5])
                    self.assertGreater(abs(tables_of['antenna']['position']).min(), 0)
                gains = amplitude['val'][:] * np.exp(1j * phase['val'][:])
                times, order = [0.25, 0.35, 0.75], [1, 2, 5, 7]
                for n, ifs, hand, start, _, value, state, flagged in lines:
                    place = times.index(start), int(ifs) - 1, order.index(n), 0, 'RL'.index(hand)
                    self.assertAlmostEqual(gains[place], value, 12)
                    self.assertEqual(amplitude['weight'][place], state == 'solved' and not flagged)
                self.assertTrue(np.isnan(gains[1, :, 3]).all())
            self.done('gains-from-h5', 'gains.h5', 'out.txt')
            for before, after in zip(sorted(rows_of('in.txt')), sorted(rows_of('out.txt')), strict=True):
                np.testing.assert_allclose([float(x) for x in after[8:10]], [float(x) for x in before[8:10]], rtol=1e-12)
                self.assertEqual([x.rstrip('0').rstrip('.') or '0' for x in after[:8] + after[10:]],
                                 [x.rstrip('0').rstrip('.') or '0' for x in before[:8] + before[10:]])

    def test_of_others(self):
        """Axes in another order, phases alone, texts of any length; what cannot be is refused."""
        try:
            import h5py
        except ImportError:
            self.skipTest('no h5py (Debian: python3-h5py)')
        self.tiny('frame')
        phases = np.random.default_rng(2).normal(0, 1, (2, 3, 2, 4))
        with h5py.File(path('other.h5'), 'w') as file:
            group = file.create_group('sol000/phase000')
            group.attrs['TITLE'] = 'phase'
            group['val'], group['pol'] = phases, np.array([b'XX', b'YY'])
            group['val'].attrs['AXES'] = 'pol,time,freq,ant'
            group['time'] = [(tiny_uvfits.DAY - 2400000.5 + t) * 86400 for t in (0.4, 0.5, 0.7)]
            group['freq'] = [8.4e9, 8.41e9]
            group['ant'] = ['KP', 'HN', 'FD', 'BR']
            group['weight'] = np.ones(phases.shape, 'f2')
            group['weight'][1, 2, 0, 3] = 0
        facts = self.done('gains-from-h5', 'other.h5', 'other.txt', '--data', 'frame.ms')
        self.assertIn('ends of intervals', facts['lost'][0])
        rows = rows_of('other.txt')
        self.assertEqual(len(rows), phases.size)
        for row in rows:
            number, hand, state = int(row[1]), 'XY'.index(row[4]), row[14]
            start, end = float(row[6]), float(row[7])
            t = [i for i, time in enumerate((0.4, 0.5, 0.7)) if start <= time < end]
            self.assertEqual(len(t), 1)
            place = hand, t[0], int(row[3]) - 1, [7, 5, 2, 1].index(number)
            self.assertAlmostEqual(complex(float(row[8]), float(row[9])), np.exp(1j * phases[place]), 12)
            self.assertEqual(state, 'failed' if place == (1, 2, 0, 3) else 'solved')
        for change, what in ((lambda g: g['val'].attrs.modify('AXES', 'pol,time,freq'), 'axes are not told'),
                             (lambda g: g['val'].attrs.modify('AXES', 'pol,time,tec,ant'), 'an axis tec'),
                             (lambda g: g.attrs.modify('TITLE', 'rotation'), 'neither amplitudes nor phases'),
                             (lambda g: g.__delitem__('time'), 'another length')):
            shutil.copy(path('other.h5'), path('wrong.h5'))
            with h5py.File(path('wrong.h5'), 'a') as file:
                change(file['sol000/phase000'])
            self.refused(what, 'gains-from-h5', 'wrong.h5', 'wrong-out.txt')
        with open(path('other.h5'), 'rb') as file:
            whole = file.read()
        for length in (0, 100, len(whole) // 2, len(whole) - 1):
            with open(path('wrong.h5'), 'wb') as file:
                file.write(whole[:length])
            self.refused('', 'gains-from-h5', 'wrong.h5', 'wrong-out.txt')

    @unittest.skipUnless(shutil.which('wsclean'), 'the imaging engine is not installed (Debian: wsclean)')
    def test_of_the_engine(self):
        """Phases that the engine takes from the file make the map that corrected data make."""
        self.done('import', SIMULATED, 'facet.ms')
        self.done('correct', 'facet.ms')
        facts = self.done('facts', 'facet.ms')
        numbers = [line.split('\t')[1] for line in facts['antenna']]
        ra, dec = (float(x) for x in facts['source'][0].split('\t')[2:])
        ifs = ','.join(line.split('\t')[0] for line in facts['if'])
        write_gains('two.txt', [(n, ifs, hand, -1.0, 5.0, complex(np.exp(1j * int(n) ** 2)), 'solved', 0) for n in numbers for hand in 'RL'],
                    float(facts['referenceday'][0]))
        text = text_of('two.txt')
        for line in facts['antenna']:
            _, number, name = line.split('\t')[:3]
            text = text.replace(f'\t{number}\tA\t', f'\t{number}\t{name}\t')
        with open(path('two.txt'), 'w') as file:
            file.write(text)
        self.done('gains-to-h5', 'two.txt', 'two.h5', '--data', 'facet.ms')
        corners = ','.join(f'{ra + x / 3.6e6 / np.cos(np.radians(dec))},{dec + y / 3.6e6}' for x, y in ((9, -9), (9, 9), (-9, 9), (-9, -9)))
        with open(path('facet.reg'), 'w') as file:
            file.write(f'# Region file format: DS9 version 4.1\nfk5\npolygon({corners})\n')
        maps = []
        for gains, more in (([], ['-apply-facet-solutions', 'two.h5', 'phase000']), (['--gains', 'two.txt'], []), ([], [])):
            self.done('correct', 'facet.ms', *gains)
            done = subprocess.run(['wsclean', '-j', '1', '-reorder', '-data-column', 'CORRECTED_DATA', '-size', '128', '128', '-scale',
                                   '0.1masec', '-niter', '0', '-name', 'facet', '-facet-regions', 'facet.reg', *more, 'facet.ms'],
                                  cwd=FOLDER, capture_output=True, text=True)
            self.assertEqual(done.returncode, 0, done.stdout[-1500:] + done.stderr[-1500:])
            maps.append(fits.getdata(path('facet-dirty.fits')).squeeze())
        self.assertLess(abs(maps[0] - maps[1]).max(), 1e-5)
        self.assertGreater(abs(maps[1] - maps[2]).max(), 0.1)


@unittest.skipUnless(shutil.which('wsclean'), 'the imaging engine is not installed (Debian: wsclean)')
class Engine(Base):
    def test_map_of_the_mean(self):
        """A hand of which some are flagged: the engine alone loses them, the mean keeps them."""
        self.done('import', SIMULATED, 'map.ms')
        counts = {}
        for form in ('strict', 'mean'):
            self.done('correct', 'map.ms', '--form', form)
            done = subprocess.run(['wsclean', '-j', '1', '-reorder', '-data-column', 'CORRECTED_DATA', '-size', '256', '256',
                                   '-scale', '0.1masec', '-niter', '50', '-name', form, 'map.ms'],
                                  cwd=FOLDER, capture_output=True, text=True)
            self.assertEqual(done.returncode, 0, done.stdout[-2000:] + done.stderr[-2000:])
            for kind in ('dirty', 'psf', 'model', 'residual', 'image'):
                with fits.open(path(f'{form}-{kind}.fits')) as file:
                    self.assertTrue(np.isfinite(file[0].data).all())
                    counts[form] = file[0].header['WSCNVIS']
            self.assertGreater(fits.getdata(path(f'{form}-image.fits')).max(), 5 * fits.getdata(path(f'{form}-residual.fits')).std())
        self.assertGreaterEqual(counts['mean'], counts['strict'])


if __name__ == '__main__':
    shutil.rmtree(FOLDER, ignore_errors=True)
    os.makedirs(FOLDER)
    subprocess.run([SIMULATE, '--size', '64', '--clean', '1', '--hours', '1', '--out', os.path.dirname(SIMULATED)], check=True,
                   stdout=subprocess.DEVNULL)
    unittest.main(argv=[sys.argv[0]] + sys.argv[4:])
