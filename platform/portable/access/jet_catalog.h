#pragma once

#include <cstdint>
#include <memory>
#include <string_view>

#include "platform/portable/access/jet_table.h"

namespace pxtarvo::portable {

/// The tables of an Access file, by name. The catalogue is a table of the file itself.
class JetCatalog {
  public:
    /// Raises -2147467259 when the file has no catalogue.
    explicit JetCatalog(std::shared_ptr<const JetFile> file);

    const std::shared_ptr<const JetFile>& file() const noexcept { return file_; }
    /// The table of this name, case ignored; -2147217865 when there is none, -2147467259 on damage.
    JetTable table(std::string_view name) const;

  private:
    std::int32_t columnNamed(std::string_view name) const;

    std::shared_ptr<const JetFile> file_;
    JetTable objects_;
    std::int32_t name_;
    std::int32_t type_;
    std::int32_t id_;
};

}  // namespace pxtarvo::portable
