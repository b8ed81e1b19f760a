// The built DLL from outside: its entry points, its class through both interfaces, its registration.

#include <gtest/gtest.h>

#include <array>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <vector>

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
    ~PlugInDll() override {
        CoUninitialize();
        std::error_code ignored;
        std::filesystem::remove_all(folder_, ignored);
    }

    template <class Result, class... Arguments>
    static Result callIn(HMODULE dll, const char* name, Arguments... arguments) {
        using Entry = Result(STDAPICALLTYPE*)(Arguments...);
        const auto entry = reinterpret_cast<Entry>(reinterpret_cast<void*>(GetProcAddress(dll, name)));
        return entry ? entry(arguments...) : E_NOTIMPL;
    }
    template <class Result, class... Arguments>
    Result call(const char* name, Arguments... arguments) const {
        return callIn<Result>(dll_, name, arguments...);
    }
    static Reference<IClassFactory> factoryOf(HMODULE dll) {
        Reference<IClassFactory> made;
        callIn<HRESULT, const CLSID*, const IID*, void**>(dll, "DllGetClassObject", &classIdentifier,
                                                          &IID_IClassFactory, made.putVoid());
        return made;
    }
    Reference<IClassFactory> factory() const { return factoryOf(dll_); }
    HRESULT canUnload() const { return call<HRESULT>("DllCanUnloadNow"); }
    /// The DLL installed a second time, in a folder of its own.
    std::wstring copy() const {
        std::filesystem::create_directories(folder_);
        std::filesystem::copy(path_, folder_, std::filesystem::copy_options::overwrite_existing);
        return (folder_ / "PXTarvo.dll").wstring();
    }

    const wchar_t* path_ = L"" PXTARVO_DLL_PATH;
    HMODULE dll_ = nullptr;

  private:
    std::filesystem::path folder_ =
        std::filesystem::temp_directory_path() / ("pxtarvo" + std::to_string(GetCurrentProcessId()));
};

/// The default value of a class's or library's key in this program's view or another; none without the key.
std::optional<std::wstring> registryText(const wchar_t* name, REGSAM view = 0) {
    HKEY key = nullptr;
    if (RegOpenKeyExW(HKEY_CLASSES_ROOT, name, 0, KEY_READ | view, &key) != ERROR_SUCCESS) return {};
    wchar_t text[512]{};
    DWORD size = sizeof(text);
    RegGetValueW(key, nullptr, nullptr, RRF_RT_REG_SZ, nullptr, text, &size);
    RegCloseKey(key);
    return text;
}

constexpr const wchar_t* nameKey = L"PXTarvo.PXTarvor";
constexpr const wchar_t* classKey = L"CLSID\\{0323E9E2-852F-4D87-9697-7A61900CBE72}";
constexpr const wchar_t* serverKey = L"CLSID\\{0323E9E2-852F-4D87-9697-7A61900CBE72}\\InprocServer32";
constexpr const wchar_t* libraryKey = L"TypeLib\\{56AECE39-6A3D-404F-8A61-C5C9D5AF9D15}";
constexpr const wchar_t* interfaceKey = L"Interface\\{FCBAAA4C-E784-4554-A9F7-DC32176770BE}";
constexpr std::array everyKey = {nameKey, classKey, libraryKey, interfaceKey};

/// Of all heaps of this process.
std::size_t bytesInUse() {
    std::vector<HANDLE> heaps(GetProcessHeaps(0, nullptr));
    GetProcessHeaps(static_cast<DWORD>(heaps.size()), heaps.data());
    std::size_t bytes = 0;
    for (const HANDLE heap : heaps) {
        for (PROCESS_HEAP_ENTRY entry{}; HeapWalk(heap, &entry);) {
            if (entry.wFlags & PROCESS_HEAP_ENTRY_BUSY) bytes += entry.cbData;
        }
    }
    return bytes;
}

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

TEST_F(PlugInDll, UnregistersOnlyWhatNamesItselfAndLeavesNothingBehind) {
    ASSERT_TRUE(dll_);
    ASSERT_EQ(call<HRESULT>("DllRegisterServer"), S_OK);
    CLSID type{};
    EXPECT_EQ(CLSIDFromProgID(L"PXTarvo.PXTarvor", &type), S_OK);
    EXPECT_TRUE(IsEqualCLSID(type, classIdentifier));
    Reference<ITypeLib> library;
    EXPECT_EQ(LoadRegTypeLib(libraryIdentifier, 1, 0, LOCALE_NEUTRAL, library.put()), S_OK);
    EXPECT_TRUE(Dispatch::create("PXTarvo.PXTarvor"));
    for (int time = 0; time < 2; ++time) EXPECT_EQ(call<HRESULT>("DllUnregisterServer"), S_OK);
    for (const wchar_t* key : everyKey) EXPECT_FALSE(registryText(key));

    const std::wstring elsewhere = copy();
    const HMODULE other = LoadLibraryW(elsewhere.c_str());
    ASSERT_TRUE(other);
    ASSERT_EQ(call<HRESULT>("DllRegisterServer"), S_OK);
    ASSERT_EQ(callIn<HRESULT>(other, "DllRegisterServer"), S_OK);
    EXPECT_EQ(call<HRESULT>("DllUnregisterServer"), S_OK);
    EXPECT_EQ(registryText(serverKey), elsewhere);
    for (const wchar_t* key : everyKey) EXPECT_TRUE(registryText(key)) << key;
    EXPECT_EQ(callIn<HRESULT>(other, "DllUnregisterServer"), S_OK);
    for (const wchar_t* key : everyKey) EXPECT_FALSE(registryText(key)) << key;
    FreeLibrary(other);

    // The 32-bit DLL beside the 64-bit one: a class in a view of its own, the rest in common.
    if (sizeof(void*) == 4) return;
    const auto write = [](const std::wstring& name, REGSAM view) {
        HKEY key = nullptr;
        RegCreateKeyExW(HKEY_CLASSES_ROOT, name.c_str(), 0, nullptr, 0, KEY_WRITE | view, nullptr, &key,
                        nullptr);
        constexpr wchar_t narrow[] = L"C:\\32\\PXTarvo.dll";
        RegSetValueExW(key, nullptr, 0, REG_SZ, reinterpret_cast<const BYTE*>(narrow), sizeof(narrow));
        RegCloseKey(key);
    };
    ASSERT_EQ(call<HRESULT>("DllRegisterServer"), S_OK);
    const std::wstring place = libraryKey + std::wstring(L"\\1.0\\0\\");
    write(serverKey, KEY_WOW64_32KEY);
    write(place + L"win32", 0);
    EXPECT_EQ(call<HRESULT>("DllUnregisterServer"), S_OK);
    EXPECT_FALSE(registryText(classKey) || registryText((place + L"win64").c_str()));
    EXPECT_TRUE(registryText(serverKey, KEY_WOW64_32KEY));
    EXPECT_TRUE(registryText((place + L"win32").c_str()));
    for (const wchar_t* key : {nameKey, interfaceKey}) EXPECT_TRUE(registryText(key)) << key;
    for (const wchar_t* key : everyKey) RegDeleteTreeW(HKEY_CLASSES_ROOT, key);
    HKEY narrow = nullptr;
    RegOpenKeyExW(HKEY_CLASSES_ROOT, L"CLSID", 0, KEY_ALL_ACCESS | KEY_WOW64_32KEY, &narrow);
    RegDeleteTreeW(narrow, classKey + 6);
    RegCloseKey(narrow);
}

TEST_F(PlugInDll, LeavesNoMemoryBehindWhenItIsUnloaded) {
    const std::wstring path = copy();
    std::size_t before = 0;
    for (int load = 0; load < 110; ++load) {
        if (load == 10) before = bytesInUse();
        const HMODULE dll = LoadLibraryW(path.c_str());
        ASSERT_TRUE(dll);
        EXPECT_TRUE(factoryOf(dll));
        EXPECT_EQ(callIn<HRESULT>(dll, "DllCanUnloadNow"), S_OK);
        FreeLibrary(dll);
    }
    EXPECT_NEAR(static_cast<double>(bytesInUse()), static_cast<double>(before), 1000);
    EXPECT_FALSE(GetModuleHandleW(path.c_str()));
}

}  // namespace
}  // namespace pxtarvo::windows
