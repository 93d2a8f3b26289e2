#include "apps/options/program_text.h"

namespace pavane
{

namespace
{

constexpr std::size_t lineWidth = 100;
constexpr std::size_t textColumn = 30;

/// Appends words, with line breaks before `lineWidth`; what follows the first line begins at
/// `indent`. `column` is where the first word goes.
void appendWrapped(std::string& text, std::string_view words, std::size_t column,
                   std::size_t indent)
{
    int isFirst = 1;
    while (!words.empty()) {
        const std::size_t end = std::min(words.find(' '), words.size());
        if (!isFirst && column + 1 + end > lineWidth) {
            text += '\n' + std::string(indent, ' ');
            column = indent;
        } else if (!isFirst) {
            text += ' ';
            ++column;
        }
        text += words.substr(0, end);
        column += end;
        isFirst = 0;
        words.remove_prefix(std::min(end + 1, words.size()));
    }
    text += '\n';
}

std::string signOf(const OptionText& option)
{
    std::string sign = option.letter.empty() ? "" : std::string(option.letter) + ", ";
    sign += option.name;
    if (!option.value.empty())
        sign += ' ' + std::string(option.value);
    return sign;
}

void appendOption(std::string& text, const OptionText& option)
{
    std::string sign = "  " + signOf(option);
    if (sign.size() + 2 > textColumn) {
        text += sign + '\n';
        sign.clear();
    }
    sign.resize(textColumn, ' ');
    text += sign;
    appendWrapped(text, option.text, textColumn, textColumn);
}

/// Text of a man page: what roff would take for something else is escaped.
std::string roff(std::string_view text)
{
    std::string result;
    for (const char c : text)
        result += c == '\\' ? "\\e" : c == '-' ? "\\-" : std::string(1, c);
    if (!result.empty() && (result[0] == '.' || result[0] == '\''))
        result.insert(0, "\\&");
    return result;
}

void appendParts(std::string& page, const char* heading,
                 const std::vector<std::pair<std::string, std::string>>& parts)
{
    if (parts.empty())
        return;
    page += std::string(".SH ") + heading + '\n';
    for (const auto& [name, text] : parts)
        page += ".TP\n.I " + roff(name) + '\n' + roff(text) + '\n';
}

void appendOptions(std::string& page, const OptionGroup& group)
{
    page += ".SS " + roff(group.heading) + '\n';
    for (const OptionText& option : group.options) {
        page += ".TP\n";
        if (!option.letter.empty())
            page += "\\fB" + roff(option.letter) + "\\fR, ";
        page += "\\fB" + roff(option.name) + "\\fR";
        if (!option.value.empty())
            page += " \\fI" + roff(option.value) + "\\fR";
        page += '\n' + roff(option.text) + '\n';
    }
}

}  // namespace

std::string usageLine(const ProgramText& program)
{
    std::string line;
    for (const std::string& way : program.synopsis)
        line += (line.empty() ? "usage: " : ", or ") + program.name + ' ' + way;
    return line + " (--help says more)";
}

std::string helpText(const ProgramText& program)
{
    std::string text;
    for (const std::string& way : program.synopsis)
        text += (text.empty() ? "usage: " : "       ") + program.name + ' ' + way + '\n';
    for (const std::string& paragraph : program.about) {
        text += '\n';
        appendWrapped(text, paragraph, 0, 0);
    }
    for (const OptionGroup& group : program.groups) {
        text += '\n' + group.heading + ":\n\n";
        for (const OptionText& option : group.options)
            appendOption(text, option);
    }
    std::string exits = "exit status:";
    for (std::size_t i = 0; i < program.exits.size(); ++i)
        exits += (i ? ", " : " ") + std::to_string(i) + ' ' + program.exits[i];
    text += '\n';
    appendWrapped(text, exits, 0, 0);
    return text;
}

std::string versionLine(const ProgramText& program)
{
    return program.name + ' ' + PAVANE_VERSION + '\n';
}

std::string manPage(const ProgramText& program)
{
    std::string page = ".TH " + roff(program.name) +
                       " 1 \"\" \"pavane " PAVANE_VERSION "\" \"User Commands\"\n.SH NAME\n" +
                       roff(program.name) + " \\- " + roff(program.purpose) + "\n.SH SYNOPSIS\n";
    for (const std::string& way : program.synopsis)
        page += (way == program.synopsis.front() ? "" : ".br\n") + ("\\fB" + roff(program.name)) +
                "\\fR " + roff(way) + '\n';
    page += ".SH DESCRIPTION\n";
    for (const std::string& paragraph : program.about)
        page += ".PP\n" + roff(paragraph) + '\n';
    page += ".SH OPTIONS\n";
    for (const OptionGroup& group : program.groups)
        appendOptions(page, group);
    page += ".SH EXIT STATUS\n";
    for (std::size_t i = 0; i < program.exits.size(); ++i)
        page += ".TP\n" + std::to_string(i) + '\n' + roff(program.exits[i]) + '\n';
    appendParts(page, "FILES", program.files);
    if (!program.examples.empty())
        page += ".SH EXAMPLES\n";
    for (const auto& [purpose, command] : program.examples)
        page += ".PP\n" + roff(purpose) + "\n.PP\n.EX\n" + roff(command) + "\n.EE\n";
    if (!program.seeAlso.empty())
        page += ".SH SEE ALSO\n.BR " + roff(program.seeAlso) + " (1)\n";
    return page;
}

}  // namespace pavane
