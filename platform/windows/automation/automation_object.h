#pragma once

// Automation objects of our own: counted, late-bound by name, without a type description where no derived
// class gives one. No exception leaves them: what a member raises reaches the caller as exception
// information.

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>

#include "platform/values/variant.h"
#include "platform/windows/automation/automation_values.h"
#include "platform/windows/automation/com_headers.h"
#include "platform/windows/automation/counted.h"
#include "platform/windows/automation/reference.h"

namespace pxtarvo::windows {

/// What a member was called with. A position is 0-based from the first argument; asking for one that is not
/// there raises 449.
class CallArguments {
  public:
    CallArguments(DISPPARAMS& parameters, WORD kind) : parameters_(parameters), kind_(kind) {}

    std::size_t count() const noexcept { return parameters_.cArgs; }
    /// Whether the member is assigned to, by value or by reference; the value is the last argument.
    bool isPut() const noexcept { return (kind_ & (DISPATCH_PROPERTYPUT | DISPATCH_PROPERTYPUTREF)) != 0; }
    WORD kind() const noexcept { return kind_; }

    /// The argument as it was handed over.
    VARIANTARG& raw(std::size_t position) const;
    /// Read through references; see toVariant().
    Variant value(std::size_t position) const { return toVariant(raw(position)); }
    /// A text argument; 13 for any other type.
    std::string text(std::size_t position) const;
    /// A 16- or 32-bit integer argument; 13 for any other type.
    std::int32_t number(std::size_t position) const;
    /// Empty for Nothing.
    Reference<IDispatch> object(std::size_t position) const { return toObject(raw(position)); }

    /// Changes what the caller passed by reference, a text or a 16-bit integer; nothing happens where it was
    /// passed by value, 13 where it is of another type.
    void giveBack(std::size_t position, const Variant& value) const;

  private:
    DISPPARAMS& parameters_;
    WORD kind_;
};

/// Names of members, in an array that outlives the object; the identifier of each is its place, from 1.
struct MemberNames {
    std::span<const std::u16string_view> names;
    /// Which of `names` the object's default member is; none when negative.
    int defaultMember = -1;
};

/// What IDispatch::GetIDsOfNames answers for an object with these members.
HRESULT identifiersOf(const MemberNames& members, LPOLESTR* names, UINT count, DISPID* identifiers);

class AutomationObject : public Counted<IDispatch> {
  public:
    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) override;
    HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT* count) override;
    HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT index, LCID locale, ITypeInfo** description) override;
    HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, LPOLESTR* names, UINT count, LCID locale,
                                            DISPID* identifiers) override;
    HRESULT STDMETHODCALLTYPE Invoke(DISPID identifier, REFIID, LCID locale, WORD kind,
                                     DISPPARAMS* parameters, VARIANT* answer, EXCEPINFO* record,
                                     UINT* wrongArgument) override;

  protected:
    explicit AutomationObject(const MemberNames& members) : members_(members) {}

    /// Does what the member at this place of the names does; what it raises reaches the caller.
    virtual OwnedVariant member(int place, const CallArguments& arguments) = 0;

  private:
    MemberNames members_;
};

}  // namespace pxtarvo::windows
