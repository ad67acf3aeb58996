// Constants, and the layout of the value types that a host relies on.
#include <opennurbs.h>

#include <cstring>
#include <type_traits>

#include "unit/platform/opennurbs/SameBits.h"

namespace {

template <class Value, size_t size, size_t alignment, bool isTriviallyCopyable>
constexpr bool HasLayout() {
    return sizeof(Value) == size && alignof(Value) == alignment &&
           std::is_trivially_copyable<Value>::value == isTriviallyCopyable &&
           !std::is_polymorphic<Value>::value;
}

// Later interfaces have no destructors any more.
#if defined(ON_UNSET_POSITIVE_VALUE)
constexpr bool kIsBoxTrivial = true;
#else
constexpr bool kIsBoxTrivial = false;
#endif

static_assert(HasLayout<ON_2dPoint, 16, 8, true>(), "");
static_assert(HasLayout<ON_3dPoint, 24, 8, true>(), "");
static_assert(HasLayout<ON_4dPoint, 32, 8, true>(), "");
static_assert(HasLayout<ON_2dVector, 16, 8, true>(), "");
static_assert(HasLayout<ON_3dVector, 24, 8, true>(), "");
static_assert(HasLayout<ON_Color, 4, 4, true>(), "");
static_assert(HasLayout<ON_Interval, 16, 8, kIsBoxTrivial>(), "");
static_assert(HasLayout<ON_BoundingBox, 48, 8, kIsBoxTrivial>(), "");
static_assert(HasLayout<ON_PlaneEquation, 32, 8, true>(), "");
static_assert(HasLayout<ON_Plane, 128, 8, false>(), "");
static_assert(HasLayout<ON_Line, 48, 8, false>(), "");
static_assert(HasLayout<ON_Circle, 136, 8, false>(), "");
static_assert(HasLayout<ON_Arc, 152, 8, false>(), "");
static_assert(HasLayout<ON_Cone, 144, 8, false>(), "");
static_assert(HasLayout<ON_Cylinder, 152, 8, false>(), "");
static_assert(HasLayout<ON_Xform, 128, 8, true>(), "");
static_assert(HasLayout<ON_UUID, 16, 4, true>(), "");

// Arrays of points are grown without being cleared, and moved without a loop.
static_assert(std::is_trivially_destructible<ON_3dPoint>::value, "");
#if defined(VERIDANE_EMBEDDED_KERNEL)
static_assert(std::is_nothrow_default_constructible<ON_3dPoint>::value, "");
static_assert(std::is_nothrow_move_constructible<ON_Plane>::value, "");
#endif

}  // namespace

TEST(ON_Defines, ConstantsHaveTheRecordedBits) {
    using kerneltest::BitsOf;
    EXPECT_EQ(BitsOf(ON_PI), 0x400921fb54442d18u);
    EXPECT_EQ(BitsOf(ON_DBL_MIN), 0x0010000000000000u);
    EXPECT_EQ(BitsOf(ON_EPSILON), 0x3cb0000000000000u);
    EXPECT_EQ(BitsOf(ON_SQRT_EPSILON), 0x3e500000000002c4u);
    EXPECT_EQ(BitsOf(ON_ZERO_TOLERANCE), 0x3df0000000000000u);
    EXPECT_EQ(BitsOf(ON_UNSET_VALUE), 0xffe5f8bd9e331dd2u);
    EXPECT_EQ(ON_UNSET_COLOR, 0xffffffffu);
}

TEST(ON_Defines, ArchiveModesHaveTheirNumbers) {
    EXPECT_EQ(static_cast<int>(ON::archive_mode::read), 1);
    EXPECT_EQ(static_cast<int>(ON::archive_mode::write), 2);
    EXPECT_EQ(static_cast<int>(ON::archive_mode::readwrite), 3);
    EXPECT_EQ(static_cast<int>(ON::archive_mode::read3dm), 5);
    EXPECT_EQ(static_cast<int>(ON::archive_mode::write3dm), 6);
}

TEST(ON_Defines, MembersStandInTheirOrder) {
    const ON_3dPoint point(1.0, 2.0, 3.0);
    EXPECT_EQ((&point.x)[1], 2.0);
    EXPECT_EQ((&point.x)[2], 3.0);
    const ON_UUID id = {0x04030201, 0x0605, 0x0807, {9, 10, 11, 12, 13, 14, 15, 16}};
    unsigned char bytes[16];
    std::memcpy(bytes, &id, sizeof bytes);
    EXPECT_EQ(bytes[4], 5);
    EXPECT_EQ(bytes[6], 7);
    EXPECT_EQ(bytes[15], 16);
}

TEST(ON_Defines, UuidsAreEqualWhenEveryByteIs) {
    ON_UUID id = ON_nil_uuid;
    EXPECT_TRUE(id == ON_nil_uuid);
    id.Data4[7] = 1;
    EXPECT_TRUE(id != ON_nil_uuid);
}
