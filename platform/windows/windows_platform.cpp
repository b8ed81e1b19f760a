#include "platform/windows/windows_platform.h"

#include "platform/values/text.h"
#include "platform/windows/data/ado_connection.h"
#include "platform/windows/data/ado_recordset.h"
#include "platform/windows/data/spreadsheet_automation.h"
#include "platform/windows/system/module_theme.h"
#include "platform/windows/system/user_locale.h"

namespace pxtarvo::windows {

ObjectRef<Connection> WindowsPlatform::createConnection() {
    return makeObject<AdoConnection>(Dispatch::create("ADODB.Connection"));
}

ObjectRef<Recordset> WindowsPlatform::createRecordset() {
    return makeObject<AdoRecordset>(Dispatch::create("ADODB.Recordset"));
}

ObjectRef<SpreadsheetApplication> WindowsPlatform::createSpreadsheet() {
    return SpreadsheetAutomation::create();
}

const Locale& WindowsPlatform::locale() const {
    return userLocale();
}

std::string WindowsPlatform::moduleFolder() const {
    const std::string path = modulePath();
    const std::size_t separator = path.find_last_of("\\/");
    return separator == std::string::npos ? std::string() : path.substr(0, separator);
}

std::string modulePath() {
    constexpr std::size_t longestPath = 32768;
    std::u16string path(MAX_PATH, u'\0');
    for (;;) {
        const DWORD length = GetModuleFileNameW(moduleHandle(), reinterpret_cast<wchar_t*>(path.data()),
                                                static_cast<DWORD>(path.size()));
        if (length < path.size()) return toUtf8(std::u16string_view(path).substr(0, length));
        if (path.size() >= longestPath) return {};
        path.resize(path.size() * 2);
    }
}

}  // namespace pxtarvo::windows
