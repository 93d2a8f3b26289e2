// Prints the components of a FITS map as its table would, for comparison with another reader.
#include "pavane/tables/components/component_table.h"
#include "pavane/tables/components/map_components.h"

#include <cstdio>

using namespace pavane;

int main(int count, char** arguments)
{
    AComponents model;
    int hasTable = 0;
    std::vector<std::string> notes;
    std::string error;
    if (count != 2 || !readMapComponents(arguments[1], model, hasTable, notes, error)) {
        std::printf("error: %s\n", error.c_str());
        return 1;
    }
    for (const std::string& note : notes)
        std::printf("note: %s\n", note.c_str());
    std::printf("%s%s", hasTable ? "" : "none\n", componentTsv(model).c_str());
    return 0;
}
