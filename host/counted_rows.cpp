#include "host/counted_rows.h"

#include <algorithm>
#include <cstddef>
#include <memory>
#include <string>
#include <utility>
#include <variant>
#include <vector>

#include "platform/values/text.h"

namespace pxtarvo {

namespace {

/// A value, or why it could not be read.
using Celda = std::variant<Variant, RuntimeError>;

struct Filas {
    std::vector<std::string> nombres;
    std::vector<Celda> celdas;  ///< row after row

    std::size_t cuantas() const noexcept { return nombres.empty() ? 0 : celdas.size() / nombres.size(); }
};

Celda leerCelda(const Recordset& rs, std::int32_t posicion) {
    try {
        return rs.Fields(posicion);
    } catch (const RuntimeError& error) {
        return error;
    }
}

std::shared_ptr<const Filas> leerHastaElFinal(Recordset& rs) {
    auto filas = std::make_shared<Filas>();
    const std::int32_t nCampos = rs.FieldCount();
    for (std::int32_t campo = 0; campo < nCampos; ++campo) filas->nombres.push_back(rs.FieldName(campo));
    for (; !rs.Eof(); rs.MoveNext()) {
        for (std::int32_t campo = 0; campo < nCampos; ++campo) {
            filas->celdas.push_back(leerCelda(rs, campo));
        }
    }
    return filas;
}

class FilasContadas final : public Recordset {
  public:
    explicit FilasContadas(std::shared_ptr<const Filas> leidas) : leidas_(std::move(leidas)) {}

    void Open(std::string_view source, const ObjectRef<Connection>& connection, std::int32_t, std::int32_t,
              std::int32_t options) override {
        if (leidas_) throw RuntimeError(ErrorNumber::ObjectOpen);
        const ObjectRef<Recordset> rs = connection->Execute(source, options);
        if (rs->State() == adStateClosed) return;
        leidas_ = leerHastaElFinal(*rs);
        actual_ = 0;
    }
    void Close() override {
        filas();
        leidas_.reset();
    }
    std::int32_t State() const override { return leidas_ ? adStateOpen : adStateClosed; }
    bool Bof() const override { return filas().cuantas() == 0; }
    bool Eof() const override { return actual_ >= filas().cuantas(); }
    void MoveFirst() override {
        if (Bof()) throw RuntimeError(ErrorNumber::NoCurrentRecord);
        actual_ = 0;
    }
    void MoveNext() override {
        exigirFila();
        ++actual_;
    }
    std::int32_t RecordCount() const override { return static_cast<std::int32_t>(filas().cuantas()); }
    std::int32_t AbsolutePosition() const override {
        return Eof() ? -1 : static_cast<std::int32_t>(actual_) + 1;
    }
    void AbsolutePosition(std::int32_t position) override {
        if (position < 1 || position > RecordCount()) throw RuntimeError(ErrorNumber::NoCurrentRecord);
        actual_ = static_cast<std::size_t>(position) - 1;
    }
    std::int32_t FieldCount() const override { return static_cast<std::int32_t>(filas().nombres.size()); }
    std::string FieldName(std::int32_t position) const override {
        exigirCampo(position);
        return leidas_->nombres[static_cast<std::size_t>(position)];
    }
    Variant Fields(std::int32_t position) const override {
        exigirCampo(position);
        exigirFila();
        const std::size_t celda = actual_ * leidas_->nombres.size() + static_cast<std::size_t>(position);
        if (const auto* error = std::get_if<RuntimeError>(&leidas_->celdas[celda])) throw *error;
        return std::get<Variant>(leidas_->celdas[celda]);
    }
    Variant Fields(std::string_view name) const override {
        const auto& nombres = filas().nombres;
        const auto nombrado = std::ranges::find_if(
            nombres, [&](const std::string& nombre) { return equalIgnoringAsciiCase(nombre, name); });
        return Fields(static_cast<std::int32_t>(nombrado - nombres.begin()));  // 3265 for the end
    }
    ObjectRef<Recordset> Clone() const override {
        filas();
        return makeObject<FilasContadas>(leidas_);
    }

  private:
    /// 3704 when closed.
    const Filas& filas() const {
        if (!leidas_) throw RuntimeError(ErrorNumber::ObjectClosed);
        return *leidas_;
    }
    void exigirFila() const {
        if (Eof()) throw RuntimeError(ErrorNumber::NoCurrentRecord);
    }
    void exigirCampo(std::int32_t posicion) const {
        if (posicion < 0 || posicion >= FieldCount()) throw RuntimeError(ErrorNumber::ItemNotFound);
    }

    std::shared_ptr<const Filas> leidas_;
    std::size_t actual_ = 0;  ///< 0-based; the row count when past the last row
};

}  // namespace

ObjectRef<Recordset> contado(ObjectRef<Recordset> resultado) {
    if (!resultado || resultado->State() == adStateClosed || resultado->RecordCount() >= 0) return resultado;
    auto filas = leerHastaElFinal(*resultado);
    resultado->Close();
    return makeObject<FilasContadas>(std::move(filas));
}

}  // namespace pxtarvo
