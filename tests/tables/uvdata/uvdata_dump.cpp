// Prints the tables of a file of visibilities as text, for uv_tables.py:  uvdata-dump FILE
#include "pavane/tables/uvdata/UvObservation.h"

#include <iostream>

using namespace pavane;

int main(int count, char** arguments)
{
    UvObservation observation;
    std::string error;
    if (count != 2 || !observation.open(arguments[1], error)) {
        std::cerr << error << '\n';
        return 1;
    }
    while (observation.step(1)) {
    }
    for (const UvTable table : uvTables) {
        std::cout << "== " << uvTableLook(table).name << '\n';
        (void)observation.writeTsv(table, std::cout);
    }
    return !observation.error().empty();
}
