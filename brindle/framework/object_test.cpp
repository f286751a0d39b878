// Run-time classes: the library's own, the host's, and what an object says about itself.
#include "brindle/framework/object.h"

#include <gtest/gtest.h>

#include <memory>

#include "brindle/framework/archive.h"
#include "testing/layout.h"

namespace {

class CHostObject : public CObject {
  public:
    const CRuntimeClass* GetRuntimeClass() const override { return &classCHostObject; }
    static const CRuntimeClass classCHostObject;
};

class CDerivedObject : public CHostObject {
  public:
    const CRuntimeClass* GetRuntimeClass() const override { return &classCDerivedObject; }
    static const CRuntimeClass classCDerivedObject;
};

class BehindObject : public CObject {
  public:
    virtual void Next() {}
};

CObject* CreateHost() {
    return new CHostObject;
}
CObject* CreateDerived() {
    return new CDerivedObject;
}

const CRuntimeClass CHostObject::classCHostObject = {"CHostObject", sizeof(CHostObject),    3,
                                                     CreateHost,    RUNTIME_CLASS(CObject), nullptr};
const CRuntimeClass CDerivedObject::classCDerivedObject = {
    "CDerivedObject", sizeof(CDerivedObject), 0xFFFF, CreateDerived, RUNTIME_CLASS(CHostObject), nullptr};
// A second class of a name that is taken, and one that cannot be created.
const CRuntimeClass kSecondHostObject = {"CHostObject", 1, 0xFFFF, nullptr, RUNTIME_CLASS(CObject), nullptr};
const CRuntimeClass kAbstract = {"CAbstractObject", 1, 0xFFFF, nullptr, RUNTIME_CLASS(CObject), nullptr};
const CRuntimeClass kImpostor = {"CObject", 1, 0xFFFF, CreateHost, nullptr, nullptr};

void RegisterAll() {
    RegisterRuntimeClass(CHostObject::classCHostObject);
    RegisterRuntimeClass(CDerivedObject::classCDerivedObject);
    RegisterRuntimeClass(kSecondHostObject);
    RegisterRuntimeClass(kAbstract);
    RegisterRuntimeClass(kImpostor);
    RegisterRuntimeClass(*RUNTIME_CLASS(CObject));  // the library's own: nothing happens
}

TEST(RuntimeClass, LookUpByName) {
    RegisterAll();
    struct Row {
        const char* label;
        const char* name;
        const CRuntimeClass* expected;
    };
    const Row rows[] = {
        {"the library's base", "CObject", RUNTIME_CLASS(CObject)},
        {"a host's class", "CHostObject", RUNTIME_CLASS(CHostObject)},
        {"another", "CDerivedObject", RUNTIME_CLASS(CDerivedObject)},
        {"one that cannot be created", "CAbstractObject", &kAbstract},
        {"case counts", "chostobject", nullptr},
        {"part of a name", "CHost", nullptr},
        {"unknown", "CNothing", nullptr},
        {"empty", "", nullptr},
        {"null", nullptr, nullptr},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.label);
        EXPECT_EQ(CRuntimeClass::FromName(row.name), row.expected);
    }
}

TEST(RuntimeClass, RegisteringAgainChangesNothing) {
    RegisterAll();
    const CRuntimeClass* const next = CDerivedObject::classCDerivedObject.m_pNextClass;
    RegisterAll();
    EXPECT_EQ(CDerivedObject::classCDerivedObject.m_pNextClass, next);
    // The chain ends: a name that is nowhere is looked for to the end.
    EXPECT_EQ(CRuntimeClass::FromName("CNothing"), nullptr);
    EXPECT_EQ(RUNTIME_CLASS(CObject)->m_pNextClass, nullptr);
}

TEST(RuntimeClass, Creation) {
    RegisterAll();
    const std::unique_ptr<CObject> host(CRuntimeClass::CreateObject("CHostObject"));
    ASSERT_NE(host, nullptr);
    EXPECT_EQ(host->GetRuntimeClass(), RUNTIME_CLASS(CHostObject));
    const std::unique_ptr<CObject> derived(RUNTIME_CLASS(CDerivedObject)->CreateObject());
    EXPECT_NE(dynamic_cast<CDerivedObject*>(derived.get()), nullptr);
    EXPECT_EQ(CRuntimeClass::CreateObject("CAbstractObject"), nullptr);
    EXPECT_EQ(CRuntimeClass::CreateObject("CObject"), nullptr) << "the base cannot be created";
    EXPECT_EQ(CRuntimeClass::CreateObject("CNothing"), nullptr);
    EXPECT_EQ(kAbstract.CreateObject(), nullptr);
}

TEST(RuntimeClass, Derivation) {
    const CDerivedObject derived;
    const CHostObject host;
    EXPECT_TRUE(derived.IsKindOf(RUNTIME_CLASS(CDerivedObject)));
    EXPECT_TRUE(derived.IsKindOf(RUNTIME_CLASS(CHostObject)));
    EXPECT_TRUE(derived.IsKindOf(RUNTIME_CLASS(CObject)));
    EXPECT_FALSE(host.IsKindOf(RUNTIME_CLASS(CDerivedObject)));
    EXPECT_FALSE(RUNTIME_CLASS(CObject)->IsDerivedFrom(nullptr));
    EXPECT_TRUE(host.IsSerializable());
    EXPECT_FALSE(derived.IsSerializable());
}

TEST(Object, TheBaseStoresNothing) {
    BehindObject object;
    EXPECT_EQ(object.GetRuntimeClass(), RUNTIME_CLASS(CObject));
    EXPECT_STREQ(RUNTIME_CLASS(CObject)->m_lpszClassName, "CObject");
    EXPECT_FALSE(object.IsSerializable());
    CArchiveMemoryStream stream;
    CArchive archive(stream, CArchive::store);
    object.Serialize(archive);
    object.AssertValid();
    EXPECT_EQ(stream.bytes(), "");
}

TEST(Object, VirtualOperationsStandInSlotOrder) {
    using brindle::testing::SlotOf;
    EXPECT_EQ(SlotOf(&CObject::GetRuntimeClass), 0u);
    EXPECT_EQ(SlotOf(&CObject::Serialize), 3u);  // behind the two slots of the destructor
    EXPECT_EQ(SlotOf(&CObject::AssertValid), 4u);
    EXPECT_EQ(SlotOf(&CObject::Dump), 5u);
    EXPECT_EQ(SlotOf(&BehindObject::Next), 6u);
}

}  // namespace
