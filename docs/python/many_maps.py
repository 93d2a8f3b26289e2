# %% [markdown]
# # Many maps
#
# `draw_many` draws by several processes, goes on when a map fails, and tells which.

# %%
import warnings

import jet
import pavane

for i in range(3):
    jet.write(f"epoch-{i}.fits", jet.cells() / (i + 1))
sources = [f"epoch-{i}.fits" for i in range(3)] + ["lost.fits"]

with warnings.catch_warnings():
    warnings.simplefilter("ignore")  # the same is in `error`
    results = pavane.draw_many(sources, "figures", workers=2, levels="sigma:-3,3,6,12,...", size=(700, 600))
for drawn in results:
    print(drawn.path, drawn.error or "done")

# %% [markdown]
# The processes are new ones, so this works in notebooks, in scripts without a `__main__` guard and
# beside threads. The same by `concurrent.futures` or Dask, in threads or processes: figures are
# drawn without the interpreter's lock, and they can be pickled.

# %%
from concurrent.futures import ThreadPoolExecutor


def write_page(name: str) -> str:
    page = name.replace(".fits", ".pdf")
    pavane.draw(name, scale="sqrt").save(page)
    return page


with ThreadPoolExecutor(2) as pool:
    print(list(pool.map(write_page, sources[:3])))

# %% [markdown]
# A process that draws should not be forked while another thread of it draws: fork before, or use
# `spawn`, as `draw_many` does. A program that makes an application object of Qt after it has drawn,
# and by other means than PyQt6 or PySide6, calls `pavane.release()` between.
