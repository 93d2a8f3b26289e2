#include "pavane/measures/fits/GaussianFit.h"

#include "pavane/measures/areas/AreaMeasures.h"
#include "pavane/measures/fits/fit_errors.h"
#include "pavane/measures/fits/fit_start.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <new>
#include <numbers>

namespace pavane
{

namespace
{

constexpr double leastWidth = 0.5;     // cells
constexpr double mostWidthOfArea = 4;  // diagonals
/// A fit that ends this near to a limit was stopped by it.
constexpr double atLimit = 1.02;
/// A step so small a part of the errors is the last one (its square).
constexpr double lastStep = 1e-10;
constexpr double rightAngle = 90;

/// The cells of an area as a block of their own; 0 without a cell.
int takeCells(const AMatrixAccess& cells, const AreaCells& area, FitCells& taken)
{
    const ABitMatrix& mask = area.mask;
    taken.rows = mask.rows();
    taken.columns = mask.columns();
    taken.firstRow = area.firstRow;
    taken.firstColumn = area.firstColumn;
    const std::size_t count =
        static_cast<std::size_t>(taken.rows) * static_cast<std::size_t>(taken.columns);
    taken.values.assign(count, 0);
    taken.weights.assign(count, 0);
    RowReader reader(cells);
    std::size_t i = 0;
    for (int r = 0; r < taken.rows; ++r) {
        const float* const row = reader.row(area.firstRow + r);
        if (!row)
            throw std::bad_alloc();
        for (int c = 0; c < taken.columns; ++c, ++i)
            if (mask.get(r, c) && std::isfinite(row[area.firstColumn + c])) {
                taken.values[i] = row[area.firstColumn + c];
                taken.weights[i] = 1;
                ++taken.count;
            }
    }
    return taken.count > 0;
}

/// What a model may not become.
struct Limits {
    double mostWidth, left, right, top, bottom;
    explicit Limits(const FitCells& cells)
    {
        const double diagonal = std::hypot(cells.rows, cells.columns);
        mostWidth = mostWidthOfArea * std::max(diagonal, 1.0);
        left = cells.firstColumn - diagonal;
        right = cells.firstColumn + cells.columns + diagonal;
        top = cells.firstRow - diagonal;
        bottom = cells.firstRow + cells.rows + diagonal;
    }
    int holds(const GaussianModel& model) const
    {
        return std::all_of(model.sources.begin(), model.sources.end(), [&](const CellSource& s) {
            if (!(s.xx > 0 && s.xx * s.yy > s.xy * s.xy))
                return false;
            const SourceShape shape = shapeOf(widthsOf(s));
            return s.x > left && s.x < right && s.y > top && s.y < bottom &&
                   (model.isShapeFixed || (shape.minor > leastWidth && shape.major < mostWidth)) &&
                   std::isfinite(s.height);
        });
    }
};

/// Goes down to the least sum of squares.
class Descent
{
public:
    Descent(GaussianModel& model, const FitCells& cells)
        : model_(model), cells_(cells), limits_(cells)
    {
    }
    /// 0 where it has not come to an end; `steps` counts on.
    int run(int& steps, const ProgressFunction& progress)
    {
        constexpr double first = 1e-3, most = 1e12, less = 0.1, more = 10;
        sums_.find(model_, cells_);
        double damping = first;
        GaussianModel trial;
        for (int i = 0; i < mostFitSteps; ++i) {
            ++steps;
            if (progress && !progress(static_cast<double>(i) / mostFitSteps)) {
                isGivenUp_ = 1;
                return 0;
            }
            double promised = 0;
            if (!step(damping, trial, promised)) {
                damping = std::max(damping, first) * more;
                if (damping > most)
                    return 0;
                continue;
            }
            const double freedom = static_cast<double>(cells_.count) - model_.parameters();
            const int isEnd = promised <= lastStep * sums_.residual() / freedom;
            const int isThere = limits_.holds(trial);
            if (isThere)
                next_.find(trial, cells_);
            if (isThere && next_.residual() <= sums_.residual()) {
                model_ = trial;
                std::swap(sums_, next_);
                damping *= less;
                if (isEnd)
                    return 1;
            } else if (isEnd && isThere)
                return 1;  // no better one is told apart from it
            else if (damping > most)
                return 0;
            else
                damping *= more;
        }
        return 0;
    }
    const GaussianSums& sums() const { return sums_; }
    const Limits& limits() const { return limits_; }
    int isGivenUp() const { return isGivenUp_; }

private:
    int step(double damping, GaussianModel& trial, double& promised)
    {
        damped_ = sums_.squares();
        for (int i = 0; i < damped_.size(); ++i)
            damped_(i, i) *= 1 + damping;
        if (!solveSymmetric(damped_, sums_.slopes(), change_))
            return 0;
        promised = 0;
        for (std::size_t i = 0; i < change_.size(); ++i)
            promised += change_[i] * sums_.slopes()[i];
        trial = model_;
        trial.move(change_);
        return 1;
    }

    GaussianModel& model_;
    const FitCells& cells_;
    Limits limits_;
    GaussianSums sums_, next_;
    SquareMatrix damped_;
    std::vector<double> change_;
    int isGivenUp_ = 0;
};

/// A limit that a source came to, in words; "" for none.
std::string limitOf(const GaussianModel& model, const Limits& limits)
{
    for (std::size_t i = 0; i < model.sources.size(); ++i) {
        const SourceShape shape = shapeOf(widthsOf(model.sources[i]));
        if (model.isShapeFixed)
            break;
        if (shape.minor < leastWidth * atLimit)
            return "Gaussian " + std::to_string(i + 1) + " became narrower than half a cell";
        if (shape.major > limits.mostWidth / atLimit)
            return "Gaussian " + std::to_string(i + 1) + " became much wider than the area";
    }
    return {};
}

double rootOf(double square) { return square >= 0 ? std::sqrt(square) : SourceShape::none; }

/// From the parameters of one source to what is told of it.
class Description
{
public:
    Description(const GaussianModel& model, const SquareMatrix& covariance, double noise,
                const MapFrame& frame, const CellSteps& steps, const FluxScale& scale,
                const Symmetric2* beam)
        : model_(model), covariance_(covariance), noise_(noise), frame_(frame), steps_(steps),
          scale_(scale), beam_(beam)
    {
    }

    FittedGaussian of(int source) const
    {
        const CellSource& s = model_.sources[static_cast<std::size_t>(source)];
        const int first = source * model_.perSource();
        FittedGaussian told;
        told.model = s;
        told.peak = {s.height, errorOf(first, {1})};
        told.column = {s.x, errorOf(first, {0, 1})};
        told.row = {s.y, errorOf(first, {0, 0, 1})};
        if (steps_.onSky) {
            const MapPlace at = frame_.offsetOf(s.x, s.y);
            told.east = {at.x, errorOf(first, {0, steps_.east[0], steps_.east[1]})};
            told.north = {at.y, errorOf(first, {0, steps_.north[0], steps_.north[1]})};
        }
        told.snr = noise_ > 0 ? std::fabs(s.height) / noise_ : SourceShape::none;
        const Symmetric2 cells = widthsOf(s), sky = steps_.toSky(cells);
        // sum of the Gaussian: its height times pi over the root of the exponent's determinant
        const double q = s.xx * s.yy - s.xy * s.xy;
        const double sum = s.height * std::numbers::pi / std::sqrt(q);
        told.flux.value = scale_.flux(sum);
        std::vector<double> slopes = {sum / s.height};
        if (!model_.isShapeFixed)
            slopes = {sum / s.height,       0, 0, -sum * s.yy / (2 * q), sum * s.xy / q,
                      -sum * s.xx / (2 * q)};
        told.flux.error = std::fabs(scale_.factor) * errorOf(first, slopes);
        told.shape = shapeWith(sky, s, first);
        if (beam_ && !model_.isShapeFixed)
            deconvolve(sky, s, first, told);
        return told;
    }

private:
    /// Error of what changes so with the parameters from `first` on.
    double errorOf(int first, const std::vector<double>& slopes) const
    {
        double square = 0;
        const auto count = static_cast<int>(slopes.size());
        for (int p = 0; p < count; ++p)
            for (int q = 0; q < count; ++q)
                square += slopes[static_cast<std::size_t>(p)] * covariance_(first + p, first + q) *
                          slopes[static_cast<std::size_t>(q)];
        return noise_ * rootOf(square);
    }

    /// The axes of squared widths that change on the sky as those of the source do.
    FittedShape shapeWith(const Symmetric2& sky, const CellSource& s, int first) const
    {
        const SourceShape shape = shapeOf(sky);
        FittedShape told{{shape.major}, {shape.minor}, {shape.angle}};
        if (model_.isShapeFixed)
            return told;
        const ShapeSlopes slopes = slopesOf(sky);
        // how the widths on the sky change with the exponent: dW = -W dQ W / (4 ln 2)
        const Symmetric2 w = widthsOf(s);
        const double by[3][3] = {{w.xx * w.xx, w.xx * w.xy, w.xy * w.xy},
                                 {2 * w.xx * w.xy, w.xx * w.yy + w.xy * w.xy, 2 * w.xy * w.yy},
                                 {w.xy * w.xy, w.xy * w.yy, w.yy * w.yy}};
        std::vector<double> major(6), minor(6), angle(6);
        for (std::size_t p = 0; p < 3; ++p) {
            constexpr double factor = -1 / (4 * std::numbers::ln2);
            const Symmetric2 change =
                steps_.toSky({factor * by[p][0], factor * by[p][1], factor * by[p][2]});
            const double parts[3] = {change.xx, change.xy, change.yy};
            for (std::size_t i = 0; i < 3; ++i) {
                major[3 + p] += slopes.major[i] * parts[i];
                minor[3 + p] += slopes.minor[i] * parts[i];
                angle[3 + p] += slopes.angle[i] * parts[i];
            }
        }
        told.major.error = errorOf(first, major);
        told.minor.error = errorOf(first, minor);
        // an angle that may be any one has no error
        const double error = errorOf(first, angle);
        told.angle.error = error < rightAngle ? error : SourceShape::none;
        return told;
    }

    void deconvolve(const Symmetric2& sky, const CellSource& s, int first,
                    FittedGaussian& told) const
    {
        const Symmetric2 rest = {sky.xx - beam_->xx, sky.xy - beam_->xy, sky.yy - beam_->yy};
        told.deconvolved = shapeWith(rest, s, first);
        const double part = told.snr > 1 ? std::sqrt(4 * std::numbers::ln2 / std::numbers::pi *
                                                     std::log(told.snr / (told.snr - 1)))
                                         : SourceShape::none;
        const double angle = told.deconvolved.angle.value;
        if (!std::isfinite(told.deconvolved.minor.value))
            told.minorLimit = part * widthAlong(*beam_, angle + rightAngle);
        if (!std::isfinite(told.deconvolved.major.value)) {
            told.majorLimit = part * widthAlong(*beam_, angle);
            told.deconvolved.angle = {};
        }
    }

    const GaussianModel& model_;
    const SquareMatrix& covariance_;
    const double noise_;
    const MapFrame& frame_;
    const CellSteps& steps_;
    const FluxScale& scale_;
    const Symmetric2* const beam_;
};

int run(const AMatrixAccess& all, const AreaCells& area, const MapHeader& header,
        const MapFrame& frame, double noise, const GaussianFitWish& wish, GaussianFit& fit,
        std::string& error, const ProgressFunction& progress)
{
    const CellSteps steps = CellSteps::of(frame);
    Symmetric2 skyBeam;
    const int hasBeam = beamWidths(header, frame, skyBeam);
    const Symmetric2 beam = hasBeam ? steps.toCells(skyBeam) : Symmetric2();
    GaussianModel model;
    model.hasBackground = wish.hasBackground != 0;
    model.isShapeFixed = wish.isBeam != 0;
    if (model.isShapeFixed && !hasBeam)
        return error = "there is no beam that Gaussians could have the shape of", 0;
    const int parameters = wish.sources * model.perSource() + model.hasBackground;
    FitCells cells;
    if (!takeCells(all, area, cells) || cells.count <= parameters)
        return error = "there are " + std::to_string(cells.count) + " cells with a value for " +
                       std::to_string(parameters) + " parameters",
               0;
    if (model.hasBackground) {
        std::vector<float> values;
        for (std::size_t i = 0; i < cells.values.size(); ++i)
            if (cells.weights[i] > 0)
                values.push_back(cells.values[i]);
        model.background = medianOf(values.data(), values.size());
    }
    int isDone = 0;
    GaussianSums sums;
    for (int i = 0; i < wish.sources; ++i) {
        model.sources.push_back(startOfSource(model, cells, hasBeam ? &beam : nullptr));
        if (model.sources.back().height == 0)
            return error = i ? "there is nothing left for Gaussian " + std::to_string(i + 1)
                             : std::string("all its cells have the same value"),
                   0;
        Descent descent(model, cells);
        const auto tell = [&](double part) {
            return !progress || progress((i + part) / wish.sources);
        };
        isDone = descent.run(fit.steps, tell);
        if (descent.isGivenUp())
            return error = "the fit was given up", 0;
        if (i + 1 < wish.sources)
            continue;
        error = limitOf(model, descent.limits());
        if (error.empty() && !isDone)
            error = "the fit found no end in " + std::to_string(mostFitSteps) + " steps";
        if (!error.empty())
            return 0;
        sums = descent.sums();
    }
    SquareMatrix covariance;
    if (!covarianceOf(model, cells, sums.squares(), hasBeam ? &beam : nullptr, covariance))
        return error = "the cells do not tell the Gaussians apart", 0;
    const FluxScale scale = FluxScale::of(header, frame);
    const Description description(model, covariance, noise, frame, steps, scale,
                                  hasBeam ? &skyBeam : nullptr);
    for (int i = 0; i < wish.sources; ++i) {
        const FittedGaussian& told = fit.sources.emplace_back(description.of(i));
        const double x = told.column.value - cells.firstColumn;
        const double y = told.row.value - cells.firstRow;
        if (!(x >= -0.5 && x <= cells.columns - 0.5 && y >= -0.5 && y <= cells.rows - 0.5))
            return error = "Gaussian " + std::to_string(i + 1) + " left the area", 0;
    }
    if (model.hasBackground)
        fit.background = {model.background,
                          noise * rootOf(covariance(parameters - 1, parameters - 1))};
    fit.hasBeam = hasBeam;
    fit.onSky = steps.onSky;
    fit.isShapeFixed = model.isShapeFixed;
    fit.noise = noise;
    fit.cells = cells.count;
    fit.parameters = parameters;
    fit.residual = std::sqrt(sums.residual() / (static_cast<double>(cells.count) - parameters));
    return 1;
}

}  // namespace

int fitGaussians(const AMatrixAccess& cells, const AreaCells& area, const MapHeader& header,
                 const MapFrame& frame, double noise, const GaussianFitWish& wish, GaussianFit& fit,
                 std::string& error, const ProgressFunction& progress)
{
    fit = {};
    int done = 0;
    try {
        done = run(cells, area, header, frame, noise, wish, fit, error, progress);
    } catch (const std::bad_alloc&) {
        error = "there is no memory for the fit";
    }
    if (!done)
        fit = {};
    return done;
}

void takeOff(const GaussianFit& fit, AMatrix<float>& cells, const AreaCells* area)
{
    SourceRow buffer;
    try {
        for (int r = 0; r < cells.rows(); ++r) {
            float* const row = cells.row(r);
            for (const FittedGaussian& source : fit.sources) {
                fillRow(source.model, r, 0, cells.columns(), buffer);
                for (int c = buffer.first; c < buffer.end; ++c)
                    row[c] -= static_cast<float>(source.model.height *
                                                 buffer.e[static_cast<std::size_t>(c)]);
            }
            if (!std::isfinite(fit.background.value))
                continue;
            for (int c = 0; c < cells.columns(); ++c)
                if (!area || area->mask.get(r - area->firstRow, c - area->firstColumn))
                    row[c] -= static_cast<float>(fit.background.value);
        }
    } catch (const std::bad_alloc&) {
        cells.fill(std::numeric_limits<float>::quiet_NaN());
    }
}

}  // namespace pavane
