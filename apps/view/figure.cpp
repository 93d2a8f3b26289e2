#include "apps/view/figure.h"

#include "apps/view/map_options.h"
#include "pavane/axes/A2DAxis.h"
#include "pavane/axes/maps/ALevelsColorGraph.h"
#include "pavane/axes/maps/MapPicture.h"
#include "pavane/tables/components/ModelLayer.h"
#include "pavane/trackers/shapes/AreaLayer.h"

#include <algorithm>

namespace pavane
{

void drawFigure(CDC& dc, const CRect& all, const ViewOptions& options, const ViewInputs& inputs,
                const FigureView& view)
{
    MapPicture picture;
    picture.show(inputs);
    applyOptions(picture, options);
    if (view.range)
        picture.axis().setMinMax(*view.range);
    AreaLayer areas(view.areas ? *view.areas : inputs.areas);
    ModelLayer model(inputs.model, inputs.frame);
    picture.figure().addLayer(&areas);
    picture.figure().addLayer(&model);
    picture.draw(dc, all);
    if (!view.notes)
        return;
    for (const std::string& note : {levelNoteOf(options.levels, inputs),
                                    std::string(picture.graph().contours().leftOutText())})
        if (!note.empty() &&
            std::find(view.notes->begin(), view.notes->end(), note) == view.notes->end())
            view.notes->push_back(note);
}

}  // namespace pavane
