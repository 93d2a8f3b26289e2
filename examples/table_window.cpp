// The stations of an array in a table: names and diameters can be edited, the mount is chosen from
// a list, a click on a header sorts. With a folder as argument it sorts by diameter, selects some
// cells, saves what the window shows as table-window.png and a page of it as table-page.pdf there,
// and ends.

#include "pavane/tables/ATableWnd.h"
#include "pavane/windows/picture_export.h"
#include "platform/controls.h"
#include "platform/message.h"
#include "platform/messages.h"
#include "platform/picture.h"
#include "platform/platform.h"
#include "platform/window_dc.h"
#include "tessel/value_text.h"

#include <cstdlib>
#include <iterator>
#include <vector>

using namespace pavane;

namespace
{

struct Station {
    CString name;
    double x, y, z;  // km
    double diameter;
    int mount;
};

constexpr const char* mounts[] = {"ALTAZ", "EQUATORIAL", "ORBITING"};
constexpr const char* titles[] = {"No.",    "Name",         "X [km]", "Y [km]",
                                  "Z [km]", "Diameter [m]", "Mount"};

enum Column { numberColumn, nameColumn, xColumn, yColumn, zColumn, diameterColumn, mountColumn };

std::vector<Station> stations()
{
    return {{"EFFELSBERG", 4033.947, 486.990, 4900.431, 100, 0},
            {"JODRELL2", 3822.846, -153.802, 5086.286, 25, 0},
            {"MEDICINA", 4461.370, 919.597, 4449.559, 32, 0},
            {"NOTO", 4934.563, 1321.201, 3806.484, 32, 0},
            {"ONSALA85", 3370.966, 711.466, 5349.664, 25.6, 1},
            {"TORUN", 3638.558, 1221.970, 5077.036, 32, 0},
            {"WESTERBORK", 3828.445, 445.223, 5064.921, 66, 1},
            {"YEBES40M", 4848.762, -261.484, 4123.085, 40, 0},
            {"HARTEBEESTHOEK", 5085.443, 2668.263, -2768.697, 26, 1},
            {"SPACE", 0, 0, 0, 10, 2}};
}

class Stations : public ATableWnd
{
public:
    Stations()
    {
        ATableColumn columns[] = {
            {5, colChars},  {22, colChars | colEdit}, {13, colChars},           {13, colChars},
            {13, colChars}, {16, colChars | colEdit}, {18, colChars | colCombo}};
        setColumnPar(columns, static_cast<long>(std::size(columns)));
        setOptions(optHeaderRow | optVertLines | optHorzLines | optRangeSelect | optSort |
                   optSizeColumns);
        setRows(static_cast<long>(data_.size()));
    }
    CString hdrCellAsStr(int row, int column, void*) override
    {
        return row == 0 ? titles[column] : std::to_string(recordOf(row));
    }
    CString cellAsStr(int row, int column, void*) override
    {
        const Station& s = at(row);
        switch (column) {
        case nameColumn:
            return s.name;
        case mountColumn:
            return mounts[s.mount];
        default:
            return nValToStr(number(s, column), 3);
        }
    }
    CString strCell(int row, int column) override { return cellAsStr(row, column, nullptr); }
    int setCellStr(int row, int column, const CString& text) override
    {
        if (column == nameColumn)
            return at(row).name = text, 1;
        char* end = nullptr;
        const double diameter = std::strtod(text.c_str(), &end);
        if (end == text.c_str() || !(diameter > 0))
            return (void)AfxMessageBox("A diameter is a number above 0."), 0;
        return at(row).diameter = diameter, 1;
    }
    int isEnableAutoEdit(int, int) override { return 1; }
    int FillComboBox(CComboBox* list, int row, int) override
    {
        for (const char* const mount : mounts)
            list->AddString(mount);
        return at(row).mount;
    }
    int getFromComboBox(CComboBox* list, int row, int) override
    {
        if (list->GetCurSel() >= 0)
            at(row).mount = list->GetCurSel();
        return 1;
    }
    void drawHeaderCell(CDC& dc, CRect& rect, int row, int column) override
    {
        ATableWnd::drawHeaderCell(dc, rect, row, column);
        drawCellText(dc, rect, row, column, hdrCellAsStr(row, column, nullptr), isNumber(column));
    }
    void drawCell(CDC& dc, CRect& rect, int row, int column, int state) override
    {
        ATableWnd::drawCell(dc, rect, row, column, state);
        drawCellText(dc, rect, row, column, cellAsStr(row, column, nullptr), isNumber(column));
    }

protected:
    void OnDestroy() override
    {
        ATableWnd::OnDestroy();
        PostQuitMessage(0);
    }

private:
    static int isNumber(int column) { return column != nameColumn && column != mountColumn; }
    static double number(const Station& s, int column)
    {
        return column == xColumn   ? s.x
               : column == yColumn ? s.y
               : column == zColumn ? s.z
                                   : s.diameter;
    }
    Station& at(int row) { return data_[static_cast<std::size_t>(recordOf(row)) - 1]; }

    std::vector<Station> data_ = stations();
};

/// What the window shows as a picture, and the table as a page of A4 with a margin of an inch.
int save(Stations& table, const CString& folder)
{
    CRect client;
    table.GetClientRect(client);
    table.UpdateWindow();
    const CClientDC shown(&table);
    CBitmap picture;
    if (!picture.CreateCompatibleBitmap(shown, client.Width(), client.Height()))
        return 0;
    CMemoryDC memory(picture);
    memory.BitBlt(0, 0, client.Width(), client.Height(), &shown, 0, 0, SRCCOPY);
    if (!CopyToBMP(memory, client, folder + "/table-window.png"))
        return 0;
    constexpr int inch = 96, width = 794, height = 1123, scale = 12;
    CPageFile page(CPageFile::Format::pdf, width, height, "Stations", scale);
    (void)table.GetPages(page.dc());
    CRect place(inch * scale, inch * scale, (width - inch) * scale, (height - inch) * scale);
    table.PrintWindow(page.dc(), place, 1);
    CString error;
    return page.Close(folder + "/table-page.pdf", error);
}

}  // namespace

int main(int argc, char** argv)
{
    if (!InitPlatform(argc, argv, PlatformUse::windows))
        return 1;
    int result = 0;
    {
        Stations table;
        table.Create("", "Stations", WS_OVERLAPPEDWINDOW | WS_VISIBLE | WS_VSCROLL | WS_HSCROLL,
                     CRect(100, 100, 750, 310), nullptr, 0);
        table.SetFocus();
        if (argc > 1) {
            ASelectRect cells{5, 5, 3, 2};
            (void)table.SortRows({diameterColumn, SortDirection::falling});
            table.ReConstruct(cells);
            result = !save(table, argv[1]);
        } else {
            result = RunMessages();
        }
    }
    ShutdownPlatform();
    return result;
}
