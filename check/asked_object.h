#pragma once

// An object of the host under check: called as the plug-in calls it, and what goes wrong becomes a finding.

#include <initializer_list>
#include <string>
#include <string_view>

#include "check/findings.h"
#include "platform/values/runtime_error.h"
#include "platform/windows/automation/dispatch.h"

namespace pxtarvo::check {

/// A call that could not be made; its finding is written already.
struct NotAnswered {};

/// Runs `body`; a call in it that fails has been told.
template <class Body>
void attempt(const Body& body) {
    try {
        body();
    } catch (const NotAnswered&) {
    }
}

class AskedObject {
  public:
    /// `name` is what the object is called in the findings.
    AskedObject(windows::Dispatch object, std::string name, Findings& findings)
        : object_(std::move(object)), name_(std::move(name)), findings_(&findings) {}

    const windows::Dispatch& object() const noexcept { return object_; }
    std::string member(std::u16string_view name) const;

    /// A fault for each of these members that the object lacks.
    void expectMembers(std::initializer_list<std::u16string_view> names) const;

    /// Runs `body`, which calls this member; `arguments` says what it is called with. An error of the call
    /// becomes a fault and NotAnswered.
    template <class Body>
    auto ask(std::u16string_view name, std::string_view arguments, const Body& body) const {
        try {
            return body(object_);
        } catch (const RuntimeError& error) {
            tell(name, arguments, error);
            throw NotAnswered{};
        }
    }
    /// A property, read by one of Dispatch's members.
    template <class Read>
    auto read(std::u16string_view name, Read reading) const {
        return ask(name, "", [&](const windows::Dispatch& object) { return (object.*reading)(name); });
    }
    /// A method without arguments.
    void run(std::u16string_view name) const {
        ask(name, "", [&](const windows::Dispatch& object) { object.run(name); });
    }
    /// The object that a member answers with; a fault and NotAnswered for Nothing and for what is none.
    template <class... Arguments>
    AskedObject child(std::u16string_view name, std::string childName, std::string_view arguments,
                      const Arguments&... given) const {
        windows::Dispatch answer = ask(
            name, arguments, [&](const windows::Dispatch& object) { return object.object(name, given...); });
        if (!answer) nothing(name);
        return {std::move(answer), std::move(childName), *findings_};
    }
    Findings& findings() const noexcept { return *findings_; }
    void fault(std::u16string_view name, std::string_view text) const {
        findings_->fault(member(name), text);
    }

  private:
    void tell(std::u16string_view name, std::string_view arguments, const RuntimeError& error) const;
    [[noreturn]] void nothing(std::u16string_view name) const;

    windows::Dispatch object_;
    std::string name_;
    Findings* findings_;
};

/// "Error N: description".
std::string described(const RuntimeError& error);

}  // namespace pxtarvo::check
