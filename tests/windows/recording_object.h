#pragma once

// An automation object that writes down how it is called, exact argument types included, and a window.

#include <functional>
#include <map>
#include <string>
#include <vector>

#include "platform/values/conversion.h"
#include "platform/values/locale.h"
#include "platform/values/runtime_error.h"
#include "platform/values/text.h"
#include "platform/window.h"
#include "platform/windows/automation/automation_object.h"
#include "platform/windows/automation/dispatch.h"

namespace pxtarvo::windows::tests {

using Calls = std::vector<std::string>;
using Answer = std::function<OwnedVariant(const CallArguments&)>;

inline std::string describe(const VARIANT& value) {
    static const std::map<int, std::string> names = {
        {VT_EMPTY, "EMPTY"},     {VT_NULL, "NULL"},  {VT_I2, "I2"},     {VT_I4, "I4"},
        {VT_R8, "R8"},           {VT_BSTR, "BSTR"},  {VT_BOOL, "BOOL"}, {VT_DISPATCH, "OBJ"},
        {VT_VARIANT, "VARIANT"}, {VT_ERROR, "ERROR"}};
    const int type = V_VT(&value) & ~VT_BYREF;
    std::string text = names.at(type);
    if (V_VT(&value) & VT_BYREF) text += "*";
    if (type == VT_VARIANT) return text + "(" + describe(*V_VARIANTREF(&value)) + ")";
    if (type == VT_DISPATCH) return toObject(value) ? text : text + " Nothing";
    if (type == VT_ERROR || type == VT_EMPTY || type == VT_NULL) return text;
    return text + " " + toText(toVariant(value), spanishLocale());
}

/// Answers to members by name; a member without one answers Empty.
class RecordingObject : public AutomationObject {
  public:
    RecordingObject(Calls& calls, const std::vector<std::u16string_view>& names,
                    std::map<std::u16string_view, Answer> answers = {})
        : AutomationObject({names, -1}), calls_(calls), names_(names), answers_(std::move(answers)) {}

    HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID iid, LPOLESTR* names, UINT count, LCID locale,
                                            DISPID* identifiers) override {
        ++namesAsked;
        return AutomationObject::GetIDsOfNames(iid, names, count, locale, identifiers);
    }
    HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT* count) override {
        *count = description ? 1 : 0;
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT, LCID, ITypeInfo** answer) override {
        *answer = Reference<ITypeInfo>(description).detach();
        return *answer ? S_OK : DISP_E_BADINDEX;
    }

    int namesAsked = 0;
    Reference<ITypeInfo> description;

  protected:
    OwnedVariant member(int place, const CallArguments& arguments) override {
        const std::u16string_view name = names_[static_cast<std::size_t>(place)];
        const WORD kind = arguments.kind();
        std::string call = kind == DISPATCH_PROPERTYPUT      ? "put "
                           : kind == DISPATCH_PROPERTYPUTREF ? "putref "
                           : kind == DISPATCH_PROPERTYGET    ? "get "
                                                             : "";
        call += toUtf8(name);
        for (std::size_t i = 0; i < arguments.count(); ++i) {
            call += (i == 0 ? " " : ", ") + describe(arguments.raw(i));
        }
        calls_.push_back(call);
        const auto answer = answers_.find(name);
        return answer == answers_.end() ? OwnedVariant() : answer->second(arguments);
    }

  private:
    Calls& calls_;
    const std::vector<std::u16string_view>& names_;
    std::map<std::u16string_view, Answer> answers_;
};

inline Answer always(const Reference<RecordingObject>& object) {
    return [object](const CallArguments&) { return OwnedVariant(Reference<IDispatch>::share(object.get())); };
}
inline Answer always(Variant value) {
    return [value](const CallArguments&) { return OwnedVariant(value); };
}

inline Dispatch late(const Reference<RecordingObject>& object) {
    return Dispatch(Reference<IDispatch>::share(object.get()));
}

class OneBoxWindow : public Window {
  public:
    explicit OneBoxWindow(Platform& platform) : Window(platform, {.name = "frmPrueba", .caption = ""}) {}
    TextBox Text1{*this, {.name = "Text1", .index = 3, .rect = {}, .maxLength = 8}};

  protected:
    void Form_Load() override {}
};

/// The number that `body` raises; 0 when it raises nothing.
template <class Body>
std::int32_t errorOf(const Body& body) {
    try {
        body();
        return 0;
    } catch (const RuntimeError& error) {
        return error.number();
    }
}

}  // namespace pxtarvo::windows::tests
