#include "devhost/wine/objects/class_objects.h"

#include <string>

#include "platform/values/text.h"
#include "platform/windows/automation/automation_errors.h"
#include "platform/windows/automation/automation_values.h"
#include "platform/windows/automation/object_factory.h"

namespace pxtarvo::devhost {

namespace {

using windows::Bstr;
using windows::check;
using windows::Reference;

class Factory : public windows::ObjectFactory {
  public:
    explicit Factory(ClassObjects::Make make) : make_(std::move(make)) {}

  private:
    Reference<IDispatch> make() override { return make_(); }

    ClassObjects::Make make_;
};

void writeKey(const std::string& path, const std::string& value) {
    const Bstr key(path);
    const Bstr text(value);
    RegSetValueW(HKEY_CLASSES_ROOT, key.get(), REG_SZ, text.get(),
                 static_cast<DWORD>(SysStringByteLen(text.get())));
}

std::string textOf(const CLSID& identifier) {
    LPOLESTR text = nullptr;
    check(StringFromCLSID(identifier, &text));
    const std::string utf8 = toUtf8(reinterpret_cast<const char16_t*>(text));
    CoTaskMemFree(text);
    return utf8;
}

}  // namespace

Reference<IClassFactory> factoryOf(ClassObjects::Make make) {
    return Reference<IClassFactory>::adopt(new Factory(std::move(make)));
}

ClassObjects::~ClassObjects() {
    for (const DWORD cookie : cookies_) CoRevokeClassObject(cookie);
}

void ClassObjects::offer(std::string_view programmaticIdentifier, const CLSID& identifier, Make make) {
    const std::string name(programmaticIdentifier);
    const Bstr wide(name);
    CLSID found{};
    if (FAILED(CLSIDFromProgID(wide.get(), &found))) {
        found = identifier;
        writeKey(name, name);
        writeKey(name + "\\CLSID", textOf(found));
    }
    // A factory may live on in the hands of whoever asked for it.
    const auto count = made_[name] = std::make_shared<int>(0);
    const auto factory = factoryOf([count, make = std::move(make)] {
        ++*count;
        return make();
    });
    DWORD cookie = 0;
    check(CoRegisterClassObject(found, factory.get(), CLSCTX_INPROC_SERVER, REGCLS_MULTIPLEUSE, &cookie));
    cookies_.push_back(cookie);
}

int ClassObjects::made(std::string_view programmaticIdentifier) const {
    return *made_.find(programmaticIdentifier)->second;
}

}  // namespace pxtarvo::devhost
