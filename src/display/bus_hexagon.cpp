#include "display/bus_hexagon.h"
#include <algorithm>
#include <initializer_list>

namespace {

void SetPoints(HexagonShape &shape, std::initializer_list<PixelPoint> points) {
    std::copy(points.begin(), points.end(), shape.points.begin());
    shape.count = points.size();
}

} // namespace

HexagonShape ShapeHexagon(int32_t x0, int32_t x1, int32_t middle, int32_t half, int32_t paneWidth) {
    x0 = std::max(x0, -half);
    x1 = std::min(x1, paneWidth + half);
    int32_t top = middle - half;
    int32_t bottom = middle + half;
    int32_t w = (x1 - x0 + 1) / 2;

    HexagonShape shape = {};
    shape.x0 = x0;
    shape.x1 = x1;
    shape.room = x1 - 2 * half - x0;
    if (w <= 0) {
        SetPoints(shape, {{x0, top}, {x0, bottom}});
    } else if (x1 <= w) {
        int32_t d = x1 * half / w;
        SetPoints(shape, {{0, middle + d}, {x1, middle}, {0, middle - d}});
    } else if (w > half) {
        SetPoints(shape, {{x0, middle},
                          {x0 + half, bottom},
                          {x1 - half, bottom},
                          {x1, middle},
                          {x1 - half, top},
                          {x0 + half, top},
                          {x0, middle}});
    } else {
        int32_t from = std::max(x0, 0);
        int32_t d = x0 < 0 ? x0 * half / w : 0;
        SetPoints(shape,
                  {{from, middle + d}, {x0 + w, top}, {x1, middle}, {x0 + w, bottom}, {from, middle - d}});
    }
    return shape;
}
