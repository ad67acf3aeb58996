/// Objects as the recorded results write them.
#pragma once

#include <memory>
#include <string>

#include "unit/platform/opennurbs/GoldenFile.h"

namespace kerneltest {

/// Builds the object that comes next in a line; null for "-".
///
/// Polycurves are built with `Append`; their recorded parameters are checked against what it makes.
std::unique_ptr<ON_Object> ObjectFrom(GoldenLine& line);

/// Returns every field of an object in one line, numbers by their bits; "-" for a null pointer.
///
/// Equal text means equal class and equal bits.
std::string TextOf(const ON_Object* object);

/// Returns the word that the recorded results use for an object's class; "-" for a null pointer.
std::string ClassWordOf(const ON_Object* object);

}  // namespace kerneltest
