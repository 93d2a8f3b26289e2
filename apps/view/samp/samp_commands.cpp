// What other programs ask for by SAMP and what is sent to them, in the windows of maps.
#include "apps/view/main_menu.h"
#include "apps/view/MainWindow.h"
#include "apps/view/samp/file_url.h"
#include "apps/view/samp/samp_child.h"
#include "apps/view/samp/SampDesk.h"
#include "apps/view/ViewWindows.h"
#include "pavane/trackers/collections/ATrackerArrayInAxis.h"
#include "tessel/fits_header_text.h"
#include "tessel/paths.h"
#include "tessel/plain_text.h"
#include "tessel/value_text.h"

#include <filesystem>
#include <system_error>

namespace pavane
{

namespace
{

/// A sender that never stops opens no more.
constexpr std::size_t mostWindows = 30;

std::string absoluteName(const std::string& file)
{
    std::error_code fault;
    const std::filesystem::path whole = std::filesystem::absolute(file, fault);
    return fault ? file : whole.lexically_normal().string();
}

constexpr const char* isAsking = "a question to the user is open";

}  // namespace

// --- commands of a window

int MainWindow::runSampCommand(unsigned id)
{
    SampDesk* const desk = host_ ? host_->samp() : nullptr;
    if (id < idSampOn || id > idSampPosition || !desk)
        return 0;
    if (id == idSampOn)
        return desk->Toggle(), 1;
    if (!desk->isRegistered()) {
        status_.SetMessage("SAMP is off: Maps > Other programs turns it on");
        return 1;
    }
    if (!map_)
        return 1;
    if (id == idSampMap) {
        const std::string file = absoluteName(map_->file());
        const std::string name = plainText(baseNameOf(file));
        if (desk->Send("image.load.fits",
                       {{"url", fileUrl(file)}, {"name", name}, {"image-id", fileUrl(file)}}))
            status_.SetMessage("Sent " + name + " to the other programs");
        return 1;
    }
    SkyPosition position;
    if (!pointedPosition({SkyFrame::System::icrs, 2000}, position))
        status_.SetMessage("No position is pointed at");
    else if (desk->Send("coord.pointAt.sky", {{"ra", valToStr(position.longitude)},
                                              {"dec", valToStr(position.latitude)}}))
        status_.SetMessage("Sent " + skyPositionText(position, cellDegrees()) +
                           " to the other programs");
    return 1;
}

void MainWindow::showSampCommands(CMenu& popup)
{
    SampDesk* const desk = host_ ? host_->samp() : nullptr;
    for (CMenu::Line& line : popup.lines())
        if (line.id == idSampOn) {
            line.enabled = desk && hasSamp();
            line.checked = desk && desk->isOn();
        } else if (line.id == idSampMap || line.id == idSampPosition)
            line.enabled = desk && desk->isRegistered() && map_ &&
                           (line.id == idSampMap || map_->sky().isSet());
}

std::string MainWindow::WriteRegions(const std::string& file,
                                     std::vector<std::pair<std::string, std::string>>& facts)
{
    std::string error;
    AreaPlace on = place();
    on.skyRegions = map_ && map_->sky().isSet();
    if (!map_)
        return "no map is open";
    if (!saveAreas(file, on, areas(), error))
        return error;
    facts = {{"map", fileUrl(absoluteName(map_->file()))},
             {"count", std::to_string(areas().count())}};
    return {};
}

std::string MainWindow::GoToSky(double ra, double dec)
{
    std::string text;
    if (!map_ || !map_->sky().isSet())
        return "no map with positions is open";
    const int isThere = goTo({ra, dec, {SkyFrame::System::icrs, 2000}}, text);
    if (isThere)
        status_.SetMessage(text);
    return isThere ? "" : text;
}

// --- what comes from others

/// The window that was used last.
MainWindow* ViewWindows::mapWindow()
{
    const CWnd* const focus = CWnd::GetFocus();
    MainWindow* first = nullptr;
    for (const auto& one : open_) {
        auto* const window = dynamic_cast<MainWindow*>(one.get());
        if (!window)
            continue;
        if (isWithin(focus, window))
            lastMap_ = window;
        if (!first || lastMap_ == window)
            first = window;
    }
    return first;
}

std::string ViewWindows::sampLoad(const std::string& file)
{
    MainWindow* const window = mapWindow();
    std::vector<std::string> lines;
    std::string error;
    std::error_code fault;
    if (!std::filesystem::is_regular_file(file, fault))
        return "there is no such file";
    if (!readFitsHeaderText(file, lines, error))
        return "the file " + error;
    if (open_.size() >= mostWindows)
        return "there are too many windows";
    if (window && !window->IsWindowEnabled())
        return isAsking;
    const int isShown =
        window && window->maps().count() == 0 ? window->OpenMap(file, -1) : openWindow(file);
    return isShown ? "" : "the file was not opened";
}

std::string ViewWindows::sampPoint(double ra, double dec)
{
    MainWindow* const window = mapWindow();
    if (!window || !window->IsWindowEnabled())
        return window ? isAsking : "no map is open";
    return window->GoToSky(ra, dec);
}

std::string ViewWindows::sampAreas(const std::string& file, SampDesk::Parameters& facts)
{
    MainWindow* const window = mapWindow();
    return window ? window->WriteRegions(file, facts) : "no map is open";
}

void ViewWindows::sampTold(const std::string& text)
{
    if (MainWindow* const window = mapWindow())
        window->Tell(text);
}

void ViewWindows::sampEnded()
{
    if (open_.empty())
        PostQuitMessage(0);
}

SampDesk* ViewWindows::samp()
{
    if (!samp_)
        samp_ = std::make_unique<SampDesk>(static_cast<SampUser&>(*this));
    return samp_.get();
}

}  // namespace pavane
