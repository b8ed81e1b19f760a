#include "platform/portable/sqlite/sqlite_functions.h"

#include "platform/portable/dialect/sql_collation.h"
#include "platform/portable/dialect/sql_translator.h"
#include "platform/portable/sqlite/sqlite_handles.h"

namespace pxtarvo::portable {

namespace {

FunctionState& stateOf(sqlite3_context* context) {
    return *static_cast<FunctionState*>(sqlite3_user_data(context));
}

int collate(void*, int sizeA, const void* a, int sizeB, const void* b) {
    return compareDealerTexts({static_cast<const char*>(a), static_cast<std::size_t>(sizeA)},
                              {static_cast<const char*>(b), static_cast<std::size_t>(sizeB)});
}

void now(sqlite3_context* context, int, sqlite3_value**) {
    FunctionState& state = stateOf(context);
    if (!state.now) state.now = storedDate(state.clock.now());
    sqlite3_result_text(context, state.now->data(), static_cast<int>(state.now->size()), SQLITE_TRANSIENT);
}

void secondValue(sqlite3_context* context, int, sqlite3_value**) {
    RuntimeError error(ErrorNumber::SqlSyntax,
                       "La subconsulta ha devuelto más de un valor, lo que no es correcto cuando va a "
                       "continuación de =, !=, <, <=, >, >= o cuando se utiliza como expresión.");
    sqlite3_result_error(context, error.what(), -1);
    stateOf(context).raised = std::move(error);
}

}  // namespace

void addServerFunctions(sqlite3* database, FunctionState& state) {
    const bool added = sqlite3_create_collation_v2(database, dealerCollation, SQLITE_UTF8, nullptr, collate,
                                                   nullptr) == SQLITE_OK &&
                       sqlite3_create_function_v2(database, nowFunction, 0, SQLITE_UTF8, &state, now, nullptr,
                                                  nullptr, nullptr) == SQLITE_OK &&
                       sqlite3_create_function_v2(database, secondValueFunction, 0, SQLITE_UTF8, &state,
                                                  secondValue, nullptr, nullptr, nullptr) == SQLITE_OK;
    if (!added) throw providerError(database);
}

}  // namespace pxtarvo::portable
