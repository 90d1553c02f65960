#pragma once

class CObject;

// Describes a class so that an object of it can be made from the description alone. `createObject` is null
// when it cannot; what it returns is the caller's, made with new.
struct CRuntimeClass
{
    const char* className;
    CObject* (*createObject)();
};

// The root of the classes that carry a description of themselves.
class CObject
{
public:
    CObject(const CObject&) = delete;
    CObject& operator=(const CObject&) = delete;
    virtual ~CObject() = default;

    virtual const CRuntimeClass& GetRuntimeClass() const;

protected:
    CObject() = default;
};
