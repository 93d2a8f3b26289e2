#pragma once

#include "apps/view/options.h"
#include "apps/view/samp/SampDesk.h"
#include "apps/view/WindowHost.h"
#include "pavane/axes/maps/MapDisplay.h"

#include <memory>
#include <optional>
#include <vector>

namespace pavane
{

class MainWindow;

/// The windows of the program, of maps and of data files; the last one to close ends it.
class ViewWindows : public WindowHost, private SampUser
{
public:
    ~ViewWindows() override;
    /// One window for the maps of the options, with the only file of areas, and one for each other
    /// file.
    /// Non-zero when there is one; it shows itself empty when no file can be read.
    int openFirst(const ViewOptions& options);

    int openWindow(const std::string& file) override;
    void windowClosed(CWnd& window) override;
    void paletteForAll(int on) override;
    void styleForAll(const MapDisplay& display, const CWnd& from) override;
    SampDesk* samp() override;
    int count() const { return static_cast<int>(open_.size()); }

private:
    int open(const ViewOptions& options, int evenEmpty);
    std::vector<std::string> bringBack();
    MainWindow* mapWindow();

    // SampUser
    std::string sampLoad(const std::string& file) override;
    std::string sampPoint(double ra, double dec) override;
    std::string sampAreas(const std::string& file, SampDesk::Parameters& facts) override;
    void sampTold(const std::string& text) override;
    void sampEnded() override;

    template <class Window, class Open>
    int add(std::unique_ptr<Window> window, const ViewOptions& options, int evenEmpty,
            const Open& openFile);

    std::vector<std::unique_ptr<CWnd>> open_;
    std::vector<std::unique_ptr<CWnd>> closed_;  ///< handlers of them may still be running
    std::optional<MapDisplay> style_;            ///< of windows that come
    const MainWindow* lastMap_ = nullptr;        ///< that had the keyboard; only compared
    std::unique_ptr<SampDesk> samp_;             ///< made when it is asked for
};

}  // namespace pavane
