#pragma once

#include "pavane/axes/A2DAxis.h"
#include "pavane/axes/maps/ALevelsColorGraph.h"
#include "pavane/axes/windows/AAxisWnd.h"
#include "pavane/trackers/collections/ATrackerArrayInAxis.h"
#include "platform/messages.h"
#include "platform/window_dc.h"
#include "tessel/ABitMatrix.h"
#include "tessel/AMatrix.h"

#include <cmath>
#include <initializer_list>
#include <vector>

/// A map whose right ascension falls with the column, in an axis window, and what a user does with
/// it. Values are column + 1000 * row.
class AxisWindow : public pavane::AAxisWnd
{
public:
    pavane::CWnd top;
    pavane::AMatrix<float> map;
    pavane::AFloatMatrixAccess access{map};
    pavane::TMinMax centres;
    std::vector<pavane::AxisStatus> statuses;
    std::vector<pavane::CString> notices;
    int changes = 0;

    explicit AxisWindow(int rows = 60, int columns = 80, pavane::CSize size = {640, 480})
        : map(rows, columns)
    {
        using namespace pavane;
        for (int r = 0; r < rows; ++r)
            for (int c = 0; c < columns; ++c)
                map.row(r)[c] = static_cast<float>(c + 1000 * r);
        centres.xMin = 0.5 * columns;
        centres.xMax = centres.xMin - (columns - 1);
        centres.yMin = -0.5 * rows;
        centres.yMax = centres.yMin + (rows - 1);
        const CRect all(0, 0, size.cx, size.cy);
        top.Create("", "", WS_POPUP | WS_VISIBLE, all, nullptr, 0);
        Create("", "", WS_CHILD | WS_VISIBLE | WS_TABSTOP, all, &top, 1);
        showMap();
        UpdateWindow();
    }
    ~AxisWindow() override { SetAxis(nullptr, 0); }

    /// A fresh axis of the map, which the window owns.
    void showMap()
    {
        using namespace pavane;
        auto* const axis = new A2DAxis(-1, 1, nullptr, 0);
        auto* const graph = new AColorsGraph(axis, access, centres, 0);
        SetAxis(axis, 1);
        SetMap(graph);
    }
    void OnStatus(const pavane::AxisStatus& status) override { statuses.push_back(status); }
    void OnNotice(const pavane::CString& text) override { notices.push_back(text); }
    void OnAreasChanged() override { ++changes; }
    pavane::ATrackerArrayInAxis& areas() { return *GetTrackers(); }

    /// The pixel at the centre of a cell.
    pavane::CPoint at(int row, int column) const
    {
        return {GetAxis()->RPXtoGPX(GetMap()->MPXtoRPX(column)),
                GetAxis()->RPYtoGPY(GetMap()->MPYtoRPY(row))};
    }
    void post(unsigned message, pavane::CPoint p, unsigned keys = pavane::MK_LBUTTON)
    {
        PostMessage(message, keys, pavane::MAKELPARAM(p.x, p.y));
    }
    /// Presses at the first point, goes through the others and releases at the last.
    void drag(std::initializer_list<pavane::CPoint> points, unsigned keys = pavane::MK_LBUTTON)
    {
        using namespace pavane;
        for (const CPoint& p : points)
            post(WM_MOUSEMOVE, p, keys);
        post(WM_LBUTTONUP, *(points.end() - 1), keys & ~MK_LBUTTON);
        SendMessage(WM_LBUTTONDOWN, keys, MAKELPARAM(points.begin()->x, points.begin()->y));
        pump();
    }
    void click(pavane::CPoint p, unsigned keys = pavane::MK_LBUTTON) { drag({p}, keys); }
    void doubleClick(pavane::CPoint p)
    {
        SendMessage(pavane::WM_LBUTTONDBLCLK, pavane::MK_LBUTTON, pavane::MAKELPARAM(p.x, p.y));
        SendMessage(pavane::WM_LBUTTONUP, 0, pavane::MAKELPARAM(p.x, p.y));
    }
    /// `modifiers` MK_SHIFT and MK_CONTROL.
    void key(int code, int modifiers = 0)
    {
        pavane::SetKeyStateOverride(modifiers);
        SendMessage(pavane::WM_KEYDOWN, static_cast<pavane::WPARAM>(code));
        SendMessage(pavane::WM_KEYUP, static_cast<pavane::WPARAM>(code));
        pavane::SetKeyStateOverride(-1);
    }
    void wheel(int notches, pavane::CPoint p, unsigned keys = 0)
    {
        ClientToScreen(p);
        SendMessage(pavane::WM_MOUSEWHEEL,
                    keys | static_cast<pavane::WPARAM>(
                               static_cast<std::uint16_t>(notches * pavane::WHEEL_DELTA))
                               << 16,
                    pavane::MAKELPARAM(p.x, p.y));
    }
    static void pump()
    {
        pavane::MSG m;
        for (int i = 0; i < 3; ++i)
            while (pavane::PeekMessage(m))
                pavane::DispatchMessage(m);
    }
    /// Runs the main loop for a time; only there do windows that were closed free their memory.
    static void runFor(unsigned milliseconds)
    {
        struct Clock : pavane::CWnd {
            void OnTimer(unsigned) override { pavane::PostQuitMessage(0); }
        } clock;
        clock.Create("", "", pavane::WS_POPUP, pavane::CRect(0, 0, 9, 9), nullptr, 0);
        clock.SetTimer(1, milliseconds);
        (void)pavane::RunMessages();
    }
    /// What the user sees, cells and areas included, of a window of 640 x 480.
    std::vector<std::uint32_t> pixels()
    {
        UpdateWindow();
        pavane::CBitmap bitmap;
        bitmap.CreateBitmap(640, 480, 1);
        pavane::CMemoryDC memory(bitmap);
        const pavane::CWindowDC own(this);
        memory.BitBlt(0, 0, 640, 480, &own, 0, 0, pavane::SRCCOPY);
        return {bitmap.bits(), bitmap.bits() + 640 * 480};
    }
    /// The mask of all areas, filled from nothing.
    pavane::ABitMatrix mask()
    {
        pavane::ABitMatrix m(map.rows(), map.columns());
        GetTrackers()->FillMatrix(m, map.columns(), map.rows(), centres);
        return m;
    }
};
