#include "apps/ms/GainFile.h"

#include "apps/ms/Failure.h"
#include "apps/ms/LineFile.h"
#include "apps/ms/text.h"

#include <algorithm>
#include <cerrno>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <memory>
#include <string_view>

namespace pavane_ms
{

namespace
{

constexpr std::string_view titles =
    "subarray\tantenna\tname\tIFs\thand\tsource\tstart [d]\tend [d]\treal\timag\terror\tweight\t"
    "iterations\treference\tstate\tflagged";
constexpr const char* states[] = {"missing", "solved", "failed"};

GainLine readLine(const LineFile& file, const std::vector<std::string_view>& fields,
                  const std::vector<std::string_view>& names)
{
    std::size_t at = 0;
    const auto wrong = [&] { file.fail("has a wrong \"" + std::string(names[at - 1]) + "\""); };
    const auto whole = [&](int& value, int least) {
        if (!readNumber(fields[at++], value) || value < least)
            wrong();
    };
    const auto number = [&](double& value) {
        if (!readNumber(fields[at++], value) || !std::isfinite(value))
            wrong();
    };
    GainLine line;
    whole(line.subarray, 1);
    whole(line.antenna, 0);
    line.name = fields[at++];
    line.ifs = readNumbers(fields[at++]);
    if (line.ifs.empty())
        wrong();
    const std::string_view hand = fields[at++];
    if (hand.size() != 1 || std::string_view("RLXYI").find(hand[0]) == std::string_view::npos)
        wrong();
    line.hand = hand[0];
    whole(line.source, 0);
    number(line.start);
    number(line.end);
    if (!(line.start < line.end))
        wrong();
    double real = 0, imaginary = 0;
    number(real);
    number(imaginary);
    line.value = {real, imaginary};
    number(line.error);
    number(line.weight);
    whole(line.iterations, -1);
    whole(line.reference, -1);
    const auto* const state = std::find(std::begin(states), std::end(states), fields[at++]);
    if (state == std::end(states))
        wrong();
    line.state = static_cast<GainState>(state - std::begin(states));
    whole(line.isFlagged, 0);
    if (line.isFlagged > 1)
        wrong();
    return line;
}

}  // namespace

GainFile readGains(const std::string& name)
{
    LineFile file(name);
    const auto names = split(titles, '\t');
    GainFile gains;
    std::string text;
    int hasTitles = 0;
    while (file.next(text)) {
        const auto fields = split(text, '\t');
        if (text.empty())
            continue;
        if (text[0] == '#') {
            if (fields.size() == 2 && fields[0] == "# reference day" &&
                (!readNumber(fields[1], gains.referenceDay) || !std::isfinite(gains.referenceDay)))
                file.fail("has no Julian date");
            if (fields.size() == 2 && fields[0] == "# IFs" && !readNumber(fields[1], gains.ifs))
                file.fail("has no number of IFs");
        } else if (!hasTitles) {
            if (text != titles)
                file.fail("does not name the columns of a file of gains");
            hasTitles = 1;
        } else if (fields.size() != names.size())
            file.fail("has " + std::to_string(fields.size()) + " fields, not " +
                      std::to_string(names.size()));
        else
            gains.lines.push_back(readLine(file, fields, names));
    }
    if (gains.lines.empty())
        throw Failure(name + (hasTitles ? " has no gains" : " is no file of gains"));
    return gains;
}

void writeGains(const std::string& name, const GainFile& gains)
{
    const std::unique_ptr<FILE, int (*)(FILE*)> file(std::fopen(name.c_str(), "wb"), &std::fclose);
    const auto check = [&](int isWritten) {
        if (!isWritten)
            throw Failure(name + " cannot be written: " + std::strerror(errno));
    };
    check(file != nullptr);
    const auto put = [&](const std::string& text) {
        check(std::fwrite(text.data(), 1, text.size(), file.get()) == text.size());
    };
    put("# reference day\t" + numberText(gains.referenceDay) + "\n# IFs\t" +
        std::to_string(gains.ifs) + "\n" + std::string(titles) + "\n");
    for (const GainLine& line : gains.lines) {
        std::string text = std::to_string(line.subarray);
        const auto add = [&text](const std::string& field) { text += "\t" + field; };
        add(std::to_string(line.antenna));
        add(plain(line.name));
        add(numbersText(line.ifs));
        add(std::string(1, line.hand));
        add(std::to_string(line.source));
        for (const double value :
             {line.start, line.end, line.value.real(), line.value.imag(), line.error, line.weight})
            add(numberText(value));
        add(std::to_string(line.iterations));
        add(std::to_string(line.reference));
        add(states[static_cast<int>(line.state)]);
        add(line.isFlagged ? "1" : "0");
        put(text + "\n");
    }
    check(std::fflush(file.get()) == 0);
}

}  // namespace pavane_ms
