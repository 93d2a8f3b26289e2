# %% [markdown]
# # Curves, points, histograms
#
# A spectrum with its fit. `%s` in a title takes up a prefix of the unit where the axis is linear.

# %%
import numpy as np

import jet
import pavane

frequency = np.array([1.4e9, 4.8e9, 8.4e9, 15.3e9, 43e9])
flux = np.array([0.92, 0.51, 0.38, 0.27, 0.15])
fit = np.geomspace(1.2e9, 50e9, 100)
fig = pavane.plot(fit, 0.92 * (fit / 1.4e9) ** -0.53, style="--", label="power law",
                  x_scale="log", y_scale="log", x_title="Frequency [%sHz]",
                  y_title="Flux density [%sJy]", grid=True, size=(700, 450))
fig.points(frequency, flux, y_errors=0.05 * flux, marker="x", label="observed")
fig.save("python-spectrum.png")

# %% [markdown]
# ![A spectrum on logarithmic axes with its fit and a legend](../pictures/python-spectrum.png)
#
# Times are `datetime64` or astropy `Time`; the axis counts from the midnight before the first.

# %%
start = np.datetime64("2026-01-03T18:20")
times = start + np.arange(0, 7 * 3600, 120) * np.timedelta64(1, "s")
phase = 30 * np.sin(np.arange(times.size) / 40)
noise = np.random.default_rng(5).normal(scale=4, size=times.size)
track = pavane.points(times, phase + noise, marker=".", y_title="Phase [deg]", size=(700, 350))
track.save("python-times.png")

# %% [markdown]
# ![Phases of a night against time](../pictures/python-times.png)
#
# The histogram of the cells of a map away from its source, with the normal curve of their mean and
# RMS, which the line above it tells.

# %%
pavane.histogram(jet.cells()[:80], bins=60, x_title="Flux density [%sJy/beam]",
                 size=(700, 400)).save("python-histogram.png")

# %% [markdown]
# ![A histogram with its normal curve](../pictures/python-histogram.png)
