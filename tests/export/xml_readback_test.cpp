// Every XML export, in each encoding and in code pages of one byte, of two
// bytes and of UTF-8, read back by a real XML parser (Python's expat), with
// characters beyond the Basic Multilingual Plane and markup in the fields.

#include <unistd.h>

#include <cstdio>
#include <string>

#include "export/export_fixture.h"
#include "export/xml_export.h"

namespace qb::testing {
namespace {

constexpr const char* kPython = "/usr/bin/python3";

// Prints "client|task|note" of each ITEM, or the parser's complaint. The
// text is read in the code page the bytes were written in; where the
// declared encoding is the same one, the raw bytes are parsed as well, as
// any reader would take them.
constexpr const char* kReader = R"(
import re, sys, xml.etree.ElementTree as ET
path, codec, raw = sys.argv[1], sys.argv[2], sys.argv[3] == "1"
data = open(path, "rb").read()
try:
    if codec == "utf-16":
        root = ET.fromstring(data)
    else:
        if raw:
            ET.fromstring(data)
        text = data.decode(codec)
        text = re.sub(r'^(<\?xml[^>]*?) encoding="[^"]*"', r"\1", text)
        root = ET.fromstring(text)
    for item in root.findall("ITEM"):
        fields = [item.findtext(n) or "" for n in ("CLIENT", "TASK", "NOTES")]
        sys.stdout.buffer.write(("|".join(fields) + "\n").encode("utf-8"))
except Exception as e:
    print("PARSE ERROR", type(e).__name__, e)
)";

std::string readBack(const std::string& script, const std::string& path, const char* codec,
                     bool raw) {
    const std::string command =
        std::string(kPython) + " " + script + " " + path + " " + codec + " " + (raw ? "1" : "0");
    std::string out;
    if (std::FILE* p = ::popen(command.c_str(), "r")) {
        char buffer[4096];
        while (std::size_t n = std::fread(buffer, 1, sizeof buffer, p)) out.append(buffer, n);
        ::pclose(p);
    }
    return out;
}

using XmlReadBack = StoreTest;

TEST_F(XmlReadBack, EveryEncodingAndCodePageParses) {
    if (::access(kPython, X_OK) != 0) GTEST_SKIP() << kPython << " is not installed";
    TimeEntry first =
        entry(entryDate(2004, 3, 1, 13, 30), u"Caf\u00e9 & <Co> \U0001F600", u"\u65e5\u672c", 150);
    first.notes = noteBytes(u"line1\r\n\U0001F600 \"q\" 'a' \U0001F600");
    add(first);
    add(entry(entryDate(2004, 3, 2), u"Plain", u"T", 25));
    const std::string script = dir.file("read.py");
    writeFile(script, kReader);

    const struct {
        const char* codePage;
        const char* codec;  // Python's name for it
        std::string client, task, note;
    } pages[] = {
        {"CP1252", "cp1252", "Caf\xC3\xA9 & <Co> ??", "??", "line1\n?? \"q\" 'a' ??"},
        {"CP932", "cp932", "Caf? & <Co> ??", "\xE6\x97\xA5\xE6\x9C\xAC", "line1\n?? \"q\" 'a' ??"},
        {"UTF-8", "utf-8", "Caf\xC3\xA9 & <Co> \xF0\x9F\x98\x80", "\xE6\x97\xA5\xE6\x9C\xAC",
         "line1\n\xF0\x9F\x98\x80 \"q\" 'a' \xF0\x9F\x98\x80"},
    };
    const std::string wide =
        "Caf\xC3\xA9 & <Co> \xF0\x9F\x98\x80|\xE6\x97\xA5\xE6\x9C\xAC|line1\n"
        "\xF0\x9F\x98\x80 \"q\" 'a' \xF0\x9F\x98\x80\nPlain|T|\n";
    for (const auto& page : pages) {
        for (std::uint16_t encoding = 0; encoding <= 5; ++encoding) {
            SCOPED_TRACE(std::string(page.codePage) + " encoding " + std::to_string(encoding));
            env.codePage = page.codePage;
            env.settings.encoding = encoding;
            const std::string path = dir.file("out.xml");
            ASSERT_TRUE(ExportXml(table, path, marchCriteria(), env));
            const std::string bytes = readFile(path);
            if (encoding == kEncodingUtf16) {
                EXPECT_EQ(readBack(script, path, "utf-16", true), wide);
                continue;
            }
            EXPECT_EQ(bytes.find('\0'), std::string::npos);
            // The declared encoding is only a label; where it names the code
            // page the bytes are in (no declaration means UTF-8), the file
            // parses as it stands.
            const std::string codec = page.codec;
            const std::u16string_view label = encodingLabel(encoding);
            const bool declaredRight = ((encoding == 0 || label == u"UTF-8") && codec == "utf-8") ||
                                       (label == u"ISO-8859-1" && codec == "cp1252");
            EXPECT_EQ(readBack(script, path, page.codec,
                               declaredRight && page.codec != std::string("cp932")),
                      page.client + "|" + page.task + "|" + page.note + "\nPlain|T|\n");
        }
    }
}

}  // namespace
}  // namespace qb::testing
