#include "apps/view/save_picture.h"

#include "apps/view/picture_file.h"
#include "pavane/axes/windows/APlotWnd.h"
#include "pavane/windows/controls/JobBox.h"
#include "platform/file_dialog.h"
#include "platform/message.h"
#include "tessel/paths.h"

#include <algorithm>

namespace pavane
{

namespace
{

constexpr const char* pictureFilter =
    "Pictures (*.png)|*.png|Pages (*.pdf)|*.pdf|Vector pictures (*.svg)|*.svg|";
/// Pixels of a PNG for each of the window, to be sharp on paper.
constexpr int pictureFineness = 2;
constexpr int leastPicture = 64;

}  // namespace

int savePictureOf(APlotWnd& view, const std::string& title, std::string& suggested,
                  const std::function<int(const std::string& file)>& mayWrite)
{
    CString name = suggested;
    PictureFormat format = PictureFormat::png;
    if (!fnFileDialog1(name, pictureFilter, "Save picture", 0, "png", OFN_OVERWRITEPROMPT, &view) ||
        name.empty() || !mayWrite(name))
        return 0;
    if (!pictureFormatOf(name, format)) {
        AfxMessageBox(name + ": pictures end in .png, .pdf or .svg", MB_ICONERROR);
        return 0;
    }
    CRect client;
    view.GetClientRect(client);
    // what is drawn here the window shows too
    JobBox box(&view, "Saving " + baseNameOf(name), 1);
    const PictureJob job{title,
                         std::max(client.Width(), leastPicture),
                         std::max(client.Height(), leastPicture),
                         pictureFineness,
                         [&](CDC& dc, const CRect& rect) { view.DrawPicture(dc, rect); },
                         [&] { return box.show(-1); }};
    std::string error;
    const int written = writePicture(name, format, job, error);
    const int wasStopped = !box.show(-1);
    if (!written && !wasStopped)
        AfxMessageBox(error, MB_ICONERROR);
    if (!written)
        return 0;
    suggested = name;
    return 1;
}

}  // namespace pavane
