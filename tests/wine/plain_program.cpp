#include "tests/wine/plain_program.h"

#include <gtest/gtest.h>

#include <fstream>
#include <iterator>

#include "platform/values/text.h"
#include "platform/windows/automation/automation_values.h"

namespace pxtarvo::test {

namespace {

using windows::Bstr;

constexpr DWORD patience = 60'000;  // milliseconds
constexpr DWORD glance = 20;

/// The place of a file of this machine's on the drive that every prefix has for it.
std::string onDriveZ(const std::string& path) {
    return "Z:" + replaced(path, "/", "\\");
}

std::string readText(const std::function<int(LPWSTR, int)>& read) {
    char16_t text[512];
    const int length = read(reinterpret_cast<LPWSTR>(text), 512);
    return toUtf8(std::u16string_view(text, static_cast<std::size_t>(std::max(length, 0))));
}

struct Look {
    DWORD process;
    std::vector<SeenWindow> seen;
};

BOOL CALLBACK see(HWND window, LPARAM look) {
    auto& found = *reinterpret_cast<Look*>(look);
    DWORD process = 0;
    GetWindowThreadProcessId(window, &process);
    if (process != found.process || !IsWindowVisible(window)) return TRUE;
    // Asked of the window itself: across programs the title is all that is kept.
    const auto text = [=](LPWSTR place, int size) {
        DWORD_PTR length = 0;
        SendMessageTimeoutW(window, WM_GETTEXT, static_cast<WPARAM>(size), reinterpret_cast<LPARAM>(place),
                            SMTO_ABORTIFHUNG, glance * 50, &length);
        return static_cast<int>(length);
    };
    found.seen.push_back(
        {window, readText([=](LPWSTR place, int size) { return GetClassNameW(window, place, size); }),
         readText(text)});
    if (GetParent(window) == nullptr || GetAncestor(window, GA_ROOT) == window)
        EnumChildWindows(window, see, look);
    return TRUE;
}

class Handle {
  public:
    explicit Handle(HANDLE handle = nullptr) : handle_(handle) {}
    Handle(const Handle&) = delete;
    Handle& operator=(const Handle&) = delete;
    ~Handle() {
        if (handle_) CloseHandle(handle_);
    }
    HANDLE get() const { return handle_; }

  private:
    HANDLE handle_;
};

}  // namespace

StandInClasses::StandInClasses(const std::string& server) {
    const std::pair<std::string, std::string> classes[] = {
        {"ADODB.Connection", "{00000514-0000-0010-8000-00AA006D2EA4}"},
        {"ADODB.Recordset", "{00000535-0000-0010-8000-00AA006D2EA4}"},
        {"Excel.Application", "{6A1B6D60-54C1-4C9B-8E0B-3D6A51B40C77}"},
        {"HostFields.FieldHelper", "{6A1B6D61-54C1-4C9B-8E0B-3D6A51B40C77}"},
        {"PXTarvoDevHost.Context", "{6A1B6D62-54C1-4C9B-8E0B-3D6A51B40C77}"}};
    for (const auto& [name, identifier] : classes) {
        write(name + "\\CLSID", identifier);
        write("CLSID\\" + identifier + "\\ProgID", name);
        write("CLSID\\" + identifier + "\\InprocServer32", onDriveZ(server));
    }
}

void StandInClasses::write(const std::string& key, const std::string& value) {
    const Bstr name(key);
    char16_t before[512] = {};
    DWORD size = sizeof before;
    const bool wasThere = RegGetValueW(HKEY_CLASSES_ROOT, name.get(), nullptr, RRF_RT_REG_SZ, nullptr, before,
                                       &size) == ERROR_SUCCESS;
    written_.push_back({key, toUtf8(before), wasThere});
    const Bstr text(value);
    RegSetKeyValueW(HKEY_CLASSES_ROOT, name.get(), nullptr, REG_SZ, text.get(),
                    SysStringByteLen(text.get()) + sizeof(char16_t));
}

StandInClasses::~StandInClasses() {
    for (const Written& written : written_) {
        const Bstr name(written.key);
        if (!written.wasThere) {
            RegDeleteTreeW(HKEY_CLASSES_ROOT, name.get());
            // A class without anything in it fails otherwise than one that is not there.
            const Bstr parent(written.key.substr(0, written.key.rfind('\\')));
            RegDeleteKeyW(HKEY_CLASSES_ROOT, parent.get());
            continue;
        }
        const Bstr text(written.before);
        RegSetKeyValueW(HKEY_CLASSES_ROOT, name.get(), nullptr, REG_SZ, text.get(),
                        SysStringByteLen(text.get()) + sizeof(char16_t));
    }
}

ProgramEnd runProgram(const std::string& file, const std::vector<std::string>& arguments,
                      const std::function<void(const std::vector<SeenWindow>&)>& use) {
    std::string line = "\"" + onDriveZ(file) + "\"";
    for (const std::string& argument : arguments) line += " \"" + argument + "\"";
    const Bstr command(line);

    const std::string outputPath =
        ::testing::TempDir() + "/pxtarvo-output-" + std::to_string(GetCurrentProcessId());
    SECURITY_ATTRIBUTES inherited{sizeof inherited, nullptr, TRUE};
    ProgramEnd end;
    {
        const Handle output(CreateFileW(Bstr(onDriveZ(outputPath)).get(), GENERIC_WRITE, FILE_SHARE_READ,
                                        &inherited, CREATE_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr));
        STARTUPINFOW start{};
        start.cb = sizeof start;
        start.dwFlags = STARTF_USESTDHANDLES;
        start.hStdOutput = start.hStdError = output.get();
        PROCESS_INFORMATION made{};
        const auto startIt = [&] {
            return CreateProcessW(nullptr, command.get(), nullptr, nullptr, TRUE, 0, nullptr, nullptr, &start,
                                  &made);
        };
        // On a busy machine Wine fails to start a process now and then.
        bool started = startIt();
        for (int again = 0; !started && again < 3; ++again) {
            Sleep(glance);
            started = startIt();
        }
        if (!started) {
            ADD_FAILURE() << line << " does not start: " << GetLastError();
            return end;
        }
        const Handle thread(made.hThread);
        const Handle process(made.hProcess);
        DWORD waited = 0;
        for (; WaitForSingleObject(process.get(), glance) == WAIT_TIMEOUT && waited < patience;
             waited += glance) {
            if (!use) continue;
            Look look{made.dwProcessId, {}};
            EnumWindows(see, reinterpret_cast<LPARAM>(&look));
            use(look.seen);
        }
        if (waited >= patience) {
            ADD_FAILURE() << line << " does not end";
            TerminateProcess(process.get(), 1);
            WaitForSingleObject(process.get(), patience);
        }
        GetExitCodeProcess(process.get(), &end.status);
    }
    std::ifstream output(outputPath, std::ios::binary);
    end.output.assign(std::istreambuf_iterator<char>(output), {});
    return end;
}

}  // namespace pxtarvo::test
