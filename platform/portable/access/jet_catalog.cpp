#include "platform/portable/access/jet_catalog.h"

#include <utility>

#include "platform/portable/access/jet_rows.h"
#include "platform/values/runtime_error.h"
#include "platform/values/text.h"

namespace pxtarvo::portable {

namespace {

constexpr std::uint32_t catalogPage = 2;

constexpr std::int16_t typeMask = 0x7F;
constexpr std::int16_t tableType = 1;
constexpr std::uint32_t definitionPageMask = 0xFFFFFF;  // of a table's identifier

}  // namespace

JetCatalog::JetCatalog(std::shared_ptr<const JetFile> file)
    : file_(std::move(file)),
      objects_(readJetTable(*file_, catalogPage)),
      name_(columnNamed("Name")),
      type_(columnNamed("Type")),
      id_(columnNamed("Id")) {}

std::int32_t JetCatalog::columnNamed(std::string_view name) const {
    for (std::size_t i = 0; i < objects_.columns.size(); ++i) {
        if (equalIgnoringAsciiCase(objects_.columns[i].name, name)) return static_cast<std::int32_t>(i);
    }
    file_->raiseDamaged();
}

JetTable JetCatalog::table(std::string_view name) const {
    JetRows objects(file_, objects_);
    while (objects.next()) {
        const Variant type = objects.value(type_);
        const auto* typeNumber = type.get<std::int16_t>();
        if (typeNumber == nullptr || (*typeNumber & typeMask) != tableType) continue;
        const Variant objectName = objects.value(name_);
        const auto* text = objectName.get<std::string>();
        if (text == nullptr || !equalIgnoringAsciiCase(*text, name)) continue;
        const Variant id = objects.value(id_);
        const auto* number = id.get<std::int32_t>();
        if (number == nullptr) file_->raiseDamaged();
        return readJetTable(*file_, static_cast<std::uint32_t>(*number) & definitionPageMask);
    }
    throw RuntimeError(
        ErrorNumber::NoSuchTable,
        "El motor de base de datos Microsoft Jet no pudo encontrar la tabla o consulta de entrada '" +
            std::string(name) + "'. Asegúrese de que existe y que su nombre está escrito correctamente.");
}

}  // namespace pxtarvo::portable
