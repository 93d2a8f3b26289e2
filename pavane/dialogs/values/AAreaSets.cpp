#include "pavane/dialogs/values/AAreaSets.h"

#include "pavane/containers/item_io.h"
#include "pavane/containers/MemoryFile.h"
#include "pavane/dialogs/values/base64.h"
#include "pavane/trackers/areas/AreaCollection.h"
#include "platform/profile.h"
#include "tessel/plain_text.h"
#include "tessel/trimmed.h"
#include "tessel/value_text.h"

#include <algorithm>
#include <cctype>
#include <cstdint>
#include <utility>

namespace pavane
{

namespace
{

CString smallLetters(const CString& name)
{
    CString small = name;
    std::transform(small.begin(), small.end(), small.begin(),
                   [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    return small;
}

int isName(const CString& name)
{
    return !name.empty() && name.size() <= AAreaSets::longestName && name == plainText(name) &&
           trimmed(name, whiteSpace).size() == name.size();
}

/// Far more than any areas; what is larger is no set of them.
constexpr std::int64_t mostBytes = std::int64_t{64} << 20;

constexpr const char* nameFault =
    "A set of areas needs a name of 1 to 64 characters, without blanks at its ends.";

int storeText(AFile& file, const std::string& text)
{
    return storeItem(file, static_cast<std::int32_t>(text.size())) &&
           file.write(text.data(), static_cast<std::int64_t>(text.size()));
}

/// No length is believed that nothing is behind.
int loadText(AFile& file, std::string& text)
{
    std::int32_t length = 0;
    if (!loadItem(file, length) || length < 0 || length > std::min(file.left(), mostBytes))
        return 0;
    text.assign(static_cast<std::size_t>(length), '\0');
    return file.read(text.data(), length);
}

/// The number of areas of a stored collection, -1 when it is none.
int areasOf(const std::string& bytes)
{
    MemoryFile file(bytes);
    AreaCollection areas;
    return areas.Load(file) && !file.left() ? areas.count() : -1;
}

CString entryName(const char* key, int index, int set)
{
    return key + std::to_string(index) + "." + std::to_string(set + 1);
}

}  // namespace

const AAreaSets::Set* AAreaSets::at(int i) const
{
    return i >= 0 && i < count() ? &sets_[static_cast<std::size_t>(i)] : nullptr;
}

CString AAreaSets::name(int i) const { return at(i) ? at(i)->name : CString(); }
int AAreaSets::areas(int i) const { return at(i) ? at(i)->areas : 0; }

int AAreaSets::find(const CString& name) const
{
    const CString wanted = smallLetters(name);
    for (int i = 0; i < count(); ++i)
        if (smallLetters(this->name(i)) == wanted)
            return i;
    return -1;
}

/// The set of that name becomes these areas; its index, -1 when it cannot.
int AAreaSets::take(const CString& name, std::string bytes)
{
    const bool isSmall = static_cast<std::int64_t>(bytes.size()) <= mostBytes;
    const int areas = isName(name) && isSmall ? areasOf(bytes) : -1;
    const int known = find(name);
    if (areas < 0 || (known < 0 && count() >= mostSets))
        return -1;
    if (known < 0)
        sets_.push_back({name, std::move(bytes), areas});
    else
        sets_[static_cast<std::size_t>(known)] = {name, std::move(bytes), areas};
    return known < 0 ? count() - 1 : known;
}

int AAreaSets::keep(const CString& name, const AreaCollection& areas, CString& error)
{
    if (!isName(name))
        return error = nameFault, -1;
    MemoryFile file;
    const int kept = areas.Store(file) ? take(name, file.bytes()) : -1;
    if (kept < 0)
        error = count() >= mostSets ? "There are a thousand sets of areas already."
                                    : "These areas cannot be kept.";
    return kept;
}

int AAreaSets::rename(int i, const CString& name, CString& error)
{
    if (!at(i))
        return error = "There is no such set of areas.", 0;
    if (!isName(name))
        return error = nameFault, 0;
    const int known = find(name);
    if (known >= 0 && known != i)
        return error = "There is a set '" + this->name(known) + "' already.", 0;
    sets_[static_cast<std::size_t>(i)].name = name;
    return 1;
}

int AAreaSets::remove(int i)
{
    if (!at(i))
        return 0;
    sets_.erase(sets_.begin() + i);
    return 1;
}

int AAreaSets::give(int i, AreaCollection& areas) const
{
    if (!at(i))
        return 0;
    MemoryFile file(at(i)->bytes);
    return areas.Load(file);
}

int AAreaSets::Store(AFile& file) const
{
    if (!storeItem(file, std::int32_t{count()}))
        return 0;
    for (const Set& set : sets_)
        if (!storeText(file, set.name) || !storeText(file, set.bytes))
            return 0;
    return 1;
}

int AAreaSets::Load(AFile& file)
{
    std::int32_t sets = 0;
    if (!loadItem(file, sets) || sets < 0 || sets > mostSets)
        return 0;
    AAreaSets read;
    for (int i = 0; i < sets; ++i) {
        std::string name, bytes;
        if (!loadText(file, name) || !loadText(file, bytes) || read.find(name) >= 0 ||
            read.take(name, std::move(bytes)) < 0)
            return 0;
    }
    *this = std::move(read);
    return 1;
}

int AAreaSets::LoadFromINI(CWinApp*, const char* section, int index)
{
    int sets = 0;
    if (!section || !stoval(GetProfileString(section, "AS COUNT" + std::to_string(index)), sets))
        return 0;
    int all = sets >= 0 && sets <= mostSets;
    AAreaSets read;
    for (int i = 0; i < std::clamp(sets, 0, mostSets); ++i) {
        std::string bytes;
        const CString name = GetProfileString(section, entryName("AS NAME", index, i));
        const CString text = GetProfileString(section, entryName("AS DATA", index, i));
        if (!readBase64(text, bytes) || read.take(name, std::move(bytes)) < 0)
            all = 0;
    }
    *this = std::move(read);
    return all;
}

int AAreaSets::StoreToINI(CWinApp*, const char* section, int index) const
{
    if (!section)
        return 0;
    const CString countEntry = "AS COUNT" + std::to_string(index);
    int before = 0;
    (void)stoval(GetProfileString(section, countEntry), before);
    int all = 1;
    for (int i = 0; i < count() && all; ++i)
        all = WriteProfileString(section, entryName("AS NAME", index, i), name(i)) &&
              WriteProfileString(section, entryName("AS DATA", index, i), base64Text(at(i)->bytes));
    // last, so that a profile that is full has no number of sets that are not there
    all = all && WriteProfileString(section, countEntry, std::to_string(count()));
    // what is left of more sets than there are would only take room
    for (int i = count(); all && i < std::clamp(before, 0, mostSets); ++i)
        (void)WriteProfileString(section, entryName("AS DATA", index, i), {});
    return all;
}

}  // namespace pavane
