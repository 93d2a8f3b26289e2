#pragma once

#include "pavane/axes/ranges/TMinMax.h"
#include "pavane/containers/AArray.h"
#include "pavane/trackers/areas/AreaEdits.h"
#include "pavane/trackers/ATracker.h"
#include "pavane/trackers/collections/tool_modes.h"
#include "pavane/trackers/shapes/BoxIndex.h"
#include "pavane/trackers/shapes/key_steps.h"
#include "pavane/trackers/shapes/ShapeValues.h"
#include "platform/api.h"
#include "platform/cursors.h"
#include "platform/messages.h"
#include "platform/types.h"

#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <typeindex>
#include <vector>

namespace pavane
{

class ABitMatrix;
class AFile;
class CComboBox;
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
class PAVANE_API TrackerCollection : public TrackerListener
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
    int GetCurItemNo() const { return edits_.current(); }
    void SetCurItemNo(int i) { edits_.setCurrent(i); }
    void SetItemActive(int i, int on);

    // Zoom steps
    /// The i-th factor of zoomFactors; i is not checked.
    void SetZoomScaleNo(int i) { zoomScale_ = zoomFactors[i]; }
    /// 0 when the factor is none of the list.
    int GetZoomScaleNo() const;
    int zoomScale() const { return zoomScale_; }
    /// Ranges to go back to, the last one first.
    const AArray<TMinMax>& zoomHistory() const { return zoomHistory_; }
    /// Puts the range that is shown on the history before the window shows another one, and enables
    /// the zoom-back command.
    void SaveRange(CWnd* window, const TMinMax& range);
    /// Empties the history and disables the zoom-back command.
    void ForgetRanges(CWnd* window);

    // Mouse and tools; a window calls these from its own handlers.
    int mode() const { return mode_; }
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

    // Masks (collection_mask.cpp)
    /// The mask of all areas over a map of nx columns and ny rows that spans `mapRange`: clears m,
    /// then sets the cells of every outline. With no area every bit is set. A map range, or a
    /// mapping of pixels, that is unset or has no width sets nothing.
    void FillMatrix(ABitMatrix& m, int nx, int ny, const TMinMax& mapRange);
    /// The cells of area i; m is not cleared before.
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
    void ForgetBoxes() { boxesKnown_ = 0; }

    // Undo
    /// One step each; 0 when there is none, or during a drag.
    int Undo(CWnd* window);
    int Redo(CWnd* window);
    int CanUndo() const { return history().canUndo() && !dragged_; }
    int CanRedo() const { return history().canRedo() && !dragged_; }
    /// Steps, labels and their memory.
    const EditHistory& history() const { return edits_.history(); }
    EditHistory& history() { return edits_.history(); }
    /// Non-zero unless the areas are those of the last SetSaved (at first: the empty collection).
    int IsModified() const { return history().isModified(); }
    void SetSaved() { history().markSaved(); }
    /// All edits until EndEdits are one step. Calls nest; the outermost label counts.
    void BeginEdits(std::string_view label);
    void EndEdits(CWnd* window);
    /// Edits that the user may still cancel begin; Undo goes no further back until EndTrial.
    void BeginTrial() { history().beginTrial(); }
    void EndTrial() { history().endTrial(); }
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
    /// Gives area i other numbers; 0 for another kind of shape or numbers that are not finite.
    int SetShape(CWnd* window, int i, const ShapeValues& shape);

    // Several areas
    /// By rising index: the selection, or the current area where that is empty and it is active.
    std::vector<int> SelectedItems() const;
    int IsSelected(int i) const;
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
    int focusItem() const { return focusItem_; }
    int focusHandle() const { return focusHandle_; }
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

    /// Pixels that the pointer has to leave a press by before a drag begins; 0 at first.
    void SetDeadZone(int pixels);
    int deadZone() const { return deadZone_; }
    /// With a non-zero value a single press of the arrow tool makes the area under it current, and
    /// may drag it at once; at first only a double click does. A dead zone belongs to it, or a
    /// click that chooses an area may move it.
    void SetClickSelects(int on) { clickSelects_ = on; }
    int clickSelects() const { return clickSelects_; }
    /// Presses find vertices and edges within so many pixels (see ATracker::SetCatch); 0 at first.
    void SetCatch(int vertex, int edge);
    /// With a non-zero value a press on the first vertex of an open polygon of three corners or
    /// more closes it; at first it adds one there.
    void SetFirstVertexCloses(int on) { firstVertexCloses_ = on; }
    int firstVertexCloses() const { return firstVertexCloses_; }
    /// Corners that a polygon has to have for a double click to close it; 1 at first.
    void SetFewestCorners(int n) { fewestCorners_ = n; }
    int fewestCorners() const { return fewestCorners_; }
    /// How the last drag ended; after the right button a window shows no context menu.
    DragEnd lastDragEnd() const { return lastDragEnd_; }
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
    virtual void adopt(ATracker& tracker);
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
    ATracker* drawnTracker() const { return drawn_; }

    int zoomScale_ = zoomFactors[0];
    int mode_ = toolArrow;
    int deadZone_ = 0;
    int clickSelects_ = 0;
    int vertexCatch_ = 0;
    int edgeCatch_ = 0;
    int firstVertexCloses_ = 0;
    int fewestCorners_ = 1;
    AArray<TMinMax> zoomHistory_;
    HCURSOR zoomCursor_ = 0;
    HCURSOR drawCursor_ = 0;
    PixelSteps pixelSteps_;

private:
    using Step = AreaEdits::Step;
    /// The trackers as edits know them.
    class Items final : public AreaItems
    {
    public:
        explicit Items(TrackerCollection& of) : of_(of) {}
        int count() const override { return of_.trackerCount(); }
        int kindOf(int i) override;
        int isOfKind(int i, int kind) const override;
        std::string recordOf(int i) const override;
        int isActive(int i) const override;
        void setActive(int i, int on) override;
        int insert(int i, int kind, std::string_view record) override;
        void remove(int i) override;
        int replace(int i, int kind, std::string_view record) override;
        int setOpen(int kind, std::string_view record) override;
        int setState(int which, std::string_view bytes) override;

    private:
        TrackerCollection& of_;
    };
    /// What a record needs to become a tracker again.
    struct Kind {
        std::type_index type;
        std::string name;
        int mapping;
        std::shared_ptr<const ATracker> model;  ///< of classes that their name alone does not make
    };

    // Recording (collection_undo.cpp)
    int kindCode(const ATracker& tracker);
    std::string recordOf(const ATracker& tracker, int i) const;
    ATracker* makeFromRecord(int kind, std::string_view record);
    int setRecord(ATracker& tracker, int kind, std::string_view record);
    int putItem(int i, ATracker* tracker);
    void dropItem(int i);
    int placeItem(int i, ATracker* tracker, int usual);
    void giveUp(ATracker* tracker);
    int insertItem(int i, ATracker* tracker, int usual);
    void eraseItem(int i);
    void eraseItems(int first, int n);
    void tellOfEdit();
    void noteChange(int i, const std::string& before);
    void changeWorking(ATracker* tracker);
    void noteWorking(const ATracker& tracker, const std::string& before, const std::string& after);
    void noteMapping(const std::string& before);
    void setMode(int mode);
    int walk(CWnd* window, const std::function<int()>& step);

    // Presses (collection_press.cpp)
    enum class DragResult { gone, refused, kept };
    DragResult drag(CWnd*& window, ATracker& tracker, const std::function<int()>& run);
    int pressZoom(CWnd* window, CPoint p);
    int pressSelect(CWnd* window, CPoint p);
    int pressMove(CWnd* window, CPoint p);
    int pressDraw(CWnd* window, CPoint p);
    void leaveCurrent(CWnd* window, CPoint p);
    void takeClicked(CWnd* window, CPoint p);
    int addVertex(CWnd* window, CPoint p);
    int closesAt(CPoint p, CPoint* vertex = nullptr) const;
    const char* focusPressed(CWnd* window, CPoint p);
    void invalidateFocus(CWnd* window) const;
    void takeDrawn(CWnd* window, ATracker* tracker);
    void takeWorking(CWnd* window, const std::string& before);
    int moveSeveral(CWnd* window, int item, CPoint p);
    void boundFollowers(CWnd* window, ATracker& grabbed, CPoint p);
    void moveFollowers(const ATracker& grabbed);
    void releaseFollowers();

    // List, toolbar, state
    void enableAreaCommands(CWnd* window, int on);
    void enableZoomBack(CWnd* window);
    void showCurrent(CWnd* window);
    void showTool(CWnd* window);
    void makeCurrent(int i);
    void fitFocus();
    void changed(CWnd* window);
    void fillList(CWnd* window);

    // Boxes and drawing (collection_draw.cpp)
    int knowBoxes();
    int itemsIn(const ARect<double>& rect, Pile<int>& found);
    static ARect<double> boxOf(const ATracker& tracker);
    void boxChanged(int i);
    int drawingClip(CWnd* window, ATracker& tracker, CRect& clip) const;
    void drawFocus(CDC& dc) const;
    void drawHover(CDC& dc) const;
    int hoverFrom(CPoint& from) const;

    // Edits of several and keyboard
    int copyItem(CWnd* window, int i);
    int moveShapes(CWnd* window, const std::vector<int>& items, APoint<double> offset,
                   const char* label);
    int moveFocusedHandle(CWnd* window, APoint<double> offset);
    int moveByOffset(CWnd* window, APoint<double> offset);
    int stepFocus(CWnd* window, int direction);
    int polygonForVertices(ShapeValues& shape) const;

    Items items_{*this};
    AreaEdits edits_{items_};
    std::vector<Kind> kinds_;
    int focusItem_ = -1;
    int focusHandle_ = -1;
    int passedItem_ = -1;  ///< the current area when the focus went past the ends
    BoxIndex boxes_;
    int boxesKnown_ = 0;

    ATracker* dragged_ = nullptr;  ///< while its loop runs
    int draggedItem_ = -1;
    ATracker* drawn_ = nullptr;  ///< a new shape while it is drawn; owned
    std::string draggedBefore_;
    struct Follower {
        int item;
        std::string before;
        ShapeValues start;
    };
    /// From so many followers on they are boxed and repainted all together.
    static constexpr std::size_t manyFollowers = 64;
    std::vector<Follower> followers_;  ///< areas that move with the dragged one
    CRect followBounds_;
    APoint<double> followFrom_;
    HWND dragWindow_ = 0;
    DragEnd lastDragEnd_ = DragEnd::refused;
    CPoint hover_;
    int hovering_ = 0;
    LifeToken life_;
};

}  // namespace pavane
