#include "entry/editor_choices.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "entry/rate_rules.h"
#include "platform/platform.h"
#include "platform/text.h"
#include "store/tables.h"

namespace qb {
namespace {

using Items = std::vector<std::u16string>;

class EditorChoicesTest : public ::testing::Test {
  protected:
    std::unique_ptr<Platform> platform = Platform::inMemory();
    MasterTables m{*platform};

    void SetUp() override {
        ASSERT_TRUE(m.open());
        ClientId acme = 0;
        ClientId bolt = 0;
        addClient(m.clients, u"Acme", &acme);
        addClient(m.clients, u"Bolt", &bolt);
        addProjectTask(m.projects, acme, u"Web", u"Design");
        addProjectTask(m.projects, acme, u"Web", u"Build");
        addProjectTask(m.projects, acme, u"Ops", u"Build");
        addTask(m.tasks, acme, u"Support");
        addTask(m.tasks, bolt, u"Audit");
        addContact(m.contacts, acme, u"Alice");
    }
};

TEST_F(EditorChoicesTest, ListsFollowTheClientAndProject) {
    EXPECT_EQ(clientChoices(m), (Items{u"Acme", u"Bolt"}));
    Items projects = projectChoices(m, u"Acme");
    std::sort(projects.begin(), projects.end());
    EXPECT_EQ(projects, (Items{u"Ops", u"Web"}));
    EXPECT_TRUE(projectChoices(m, u"Nobody").empty());
    EXPECT_TRUE(projectChoices(m, u"").empty());

    struct Case {
        const char16_t* client;
        const char16_t* project;
        Items tasks;
    };
    const Case cases[] = {
        {u"Acme", u"", {u"Build", u"Design", u"Support"}},
        {u"Acme", u"Web", {u"Build", u"Design"}},
        {u"Acme", u"Ops", {u"Build"}},
        // A project the client lacks counts as none.
        {u"Acme", u"Elsewhere", {u"Build", u"Design", u"Support"}},
        {u"Bolt", u"Web", {u"Audit"}},
        {u"Nobody", u"", {}},
    };
    for (const Case& c : cases) {
        Items got = taskChoices(m, c.client, c.project);
        std::sort(got.begin(), got.end());
        EXPECT_EQ(got, c.tasks) << utf16ToUtf8(c.client) << "/" << utf16ToUtf8(c.project);
    }
    // Without a project the loose tasks lead; each task comes once.
    EXPECT_EQ(taskChoices(m, u"Acme", u"").front(), u"Support");
    EXPECT_EQ(contactChoices(m, u"Acme"), (Items{u"Alice"}));
    EXPECT_TRUE(contactChoices(m, u"Bolt").empty());
}

TEST(EditorTotal, CalculateTakesTheBoxesAndShowsCurrencyAndAmount) {
    const Settings s = defaultSettings();
    TimeEntry e;
    e.duration = 25;
    e.rateType = kOvertimeRate;
    EXPECT_EQ(calculateTotal(e, u"EUR", u"150", true, s), u"EUR150.00");
    EXPECT_EQ(e.rate, 15000u);
    EXPECT_EQ(e.rateType, kFixedRate);
    e.duration = 200;
    EXPECT_EQ(calculateTotal(e, u"", u"60.999", false, s), u"121.98");  // the third decimal is cut
    EXPECT_EQ(e.rateType, kNormalRate);
    EXPECT_EQ(calculateTotal(e, u"USD", u"", false, s), u"USD0.00");
    e.duration = 25;
    e.rate = 7500;
    e.rateType = kOvertimeRate;
    EXPECT_EQ(totalText(e, u"$", s), u"$18.75");
}

}  // namespace
}  // namespace qb
