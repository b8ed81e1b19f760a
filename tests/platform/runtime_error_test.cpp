#include "platform/values/runtime_error.h"

#include <gtest/gtest.h>

#include <limits>

namespace pxtarvo {
namespace {

TEST(RuntimeError, DescribesKnownNumbersAndKeepsGivenDescriptions) {
    constexpr std::string_view applicationDefined = "Error definido por la aplicación o el objeto";
    EXPECT_EQ(RuntimeError(ErrorNumber::TypeMismatch).description(), "No coinciden los tipos");
    EXPECT_EQ(errorDescription(-2147168237), "No se pueden iniciar más transacciones en esta sesión.");
    EXPECT_EQ(errorDescription(999), applicationDefined);
    EXPECT_EQ(errorDescription(0), applicationDefined);
    EXPECT_EQ(errorDescription(std::numeric_limits<std::int32_t>::max()), applicationDefined);
    EXPECT_EQ(RuntimeError(ErrorNumber::HostRefused, "").description(), "");

    using enum ErrorNumber;
    for (const ErrorNumber number :
         {InvalidProcedureCall, Overflow,        SubscriptOutOfRange, BadFileNumber,       FileNotFound,
          BadFileMode,          FileAlreadyOpen, InputPastEnd,        PermissionDenied,    PathFileAccess,
          PathNotFound,         ObjectNotSet,    InvalidUseOfNull,    ControlArrayElement, CannotCreateObject,
          MemberNotSupported,   NoCurrentRecord, ItemNotFound,        ObjectClosed,        ObjectOpen,
          NoTransactionOpen,    ProviderFailure, SqlSyntax,           NoSuchTable,         IntegrityViolation,
          ConversionFailed}) {
        EXPECT_NE(RuntimeError(number).description(), applicationDefined)
            << static_cast<std::int32_t>(number);
    }
}

}  // namespace
}  // namespace pxtarvo
