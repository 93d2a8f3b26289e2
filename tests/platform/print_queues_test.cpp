#include "platform/core/ipp_texts.h"
#include "platform/core/queue_texts.h"
#include "platform/print_queues.h"
#include "posix/ChildProcess.h"

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <iterator>
#include <random>
#include <sys/socket.h>
#include <sys/un.h>
#include <thread>
#include <unistd.h>

namespace pavane
{

namespace
{

namespace fs = std::filesystem;

std::string content(const std::string& file)
{
    std::ifstream in(file, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), {}};
}

const PrinterInfo* queueOf(const std::vector<PrinterInfo>& queues, const CString& name)
{
    const auto at = std::find_if(queues.begin(), queues.end(),
                                 [&](const PrinterInfo& q) { return q.name == name; });
    return at == queues.end() ? nullptr : &*at;
}

CString papersOf(const PrinterInfo& queue)
{
    CString papers;
    for (const PrinterPaper& p : queue.papers)
        papers += p.name + " " + std::to_string(p.cx) + " " + std::to_string(p.cy) + ", ";
    return papers;
}

constexpr const char* listText = "system default destination: b/draft\n"
                                 "a not accepting requests since Sun 22 Nov 2026 -\n"
                                 "\tOut of\x01 toner\n"
                                 "b accepting requests since Sun 22 Nov 2026\n"
                                 "c accepting requests since Sun 22 Nov 2026\n"
                                 "printer a is idle.  enabled since Sun 22 Nov 2026\n"
                                 "\tOut of toner\n"
                                 "\tDescription: The \"a\" one\n"
                                 "printer b disabled since Sun 22 Nov 2026 -\n"
                                 "\treason unknown\n"
                                 "\tLocation: B\xC3\xBCro 3\xFF\n"
                                 "printer d now printing d-12.  enabled since Sun 22 Nov 2026\n";

}  // namespace

TEST(QueueTexts, ListOfQueuesIsRead)
{
    const std::vector<PrinterInfo> queues = readQueueList(listText);
    CString told;
    for (const PrinterInfo& q : queues)
        told += q.name + (q.isDefault ? "*" : "") + (q.accepts ? "|" : "!|") + q.status + "|" +
                q.comment + "|" + q.place + "\n";
    EXPECT_EQ(told, "a!|Takes no jobs: Out of  toner|The \"a\" one|\n"
                    "b*|Paused||B\xC3\xBCro 3\xEF\xBF\xBD\n"
                    "c|Ready||\n"
                    "d|Printing||\n");
    EXPECT_EQ(refusalReason(listText), "Out of  toner");
}

TEST(QueueTexts, TraitsOfAQueueAreRead)
{
    PrinterInfo q;
    readQueueAttributes("copies=1 printer-info='a printer-type=4 b' "
                        "printer-make-and-model=Fine\\ \"Line 7\" printer-type=143452\n",
                        q);
    EXPECT_EQ(q.type, "Fine Line 7");
    EXPECT_EQ(q.color, 1);
    EXPECT_EQ(q.duplex, 1);
    readQueueChoices("PageSize/Media Size: Letter *A4 w288h432 na_5x7_5x7in iso_ra0_860x1220mm "
                     "Custom.WIDTHxHEIGHT w0h3 wnanhnan om_1x1mm odd\n"
                     "Duplex/2-Sided: *None\nResolution/R: 300dpi *1200x600dpi\n",
                     q);
    EXPECT_EQ(papersOf(q), "Letter 21590 27940, A4 21000 29700, w288h432 10160 15240, "
                           "na_5x7_5x7in 12700 17780, iso_ra0_860x1220mm 86000 122000, ");
    EXPECT_EQ(q.dpi, 600);
    EXPECT_EQ(q.duplex, 0);
    EXPECT_TRUE(q.leastMargins.IsRectNull());
}

TEST(QueueTexts, HostileTextsAreBounded)
{
    std::mt19937 random(7);
    const CString parts[] = {"printer ",
                             "\n",
                             "\t",
                             "Location: ",
                             "a accepting requests",
                             "PageSize",
                             "/:",
                             "*w1e",
                             "h",
                             "999999999999x1in ",
                             "\xFF\xC3",
                             "\\'",
                             "\"=",
                             "printer-type=99999999999"};
    for (int i = 0; i < 3000; ++i) {
        CString text;
        for (int n = 0; n < 60; ++n)
            text += parts[random() % std::size(parts)];
        std::vector<PrinterInfo> queues = readQueueList(text);
        queues.emplace_back();
        readQueueAttributes(text, queues.back());
        readQueueChoices(text, queues.back());
        EXPECT_EQ(queueLine(queues[0].place), queues[0].place);
    }
    CString many;
    for (int i = 0; i < 5000; ++i)
        many += "q" + std::to_string(i) + " accepting requests\n";
    EXPECT_EQ(readQueueList(many).size(), mostQueues);
    EXPECT_EQ(queueLine(CString(100000, 'x')).size(), mostTextCharacters);
}

/// An answer of a scheduler, cut and with bytes changed.
TEST(QueueTexts, HostileAnswersAreBounded)
{
    const auto value = [](int tag, const CString& name, const CString& text) {
        const auto size = [](const CString& s) { return CString{0, static_cast<char>(s.size())}; };
        return CString(1, static_cast<char>(tag)) + size(name) + name + size(text) + text;
    };
    const CString margin{0, 0, 1, 0};
    const CString body =
        CString("\2\0\0\0\0\0\0\1\4", 9) + value(0x44, "media-supported", "iso_a4_210x297mm") +
        value(0x44, "", "custom_max_99x99in") + value(0x22, "color-supported", "\1") +
        value(0x34, "media-col-default", "") + value(0x4A, "", "media-top-margin") +
        value(0x21, "", margin) + value(0x37, "", "") + "\3";
    const CString head = "HTTP/1.1 200 OK\r\ncontent-LENGTH: " + std::to_string(body.size());
    const CString whole = head + "\r\n\r\n" + body;
    const CString inChunks = "HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\n5\r\n" +
                             body.substr(0, 5) + "\r\nff\r\n" + body.substr(5);
    for (const CString& answer : {whole, inChunks}) {
        PrinterInfo q;
        EXPECT_TRUE(readAnswer(answer, q));
        EXPECT_EQ(papersOf(q), "A4 21000 29700, ");
        EXPECT_EQ(q.leastMargins, CRect(0, 256, 0, 0));
        EXPECT_EQ(q.color, 1);
    }
    std::mt19937 random(9);
    for (std::size_t i = 0; i < 20000; ++i) {
        CString answer =
            (i & 1 ? whole : inChunks).substr(0, i % 50 ? CString::npos : random() % 300);
        for (int n = 0; n < 3 && !answer.empty(); ++n)
            answer[random() % answer.size()] = static_cast<char>(random());
        PrinterInfo q;
        (void)readAnswer(answer, q);
        EXPECT_EQ(isAnswerWhole(whole.substr(0, i)), i >= whole.size());
    }
}

TEST(QueueTexts, JobsAreLiteralArguments)
{
    struct Case {
        CString title;
        CPrintSettings settings;
        CString arguments;
    };
    CPrintSettings full{"q", "", "a3", 1, 600, 3, 1, 2, 1, 2, 5};
    CPrintSettings own{"q", "", "200X300.5"};
    own.collate = own.gray = -1;
    CPrintSettings named{"q", "", "My 'paper'"};
    const Case cases[] = {
        {"-d x\n\"t\"", {"q", "", ""}, "lp,-d,q,-t,-d x \"t\",-o,print-scaling=none,--,./-f"},
        {"", full,
         "lp,-d,q,-t,Untitled,-n,3,-o,collate=true,-o,sides=two-sided-long-edge,-o,"
         "media=A3,-o,print-color-mode=monochrome,-o,print-scaling=none,--,./-f"},
        {"t", own,
         "lp,-d,q,-t,t,-o,collate=false,-o,media=Custom.200x300.5mm,-o,"
         "print-color-mode=color,-o,print-scaling=none,--,./-f"},
        {"t", named, "lp,-d,q,-t,t,-o,media=My\\ \\'paper\\',-o,print-scaling=none,--,./-f"},
        {"t", {"a b", "", ""}, ""},
        {"t", {"a/b\n", "", ""}, ""},
        {"t", {"", "", ""}, ""},
    };
    for (const Case& c : cases) {
        CString error;
        CString all;
        for (const CString& argument : jobArguments("-f", c.title, c.settings, error))
            all += (all.empty() ? "" : ",") + argument;
        EXPECT_EQ(all, c.arguments);
        EXPECT_EQ(error.empty(), !all.empty());
    }
}

/// A scheduler of the test's own.
class Scheduler : public testing::Test
{
protected:
    void SetUp() override
    {
        CString error;
        if (!scheduler.start({"python3", PAVANE_SOURCE_DIR "/tests/platform/print_scheduler.py",
                              folder.string(), std::to_string(getpid())},
                             error))
            GTEST_SKIP() << "python3 " << error;
        while (!scheduler.wait(20) && scheduler.output().find('\n') == CString::npos) {
        }
        const CString word = scheduler.output().substr(0, scheduler.output().find('\n'));
        if (word == "not installed")
            GTEST_SKIP() << "cups-daemon or cups-client is not installed";
        ASSERT_TRUE(word.starts_with('/')) << scheduler.errors();
        (void)setenv("CUPS_SERVER", word.c_str(), 1);
        std::ofstream(pdf) << "%PDF-1.4\n\n\xFF\x01 page\n";
    }
    void TearDown() override
    {
        (void)unsetenv("CUPS_SERVER");
        std::ofstream(folder / "stop").put('x');
        scheduler.wait(20000);
        fs::remove_all(folder);
    }
    /// What the queue's printer got: title, copies, options and bytes; "" when it gets nothing.
    CString printed(const CString& job) const
    {
        const fs::path data = folder / "jobs" / (job + ".data");
        for (int i = 0; i < 1000 && !fs::exists(data); ++i)
            std::this_thread::sleep_for(std::chrono::milliseconds(10));
        return fs::exists(data) ? content(folder / "jobs" / (job + ".txt")) + content(data) : "";
    }

    fs::path folder = fs::path(testing::TempDir()) / ("scheduler-" + std::to_string(getpid()));
    CString pdf = testing::TempDir() + "-job '$x'.pdf";
    ChildProcess scheduler;
};

TEST_F(Scheduler, QueuesAreFoundWithTheirState)
{
    struct Case {
        CString name, status, comment, place, type;
        int color, duplex, dpi;
    };
    const Case cases[] = {
        {"raw", "Ready", "All bytes", "B\xC3\xBCro 3, \"left\"", "Local Raw Printer", -1, -1, 0},
        {"pdf", "Ready", "pdf", "", "Test PDF", 1, 1, 600},
        {"rejects", "Takes no jobs: Out of toner", "rejects", "", "Local Raw Printer", -1, -1, 0},
        {"paused", "Paused: Lunch", "paused", "", "Local Raw Printer", -1, -1, 0},
    };
    std::vector<PrinterInfo> queues;
    // two seconds may be short for a machine that builds besides
    for (int i = 0; i < 20 && (!queueOf(queues, "pdf") || !queueOf(queues, "pdf")->dpi); ++i)
        queues = FindPrinters();
    EXPECT_EQ(queues.size(), std::size(cases));
    for (const Case& c : cases) {
        const PrinterInfo* const q = queueOf(queues, c.name);
        ASSERT_TRUE(q) << c.name;
        EXPECT_EQ(q->status, c.status);
        EXPECT_EQ(q->comment, c.comment);
        EXPECT_EQ(q->place, c.place);
        EXPECT_EQ(q->type, c.type);
        EXPECT_EQ(q->isDefault, c.name == "pdf");
        EXPECT_EQ(q->accepts, c.name != "rejects");
        EXPECT_EQ(q->color, c.color);
        EXPECT_EQ(q->duplex, c.duplex);
        EXPECT_EQ(q->dpi, c.dpi);
        const int least = c.name == "pdf" ? 423 : 0;
        EXPECT_EQ(q->leastMargins, CRect(least, least, least, least));
        EXPECT_EQ(papersOf(*q), c.name == "pdf" ? "A4 21000 29700, A3 29700 42000, Letter 21590 "
                                                  "27940, na_index-4x6_4x6in 10160 15240, "
                                                : "");
    }
}

TEST_F(Scheduler, JobsArriveWhole)
{
    CPrintSettings settings;
    settings.copies = 3;
    settings.paper = "A3";
    settings.collate = 1;
    settings.sides = 2;
    CString error;
    int job = 0;
    for (const CString queue : {"raw", "pdf"}) {
        settings.printer = queue;
        const CString title = "-t 'B\xC3\xBCro'\n\"x\" $(id)";
        ASSERT_TRUE(SubmitPrintJob(pdf, title, settings, nullptr, nullptr, error)) << error;
        const CString got = printed(queue + "-" + std::to_string(++job));
        EXPECT_TRUE(got.starts_with("-t 'B\xC3\xBCro' \"x\" $(id)\n3\n")) << got;
        for (const char* option : {"media=A3", "sides=two-sided-long-edge", "print-scaling=none"})
            EXPECT_NE(got.find(option), CString::npos) << option;
        EXPECT_TRUE(got.ends_with("\n" + content(pdf)));
    }
    struct Case {
        CString queue, error;
        int taken;
    };
    const Case cases[] = {
        {"paused", "", 1},
        {"rejects", "Destination \"rejects\" is not accepting jobs: Out of toner", 0},
        {"gone", "The printer or class does not exist", 0},
    };
    for (const Case& c : cases) {
        settings.printer = c.queue;
        EXPECT_EQ(SubmitPrintJob(pdf, "t", settings, nullptr, nullptr, error), c.taken);
        EXPECT_EQ(error, c.taken ? "" : "'" + c.queue + "': " + c.error);
    }
}

TEST(DeafScheduler, IsGivenUp)
{
    const CString name = testing::TempDir() + "deaf-" + std::to_string(getpid());
    sockaddr_un address{AF_UNIX, {}};
    ASSERT_LT(name.size(), sizeof address.sun_path);
    std::copy(name.begin(), name.end(), address.sun_path);
    const int socket = ::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
    ASSERT_EQ(bind(socket, reinterpret_cast<sockaddr*>(&address), sizeof address), 0);
    ASSERT_EQ(listen(socket, 10), 0);
    (void)setenv("CUPS_SERVER", name.c_str(), 1);

    PrinterQuery query;
    while (!query.poll())
        std::this_thread::sleep_for(std::chrono::milliseconds(5));
    EXPECT_TRUE(query.printers().empty());
    EXPECT_NE(query.failure(), "");
    CPrintSettings settings;
    settings.printer = "q";
    CString error = "old";
    int asked = 0;
    const auto giveUp = [](void* count) {
        return static_cast<int>(++*static_cast<int*>(count) < 3);
    };
    if (!programFile("lp").empty()) {
        EXPECT_FALSE(SubmitPrintJob("/etc/hostname", "t", settings, giveUp, &asked, error));
        EXPECT_EQ(asked, 3);
        EXPECT_EQ(error, "");
    }
    const CString path = std::getenv("PATH");
    (void)setenv("PATH", "/nowhere", 1);
    EXPECT_FALSE(SubmitPrintJob("/etc/hostname", "t", settings, nullptr, nullptr, error));
    EXPECT_EQ(error, "the printing program 'lp' is not installed");
    EXPECT_EQ(PrinterQuery().failure(), "the printing program 'lpstat' is not installed");
    (void)setenv("PATH", path.c_str(), 1);
    (void)unsetenv("CUPS_SERVER");
    (void)close(socket);
    (void)unlink(name.c_str());
}

}  // namespace pavane
