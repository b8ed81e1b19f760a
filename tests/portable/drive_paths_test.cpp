#include "platform/portable/files/drive_paths.h"

#include <gtest/gtest.h>

#include "tests/common/temporary_folder.h"

namespace pxtarvo::portable {
namespace {

TEST(DrivePaths, LooksNamesUpBelowTheDriveIgnoringCase) {
    const tests::TemporaryFolder folder;
    folder.write("Tarvo/Código de Barras2008.xls", "");
    folder.write("Tarvo/lista.mdb", "exact");
    folder.write("Tarvo/LISTA.mdb", "");
    folder.write("Tarvo/\xFF.mdb", "a name that is not UTF-8");
    const DrivePaths paths(folder.file(""));

    const std::pair<const char*, const char*> cases[] = {
        {"C:\\TARVO\\CÓDIGO DE BARRAS2008.xls", "Tarvo/Código de Barras2008.xls"},
        {"c:/tarvo//./otra/../LISTA.mdb", "Tarvo/LISTA.mdb"},
        {"C:\\TARVO\\lista.mdb", "Tarvo/lista.mdb"},
        {"C:\\TARVO\\Lista.MDB", "Tarvo/LISTA.mdb"},
        {"C:\\..\\..\\TARVO\\nueva.txt", "Tarvo/nueva.txt"},
        {"C:\\TARVO\\CODIGO DE BARRAS2008.xls", "Tarvo/CODIGO DE BARRAS2008.xls"},
        {"C:\\TARVO\\Nueva\\lista.mdb", "Tarvo/Nueva/lista.mdb"},
        {"C:TARVO", "Tarvo"}};
    for (const auto& [path, found] : cases) {
        EXPECT_EQ(std::filesystem::path(paths.resolve(path)).lexically_normal(), folder.file(found)) << path;
    }
}

TEST(DrivePaths, NothingExistsOnADriveThatNothingStandsFor) {
    const tests::TemporaryFolder folder;
    folder.write("lista.mdb", "");
    EXPECT_FALSE(std::filesystem::exists(DrivePaths(folder.file("")).resolve("D:\\lista.mdb")));
    EXPECT_FALSE(std::filesystem::exists(DrivePaths().resolve("C:\\")));
    for (const char* own : {"/etc/hosts", "lista.mdb", "", "ñ:\\x", "\\\\server\\lista.mdb"}) {
        EXPECT_EQ(DrivePaths(folder.file("")).resolve(own), own);
    }
}

}  // namespace
}  // namespace pxtarvo::portable
