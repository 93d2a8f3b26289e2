# %% [markdown]
# # The first figure
#
# A map, its contours from 1 per cent of the peak on, colours spread by the square root, written as
# a page of vectors. `jet.fits` is any FITS map; here it is one that `jet.py` makes.

# %%
import jet
import pavane

jet.write("jet.fits")

fig = pavane.draw("jet.fits", levels="peak:-1,1,2,4,...", scale="sqrt")
fig.save("jet.pdf")

# %% [markdown]
# `save` writes PNG, PDF and SVG, by the ending of the name. In a notebook the last line of a cell,
# `fig`, shows the figure; with `ratio=2` it is as fine as the screen of a laptop.
#
# ![A jet with contours, beam and colour bar](../pictures/python-first.png)

# %%
fig = pavane.draw("jet.fits", levels="peak:-1,1,2,4,...", scale="sqrt", size=(700, 600))
fig.save("python-first.png")

# %% [markdown]
# The look is that of `pavane-view --batch`: `range=(0, 0.1)` or `range="p:1,99.9"` chooses the values
# of the first and the last colour, `palette="heat"` other colours (`pavane.palette_names()` has their
# names; lists of colours and colormaps of matplotlib go too), `title=` the line above the map.

# %%
print(pavane.palette_names())
zoomed = pavane.draw("jet.fits", range="p:1,99.9", palette="heat", title="A jet", size=(700, 600))
zoomed.save("zoomed.svg")

# %% [markdown]
# Where is a source in the picture, and what does a pixel of it show? Positions are in degrees, in the
# frame of the map; `pixels` is an array of rows, columns and red, green, blue that nobody copied.

# %%
column, row = fig.to_pixel(187.7059, 12.3911)
longitude, latitude = fig.to_world(column, row)
print(round(column), round(row), fig.pixels[round(row), round(column)])
