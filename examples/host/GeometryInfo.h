/// What is to be said about curves, surfaces and materials.
#pragma once

#include <opennurbs.h>

#include <string>

namespace Host {

/// @name A line each, two spaces in front, of what an object is like
/// Of curves and surfaces that openNURBS does not call valid nothing is measured: their numbers may lead
/// anywhere.
/// @{
std::string Describe(const ON_Curve& curve);
std::string Describe(const ON_Surface& surface);
std::string Describe(const ON_Material& material);
/// @}

/// Returns "(0, 0, 0) to (1, 2, 3)".
std::string BoxText(const ON_BoundingBox& box);

}  // namespace Host
