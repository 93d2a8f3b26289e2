"""pip install --no-build-isolation . : builds the library and the compiled core, and puts both into the package."""
from skbuild import setup

setup(
    packages=["pavane"],
    package_dir={"": "python"},
    package_data={"pavane": ["py.typed", "*.pyi"]},
    cmake_install_dir="python",
    # all is built from nothing here: what makes that faster
    cmake_args=["-DCMAKE_BUILD_TYPE=Release", "-DPAVANE_JOIN_SOURCES=ON", "-DPAVANE_SHARED_HEADERS=ON"],
)
