// The stored form of areas: the current index, how many there are, each one's class name and
// record.

#include "pavane/containers/item_io.h"
#include "pavane/containers/MemoryFile.h"
#include "pavane/trackers/areas/AreaCollection.h"
#include "pavane/trackers/areas/record_layouts.h"
#include "tessel/AFile.h"

#include <algorithm>
#include <cstring>
#include <limits>
#include <utility>

namespace pavane
{

namespace
{

/// The class of the entry that begins at `from`; null where none does that is known.
const AreaClass* entryAt(const std::string& bytes, std::size_t from)
{
    if (from + classNameField > bytes.size())
        return nullptr;
    const std::string_view field(bytes.data() + from, classNameField);
    const std::size_t end = field.find('\0');
    return end == field.npos ? nullptr : areaClassOf(field.substr(0, end));
}

/// The next place where a known entry seems to begin, or the end: the only way past a record whose
/// length nobody knows.
std::size_t nextEntry(const std::string& bytes, std::size_t from)
{
    constexpr std::size_t toHandle = classNameField + sizeof(RecordHead::style);
    for (std::size_t at = from; at + toHandle + sizeof(int) <= bytes.size(); ++at) {
        int handleSize = 0;
        std::memcpy(&handleSize, bytes.data() + at + toHandle, sizeof handleSize);
        if (plausibleHandle(handleSize) && entryAt(bytes, at))
            return at;
    }
    return bytes.size();
}

/// A field with a name that is no known one, without the zeros at its end.
std::string wholeField(const std::string& bytes, std::size_t from)
{
    std::string field = bytes.substr(from, classNameField);
    field.erase(field.find_last_not_of('\0') + 1);
    return field;
}

std::string quoted(const std::string& name) { return "class \"" + shownClassName(name) + "\""; }

}  // namespace

int AreaCollection::Store(AFile& file) const
{
    std::int64_t entries = 0;
    for (int i = 0; i < count(); ++i)
        entries += kindAt(i).entries;
    if (entries < 0 || entries > std::numeric_limits<std::int32_t>::max() ||
        !storeItem(file, std::int32_t{current()}) ||
        !storeItem(file, static_cast<std::int32_t>(entries)))
        return 0;
    for (int i = 0; i < count(); ++i) {
        std::string entry = kindAt(i).name;
        entry.resize(classNameField);
        entry += at(i).bytes;
        if (!file.write(entry.data(), static_cast<std::int64_t>(entry.size())))
            return 0;
    }
    return 1;
}

int AreaCollection::Load(AFile& file)
{
    LoadReport report;
    return Load(file, report);
}

int AreaCollection::Load(AFile& file, LoadReport& report)
{
    report = {};
    std::int32_t current = -1;
    if (!loadItem(file, current)) {
        report.note(0, "the file ends before the first area");
        return 0;
    }
    std::vector<Item> items;
    const int result = readItems(file, report, items);
    const AreaEdits::Step step(edits_, "Loading of areas");
    eraseAll();
    for (Item& item : items)
        append(std::move(item));
    edits_.setCurrent(has(current) ? current : -1);
    return result;
}

int AreaCollection::readItems(AFile& file, LoadReport& report, std::vector<Item>& items)
{
    std::int32_t count = 0;
    if (!loadItem(file, count)) {
        report.note(0, "the file ends before the number of areas");
        return 0;
    }
    report.promised = count;
    const std::int64_t start = file.tell();
    std::string all(static_cast<std::size_t>(count > 0 ? file.left() : 0), '\0');
    if (!file.read(all.data(), static_cast<std::int64_t>(all.size()))) {
        report.note(0, "the file cannot be read");
        return 0;
    }
    MemoryFile from(std::move(all));
    const std::string& bytes = from.bytes();
    const auto place = [&] { return static_cast<std::size_t>(from.tell()); };
    // of classes that nobody knows: where the first one is, and bytes of their records
    std::size_t firstUnknown = bytes.size();
    std::size_t unknownBytes = 0;
    const auto sawUnknown = [&] { return firstUnknown < bytes.size(); };
    int result = 1;
    std::int64_t taken = 0;
    // a record that nobody knows may have others in it: then there are more than promised
    while (taken < count || (sawUnknown() && entryAt(bytes, place()))) {
        const std::size_t begin = place();
        if (begin + classNameField > bytes.size())
            break;
        const AreaClass* const known = entryAt(bytes, begin);
        const std::string name = known ? known->name : wholeField(bytes, begin);
        (void)from.seek(classNameField, AFile::current);
        ++taken;
        if (known) {
            if (!passRecord(*known, from) || place() < begin + classNameField) {
                report.note(taken, "its record is cut short or damaged");
                result = 0;
                break;
            }
            if (!known->hasShape || known->plane == AreaPlane::pixels)
                report.note(taken, quoted(name) + " has no shape in data values; it is kept");
        } else {
            const std::size_t end = nextEntry(bytes, place());
            firstUnknown = std::min(firstUnknown, items.size());
            unknownBytes += end - place();
            (void)from.seek(static_cast<std::int64_t>(end));
            report.note(taken, quoted(name) + " is unknown; it is kept");
        }
        const std::size_t head = begin + classNameField;
        items.push_back({kindNumber(name, 1), bytes.substr(head, place() - head)});
        ++report.loaded;
    }
    const std::int64_t missing = count - taken;
    const auto room = static_cast<std::int64_t>(unknownBytes / classNameField);
    if (result && taken < count && missing > room) {
        report.note(taken + 1, "the file ends here; it promises " + std::to_string(count));
        result = 0;
    } else if (result && sawUnknown() && missing != 0) {
        int& kind = items[firstUnknown].kind;
        kind = kindNumber(std::string(kinds_[static_cast<std::size_t>(kind)].name),
                          static_cast<int>(1 + missing));
    }
    (void)file.seek(start + from.tell());
    return result;
}

}  // namespace pavane
