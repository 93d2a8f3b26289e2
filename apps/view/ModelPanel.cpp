#include "apps/view/ModelPanel.h"

#include "apps/view/view_dialogs.h"
#include "pavane/tables/components/ModelLayer.h"
#include "platform/file_dialog.h"
#include "platform/message.h"
#include "tessel/paths.h"

#include <utility>

namespace pavane
{

namespace
{

constexpr const char* openFilter =
    "Components (*.txt *.mod)|*.txt *.mod|FITS maps (*.fits *.fit *.fts)|*.fits *.fit *.fts|"
    "All files (*)|*|";
constexpr const char* saveFilter = "Components (*.txt)|*.txt|";
/// Pixels from an outline in which a click picks its component.
constexpr double reach = 5;

}  // namespace

ModelPanel::ModelPanel(ModelPanelOwner& owner) : owner_(owner), table_(*this)
{
    table_.SetComponents(&session_.components());
}

int ModelPanel::Create(CWnd* parent, unsigned id)
{
    return table_.Create(table_.GetWndClassName(), CString(),
                         WS_CHILD | WS_VISIBLE | WS_TABSTOP | WS_VSCROLL | WS_HSCROLL, CRect(),
                         parent, id);
}

int ModelPanel::Open(const std::string& file)
{
    if (!MayLeave())
        return 0;
    std::vector<std::string> notes;
    std::string error;
    const int opened = session_.open(file, notes, error);
    if (!opened)
        return (void)AfxMessageBox(error, MB_ICONERROR), 0;
    table_.SetComponents(&session_.components());
    owner_.modelOpened();
    std::string text =
        std::to_string(session_.components().list().count()) + " components of " + baseNameOf(file);
    for (const std::string& note : notes)
        text += "; it " + note;
    owner_.modelNotice(text);
    return 1;
}

int ModelPanel::OpenCommand(const std::string& near)
{
    CString name = folderOf(session_.file().empty() ? near : session_.file());
    return fnFileDialog1(name, openFilter, "Open components", 1, "txt", OFN_FILEMUSTEXIST,
                         owner_.modelWindow()) &&
           !name.empty() && Open(name);
}

int ModelPanel::OpenCopy(const std::string& copy, const std::string& file)
{
    std::string error;
    if (!session_.openCopy(copy, file, error))
        return 0;
    table_.SetComponents(&session_.components());
    owner_.modelOpened();
    return 1;
}

void ModelPanel::Begin()
{
    session_.begin();
    table_.SetComponents(&session_.components());
    owner_.modelOpened();
}

void ModelPanel::Close()
{
    if (!session_.isOpen())
        return;
    session_.end();
    table_.SetComponents(&session_.components());
    owner_.modelOpened();
}

int ModelPanel::MayLeave()
{
    if (!table_.storeEditor())
        return 0;
    if (!session_.isModified())
        return 1;
    const int answer =
        AfxMessageBox("The components of " + session_.name() + " are not saved. Save them now?",
                      MB_YESNOCANCEL | MB_ICONQUESTION);
    return answer == IDNO || (answer == IDYES && Save(map_));
}

int ModelPanel::Save(const std::string& map)
{
    return session_.file().empty() ? SaveAs(map) : saveTo(session_.file());
}

int ModelPanel::SaveAs(const std::string& map)
{
    map_ = map;
    CString name = session_.file().empty() ? folderOf(map) + "model.txt" : CString(session_.file());
    return fnFileDialog1(name, saveFilter, "Save components", 0, "txt", OFN_OVERWRITEPROMPT,
                         owner_.modelWindow()) &&
           !name.empty() && saveTo(name);
}

int ModelPanel::saveTo(const std::string& file)
{
    if (!table_.storeEditor() || !owner_.modelMayWrite(file))
        return 0;
    const std::vector<std::string> losses = session_.newLosses();
    if (!losses.empty() && askAboutLines(owner_.modelWindow(), "Save components",
                                         baseNameOf(file) + " holds six digits. These change:",
                                         losses, "Save all the same?", "Save") != IDOK)
        return 0;
    std::string error;
    if (!session_.save(file, error))
        return (void)AfxMessageBox(error, MB_ICONERROR), 0;
    owner_.modelChanged();
    owner_.modelNotice("Saved " + std::to_string(session_.components().list().count()) +
                       " components in " + file);
    return 1;
}

void ModelPanel::selectionChanged()
{
    const int before = std::exchange(selected_, table_.selectedComponent());
    owner_.modelSelected(before, selected_);
}

CRect ModelPanel::BoundsOf(int i, const ABAxis& axis) const
{
    const AComponents& list = session_.components().list();
    return isShown() && i >= 0 && i < list.count() ? ModelLayer(list, *frame_).BoundsOf(i, axis)
                                                   : CRect();
}

void ModelPanel::drawOver(CDC& dc, const ABAxis& axis, const CRect* update)
{
    if (!isShown())
        return;
    ModelLayer layer(session_.components().list(), *frame_);
    if (update) {
        layer.SetSelected(selected_ = table_.selectedComponent());
        layer.SetPart(*update);
    }
    layer.draw(dc, axis);
}

void ModelPanel::pressOn(const ABAxis& axis, CPoint point)
{
    if (!isShown())
        return;
    const ModelLayer layer(session_.components().list(), *frame_);
    const int found = layer.ComponentAt(axis, point, reach);
    if (found >= 0)
        table_.SelectComponent(found);
}

}  // namespace pavane
