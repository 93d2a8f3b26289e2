#include "platform/core/queue_texts.h"

#include "platform/core/utf8.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <cstdlib>

namespace pavane
{

namespace
{

/// Bits of "printer-type".
constexpr int colorBit = 0x8;
constexpr int duplexBit = 0x10;
/// Papers of one queue that are taken at most.
constexpr std::size_t mostPapers = 500;
/// Sides of a paper in hundredths of a millimetre.
constexpr double leastSide = 1000;
constexpr double mostSide = 500000;

constexpr double hundredthsInInch = 2540;
constexpr double pointsInInch = 72;

/// The names that printer descriptions have for papers; those with a size in them are computed.
struct NamedPaper {
    std::string_view name;
    int cx, cy;
};
constexpr std::array<NamedPaper, 26> namedPapers{
    {{"A0", 84100, 118900},       {"A1", 59400, 84100},      {"A2", 42000, 59400},
     {"A3", 29700, 42000},        {"A4", 21000, 29700},      {"A5", 14800, 21000},
     {"A6", 10500, 14800},        {"Letter", 21590, 27940},  {"Legal", 21590, 35560},
     {"Tabloid", 27940, 43180},   {"Ledger", 43180, 27940},  {"Executive", 18415, 26670},
     {"Statement", 13970, 21590}, {"ISOB4", 25000, 35300},   {"ISOB5", 17600, 25000},
     {"ISOB6", 12500, 17600},     {"B4", 25700, 36400},      {"B5", 18200, 25700},
     {"B6", 12800, 18200},        {"EnvC4", 22900, 32400},   {"EnvC5", 16200, 22900},
     {"EnvC6", 11400, 16200},     {"EnvDL", 11000, 22000},   {"Env10", 10478, 24130},
     {"EnvMonarch", 9842, 19050}, {"Postcard", 10000, 14800}}};

char lowerOf(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c; }

int isSame(std::string_view a, std::string_view b)
{
    return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                      [](char x, char y) { return lowerOf(x) == lowerOf(y); });
}

/// Takes the part before `mark`, or all of it, off `text`.
std::string_view takeUntil(std::string_view& text, char mark)
{
    const std::size_t end = std::min(text.find(mark), text.size());
    const std::string_view part = text.substr(0, end);
    text.remove_prefix(std::min(end + 1, text.size()));
    return part;
}

std::string_view trimmedOf(std::string_view text)
{
    const std::size_t from = text.find_first_not_of(" \t\r");
    return from == std::string_view::npos
               ? std::string_view()
               : text.substr(from, text.find_last_not_of(" \t\r") - from + 1);
}

/// Takes `word` off the front of `text` if it stands there.
int takeWord(std::string_view& text, std::string_view word)
{
    if (!text.starts_with(word))
        return 0;
    text.remove_prefix(word.size());
    return 1;
}

/// Queues have names without blanks, slashes and control characters.
int isQueueName(std::string_view name)
{
    return !name.empty() && name.size() <= 255 && validUtf8(name) == name &&
           std::none_of(name.begin(), name.end(), [](char c) {
               return static_cast<unsigned char>(c) <= ' ' || c == '\x7F' || c == '/' || c == '#';
           });
}

PrinterInfo* queueOf(std::vector<PrinterInfo>& queues, std::string_view name)
{
    const auto at = std::find_if(queues.begin(), queues.end(),
                                 [&](const PrinterInfo& q) { return q.name == name; });
    if (at != queues.end())
        return &*at;
    if (!isQueueName(name) || queues.size() >= mostQueues)
        return nullptr;
    queues.emplace_back();
    queues.back().name = name;
    return &queues.back();
}

/// The lines of a list of queues, which come in paragraphs: what a queue does, then more of it.
class QueueList
{
public:
    void read(std::string_view line)
    {
        const int belongs = line.starts_with('\t');
        const std::string_view whole = line = trimmedOf(line);
        if (belongs) {
            readDetail(whole);
        } else if (takeWord(line, "system default destination: ")) {
            default_ = takeUntil(line, '/');
        } else if (takeWord(line, "printer ")) {
            queue_ = queueOf(queues_, takeUntil(line, ' '));
            readState(line);
        } else {
            readAccepting(line);
        }
    }
    std::vector<PrinterInfo> finished()
    {
        for (PrinterInfo& queue : queues_)
            queue.isDefault = !default_.empty() && queue.name == default_;
        return std::move(queues_);
    }

private:
    void readAccepting(std::string_view line)
    {
        const std::string_view name = takeUntil(line, ' ');
        const int refuses = takeWord(line, "not accepting requests");
        queue_ = refuses || takeWord(line, "accepting requests") ? queueOf(queues_, name) : nullptr;
        if (!queue_)
            return;
        queue_->accepts = !refuses;
        queue_->status = refuses ? "Takes no jobs" : "Ready";
        hasReason_ = refuses;
    }
    void readState(std::string_view line)
    {
        hasReason_ = 0;
        if (!queue_ || !queue_->accepts)
            return;
        hasReason_ = takeWord(line, "disabled");
        queue_->status = hasReason_                         ? "Paused"
                         : line.starts_with("now printing") ? "Printing"
                                                            : "Ready";
    }
    void readDetail(std::string_view line)
    {
        if (!queue_)
            return;
        // the line below a refusal or a pause says why; the scheduler's own word for "no reason"
        // says nothing
        if (hasReason_ && !line.empty() && !isSame(line, "reason unknown"))
            queue_->status += ": " + queueLine(line);
        hasReason_ = 0;
        if (takeWord(line, "Description: "))
            queue_->comment = queueLine(line);
        else if (takeWord(line, "Location: "))
            queue_->place = queueLine(line);
    }

    std::vector<PrinterInfo> queues_;
    PrinterInfo* queue_ = nullptr;  ///< used before the next one is added
    CString default_;
    int hasReason_ = 0;
};

/// Takes "name=value" or "name" off a line of options: a value may have quotes, and backslashes
/// before characters that mean themselves.
void takeOption(std::string_view& line, CString& name, CString& value)
{
    name.clear();
    value.clear();
    char quote = 0;
    int inValue = 0;
    line = trimmedOf(line);
    while (!line.empty() && (quote || (line[0] != ' ' && line[0] != '\t'))) {
        char c = line[0];
        line.remove_prefix(1);
        if (c == '\\' && !line.empty()) {
            c = line[0];
            line.remove_prefix(1);
        } else if (quote ? c == quote : c == '\'' || c == '"') {
            quote = quote ? static_cast<char>(0) : c;
            continue;
        } else if (c == '=' && !inValue) {
            inValue = 1;
            continue;
        }
        (inValue ? value : name) += c;
    }
}

int readDouble(std::string_view text, double& value, std::string_view& rest)
{
    const auto [end, fault] =
        std::from_chars(text.data(), text.data() + text.size(), value, std::chars_format::fixed);
    rest = text.substr(static_cast<std::size_t>(end - text.data()));
    return fault == std::errc() && std::isfinite(value);
}

int setSides(double width, double height, double unit, PrinterPaper& paper)
{
    width *= unit;
    height *= unit;
    if (!(width >= leastSide && width <= mostSide && height >= leastSide && height <= mostSide))
        return 0;
    paper.cx = static_cast<int>(std::lround(width));
    paper.cy = static_cast<int>(std::lround(height));
    return 1;
}

/// "8.5x11in" or "210x297mm".
int readMeasures(std::string_view text, PrinterPaper& paper)
{
    double width = 0;
    double height = 0;
    std::string_view rest;
    if (!readDouble(text, width, rest) || !takeWord(rest, "x") || !readDouble(rest, height, rest))
        return 0;
    return rest == "mm"   ? setSides(width, height, 100, paper)
           : rest == "in" ? setSides(width, height, hundredthsInInch, paper)
                          : 0;
}

/// "w288h432".
int readPoints(std::string_view text, PrinterPaper& paper)
{
    double width = 0;
    double height = 0;
    std::string_view rest;
    return takeWord(text, "w") && readDouble(text, width, rest) && takeWord(rest, "h") &&
           readDouble(rest, height, rest) && rest.empty() &&
           setSides(width, height, hundredthsInInch / pointsInInch, paper);
}

void readPapers(std::string_view choices, PrinterInfo& queue)
{
    while (!choices.empty() && queue.papers.size() < mostPapers) {
        std::string_view name = takeUntil(choices, ' ');
        takeWord(name, "*");
        PrinterPaper paper;
        if (readPaperSize(name, paper))
            queue.papers.push_back(paper);
    }
}

/// The resolution that is chosen: "600dpi" or "600x600dpi", of which the lower counts.
int chosenResolution(std::string_view choices)
{
    while (!choices.empty()) {
        std::string_view choice = takeUntil(choices, ' ');
        if (!takeWord(choice, "*"))
            continue;
        double across = 0;
        std::string_view rest;
        if (!readDouble(choice, across, rest))
            return 0;
        double down = across;
        if (takeWord(rest, "x") && !readDouble(rest, down, rest))
            return 0;
        const double dpi = std::min(across, down);
        return rest == "dpi" && dpi >= 36 && dpi <= 9600 ? static_cast<int>(dpi) : 0;
    }
    return 0;
}

/// A value as `lp -o name=value` takes it.
CString optionValue(std::string_view value)
{
    CString text;
    for (const char c : value) {
        if (c == ' ' || c == '\\' || c == '\'' || c == '"')
            text += '\\';
        text += c;
    }
    return text;
}

/// The paper as queues call it; an own size, "200x300" in millimetres, has a name of theirs too.
CString mediaName(const CString& paper)
{
    for (const NamedPaper& known : namedPapers)
        if (isSame(known.name, paper))
            return CString(known.name);
    std::string_view rest = paper;
    double width = 0;
    double height = 0;
    const int isSize = readDouble(rest, width, rest) && !rest.empty() && lowerOf(rest[0]) == 'x' &&
                       readDouble(rest.substr(1), height, rest) && rest.empty();
    CString name = isSize ? "Custom." + paper + "mm" : queueLine(paper);
    if (isSize)
        std::replace(name.begin(), name.end(), 'X', 'x');
    return name;
}

}  // namespace

CString queueLine(std::string_view text, std::size_t characters)
{
    // four bytes a character at most, one more tells that something is missing
    const std::string valid = validUtf8(text.substr(0, 4 * characters + 4));
    std::string_view rest = trimmedOf(valid);
    CString line;
    for (std::size_t count = 0; !rest.empty() && count < characters; ++count) {
        const std::string_view before = rest;
        const char32_t c = nextCharacter(rest);
        const int isControl = c < U' ' || (c >= U'\x7F' && c < U'\xA0');
        line += isControl ? std::string_view(" ") : before.substr(0, before.size() - rest.size());
    }
    return line;
}

std::vector<PrinterInfo> readQueueList(std::string_view text)
{
    QueueList list;
    while (!text.empty())
        list.read(takeUntil(text, '\n'));
    return list.finished();
}

void readQueueAttributes(std::string_view text, PrinterInfo& queue)
{
    text = takeUntil(text, '\n');
    CString name;
    CString value;
    while (!trimmedOf(text).empty()) {
        takeOption(text, name, value);
        int type = 0;
        if (name == "printer-make-and-model") {
            queue.type = queueLine(value);
        } else if (name == "printer-type" &&
                   std::from_chars(value.data(), value.data() + value.size(), type).ec ==
                       std::errc()) {
            queue.color = (type & colorBit) != 0;
            queue.duplex = (type & duplexBit) != 0;
        }
    }
}

void readQueueChoices(std::string_view text, PrinterInfo& queue)
{
    while (!text.empty()) {
        std::string_view choices = takeUntil(text, '\n');
        std::string_view names = takeUntil(choices, ':');
        const std::string_view name = takeUntil(names, '/');
        choices = trimmedOf(choices);
        if (name == "PageSize")
            readPapers(choices, queue);
        else if (name == "Resolution")
            queue.dpi = chosenResolution(choices);
        else if (name == "Duplex")
            queue.duplex = choices.find("Tumble") != std::string_view::npos;
    }
}

int readPaperSize(std::string_view name, PrinterPaper& paper)
{
    const auto known = std::find_if(namedPapers.begin(), namedPapers.end(),
                                    [&](const NamedPaper& p) { return isSame(p.name, name); });
    PrinterPaper read;
    read.name = name;
    if (known != namedPapers.end()) {
        read.cx = known->cx;
        read.cy = known->cy;
    } else if (name.size() > 64 || queueLine(name) != name ||
               (!readPoints(name, read) &&
                !readMeasures(name.substr(name.find_last_of('_') + 1), read))) {
        return 0;
    }
    if (read.cx > read.cy)
        std::swap(read.cx, read.cy);
    paper = read;
    return 1;
}

CString usualPaperName(const PrinterPaper& paper, int within)
{
    for (const NamedPaper& known : namedPapers)
        if (known.cx <= known.cy && std::abs(known.cx - paper.cx) <= within &&
            std::abs(known.cy - paper.cy) <= within)
            return CString(known.name);
    return paper.name;
}

std::vector<std::string> jobArguments(const CString& pdf, const CString& title,
                                      const CPrintSettings& settings, CString& error)
{
    if (!isQueueName(settings.printer)) {
        error = "there is no printer '" + queueLine(settings.printer) + "'";
        return {};
    }
    const CString line = queueLine(title);
    std::vector<std::string> arguments{"lp", "-d", settings.printer, "-t",
                                       line.empty() ? "Untitled" : line};
    const auto add = [&](const CString& option) {
        arguments.insert(arguments.end(), {"-o", option});
    };
    if (settings.copies > 1)
        arguments.insert(arguments.end(), {"-n", std::to_string(settings.copies)});
    if (settings.collate)
        add(settings.collate > 0 ? "collate=true" : "collate=false");
    constexpr std::array<const char*, 3> sides{"sides=one-sided", "sides=two-sided-long-edge",
                                               "sides=two-sided-short-edge"};
    if (settings.sides >= 1 && settings.sides <= 3)
        add(sides[static_cast<std::size_t>(settings.sides - 1)]);
    if (const CString media = mediaName(settings.paper); !media.empty())
        add("media=" + optionValue(media));
    if (settings.gray)
        add(settings.gray > 0 ? "print-color-mode=monochrome" : "print-color-mode=color");
    add("print-scaling=none");
    // a name that begins with "-" would be an option, or standard input
    arguments.insert(arguments.end(), {"--", pdf.starts_with('/') ? pdf : "./" + pdf});
    return arguments;
}

CString jobFailure(std::string_view errors)
{
    std::string_view line = trimmedOf(takeUntil(errors, '\n'));
    if (!takeWord(line, "lp: "))
        takeWord(line, "lpstat: ");
    takeWord(line, "Error - ");
    takeWord(line, "error - ");
    CString text = queueLine(line);
    while (text.ends_with('.'))
        text.pop_back();
    return text;
}

CString refusalReason(std::string_view text)
{
    const std::vector<PrinterInfo> queues = readQueueList(text);
    const std::size_t at =
        queues.empty() || queues[0].accepts ? CString::npos : queues[0].status.find(": ");
    return at == CString::npos ? CString() : queues[0].status.substr(at + 2);
}

}  // namespace pavane
