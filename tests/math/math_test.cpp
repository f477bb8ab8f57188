#include "support/skeleton_builder.h"
#include "vdt/math/matrix.h"
#include "vdt/math/quaternion.h"

#include <cstring>
#include <limits>

namespace vdt::test {
namespace {

Matrix randomMatrix(Dice& dice)
{
    Matrix matrix = Matrix::Identity();
    for (int i = 0; i < 4; ++i) matrix.setRow(i, dice.position(2));
    return matrix;
}

void expectNear(const Vector3& a, const Vector3& b, double tolerance)
{
    EXPECT_LE(Length(a - b), tolerance) << a.x << ' ' << a.y << ' ' << a.z << ", not " << b.x << ' ' << b.y << ' '
                                        << b.z;
}

TEST(Vector, IsNormalisedOnlyIfAComponentIsLargeEnough)
{
    struct Row {
        Vector3 vector;
        bool normalised;
    };
    const double nan = std::numeric_limits<double>::quiet_NaN();
    for (const Row& row : {Row{{0, 0, 0}, false},
                           {{1e-10, -1e-10, 1e-10}, false},
                           {{0, -1.0001e-10, 0}, true},
                           {{nan, nan, nan}, false},
                           {{3, 4, 12}, true}}) {
        SCOPED_TRACE(row.vector.y);
        Vector3 vector = row.vector;
        EXPECT_EQ(Normalize(vector), row.normalised);
        EXPECT_TRUE(row.normalised ? std::fabs(Length(vector) - 1) < 1e-15
                                   : std::memcmp(&vector, &row.vector, sizeof vector) == 0);
    }
}

TEST(Matrix, InverseAndNormalMatrixKeepWhatTheyPromise)
{
    Dice dice(1);
    for (int i = 0; i < 100; ++i) {
        const Matrix a = randomMatrix(dice);
        const Vector3 p = dice.position(3);
        expectNear(TransformPoint(TransformPoint(p, a), Inverse(a)), p, 1e-9 * (1 + Length(p)) * 1e3);

        // A normal stays perpendicular to its surface.
        const Vector3 u = dice.position(1), v = dice.position(1);
        const Vector3 normal = TransformVector(Cross(u, v), NormalMatrix(a));
        EXPECT_NEAR(Dot(Normalized(normal), Normalized(TransformVector(u, a))), 0, 1e-9);
    }
    EXPECT_EQ(Inverse(Matrix{}), Matrix::Identity());
}

TEST(Quaternion, TurnsTheAxesClockwiseAsRowsOfAMatrix)
{
    const Matrix quarterTurnAboutZ = ToMatrix({0, 0, std::sqrt(0.5F), std::sqrt(0.5F)}, {7, 8, 9});
    expectNear(quarterTurnAboutZ.row(0), {0, -1, 0}, 1e-7);
    expectNear(quarterTurnAboutZ.row(1), {1, 0, 0}, 1e-7);
    EXPECT_EQ(quarterTurnAboutZ.row(3), (Vector3{7, 8, 9}));
    EXPECT_EQ(ToMatrix({0, 0, 0, 0}, {0, 0, 0}), Matrix::Identity());
}

TEST(Quaternion, ComesBackFromItsMatrix)
{
    Dice dice(2);
    std::vector<Quaternion> turns{{1, 0, 0, 0},       {0, 1, 0, 0},       {0, 0, 1, 0},        {0.6F, 0.8F, 0, 0},
                                  {0, 0.6F, 0.8F, 0}, {0.8F, 0, 0.6F, 0}, {0.6F, 0, -0.8F, 0}, {0, 0, 0, 1}};
    const auto part = [&] { return static_cast<float>(dice.real(-1, 1)); };
    for (int i = 0; i < 200; ++i) turns.push_back(Normalized(Quaternion{part(), part(), part(), part()}));
    for (const Quaternion& q : turns) {
        SCOPED_TRACE(testing::Message() << q.x << ' ' << q.y << ' ' << q.z << ' ' << q.w);
        const Matrix turn = ToMatrix(q, {0, 0, 0});
        expectNear(Cross(turn.row(0), turn.row(1)), turn.row(2), 1e-6);
        const Quaternion back = ToQuaternion(turn);
        const float agreement = std::fabs(q.x * back.x + q.y * back.y + q.z * back.z + q.w * back.w);
        const double tolerance = q.w == 0 ? 1e-6 : 3e-7 / (q.w * q.w); // the trace tells little near a half turn
        EXPECT_NEAR(agreement, 1, tolerance);
    }
}

TEST(Quaternion, IsNormalisedOnlyIfAComponentIsLargeEnough)
{
    const Quaternion tiny{1.1920929e-7F, 0, 0, 0};
    EXPECT_EQ(Normalized(tiny), tiny);
    EXPECT_EQ(Normalized(Quaternion{0, -2e-7F, 0, 0}), (Quaternion{0, -1, 0, 0}));
}

} // namespace
} // namespace vdt::test
