#include "devhost/report/report_csv.h"

#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <string_view>

#include "devhost/report/report_tables.h"

namespace pxtarvo::devhost {

namespace fs = std::filesystem;

namespace {

constexpr std::string_view byteOrderMark = "\xEF\xBB\xBF";
constexpr char separator = ';';

void appendCell(std::string& line, std::string_view cell, bool number) {
    // A list's text must not begin to compute in whoever opens the file.
    const bool formula =
        !number && !cell.empty() && std::string_view("=+-@\t\r").find(cell.front()) != cell.npos;
    if (cell.find_first_of(";\"\r\n") == cell.npos && !formula) {
        line += cell;
        return;
    }
    line += '"';
    if (formula) line += '\'';
    for (const char character : cell) line.append(character == '"' ? 2 : 1, character);
    line += '"';
}

void write(const ReportTable& table, const fs::path& path) {
    std::string text(byteOrderMark);
    const auto line = [&](const auto& cell) {
        for (std::size_t column = 0; column < table.columns.size(); ++column) {
            if (column > 0) text += separator;
            cell(column);
        }
        text += "\r\n";
    };
    line([&](std::size_t column) { appendCell(text, table.columns[column].caption, false); });
    for (std::size_t row = 0; row < table.rows; ++row) {
        line([&](std::size_t column) {
            appendCell(text, table.cell(row, column, CellForm::File), table.columns[column].number);
        });
    }
    std::ofstream file(path, std::ios::binary | std::ios::trunc);
    file << text;
    file.close();
    if (!file) throw std::runtime_error("'" + path.string() + "' cannot be written");
}

}  // namespace

void writeReportTables(const RunReport& report, const std::string& folder) {
    std::error_code failed;
    fs::create_directories(folder, failed);
    if (!fs::is_directory(folder))
        throw std::runtime_error("'" + folder + "' is no folder and cannot be made one");
    for (const std::string_view name : reportTableNames) {
        fs::remove(fs::path(folder) / (std::string(name) + ".csv"), failed);
    }
    for (const ReportTable& table : reportTables(report)) {
        if (table.inFile) write(table, fs::path(folder) / (std::string(table.name) + ".csv"));
    }
}

}  // namespace pxtarvo::devhost
