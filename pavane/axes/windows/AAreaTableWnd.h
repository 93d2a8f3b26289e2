#pragma once

#include "pavane/trackers/areas/VertexTable.h"
#include "pavane/windows/ABWindow.h"
#include "platform/controls.h"

#include <memory>
#include <vector>

namespace pavane
{

class AAxisWnd;

/// The numbers of the current area of an axis window, in data values: the vertices of a polygon, or
/// centre, size and angle of the other shapes. Each is a plain edit field; Enter or leaving the
/// field changes the area, Escape brings the number back, Up and Down go from row to row.
class PAVANE_API AAreaTableWnd : public ABWindow
{
public:
    AAreaTableWnd();
    /// Not owned; null for none.
    void SetAxisWnd(AAxisWnd* window);
    /// Units of the two directions; values of 1 until then.
    void SetUnits(const ValueUnit& x, const ValueUnit& y);
    /// Shows the current area as it is now.
    void Refresh();
    const VertexTable& table() const { return table_; }
    /// Puts a text in place of a shown one, as the fields do. 0 when the area cannot become that:
    /// the user has been told then.
    int SetText(int row, int column, const CString& text);

    const char* GetWndClassName() override;
    void DrawWindow(CDC& dc, CRect& client, CRect& update) override;

protected:
    void OnSize(unsigned type, int cx, int cy) override;
    void OnVScroll(unsigned code, unsigned position) override;
    int OnMouseWheel(unsigned flags, int delta, CPoint screen) override;
    int OnCommand(unsigned id, unsigned code, CWnd* control) override;
    void OnDestroy() override;

private:
    class Field : public CEdit
    {
    public:
        Field(AAreaTableWnd& table, int line, int column)
            : table_(&table), line_(line), column_(column)
        {
        }

    protected:
        void OnKeyDown(unsigned key, unsigned repeat, unsigned flags) override;

    private:
        AAreaTableWnd* table_;
        int line_;  ///< from the first that is shown
        int column_;
    };
    Field* field(int line, int column) const;
    CRect fieldRect(int line, int column) const;
    int visibleLines() const;
    void makeFields();
    void showTexts();
    void scrollTo(int row);
    void keep(int line, int column);
    void goTo(int row, int column);
    void leave(int line, int column, int step);

    AAxisWnd* axis_ = nullptr;
    VertexTable table_;
    ValueUnit unitX_, unitY_;
    int item_ = -1;                               ///< area that is shown, -1 for none
    int firstRow_ = 0;                            ///< that is shown
    int lines_ = 0;                               ///< of fields
    int keeping_ = 0;                             ///< a field is being read; the texts stay
    std::vector<std::unique_ptr<Field>> fields_;  ///< line by line, two columns
    std::vector<CString> shown_;                  ///< texts as they were put in
};

}  // namespace pavane
