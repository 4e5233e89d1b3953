#include "framework/resources/module_state.h"
#include "framework/resources/resources.h"
#include "tests/testkit/qstring_printer.h"

#include <gtest/gtest.h>

#include <ostream>

#include <thread>

namespace {

using tessaly::ModuleState;
using tessaly::ModuleStateGuard;
using tessaly::ResourceScript;

ResourceScript scriptWith(int id, const QString& text) {
    ResourceScript script;
    script.strings[id] = text;
    script.menus[id].id = id;
    script.dialogs[id].id = id;
    return script;
}

class ModuleStateTest : public testing::Test {
protected:
    void SetUp() override { tessaly::setCurrentModuleState({}); }
    void TearDown() override { tessaly::setCurrentModuleState({}); }
};

TEST_F(ModuleStateTest, NothingLoadedGivesEmptyResults) {
    EXPECT_EQ(tessaly::currentResources(), nullptr);
    EXPECT_TRUE(tessaly::loadString(10000).isEmpty());
    EXPECT_EQ(tessaly::findMenuTemplate(10000), nullptr);
    EXPECT_EQ(tessaly::findDialogTemplate(10000), nullptr);
}

TEST_F(ModuleStateTest, LookupsReadTheCurrentResources) {
    const ResourceScript script = scriptWith(7, QStringLiteral("seven"));
    tessaly::setCurrentResources(&script);
    EXPECT_EQ(tessaly::loadString(7), QStringLiteral("seven"));
    EXPECT_TRUE(tessaly::loadString(8).isNull());
    EXPECT_EQ(tessaly::findMenuTemplate(7), &script.menus.at(7));
    EXPECT_EQ(tessaly::findMenuTemplate(8), nullptr);
    EXPECT_EQ(tessaly::findDialogTemplate(7), &script.dialogs.at(7));
    EXPECT_EQ(tessaly::findDialogTemplate(8), nullptr);
}

TEST_F(ModuleStateTest, GuardsNestAndRestoreInReverseOrder) {
    const ResourceScript host = scriptWith(1, QStringLiteral("host"));
    const ResourceScript module = scriptWith(1, QStringLiteral("module"));
    const ResourceScript other = scriptWith(1, QStringLiteral("other"));
    int moduleData = 0;
    int otherData = 0;
    tessaly::setCurrentResources(&host);
    {
        ModuleStateGuard outer(&module, &moduleData);
        EXPECT_EQ(tessaly::loadString(1), QStringLiteral("module"));
        EXPECT_EQ(tessaly::currentModuleState().moduleData, &moduleData);
        {
            ModuleStateGuard inner(&other, &otherData);
            EXPECT_EQ(tessaly::loadString(1), QStringLiteral("other"));
            EXPECT_EQ(tessaly::currentModuleState().moduleData, &otherData);
            {
                // Re-entering the same module (an export called from an event) changes nothing.
                ModuleStateGuard again(&other, &otherData);
                EXPECT_EQ(again.previous(), (ModuleState{&other, &otherData}));
            }
            EXPECT_EQ(tessaly::loadString(1), QStringLiteral("other"));
        }
        EXPECT_EQ(tessaly::loadString(1), QStringLiteral("module"));
        EXPECT_EQ(tessaly::currentModuleState().moduleData, &moduleData);
    }
    EXPECT_EQ(tessaly::currentModuleState(), (ModuleState{&host, nullptr}));
}

TEST_F(ModuleStateTest, SwitchInsideAGuardIsUndoneWithIt) {
    const ResourceScript host = scriptWith(1, QStringLiteral("host"));
    const ResourceScript module = scriptWith(1, QStringLiteral("module"));
    tessaly::setCurrentResources(&host);
    {
        ModuleStateGuard guard(&module, nullptr);
        tessaly::setCurrentResources(nullptr);
        EXPECT_TRUE(tessaly::loadString(1).isEmpty());
    }
    EXPECT_EQ(tessaly::loadString(1), QStringLiteral("host"));
}

TEST_F(ModuleStateTest, EachThreadHasItsOwnState) {
    const ResourceScript module = scriptWith(1, QStringLiteral("module"));
    ModuleStateGuard guard(&module, nullptr);
    QString seenOnWorker = QStringLiteral("unset");
    std::thread worker([&] { seenOnWorker = tessaly::loadString(1); });
    worker.join();
    EXPECT_TRUE(seenOnWorker.isEmpty());
    EXPECT_EQ(tessaly::loadString(1), QStringLiteral("module"));
}

} // namespace
