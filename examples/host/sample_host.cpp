// A host for PXTarvo, written after docs/integration.md: a context that writes rows, a field helper, and the
// few calls that open the window. Nothing of PXTarvo's own code is used.
//
//   SampleHost.exe "CONNECTION STRING" [--check]
//
// With --check it hands its context to PXTarvoCheck.dll, and ends with the number of faults, instead of
// opening the window.

#include <fcntl.h>
#include <io.h>

#include <clocale>
#include <cmath>
#include <cstdio>
#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "automation.h"

namespace {

using namespace automation;

// --- The context

struct Column {
    std::wstring name;
    long kind;
    Value value;
};

/// What a column's value is in a statement.
std::wstring literal(const Column& column) {
    enum { Boolean, Whole, Decimal, Text, Date, Expression = 6 };
    if (column.value.isNull()) return L"NULL";
    switch (column.kind) {
        case Boolean:
        case Whole:
        case Decimal:
            // A text is a number as this country writes it: the minimum stock.
            return V_VT(&column.value.get()) == VT_BSTR ? column.value.as(VT_R8, spanish).text()
                                                        : column.value.text();
        case Text:
        case Date: {
            std::wstring quoted = L"'";
            for (const wchar_t character : column.value.text())
                quoted += character == L'\'' ? L"''" : std::wstring(1, character);
            return quoted + L"'";
        }
        case Expression:
            return column.value.text();
    }
    throw failure(5, L"Tipo de columna desconocido: " + std::to_wstring(column.kind));
}

/// An object of one member.
class OneMember : public Object {
  public:
    using Body = std::function<Value(const Arguments&)>;
    OneMember(const wchar_t* name, Body body) : Object({name}), body_(std::move(body)) {}

  protected:
    Value member(std::wstring, const Arguments& given) override { return body_(given); }

  private:
    Body body_;
};

Value parameters() {
    return made<OneMember>(L"Item", [](const Arguments& given) {
        const std::wstring name = given.value(0).text();
        if (name != L"PAR_ORCONTANOM") throw failure(5, L"Parámetro desconocido: " + name);
        return made<OneMember>(L"Valor", [](const Arguments&) { return Value(0L); });
    });
}

class Context : public Object {
  public:
    explicit Context(Value connection)
        : Object({L"Parametros", L"Usuario", L"Limpiar", L"Condicion", L"Campos", L"Tabla", L"Conexion",
                  L"Borrar", L"Ejecutar", L"Insertar"}),
          connection_(std::move(connection)) {}

  protected:
    Value member(std::wstring name, const Arguments& given) override {
        if (name == L"Conexion") return connection_;
        if (name == L"Campos") return fields_;
        if (name == L"Parametros") return parameters();
        if (name == L"Usuario") return Value(1L);
        if (name == L"Tabla") return table_ = given.value(0).text(), Value();
        if (name == L"Condicion") return condition_ = given.value(0).text(), Value();
        if (name == L"Limpiar") return columns_->clear(), Value();
        if (name == L"Insertar") return run(insertion(), given);
        // Without a condition it would be every row.
        if (condition_.empty()) throw failure(5, L"Falta la condición");
        if (name == L"Ejecutar") return execute(update()), Value(true);  // nobody looks at a False
        return run(L"DELETE FROM " + table_ + condition_, given);
    }

  private:
    std::wstring insertion() {
        std::wstring names, values;
        for (const Column& column : *columns_) {
            names += (names.empty() ? L"" : L",") + column.name;
            values += (values.empty() ? L"" : L",") + literal(column);
        }
        return L"INSERT INTO " + table_ + L" (" + names + L") VALUES (" + values + L")";
    }
    std::wstring update() {
        std::wstring changes;
        for (const Column& column : *columns_) {
            changes += (changes.empty() ? L"" : L",") + column.name + L"=" + literal(column);
        }
        return L"UPDATE " + table_ + L" SET " + changes + condition_;
    }
    /// On the connection itself, so that the plug-in's transaction holds it.
    void execute(const std::wstring& statement) {
        call(connection_.object(), L"Execute", DISPATCH_METHOD, {statement, Value::missing(), Value(-1L)});
    }
    /// What the server refuses is told.
    Value run(const std::wstring& statement, const Arguments& given) {
        try {
            execute(statement);
            return Value(true);
        } catch (const Failure& refused) {
            given.giveBack(0, refused.text);
            return Value(false);
        }
    }

    Value connection_;
    std::shared_ptr<std::vector<Column>> columns_ = std::make_shared<std::vector<Column>>();
    Value fields_ = made<OneMember>(L"Agregar", [columns = columns_](const Arguments& given) {
        columns->push_back(
            {given.value(0).text(), static_cast<long>(given.value(1).number()), given.value(2)});
        return Value();
    });
    std::wstring table_, condition_;
};

// --- The field helper

/// The search list: a window of its own with the rows; Enter or a double click chooses, Esc does not.
class SearchList {
  public:
    SearchList(const std::wstring& title, const std::vector<std::wstring>& rows) {
        owner_ = GetActiveWindow();
        window_ =
            CreateWindowW(L"LISTBOX", title.c_str(),
                          WS_POPUP | WS_CAPTION | WS_SYSMENU | WS_VSCROLL | WS_VISIBLE | LBS_USETABSTOPS, 150,
                          150, 480, 320, owner_, nullptr, GetModuleHandleW(nullptr), nullptr);
        for (const std::wstring& row : rows)
            SendMessageW(window_, LB_ADDSTRING, 0, reinterpret_cast<LPARAM>(row.c_str()));
        SendMessageW(window_, LB_SETCURSEL, 0, 0);
    }
    SearchList(const SearchList&) = delete;
    SearchList& operator=(const SearchList&) = delete;
    ~SearchList() {
        EnableWindow(owner_, TRUE);
        DestroyWindow(window_);
        SetActiveWindow(owner_);
    }
    /// The row's place, or -1.
    int choose() {
        EnableWindow(owner_, FALSE);
        SetFocus(window_);
        MSG message;
        while (IsWindow(window_) && GetMessageW(&message, nullptr, 0, 0) > 0) {
            const bool enter = message.message == WM_KEYDOWN && message.wParam == VK_RETURN;
            if (enter || message.message == WM_LBUTTONDBLCLK) {
                return static_cast<int>(SendMessageW(window_, LB_GETCURSEL, 0, 0));
            }
            if (message.message == WM_KEYDOWN && message.wParam == VK_ESCAPE) return -1;
            TranslateMessage(&message);
            DispatchMessageW(&message);
        }
        return -1;
    }

  private:
    HWND owner_, window_;
};

class FieldHelper : public Object {
  public:
    FieldHelper()
        : Object({L"Redondear", L"ColorFondo", L"ColorFoco", L"SalirCampo", L"EntrarCampo", L"Conexion",
                  L"FiltrarTecla", L"Buscar"}) {}

  protected:
    Value member(std::wstring name, const Arguments& given) override {
        if (name == L"ColorFondo") return normal_ = given.value(0), Value();
        if (name == L"ColorFoco") return focused_ = given.value(0), Value();
        if (name == L"Conexion") return connection_ = given.value(0), Value();
        if (name == L"EntrarCampo") return put(given.value(0).object(), L"BackColor", focused_), Value();
        if (name == L"SalirCampo") return leave(given.value(0).object(), given.value(1).text()), Value();
        if (name == L"Redondear") {
            const double scale = std::pow(10.0, given.value(1).number());
            return Value(std::round(given.value(0).number() * scale) / scale);
        }
        if (name == L"FiltrarTecla") {
            if (V_VT(&given.raw(1)) != (VT_BYREF | VT_I2)) throw failure(13, L"No coinciden los tipos");
            SHORT& key = *V_I2REF(&given.raw(1));
            const bool date = given.value(2).number() != 0;
            const bool allowed = key < L' ' || (key >= L'0' && key <= L'9') || key == (date ? L'/' : L'-');
            if (!allowed) key = 0;
            return {};
        }
        return search(given);
    }

  private:
    void leave(IDispatch* field, const std::wstring& format) {
        put(field, L"BackColor", normal_);
        const std::wstring text = get(field, L"Text").text();
        if (format != L"dd/mm/yyyy" || text.empty()) return;
        const Value date = Value(text).as(VT_DATE, spanish);
        SYSTEMTIME day{};
        VariantTimeToSystemTime(V_DATE(&date.get()), &day);
        wchar_t written[16];
        swprintf(written, std::size(written), L"%02d/%02d/%04d", day.wDay, day.wMonth, day.wYear);
        put(field, L"Text", written);
    }

    Value search(const Arguments& given) {
        const Value rows = call(connection_.object(), L"Execute", DISPATCH_METHOD,
                                {given.value(0), Value::missing(), Value(-1L)});
        std::vector<std::wstring> shown, answers;
        for (; get(rows.object(), L"EOF").number() == 0; call(rows.object(), L"MoveNext", DISPATCH_METHOD)) {
            const Value fields = call(rows.object(), L"Fields", DISPATCH_METHOD | DISPATCH_PROPERTYGET);
            std::wstring column[3];
            for (long at = 0; at < 3; ++at) {
                const Value field =
                    call(fields.object(), L"Item", DISPATCH_METHOD | DISPATCH_PROPERTYGET, {Value(at)});
                column[at] = get(field.object(), L"Value").text();
            }
            shown.push_back(column[1] + L"\t" + column[2]);
            answers.push_back(column[0] + L"\x01" + column[1] + L"\x01" + column[2]);
        }
        const int chosen = SearchList(given.value(4).text(), shown).choose();
        return chosen < 0 ? Value(L"") : Value(answers[static_cast<std::size_t>(chosen)]);
    }

    Value normal_, focused_, connection_;
};

/// Makes the field helpers of this program, for as long as it runs.
class HelperClass : public IClassFactory {
  public:
    HelperClass() {
        // A name that is there already keeps its class, which is this program's in its own apartment.
        CLSID type;
        if (FAILED(CLSIDFromProgID(L"HostFields.FieldHelper", &type))) {
            // For this user; where classes are no user's own, for all.
            write(HKEY_CURRENT_USER);
            if (FAILED(CLSIDFromProgID(L"HostFields.FieldHelper", &type))) write(HKEY_LOCAL_MACHINE);
            CLSIDFromString(identifier, &type);
        }
        const HRESULT offered =
            CoRegisterClassObject(type, this, CLSCTX_INPROC_SERVER, REGCLS_MULTIPLEUSE, &cookie_);
        if (FAILED(offered)) {
            removeWritten();
            throw Failure{offered, L"HostFields.FieldHelper no se puede registrar"};
        }
    }
    HelperClass(const HelperClass&) = delete;
    HelperClass& operator=(const HelperClass&) = delete;
    virtual ~HelperClass() {
        CoRevokeClassObject(cookie_);
        removeWritten();
    }

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) override {
        const bool known = IsEqualIID(iid, IID_IUnknown) || IsEqualIID(iid, IID_IClassFactory);
        *object = known ? this : nullptr;
        return known ? S_OK : E_NOINTERFACE;
    }
    ULONG STDMETHODCALLTYPE AddRef() override { return 2; }  // lives in main()
    ULONG STDMETHODCALLTYPE Release() override { return 1; }
    HRESULT STDMETHODCALLTYPE CreateInstance(IUnknown* outer, REFIID iid, void** object) override {
        return outer ? CLASS_E_NOAGGREGATION : made<FieldHelper>().object()->QueryInterface(iid, object);
    }
    HRESULT STDMETHODCALLTYPE LockServer(BOOL) override { return S_OK; }

  private:
    static constexpr wchar_t identifier[] = L"{490DCA1F-5049-4A98-BDB6-57943F99285D}";
    static constexpr wchar_t key[] = L"Software\\Classes\\HostFields.FieldHelper";

    void write(HKEY root) {
        removeWritten();
        RegSetKeyValueW(root, (std::wstring(key) + L"\\CLSID").c_str(), nullptr, REG_SZ, identifier,
                        sizeof identifier);
        written_ = root;
    }
    void removeWritten() {
        if (written_) RegDeleteTreeW(written_, key);
        written_ = nullptr;
    }

    DWORD cookie_ = 0;
    HKEY written_ = nullptr;  ///< where this program had to write the name
};

// --- The host

Value openConnection(const wchar_t* connectionString) {
    constexpr long clientCursors = 3;
    const Value connection = created(L"ADODB.Connection");
    put(connection.object(), L"CursorLocation", clientCursors);
    put(connection.object(), L"ConnectionString", connectionString);
    call(connection.object(), L"Open", DISPATCH_METHOD, {L"", L"", L"", Value(-1L)});
    call(connection.object(), L"Execute", DISPATCH_METHOD,
         {L"SET DATEFORMAT dmy", Value::missing(), Value(-1L)});
    return connection;
}

void import(const Value& context) {
    const Value plugIn = created(L"PXTarvo.PXTarvor");
    call(plugIn.object(), L"MyBd", DISPATCH_PROPERTYPUTREF, {context});
    call(plugIn.object(), L"jImportacionTarifas", DISPATCH_METHOD);
    call(plugIn.object(), L"MyBd", DISPATCH_PROPERTYPUTREF, {Value(static_cast<IDispatch*>(nullptr))});
}

/// The number of faults.
int check(const Value& context) {
    using Check = LONG(WINAPI*)(IDispatch*, VARIANT*);
    const HMODULE library = LoadLibraryW(L"PXTarvoCheck.dll");
    if (!library) throw failure(53, L"No se encuentra PXTarvoCheck.dll");
    const auto comprobar =
        reinterpret_cast<Check>(reinterpret_cast<void*>(GetProcAddress(library, "PXTarvoComprobar")));
    Value report;
    const LONG faults = comprobar(context.object(), report.put());
    _setmode(_fileno(stdout), _O_BINARY);  // the lines end with CR LF already
    std::printf("%ls", report.text().c_str());
    return static_cast<int>(faults);
}

int run(const wchar_t* connectionString, bool checking) {
    const HelperClass helpers;
    const Value connection = openConnection(connectionString);
    const Value context = made<Context>(connection);
    int faults = 0;
    if (checking) {
        faults = check(context);
    } else {
        import(context);
    }
    call(connection.object(), L"Close", DISPATCH_METHOD);
    return faults;
}

}  // namespace

int wmain(int count, wchar_t** arguments) {
    const bool checking = count == 3 && std::wstring(arguments[2]) == L"--check";
    if (count != 2 && !checking) {
        std::fputs("SampleHost.exe \"CONNECTION STRING\" [--check]\n", stderr);
        return 2;
    }
    std::setlocale(LC_ALL, "");
    CoInitialize(nullptr);
    try {
        return run(arguments[1], checking);
    } catch (const Failure& raised) {
        std::fprintf(stderr, "%08lX %ls\n", static_cast<unsigned long>(raised.code), raised.text.c_str());
        return 1;
    }
}
