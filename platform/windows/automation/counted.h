#pragma once

// What every COM object of our own has in common: it is counted, and deletes itself with its last count.

#include <atomic>
#include <initializer_list>

#include "platform/windows/automation/com_headers.h"

namespace pxtarvo::windows {

/// An interface that an object has, and its pointer as that interface.
struct OwnInterface {
    const IID& identifier;
    void* pointer;
};

/// An object with these interfaces; see makeCounted().
template <class... Interfaces>
class Counted : public Interfaces... {
  public:
    Counted(const Counted&) = delete;
    Counted& operator=(const Counted&) = delete;

    ULONG STDMETHODCALLTYPE AddRef() final { return ++references_; }
    ULONG STDMETHODCALLTYPE Release() final {
        const ULONG left = --references_;
        if (left == 0) delete this;
        return left;
    }

  protected:
    Counted() = default;
    virtual ~Counted() = default;

    /// What QueryInterface answers where the object has these; the first one is also its IUnknown.
    HRESULT query(REFIID asked, void** object, std::initializer_list<OwnInterface> interfaces) {
        if (!object) return E_POINTER;
        *object = IsEqualIID(asked, IID_IUnknown) ? interfaces.begin()->pointer : nullptr;
        for (const OwnInterface& own : interfaces) {
            if (IsEqualIID(asked, own.identifier)) *object = own.pointer;
        }
        if (!*object) return E_NOINTERFACE;
        AddRef();
        return S_OK;
    }

  private:
    std::atomic<ULONG> references_{1};
};

}  // namespace pxtarvo::windows
