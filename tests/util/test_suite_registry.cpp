#include "util/suite_registry.h"

#include "framework/datadir.h"
#include "util/registry_key.h"

#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace {

TEST(LanguageIndex, PrimaryLanguagePicksTheResources) {
    const struct {
        DWORD lcid;
        int index;
    } cases[] = {
        {0x0409, 0},                            // English (US)
        {0x0000, 0}, {0x0413, 0},               // Dutch has no resources of its own
        {0x0407, 1}, {0x0807, 1}, {0x10407, 1}, // German, Swiss German, German phone-book sort
        {0x040a, 2}, {0x0c0a, 2},               // Spanish
        {0x0410, 3}, {0x0810, 3},               // Italian
        {0x040c, 4}, {0x080c, 4},               // French
        {1028, 5},                              // Chinese (Taiwan)
        {0x0804, 6}, {0x0c04, 6}, {0x10404, 6}, // other Chinese identifiers
        {0x0207, 0},                            // the primary language takes ten bits, not eight
        {0x0501, 7}, {0x0901, 0},               // the pseudo-language, only as itself
    };
    for (const auto& c : cases)
        EXPECT_EQ(languageIndexForLcid(c.lcid), c.index) << std::hex << c.lcid;
}

class SuiteRegistry : public ::testing::Test {
protected:
    void SetUp() override {
        ASSERT_TRUE(dataDir_.isValid());
        tessaly::setDataDirectory(dataDir_.path());
    }
    void TearDown() override { tessaly::setDataDirectory(QString()); }

    static bool keyExists(LPCWSTR path) {
        RegistryKey key;
        return key.open(HKEY_LOCAL_MACHINE, path).isOpen();
    }

private:
    QTemporaryDir dataDir_;
};

TEST_F(SuiteRegistry, SystemLanguageComesFromTheLcidValue) {
    EXPECT_EQ(systemLanguageIndex(), 0) << "no key";
    RegistryKey international;
    international.create(HKEY_LOCAL_MACHINE, u"SOFTWARE\\Microsoft\\International");
    EXPECT_EQ(systemLanguageIndex(), 0) << "no value";
    ASSERT_TRUE(international.setDword(u"LCID", 0x0407));
    EXPECT_EQ(systemLanguageIndex(), 1);
    ASSERT_TRUE(international.setDword(u"lcid", 1028));
    EXPECT_EQ(systemLanguageIndex(), 5) << "value names ignore case";
}

TEST_F(SuiteRegistry, ActiveDriverWalkComparesEachKeyValue) {
    EXPECT_FALSE(isDriverActive(QStringLiteral("Drivers\\BuiltIn\\Serial"))) << "no key";

    RegistryKey active;
    active.create(HKEY_LOCAL_MACHINE, u"Drivers\\Active");
    RegistryKey driver;
    driver.create(active, u"01");
    driver.setString(u"Name", u"COM1:"); // no "Key" value here
    driver.create(active, u"02");
    driver.setString(u"Key", u"Drivers\\BuiltIn\\Serial2");
    driver.create(active, u"03");
    driver.setString(u"Key", u"Drivers\\BuiltIn\\GSM");
    driver.close();

    const struct {
        const char* path;
        bool active;
    } cases[] = {
        {"Drivers\\BuiltIn\\GSM", true},
        {"drivers\\builtin\\gsm", true},
        {"Drivers\\BuiltIn\\Serial2", true},
        {"Drivers\\BuiltIn\\Serial", false}, // a prefix is not a match
        {"Drivers\\BuiltIn\\GSM\\", false},
        {"", false},
    };
    for (const auto& c : cases)
        EXPECT_EQ(isDriverActive(QString::fromLatin1(c.path)), c.active) << c.path;
}

TEST_F(SuiteRegistry, SuiteValuesAreWrittenReadAndRemoved) {
    EXPECT_EQ(readSuiteValue(QStringLiteral("Version")), 0u);
    EXPECT_FALSE(removeSuiteValue(QStringLiteral("Version")));

    ASSERT_TRUE(writeSuiteValue(QStringLiteral("Version"), 0xdeadbeef));
    ASSERT_TRUE(writeSuiteValue(QStringLiteral("Started"), 1));
    EXPECT_EQ(readSuiteValue(QStringLiteral("Version")), 0xdeadbeefu);
    EXPECT_EQ(readSuiteValue(QStringLiteral("Missing")), 0u);

    EXPECT_TRUE(removeSuiteValue(QStringLiteral("Version")));
    EXPECT_EQ(readSuiteValue(QStringLiteral("Version")), 0u);
    EXPECT_TRUE(keyExists(u"Software\\Tessaly")) << "another value is left";
    EXPECT_FALSE(removeSuiteValue(QStringLiteral("Version")));
    EXPECT_TRUE(keyExists(u"Software\\Tessaly"));

    EXPECT_TRUE(removeSuiteValue(QStringLiteral("Started")));
    EXPECT_FALSE(keyExists(u"Software\\Tessaly")) << "the emptied key goes too";
    EXPECT_TRUE(keyExists(u"Software")) << "its parent stays";
}

TEST_F(SuiteRegistry, RemovingANameWithoutValueDeletesTheSubkey) {
    RegistryKey sub;
    sub.create(HKEY_LOCAL_MACHINE, u"Software\\Tessaly\\Phone");
    sub.close();
    ASSERT_TRUE(writeSuiteValue(QStringLiteral("Started"), 1));

    EXPECT_TRUE(removeSuiteValue(QStringLiteral("Phone")));
    EXPECT_FALSE(keyExists(u"Software\\Tessaly\\Phone"));
    EXPECT_EQ(readSuiteValue(QStringLiteral("Started")), 1u);
    EXPECT_TRUE(removeSuiteValue(QStringLiteral("Started")));
    EXPECT_FALSE(keyExists(u"Software\\Tessaly"));
}

} // namespace
