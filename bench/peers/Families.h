/// The operations of the library, one unit a family: what each starts from, our call, the limits.
#pragma once

#include "peers/Contest.h"

namespace Vr::bench::peers {

void AddWeld(Contest& contest);
void AddNormals(Contest& contest);
void AddEdit(Contest& contest);
void AddEdges(Contest& contest);
void AddMeasure(Contest& contest);
void AddTransform(Contest& contest);
void AddMerge(Contest& contest);
void AddCopy(Contest& contest);
void AddFile(Contest& contest);

}  // namespace Vr::bench::peers
