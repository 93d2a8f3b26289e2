#pragma once

#include "pavane/axes/ranges/TMinMax.h"
#include "pavane/containers/AArray.h"
#include "pavane/trackers/ATracker.h"
#include "pavane/trackers/collections/EditedAreas.h"
#include "pavane/trackers/collections/PressOptions.h"
#include "pavane/trackers/collections/tool_modes.h"
#include "pavane/trackers/collections/ZoomSteps.h"
#include "pavane/trackers/shapes/key_steps.h"
#include "pavane/trackers/shapes/ShapeValues.h"
#include "platform/api.h"
#include "platform/types.h"

#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace pavane
{

class ABitMatrix;
class AFile;
class AreaTrackers;
class CComboBox;
struct HandResult;
struct LoadReport;

/// What all collections of areas do, whatever the coordinates of their shapes: tools, the current
/// area, list and toolbar, keyboard, undo, drawing and hit tests. Points are client pixels.
///
/// The current area is the one that tools and commands act on while it is active. Beside it several
/// areas may be selected; the selection is not stored and not part of undo.
///
/// Every edit that goes through the collection can be undone. Hosts change trackers of their own
/// inside ChangeTracker or SetShape, and active flags by SetItemActive; otherwise undo brings back
/// what the collection knew.
///
/// A handler that runs during a drag may load, clear, delete or destroy the collection: the drag
/// ends. Undo and redo wait for its end.
///
/// It is the front of its parts: AreaEye draws and finds areas, AreaHand does what presses do,
/// AreaKeys what keys do, both by TrackerEdits. They tell nobody; the collection acts on what they
/// return and tells list, toolbar, window and host, once.
class PAVANE_API TrackerCollection : public TrackerListener,
                                     public EditedAreas,
                                     public PressOptions,
                                     public ZoomSteps
{
public:
    TrackerCollection();
    TrackerCollection(const TrackerCollection&) = delete;
    TrackerCollection& operator=(const TrackerCollection&) = delete;
    ~TrackerCollection() override;

    // Items
    virtual int trackerCount() const = 0;
    /// Null outside the collection.
    virtual ATracker* trackerAt(int i) const = 0;
    /// The polygon that is being drawn, null for none.
    virtual ATracker* workingTracker() const = 0;
    /// Index of a tracker, -1 when it is none of this collection.
    int IndexOf(const ATracker* tracker) const;

    // Zoom steps
    /// Puts the range that is shown on the history before the window shows another one, and enables
    /// the zoom-back command.
    void SaveRange(CWnd* window, const TMinMax& range);
    /// Empties the history and disables the zoom-back command.
    void ForgetRanges(CWnd* window);
    /// Takes the last range off the history; the window shows it, or is about to.
    void DropRange(CWnd* window);

    // Mouse and tools; a window calls these from its own handlers.
    int mode() const;
    /// Non-zero when the press was used: the window starts nothing else with it.
    /// Ctrl with the arrow tool puts areas into the selection and takes them out.
    virtual int OnLButtonDown(CWnd* window, unsigned flags, CPoint p);
    virtual int OnLButtonDblClk(CWnd* window, unsigned flags, CPoint p);
    /// Shows the line from the last vertex of an open polygon to the pointer; non-zero then.
    virtual int OnMouseMove(CWnd* window, unsigned flags, CPoint p);
    /// Non-zero when it chose a cursor.
    virtual int OnSetCursor(CWnd* window, unsigned hitArea, unsigned message);
    virtual void BeginMode(CWnd* window, int mode);
    virtual void EndMode(CWnd* window, int mode);
    virtual void ZoomBack(CWnd* window);
    virtual void ChangeActiveTrack(CWnd* window, int i);
    /// Deletes the polygon under construction, else the selection or the current active area. 1
    /// when something was deleted.
    /// Deliberate: the name is spelled as hosts call it.
    virtual int DelteTracker(CWnd* window);
    /// Copies the selection or the current active area ten pixels down and right, inside the valid
    /// rectangle; the last copy becomes current and active. 1 when something was copied.
    virtual int CopyTracker(CWnd* window);
    /// Fills the owner's list with "Area 1", "Area 2" ...; an active one becomes current.
    virtual void FillAreasCB(CWnd* owner);
    /// Draws the areas that the clip box of `dc` meets in index order, then the polygon under
    /// construction and the shape that is being drawn.
    virtual void Draw(CDC* dc, CWnd* window);
    /// Deletes the polygon under construction, clears the zoom history, makes every area inactive.
    /// As after Add and DeleteItems the host repaints.
    virtual void EndWorking();

    // Hooks of hosts
    /// The list and the toolbar of the window; null here.
    virtual CComboBox* GetComboBox(CWnd* window);
    virtual CWnd* GetToolBar(CWnd* window);
    /// Another range is to be shown.
    virtual void SetNewMinMax(CWnd* window, TMinMax& range) = 0;
    /// Invalidates and updates the window.
    virtual void ChangeTrackState(CWnd* window);
    /// Called after every edit, undo and redo, and when the current area or the selection changes.
    virtual void OnChanged() {}
    /// Called for each new shape of a dragged tracker; the window is invalid but not painted yet.
    virtual void OnChanging(ATracker& tracker) { (void)tracker; }

    // Masks
    /// The mask of all areas over a map of nx columns and ny rows that spans `mapRange`: clears m,
    /// then sets the cells of every outline but those of never-clean areas, and clears these. With
    /// no other area every bit is set before. A map range, or a mapping of pixels, that is unset or
    /// has no width sets nothing.
    void FillMatrix(ABitMatrix& m, int nx, int ny, const TMinMax& mapRange);
    /// Sets the cells of area i, never-clean or not; m is not cleared before.
    void FillMatrixForItem(int i, ABitMatrix& m, int nx, int ny, const TMinMax& mapRange);
    /// The outline of area i in those cells (x = column, y = row); 0 and no points where it sets
    /// nothing.
    virtual int GetAreaCells(int i, AArray<CPoint>& cells, int nx, int ny,
                             const TMinMax& mapRange) const = 0;

    // Hit tests
    /// The topmost area whose HitTest(p) is not negative, -1 for none.
    int TopmostAt(CPoint p, CWnd* window);
    /// Shapes or the mapping have changed behind the collection's back: boxes for hit tests and
    /// drawing are made anew when they are next needed.
    void ForgetBoxes();

    // Undo
    /// One step each; 0 when there is none, or during a drag.
    int Undo(CWnd* window);
    int Redo(CWnd* window);
    int CanUndo() const;
    int CanRedo() const;
    /// The end of what BeginEdits began.
    void EndEdits(CWnd* window);
    /// Takes back all edits of the trial and their steps, and ends it; a drag ends before. 0 when
    /// steps had been given up: the areas may be any then.
    int DropTrial(CWnd* window);
    /// Calls `change` on tracker i; what it did is one step. A result of 0 puts the tracker back.
    int ChangeTracker(CWnd* window, int i, std::string_view label,
                      const std::function<int(ATracker&)>& change);
    /// The shape of area i as numbers: data values, or pixels where shapes are pixels.
    int GetShape(int i, ShapeValues& shape) const;
    /// The record of area i, or with -1 of the polygon under construction, as it would be if the
    /// drag that runs were cancelled; empty where there is none then.
    std::string KeptState(int i) const;
    /// Makes the last area, a polygon that is not ready, the polygon under construction and takes
    /// the tool for it; 0 where it is no such, or one is under construction.
    int ReopenLast(CWnd* window);
    /// Makes masks leave out the cells of the selected areas, or hold them again; one step of undo.
    /// 0 when nothing has changed.
    int SetNeverClean(CWnd* window, int on);
    /// Whether all selected areas are such; 0 for none.
    int IsNeverClean() const;
    /// Gives the areas a name and a colour, as one step of undo: to all of them those parts that
    /// `setsName` and `setsColour` say. How many have changed.
    int SetLabels(CWnd* window, const std::vector<int>& items, const AreaLabel& label, int setsName,
                  int setsColour);
    /// Of area i; empty for none.
    AreaLabel Label(int i) const;
    /// Gives area i other numbers; 0 for another kind of shape or numbers that are not finite.
    int SetShape(CWnd* window, int i, const ShapeValues& shape);

    // Several areas
    void SelectItem(CWnd* window, int i, int on);
    void SelectAll(CWnd* window);
    void ClearSelection(CWnd* window);
    /// Deletes all areas and the polygon under construction.
    void Clear(CWnd* window);

    // Keyboard
    /// Gives the focus to the next area or handle: areas in order, each followed by its handles; an
    /// area with the focus is current and active. Begins at the current area when that is active. 0
    /// past the last one: nothing has it then, and the next one is at an end.
    int NextFocus(CWnd* window);
    int PrevFocus(CWnd* window);
    /// Index of the area with the focus (-1 for none), and of its handle (-1: the area itself).
    int focusItem() const;
    int focusHandle() const;
    void SetFocusAt(CWnd* window, int item, int handle);
    /// Where the focused handle or area (its centre) is on the screen; 0 without a focus.
    int FocusPoint(CPoint& p) const;
    /// Moves the focused handle, or else the selection, inside the valid rectangle. In pixels y
    /// grows downwards. 0 when nothing moved.
    int MoveBy(CWnd* window, int dx, int dy);
    /// The same by a difference of data values.
    int MoveByValue(CWnd* window, double dx, double dy);
    /// Adds a vertex: on the edge nearest to `at`, or halfway after the focused vertex, or halfway
    /// on the last edge. 0 where the current area is no polygon.
    int InsertVertex(CWnd* window, const CPoint* at = nullptr);
    /// Deletes the vertex at `at`, or the focused one; never below three.
    int DeleteVertex(CWnd* window, const CPoint* at = nullptr);
    /// Closes the polygon under construction when it has three vertices.
    int CloseArea(CWnd* window);
    /// Draws without a pointer: puts the shape of the drawing tool into the middle of what is
    /// shown, a quarter of it wide and high. 0 without such a tool and while a polygon is open.
    int PlaceShape(CWnd* window);
    /// Drops the polygon under construction, else the drawing tool, else focus and selection. 0
    /// when there was nothing to leave.
    int Escape(CWnd* window);

    /// See PressOptions.
    void SetDeadZone(int pixels);
    /// Presses find vertices and edges within so many pixels (see ATracker::SetCatch); 0 at first.
    void SetCatch(int vertex, int edge);
    /// How the last drag ended; after the right button a window shows no context menu.
    DragEnd lastDragEnd() const;
    /// Lasts as long as the collection.
    const LifeToken& life() const { return life_; }

    // TrackerListener
    void trackerChanging(ATracker& tracker) override;
    int trackerBounds(const ATracker& tracker, CRect& bounds) override;
    void trackerDragEnded(ATracker& tracker, DragEnd end) override;

protected:
    // What the kinds of collections do in their own way.
    /// A new tracker of the first bit among rectangle, rotated rectangle, ellipse, area; or of a
    /// stored class name. Null for none.
    virtual ATracker* makeTracker(int mode) = 0;
    virtual ATracker* makeTrackerOfClass(const std::string& name) = 0;
    /// Takes ownership when the result is non-zero; takeTracker gives it back.
    virtual int putTracker(int i, ATracker* tracker) = 0;
    virtual ATracker* takeTracker(int i) = 0;
    virtual void setWorking(ATracker* tracker) = 0;
    /// Non-zero when trackers that are taken out are deleted.
    virtual int ownsItems() const = 0;
    /// Sets what a tracker does not store.
    virtual void adopt(ATracker& tracker)
    {
        tracker.SetListener(this);
        tracker.SetDeadZone(deadZone());
        tracker.SetCatch(vertexCatch(), edgeCatch());
    }
    /// Whether a press at p is for the collection.
    virtual int takesPress(CPoint p) const = 0;
    /// The range that the pixels stand for, and that of one zoom step about a pixel (0 for none).
    virtual TMinMax shownRange() const = 0;
    virtual int zoomedRange(CPoint p, TMinMax& range) const = 0;
    /// The coordinates of shapes (pixels, or data values) of a pixel, and back.
    virtual APoint<double> shapePoint(CPoint pixel) const = 0;
    virtual CPoint pixelPoint(const APoint<double>& point) const = 0;
    /// The change of a shape's coordinates at `at` for a change of data values.
    virtual APoint<double> shapeOffset(APoint<double> value) = 0;
    /// Where shapes may lie, in their coordinates; 0 where that is not known.
    virtual int shapeBounds(CWnd* window, ATracker& tracker, ARect<double>& bounds) const = 0;
    /// Non-zero when pixels stand for other coordinates than at the last call.
    virtual int pixelsMoved() { return 0; }
    /// Pixel shapes: the mapping that they belong to now, and a tracker's way between two mappings.
    virtual int mappingNumber() { return 0; }
    virtual void rescale(ATracker& tracker, int fromMapping, int toMapping);
    /// The mapping itself, for undo of a load.
    virtual std::string mappingBytes() const { return {}; }
    virtual int setMappingBytes(std::string_view bytes) { return bytes.empty(); }

    /// Add and InsertAt, appending and DeleteItems of the arrays.
    int addItem(int i, ATracker* tracker, int makeCurrent);
    void appendItems(int n, const std::function<ATracker*(int)>& tracker);
    int removeItems(int first, int n);
    /// Ends the drag that runs: the shape is as before it, and the loop returns. For changes of
    /// what shapes mean.
    void endDrag();
    /// What LoadObject and Load of the arrays do: a tracker of a class with its record (null for an
    /// unknown class or a bad record); the count and all trackers in place of what there is, as one
    /// step. `takeMapping` is called when the old ones are gone.
    ATracker* loadObject(const std::string& className, AFile& file);
    int loadItems(AFile& file, int current, LoadReport& report,
                  const std::function<void()>& takeMapping);
    /// The new shape that a drag draws now, null for none.
    ATracker* drawnTracker() const;

    PixelSteps pixelSteps_;

private:
    friend class AreaTrackers;
    struct Parts;

    int tell(CWnd* window, const HandResult& result);
    void changed(CWnd* window);
    void tellOfEdit();

    std::unique_ptr<Parts> parts_;
    LifeToken life_;
};

}  // namespace pavane
