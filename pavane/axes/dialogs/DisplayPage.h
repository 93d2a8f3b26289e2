#pragma once

#include "pavane/axes/maps/MapDisplay.h"
#include "platform/property_sheet.h"

#include <memory>

namespace pavane
{

class AMapDisplayDlg;
class CButton;
class CComboBox;

/// A page of the sheet of a map's display. It shows a part of the display and writes what is typed
/// into the map at once; what cannot be read is told on the page, which then stays in front.
class DisplayPage : public CPropertyPage
{
public:
    DisplayPage(AMapDisplayDlg& sheet, const DlgTemplate& page, DisplayPart part);

    int OnSetActive() override;
    int OnKillActive() override { return accept(); }
    int OnApply() override;
    /// Fills the page from the map.
    void refresh();
    /// The same when the map is displayed in another way than the page says.
    void follow(const MapDisplay& display);

protected:
    /// Fills lists, once.
    virtual void make() {}
    virtual void show(const MapDisplay& display) = 0;
    /// Puts what stands on the page into `display`. Non-zero on success; else 0, `error` says why
    /// and `faulty` is the identifier of the control.
    virtual int take(MapDisplay& display, CString& error, unsigned& faulty) const = 0;
    /// Non-zero when the command changes what stands on the page.
    virtual int isChange(unsigned id, unsigned code);

    int OnInitDialog() override;
    int OnCommand(unsigned id, unsigned code, CWnd* control) override;

    AMapDisplayDlg& sheet() const { return display_; }
    /// What the page was filled with, or has shown the map since.
    const MapDisplay& told() const { return told_; }
    /// Something stands on the page that the map should show.
    void changed();
    void note(const CString& text);
    CComboBox* combo(unsigned id) const;
    CButton* button(unsigned id) const;
    int isChecked(unsigned id) const;
    void setChecked(unsigned id, int on);
    int choice(unsigned id) const;
    void choose(unsigned id, int line);
    template <typename Texts>
    void addLines(unsigned id, const Texts& texts)
    {
        for (const char* const text : texts)
            addLine(id, text);
    }
    void addLine(unsigned id, const char* text);
    /// Lets an edit hold texts of any length.
    void liftLimit(unsigned id);

private:
    int accept();
    int read(MapDisplay& display, CString& error, unsigned& faulty) const;

    AMapDisplayDlg& display_;
    DisplayPart part_;
    MapDisplay told_;  ///< what the page shows
    int filling_ = 0;
};

/// The pages, as the sheet has them.
std::unique_ptr<DisplayPage> coloursPage(AMapDisplayDlg& sheet);
std::unique_ptr<DisplayPage> contoursPage(AMapDisplayDlg& sheet);
std::unique_ptr<DisplayPage> beamPage(AMapDisplayDlg& sheet);
std::unique_ptr<DisplayPage> axesPage(AMapDisplayDlg& sheet);
std::unique_ptr<DisplayPage> presetsPage(AMapDisplayDlg& sheet);

}  // namespace pavane
