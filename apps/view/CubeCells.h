#pragma once

#include "pavane/axes/maps/cells/AMatrixAccess.h"
#include "tessel/fits_map.h"

#include <functional>
#include <string>
#include <vector>

namespace pavane
{

/// The cells of all planes of a cube for who goes over them one plane after the other: a plane is
/// read when its first row is asked for, and one is in memory at a time. A plane that cannot be
/// read, or is of another size by now, is blank.
class CubeCells
{
public:
    CubeCells(const std::string& file, int planes, int rows, int columns);
    CubeCells(const CubeCells&) = delete;
    CubeCells& operator=(const CubeCells&) = delete;
    /// One for each plane; they live as long as this.
    std::vector<const AMatrixAccess*> planes() const;
    /// Asked all the time while a plane is read; when it answers 0 the plane is left blank. Empty
    /// for nobody.
    void setGoing(const std::function<int()>& goesOn) { goesOn_ = goesOn; }

private:
    class Plane : public AMatrixAccess
    {
    public:
        Plane(CubeCells& cube, int number) : cube_(&cube), number_(number) {}
        int rows() const override { return cube_->rows_; }
        int columns() const override { return cube_->columns_; }
        void copyRow(int row, int first, int count, float* to) const override;
        const float* floatRow(int row) const override;

    private:
        CubeCells* cube_;
        int number_;
    };
    const float* row(int plane, int row);

    std::string file_;
    int rows_, columns_;
    std::vector<Plane> all_;
    FitsMap map_;
    std::function<int()> goesOn_;
    int read_ = -1;  ///< the plane that is in memory
};

}  // namespace pavane
