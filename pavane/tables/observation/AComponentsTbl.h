#pragma once

#include "pavane/tables/ATableWnd.h"
#include "pavane/tables/components/EditedComponents.h"

#include <memory>
#include <vector>

namespace pavane
{

/// A source model as a table, a row for each component with all its fields. The kind is chosen by
/// name; one without a name shows its number and stays as long as nobody chooses another. A value
/// that a component cannot have is refused with a word why.
///
/// Insert adds a component below the focus cell, Ctrl+D copies those of the selected rows, Ctrl+Del
/// deletes them. Each of these, each edit and each paste is a step of undo that brings every bit
/// back. Heirs hear of changes by the two functions at the end.
class PAVANE_API AComponentsTbl : public ATableWnd
{
public:
    AComponentsTbl();
    ~AComponentsTbl() override;

    /// Shows a list of the host's, not owned; null brings back the table's own. Its present
    /// component is selected.
    void SetComponents(EditedComponents* components);
    EditedComponents& GetComponents() const { return *components_; }
    const AComponents& components() const { return components_->list(); }
    /// The host has changed the list.
    void Refresh();
    /// Selects the row of a component, from 0, in the column of the focus cell, and shows it.
    void SelectComponent(int i);
    /// The component of the focus cell, -1 for none.
    int selectedComponent() const;

    // One step of undo each; 0 when nothing came of it.
    int AddComponent();
    int CopyComponents();
    int DeleteComponents();

    const char* GetWndClassName() override;
    int GetMenuID() override;
    void amMenuParse(CMenu* popup) override;
    CString hdrCellAsStr(int row, int column, void* context) override;
    CString cellAsStr(int row, int column, void* context) override;
    CString strCell(int row, int column) override { return cellAsStr(row, column, nullptr); }
    int setCellStr(int row, int column, const CString& text) override;
    int pasteCell(int row, int column, const CString& text) override;
    int isEnableAutoEdit(int, int) override { return 1; }
    int isEnableAutoComboBox(int, int) override { return 1; }
    int FillComboBox(CComboBox* list, int row, int column) override;
    int getFromComboBox(CComboBox* list, int row, int column) override;
    void drawHeaderCell(CDC& dc, CRect& rect, int row, int column) override;
    void drawCell(CDC& dc, CRect& rect, int row, int column, int state) override;
    void sendSelectionChange(ASelectRect& next, ASelectRect& previous) override;
    void beginEdits(const CString& label) override;
    void endEdits() override;
    int canUndo() override;
    int canRedo() override;
    int Undo() override;
    int Redo() override;
    CString undoLabel() override;
    CString redoLabel() override;
    int RunTableCommand(unsigned id) override;

    /// The list is another one than before. The base does nothing.
    virtual void OnComponentsChanged();
    /// Another component has the focus cell. The base does nothing.
    virtual void OnComponentSelected();
    /// What the user should read and need not answer. The base does nothing.
    virtual void OnNotice(const CString& text);

protected:
    void OnKeyDown(unsigned key, unsigned repeat, unsigned flags) override;
    unsigned OnGetDlgCode() override;

private:
    int take(int row, int column, const CString& text, CString& message);
    int isRow(int row) const { return row >= 1 && row <= components().count(); }
    std::vector<int> selectedRecords() const;
    int walkHistory(int forward);
    void stepEnded(EditRecorded recorded);
    void followList();

    std::unique_ptr<EditedComponents> own_;
    EditedComponents* components_;
    int edits_ = 0;  ///< begun here and not ended
};

}  // namespace pavane
