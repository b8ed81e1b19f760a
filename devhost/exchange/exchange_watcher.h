#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <string_view>

namespace pxtarvo::devhost {

/// How far loading or saving has come.
struct ExchangeProgress {
    std::string_view file;  ///< its name without the folder
    std::size_t rows = 0;   ///< of this file
    double share = 0;       ///< of everything, 0 to 1
};

/// Who is told of the course of loading and saving; both may be empty.
struct ExchangeWatcher {
    std::function<void(const std::string& remark)> remarked;  ///< something is left out or added; one line
    std::function<void(const ExchangeProgress& progress)> progressed;  ///< every few thousand rows
};

/// A table of which a file was read or written.
struct ExchangedTable {
    std::string file;  ///< its name without the folder
    std::size_t rows = 0;
};

inline constexpr std::size_t rowsBetweenProgress = 4096;

}  // namespace pxtarvo::devhost
