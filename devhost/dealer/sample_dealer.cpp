#include "devhost/dealer/sample_dealer.h"

#include <initializer_list>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "devhost/library/host_context.h"
#include "host/row_write.h"
#include "platform/portable/access/jet_connection.h"
#include "platform/values/conversion.h"
#include "platform/values/date_text.h"
#include "platform/values/number_text.h"
#include "platform/values/rounding.h"

namespace pxtarvo::devhost {

namespace {

constexpr std::int32_t listSupplier = 4;
constexpr std::int32_t listBrand = 1;

constexpr std::size_t listed = 640;
constexpr int rowStep = 3;
// Columns of the list, by position.
constexpr std::int32_t codeColumn = 1;
constexpr std::int32_t priceColumn = 3;
constexpr std::int32_t descriptionColumn = 9;

constexpr int twins = 60;
constexpr int unlistedArticles = 180;
constexpr int foreignArticles = 120;

struct Supplier {
    std::int32_t id;
    std::int32_t code;
    const char* name;  ///< nullptr for Null, so below
    const char* surname1;
    const char* surname2;
    std::int32_t document;  ///< 0 for a company, whose name has no surnames
    const char* commercial;
};

constexpr Supplier suppliers[] = {
    {1, 10, "Suministros Agrícolas del Duero, S.L.", nullptr, nullptr, 0, "Agroduero"},
    {2, 11, "José", "Muñoz", "Íñiguez", 1, "Talleres Muñoz"},
    {3, 12, nullptr, nullptr, nullptr, 1, "El Tractorista"},
    {listSupplier, 24, "Recambios Ibéricos de Tractor, S.A.", nullptr, nullptr, 0, "Reitrac"},
    {5, 30, "Neumáticos La Loma, S.L.", nullptr, nullptr, 0, "La Loma"},
    {6, 31, "María", "Peña", nullptr, 1, "Casa Peña"},
};

struct Brand {
    std::int32_t id;
    const char* name;
    const char* code;
    std::string_view articlePrefix;
    std::int32_t supplier;
};

constexpr Brand brands[] = {
    {listBrand, "Same", "SAME", "04", listSupplier},
    {2, "Agromar", "AGM", "AG-", 1},
    {3, "Vendaval", "VDV", "VD.", 2},
    {4, "Roturador", "ROT", "R/", 5},
};
constexpr int brandCount = std::size(brands);

constexpr const char* families[] = {"Filtros", "Transmisión", "Hidráulica",
                                    "Motor",   "Carrocería",  "Tornillería"};
constexpr int familyCount = std::size(families);

constexpr std::string_view unlistedNames[] = {"POLEA TENSORA", "BULÓN ENGANCHE", "PIÑÓN LOCO", "TUBO ESCAPE",
                                              "MANDO GASES"};

/// A sequence of numbers that look random and are the same on every machine (Numerical Recipes' constants).
class Sequence {
  public:
    /// 0 to `limit` - 1.
    int below(int limit) {
        state_ = state_ * 1664525u + 1013904223u;
        return static_cast<int>((state_ >> 8) % static_cast<std::uint32_t>(limit));
    }

  private:
    std::uint32_t state_ = 20120725u;
};

std::string padded(int number, std::size_t width) {
    std::string digits = plainNumber(number);
    return digits.size() < width ? digits.insert(0, width - digits.size(), '0') : digits;
}

Variant textOrNull(const char* text) {
    return text ? Variant(text) : Variant(Null{});
}

struct Article {
    std::string code;
    std::string description;
    std::optional<double> price;
    std::int32_t brand = listBrand;
    std::int32_t supplier = listSupplier;
    bool offered = true;  ///< stands in its supplier's catalogue
};

struct ListArticle {
    std::string code;
    std::string description;
    double price = 0;  ///< list price
};

/// Every third row of the sample list, each code once, in the list's order.
std::vector<ListArticle> listArticles() {
    const Locale& locale = spanishLocale();
    const auto list = makeObject<portable::JetConnection>(portable::DrivePaths());
    list->ConnectionString("Provider=Microsoft.Jet.OLEDB.4.0;Data Source=\"" PXTARVO_SAMPLE_LIST "\"");
    list->Open("", "", adOptionUnspecified);
    const auto rows = list->openRows("SELECT * FROM List");
    const auto text = [&](std::int32_t column) {
        return joinedText(trimmed(rows->value(column), locale), locale);
    };
    std::vector<ListArticle> articles;
    std::set<std::string> codes;
    for (int row = 0; articles.size() < listed && rows->next(); ++row) {
        if (row % rowStep != 0 || !codes.insert(text(codeColumn)).second) continue;
        articles.push_back(
            {text(codeColumn), text(descriptionColumn), toDouble(rows->value(priceColumn), locale)});
    }
    return articles;
}

class SampleDealer {
  public:
    explicit SampleDealer(Connection& connection) {
        auto state = std::make_shared<HostState>();
        state->connection = std::shared_ptr<Connection>(std::shared_ptr<void>(), &connection);  // not owned
        host_ = makeObject<DevHostDatabase>(std::move(state));
    }

    void fill();

  private:
    using Value = std::pair<std::string_view, Variant>;

    void row(const Tabla& table, std::initializer_list<Value> values);
    void referenceTables();
    void article(const Article& article);
    void stockRow(const Article& article, std::int32_t warehouse);
    void place();
    void movement(const Article& article);

    ObjectRef<HostDatabase> host_;
    Sequence sequence_;
    std::int32_t id_ = 0;  ///< of the article at hand
};

void SampleDealer::row(const Tabla& table, std::initializer_list<Value> values) {
    EscrituraFila write(host_, table);
    for (const auto& [name, value] : values) {
        const Columna& column = table.columna(name);
        // Dates stand here as they are, not as the server's own.
        const bool date = column.nTipo == Tipo::Expresion;
        write.agregar(date ? Columna{column.sNombre, Tipo::Fecha} : column, value);
    }
    std::string message;
    if (!write.insertar(message)) throw RuntimeError(ErrorNumber::HostRefused, message);
}

void SampleDealer::referenceTables() {
    for (const Supplier& supplier : suppliers) {
        row(Pro::tabla, {{"Pro_ID", supplier.id},
                         {"Pro_COD", supplier.code},
                         {"Pro_NOM", textOrNull(supplier.name)},
                         {"Pro_APE1", textOrNull(supplier.surname1)},
                         {"Pro_APE2", textOrNull(supplier.surname2)},
                         {"Pro_TIPDOC", supplier.document},
                         {"Pro_comer", textOrNull(supplier.commercial)}});
    }
    for (const Brand& brand : brands) {
        row(Marcas::tabla,
            {{"Marca_ID", brand.id}, {"Marca_Des", brand.name}, {"Marca_CodAbrev", brand.code}});
    }
    for (std::int32_t family = 1; family <= familyCount; ++family) {
        row(Fam::tabla, {{"Fam_Id", family}, {"FAM_DES", families[family - 1]}});
    }
}

void SampleDealer::article(const Article& article) {
    ++id_;
    const bool retired = id_ % 11 == 5;
    const bool moved = id_ % 4 == 1;
    const CalendarTime since{2005 + sequence_.below(6), 1 + sequence_.below(12), 1 + sequence_.below(28)};
    const Variant price = article.price ? Variant(*article.price) : Variant(Null{});
    const std::string barcode = "843" + padded(id_, 10);
    row(Art::tabla, {{"ART_Cod", article.code},
                     {"ART_DES", article.description},
                     {"ART_PVE", price},
                     {"ART_PCO", article.price ? roundHalfAway(*article.price * 0.7, 2) : 0.0},
                     {"ART_Rod", 0},
                     {"ART_Pas", 0},
                     {"ART_Mat", 0},
                     {"ART_TIPO", 1},
                     {"Art_Alma", 1},
                     {"Art_Marca", article.brand},
                     {"Art_Mar", article.brand},
                     {"Art_Estado", retired ? 1 : 0},
                     {"Art_FechaEstado", dayMonthYear(since)},
                     {"Art_barCode", id_ % 7 == 0 ? Variant(barcode) : Variant(Null{})},
                     {"Art_FAm", 1 + sequence_.below(familyCount)}});
    if (article.offered) {
        row(ArtPro::tabla, {{"ARP_Ida", id_},
                            {"ARP_Idp", article.supplier},
                            {"ARP_Cop", article.code},
                            {"ARP_des", article.description},
                            {"Arp_Precio", price},
                            {"Arp_Descuento", 0}});
    }
    if (id_ % 2 == 0) row(Aat::tabla, {{"Aat_Id", id_}, {"Aat_C01", ""}});
    if (id_ % 3 != 0) stockRow(article, 1);
    if (id_ % 3 != 0 && moved && id_ % 5 == 0) stockRow(article, 2);
    if (id_ % 6 == 0) place();
    if (moved) movement(article);
}

void SampleDealer::stockRow(const Article& article, std::int32_t warehouse) {
    const double quantity = sequence_.below(40) - 2 + (id_ % 20 == 0 ? 0.5 : 0);
    row(Exis::tabla, {{"Exis_IdArt", id_},
                      {"Exis_CodArt", article.code},
                      {"Exis_Des", article.description},
                      {"Exis_alma", warehouse},
                      {"Exis_Cantidad", quantity},
                      {"Exis_Kg", quantity},
                      {"Exis_Fentrada", "15/03/2012"},
                      {"Exis_Kill", 0},
                      {"Exis_Lote", ""}});
}

/// Every other place has lost its aisle.
void SampleDealer::place() {
    const Variant aisles[] = {"P-" + padded(sequence_.below(100), 2), Null{}, "B7", "   "};
    row(Ubi::tabla,
        {{"Ubi_IdArt", id_}, {"Ubi_IdAlm", 1}, {"Ubi_Pasillo", aisles[id_ / 6 % 4]}, {"Ubi_ExMin", 1.0}});
}

void SampleDealer::movement(const Article& article) {
    const std::pair<const Tabla*, Value> plain[] = {{&Movimientos::Lapr, {"Lapr_IdArt", id_}},
                                                    {&Movimientos::Pedli, {"PedLi_IdArt", id_}},
                                                    {&Movimientos::lav, {"lav_idart", id_}},
                                                    {&Movimientos::Lpc, {"Lpc_IdArt", id_}},
                                                    {&Movimientos::lac, {"lac_codart", article.code}}};
    const std::size_t kind = static_cast<std::size_t>(id_) / 4 % 6;
    if (kind < std::size(plain)) return row(*plain[kind].first, {plain[kind].second});
    row(Hexis::tabla, {{"Hexis_Tipo", "E"},
                       {"Hexis_alma", 1},
                       {"Hexis_idArt", id_},
                       {"Hexis_Fecha", "15/03/2012"},
                       {"Hexis_Cantidad", 5.0},
                       {"Hexis_Unidades", 5.0},
                       {"Hexis_Com", "Entrada de albarán"}});
}

void SampleDealer::fill() {
    referenceTables();

    // What a dealer's price is of the list's, in percent; nothing where he has none.
    constexpr int percents[] = {90, 100, 120, 80, 0, 100, 95, 110};
    int position = 0;
    const std::vector<ListArticle> list = listArticles();
    for (const ListArticle& listed : list) {
        const int percent = percents[position++ % std::size(percents)];
        Article known{listed.code, listed.description, {}};
        if (percent != 0) known.price = roundHalfAway(listed.price * percent / 100, 2);
        known.offered = position % 4 != 0;
        article(known);
    }

    int twin = 0;
    for (const ListArticle& listed : list) {
        if (twin == twins) break;
        if (listed.code.front() != '0' || listed.code.find('.') != std::string::npos) continue;
        ++twin;
        article({listed.code.substr(1), listed.description, listed.price});
    }

    for (int number = 0; number < unlistedArticles + foreignArticles; ++number) {
        const int foreign = number - unlistedArticles;
        const Brand& brand = foreign < 0 ? brands[0] : brands[1 + foreign % (brandCount - 1)];
        Article own{std::string(brand.articlePrefix) + padded(100000 + number * 37, 6),
                    std::string(unlistedNames[number % std::size(unlistedNames)]) + " " + plainNumber(number),
                    (100 + sequence_.below(20000)) / 100.0};
        own.brand = brand.id;
        own.supplier = brand.supplier;
        article(own);
    }
}

}  // namespace

void fillSampleDealer(Connection& connection) {
    connection.BeginTrans();
    try {
        SampleDealer(connection).fill();
        connection.CommitTrans();
    } catch (const RuntimeError&) {
        connection.RollbackTrans();
        throw;
    }
}

}  // namespace pxtarvo::devhost
