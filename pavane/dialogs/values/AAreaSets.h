#pragma once

#include "platform/api.h"
#include "platform/types.h"

#include <cstddef>
#include <string>
#include <vector>

namespace pavane
{

class AFile;
class AreaCollection;
class CWinApp;

/// Sets of areas under names, for a study or the profile: a wide mask and a narrow one, those of
/// another map. A value. Names are 1 to 64 characters and differ by more than capitals.
class PAVANE_API AAreaSets
{
public:
    static constexpr std::size_t longestName = 64;
    static constexpr int mostSets = 1000;

    int count() const { return static_cast<int>(sets_.size()); }
    /// "" outside.
    CString name(int i) const;
    /// How many areas it has, 0 outside.
    int areas(int i) const;
    /// The set of that name, -1 when there is none.
    int find(const CString& name) const;

    /// Keeps a copy under a name, in the place of the set that has it; else at the end. Its index;
    /// -1, and a sentence in `error`, for a name that is none or areas that cannot be stored.
    int keep(const CString& name, const AreaCollection& areas, CString& error);
    int rename(int i, const CString& name, CString& error);
    /// 0 when there is none.
    int remove(int i);
    /// Puts the areas of a set in the place of those that there are: a step of undo. 0 when there
    /// is no such set.
    int give(int i, AreaCollection& areas) const;

    /// The number of sets (int32), each one's name and areas as texts with their length (int32)
    /// before them; areas as a collection stores them. Load gives 0, with nothing changed, for what
    /// is none.
    int Store(AFile& file) const;
    int Load(AFile& file);
    /// Texts of the profile: "AS COUNT1", then "AS NAME1.1" and "AS DATA1.1" (in base 64) and so on
    /// for `index` 1. What is damaged is passed over. Non-zero when all were taken or written; a
    /// profile holds no more than 1 MiB. The profile is the program's, whatever `app`.
    int LoadFromINI(CWinApp* app, const char* section, int index);
    int StoreToINI(CWinApp* app, const char* section, int index) const;

private:
    struct Set {
        CString name;
        std::string bytes;  ///< of the collection
        int areas = 0;
    };
    const Set* at(int i) const;
    int take(const CString& name, std::string bytes);

    std::vector<Set> sets_;
};

}  // namespace pavane
