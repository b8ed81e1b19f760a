#pragma once

// What every automation object of this host has in common: it is counted by its kind, so that a session can
// tell which references came back, and it holds the types of its arguments against what the plug-in promises.

#include <initializer_list>
#include <string>
#include <string_view>
#include <vector>

#include "devhost/wine/objects/object_kind.h"

namespace pxtarvo::devhost {

/// The host's book of its automation objects; one for the process, used by the apartment's thread only.
struct ObjectBook {
    std::vector<const ObjectKind*> kinds;
    std::vector<std::string> violations;  ///< distinct texts of arguments of a wrong type

    void note(std::string text);
};

ObjectBook& objectBook();

class CountedObject : public windows::AutomationObject {
  public:
    ~CountedObject() override { --kind_.alive; }

    HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT* count) override;
    HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT index, LCID locale, ITypeInfo** description) override;

  protected:
    explicit CountedObject(ObjectKind& kind) : AutomationObject(kind.members), kind_(kind) { ++kind.alive; }

    /// Notes a call whose arguments are not exactly of these types (VARTYPE, with VT_BYREF where it belongs).
    void expect(const windows::CallArguments& arguments, std::string_view member,
                std::initializer_list<VARTYPE> types) const;

  private:
    ObjectKind& kind_;
};

/// The same object as an automation value.
template <class Object>
windows::OwnedVariant asValue(const windows::Reference<Object>& object) {
    return windows::OwnedVariant(windows::Reference<IDispatch>::share(object.get()));
}

}  // namespace pxtarvo::devhost
