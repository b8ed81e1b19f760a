#include "devhost/wine/objects/ado_objects.h"

#include <array>

#include "platform/values/runtime_error.h"
#include "platform/values/text.h"

namespace pxtarvo::devhost {

namespace {

using windows::CallArguments;
using windows::makeCounted;
using windows::OwnedVariant;
using windows::Reference;

/// {6A1B6D5E-54C1-4C9B-8E0B-3D6A51B40C77}: a connection of this host.
constexpr IID ownConnection = {0x6a1b6d5e, 0x54c1, 0x4c9b, {0x8e, 0x0b, 0x3d, 0x6a, 0x51, 0xb4, 0x0c, 0x77}};

enum ConnectionMember {
    ConnectionString,
    ConnOpen,
    ConnState,
    Execute,
    BeginTrans,
    CommitTrans,
    RollbackTrans,
    ConnCursorLocation,
    ConnClose
};
constexpr std::array<std::u16string_view, 9> connectionNames{
    u"ConnectionString", u"Open",          u"State",          u"Execute", u"BeginTrans",
    u"CommitTrans",      u"RollbackTrans", u"CursorLocation", u"Close"};

enum RecordsetMember {
    RsOpen,
    RsClose,
    RsState,
    RsBof,
    RsEof,
    RsMoveFirst,
    RsMoveNext,
    RsRecordCount,
    RsAbsolutePosition,
    RsFields,
    RsClone
};
constexpr std::array<std::u16string_view, 11> recordsetNames{u"Open",     u"Close",       u"State",
                                                             u"BOF",      u"EOF",         u"MoveFirst",
                                                             u"MoveNext", u"RecordCount", u"AbsolutePosition",
                                                             u"Fields",   u"Clone"};

constexpr std::array<std::u16string_view, 2> fieldsNames{u"Count", u"Item"};
constexpr std::array<std::u16string_view, 2> fieldNames{u"Name", u"Value"};

ObjectKind connectionKind("Connection", {connectionNames, 0});
ObjectKind recordsetKind("Recordset", {recordsetNames, RsFields});
ObjectKind fieldsKind("Fields", {fieldsNames, 1});
ObjectKind fieldKind("Field", {fieldNames, 1});

/// One column of a recordset; gives the value of whatever row is current.
class AdoFieldObject : public CountedObject {
  public:
    AdoFieldObject(ObjectRef<Recordset> recordset, std::int32_t position)
        : CountedObject(fieldKind), recordset_(std::move(recordset)), position_(position) {}

  protected:
    OwnedVariant member(int place, const CallArguments&) override {
        if (place == 0) return OwnedVariant(recordset_->FieldName(position_));
        return OwnedVariant(recordset_->Fields(position_));
    }

  private:
    ObjectRef<Recordset> recordset_;
    std::int32_t position_;
};

}  // namespace

class FieldsObject : public CountedObject {
  public:
    explicit FieldsObject(ObjectRef<Recordset> recordset)
        : CountedObject(fieldsKind), recordset_(std::move(recordset)) {}

  protected:
    OwnedVariant member(int place, const CallArguments& arguments) override {
        if (place == 0) return OwnedVariant(recordset_->FieldCount());
        return asValue(makeCounted<AdoFieldObject>(recordset_, position(arguments.value(0))));
    }

  private:
    /// 3265 for a position or name that is not there.
    std::int32_t position(const Variant& asked) const {
        const std::int32_t count = recordset_->FieldCount();
        if (const auto* name = asked.get<std::string>()) {
            for (std::int32_t at = 0; at < count; ++at) {
                if (equalIgnoringAsciiCase(recordset_->FieldName(at), *name)) return at;
            }
            recordset_->Fields(*name);  // raises
        }
        const auto* number = asked.get<std::int32_t>();
        if (!number) throw RuntimeError(ErrorNumber::TypeMismatch);
        recordset_->FieldName(*number);  // raises for a position that is not there
        return *number;
    }

    ObjectRef<Recordset> recordset_;
};

ConnectionObject::ConnectionObject(ObjectRef<Connection> connection)
    : CountedObject(connectionKind), connection_(std::move(connection)) {}

HRESULT ConnectionObject::QueryInterface(REFIID iid, void** object) {
    return query(iid, object, {{IID_IDispatch, static_cast<IDispatch*>(this)}, {ownConnection, this}});
}

ObjectRef<Connection> connectionOf(const Reference<IDispatch>& object) {
    if (!object) return {};
    const auto ours = object.query<ConnectionObject>(ownConnection);
    if (!ours) throw RuntimeError(ErrorNumber::TypeMismatch);
    return ours->connection();
}

OwnedVariant ConnectionObject::member(int place, const CallArguments& arguments) {
    switch (place) {
        case ConnectionString:
            connection_->ConnectionString(arguments.text(0));
            break;
        case ConnOpen:
            expect(arguments, "Open", {VT_BSTR, VT_BSTR, VT_BSTR, VT_I4});
            connection_->Open(arguments.text(1), arguments.text(2), arguments.number(3));
            break;
        case ConnState:
            return OwnedVariant(connection_->State());
        case Execute:
            expect(arguments, "Execute", {VT_BSTR, VT_ERROR, VT_I4});
            return asValue(
                makeCounted<RecordsetObject>(connection_->Execute(arguments.text(0), arguments.number(2))));
        case BeginTrans:
            connection_->BeginTrans();
            return OwnedVariant(std::int32_t{1});
        case CommitTrans:
            connection_->CommitTrans();
            break;
        case RollbackTrans:
            connection_->RollbackTrans();
            break;
        case ConnCursorLocation:
            if (!arguments.isPut()) return OwnedVariant(own().CursorLocation());
            own().CursorLocation(arguments.number(0));
            break;
        case ConnClose:
            own().Close();
            break;
    }
    return {};
}

OwnConnection& ConnectionObject::own() const {
    auto* const own = dynamic_cast<OwnConnection*>(connection_.shared().get());
    if (!own) throw RuntimeError(ErrorNumber::MemberNotSupported);
    return *own;
}

RecordsetObject::RecordsetObject(ObjectRef<Recordset> recordset)
    : CountedObject(recordsetKind), recordset_(std::move(recordset)) {}

RecordsetObject::~RecordsetObject() = default;

OwnedVariant RecordsetObject::member(int place, const CallArguments& arguments) {
    switch (place) {
        case RsOpen:
            expect(arguments, "Open", {VT_BSTR, VT_DISPATCH, VT_I4, VT_I4, VT_I4});
            recordset_->Open(arguments.text(0), connectionOf(arguments.object(1)), arguments.number(2),
                             arguments.number(3), arguments.number(4));
            break;
        case RsClose:
            recordset_->Close();
            break;
        case RsState:
            return OwnedVariant(recordset_->State());
        case RsBof:
            return OwnedVariant(recordset_->Bof());
        case RsEof:
            return OwnedVariant(recordset_->Eof());
        case RsMoveFirst:
            recordset_->MoveFirst();
            break;
        case RsMoveNext:
            recordset_->MoveNext();
            break;
        case RsRecordCount:
            return OwnedVariant(recordset_->RecordCount());
        case RsAbsolutePosition:
            if (!arguments.isPut()) return OwnedVariant(recordset_->AbsolutePosition());
            recordset_->AbsolutePosition(arguments.number(0));
            break;
        case RsFields:
            return asValue(makeCounted<FieldsObject>(recordset_));
        case RsClone:
            return asValue(makeCounted<RecordsetObject>(recordset_->Clone()));
    }
    return {};
}

}  // namespace pxtarvo::devhost
