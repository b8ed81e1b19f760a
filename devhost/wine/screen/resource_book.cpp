#include "devhost/wine/screen/resource_book.h"

#include <stdexcept>

#include "devhost/wine/screen/import_table.h"

namespace pxtarvo::devhost {

namespace {

constexpr std::string_view window = "CreateWindowExW";

}  // namespace

struct ResourceBook::Calls {
    static inline ResourceBook* book = nullptr;

    template <class Handle>
    static Handle take(std::string_view function, Handle handle) {
        if (handle && reinterpret_cast<HANDLE>(handle) != INVALID_HANDLE_VALUE) {
            ++book->taken_[function];
            book->there_.emplace(handle, function);
        }
        return handle;
    }
    static void give(const void* handle) {
        const auto found = book->there_.find(handle);
        if (found != book->there_.end()) book->there_.erase(found);
    }

    static HWND WINAPI createWindow(DWORD extendedStyle, LPCWSTR type, LPCWSTR text, DWORD style, int x,
                                    int y, int width, int height, HWND parent, HMENU menu, HINSTANCE instance,
                                    LPVOID parameter) {
        const HWND made = CreateWindowExW(extendedStyle, type, text, style, x, y, width, height, parent, menu,
                                          instance, parameter);
        if (made) {
            ++book->taken_[window];
            book->windows_.insert(made);
        }
        return made;
    }
    static HFONT WINAPI createFont(int height, int width, int escapement, int orientation, int weight,
                                   DWORD italic, DWORD underline, DWORD strikeOut, DWORD charSet,
                                   DWORD precision, DWORD clipping, DWORD quality, DWORD pitch,
                                   LPCWSTR face) {
        return take("CreateFontW",
                    CreateFontW(height, width, escapement, orientation, weight, italic, underline, strikeOut,
                                charSet, precision, clipping, quality, pitch, face));
    }
    static HBRUSH WINAPI createBrush(COLORREF color) {
        return take("CreateSolidBrush", CreateSolidBrush(color));
    }
    static HBITMAP WINAPI createBitmap(HDC dc, int width, int height) {
        return take("CreateCompatibleBitmap", CreateCompatibleBitmap(dc, width, height));
    }
    static BOOL WINAPI deleteObject(HGDIOBJ object) {
        give(object);
        return DeleteObject(object);
    }
    static HDC WINAPI createDc(HDC dc) { return take("CreateCompatibleDC", CreateCompatibleDC(dc)); }
    static BOOL WINAPI deleteDc(HDC dc) {
        give(dc);
        return DeleteDC(dc);
    }
    static HDC WINAPI getDc(HWND of) { return take("GetDC", GetDC(of)); }
    static int WINAPI releaseDc(HWND of, HDC dc) {
        give(dc);
        return ReleaseDC(of, dc);
    }
    static HANDLE WINAPI createContext(PCACTCTXW request) {
        return take("CreateActCtxW", CreateActCtxW(request));
    }
    static void WINAPI releaseContext(HANDLE context) {
        give(context);
        ReleaseActCtx(context);
    }
    static UINT_PTR WINAPI setTimer(HWND of, UINT_PTR number, UINT interval, TIMERPROC procedure) {
        const UINT_PTR timer = SetTimer(of, number, interval, procedure);
        take("SetTimer", reinterpret_cast<void*>(timer));
        return timer;
    }
    static BOOL WINAPI killTimer(HWND of, UINT_PTR number) {
        give(reinterpret_cast<void*>(number));
        return KillTimer(of, number);
    }
};

ResourceBook::ResourceBook(HMODULE plugIn) : plugIn_(plugIn) {
    Calls::book = this;
    const std::pair<std::string_view, void*> calls[] = {
        {window, reinterpret_cast<void*>(&Calls::createWindow)},
        {"CreateFontW", reinterpret_cast<void*>(&Calls::createFont)},
        {"CreateSolidBrush", reinterpret_cast<void*>(&Calls::createBrush)},
        {"CreateCompatibleBitmap", reinterpret_cast<void*>(&Calls::createBitmap)},
        {"DeleteObject", reinterpret_cast<void*>(&Calls::deleteObject)},
        {"CreateCompatibleDC", reinterpret_cast<void*>(&Calls::createDc)},
        {"DeleteDC", reinterpret_cast<void*>(&Calls::deleteDc)},
        {"GetDC", reinterpret_cast<void*>(&Calls::getDc)},
        {"ReleaseDC", reinterpret_cast<void*>(&Calls::releaseDc)},
        {"CreateActCtxW", reinterpret_cast<void*>(&Calls::createContext)},
        {"ReleaseActCtx", reinterpret_cast<void*>(&Calls::releaseContext)},
        {"SetTimer", reinterpret_cast<void*>(&Calls::setTimer)},
        {"KillTimer", reinterpret_cast<void*>(&Calls::killTimer)}};
    for (const auto& [name, call] : calls) replaceImport(plugIn, name, call);
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
