#include "pavane/axes/box/HiddenLines.h"
#include "tests/axes/box/box_scenes.h"
#include "tests/axes/box/plain_depth.h"

#include <gtest/gtest.h>

using namespace pavane;

namespace
{

double lengthOf(const PicturePieces& pieces)
{
    double length = 0;
    for (std::size_t i = 0; i < pieces.count(); ++i)
        for (std::size_t k = 1; k < pieces.piece(i).size(); ++k)
            length += std::hypot(pieces.piece(i)[k].x - pieces.piece(i)[k - 1].x,
                                 pieces.piece(i)[k].y - pieces.piece(i)[k - 1].y);
    return length;
}

BoxPoint mix(const BoxPoint& a, const BoxPoint& b, double part)
{
    return {a.p + (b.p - a.p) * part, a.q + (b.q - a.q) * part, a.s + (b.s - a.s) * part};
}

/// Lines of all kinds: rows and columns, one laid over the surface, stalks, lines of the walls.
std::vector<std::vector<BoxPoint>> someLines(const SurfaceGrid& grid, std::mt19937& random)
{
    std::uniform_real_distribution<double> part(0, 1);
    std::vector<std::vector<BoxPoint>> lines(2);
    const int row = static_cast<int>(part(random) * grid.rows());
    const int column = static_cast<int>(part(random) * grid.columns());
    for (int c = 0; c < grid.columns(); ++c)
        lines[0].push_back(grid.point(c, row));
    for (int r = 0; r < grid.rows(); ++r)
        lines[1].push_back(grid.point(column, r));
    const CPointF ends[] = {{-3, part(random) * grid.rows()},
                            {part(random) * grid.columns(), grid.rows() * 1.1}};
    lines.push_back(drapeLine(grid, ends));
    const double p = part(random) - 0.5, q = part(random) - 0.5;
    lines.push_back({{p, q, -0.5}, {p, q, 0.5}});
    lines.push_back({{-0.5, 0.5, q}, {0.5, 0.5, q}});
    lines.push_back({{p, -0.5, -0.5}, {p, 0.5, -0.5}});
    return lines;
}

TEST(HiddenLinesTest, WhatIsSeenOfLinesIsWhatNoTriangleHides)
{
    long looks = 0, hidden = 0, wrong = 0;
    for (unsigned number = 0; number < 220; ++number) {
        const RandomScene random(number);
        PlainDepth plain(random.view, 0, 0);
        plain.add(random.scene.first, 0);
        plain.add(random.scene.second, 1);
        const HiddenLines lines(random.view, random.scene, 0.5);
        std::mt19937 numbers(number);
        const std::size_t most = std::min<std::size_t>(40, 60000 / (plain.triangles() + 1) + 3);
        for (const auto& line : someLines(*random.scene.first.grid, numbers)) {
            const std::size_t stride = line.size() / most + 1;
            for (std::size_t k = 0; k + 1 < line.size(); k += stride) {
                const double f = 0.01 + 0.98 * static_cast<double>(k % 7) / 7;
                const BoxPoint &a = line[k], &b = line[k + 1];
                const BoxPoint at = mix(a, b, f);
                if (!(at.s == at.s))
                    continue;
                const int isHidden = plain.isHidden(at);
                ++looks;
                hidden += isHidden;
                wrong += lines.sight().isHidden(at) != isHidden;
            }
        }
    }
    EXPECT_LE(wrong, looks / 500);  // on the very edge of what hides them
    EXPECT_GT(hidden, looks / 8);
}

TEST(HiddenLinesTest, PiecesAreAsLongAsWhatIsSeen)
{
    for (unsigned number = 0; number < 60; ++number) {
        const RandomScene random(number);
        BoxView view = random.view;
        view.setZoom(1);  // what lies far outside is left out
        const HiddenLines lines(view, random.scene);
        std::mt19937 numbers(number);
        for (const auto& line : someLines(*random.scene.first.grid, numbers)) {
            PicturePieces pieces;
            lines.add(line, pieces);
            double seen = 0;
            int changes = 0, wasSeen = 0;
            for (std::size_t k = 0; k + 1 < line.size(); ++k) {
                const CPointF a = view.project(line[k]);
                const CPointF b = view.project(line[k + 1]);
                const double length = std::hypot(b.x - a.x, b.y - a.y);
                const int parts = length >= 0 ? static_cast<int>(length * 8) + 1 : 0;
                for (int i = 0; i < parts; ++i) {
                    const BoxPoint at = mix(line[k], line[k + 1], (i + 0.5) / parts);
                    const int isSeen = !lines.sight().isHidden(at);
                    changes += isSeen != wasSeen;
                    wasSeen = isSeen;
                    seen += isSeen * length / parts;
                }
            }
            EXPECT_NEAR(lengthOf(pieces), seen, 0.5 + 0.5 * changes) << number;
        }
    }
}

TEST(SurfaceLatticeTest, LinesKeepTheirDistanceAndEveryPeak)
{
    AMatrix<float> cells(400, 300);
    cells.fill(0);
    std::mt19937 random(5);
    for (int k = 0; k < 200; ++k)
        cells.data()[random() % 120000] = 1 + static_cast<float>(k);
    for (int r = 100; r < 200; ++r)  // a broad hill, whose top lies between lines
        for (int c = 100; c < 200; ++c)
            cells(r, c) = 250 - static_cast<float>(std::hypot(r - 133, c - 151));
    const AFloatMatrixAccess access(cells);
    SurfaceGrid grid;
    ASSERT_TRUE(grid.set(access, MapScale(MapScaleKind::linear, 0, 300), {}));
    for (const double elevation : {0.0, 20.0, 60.0, 90.0}) {
        BoxView view;
        view.setView(77 * elevation + 10, elevation);
        view.fit({0, 0, 600, 400});
        const SurfaceLattice lattice = latticeOf(grid, view);
        const SurfaceLattice onIt = latticeOf(grid, view, 4, 0);
        for (const auto* lines : {&onIt.alongX, &onIt.alongY})
            for (const std::vector<BoxPoint>& line : *lines)
                for (const BoxPoint& at : line)
                    EXPECT_NEAR(at.s, grid.heightAt(grid.columnOf(at.p), grid.rowOf(at.q)), 1e-4);
        for (const auto* lines : {&lattice.alongX, &lattice.alongY}) {
            ASSERT_GE(lines->size(), 2u);
            float most = -1;
            for (std::size_t k = 0; k < lines->size(); ++k) {
                for (const BoxPoint& at : (*lines)[k])
                    most = std::max(most, static_cast<float>(at.s));
                if (k == 0 || lines->size() == 2)
                    continue;
                BoxPoint a = (*lines)[k].front(), b = (*lines)[k].back();
                BoxPoint c = (*lines)[k - 1].front();
                a.s = b.s = c.s = -0.5;
                const CPointF from = view.project(a), to = view.project(b), at = view.project(c);
                const double area =
                    (to.x - from.x) * (at.y - from.y) - (to.y - from.y) * (at.x - from.x);
                EXPECT_GE(std::fabs(area) / std::hypot(to.x - from.x, to.y - from.y), 4 - 1e-6);
            }
            EXPECT_FLOAT_EQ(most, 250.0f / 300 - 0.5f) << elevation;
        }
    }
}

}  // namespace
