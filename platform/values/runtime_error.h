#pragma once

// The one exception type of the system: an automation run-time error, a number and a description in the
// user's language (Spanish). Numbers are the platform's own: small positive ones for the language run time
// and ADO, a signed HRESULT for what a database provider reports.

#include <cstdint>
#include <exception>
#include <memory>
#include <string>
#include <string_view>

namespace pxtarvo {

/// Numbers of the errors that this system raises or tests by number.
enum class ErrorNumber : std::int32_t {
    InvalidProcedureCall = 5,
    Overflow = 6,
    OutOfMemory = 7,
    SubscriptOutOfRange = 9,
    TypeMismatch = 13,
    BadFileNumber = 52,
    FileNotFound = 53,
    BadFileMode = 54,
    FileAlreadyOpen = 55,
    DeviceInputOutput = 57,
    DiskFull = 61,
    InputPastEnd = 62,
    TooManyFiles = 67,
    PermissionDenied = 70,
    PathFileAccess = 75,
    PathNotFound = 76,
    ObjectNotSet = 91,
    InvalidUseOfNull = 94,
    ControlArrayElement = 340,
    InvalidPropertyValue = 380,
    CannotCreateObject = 429,
    MemberNotSupported = 438,
    HostRefused = 999,  ///< a write that the host's table writer refused
    NoCurrentRecord = 3021,
    ItemNotFound = 3265,
    ObjectClosed = 3704,
    ObjectOpen = 3705,
    // OLE DB, as signed HRESULTs
    TransactionAlreadyOpen = -2147168237,  ///< XACT_E_XTIONEXISTS
    NoTransactionOpen = -2147168242,       ///< XACT_E_NOTRANSACTION
    ProviderFailure = -2147467259,         ///< E_FAIL
    SqlSyntax = -2147217900,               ///< DB_E_ERRORSINCOMMAND
    NoSuchTable = -2147217865,             ///< DB_E_NOTABLE
    IntegrityViolation = -2147217873,      ///< DB_E_INTEGRITYVIOLATION
    ConversionFailed = -2147217913,        ///< DB_E_CANTCONVERTVALUE
    // what no code of ours raises as a RuntimeError
    Unexpected = -2147418113,  ///< E_UNEXPECTED
};

/// Copying one takes no memory, and neither does one with the platform's own description.
class RuntimeError : public std::exception {
  public:
    /// An error with the platform's own Spanish description of `number`; a number that the platform does not
    /// know is described as "Error definido por la aplicación o el objeto".
    explicit RuntimeError(ErrorNumber number) noexcept;
    /// An error described by whoever raised it; the description may be empty.
    RuntimeError(std::int32_t number, std::string description);
    RuntimeError(ErrorNumber number, std::string description);

    std::int32_t number() const noexcept { return number_; }
    /// Valid as long as this error or a copy of it.
    std::string_view description() const noexcept { return own_ ? *own_ : common_; }
    bool is(ErrorNumber number) const noexcept { return number_ == static_cast<std::int32_t>(number); }
    const char* what() const noexcept override { return own_ ? own_->c_str() : common_.data(); }

  private:
    std::int32_t number_;
    std::string_view common_;  ///< a text of the program's own, ended by a zero
    std::shared_ptr<const std::string> own_;
};

/// The platform's Spanish description of an error number, ended by a zero.
std::string_view errorDescription(std::int32_t number) noexcept;

/// To be called in a handler: the exception being handled as an error of this system. Memory that ran out is
/// 7, any other foreign exception Unexpected, described by itself where there is memory for that.
RuntimeError caughtError() noexcept;

}  // namespace pxtarvo
