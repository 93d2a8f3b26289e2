#include "pavane/axes/box/SurfaceRaster.h"

#include "pavane/axes/box/plane_walk.h"

#include <array>
#include <limits>
#include <numeric>
#include <vector>

namespace pavane
{

namespace
{

constexpr double infinity = std::numeric_limits<double>::infinity();
/// Of two surfaces as deep as each other, as two skirts are, the first one shows.
constexpr double sameDepth = 1e-9;

/// First pixel whose middle is not above y, cut to 0..height.
int pixelFrom(double y, int height)
{
    const double middle = y - 0.5;
    if (!(middle > 0))
        return 0;
    if (middle >= height)
        return height;
    const int whole = static_cast<int>(middle);
    return whole + (whole < middle);
}

/// What is the same for all columns of a surface.
class SurfaceShape
{
public:
    SurfaceShape(const BoxView& view, const BoxTransform& transform, const SceneSurface& surface,
                 int second, int light)
        : walk(*surface.grid, transform), grid(*surface.grid), skirt(surface.skirt),
          floor(surface.floor), ys(transform.ys), sight(view.sight()),
          second(static_cast<std::uint8_t>(second)), light_(light)
    {
        if (walk.isEmpty())
            return;
        const BoxPoint size = view.size();
        const int across = walk.rowsAway() ? 1 : grid.mapColumns();
        const int away = walk.rowsAway() ? grid.mapColumns() : 1;
        // modulo 2^32, so that a side turned round counts down
        cellAway_ = static_cast<std::uint32_t>(walk.away().stride > 0 ? away : -away);
        cellAcross_ = static_cast<std::uint32_t>(walk.across().stride > 0 ? across : -across);
        firstCell_ = nodeCell(walk.node(0, 0));
        blockCells_ = grid.blockCells().data();
        slopeAway_ = size.s / std::hypot(walk.away().p * size.p, walk.away().q * size.q);
        slopeAcross_ = size.s / std::hypot(walk.across().p * size.p, walk.across().q * size.q);
        // from the upper left of the eye: its right and its far side in p and q
        const double length = std::hypot(transform.xp / size.p, transform.xq / size.q);
        const BoxPoint right{transform.xp / size.p / length, transform.xq / size.q / length, 0};
        constexpr double toRight = -0.55, toFar = -0.35, toUp = 0.76;
        const double p = toRight * right.p - toFar * right.q;
        const double q = toRight * right.q + toFar * right.p;
        const auto along = [&](const PlaneWalk::Side& side) {
            return side.p != 0 ? (side.p > 0 ? p : -p) : (side.q > 0 ? q : -q);
        };
        lightAway_ = along(walk.away());
        lightAcross_ = along(walk.across());
        lightUp_ = toUp;
    }

    std::uint32_t cell(int i, int j) const
    {
        if (blockCells_)
            return blockCells_[walk.node(i, j)];
        return firstCell_ + static_cast<std::uint32_t>(i) * cellAway_ +
               static_cast<std::uint32_t>(j) * cellAcross_;
    }
    /// How much light falls on the surface about a centre.
    std::uint8_t lightAt(int i, int j) const
    {
        if (!light_)
            return 255;
        const double x = slopeAway_ * rise(i, j, walk.away().count, 1);
        const double y = slopeAcross_ * rise(i, j, walk.across().count, 0);
        const double falls =
            (lightUp_ - x * lightAway_ - y * lightAcross_) / std::sqrt(1 + x * x + y * y);
        const double share = falls == falls ? std::min(std::fabs(falls), 1.0) : 0;
        return static_cast<std::uint8_t>(255 * share);
    }

    PlaneWalk walk;
    const SurfaceGrid& grid;
    int skirt, floor;
    double ys;
    BoxPoint sight;
    std::uint8_t second;

private:
    std::uint32_t nodeCell(std::ptrdiff_t node) const
    {
        return grid.cell(static_cast<int>(node % grid.columns()),
                         static_cast<int>(node / grid.columns()));
    }
    /// How much the surface rises for a step of i, or of j, from the neighbours that have a height.
    double rise(int i, int j, int count, bool isAway) const
    {
        const int at = isAway ? i : j;
        const auto height = [&](int k) {
            return static_cast<double>(
                grid.heights().data()[isAway ? walk.node(k, j) : walk.node(i, k)]);
        };
        const double here = height(at);
        double low = at > 0 ? height(at - 1) : here, high = at + 1 < count ? height(at + 1) : here;
        int steps = (at > 0) + (at + 1 < count);
        if (!(low == low)) {
            low = here;
            --steps;
        }
        if (!(high == high)) {
            high = here;
            --steps;
        }
        return here == here && steps > 0 ? (high - low) / steps : 0;
    }

    std::uint32_t firstCell_ = 0, cellAway_ = 0, cellAcross_ = 0;
    const std::uint32_t* blockCells_ = nullptr;
    double slopeAway_ = 0, slopeAcross_ = 0;
    double lightAway_ = 0, lightAcross_ = 0, lightUp_ = 0;
    int light_;
};

/// The pixels of a column that are taken, when they need not be neighbours.
class FreePixels
{
public:
    explicit FreePixels(int height) : next_(static_cast<std::size_t>(height) + 1) {}
    void clear() { std::iota(next_.begin(), next_.end(), 0); }
    /// The first free pixel from y on, or the height.
    int from(int y)
    {
        while (at(y) != y) {
            at(y) = at(at(y));
            y = at(y);
        }
        return y;
    }
    void take(int y) { at(y) = y + 1; }

private:
    int& at(int y) { return next_[static_cast<std::size_t>(y)]; }

    std::vector<int> next_;
};

/// One column of pixels of one surface, painted from near to far.
///
/// A surface without holes is seen by a column as one unbroken line, and what of the picture it has
/// covered is one stretch: its next part is seen where it reaches beyond that.
template <bool hasHoles>
class ColumnPainter
{
public:
    ColumnPainter(const SurfaceShape& shape, double x, SurfacePixel* pixels, double* depths,
                  int height, FreePixels& freePixels)
        : shape_(shape), start_(shape.walk.start(x)), y0_(shape.walk.yAt(start_)),
          yStep_(shape.walk.yStep()), pixels_(pixels), depths_(depths), height_(height),
          free_(freePixels)
    {
    }
    void paint()
    {
        shape_.walk.walk(start_, *this);
        if (!hasBegun_)
            return;
        if (shape_.skirt)
            paintSkirt(i_, s_);
        if (shape_.floor)
            paintFloor();
    }

    void begin(double i, double s)
    {
        hasBegun_ = true;
        firstI_ = i_ = i;
        s_ = s;
        y_ = yOf(i, s);
        top_ = bottom_ = hasHoles ? 0 : pixelFrom(y_, height_);
        if (shape_.skirt)
            paintSkirt(i, s);
        setEdges();
    }
    [[gnu::always_inline]] bool to(double i, double s)
    {
        const double y = yOf(i, s);
        if constexpr (hasHoles) {
            const double low = std::min(y, y_), high = std::max(y, y_);
            if (low <= high)
                paintStretch(i, s, y, pixelFrom(low, height_), pixelFrom(high, height_));
        } else if (y <= topEdge_ || y > bottomEdge_) {  // where it comes from lies between these
            extend(i, s, y);
        }
        i_ = i;
        s_ = s;
        y_ = y;
        return hasHoles || top_ > 0 || bottom_ < height_;
    }

private:
    /// Paints what of a stretch reaches beyond the covered pixels, on the one side that it does.
    [[gnu::noinline]] void extend(double i, double s, double y)
    {
        const int reached = pixelFrom(y, height_);
        if (y <= topEdge_) {
            paintStretch(i, s, y, reached, top_);
            top_ = reached;
        } else {
            paintStretch(i, s, y, bottom_, reached);
            bottom_ = reached;
        }
        setEdges();
    }
    double yOf(double i, double s) const { return y0_ + yStep_ * i + shape_.ys * s; }
    void setEdges()
    {
        topEdge_ = top_ > 0 ? top_ - 0.5 : -infinity;
        bottomEdge_ = bottom_ < height_ ? bottom_ + 0.5 : infinity;
    }
    void put(int y, double i, double s, SurfacePart part)
    {
        const double j = start_ + shape_.walk.slope() * i;
        // NOLINTBEGIN(bugprone-incorrect-roundings): hardly below 0, and once a pixel
        const int row = std::min(static_cast<int>(i + 0.5), shape_.walk.away().count - 1);
        const int column = std::clamp(static_cast<int>(j + 0.5), 0, shape_.walk.across().count - 1);
        // NOLINTEND(bugprone-incorrect-roundings)
        const bool isLit = part == SurfacePart::upper || part == SurfacePart::under;
        pixels_[y] = {shape_.cell(row, column), part, shape_.second,
                      isLit ? shape_.lightAt(row, column) : std::uint8_t{255}};
        if (depths_) {
            const BoxPoint at = shape_.walk.base(i, j);
            depths_[y] = at.p * shape_.sight.p + at.q * shape_.sight.q + s * shape_.sight.s;
        }
    }
    /// Paints what is free of pixels from..end - 1 by `atPixel(y)`.
    template <typename AtPixel>
    void fill(int from, int end, const AtPixel& atPixel)
    {
        if constexpr (hasHoles)
            for (int y = free_.from(from); y < end; y = free_.from(y)) {
                atPixel(y);
                free_.take(y);
            }
        else
            for (int y = from; y < end; ++y)
                atPixel(y);
    }
    void paintStretch(double i, double s, double y, int from, int end)
    {
        if (from >= end)
            return;
        const double per = 1 / (y - y_);
        const SurfacePart part = y < y_ ? SurfacePart::upper : SurfacePart::under;
        fill(from, end, [&](int pixel) {
            const double f = std::clamp((pixel + 0.5 - y_) * per, 0.0, 1.0);
            put(pixel, i_ + f * (i - i_), s_ + f * (s - s_), part);
        });
    }
    /// The curtain below the border of the surface, at its near end or at its far one.
    void paintSkirt(double i, double s)
    {
        if (!(s == s))
            return;
        const double ground = yOf(i, shape_.grid.floor());
        const int from = pixelFrom(yOf(i, s), height_), end = pixelFrom(ground, height_);
        const auto part = [&](int pixel) {
            const double height = shape_.grid.floor() + (pixel + 0.5 - ground) / shape_.ys;
            put(pixel, i, height, SurfacePart::skirt);
        };
        if (hasHoles || top_ == bottom_) {
            fill(from, end, part);
            top_ = from;
            bottom_ = std::max(from, end);
            return;
        }
        fill(from, std::min(end, top_), part);
        fill(std::max(from, bottom_), end, part);
        top_ = std::min(top_, from);
        bottom_ = std::max(bottom_, end);
    }
    void paintFloor()
    {
        if (yStep_ == 0)
            return;
        const double s = shape_.grid.floor();
        const double near = yOf(firstI_, s), far = yOf(i_, s);
        const int from = pixelFrom(far, height_), end = pixelFrom(near, height_);
        const auto part = [&](int pixel) {
            const double i = std::clamp((pixel + 0.5 - near) / yStep_ + firstI_, firstI_, i_);
            put(pixel, i, s, SurfacePart::floor);
        };
        if (hasHoles) {
            fill(from, end, part);
            return;
        }
        fill(from, std::min(end, top_), part);
        fill(std::max(from, bottom_), end, part);
    }

    const SurfaceShape& shape_;
    double start_, y0_, yStep_;
    SurfacePixel* pixels_;
    double* depths_;
    int height_;
    FreePixels& free_;
    double firstI_ = 0, i_ = 0, s_ = 0, y_ = 0;  ///< where the line has come to
    int top_ = 0, bottom_ = 0;                   ///< covered: top to bottom - 1
    double topEdge_ = 0, bottomEdge_ = 0;
    bool hasBegun_ = false;
};

/// Draws column after column of one or two surfaces.
class ScenePainter
{
public:
    ScenePainter(const BoxView& view, const SurfaceScene& scene, const CRect& area, int light)
        : height_(area.Height()), stacked_(scene.stacked), free_(height_)
    {
        BoxTransform transform = view.transform();
        transform.x0 -= area.left;
        transform.y0 -= area.top;
        // of stacked surfaces the upper one is nearer wherever both are seen
        const SceneSurface* surfaces[] = {&scene.first, &scene.second};
        for (const int second : {stacked_ ? 1 : 0, stacked_ ? 0 : 1}) {
            const SceneSurface& surface = *surfaces[second];
            if (!surface.grid || surface.grid->isEmpty())
                continue;
            const SurfaceShape shape(view, transform, surface, second, light);
            if (!shape.walk.isEmpty())
                shapes_.push_back(shape);
        }
        if (shapes_.size() > 1) {
            other_.resize(static_cast<std::size_t>(height_));
            for (auto& depths : depths_)
                depths.resize(other_.size());
        }
    }
    void paint(int x, SurfacePixel* pixels)
    {
        std::fill_n(pixels, height_, SurfacePixel());
        for (std::size_t k = 0; k < shapes_.size(); ++k) {
            const PlaneWalk& walk = shapes_[k].walk;
            if (x + 0.5 < walk.leastX() || x + 0.5 > walk.mostX())
                continue;
            SurfacePixel* to = k ? other_.data() : pixels;
            if (k)
                std::fill(other_.begin(), other_.end(), SurfacePixel());
            double* depths = shapes_.size() > 1 && !stacked_ ? depths_[k].data() : nullptr;
            if (shapes_[k].grid.hasBlanks()) {
                free_.clear();
                ColumnPainter<true>(shapes_[k], x + 0.5, to, depths, height_, free_).paint();
            } else {
                ColumnPainter<false>(shapes_[k], x + 0.5, to, depths, height_, free_).paint();
            }
            if (k)
                merge(pixels);
        }
    }

private:
    void merge(SurfacePixel* pixels) const
    {
        for (int y = 0; y < height_; ++y) {
            const auto at = static_cast<std::size_t>(y);
            if (other_[at].part == SurfacePart::nothing)
                continue;
            if (pixels[y].part == SurfacePart::nothing ||
                (!stacked_ && depths_[1][at] < depths_[0][at] - sameDepth))
                pixels[y] = other_[at];
        }
    }

    int height_;
    int stacked_;
    FreePixels free_;
    std::vector<SurfaceShape> shapes_;
    std::vector<SurfacePixel> other_;
    std::array<std::vector<double>, 2> depths_;
};

}  // namespace

int SurfaceRaster::draw(const BoxView& view, const SurfaceScene& scene, const CRect& area,
                        int light)
{
    if (area.IsRectEmpty())
        return clear(), 0;
    // pictures of a box that turns have one size
    if ((width() != area.Width() || height() != area.Height()) &&
        !pixels_.allocate(area.Width(), area.Height()))
        return clear(), 0;
    hasSecond_ = scene.second.grid && !scene.second.grid->isEmpty();
    ScenePainter painter(view, scene, area, light);
    extents_.resize(static_cast<std::size_t>(area.Width()));
    const auto shows = [](const SurfacePixel& pixel) { return pixel.part != SurfacePart::nothing; };
    for (int x = 0; x < area.Width(); ++x) {
        SurfacePixel* const pixels = pixels_.row(x);
        painter.paint(x, pixels);
        int first = 0, end = area.Height();
        while (first < end && !shows(pixels[first]))
            ++first;
        while (end > first && !shows(pixels[end - 1]))
            --end;
        extents_[static_cast<std::size_t>(x)] = {first, end};
    }
    return 1;
}

}  // namespace pavane
