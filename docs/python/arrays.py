# %% [markdown]
# # Arrays
#
# `draw` reads an array where it is: floats, doubles and whole numbers in either byte order, slices,
# reversed and transposed views, memory maps. Nothing is copied, and the figure keeps the array.

# %%
import jet
import pavane

cells = jet.cells()
fig = pavane.draw(cells, header=jet.header(), scale="log", size=(700, 600))
assert fig.array is cells

# %% [markdown]
# `header` takes an astropy `Header`, a mapping as here, or the text of FITS cards; `wcs` an astropy
# `WCS`. Without both the axes count pixels, from 1 as FITS does. An HDU, or a list of HDUs, brings its own header:
# `pavane.draw(hdus[0])`. Of a cube say which plane: `pavane.draw(cube, plane=3)`.
#
# After cells have changed, `refresh` finds range, noise and contours anew:

# %%
cells *= 0.5
fig.refresh()
fig.save("half.png")

# %% [markdown]
# Cells that are not finite are blank. So are those that `mask` hides, or a masked array of numpy:

# %%
hidden = cells > 0.2
masked = pavane.draw(cells, mask=hidden, header=jet.header(), size=(700, 600))
masked.save("python-masked.png")

# %% [markdown]
# ![The jet with its brightest cells left out](../pictures/python-masked.png)
