// List files and vCards in UTF-8 come in exactly through the binary, with
// or without the mark; other bytes keep the code page's reading.

#include <string>
#include <vector>

#include "cli/cli_fixture.h"

namespace qb::testing {
namespace {

using Utf8ImportCli = CliTest;

TEST_F(Utf8ImportCli, ListFilesAndVCards) {
    TempDir files;
    const struct {
        const char* what;
        std::string bytes;
        std::string listed;  // UTF-8
    } lists[] = {
        {"UTF-8", "M\xC3\xBCller\r\n", "M\xC3\xBCller"},
        {"UTF-8 with the mark",
         "\xEF\xBB\xBF"
         "Caf\xC3\xA9\r\n",
         "Caf\xC3\xA9"},
        {"code page 1252", "Jos\xE9\r\n", "Jos\xC3\xA9"},
    };
    std::string expected;
    for (const auto& l : lists) {
        const std::string path = files.file("list.txt");
        writeFile(path, l.bytes);
        EXPECT_EQ(ok({"droplist", "import", "phase", path}), "") << l.what;
        expected += l.listed + "\n";
    }
    EXPECT_EQ(ok({"droplist", "list", "phase"}), expected);

    ok({"client", "add", "Acme"});
    const std::string cards = files.file("cards.vcf");
    writeFile(cards,
              "\xEF\xBB\xBF"
              "BEGIN:VCARD\r\nFN:J\xC3\xBCrgen M\xC3\xBCller\r\nEND:VCARD\r\n");
    ok({"client", "import", "vcard", cards, "--client", "Acme"});
    const std::string clients = files.file("clients.txt");
    writeFile(clients, "\xC3\x85sa\r\nZo\xC3\xAB\r\n");
    ok({"client", "import", "clients", clients});
    EXPECT_EQ(ok({"client", "show", "Acme"}),
              "client\t1\tAcme\ncontact\tJ\xC3\xBCrgen M\xC3\xBCller\n");
    EXPECT_EQ(ok({"client", "list"}), "clientId\tname\n1\tAcme\n3\tZo\xC3\xAB\n2\t\xC3\x85sa\n");
}

}  // namespace
}  // namespace qb::testing
