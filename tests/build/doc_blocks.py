#!/usr/bin/env python3
"""doc_blocks.py OUT PAGE...: one source of all ```cpp blocks of the pages.

Each stands in a namespace of its own; one without a function stands in one whose parameters a comment
before it names: <!-- cpp: A2DAxis& axis, int rows -->. "..." stands for what a host does there.
"""
import re
import sys

BLOCK = re.compile(r'(?:<!-- cpp: (.*?) -->\s*)?^```cpp\n(.*?)^```$', re.M | re.S)
heads, bodies = ['#include <pavane/pavane.h>\n'], []
for page in sys.argv[2:]:
    with open(page, encoding='utf-8') as file:
        text = file.read()
    for block in BLOCK.finditer(text):
        code = block.group(2)
        heads += re.findall(r'^#include <[a-z]+>\n', code, re.M)
        code = re.sub(r'^#include .*$', '', code, flags=re.M)  # empty lines keep the numbers
        code = re.sub(r'^( *)\.\.\.;?$', r'\1;', code, flags=re.M)
        line = text.count('\n', 0, block.start(2)) + 1
        place = f'#line {line} "{page}"\n'
        name = f'block{len(bodies)}'
        if not re.search(r'^int \w+\(', code, re.M):
            code = f'int run({block.group(1) or ""})\n{{\n{place}{code}return 0;\n}}\n'
        bodies.append(f'namespace {name}\n{{\nusing namespace pavane;\n{place}{code}}}\n')
if not bodies:
    sys.exit('no block found')
with open(sys.argv[1], 'w', encoding='utf-8') as file:
    file.write(''.join(dict.fromkeys(heads)) + ''.join(bodies))
