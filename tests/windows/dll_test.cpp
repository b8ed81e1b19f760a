// The built DLL from outside: its entry points, its class through both interfaces, its registration.

#include <gtest/gtest.h>

#include <memory>

#include "platform/values/text.h"
#include "tests/windows/recording_object.h"

namespace pxtarvo::windows {
namespace {

using tests::Calls;
using tests::RecordingObject;

constexpr CLSID classIdentifier = {
    0x0323e9e2, 0x852f, 0x4d87, {0x96, 0x97, 0x7a, 0x61, 0x90, 0x0c, 0xbe, 0x72}};
constexpr GUID libraryIdentifier = {
    0x56aece39, 0x6a3d, 0x404f, {0x8a, 0x61, 0xc5, 0xc9, 0xd5, 0xaf, 0x9d, 0x15}};

class PlugInDll : public testing::Test {
  protected:
    PlugInDll() {
        CoInitialize(nullptr);
        dll_ = LoadLibraryW(path_);
    }
    ~PlugInDll() override { CoUninitialize(); }

    template <class Result, class... Arguments>
    Result call(const char* name, Arguments... arguments) const {
        using Entry = Result(STDAPICALLTYPE*)(Arguments...);
        const auto entry = reinterpret_cast<Entry>(reinterpret_cast<void*>(GetProcAddress(dll_, name)));
        return entry ? entry(arguments...) : E_NOTIMPL;
    }
    Reference<IClassFactory> factory() const {
        Reference<IClassFactory> made;
        call<HRESULT, const CLSID*, const IID*, void**>("DllGetClassObject", &classIdentifier,
                                                        &IID_IClassFactory, made.putVoid());
        return made;
    }
    HRESULT canUnload() const { return call<HRESULT>("DllCanUnloadNow"); }

    const wchar_t* path_ = L"" PXTARVO_DLL_PATH;
    HMODULE dll_ = nullptr;
};

TEST_F(PlugInDll, StaysFromTheFirstInstanceOnAndKeepsTheVeryContext) {
    ASSERT_TRUE(dll_);
    EXPECT_EQ(canUnload(), S_OK);
    Reference<IClassFactory> made = factory();
    ASSERT_TRUE(made);
    EXPECT_EQ(canUnload(), S_FALSE);
    Reference<IUnknown> nothing;
    EXPECT_EQ(made->CreateInstance(made.get(), IID_IUnknown, nothing.putVoid()), CLASS_E_NOAGGREGATION);
    made.put();
    EXPECT_EQ(canUnload(), S_OK);
    Reference<IDispatch> instance;
    ASSERT_EQ(factory()->CreateInstance(nullptr, IID_IDispatch, instance.putVoid()), S_OK);
    EXPECT_EQ(canUnload(), S_FALSE);

    const Dispatch late(instance);
    EXPECT_FALSE(late.object(u"MyBd"));
    EXPECT_EQ(tests::errorOf([&] { late.run(u"Otro"); }), 438);
    EXPECT_EQ(tests::errorOf([&] { late.put(u"MyBd", OwnedVariant(std::int32_t{1})); }), 13);

    Calls calls;
    const std::vector<std::u16string_view> names = {u"Conexion"};
    const auto first = makeCounted<RecordingObject>(calls, names);
    const auto second = makeCounted<RecordingObject>(calls, names);
    const auto counts = [](const Reference<RecordingObject>& object) {
        object->AddRef();
        return object->Release();
    };
    for (const auto& context : {first, second}) {
        late.putReference(u"MyBd", Reference<IDispatch>::share(context.get()));
        EXPECT_EQ(late.object(u"MyBd").object().get(), context.get());
    }
    EXPECT_EQ(counts(first), 1u);
    EXPECT_EQ(counts(second), 2u);
    late.putReference(u"MyBd", {});
    EXPECT_FALSE(late.object(u"MyBd"));
    EXPECT_EQ(counts(second), 1u);
}

TEST_F(PlugInDll, RaisesErrorsThroughBothInterfaces) {
    ASSERT_TRUE(dll_);
    Reference<IDispatch> instance;
    ASSERT_EQ(factory()->CreateInstance(nullptr, IID_IDispatch, instance.putVoid()), S_OK);
    const Dispatch late(instance);
    // There is no field helper here, so that the window does not load.
    EXPECT_EQ(tests::errorOf([&] { late.run(u"jImportacionTarifas"); }), 429);

    Reference<ITypeInfo> description;
    ASSERT_EQ(instance->GetTypeInfo(0, LOCALE_USER_DEFAULT, description.put()), S_OK);
    TYPEATTR* attributes = nullptr;
    ASSERT_EQ(description->GetTypeAttr(&attributes), S_OK);
    const GUID dual = attributes->guid;
    description->ReleaseTypeAttr(attributes);
    const auto early = instance.query<IDispatch>(dual);
    const auto supports = instance.query<ISupportErrorInfo>(IID_ISupportErrorInfo);
    ASSERT_TRUE(early && supports);
    EXPECT_EQ(supports->InterfaceSupportsErrorInfo(dual), S_OK);

    // Behind IDispatch's seven: MyBd's assignment, MyBd, jImportacionTarifas.
    using Member = HRESULT(STDMETHODCALLTYPE*)(IDispatch*);
    const auto member = (*reinterpret_cast<Member**>(early.get()))[9];
    EXPECT_EQ(member(early.get()), static_cast<HRESULT>(0x800A0000 + 429));
    Reference<IErrorInfo> information;
    ASSERT_EQ(GetErrorInfo(0, information.put()), S_OK);
    Bstr text;
    information->GetDescription(text.address());
    EXPECT_EQ(text.utf8(), "El componente ActiveX no puede crear el objeto");
}

TEST_F(PlugInDll, RegistersItselfAndLeavesNothingBehind) {
    ASSERT_TRUE(dll_);
    const auto registered = [] {
        CLSID type{};
        const bool byName =
            CLSIDFromProgID(L"PXTarvo.PXTarvor", &type) == S_OK && IsEqualCLSID(type, classIdentifier);
        Reference<ITypeLib> library;
        const bool described = LoadRegTypeLib(libraryIdentifier, 1, 0, LOCALE_NEUTRAL, library.put()) == S_OK;
        EXPECT_EQ(byName, described);
        return byName;
    };
    ASSERT_EQ(call<HRESULT>("DllRegisterServer"), S_OK);
    EXPECT_TRUE(registered());
    EXPECT_TRUE(Dispatch::create("PXTarvo.PXTarvor"));
    EXPECT_EQ(call<HRESULT>("DllUnregisterServer"), S_OK);
    EXPECT_FALSE(registered());
    EXPECT_EQ(call<HRESULT>("DllUnregisterServer"), S_OK);  // gone already
    for (const wchar_t* key : {L"PXTarvo.PXTarvor", L"CLSID\\{0323E9E2-852F-4D87-9697-7A61900CBE72}",
                               L"TypeLib\\{56AECE39-6A3D-404F-8A61-C5C9D5AF9D15}",
                               L"Interface\\{FCBAAA4C-E784-4554-A9F7-DC32176770BE}"}) {
        HKEY left = nullptr;
        EXPECT_NE(RegOpenKeyExW(HKEY_CLASSES_ROOT, key, 0, KEY_READ, &left), ERROR_SUCCESS);
        if (left) RegCloseKey(left);
    }
}

}  // namespace
}  // namespace pxtarvo::windows
