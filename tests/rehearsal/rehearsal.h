#pragma once

// One run of the tool, rehearsed, made and taken back.

#include <gmock/gmock.h>

#include <optional>
#include <string>

#include "tests/common/host_process.h"
#include "tests/rehearsal/comparison.h"

namespace pxtarvo::tests {

/// The number behind the first place of the words; nothing where they do not stand.
std::optional<int> numberAfter(const std::string& text, const std::string& words);
/// The characters as an Access file keeps them.
std::string wide(std::string_view text);

class Rehearsal : public ::testing::Test, protected HostProcess {
  protected:
    /// Makes the sample dealer's database, as `name`, from one that is made once.
    void makeDealer(const std::string& name = "dealer.db");
    void copy(const std::string& from, const std::string& to);
    /// Runs statements of SQLite's own dialect on a database of the folder.
    void change(const std::string& sql, const std::string& database = "dealer.db");
    std::string path(const std::string& name) const { return folder.file(name); }

    /// What a run reads, as far as its report depends on it.
    struct List {
        std::string path{};  ///< of an Access list, else empty
        std::string_view table = "List";
        int pricePosition = 3;
    };
    /// Rehearses the command, makes it and takes it back, all on dealer.db, and holds each against the others
    /// and against the tables: a rehearsal leaves the file alone and says what the run then says, the report
    /// tells what the tables tell, and what is taken back leaves the tables as they were. Gives back the
    /// run's exit status; the reports stay in real.html and real/, the database as it was, the run's own in
    /// after.db.
    int holds(const std::string& command, const List& list);
    int holds(const std::string& command) { return holds(command, List()); }

  private:
    void expectFigures(const ReportPage& page, const List& list, bool changed);
    void expectTables(const ReportPage& page, const Comparison& tables);
};

}  // namespace pxtarvo::tests
