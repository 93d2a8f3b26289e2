#include "pavane/calibration/windows/AClosureWnd.h"

#include "pavane/calibration/visibility_charts.h"

#include <numeric>
#include <utility>

namespace pavane
{

namespace
{

constexpr std::int64_t pieceBytes = std::int64_t{1} << 20;

}  // namespace

AClosureWnd::~AClosureWnd() = default;

void AClosureWnd::SetData(AUVXFile* file, ClosureChoice choice, UvMarks marks,
                          const ClosureAveraging& averaging, const AComponents& model)
{
    endReading();
    file_ = file;
    reader_ = file ? std::make_unique<ClosureReader>(*file, std::move(choice), std::move(marks),
                                                     averaging, model)
                   : nullptr;
    if (reader_)
        beginReading();
}

int AClosureWnd::readMore(std::string& error)
{
    if (!reader_ || reader_->step(pieceBytes))
        return reader_ != nullptr;
    error = reader_->error();
    return 0;
}

PanelChart AClosureWnd::makeChart()
{
    if (!reader_)
        return {};
    const auto all = [](std::size_t count) {
        std::vector<std::size_t> indices(count);
        std::iota(indices.begin(), indices.end(), std::size_t{0});
        return indices;
    };
    PanelChart chart = closureChart(*file_, *reader_, all(reader_->triangles().size()));
    addAmplitudePanels(*file_, *reader_, all(reader_->quads().size()), chart);
    return chart;
}

}  // namespace pavane
