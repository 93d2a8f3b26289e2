#include "platform/picture.h"
#include "platform/platform.h"

#include <csignal>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <iterator>
#include <random>
#include <sys/resource.h>
#include <unistd.h>

namespace pavane
{

namespace
{

namespace fs = std::filesystem;

/// A folder of its own for each test, gone afterwards.
class OutputFiles : public testing::Test
{
protected:
    OutputFiles() : folder(fs::temp_directory_path() / ("pavane-files-" + std::to_string(getpid())))
    {
        fs::create_directories(folder);
    }
    ~OutputFiles() override { fs::remove_all(folder); }
    CString path(const char* name) const { return (folder / name).string(); }
    static std::string content(const CString& file)
    {
        std::ifstream in(file, std::ios::binary);
        return {std::istreambuf_iterator<char>(in), {}};
    }
    static void drawOn(CDC& dc)
    {
        CPen pen(PS_SOLID, 12, RGB(0, 0, 255));
        dc.SelectObject(&pen);
        dc.Rectangle(120, 120, 1200, 1200);
        dc.TextOut(240, 240, "Flux <&> \xC2\xB5Jy\xFF");
    }
    fs::path folder;
};

std::uint32_t field(const std::string& bytes, std::size_t at)
{
    std::uint32_t v = 0;
    for (std::size_t i = 0; i < 4; ++i)
        v = v << 8 | static_cast<unsigned char>(bytes.at(at + i));
    return v;
}

}  // namespace

TEST_F(OutputFiles, PngHasSizeColoursAndResolution)
{
    CPicture picture(70, 50);
    CString error = "old";
    ASSERT_TRUE(SavePNG(picture, path("a.png"), error, 300)) << error;
    EXPECT_EQ(error, "");
    const std::string png = content(path("a.png"));
    EXPECT_EQ(png.substr(1, 3), "PNG");
    EXPECT_EQ(field(png, 16), 70u);
    EXPECT_EQ(field(png, 20), 50u);
    EXPECT_EQ(png[24], 8);  // bits of a channel
    EXPECT_EQ(png[25], 2);  // red, green and blue, no alpha
    const std::size_t resolution = png.find("pHYs");
    ASSERT_NE(resolution, std::string::npos);
    EXPECT_EQ(field(png, resolution + 4), 11811u);  // pixels per metre
    EXPECT_FALSE(SavePNG(CPicture(), path("b.png"), error));
    EXPECT_NE(error, "");
}

TEST_F(OutputFiles, PdfHasOnePageOfTheSizeAndItsText)
{
    CPageFile page(CPageFile::Format::pdf, 640, 480, "Map \xC2\xB5");
    EXPECT_TRUE(page.dc().IsVector());
    EXPECT_EQ(page.dc().GetDeviceCaps(HORZRES), 640 * 12);
    EXPECT_EQ(page.dc().GetDeviceCaps(LOGPIXELSX), 96 * 12);
    drawOn(page.dc());
    CString error;
    ASSERT_TRUE(page.Close(path("a.pdf"), error)) << error;
    const std::string pdf = content(path("a.pdf"));
    EXPECT_NE(pdf.find("/MediaBox[0 0 480 360]"), std::string::npos);
    EXPECT_NE(pdf.find("/Count 1"), std::string::npos);
    EXPECT_NE(pdf.find("/FontFile"), std::string::npos) << "fonts are embedded";
    EXPECT_FALSE(page.Close(path("b.pdf"), error)) << "a page is written once";
}

TEST_F(OutputFiles, SvgIsXmlWithItsTextAndClip)
{
    CPageFile page(CPageFile::Format::svg, 200, 100, "A <title> & more");
    CDC& dc = page.dc();
    drawOn(dc);
    CRgn region;
    const CPoint corners[] = {{0, 0}, {900, 0}, {0, 900}};
    region.CreatePolygonRgn(corners, 3, WINDING);
    dc.SelectClipRgn(&region);
    CBrush hatch(HS_BDIAGONAL, RGB(0, 128, 0));
    dc.FillRect({0, 0, 600, 600}, &hatch);
    dc.SelectClipRgn(nullptr);
    CPen dashes(PS_DASH, 0, 0);
    dc.SelectObject(&dashes);
    const CPoint far[] = {{-2147483647, 300}, {2147483647, 300}};
    dc.Polyline(far, 2);
    const unsigned char header[44] = {40, 0, 0, 0, 1, 0, 0, 0, 1, 0, 0, 0, 1, 0, 32};
    const unsigned char pixel[4] = {10, 20, 30, 0};
    dc.StretchDIBits(0, 0, 120, 120, 0, 0, 1, 1, pixel, header, DIB_RGB_COLORS, SRCCOPY);
    CString error;
    ASSERT_TRUE(page.Close(path("a.svg"), error)) << error;
    const std::string svg = content(path("a.svg"));
    for (const char* part :
         {"width=\"200\" height=\"100\" viewBox=\"0 0 2400 1200\"",
          "<title>A &lt;title&gt; &amp; more</title>",
          ">Flux &lt;&amp;&gt; \xC2\xB5Jy\xEF\xBF\xBD</text>", "Liberation Sans",
          "<clipPath id=\"c1\"><path d=\"M0 0L900 0L0 900Z\"/></clipPath>",
          "<g clip-path=\"url(#c1)\">", "fill=\"url(#h1)\"", "stroke-width=\"12\"",
          "stroke-dasharray=\"216 72\"", "data:image/png;base64,iVBORw0KGgo"})
        EXPECT_NE(svg.find(part), std::string::npos) << part;
    EXPECT_EQ(svg.find("2147483"), std::string::npos) << "cut to what is seen";
    std::size_t opened = 0, closed = 0;
    for (std::size_t at = 0; (at = svg.find("<g ", at)) != std::string::npos; ++at)
        ++opened;
    for (std::size_t at = 0; (at = svg.find("</g>", at)) != std::string::npos; ++at)
        ++closed;
    EXPECT_EQ(opened, closed);
}

TEST_F(OutputFiles, ThatCannotBeWrittenLeaveNothingAndSayWhy)
{
    std::ofstream(path("file")) << "old";
    const CString places[] = {path("file/below.png"), path("missing/a.png"), folder.string()};
    CPicture picture(300, 300);
    const auto dc = picture.dc();
    for (int i = 0; i < 90000; ++i)  // no two rows alike, so that the file has some size
        picture.row(i / 300)[i % 300] = static_cast<std::uint32_t>(i * 2654435761u) & 0xFFFFFF;
    for (const CString& place : places) {
        CString error;
        EXPECT_FALSE(SavePNG(picture, place, error)) << place;
        EXPECT_NE(error, "");
        EXPECT_EQ(error.find('\n'), std::string::npos);
        CPageFile page(CPageFile::Format::pdf, 100, 100, "");
        EXPECT_FALSE(page.Close(place, error)) << place;
        EXPECT_NE(error, "");
    }

    // a full disk: the old file survives and nothing lies beside it
    rlimit before;
    getrlimit(RLIMIT_FSIZE, &before);
    const auto handler = std::signal(SIGXFSZ, SIG_IGN);
    rlimit small = before;
    small.rlim_cur = 4096;
    setrlimit(RLIMIT_FSIZE, &small);
    CString error;
    const int saved = SavePNG(picture, path("file"), error);
    setrlimit(RLIMIT_FSIZE, &before);
    std::signal(SIGXFSZ, handler);
    EXPECT_FALSE(saved);
    EXPECT_NE(error, "");
    EXPECT_TRUE(content(path("file")) == "old");
    EXPECT_EQ(std::distance(fs::directory_iterator(folder), fs::directory_iterator()), 1);
}

TEST_F(OutputFiles, ComeOutAfterThePlatformWasStartedAgain)
{
    CPicture picture(30, 20);
    const auto old = picture.dc();
    old->TextOut(0, 0, "before");
    ShutdownPlatform();
    old->TextOut(0, 0, "between: no glyphs, no crash");
    CString error;
    EXPECT_TRUE(SavePNG(picture, path("a.png"), error)) << error;  // what was made stays
    char name[] = "again";
    char* arguments[] = {name, nullptr};
    ASSERT_TRUE(InitPlatform(1, arguments, PlatformUse::pictures));
    old->TextOut(0, 0, "after");
    EXPECT_TRUE(SavePNG(picture, path("a.png"), error)) << error;
}

}  // namespace pavane
