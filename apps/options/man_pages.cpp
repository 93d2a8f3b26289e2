// Writes man pages and shell completions of the programs, when the project is built.
#include "apps/clean/options.h"
#include "apps/simulate/options.h"
#include "apps/view/options.h"

#include <fstream>
#include <iostream>
#include <string>

using namespace pavane;

int main(int argc, char** argv)
{
    for (const ProgramText& program : {viewProgram(), simulateProgram(), cleanProgram()}) {
        const std::string file = std::string(argc > 1 ? argv[1] : ".") + '/' + program.name;
        std::ofstream page(file + ".1", std::ios::binary);
        std::ofstream completion(file + ".bash", std::ios::binary);
        page << manPage(program) << std::flush;
        completion << bashCompletion(program) << std::flush;
        if (!page || !completion) {
            std::cerr << file << ": cannot be written\n";
            return 1;
        }
    }
    return 0;
}
