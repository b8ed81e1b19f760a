#pragma once

#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "platform/database.h"
#include "platform/windows/automation/dispatch.h"

namespace pxtarvo::windows {

/// An ADO recordset reached through automation. Field objects are live: each is asked for once while the
/// recordset is open, and then gives the current row's value.
class AdoRecordset : public Recordset {
  public:
    /// `recordset` may be empty: every member then raises 91.
    explicit AdoRecordset(Dispatch recordset) : recordset_(std::move(recordset)) {}

    void Open(std::string_view source, const ObjectRef<Connection>& connection, std::int32_t cursorType,
              std::int32_t lockType, std::int32_t options) override;
    void Close() override;
    std::int32_t State() const override { return recordset_.number(u"State"); }
    bool Bof() const override { return recordset_.truth(u"BOF"); }
    bool Eof() const override { return recordset_.truth(u"EOF"); }
    void MoveFirst() override { recordset_.run(u"MoveFirst"); }
    void MoveNext() override { recordset_.run(u"MoveNext"); }
    std::int32_t RecordCount() const override { return recordset_.number(u"RecordCount"); }
    std::int32_t AbsolutePosition() const override;
    void AbsolutePosition(std::int32_t position) override {
        recordset_.put(u"AbsolutePosition", OwnedVariant(position));
    }
    std::int32_t FieldCount() const override { return fields().number(u"Count"); }
    std::string FieldName(std::int32_t position) const override { return field(position).text(u"Name"); }
    Variant Fields(std::int32_t position) const override { return field(position).value(u"Value"); }
    Variant Fields(std::string_view name) const override;
    ObjectRef<Recordset> Clone() const override {
        return makeObject<AdoRecordset>(recordset_.object(u"Clone"));
    }

  private:
    const Dispatch& fields() const;
    const Dispatch& field(std::int32_t position) const;
    void forgetFields() noexcept;

    Dispatch recordset_;
    mutable Dispatch fields_;
    mutable std::vector<Dispatch> byPosition_;                      ///< empty elements were not asked for yet
    mutable std::vector<std::pair<std::string, Dispatch>> byName_;  ///< as spelled by who asked
};

}  // namespace pxtarvo::windows
