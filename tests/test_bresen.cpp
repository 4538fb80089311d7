// The line stepper, step for step.
#include "QuindleTest.h"
#include "glbresen.h"

#include <utility>
#include <vector>

namespace {

using BresenTest = QuindleTest;
using Steps = std::vector<std::pair<int, int>>;

// Walks a whole line and returns every position it passed; checks that only
// the last step reports arrival.
Steps Walk(int fromX, int fromY, int toX, int toY, int stepX = 3, int stepY = 3)
{
    GLPoint pos(fromX, fromY), dest(toX, toY);
    GLBresen line(&pos, &dest, GLPoint(stepX, stepY));
    Steps steps;
    int arrived = FALSE;
    while (!arrived) {
        arrived = line.DoMove();
        steps.emplace_back(pos.GetX(), pos.GetY());
        EXPECT_EQ(arrived, line.StepsLeft() == 0 ? TRUE : FALSE);
    }
    return steps;
}

TEST_F(BresenTest, LinesComeOutStepForStep)
{
    EXPECT_EQ(Walk(0, 0, 10, 4), (Steps{{3, 1}, {6, 2}, {9, 3}, {10, 4}}));
    EXPECT_EQ(Walk(0, 0, 7, -5), (Steps{{3, -2}, {6, -4}, {7, -5}}));
    EXPECT_EQ(Walk(10, 10, 10, 30), (Steps{{10, 13}, {10, 16}, {10, 19}, {10, 22}, {10, 25}, {10, 28}, {10, 30}}));
    EXPECT_EQ(Walk(0, 0, 2, 1), (Steps{{2, 1}}));
    // With as many steps on both axes, x is the major axis.
    EXPECT_EQ(Walk(0, 0, -9, 9), (Steps{{-3, 3}, {-6, 6}, {-9, 9}}));
    // Uneven step sizes: y needs more steps, x is spread with side steps.
    EXPECT_EQ(Walk(0, 0, 5, 8, 3, 2), (Steps{{1, 2}, {3, 4}, {4, 6}, {5, 8}}));
}

TEST_F(BresenTest, AZeroLengthLineArrivesOnItsOnlyStep)
{
    EXPECT_EQ(Walk(4, 4, 4, 4), (Steps{{4, 4}}));
}

TEST_F(BresenTest, MisuseEndsWithTheExactReport)
{
    GLPoint pos(0, 0), dest(1, 0);
    GLBresen line(&pos, &dest, GLPoint(3, 3));
    EXPECT_EQ(line.DoMove(), TRUE);
    EXPECT_GL_ASSERT(line.DoMove(), "Source/Glbresen.cpp", "mStepsLeft>0");
    EXPECT_GL_ASSERT(GLBresen(&pos, &dest, GLPoint(0, 3)), "Source/Glbresen.cpp",
                     "stepSize.GetX() > 0 && stepSize.GetY() > 0");
    // A copy steps the same position.
    GLPoint from(0, 0), to(6, 0);
    GLBresen original(&from, &to, GLPoint(3, 3));
    GLBresen copy(original);
    copy.DoMove();
    EXPECT_EQ(from.GetX(), 3);
    // The original keeps its own count of steps left, but arrival is judged by
    // the shared position alone.
    EXPECT_EQ(original.DoMove(), TRUE);
    EXPECT_EQ(from.GetX(), 6);
    EXPECT_EQ(original.StepsLeft(), 1);
}

} // namespace
