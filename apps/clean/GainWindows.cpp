#include "apps/clean/GainWindows.h"

#include "tessel/gains/gain_files.h"

#include <utility>

namespace pavane
{

namespace
{

constexpr CRect graphPlace(120, 80, 1080, 840), tablePlace(160, 120, 1060, 620),
    meansPlace(200, 160, 1000, 620);

}  // namespace

GainWindows::GainWindows()
{
    graph_.closed = [this] { closed(); };
    table_.closed = [this] { closed(); };
    means_.closed = [this] { closed(); };
}

GainWindows::~GainWindows() { close(); }

int GainWindows::open(const std::string& file, const std::string& name, std::string& error)
{
    if (file == file_)
        return 1;
    AGains read;
    if (!readGainText(file, read, error)) {
        error.insert(0, file + ": ");
        return 0;
    }
    edited_.showNothing();
    gains_ = std::move(read);
    edited_.show(gains_);
    file_ = file;
    name_ = name;
    for (CWnd* const window :
         {static_cast<CWnd*>(&graph_), static_cast<CWnd*>(&table_), static_cast<CWnd*>(&means_)})
        if (window->GetSafeHwnd())
            window->SetWindowText("Gains: " + name_);
    return 1;
}

void GainWindows::close()
{
    for (CWnd* const window :
         {static_cast<CWnd*>(&graph_), static_cast<CWnd*>(&table_), static_cast<CWnd*>(&means_)})
        if (window->GetSafeHwnd())
            window->DestroyWindow();
    graph_.SetGains(nullptr);
    table_.SetGains(nullptr);
    means_.SetGains(nullptr);
    edited_.showNothing();
    file_.clear();
}

int GainWindows::show(Kind kind, CWnd* owner)
{
    constexpr unsigned style = WS_OVERLAPPEDWINDOW | WS_VISIBLE;
    CWnd& window = kind == Kind::graph   ? static_cast<CWnd&>(graph_)
                   : kind == Kind::table ? static_cast<CWnd&>(table_)
                                         : means_;
    if (!window.GetSafeHwnd()) {
        const CRect place = kind == Kind::graph   ? graphPlace
                            : kind == Kind::table ? tablePlace
                                                  : meansPlace;
        const unsigned bars = kind == Kind::table ? WS_VSCROLL | WS_HSCROLL : 0;
        graph_.SetGains(&edited_);
        table_.SetGains(&edited_);
        means_.SetGains(&edited_);
        if (!window.Create("", "Gains: " + name_, style | bars, place, owner, 0))
            return 0;
    }
    window.SetFocus();
    return 1;
}

void GainWindows::closed()
{
    if (isModified() && left)
        left();
}

}  // namespace pavane
