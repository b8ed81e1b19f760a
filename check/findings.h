#pragma once

// What a check has found, in the words of whoever reads it.

#include <string>
#include <string_view>
#include <vector>

namespace pxtarvo::check {

/// The lines of one check, each once. Their texts are Spanish and begin with the object and member that they
/// are about.
class Findings {
  public:
    /// What keeps a window or a run from working.
    void fault(std::string_view about, std::string_view text) {
        if (add(about, text, "FALLO  ")) ++faults_;
    }
    /// What works, but not as it should.
    void advice(std::string_view about, std::string_view text) { add(about, text, "AVISO  "); }

    int faults() const noexcept { return faults_; }
    /// All lines, and one that counts the faults; each ends with CR LF.
    std::string report() const;

  private:
    /// False where the line was there before.
    bool add(std::string_view about, std::string_view text, std::string_view kind);

    std::vector<std::string> lines_;
    int faults_ = 0;
};

}  // namespace pxtarvo::check
