#include "display/bus_hexagon.h"
#include <gtest/gtest.h>
#include <vector>

namespace {

constexpr int32_t HALF = 10, MIDDLE = 50, PANE = 1000;

HexagonShape Shape(int32_t x0, int32_t x1) {
    return ShapeHexagon(x0, x1, MIDDLE, HALF, PANE);
}

std::vector<std::pair<int32_t, int32_t>> Points(const HexagonShape &shape) {
    std::vector<std::pair<int32_t, int32_t>> points;
    for (size_t i = 0; i < shape.count; i++) points.emplace_back(shape.points[i].x, shape.points[i].y);
    return points;
}

using List = std::vector<std::pair<int32_t, int32_t>>;

} // namespace

TEST(BusHexagon, HasFlatRunsAboveAndBelow) {
    EXPECT_EQ(Points(Shape(100, 200)),
              (List{{100, 50}, {110, 60}, {190, 60}, {200, 50}, {190, 40}, {110, 40}, {100, 50}}));
}

TEST(BusHexagon, IsADiamondUpToTwiceItsHalfHeight) {
    EXPECT_EQ(Shape(100, 120).count, 5u);
    EXPECT_EQ(Shape(100, 121).count, 7u);
    EXPECT_EQ(Points(Shape(100, 120)), (List{{100, 50}, {110, 40}, {120, 50}, {110, 60}, {100, 50}}));
}

TEST(BusHexagon, OfOnePixelIsADiamondAndOfNoneALine) {
    EXPECT_EQ(Points(Shape(100, 101)), (List{{100, 50}, {101, 40}, {101, 50}, {101, 60}, {100, 50}}));
    EXPECT_EQ(Points(Shape(100, 100)), (List{{100, 40}, {100, 60}}));
    EXPECT_EQ(Points(Shape(100, 90)), (List{{100, 40}, {100, 60}}));
}

TEST(BusHexagon, ReachesAHalfHeightBeyondThePaneAtMost) {
    EXPECT_EQ(Shape(-500, 5000).x0, -HALF);
    EXPECT_EQ(Shape(-500, 5000).x1, PANE + HALF);
}

TEST(BusHexagon, IsAWedgeWhereOnlyItsRightHalfIsInThePane) {
    EXPECT_EQ(Points(Shape(-10, 6)), (List{{0, 57}, {6, 50}, {0, 43}}));
    EXPECT_EQ(Points(Shape(-8, 8)), (List{{0, 60}, {8, 50}, {0, 40}}));
    EXPECT_EQ(Points(Shape(-10, 0)), (List{{0, 50}, {0, 50}, {0, 50}}));
}

TEST(BusHexagon, IsACutDiamondWhereItsMiddleIsInThePane) {
    EXPECT_EQ(Points(Shape(-4, 12)), (List{{0, 45}, {4, 40}, {12, 50}, {4, 60}, {0, 55}}));
}

TEST(BusHexagon, HasRoomBetweenItsPoints) {
    EXPECT_EQ(Shape(100, 150).room, 30);
    EXPECT_LE(Shape(100, 120).room, 0);
    EXPECT_EQ(Shape(-500, 40).room, 30); // counted from the clamped end
}
