#pragma once

#include "pavane/tables/ATableWnd.h"
#include "platform/controls.h"
#include "platform/message.h"
#include "platform/window_dc.h"

#include <functional>
#include <string>
#include <vector>

/// A table of numbers that writes down what it is told, with everything in reach.
class ShownTable : public pavane::ATableWnd
{
public:
    using CRect = pavane::CRect;
    using CString = pavane::CString;
    std::vector<std::string> calls;
    std::function<int()> accept;  ///< what SelChanged answers; 1 without
    std::function<int(const CString&)> store;
    std::function<void()> drawing;  ///< a hook of every painted cell

    using ATableWnd::cellRect;
    using ATableWnd::deleteColumn;
    using ATableWnd::editCell;
    using ATableWnd::getSelectRect;
    using ATableWnd::grid;
    using ATableWnd::hideEdit;
    using ATableWnd::isOptSet;
    using ATableWnd::isTime;
    using ATableWnd::OnCopyInFileAll;
    using ATableWnd::OnCopyInFileSel;
    using ATableWnd::OnMouseWheel;
    using ATableWnd::setOpt;
    using ATableWnd::showAuto;

    /// `widths` in pixels, header column first.
    void make(long rows, const std::vector<pavane::ATableColumn>& columns,
              CRect place = {0, 0, 320, 200}, pavane::CWnd* parent = nullptr)
    {
        using namespace pavane;
        std::vector<ATableColumn> copy = columns;
        setColumnPar(copy.data(), static_cast<long>(copy.size()));
        setRows(rows);
        CreateEx(0, "", "Table",
                 (parent ? WS_CHILD : WS_POPUP) | WS_VISIBLE | WS_VSCROLL | WS_HSCROLL, place,
                 parent, 77);
        SetFocus();
    }
    std::string take()
    {
        std::string all;
        for (const std::string& call : calls)
            all += call + ";";
        calls.clear();
        return all;
    }
    std::string selection() { return text(getSelectRect()); }
    static std::string text(const pavane::ASelectRect& s)
    {
        return std::to_string(s.anchorRow) + "," + std::to_string(s.anchorColumn) + "-" +
               std::to_string(s.endRow) + "," + std::to_string(s.endColumn);
    }
    void key(int code, int count = 1)
    {
        SendMessage(pavane::WM_KEYDOWN, static_cast<pavane::WPARAM>(code), count);
    }
    void press(pavane::CPoint p, unsigned keys = 0, unsigned message = pavane::WM_LBUTTONDOWN)
    {
        SendMessage(message, keys, pavane::MAKELPARAM(p.x, p.y));
    }
    void release(pavane::CPoint p) { press(p, 0, pavane::WM_LBUTTONUP); }
    void click(pavane::CPoint p, unsigned keys = 0)
    {
        press(p, keys);
        release(p);
    }
    pavane::CPoint at(int row, int column) { return cellRect(row, column).CenterPoint(); }
    pavane::CEdit* field() { return dynamic_cast<pavane::CEdit*>(GetDlgItem(1001)); }
    pavane::CComboBox* list() { return dynamic_cast<pavane::CComboBox*>(GetDlgItem(1002)); }
    /// The pixels of the window.
    std::vector<std::uint32_t> picture()
    {
        using namespace pavane;
        UpdateWindow();
        CRect all;
        GetClientRect(all);
        CClientDC window(this);
        CBitmap bitmap;
        if (!bitmap.CreateCompatibleBitmap(window, all.Width(), all.Height()))
            return {};
        CMemoryDC memory(bitmap);
        memory.BitBlt(0, 0, all.Width(), all.Height(), &window, 0, 0, SRCCOPY);
        const int k = bitmap.ratio();
        return {bitmap.bits(), bitmap.bits() + bitmap.size().cx * k * bitmap.size().cy * k};
    }

    CString strCell(int row, int column) override { return cellAsStr(row, column, nullptr); }
    CString cellAsStr(int row, int column, void*) override
    {
        return std::to_string(row) + std::to_string(column);
    }
    CString hdrCellAsStr(int row, int column, void*) override
    {
        return row ? "row " + std::to_string(row) : "col " + std::to_string(column);
    }
    int setCellStr(int row, int column, const CString& value) override
    {
        calls.push_back("set " + std::to_string(row) + "," + std::to_string(column) + " " + value);
        const auto run = store;  // the table may go meanwhile
        return run ? run(value) : 1;
    }
    int isEnableAutoEdit(int, int) override { return 1; }
    void drawHeaderCell(pavane::CDC& dc, CRect& rect, int row, int column) override
    {
        ATableWnd::drawHeaderCell(dc, rect, row, column);
        drawCellText(dc, rect, row, column, hdrCellAsStr(row, column, nullptr));
    }
    void drawCell(pavane::CDC& dc, CRect& rect, int row, int column, int state) override
    {
        ATableWnd::drawCell(dc, rect, row, column, state);
        drawCellText(dc, rect, row, column, cellAsStr(row, column, nullptr), 1);
        if (const auto run = drawing)
            run();
    }
    int SelChanged(pavane::ASelectRect& next, pavane::ASelectRect& previous) override
    {
        calls.push_back("ask " + text(next) + " " + text(previous));
        const auto run = accept;
        return run ? run() : 1;
    }
    void sendSelectionChange(pavane::ASelectRect& next, pavane::ASelectRect&) override
    {
        calls.push_back("tell " + text(next));
    }
    void changeCell(int row, int column) override
    {
        calls.push_back("cell " + std::to_string(row) + "," + std::to_string(column));
    }
    void changeHeader(int row, int column) override
    {
        calls.push_back("header " + std::to_string(row) + "," + std::to_string(column));
    }
};
