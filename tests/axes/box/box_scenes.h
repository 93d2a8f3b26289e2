#pragma once

#include "pavane/axes/box/SurfaceGrid.h"

#include <cmath>
#include <random>

/// Random maps in a random box, one for each number: sizes, holes, directions, a peak far above all
/// else, one surface or two, curtains, floors, and all kinds of views.
class RandomScene
{
public:
    explicit RandomScene(unsigned number) : random_(number), number_(number)
    {
        scene.stacked = number % 8 == 3;
        scene.first = surface(first_, 0);
        if (number % 4 == 3)
            scene.second = surface(second_, 1);
        static constexpr double azimuths[] = {0, 90, 180, 270, 45, 1e9};
        static constexpr double elevations[] = {0, 90, 1};
        view.setView(number % 5 == 1 ? azimuths[number / 5 % 6] : part() * 360,
                     number % 7 == 2 ? elevations[number / 7 % 3] : part() * 90);
        if (number % 9 == 4)
            view.setOblique(part() * 180, part());
        view.setHeight(0.1 + part());
        if (number % 6 == 5)
            view.setZoom(1 + 4 * part());
        view.setPan(0.0031, 0.0017);  // so that no middle of a pixel lies just between two cells
        view.fit({0, 0, width, height});
    }

    static constexpr int width = 120, height = 90;
    pavane::SurfaceScene scene;
    pavane::BoxView view;

private:
    double part() { return std::uniform_real_distribution<double>(0, 1)(random_); }
    pavane::SceneSurface surface(pavane::SurfaceGrid& grid, int second)
    {
        static constexpr int sizes[][2] = {{2, 2},  {7, 5},   {30, 41}, {1, 1},  {64, 3},
                                           {1, 50}, {50, 40}, {60, 1},  {3, 70}, {90, 80}};
        const auto& size = sizes[number_ * 7 / 2 % 10];
        pavane::AMatrix<float> cells(size[1], size[0]);
        const double waves = part() * 12, noise = number_ % 3 * 0.2;
        for (int r = 0; r < cells.rows(); ++r)
            for (int c = 0; c < cells.columns(); ++c) {
                const double x = c / 60.0, y = r / 50.0;
                const double wave = std::sin(waves * x + second) * std::cos(waves * y);
                cells(r, c) = static_cast<float>(wave + noise * (2 * part() - 1));
            }
        for (int k = 0; number_ % 5 < 2 && k < cells.cells() / 20; ++k)
            cells.data()[static_cast<int>(part() * static_cast<double>(cells.cells() - 1))] = NAN;
        const bool hasPeak = number_ % 11 == 10;
        if (hasPeak)
            cells.data()[cells.cells() / 2] = 1e30f;
        pavane::SurfacePlace place;
        if (part() < 0.5)
            std::swap(place.firstP, place.lastP);
        if (part() < 0.5)
            std::swap(place.firstQ, place.lastQ);
        if (scene.stacked)
            (second ? place.floor : place.top) = 0;
        if (number_ % 13 == 6) {
            place.below = (place.top - place.floor) * 0.4;
            place.floor += place.below;
        }
        const pavane::MapScale scale(pavane::MapScaleKind::linear, -1.5, hasPeak ? 1e30 : 1.5);
        const pavane::AFloatMatrixAccess access(cells);
        grid.set(access, scale, place);
        return {&grid, number_ % 3 == 1, number_ % 2 == 1};
    }

    std::mt19937 random_;
    unsigned number_;
    pavane::SurfaceGrid first_, second_;
};
