#pragma once

#include <cstdint>
#include <cstdio>
#include <memory>
#include <string>
#include <string_view>

#include "platform/portable/access/jet_page.h"

namespace pxtarvo::portable {

/// An Access file (Jet 4: Access 2000 to 2003) as pages, decoded when the file is encoded.
class JetFile {
  public:
    /// Opens the file at `place`, which the user named `fileName`. Raises -2147467259 when it is missing, a
    /// folder, unreadable or not a database of Jet 4.
    JetFile(const std::string& place, std::string_view fileName);

    /// -2147467259 with a description of damage.
    [[noreturn]] void raiseDamaged() const;

    /// Whole pages, now: a file that someone is writing to grows.
    std::uint64_t pageCount() const;
    /// Raises -2147467259 when the file does not hold the whole page.
    void readPage(std::uint64_t number, JetPage& page) const;

  private:
    struct Close {
        void operator()(std::FILE* file) const { std::fclose(file); }
    };

    std::size_t read(std::uint64_t number, JetPage& page) const;

    std::string quotedName_;  ///< as messages show it
    std::unique_ptr<std::FILE, Close> file_;
    std::uint32_t key_ = 0;  ///< 0 when the file is not encoded
};

}  // namespace pxtarvo::portable
