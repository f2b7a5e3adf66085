// SPDX-License-Identifier: MIT
#include "tests/endtoend/Process.h"
#include "tests/support/TemporaryDirectory.h"

#include <gtest/gtest.h>

namespace endtoend {
namespace {

Outcome check(const std::string& resources, const std::string& language = "en")
{
    return run({ZELK_BINARY_DIR "/bin/check-string-tables", resources, language});
}

TEST(CheckStringTables, faultsAreToldWithTheirPlaceAndFailTheBuild)
{
    ::tests::TemporaryDirectory folder;
    folder.write("en.lproj/Sample.strings", "\"A\" = \"%d files\";\n\"B\" = \"b\";\n");
    folder.write("de.lproj/Sample.strings", "\"A\" = \"%i Dateien\";\n\"B\" = \"b\";\n");
    auto outcome = check(folder.path());
    EXPECT_EQ(outcome.exitStatus, 0);
    EXPECT_EQ(outcome.errors, "");

    folder.write("fr.lproj/Sample.strings", "\"A\" = \"%@ fichiers\";\n\"A\" = \"%@\";\n\"C\" = \"c\";\n?\n");
    folder.write("fr.lproj/Other.strings", "");
    folder.write("it.lproj/Sample.strings", "\xFF");
    folder.write("pl.lproj/x", "");
    outcome = check(folder.path());
    EXPECT_EQ(outcome.exitStatus, 1);
    std::string fr = folder.path("fr.lproj/Sample.strings:"), it = folder.path("it.lproj/Sample.strings:");
    EXPECT_EQ(
        outcome.errors,
        fr + "2:1: the key \"A\" was given before, in line 1\n" //
            + fr + "4:1: a key is expected here\n" + fr + "1:1: the key \"B\" is missing\n" + fr
            + "2:1: the format of \"A\" takes the arguments (1 text), the reference's (1 whole number)\n" + fr
            + "3:1: the key \"C\" is not in the reference\n" + folder.path("fr.lproj/Other.strings:")
            + "1:1: the reference language has no such table\n" + it
            + "1:1: the text encoding of its contents can’t be determined\n"
            + folder.path("pl.lproj/Sample.strings:")
            + "1:1: The file “Sample.strings” couldn’t be opened because there is no such file.\n");
}

TEST(CheckStringTables, aMissingReferenceLanguageIsAWrongCall)
{
    ::tests::TemporaryDirectory folder;
    EXPECT_EQ(check(folder.path(), "de").exitStatus, 2);
    EXPECT_EQ(run({ZELK_BINARY_DIR "/bin/check-string-tables"}).exitStatus, 2);
}

} // namespace
} // namespace endtoend
