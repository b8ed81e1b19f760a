#include "devhost/wine/objects/automation_objects.h"
#include "devhost/wine/objects/counted_object.h"
#include "platform/values/runtime_error.h"
#include "platform/values/text.h"

namespace pxtarvo::devhost {

namespace {

using windows::CallArguments;
using windows::OwnedVariant;
using windows::Reference;

/// {6A1B6D5E-54C1-4C9B-8E0B-3D6A51B40C77}: a connection of this host.
constexpr IID ownConnection = {0x6a1b6d5e, 0x54c1, 0x4c9b, {0x8e, 0x0b, 0x3d, 0x6a, 0x51, 0xb4, 0x0c, 0x77}};

using Rows = ObjectRef<Recordset>;
using OfConnection = ObjectRef<Connection>;

/// One column of a recordset; gives the value of whatever row is current.
struct Column {
    Rows rows;
    std::int32_t position;
};

KindOf<Column> fieldKind("Field", u"Value",
                         {{u"Name", [](Column& column) { return column.rows->FieldName(column.position); }},
                          {u"Value", [](Column& column) { return column.rows->Fields(column.position); }}});

/// 3265 for a position or name that is not there.
std::int32_t positionIn(const Recordset& rows, const Variant& asked) {
    if (const auto* name = asked.get<std::string>()) {
        for (std::int32_t at = 0; at < rows.FieldCount(); ++at) {
            if (equalIgnoringAsciiCase(rows.FieldName(at), *name)) return at;
        }
        rows.Fields(*name);  // raises
    }
    const auto* number = asked.get<std::int32_t>();
    if (!number) throw RuntimeError(ErrorNumber::TypeMismatch);
    rows.FieldName(*number);  // raises for a position that is not there
    return *number;
}

KindOf<Rows> fieldsKind("Fields", u"Item",
                        {{u"Count", &Recordset::FieldCount},
                         {u"Item", [](Rows& rows, const CallArguments& given) {
                              return made(fieldKind, Column{rows, positionIn(*rows, given.value(0))});
                          }}});

KindOf<Rows> recordsetKind("Recordset", u"Fields",
                           {{u"Open",
                             [](Rows& rows, const CallArguments& given) {
                                 rows->Open(given.text(0), connectionOf(given.object(1)), given.number(2),
                                            given.number(3), given.number(4));
                             },
                             {VT_BSTR, VT_DISPATCH, VT_I4, VT_I4, VT_I4}},
                            {u"Close", &Recordset::Close},
                            {u"State", &Recordset::State},
                            {u"BOF", &Recordset::Bof},
                            {u"EOF", &Recordset::Eof},
                            {u"MoveFirst", &Recordset::MoveFirst},
                            {u"MoveNext", &Recordset::MoveNext},
                            {u"RecordCount", &Recordset::RecordCount},
                            {u"AbsolutePosition",
                             [](Rows& rows, const CallArguments& given) {
                                 if (!given.isPut()) return OwnedVariant(rows->AbsolutePosition());
                                 rows->AbsolutePosition(given.number(0));
                                 return OwnedVariant();
                             }},
                            {u"Fields", [](Rows& rows) { return made(fieldsKind, rows); }},
                            {u"Clone", [](Rows& rows) { return recordsetObject(rows->Clone()); }}});

OwnConnection& own(const OfConnection& connection) {
    auto* const own = dynamic_cast<OwnConnection*>(connection.shared().get());
    if (!own) throw RuntimeError(ErrorNumber::MemberNotSupported);
    return *own;
}

KindOf<OfConnection> connectionKind(
    "Connection", u"ConnectionString",
    {{u"ConnectionString", [](OfConnection& connection,
                              const CallArguments& given) { connection->ConnectionString(given.text(0)); }},
     {u"Open",
      [](OfConnection& connection, const CallArguments& given) {
          connection->Open(given.text(1), given.text(2), given.number(3));
      },
      {VT_BSTR, VT_BSTR, VT_BSTR, VT_I4}},
     {u"State", &Connection::State},
     {u"Execute",
      [](OfConnection& connection, const CallArguments& given) {
          return recordsetObject(connection->Execute(given.text(0), given.number(2)));
      },
      {VT_BSTR, VT_ERROR, VT_I4}},
     {u"BeginTrans",
      [](OfConnection& connection) {
          connection->BeginTrans();
          return std::int32_t{1};
      }},
     {u"CommitTrans", &Connection::CommitTrans},
     {u"RollbackTrans", &Connection::RollbackTrans},
     {u"CursorLocation",
      [](OfConnection& connection, const CallArguments& given) {
          if (!given.isPut()) return OwnedVariant(own(connection).CursorLocation());
          own(connection).CursorLocation(given.number(0));
          return OwnedVariant();
      }},
     {u"Close", [](OfConnection& connection) { own(connection).Close(); }}});

/// Also answers to the host's own identifier, by which connectionOf() knows it.
class ConnectionObject : public CountedObject<OfConnection> {
  public:
    using CountedObject::CountedObject;

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) override {
        return query(iid, object, {{IID_IDispatch, static_cast<IDispatch*>(this)}, {ownConnection, this}});
    }
};

}  // namespace

Reference<IDispatch> connectionObject(ObjectRef<Connection> connection) {
    return windows::makeDispatch<ConnectionObject>(connectionKind, std::move(connection));
}

ObjectRef<Connection> connectionOf(const Reference<IDispatch>& object) {
    if (!object) return {};
    const auto ours = object.query<ConnectionObject>(ownConnection);
    if (!ours) throw RuntimeError(ErrorNumber::TypeMismatch);
    return ours->subject();
}

Reference<IDispatch> recordsetObject(ObjectRef<Recordset> recordset) {
    return made(recordsetKind, std::move(recordset));
}

}  // namespace pxtarvo::devhost
