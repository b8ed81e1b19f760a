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

/// What no run reaches; the rest is held by the parity of the runs that read and write files.
TEST_F(AnsiTextFilesTest, ReadsAndWritesLongLinesAndRaisesTheNumbersOfTheLanguage) {
    const std::string full(32767, 'x');  // the CR is the last byte of the first buffer
    const std::string present = write("present.txt", full + "\r\n\r\r\na\nb");
    const std::string output = write("out.txt", full + "longer than what is written");
    AnsiTextFiles files;
    const auto input = [&](int number, const std::string& place) {
        return tests::errorOf([&] { files.openForInput(number, place); });
    };
    const auto forOutput = [&](int number, const std::string& place) {
        return tests::errorOf([&] { files.openForOutput(number, place); });
    };
    EXPECT_EQ(input(1, path("")), 75);
    EXPECT_EQ(forOutput(1, ""), 75);
    EXPECT_EQ(forOutput(1, path("missing\\f.txt")), 76);
    for (const int number : {0, 512}) EXPECT_EQ(input(number, present), 52);

    EXPECT_EQ(input(1, present), 0);
    EXPECT_EQ(input(2, present), 0);
    EXPECT_EQ(forOutput(3, path("PRESENT.TXT")), 55);
    std::vector<std::string> read;  // the refused opening emptied nothing
    while (!files.atEnd(1)) read.push_back(files.lineInput(1));
    EXPECT_EQ(read, (std::vector<std::string>{full, "", "", "a\nb"}));
    EXPECT_EQ(tests::errorOf([&] { files.lineInput(1); }), 62);

    EXPECT_EQ(forOutput(3, path("OUT.txt")), 0);
    EXPECT_EQ(input(4, output), 55);
    EXPECT_EQ(tests::errorOf([&] { files.print(1, ""); }), 54);
    EXPECT_EQ(tests::errorOf([&] { files.atEnd(3); }), 54);
    EXPECT_EQ(tests::errorOf([&] { files.print(9, ""); }), 52);
    for (const std::string& line : {std::string("PIÑÓN"), full, std::string()}) files.print(3, line);
    files.close(9);
    files.close(3);
    std::ifstream written(folder_ / "out.txt", std::ios::binary);
    EXPECT_EQ(std::string(std::istreambuf_iterator<char>(written), {}),
              toAnsi("PIÑÓN") + "\r\n" + full + "\r\n\r\n");
}

}  // namespace
}  // namespace pxtarvo::windows
