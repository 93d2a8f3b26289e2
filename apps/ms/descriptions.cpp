#include "apps/ms/descriptions.h"

#include "apps/ms/text.h"

namespace pavane_ms
{

namespace
{

/// What roff would take for something else is escaped.
std::string roff(std::string_view text)
{
    std::string result;
    for (const char c : text)
        result.append(c == '\\' ? "\\e" : c == '-' ? "\\-" : std::string(1, c));
    return result;
}

/// The options in the words of a command: "--ifs" of "[--ifs 1-4,6]".
std::string optionsOf(std::string_view words)
{
    std::string options;
    for (std::string_view word : split(words, ' ')) {
        if (!word.empty() && word[0] == '[')
            word.remove_prefix(1);
        if (word.substr(0, 2) == "--")
            options.append(options.empty() ? "" : " ").append(word.substr(0, word.find(']')));
    }
    return options;
}

}  // namespace

std::string manPage(const std::vector<CommandText>& commands)
{
    std::string page =
        ".TH pavane\\-ms 1 \"\" \"pavane " PAVANE_VERSION "\" \"User Commands\"\n.SH NAME\n"
        "pavane\\-ms \\- make, correct and tell of MeasurementSets for an imaging engine\n"
        ".SH SYNOPSIS\n.B pavane\\-ms\n.I COMMAND\n.RI [ WORDS ]\n.SH DESCRIPTION\n"
        "Results are lines \"name value\" on the standard output, an error is one line on the\n"
        "standard error. Outputs are there whole or not at all, and inputs are never written.\n"
        ".SH COMMANDS\n";
    for (const CommandText& command : commands)
        page.append(".TP\n\\fB" + roff(command.name) + "\\fR " + roff(command.words) + '\n' +
                    roff(command.does) + '\n');
    return page +
           ".TP\n\\fB\\-\\-help\\fR, \\fB\\-\\-version\\fR\nprint the commands, or the version\n"
           ".SH EXIT STATUS\n.TP\n0\nall outputs are there and whole\n.TP\n1\nsomething failed\n"
           ".TP\n2\nwrong use\n.SH EXAMPLES\n.EX\npavane\\-ms import data.uvfits work.ms\n"
           "pavane\\-ms correct work.ms \\-\\-gains phases.txt\n.EE\n"
           ".SH SEE ALSO\n.BR pavane\\-clean (1)\n";
}

std::string bashCompletion(const std::vector<CommandText>& commands)
{
    std::string names, cases;
    for (const CommandText& command : commands) {
        names.append(command.name).append(" ");
        cases.append("        " + std::string(command.name) + ") options='" +
                     optionsOf(command.words) + "' ;;\n");
    }
    return "# bash completion of pavane-ms, made of its commands\n"
           "_pavane_ms()\n{\n"
           "    local word=${COMP_WORDS[COMP_CWORD]} options actions=(-f)\n"
           "    case ${COMP_WORDS[1]} in\n" +
           cases +
           "    esac\n"
           "    if [[ $COMP_CWORD -eq 1 ]]; then\n"
           "        actions=(-W '" +
           names +
           "--help --version')\n"
           "    elif [[ $word == -* ]]; then\n"
           "        actions=(-W \"$options\")\n"
           "    else\n"
           "        compopt -o filenames 2>/dev/null\n"
           "    fi\n"
           "    mapfile -t COMPREPLY < <(compgen \"${actions[@]}\" -- \"$word\")\n"
           "}\n"
           "complete -F _pavane_ms pavane-ms\n";
}

}  // namespace pavane_ms
