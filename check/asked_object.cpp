#include "check/asked_object.h"

#include "platform/values/text.h"

namespace pxtarvo::check {

namespace {

constexpr std::int32_t objectRequired = 424;
constexpr std::int32_t argumentNotOptional = 449;
constexpr std::int32_t wrongNumberOfArguments = 450;

constexpr std::string_view missing = "falta el miembro, o no admite esta forma de llamada";

}  // namespace

std::string AskedObject::member(std::u16string_view name) const {
    return name_ + "." + toUtf8(name);
}

void AskedObject::expectMembers(std::initializer_list<std::u16string_view> names) const {
    for (const std::u16string_view name : names) {
        if (!object_.has(name)) fault(name, missing);
    }
}

void AskedObject::tell(std::u16string_view name, std::string_view arguments,
                       const RuntimeError& error) const {
    const std::string given = arguments.empty() ? "ninguno" : std::string(arguments);
    switch (error.number()) {
        case static_cast<std::int32_t>(ErrorNumber::MemberNotSupported):
            // One that the object lacks altogether was told before.
            if (object_.has(name)) fault(name, missing);
            break;
        case static_cast<std::int32_t>(ErrorNumber::TypeMismatch):
            fault(name, "no admite los tipos de sus argumentos: " + given);
            break;
        case argumentNotOptional:
        case wrongNumberOfArguments:
            fault(name, "pide otros argumentos que estos: " + given);
            break;
        case objectRequired:
            fault(name, "no devuelve un objeto");
            break;
        default:
            fault(name, described(error));
    }
}

void AskedObject::nothing(std::u16string_view name) const {
    fault(name, "devuelve Nothing");
    throw NotAnswered{};
}

std::string described(const RuntimeError& error) {
    return "error " + std::to_string(error.number()) + ": " + std::string(error.description());
}

}  // namespace pxtarvo::check
