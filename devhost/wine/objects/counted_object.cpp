#include "devhost/wine/objects/counted_object.h"

#include <algorithm>

namespace pxtarvo::devhost {

void ObjectBook::note(std::string text) {
    if (std::ranges::find(violations, text) == violations.end()) violations.push_back(std::move(text));
}

ObjectBook& objectBook() {
    static ObjectBook book;
    return book;
}

HRESULT CountedObject::GetTypeInfoCount(UINT* count) {
    if (!count) return E_POINTER;
    *count = 1;
    return S_OK;
}

HRESULT CountedObject::GetTypeInfo(UINT index, LCID, ITypeInfo** description) {
    if (!description) return E_POINTER;
    *description = index == 0 ? &kind_.description : nullptr;
    return index == 0 ? S_OK : DISP_E_BADINDEX;
}

void CountedObject::expect(const windows::CallArguments& arguments, std::string_view member,
                           std::initializer_list<VARTYPE> types) const {
    bool same = arguments.count() == types.size();
    for (std::size_t at = 0; same && at < types.size(); ++at) {
        same = V_VT(&arguments.raw(at)) == types.begin()[at];
    }
    if (same) return;
    std::string text = std::string(kind_.name) + "." + std::string(member) + " called with types";
    for (std::size_t at = 0; at < arguments.count(); ++at) {
        text += " " + std::to_string(V_VT(&arguments.raw(at)));
    }
    objectBook().note(std::move(text));
}

}  // namespace pxtarvo::devhost
