#include "apps/view/ViewWindows.h"

#include "apps/view/DataWindow.h"
#include "apps/view/MainWindow.h"
#include "apps/view/same_file.h"
#include "apps/view/window_place.h"
#include "pavane/trackers/regions/area_kind.h"
#include "platform/message.h"
#include "platform/profile.h"
#include "platform/screens.h"
#include "tessel/paths.h"

#include <algorithm>
#include <ctime>
#include <utility>

namespace pavane
{

namespace
{

/// Moves a window off `others` ones that it would cover, which were placed as it was.
void stepAside(CWnd& window, int others)
{
    constexpr int step = 28;  // a title bar
    constexpr int mostSteps = 8;
    CRect place;
    if (others == 0 || window.IsZoomed() || !window.GetWindowRect(place))
        return;
    const int off = step * (others % mostSteps);
    place.OffsetRect(off, off);
    (void)window.MoveWindow(reachablePlace(place, GetScreenRects()));
}

}  // namespace

ViewWindows::~ViewWindows()
{
    // each tells of its end, and is gone then
    while (!open_.empty())
        open_.back()->DestroyWindow();
}

template <class Window, class Open>
int ViewWindows::add(std::unique_ptr<Window> window, const ViewOptions& options, int evenEmpty,
                     const Open& openFile)
{
    Window& added = *window;
    open_.push_back(std::move(window));
    if (!added.Create(options)) {
        open_.pop_back();
        return 0;
    }
    // the file first: then the first thing that shows is the whole picture
    if (!openFile(added) && !evenEmpty) {
        added.DestroyWindow();
        return 0;
    }
    added.Show();
    stepAside(added, static_cast<int>(open_.size()) - 1);
    return 1;
}

int ViewWindows::open(const ViewOptions& options, int evenEmpty)
{
    closed_.clear();
    if (!options.map.empty() && holdsVisibilities(options.map))
        return add(std::make_unique<DataWindow>(this), options, evenEmpty,
                   [&](DataWindow& window) { return window.OpenFile(options.map); });
    return add(std::make_unique<MainWindow>(this), options, evenEmpty, [&](MainWindow& window) {
        if (style_)
            window.TakeStyle(*style_);
        return window.OpenFirst(options);
    });
}

/// Asks about the work of sessions that ended without closing, and brings it back, a window each;
/// the maps that show now.
std::vector<std::string> ViewWindows::bringBack()
{
    const std::string folder = folderOf(GetProfileFile());
    setLeftWorkAside(folder);
    const std::vector<LeftWork> left = leftWork(folder);
    std::vector<std::string> maps;
    const int answer = left.empty() ? IDCANCEL
                                    : AfxMessageBox(questionAbout(left, std::time(nullptr)),
                                                    MB_YESNOCANCEL | MB_ICONQUESTION);
    for (const LeftWork& each : left) {
        if (answer == IDNO)
            removeLeftWork(each, 1);
        if (answer != IDYES || !add(std::make_unique<MainWindow>(this), ViewOptions(), 0,
                                    [&](MainWindow& window) { return window.RestoreWork(each); }))
            continue;
        for (const WorkMap& map : each.work.maps)
            maps.push_back(map.file);
    }
    return maps;
}

int ViewWindows::openFirst(const ViewOptions& options)
{
    ViewOptions each = options;
    std::vector<std::string> files = std::exchange(each.more, {});
    files.insert(files.begin(), options.map);
    // a map that is back with its areas is shown once
    const std::vector<std::string> back = bringBack();
    const int isPlain = options.areas.empty() && options.model.empty() && options.marks.empty();
    std::erase_if(files, [&](const std::string& file) {
        return isPlain && !back.empty() &&
               (file.empty() || std::any_of(back.begin(), back.end(), [&](const std::string& map) {
                    return isSameFile(file, map);
                }));
    });
    if (files.empty())
        return !open_.empty();
    // maps go together, a file of areas with them; the rest gets windows of its own
    std::vector<std::string> alone;
    std::vector<std::string> areas;
    std::vector<std::string> maps;
    for (const std::string& file : files)
        (isAreaFile(file)                                              ? areas
         : file.empty() || holdsVisibilities(file) || isWorkFile(file) ? alone
                                                                       : maps)
            .push_back(file);
    if (areas.size() == 1 && !maps.empty() && each.areas.empty())
        each.areas = areas.front();
    else
        alone.insert(alone.end(), areas.begin(), areas.end());
    if (!maps.empty()) {
        each.map = maps.front();
        each.more.assign(maps.begin() + 1, maps.end());
        (void)open(each, alone.empty());
    }
    each.areas = options.areas;
    each.more.clear();
    for (const std::string& file : alone) {
        each.map = file;
        (void)open(each, &file == &alone.back() && open_.empty());
    }
    return !open_.empty();
}

int ViewWindows::openWindow(const std::string& file)
{
    ViewOptions options;
    options.map = file;
    return open(options, 0);
}

void ViewWindows::windowClosed(CWnd& window)
{
    const auto found = std::find_if(open_.begin(), open_.end(),
                                    [&](const auto& one) { return one.get() == &window; });
    if (found == open_.end())
        return;
    closed_.push_back(std::move(*found));
    open_.erase(found);
    if (open_.empty() && !(samp_ && samp_->Leave()))  // which ends the program when it has
        PostQuitMessage(0);
}

void ViewWindows::paletteForAll(int on)
{
    if (on && style_)
        style_->colours.colours.clear();
    for (const auto& one : open_)
        if (auto* const window = dynamic_cast<MainWindow*>(one.get()))
            window->PaletteChanged(on);
}

void ViewWindows::styleForAll(const MapDisplay& display, const CWnd& from)
{
    style_ = display;
    for (const auto& one : open_)
        if (auto* const window = dynamic_cast<MainWindow*>(one.get()); window && window != &from)
            window->TakeStyle(display);
}

}  // namespace pavane
