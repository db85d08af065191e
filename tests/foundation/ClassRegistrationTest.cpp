#include "SampleObjects.h"

#include <gtest/gtest.h>

namespace {

/// Says that it is not to be built; its heir may be.
class Unbuilt : public GStreamable {
    G_DECLARE_CLASS(Unbuilt)

public:
    using NotBuiltByName = Unbuilt;
};
class BuiltHeir : public Unbuilt {
    G_DECLARE_CLASS(BuiltHeir)
};

class Abstract : public GStreamable {
    G_DECLARE_CLASS(Abstract)

public:
    virtual int answer() = 0;
};

class NeedsArgument : public GStreamable {
    G_DECLARE_CLASS(NeedsArgument)

public:
    explicit NeedsArgument(int) {}
};

/// Is built by the constructor for objects about to be read, though it has another one.
class MadeForReading : public GStreamable {
    G_DECLARE_CLASS(MadeForReading)

public:
    MadeForReading() : way(1) {}
    explicit MadeForReading(StreamableInit) : way(2) {}
    int way;
};

class Guarded : public GStreamable {
    G_DECLARE_CLASS(Guarded)

public:
    static inline int ended = 0;

protected:
    Guarded() = default;
    ~Guarded() override { ++ended; }
};

G_DEFINE_CLASS(BuiltHeir, Unbuilt);
G_DEFINE_CLASS(Unbuilt, GStreamable);
G_DEFINE_CLASS(Abstract, GStreamable);
G_DEFINE_CLASS(NeedsArgument, GStreamable);
G_DEFINE_CLASS(MadeForReading, GStreamable);
G_DEFINE_CLASS(Guarded, GStreamable);

}  // namespace

TEST(ClassRegistration, BuildObject_CreatableClass_GivesRootOfNewObject)
{
    GRTTIObject* object = SampleTagged::metaclass_.buildObject();

    ASSERT_NE(object, nullptr);
    EXPECT_EQ(object->getMetaClass(), &SampleTagged::metaclass_);
    EXPECT_EQ(object->cast_to_(GRTTIObject::gTypeInfo_), object);
    SampleTagged::ClassDestroyer_(object);
}

TEST(ClassRegistration, NullBuilder_BuildObjectAndGetBuilder_GiveNull)
{
    for (const GMetaClass* metaclass : {&Unbuilt::metaclass_, &Abstract::metaclass_,
                                        &NeedsArgument::metaclass_, &GStreamable::metaclass_}) {
        EXPECT_EQ(metaclass->getBuilder(), nullptr) << metaclass->name;
        EXPECT_EQ(metaclass->getDestroyer(), nullptr) << metaclass->name;
        EXPECT_EQ(metaclass->buildObject(), nullptr) << metaclass->name;
    }
}

TEST(ClassRegistration, NotBuiltByName_OfBase_DoesNotHoldForHeir)
{
    GRTTIObject* object = BuiltHeir::metaclass_.buildObject();

    ASSERT_NE(object, nullptr);
    BuiltHeir::ClassDestroyer_(object);
}

TEST(ClassRegistration, ConstructorForReading_IsPreferredByTheBuilder)
{
    auto* object = zmr::class_cast<MadeForReading>(MadeForReading::metaclass_.buildObject());

    ASSERT_NE(object, nullptr);
    EXPECT_EQ(object->way, 2);
    GStreamable::destroy(object);
}

TEST(ClassRegistration, ProtectedConstructorAndDestructor_AreUsed)
{
    GRTTIObject* object = Guarded::metaclass_.buildObject();
    ASSERT_NE(object, nullptr);
    const int before = Guarded::ended;
    Guarded::ClassDestroyer_(object);

    EXPECT_EQ(Guarded::ended, before + 1);
}

TEST(ClassRegistration, ClassDestroyer_OfNull_DoesNothing)
{
    const int alive = SampleNode::alive;
    SampleNode::ClassDestroyer_(nullptr);

    EXPECT_EQ(SampleNode::alive, alive);
}

TEST(ClassRegistration, ClassDestroyer_OfObjectOfAnotherClass_DoesNothing)
{
    SampleNode node;
    SampleGroup::ClassDestroyer_(&node);
    SampleLeaf::ClassDestroyer_(&node);  // a base is not its heir

    node.name = "still there";
    EXPECT_EQ(node.name, "still there");
}

TEST(ClassRegistration, CastTo_OwnClassAndEveryBase_GivesTheSubObject)
{
    SampleTagged object;

    EXPECT_EQ(object.cast_to_(SampleTagged::gTypeInfo_), &object);
    EXPECT_EQ(object.cast_to_(SampleLeaf::gTypeInfo_), static_cast<SampleLeaf*>(&object));
    EXPECT_EQ(object.cast_to_(SampleNode::gTypeInfo_), static_cast<SampleNode*>(&object));
    // Of the two ways to the root the one through the first base is taken.
    EXPECT_EQ(object.cast_to_(GRTTIObject::gTypeInfo_),
              static_cast<GRTTIObject*>(static_cast<SampleLeaf*>(&object)));
}

TEST(ClassRegistration, CastTo_ClassOfSecondBaseOnly_IsAdjusted)
{
    SampleTagged object;
    void* part = static_cast<GRTTIObject*>(static_cast<SampleLeaf*>(&object))
                     ->cast_to_(SampleTag::gTypeInfo_);

    ASSERT_EQ(part, static_cast<SampleTag*>(&object));
    EXPECT_NE(part, static_cast<void*>(&object));
    EXPECT_EQ(static_cast<SampleTag*>(part)->tag, 77);
}

TEST(ClassRegistration, CastTo_FromSecondBase_FindsTheFirst)
{
    SampleTagged object;
    SampleTag* part = &object;

    EXPECT_EQ(zmr::class_cast<SampleLeaf>(part), static_cast<SampleLeaf*>(&object));
    EXPECT_EQ(part->getMetaClass(), &SampleTagged::metaclass_);
}

TEST(ClassRegistration, CastTo_UnrelatedClass_GivesNullThroughAllBases)
{
    SampleTagged object;

    EXPECT_EQ(object.cast_to_(SampleGroup::gTypeInfo_), nullptr);
    EXPECT_EQ(zmr::class_cast<SampleGroup>(static_cast<SampleTag*>(&object)), nullptr);
    EXPECT_EQ(zmr::class_cast<SampleGroup>(static_cast<SampleTag*>(nullptr)), nullptr);
}

TEST(ClassRegistration, CastTo_OfAnotherTypeInfoWithTheSameName_GivesNull)
{
    const type_info impostor("SampleNode");
    SampleNode node;

    EXPECT_EQ(node.cast_to_(impostor), nullptr);
}

TEST(ClassRegistration, OwnClass_IsToldFromItsBase)
{
    SampleLeaf leaf;

    EXPECT_STREQ(leaf.getClassName(), "SampleLeaf");
    EXPECT_TRUE(leaf.hasTheSameClassAs(&SampleLeaf::metaclass_));
    EXPECT_FALSE(leaf.hasTheSameClassAs(&SampleNode::metaclass_));
    EXPECT_EQ(&leaf.getTypeInfo_(), &SampleLeaf::gTypeInfo_);
    EXPECT_STREQ(leaf.getTypeInfo_().name(), "SampleLeaf");
}
