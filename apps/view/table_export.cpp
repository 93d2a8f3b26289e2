#include "apps/view/table_export.h"

#include "apps/view/profiles/map_tables.h"
#include "apps/view/progress.h"
#include "apps/view/visibility_table.h"
#include "pavane/tables/components/component_table.h"
#include "pavane/tables/components/map_components.h"
#include "pavane/tables/uvdata/UvObservation.h"
#include "tessel/plain_text.h"
#include "tessel/SafeFile.h"

#include <cstdio>
#include <ostream>
#include <streambuf>

namespace pavane
{

namespace
{

/// Hands all text on to a function, as it comes.
class TextBuffer : public std::streambuf
{
public:
    using Write = std::function<int(const char* bytes, std::size_t count)>;
    explicit TextBuffer(Write write) : write_(std::move(write)) {}

protected:
    std::streamsize xsputn(const char* bytes, std::streamsize count) override
    {
        return write_(bytes, static_cast<std::size_t>(count)) ? count : 0;
    }
    int_type overflow(int_type c) override
    {
        const char byte = traits_type::to_char_type(c);
        return traits_type::eq_int_type(c, traits_type::eof()) || write_(&byte, 1)
                   ? traits_type::not_eof(c)
                   : traits_type::eof();
    }

private:
    Write write_;
};

int writeWith(const TextBuffer::Write& put, const std::function<int(std::ostream&)>& write)
{
    TextBuffer buffer(put);
    std::ostream stream(&buffer);
    return write(stream) && stream.good();
}

int refuse(const std::string& file, const std::string& fault, std::string& error)
{
    error = file + ": " + fault;
    return 0;
}

/// Fills the tables that come from all groups, when one of them is asked for.
int fill(const ViewOptions& options, UvObservation& observation, std::string& error)
{
    int isNeeded = 0;
    for (const TableWish& wish : options.tables) {
        UvTable table = UvTable::telescopes;
        isNeeded = isNeeded || (uvTableOf(wish.table, table) && observation.needsGroups(table));
    }
    ProgressLine progress("Reading " + plainText(options.map));
    while (isNeeded && observation.step())
        (void)progress.show(observation.done());
    return !isNeeded || observation.error().empty() ||
           refuse(options.map, observation.error(), error);
}

/// The components of a map; none for a data file.
int readComponents(const ViewOptions& options, int isMap, AComponents& model,
                   std::vector<std::string>& notes, std::string& error)
{
    std::vector<std::string> found;
    int hasTable = 0;
    if (isMap && !readMapComponents(options.map, model, hasTable, found, error))
        return refuse(options.map, error, error);
    for (const std::string& note : found)
        notes.push_back(options.map + ": " + note);
    return 1;
}

}  // namespace

int writeTextFile(const std::string& file, const std::function<int(std::ostream&)>& write,
                  std::string& error)
{
    if (file == "-") {
        const auto put = [](const char* bytes, std::size_t count) {
            return static_cast<int>(std::fwrite(bytes, 1, count, stdout) == count);
        };
        return (writeWith(put, write) && std::fflush(stdout) == 0) ||
               refuse("standard output", "cannot be written", error);
    }
    SafeFile safe;
    const auto put = [&](const char* bytes, std::size_t count) {
        return safe.file().write(bytes, static_cast<std::int64_t>(count));
    };
    return (safe.open(file) && writeWith(put, write) && safe.commit()) ||
           refuse(file, safe.fault(), error);
}

int writeTables(const ViewOptions& options, UvObservation* observation, AComponents& model,
                const MapTables* measured, std::vector<std::string>& notes, std::string& error)
{
    const UvObservation none;
    if ((observation && !fill(options, *observation, error)) ||
        (options.wantsTable(componentTable) &&
         !readComponents(options, !observation, model, notes, error)))
        return 0;
    const UvObservation& tables = observation ? *observation : none;
    for (const TableWish& wish : options.tables) {
        UvTable table = UvTable::telescopes;
        const int isOfData = uvTableOf(wish.table, table);
        const int isOfAreas = measured && wish.table == areaTable;
        const NumberTable* const numbers = measured ? measured->numbersOf(wish.table) : nullptr;
        const int isOfVisibilities = observation && wish.table == visibilityTable;
        const int rows = isOfVisibilities ? 1
                         : isOfData       ? tables.rows(table)
                         : isOfAreas      ? static_cast<int>(measured->areas.rows().size())
                         : numbers        ? numbers->rows()
                                          : model.count();
        if (rows == 0)
            notes.push_back(options.map + ": has no " + wish.table +
                            ": the table is its header line alone");
        if (wish.file.empty())
            continue;  // it is printed
        std::string fault;
        const auto write = [&](std::ostream& stream) {
            if (isOfVisibilities) {
                UvMarks marks;
                marks.times = options.times;
                ProgressLine progress("Reading " + plainText(options.map));
                return writeVisibilityTable(
                    observation->file(), marks, options.plot.view(),
                    [&](double done) { return progress.show(done); }, stream, fault);
            }
            if (isOfData)
                return tables.writeTsv(table, stream);
            if (isOfAreas)
                return measured->areas.writeTsv(stream);
            if (numbers)
                return numbers->writeTsv(stream);
            const std::string text = componentTsv(model);
            stream.write(text.data(), static_cast<std::streamsize>(text.size()));
            return static_cast<int>(stream.good());
        };
        if (!writeTextFile(wish.file, write, error))
            return fault.empty() ? 0 : refuse(options.map, fault, error);
    }
    return 1;
}

}  // namespace pavane
