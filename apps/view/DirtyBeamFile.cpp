#include "apps/view/DirtyBeamFile.h"

#include "platform/CWnd.h"
#include "platform/file_dialog.h"
#include "tessel/paths.h"

#include <utility>

namespace pavane
{

int DirtyBeamFile::find(CWnd* owner, const std::string& map, DirtyBeam& beam, CString& error,
                        int again)
{
    if (!content_ || again) {
        CString name = folderOf(map);
        error.clear();
        if (!fnFileDialog1(name, "FITS maps (*.fits)|*.fits|All files (*)|*", "Dirty beam", 1,
                           "fits", OFN_FILEMUSTEXIST, owner) ||
            name.empty())
            return 0;
        auto read = std::make_unique<MapContent>();
        if (!readMapContent(name, 0, *read, error)) {
            error = baseNameOf(name) + ": " + error;
            return 0;
        }
        content_ = std::move(read);
        cells_ = std::make_unique<AFloatMatrixAccess>(content_->map.cells);
        file_ = name;
    }
    const MapFrame& frame = content_->frame;
    beam = {cells_.get(), frame.centres(), frame.onSky ? frame.arcseconds : 0};
    return 1;
}

void DirtyBeamFile::forget()
{
    cells_.reset();
    content_.reset();
    file_.clear();
}

}  // namespace pavane
