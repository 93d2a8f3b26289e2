#pragma once

#include "pavane/containers/AObjArray.h"
#include "tessel/ABitArray.h"
#include "tessel/ABitMatrix.h"
#include "tessel/api.h"
#include "tessel/uvfits/AUVXFqTbl.h"

namespace pavane
{

/// The frequency groups of a data file: each is a bit array with one bit for each IF, bit i for IF
/// i + 1. Groups are in the order of their first IF. Holds a copy of the file's frequencies.
class PAVANE_API AFreqGroupArray : public AObjArray<ABitArray>
{
public:
    /// No groups of no frequencies.
    AFreqGroupArray();
    /// A group for each IF, and a mark on each frequency selection.
    explicit AFreqGroupArray(const AUVXFqTbl& frequencies);
    AFreqGroupArray(const AFreqGroupArray&) = default;
    AFreqGroupArray& operator=(const AFreqGroupArray&) = default;
    ~AFreqGroupArray() override;

    const AUVXFqTbl& FqTbl() const { return frequencies_; }
    /// One bit for each frequency selection, in their order; the host's to change.
    ABitArray& GetFqIDMark() { return selections_; }
    const ABitArray& GetFqIDMark() const { return selections_; }

    /// Writes the groups: their number (int32), then each as ABitArray::Store. Non-zero on success.
    int Store(AFile& file) const;
    /// Reads what Store wrote and puts it in order of the first IF. Groups that have not one bit
    /// for each IF, and damaged files, give 0 and leave everything as it is.
    int Load(AFile& file);

    /// Makes `cells` a matrix of IFs (rows) and channels (columns) in which all channels of the
    /// group's IFs are set. Non-zero on success; an empty matrix and 0 for a group that does not
    /// exist, or when there is no memory.
    int ItemToMatrix(int group, ABitMatrix& cells) const;
    /// The first and last cell of that matrix that is set, counted row by row from 0. A group that
    /// is empty, or does not exist, gives 0x7FFFF and 0. Numbers are cut at 2^31 - 1.
    void GetFreqRange(int group, int& first, int& last) const;

private:
    AUVXFqTbl frequencies_;
    ABitArray selections_;
};

/// Index of the last bit that is 1, -1 when there is none.
PAVANE_API int lastOne(const ABitArray& bits);

}  // namespace pavane
