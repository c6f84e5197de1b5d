#include "platform/compound_file.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <functional>
#include <map>
#include <random>
#include <set>

#include "platform/compound_impl.h"
#include "platform/compound_names.h"
#include "testing/test_support.h"

namespace qb {
namespace {

using Bytes = std::vector<std::uint8_t>;

Bytes pattern(std::size_t size, std::uint8_t seed) {
    Bytes b(size);
    for (std::size_t i = 0; i < size; ++i) b[i] = static_cast<std::uint8_t>(seed + i * 7);
    return b;
}

Bytes fileBytes(const std::string& path) {
    std::string s = testing::readFile(path);
    return Bytes(s.begin(), s.end());
}

std::uint32_t word(const Bytes& b, std::size_t at) {
    return b[at] | b[at + 1] << 8 | b[at + 2] << 16 | static_cast<std::uint32_t>(b[at + 3]) << 24;
}

void setWord(Bytes& b, std::size_t at, std::uint32_t v) {
    for (int i = 0; i < 4; ++i) b[at + i] = static_cast<std::uint8_t>(v >> (8 * i));
}

// Writes a file through the public interface: `build` fills the root.
Bytes written(const std::function<void(CompoundStorage&)>& build) {
    testing::TempDir dir;
    std::unique_ptr<CompoundFile> file;
    EXPECT_TRUE(CompoundFile::create(dir.file("f"), &file).isOk());
    CompoundStorage root = file->root();
    build(root);
    EXPECT_TRUE(file->close().isOk());
    return fileBytes(dir.file("f"));
}

std::u16string numbered(std::u16string_view prefix, int n) {
    std::u16string name(prefix);
    for (char c : std::to_string(n)) name.push_back(static_cast<char16_t>(c));
    return name;
}

void addStream(CompoundStorage& s, std::u16string_view name, const Bytes& data) {
    CompoundStream stream;
    ASSERT_TRUE(s.createStream(name, &stream).isOk());
    ASSERT_TRUE(stream.write(data.data(), data.size()).isOk());
}

// Everything the file holds, as "path=size:checksum" lines in enumeration
// order; the first failure instead.
Status readEverything(Bytes bytes, std::string* listing) {
    std::unique_ptr<CompoundFile> file;
    Status s = CompoundFile::openBytes(std::move(bytes), &file);
    if (!s.isOk()) return s;
    std::function<Status(CompoundStorage&, const std::string&)> walk =
        [&](CompoundStorage& storage, const std::string& path) -> Status {
        CompoundEnum elements;
        Status st = storage.enumElements(&elements);
        if (!st.isOk()) return st;
        ElementInfo e;
        while (elements.next(&e)) {
            std::string name(e.name.begin(), e.name.end());
            if (e.type == ElementType::kStorage) {
                CompoundStorage child;
                st = storage.openStorage(e.name, &child);
                if (st.isOk()) st = walk(child, path + name + "/");
                if (!st.isOk()) return st;
                continue;
            }
            CompoundStream stream;
            st = storage.openStream(e.name, &stream);
            if (!st.isOk()) return st;
            Bytes data(stream.size());
            st = stream.readExact(data.data(), data.size());
            if (!st.isOk()) return st;
            unsigned sum = 0;
            for (std::uint8_t b : data) sum = sum * 31 + b;
            *listing +=
                path + name + "=" + std::to_string(data.size()) + ":" + std::to_string(sum) + "\n";
        }
        return Status::ok();
    };
    CompoundStorage root = file->root();
    return walk(root, "");
}

std::string listingOf(const Bytes& bytes) {
    std::string listing;
    Status s = readEverything(bytes, &listing);
    EXPECT_TRUE(s.isOk()) << s.message();
    return listing;
}

TEST(CompoundFileTest, StreamsOfEverySizeClassReadBackAsWritten) {
    // Around the mini sector, the sector and the mini stream cutoff.
    const std::size_t sizes[] = {0, 1, 63, 64, 65, 511, 512, 513, 4095, 4096, 4097, 70000};
    Bytes file = written([&](CompoundStorage& root) {
        CompoundStorage sub;
        ASSERT_TRUE(root.createStorage(u"Sub", &sub).isOk());
        for (std::size_t i = 0; i < std::size(sizes); ++i) {
            std::u16string name = u"S" + std::u16string(1, static_cast<char16_t>(u'a' + i));
            addStream(i % 2 ? sub : root, name, pattern(sizes[i], static_cast<std::uint8_t>(i)));
        }
    });
    EXPECT_EQ(file.size() % 512, 0u);

    std::unique_ptr<CompoundFile> reader;
    ASSERT_TRUE(CompoundFile::openBytes(file, &reader).isOk());
    CompoundStorage root = reader->root();
    CompoundStorage sub;
    ASSERT_TRUE(root.openStorage(u"sub", &sub).isOk()) << "names match without regard to case";
    for (std::size_t i = 0; i < std::size(sizes); ++i) {
        std::u16string name = u"S" + std::u16string(1, static_cast<char16_t>(u'a' + i));
        CompoundStream stream;
        ASSERT_TRUE((i % 2 ? sub : root).openStream(name, &stream).isOk()) << sizes[i];
        Bytes data(sizes[i]);
        ASSERT_TRUE(stream.readExact(data.data(), data.size()).isOk());
        EXPECT_EQ(data, pattern(sizes[i], static_cast<std::uint8_t>(i))) << sizes[i];
        std::size_t got = 1;
        std::uint8_t extra;
        EXPECT_TRUE(stream.read(&extra, 1, &got).isOk());
        EXPECT_EQ(got, 0u);
    }
}

TEST(CompoundFileTest, EnumerationFollowsContainerNameOrder) {
    Bytes file = written([](CompoundStorage& root) {
        for (const char16_t* name : {u"Record10", u"Record9", u"b", u"A", u"Record1", u"Clients"}) {
            addStream(root, name, {1});
        }
    });
    EXPECT_EQ(listingOf(file),
              "A=1:1\nb=1:1\nClients=1:1\nRecord1=1:1\nRecord9=1:1\nRecord10=1:1\n");
}

TEST(CompoundFileTest, CreatingAnExistingNameReplacesTheElement) {
    Bytes file = written([](CompoundStorage& root) {
        addStream(root, u"Name", pattern(10, 1));
        CompoundStorage s;
        ASSERT_TRUE(root.createStorage(u"NAME", &s).isOk());
        addStream(s, u"x", pattern(3, 2));
    });
    std::string listing = listingOf(file);
    EXPECT_EQ(listing.substr(0, 9), "NAME/x=3:");
    EXPECT_EQ(std::count(listing.begin(), listing.end(), '\n'), 1);
}

// The layout depends on the tree alone: creating the elements in any order,
// writing a stream in pieces between other elements, or replacing one gives
// the bytes of the plain run.
TEST(CompoundFileTest, CreationOrderAndInterleavedWritesLeaveTheBytesAlone) {
    const Bytes big = pattern(9000, 3);
    auto inOrder = [&](CompoundStorage& root) {
        CompoundStorage records;
        ASSERT_TRUE(root.createStorage(u"Records", &records).isOk());
        for (int i = 0; i < 40; ++i) addStream(records, numbered(u"Record", i), pattern(70, 1));
        addStream(root, u"Big", big);
        addStream(root, u"DataVersion", pattern(8, 2));
    };
    const Bytes plain = written(inOrder);
    struct Case {
        const char* what;
        std::function<void(CompoundStorage&)> build;
    } cases[] = {
        {"children backwards",
         [&](CompoundStorage& root) {
             addStream(root, u"DataVersion", pattern(8, 2));
             addStream(root, u"Big", big);
             CompoundStorage records;
             ASSERT_TRUE(root.createStorage(u"Records", &records).isOk());
             for (int i = 39; i >= 0; --i) {
                 addStream(records, numbered(u"Record", i), pattern(70, 1));
             }
         }},
        {"streams written in pieces, in turns",
         [&](CompoundStorage& root) {
             CompoundStream bigStream;
             CompoundStream version;
             ASSERT_TRUE(root.createStream(u"Big", &bigStream).isOk());
             ASSERT_TRUE(root.createStream(u"DataVersion", &version).isOk());
             CompoundStorage records;
             ASSERT_TRUE(root.createStorage(u"Records", &records).isOk());
             for (int i = 0; i < 40; ++i) {
                 addStream(records, numbered(u"Record", i), pattern(70, 1));
                 const std::size_t piece = big.size() / 40;
                 const std::size_t end = i == 39 ? big.size() : piece * (i + 1);
                 ASSERT_TRUE(bigStream.write(big.data() + piece * i, end - piece * i).isOk());
                 if (i < 8) {
                     ASSERT_TRUE(version.write(pattern(8, 2).data() + i, 1).isOk());
                 }
             }
         }},
        {"replaced elements",
         [&](CompoundStorage& root) {
             addStream(root, u"Big", pattern(5000, 9));
             addStream(root, u"RECORDS", pattern(10, 9));
             inOrder(root);
         }},
    };
    for (const Case& c : cases) EXPECT_EQ(written(c.build), plain) << c.what;
}

// Elements are found by name in any order, and through their enumeration.
TEST(CompoundFileTest, EveryElementOfALargeStorageIsFoundByName) {
    Bytes file = written([](CompoundStorage& root) {
        CompoundStorage records;
        ASSERT_TRUE(root.createStorage(u"Records", &records).isOk());
        for (int i = 0; i < 3000; ++i) {
            addStream(records, numbered(u"Record", i), pattern(20, static_cast<std::uint8_t>(i)));
        }
    });
    std::unique_ptr<CompoundFile> reader;
    ASSERT_TRUE(CompoundFile::openBytes(file, &reader).isOk());
    CompoundStorage root = reader->root();
    CompoundStorage records;
    ASSERT_TRUE(root.openStorage(u"RECORDS", &records).isOk());
    std::vector<int> numbers(3000);
    for (int i = 0; i < 3000; ++i) numbers[i] = i;
    std::shuffle(numbers.begin(), numbers.end(), std::mt19937(5));
    Bytes data(20);
    CompoundStream stream;
    for (int i : numbers) {
        ASSERT_TRUE(records.openStream(numbered(u"record", i), &stream).isOk()) << i;
        ASSERT_TRUE(stream.readExact(data.data(), data.size()).isOk());
        ASSERT_EQ(data, pattern(20, static_cast<std::uint8_t>(i))) << i;
    }
    EXPECT_EQ(records.openStream(u"Record3000", &stream).code(), Status::Code::kNotFound);
    EXPECT_EQ(records.openStream(u"Record", &stream).code(), Status::Code::kNotFound);

    CompoundEnum elements;
    ASSERT_TRUE(records.enumElements(&elements).isOk());
    ElementInfo element;
    for (int i = 0; elements.next(&element); ++i) {
        ASSERT_EQ(element.name, numbered(u"Record", i));
        ASSERT_TRUE(elements.openStream(&stream).isOk());
        ASSERT_TRUE(stream.readExact(data.data(), data.size()).isOk());
        ASSERT_EQ(data, pattern(20, static_cast<std::uint8_t>(i))) << i;
    }
}

TEST(CompoundFileTest, RefusesNamesTheContainerCannotHold) {
    testing::TempDir dir;
    std::unique_ptr<CompoundFile> file;
    ASSERT_TRUE(CompoundFile::create(dir.file("f"), &file).isOk());
    CompoundStorage root = file->root();
    CompoundStream stream;
    for (std::u16string_view bad :
         {u"", u"a/b", u"a\\b", u"a:b", u"a!b", u"12345678901234567890123456789012"}) {
        Status s = root.createStream(bad, &stream);
        EXPECT_EQ(s.code(), Status::Code::kInvalidArgument);
    }
    EXPECT_TRUE(root.createStream(u"1234567890123456789012345678901", &stream).isOk());
}

TEST(CompoundFileTest, ManySiblingsAndADifatReadBack) {
    // 3000 siblings make a deep tree; 8 MB needs more FAT sectors than the
    // header can list.
    Bytes big = pattern(8 << 20, 5);
    Bytes file = written([&](CompoundStorage& root) {
        CompoundStorage records;
        ASSERT_TRUE(root.createStorage(u"Records", &records).isOk());
        for (int i = 0; i < 3000; ++i) {
            addStream(records, numbered(u"Record", i), pattern(40, static_cast<std::uint8_t>(i)));
        }
        addStream(root, u"Big", big);
    });
    EXPECT_GT(word(file, 0x48), 0u) << "a DIFAT sector";
    std::string listing = listingOf(file);
    EXPECT_EQ(std::count(listing.begin(), listing.end(), '\n'), 3001);
    EXPECT_NE(listing.find("Big=" + std::to_string(big.size())), std::string::npos);
}

// Red-black rules of the sibling tree: in order, black root, no red node
// with a red child, the same number of black nodes on every path.
TEST(CompoundNamesTest, SiblingTreeIsAValidRedBlackTreeForEveryCount) {
    for (std::size_t n = 0; n <= 600; ++n) {
        std::vector<compound::SiblingLinks> links;
        std::size_t root = compound::balancedSiblingTree(n, &links);
        if (n == 0) {
            EXPECT_EQ(root, compound::kNoSibling);
            continue;
        }
        ASSERT_FALSE(links[root].red) << n;
        std::vector<std::size_t> inOrder;
        std::set<int> blackHeights;
        std::function<void(std::size_t, int, bool)> visit = [&](std::size_t at, int blacks,
                                                                bool parentRed) {
            if (at == compound::kNoSibling) {
                blackHeights.insert(blacks);
                return;
            }
            EXPECT_FALSE(parentRed && links[at].red) << n;
            int b = blacks + (links[at].red ? 0 : 1);
            visit(links[at].left, b, links[at].red);
            inOrder.push_back(at);
            visit(links[at].right, b, links[at].red);
        };
        visit(root, 0, false);
        EXPECT_EQ(blackHeights.size(), 1u) << n;
        for (std::size_t i = 0; i < inOrder.size(); ++i) ASSERT_EQ(inOrder[i], i) << n;
    }
}

TEST(CompoundNamesTest, ContainerOrderComparesLengthThenUpperCase) {
    struct Case {
        std::u16string_view a, b;
        int sign;
    } cases[] = {
        {u"Z", u"AA", -1},
        {u"abc", u"ABC", 0},
        {u"Record9", u"Record10", -1},
        {u"a", u"B", -1},
        {u"_", u"a", 1},
        {u"\u00e9", u"\u00c9", 0},
        {u"\u03b1", u"\u0391", 0},
        {u"\u0430", u"\u0411", -1},
    };
    for (const Case& c : cases) {
        int r = compound::compareNames(c.a, c.b);
        EXPECT_EQ((r > 0) - (r < 0), c.sign)
            << std::string(c.a.begin(), c.a.end()) << " vs " << std::string(c.b.begin(), c.b.end());
    }
}

// A small valid file: a mini stream, a regular stream, a storage.
Bytes sampleFile() {
    return written([](CompoundStorage& root) {
        addStream(root, u"Small", pattern(100, 1));
        addStream(root, u"Large", pattern(5000, 2));
        CompoundStorage s;
        ASSERT_TRUE(root.createStorage(u"Box", &s).isOk());
        addStream(s, u"Inner", pattern(70, 3));
    });
}

// Offsets in the sample file, read from its header and directory.
struct Layout {
    std::uint32_t dirSector;
    std::size_t entry(std::size_t i) const { return (dirSector + 1) * 512 + i * 128; }
    static std::size_t fatEntry(const Bytes& b, std::uint32_t sector) {
        return (word(b, 0x4C) + 1) * 512 + 4 * sector;
    }
};

std::size_t entryNamed(const Bytes& b, const Layout& l, const std::u16string& name) {
    for (std::size_t i = 0; i < 8; ++i) {
        std::size_t at = l.entry(i);
        std::u16string n;
        for (std::size_t k = 0; b[at + 2 * k] || b[at + 2 * k + 1]; ++k) {
            n.push_back(static_cast<char16_t>(b[at + 2 * k] | b[at + 2 * k + 1] << 8));
        }
        if (n == name) return at;
    }
    ADD_FAILURE() << "no entry";
    return 0;
}

TEST(CompoundFileTest, DamagedFilesAreRefusedWithTheFaultNamed) {
    const Bytes good = sampleFile();
    ASSERT_EQ(listingOf(good).empty(), false);
    const Layout l{word(good, 0x30)};
    struct Damage {
        const char* what;
        std::function<void(Bytes&)> apply;
        const char* message;  // a part of the status message
    } damages[] = {
        {"zero length", [](Bytes& b) { b.clear(); }, "empty"},
        {"shorter than a header", [](Bytes& b) { b.resize(300); }, "too short"},
        {"garbage",
         [](Bytes& b) {
             std::mt19937 random(7);
             for (auto& x : b) x = static_cast<std::uint8_t>(random());
         },
         "signature"},
        {"truncated to the header", [](Bytes& b) { b.resize(512); }, "FAT"},
        {"truncated before the directory", [&](Bytes& b) { b.resize((l.dirSector + 1) * 512); },
         "outside the file"},
        {"wrong version", [](Bytes& b) { b[0x1A] = 5; }, "version"},
        {"FAT count past the file", [](Bytes& b) { setWord(b, 0x2C, 100000); }, "FAT"},
        {"FAT sector outside the file", [](Bytes& b) { setWord(b, 0x4C, 90000); }, "outside"},
        {"directory chain loops",
         [&](Bytes& b) { setWord(b, Layout::fatEntry(b, l.dirSector), l.dirSector); }, "loops"},
        {"directory starts outside the file", [](Bytes& b) { setWord(b, 0x30, 77777); },
         "directory reaches sector 77777"},
        {"stream chain loops",
         [&](Bytes& b) {
             std::uint32_t start = word(b, entryNamed(b, l, u"Large") + 0x74);
             setWord(b, Layout::fatEntry(b, start + 3), start);
         },
         "does not end"},
        {"stream ends early",
         [&](Bytes& b) {
             std::uint32_t start = word(b, entryNamed(b, l, u"Large") + 0x74);
             setWord(b, Layout::fatEntry(b, start + 3), compound::kEndOfChain);
         },
         "ends after 4 sectors"},
        {"oversized stream",
         [&](Bytes& b) { setWord(b, entryNamed(b, l, u"Large") + 0x78, 0xFFFFFF00); },
         "declares 4294967040 bytes"},
        {"stream starts outside the file",
         [&](Bytes& b) { setWord(b, entryNamed(b, l, u"Large") + 0x74, 0x7FFFFFFF); }, "outside"},
        {"mini stream chain outside the mini stream",
         [&](Bytes& b) { setWord(b, entryNamed(b, l, u"Small") + 0x74, 5000); }, "mini sector"},
        {"sibling links to itself",
         [&](Bytes& b) {
             std::size_t at = entryNamed(b, l, u"Box");
             setWord(b, at + 0x44, static_cast<std::uint32_t>((at - l.entry(0)) / 128));
         },
         "second time"},
        {"child links to the root",
         [&](Bytes& b) { setWord(b, entryNamed(b, l, u"Box") + 0x4C, 0); }, "the root"},
        {"link past the directory",
         [&](Bytes& b) { setWord(b, entryNamed(b, l, u"Box") + 0x4C, 4000); }, "links to entry"},
        {"odd name length", [&](Bytes& b) { b[entryNamed(b, l, u"Inner") + 0x40] = 7; },
         "name length"},
    };
    for (const Damage& d : damages) {
        Bytes bytes = good;
        d.apply(bytes);
        std::string listing;
        Status s = readEverything(bytes, &listing);
        EXPECT_EQ(s.code(), Status::Code::kCorruption) << d.what << ": " << s.message();
        EXPECT_NE(s.message().find(d.message), std::string::npos) << d.what << ": " << s.message();
    }
}

TEST(CompoundFileTest, EveryTruncationIsRefusedOrReadsWhatRemains) {
    // Cutting a file anywhere must never crash; a cut inside the header or
    // the allocation tables must be refused.
    const Bytes good = sampleFile();
    for (std::size_t cut = 0; cut < good.size(); cut += 37) {
        std::string listing;
        Status s =
            readEverything(Bytes(good.begin(), good.begin() + static_cast<long>(cut)), &listing);
        if (cut < 512) {
            EXPECT_FALSE(s.isOk()) << cut;
        }
    }
}

TEST(CompoundFileTest, OpeningAMissingFileSaysSo) {
    std::unique_ptr<CompoundFile> file;
    Status s = CompoundFile::open("/nonexistent/dir/x.qrb", &file);
    EXPECT_EQ(s.code(), Status::Code::kNotFound);
    s = CompoundFile::create("/nonexistent/dir/x.qrb", &file);
    EXPECT_EQ(s.code(), Status::Code::kIoError);
    EXPECT_NE(s.message().find("/nonexistent/dir/x.qrb"), std::string::npos);
}

}  // namespace
}  // namespace qb
