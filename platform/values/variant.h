#pragma once

// A value as automation hands it over: it keeps the type that the database, the spreadsheet or the caller
// gave it. Converting it to another type is in platform/values/conversion.h.

#include <cstdint>
#include <string>
#include <string_view>
#include <utility>
#include <variant>

namespace pxtarvo {

struct Empty {
    friend bool operator==(Empty, Empty) = default;
};
struct Null {
    friend bool operator==(Null, Null) = default;
};

/// A fixed-point amount in ten-thousandths, as the automation type of that name (VT_CY).
struct Currency {
    std::int64_t tenThousandths = 0;
    friend bool operator==(const Currency&, const Currency&) = default;
};

/// A 96-bit whole number divided by 10^scale (scale 0 to 28), as the automation type of that name
/// (VT_DECIMAL).
struct Decimal {
    std::uint64_t low = 0;
    std::uint32_t high = 0;
    std::uint8_t scale = 0;
    bool negative = false;
    friend bool operator==(const Decimal&, const Decimal&) = default;
};

/// A date and time in days since 30 December 1899; the fraction is the time of day, also before that day
/// (VT_DATE).
struct Date {
    double days = 0;
    friend bool operator==(const Date&, const Date&) = default;
};

/// An error code kept as a value (VT_ERROR), such as a spreadsheet's #N/A.
struct ErrorValue {
    std::int32_t code = 0;
    friend bool operator==(const ErrorValue&, const ErrorValue&) = default;
};

class Variant {
  public:
    /// In the order of the storage's alternatives.
    enum class Type {
        Empty,
        Null,
        Boolean,
        Byte,
        Integer,
        Long,
        Single,
        Double,
        Currency,
        Decimal,
        Date,
        Text,
        Error
    };

    Variant() = default;
    Variant(Empty) {}
    Variant(Null value) : value_(value) {}
    Variant(bool value) : value_(value) {}
    Variant(std::uint8_t value) : value_(value) {}
    Variant(std::int16_t value) : value_(value) {}
    Variant(std::int32_t value) : value_(value) {}
    Variant(float value) : value_(value) {}
    Variant(double value) : value_(value) {}
    Variant(Currency value) : value_(value) {}
    Variant(Decimal value) : value_(value) {}
    Variant(Date value) : value_(value) {}
    Variant(ErrorValue value) : value_(value) {}
    Variant(std::string value) : value_(std::move(value)) {}
    Variant(std::string_view value) : value_(std::string(value)) {}
    Variant(const char* value) : value_(std::string(value)) {}

    // GCC's std::variant, never without a value, still destroys one when memory runs out in its own copy
    // constructor, before there is any. Here the copy is a value from the start, or nothing.
    Variant(const Variant& other) : value_(std::visit(Copying(), other.value_)) {}
    Variant(Variant&&) noexcept = default;
    Variant& operator=(const Variant&) = default;
    Variant& operator=(Variant&&) noexcept = default;
    ~Variant() = default;

    Type type() const noexcept { return static_cast<Type>(value_.index()); }
    bool isEmpty() const noexcept { return type() == Type::Empty; }
    bool isNull() const noexcept { return type() == Type::Null; }
    bool isText() const noexcept { return type() == Type::Text; }

    /// The stored value when it is of exactly this type, else nullptr.
    template <class T>
    const T* get() const noexcept {
        return std::get_if<T>(&value_);
    }
    template <class Visitor>
    decltype(auto) visit(Visitor&& visitor) const {
        return std::visit(std::forward<Visitor>(visitor), value_);
    }
    /// Same type and same value; Null equals Null here, unlike in platform/values/conversion.h's compare().
    friend bool operator==(const Variant&, const Variant&) = default;

  private:
    using Value = std::variant<Empty, Null, bool, std::uint8_t, std::int16_t, std::int32_t, float, double,
                               Currency, Decimal, Date, std::string, ErrorValue>;
    struct Copying {
        template <class T>
        Value operator()(const T& value) const {
            return Value(std::in_place_type<T>, value);
        }
    };

    Value value_;
};

}  // namespace pxtarvo
