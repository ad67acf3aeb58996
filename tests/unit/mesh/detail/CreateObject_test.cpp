#include "mesh/detail/CreateObject.h"

#include <gtest/gtest.h>

#include <memory>
#include <stdexcept>

namespace {

using Vr::detail::CreateObjectOrNull;

class Plain : public CObject {};

class ShortOfMemory : public CObject {
public:
    ShortOfMemory() { throw std::bad_alloc(); }
};

// As under MFC, whose operator new throws this.
class ShortOfMemoryUnderMfc : public CObject {
public:
    ShortOfMemoryUnderMfc() { AfxThrowMemoryException(); }
};

class Failing : public CObject {
public:
    Failing() { throw std::runtime_error("not memory"); }
};

TEST(CreateObject, AnswersNullForEitherReportOfShortMemoryAndPassesOnAllElse) {
    const std::unique_ptr<CObject> object(CreateObjectOrNull<Plain>());
    EXPECT_NE(object, nullptr);
    EXPECT_EQ(CreateObjectOrNull<ShortOfMemory>(), nullptr);
    EXPECT_EQ(CreateObjectOrNull<ShortOfMemoryUnderMfc>(), nullptr);
    EXPECT_THROW(static_cast<void>(CreateObjectOrNull<Failing>()), std::runtime_error);
}

}  // namespace
