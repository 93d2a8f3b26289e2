#include "apps/view/figure.h"

#include "pavane/axes/maps/ALevelsColorGraph.h"
#include "pavane/axes/maps/MapLook.h"

namespace pavane
{

InputsFigure::InputsFigure(const ViewOptions& options, const ViewInputs& inputs)
    : options_(options), inputs_(inputs), areas_(inputs.areas), model_(inputs.model, inputs.frame),
      marks_(inputs.marks)
{
    picture_.show(inputs);
    if (inputs.rgb)
        picture_.setRgb(inputs.rgb);
    applyWholeLook(picture_, options);
    if (inputs.sky.isSet())
        applySkyGrid(*addSkyGrid(picture_, inputs.sky), options.skyGrid, inputs.sky);
    addOverlays(picture_, options, inputs.overlays);
    areas_.setNames(options.areaNames);
    picture_.figure().addLayer(&areas_);
    picture_.figure().addLayer(&model_);
    picture_.figure().addLayer(&marks_);
}

std::vector<std::string> InputsFigure::notes()
{
    std::vector<std::string> notes;
    for (const std::string& note :
         {inputs_.overlays.other ? CString() : levelNoteOf(options_.levels, inputs_),
          std::string(picture_.graph().contours().leftOutText())})
        if (!note.empty())
            notes.push_back(note);
    return notes;
}

}  // namespace pavane
