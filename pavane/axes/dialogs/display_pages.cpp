// The pages of a map's display that change a part of it each.
#include "pavane/axes/dialogs/AMapDisplayDlg.h"
#include "pavane/axes/dialogs/BeamControls.h"
#include "pavane/axes/dialogs/DisplayPage.h"
#include "pavane/images/palettes.h"
#include "pavane/resources/map_display_dialog.h"
#include "pavane/resources/map_display_messages.h"
#include "pavane/resources/play_messages.h"
#include "pavane/windows/controls/color_picture.h"
#include "platform/color_dialog.h"
#include "platform/controls.h"
#include "tessel/value_text.h"

#include <algorithm>
#include <cmath>
#include <memory>

namespace pavane
{

namespace
{

constexpr int shownDigits = 6;
/// Pictures of lines are made for fine screens.
constexpr int pictureRatio = 2;

int isBlank(const CString& text) { return text.find_first_not_of(' ') == CString::npos; }

/// A text that was written for a number stands for it, with the digits that it does not show.
int readNumber(const CString& text, double shown, double& value)
{
    double read = 0;
    if (!stoval(text, read) || !std::isfinite(read))
        return 0;
    value = text == valToStr(shown, shownDigits) ? shown : read;
    return 1;
}

class ColoursPage : public DisplayPage
{
public:
    explicit ColoursPage(AMapDisplayDlg& sheet)
        : DisplayPage(sheet, displayColoursPage, DisplayPart::colours)
    {
    }

protected:
    void make() override
    {
        addLines(IDC_COLOURS_SCALE, scaleTexts);
        AArray<COLORREF> colours;
        add(sharedPaletteText, {});
        const AObjArray<CString> names = PaletteNames();
        for (int i = 0; i < names.count(); ++i)
            if (GetPaletteColors(names(i), colours))
                add(names(i), {colours.lpArray(), colours.lpArray() + colours.count()});
    }

    void show(const MapDisplay& display) override
    {
        const ColorLook& look = display.colours;
        const int isRange = look.range.min < look.range.max;
        choose(IDC_COLOURS_SCALE, static_cast<int>(look.scale));
        SetDlgItemText(IDC_COLOURS_LOW,
                       isRange ? valToStr(look.range.min, shownDigits) : std::string());
        SetDlgItemText(IDC_COLOURS_HIGH,
                       isRange ? valToStr(look.range.max, shownDigits) : std::string());
        SetDlgItemText(IDC_COLOURS_CONTRAST, valToStr(look.play.contrast, shownDigits));
        SetDlgItemText(IDC_COLOURS_BIAS, valToStr(look.play.bias, shownDigits));
        SetDlgItemText(IDC_COLOURS_GAMMA, valToStr(look.play.gamma, shownDigits));
        setChecked(IDC_COLOURS_INVERT, look.play.invert);
        const auto found = std::find(palettes_.begin(), palettes_.end(), look.colours);
        int line = static_cast<int>(found - palettes_.begin());
        if (found == palettes_.end())
            add(ownPaletteText, look.colours);
        choose(IDC_COLOURS_PALETTE, line);
    }

    int take(MapDisplay& display, CString& error, unsigned& faulty) const override
    {
        ColorLook& look = display.colours;
        const CString low = GetDlgItemText(IDC_COLOURS_LOW);
        const CString high = GetDlgItemText(IDC_COLOURS_HIGH);
        TMnMx range;
        const struct {
            unsigned id;
            double shown;
            double& value;
        } fields[] = {{IDC_COLOURS_CONTRAST, look.play.contrast, look.play.contrast},
                      {IDC_COLOURS_BIAS, look.play.bias, look.play.bias},
                      {IDC_COLOURS_GAMMA, look.play.gamma, look.play.gamma},
                      {IDC_COLOURS_LOW, look.range.min, range.min},
                      {IDC_COLOURS_HIGH, look.range.max, range.max}};
        const std::size_t count = isBlank(low) && isBlank(high) ? 3 : 5;
        for (std::size_t i = 0; i < count; ++i)
            if (!readNumber(GetDlgItemText(fields[i].id), fields[i].shown, fields[i].value))
                return faulty = fields[i].id, error = displayNoNumberText, 0;
        faulty = look.play.isUsable() ? IDC_COLOURS_LOW : IDC_COLOURS_GAMMA;
        look.range = range;
        look.play.invert = isChecked(IDC_COLOURS_INVERT);
        look.scale = static_cast<MapScaleKind>(std::max(0, choice(IDC_COLOURS_SCALE)));
        const int palette = choice(IDC_COLOURS_PALETTE);
        if (palette >= 0 && palette < static_cast<int>(palettes_.size()))
            look.colours = palettes_[static_cast<std::size_t>(palette)];
        return 1;
    }

private:
    void add(const CString& name, const std::vector<COLORREF>& colours)
    {
        CComboBox* const list = combo(IDC_COLOURS_PALETTE);
        if (!list)
            return;
        const int line = list->AddString(name);
        (void)list->SetItemPicture(line, colorPicture(colours, pictureRatio), pictureRatio);
        palettes_.push_back(colours);
    }

    std::vector<std::vector<COLORREF>> palettes_;  ///< by line; the first: that of all maps
};

class ContoursPage : public DisplayPage
{
public:
    explicit ContoursPage(AMapDisplayDlg& sheet)
        : DisplayPage(sheet, displayContoursPage, DisplayPart::contours)
    {
    }

protected:
    void make() override
    {
        addLines(IDC_CONTOURS_UNIT, levelUnitTexts);
        liftLimit(IDC_CONTOURS_LEVELS);
        add(automaticColourText, CLR_INVALID);
        constexpr struct {
            const char* name;
            COLORREF color;
        } named[] = {{"Black", RGB(0, 0, 0)},    {"White", RGB(255, 255, 255)},
                     {"Red", RGB(255, 0, 0)},    {"Green", RGB(0, 160, 0)},
                     {"Blue", RGB(0, 0, 255)},   {"Yellow", RGB(255, 255, 0)},
                     {"Cyan", RGB(0, 255, 255)}, {"Magenta", RGB(255, 0, 255)}};
        for (const auto& each : named)
            add(each.name, each.color);
    }

    void show(const MapDisplay& display) override
    {
        const ContourLook& look = display.contours;
        const int isNone = look.levels.unit != LevelUnit::automatic && look.levels.factors.empty();
        const CString text = look.levels.text();
        const std::size_t colon = text.find(':');
        choose(IDC_CONTOURS_UNIT, isNone ? noneLine : static_cast<int>(look.levels.unit));
        SetDlgItemText(IDC_CONTOURS_LEVELS,
                       colon == CString::npos ? CString() : text.substr(colon + 1));
        chooseColour(look.color);
        SetDlgItemText(IDC_CONTOURS_WIDTH, std::to_string(look.width));
        enableLevels();
    }

    int take(MapDisplay& display, CString& error, unsigned& faulty) const override
    {
        constexpr const char* prefixes[] = {"", "abs:", "peak:", "sigma:"};
        ContourLook& look = display.contours;
        const int unit = choice(IDC_CONTOURS_UNIT);
        if (unit == noneLine)
            look.levels = {LevelUnit::absolute, {}};
        else if (unit < 1)
            look.levels = {};
        else if (!look.levels.read(prefixes[unit] + GetDlgItemText(IDC_CONTOURS_LEVELS)))
            return faulty = IDC_CONTOURS_LEVELS, error = displayLevelsText, 0;
        faulty = IDC_CONTOURS_WIDTH;
        if (!stoval(GetDlgItemText(IDC_CONTOURS_WIDTH), look.width))
            return error = displayWidthText, 0;
        const int colour = choice(IDC_CONTOURS_COLOUR);
        if (colour >= 0 && colour < static_cast<int>(colours_.size()))
            look.color = colours_[static_cast<std::size_t>(colour)];
        return 1;
    }

    int isChange(unsigned id, unsigned code) override
    {
        if (id == IDC_CONTOURS_MORE)
            return code == BN_CLICKED && askColour();
        const int is = DisplayPage::isChange(id, code);
        if (is && id == IDC_CONTOURS_UNIT)
            enableLevels();
        return is;
    }

private:
    static constexpr int noneLine = 4;

    void enableLevels()
    {
        const int unit = choice(IDC_CONTOURS_UNIT);
        if (CWnd* const levels = GetDlgItem(IDC_CONTOURS_LEVELS))
            (void)levels->EnableWindow(unit > 0 && unit < noneLine);
    }

    void add(const CString& name, COLORREF color)
    {
        CComboBox* const list = combo(IDC_CONTOURS_COLOUR);
        if (!list)
            return;
        const int line = list->AddString(name);
        if (color != CLR_INVALID)
            (void)list->SetItemPicture(line, colorPicture({color}, pictureRatio), pictureRatio);
        colours_.push_back(color);
    }

    void chooseColour(COLORREF color)
    {
        const auto found = std::find(colours_.begin(), colours_.end(), color);
        const int line = static_cast<int>(found - colours_.begin());
        if (found == colours_.end())
            add(ownColourText, color);
        choose(IDC_CONTOURS_COLOUR, line);
    }

    int askColour()
    {
        const int chosen = choice(IDC_CONTOURS_COLOUR);
        COLORREF color = chosen > 0 && chosen < static_cast<int>(colours_.size())
                             ? colours_[static_cast<std::size_t>(chosen)]
                             : RGB(0, 0, 0);
        if (!AskColor(color, contourColourTitle, this) || !GetSafeHwnd())
            return 0;
        chooseColour(color);
        return 1;
    }

    std::vector<COLORREF> colours_;  ///< by line
};

class BeamPage : public DisplayPage
{
public:
    explicit BeamPage(AMapDisplayDlg& sheet)
        : DisplayPage(sheet, displayBeamPage, DisplayPart::beam), controls_(*this)
    {
        controls_.setArcseconds(sheet.arcseconds());
    }

protected:
    void make() override
    {
        controls_.setFinder(sheet().dirtyBeam());
        controls_.make();
    }
    void show(const MapDisplay& display) override { controls_.show(display); }
    int take(MapDisplay& display, CString& error, unsigned& faulty) const override
    {
        return controls_.take(display, error, faulty);
    }
    int OnCommand(unsigned id, unsigned code, CWnd* control) override
    {
        CString error;
        switch (controls_.command(id, code, error)) {
        case BeamControls::Answer::changed:
            return changed(), 1;
        case BeamControls::Answer::done:
            return note(error), 1;
        default:
            // not the base's: the controls of a beam tell what changes it
            // NOLINTNEXTLINE(bugprone-parent-virtual-call)
            return CPropertyPage::OnCommand(id, code, control);
        }
    }

private:
    BeamControls controls_;
};

class AxesPage : public DisplayPage
{
public:
    explicit AxesPage(AMapDisplayDlg& sheet)
        : DisplayPage(sheet, displayAxesPage, DisplayPart::axes)
    {
    }

protected:
    void make() override
    {
        for (const unsigned id :
             {IDC_AXES_HEADER, IDC_AXES_X, IDC_AXES_Y, IDC_AXES_VALUE, IDC_AXES_UNIT})
            liftLimit(id);
    }

    void show(const MapDisplay& display) override
    {
        setChecked(IDC_AXES_GRID_X, display.axes.gridX);
        setChecked(IDC_AXES_GRID_Y, display.axes.gridY);
        setChecked(IDC_AXES_INSIDE, display.axes.ticksInside);
        setChecked(IDC_AXES_MINOR, display.axes.minorTicks);
        SetDlgItemText(IDC_AXES_HEADER, display.titles.header);
        if (auto* const header = dynamic_cast<CEdit*>(GetDlgItem(IDC_AXES_HEADER)))
            header->SetSel(0, 0);  // a long one is read from its start
        SetDlgItemText(IDC_AXES_X, display.titles.x);
        SetDlgItemText(IDC_AXES_Y, display.titles.y);
        SetDlgItemText(IDC_AXES_VALUE, display.titles.value);
        SetDlgItemText(IDC_AXES_UNIT, display.titles.unit);
        enableUsual(display.titles.isOwnHeader);
    }

    int take(MapDisplay& display, CString& /*error*/, unsigned& faulty) const override
    {
        faulty = IDC_AXES_HEADER;
        display.axes = {isChecked(IDC_AXES_GRID_X), isChecked(IDC_AXES_GRID_Y),
                        isChecked(IDC_AXES_INSIDE), isChecked(IDC_AXES_MINOR)};
        MapTitles& titles = display.titles;
        // the usual one that nobody touched may be that of another plane by now
        if (const CString header = GetDlgItemText(IDC_AXES_HEADER); header != told().titles.header)
            titles.isOwnHeader = 1, titles.header = header;
        titles.x = GetDlgItemText(IDC_AXES_X);
        titles.y = GetDlgItemText(IDC_AXES_Y);
        titles.value = GetDlgItemText(IDC_AXES_VALUE);
        const CString unit = GetDlgItemText(IDC_AXES_UNIT);
        if (unit != titles.unit)
            titles.isPlainValue = isBlank(unit);
        titles.unit = titles.isPlainValue ? CString() : unit;
        enableUsual(titles.isOwnHeader);
        return 1;
    }

    int OnCommand(unsigned id, unsigned code, CWnd* control) override
    {
        if (id != IDC_AXES_USUAL || code != BN_CLICKED)
            return DisplayPage::OnCommand(id, code, control);
        MapDisplay display = sheet().GetDisplay();
        display.titles.isOwnHeader = 0;
        SetModified();
        const HWND self = GetSafeHwnd();
        sheet().Show(display);
        if (FromHandle(self) == this)
            refresh();
        return 1;
    }

private:
    /// The usual header is there for one that was typed.
    void enableUsual(int on) const
    {
        if (CWnd* const usual = GetDlgItem(IDC_AXES_USUAL))
            (void)usual->EnableWindow(on);
    }
};

}  // namespace

std::unique_ptr<DisplayPage> coloursPage(AMapDisplayDlg& sheet)
{
    return std::make_unique<ColoursPage>(sheet);
}

std::unique_ptr<DisplayPage> contoursPage(AMapDisplayDlg& sheet)
{
    return std::make_unique<ContoursPage>(sheet);
}

std::unique_ptr<DisplayPage> beamPage(AMapDisplayDlg& sheet)
{
    return std::make_unique<BeamPage>(sheet);
}

std::unique_ptr<DisplayPage> axesPage(AMapDisplayDlg& sheet)
{
    return std::make_unique<AxesPage>(sheet);
}

}  // namespace pavane
