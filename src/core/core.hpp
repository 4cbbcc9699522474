// What every family builds on, in one include: the evaluation rule
// (evaluation.hpp), the named numbers (constants.hpp), tests and roundings of
// plain numbers (numbers.hpp), angle conversions and folds (angles.hpp) and
// the geometry as values (geometry.hpp). Never exported.
#ifndef QUILLON_CORE_CORE_HPP
#define QUILLON_CORE_CORE_HPP

#include "angles.hpp"
#include "constants.hpp"
#include "evaluation.hpp"
#include "geometry.hpp"
#include "numbers.hpp"

#endif
