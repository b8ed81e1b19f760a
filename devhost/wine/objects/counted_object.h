#pragma once

// An automation object of this host: a table of members over the portable object behind it. It is counted by
// its kind, so that a session can tell which references came back, and the types of its arguments are held
// against what the plug-in promises.

#include <functional>
#include <initializer_list>
#include <utility>
#include <vector>

#include "devhost/wine/objects/object_kind.h"

namespace pxtarvo::devhost {

/// A member of objects that stand for a `Subject`.
template <class Subject>
struct Member {
    /// `does` gets the subject and, where it takes them, the arguments; what it returns is the answer. A call
    /// whose arguments are not exactly of these types (VARTYPE, with VT_BYREF where it belongs) is noted;
    /// none are given for a member that takes any.
    template <class Does>
    Member(std::u16string_view itsName, Does itsDoes, std::initializer_list<VARTYPE> itsTypes = {})
        : name(itsName), types(itsTypes) {
        does = [itsDoes](Subject& subject, const windows::CallArguments& arguments) {
            const auto called = [&] {
                if constexpr (std::is_invocable_v<const Does&, Subject&>) {
                    return std::invoke(itsDoes, subject);
                } else {
                    return std::invoke(itsDoes, subject, arguments);
                }
            };
            if constexpr (std::is_void_v<decltype(called())>) {
                called();
                return windows::OwnedVariant();
            } else {
                return windows::OwnedVariant(called());
            }
        };
    }

    std::u16string_view name;
    std::vector<VARTYPE> types;
    std::function<windows::OwnedVariant(Subject&, const windows::CallArguments&)> does;
};

/// A static of the file that makes the objects.
template <class Subject>
struct KindOf : ObjectKind {
    /// `defaultMember` is empty for none.
    KindOf(std::string_view itsName, std::u16string_view defaultMember,
           std::initializer_list<Member<Subject>> itsMembers)
        : ObjectKind(itsName, defaultMember, namesOf(itsMembers)), table(itsMembers) {}

    std::vector<Member<Subject>> table;

  private:
    static std::vector<std::u16string_view> namesOf(std::initializer_list<Member<Subject>> members) {
        std::vector<std::u16string_view> names;
        for (const Member<Subject>& member : members) names.push_back(member.name);
        return names;
    }
};

template <class Subject>
class CountedObject : public windows::AutomationObject {
  public:
    CountedObject(KindOf<Subject>& kind, Subject subject)
        : AutomationObject(kind.members), kind_(kind), subject_(std::move(subject)) {
        ++kind.alive;
    }
    ~CountedObject() override { --kind_.alive; }

    HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT* count) override {
        if (!count) return E_POINTER;
        *count = 1;
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT index, LCID, ITypeInfo** description) override {
        if (!description) return E_POINTER;
        *description = index == 0 ? &kind_.description : nullptr;
        return index == 0 ? S_OK : DISP_E_BADINDEX;
    }
    const Subject& subject() const noexcept { return subject_; }

  protected:
    windows::OwnedVariant member(int place, const windows::CallArguments& arguments) override {
        const Member<Subject>& called = kind_.table[static_cast<std::size_t>(place)];
        if (!called.types.empty()) kind_.expect(arguments, called.name, called.types);
        return called.does(subject_, arguments);
    }

  private:
    KindOf<Subject>& kind_;
    Subject subject_;
};

/// A new object of this kind.
template <class Subject>
windows::Reference<IDispatch> made(KindOf<Subject>& kind, Subject subject) {
    return windows::makeDispatch<CountedObject<Subject>>(kind, std::move(subject));
}

}  // namespace pxtarvo::devhost
