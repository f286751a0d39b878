// CObject: the serialisable base with run-time class information, and the table of classes that can be
// created by name.
//
// The library's own classes are in the table from the start (it is constant-initialised); a host adds its
// classes with RegisterRuntimeClass. Thread: registration belongs to start-up; look-ups may come from
// anywhere.
#pragma once

#include <cstddef>
#include <cstdint>

#include "brindle/framework/export.h"

class CArchive;
class CObject;

// Receives the diagnostic dump of an object. The base writes nothing to it.
class CDumpContext;

// What is known of a class at run time: its name, its size, how to make one, its base.
struct CRuntimeClass {
    const char* m_lpszClassName;
    int m_nObjectSize;
    unsigned int m_wSchema;                     // 0xFFFF: not serialisable by name
    CObject* (*m_pfnCreateObject)();            // null: not dynamically creatable
    const CRuntimeClass* m_pBaseClass;          // null for CObject
    mutable const CRuntimeClass* m_pNextClass;  // link of the table; belongs to it

    // A new object the caller owns, or null when the class is not dynamically creatable.
    BRINDLE_API CObject* CreateObject() const;
    // True for the class itself and everything derived from `base`.
    BRINDLE_API bool IsDerivedFrom(const CRuntimeClass* base) const noexcept;
    // The class of that exact name, or null.
    BRINDLE_API static const CRuntimeClass* FromName(const char* name) noexcept;
    // FromName and CreateObject in one; null when either has nothing.
    BRINDLE_API static CObject* CreateObject(const char* name);
};

// Adds a class to the table; it must live until the process ends. Registering it again does nothing; of two
// classes with one name the one registered first is found.
BRINDLE_API void RegisterRuntimeClass(const CRuntimeClass& type) noexcept;

class BRINDLE_API CObject {
  public:
    // The class of the object itself, not of the pointer to it. Never null; classes are never destroyed.
    virtual const CRuntimeClass* GetRuntimeClass() const;
    virtual ~CObject();
    // Reads or writes the object's fields. The base stores nothing.
    virtual void Serialize(CArchive& archive);
    virtual void AssertValid() const;
    virtual void Dump(CDumpContext& context) const;

    bool IsKindOf(const CRuntimeClass* type) const { return GetRuntimeClass()->IsDerivedFrom(type); }
    bool IsSerializable() const { return GetRuntimeClass()->m_wSchema != 0xFFFF; }

    static const CRuntimeClass classCObject;

  protected:
    CObject() = default;
    CObject(const CObject&) = default;
    CObject& operator=(const CObject&) = default;
};

#define RUNTIME_CLASS(class_name) (&class_name::class##class_name)
