#pragma once

#include "apps/view/MapWindow.h"
#include "apps/view/ModelSession.h"
#include "apps/view/PartWindow.h"
#include "pavane/axes/maps/MapFrame.h"
#include "pavane/tables/observation/AComponentsTbl.h"

#include <string>
#include <vector>

namespace pavane
{

/// What the table of components tells the main window.
class ModelPanelOwner
{
public:
    virtual ~ModelPanelOwner() = default;
    /// Components are others: the map is to be painted anew.
    virtual void modelChanged() = 0;
    /// The selected one is another: the outlines of both are.
    virtual void modelSelected(int before, int now) = 0;
    /// There is a list to show, or none any more.
    virtual void modelOpened() = 0;
    virtual void modelNotice(const CString& text) = 0;
    /// 0, and said, when writing the file would replace one that is open.
    virtual int modelMayWrite(const std::string& file) = 0;
    virtual CWnd* modelWindow() = 0;
};

/// The components beside a map: their table, their outlines on the map, and their file. Whatever
/// would lose edits asks first.
class ModelPanel : public MapMarks
{
public:
    explicit ModelPanel(ModelPanelOwner& owner);
    int Create(CWnd* parent, unsigned id);
    PartWindow<AComponentsTbl>& table() { return table_; }
    ModelSession& session() { return session_; }
    const ModelSession& session() const { return session_; }

    /// Of the map that is shown; null for none. Not owned.
    void SetFrame(const MapFrame* frame) { frame_ = frame; }
    const MapFrame* frame() const { return frame_; }
    /// Reads a file in place of the list, after asking about unsaved components.
    int Open(const std::string& file);
    /// The same, of a file that the user chooses; `near` is where to begin.
    int OpenCommand(const std::string& near);
    /// Brings back from a copy what was not saved of `file` ("": of a new list), in place of what
    /// there is, without asking.
    int OpenCopy(const std::string& copy, const std::string& file);
    /// An empty list.
    void Begin();
    /// Forgets the list without asking.
    void Close();
    /// 0 when the user wants to stay with the unsaved components.
    int MayLeave();
    /// `map`: a new file stands beside it. Non-zero when it was saved.
    int Save(const std::string& map);
    int SaveAs(const std::string& map);

    /// Pixels of a component's outline.
    CRect BoundsOf(int i, const ABAxis& axis) const;

    // MapMarks
    int isShown() const override { return session_.isOpen() && frame_; }
    void drawOver(CDC& dc, const ABAxis& axis, const CRect* update) override;
    void pressOn(const ABAxis& axis, CPoint point) override;

private:
    class Table : public PartWindow<AComponentsTbl>
    {
    public:
        explicit Table(ModelPanel& panel) : panel_(panel) {}
        void OnComponentsChanged() override { panel_.owner_.modelChanged(); }
        void OnComponentSelected() override { panel_.selectionChanged(); }
        CString profileSection() override { return "pavane-view components"; }
        void OnNotice(const CString& text) override { panel_.owner_.modelNotice(text); }

    private:
        ModelPanel& panel_;
    };
    void selectionChanged();
    int saveTo(const std::string& file);

    ModelPanelOwner& owner_;
    ModelSession session_;
    Table table_;
    const MapFrame* frame_ = nullptr;
    int selected_ = -1;  ///< the component whose outline stands out
    std::string map_;    ///< for a question that leads to a new file
};

}  // namespace pavane
