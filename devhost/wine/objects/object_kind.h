#pragma once

// The kinds of automation objects that this host hands out: each has a type of its own, which it describes as
// an installed library's objects do, and a count of the objects alive.

#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "platform/windows/automation/automation_object.h"

namespace pxtarvo::devhost {

/// Part of a static: it lives as long as the process, whoever counts it.
class TypeDescription : public ITypeInfo {
  public:
    TypeDescription(const GUID& type, const windows::MemberNames& members) : type_(type), members_(members) {}

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) override;
    ULONG STDMETHODCALLTYPE AddRef() override { return 2; }
    ULONG STDMETHODCALLTYPE Release() override { return 1; }

    /// Only the type's identifier and kind; they need not be released.
    HRESULT STDMETHODCALLTYPE GetTypeAttr(TYPEATTR** attributes) override;
    void STDMETHODCALLTYPE ReleaseTypeAttr(TYPEATTR*) override {}
    HRESULT STDMETHODCALLTYPE GetIDsOfNames(LPOLESTR* names, UINT count, MEMBERID* identifiers) override;

    // What nobody asks of this host.
    HRESULT STDMETHODCALLTYPE GetTypeComp(ITypeComp**) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetFuncDesc(UINT, FUNCDESC**) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetVarDesc(UINT, VARDESC**) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetNames(MEMBERID, BSTR*, UINT, UINT*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetRefTypeOfImplType(UINT, HREFTYPE*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetImplTypeFlags(UINT, INT*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE Invoke(PVOID, MEMBERID, WORD, DISPPARAMS*, VARIANT*, EXCEPINFO*,
                                     UINT*) override {
        return E_NOTIMPL;
    }
    HRESULT STDMETHODCALLTYPE GetDocumentation(MEMBERID, BSTR*, BSTR*, DWORD*, BSTR*) override {
        return E_NOTIMPL;
    }
    HRESULT STDMETHODCALLTYPE GetDllEntry(MEMBERID, INVOKEKIND, BSTR*, BSTR*, WORD*) override {
        return E_NOTIMPL;
    }
    HRESULT STDMETHODCALLTYPE GetRefTypeInfo(HREFTYPE, ITypeInfo**) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE AddressOfMember(MEMBERID, INVOKEKIND, PVOID*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE CreateInstance(IUnknown*, REFIID, PVOID*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetMops(MEMBERID, BSTR*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetContainingTypeLib(ITypeLib**, UINT*) override { return E_NOTIMPL; }
    void STDMETHODCALLTYPE ReleaseFuncDesc(FUNCDESC*) override {}
    void STDMETHODCALLTYPE ReleaseVarDesc(VARDESC*) override {}

  private:
    GUID type_;
    windows::MemberNames members_;
    TYPEATTR attributes_{};
};

struct ObjectKind {
    ObjectKind(std::string_view kindName, std::u16string_view defaultMember,
               std::vector<std::u16string_view> kindMembers);
    ObjectKind(const ObjectKind&) = delete;
    ObjectKind& operator=(const ObjectKind&) = delete;

    /// Notes in the book a call of `member` whose arguments are not exactly of these types.
    void expect(const windows::CallArguments& arguments, std::u16string_view member,
                std::span<const VARTYPE> types) const;

    std::string_view name;
    const std::vector<std::u16string_view> names;
    const windows::MemberNames members;
    TypeDescription description;
    int alive = 0;
};

/// The host's book of its automation objects; one for the process, used by the apartment's thread only.
struct ObjectBook {
    std::vector<const ObjectKind*> kinds;
    std::vector<std::string> violations;  ///< distinct texts of arguments of a wrong type
};

ObjectBook& objectBook();

}  // namespace pxtarvo::devhost
