#include "apps/view/MapDocument.h"

#include "apps/view/long_work.h"
#include "apps/view/map_options.h"
#include "pavane/axes/maps/map_titles.h"
#include "tessel/paths.h"
#include "tessel/rounding.h"

#include <algorithm>
#include <utility>

namespace pavane
{

namespace
{

/// In a thread; the cells are read first, and their range and noise are about as much again.
int readInputs(const std::string& file, int plane, ViewInputs& inputs, std::string& error,
               AProgressWriter& writer)
{
    constexpr int pieces = 1000;
    constexpr double steps[] = {1, 1};
    int read = 0;
    writer.SetSteps(steps);
    writer.SetTotal(pieces);
    return readMapContent(file, plane, inputs, error, [&](double fraction) {
        const int now = truncated(std::clamp(fraction, 0.0, 1.0) * pieces);
        writer.Advance(now - std::exchange(read, now));
        if (now == pieces) {
            writer.SetTotal(0);
            writer.SetText("range and noise of its cells");
        }
        return !writer.IsCancelled();
    });
}

}  // namespace

int MapDocument::open(CWnd* owner, const std::string& file, int plane, const ViewOptions& options,
                      std::string& error)
{
    int read = 0;
    const int done = doLongWork(owner, "Reading " + baseNameOf(file), [&](AProgressWriter& writer) {
        read = readInputs(file, plane, inputs_, error, writer);
    });
    if (!done || !read) {
        error = done ? file + ": " + error : std::string();
        return 0;
    }
    file_ = file;
    cube_.begin(file, inputs_);
    std::string noSky;
    (void)sky_.init(inputs_.map.header, noSky);
    const AMatrix<float>& cells = inputs_.map.cells;
    format_ = StatusFormat(inputs_.map.header, inputs_.frame, cells.rows(), cells.columns());
    picture_.show(inputs_);
    show(options);
    return 1;
}

int MapDocument::setPlane(int plane, const ViewOptions& options, std::string& error)
{
    if (!cube_.exchange(plane, inputs_, error))
        return 0;
    picture_.contentChanged();
    applyLevels(picture_, options);  // the colours go with the map through its planes
    return 1;
}

AreaPlace MapDocument::place() const
{
    const AMatrix<float>& cells = inputs_.map.cells;
    return {inputs_.frame.centres(), cells.rows(), cells.columns(), &sky_};
}

void MapDocument::show(const ViewOptions& options)
{
    applyOptions(picture_, options);
    if (planes() < 2)
        return;
    const std::string note = levelNoteOf(options.levels, inputs_);
    picture_.setHeaderNote(mapPlaneText(inputs_.map.header) + (note.empty() ? "" : "   ") + note);
}

}  // namespace pavane
