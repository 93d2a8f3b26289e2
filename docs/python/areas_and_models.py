# %% [markdown]
# # Areas, masks and models
#
# An area is a shape in cells: column and row from 0, whole numbers at the centres of cells. `Areas`
# is a list of them, with arrays of their centres, sizes and angles.

# %%
import numpy as np

import jet
import pavane
from pavane import Area, Areas, Components

jet.write("jet.fits")
areas = Areas([
    Area.ellipse((86, 160), (150, 56), angle=-37),
    Area.polygon([(112, 108), (144, 112), (148, 142), (116, 146)]),
    Area.rectangle((66, 178), (34, 16), angle=-37, never_clean=True),
])
print(areas.centers, areas.never_clean)

# %% [markdown]
# Files of DS9 (`.reg`), CASA (`.crtf`), Difmap (`.win`) and of the programs (`.cma`, `.areas`) are read and written.
# Positions on the sky need the map that they lie on.

# %%
areas.write("jet.reg", sky=True, map="jet.fits")
areas = Areas.read("jet.reg", map="jet.fits")
fig = pavane.draw("jet.fits", scale="log", areas=areas, size=(700, 600))
fig.save("python-areas.png")

# %% [markdown]
# ![The jet with three areas, the hatched one never cleaned](../pictures/python-areas.png)
#
# A mask is an array of bool: the cells of all areas without those of never-clean ones. It has the
# cells of the outline too, as CLEAN takes them; `rule="centres"` takes only those whose centres lie
# inside, as `regions` does. `packed=True` gives eight cells a byte.

# %%
mask = areas.mask((256, 256))
inside = areas.mask((256, 256), rule="centres")
print(mask.sum(), inside.sum())

# %% [markdown]
# Any mask becomes areas, whose mask is the same again, cell by cell:

# %%
bright = jet.cells() > 0.05
again = Areas.from_mask(bright)
assert (again.mask(bright.shape) == bright).all()

# %% [markdown]
# `Areas.from_regions` and `to_regions` hand shapes over to the package `regions` and back.
#
# Peak, noise and flux are those of `pavane-view --stats`:

# %%
numbers = pavane.statistics("jet.fits", areas)
print(f"{numbers.flux:.3f} {numbers.flux_unit} in {numbers.cells} cells")
print(f"peak {numbers.peak:.3f} {numbers.unit} at {numbers.peak_cell}, noise {numbers.noise:.2g}")

# %% [markdown]
# ## Models
#
# `Components` is a structured array of the eight columns: kind, flux, large axis (arcseconds), axis
# ratio, inclination, angle and distance (arcseconds) from the centre, width of a ring. Columns that
# are not named have their defaults.

# %%
model = Components(kind=[2, 2, 3], flux=[0.6, 0.5, 0.2], major=[4e-4, 6e-4, 1e-3],
                   distance=[0, 1.5e-3, 3e-3], angle=[0, 57, 55])
model["flux"][0] = 0.7  # in place
cells = model.to_map(header=jet.header(), shape=(256, 256))
fig = pavane.draw(cells, header={**jet.header(), "BUNIT": "JY/PIXEL"}, scale="sqrt", model=model,
                  size=(700, 600))
fig.save("python-model.png")

# %% [markdown]
# ![A model of three components and their outlines](../pictures/python-model.png)
#
# Visibilities at any points, in wavelengths; `sum(flux)` is the one at (0, 0):

# %%
u = np.linspace(0, 3e8, 1000)
amplitude = np.abs(model.visibilities(u, 0 * u))
curve = pavane.plot(u, amplitude, x_title="u [%sλ]", y_title="Amplitude [%sJy]", size=(700, 350))
curve.save("python-visibilities.png")

# %% [markdown]
# ![Amplitude of the model against u](../pictures/python-visibilities.png)
#
# `model.write("jet.mod")` and `Components.read("jet.mod")` keep a model as a text of six digits;
# `Components.read("clean.fits")` takes the components that a CLEAN leaves behind its map.
