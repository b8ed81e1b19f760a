#include <gtest/gtest.h>

#include <olectl.h>

#include <limits>

#include "platform/windows/automation/automation_errors.h"
#include "platform/windows/data/spreadsheet_automation.h"
#include "tests/windows/recording_object.h"

namespace pxtarvo::windows {
namespace {

using tests::Calls;
using tests::RecordingObject;
using Names = std::vector<std::u16string_view>;

VARIANT raw(VARTYPE type) {
    VARIANT value;
    VariantInit(&value);
    V_VT(&value) = type;
    return value;
}

TEST(AutomationValues, KeepTheirTypeBothWaysAndBehindReferences) {
    const std::pair<Variant, VARTYPE> cases[] = {
        {Variant(), VT_EMPTY},
        {Null{}, VT_NULL},
        {true, VT_BOOL},
        {std::uint8_t{255}, VT_UI1},
        {std::int16_t{-32768}, VT_I2},
        {std::numeric_limits<std::int32_t>::min(), VT_I4},
        {1.5f, VT_R4},
        {-31.07, VT_R8},
        {Currency{-123456789012345}, VT_CY},
        {Decimal{.low = ~0ull, .high = 7, .scale = 28, .negative = true}, VT_DECIMAL},
        {Date{41000.25}, VT_DATE},
        {"", VT_BSTR},
        {std::string("PI\u00D1\u00D3N \U0001F600\0x", 13), VT_BSTR},
        {ErrorValue{-2146826246}, VT_ERROR},
    };
    for (const auto& [value, type] : cases) {
        OwnedVariant owned(value);
        EXPECT_EQ(V_VT(&owned.raw()), type);
        EXPECT_EQ(toVariant(owned.raw()), value) << type;
        OwnedVariant through = OwnedVariant::reference(owned);
        EXPECT_EQ(toVariant(OwnedVariant::reference(through).raw()), value) << type;
        VARIANT direct = raw(static_cast<VARTYPE>(type | VT_BYREF));
        VARIANT copy = owned.raw();
        V_BYREF(&direct) = type == VT_DECIMAL ? static_cast<void*>(&copy) : &V_BYREF(&copy);
        if (type != VT_EMPTY && type != VT_NULL) {
            EXPECT_EQ(toVariant(direct), value) << type;
        }
    }
}

TEST(AutomationValues, TakeIntegersOfOtherSizesAndRefuseObjectsAndArrays) {
    VARIANT value = raw(VT_UI4);
    V_UI4(&value) = 0x80000000u;
    EXPECT_EQ(toVariant(value), Variant(Decimal{.low = 0x80000000u}));
    value = raw(VT_I8);
    V_I8(&value) = std::numeric_limits<std::int32_t>::min();
    EXPECT_EQ(toVariant(value), Variant(std::numeric_limits<std::int32_t>::min()));
    V_I8(&value) = std::numeric_limits<std::int64_t>::min();
    EXPECT_EQ(toVariant(value), Variant(Decimal{.low = 1ull << 63, .negative = true}));
    value = raw(VT_I1);
    V_I1(&value) = static_cast<CHAR>(-1);
    EXPECT_EQ(toVariant(value), Variant(std::int16_t{-1}));
    value = raw(VT_BOOL);
    V_BOOL(&value) = 1;
    EXPECT_EQ(toVariant(value), Variant(true));
    value = raw(VT_BSTR);
    EXPECT_EQ(toVariant(value), Variant(""));

    EXPECT_EQ(tests::errorOf([] { toVariant(raw(VT_DISPATCH)); }), 91);
    EXPECT_EQ(tests::errorOf([] { toVariant(raw(VT_ARRAY | VT_I4)); }), 13);
    EXPECT_EQ(tests::errorOf([] { toObject(raw(VT_NULL)); }), 13);
    EXPECT_FALSE(toObject(raw(VT_DISPATCH)));
}

TEST(AutomationErrors, HaveThePlatformsNumbersBothWays) {
    const std::pair<HRESULT, std::int32_t> cases[] = {
        {static_cast<HRESULT>(0x800A0CC1), 3265},
        {DISP_E_TYPEMISMATCH, 13},
        {DISP_E_OVERFLOW, 6},
        {DISP_E_BADINDEX, 9},
        {DISP_E_UNKNOWNNAME, 438},
        {DISP_E_MEMBERNOTFOUND, 438},
        {REGDB_E_CLASSNOTREG, 429},
        {E_FAIL, -2147467259},
        {static_cast<HRESULT>(0x80040E14), -2147217900},
    };
    for (const auto& [result, number] : cases) EXPECT_EQ(numberOf(result), number);
    EXPECT_EQ(errorOf(DISP_E_TYPEMISMATCH).description(), "No coinciden los tipos");

    for (const std::int32_t number : {5, 3021, -2147217900}) {
        EXPECT_EQ(numberOf(resultOf(RuntimeError(number, ""))), number);
    }
    EXPECT_EQ(resultOf(RuntimeError(0, "")), E_FAIL);
    EXPECT_EQ(resultOf(RuntimeError(0x10000, "")), E_FAIL);
}

HRESULT STDMETHODCALLTYPE fillInLater(EXCEPINFO* later) {
    later->wCode = 1004;
    later->bstrDescription = Bstr("tarde").detach();
    return S_OK;
}

/// Fails with exception information, filled in at once or when asked.
class FailingObject : public RecordingObject {
  public:
    using RecordingObject::RecordingObject;
    HRESULT STDMETHODCALLTYPE Invoke(DISPID, REFIID, LCID, WORD, DISPPARAMS*, VARIANT*, EXCEPINFO* record,
                                     UINT*) override {
        if (deferred) {
            record->pfnDeferredFillIn = fillInLater;
        } else {
            record->scode = static_cast<SCODE>(0x800A0BCD);
        }
        return DISP_E_EXCEPTION;
    }
    bool deferred = false;
};

TEST(Dispatch, RaisesWhatTheCalledObjectReports) {
    Calls calls;
    const Names names = {u"Abrir"};
    const auto failing = makeCounted<FailingObject>(calls, names);
    const auto raised = [](const Dispatch& object, std::u16string_view member) {
        try {
            object.run(member);
        } catch (const RuntimeError& error) {
            return std::pair(error.number(), std::string(error.description()));
        }
        return std::pair(0, std::string());
    };
    const Dispatch object(Reference<IDispatch>::share(failing.get()));
    EXPECT_EQ(raised(object, u"Abrir"), std::pair(3021, std::string(errorDescription(3021))));
    failing->deferred = true;
    EXPECT_EQ(raised(object, u"Abrir"), std::pair(1004, std::string("tarde")));
    EXPECT_EQ(raised(object, u"Cerrar").first, 438);
    EXPECT_EQ(raised(Dispatch(), u"Abrir").first, 91);

    for (const RuntimeError& error :
         {RuntimeError(-2147217900, "cerca de 'ñ'"), RuntimeError(999, "el servidor"), RuntimeError(7, "")}) {
        const auto own = makeCounted<RecordingObject>(
            calls, names,
            std::map<std::u16string_view, tests::Answer>{
                {u"Abrir", [error](const CallArguments&) -> OwnedVariant { throw error; }}});
        const std::string text = error.number() == 7 ? "Memoria insuficiente" : error.what();
        EXPECT_EQ(raised(tests::late(own), u"Abrir"), std::pair(error.number(), text));
    }
    EXPECT_EQ(tests::errorOf([] { Dispatch::create("PXTarvo.NadieLoTiene"); }), 429);
}

TEST(SpreadsheetAutomation, TakesNoChartForAWorksheet) {
    static const Names names{u"Workbooks", u"Open", u"Sheets", u"Item", u"Cells", u"Value"};
    static const Names chartNames{u"Name"};
    Calls calls;
    const auto object = [&](std::u16string_view member, tests::Answer answer) {
        return makeCounted<RecordingObject>(
            calls, names, std::map<std::u16string_view, tests::Answer>{{member, std::move(answer)}});
    };
    const auto sheet = object(u"Cells", tests::always(object(u"Value", tests::always(Variant(7.0)))));
    const auto chart = makeCounted<RecordingObject>(calls, chartNames);
    const auto sheets = object(u"Item", [&](const CallArguments& arguments) {
        return tests::always(arguments.number(0) == 1 ? chart : sheet)(arguments);
    });
    const auto books = object(u"Open", tests::always(object(u"Sheets", tests::always(sheets))));
    const auto application = object(u"Workbooks", tests::always(books));
    const auto opened = SpreadsheetAutomation(tests::late(application)).OpenWorkbook("list.xls");
    EXPECT_EQ(tests::errorOf([&] { opened->Sheet(1); }), 13);
    EXPECT_EQ(opened->Sheet(2)->Cells(1, 3), Variant(7.0));
}

TEST(Dispatch, RemembersOnlyIdentifiersThatTheTypeDescribes) {
    Calls calls;
    FONTDESC description{};
    description.cbSizeofstruct = sizeof description;
    description.lpstrName = const_cast<LPOLESTR>(L"Tahoma");
    description.cySize.int64 = 80000;
    Reference<IDispatch> font;
    ASSERT_EQ(OleCreateFontIndirect(&description, IID_IDispatch, font.putVoid()), S_OK);

    const Names names = {u"Otro", u"Size"};  // Size has the identifier that fonts give it
    const auto object = makeCounted<RecordingObject>(calls, names);
    ASSERT_EQ(font->GetTypeInfo(0, LOCALE_USER_DEFAULT, object->description.put()), S_OK);
    for (int i = 0; i < 3; ++i) tests::late(object).get(u"Size");
    EXPECT_EQ(object->namesAsked, 1);
    for (int i = 0; i < 3; ++i) tests::late(object).get(u"Otro");
    EXPECT_EQ(object->namesAsked, 4);

    const auto undescribed = makeCounted<RecordingObject>(calls, names);
    for (int i = 0; i < 2; ++i) tests::late(undescribed).get(u"Size");
    EXPECT_EQ(undescribed->namesAsked, 2);
}

}  // namespace
}  // namespace pxtarvo::windows
