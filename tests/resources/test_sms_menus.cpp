#include "resources/resource.h"
#include "resources/sms_resources.h"
#include "tests/testkit/qstring_printer.h"

#include <gtest/gtest.h>

#include <ostream>

#include <set>

namespace {

// A menu flattened to one line per entry: "Popup/Item=command", "-" for a separator.
QStringList flatten(const std::vector<tessaly::MenuItem>& items, const QString& prefix = {}) {
    QStringList lines;
    for (const tessaly::MenuItem& item : items) {
        if (item.separator) {
            lines.append(prefix + QStringLiteral("-"));
        } else if (item.isPopup) {
            lines.append(prefix + item.text + QStringLiteral("/"));
            lines += flatten(item.children, prefix + item.text + QStringLiteral("/"));
        } else {
            lines.append(prefix + item.text + QStringLiteral("=") + QString::number(item.id));
        }
    }
    return lines;
}

TEST(SmsMenus, EveryMenuWithItsCommands) {
    const auto entry = [](const char* path, int id) {
        return QString::fromUtf8(path) + QStringLiteral("=") + QString::number(id);
    };
    struct Case {
        int menuId;
        QStringList lines;
    };
    const Case cases[] = {
        {10000,
         {"Inbox/", entry("Inbox/Reply", 10214), entry("Inbox/Forward", 12001),
          entry("Inbox/Call", 12002), entry("Inbox/View", 12010), entry("Inbox/Delete", 12003),
          entry("Inbox/Delete...", 10233), entry("Inbox/Copy to Phonebook", 10231)}},
        {10001,
         {"Outbox/", entry("Outbox/Forward", 10213), entry("Outbox/Call", 10210),
          entry("Outbox/View", 12011), entry("Outbox/Delete", 10212),
          entry("Outbox/Send Now", 10215), entry("Outbox/Delete...", 10253),
          entry("Outbox/Copy to Phonebook", 10251)}},
        {10005,
         {"Show/", entry("Show/Inbox", 10260), entry("Show/Outbox", 10261),
          entry("Show/Cellbroadcast", 12037)}},
        {10007,
         {"Edit/", entry("Edit/Copy", IDM_EDIT_COPY), entry("Edit/Cut", IDM_EDIT_CUT),
          entry("Edit/Paste", IDM_EDIT_PASTE), entry("Edit/Select All", IDM_EDIT_SELECT_ALL),
          entry("Edit/Delete", IDM_EDIT_DELETE)}},
        {10009,
         {"Sort by/", entry("Sort by/Date", 10259), entry("Sort by/Contact", 10258),
          entry("Sort by/Status", 10264), entry("Sort by/Sort Ascending", 10262),
          entry("Sort by/Sort Descending", 10263)}},
        {10012,
         {entry("New", 10237), "Tools/", entry("Tools/Info", 10273), entry("Tools/Options", 10274),
          entry("Tools/Find...", 12185)}},
        {10013, {entry("Service Centers", 10265)}},
        {10017, {"Variable Names/"}},
        {10018,
         {entry("New", 10236), "Menu/", entry("Menu/Reply", 10248), entry("Menu/Forward", 10247),
          entry("Menu/Call", 10241), entry("Menu/Delete", 10242),
          entry("Menu/Copy to Phonebook", 10272)}},
        {10019,
         {entry("New", 10238), "Menu/", entry("Menu/Forward", 10247), entry("Menu/Call", 10271),
          entry("Menu/Delete", 10242), entry("Menu/Send Now", 10249),
          entry("Menu/Copy to Phonebook", 10272)}},
        {12002,
         {"Edit/", entry("Edit/Copy", IDM_EDIT_COPY), entry("Edit/Cut", IDM_EDIT_CUT),
          entry("Edit/Paste", IDM_EDIT_PASTE), entry("Edit/Delete", IDM_EDIT_DELETE),
          entry("Edit/Select All", IDM_EDIT_SELECT_ALL)}},
        {12010, {"Favorites/", entry("Favorites/PhoneBook", 12007)}},
        {12015,
         {"ContextMenu/", entry("ContextMenu/New", 12009), entry("ContextMenu/Edit", 12008),
          entry("ContextMenu/Delete", 10212)}},
        {12047, {"View/", entry("View/View", IDM_CB_VIEW)}},
        {12048, {"Channel/", entry("Channel/Add", 12041), entry("Channel/Delete", 12040)}},
    };
    const tessaly::ResourceScript& script = tessaly::sms::resourcesFor("en");
    std::set<int> listed;
    for (const Case& c : cases) {
        SCOPED_TRACE(c.menuId);
        listed.insert(c.menuId);
        const auto found = script.menus.find(c.menuId);
        ASSERT_NE(found, script.menus.end());
        EXPECT_EQ(flatten(found->second.items), c.lines);
    }
    std::set<int> shipped;
    for (const auto& [id, menu] : script.menus)
        shipped.insert(id);
    EXPECT_EQ(shipped, listed);
}

TEST(SmsMenus, CommandsAreUniqueWithinAMenuAndAllEnabled) {
    for (const auto& [id, menu] : tessaly::sms::resourcesFor("en").menus) {
        SCOPED_TRACE(id);
        std::set<int> commands;
        std::vector<const std::vector<tessaly::MenuItem>*> pending{&menu.items};
        while (!pending.empty()) {
            const auto* items = pending.back();
            pending.pop_back();
            for (const tessaly::MenuItem& item : *items) {
                EXPECT_TRUE(item.enabled);
                EXPECT_FALSE(item.checked);
                if (item.isPopup) {
                    pending.push_back(&item.children);
                } else if (!item.separator) {
                    EXPECT_TRUE(commands.insert(item.id).second) << item.id;
                }
            }
        }
    }
}

} // namespace
