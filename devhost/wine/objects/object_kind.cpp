#include "devhost/wine/objects/object_kind.h"

#include "devhost/wine/objects/counted_object.h"

namespace pxtarvo::devhost {

namespace {

/// {6A1B6D5F-54C1-4C9B-8E0B-3D6A51B4nnnn}, by the kind's number: types need no name beyond the process.
GUID typeOf(std::size_t number) {
    GUID type = {0x6a1b6d5f, 0x54c1, 0x4c9b, {0x8e, 0x0b, 0x3d, 0x6a, 0x51, 0xb4, 0, 0}};
    type.Data4[6] = static_cast<unsigned char>(number >> 8);
    type.Data4[7] = static_cast<unsigned char>(number);
    return type;
}

}  // namespace

HRESULT TypeDescription::QueryInterface(REFIID iid, void** object) {
    if (!object) return E_POINTER;
    const bool known = IsEqualIID(iid, IID_IUnknown) || IsEqualIID(iid, IID_ITypeInfo);
    *object = known ? static_cast<ITypeInfo*>(this) : nullptr;
    return known ? S_OK : E_NOINTERFACE;
}

HRESULT TypeDescription::GetTypeAttr(TYPEATTR** attributes) {
    if (!attributes) return E_POINTER;
    attributes_.guid = type_;
    attributes_.typekind = TKIND_DISPATCH;
    *attributes = &attributes_;
    return S_OK;
}

HRESULT TypeDescription::GetIDsOfNames(LPOLESTR* names, UINT count, MEMBERID* identifiers) {
    return windows::identifiersOf(members_, names, count, identifiers);
}

ObjectKind::ObjectKind(std::string_view kindName, const windows::MemberNames& kindMembers)
    : name(kindName), members(kindMembers), description(typeOf(objectBook().kinds.size()), kindMembers) {
    objectBook().kinds.push_back(this);
}

}  // namespace pxtarvo::devhost
