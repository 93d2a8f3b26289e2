#include "platform/picture.h"
#include "platform/preview_dc.h"
#include "platform/printer_dc.h"

#include <chrono>
#include <cmath>
#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <iterator>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

namespace pavane
{

namespace
{

namespace fs = std::filesystem;

constexpr CSize a4{21000, 29700};

/// A folder of its own for each test, for temporary files too.
class Printing : public testing::Test
{
protected:
    Printing() : folder(fs::temp_directory_path() / ("pavane-printing-" + std::to_string(getpid())))
    {
        fs::create_directories(folder);
        setenv("TMPDIR", folder.c_str(), 1);
    }
    ~Printing() override
    {
        unsetenv("TMPDIR");
        fs::remove_all(folder);
    }
    CString path(const char* name) const { return (folder / name).string(); }
    int files() const
    {
        return static_cast<int>(
            std::distance(fs::directory_iterator(folder), fs::directory_iterator()));
    }
    /// What a program says about a file.
    CString said(const CString& program, const CString& file, const CString& more = "") const
    {
        const CString out = path("said");
        const int status =
            std::system((program + " '" + file + "' " + more + " > '" + out + "' 2>&1").c_str());
        EXPECT_EQ(status, 0) << program;
        std::ifstream in(out, std::ios::binary);
        CString text{std::istreambuf_iterator<char>(in), {}};
        fs::remove(out);
        return text;
    }
    fs::path folder;
};

int answers;  ///< left before the job is stopped
int countedAnswer(CDC&) { return answers-- > 0; }

/// Bounding box of what is darker than half, in millimetres, of a part of a picture.
struct Ink {
    double left = 1e9, top = 1e9, right = -1, bottom = -1;
};
template <class Grey>
Ink inkOf(const Grey& grey, int left, int top, int right, int bottom, double dotsPerMm)
{
    Ink ink;
    for (int y = top; y < bottom; ++y) {
        for (int x = left; x < right; ++x) {
            if (grey(x, y) >= 128)
                continue;
            ink.left = std::min(ink.left, x / dotsPerMm);
            ink.top = std::min(ink.top, y / dotsPerMm);
            ink.right = std::max(ink.right, (x + 1) / dotsPerMm);
            ink.bottom = std::max(ink.bottom, (y + 1) / dotsPerMm);
        }
    }
    return ink;
}

/// Things to measure, one in each of twelve cells of 50 x 50 mm, for any resolution.
void drawMarks(CDC& dc)
{
    const double mm = dc.GetDeviceCaps(LOGPIXELSX) / 25.4;
    const auto at = [&](double v) { return static_cast<int>(std::lround(v * mm)); };
    dc.SetMapMode(MM_ANISOTROPIC);
    dc.SetWindowExt(1000, 1000);
    dc.SetViewportExt(1000, 1000);
    dc.SetViewportOrg(at(10), at(20));
    CPen pen(PS_SOLID, at(0.5), 0);
    CBrush black(COLORREF{0});
    dc.SelectObject(&pen);
    dc.TextOut(at(5), at(5), "Declination");
    dc.Rectangle(at(60), at(10), at(80), at(40));
    const CPoint corner[] = {{at(110), at(10)}, {at(140), at(40)}, {at(110), at(40)}};
    dc.Polyline(corner, 3);
    dc.FillRect({at(5), at(60), at(45), at(90)}, &black);
    LOGFONT font;
    font.lfHeight = at(8);
    font.lfEscapement = 900;
    font.lfFaceName = "Arial Bold";
    CFont turned;
    turned.CreateFontIndirect(font);
    CFont* const before = dc.SelectObject(&turned);
    dc.TextOut(at(60), at(95), "1.4 GHz");
    dc.SelectObject(before);
    dc.Ellipse(at(110), at(60), at(140), at(90));
    const int saved = dc.SaveDC();
    dc.IntersectClipRect({at(10), at(110), at(40), at(140)});
    dc.FillRect({at(0), at(100), at(49), at(149)}, &black);
    dc.RestoreDC(saved);
    CRect words(at(55), at(105), at(95), at(145));
    dc.DrawText("Peak flux density of the compact component in mJy per beam", words, DT_WORDBREAK);
    CBrush hatch(HS_DIAGCROSS, 0);
    dc.SelectObject(&hatch);
    dc.Rectangle(at(110), at(110), at(140), at(140));
    const unsigned char header[44] = {40, 0, 0, 0, 2, 0, 0, 0, 1, 0, 0, 0, 1, 0, 32};
    const unsigned char pixels[8] = {};
    dc.StretchDIBits(at(5), at(155), at(30), at(20), 0, 0, 2, 1, pixels, header, DIB_RGB_COLORS,
                     SRCCOPY);
    font.lfEscapement = 0;
    font.lfUnderline = 1;
    CFont underlined;
    underlined.CreateFontIndirect(font);
    dc.SelectObject(&underlined);
    dc.TextOut(at(55), at(160), "Stokes I");
    dc.SelectObject(before);
    CRgn corners;
    const CPoint triangle[] = {{at(125), at(175)}, {at(155), at(215)}, {at(125), at(215)}};
    corners.CreatePolygonRgn(triangle, 3, WINDING);
    dc.SelectClipRgn(&corners);
    CPen dashed(PS_DASH, at(2), 0);
    dc.SelectObject(&dashed);
    const CPointF across[] = {{1.0 * at(100), 1.0 * at(185)}, {1.0 * at(149), 1.0 * at(186)}};
    dc.PolylineF(across, 2);
    dc.SelectClipRgn(nullptr);
    dc.SelectStockObject(WHITE_BRUSH);
    dc.SetMapMode(MM_TEXT);
    dc.SetViewportOrg(0, 0);
}

}  // namespace

TEST_F(Printing, ContextsHaveTheCapsOfThePaper)
{
    const struct {
        CSize sheet;
        int dpi, x, y, mmX, mmY, font;
    } table[] = {{a4, 600, 4960, 7016, 210, 297, 100},
                 {a4, 300, 2480, 3508, 210, 297, 50},
                 {a4, 1200, 9922, 14032, 210, 297, 200},
                 {a4, 150, 1240, 1754, 210, 297, 25},
                 {{29700, 21000}, 96, 1122, 794, 297, 210, 16},
                 {a4, 0, 4960, 7016, 210, 297, 100},
                 {{21590, 27940}, 600, 5100, 6600, 216, 279, 100}};
    for (const auto& row : table) {
        CPrinterDC dc(row.sheet, row.dpi);
        CPicture picture(100, 100);
        const auto preview = CreatePreviewDC(picture, dc, {0, 0, 50, 70});
        for (const CDC* each :
             {static_cast<const CDC*>(&dc), static_cast<const CDC*>(preview.get())}) {
            EXPECT_EQ(each->GetDeviceCaps(HORZRES), row.x);
            EXPECT_EQ(each->GetDeviceCaps(PHYSICALHEIGHT), row.y);
            EXPECT_EQ(each->GetDeviceCaps(HORZSIZE), row.mmX);
            EXPECT_EQ(each->GetDeviceCaps(VERTSIZE), row.mmY);
            EXPECT_EQ(each->GetDeviceCaps(LOGPIXELSY), row.dpi ? row.dpi : 600);
            EXPECT_EQ(each->GetDeviceCaps(PHYSICALOFFSETX), 0);
            TEXTMETRIC metrics;
            each->GetTextMetrics(metrics);
            EXPECT_EQ(metrics.tmHeight, row.font);
            EXPECT_EQ(each->GetTextExtent("Right ascension").cx,
                      dc.GetTextExtent("Right ascension").cx);
        }
    }
    CString error;
    CPrinterDC none(CSize{0, 100});
    EXPECT_FALSE(none.StartDoc("", path("a.pdf"), error));
    EXPECT_NE(error, "");
    EXPECT_FALSE(none.ResetDC({-1, 5}));
}

TEST_F(Printing, PagesOfAnySizeHoldTheirTexts)
{
    CPrinterDC dc(a4);
    CString error;
    dc.TextOut(0, 0, "at rest");
    ASSERT_TRUE(dc.StartDoc("Source \"3C 84\" \xC2\xB5 (1)", path("a.pdf"), error)) << error;
    EXPECT_FALSE(dc.StartDoc("", path("b.pdf"), error));
    const CSize sheets[] = {a4, {29700, 21000}, {118900, 84100}};
    for (int i = 0; i < 3; ++i) {
        ASSERT_TRUE(dc.ResetDC(sheets[i]));
        ASSERT_TRUE(dc.StartPage()) << dc.lastError();
        EXPECT_FALSE(dc.ResetDC(a4)) << "of the open page";
        dc.IntersectClipRect({0, 0, dc.GetDeviceCaps(HORZRES), 1000});
        dc.TextOut(300, 300, "Page \xCE\xB1 number " + std::to_string(i + 1));
        dc.TextOut(300, 600, "\xE4\xB8\xAD fi \xC3\x85");  // one letter of another font
        dc.SelectClipRgn(nullptr);
        EXPECT_TRUE(dc.EndPage()) << dc.lastError();
        dc.TextOut(0, 0, "between");
    }
    EXPECT_EQ(files(), 0) << "no name before the end";
    ASSERT_TRUE(dc.EndDoc(error)) << error;
    EXPECT_EQ(files(), 1);
    const CString about = said("pdfinfo -l 3", path("a.pdf"));
    for (const char* part : {"Source \"3C 84\" \xC2\xB5 (1)", "Pages:           3"})
        EXPECT_NE(about.find(part), CString::npos) << about;
    for (int i = 0; i < 3; ++i) {
        const CString start = "Page    " + std::to_string(i + 1) + " size:";
        double x = 0, y = 0;
        const std::size_t at = std::min(about.find(start), about.size()) + start.size();
        ASSERT_EQ(std::sscanf(about.substr(at).c_str(), "%lf x %lf", &x, &y), 2) << about;
        EXPECT_NEAR(x * 2540 / 72, sheets[i].cx, 20);
        EXPECT_NEAR(y * 2540 / 72, sheets[i].cy, 20);
    }
    const CString text = said("pdftotext", path("a.pdf"), "-");
    for (const char* part : {"\xE4\xB8\xAD fi \xC3\x85", "Page \xCE\xB1 number 1",
                             "Page \xCE\xB1 number 2\n", "number 3"})
        EXPECT_NE(text.find(part), CString::npos) << part;
    for (const char* part : {"at rest", "between"})
        EXPECT_EQ(text.find(part), CString::npos) << part;
    CString fonts = said("pdffonts", path("a.pdf"));
    EXPECT_NE(fonts.find("CID TrueType      Identity-H       yes"), CString::npos) << fonts;
}

TEST_F(Printing, LeavesNothingWhenItFailsOrIsStopped)
{
    std::ofstream(path("old.pdf")) << "old";
    const std::vector<CPointF> curve = [] {
        std::vector<CPointF> made(1000000);
        for (std::size_t i = 0; i < made.size(); ++i)
            made[i] = {double(i * 7919 % 4960), double(i * 104729 % 7016)};
        return made;
    }();
    rlimit before;
    getrlimit(RLIMIT_FSIZE, &before);
    const auto handler = std::signal(SIGXFSZ, SIG_IGN);
    enum Way { stop, abort, forget, fullDisk, missingFolder, folderItself, below };
    for (const Way way : {stop, abort, forget, fullDisk, missingFolder, folderItself, below}) {
        CPrinterDC dc(a4);
        answers = 2;
        if (way == stop)
            dc.SetAbortProc(countedAnswer);
        CString error;
        const CString file = way == missingFolder  ? path("none/a.pdf")
                             : way == folderItself ? folder.string()
                             : way == below        ? path("old.pdf/a.pdf")
                                                   : path("old.pdf");
        if (!dc.StartDoc("t", file, error)) {
            EXPECT_GE(way, missingFolder);
            EXPECT_EQ(error, dc.lastError());
            EXPECT_NE(error, "");
            continue;
        }
        EXPECT_LT(way, missingFolder);
        rlimit small = before;
        small.rlim_cur = way == fullDisk ? 65536 : before.rlim_cur;
        setrlimit(RLIMIT_FSIZE, &small);
        EXPECT_TRUE(dc.StartPage());
        for (int i = 0; i < (way == stop ? 50 : 1) && !dc.isAborted(); ++i)
            dc.PolylineF(curve.data(), static_cast<int>(curve.size() / (way == stop ? 1 : 50)));
        EXPECT_EQ(dc.isAborted(), way == stop);
        const int ended = way == abort ? dc.AbortDoc() : way == forget ? 0 : dc.EndDoc(error);
        setrlimit(RLIMIT_FSIZE, &before);
        EXPECT_EQ(ended, way == abort) << way;
        EXPECT_EQ(error.empty(), way == abort || way == forget) << way;
    }
    std::signal(SIGXFSZ, handler);
    EXPECT_EQ(files(), 1);
    std::ifstream in(path("old.pdf"));
    EXPECT_TRUE(CString(std::istreambuf_iterator<char>(in), {}) == "old");
}

TEST_F(Printing, KeepsADocumentForAQueueUntilItsProgramIsGone)
{
    const auto print = [&](CString& kept) {
        CPrinterDC dc(a4, 300);
        CString error;
        return dc.StartDoc("t", "", error) && dc.StartPage() && dc.TextOut(90, 90, "queued") &&
               dc.EndPage() && dc.EndDocKeep(kept, error);
    };
    const pid_t child = fork();
    if (child == 0) {
        CString kept;
        _exit(print(kept) ? 7 : 8);
    }
    int status = 0;
    waitpid(child, &status, 0);
    ASSERT_EQ(WEXITSTATUS(status), 7);
    ASSERT_EQ(files(), 1) << "what a killed program left";
    CString first, second, why;
    {
        CPrinterDC other(a4);
        EXPECT_TRUE(other.StartDoc("t", path("a.pdf"), why)) << why;
        EXPECT_EQ(files(), 0) << "the other one is swept away";
        EXPECT_FALSE(other.StartDoc("t", "", why));
        EXPECT_EQ(why, "A document is open");
    }
    ASSERT_TRUE(print(first));
    EXPECT_EQ(files(), 1);
    EXPECT_NE(said("pdftotext", first, "-").find("queued"), CString::npos);
    ASSERT_TRUE(print(second));
    EXPECT_EQ(files(), 2) << "its own stay";
    CString error, none = "x";
    CPrinterDC dc(a4);
    EXPECT_FALSE(dc.EndDocKeep(none, error));
    EXPECT_EQ(none, "");
}

TEST_F(Printing, JobsThatAreKilledLeaveNoFileAndNoHalfOfOne)
{
    for (int i = 0; i < 8; ++i) {
        const pid_t child = fork();
        if (child == 0) {
            for (;;) {
                CPrinterDC dc(a4);
                CString error;
                dc.StartDoc("t", path("a.pdf"), error);
                for (int page = 0; page < 5; ++page) {
                    dc.StartPage();
                    dc.TextOut(300, 300, "killed");
                    dc.EndPage();
                }
                dc.EndDoc(error);
            }
        }
        usleep(static_cast<useconds_t>(1000 + i * 4567));
        kill(child, SIGKILL);
        waitpid(child, nullptr, 0);
        if (fs::exists(path("a.pdf"))) {
            EXPECT_NE(said("pdfinfo", path("a.pdf")).find("Pages:           5"), CString::npos);
        }
    }
    CPrinterDC dc(a4);
    CString error;
    EXPECT_TRUE(dc.StartDoc("t", path("a.pdf"), error) && dc.EndDoc(error)) << error;
    EXPECT_EQ(files(), 1);
}

TEST_F(Printing, EqualPagesAreEqualBytesAndPiecesOfCurvesShowNoSeams)
{
    const auto print = [&](const char* name, int points) {
        CPrinterDC dc(CSize{10000, 10000}, 600);
        CString error;
        EXPECT_TRUE(dc.StartDoc("t", path(name), error) && dc.StartPage()) << error;
        CPen dashes(PS_DASHDOT, 8, RGB(90, 0, 0));
        dc.SelectObject(&dashes);
        std::vector<CPointF> line;
        for (int i = 0; i < points; ++i)
            line.push_back({2300.0 * i / (points - 1), 400.0 + 900.0 * i / (points - 1)});
        dc.PolylineF(line.data(), points);
        EXPECT_TRUE(dc.EndPage() && dc.EndDoc(error)) << error;
        return said("cat", path(name));
    };
    EXPECT_TRUE(print("a.pdf", 2) == print("b.pdf", 2));
    EXPECT_FALSE(print("b.pdf", 50000) == print("a.pdf", 2));
    const CString whole = said("pdftoppm -r 150 -gray", path("a.pdf"));
    const CString pieces = said("pdftoppm -r 150 -gray", path("b.pdf"));
    ASSERT_EQ(whole.size(), pieces.size());
    int different = 0;
    for (std::size_t i = 0; i < whole.size(); ++i)
        different += std::abs(static_cast<unsigned char>(whole[i]) -
                              static_cast<unsigned char>(pieces[i])) > 64;
    EXPECT_LT(different, 4);
}

TEST_F(Printing, APageAndItsPreviewAgree)
{
    constexpr int seen = 300;  // dots per inch of both pictures
    constexpr double dotsPerMm = seen / 25.4;
    for (const int dpi : {150, 300, 600, 1200}) {
        CPrinterDC dc(CSize{16934, 23709}, dpi);
        CString error;
        ASSERT_TRUE(dc.StartDoc("t", path("a.pdf"), error)) << error;
        dc.StartPage();
        drawMarks(dc);
        dc.EndPage();
        ASSERT_TRUE(dc.EndDoc(error)) << error;
        const CString pgm = said("pdftoppm -r 300 -gray", path("a.pdf"));
        CPicture picture(2000, 2800);
        const auto preview = CreatePreviewDC(picture, dc, {0, 0, 2000, 2800});
        drawMarks(*preview);
        int width = 0, height = 0, header = 0;
        ASSERT_EQ(std::sscanf(pgm.c_str(), "P5 %d %d 255%n", &width, &height, &header), 2);
        const auto onPage = [&](int x, int y) {
            return static_cast<unsigned char>(
                pgm[static_cast<std::size_t>(header + 1 + y * width + x)]);
        };
        const auto onPreview = [&](int x, int y) { return int(picture.row(y)[x] & 0xFF); };
        for (int cell = 0; cell < 12; ++cell) {
            const int left = static_cast<int>((10 + cell % 3 * 50) * dotsPerMm);
            const int top = static_cast<int>((20 + cell / 3 * 50) * dotsPerMm);
            const int side = static_cast<int>(50 * dotsPerMm);
            const Ink a = inkOf(onPage, left, top, left + side, top + side, dotsPerMm);
            const Ink b = inkOf(onPreview, left, top, left + side, top + side, dotsPerMm);
            ASSERT_GT(a.right, 0) << "cell " << cell;
            for (const auto side : {&Ink::left, &Ink::top, &Ink::right, &Ink::bottom})
                EXPECT_NEAR(a.*side, b.*side, 0.15) << "cell " << cell << " at " << dpi;
        }
    }
}

}  // namespace pavane
