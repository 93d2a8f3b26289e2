#include "apps/options/program_text.h"

#include <algorithm>

namespace pavane
{

namespace
{

/// What stands for the value of an option while it is typed, as an action of compgen; "" for a
/// value that only the user knows.
std::string actionFor(const OptionText& option)
{
    if (!option.choices.empty())
        return "-W '" + std::string(option.choices) + '\'';
    if (option.value == "FOLDER")
        return "-d";
    const int isName = option.value == "F" || option.value == "FILE";
    const int hasEnding = option.value.find('.') != std::string_view::npos &&
                          option.value.find(',') == std::string_view::npos;
    return isName || hasEnding ? "-f" : "";
}

}  // namespace

std::string bashCompletion(const ProgramText& program)
{
    std::string words, values, cases;
    for (const OptionGroup& group : program.groups)
        for (const OptionText& option : group.options) {
            words.append(words.empty() ? "" : " ").append(option.name);
            if (option.value.empty())
                continue;
            const std::string action = actionFor(option);
            if (action.empty())
                values.append(values.empty() ? "" : "|").append(option.name);
            else
                cases += "        " + std::string(option.name) + ") actions=(" + action + ") ;;\n";
        }
    std::string function = '_' + program.name;
    std::replace(function.begin(), function.end(), '-', '_');
    if (!values.empty())
        cases += "        " + values + ") return ;;\n";
    return "# bash completion of " + program.name + ", made of its table of options\n" + function +
           "()\n{\n"
           "    local word=${COMP_WORDS[COMP_CWORD]} before=${COMP_WORDS[COMP_CWORD - 1]} actions\n"
           "    COMPREPLY=()\n"
           "    # --name=value comes as three words\n"
           "    if [[ $word == = ]]; then\n"
           "        word=\n"
           "    elif [[ $before == = && COMP_CWORD -gt 2 ]]; then\n"
           "        before=${COMP_WORDS[COMP_CWORD - 2]}\n"
           "    fi\n"
           "    case $before in\n" +
           cases +
           "        *)\n"
           "            actions=(-f)\n"
           "            if [[ $word == -* ]]; then\n"
           "                actions=(-W '" +
           words +
           "')\n"
           "            fi\n"
           "            ;;\n"
           "    esac\n"
           "    if [[ ${actions[0]} != -W ]]; then\n"
           "        compopt -o filenames 2>/dev/null\n"
           "    fi\n"
           "    mapfile -t COMPREPLY < <(compgen \"${actions[@]}\" -- \"$word\")\n"
           "}\n"
           "complete -F " +
           function + ' ' + program.name + '\n';
}

}  // namespace pavane
