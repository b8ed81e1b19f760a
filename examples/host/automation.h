#pragma once

// What a host needs of automation: values, calls by name, objects of its own. Errors are exceptions here.

#ifndef UNICODE
#define UNICODE
#endif
#include <windows.h>

#include <objbase.h>
#include <oleauto.h>

#include <initializer_list>
#include <string>
#include <utility>
#include <vector>

namespace automation {

constexpr LCID usEnglish = 0x0409, spanish = 0x0C0A;

/// An error of automation: what the user reads of it.
struct Failure {
    HRESULT code;
    std::wstring text;
};

/// An error by its number, as the language of scripts has it.
inline Failure failure(int number, std::wstring text) {
    return {static_cast<HRESULT>(0x800A0000u + static_cast<unsigned>(number)), std::move(text)};
}

/// A VARIANT that is freed.
class Value {
  public:
    Value() { VariantInit(&value_); }
    Value(const wchar_t* text) : Value() { V_VT(&value_) = VT_BSTR, V_BSTR(&value_) = SysAllocString(text); }
    Value(const std::wstring& text) : Value(text.c_str()) {}
    Value(long number) : Value() { V_VT(&value_) = VT_I4, V_I4(&value_) = number; }
    Value(double number) : Value() { V_VT(&value_) = VT_R8, V_R8(&value_) = number; }
    Value(bool truth) : Value() {
        V_VT(&value_) = VT_BOOL, V_BOOL(&value_) = truth ? VARIANT_TRUE : VARIANT_FALSE;
    }
    Value(IDispatch* object) : Value() {
        V_VT(&value_) = VT_DISPATCH, V_DISPATCH(&value_) = object;
        if (object) object->AddRef();
    }
    /// A copy, read through references.
    explicit Value(const VARIANT& value) : Value() { VariantCopyInd(&value_, const_cast<VARIANT*>(&value)); }
    Value(const Value& other) : Value(other.value_) {}
    Value& operator=(Value other) { return std::swap(value_, other.value_), *this; }
    ~Value() { VariantClear(&value_); }

    static Value missing() {
        Value value;
        V_VT(&value.value_) = VT_ERROR, V_ERROR(&value.value_) = DISP_E_PARAMNOTFOUND;
        return value;
    }

    VARIANT* put() { return &value_; }
    const VARIANT& get() const { return value_; }
    bool isNull() const { return V_VT(&value_) == VT_NULL || V_VT(&value_) == VT_EMPTY; }
    IDispatch* object() const { return V_VT(&value_) == VT_DISPATCH ? V_DISPATCH(&value_) : nullptr; }
    Value as(VARTYPE type, LCID locale = usEnglish) const {
        Value other;
        const HRESULT changed =
            VariantChangeTypeEx(&other.value_, const_cast<VARIANT*>(&value_), locale, 0, type);
        if (FAILED(changed)) throw failure(13, L"No coinciden los tipos");
        return other;
    }
    std::wstring text(LCID locale = usEnglish) const {
        if (isNull()) return {};
        const Value text = as(VT_BSTR, locale);
        return std::wstring(V_BSTR(&text.value_), SysStringLen(V_BSTR(&text.value_)));
    }
    double number() const {
        const Value number = as(VT_R8);
        return V_R8(&number.value_);
    }

  private:
    VARIANT value_;
};

inline Value call(IDispatch* object, const wchar_t* member, WORD kind,
                  std::initializer_list<Value> arguments = {}) {
    if (!object) throw failure(91, L"Variable de objeto o bloque With no establecido");
    DISPID identifier = 0;
    auto* name = const_cast<LPOLESTR>(member);
    if (FAILED(object->GetIDsOfNames(IID_NULL, &name, 1, LOCALE_USER_DEFAULT, &identifier))) {
        throw failure(438, std::wstring(L"Falta el miembro ") + member);
    }
    std::vector<VARIANTARG> backwards;
    for (auto at = arguments.end(); at != arguments.begin();) backwards.push_back((--at)->get());
    DISPID assigned = DISPID_PROPERTYPUT;
    const bool assignment = kind == DISPATCH_PROPERTYPUT || kind == DISPATCH_PROPERTYPUTREF;
    DISPPARAMS given{backwards.data(), assignment ? &assigned : nullptr, static_cast<UINT>(backwards.size()),
                     assignment ? 1u : 0u};
    Value answer;
    EXCEPINFO record{};
    const HRESULT called = object->Invoke(identifier, IID_NULL, LOCALE_USER_DEFAULT, kind, &given,
                                          assignment ? nullptr : answer.put(), &record, nullptr);
    if (SUCCEEDED(called)) return answer;
    Failure raised{called == DISP_E_EXCEPTION ? record.scode : called,
                   record.bstrDescription ? record.bstrDescription : member};
    for (BSTR text : {record.bstrSource, record.bstrDescription, record.bstrHelpFile}) SysFreeString(text);
    throw raised;
}

inline Value get(IDispatch* object, const wchar_t* member) {
    return call(object, member, DISPATCH_PROPERTYGET);
}
inline void put(IDispatch* object, const wchar_t* member, Value value) {
    call(object, member, DISPATCH_PROPERTYPUT, {std::move(value)});
}

inline Value created(const wchar_t* name) {
    CLSID type;
    IDispatch* object = nullptr;
    HRESULT made = CLSIDFromProgID(name, &type);
    if (SUCCEEDED(made)) {
        made = CoCreateInstance(type, nullptr, CLSCTX_INPROC_SERVER | CLSCTX_LOCAL_SERVER, IID_IDispatch,
                                reinterpret_cast<void**>(&object));
    }
    if (FAILED(made)) throw failure(429, std::wstring(name) + L" no se puede crear");
    Value value(object);
    object->Release();
    return value;
}

/// The arguments of one call, first one first.
class Arguments {
  public:
    explicit Arguments(const DISPPARAMS& given) : given_(given) {}

    VARIANTARG& raw(UINT at) const {
        if (at >= given_.cArgs) throw failure(449, L"Argumento no opcional");
        return given_.rgvarg[given_.cArgs - 1 - at];
    }
    Value value(UINT at) const { return Value(raw(at)); }
    /// Replaces the text that the caller passed by reference.
    void giveBack(UINT at, const std::wstring& text) const {
        if (V_VT(&raw(at)) != (VT_BYREF | VT_BSTR)) throw failure(13, L"No coinciden los tipos");
        SysReAllocString(V_BSTRREF(&raw(at)), text.c_str());
    }

  private:
    const DISPPARAMS& given_;
};

/// An automation object of these members; it deletes itself with its last reference.
class Object : public IDispatch {
  public:
    explicit Object(std::vector<const wchar_t*> members) : members_(std::move(members)) {}
    Object(const Object&) = delete;
    Object& operator=(const Object&) = delete;

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) override {
        const bool known = IsEqualIID(iid, IID_IUnknown) || IsEqualIID(iid, IID_IDispatch);
        *object = known ? this : nullptr;
        if (known) AddRef();
        return known ? S_OK : E_NOINTERFACE;
    }
    ULONG STDMETHODCALLTYPE AddRef() override { return ++references_; }
    ULONG STDMETHODCALLTYPE Release() override {
        const ULONG left = --references_;
        if (left == 0) delete this;
        return left;
    }
    HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT* count) override { return *count = 0, S_OK; }
    HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT, LCID, ITypeInfo**) override { return DISP_E_BADINDEX; }
    HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, LPOLESTR* names, UINT, LCID,
                                            DISPID* identifiers) override {
        for (std::size_t at = 0; at < members_.size(); ++at) {
            if (lstrcmpiW(members_[at], names[0]) == 0)
                return identifiers[0] = static_cast<DISPID>(at + 1), S_OK;
        }
        return DISP_E_UNKNOWNNAME;
    }
    HRESULT STDMETHODCALLTYPE Invoke(DISPID identifier, REFIID, LCID, WORD, DISPPARAMS* given,
                                     VARIANT* answer, EXCEPINFO* record, UINT*) override {
        if (identifier < 1 || identifier > static_cast<DISPID>(members_.size())) return DISP_E_MEMBERNOTFOUND;
        try {
            const Value result =
                member(members_[static_cast<std::size_t>(identifier - 1)], Arguments(*given));
            if (answer) VariantCopy(answer, const_cast<VARIANT*>(&result.get()));
            return S_OK;
        } catch (const Failure& raised) {
            if (record) *record = {}, record->scode = raised.code;
            if (record) record->bstrDescription = SysAllocString(raised.text.c_str());
            return DISP_E_EXCEPTION;
        }
    }

  protected:
    virtual ~Object() = default;
    virtual Value member(std::wstring name, const Arguments& arguments) = 0;

  private:
    std::vector<const wchar_t*> members_;
    ULONG references_ = 1;
};

/// A new object as a value, which owns it.
template <class Kind, class... Given>
Value made(Given&&... given) {
    Kind* const object = new Kind(std::forward<Given>(given)...);
    Value value(object);
    object->Release();
    return value;
}

}  // namespace automation
