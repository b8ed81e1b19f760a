#pragma once

// The record of what crosses the plug-in's boundary: one JSON object a line, in the order of the calls. Hosts
// that run the plug-in in different worlds write the same lines for the same scenario, so the format is
// fixed: the order of the keys, numbers in their shortest form that reads back the same, Null as null, UTF-8.

#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <type_traits>

#include "devhost/record/host_write.h"
#include "host/host_field_helper.h"
#include "platform/desktop.h"
#include "platform/values/runtime_error.h"

namespace pxtarvo::devhost {

/// The calls that carry nothing but their name.
enum class TransactionCall { Begin, Commit, Rollback };

/// Runs `call` and passes its outcome, nullptr or its error, to `record`; the error goes on.
template <class Call, class Record>
decltype(auto) recorded(Call&& call, Record&& record) {
    try {
        if constexpr (std::is_void_v<std::invoke_result_t<Call>>) {
            call();
            record(nullptr);
        } else {
            auto result = call();
            record(nullptr);
            return result;
        }
    } catch (const RuntimeError& error) {
        record(&error);
        throw;
    }
}

class Recorder {
  public:
    /// Takes each finished line, without its line end.
    using Sink = std::function<void(std::string_view line)>;

    explicit Recorder(Sink sink) : sink_(std::move(sink)) {}

    /// A recorder that writes a new file, line by line. Raises 75 when the file cannot be created. An error
    /// while writing (a full disk) disturbs no call: finish() raises it.
    static std::shared_ptr<Recorder> toFile(const std::string& path);
    /// To be called when nothing more comes: raises 75 where the file did not take every line.
    void finish() const {
        if (checkWritten_) checkWritten_();
    }

    // Each takes the error that the call ended with, or nullptr.

    void sourceOpen(std::string_view connectionString, const RuntimeError* error = nullptr) {
        call("source.open", "connection", connectionString, error);
    }
    void sourceQuery(std::string_view sql, const RuntimeError* error = nullptr) {
        call("source.query", "sql", sql, error);
    }
    void execute(std::string_view sql, const RuntimeError* error = nullptr) {
        call("execute", "sql", sql, error);
    }
    void transaction(TransactionCall call, const RuntimeError* error = nullptr);
    /// `ok` is whether the host took the write; an update's is not written down, as nobody is told.
    void write(const HostWrite& write, bool ok, const RuntimeError* error = nullptr);
    void message(const Message& message, MessageAnswer answer);
    /// `answer` is what the search list gave back.
    void search(const Busqueda& busqueda, std::string_view answer, const RuntimeError* error = nullptr);
    void unload(std::string_view window) { call("unload", "window", window, nullptr); }

  private:
    /// A call that carries one text.
    void call(std::string_view name, std::string_view key, std::string_view value, const RuntimeError* error);
    void start(std::string_view call);
    void key(std::string_view name);
    void text(std::string_view value);
    void field(std::string_view name, std::string_view value);
    void value(const Variant& value);
    void end(const RuntimeError* error = nullptr);

    Sink sink_;
    std::function<void()> checkWritten_;
    std::string line_;
};

}  // namespace pxtarvo::devhost
