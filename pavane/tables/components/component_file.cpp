#include "pavane/tables/components/component_file.h"

#include "pavane/tables/components/component_text.h"
#include "tessel/paths.h"
#include "tessel/SafeFile.h"

#include <fstream>
#include <sstream>
#include <string_view>

namespace pavane
{

namespace
{

/// Non-zero when nothing but blanks or a comment is left of a line.
int isLineEnd(std::string_view rest) { return isBlank(rest.substr(0, rest.find(';'))); }

/// What is wrong with the line of the count; "" when nothing is.
std::string faultOfCount(const ComponentLines& line, int& wanted)
{
    std::string_view rest = line.text();
    if (!takeNumber(rest, wanted) || !isLineEnd(rest))
        return "the number of components is expected";
    return wanted < 0 ? "the number of components is " + std::to_string(wanted) : std::string();
}

/// What is wrong with the line of a component; "" when nothing is.
std::string faultOfComponent(const ComponentLines& line, ACompItem& item)
{
    std::string_view rest = line.text();
    const int taken = takeComponent(rest, item);
    if (taken < componentFields && isLineEnd(rest))
        return "it has " + std::to_string(taken) + " of 8 numbers";
    if (taken < componentFields)
        return "field " + std::to_string(taken + 1) + " is not a number";
    if (line.wasCut() && rest.empty())
        return "its last number runs beyond 128 characters";
    if (!isLineEnd(rest))
        return "more follows its 8 numbers";
    return hasFiniteFields(item) ? std::string() : "it has a number that is not finite";
}

std::string at(const ComponentLines& line, const std::string& fault)
{
    return fault.empty() ? fault : "line " + std::to_string(line.number()) + ": " + fault;
}

/// Reads the text; returns what is wrong with it.
std::string readStrictly(std::istream& in, AComponents& components)
{
    ComponentLines lines(in);
    int wanted = 0;
    if (!lines.next())
        return "holds no number of components";
    std::string fault = faultOfCount(lines, wanted);
    while (fault.empty() && lines.next()) {
        if (components.count() == wanted)
            return at(lines, "more lines than the " + std::to_string(wanted) + " components");
        ACompItem item;
        fault = faultOfComponent(lines, item);
        if (fault.empty() && components.Add(item) < 0)
            return "there is no memory for its components";
    }
    if (!fault.empty())
        return at(lines, fault);
    if (lines.isTooLong())
        return at(lines, "it is longer than 64 KiB");
    if (in.bad())
        return "cannot be read";
    if (components.count() < wanted)
        return at(lines, "the file ends after " + std::to_string(components.count()) + " of " +
                             std::to_string(wanted) + " components");
    return {};
}

}  // namespace

int readComponentFile(const std::string& file, AComponents& components, std::string& error)
{
    components.Free();
    const AFile found(file,
                      AFile::readOnly);  // nothing but a plain file: a stream waits for a pipe
    std::ifstream in;
    if (found.isOpen())
        in.open(file, std::ios::binary);
    if (!in.is_open()) {
        error = readFault(file);
        return 0;
    }
    error = found.size() > 0 ? readStrictly(in, components) : "is empty";
    if (error.empty())
        return 1;
    components.Free();
    return 0;
}

int writeComponentFile(const std::string& file, const AComponents& components, std::string& error)
{
    std::ostringstream text;
    SafeFile out;
    const int written =
        components.Store(text).good() && out.open(file) &&
        out.file().write(text.view().data(), static_cast<std::int64_t>(text.view().size())) &&
        out.commit();
    if (!written)
        error = out.fault();
    return written;
}

}  // namespace pavane
