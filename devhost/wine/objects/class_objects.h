#pragma once

// Classes that this host gives to the plug-in in place of installed ones.

#include <functional>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "platform/windows/automation/com_headers.h"
#include "platform/windows/automation/reference.h"

namespace pxtarvo::devhost {

/// A class's factory, which makes its objects so; what `make` raises reaches who asked for one.
windows::Reference<IClassFactory> factoryOf(std::function<windows::Reference<IDispatch>()> make);

/// Registered in the calling apartment until it goes. Names that the registry lacks are written into it, for
/// this user; names that it has keep their class identifier, and the class is this host's all the same.
class ClassObjects {
  public:
    using Make = std::function<windows::Reference<IDispatch>()>;

    ClassObjects() = default;
    ClassObjects(const ClassObjects&) = delete;
    ClassObjects& operator=(const ClassObjects&) = delete;
    ~ClassObjects();

    /// `identifier` is used where the name is not registered yet. Raises the error of COM.
    void offer(std::string_view programmaticIdentifier, const CLSID& identifier, Make make);
    /// How many objects were made of a class that was offered.
    int made(std::string_view programmaticIdentifier) const;

  private:
    std::vector<DWORD> cookies_;
    std::map<std::string, std::shared_ptr<int>, std::less<>> made_;
};

}  // namespace pxtarvo::devhost
