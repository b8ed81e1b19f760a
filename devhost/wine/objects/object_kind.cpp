#include "devhost/wine/objects/object_kind.h"

#include <algorithm>

#include "platform/values/text.h"

namespace pxtarvo::devhost {

namespace {

/// {6A1B6D5F-54C1-4C9B-8E0B-3D6A51B4nnnn}, by the kind's number: types need no name beyond the process.
GUID typeOf(std::size_t number) {
    GUID type = {0x6a1b6d5f, 0x54c1, 0x4c9b, {0x8e, 0x0b, 0x3d, 0x6a, 0x51, 0xb4, 0, 0}};
    type.Data4[6] = static_cast<unsigned char>(number >> 8);
    type.Data4[7] = static_cast<unsigned char>(number);
    return type;
}

int placeOf(const std::vector<std::u16string_view>& names, std::u16string_view name) {
    return static_cast<int>(std::ranges::find(names, name) - names.begin());
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

ObjectKind::ObjectKind(std::string_view kindName, std::u16string_view defaultMember,
                       std::vector<std::u16string_view> kindMembers)
    : name(kindName),
      names(std::move(kindMembers)),
      members{names, defaultMember.empty() ? -1 : placeOf(names, defaultMember)},
      description(typeOf(objectBook().kinds.size()), members) {
    objectBook().kinds.push_back(this);
}

void ObjectKind::expect(const windows::CallArguments& arguments, std::u16string_view member,
                        std::span<const VARTYPE> types) const {
    std::vector<VARTYPE> given;
    for (std::size_t at = 0; at < arguments.count(); ++at) given.push_back(V_VT(&arguments.raw(at)));
    if (std::ranges::equal(given, types)) return;
    std::string text = joined({name, ".", toUtf8(member), " called with types"});
    for (const VARTYPE type : given) text += " " + std::to_string(type);
    std::vector<std::string>& noted = objectBook().violations;
    if (std::ranges::find(noted, text) == noted.end()) noted.push_back(std::move(text));
}

ObjectBook& objectBook() {
    static ObjectBook book;
    return book;
}

}  // namespace pxtarvo::devhost
