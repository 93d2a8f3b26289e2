#!/usr/bin/env python3
"""layers_test.py SOURCE: puts one violation after the other into a copy of the tree; scripts/check-layers
has to pass the copy as it is and to name the file of each violation."""
import os
import shutil
import subprocess
import sys
import tempfile

source = sys.argv[1]
# what is put in: (file, its text; a file that is there gets it at its end), and why it is wrong
VIOLATIONS = [
    ('pavane/axes/ABAxis.cpp', '#include "pavane/axes/windows/AAxisWnd.h"\n', 'a room includes one below'),
    ('pavane/axes/maps/ABMapGraph.h', '#  include  "pavane/trackers/ATracker.h"\n', 'spaces in the line'),
    ('pavane/trackers/ATracker.cpp', '#include "pavane/trackers/collections/TrackerCollection.h"\n',
     'a folder includes one below itself'),
    ('pavane/trackers/areas/VertexTable.cpp', '#include <pavane/trackers/ATracker.h>\n', 'in angle brackets'),
    ('pavane/trackers/shapes/polygon_shape.cpp', '#include "../collections/tool_modes.h"\n', 'a relative path'),
    ('pavane/trackers/shapes/RectDrag.h', '#include "platform/CWnd.h"\n', 'a window header in the logic'),
    ('pavane/images/palettes.cpp', '#include "platform/core/clip_geometry.h"\n', 'a private header'),
    ('pavane/windows/ABWindow.cpp', '#include <QtWidgets/QWidget>\n', 'the toolkit by its folder'),
    ('platform/CDC.h', '#include <QString>\n', 'the toolkit in the platform API'),
    ('tessel/AFile.cpp', '#include "platform/types.h"\n', 'tessel knows no platform'),
    ('platform/core/lines.cpp', '/* a comment */ #include "pavane/axes/ABAxis.h"\n', 'a comment before it'),
    ('apps/view/main.cpp', '#include "platform/qt/WindowPeer.h"\n', 'a program sees the backend'),
    ('pavane/images/ADIBase.cpp', '#include <fitsio.h>\n', 'a wrapped header'),
    ('pavane/gadgets/Gadget.h', '#pragma once\n', 'a folder that is no room'),
    ('pavane/history/steps.hpp', '#include "pavane/windows/ABWindow.h"\n', 'another ending'),
    ('pavane/axes/CMakeLists.txt', 'target_sources(pavane-axes PRIVATE ../windows/ABWindow.cpp)\n',
     'a part takes sources of another folder'),
    ('pavane/history/CMakeLists.txt', 'target_link_libraries(pavane-history PUBLIC pavane-windows)\n',
     'a part links one below'),
]


def check(tree):
    done = subprocess.run([os.path.join(source, 'scripts/check-layers'), tree], capture_output=True, text=True)
    return done.returncode, done.stdout + done.stderr


with tempfile.TemporaryDirectory() as tree:
    for folder in ('posix', 'tessel', 'platform', 'pavane', 'apps', 'examples', 'benchmarks', 'tests'):
        shutil.copytree(os.path.join(source, folder), os.path.join(tree, folder),
                        ignore=shutil.ignore_patterns('corpus', 'palettes', 'build-*'))
    code, said = check(tree)
    if code:
        sys.exit(f'the tree itself does not pass:\n{said}')
    missed = []
    for path, text, why in VIOLATIONS:
        full = os.path.join(tree, path)
        before = open(full, 'rb').read() if os.path.exists(full) else None
        os.makedirs(os.path.dirname(full), exist_ok=True)
        with open(full, 'ab') as file:
            file.write(b'\n' + text.encode())
        code, said = check(tree)
        if code != 1 or path not in said:
            missed.append(f'{path}: {why}: passed\n{said}')
        if before is None:
            os.remove(full)
        else:
            with open(full, 'wb') as file:
                file.write(before)
    sys.exit('\n'.join(missed) if missed else 0)
