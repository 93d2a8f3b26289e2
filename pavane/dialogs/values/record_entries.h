#pragma once

#include "platform/api.h"
#include "platform/types.h"

#include <vector>

namespace pavane
{

class AFile;
class CWinApp;

/// A field of a record as text: what the profile keeps under a key.
struct RecordEntry {
    CString key, text;
};

/// Writes entries as one block: its length in bytes (int32), then a line "key=text" each.
PAVANE_API int storeEntries(AFile& file, const std::vector<RecordEntry>& entries);
/// Reads such a block of at most 1 MiB; lines without '=' are passed over. Non-zero on success.
PAVANE_API int loadEntries(AFile& file, std::vector<RecordEntry>& entries);
/// Writes each under its key with the number behind it. Non-zero when all were written.
PAVANE_API int writeProfileEntries(const char* section, int index,
                                   const std::vector<RecordEntry>& entries);
/// Reads the texts of these keys; those that are not there are taken out. Non-zero when all were.
PAVANE_API int readProfileEntries(const char* section, int index,
                                  std::vector<RecordEntry>& entries);

/// What `Record` gets that has `entries()`, its fields as text, and `takeEntry(entry)`, which takes
/// the field of that key and gives 0, with nothing changed, for a text that it cannot be.
template <typename Record>
class EntryRecord
{
public:
    /// Non-zero on success; else nothing is changed. Keys that are not there leave their field
    /// alone, unknown ones are passed over, a text that a field cannot be is a failure.
    int Load(AFile& file)
    {
        std::vector<RecordEntry> read;
        Record record = self();
        if (!loadEntries(file, read))
            return 0;
        for (const RecordEntry& entry : read)
            if (isKey(entry.key) && !record.takeEntry(entry))
                return 0;
        static_cast<Record&>(*this) = record;
        return 1;
    }
    int Store(AFile& file) const { return storeEntries(file, self().entries()); }

    /// Texts of the profile, each under its key with `index` behind it. What is missing there or
    /// cannot be leaves its field alone. Non-zero when all were taken or written. The profile is
    /// the program's, whatever `app`, which may be null.
    int LoadFromINI(CWinApp*, const char* section, int index)
    {
        std::vector<RecordEntry> read = self().entries();
        int all = readProfileEntries(section, index, read);
        for (const RecordEntry& entry : read)
            all = static_cast<Record&>(*this).takeEntry(entry) && all;
        return all;
    }
    int StoreToINI(CWinApp*, const char* section, int index) const
    {
        return writeProfileEntries(section, index, self().entries());
    }

private:
    const Record& self() const { return static_cast<const Record&>(*this); }
    int isKey(const CString& key) const
    {
        for (const RecordEntry& entry : self().entries())
            if (entry.key == key)
                return 1;
        return 0;
    }
};

}  // namespace pavane
