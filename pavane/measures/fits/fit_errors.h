#pragma once

#include "pavane/measures/fits/source_shape.h"

namespace pavane
{

/// The covariance of all parameters of a fitted model for noise of width 1: (J'J)^-1 J'NJ (J'J)^-1,
/// N the correlation of white noise that was convolved with a beam, a Gaussian 1.41 times as wide
/// as the beam; without a beam (null) N is 1. For one free
/// source of two beams and more these are the errors of Condon 1997 (PASP 109, 166, with a noise as
/// wide as the beam) within 15 per cent; for places of sources as small as the beam his are up to
/// 1.41 times smaller than the scatter of such fits. `beam`: squared widths over (column, row). Of
/// beams that many cells lie across N is summed over a part of the cells, evenly apart. 0 where the
/// cells do not tell the parameters apart. May throw std::bad_alloc.
int covarianceOf(const GaussianModel& model, const FitCells& cells, const SquareMatrix& squares,
                 const Symmetric2* beam, SquareMatrix& covariance);

}  // namespace pavane
