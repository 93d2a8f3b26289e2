"""Reads copied cells with readers of its own and compares them; ends with 1 at a difference.
    read_cell_forms.py FOLDER   csv, html, block and expected in it; expected: a line for each row, the
                                bytes of each cell in hexadecimal, the first line the headers
"""
import csv
import html.parser
import io
import sys


class Cells(html.parser.HTMLParser):
    def __init__(self):
        super().__init__()
        self.rows, self.headers, self.open = [], [], False

    def handle_starttag(self, tag, attrs):
        if tag == 'tr':
            self.rows.append([])
        if tag in ('td', 'th'):
            self.rows[-1].append('')
            self.open = True
            if tag == 'th':
                self.headers.append((len(self.rows) - 1, len(self.rows[-1]) - 1))

    def handle_endtag(self, tag):
        if tag in ('td', 'th'):
            self.open = False

    def handle_data(self, data):
        if self.open:
            self.rows[-1][-1] += data


def read(name):
    with open(f'{sys.argv[1]}/{name}', 'rb') as file:
        return file.read()


rows = [[bytes.fromhex(cell) for cell in line.split(',')] for line in read('expected').decode().splitlines()]
texts = [[cell.decode('utf-8', 'replace') for cell in row] for row in rows]
assert list(csv.reader(io.StringIO(read('csv').decode('utf-8'), newline=''), strict=True)) == texts, 'csv'
cells = Cells()
cells.feed(read('html').decode('utf-8'))
cells.close()
assert cells.rows == [[text.replace('\0', '\ufffd') for text in row] for row in texts], 'html'
expected = {(r, c) for r in range(len(rows)) for c in range(len(rows[r])) if not r or not c}
assert set(cells.headers) == expected, 'headers'
