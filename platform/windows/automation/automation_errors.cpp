#include "platform/windows/automation/automation_errors.h"

#include <algorithm>
#include <array>
#include <string>

#include "platform/windows/automation/automation_values.h"

namespace pxtarvo::windows {

namespace {

constexpr HRESULT controlErrors = static_cast<HRESULT>(0x800A0000);
constexpr std::int32_t highestSmallNumber = 0xFFFF;
/// What the language calls the source of an error.
constexpr std::string_view errorSource = "PXTarvo";

struct Code {
    HRESULT result;
    std::int32_t number;
};

/// The codes that the language run time reports under numbers of its own.
constexpr auto codes = std::to_array<Code>({
    {E_INVALIDARG, 5},
    {DISP_E_OVERFLOW, 6},
    {E_OUTOFMEMORY, 7},
    {DISP_E_BADINDEX, 9},
    {DISP_E_TYPEMISMATCH, 13},
    {DISP_E_BADVARTYPE, 13},
    {E_ACCESSDENIED, 70},
    {REGDB_E_CLASSNOTREG, 429},
    {CO_E_CLASSSTRING, 429},
    {CO_E_SERVER_EXEC_FAILURE, 429},
    {CLASS_E_CLASSNOTAVAILABLE, 429},
    {DISP_E_UNKNOWNNAME, 438},
    {DISP_E_MEMBERNOTFOUND, 438},
    {DISP_E_PARAMNOTFOUND, 448},
    {DISP_E_PARAMNOTOPTIONAL, 449},
    {DISP_E_BADPARAMCOUNT, 450},
});

RuntimeError described(std::int32_t number, std::string description) {
    if (description.empty()) description = errorDescription(number);
    return {number, std::move(description)};
}

}  // namespace

std::int32_t numberOf(HRESULT result) noexcept {
    if ((static_cast<std::uint32_t>(result) & 0xFFFF0000u) == 0x800A0000u) return result & 0xFFFF;
    const auto found = std::ranges::find(codes, result, &Code::result);
    return found == codes.end() ? static_cast<std::int32_t>(result) : found->number;
}

HRESULT resultOf(const RuntimeError& error) noexcept {
    const std::int32_t number = error.number();
    if (number < 0) return number;
    if (number == 0 || number > highestSmallNumber) return E_FAIL;
    return controlErrors + number;
}

RuntimeError errorOf(HRESULT result, EXCEPINFO& record) {
    if (result != DISP_E_EXCEPTION) return errorOf(result);
    if (record.pfnDeferredFillIn) record.pfnDeferredFillIn(&record);
    Bstr source;
    Bstr helpFile;
    Bstr description;
    *source.address() = record.bstrSource;
    *helpFile.address() = record.bstrHelpFile;
    *description.address() = record.bstrDescription;
    // A server fills in one of the two; wCode is a number of the language run time already.
    const std::int32_t number = record.scode != 0 ? numberOf(record.scode) : record.wCode;
    return described(number, description.utf8());
}

RuntimeError errorOf(HRESULT result) {
    return described(numberOf(result), {});
}

HRESULT raisedResult(REFIID raisedBy) noexcept {
    try {
        const RuntimeError error = caughtError();
        Reference<ICreateErrorInfo> created;
        if (SUCCEEDED(CreateErrorInfo(created.put()))) {
            Bstr description(error.description());
            Bstr source(errorSource);
            created->SetGUID(raisedBy);
            created->SetDescription(description.get());
            created->SetSource(source.get());
            if (const auto information = created.query<IErrorInfo>(IID_IErrorInfo)) {
                SetErrorInfo(0, information.get());
            }
        }
        return resultOf(error);
    } catch (...) {
        return E_OUTOFMEMORY;
    }
}

HRESULT raisedRecord(EXCEPINFO* record) noexcept {
    try {
        const RuntimeError error = caughtError();
        if (record) {
            Bstr description(error.description());
            Bstr source(errorSource);
            *record = {};
            record->scode = resultOf(error);
            record->bstrDescription = description.detach();
            record->bstrSource = source.detach();
        }
        return DISP_E_EXCEPTION;
    } catch (...) {
        return E_OUTOFMEMORY;
    }
}

}  // namespace pxtarvo::windows
