#include "check/findings.h"

#include <algorithm>

namespace pxtarvo::check {

bool Findings::add(std::string_view about, std::string_view text, std::string_view kind) {
    std::string line(kind);
    line.append(about).append(": ").append(text);
    if (std::ranges::find(lines_, line) != lines_.end()) return false;
    lines_.push_back(std::move(line));
    return true;
}

std::string Findings::report() const {
    std::string text;
    for (const std::string& line : lines_) text += line + "\r\n";
    if (faults_ == 0) return text + "Sin fallos.\r\n";
    return text + (faults_ == 1 ? "1 fallo." : std::to_string(faults_) + " fallos.") + "\r\n";
}

}  // namespace pxtarvo::check
