#include "platform/windows/system/ansi_text_files.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <vector>

#include "platform/values/text.h"
#include "platform/windows/system/wide_text.h"
#include "tests/windows/recording_object.h"

namespace pxtarvo::windows {
namespace {

namespace fs = std::filesystem;

class AnsiTextFilesTest : public testing::Test {
  protected:
    AnsiTextFilesTest() { fs::create_directories(folder_); }
    ~AnsiTextFilesTest() override { fs::remove_all(folder_); }

    std::string path(std::string_view name) const {
        return toUtf8(folder_.u16string()) + "\\" + std::string(name);
    }
    std::string write(std::string_view name, std::string_view bytes) const {
        std::ofstream(folder_ / name, std::ios::binary) << bytes;
        return path(name);
    }

    fs::path folder_ = fs::temp_directory_path() / ("pxtarvo" + std::to_string(GetCurrentProcessId()));
};

TEST_F(AnsiTextFilesTest, ReadsLinesAndWritesTheAnsiCodePage) {
    using Lines = std::vector<std::string>;
    const std::string full(32767, 'x');  // the CR is the last byte of the first buffer
    const std::pair<std::string, Lines> cases[] = {
        {"", {}},
        {"a\r\nb\rc", {"a", "b", "c"}},
        {"a\nb\r\n", {"a\nb"}},
        {"\r\n\r\r\n", {"", "", ""}},
        {full + "\r\nb", {full, "b"}},
        {toAnsi("PIÑÓN") + "\r\n", {"PIÑÓN"}},
    };
    AnsiTextFiles files;
    for (const auto& [bytes, lines] : cases) {
        files.openForInput(1, write("f.txt", bytes));
        Lines read;
        while (!files.atEnd(1)) read.push_back(files.lineInput(1));
        EXPECT_EQ(read, lines);
        EXPECT_EQ(tests::errorOf([&] { files.lineInput(1); }), 62);
        files.close(1);
    }
    write("out.txt", full + "longer than what is written");
    files.openForOutput(2, path("OUT.txt"));
    files.print(2, "PIÑÓN");
    files.print(2, full);
    files.print(2, "");
    files.close(2);
    std::ifstream written(folder_ / "out.txt", std::ios::binary);
    EXPECT_EQ(std::string(std::istreambuf_iterator<char>(written), {}),
              toAnsi("PIÑÓN") + "\r\n" + full + "\r\n\r\n");
}

TEST_F(AnsiTextFilesTest, RaisesTheNumbersOfTheLanguage) {
    const std::string present = write("present.txt", "a\r\n");
    const std::string output = path("out.txt");
    AnsiTextFiles files;
    const auto input = [&](int number, const std::string& place) {
        return tests::errorOf([&] { files.openForInput(number, place); });
    };
    const auto forOutput = [&](int number, const std::string& place) {
        return tests::errorOf([&] { files.openForOutput(number, place); });
    };
    EXPECT_EQ(input(1, path("missing.txt")), 53);
    EXPECT_EQ(input(1, path("missing\\f.txt")), 76);
    EXPECT_EQ(forOutput(1, path("missing\\f.txt")), 76);
    EXPECT_EQ(input(1, path("")), 75);
    EXPECT_EQ(forOutput(1, ""), 75);
    EXPECT_EQ(input(0, present), 52);
    EXPECT_EQ(input(512, present), 52);

    EXPECT_EQ(input(1, present), 0);
    EXPECT_EQ(input(1, present), 55);
    EXPECT_EQ(input(2, present), 0);
    EXPECT_EQ(forOutput(3, path("PRESENT.TXT")), 55);
    EXPECT_EQ(files.lineInput(1), "a");  // the refused opening emptied nothing
    EXPECT_EQ(forOutput(3, output), 0);
    EXPECT_EQ(input(4, output), 55);
    EXPECT_EQ(tests::errorOf([&] { files.print(1, ""); }), 54);
    EXPECT_EQ(tests::errorOf([&] { files.atEnd(3); }), 54);
    EXPECT_EQ(tests::errorOf([&] { files.print(9, ""); }), 52);
    files.close(9);
    files.close(3);
    EXPECT_EQ(input(3, output), 0);
}

}  // namespace
}  // namespace pxtarvo::windows
