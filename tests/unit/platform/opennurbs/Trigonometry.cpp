// The check is made once, on every angle that the recorded shapes use.
#include "unit/platform/opennurbs/Trigonometry.h"

namespace kerneltest {

bool HasRecordedTrigonometry() {
    static const bool isSame = [] {
        bool allSame = true;
        for (GoldenLine& line : GoldenCases("round_shapes.txt", "trig", 14)) {
            const double t = line.Number();
            allSame = UlpsBetween(std::sin(t), line.Number()) == 0 && allSame;
            allSame = UlpsBetween(std::cos(t), line.Number()) == 0 && allSame;
        }
        return allSame;
    }();
    return isSame;
}

}  // namespace kerneltest
