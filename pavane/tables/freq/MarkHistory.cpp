#include "pavane/tables/freq/MarkHistory.h"

#include "pavane/containers/MemoryFile.h"

namespace pavane
{

namespace
{

RecordBytes bytesOf(const MemoryFile& file)
{
    return {reinterpret_cast<const std::uint8_t*>(file.bytes().data()), file.bytes().size()};
}

class Marks : public EditTarget
{
public:
    explicit Marks(ABitArray& marks) : marks_(&marks) {}
    int applyEdit(const EditChange& change) override
    {
        MemoryFile file(std::string(change.after.begin(), change.after.end()));
        return marks_->Load(file);
    }
    int applySelection(const EditSelection&) override { return 1; }

private:
    ABitArray* marks_;
};

}  // namespace

void MarkHistory::record(const ABitArray& before, const ABitArray& after, std::string_view label)
{
    MemoryFile was;
    MemoryFile is;
    (void)before.Store(was);
    (void)after.Store(is);
    history_.begin(label, {});
    history_.state(0, bytesOf(was), bytesOf(is));
    (void)history_.commit({});
}

int MarkHistory::undo(ABitArray& marks)
{
    Marks target(marks);
    return history_.undo(target);
}

int MarkHistory::redo(ABitArray& marks)
{
    Marks target(marks);
    return history_.redo(target);
}

}  // namespace pavane
