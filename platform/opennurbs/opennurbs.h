/// The embedded geometry kernel: the part of openNURBS's version 4 interface that the library and
/// its hosts use, under the same names, with the same results and the same bytes.
#pragma once

#include "ON_Array.h"
#include "ON_BinaryArchive.h"
#include "ON_BoundingBox.h"
#include "ON_Color.h"
#include "ON_Defines.h"
#include "ON_Line.h"
#include "ON_Plane.h"
#include "ON_Point.h"
#include "ON_RoundShapes.h"
#include "ON_String.h"
#include "ON_UUID.h"
#include "ON_Xform.h"
