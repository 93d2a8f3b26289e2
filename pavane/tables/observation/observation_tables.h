#pragma once

#include "pavane/tables/observation/AObservationTbl.h"

namespace pavane
{

// The tables of an observation by name, each with or without marks of its rows.

/// Telescopes of all subarrays: name, position, mount.
class ATelescopesTbl : public AObservationTbl
{
public:
    explicit ATelescopesTbl(MarkItems items = MarkItems::none)
        : AObservationTbl(UvTable::telescopes, items)
    {
    }
};

/// Pairs of telescopes that some groups have: length, number of visibilities.
class ABaselinesTbl : public AObservationTbl
{
public:
    explicit ABaselinesTbl(MarkItems items = MarkItems::none)
        : AObservationTbl(UvTable::baselines, items)
    {
    }
};

/// Sources and their positions.
class ASourcesTbl : public AObservationTbl
{
public:
    explicit ASourcesTbl(MarkItems items = MarkItems::none)
        : AObservationTbl(UvTable::sources, items)
    {
    }
};

/// Polarisations of the visibilities.
class AStokesTbl : public AObservationTbl
{
public:
    explicit AStokesTbl(MarkItems items = MarkItems::none) : AObservationTbl(UvTable::stokes, items)
    {
    }
};

/// IFs of all frequency selections.
class AFrequenciesTbl : public AObservationTbl
{
public:
    explicit AFrequenciesTbl(MarkItems items = MarkItems::none)
        : AObservationTbl(UvTable::frequencies, items)
    {
    }
};

/// Scans, of the index of the file or found among its groups.
class AScansTbl : public AObservationTbl
{
public:
    explicit AScansTbl(MarkItems items = MarkItems::none) : AObservationTbl(UvTable::scans, items)
    {
    }
};

}  // namespace pavane
