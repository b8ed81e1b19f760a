#include "devhost/wine/screen/resource_book.h"

#include <stdexcept>
#include <tuple>

#include "devhost/wine/screen/import_table.h"

namespace pxtarvo::devhost {

namespace {

constexpr std::string_view window = "CreateWindowExW";

}  // namespace

/// What stands in the place of the module's imports.
struct ResourceBook::Calls {
    static inline ResourceBook* book = nullptr;

    static void took(std::string_view function, HWND handle) {
        if (!handle) return;
        ++book->taken_[function];
        book->windows_.insert(handle);
    }
    static void took(std::string_view function, const void* handle) {
        if (!handle || handle == INVALID_HANDLE_VALUE) return;
        ++book->taken_[function];
        book->there_.emplace(handle, function);
    }
    static void took(std::string_view function, UINT_PTR timer) {
        took(function, reinterpret_cast<const void*>(timer));
    }
    static void gave(const void* handle) {
        const auto found = book->there_.find(handle);
        if (found != book->there_.end()) book->there_.erase(found);
    }
    static void gave(UINT_PTR timer) { gave(reinterpret_cast<const void*>(timer)); }

    template <auto function, class Answer, class... Arguments>
    static Answer WINAPI take(Arguments... arguments) {
        const Answer answer = function(arguments...);
        took(book->names_[reinterpret_cast<void*>(function)], answer);
        return answer;
    }
    template <auto function, class Answer, class... Arguments>
    static Answer WINAPI give(Arguments... arguments) {
        gave(std::get<sizeof...(Arguments) - 1>(std::tie(arguments...)));
        return function(arguments...);
    }

    /// The function's answer is a resource.
    template <auto function, class Answer, class... Arguments>
    static void taking(std::string_view name, Answer(WINAPI*)(Arguments...)) {
        book->names_[reinterpret_cast<void*>(function)] = name;
        replaceImport(book->plugIn_, name, reinterpret_cast<void*>(&take<function, Answer, Arguments...>));
    }
    /// The function's last argument is a resource that is given back.
    template <auto function, class Answer, class... Arguments>
    static void giving(std::string_view name, Answer(WINAPI*)(Arguments...)) {
        replaceImport(book->plugIn_, name, reinterpret_cast<void*>(&give<function, Answer, Arguments...>));
    }
};

ResourceBook::ResourceBook(HMODULE plugIn) : plugIn_(plugIn) {
    Calls::book = this;
    Calls::taking<&CreateWindowExW>(window, &CreateWindowExW);
    Calls::taking<&CreateFontW>("CreateFontW", &CreateFontW);
    Calls::taking<&CreateSolidBrush>("CreateSolidBrush", &CreateSolidBrush);
    Calls::taking<&CreateCompatibleBitmap>("CreateCompatibleBitmap", &CreateCompatibleBitmap);
    Calls::giving<&DeleteObject>("DeleteObject", &DeleteObject);
    Calls::taking<&CreateCompatibleDC>("CreateCompatibleDC", &CreateCompatibleDC);
    Calls::giving<&DeleteDC>("DeleteDC", &DeleteDC);
    Calls::taking<&GetDC>("GetDC", &GetDC);
    Calls::giving<&ReleaseDC>("ReleaseDC", &ReleaseDC);
    Calls::taking<&CreateActCtxW>("CreateActCtxW", &CreateActCtxW);
    Calls::giving<&ReleaseActCtx>("ReleaseActCtx", &ReleaseActCtx);
    Calls::taking<&SetTimer>("SetTimer", &SetTimer);
    Calls::giving<&KillTimer>("KillTimer", &KillTimer);
    // Of these the plug-in has none; were it to take some, they would have to be counted too.
    for (const std::string_view name :
         {"CreateIconIndirect", "CreateCursor", "LoadImageW", "ImageList_Create", "CreateMenu",
          "CreatePopupMenu", "CreateFontIndirectW", "CreatePen"}) {
        if (imports(plugIn, name))
            throw std::runtime_error("the plug-in takes what is not counted: " + std::string(name));
    }
}

const ResourceBook& ResourceBook::of(HMODULE plugIn) {
    static const ResourceBook book(plugIn);
    return book;
}

std::vector<std::string_view> ResourceBook::left() const {
    std::vector<std::string_view> left;
    for (const auto& [handle, function] : there_) left.push_back(function);
    for (const HWND handle : windows_) {
        // The handle of one that is gone may be somebody else's by now.
        const auto owner = reinterpret_cast<HMODULE>(GetWindowLongPtrW(handle, GWLP_HINSTANCE));
        if (IsWindow(handle) && owner == plugIn_) left.push_back(window);
    }
    return left;
}

}  // namespace pxtarvo::devhost
