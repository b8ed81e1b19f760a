#include "platform/portable/files/sequential_files.h"

#include <gtest/gtest.h>

#include <vector>

#include "tests/common/temporary_folder.h"

namespace pxtarvo::portable {
namespace {

using Lines = std::vector<std::string>;

Lines linesOf(const std::string& path) {
    SequentialFiles files;
    files.openForInput(1, path);
    Lines lines;
    while (!files.atEnd(1)) lines.push_back(files.lineInput(1));
    EXPECT_EQ(tests::errorOf([&] { files.lineInput(1); }), 62);
    return lines;
}

TEST(SequentialFiles, OnlyCarriageReturnsEndLines) {
    const tests::TemporaryFolder folder;
    const std::string full(32767, 'x');  // the CR is the last byte of the first buffer
    const std::pair<std::string, Lines> cases[] = {{"", {}},
                                                   {"a\r\nb\rc", {"a", "b", "c"}},
                                                   {"a\nb\r\n", {"a\nb"}},
                                                   {"\r\n\r\r\n", {"", "", ""}},
                                                   {"a\r\n\n", {"a", "\n"}},
                                                   {full + "\r\n", {full}},
                                                   {full + "x\r\nb", {full + "x", "b"}}};
    for (const auto& [bytes, lines] : cases) EXPECT_EQ(linesOf(folder.write("f.txt", bytes)), lines);
    EXPECT_EQ(linesOf(tests::sample("articulo.tdw")).size(), 120U);
}

TEST(SequentialFiles, RaisesTheNumbersOfTheLanguage) {
    const tests::TemporaryFolder folder;
    const std::string present = folder.write("present.txt", "a\r\n");
    const std::string output = folder.file("out.txt");
    SequentialFiles files;
    const auto input = [&](int number, const std::string& path) {
        return tests::errorOf([&] { files.openForInput(number, path); });
    };
    const auto create = [&](int number, const std::string& path) {
        return tests::errorOf([&] { files.openForOutput(number, path); });
    };
    EXPECT_EQ(input(1, folder.file("missing.txt")), 53);
    EXPECT_EQ(input(1, folder.file("missing/f.txt")), 76);
    EXPECT_EQ(input(1, present + "/f.txt"), 76);
    EXPECT_EQ(input(1, "C:\\tarvo\\articulo.tdw"), 76);
    EXPECT_EQ(create(1, folder.file("missing/f.txt")), 76);
    EXPECT_FALSE(std::filesystem::exists(folder.file("missing")));
    for (const std::string& noFile : {folder.file(""), std::string()}) {
        EXPECT_EQ(input(1, noFile), 75);
        EXPECT_EQ(create(1, noFile), 75);
    }
    EXPECT_EQ(input(0, present), 52);
    EXPECT_EQ(create(512, output), 52);

    // What is open, and under how many numbers.
    EXPECT_EQ(input(1, present), 0);
    EXPECT_EQ(create(1, output), 55);
    EXPECT_FALSE(std::filesystem::exists(output));
    EXPECT_EQ(input(2, present), 0);
    EXPECT_EQ(create(3, folder.file("./present.txt")), 55);
    EXPECT_EQ(tests::bytesOf(present), "a\r\n");
    EXPECT_EQ(create(3, output), 0);
    EXPECT_EQ(create(4, output), 55);
    EXPECT_EQ(input(4, output), 55);

    EXPECT_EQ(tests::errorOf([&] { files.print(1, "x"); }), 54);
    EXPECT_EQ(tests::errorOf([&] { files.lineInput(3); }), 54);
    EXPECT_EQ(tests::errorOf([&] { files.atEnd(9); }), 52);
    files.close(3);
    files.close(3);
    EXPECT_EQ(tests::errorOf([&] { files.print(3, "x"); }), 52);
    EXPECT_EQ(input(3, output), 0);
}

TEST(SequentialFiles, AFullDiskIsToldAtTheLatestWhenClosing) {
    SequentialFiles files;
    files.openForOutput(1, "/dev/full");
    files.print(1, "x");
    EXPECT_EQ(tests::errorOf([&] { files.close(1); }), 61);
    EXPECT_EQ(tests::errorOf([&] { files.print(1, "x"); }), 52);
}

}  // namespace
}  // namespace pxtarvo::portable
