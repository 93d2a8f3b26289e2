// Maps made of the one that is shown, by their dialogs. What is in them stands beside numpy in
// tests/apps/made_maps.py and position_velocity.py.
#include "apps/view/cubes/FieldDialog.h"
#include "pavane/axes/A2DAxis.h"
#include "platform/controls.h"
#include "tests/apps/view_window_fixture.h"

#include <bit>

namespace pavane
{

namespace
{

/// What is typed into the fields of the next dialog; nothing for a user who cancels.
std::vector<std::pair<unsigned, std::string>> typed;
CString dialogTitle;

int fillDialog(CDialog& dialog)
{
    dialogTitle = dialog.GetWindowText();
    for (const auto& [field, text] : typed) {
        CWnd* const control = dialog.GetDlgItem(firstDialogField + field);
        if (auto* const box = dynamic_cast<CComboBox*>(control))
            (void)box->SelectString(-1, text);
        else if (auto* const check = dynamic_cast<CButton*>(control))
            check->SetCheck(text == "1");
        else
            dialog.SetDlgItemText(firstDialogField + field, text);
    }
    if (!typed.empty())
        dialog.SendMessage(WM_COMMAND, IDOK, 0);
    return IDCANCEL;  // unless it has ended
}

/// I, Q and U at two frequencies, 24 x 16 cells; Q and U are 3 and 4 where I is 10.
void writeStokesCube(const std::string& file)
{
    std::string bytes;
    for (const char* card : {"SIMPLE  = T",
                             "BITPIX  = -32",
                             "NAXIS   = 4",
                             "NAXIS1  = 24",
                             "NAXIS2  = 16",
                             "NAXIS3  = 2",
                             "NAXIS4  = 3",
                             "CTYPE1  = 'RA---SIN'",
                             "CTYPE2  = 'DEC--SIN'",
                             "CTYPE3  = 'FREQ'",
                             "CTYPE4  = 'STOKES'",
                             "CRVAL1  = 150.0",
                             "CRVAL2  = 30.0",
                             "CRVAL3  = 5.0E9",
                             "CRVAL4  = 1.0",
                             "CRPIX1  = 12.0",
                             "CRPIX2  = 8.0",
                             "CRPIX3  = 1.0",
                             "CRPIX4  = 1.0",
                             "CDELT1  = -1.0E-7",
                             "CDELT2  = 1.0E-7",
                             "CDELT3  = 1.0E8",
                             "CDELT4  = 1.0",
                             "BMAJ    = 3.0E-7",
                             "BMIN    = 2.0E-7",
                             "BPA     = 20.0",
                             "BUNIT   = 'JY/BEAM'",
                             "RESTFRQ = 5.0E9",
                             "END"}) {
        bytes += card;
        bytes.append(80 - bytes.size() % 80, ' ');
    }
    bytes.append(2880 - bytes.size() % 2880, ' ');
    for (int cell = 0; cell < 6 * 384; ++cell) {
        const int stokes = cell / 768;
        const int isOn = cell % 24 > 7 && cell % 24 < 15;
        const float noise = 0.01f * static_cast<float>((cell * 7919) % 13 - 6);
        const float value = noise + static_cast<float>(isOn ? (stokes ? stokes + 2 : 10) : 0);
        for (const int shift : {24, 16, 8, 0})
            bytes += static_cast<char>(std::bit_cast<std::uint32_t>(value) >> shift & 0xFF);
    }
    bytes.append((2880 - bytes.size() % 2880) % 2880, '\0');
    std::ofstream(file, std::ios::binary) << bytes;
}

class ViewMakes : public ViewWindow
{
protected:
    ViewMakes()
    {
        SetDialogAnswer(fillDialog);
        typed.clear();
        writeStokesCube(path("cube.fits"));
    }
    /// What the dialog of a command does with these fields; the maps of the window then.
    int make(MainWindow& window, unsigned id,
             const std::vector<std::pair<unsigned, std::string>>& fields, const std::string& out)
    {
        typed = fields;
        fileAnswer = out.empty() ? "" : path(out);
        said.clear();
        dialogTitle.clear();
        window.SendMessage(WM_COMMAND, id, 0);
        return window.maps().count();
    }
};

}  // namespace

TEST_F(ViewMakes, EachDialogMakesAFileThatIsShown)
{
    MainWindow window;
    ASSERT_TRUE(window.Create(ViewOptions()));
    ASSERT_TRUE(window.OpenMap(path("cube.fits"), 0));
    window.Show();
    const struct {
        unsigned id;
        std::vector<std::pair<unsigned, std::string>> fields;
        const char* out;
        double value;  ///< of the cell at row 8, column 11
    } made[] = {
        {idMakeMoment, {{1, "0-1"}, {2, "0"}, {3, "1"}}, "m.fits", 10 * 2 * 5995.8},
        {idMakeVelocity, {{0, "1,9,20,9,3 greatest"}, {1, "0-1"}}, "pv.fits", 0},
        {idMakeSmooth,
         {{0, "2"}, {1, "2"}, {2, "0"}},
         "s.fits",
         10 * 4 / (1.08 * 0.72)},  // but for its edges
        {idMakePolarisation, {{0, "Polarised intensity"}, {1, "3"}, {2, ""}}, "p.fits", 5},
        {idMakePolarisation, {{0, "Degree of polarisation"}}, "d.fits", 0.5},
    };
    int maps = 1;
    for (const auto& m : made) {
        ASSERT_TRUE(window.ChooseMap(0));
        ASSERT_EQ(make(window, m.id, m.fields, m.out), ++maps)
            << dialogTitle << (said.empty() ? "" : said.front());
        EXPECT_EQ(window.session().map(), path(m.out));
        if (m.value == 0)
            continue;
        const float cell = window.view().GetMap()->cells().cell(8, 11);
        EXPECT_NEAR(cell / m.value, 1, m.id == idMakeSmooth ? 0.15 : 0.02) << m.out;
    }
    EXPECT_TRUE(fs::exists(path("m.errors.fits")));
    EXPECT_FALSE(fs::exists(path("p.errors.fits")));
    FitsMap map;
    std::string error;
    ASSERT_TRUE(readFitsMap(path("pv.fits"), -1, map, error)) << error;
    EXPECT_EQ(map.cells.rows(), 2);
    EXPECT_EQ(map.cells.columns(), 39);
    EXPECT_EQ(map.header.axes[1].ctype, "VRAD");
    // what was accepted last is proposed
    ASSERT_TRUE(window.ChooseMap(0));
    EXPECT_EQ(make(window, idMakePolarisation, {{1, "3"}}, "again.fits"), ++maps);
    EXPECT_NEAR(window.view().GetMap()->cells().cell(8, 11), 0.5, 0.02);
}

TEST_F(ViewMakes, WhatCannotBeMadeIsSaidAndLeavesNothing)
{
    MainWindow window;
    open(window);
    for (const unsigned id : {idMakeMoment, idMakeVelocity, idMakeSmooth}) {
        EXPECT_EQ(make(window, id, {{0, "1"}}, "none.fits"), 1);
        EXPECT_EQ(dialogTitle, "") << id;  // no cube, no beam: told on the status line
    }
    EXPECT_EQ(make(window, idMakePolarisation, {{1, "3"}}, "none.fits"), 1);
    ASSERT_EQ(said.size(), 1U);
    EXPECT_NE(said[0].find("no plane of Stokes Q"), std::string::npos) << said[0];
    ASSERT_TRUE(window.OpenMap(path("cube.fits"), 0));
    const struct {
        unsigned id;
        std::vector<std::pair<unsigned, std::string>> fields;
        const char *out, *told;
    } bad[] = {{idMakeMoment, {{1, "1-9"}}, "none.fits", "has 6 planes"},
               {idMakeMoment, {{1, "x"}}, "none.fits", "Planes wants"},
               {idMakeMoment, {{1, "0-1"}, {2, "-3"}}, "none.fits", "Clip wants"},
               {idMakeMoment, {{1, "0-1"}}, "cube.fits", "is the map that is open"},
               {idMakeMoment, {{1, "0-1"}}, "", ""},  // no name
               {idMakeMoment, {}, "none.fits", ""},   // no dialog
               {idMakeVelocity, {{0, "1,2,3"}}, "none.fits", "Not a line"},
               {idMakeVelocity, {{0, "90,1,99,1"}}, "none.fits", "lies nowhere"},
               {idMakeSmooth, {{0, "0.1"}, {1, "0.1"}}, "none.fits", "larger than the new one"},
               {idVectors, {{2, "0"}}, "", "The scale is"},
               {idVectors, {{2, "1"}, {3, "q.fits"}}, "", "Stokes-q and stokes-u go together"},
               {idVectors, {{3, path("q.fits")}, {4, path("u.fits")}}, "", "q.fits: "}};
    for (const auto& b : bad) {
        EXPECT_EQ(make(window, b.id, b.fields, b.out), 1);
        EXPECT_EQ(said.size(), *b.told ? 1U : 0U) << b.told;
        EXPECT_TRUE(said.empty() || said[0].find(b.told) != std::string::npos) << said[0];
        EXPECT_FALSE(fs::exists(path("none.fits")));
    }
}

TEST_F(ViewMakes, VectorsFollowThePlanesAndGo)
{
    MainWindow window;
    ASSERT_TRUE(window.Create(ViewOptions()));
    ASSERT_TRUE(window.OpenMap(path("cube.fits"), 0));
    window.Show();
    window.view().UpdateWindow();
    const auto graphs = [&] { return window.view().GetPlot()->childs().count(); };
    const int before = graphs();
    EXPECT_EQ(make(window, idVectors, {{0, "Degree of polarisation"}, {2, "2"}}, ""), 1);
    EXPECT_EQ(dialogTitle, "Vectors of polarisation");
    EXPECT_EQ(said.size(), 0U);
    EXPECT_EQ(graphs(), before + 1);
    const auto status = [&] {
        AccessPart line;
        EXPECT_TRUE(
            const_cast<StatusLine&>(window.statusLine()).GetAccess()->GetAccessPart(0, line));
        return line.value;
    };
    for (const int plane : {1, 2, 0}) {  // plane 2 is Q, which has no degree
        ASSERT_TRUE(window.planeWanted(plane));
        window.view().UpdateWindow();
        EXPECT_EQ(status().find("No vectors") != std::string::npos, plane == 2) << status();
    }
    make(window, idVectors, {}, "");
    EXPECT_EQ(dialogTitle, "");  // they go without a question
    window.view().UpdateWindow();
    EXPECT_EQ(status(), "No vectors of polarisation");
}

}  // namespace pavane
