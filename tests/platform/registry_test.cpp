#include "platform/registry.h"

#include <gtest/gtest.h>

#include "platform/data_file.h"

namespace qb {
namespace {

class RegistryTest : public ::testing::Test {
protected:
    std::unique_ptr<DataFile> file = DataFile::openInMemory();
    Registry registry{*file};
};

TEST_F(RegistryTest, AValueLargerThanTheBufferCannotBeRead) {
    auto key = registry.createKey(RegRoot::HKEY_CURRENT_USER, "Software\\Quillarbor");
    ASSERT_TRUE(key);
    ASSERT_EQ(key->setString("Name", std::u16string(31, u'a')), ERROR_SUCCESS);  // 64 bytes
    std::u16string text;
    EXPECT_EQ(key->queryString("Name", 64, &text), ERROR_SUCCESS);
    EXPECT_EQ(text.size(), 31u);
    EXPECT_EQ(key->queryString("Name", 62, &text), ERROR_MORE_DATA);
    EXPECT_EQ(key->queryString("Missing", 64, &text), ERROR_FILE_NOT_FOUND);

    key->setValue("Blob", REG_BINARY, std::vector<std::uint8_t>(21, 7));
    RegValue v;
    EXPECT_EQ(key->queryValue("Blob", 20, &v), ERROR_MORE_DATA);
    EXPECT_TRUE(v.data.empty());
    EXPECT_EQ(key->queryValue("blob", 21, &v), ERROR_SUCCESS) << "value names ignore case";
    EXPECT_EQ(v.type, REG_BINARY);
}

TEST_F(RegistryTest, KeysAreCreatedWithTheirParentsAndOpenedReadOnly) {
    EXPECT_FALSE(registry.openKey(RegRoot::HKEY_CURRENT_USER, "Software\\Quillarbor"));
    auto created = registry.createKey(RegRoot::HKEY_CURRENT_USER, "Software\\Quillarbor");
    ASSERT_TRUE(created);
    EXPECT_TRUE(registry.openKey(RegRoot::HKEY_CURRENT_USER, "Software"));
    EXPECT_FALSE(registry.openKey(RegRoot::HKEY_LOCAL_MACHINE, "Software")) << "roots are apart";
    created->setDword("View", 3);

    auto readOnly = registry.openKey(RegRoot::HKEY_CURRENT_USER, "software\\quillarbor");
    ASSERT_TRUE(readOnly);
    std::uint32_t view = 0;
    EXPECT_EQ(readOnly->queryDword("View", &view), ERROR_SUCCESS);
    EXPECT_EQ(view, 3u);
    EXPECT_EQ(readOnly->setDword("View", 4), ERROR_ACCESS_DENIED);
    EXPECT_EQ(readOnly->deleteValue("View"), ERROR_ACCESS_DENIED);

    EXPECT_EQ(created->deleteValue("View"), ERROR_SUCCESS);
    EXPECT_EQ(created->deleteValue("View"), ERROR_FILE_NOT_FOUND);
    EXPECT_TRUE(created->values().empty());
}

TEST_F(RegistryTest, DwordsAreLittleEndianFourBytes) {
    auto key = registry.createKey(RegRoot::HKEY_CURRENT_USER, "K");
    key->setDword("N", 0x01020304);
    RegValue v;
    ASSERT_EQ(key->queryValue("N", 4, &v), ERROR_SUCCESS);
    EXPECT_EQ(v.type, REG_DWORD);
    EXPECT_EQ(v.data, (std::vector<std::uint8_t>{4, 3, 2, 1}));
}

}  // namespace
}  // namespace qb
