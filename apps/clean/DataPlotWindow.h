#pragma once

#include "apps/clean/RunStrip.h"
#include "apps/view/StatusLine.h"
#include "pavane/windows/controls/AToolTip.h"
#include "platform/controls.h"
#include "platform/menu_template.h"

#include <string>
#include <vector>

namespace pavane
{

class APlotWnd;
class DataPlots;

/// A window that plots visibilities of a study: a row that chooses data and model, the plot, a bar
/// while something is read, a status line. F6 goes from the plot to the row and back, Tab through
/// the row.
class DataPlotWindow : public CWnd
{
public:
    explicit DataPlotWindow(DataPlots& plots) : plots_(plots) {}
    ~DataPlotWindow() override { DestroyWindow(); }

    int Open(CWnd* owner);
    /// Choices, title and what is shown are those of the plots now.
    virtual void Refresh();
    /// A message in the status line.
    void Tell(const CString& text) { status_.SetMessage(text); }
    int PreTranslateMessage(const MSG& message) override;

protected:
    // What heirs have
    virtual APlotWnd& plot() = 0;
    virtual int createPlot(unsigned id) = 0;
    /// Makes and adds the controls of their own.
    virtual int createRow() { return 1; }
    virtual const MenuTemplate& menu() const = 0;
    virtual CString title() const = 0;
    virtual CRect firstPlace() const = 0;
    virtual int runOwn(unsigned id) = 0;
    virtual void chosen(CWnd& control) = 0;
    /// What runs, for the bar; null for nothing.
    virtual const AProgress* running() const = 0;
    virtual void stop() = 0;

    DataPlots& plots() { return plots_; }
    const DataPlots& plots() const { return plots_; }
    int addToRow(CWnd& control, int width, const CString& name);
    int addList(CComboBox& list, int width, const CString& name, unsigned id);
    /// Puts lines into a list where they are others, and chooses one.
    static void fill(CComboBox& list, const std::vector<std::string>& lines, int chosen);
    void focusRow(int step);

    int OnCreate(CREATESTRUCT& cs) override;
    void OnSize(unsigned type, int cx, int cy) override;
    void OnPaint() override;
    void OnSetFocus(CWnd* old) override;
    void OnClose() override;
    void OnDestroy() override;
    int OnCommand(unsigned id, unsigned code, CWnd* control) override;

private:
    void layOut();
    void showSource();
    int takeKey(const MSG& message);

    DataPlots& plots_;
    struct Place {
        CWnd* control;
        int width;
    };
    std::vector<Place> row_;
    CComboBox source_, model_;
    std::vector<int> modelRounds_;  ///< of the lines of `model_`
    RunStrip strip_;
    StatusLine status_;
    AToolTip tips_;
    int isBarShown_ = 0;
    AProgress followed_;
    std::string picture_;
};

}  // namespace pavane
